// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "uiresources.h"

#include <QtGlobal>

// Q_INIT_RESOURCE must be used outside of any namespace.
static void registerUiResources()
{
    Q_INIT_RESOURCE(tarvik_res_ui);
    Q_INIT_RESOURCE(tarvik_res_img);
}

namespace Dravo {

void initUiResources()
{
    static const bool s_bDone = (registerUiResources(), true);
    Q_UNUSED(s_bDone);
}

}  // namespace Dravo
