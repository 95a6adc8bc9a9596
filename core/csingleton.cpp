// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "csingleton.h"

#include <QCoreApplication>

namespace Dravo {

CSingletonPrivate::CSingletonPrivate()
{
    // Without an application object there is no event loop to end; the object then
    // only lives until process exit.
    if (QCoreApplication* pApp = QCoreApplication::instance())
        connect(pApp, &QCoreApplication::aboutToQuit, this, &CSingletonPrivate::onAppQuit);
}

CSingletonPrivate::~CSingletonPrivate()
{
    Q_EMIT beforeDestroy();
}

void CSingletonPrivate::onAppQuit() {}

}  // namespace Dravo
