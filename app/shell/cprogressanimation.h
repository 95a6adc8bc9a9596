#pragma once

#include "canimation.h"

namespace Dravo {

// The busy animation of the application's forms: 8 frames, 300 ms each.
const CAnimation::Descriptor& progressAnimationDescriptor();

}  // namespace Dravo
