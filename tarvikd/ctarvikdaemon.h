// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDBusConnection>
#include <QElapsedTimer>
#include <QList>
#include <QObject>
#include <QSet>
#include <QThread>
#include <QTimer>

#include "cdaemonstore.h"
#include "cpasswordstore.h"
#include "ctarvik.h"
#include "cxmppconfig.h"
#include "cxmppconnection.h"

namespace Dravo {

class CDaemonBus;
class CInboxNotifier;

// The daemon: carries the client's outbox to XMPP recipients and incoming tarviks into the
// inbox, registers the account, and answers the client over D-Bus. Database work happens
// here, in short steps, never while waiting for the network; the XMPP session runs on its
// own thread.
class CTarvikDaemon : public QObject
{
    Q_OBJECT
public:
    // Send/receive and connection checks give up when no session is up within this time.
    static constexpr int connectWaitMs = 15000;
    // The client tells the user that registration takes up to a minute.
    static constexpr int registrationWaitMs = 60000;
    static constexpr int maxBackoffMs = 60000;

    CTarvikDaemon(const CXmppConfig& config, const QDBusConnection& bus, QObject* parent = nullptr);
    ~CTarvikDaemon() override;

    // Prepares the database, goes on the bus and, with a registered account, online.
    // False with the reason when another daemon runs or the bus refuses.
    bool start(QString* pError);
    // start() failed because another daemon serves the bus name.
    bool anotherRunning() const;
    // Ends the session cleanly and stores what has arrived; called before quitting.
    void shutdown();

private Q_SLOTS:
    void onSendReceiveRequest();
    void onCheckConnectionRequest();
    void onRegistrationRequest();
    void onPause();
    void onResume();
    void onStop();
    void onConnected(const QString& boundJid);
    void onDisconnected(const QString& reason, bool authFailed);
    void onRegistrationFinished(int result, const QString& detail);
    void onSendFinished(quint64 batch, bool confirmed);
    void onPingFinished(quint64 token, bool ok);
    void onMessageReceived(quint64 sequence, const QString& stanza);
    void onReconnectTimeout();
    void onJobTimeout();
    void onRegistrationTimeout();
    void flushIncoming();
    void onNetworkState(uint state);
    void onNetworkReachable();
    void onClientStarted();
    void onClientGone();

private:
    enum eRegistrationStep
    {
        eRegNone,
        eRegLogin,        // trying the password we keep
        eRegCreate,       // in-band registration
        eRegLoginCreated  // logging in to the account just made
    };

    struct COutgoing
    {
        CTarvik m_tarvik;
        QString m_strId;
        bool m_bAddressable = true;  // every recipient is a phone number or an address
    };

    // One send/receive at a time; requests that come meanwhile make one more round.
    struct CSendJob
    {
        bool m_bActive = false;
        quint64 m_uBatch = 0;
        QList<COutgoing> m_lstOutgoing;
        QList<int> m_lstAlreadySent;  // outbox rows whose copy is in the sent folder
        QStringList m_lstStanzas;
        QElapsedTimer m_started;
    };

    struct CIncoming
    {
        quint64 m_uSequence;
        CTarvik m_tarvik;
        QString m_strKey;
    };

    bool loadAccount();
    void goOnline();
    void goOffline();
    void scheduleReconnect();
    CXmppConnection::CEndpoint endpoint(const QString& jid, const QString& password) const;
    void beginSendJob();
    void transmitJob();
    void finishJob(bool confirmed);
    void failRegistration(const QString& why);
    void succeedRegistration();
    QString ownAddress() const;
    void callClient(const char* method);

    CXmppConfig m_config;
    QDBusConnection m_bus;
    CDaemonBus* m_pBus;
    CInboxNotifier* m_pNotifier;
    CDaemonStore m_store;
    CPasswordStore m_passwords;
    QThread m_thread;
    CXmppConnection* m_pXmpp;

    // The account.
    QString m_strJid;
    QString m_strPassword;
    QString m_strNumber;

    bool m_bOnline;
    bool m_bConnecting;
    bool m_bPaused;
    int m_iBackoffMs;
    QTimer m_reconnectTimer;

    eRegistrationStep m_eRegStep;
    QString m_strRegJid;
    QString m_strRegPassword;
    bool m_bRegPasswordWasKept;
    QTimer m_registrationTimer;

    CSendJob m_job;
    bool m_bSendAgain;
    quint64 m_uNextBatch;
    QTimer m_jobTimer;

    QList<quint64> m_lstChecks;  // connection checks waiting for a session
    QTimer m_checkTimer;

    QList<CIncoming> m_lstIncoming;
    QSet<QString> m_setSeen;  // sender + id of what the inbox holds
    bool m_bSeenLoaded;
    QTimer m_flushTimer;
};

}  // namespace Dravo
