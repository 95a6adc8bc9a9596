// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include <signal.h>
#include <unistd.h>

#include <memory>

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include "cbuscall.h"
#include "cprivatebus.h"

using Dravo::Test::binaryPath;
using Dravo::Test::CHelperProcess;
using Dravo::Test::CScopedMount;

namespace {
const char* const kShownMarker = "tarvik: main window shown at";

// The client's start-up, as its log must show it, in this order.
const QStringList kStartupLines = {
    "Tarvik::DBusObject::DBusObject constructor start",
    "Tarvik::DBusObject::DBusObject constructor end",
    "CMainMenuForm::CMainMenuForm started",
    "Tarvik::DBusObject::EmitApplicationStarted",
    "CMainFormStack::storageInitialized",
    "CMainFormStack::settingsGotten",
};

// True when `lines` holds `wanted` as a subsequence, in order.
bool containsInOrder(const QStringList& lines, const QStringList& wanted)
{
    int iNext = 0;
    for (const QString& line : lines) {
        if (iNext < wanted.size() && line == wanted.at(iNext))
            ++iNext;
    }
    return iNext == wanted.size();
}
}  // namespace

class TestE2e : public QObject
{
    Q_OBJECT

private:
    Dravo::Test::CPrivateBuses m_buses;
    QDBusConnection m_bus = QDBusConnection(QString());
    QList<QDBusMessage> m_lstSignals;

    QProcessEnvironment env(const QString& strHome)
    {
        QProcessEnvironment e = QProcessEnvironment::systemEnvironment();
        e.insert("HOME", strHome);
        e.insert("DBUS_SESSION_BUS_ADDRESS", m_buses.session().address());
        e.insert("DBUS_SYSTEM_BUS_ADDRESS", m_buses.system().address());
        e.insert("QT_QPA_PLATFORM", "offscreen");
        e.insert("TARVIK_REPORT_SHOWN", "1");
        e.remove("DISPLAY");
        e.remove("WAYLAND_DISPLAY");
        return e;
    }

    static QStringList logOf(const QString& strHome)
    {
        QFile file(strHome + "/.tarvik/tarvik.log");
        if (!file.open(QIODevice::ReadOnly))
            return {};
        return QString::fromUtf8(file.readAll()).split('\n');
    }

    // What the client reported its window to show when it first appeared.
    static QStringList shownNames(const CHelperProcess& client)
    {
        const QString strPrefix = "tarvik: window shows: ";
        for (const QString& line : QString::fromLocal8Bit(client.output()).split('\n')) {
            if (line.startsWith(strPrefix))
                return line.mid(strPrefix.size()).split(" | ", Qt::SkipEmptyParts);
        }
        return {};
    }

    QStringList busSignalNames() const
    {
        QStringList lst;
        for (const QDBusMessage& msg : m_lstSignals)
            lst << msg.member();
        return lst;
    }

    QDBusMessage introspectClient()
    {
        return Dravo::Test::callAndWait(
            m_bus,
            QDBusMessage::createMethodCall("com.qel.tarvik", "/com/qel/tarvik",
                                           "org.freedesktop.DBus.Introspectable", "Introspect"));
    }

    bool startSimulator(CHelperProcess& sim, const QString& strHome)
    {
        return sim.start(binaryPath("tarvik-simd"),
                         {"--register-at-start", "--number", "+15550100", "--delay", "0"}, "ready",
                         10000, env(strHome));
    }

    // Ends a client the way a session does, and reports its exit status.
    static int terminate(CHelperProcess& client)
    {
        QProcess& p = client.process();
        ::kill(static_cast<pid_t>(p.processId()), SIGTERM);
        if (!p.waitForFinished(10000))
            return -1000;
        return p.exitStatus() == QProcess::NormalExit ? p.exitCode() : -p.exitCode() - 1;
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY2(m_buses.start(), qPrintable(m_buses.errorString()));
        m_bus = QDBusConnection::connectToBus(m_buses.session().address(), "e2e");
        QVERIFY(m_bus.isConnected());
        QVERIFY(QFile::exists(binaryPath("tarvik")));
        QVERIFY(QFile::exists(binaryPath("tarvik-simd")));
        for (const char* pSig : {"ApplicationStarted", "ApplicationClosed", "RegistrationRequest",
                                 "SendReceiveRequest", "CheckConnectionRequest"}) {
            QVERIFY(m_bus.connect(QString(), "/com/qel/tarvik", "com.qel.TarvikClient", pSig, this,
                                  SLOT(onBusSignal(QDBusMessage))));
        }
    }

