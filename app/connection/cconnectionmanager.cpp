// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cconnectionmanager.h"

#include "cplugindirectory.h"

#include "inetworkbackend.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QDir>
#include <QFileInfo>
#include <QPluginLoader>
#include <QTime>
#include <QtDebug>

namespace Dravo {

namespace {

const char* const kHandler = "CConnectionManager::my_connection_handler ";
constexpr int kProbeTimeoutMs = 3000;

QString timeOfDay()
{
    return QTime::currentTime().toString(QStringLiteral("hh:mm:ss"));
}

const char* const kPluginFile = "libtarviknetinfo.so";

// The plugin's root object, kept by Qt for the life of the process; null, with a log line,
// when it is missing or cannot be loaded.
QObject* loadBackendPlugin()
{
    QString strError = QStringLiteral("%1 not found in %2")
                           .arg(QLatin1String(kPluginFile),
                                CConnectionManager::searchPaths().join(QStringLiteral(", ")));
    for (const QString& dir : CConnectionManager::searchPaths()) {
        const QString strPath = QDir(dir).filePath(QLatin1String(kPluginFile));
        if (!QFileInfo::exists(strPath))
            continue;
        QPluginLoader loader(strPath);
        QObject* pRoot = loader.instance();
        if (qobject_cast<INetworkBackend*>(pRoot))
            return pRoot;
        strError = pRoot ? QStringLiteral("%1 is not a network information plugin").arg(strPath)
                         : loader.errorString();
        break;
    }
    qWarning().noquote() << "CConnectionManager: no network information plugin: " + strError;
    return nullptr;
}

}  // namespace

QStringList CConnectionManager::searchPaths()
{
    return {pluginDirectory()};
}

CConnectionManager::CConnectionManager()
{
    m_connectTimer.setSingleShot(true);
    m_connectTimer.setInterval(kDefaultConnectTimeoutMs);
    connect(&m_connectTimer, &QTimer::timeout, this, &CConnectionManager::onConnectTimeout);
}

bool CConnectionManager::requestConnection()
{
    if (m_eBackendState != eBackendNone) {
        qDebug() << "Connection to DBus already established.";
    }
    if (m_bRequestActive) {
        qDebug() << "Cleaning up older connection...";
        cleanUp();
    }
    m_bRequestActive = true;
    if (m_eBackendState == eBackendNone) {
        probeBackend();  // the request goes on once the backend is known
    } else if (m_eBackendState == eBackendReady) {
        startRequest();
    }
    return true;
}

void CConnectionManager::prepare()
{
    if (m_eBackendState == eBackendNone) {
        probeBackend();
    }
}

void CConnectionManager::probeBackend()
{
    m_eBackendState = eBackendProbing;
    QDBusConnection bus = QDBusConnection::systemBus();
    if (!bus.isConnected()) {
        qDebug().noquote() << "Unable to connect to the D-BUS daemon: " + bus.lastError().message();
        loadBackend(false);
        return;
    }
    // Ask NetworkManager once, without waiting, before Qt's backend talks to it
    // synchronously: a name that is owned but never answers must not freeze the GUI.
    QDBusMessage probe = QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.NetworkManager"),
        QStringLiteral("/org/freedesktop/NetworkManager"),
        QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    probe << QStringLiteral("org.freedesktop.NetworkManager") << QStringLiteral("State");
    auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(probe, kProbeTimeoutMs), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [this](QDBusPendingCallWatcher* call) {
                call->deleteLater();
                loadBackend(!call->isError());
            });
}

void CConnectionManager::loadBackend(bool networkManagerAnswered)
{
    if (!m_pBackendObject) {
        m_pBackendObject = loadBackendPlugin();
        m_pBackend = qobject_cast<INetworkBackend*>(m_pBackendObject);
    }
    if (m_pBackend) {
        m_strBackend = m_pBackend->load(networkManagerAnswered);
    }
    if (m_strBackend.isEmpty()) {
        qWarning() << "CConnectionManager: no network information backend, the network counts "
                      "as up";
    } else {
        qDebug().noquote() << "CConnectionManager: network information from " + m_strBackend;
    }
    if (m_strBackend == QLatin1String("networkmanager")) {
        watchNetworkManager();
    }
    if (m_pBackend && !m_strBackend.isEmpty()) {
        // A change reported by the backend is newer than any state read directly
        // (connected before the request's own handler, so that it runs first).
        connect(m_pBackendObject, SIGNAL(reachabilityChanged(bool)), this, SLOT(clearOverride()));
    }
    m_eBackendState = eBackendReady;
    if (m_bRequestActive) {
        startRequest();
    }
}

