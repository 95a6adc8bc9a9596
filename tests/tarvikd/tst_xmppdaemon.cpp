// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// tarvikd against a real prosody on loopback: users with their own home, bus and daemon,
// the client played by a recorder on each bus, and an XMPP client that is not ours.
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTest>

#include <QScopeGuard>
#include <QSignalSpy>
#include <QThread>

#include <signal.h>

#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QProcess>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>

#include "cbuscall.h"
#include "cfakenetworkmanager.h"
#include "cfakenotifications.h"
#include "cxmppconnection.h"
#include "cxmppfixture.h"
#include "storagefixture.h"

using namespace Dravo;
using namespace Dravo::Test;

class XmppDaemonTest : public QObject
{
    Q_OBJECT

private:
    CLocalServer m_server;
    int m_iNextNumber = 0;

    // A number nobody has used on this server yet.
    QString nextNumber();
    // A user with a number nobody has used on this server yet, registered when asked.
    CXmppUser* newUser(const QString& name, bool registered = true, const QString& caFile = {});
    // Waits until `user`'s inbox holds `count` messages; the last is a marker sent after
    // everything else, so a copy of an earlier one would have arrived before it.
    static bool waitForInbox(CXmppUser& user, int count, int timeoutMs = 20000);
    // The inbox's titles, sorted.
    static QStringList titles(const CXmppUser& user);
    static void sendAndWait(CXmppUser& user, const QString& outcome);
    void foreignSend(const QString& to, const QString& stanzaOrBody, bool raw);

private Q_SLOTS:
    void initTestCase();
    void cleanup();
    void sessionsOpenEveryTime();
    void exchangeBothWays();
    void registration_data();
    void registration();
    void offlineRecipientGetsItOnce();
    void serverFailsDuringSend_data();
    void serverFailsDuringSend();
    void outboxRewrittenDuringSend();
    void foreignClients();
    void hostileStanzas();
    void pauseAndClientState();
    void networkBackConnectsAtOnce();
    void startedByTheBusOnce();
    void announcedWhileClientClosed_data();
    void announcedWhileClientClosed();
    void killedMidReceiveLosesNothing();
};

QString XmppDaemonTest::nextNumber()
{
    return QStringLiteral("+372 5%1 %2")
        .arg(QCoreApplication::applicationPid() % 10000, 4, 10, QLatin1Char('0'))
        .arg(++m_iNextNumber, 3, 10, QLatin1Char('0'));
}

CXmppUser* XmppDaemonTest::newUser(const QString& name, bool registered, const QString& caFile)
{
    auto* user = new CXmppUser(nextNumber(), name);
    if (!user->start(m_server, caFile)) {
        qWarning() << "the user's daemon did not start";
        return user;
    }
    if (registered) {
        const QString verdict = user->registerAccount();
        if (verdict != QLatin1String("OnRegistrationSucceed")) {
            qWarning().noquote() << "registration: " + verdict + "\n" + user->daemonLog();
        }
    }
    return user;
}

bool XmppDaemonTest::waitForInbox(CXmppUser& user, int count, int timeoutMs)
{
    return QTest::qWaitFor(
        [&]() { return user.folder(CTarvikStorage::eFolderInbox).size() >= count; }, timeoutMs);
}

QStringList XmppDaemonTest::titles(const CXmppUser& user)
{
    QStringList result;
    for (const CTarvik& tarvik : user.folder(CTarvikStorage::eFolderInbox)) {
        result << tarvik.title();
    }
    result.sort();
    return result;
}

void XmppDaemonTest::sendAndWait(CXmppUser& user, const QString& outcome)
{
    const int before = user.calls().count(outcome);
    user.emitSignal(QStringLiteral("SendReceiveRequest"));
    QVERIFY2(user.waitForCall(outcome, before + 1, 40000),
             qPrintable(user.calls().join(' ') + "\n" + user.daemonLog()));
}

void XmppDaemonTest::initTestCase()
{
    // Sessions run in this process too: as in the daemon, a closed socket is an error, not
    // the end of the process.
    signal(SIGPIPE, SIG_IGN);
    QVERIFY(QFileInfo::exists(binaryPath(QStringLiteral("tarvikd"))));
    QVERIFY2(m_server.start(), qPrintable(m_server.errorString()));
    QVERIFY(m_server.addAccount(QStringLiteral("stranger"), QStringLiteral("stranger-pw")));
}

