// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QObject>
#include <QVariantMap>

namespace Dravo {
namespace Test {

// NetworkManager as far as connectivity checks and the device-mode guard use it:
// "org.freedesktop.NetworkManager" at "/org/freedesktop/NetworkManager" with the
// properties State, Connectivity, NetworkingEnabled, WirelessEnabled, WwanEnabled
// (the two radios writable), PrimaryConnection, PrimaryConnectionType and Metered,
// listed in the introspection data, changes announced through
// org.freedesktop.DBus.Properties.PropertiesChanged and StateChanged, and Enable(b).
// Tests drive it in-process or over the bus through "org.tarvik.Fake.Control".
class CFakeNetworkManager : public QObject
{
    Q_OBJECT
public:
    enum eState : uint
    {
        eAsleep = 10,
        eDisconnected = 20,
        eDisconnecting = 30,
        eConnecting = 40,
        eConnectedLocal = 50,
        eConnectedSite = 60,
        eConnectedGlobal = 70
    };

    explicit CFakeNetworkManager(uint state, QObject* parent = nullptr);
    bool registerOn(QDBusConnection& connection);

    uint state() const { return m_uState; }
    uint connectivity() const { return m_uConnectivity; }
    bool networkingEnabled() const { return m_bNetworkingEnabled; }
    bool wirelessEnabled() const { return m_bWirelessEnabled; }
    bool wwanEnabled() const { return m_bWwanEnabled; }
    int enableCalls() const { return m_iEnableCalls; }

    // Each setter announces the change on the bus.
    void setState(uint state);
    void setNetworkingEnabled(bool enabled);
    void setWirelessEnabled(bool enabled);
    void setWwanEnabled(bool enabled);
    // What Enable(b) does: networking off puts NetworkManager to sleep.
    void enable(bool enabled);

    // State name or number as given on the command line ("online", "offline",
    // "asleep", "local", "site", or 10..70); 0 when unknown.
    static uint stateFromString(const QString& text);

private:
    void announce(const QVariantMap& changed);

    QDBusConnection m_connection{QString()};
    uint m_uState;
    uint m_uStateBeforeSleep;
    uint m_uConnectivity;
    bool m_bNetworkingEnabled = true;
    bool m_bWirelessEnabled = true;
    bool m_bWwanEnabled = true;
    int m_iEnableCalls = 0;
};

class CFakeNetworkManagerAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.NetworkManager")
    Q_PROPERTY(uint State READ state)
    Q_PROPERTY(uint Connectivity READ connectivity)
    Q_PROPERTY(bool NetworkingEnabled READ networkingEnabled)
    Q_PROPERTY(bool WirelessEnabled READ wirelessEnabled WRITE setWirelessEnabled)
    Q_PROPERTY(bool WirelessHardwareEnabled READ trueValue)
    Q_PROPERTY(bool WwanEnabled READ wwanEnabled WRITE setWwanEnabled)
    Q_PROPERTY(bool WwanHardwareEnabled READ trueValue)
    Q_PROPERTY(QDBusObjectPath PrimaryConnection READ primaryConnection)
    Q_PROPERTY(QString PrimaryConnectionType READ primaryConnectionType)
    Q_PROPERTY(uint Metered READ metered)
    Q_PROPERTY(QString Version READ version)
public:
    explicit CFakeNetworkManagerAdaptor(CFakeNetworkManager* parent);

    uint state() const { return m_pNm->state(); }
    uint connectivity() const { return m_pNm->connectivity(); }
    bool networkingEnabled() const { return m_pNm->networkingEnabled(); }
    bool wirelessEnabled() const { return m_pNm->wirelessEnabled(); }
    void setWirelessEnabled(bool enabled) { m_pNm->setWirelessEnabled(enabled); }
    bool wwanEnabled() const { return m_pNm->wwanEnabled(); }
    void setWwanEnabled(bool enabled) { m_pNm->setWwanEnabled(enabled); }
    bool trueValue() const { return true; }
    QDBusObjectPath primaryConnection() const;
    QString primaryConnectionType() const;
    uint metered() const { return 4; }  // "guess no"
    QString version() const { return QStringLiteral("1.42.0"); }

public Q_SLOTS:
    void Enable(bool enable);
    uint CheckConnectivity();

Q_SIGNALS:
    void StateChanged(uint state);

private:
    CFakeNetworkManager* m_pNm;
};

class CFakeNetworkManagerControlAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.tarvik.Fake.Control")
public:
    explicit CFakeNetworkManagerControlAdaptor(CFakeNetworkManager* parent);

public Q_SLOTS:
    void SetState(uint state);
    int EnableCalls();

private:
    CFakeNetworkManager* m_pNm;
};

}  // namespace Test
}  // namespace Dravo
