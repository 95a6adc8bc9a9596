// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QStackedWidget>

#include "ctwskinned.h"

namespace Dravo {

// A skinned stacked widget used as a stack: push on top, pop and delete the top.
class CTWStackedWidget : public CTWSkinned<QStackedWidget>
{
    Q_OBJECT
public:
    explicit CTWStackedWidget(QWidget* parent = nullptr);

    void push(QWidget* pWidget);
    // Removes the current widget and deletes it at once; nothing when the stack is empty.
    void pop();
};

}  // namespace Dravo
