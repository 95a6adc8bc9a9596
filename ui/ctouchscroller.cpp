// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ctouchscroller.h"

#include <QAbstractItemView>
#include <QScroller>

namespace Dravo {

void CTouchScroller::enable(QAbstractScrollArea* pArea)
{
    if (!pArea)
        return;
    // A flick moves the content pixel by pixel, not a whole row at a time.
    if (auto* pView = qobject_cast<QAbstractItemView*>(pArea))
        pView->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    QScroller::grabGesture(pArea->viewport(), QScroller::TouchGesture);
    QScroller* pScroller = QScroller::scroller(pArea->viewport());
    QScrollerProperties properties = pScroller->scrollerProperties();
    // The content stops at its ends instead of bouncing past them.
    properties.setScrollMetric(QScrollerProperties::VerticalOvershootPolicy,
                               QVariant::fromValue(QScrollerProperties::OvershootAlwaysOff));
    properties.setScrollMetric(QScrollerProperties::HorizontalOvershootPolicy,
                               QVariant::fromValue(QScrollerProperties::OvershootAlwaysOff));
    pScroller->setScrollerProperties(properties);
}

}  // namespace Dravo
