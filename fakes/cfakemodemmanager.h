// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QMap>
#include <QObject>
#include <QVariantMap>

namespace Dravo {
namespace Test {

using InterfacePropertiesMap = QMap<QString, QVariantMap>;
using ManagedObjectsMap = QMap<QDBusObjectPath, InterfacePropertiesMap>;

// ModemManager as far as the client uses it: "org.freedesktop.ModemManager1" with
// ObjectManager.GetManagedObjects listing modems; each modem carries
// org.freedesktop.ModemManager1.Modem.EquipmentIdentifier.
class CFakeModemManager : public QObject
{
    Q_OBJECT
public:
    // One modem per identifier, at /org/freedesktop/ModemManager1/Modem/<n>.
    explicit CFakeModemManager(const QStringList& equipmentIds, QObject* parent = nullptr);
    bool registerOn(QDBusConnection& connection);
    ManagedObjectsMap managedObjects() const;

private:
    QStringList m_lstIds;
};

class CFakeModemManagerAdaptor : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.DBus.ObjectManager")
public:
    explicit CFakeModemManagerAdaptor(CFakeModemManager* parent);

public Q_SLOTS:
    Dravo::Test::ManagedObjectsMap GetManagedObjects();

private:
    CFakeModemManager* m_pManager;
};

}  // namespace Test
}  // namespace Dravo

Q_DECLARE_METATYPE(Dravo::Test::InterfacePropertiesMap)
Q_DECLARE_METATYPE(Dravo::Test::ManagedObjectsMap)
