// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QtPlugin>

class QWidget;

namespace Dravo {

class CForm;
class CTarvik;

// What the client uses of the map screens. They live in a plugin that CMapModule loads
// when the first map opens; the web engine itself runs in the map view helper.
class IMapModule
{
public:
    virtual ~IMapModule() = default;
    // The map screen for the message's position (map types of CFormFactory::eMapType):
    // the map form when the Internet connection is up, otherwise the placeholder that
    // waits for it and then opens the map form.
    virtual CForm* createMapForm(QWidget* pParent, const CTarvik& tarvik, int iMapType) = 0;
};

}  // namespace Dravo

#define TARVIK_MAP_MODULE_IID "com.qel.tarvik.MapModule/1.0"
Q_DECLARE_INTERFACE(Dravo::IMapModule, TARVIK_MAP_MODULE_IID)
