// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// tarvik-fakes: stand-ins for the platform services the client talks to on the system
// bus, for tests and demos. Each service named on the command line is registered on the
// bus given by DBUS_SYSTEM_BUS_ADDRESS; the program
// prints "ready" once every name is owned and runs until terminated. --client plays the
// client on the session bus, for tests that have the bus start it.
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusError>
#include <QFile>
#include <QTextStream>

#include "cclientrecorder.h"
#include "cfakemce.h"
#include "cfakemodemmanager.h"
#include "cfakenetworkmanager.h"
#include "cfakesim.h"
#include "cnmeastreamer.h"

using namespace Dravo::Test;

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Fake platform services for tarvik tests: SIM, ModemManager, MCE, "
                       "NetworkManager, an NMEA stream."));
    parser.addHelpOption();
    parser.addOption({QStringLiteral("sim"),
                      QStringLiteral("Run com.nokia.phone.SIM answering get_imei with <imei>."),
                      QStringLiteral("imei")});
    parser.addOption({QStringLiteral("modem"),
                      QStringLiteral("Run ModemManager with one modem per --modem <imei>."),
                      QStringLiteral("imei")});
    parser.addOption({QStringLiteral("mce"),
                      QStringLiteral("Run com.nokia.mce answering get_device_mode with <mode>."),
                      QStringLiteral("mode")});
    parser.addOption({QStringLiteral("nm"),
                      QStringLiteral("Run NetworkManager in <state>: online, site, local, offline, "
                                     "asleep or a number 10..70."),
                      QStringLiteral("state")});
    parser.addOption({QStringLiteral("nm-radios-off"),
                      QStringLiteral("Start NetworkManager with WirelessEnabled and WwanEnabled "
                                     "false (flight mode).")});
    parser.addOption({QStringLiteral("nmea-stream"),
                      QStringLiteral("Stream <file> once a second on a free loopback port, "
                                     "stamped with the current time; prints "
                                     "socket://127.0.0.1:PORT."),
                      QStringLiteral("file")});
    parser.addOption({QStringLiteral("client"),
                      QStringLiteral("Play the tarvik client on the session bus: own "
                                     "com.qel.tarvik and append the name of every method "
                                     "called on it to <file>, a line each."),
                      QStringLiteral("file")});
    parser.process(app);

    QDBusConnection bus = QDBusConnection::systemBus();
    QTextStream out(stdout);
    QTextStream err(stderr);
    if (parser.isSet(QStringLiteral("client"))) {
        // Started by the bus (D-Bus activation).
        QDBusConnection session = QDBusConnection::sessionBus();
        auto* recorder = new CClientRecorder;
        recorder->setParent(&app);
        const QString path = parser.value(QStringLiteral("client"));
        QObject::connect(recorder, &CClientRecorder::called, &app, [path](const QString& method) {
            QFile file(path);
            if (file.open(QIODevice::WriteOnly | QIODevice::Append)) {
                file.write(method.toUtf8() + '\n');
            }
        });
        if (!session.registerObject(QStringLiteral("/com/qel/tarvik"), recorder,
                                    QDBusConnection::ExportScriptableSlots) ||
            !session.registerService(QStringLiteral("com.qel.tarvik"))) {
            err << "tarvik-fakes: cannot play the client: " << session.lastError().message()
                << Qt::endl;
            return 1;
        }
    }
    const bool needsBus = parser.isSet(QStringLiteral("sim")) ||
                          parser.isSet(QStringLiteral("modem")) ||
                          parser.isSet(QStringLiteral("mce")) || parser.isSet(QStringLiteral("nm"));
    if (needsBus && !bus.isConnected()) {
        err << "tarvik-fakes: no bus: " << bus.lastError().message() << Qt::endl;
        return 1;
    }
    bool ok = true;
    if (parser.isSet(QStringLiteral("sim"))) {
        auto* sim = new CFakeSim(parser.value(QStringLiteral("sim")), &app);
        ok = sim->registerOn(bus) && ok;
    }
    if (parser.isSet(QStringLiteral("modem"))) {
        auto* mm = new CFakeModemManager(parser.values(QStringLiteral("modem")), &app);
        ok = mm->registerOn(bus) && ok;
    }
    if (parser.isSet(QStringLiteral("mce"))) {
        auto* mce = new CFakeMce(parser.value(QStringLiteral("mce")), &app);
        ok = mce->registerOn(bus) && ok;
    }
    if (parser.isSet(QStringLiteral("nm"))) {
        const uint state = CFakeNetworkManager::stateFromString(parser.value(QStringLiteral("nm")));
        if (state == 0) {
            err << "tarvik-fakes: unknown NetworkManager state "
                << parser.value(QStringLiteral("nm")) << Qt::endl;
            return 1;
        }
        auto* nm = new CFakeNetworkManager(state, &app);
        if (parser.isSet(QStringLiteral("nm-radios-off"))) {
            nm->setWirelessEnabled(false);
            nm->setWwanEnabled(false);
        }
        ok = nm->registerOn(bus) && ok;
    }
    if (parser.isSet(QStringLiteral("nmea-stream"))) {
        auto* streamer = new CNmeaStreamer(&app);
        if (!streamer->loadFile(parser.value(QStringLiteral("nmea-stream"))) ||
            !streamer->listen()) {
            err << "tarvik-fakes: cannot stream " << parser.value(QStringLiteral("nmea-stream"))
                << Qt::endl;
            return 1;
        }
        streamer->start(1000);
        out << streamer->sourceUrl() << Qt::endl;
    }
    if (!ok) {
        err << "tarvik-fakes: could not register: " << bus.lastError().message() << Qt::endl;
        return 1;
    }
    out << "ready" << Qt::endl;
    return app.exec();
}
