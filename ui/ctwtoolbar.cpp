// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ctwtoolbar.h"

namespace Dravo {

CTWToolBar::CTWToolBar(QBoxLayout::Direction direction, QWidget* parent)
    : CTWSkinned<QWidget>(parent)
{
    setAutoFillBackground(false);
    setLayout(new QBoxLayout(direction));
}

QBoxLayout* CTWToolBar::boxLayout() const
{
    return qobject_cast<QBoxLayout*>(layout());
}

void CTWToolBar::setDirection(QBoxLayout::Direction direction)
{
    if (QBoxLayout* pBox = boxLayout())
        pBox->setDirection(direction);
}

}  // namespace Dravo
