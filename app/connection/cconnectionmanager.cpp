// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cconnectionmanager.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
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

}  // namespace

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
    const QString networkManager = QStringLiteral("networkmanager");
    const QString glib = QStringLiteral("glib");
    if (networkManagerAnswered && QNetworkInformation::loadBackendByName(networkManager)) {
        m_strBackend = networkManager;
    } else if (QNetworkInformation::loadBackendByName(glib)) {
        m_strBackend = glib;
    } else if (QNetworkInformation::loadBackendByFeatures(
                   QNetworkInformation::Feature::Reachability)) {
        m_strBackend = QNetworkInformation::instance()->backendName();
    }
    if (m_strBackend.isEmpty()) {
        qWarning() << "CConnectionManager: no network information backend, the network counts "
                      "as up";
    } else {
        qDebug().noquote() << "CConnectionManager: network information from " + m_strBackend;
    }
    if (m_strBackend == networkManager) {
        watchNetworkManager();
    }
    if (QNetworkInformation* info = QNetworkInformation::instance()) {
        // A change reported by the backend is newer than any state read directly
        // (connected before the request's own handler, so that it runs first).
        connect(info, &QNetworkInformation::reachabilityChanged, this,
                [this]() { m_iOverride = -1; });
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
        m_iOverride = int(QNetworkInformation::Reachability::Disconnected);
        onReachabilityChanged(QNetworkInformation::Reachability::Disconnected);
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
                    const auto reachability = state == 70
                                                  ? QNetworkInformation::Reachability::Online
                                                  : QNetworkInformation::Reachability::Disconnected;
                    m_iOverride = int(reachability);
                    onReachabilityChanged(reachability);
                });
    });
}

void CConnectionManager::startRequest()
{
    if (QNetworkInformation* info = QNetworkInformation::instance()) {
        m_reachabilityConnection = connect(info, &QNetworkInformation::reachabilityChanged, this,
                                           &CConnectionManager::onReachabilityChanged);
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
        return m_iOverride == int(QNetworkInformation::Reachability::Online);
    }
    QNetworkInformation* info = QNetworkInformation::instance();
    if (!info) {
        return true;
    }
    return info->reachability() == QNetworkInformation::Reachability::Online;
}

QString CConnectionManager::bearer() const
{
    QNetworkInformation* info = QNetworkInformation::instance();
    if (!info) {
        return QStringLiteral("UNKNOWN");
    }
    switch (info->transportMedium()) {
        case QNetworkInformation::TransportMedium::Ethernet:
            return QStringLiteral("ETHERNET");
        case QNetworkInformation::TransportMedium::Cellular:
            return QStringLiteral("GPRS");
        case QNetworkInformation::TransportMedium::WiFi:
            return QStringLiteral("WLAN_INFRA");
        case QNetworkInformation::TransportMedium::Bluetooth:
            return QStringLiteral("DUN_GSM_PS");
        default:
            return QStringLiteral("UNKNOWN");
    }
}

void CConnectionManager::onReachabilityChanged(QNetworkInformation::Reachability reachability)
{
    if (!m_bRequestActive) {
        return;
    }
    // Each change is judged by its own value, so quick flapping is reported in full.
    const bool online = reachability == QNetworkInformation::Reachability::Online;
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
