// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// tarvik-simd: a stand-in for the messaging daemon, for tests and demos. It owns the
// daemon's name on the session bus, answers the client's requests on the shared
// database as its options say, and prints "ready" on stdout once it can be reached.
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusError>
#include <cstdio>

#include "cdaemonlog.h"
#include "csimdaemon.h"
#include "csimoptions.h"

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("tarvik-simd"));
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral(
        "Daemon simulator for the tarvik client. Owns com.qel.tarvikdaemon on the session "
        "bus (object /com/qel/tarvikdaemon, interface com.qel.TarvikDaemon), listens to the "
        "client's signals on com.qel.TarvikClient and answers them by calling the client, "
        "working on $HOME/.tarvik/tarvikdb.sqlite like the real daemon. Prints \"ready\" on "
        "stdout once it owns its name; logs on stderr.\n\n"
        "Test handle: object /com/qel/tarviksim, interface com.qel.TarvikSimControl, methods "
        "DeliverNow(int count) -> int and OpenInbox().\n\n"
        "Exit codes: 0 terminated, 1 bad option or no session bus, 2 name or object path "
        "taken, 3 session bus lost."));
    parser.addHelpOption();
    Dravo::CSimOptions::addOptions(parser);
    parser.process(app);

    Dravo::installDaemonLog(false);
    Dravo::CSimOptions options;
    QString error;
    if (!options.read(parser, &error)) {
        qCritical().noquote() << "tarvik-simd: " + error;
        return 1;
    }
    Dravo::installDaemonLog(options.m_bVerbose);

    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        qCritical().noquote() << "tarvik-simd: no session bus: " + bus.lastError().message();
        return 1;
    }
    Dravo::CSimDaemon daemon(options, bus);
    if (!daemon.start(&error)) {
        qCritical().noquote() << "tarvik-simd: " + error;
        return 2;
    }
    std::fputs("ready\n", stdout);
    std::fflush(stdout);
    return app.exec();
}
