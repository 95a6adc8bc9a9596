// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The simulator as the client meets it: a separate process on a private session bus,
// driven by the client's signals; this test plays the client, owns "com.qel.tarvik",
// records the calls it receives and looks into the shared database.
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusInterface>
#include <QDBusMessage>
#include <QDBusReply>
#include <QFile>
#include <QTest>

#include "cclientrecorder.h"
#include "cprivatebus.h"
#include "ctarvikstorage.h"
#include "storagefixture.h"

using namespace Dravo;

namespace {

const QString kDaemonService = QStringLiteral("com.qel.tarvikdaemon");
const QString kDaemonPath = QStringLiteral("/com/qel/tarvikdaemon");
const QString kDaemonInterface = QStringLiteral("com.qel.TarvikDaemon");
const QString kClientPath = QStringLiteral("/com/qel/tarvik");
const QString kClientInterface = QStringLiteral("com.qel.TarvikClient");

}  // namespace

class SimDaemonTest : public QObject
{
    Q_OBJECT

private:
    Test::CPrivateBuses m_buses;
    Test::CClientRecorder m_client;
    QScopedPointer<Test::CScopedHome> m_pHome;
    QScopedPointer<Test::CHelperProcess> m_pSim;

    bool startSim(const QStringList& args);
    void emitClientSignal(const QString& name);
    // The database as the client has it after its first start: template, own number.
    void createDatabase(const QString& number, int regflag);
    static QList<CTarvik> folder(CTarvikStorage::eFolderName name);
    static CTSettings settings();
    // Waits until the simulator has made `count` calls.
    bool waitForCalls(int count, int timeoutMs = 5000);
    // A silent outcome: a connection check sent after the request is answered, and that
    // answer is the only call, so the request had its turn and made none.
    void expectSilence();

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void registration_data();
    void registration();
    void sendReceive_data();
    void sendReceive();
    void openInboxAfterClientStart();
    void controlDeliversAndOpensInbox();
};

void SimDaemonTest::initTestCase()
{
    QVERIFY2(m_buses.start(), qPrintable(m_buses.errorString()));
    QDBusConnection bus = QDBusConnection::sessionBus();
    QVERIFY(bus.isConnected());
    QVERIFY(bus.registerObject(kClientPath, &m_client, QDBusConnection::ExportScriptableSlots));
    QVERIFY(bus.registerService(QStringLiteral("com.qel.tarvik")));
    QVERIFY(QFile::exists(Test::binaryPath(QStringLiteral("tarvik-simd"))));
}

void SimDaemonTest::init()
{
    m_pHome.reset(new Test::CScopedHome);
    m_client.m_lstCalls.clear();
}

void SimDaemonTest::cleanup()
{
    if (m_pSim) {
        m_pSim->stop();
        if (QTest::currentTestFailed()) {
            qWarning().noquote() << "simulator log:\n" +
                                        QString::fromLocal8Bit(
                                            m_pSim->process().readAllStandardError());
        }
    }
    m_pSim.reset();
    m_pHome.reset();
}

bool SimDaemonTest::startSim(const QStringList& args)
{
    m_pSim.reset(new Test::CHelperProcess);
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("HOME"), m_pHome->path());
    return m_pSim->start(Test::binaryPath(QStringLiteral("tarvik-simd")), args,
                         QStringLiteral("ready"), 10000, env);
}

void SimDaemonTest::emitClientSignal(const QString& name)
{
    QVERIFY(QDBusConnection::sessionBus().send(
        QDBusMessage::createSignal(kClientPath, kClientInterface, name)));
}

void SimDaemonTest::createDatabase(const QString& number, int regflag)
{
    CTarvikStorage::initResources();
    CTarvikStorage storage(QStringLiteral("test_create"));
    QVERIFY(storage.isOpen());
    CTSettings values;
    values.setMynumber(number);
    values.setScreenname(QStringLiteral("Tester"));
    values.setRegflag(regflag);
    QVERIFY(storage.saveSettings(values, CTSettings::eMaskMynumber | CTSettings::eMaskScreenname |
                                             CTSettings::eMaskRegflag));
}

QList<CTarvik> SimDaemonTest::folder(CTarvikStorage::eFolderName name)
{
    CTarvikStorage storage(QStringLiteral("test_reader"));
    QList<CTarvik> tarviks;
    storage.getTarviks(name, tarviks);
    return tarviks;
}

CTSettings SimDaemonTest::settings()
{
    CTarvikStorage storage(QStringLiteral("test_reader"));
    CTSettings values;
    storage.getSettings(values);
    return values;
}

bool SimDaemonTest::waitForCalls(int count, int timeoutMs)
{
    return QTest::qWaitFor([&] { return m_client.m_lstCalls.size() >= count; }, timeoutMs);
}

void SimDaemonTest::expectSilence()
{
    emitClientSignal(QStringLiteral("CheckConnectionRequest"));
    QVERIFY(waitForCalls(1));
    QCOMPARE(m_client.m_lstCalls, QStringList{QStringLiteral("OnConnectionCheckSucceed")});
}

void SimDaemonTest::registration_data()
{
    QTest::addColumn<QString>("mode");
    QTest::addColumn<QString>("number");
    QTest::addColumn<int>("regflagBefore");
    QTest::addColumn<QString>("call");
    QTest::addColumn<int>("regflagAfter");

    QTest::newRow("succeed") << "succeed" << QString("+3725550100") << 0 << "OnRegistrationSucceed"
                             << 1;
    QTest::newRow("fail clears an old flag")
        << "fail" << QString("+3725550100") << 1 << "OnRegistrationFailed" << 0;
    QTest::newRow("no own number") << "succeed" << QString() << 0 << "OnRegistrationFailed" << 0;
    QTest::newRow("silent") << "silent" << QString("+3725550100") << 0 << "" << 0;
}

