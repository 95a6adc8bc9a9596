// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

class QWidget;

namespace Dravo {

class CForm;
class CTarvik;

class CMapScreens
{
public:
    CMapScreens() = delete;
    // The map form when the Internet connection is known to be up, otherwise the
    // placeholder that waits for it.
    static CForm* createMapForm(QWidget* pParent, const CTarvik& tarvik, int iMapType);
};

}  // namespace Dravo