    void init() { m_lstSignals.clear(); }

    // The whole life of a client beside the simulator.
    void lifeWithSimulator()
    {
        QTemporaryDir home;
        CHelperProcess sim;
        QVERIFY(startSimulator(sim, home.path()));

        CHelperProcess client;
        QVERIFY2(client.start(binaryPath("tarvik"), {}, kShownMarker, 20000, env(home.path())),
                 client.output().constData());

        // On the bus under its name with both of its interfaces (their members are the
        // generated adaptors' and answer in AppDBusObjectTest).
        QVERIFY(m_bus.interface()->isServiceRegistered("com.qel.tarvik"));
        const QString strXml = introspectClient().arguments().value(0).toString();
        QVERIFY2(strXml.contains("<interface name=\"com.qel.TarvikClient\">") &&
                     strXml.contains("<interface name=\"com.qel.TarvikOsso\">"),
                 qPrintable(strXml));

        QTRY_VERIFY(busSignalNames().contains("ApplicationStarted"));
        const QStringList lstLog = logOf(home.path());
        QVERIFY2(containsInOrder(lstLog, kStartupLines), qPrintable(lstLog.join('\n')));
        // A registered account opens on the menu.
        const QStringList lstShown = shownNames(client);
        QVERIFY2(lstShown.contains("Inbox") && lstShown.contains("Send a tarvik"),
                 qPrintable(lstShown.join(" | ")));

        // Quitting tells the daemon. (Deliveries from it are the black-box tests' part.)
        QCOMPARE(terminate(client), 0);
        QTRY_VERIFY(busSignalNames().contains("ApplicationClosed"));
        QCOMPARE(busSignalNames().count("ApplicationClosed"), 1);
        QCOMPARE(logOf(home.path()).filter("Tarvik::DBusObject::EmitApplicationClosed").size(), 1);
        QTRY_VERIFY(!m_bus.interface()->isServiceRegistered("com.qel.tarvik"));
        const QByteArray baSimErr = sim.process().readAllStandardError();
        QVERIFY2(baSimErr.contains("<- OnClientStarted"), baSimErr.constData());
        QVERIFY(baSimErr.contains("<- ApplicationClosed"));
    }

