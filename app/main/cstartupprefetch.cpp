// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cstartupprefetch.h"

#include <fontconfig/fontconfig.h>

#include <QDBusConnection>
#include <QSqlDatabase>
#include <QThread>

#include "comqeltarvikdaemoninterface.h"
#include "dbusobject.h"

namespace Dravo {

CStartupPrefetch::CStartupPrefetch()
    // Fontconfig's first use loads its configuration for the whole process, whichever
    // thread comes first; Qt's font database later finds it loaded.
    : m_fontThread([] { FcInit(); })
{
}

CStartupPrefetch::~CStartupPrefetch()
{
    if (m_daemonProxy.valid())
        delete takeDaemonProxy();
    m_fontThread.join();
}

void CStartupPrefetch::startWithApplication()
{
    std::promise<ComQelTarvikDaemonInterface*> promise;
    m_daemonProxy = promise.get_future();
    QThread* pTarget = QThread::currentThread();
    m_applicationThread = std::thread(
        [pTarget](std::promise<ComQelTarvikDaemonInterface*> result) {
            // The storage worker's first step is to load Qt's SQLite driver plugin; loaded
            // here, the worker finds it in memory and the settings are read sooner.
            const QString strName = QStringLiteral("tarvik-prefetch");
            QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), strName);
            QSqlDatabase::removeDatabase(strName);
            auto* pProxy = new ComQelTarvikDaemonInterface(Tarvik::DBusObject::daemonService(),
                                                           Tarvik::DBusObject::daemonPath(),
                                                           QDBusConnection::sessionBus());
            pProxy->moveToThread(pTarget);
            result.set_value(pProxy);
        },
        std::move(promise));
}

ComQelTarvikDaemonInterface* CStartupPrefetch::takeDaemonProxy()
{
    ComQelTarvikDaemonInterface* pProxy = m_daemonProxy.get();
    m_applicationThread.join();
    return pProxy;
}

}  // namespace Dravo
