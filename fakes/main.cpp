// tarvik-fakes: stand-ins for the platform services the client talks to on the system
// bus, for tests and demos. Each service named on the command line is registered on the
// bus given by DBUS_SYSTEM_BUS_ADDRESS (or the session bus with --session); the program
// prints "ready" once every name is owned and runs until terminated.
#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusError>
#include <QTextStream>

#include "cfakemodemmanager.h"
#include "cfakesim.h"

using namespace Dravo::Test;

int main(int argc, char* argv[])
{
    QCoreApplication app(argc, argv);
    QCommandLineParser parser;
    parser.setApplicationDescription(
        QStringLiteral("Fake platform services for tarvik tests: SIM, ModemManager."));
    parser.addHelpOption();
    parser.addOption({QStringLiteral("session"), QStringLiteral("Use the session bus.")});
    parser.addOption({QStringLiteral("sim"),
                      QStringLiteral("Run com.nokia.phone.SIM answering get_imei with <imei>."),
                      QStringLiteral("imei")});
    parser.addOption({QStringLiteral("modem"),
                      QStringLiteral("Run ModemManager with one modem per --modem <imei>."),
                      QStringLiteral("imei")});
    parser.process(app);

    QDBusConnection bus = parser.isSet(QStringLiteral("session")) ? QDBusConnection::sessionBus()
                                                                   : QDBusConnection::systemBus();
    QTextStream out(stdout);
    QTextStream err(stderr);
    if (!bus.isConnected()) {
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
    if (!ok) {
        err << "tarvik-fakes: could not register: " << bus.lastError().message() << Qt::endl;
        return 1;
    }
    out << "ready" << Qt::endl;
    return app.exec();
}