void XmppDaemonTest::cleanup()
{
    // Every daemon of the test has been stopped by now.
    const QStringList exits = CXmppUser::uncleanExits();
    CXmppUser::uncleanExits().clear();
    QVERIFY2(exits.isEmpty(), qPrintable(exits.join(QLatin1Char('\n'))));
}

void XmppDaemonTest::sessionsOpenEveryTime()
{
    // Logins in a row, each after the last one ended: one that stalls anywhere in its
    // handshake (a stream restart the socket does not announce) shows here.
    QVERIFY(m_server.addAccount(QStringLiteral("looper"), QStringLiteral("looper-pw")));
    xmpp_initialize();
    QThread thread;
    thread.start();
    auto* connection = new CXmppConnection;
    connection->moveToThread(&thread);
    const auto cleanup = qScopeGuard([&]() {
        QMetaObject::invokeMethod(connection, "finish", Qt::BlockingQueuedConnection);
        connection->deleteLater();
        thread.quit();
        thread.wait();
    });
    CXmppConnection::CEndpoint endpoint;
    endpoint.m_strJid = QStringLiteral("looper@") + m_server.domain();
    endpoint.m_strPassword = QStringLiteral("looper-pw");
    endpoint.m_strHost = QStringLiteral("127.0.0.1");
    endpoint.m_uPort = m_server.port();
    endpoint.m_strCaFile = m_server.caFile();
    QSignalSpy connected(connection, &CXmppConnection::connected);
    QSignalSpy disconnected(connection, &CXmppConnection::disconnected);
    for (int i = 1; i <= 100; ++i) {
        QMetaObject::invokeMethod(connection, "open", Qt::QueuedConnection,
                                  Q_ARG(Dravo::CXmppConnection::CEndpoint, endpoint));
        QVERIFY2(QTest::qWaitFor([&]() { return connected.size() == i; }, 5000),
                 qPrintable(QStringLiteral("login %1 stalled").arg(i)));
    }
    QCOMPARE(disconnected.size(), 0);
}

void XmppDaemonTest::exchangeBothWays()
{
    QScopedPointer<CXmppUser> alice(newUser(QStringLiteral("Alice")));
    QScopedPointer<CXmppUser> bob(newUser(QStringLiteral("Bob")));
    // To a number as people write it, and back to a plain XMPP address.
    const CTarvik toBob = alice->message(bob->number(), QStringLiteral("<b>Hi</b> & \"you\""));
    const CTarvik toAlice = bob->message(alice->jid(m_server), QStringLiteral("Right back"));
    alice->queue(toBob);
    bob->queue(toAlice);
    sendAndWait(*alice, QStringLiteral("OnMessagesSent"));
    sendAndWait(*bob, QStringLiteral("OnMessagesSent"));
    QVERIFY(waitForInbox(*bob, 1));
    QVERIFY(waitForInbox(*alice, 1));
    QVERIFY(bob->waitForCall(QStringLiteral("OnMessagesReceived")));

    const struct
    {
        CXmppUser* sender;
        CXmppUser* receiver;
        CTarvik sent;
    } cases[] = {{alice.data(), bob.data(), toBob}, {bob.data(), alice.data(), toAlice}};
    for (const auto& c : cases) {
        const QList<CTarvik> inbox = c.receiver->folder(CTarvikStorage::eFolderInbox);
        QCOMPARE(inbox.size(), 1);
        const CTarvik& got = inbox.first();
        QString digits = c.sender->number();
        digits.remove(QLatin1Char(' '));
        QCOMPARE(fields(got), fields(asReceived(c.sent, digits, got.guid())));
        // The sender keeps every field in its sent folder, under the id that went out.
        QVERIFY(c.sender->folder(CTarvikStorage::eFolderOutbox).isEmpty());
        const QList<CTarvik> sent = c.sender->folder(CTarvikStorage::eFolderSent);
        QCOMPARE(sent.size(), 1);
        CTarvik kept = c.sent;
        kept.setGuid(got.guid());
        kept.setFlag(0);
        QCOMPARE(fields(sent.first()), fields(kept));
    }
}

