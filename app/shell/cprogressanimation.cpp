// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cprogressanimation.h"

namespace Dravo {

const CAnimation::Descriptor& progressAnimationDescriptor()
{
    static const CAnimation::Descriptor s_descriptor(QStringLiteral(":/res/img/progress_anim.png"),
                                                     8, 300);
    return s_descriptor;
}

}  // namespace Dravo
