// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ctarvikdaemon.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDebug>

#include "cdaemonbus.h"
#include "cinboxnotifier.h"
#include "cstanzacodec.h"
#include "cxmppaddress.h"

namespace Dravo {

namespace {

void say(const QString& text)
{
    qInfo().noquote() << QStringLiteral("tarvikd: ") + text;
}

void complain(const QString& text)
{
    qWarning().noquote() << QStringLiteral("tarvikd: ") + text;
}

// Texts from the network are quoted in the log on one line, and not at any length.
QString quoted(const QString& text)
{
    QString line = text.left(120);
    for (QChar& c : line) {
        if (c.category() == QChar::Other_Control || c == QChar::LineSeparator ||
            c == QChar::ParagraphSeparator) {
            c = QLatin1Char(' ');
        }
    }
    return QLatin1Char('"') + line +
           (text.size() > 120 ? QStringLiteral("...\"") : QStringLiteral("\""));
}

const int kFirstBackoffMs = 1000;
const int kFlushRetryMs = 1000;
const int kFlushDelayMs = 20;
const int kFlushBatch = 250;

}  // namespace

CTarvikDaemon::CTarvikDaemon(const CXmppConfig& config, const QDBusConnection& bus, QObject* parent)
    : QObject(parent),
      m_config(config),
      m_bus(bus),
      m_pBus(new CDaemonBus(QStringLiteral("tarvikd"), bus, this)),
      m_pNotifier(new CInboxNotifier(bus, this)),
      m_store(QStringLiteral("tarvikd")),
      m_passwords(bus),
      m_pXmpp(new CXmppConnection),
      m_bOnline(false),
      m_bConnecting(false),
      m_bPaused(false),
      m_iBackoffMs(kFirstBackoffMs),
      m_eRegStep(eRegNone),
      m_bRegPasswordWasKept(false),
      m_bSendAgain(false),
      m_uNextBatch(0),
      m_bSeenLoaded(false)
{
    m_thread.setObjectName(QStringLiteral("xmpp"));
    m_pXmpp->moveToThread(&m_thread);
    connect(&m_thread, &QThread::finished, m_pXmpp, &QObject::deleteLater);
    m_thread.start();

    connect(m_pXmpp, &CXmppConnection::connected, this, &CTarvikDaemon::onConnected);
    connect(m_pXmpp, &CXmppConnection::disconnected, this, &CTarvikDaemon::onDisconnected);
    connect(m_pXmpp, &CXmppConnection::registrationFinished, this,
            &CTarvikDaemon::onRegistrationFinished);
    connect(m_pXmpp, &CXmppConnection::sendFinished, this, &CTarvikDaemon::onSendFinished);
    connect(m_pXmpp, &CXmppConnection::pingFinished, this, &CTarvikDaemon::onPingFinished);
    connect(m_pXmpp, &CXmppConnection::messageReceived, this, &CTarvikDaemon::onMessageReceived);

    connect(m_pBus, &CDaemonBus::sendReceiveRequested, this, &CTarvikDaemon::onSendReceiveRequest);
    connect(m_pBus, &CDaemonBus::checkConnectionRequested, this,
            &CTarvikDaemon::onCheckConnectionRequest);
    connect(m_pBus, &CDaemonBus::registrationRequested, this,
            &CTarvikDaemon::onRegistrationRequest);
    connect(m_pBus, &CDaemonBus::pauseRequested, this, &CTarvikDaemon::onPause);
    connect(m_pBus, &CDaemonBus::resumeRequested, this, &CTarvikDaemon::onResume);
    connect(m_pBus, &CDaemonBus::startRequested, this, &CTarvikDaemon::onResume);
    connect(m_pBus, &CDaemonBus::stopRequested, this, &CTarvikDaemon::onStop);
    connect(m_pBus, &CDaemonBus::clientStarted, this, &CTarvikDaemon::onClientStarted);
    connect(m_pBus, &CDaemonBus::clientGone, this, &CTarvikDaemon::onClientGone);
    // The notification's action starts the client if need be (the bus activates it).
    connect(m_pNotifier, &CInboxNotifier::openInboxRequested, this,
            [this]() { callClient("OpenInbox"); });
    connect(m_pBus, &CDaemonBus::busLost, this, []() {
        qCritical() << "tarvikd: lost the session bus; exiting";
        QCoreApplication::exit(3);
    });

    m_reconnectTimer.setSingleShot(true);
    connect(&m_reconnectTimer, &QTimer::timeout, this, &CTarvikDaemon::onReconnectTimeout);
    m_jobTimer.setSingleShot(true);
    connect(&m_jobTimer, &QTimer::timeout, this, &CTarvikDaemon::onJobTimeout);
    m_registrationTimer.setSingleShot(true);
    m_registrationTimer.setInterval(registrationWaitMs);
    connect(&m_registrationTimer, &QTimer::timeout, this, &CTarvikDaemon::onRegistrationTimeout);
    m_checkTimer.setSingleShot(true);
    m_checkTimer.setInterval(connectWaitMs);
    connect(&m_checkTimer, &QTimer::timeout, this, [this]() {
        for (int i = 0; i < m_lstChecks.size(); ++i) {
            callClient("OnConnectionCheckFailed");
        }
        m_lstChecks.clear();
    });
    m_flushTimer.setSingleShot(true);
    connect(&m_flushTimer, &QTimer::timeout, this, &CTarvikDaemon::flushIncoming);
}

CTarvikDaemon::~CTarvikDaemon()
{
    shutdown();
}

bool CTarvikDaemon::start(QString* pError)
{
    // The bus name first: a second daemon leaves before it touches the database. Requests
    // that come meanwhile wait in the event loop.
    if (!m_pBus->start(pError)) {
        return false;
    }
    QString error;
    const bool existed = CDaemonStore::databaseExists();
    if (!m_store.ensureDatabase(&error)) {
        complain(error + QStringLiteral("; requests will be answered with failures"));
    } else if (!existed) {
        say(QStringLiteral("created the database %1").arg(CDaemonStore::databasePath()));
    }
    if (m_config.m_strDomain.isEmpty()) {
        complain(QStringLiteral("no service domain: set xmpp_domain in %1 or TARVIK_XMPP_DOMAIN; "
                                "registration and sending will fail")
                     .arg(CXmppConfig::configFile()));
    }
    // A network that comes back is worth an attempt at once, whatever the back-off says.
    // NetworkManager announces it on the system bus; that one signal is all the daemon
    // needs, without Qt's network stack and the Kerberos and proxy libraries it brings.
    QDBusConnection system = QDBusConnection::systemBus();
    if (system.isConnected()) {
        system.connect(QStringLiteral("org.freedesktop.NetworkManager"),
                       QStringLiteral("/org/freedesktop/NetworkManager"),
                       QStringLiteral("org.freedesktop.NetworkManager"),
                       QStringLiteral("StateChanged"), this, SLOT(onNetworkState(uint)));
    }
    if (loadAccount()) {
        say(QStringLiteral("serving %1 as %2").arg(CDaemonBus::serviceName, m_strJid));
        goOnline();
    } else {
        say(QStringLiteral("serving %1; no registered account yet").arg(CDaemonBus::serviceName));
    }
    return true;
}

bool CTarvikDaemon::anotherRunning() const
{
    return m_pBus->nameTaken();
}

void CTarvikDaemon::shutdown()
{
    if (!m_thread.isRunning()) {
        return;
    }
    m_reconnectTimer.stop();
    flushIncoming();
    QMetaObject::invokeMethod(m_pXmpp, "finish", Qt::BlockingQueuedConnection);
    m_thread.quit();
    m_thread.wait();
}

bool CTarvikDaemon::loadAccount()
{
    CTSettings settings;
    QString error;
    if (!m_store.readSettings(settings, &error)) {
        complain(error);
        return false;
    }
    const QString account = CXmppAddress::accountForNumber(settings.mynumber());
    if (settings.regflag() != 1 || account.isEmpty() || m_config.m_strDomain.isEmpty()) {
        return false;
    }
    const QString jid = account + QLatin1Char('@') + m_config.m_strDomain;
    const QString password = m_passwords.password(jid);
    if (password.isEmpty()) {
        complain(QStringLiteral("%1 is registered in the database but no password is kept for "
                                "it: register again")
                     .arg(jid));
        return false;
    }
    m_strJid = jid;
    m_strPassword = password;
    m_strNumber = settings.mynumber();
    return true;
}

CXmppConnection::CEndpoint CTarvikDaemon::endpoint(const QString& jid,
                                                   const QString& password) const
{
    CXmppConnection::CEndpoint result;
    result.m_strJid = jid;
    result.m_strPassword = password;
    result.m_strHost = m_config.m_strHost;
    result.m_uPort = m_config.m_uPort;
    result.m_strCaFile = m_config.m_strCaFile;
    return result;
}

void CTarvikDaemon::goOnline()
{
    if (m_bOnline || m_bConnecting || m_bPaused || m_strJid.isEmpty() || m_eRegStep != eRegNone) {
        return;
    }
    m_reconnectTimer.stop();
    m_bConnecting = true;
    QMetaObject::invokeMethod(
        m_pXmpp, "open", Qt::QueuedConnection,
        Q_ARG(Dravo::CXmppConnection::CEndpoint, endpoint(m_strJid, m_strPassword)));
}

void CTarvikDaemon::goOffline()
{
    m_reconnectTimer.stop();
    m_bConnecting = false;
    m_bOnline = false;
    QMetaObject::invokeMethod(m_pXmpp, "close", Qt::QueuedConnection);
}

void CTarvikDaemon::scheduleReconnect()
{
    if (m_bPaused || m_strJid.isEmpty() || m_eRegStep != eRegNone) {
        return;
    }
    say(QStringLiteral("next attempt in %1 s").arg(m_iBackoffMs / 1000.0));
    m_reconnectTimer.start(m_iBackoffMs);
    m_iBackoffMs = qMin(m_iBackoffMs * 2, maxBackoffMs);
}

void CTarvikDaemon::onReconnectTimeout()
{
    goOnline();
}

void CTarvikDaemon::onNetworkState(uint state)
{
    // 70: connected to the Internet.
    if (state >= 70) {
        onNetworkReachable();
    }
}

void CTarvikDaemon::onNetworkReachable()
{
    if (!m_bOnline && !m_bConnecting && !m_strJid.isEmpty() && !m_bPaused) {
        say(QStringLiteral("the network is back: connecting now"));
        m_iBackoffMs = kFirstBackoffMs;
        goOnline();
    }
}

void CTarvikDaemon::onClientStarted()
{
    // The client announces what arrives from now on, and shows what came before.
    m_pNotifier->withdraw();
    QMetaObject::invokeMethod(m_pXmpp, "setClientActive", Qt::QueuedConnection, Q_ARG(bool, true));
}

void CTarvikDaemon::onClientGone()
{
    QMetaObject::invokeMethod(m_pXmpp, "setClientActive", Qt::QueuedConnection, Q_ARG(bool, false));
}

void CTarvikDaemon::onConnected(const QString& boundJid)
{
    m_bConnecting = false;
    if (m_eRegStep == eRegLogin || m_eRegStep == eRegLoginCreated) {
        succeedRegistration();
    }
    m_bOnline = true;
    m_iBackoffMs = kFirstBackoffMs;
    say(QStringLiteral("online as %1").arg(boundJid));
    for (const quint64 token : qAsConst(m_lstChecks)) {
        QMetaObject::invokeMethod(m_pXmpp, "ping", Qt::QueuedConnection, Q_ARG(quint64, token));
    }
    m_lstChecks.clear();
    m_checkTimer.stop();
    if (m_job.m_bActive && m_job.m_uBatch == 0) {
        transmitJob();
    }
}

void CTarvikDaemon::onDisconnected(const QString& reason, bool authFailed)
{
    const bool wasOnline = m_bOnline;
    m_bOnline = false;
    m_bConnecting = false;
    if (m_eRegStep == eRegLogin && authFailed) {
        // The password we kept does not open the account: perhaps it was never made.
        say(QStringLiteral("the kept password was refused; trying to create %1").arg(m_strRegJid));
        m_eRegStep = eRegCreate;
        QMetaObject::invokeMethod(
            m_pXmpp, "registerAccount", Qt::QueuedConnection,
            Q_ARG(Dravo::CXmppConnection::CEndpoint, endpoint(m_strRegJid, m_strRegPassword)));
        return;
    }
    if (m_eRegStep == eRegLogin || m_eRegStep == eRegLoginCreated) {
        failRegistration(reason);
        return;
    }
    complain(wasOnline ? QStringLiteral("the session ended: %1").arg(reason)
                       : QStringLiteral("cannot connect: %1").arg(reason));
    if (authFailed) {
        complain(
            QStringLiteral("the server refused the password of %1: register again").arg(m_strJid));
        m_strJid.clear();
        return;
    }
    if (!m_bPaused) {
        scheduleReconnect();
    }
}

// Registration --------------------------------------------------------------------------

void CTarvikDaemon::onRegistrationRequest()
{
    say(QStringLiteral("<- RegistrationRequest"));
    if (m_eRegStep != eRegNone) {
        say(QStringLiteral("a registration is already under way"));
        return;
    }
    CTSettings settings;
    QString error;
    if (!m_store.readSettings(settings, &error)) {
        failRegistration(error);
        return;
    }
    const QString account = CXmppAddress::accountForNumber(settings.mynumber());
    if (account.isEmpty()) {
        failRegistration(
            QStringLiteral("%1 is not a phone number").arg(quoted(settings.mynumber())));
        return;
    }
    if (m_config.m_strDomain.isEmpty()) {
        failRegistration(QStringLiteral("no service domain is configured"));
        return;
    }
    m_strRegJid = account + QLatin1Char('@') + m_config.m_strDomain;
    m_strRegPassword = m_passwords.password(m_strRegJid);
    m_bRegPasswordWasKept = !m_strRegPassword.isEmpty();
    if (!m_bRegPasswordWasKept) {
        // Kept before the server hears of it: an account made but not remembered would be
        // lost to its owner.
        m_strRegPassword = CPasswordStore::newPassword();
        if (!m_passwords.store(m_strRegJid, m_strRegPassword, &error)) {
            failRegistration(error);
            return;
        }
    }
    m_strNumber = settings.mynumber();
    // Whatever session ran belongs to the old account.
    m_reconnectTimer.stop();
    m_bOnline = false;
    m_bConnecting = false;
    m_strJid.clear();
    m_registrationTimer.start();
    if (m_bRegPasswordWasKept) {
        say(QStringLiteral("logging in to %1 with the kept password").arg(m_strRegJid));
        m_eRegStep = eRegLogin;
        QMetaObject::invokeMethod(
            m_pXmpp, "open", Qt::QueuedConnection,
            Q_ARG(Dravo::CXmppConnection::CEndpoint, endpoint(m_strRegJid, m_strRegPassword)));
    } else {
        say(QStringLiteral("creating the account %1").arg(m_strRegJid));
        m_eRegStep = eRegCreate;
        QMetaObject::invokeMethod(
            m_pXmpp, "registerAccount", Qt::QueuedConnection,
            Q_ARG(Dravo::CXmppConnection::CEndpoint, endpoint(m_strRegJid, m_strRegPassword)));
    }
}

void CTarvikDaemon::onRegistrationFinished(int result, const QString& detail)
{
    if (m_eRegStep != eRegCreate) {
        return;
    }
    switch (result) {
        case CXmppConnection::eRegistered:
            say(QStringLiteral("created %1").arg(m_strRegJid));
            m_eRegStep = eRegLoginCreated;
            QMetaObject::invokeMethod(
                m_pXmpp, "open", Qt::QueuedConnection,
                Q_ARG(Dravo::CXmppConnection::CEndpoint, endpoint(m_strRegJid, m_strRegPassword)));
            return;
        case CXmppConnection::eTaken:
            // Somebody else's account: the password we made opens nothing.
            m_passwords.remove(m_strRegJid);
            failRegistration(QStringLiteral("%1 belongs to somebody else").arg(m_strRegJid));
            return;
        default:
            failRegistration(detail);
            return;
    }
}

void CTarvikDaemon::onRegistrationTimeout()
{
    if (m_eRegStep == eRegNone) {
        return;
    }
    QMetaObject::invokeMethod(m_pXmpp, "close", Qt::QueuedConnection);
    failRegistration(QStringLiteral("no verdict within %1 s").arg(registrationWaitMs / 1000));
}

void CTarvikDaemon::failRegistration(const QString& why)
{
    complain(QStringLiteral("registration failed: %1").arg(why));
    m_eRegStep = eRegNone;
    m_registrationTimer.stop();
    callClient("OnRegistrationFailed");
}

void CTarvikDaemon::succeedRegistration()
{
    m_eRegStep = eRegNone;
    m_registrationTimer.stop();
    QString error;
    if (!m_store.setRegistered(true, &error)) {
        complain(QStringLiteral("registered %1, but %2").arg(m_strRegJid, error));
        callClient("OnRegistrationFailed");
        return;
    }
    m_strJid = m_strRegJid;
    m_strPassword = m_strRegPassword;
    m_setSeen.clear();
    m_bSeenLoaded = false;
    say(QStringLiteral("registered %1").arg(m_strJid));
    callClient("OnRegistrationSucceed");
}

// Sending -------------------------------------------------------------------------------

void CTarvikDaemon::onSendReceiveRequest()
{
    say(QStringLiteral("<- SendReceiveRequest"));
    if (m_job.m_bActive) {
        m_bSendAgain = true;
        return;
    }
    beginSendJob();
}

void CTarvikDaemon::beginSendJob()
{
    m_bSendAgain = false;
    QString error;
    QList<CTarvik> queued;
    if (!m_store.queuedOutbox(queued, &error)) {
        complain(QStringLiteral("send failed: ") + error);
        callClient("OnMessagesSendFailed");
        return;
    }
    if (queued.isEmpty()) {
        say(QStringLiteral("nothing queued in the outbox"));
        if (!m_bOnline) {
            goOnline();  // receiving: whatever waits on the server arrives on login
        }
        return;
    }
    if (m_strJid.isEmpty() || m_bPaused) {
        complain(m_bPaused ? QStringLiteral("send failed: paused")
                           : QStringLiteral("send failed: no registered account"));
        m_store.markFailed(queued, nullptr);
        callClient("OnMessagesSendFailed");
        return;
    }
    QSet<QString> sent;
    m_store.sentGuids(sent, nullptr);
    m_job = CSendJob();
    m_job.m_bActive = true;
    m_job.m_started.start();
    for (const CTarvik& tarvik : queued) {
        COutgoing outgoing;
        outgoing.m_tarvik = tarvik;
        outgoing.m_strId = CStanzaCodec::messageId(tarvik);
        if (sent.contains(outgoing.m_strId)) {
            // Sent before; the client wrote back its older copy of the outbox.
            m_job.m_lstAlreadySent.append(tarvik.id());
            continue;
        }
        const QStringList recipients = CXmppAddress::splitRecipients(tarvik.to());
        for (const QString& recipient : recipients) {
            const QString jid = CXmppAddress::jidForRecipient(recipient, m_config.m_strDomain);
            if (jid.isEmpty()) {
                complain(QStringLiteral("message %1: %2 is neither a phone number nor an address")
                             .arg(tarvik.id())
                             .arg(quoted(recipient)));
                outgoing.m_bAddressable = false;
                continue;
            }
            m_job.m_lstStanzas.append(CStanzaCodec::toStanza(tarvik, jid, outgoing.m_strId));
        }
        if (recipients.isEmpty()) {
            complain(QStringLiteral("message %1 has no recipient").arg(tarvik.id()));
            outgoing.m_bAddressable = false;
        }
        m_job.m_lstOutgoing.append(outgoing);
    }
    if (m_job.m_lstStanzas.isEmpty()) {
        finishJob(false);
        return;
    }
    m_jobTimer.start(connectWaitMs);
    if (m_bOnline) {
        transmitJob();
    } else {
        say(QStringLiteral("waiting up to %1 s for a session").arg(connectWaitMs / 1000));
        m_iBackoffMs = kFirstBackoffMs;
        goOnline();
    }
}

void CTarvikDaemon::transmitJob()
{
    m_job.m_uBatch = ++m_uNextBatch;
    // A server that takes the stanzas and never answers is as good as none.
    m_jobTimer.start(connectWaitMs);
    QMetaObject::invokeMethod(m_pXmpp, "send", Qt::QueuedConnection, Q_ARG(quint64, m_job.m_uBatch),
                              Q_ARG(QStringList, m_job.m_lstStanzas));
}

void CTarvikDaemon::onSendFinished(quint64 batch, bool confirmed)
{
    if (!m_job.m_bActive || batch != m_job.m_uBatch) {
        return;
    }
    if (confirmed) {
        finishJob(true);
        return;
    }
    // The session broke before the server confirmed: once more on the next session, as
    // long as the wait allows. The receiver drops a copy that did arrive.
    m_job.m_uBatch = 0;
    const qint64 left = connectWaitMs - m_job.m_started.elapsed();
    if (left <= 0) {
        finishJob(false);
        return;
    }
    say(QStringLiteral("the session broke during a send; trying again"));
    m_jobTimer.start(int(left));
    m_iBackoffMs = kFirstBackoffMs;
    m_reconnectTimer.stop();
    goOnline();
}

void CTarvikDaemon::onJobTimeout()
{
    if (!m_job.m_bActive) {
        return;
    }
    if (m_job.m_uBatch == 0) {
        complain(QStringLiteral("no session within %1 s").arg(connectWaitMs / 1000));
    } else {
        complain(QStringLiteral("the server did not confirm within %1 s; starting a new session")
                     .arg(connectWaitMs / 1000));
        // Whatever it confirms later belongs to a session we no longer trust.
        goOffline();
        scheduleReconnect();
    }
    finishJob(false);
}

void CTarvikDaemon::finishJob(bool confirmed)
{
    m_jobTimer.stop();
    QList<CTarvik> toSent;
    QList<CTarvik> failed;
    for (const COutgoing& outgoing : qAsConst(m_job.m_lstOutgoing)) {
        if (confirmed && outgoing.m_bAddressable) {
            CTarvik copy = outgoing.m_tarvik;
            copy.setGuid(outgoing.m_strId);
            toSent.append(copy);
        } else {
            failed.append(outgoing.m_tarvik);
        }
    }
    QString error;
    const int moved = m_store.moveToSent(toSent, &error);
    if (!error.isEmpty()) {
        complain(error);
    }
    if (moved < toSent.size()) {
        failed += toSent.mid(moved);  // delivered, but kept in the outbox: the next send is
                                      // dropped by the receiver
    }
    error.clear();
    if (!m_store.dropFromOutbox(m_job.m_lstAlreadySent, &error) && !error.isEmpty()) {
        complain(error);
    }
    if (!failed.isEmpty()) {
        m_store.markFailed(failed, nullptr);
    }
    const int sent = moved + m_job.m_lstAlreadySent.size();
    say(QStringLiteral("%1 of %2 queued messages sent, %3 failed")
            .arg(sent)
            .arg(sent + failed.size())
            .arg(failed.size()));
    if (failed.isEmpty()) {
        callClient("OnMessagesSent");
    } else if (sent == 0) {
        callClient("OnMessagesSendFailed");
    } else {
        callClient("OnMessagesPartiallySent");
    }
    m_job = CSendJob();
    if (m_bSendAgain) {
        QTimer::singleShot(0, this, &CTarvikDaemon::beginSendJob);
    }
}

// Connection check, pause, stop ----------------------------------------------------------

void CTarvikDaemon::onCheckConnectionRequest()
{
    say(QStringLiteral("<- CheckConnectionRequest"));
    const quint64 token = ++m_uNextBatch;
    if (m_bOnline) {
        QMetaObject::invokeMethod(m_pXmpp, "ping", Qt::QueuedConnection, Q_ARG(quint64, token));
        return;
    }
    if (m_strJid.isEmpty() || m_bPaused) {
        callClient("OnConnectionCheckFailed");
        return;
    }
    m_lstChecks.append(token);
    m_checkTimer.start();
    m_iBackoffMs = kFirstBackoffMs;
    goOnline();
}

void CTarvikDaemon::onPingFinished(quint64, bool ok)
{
    callClient(ok ? "OnConnectionCheckSucceed" : "OnConnectionCheckFailed");
}

void CTarvikDaemon::onPause()
{
    m_bPaused = true;
    goOffline();
    say(QStringLiteral("paused: no network activity until Resume"));
}

void CTarvikDaemon::onResume()
{
    if (!m_bPaused) {
        return;
    }
    m_bPaused = false;
    m_iBackoffMs = kFirstBackoffMs;
    if (m_strJid.isEmpty()) {
        loadAccount();
    }
    goOnline();
}

void CTarvikDaemon::onStop()
{
    say(QStringLiteral("stopping"));
    QCoreApplication::quit();
}

// Receiving -------------------------------------------------------------------------------

QString CTarvikDaemon::ownAddress() const
{
    return m_strNumber.isEmpty() ? m_strJid : m_strNumber;
}

void CTarvikDaemon::onMessageReceived(quint64 sequence, const QString& stanza)
{
    const CStanzaCodec::CIncoming incoming = CStanzaCodec::fromStanza(
        stanza, m_config.m_strDomain, ownAddress(), QDateTime::currentDateTimeUtc());
    if (!incoming.m_bTarvik) {
        say(QStringLiteral("dropped a message: %1").arg(incoming.m_strReason));
        QMetaObject::invokeMethod(m_pXmpp, "handled", Qt::QueuedConnection,
                                  Q_ARG(quint64, sequence));
        return;
    }
    CIncoming entry;
    entry.m_uSequence = sequence;
    entry.m_tarvik = incoming.m_tarvik;
    entry.m_tarvik.setFlag(1);
    entry.m_strKey = incoming.m_tarvik.from() + QChar(0x1f) + incoming.m_tarvik.guid();
    m_lstIncoming.append(entry);
    // What arrives within a few milliseconds is stored in one transaction: a burst from
    // the server costs one journal sync per batch, not one per message.
    if (m_lstIncoming.size() >= kFlushBatch) {
        flushIncoming();
    } else if (!m_flushTimer.isActive()) {
        m_flushTimer.start(kFlushDelayMs);
    }
}

void CTarvikDaemon::flushIncoming()
{
    if (m_lstIncoming.isEmpty()) {
        return;
    }
    QString error;
    if (!m_bSeenLoaded) {
        QList<CTarvik> inbox;
        if (!m_store.inbox(inbox, &error)) {
            complain(error + QStringLiteral("; new messages wait"));
            m_flushTimer.start(kFlushRetryMs);
            return;
        }
        for (const CTarvik& tarvik : inbox) {
            m_setSeen.insert(tarvik.from() + QChar(0x1f) + tarvik.guid());
        }
        m_bSeenLoaded = true;
    }
    QList<CTarvik> fresh;
    QList<quint64> sequences;
    QSet<QString> keys;
    for (const CIncoming& entry : qAsConst(m_lstIncoming)) {
        sequences.append(entry.m_uSequence);
        if (m_setSeen.contains(entry.m_strKey) || keys.contains(entry.m_strKey)) {
            say(QStringLiteral("dropped a repeat of message %1 from %2")
                    .arg(quoted(entry.m_tarvik.guid()), quoted(entry.m_tarvik.from())));
            continue;
        }
        keys.insert(entry.m_strKey);
        fresh.append(entry.m_tarvik);
    }
    const int stored = m_store.deliver(fresh, &error);
    if (stored < fresh.size()) {
        // Not acknowledged to the server: it keeps them, and they come again.
        complain(error + QStringLiteral("; trying again"));
        m_flushTimer.start(kFlushRetryMs);
        return;
    }
    m_setSeen += keys;
    m_lstIncoming.clear();
    for (const quint64 sequence : qAsConst(sequences)) {
        QMetaObject::invokeMethod(m_pXmpp, "handled", Qt::QueuedConnection,
                                  Q_ARG(quint64, sequence));
    }
    if (stored > 0) {
        say(QStringLiteral("%1 new messages in the inbox").arg(stored));
        if (m_pBus->clientRunning()) {
            callClient("OnMessagesReceived");
        } else {
            QStringList senders;
            for (const CTarvik& tarvik : qAsConst(fresh)) {
                senders << (tarvik.screenname().isEmpty() ? tarvik.from() : tarvik.screenname());
            }
            m_pNotifier->announce(senders);
        }
    }
}

void CTarvikDaemon::callClient(const char* method)
{
    m_pBus->callClient(QLatin1String(method));
}

}  // namespace Dravo
