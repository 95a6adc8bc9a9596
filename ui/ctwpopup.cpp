// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ctwpopup.h"

namespace Dravo {

CTWPopup::CTWPopup(QWidget* parent) : CTWSkinned<QWidget>(parent)
{
    setAutoFillBackground(false);
}

void CTWPopup::mousePressEvent(QMouseEvent* event)
{
    QWidget::mousePressEvent(event);
    emit onMousePressed();
}

void CTWPopup::mouseReleaseEvent(QMouseEvent* event)
{
    QWidget::mouseReleaseEvent(event);
    emit onMouseReleased();
}

}  // namespace Dravo
