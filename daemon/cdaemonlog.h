// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

namespace Dravo {

// A daemon logs one line per message on standard error, unadorned; the storage's debug
// chatter only when `verbose`.
void installDaemonLog(bool verbose);

}  // namespace Dravo
