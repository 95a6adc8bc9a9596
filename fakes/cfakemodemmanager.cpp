// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cfakemodemmanager.h"

#include <QDBusConnection>
#include <QDBusMetaType>

namespace Dravo {
namespace Test {

CFakeModemManager::CFakeModemManager(const QStringList& equipmentIds, QObject* parent)
    : QObject(parent), m_lstIds(equipmentIds)
{
    qDBusRegisterMetaType<InterfacePropertiesMap>();
    qDBusRegisterMetaType<ManagedObjectsMap>();
    new CFakeModemManagerAdaptor(this);
}

bool CFakeModemManager::registerOn(QDBusConnection& connection)
{
    return connection.registerObject(QStringLiteral("/org/freedesktop/ModemManager1"), this) &&
           connection.registerService(QStringLiteral("org.freedesktop.ModemManager1"));
}

ManagedObjectsMap CFakeModemManager::managedObjects() const
{
    ManagedObjectsMap objects;
    for (int i = 0; i < m_lstIds.size(); ++i) {
        QVariantMap modem;
        modem.insert(QStringLiteral("EquipmentIdentifier"), m_lstIds.at(i));
        modem.insert(QStringLiteral("Manufacturer"), QStringLiteral("Tarvik Test Modems"));
        modem.insert(QStringLiteral("Model"), QStringLiteral("TM-1"));
        InterfacePropertiesMap interfaces;
        interfaces.insert(QStringLiteral("org.freedesktop.ModemManager1.Modem"), modem);
        interfaces.insert(QStringLiteral("org.freedesktop.DBus.Properties"), QVariantMap());
        objects.insert(
            QDBusObjectPath(QStringLiteral("/org/freedesktop/ModemManager1/Modem/%1").arg(i)),
            interfaces);
    }
    return objects;
}

CFakeModemManagerAdaptor::CFakeModemManagerAdaptor(CFakeModemManager* parent)
    : QDBusAbstractAdaptor(parent), m_pManager(parent)
{
}

ManagedObjectsMap CFakeModemManagerAdaptor::GetManagedObjects()
{
    return m_pManager->managedObjects();
}

}  // namespace Test
}  // namespace Dravo
