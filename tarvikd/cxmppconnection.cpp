// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cxmppconnection.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <openssl/crypto.h>
#include <sys/socket.h>

#include <QDeadlineTimer>
#include <QDebug>
#include <QElapsedTimer>
#include <QMutex>
#include <QSocketNotifier>
#include <QTimer>
#include <cstring>

namespace Dravo {

namespace {

const char* const kNsPing = "urn:xmpp:ping";
const char* const kNsRegisterFeature = "http://jabber.org/features/iq-register";
// A TLS record carries at most 16 KiB and libstrophe reads 4 KiB at a time: this many
// rounds empty a record that arrived whole, so no decrypted data waits unseen.
const int kRoundsPerWakeup = 5;
const int kBusyIntervalMs = 20;
const int kWriteBudgetMs = 5;
const int kCloseMs = 3000;  // the longest a closing handshake may take

QString text(const char* value)
{
    return value ? QString::fromUtf8(value) : QString();
}

bool equals(const char* value, const char* expected)
{
    return value && std::strcmp(value, expected) == 0;
}

int certificateRefused(const xmpp_tlscert_t* cert, const char* const errormsg)
{
    qWarning().noquote() << QStringLiteral(
                                "tarvikd: the server's certificate is not trusted (%1), "
                                "connection refused; subject %2")
                                .arg(text(errormsg),
                                     text(xmpp_tlscert_get_string(cert, XMPP_CERT_SUBJECT)));
    return 0;
}

QByteArray escaped(const QString& value)
{
    return value.toHtmlEscaped().toUtf8();
}

QString domainOf(const QString& jid)
{
    const int at = jid.indexOf(QLatin1Char('@'));
    QString domain = at >= 0 ? jid.mid(at + 1) : jid;
    const int slash = domain.indexOf(QLatin1Char('/'));
    return slash >= 0 ? domain.left(slash) : domain;
}

QString localOf(const QString& jid)
{
    const int at = jid.indexOf(QLatin1Char('@'));
    return at >= 0 ? jid.left(at) : QString();
}

}  // namespace

// libstrophe calls plain functions with a user pointer; these hand over to the object.
struct CStropheCallbacks
{
    // libstrophe's warnings and errors go to the daemon's log; its debug output would carry
    // whole stanzas, passwords included, and stays off. Its only word on refused
    // credentials is an error of the "auth" area.
    static void log(void* userdata, xmpp_log_level_t level, const char* area, const char* msg)
    {
        if (level == XMPP_LEVEL_DEBUG) {
            static_cast<CXmppConnection*>(userdata)->debugLine(area, msg);
            return;
        }
        if (level < XMPP_LEVEL_WARN) {
            return;
        }
        qWarning().noquote() << QStringLiteral("tarvikd: xmpp %1: %2").arg(text(area), text(msg));
        if (level == XMPP_LEVEL_ERROR && equals(area, "auth")) {
            static_cast<CXmppConnection*>(userdata)->m_bAuthFailed = true;
        }
    }

    // The socket callback carries no user pointer: connections are found by handle.
    static QMutex registryMutex;
    static QHash<xmpp_conn_t*, CXmppConnection*> registry;

    static void connEvent(xmpp_conn_t*, xmpp_conn_event_t event, int error,
                          xmpp_stream_error_t* streamError, void* userdata)
    {
        QString detail;
        if (streamError) {
            detail = streamError->text ? text(streamError->text)
                                       : QStringLiteral("stream error %1").arg(streamError->type);
        }
        static_cast<CXmppConnection*>(userdata)->connEvent(event, error, detail);
    }