void XmppDaemonTest::registration_data()
{
    QTest::addColumn<QString>("setup");
    QTest::addColumn<QString>("verdict");
    QTest::addColumn<int>("regflag");
    QTest::newRow("a new number") << "new"
                                  << "OnRegistrationSucceed" << 1;
    QTest::newRow("the number is taken") << "taken"
                                         << "OnRegistrationFailed" << 0;
    QTest::newRow("not a number") << "letters"
                                  << "OnRegistrationFailed" << 0;
    QTest::newRow("again, with the kept password") << "again"
                                                   << "OnRegistrationSucceed" << 1;
    QTest::newRow("a certificate we do not trust") << "certificate"
                                                   << "OnRegistrationFailed" << 0;
}

void XmppDaemonTest::registration()
{
    QFETCH(QString, setup);
    QFETCH(QString, verdict);
    QFETCH(int, regflag);
    const QString caFile = setup == QLatin1String("certificate")
                               ? QStringLiteral("/etc/ssl/certs/ca-certificates.crt")
                               : QString();
    QScopedPointer<CXmppUser> user(newUser(QStringLiteral("Reg"), false, caFile));
    if (setup == QLatin1String("taken")) {
        QString digits = user->number();
        digits.remove(QRegularExpression(QStringLiteral("[^0-9]")));
        QVERIFY(m_server.addAccount(digits, QStringLiteral("someone-elses")));
    }
    if (setup == QLatin1String("again")) {
        QVERIFY2(user->registerAccount() == QLatin1String("OnRegistrationSucceed"),
                 qPrintable(user->daemonLog()));
        user->stopDaemon();
        QVERIFY(user->startDaemon());
    }
    CXmppUser* subject = user.data();
    QScopedPointer<CXmppUser> letters;
    if (setup == QLatin1String("letters")) {
        letters.reset(new CXmppUser(QStringLiteral("call me"), QStringLiteral("Reg")));
        QVERIFY(letters->start(m_server));
        subject = letters.data();
    }
    QCOMPARE(subject->registerAccount(), verdict);
    QCOMPARE(subject->settings().regflag(), regflag);
    const QString log = subject->daemonLog();
    const QFileInfo passwords(subject->home() + QStringLiteral("/.config/tarvik/tarvikd-accounts"));
    if (regflag == 1) {
        QVERIFY(passwords.exists());
        const QFile::Permissions others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup |
                                          QFile::ReadOther | QFile::WriteOther | QFile::ExeOther;
        QCOMPARE(passwords.permissions() & (others | QFile::ReadOwner | QFile::WriteOwner),
                 QFile::ReadOwner | QFile::WriteOwner);
        QFile file(passwords.filePath());
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray password = file.readAll().trimmed().split(' ').last();
        QVERIFY(password.size() >= 20);
        QVERIFY2(!log.contains(QString::fromLatin1(password)), "the password is never logged");
        QFile database(subject->home() + QStringLiteral("/.tarvik/tarvikdb.sqlite"));
        QVERIFY(database.open(QIODevice::ReadOnly));
        QVERIFY2(!database.readAll().contains(password), "the password stays out of the database");
    }
    if (setup == QLatin1String("certificate")) {
        QVERIFY2(log.contains(QLatin1String("not trusted")), qPrintable(log));
    }
    if (setup == QLatin1String("again")) {
        QVERIFY2(log.contains(QLatin1String("with the kept password")), qPrintable(log));
    }
}

void XmppDaemonTest::offlineRecipientGetsItOnce()
{
    QScopedPointer<CXmppUser> alice(newUser(QStringLiteral("Alice")));
    QScopedPointer<CXmppUser> bob(newUser(QStringLiteral("Bob")));
    bob->stopDaemon();
    alice->queue(alice->message(bob->number(), QStringLiteral("While you were out")));
    sendAndWait(*alice, QStringLiteral("OnMessagesSent"));
    QVERIFY(bob->startDaemon());
    QVERIFY(waitForInbox(*bob, 1));
    alice->queue(alice->message(bob->number(), QStringLiteral("Marker")));
    sendAndWait(*alice, QStringLiteral("OnMessagesSent"));
    QVERIFY(waitForInbox(*bob, 2));
    QCOMPARE(titles(*bob),
             (QStringList{QStringLiteral("Marker"), QStringLiteral("While you were out")}));
}

void XmppDaemonTest::serverFailsDuringSend_data()
{
    QTest::addColumn<bool>("killed");
    QTest::newRow("killed before it answered") << true;
    QTest::newRow("stopped") << false;
}

