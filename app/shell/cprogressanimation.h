// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "canimation.h"

namespace Dravo {

// The busy animation of the application's forms: 8 frames, 300 ms each.
const CAnimation::Descriptor& progressAnimationDescriptor();

}  // namespace Dravo
