// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cfakenetworkmanager.h"

#include <QDBusMessage>
#include <QDBusVariant>

namespace Dravo {
namespace Test {

namespace {

const char* const kPath = "/org/freedesktop/NetworkManager";
const char* const kInterface = "org.freedesktop.NetworkManager";

uint connectivityFor(uint state)
{
    switch (state) {
        case CFakeNetworkManager::eConnectedGlobal:
            return 4;  // full
        case CFakeNetworkManager::eConnectedSite:
            return 2;  // portal
        case CFakeNetworkManager::eConnectedLocal:
            return 3;  // limited
        default:
            return 1;  // none
    }
}

}  // namespace

CFakeNetworkManager::CFakeNetworkManager(uint state, QObject* parent)
    : QObject(parent),
      m_uState(state),
      m_uStateBeforeSleep(state == eAsleep ? uint(eConnectedGlobal) : state),
      m_uConnectivity(connectivityFor(state))
{
    if (state == eAsleep) {
        m_bNetworkingEnabled = false;
    }
    new CFakeNetworkManagerAdaptor(this);
    new CFakeNetworkManagerControlAdaptor(this);
}

bool CFakeNetworkManager::registerOn(QDBusConnection& connection)
{
    m_connection = connection;
    return connection.registerObject(QString::fromLatin1(kPath), this) &&
           connection.registerService(QString::fromLatin1(kInterface));
}

void CFakeNetworkManager::announce(const QVariantMap& changed)
{
    if (!m_connection.isConnected()) {
        return;
    }
    QDBusMessage message = QDBusMessage::createSignal(
        QString::fromLatin1(kPath), QStringLiteral("org.freedesktop.DBus.Properties"),
        QStringLiteral("PropertiesChanged"));
    message << QString::fromLatin1(kInterface) << changed << QStringList();
    m_connection.send(message);
    if (changed.contains(QStringLiteral("State"))) {
        QDBusMessage stateChanged =
            QDBusMessage::createSignal(QString::fromLatin1(kPath), QString::fromLatin1(kInterface),
                                       QStringLiteral("StateChanged"));
        stateChanged << m_uState;
        m_connection.send(stateChanged);
    }
}

void CFakeNetworkManager::setState(uint state)
{
    const uint connectivity = connectivityFor(state);
    QVariantMap changed;
    if (state != m_uState) {
        m_uState = state;
        changed.insert(QStringLiteral("State"), state);
    }
    if (connectivity != m_uConnectivity) {
        m_uConnectivity = connectivity;
        changed.insert(QStringLiteral("Connectivity"), connectivity);
    }
    if (!changed.isEmpty()) {
        announce(changed);
    }
}

void CFakeNetworkManager::setNetworkingEnabled(bool enabled)
{
    if (enabled != m_bNetworkingEnabled) {
        m_bNetworkingEnabled = enabled;
        announce({{QStringLiteral("NetworkingEnabled"), enabled}});
    }
}

void CFakeNetworkManager::setWirelessEnabled(bool enabled)
{
    if (enabled != m_bWirelessEnabled) {
        m_bWirelessEnabled = enabled;
        announce({{QStringLiteral("WirelessEnabled"), enabled}});
    }
}

void CFakeNetworkManager::setWwanEnabled(bool enabled)
{
    if (enabled != m_bWwanEnabled) {
        m_bWwanEnabled = enabled;
        announce({{QStringLiteral("WwanEnabled"), enabled}});
    }
}

void CFakeNetworkManager::enable(bool enabled)
{
    ++m_iEnableCalls;
    if (enabled == m_bNetworkingEnabled) {
        return;
    }
    if (enabled) {
        setNetworkingEnabled(true);
        setState(m_uStateBeforeSleep);
    } else {
        m_uStateBeforeSleep = m_uState;
        setNetworkingEnabled(false);
        setState(eAsleep);
    }
}

uint CFakeNetworkManager::stateFromString(const QString& text)
{
    const QString t = text.trimmed().toLower();
    if (t == QLatin1String("online") || t == QLatin1String("global")) {
        return eConnectedGlobal;
    }
    if (t == QLatin1String("site")) {
        return eConnectedSite;
    }
    if (t == QLatin1String("local")) {
        return eConnectedLocal;
    }
    if (t == QLatin1String("offline") || t == QLatin1String("disconnected")) {
        return eDisconnected;
    }
    if (t == QLatin1String("asleep") || t == QLatin1String("airplane")) {
        return eAsleep;
    }
    bool ok = false;
    const uint value = t.toUInt(&ok);
    return ok && value >= eAsleep && value <= eConnectedGlobal ? value : 0;
}

CFakeNetworkManagerAdaptor::CFakeNetworkManagerAdaptor(CFakeNetworkManager* parent)
    : QDBusAbstractAdaptor(parent), m_pNm(parent)
{
}

QDBusObjectPath CFakeNetworkManagerAdaptor::primaryConnection() const
{
    return QDBusObjectPath(
        m_pNm->state() >= CFakeNetworkManager::eConnectedLocal
            ? QStringLiteral("/org/freedesktop/NetworkManager/ActiveConnection/1")
            : QStringLiteral("/"));
}

QString CFakeNetworkManagerAdaptor::primaryConnectionType() const
{
    return m_pNm->state() >= CFakeNetworkManager::eConnectedLocal ? QStringLiteral("802-3-ethernet")
                                                                  : QString();
}

void CFakeNetworkManagerAdaptor::Enable(bool enable)
{
    m_pNm->enable(enable);
}

uint CFakeNetworkManagerAdaptor::CheckConnectivity()
{
    return m_pNm->connectivity();
}

CFakeNetworkManagerControlAdaptor::CFakeNetworkManagerControlAdaptor(CFakeNetworkManager* parent)
    : QDBusAbstractAdaptor(parent), m_pNm(parent)
{
}

void CFakeNetworkManagerControlAdaptor::SetState(uint state)
{
    m_pNm->setState(state);
}

int CFakeNetworkManagerControlAdaptor::EnableCalls()
{
    return m_pNm->enableCalls();
}

}  // namespace Test
}  // namespace Dravo
