// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <strophe.h>
#include <QByteArray>
#include <QHash>
#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>

class QSocketNotifier;
class QTimer;

namespace Dravo {

// One XMPP session through libstrophe. The object lives on a thread of its own: libstrophe
// resolves names and runs its TLS handshake synchronously, which must never stall the
// daemon's bus and database work. Everything is driven by the socket (notifiers on the
// descriptor libstrophe hands out) and by calls queued from the daemon's thread; an idle
// session wakes only for server traffic.
//
// TLS is mandatory and the certificate is checked against the system's trust store plus an
// optional CA file. Stream management (XEP-0198) is run here rather than by the library, so
// that an incoming message is acknowledged to the server only after the daemon has stored
// it: whatever the server sent and the daemon did not store goes to offline storage when
// the session ends, and arrives again on the next login.
class CXmppConnection : public QObject
{
    Q_OBJECT
public:
    enum eRegistration
    {
        eRegistered,  // the account was created
        eTaken,       // somebody else holds the name
        eRefused,     // the server does not allow it, or said no for another reason
        eUnreachable  // no server, no TLS, or a certificate we do not trust
    };
    Q_ENUM(eRegistration)

    struct CEndpoint
    {
        QString m_strJid;  // bare account address, or the domain alone for registration
        QString m_strPassword;
        QString m_strHost;  // empty: found from the domain (DNS SRV)
        quint16 m_uPort = 0;
        QString m_strCaFile;  // trusted in addition to the system's
    };

    explicit CXmppConnection(QObject* parent = nullptr);
    ~CXmppConnection() override;

    // Largest stanza passed on; anything bigger is dropped with a log line.
    static constexpr int maxStanzaBytes = 65536;

public Q_SLOTS:
    // Logs in; `connected` or `disconnected` follows.
    void open(const Dravo::CXmppConnection::CEndpoint& endpoint);
    // Ends the session cleanly (the server then stores further messages offline).
    void close();
    // close(), and OpenSSL's state of this thread given back: the last call before the
    // thread ends.
    void finish();
    // Creates the account by in-band registration on a connection of its own, then closes
    // it; `registrationFinished` follows.
    void registerAccount(const Dravo::CXmppConnection::CEndpoint& endpoint);
    // Sends the stanzas, then a ping: the server handles one stream in order, so its answer
    // confirms every stanza before it. `sendFinished(batch, true)` on the answer, false when
    // the session ends first.
    void send(quint64 batch, const QStringList& stanzas);
    // An XMPP ping to the server; `pingFinished` follows (false on an error or a lost session).
    void ping(quint64 token);
    // The daemon has dealt with the incoming message of this sequence number (stored or
    // rejected): it may be acknowledged to the server.
    void handled(quint64 sequence);
    // Whether the user has the client open. When the server offers client state indication
    // (XEP-0352) it is told, and may then hold back what is not urgent.
    void setClientActive(bool active);

Q_SIGNALS:
    void connected(const QString& boundJid);
    // `authFailed`: the server refused the credentials.
    void disconnected(const QString& reason, bool authFailed);
    void registrationFinished(int result, const QString& detail);
    void sendFinished(quint64 batch, bool confirmed);
    void pingFinished(quint64 token, bool ok);
    // A message stanza as text; `handled(sequence)` must follow.
    void messageReceived(quint64 sequence, const QString& stanza);

private:
    enum eMode
    {
        eModeIdle,
        eModeLogin,
        eModeRegister
    };

    friend struct CStropheCallbacks;

    bool newConnection(const CEndpoint& endpoint);
    void releaseConnection();
    void connEvent(int event, int error, const QString& streamError);
    void stanza(_xmpp_stanza_t* stanza);
    void rawFeatures(_xmpp_stanza_t* stanza);
    void rawTls(_xmpp_stanza_t* stanza);
    void registerAnswer(_xmpp_stanza_t* stanza);
    void finishRegistration(eRegistration result, const QString& detail);
    void sendRaw(const QByteArray& data);
    void sendAck();
    void releaseLater();
    void watchSocket(int fd);
    void unwatchSocket();
    void pump();
    void onSocketActivity();
    void failPending(const QString& reason);
    void debugLine(const char* area, const char* msg);
    void sendClientState();

    _xmpp_ctx_t* m_pCtx;
    _xmpp_conn_t* m_pConn;
    eMode m_eMode;
    CEndpoint m_endpoint;
    QSocketNotifier* m_pReadNotifier;
    QSocketNotifier* m_pWriteNotifier;
    QTimer* m_pBusyTimer;  // drives libstrophe while it is connecting or has output queued
    bool m_bOnline;        // authenticated and bound
    bool m_bPumping;
    bool m_bRegistrationDone;
    bool m_bReleasing;
    bool m_bAuthFailed;
    xmpp_log_t m_log;
    // Stream management, incoming side.
    bool m_bSmEnabled;
    bool m_bSmRefused;           // the server has no stream management: do not ask again
    quint64 m_uEpoch;            // one per session, in the high half of a sequence number
    quint64 m_uReceived;         // stanzas counted since <enabled/>
    quint64 m_uAcked;            // the h last sent
    QSet<quint64> m_setPending;  // message sequence numbers the daemon still works on
    // Outgoing confirmations: ping id -> batch.
    QHash<QString, quint64> m_hashBatches;
    QHash<QString, quint64> m_hashPings;
    quint64 m_uNextId;
    // Client state indication: offered in this session's features, wanted, and as the
    // server knows it (active when a session begins).
    bool m_bCsiOffered;
    bool m_bSmOffered;  // the session's stream features offered stream management
    bool m_bClientActive;
    bool m_bServerSeesActive;
    QString m_strLastError;
};

}  // namespace Dravo

Q_DECLARE_METATYPE(Dravo::CXmppConnection::CEndpoint)
