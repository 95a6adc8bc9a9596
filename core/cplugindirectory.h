// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

namespace Dravo {

// Where the plugins and helper programs are: $TARVIK_PLUGIN_DIR when set, otherwise
// <libdir>/tarvik/ at the same place relative to the executable in the build tree and in
// the installation.
QString pluginDirectory();

// The file strName in pluginDirectory().
QString pluginFile(const QString& strName);

}  // namespace Dravo
