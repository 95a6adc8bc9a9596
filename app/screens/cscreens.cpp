// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cscreens.h"

#include "ccomposetarvikform.h"
#include "cformfactory.h"
#include "cinboxform.h"
#include "cmapmodule.h"
#include "coutboxform.h"
#include "cregisterform.h"
#include "csendreceivepopupform.h"
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
    CFormFactory::setComposeCreator(
        [](QWidget* p, int t, const QString& to, const QString& s, const QString& n, double lat,
           double lon) -> CForm* { return new CComposeTarvikForm(p, t, to, s, n, lat, lon); });
    CFormFactory::setSendReceiveCreator(
        [](QWidget* p) -> CForm* { return new CSendReceivePopupForm(p); });
    CFormFactory::setRegisterCreator(
        [](QWidget* p, int t, const QString& number, const QString& name) -> CForm* {
            return new CRegisterForm(p, t, number, name);
        });
}

}  // namespace Dravo