void XmppDaemonTest::serverFailsDuringSend()
{
    QFETCH(bool, killed);
    QScopedPointer<CXmppUser> alice(newUser(QStringLiteral("Alice")));
    QScopedPointer<CXmppUser> bob(newUser(QStringLiteral("Bob")));
    alice->queue(alice->message(bob->number(), QStringLiteral("Through the storm")));
    // The server takes the stanzas into its socket but handles none of them.
    QVERIFY(m_server.pause(true));
    alice->emitSignal(QStringLiteral("SendReceiveRequest"));
    QVERIFY(QTest::qWaitFor(
        [&]() { return alice->daemonLog().contains(QLatin1String("<- SendReceiveRequest")); }));
    QTest::qWait(300);
    if (killed) {
        QVERIFY(m_server.kill());
    } else {
        QVERIFY(m_server.pause(false));
        QVERIFY(m_server.stop());
    }
    // Either the server confirmed before it went, or the message waits in the outbox.
    QVERIFY(QTest::qWaitFor(
        [&]() {
            return alice->calls().contains(QStringLiteral("OnMessagesSendFailed")) ||
                   alice->calls().contains(QStringLiteral("OnMessagesSent"));
        },
        40000));
    if (alice->calls().contains(QStringLiteral("OnMessagesSendFailed"))) {
        const QList<CTarvik> outbox = alice->folder(CTarvikStorage::eFolderOutbox);
        QCOMPARE(outbox.size(), 1);
        QCOMPARE(outbox.first().flag(), 0);
    } else {
        QVERIFY(!killed);
    }
    QVERIFY2(m_server.restart(), qPrintable(m_server.errorString()));
    for (CXmppUser* user : {alice.data(), bob.data()}) {
        user->emitSignal(QStringLiteral("CheckConnectionRequest"));
        QVERIFY2(user->waitForCall(QStringLiteral("OnConnectionCheckSucceed"), 1, 30000),
                 qPrintable(user->daemonLog()));
    }
    // The client queues the failed message again; a marker follows.
    const QList<CTarvik> outbox = alice->folder(CTarvikStorage::eFolderOutbox);
    for (const CTarvik& failed : outbox) {
        alice->queue(failed);
    }
    alice->queue(alice->message(bob->number(), QStringLiteral("Marker")));
    sendAndWait(*alice, QStringLiteral("OnMessagesSent"));
    QVERIFY(waitForInbox(*bob, 2));
    QCOMPARE(titles(*bob),
             (QStringList{QStringLiteral("Marker"), QStringLiteral("Through the storm")}));
}

void XmppDaemonTest::outboxRewrittenDuringSend()
{
    QScopedPointer<CXmppUser> alice(newUser(QStringLiteral("Alice")));
    QScopedPointer<CXmppUser> bob(newUser(QStringLiteral("Bob")));
    alice->queue(alice->message(bob->number(), QStringLiteral("First")));
    QVERIFY(m_server.pause(true));
    alice->emitSignal(QStringLiteral("SendReceiveRequest"));
    QVERIFY(QTest::qWaitFor(
        [&]() { return alice->daemonLog().contains(QLatin1String("<- SendReceiveRequest")); }));
    // Meanwhile the client sends another message: it reads the outbox, puts the new one
    // first and saves the whole list again.
    alice->queue(alice->message(bob->number(), QStringLiteral("Second")));
    QVERIFY(m_server.pause(false));
    QVERIFY(alice->waitForCall(QStringLiteral("OnMessagesSent")));
    sendAndWait(*alice, QStringLiteral("OnMessagesSent"));
    QVERIFY(waitForInbox(*bob, 2));
    QTRY_VERIFY(alice->folder(CTarvikStorage::eFolderOutbox).isEmpty());
    QCOMPARE(alice->folder(CTarvikStorage::eFolderSent).size(), 2);
    QCOMPARE(bob->folder(CTarvikStorage::eFolderInbox).size(), 2);
}

void XmppDaemonTest::foreignSend(const QString& to, const QString& stanzaOrBody, bool raw)
{
    QVERIFY(runForeignClient(
        m_server,
        {QStringLiteral("send"), QStringLiteral("--jid"),
         QStringLiteral("stranger@") + m_server.domain(), QStringLiteral("--password"),
         QStringLiteral("stranger-pw"), QStringLiteral("--to"), to,
         raw ? QStringLiteral("--raw-xml") : QStringLiteral("--body"), stanzaOrBody},
        nullptr));
}

