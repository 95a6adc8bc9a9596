// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The map plugin: the map screens behind IMapModule.
#include <QObject>

#include "cmapscreens.h"
#include "imapmodule.h"

namespace Dravo {

class CMapPlugin : public QObject, public IMapModule
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID TARVIK_MAP_MODULE_IID)
    Q_INTERFACES(Dravo::IMapModule)

public:
    CForm* createMapForm(QWidget* pParent, const CTarvik& tarvik, int iMapType) override
    {
        return CMapScreens::createMapForm(pParent, tarvik, iMapType);
    }
};

}  // namespace Dravo

#include "cmapplugin.moc"