    // Without any session bus the client still starts, logs and quits cleanly.
    void noSessionBus()
    {
        QTemporaryDir home;
        QProcessEnvironment e = env(home.path());
        e.insert("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + home.path() + "/no-bus-here");
        CHelperProcess client;
        QVERIFY2(client.start(binaryPath("tarvik"), {}, kShownMarker, 20000, e),
                 client.output().constData());
        const QStringList lstLog = logOf(home.path());
        QVERIFY2(containsInOrder(lstLog, kStartupLines), qPrintable(lstLog.join('\n')));
        QVERIFY(lstLog.contains("COssoContext::Failed to initialize LibOSSO"));
        QCOMPARE(terminate(client), 0);
        QVERIFY(logOf(home.path()).contains("Tarvik::DBusObject::EmitApplicationClosed"));
    }

    // No daemon on the bus: start-up runs exactly as with one. The user's Qt
    // configuration turns debug output off, as some distributions do; the log keeps it.
    void daemonAbsent()
    {
        QTemporaryDir home;
        QVERIFY(QDir().mkpath(home.path() + "/.config/QtProject"));
        QFile rules(home.path() + "/.config/QtProject/qtlogging.ini");
        QVERIFY(rules.open(QIODevice::WriteOnly));
        rules.write("[Rules]\n*.debug=false\n");
        rules.close();
        QProcessEnvironment e = env(home.path());
        e.insert("XDG_CONFIG_HOME", home.path() + "/.config");
        e.remove("QT_LOGGING_RULES");
        // A start-up waiting for the absent daemon would wait out the bus's 25 s time-out.
        CHelperProcess client;
        QVERIFY(client.start(binaryPath("tarvik"), {}, kShownMarker, 20000, e));
        QVERIFY(containsInOrder(logOf(home.path()), kStartupLines));
        QTRY_VERIFY(busSignalNames().contains("ApplicationStarted"));
        // Fresh account: the registration form covers the menu.
        const QStringList lstShown = shownNames(client);
        QVERIFY2(!lstShown.isEmpty() && !lstShown.contains("Inbox"),
                 qPrintable(lstShown.join(" | ")));
        QCOMPARE(terminate(client), 0);
    }

    // A data directory the client cannot use: it starts, says why on standard error, keeps
    // the window hidden (the settings cannot be read), answers on the bus and quits cleanly.
    void unusableDataDirectory_data()
    {
        QTest::addColumn<QString>("situation");
        QTest::addColumn<QString>("line");
        QTest::newRow("data directory is a file")
            << "file" << QString("CTarvikStorage::createDatabase() failed to create db path");
        QTest::newRow("read-only home")
            << "read-only" << QString("CTarvikStorage::createDatabase() failed to create db path");
        QTest::newRow("full disk")
            << "full" << QString("CTarvikStorage::createDatabase() failed to write to stream: ");
    }

    void unusableDataDirectory()
    {
        QFETCH(QString, situation);
        QFETCH(QString, line);
        const bool bRoot = geteuid() == 0;
        QTemporaryDir home;
        const QString strData = home.path() + "/.tarvik";
        QStringList lstArgs;
        std::unique_ptr<CScopedMount> pMount;
        if (situation == "file") {
            QFile file(strData);
            QVERIFY(file.open(QIODevice::WriteOnly));
        } else if (situation == "read-only") {
            if (bRoot) {
                pMount = std::make_unique<CScopedMount>(home.path(), "1m");
                if (!pMount->mounted() || !pMount->remountReadOnly())
                    QSKIP("NEEDS ROOT WITH MOUNT: a read-only home needs a tmpfs mount");
            } else {
                QVERIFY(QFile::setPermissions(home.path(),
                                              QFileDevice::ReadOwner | QFileDevice::ExeOwner));
            }
        } else {
            if (!bRoot)
                QSKIP("NEEDS ROOT WITH MOUNT: a full disk needs a private tmpfs");
            pMount = std::make_unique<CScopedMount>(strData, "64k");
            if (!pMount->mounted())
                QSKIP("NEEDS ROOT WITH MOUNT: no permission to mount a tmpfs");
            QFile filler(strData + "/filler");
            QVERIFY(filler.open(QIODevice::WriteOnly));
            const QByteArray block(4096, 'f');
            while (filler.write(block) == block.size() && filler.flush()) {
            }
            lstArgs << "logtoconsole";  // a full disk takes no log file either
        }

        QProcess client;
        client.setProcessEnvironment(env(home.path()));
        client.start(binaryPath("tarvik"), lstArgs);
        QVERIFY(client.waitForStarted(10000));
        QString strErr;
        const auto errContains = [&](const QString& text) {
            strErr += QString::fromLocal8Bit(client.readAllStandardError());
            return strErr.contains(text);
        };
        QTRY_VERIFY2_WITH_TIMEOUT(
            errContains("CMainFormStack::settingsGotten: failed to get settings from storage"),
            qPrintable(strErr), 20000);
        QVERIFY2(strErr.contains(line), qPrintable(strErr));
        if (situation != "full")
            QVERIFY(strErr.contains("main::failed to create logs path"));
        // Alive and answering, window hidden.
        QCOMPARE(introspectClient().type(), QDBusMessage::ReplyMessage);
        ::kill(static_cast<pid_t>(client.processId()), SIGTERM);
        QVERIFY(client.waitForFinished(10000));
        QCOMPARE(client.exitStatus(), QProcess::NormalExit);
        QCOMPARE(client.exitCode(), 0);
        QVERIFY(!QFile::exists(strData + "/tarvikdb.sqlite"));
        if (!bRoot)
            QFile::setPermissions(home.path(), QFileDevice::ReadOwner | QFileDevice::WriteOwner |
                                                   QFileDevice::ExeOwner);
    }

public Q_SLOTS:
    void onBusSignal(const QDBusMessage& message) { m_lstSignals << message; }
};

QTEST_GUILESS_MAIN(TestE2e)
#include "tst_e2e.moc"
