// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ctwlistview.h"

#include <QEvent>
#include <QKeyEvent>
#include <QPainter>

#include "ctouchscroller.h"

namespace Dravo {

CTWListView::CTWListView(QWidget* parent) : CTWListView(QString(), parent) {}

CTWListView::CTWListView(const QString& strEmptyText, QWidget* parent)
    : QListView(parent), m_strEmptyText(strEmptyText)
{
    setResizeMode(QListView::Adjust);
    viewport()->setAutoFillBackground(false);
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    CTouchScroller::enable(this);
    connect(m_busy.animation(), &CAnimation::frameChanged, this,
            &CTWListView::onAnimationFrameChanged);
}

void CTWListView::setBusy(bool bBusy)
{
    if (m_busy.setBusy(bBusy))
        viewport()->update();
}

void CTWListView::setEmptyText(const QString& strEmptyText)
{
    m_strEmptyText = strEmptyText;
    viewport()->update();
}

void CTWListView::onAnimationFrameChanged()
{
    viewport()->update();
}

void CTWListView::paintEvent(QPaintEvent* event)
{
    QListView::paintEvent(event);
    if (m_busy.isShown()) {
        QPainter painter(viewport());
        painter.fillRect(viewport()->rect(), QColor(0, 0, 0, 150));
        m_busy.draw(painter, viewport()->rect());
    } else if (model() && model()->rowCount(rootIndex()) == 0 && !m_strEmptyText.isEmpty()) {
        QPainter painter(viewport());
        painter.setPen(Qt::white);
        painter.drawText(rect().adjusted(20, 20, -20, -20),
                         Qt::AlignHCenter | Qt::AlignVCenter | Qt::TextWordWrap, m_strEmptyText);
    }
}

void CTWListView::resizeEvent(QResizeEvent* event)
{
    QListView::resizeEvent(event);
    // Word-wrapped rows change height with the width.
    if (resizeMode() == QListView::Adjust)
        scheduleDelayedItemsLayout();
}

void CTWListView::keyPressEvent(QKeyEvent* event)
{
    if (m_busy.isBusy()) {
        event->ignore();
        return;
    }
    QListView::keyPressEvent(event);
}

bool CTWListView::viewportEvent(QEvent* event)
{
    if (m_busy.isBusy()) {
        switch (event->type()) {
            case QEvent::ContextMenu:
            case QEvent::MouseButtonPress:
            case QEvent::MouseButtonRelease:
            case QEvent::MouseButtonDblClick:
            case QEvent::MouseMove:
            case QEvent::KeyPress:
            case QEvent::KeyRelease:
            case QEvent::TabletMove:
            case QEvent::TabletPress:
            case QEvent::TabletRelease:
                return false;
            default:
                break;
        }
    }
    return QAbstractItemView::viewportEvent(event);
}

}  // namespace Dravo
