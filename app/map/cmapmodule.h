// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>
#include <QStringList>

class QWidget;

namespace Dravo {

class CForm;
class CTarvik;
class IMapModule;

// Loads the map plugin (libtarvikmap.so) on the first map and asks it for the forms.
// The plugin is looked for in $TARVIK_PLUGIN_DIR when that is set, otherwise where the
// build or the installation puts it, relative to the executable.
class CMapModule
{
public:
    CMapModule() = delete;

    static QStringList searchPaths();
    // The plugin's module, loaded on the first call; null (with a log line) when it
    // cannot be loaded. Later calls return the same answer without trying again.
    static IMapModule* module();
    static QString errorString();
    // The creator installed in the form factory: the plugin's map form, or a
    // placeholder that says the map is unavailable.
    static CForm* createMapForm(QWidget* pParent, const CTarvik& tarvik, int iMapType);
};

}  // namespace Dravo
