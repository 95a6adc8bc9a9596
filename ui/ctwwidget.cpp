// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ctwwidget.h"

namespace Dravo {

CTWWidget::CTWWidget(QWidget* parent) : CTWSkinned<QWidget>(parent)
{
    setAutoFillBackground(false);
    connect(m_busy.animation(), &CAnimation::frameChanged, this,
            &CTWWidget::onAnimationFrameChanged);
}

void CTWWidget::setBusy(bool bBusy)
{
    if (m_busy.setBusy(bBusy))
        update();
}

void CTWWidget::onAnimationFrameChanged()
{
    update();
}

void CTWWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    paintBackground(painter);
    m_busy.draw(painter, rect());
}

}  // namespace Dravo