void CConnectionManager::watchNetworkManager()
{
    // Qt's backend keeps its last state when NetworkManager goes away; a vanished
    // NetworkManager means no Internet, and a new one is asked for its state.
    auto* watcher = new QDBusServiceWatcher(QStringLiteral("org.freedesktop.NetworkManager"),
                                            QDBusConnection::systemBus(),
                                            QDBusServiceWatcher::WatchForOwnerChange, this);
    connect(watcher, &QDBusServiceWatcher::serviceUnregistered, this, [this]() {
        qWarning() << "CConnectionManager: NetworkManager left the system bus";
        m_iOverride = 0;
        onReachabilityChanged(false);
    });
    connect(watcher, &QDBusServiceWatcher::serviceRegistered, this, [this]() {
        QDBusMessage get = QDBusMessage::createMethodCall(
            QStringLiteral("org.freedesktop.NetworkManager"),
            QStringLiteral("/org/freedesktop/NetworkManager"),
            QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
        get << QStringLiteral("org.freedesktop.NetworkManager") << QStringLiteral("State");
        auto* call = new QDBusPendingCallWatcher(
            QDBusConnection::systemBus().asyncCall(get, kProbeTimeoutMs), this);
        connect(call, &QDBusPendingCallWatcher::finished, this,
                [this](QDBusPendingCallWatcher* finished) {
                    finished->deleteLater();
                    const QDBusPendingReply<QDBusVariant> reply = *finished;
                    const uint state = reply.isError() ? 0 : reply.value().variant().toUInt();
                    const bool online = state == 70;  // NM_STATE_CONNECTED_GLOBAL
                    m_iOverride = online ? 1 : 0;
                    onReachabilityChanged(online);
                });
    });
}

void CConnectionManager::startRequest()
{
    if (m_pBackend && !m_strBackend.isEmpty()) {
        m_reachabilityConnection = connect(m_pBackendObject, SIGNAL(reachabilityChanged(bool)),
                                           this, SLOT(onReachabilityChanged(bool)));
    }
    m_bWasOnline = isOnline();
    // The first answer is queued so that the caller's code after requestConnection()
    // runs first; a request replaced in the meantime gives no answer.
    const int request = ++m_iRequest;
    if (m_bWasOnline) {
        QMetaObject::invokeMethod(
            this,
            [this, request]() {
                if (m_bRequestActive && request == m_iRequest) {
                    reportConnected();
                }
            },
            Qt::QueuedConnection);
        return;
    }
    // Not up now: say so at once, and again if it does not come up in time.
    m_connectTimer.start();
    QMetaObject::invokeMethod(
        this,
        [this, request]() {
            if (m_bRequestActive && request == m_iRequest && !m_bWasOnline) {
                reportDisconnected(eErrorNone);
            }
        },
        Qt::QueuedConnection);
}

void CConnectionManager::cleanUp()
{
    const bool result = disconnect(m_reachabilityConnection) || m_bRequestActive;
    m_reachabilityConnection = QMetaObject::Connection();
    m_connectTimer.stop();
    m_bRequestActive = false;
    qDebug().noquote() << QStringLiteral("Cleanup result: ") +
                              (result ? QStringLiteral("true") : QStringLiteral("false"));
}

void CConnectionManager::onAppQuit()
{
    qDebug() << "CConnectionManager::onAppQuit()";
    if (m_bRequestActive) {
        cleanUp();
    }
}

bool CConnectionManager::isOnline() const
{
    if (m_iOverride >= 0) {
        return m_iOverride == 1;
    }
    return !m_pBackend || m_strBackend.isEmpty() || m_pBackend->isOnline();
}

QString CConnectionManager::bearer() const
{
    if (!m_pBackend || m_strBackend.isEmpty()) {
        return QStringLiteral("UNKNOWN");
    }
    return m_pBackend->bearer();
}

void CConnectionManager::onReachabilityChanged(bool online)
{
    if (!m_bRequestActive) {
        return;
    }
    // Each change is judged by its own value, so quick flapping is reported in full.
    if (online == m_bWasOnline) {
        return;  // e.g. Local to Site: still not on the Internet
    }
    m_bWasOnline = online;
    if (online) {
        m_connectTimer.stop();
        reportConnected();
    } else {
        reportDisconnected(eErrorNone);
    }
}

void CConnectionManager::onConnectTimeout()
{
    if (m_bRequestActive && !isOnline()) {
        reportDisconnected(eErrorConnectionFailed);
    }
}

void CConnectionManager::reportConnected()
{
    const QString iap = m_strBackend.isEmpty() ? QStringLiteral("none") : m_strBackend;
    const QString bearerType = bearer();
    qDebug().noquote() << timeOfDay() + QLatin1Char(' ') + QLatin1String(kHandler) +
                              QStringLiteral("CON_IC_STATUS_CONNECTED");
    qDebug().noquote()
        << QStringLiteral("Hey, we are connected to IAP %1 with bearer %2!").arg(iap, bearerType);
    if (!iap.isEmpty() && !m_mapConnections.contains(iap)) {
        m_mapConnections.insert(iap, bearerType);
    }
    Q_EMIT connected();
}

void CConnectionManager::reportDisconnected(int error)
{
    const QString iap = m_strBackend.isEmpty() ? QStringLiteral("none") : m_strBackend;
    const QString bearerType = m_mapConnections.value(iap, bearer());
    qDebug().noquote() << timeOfDay() + QLatin1String(kHandler) +
                              QStringLiteral("CON_IC_STATUS_DISCONNECTED");
    qDebug().noquote() << QStringLiteral("Hey, we are disconnected from IAP %1 with bearer %2!")
                              .arg(iap, bearerType);
    m_mapConnections.remove(iap);
    Q_EMIT disconnected();
    switch (error) {
        case eErrorNone:
            qDebug().noquote() << QLatin1String(kHandler) +
                                      QStringLiteral("CON_IC_CONNECTION_ERROR_NONE");
            break;
        case eErrorInvalidIap:
            qDebug().noquote() << QLatin1String(kHandler) +
                                      QStringLiteral("CON_IC_CONNECTION_ERROR_INVALID_IAP");
            break;
        case eErrorConnectionFailed:
            qDebug().noquote() << QLatin1String(kHandler) +
                                      QStringLiteral("CON_IC_CONNECTION_ERROR_CONNECTION_FAILED");
            break;
        case eErrorUserCanceled:
            qDebug().noquote() << QLatin1String(kHandler) +
                                      QStringLiteral("CON_IC_CONNECTION_ERROR_USER_CANCELED");
            break;
        default:
            break;
    }
}

}  // namespace Dravo