    static int socket(xmpp_conn_t* conn, void* sock)
    {
        const int fd = *static_cast<int*>(sock);
        // Keep-alive probes find a connection that died without a word (a phone that
        // changed networks) within a few minutes, with no traffic of our own.
        const int on = 1, idle = 120, interval = 30, count = 4;
        ::setsockopt(fd, SOL_SOCKET, SO_KEEPALIVE, &on, sizeof on);
        ::setsockopt(fd, IPPROTO_TCP, TCP_KEEPIDLE, &idle, sizeof idle);
        ::setsockopt(fd, IPPROTO_TCP, TCP_KEEPINTVL, &interval, sizeof interval);
        ::setsockopt(fd, IPPROTO_TCP, TCP_KEEPCNT, &count, sizeof count);
        QMutexLocker lock(&registryMutex);
        if (CXmppConnection* self = registry.value(conn)) {
            self->watchSocket(fd);
        }
        return 0;
    }

    static int stanza(xmpp_conn_t*, xmpp_stanza_t* stanza, void* userdata)
    {
        static_cast<CXmppConnection*>(userdata)->stanza(stanza);
        return 1;
    }

    static int rawFeatures(xmpp_conn_t*, xmpp_stanza_t* stanza, void* userdata)
    {
        static_cast<CXmppConnection*>(userdata)->rawFeatures(stanza);
        return 1;
    }

    static int rawTls(xmpp_conn_t*, xmpp_stanza_t* stanza, void* userdata)
    {
        static_cast<CXmppConnection*>(userdata)->rawTls(stanza);
        return 0;
    }

