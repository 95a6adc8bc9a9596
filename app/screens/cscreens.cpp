#include "cscreens.h"

#include "cformfactory.h"

namespace Dravo {

void registerScreens()
{
}

}  // namespace Dravo
