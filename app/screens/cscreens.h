// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace Dravo {

// Installs the creators of every screen library into CFormFactory. Called once by the
// client's main before the main window is built.
void registerScreens();

}  // namespace Dravo
