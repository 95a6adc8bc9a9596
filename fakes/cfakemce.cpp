// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cfakemce.h"

#include <QDBusConnection>

namespace Dravo {
namespace Test {

CFakeMce::CFakeMce(const QString& mode, QObject* parent) : QObject(parent), m_strMode(mode)
{
    new CFakeMceAdaptor(this);
    new CFakeMceControlAdaptor(this);
}

bool CFakeMce::registerOn(QDBusConnection& connection)
{
    return connection.registerObject(QStringLiteral("/com/nokia/mce/request"), this) &&
           connection.registerService(QStringLiteral("com.nokia.mce"));
}

CFakeMceAdaptor::CFakeMceAdaptor(CFakeMce* parent) : QDBusAbstractAdaptor(parent), m_pMce(parent) {}

QString CFakeMceAdaptor::get_device_mode()
{
    return m_pMce->m_strMode;
}

void CFakeMceAdaptor::req_device_mode_change(const QString& mode)
{
    m_pMce->m_lstRequested.append(mode);
    m_pMce->m_strMode = mode;
}

CFakeMceControlAdaptor::CFakeMceControlAdaptor(CFakeMce* parent)
    : QDBusAbstractAdaptor(parent), m_pMce(parent)
{
}

QStringList CFakeMceControlAdaptor::RequestedModes()
{
    return m_pMce->m_lstRequested;
}

}  // namespace Test
}  // namespace Dravo
