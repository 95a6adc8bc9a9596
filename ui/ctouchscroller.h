// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

class QAbstractScrollArea;

namespace Dravo {

// Kinetic scrolling with a finger, for lists and texts on touch screens. Only touch
// flicks: the mouse keeps selecting and dragging as on the desktop.
class CTouchScroller
{
public:
    static void enable(QAbstractScrollArea* pArea);
};

}  // namespace Dravo