void XmppDaemonTest::foreignClients()
{
    QScopedPointer<CXmppUser> bob(newUser(QStringLiteral("Bob")));
    // A mobile client shares a position as a bare geo: URI.
    foreignSend(bob->jid(m_server), QStringLiteral("geo:59.4372,24.7454;u=12"), false);
    QVERIFY(waitForInbox(*bob, 1));
    const CTarvik got = bob->folder(CTarvikStorage::eFolderInbox).first();
    QCOMPARE(got.from(), QStringLiteral("stranger@") + m_server.domain());
    QCOMPARE(got.latitude(), 59.4372);
    QCOMPARE(got.longitude(), 24.7454);
    QVERIFY(got.title().isEmpty());
    QVERIFY(bob->waitForCall(QStringLiteral("OnMessagesReceived")));

    // And reads a tarvik as text with the URI on a line of its own.
    CTarvik reply =
        bob->message(QStringLiteral("stranger@") + m_server.domain(), QStringLiteral("Found you"));
    bob->queue(reply);
    sendAndWait(*bob, QStringLiteral("OnMessagesSent"));
    QByteArray output;
    QVERIFY(runForeignClient(
        m_server,
        {QStringLiteral("receive"), QStringLiteral("--jid"),
         QStringLiteral("stranger@") + m_server.domain(), QStringLiteral("--password"),
         QStringLiteral("stranger-pw"), QStringLiteral("--count"), QStringLiteral("1"),
         QStringLiteral("--timeout"), QStringLiteral("15")},
        &output));
    const QJsonObject message =
        QJsonDocument::fromJson(output.trimmed().split('\n').last()).object();
    QCOMPARE(message.value(QStringLiteral("body")).toString(),
             QStringLiteral("Found you\nAt the corner\ngeo:59.4369608,24.7535747"));
}

void XmppDaemonTest::hostileStanzas()
{
    QScopedPointer<CXmppUser> bob(newUser(QStringLiteral("Bob")));
    const QString to = bob->jid(m_server);
    const QString huge = QString(70000, QLatin1Char('x'));
    const QString stanzas[] = {
        // Markup stays text.
        QStringLiteral("<message type='chat' to='%1' id='m1'><body>&lt;script&gt;alert(1)"
                       "&lt;/script&gt; geo:1.5,2.5</body></message>"),
        // No position: not a tarvik.
        QStringLiteral("<message type='chat' to='%1' id='m2'><body>just words</body></message>"),
        // Out of range.
        QStringLiteral("<message type='chat' to='%1' id='m3'><body>geo:91,20</body></message>"),
        // Bigger than anything a tarvik needs.
        QStringLiteral("<message type='chat' to='%1' id='m4'><body>geo:1,2 ") + huge +
            QStringLiteral("</body></message>"),
        // An error bounce.
        QStringLiteral("<message type='error' to='%1' id='m5'><body>geo:1,2</body></message>"),
        // The same id again: a copy.
        QStringLiteral("<message type='chat' to='%1' id='m1'><body>&lt;script&gt;alert(1)"
                       "&lt;/script&gt; geo:1.5,2.5</body></message>"),
        // A marker after all of them.
        QStringLiteral(
            "<message type='chat' to='%1' id='m6'><body>Marker geo:3,4</body></message>"),
    };
    for (const QString& stanza : stanzas) {
        foreignSend(to, stanza.arg(to), true);
    }
    QVERIFY(waitForInbox(*bob, 2));
    QTRY_VERIFY(bob->daemonLog().contains(QLatin1String("dropped a repeat")));
    QCOMPARE(titles(*bob),
             (QStringList{QStringLiteral("<script>alert(1)</script>"), QStringLiteral("Marker")}));
    const QString log = bob->daemonLog();
    QVERIFY2(log.count(QLatin1String("dropped a message")) >= 3, qPrintable(log));
    bob->emitSignal(QStringLiteral("CheckConnectionRequest"));
    QVERIFY(bob->waitForCall(QStringLiteral("OnConnectionCheckSucceed")));
}

