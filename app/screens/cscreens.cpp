#include "cscreens.h"

#include "cformfactory.h"
#include "cmapmodule.h"

namespace Dravo {

void registerScreens()
{
    CFormFactory::setMapCreator(&CMapModule::createMapForm);
}

}  // namespace Dravo