void SimDaemonTest::registration()
{
    QFETCH(QString, mode);
    QFETCH(QString, number);
    QFETCH(int, regflagBefore);
    QFETCH(QString, call);
    createDatabase(number, regflagBefore);
    QVERIFY(startSim({QStringLiteral("--delay=0"), QStringLiteral("--register=") + mode}));
    emitClientSignal(QStringLiteral("RegistrationRequest"));
    if (call.isEmpty()) {
        expectSilence();
    } else {
        QVERIFY(waitForCalls(1));
        QCOMPARE(m_client.m_lstCalls, QStringList{call});
    }
    const CTSettings after = settings();
    QTEST(after.regflag(), "regflagAfter");
    // The rest of what the client saved stays.
    QCOMPARE(after.mynumber(), number);
    QCOMPARE(after.screenname(), QStringLiteral("Tester"));
}

void SimDaemonTest::sendReceive_data()
{
    QTest::addColumn<QString>("mode");
    QTest::addColumn<QStringList>("calls");
    QTest::addColumn<int>("sent");
    QTest::addColumn<int>("failed");

    // Two queued messages; one scripted incoming message on every request.
    QTest::newRow("all") << "all" << QStringList{"OnMessagesSent", "OnMessagesReceived"} << 2 << 0;
    QTest::newRow("partial") << "partial"
                             << QStringList{"OnMessagesPartiallySent", "OnMessagesReceived"} << 1
                             << 1;
    QTest::newRow("fail") << "fail" << QStringList{"OnMessagesSendFailed", "OnMessagesReceived"}
                          << 0 << 2;
    QTest::newRow("silent") << "silent" << QStringList() << 0 << 0;
}

void SimDaemonTest::sendReceive()
{
    QFETCH(QString, mode);
    QFETCH(QStringList, calls);
    QFETCH(int, sent);
    QFETCH(int, failed);
    createDatabase(QStringLiteral("+3725550100"), 1);
    {
        CTarvikStorage storage(QStringLiteral("test_writer"));
        QList<int> tids;
        QVERIFY(storage.saveTarviks({Test::makeTarvik("first", 5), Test::makeTarvik("second", 50)},
                                    CTarvikStorage::eFolderOutbox, tids));
    }
    QVERIFY(startSim({QStringLiteral("--delay=0"), QStringLiteral("--send=") + mode,
                      QStringLiteral("--incoming=1")}));
    emitClientSignal(QStringLiteral("SendReceiveRequest"));
    if (calls.isEmpty()) {
        expectSilence();
    } else {
        QVERIFY(waitForCalls(calls.size()));
        QCOMPARE(m_client.m_lstCalls, calls);
    }

    QCOMPARE(folder(CTarvikStorage::eFolderSent).size(), sent);
    const QList<CTarvik> outbox = folder(CTarvikStorage::eFolderOutbox);
    QCOMPARE(outbox.size(), 2 - sent);
    int stillQueued = 0;
    for (const CTarvik& tarvik : outbox) {
        stillQueued += tarvik.flag();
    }
    QCOMPARE(stillQueued, 2 - sent - failed);  // only silence leaves tflag 1
    const QList<CTarvik> inbox = folder(CTarvikStorage::eFolderInbox);
    QCOMPARE(inbox.size(), calls.contains(QStringLiteral("OnMessagesReceived")) ? 1 : 0);
    for (const CTarvik& tarvik : inbox) {
        QCOMPARE(tarvik.flag(), 1);
        QCOMPARE(tarvik.to(), QStringLiteral("+3725550100"));
        QVERIFY(!tarvik.title().isEmpty() && !tarvik.screenname().isEmpty());
        QVERIFY(tarvik.latitude() != 0.0 || tarvik.longitude() != 0.0);
    }
}

void SimDaemonTest::openInboxAfterClientStart()
{
    createDatabase(QStringLiteral("+3725550100"), 1);
    QVERIFY(startSim({QStringLiteral("--delay=0"), QStringLiteral("--open-inbox-after=100")}));
    emitClientSignal(QStringLiteral("ApplicationStarted"));
    QVERIFY(waitForCalls(1));
    QCOMPARE(m_client.m_lstCalls, QStringList{QStringLiteral("OpenInbox")});
}

void SimDaemonTest::controlDeliversAndOpensInbox()
{
    createDatabase(QStringLiteral("+3725550100"), 1);
    QVERIFY(startSim({QStringLiteral("--delay=0"), QStringLiteral("--open-inbox-on-receive")}));
    QDBusInterface control(kDaemonService, QStringLiteral("/com/qel/tarviksim"),
                           QStringLiteral("com.qel.TarvikSimControl"));
    QDBusReply<int> delivered = control.call(QStringLiteral("DeliverNow"), 3);
    QVERIFY2(delivered.isValid(), qPrintable(delivered.error().message()));
    QCOMPARE(delivered.value(), 3);
    QVERIFY(waitForCalls(2));
    QCOMPARE(m_client.m_lstCalls,
             (QStringList{QStringLiteral("OnMessagesReceived"), QStringLiteral("OpenInbox")}));
    const QList<CTarvik> inbox = folder(CTarvikStorage::eFolderInbox);
    QCOMPARE(inbox.size(), 3);
    QSet<QString> senders;
    for (const CTarvik& tarvik : inbox) {
        senders.insert(tarvik.from());
    }
    QCOMPARE(senders.size(), 3);
}

QTEST_GUILESS_MAIN(SimDaemonTest)
#include "tst_simdaemon.moc"
