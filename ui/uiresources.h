// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace Dravo {

// Registers the compiled-in images under ":/res_ui/" (skins, busy strip) and ":/res/img/"
// (icons, logos, the forms' progress strip). Safe to call more than once.
void initUiResources();

}  // namespace Dravo
