// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cfakesim.h"

#include <QDBusConnection>

namespace Dravo {
namespace Test {

CFakeSim::CFakeSim(const QString& imei, QObject* parent) : QObject(parent), m_strImei(imei)
{
    new CFakeSimAdaptor(this);
}

bool CFakeSim::registerOn(QDBusConnection& connection)
{
    return connection.registerObject(QStringLiteral("/com/nokia/phone/SIM/security"), this) &&
           connection.registerService(QStringLiteral("com.nokia.phone.SIM"));
}

CFakeSimAdaptor::CFakeSimAdaptor(CFakeSim* parent) : QDBusAbstractAdaptor(parent), m_pSim(parent) {}

QString CFakeSimAdaptor::get_imei(int& flags)
{
    flags = 0;
    return m_pSim->m_strImei;
}

}  // namespace Test
}  // namespace Dravo
