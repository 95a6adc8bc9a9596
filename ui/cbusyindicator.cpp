// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cbusyindicator.h"

namespace Dravo {

CBusyIndicator::CBusyIndicator() : m_bBusy(false), m_animation(CAnimation::PROGRESS_ANIMATION) {}

bool CBusyIndicator::setBusy(bool bBusy)
{
    if (m_bBusy == bBusy)
        return false;
    m_bBusy = bBusy;
    if (m_bBusy)
        m_animation.start();
    else
        m_animation.stop();
    return true;
}

bool CBusyIndicator::isShown() const
{
    return m_bBusy && m_animation.frameRect().isValid();
}

void CBusyIndicator::draw(QPainter& painter, const QRect& area) const
{
    if (!isShown())
        return;
    const QRect frame = m_animation.frameRect();
    m_animation.draw(&painter, area.topLeft() + QPoint((area.width() - frame.width()) / 2,
                                                       (area.height() - frame.height()) / 2));
}

}  // namespace Dravo
