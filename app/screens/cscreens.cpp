#include "cscreens.h"

#include "ccomposetarvikform.h"
#include "cformfactory.h"
#include "cregisterform.h"
#include "csendreceivepopupform.h"

namespace Dravo {

void registerScreens()
{
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
