// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cscreens.h"

#include "cformfactory.h"

namespace Dravo {

void registerScreens()
{
}

}  // namespace Dravo