void XmppDaemonTest::pauseAndClientState()
{
    QScopedPointer<CXmppUser> bob(newUser(QStringLiteral("Bob")));
    QCOMPARE(bob->callDaemon(QStringLiteral("IsClientStarted")).arguments().value(0),
             QVariant(true));
    bob->emitSignal(QStringLiteral("ApplicationClosed"));
    QTRY_COMPARE(bob->callDaemon(QStringLiteral("IsClientStarted")).arguments().value(0),
                 QVariant(false));
    // The server offers client state indication (XEP-0352): it hears of both changes, and
    // keeps the session.
    QTRY_VERIFY2(bob->daemonLog().contains(QLatin1String("told the server the client is inactive")),
                 qPrintable(bob->daemonLog()));
    bob->callDaemon(QStringLiteral("OnClientStarted"));
    QTRY_VERIFY(bob->daemonLog().contains(QLatin1String("told the server the client is active")));
    bob->emitSignal(QStringLiteral("CheckConnectionRequest"));
    QVERIFY(bob->waitForCall(QStringLiteral("OnConnectionCheckSucceed")));
    QVERIFY2(!bob->daemonLog().contains(QLatin1String("the session ended")),
             qPrintable(bob->daemonLog()));

    // Paused, the daemon keeps off the network: the server holds what comes meanwhile.
    bob->callDaemon(QStringLiteral("Pause"));
    bob->emitSignal(QStringLiteral("CheckConnectionRequest"));
    QVERIFY(bob->waitForCall(QStringLiteral("OnConnectionCheckFailed")));
    foreignSend(bob->jid(m_server), QStringLiteral("geo:1,2"), false);
    bob->queue(
        bob->message(QStringLiteral("stranger@") + m_server.domain(), QStringLiteral("Held")));
    bob->emitSignal(QStringLiteral("SendReceiveRequest"));
    QVERIFY(bob->waitForCall(QStringLiteral("OnMessagesSendFailed")));
    QVERIFY(bob->folder(CTarvikStorage::eFolderInbox).isEmpty());
    bob->callDaemon(QStringLiteral("Resume"));
    QVERIFY(waitForInbox(*bob, 1));
    bob->queue(bob->folder(CTarvikStorage::eFolderOutbox).value(0));
    sendAndWait(*bob, QStringLiteral("OnMessagesSent"));
}

void XmppDaemonTest::networkBackConnectsAtOnce()
{
    // NetworkManager in a process of its own: the daemon asks it at start, while this
    // process waits for the daemon.
    CPrivateBus systemBus(CPrivateBus::eSystem);
    QVERIFY2(systemBus.start(), qPrintable(systemBus.errorString()));
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(QStringLiteral("DBUS_SYSTEM_BUS_ADDRESS"), systemBus.address());
    CHelperProcess networkManager;
    QVERIFY(networkManager.start(binaryPath(QStringLiteral("tarvik-fakes")),
                                 {QStringLiteral("--nm"), QStringLiteral("online")},
                                 QStringLiteral("ready"), 10000, env));
    QDBusConnection system =
        QDBusConnection::connectToBus(systemBus.address(), QStringLiteral("fake-system"));
    QScopedPointer<CXmppUser> bob(
        new CXmppUser(QStringLiteral("+372 5999 001"), QStringLiteral("Bob")));
    QVERIFY2(bob->start(m_server, QString(), systemBus.address()), qPrintable(bob->daemonLog()));
    QCOMPARE(bob->registerAccount(), QStringLiteral("OnRegistrationSucceed"));

    // The server goes; the daemon's attempts space out.
    QVERIFY(m_server.stop());
    QVERIFY(setFakeNetworkState(system, CFakeNetworkManager::eDisconnected));
    QVERIFY2(QTest::qWaitFor(
                 [&]() { return bob->daemonLog().contains(QLatin1String("next attempt in 8 s")); },
                 30000),
             qPrintable(bob->daemonLog()));
    QVERIFY2(m_server.restart(), qPrintable(m_server.errorString()));
    // The network comes back: the daemon does not wait out its back-off.
    QVERIFY(setFakeNetworkState(system, CFakeNetworkManager::eConnectedGlobal));
    QVERIFY2(QTest::qWaitFor(
                 [&]() {
                     return bob->daemonLog().contains(QLatin1String("the network is back")) &&
                            bob->daemonLog().count(QLatin1String("online as")) == 2;
                 },
                 5000),
             qPrintable(bob->daemonLog()));
    bob.reset();
    QDBusConnection::disconnectFromBus(QStringLiteral("fake-system"));
}

namespace {

bool processEnded(qint64 pid)
{
    QFile status(QStringLiteral("/proc/%1/status").arg(pid));
    return !status.open(QIODevice::ReadOnly) || status.readAll().contains("State:\tZ");
}

}  // namespace

