// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cstartupprefetch.h"

#include <fontconfig/fontconfig.h>

#include <QDBusConnection>
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

void CStartupPrefetch::startBus()
{
    std::promise<ComQelTarvikDaemonInterface*> promise;
    m_daemonProxy = promise.get_future();
    QThread* pTarget = QThread::currentThread();
    m_busThread = std::thread(
        [pTarget](std::promise<ComQelTarvikDaemonInterface*> result) {
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
    m_busThread.join();
    return pProxy;
}

}  // namespace Dravo
