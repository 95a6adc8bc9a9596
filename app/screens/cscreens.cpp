// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cscreens.h"

#include "cformfactory.h"
#include "cinboxform.h"
#include "cmapmodule.h"
#include "coutboxform.h"
#include "csentform.h"
#include "cviewtarvikform.h"

namespace Dravo {

void registerScreens()
{
    CFormFactory::setInboxCreator([](QWidget* pParent) { return new CInboxForm(pParent); });
    CFormFactory::setOutboxCreator([](QWidget* pParent) { return new COutboxForm(pParent); });
    CFormFactory::setSentCreator([](QWidget* pParent) { return new CSentForm(pParent); });
    CFormFactory::setViewCreator([](QWidget* pParent, const CTarvik& tarvik, int iType) {
        return new CViewTarvikForm(pParent, tarvik, iType);
    });
    CFormFactory::setMapCreator(&CMapModule::createMapForm);
}

}  // namespace Dravo