void XmppDaemonTest::startedByTheBusOnce()
{
    // The client's first call starts the daemon through its bus service file; a daemon
    // started by hand meanwhile leaves the name to the one that runs.
    CXmppUser user(nextNumber(), QStringLiteral("Ann"));
    QVERIFY(user.prepare(m_server));
    QVERIFY(user.offerDaemonByActivation());
    QCOMPARE(user.daemonPid(), 0);
    const QDBusMessage reply = user.callDaemon(QStringLiteral("OnClientStarted"));
    QVERIFY2(reply.type() == QDBusMessage::ReplyMessage, qPrintable(reply.errorMessage()));
    const qint64 pid = user.daemonPid();
    QVERIFY(pid > 0);
    const auto stop = qScopeGuard([pid]() {
        if (!processEnded(pid)) {
            ::kill(pid_t(pid), SIGTERM);
        }
    });
    QCOMPARE(QFileInfo(QStringLiteral("/proc/%1/exe").arg(pid)).symLinkTarget(),
             binaryPath(QStringLiteral("tarvikd")));
    QCOMPARE(user.registerAccount(), QStringLiteral("OnRegistrationSucceed"));

    QProcess second;
    second.setProcessEnvironment(user.environment());
    second.start(binaryPath(QStringLiteral("tarvikd")), QStringList());
    QVERIFY(second.waitForFinished(10000));
    const QByteArray said = second.readAllStandardError();
    QCOMPARE(second.exitStatus(), QProcess::NormalExit);
    QVERIFY2(second.exitCode() == 0, said.constData());
    QVERIFY2(said.contains("tarvikd: another tarvikd already serves com.qel.tarvikdaemon; exiting"),
             said.constData());
    QVERIFY(!second.readAllStandardOutput().contains("ready"));
    QCOMPARE(user.daemonPid(), pid);
    QCOMPARE(user.callDaemon(QStringLiteral("IsClientStarted")).arguments().value(0),
             QVariant(true));

    // The session ends: the daemon does not outlive its bus.
    user.stopBus();
    QTRY_VERIFY_WITH_TIMEOUT(processEnded(pid), 3000);
}

void XmppDaemonTest::announcedWhileClientClosed_data()
{
    // Each wave: five messages at once (one for a single tarvik) from one sender.
    QTest::addColumn<QStringList>("waves");
    QTest::addColumn<bool>("clientOpen");
    QTest::addColumn<QString>("body");
    QTest::newRow("one tarvik, the client closed")
        << QStringList{QStringLiteral("<b>Mallory</b>")} << false
        << QStringLiteral("&lt;b&gt;Mallory&lt;/b&gt;");
    QTest::newRow("a burst of ten, the client closed")
        << QStringList{QStringLiteral("<b>Mallory</b>"), QStringLiteral("Trudy")} << false
        << QStringLiteral("&lt;b&gt;Mallory&lt;/b&gt;, Trudy");
    QTest::newRow("the client open: it announces")
        << QStringList{QStringLiteral("Mallory")} << true << QString();
}

