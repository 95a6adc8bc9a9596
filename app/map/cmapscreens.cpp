// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cmapscreens.h"

#include "cconnectionmanager.h"
#include "cmapfakeform.h"
#include "cmapform.h"

namespace Dravo {

CForm* CMapScreens::createMapForm(QWidget* pParent, const CTarvik& tarvik, int iMapType)
{
    if (CConnectionManager::instance()->isConnected())
        return new CMapForm(pParent, tarvik, iMapType);
    return new CMapFakeForm(pParent, tarvik, iMapType);
}

}  // namespace Dravo