    static int registerAnswer(xmpp_conn_t*, xmpp_stanza_t* stanza, void* userdata)
    {
        static_cast<CXmppConnection*>(userdata)->registerAnswer(stanza);
        return 0;
    }
};

QMutex CStropheCallbacks::registryMutex;
QHash<xmpp_conn_t*, CXmppConnection*> CStropheCallbacks::registry;

CXmppConnection::CXmppConnection(QObject* parent)
    : QObject(parent),
      m_pCtx(nullptr),
      m_pConn(nullptr),
      m_eMode(eModeIdle),
      m_pReadNotifier(new QSocketNotifier(QSocketNotifier::Read, this)),
      m_pWriteNotifier(new QSocketNotifier(QSocketNotifier::Write, this)),
      m_pBusyTimer(new QTimer(this)),
      m_bOnline(false),
      m_bPumping(false),
      m_bRegistrationDone(false),
      m_bReleasing(false),
      m_bAuthFailed(false),
      m_bSmEnabled(false),
      m_bSmRefused(false),
      m_uEpoch(0),
      m_uReceived(0),
      m_uAcked(0),
      m_uNextId(0),
      m_bCsiOffered(false),
      m_bSmOffered(false),
      m_bClientActive(false),
      m_bServerSeesActive(true)
{
    qRegisterMetaType<CEndpoint>();
    connect(m_pReadNotifier, &QSocketNotifier::activated, this, &CXmppConnection::onSocketActivity);
    connect(m_pWriteNotifier, &QSocketNotifier::activated, this,
            &CXmppConnection::onSocketActivity);
    m_pBusyTimer->setInterval(kBusyIntervalMs);
    connect(m_pBusyTimer, &QTimer::timeout, this, &CXmppConnection::pump);
}

CXmppConnection::~CXmppConnection()
{
    failPending(QStringLiteral("the daemon is ending"));
    releaseConnection();
}

bool CXmppConnection::newConnection(const CEndpoint& endpoint)
{
    releaseConnection();
    m_endpoint = endpoint;
    m_strLastError.clear();
    m_bAuthFailed = false;
    m_bCsiOffered = false;
    m_bSmOffered = false;
    m_log = xmpp_log_t{&CStropheCallbacks::log, this};
    m_pCtx = xmpp_ctx_new(nullptr, &m_log);
    m_pConn = m_pCtx ? xmpp_conn_new(m_pCtx) : nullptr;
    if (!m_pConn) {
        qCritical() << "tarvikd: libstrophe could not make a connection object";
        return false;
    }
    {
        QMutexLocker lock(&CStropheCallbacks::registryMutex);
        CStropheCallbacks::registry.insert(m_pConn, this);
    }
    ++m_uEpoch;
    xmpp_conn_set_flags(m_pConn, XMPP_CONN_FLAG_MANDATORY_TLS | XMPP_CONN_FLAG_DISABLE_SM);
    if (!endpoint.m_strCaFile.isEmpty()) {
        xmpp_conn_set_cafile(m_pConn, endpoint.m_strCaFile.toLocal8Bit().constData());
    }
    xmpp_conn_set_certfail_handler(m_pConn, &certificateRefused);
    xmpp_conn_set_sockopt_callback(m_pConn, &CStropheCallbacks::socket);
    return true;
}

void CXmppConnection::releaseConnection()
{
    unwatchSocket();
    m_pBusyTimer->stop();
    m_bOnline = false;
    m_bSmEnabled = false;
    m_uReceived = 0;
    m_uAcked = 0;
    m_setPending.clear();
    if (m_pConn) {
        xmpp_conn_t* conn = m_pConn;
        m_pConn = nullptr;
        {
            QMutexLocker lock(&CStropheCallbacks::registryMutex);
            CStropheCallbacks::registry.remove(conn);
        }
        // Releasing a live connection may still report its end: ignored while releasing.
        m_bReleasing = true;
        xmpp_conn_release(conn);
        m_bReleasing = false;
    }
    if (m_pCtx) {
        xmpp_ctx_free(m_pCtx);
        m_pCtx = nullptr;
    }
    m_eMode = eModeIdle;
}

void CXmppConnection::releaseLater()
{
    const quint64 epoch = m_uEpoch;
    QTimer::singleShot(0, this, [this, epoch]() {
        if (epoch == m_uEpoch && m_pConn && xmpp_conn_is_disconnected(m_pConn)) {
            releaseConnection();
        }
    });
}

void CXmppConnection::open(const CEndpoint& endpoint)
{
    failPending(QStringLiteral("a new session was opened"));
    if (!newConnection(endpoint)) {
        emit disconnected(QStringLiteral("libstrophe failed"), false);
        return;
    }
    m_eMode = eModeLogin;
    xmpp_conn_set_jid(m_pConn, endpoint.m_strJid.toUtf8().constData());
    xmpp_conn_set_pass(m_pConn, endpoint.m_strPassword.toUtf8().constData());
    xmpp_handler_add(m_pConn, &CStropheCallbacks::stanza, nullptr, nullptr, nullptr, this);
    const QByteArray host = endpoint.m_strHost.toUtf8();
    if (xmpp_connect_client(m_pConn, host.isEmpty() ? nullptr : host.constData(), endpoint.m_uPort,
                            &CStropheCallbacks::connEvent, this) != XMPP_EOK) {
        releaseConnection();
        emit disconnected(QStringLiteral("cannot reach the server of %1").arg(endpoint.m_strJid),
                          false);
        return;
    }
    pump();
}

void CXmppConnection::close()
{
    failPending(QStringLiteral("the session was closed"));
    if (m_pConn && m_bOnline) {
        sendRaw(QByteArrayLiteral("<presence type='unavailable'/>"));
        // Nothing more of ours after the end of the stream, not even an answer to the
        // server's request for an acknowledgement.
        m_bSmEnabled = false;
        xmpp_disconnect(m_pConn);
        // Let the closing handshake run to its end: libstrophe frees a session's TLS state
        // only when the session ends by itself, not when a live one is released. Bounded, so
        // quitting never hangs on a dead peer.
        // A time, not a number of rounds: a round ends early whenever data arrives, and a
        // loaded machine needs the time.
        const QDeadlineTimer deadline(kCloseMs);
        while (m_pConn && !xmpp_conn_is_disconnected(m_pConn) && !deadline.hasExpired()) {
            xmpp_run_once(m_pCtx, 10);
        }
    }
    releaseConnection();
}

void CXmppConnection::finish()
{
    close();
    // OpenSSL keeps random generators per thread; they are freed here rather than left to
    // the thread's exit, which does not always reach them.
    OPENSSL_thread_stop();
}

void CXmppConnection::registerAccount(const CEndpoint& endpoint)
{
    failPending(QStringLiteral("registration replaces the session"));
    m_bRegistrationDone = false;
    if (!newConnection(endpoint)) {
        finishRegistration(eUnreachable, QStringLiteral("libstrophe failed"));
        return;
    }
    m_eMode = eModeRegister;
    // A raw stream: no login, the stream is ours to secure and to use.
    xmpp_conn_set_jid(m_pConn, domainOf(endpoint.m_strJid).toUtf8().constData());
    const QByteArray host = endpoint.m_strHost.toUtf8();
    if (xmpp_connect_raw(m_pConn, host.isEmpty() ? nullptr : host.constData(), endpoint.m_uPort,
                         &CStropheCallbacks::connEvent, this) != XMPP_EOK) {
        finishRegistration(eUnreachable, QStringLiteral("cannot reach the server"));
        return;
    }
    pump();
}

void CXmppConnection::finishRegistration(eRegistration result, const QString& detail)
{
    if (m_bRegistrationDone) {
        return;
    }
    m_bRegistrationDone = true;
    emit registrationFinished(result, detail);
    if (m_pConn && !xmpp_conn_is_disconnected(m_pConn)) {
        xmpp_disconnect(m_pConn);
        pump();
    }
    releaseLater();
}

void CXmppConnection::connEvent(int event, int error, const QString& streamError)
{
    if (m_bReleasing || !m_pConn) {
        return;
    }
    if (event == XMPP_CONN_RAW_CONNECT) {
        xmpp_conn_open_stream_default(m_pConn);
        return;
    }
    if (event == XMPP_CONN_CONNECT) {
        if (m_eMode == eModeRegister) {
            // The stream was opened (again, after TLS): its features come next.
            xmpp_handler_delete(m_pConn, &CStropheCallbacks::rawFeatures);
            xmpp_handler_add(m_pConn, &CStropheCallbacks::rawFeatures, XMPP_NS_STREAMS, "features",
                             nullptr, this);
            return;
        }
        m_bOnline = true;
        m_bSmEnabled = false;
        m_uReceived = 0;
        m_uAcked = 0;
        // Stream management only where the server offers it: an element it does not know
        // would end the stream.
        if (m_bSmOffered && !m_bSmRefused) {
            sendRaw(QByteArrayLiteral("<enable xmlns='urn:xmpp:sm:3'/>"));
        }
        // Presence makes the server hand over what it stored while we were away.
        sendRaw(QByteArrayLiteral("<presence><priority>1</priority></presence>"));
        m_bServerSeesActive = true;
        sendClientState();
        emit connected(text(xmpp_conn_get_bound_jid(m_pConn)));
        return;
    }
    // Disconnected or failed: libstrophe has closed the socket.
    unwatchSocket();
    QString reason = streamError;
    if (reason.isEmpty() && error != 0) {
        reason = QString::fromLocal8Bit(std::strerror(error));
    }
    if (reason.isEmpty()) {
        reason = m_bOnline ? QStringLiteral("the server closed the session")
                           : QStringLiteral("no session could be opened");
    }
    const bool wasOnline = m_bOnline;
    m_bOnline = false;
    failPending(reason);
    if (m_eMode == eModeRegister) {
        finishRegistration(eUnreachable, reason);
    } else if (m_eMode == eModeLogin) {
        if (m_bAuthFailed && !wasOnline) {
            reason = QStringLiteral("the server refused the account's credentials");
        }
        emit disconnected(reason, m_bAuthFailed && !wasOnline);
    }
    m_eMode = eModeIdle;
    releaseLater();
}

void CXmppConnection::rawFeatures(xmpp_stanza_t* features)
{
    if (!xmpp_conn_is_secured(m_pConn)) {
        xmpp_stanza_t* starttls = xmpp_stanza_get_child_by_name(features, "starttls");
        if (!starttls || !equals(xmpp_stanza_get_ns(starttls), XMPP_NS_TLS)) {
            finishRegistration(eUnreachable, QStringLiteral("the server offers no TLS"));
            return;
        }
        xmpp_handler_add(m_pConn, &CStropheCallbacks::rawTls, XMPP_NS_TLS, nullptr, nullptr, this);
        sendRaw(QByteArrayLiteral("<starttls xmlns='urn:ietf:params:xml:ns:xmpp-tls'/>"));
        return;
    }
    xmpp_stanza_t* feature = xmpp_stanza_get_child_by_ns(features, kNsRegisterFeature);
    if (!feature) {
        finishRegistration(eRefused, QStringLiteral("the server does not offer registration"));
        return;
    }
    const QString id = QStringLiteral("reg%1").arg(++m_uNextId);
    xmpp_id_handler_add(m_pConn, &CStropheCallbacks::registerAnswer, id.toUtf8().constData(), this);
    sendRaw(
        "<iq type='set' id='" + id.toUtf8() + "' to='" + escaped(domainOf(m_endpoint.m_strJid)) +
        "'><query xmlns='jabber:iq:register'><username>" + escaped(localOf(m_endpoint.m_strJid)) +
        "</username><password>" + escaped(m_endpoint.m_strPassword) + "</password></query></iq>");
}

void CXmppConnection::rawTls(xmpp_stanza_t* answer)
{
    if (!equals(xmpp_stanza_get_name(answer), "proceed")) {
        finishRegistration(eUnreachable, QStringLiteral("the server refused TLS"));
        return;
    }
    // The handshake runs here, on this thread, and checks the certificate.
    if (xmpp_conn_tls_start(m_pConn) != 0) {
        finishRegistration(eUnreachable,
                           QStringLiteral("TLS failed (is the certificate trusted?)"));
        return;
    }
    xmpp_conn_open_stream_default(m_pConn);
}

void CXmppConnection::registerAnswer(xmpp_stanza_t* answer)
{
    const char* type = xmpp_stanza_get_type(answer);
    if (equals(type, "result")) {
        finishRegistration(eRegistered, QString());
        return;
    }
    xmpp_stanza_t* error = xmpp_stanza_get_child_by_name(answer, "error");
    xmpp_stanza_t* condition = error ? xmpp_stanza_get_children(error) : nullptr;
    const QString name = condition ? text(xmpp_stanza_get_name(condition)) : QString();
    if (name == QLatin1String("conflict")) {
        finishRegistration(eTaken, QStringLiteral("the account exists"));
    } else {
        finishRegistration(eRefused, name.isEmpty() ? QStringLiteral("refused") : name);
    }
}

void CXmppConnection::stanza(xmpp_stanza_t* stanza)
{
    const char* name = xmpp_stanza_get_name(stanza);
    const char* ns = xmpp_stanza_get_ns(stanza);
    if (equals(ns, XMPP_NS_SM)) {
        if (equals(name, "r")) {
            sendAck();
        } else if (equals(name, "enabled")) {
            m_bSmEnabled = true;
            m_uReceived = 0;
            m_uAcked = 0;
            m_setPending.clear();
        } else if (equals(name, "failed")) {
            m_bSmRefused = true;
            qInfo() << "tarvikd: the server refused stream management";
        }
        return;
    }
    const bool isStanza = equals(name, "message") || equals(name, "iq") || equals(name, "presence");
    if (!isStanza) {
        return;
    }
    ++m_uReceived;
    const quint64 sequence = (m_uEpoch << 32) | (m_uReceived & 0xffffffffu);
    if (equals(name, "message")) {
        char* buffer = nullptr;
        size_t length = 0;
        if (xmpp_stanza_to_text(stanza, &buffer, &length) != XMPP_EOK) {
            qWarning() << "tarvikd: an incoming message could not be read";
            return;
        }
        const QByteArray bytes(buffer, int(length));
        xmpp_free(m_pCtx, buffer);
        if (length > size_t(maxStanzaBytes)) {
            qWarning().noquote() << QStringLiteral(
                                        "tarvikd: dropped a message of %1 bytes from %2 (the "
                                        "limit is %3)")
                                        .arg(length)
                                        .arg(text(xmpp_stanza_get_from(stanza)).left(200))
                                        .arg(maxStanzaBytes);
            return;
        }
        m_setPending.insert(sequence);
        emit messageReceived(sequence, QString::fromUtf8(bytes));
        return;
    }
    if (!equals(name, "iq")) {
        return;  // presence: nothing to do
    }
    const char* type = xmpp_stanza_get_type(stanza);
    const QString id = text(xmpp_stanza_get_id(stanza));
    if (equals(type, "result") || equals(type, "error")) {
        // A server that does not know ping still answered, in order: that confirms too.
        if (m_hashBatches.contains(id)) {
            emit sendFinished(m_hashBatches.take(id), true);
        } else if (m_hashPings.contains(id)) {
            emit pingFinished(m_hashPings.take(id), true);
        }
        return;
    }
    if (!equals(type, "get") && !equals(type, "set")) {
        return;
    }
    const QByteArray to = escaped(text(xmpp_stanza_get_from(stanza)));
    const QByteArray toAttribute = to.isEmpty() ? QByteArray() : " to='" + to + "'";
    const QByteArray idAttribute = "id='" + escaped(id) + "'";
    if (equals(type, "get") && xmpp_stanza_get_child_by_ns(stanza, kNsPing)) {
        sendRaw("<iq type='result' " + idAttribute + toAttribute + "/>");
    } else {
        sendRaw("<iq type='error' " + idAttribute + toAttribute +
                "><error type='cancel'><service-unavailable "
                "xmlns='urn:ietf:params:xml:ns:xmpp-stanzas'/></error></iq>");
    }
}

void CXmppConnection::send(quint64 batch, const QStringList& stanzas)
{
    if (!m_pConn || !m_bOnline) {
        emit sendFinished(batch, false);
        return;
    }
    for (const QString& stanza : stanzas) {
        const QByteArray data = stanza.toUtf8();
        xmpp_send_raw(m_pConn, data.constData(), size_t(data.size()));
    }
    const QString id = QStringLiteral("confirm%1").arg(++m_uNextId);
    m_hashBatches.insert(id, batch);
    sendRaw("<iq type='get' id='" + id.toUtf8() + "' to='" +
            escaped(domainOf(m_endpoint.m_strJid)) + "'><ping xmlns='urn:xmpp:ping'/></iq>");
}

void CXmppConnection::ping(quint64 token)
{
    if (!m_pConn || !m_bOnline) {
        emit pingFinished(token, false);
        return;
    }
    const QString id = QStringLiteral("ping%1").arg(++m_uNextId);
    m_hashPings.insert(id, token);
    sendRaw("<iq type='get' id='" + id.toUtf8() + "' to='" +
            escaped(domainOf(m_endpoint.m_strJid)) + "'><ping xmlns='urn:xmpp:ping'/></iq>");
}

void CXmppConnection::handled(quint64 sequence)
{
    if (!m_setPending.remove(sequence) || !m_bSmEnabled) {
        return;
    }
    // Tell the server at once when the backlog is cleared, so it can forget what it keeps.
    if (m_setPending.isEmpty()) {
        sendAck();
    }
}

void CXmppConnection::setClientActive(bool active)
{
    m_bClientActive = active;
    sendClientState();
}

void CXmppConnection::sendClientState()
{
    // Only to a server that offered it: to one that did not, the element is a stream error.
    if (!m_pConn || !m_bOnline || !m_bCsiOffered || m_bClientActive == m_bServerSeesActive) {
        return;
    }
    m_bServerSeesActive = m_bClientActive;
    sendRaw(m_bClientActive ? QByteArrayLiteral("<active xmlns='urn:xmpp:csi:0'/>")
                            : QByteArrayLiteral("<inactive xmlns='urn:xmpp:csi:0'/>"));
    qInfo().noquote() << QStringLiteral("tarvikd: told the server the client is %1")
                             .arg(m_bClientActive ? QStringLiteral("active")
                                                  : QStringLiteral("inactive"));
}

void CXmppConnection::debugLine(const char* area, const char* msg)
{
    // libstrophe handles the stream features after authentication itself and passes them
    // to no handler of ours; its debug line of what it received is the one place they
    // show. Read there, and only before the session is up: a server whose features are
    // not seen is simply never told the client's state.
    if (m_bOnline || m_eMode != eModeLogin || !equals(area, "xmpp") || !msg) {
        return;
    }
    static const char kPrefix[] = "RECV: <features xmlns=\"http://etherx.jabber.org/streams\">";
    if (std::strncmp(msg, kPrefix, sizeof kPrefix - 1) == 0) {
        m_bCsiOffered = m_bCsiOffered || std::strstr(msg, "<csi xmlns=\"urn:xmpp:csi:0\"");
        m_bSmOffered = m_bSmOffered || std::strstr(msg, "<sm xmlns=\"urn:xmpp:sm:3\"");
    }
}

void CXmppConnection::sendAck()
{
    if (!m_bSmEnabled || !m_pConn) {
        return;
    }
    quint64 handledCount = m_uReceived;
    for (const quint64 sequence : qAsConst(m_setPending)) {
        handledCount = qMin(handledCount, (sequence & 0xffffffffu) - 1);
    }
    m_uAcked = handledCount;
    sendRaw("<a xmlns='urn:xmpp:sm:3' h='" + QByteArray::number(handledCount) + "'/>");
}

void CXmppConnection::failPending(const QString& reason)
{
    Q_UNUSED(reason);
    const QList<quint64> batches = m_hashBatches.values();
    const QList<quint64> pings = m_hashPings.values();
    m_hashBatches.clear();
    m_hashPings.clear();
    for (const quint64 batch : batches) {
        emit sendFinished(batch, false);
    }
    for (const quint64 token : pings) {
        emit pingFinished(token, false);
    }
}

void CXmppConnection::sendRaw(const QByteArray& data)
{
    if (!m_pConn) {
        return;
    }
    xmpp_send_raw(m_pConn, data.constData(), size_t(data.size()));
    pump();
}

void CXmppConnection::watchSocket(int fd)
{
    // The two notifiers live as long as the object and follow whichever socket libstrophe
    // opened last: a notifier made and dropped per connection could meet its successor on
    // a reused descriptor.
    for (QSocketNotifier* notifier : {m_pReadNotifier, m_pWriteNotifier}) {
        notifier->setEnabled(false);
        notifier->setSocket(fd);
    }
    m_pReadNotifier->setEnabled(true);
    m_pWriteNotifier->setEnabled(true);
}

void CXmppConnection::unwatchSocket()
{
    m_pReadNotifier->setEnabled(false);
    m_pWriteNotifier->setEnabled(false);
}

void CXmppConnection::onSocketActivity()
{
    pump();
}

void CXmppConnection::pump()
{
    if (m_bPumping || !m_pCtx) {
        return;
    }
    m_bPumping = true;
    for (int i = 0; i < kRoundsPerWakeup && m_pCtx; ++i) {
        xmpp_run_once(m_pCtx, 0);
    }
    // libstrophe writes one queued stanza per round: a long queue goes out here, for a
    // few milliseconds at most, before the loop hears of anything else.
    QElapsedTimer budget;
    budget.start();
    while (m_pConn && xmpp_conn_send_queue_len(m_pConn) > 0 && !budget.hasExpired(kWriteBudgetMs)) {
        xmpp_run_once(m_pCtx, 0);
    }
    m_bPumping = false;
    // Until the session is up libstrophe also has work of its own between reads (a stream
    // restart after TLS and after authentication, its time-outs): it is driven by the timer
    // too, not only by the socket.
    const bool handshaking =
        (m_eMode == eModeLogin && !m_bOnline) || (m_eMode == eModeRegister && !m_bRegistrationDone);
    const bool busy = m_pConn && (handshaking || xmpp_conn_is_connecting(m_pConn) ||
                                  xmpp_conn_send_queue_len(m_pConn) > 0);
    if (m_pWriteNotifier->socket() >= 0 && m_pReadNotifier->isEnabled()) {
        m_pWriteNotifier->setEnabled(busy);
    }
    if (busy) {
        if (!m_pBusyTimer->isActive()) {
            m_pBusyTimer->start();
        }
    } else {
        m_pBusyTimer->stop();
    }
}

}  // namespace Dravo