void XmppDaemonTest::announcedWhileClientClosed()
{
    QFETCH(QStringList, waves);
    QFETCH(bool, clientOpen);
    QFETCH(QString, body);
    QScopedPointer<CXmppUser> bob(newUser(QStringLiteral("Bob")));
    CFakeNotifications notifications;
    QDBusConnection bus = bob->connection();
    QVERIFY(bus.registerObject(QStringLiteral("/org/freedesktop/Notifications"), &notifications,
                               QDBusConnection::ExportAllSlots));
    QVERIFY(bus.registerService(QStringLiteral("org.freedesktop.Notifications")));
    const QString callLog = bob->home() + QStringLiteral("/client-calls");
    QVERIFY(bob->offerClientByActivation(callLog));
    if (!clientOpen) {
        bob->clientLeaves();
        QTRY_COMPARE(bob->callDaemon(QStringLiteral("IsClientStarted")).arguments().value(0),
                     QVariant(false));
    }
    // From a client that is not ours, signed with a screen name. A later wave comes once
    // the first is on screen, so it must update that notification.
    const QString to = bob->jid(m_server);
    const int perWave = waves.size() == 1 ? 1 : 5;
    int sent = 0;
    for (const QString& nick : qAsConst(waves)) {
        QString stanzas;
        for (int i = 0; i < perWave; ++i, ++sent) {
            stanzas += QStringLiteral(
                           "<message type='chat' to='%1' id='burst%2'><body>geo:1.5,"
                           "2.%2</body><nick xmlns='http://jabber.org/protocol/nick'>"
                           "%3</nick></message>")
                           .arg(to)
                           .arg(sent)
                           .arg(nick.toHtmlEscaped());
        }
        foreignSend(to, stanzas, true);
        QVERIFY(waitForInbox(*bob, sent));
        if (!clientOpen) {
            QTRY_VERIFY(!notifications.m_lstCalls.isEmpty());
        }
    }
    if (clientOpen) {
        QVERIFY(bob->waitForCall(QStringLiteral("OnMessagesReceived")));
        QTest::qWait(500);
        QVERIFY(notifications.m_lstCalls.isEmpty());
        return;
    }
    QTRY_COMPARE(notifications.m_lstCalls.last().strBody, body);
    int fresh = 0;
    for (const CFakeNotifications::CCall& call : qAsConst(notifications.m_lstCalls)) {
        QCOMPARE(call.strApp, QStringLiteral("tarvik"));
        QCOMPARE(call.strSummary, QStringLiteral("New tarviks received"));
        QVERIFY(call.lstActions.contains(QStringLiteral("default")));
        fresh += call.uReplaces == 0 ? 1 : 0;
        QVERIFY(call.uReplaces == 0 || call.uReplaces == 1);
    }
    QCOMPARE(fresh, 1);
    QVERIFY(!bob->calls().contains(QStringLiteral("OnMessagesReceived")));

    // Taken: the bus starts the client, which is asked for its inbox.
    QVERIFY(bus.send(QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/Notifications"),
                                                QStringLiteral("org.freedesktop.Notifications"),
                                                QStringLiteral("ActionInvoked"))
                     << 1u << QStringLiteral("default")));
    const auto calls = [&]() {
        QFile file(callLog);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    };
    QTRY_COMPARE_WITH_TIMEOUT(calls(), QByteArray("OpenInbox\n"), 10000);
    const QDBusReply<uint> client = bus.interface()->servicePid(QStringLiteral("com.qel.tarvik"));
    QVERIFY(client.isValid());
    ::kill(pid_t(client.value()), SIGTERM);
}

void XmppDaemonTest::killedMidReceiveLosesNothing()
{
    QScopedPointer<CXmppUser> bob(newUser(QStringLiteral("Bob")));
    const QString to = bob->jid(m_server);
    const auto burst = [&](int first, int n) {
        QString stanzas;
        for (int i = first; i < first + n; ++i) {
            stanzas += QStringLiteral(
                           "<message type='chat' to='%1' id='k%2'><body>K%2 geo:3,4"
                           "</body></message>")
                           .arg(to)
                           .arg(i);
        }
        return stanzas;
    };
    foreignSend(to, burst(0, 5), true);
    QVERIFY(waitForInbox(*bob, 5));
    {
        // The database is held by someone else: the next three arrive at the daemon, which
        // cannot store them (each waits out the storage's busy time-out), and it dies
        // holding them.
        QSqlDatabase lock =
            QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("lock"));
        lock.setDatabaseName(bob->home() + QStringLiteral("/.tarvik/tarvikdb.sqlite"));
        QVERIFY(lock.open());
        QVERIFY(lock.exec(QStringLiteral("BEGIN EXCLUSIVE")).lastError().type() ==
                QSqlError::NoError);
        foreignSend(to, burst(5, 3), true);
        QVERIFY2(QTest::qWaitFor(
                     [&]() { return bob->daemonLog().contains(QLatin1String("; trying again")); },
                     40000),
                 qPrintable(bob->daemonLog().right(3000)));
        QCOMPARE(::kill(pid_t(bob->daemonPid()), SIGKILL), 0);
        lock.exec(QStringLiteral("ROLLBACK"));
        lock.close();
    }
    QSqlDatabase::removeDatabase(QStringLiteral("lock"));
    QVERIFY(bob->startDaemon());
    foreignSend(to,
                QStringLiteral("<message type='chat' to='%1' id='marker'><body>Marker geo:3,4"
                               "</body></message>")
                    .arg(to),
                true);
    QVERIFY2(waitForInbox(*bob, 9), qPrintable(titles(*bob).join(' ')));
    QStringList expected{QStringLiteral("Marker")};
    for (int i = 0; i < 8; ++i) {
        expected << QStringLiteral("K%1").arg(i);
    }
    expected.sort();
    QCOMPARE(titles(*bob), expected);
}

QTEST_GUILESS_MAIN(XmppDaemonTest)
#include "tst_xmppdaemon.moc"
