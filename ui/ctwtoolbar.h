// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QBoxLayout>
#include <QWidget>

#include "ctwskinned.h"

namespace Dravo {

// A skinned strip that holds buttons in its own box layout.
class CTWToolBar : public CTWSkinned<QWidget>
{
    Q_OBJECT
public:
    explicit CTWToolBar(QBoxLayout::Direction direction = QBoxLayout::TopToBottom,
                        QWidget* parent = nullptr);

    void setDirection(QBoxLayout::Direction direction);
    // The tool bar's layout; null only if someone replaced it with another kind.
    QBoxLayout* boxLayout() const;
};

}  // namespace Dravo
