// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "canimation.h"

class QPainter;

namespace Dravo {

// The busy state of a widget: a flag and the busy animation that goes with it. The widget
// repaints when setBusy() reports a change and whenever the animation's frame changes.
class CBusyIndicator
{
public:
    CBusyIndicator();

    // Starts or stops the animation; returns whether the state changed.
    bool setBusy(bool bBusy);
    bool isBusy() const { return m_bBusy; }
    // Busy and with a frame to show.
    bool isShown() const;
    CAnimation* animation() { return &m_animation; }

    // Draws the current frame centred in area, clipped rather than moved when area is smaller;
    // nothing unless shown.
    void draw(QPainter& painter, const QRect& area) const;

private:
    bool m_bBusy;
    CAnimation m_animation;
};

}  // namespace Dravo
