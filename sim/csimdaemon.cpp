// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "csimdaemon.h"

#include <QCoreApplication>
#include <QDBusError>
#include <QDebug>

#include "csimcontrol.h"

namespace Dravo {

const QString CSimDaemon::controlPath = QStringLiteral("/com/qel/tarviksim");

namespace {

void say(const QString& text)
{
    qInfo().noquote() << QStringLiteral("tarvik-simd: ") + text;
}

void complain(const QString& text)
{
    qWarning().noquote() << QStringLiteral("tarvik-simd: ") + text;
}

}  // namespace

CSimDaemon::CSimDaemon(const CSimOptions& options, const QDBusConnection& bus, QObject* parent)
    : QObject(parent),
      m_options(options),
      m_bus(bus),
      m_pBus(new CDaemonBus(QStringLiteral("tarvik-simd"), bus, this)),
      m_script(options.m_uSeed),
      m_pControl(nullptr),
      m_bPaused(false),
      m_bStopped(false)
{
    m_requestTimer.setSingleShot(true);
    m_requestTimer.setInterval(m_options.m_iDelayMs);
    connect(&m_requestTimer, &QTimer::timeout, this, &CSimDaemon::onRequestTimerTimeout);
    m_pollTimer.setInterval(m_options.m_iPollSeconds * 1000);
    connect(&m_pollTimer, &QTimer::timeout, this, &CSimDaemon::onPollTimeout);
    connect(m_pBus, &CDaemonBus::sendReceiveRequested, this, &CSimDaemon::onSendReceiveRequest);
    connect(m_pBus, &CDaemonBus::checkConnectionRequested, this,
            &CSimDaemon::onCheckConnectionRequest);
    connect(m_pBus, &CDaemonBus::registrationRequested, this, &CSimDaemon::onRegistrationRequest);
    connect(m_pBus, &CDaemonBus::clientStarted, this, &CSimDaemon::onClientStarted);
    connect(m_pBus, &CDaemonBus::pauseRequested, this, &CSimDaemon::onPause);
    connect(m_pBus, &CDaemonBus::resumeRequested, this, &CSimDaemon::onResume);
    connect(m_pBus, &CDaemonBus::startRequested, this, &CSimDaemon::onStart);
    connect(m_pBus, &CDaemonBus::stopRequested, this, &CSimDaemon::onStop);
    connect(m_pBus, &CDaemonBus::busLost, this, []() {
        qCritical() << "tarvik-simd: lost the session bus; exiting";
        QCoreApplication::exit(3);
    });
}

CSimDaemon::~CSimDaemon()
{
    if (m_pControl && m_bus.isConnected()) {
        m_bus.unregisterObject(controlPath);
    }
}

bool CSimDaemon::start(QString* pError)
{
    if (!m_options.m_strIncomingFile.isEmpty()) {
        QString error;
        QStringList warnings;
        const bool loaded = m_script.loadFromFile(m_options.m_strIncomingFile, &error, &warnings);
        for (const QString& warning : warnings) {
            complain(m_options.m_strIncomingFile + QStringLiteral(": ") + warning);
        }
        if (loaded) {
            say(QStringLiteral("%1 scripted messages from %2")
                    .arg(m_script.entries().size())
                    .arg(m_options.m_strIncomingFile));
        } else {
            complain(QStringLiteral("%1: %2; using the built-in messages")
                         .arg(m_options.m_strIncomingFile, error));
        }
    }

    prepareDatabase();

    m_pControl = new CSimControl(this);
    if (!m_bus.registerObject(controlPath, m_pControl, QDBusConnection::ExportScriptableSlots)) {
        complain(QStringLiteral("cannot register %1; DeliverNow and OpenInbox are not available")
                     .arg(controlPath));
    }
    if (!m_pBus->start(pError)) {
        return false;
    }

    updatePollTimer();
    say(QStringLiteral("serving %1 (register: %2, send: %3, delay %4 ms, %5 incoming per "
                       "send/receive)")
            .arg(CDaemonBus::serviceName, CSimOptions::registerModeName(m_options.m_eRegisterMode),
                 CSimOptions::sendModeName(m_options.m_eSendMode))
            .arg(m_options.m_iDelayMs)
            .arg(m_options.m_iIncoming));
    return true;
}

void CSimDaemon::prepareDatabase()
{
    QString error;
    const QString path = CSimStore::databasePath();
    if (m_options.m_bSeedDemo || m_options.m_bRegisterAtStart) {
        const bool existed = CSimStore::databaseExists();
        if (!m_store.ensureDatabase(&error)) {
            complain(error + QStringLiteral("; demo data not written"));
            return;
        }
        if (!existed) {
            say(QStringLiteral("created the database %1").arg(path));
        }
        if (m_options.m_bRegisterAtStart) {
            if (m_store.registerAccount(m_options.m_strNumber, m_options.m_strScreenname, &error)) {
                say(QStringLiteral("account %1 (%2) registered")
                        .arg(m_options.m_strNumber, m_options.m_strScreenname));
            } else {
                complain(error);
            }
        }
        if (m_options.m_bSeedDemo) {
            CTSettings settings;
            m_store.readSettings(settings, nullptr);
            const QString number =
                settings.mynumber().isEmpty() ? m_options.m_strNumber : settings.mynumber();
            const QString name =
                settings.screenname().isEmpty() ? m_options.m_strScreenname : settings.screenname();
            error.clear();
            const int written = m_store.seedDemo(number, name, &error);
            if (!error.isEmpty()) {
                complain(error);
            }
            say(QStringLiteral("%1 demo messages written").arg(written));
        }
        return;
    }
    if (!CSimStore::databaseExists()) {
        say(QStringLiteral("no database at %1 yet; the client creates it when it starts")
                .arg(path));
        return;
    }
    CTSettings settings;
    if (!m_store.readSettings(settings, &error)) {
        complain(error + QStringLiteral("; requests will be answered with failures"));
    }
}

void CSimDaemon::onPause()
{
    m_bPaused = true;
    m_requestTimer.stop();
    updatePollTimer();
}

void CSimDaemon::onResume()
{
    m_bPaused = false;
    if (!m_lstQueue.isEmpty() && !m_requestTimer.isActive()) {
        m_requestTimer.start();
    }
    updatePollTimer();
}

void CSimDaemon::onStart()
{
    m_bStopped = false;
    updatePollTimer();
}

void CSimDaemon::onStop()
{
    m_bStopped = true;
    if (!m_lstQueue.isEmpty()) {
        say(QStringLiteral("%1 pending requests dropped").arg(m_lstQueue.size()));
    }
    m_lstQueue.clear();
    m_requestTimer.stop();
    updatePollTimer();
}

void CSimDaemon::onSendReceiveRequest()
{
    request(eRequestSendReceive, "SendReceiveRequest");
}

void CSimDaemon::onCheckConnectionRequest()
{
    request(eRequestCheckConnection, "CheckConnectionRequest");
}

void CSimDaemon::onRegistrationRequest()
{
    request(eRequestRegistration, "RegistrationRequest");
}

void CSimDaemon::onClientStarted(bool first)
{
    if (first && m_options.m_iOpenInboxAfterMs >= 0) {
        QTimer::singleShot(m_options.m_iOpenInboxAfterMs, this, &CSimDaemon::openInbox);
    }
}

void CSimDaemon::request(eRequest what, const char* name)
{
    if (m_bStopped) {
        say(QStringLiteral("<- %1 ignored: stopped").arg(QLatin1String(name)));
        return;
    }
    say(QStringLiteral("<- %1%2").arg(QLatin1String(name),
                                      m_bPaused ? QStringLiteral(" (held: paused)") : QString()));
    m_lstQueue.append(what);
    if (!m_bPaused && !m_requestTimer.isActive()) {
        m_requestTimer.start();
    }
}

void CSimDaemon::onRequestTimerTimeout()
{
    if (m_bPaused || m_lstQueue.isEmpty()) {
        return;
    }
    perform(m_lstQueue.takeFirst());
    if (!m_lstQueue.isEmpty() && !m_bPaused) {
        m_requestTimer.start();
    }
}

void CSimDaemon::perform(eRequest what)
{
    switch (what) {
        case eRequestSendReceive:
            doSendReceive();
            break;
        case eRequestRegistration:
            doRegistration();
            break;
        case eRequestCheckConnection:
            callClient(QStringLiteral("OnConnectionCheckSucceed"));
            break;
    }
}

void CSimDaemon::doRegistration()
{
    if (m_options.m_eRegisterMode == CSimOptions::eRegisterSilent) {
        say(QStringLiteral("registration left unanswered (--register silent)"));
        return;
    }
    QString error;
    CTSettings settings;
    if (!m_store.readSettings(settings, &error)) {
        complain(QStringLiteral("registration failed: ") + error);
        callClient(QStringLiteral("OnRegistrationFailed"));
        return;
    }
    if (m_options.m_eRegisterMode == CSimOptions::eRegisterFail) {
        if (!m_store.setRegistered(false, &error)) {
            complain(error);
        }
        say(QStringLiteral("registration of %1 refused (--register fail)")
                .arg(settings.mynumber()));
        callClient(QStringLiteral("OnRegistrationFailed"));
        return;
    }
    if (settings.mynumber().trimmed().isEmpty()) {
        complain(QStringLiteral("registration refused: the settings hold no own number"));
        callClient(QStringLiteral("OnRegistrationFailed"));
        return;
    }
    if (!m_store.setRegistered(true, &error)) {
        complain(QStringLiteral("registration failed: ") + error);
        callClient(QStringLiteral("OnRegistrationFailed"));
        return;
    }
    say(QStringLiteral("account %1 (%2) registered")
            .arg(settings.mynumber(), settings.screenname()));
    callClient(QStringLiteral("OnRegistrationSucceed"));
}

void CSimDaemon::doSendReceive()
{
    if (m_options.m_eSendMode == CSimOptions::eSendSilent) {
        say(QStringLiteral("send/receive left unanswered (--send silent)"));
        return;
    }
    QString error;
    CTSettings settings;
    if (!m_store.readSettings(settings, &error)) {
        complain(QStringLiteral("send/receive failed: ") + error);
        callClient(QStringLiteral("OnMessagesSendFailed"));
        return;
    }
    const CSimStore::CSendResult result =
        m_store.sendOutbox(m_options.m_eSendMode, settings.mynumber());
    if (!result.m_bOk) {
        complain(QStringLiteral("send/receive failed: ") + result.m_strError);
        callClient(QStringLiteral("OnMessagesSendFailed"));
        return;
    }
    if (result.m_iQueued > 0) {
        say(QStringLiteral("%1 of %2 queued messages sent, %3 failed")
                .arg(result.m_iSent)
                .arg(result.m_iQueued)
                .arg(result.m_iFailed));
        if (result.m_iFailed == 0) {
            callClient(QStringLiteral("OnMessagesSent"));
        } else if (result.m_iSent == 0) {
            callClient(QStringLiteral("OnMessagesSendFailed"));
        } else {
            callClient(QStringLiteral("OnMessagesPartiallySent"));
        }
    } else {
        say(QStringLiteral("nothing queued in the outbox"));
    }

    QList<CTarvik> incoming = result.m_lstLoopback;
    const bool registered = settings.regflag() == 1 && !settings.mynumber().isEmpty();
    if (registered) {
        const QDateTime now = QDateTime::currentDateTimeUtc();
        for (int i = 0; i < m_options.m_iIncoming; ++i) {
            incoming.append(m_script.next(settings.mynumber(), now));
        }
    } else if (m_options.m_iIncoming > 0) {
        say(QStringLiteral("the account is not registered: no messages from others"));
    }
    deliverAndNotify(incoming);
}

int CSimDaemon::deliverAndNotify(const QList<CTarvik>& tarviks)
{
    if (tarviks.isEmpty()) {
        return 0;
    }
    QString error;
    const int stored = m_store.deliver(tarviks, &error);
    if (!error.isEmpty()) {
        complain(error);
    }
    if (stored > 0) {
        say(QStringLiteral("%1 new messages in the inbox").arg(stored));
        callClient(QStringLiteral("OnMessagesReceived"));
        if (m_options.m_bOpenInboxOnReceive) {
            callClient(QStringLiteral("OpenInbox"));
        }
    }
    return stored;
}

int CSimDaemon::deliverNow(int count)
{
    CTSettings settings;
    QString error;
    if (!m_store.readSettings(settings, &error)) {
        complain(QStringLiteral("cannot deliver: ") + error);
        return 0;
    }
    QList<CTarvik> incoming;
    const QDateTime now = QDateTime::currentDateTimeUtc();
    for (int i = 0; i < count; ++i) {
        incoming.append(m_script.next(settings.mynumber(), now));
    }
    return deliverAndNotify(incoming);
}

void CSimDaemon::openInbox()
{
    callClient(QStringLiteral("OpenInbox"));
}

void CSimDaemon::onPollTimeout()
{
    CTSettings settings;
    QString error;
    if (!m_store.readSettings(settings, &error)) {
        complain(QStringLiteral("poll skipped: ") + error);
        return;
    }
    if (settings.regflag() != 1 || settings.mynumber().isEmpty()) {
        return;
    }
    deliverNow(qMax(1, m_options.m_iIncoming));
}

void CSimDaemon::updatePollTimer()
{
    if (m_options.m_iPollSeconds > 0 && !m_bPaused && !m_bStopped) {
        if (!m_pollTimer.isActive()) {
            m_pollTimer.start();
        }
    } else {
        m_pollTimer.stop();
    }
}

void CSimDaemon::callClient(const QString& method)
{
    m_pBus->callClient(method);
}

}  // namespace Dravo
