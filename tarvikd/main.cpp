// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// tarvikd: the tarvik daemon. Carries tarviks over XMPP, shares the message database with
// the client and talks to it over the session bus. Runs in the foreground until SIGTERM,
// SIGINT or the Stop method; prints "ready" on stdout once it owns its bus name.
#include <signal.h>
#include <sys/socket.h>
#include <unistd.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusError>
#include <QSocketNotifier>
#include <cstdio>

#include "cdaemonbus.h"
#include "cdaemonlog.h"
#include "ctarvikdaemon.h"
#include "ctranslations.h"
#include "cxmppconfig.h"

namespace {

int g_signalFds[2] = {-1, -1};

void onSignal(int)
{
    const char byte = 1;
    [[maybe_unused]] const ssize_t written = ::write(g_signalFds[0], &byte, 1);
}

}  // namespace

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("tarvikd"));
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "The tarvik daemon: sends and receives tarviks over XMPP for the tarvik client. Owns "
        "com.qel.tarvikdaemon on the session bus, works on $HOME/.tarvik/tarvikdb.sqlite "
        "together with the client, and keeps the account password in the Secret Service or "
        "in ~/.config/tarvik/tarvikd-accounts (mode 0600).\n\n"
        "Configuration: ~/.config/tarvik/tarvikd.conf, key=value lines:\n"
        "  xmpp_domain=example.org     the service domain; phone numbers are <digits>@domain\n"
        "  xmpp_server=host:port       where to connect (default: DNS SRV of the domain)\n"
        "  xmpp_ca_file=/path/ca.pem   certificates trusted besides the system's\n"
        "Each key is overridden by TARVIK_XMPP_DOMAIN, TARVIK_XMPP_SERVER, TARVIK_XMPP_CA_FILE.\n\n"
        "Exit codes: 0 stopped, or another tarvikd already serves the name (it says so and "
        "leaves); 1 bad option or no session bus; 2 the bus refused the name; 3 session bus "
        "lost."));
    parser.addHelpOption();
    const QCommandLineOption verbose(QStringLiteral("verbose"),
                                     QStringLiteral("Also log the storage's debug lines."));
    parser.addOption(verbose);
    parser.process(app);
    Dravo::installDaemonLog(parser.isSet(verbose));

    // The desktop notification speaks the user's language, as the client does.
    Dravo::CTranslations::install(QLocale::system());

    Dravo::CXmppConfig config;
    QStringList problems;
    config.load(&problems);
    for (const QString& problem : problems) {
        qWarning().noquote() << "tarvikd: " + problem;
    }

    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        qCritical().noquote() << "tarvikd: no session bus: " + bus.lastError().message();
        return 1;
    }

    // A server that closes the connection while we write must not end the daemon: the
    // write fails with EPIPE and the session ends as any other.
    signal(SIGPIPE, SIG_IGN);

    // SIGTERM and SIGINT end the event loop, so the session is closed and what arrived is
    // stored before exit.
    if (::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, g_signalFds) == 0) {
        struct sigaction action = {};
        action.sa_handler = onSignal;
        sigemptyset(&action.sa_mask);
        action.sa_flags = SA_RESTART;
        sigaction(SIGTERM, &action, nullptr);
        sigaction(SIGINT, &action, nullptr);
    }
    QSocketNotifier signalNotifier(g_signalFds[1], QSocketNotifier::Read);
    QObject::connect(&signalNotifier, &QSocketNotifier::activated, &app, []() {
        char byte;
        [[maybe_unused]] const ssize_t got = ::read(g_signalFds[1], &byte, 1);
        qInfo() << "tarvikd: terminating";
        QCoreApplication::quit();
    });

    xmpp_initialize();
    int status = 0;
    {
        Dravo::CTarvikDaemon daemon(config, bus);
        QString error;
        if (!daemon.start(&error)) {
            if (daemon.anotherRunning()) {
                // Started twice (bus activation, autostart and a hand racing each other):
                // the one that runs serves, so this is no failure.
                qInfo().noquote() << QStringLiteral(
                                         "tarvikd: another tarvikd already serves %1; exiting")
                                         .arg(Dravo::CDaemonBus::serviceName);
            } else {
                qCritical().noquote() << "tarvikd: " + error;
                status = 2;
            }
        } else {
            std::fputs("ready\n", stdout);
            std::fflush(stdout);
            status = app.exec();
            daemon.shutdown();
        }
    }
    xmpp_shutdown();
    return status;
}
