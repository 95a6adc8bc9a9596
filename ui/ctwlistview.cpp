#include "ctwlistview.h"

#include <QEvent>
#include <QKeyEvent>
#include <QPainter>

namespace Dravo {

CTWListView::CTWListView(QWidget* parent)
    : QListView(parent), m_bBusy(false), m_animation(CAnimation::PROGRESS_ANIMATION)
{
    init();
}

CTWListView::CTWListView(const QString& strEmptyText, QWidget* parent)
    : QListView(parent),
      m_bBusy(false),
      m_animation(CAnimation::PROGRESS_ANIMATION),
      m_strEmptyText(strEmptyText)
{
    init();
}

void CTWListView::init()
{
    setResizeMode(QListView::Adjust);
    viewport()->setAutoFillBackground(false);
    setFrameShape(QFrame::NoFrame);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setFocusPolicy(Qt::NoFocus);
    connect(&m_animation, &CAnimation::frameChanged, this, &CTWListView::onAnimationFrameChanged);
}

void CTWListView::setBusy(bool bBusy)
{
    if (m_bBusy == bBusy)
        return;
    m_bBusy = bBusy;
    if (m_bBusy)
        m_animation.start();
    else
        m_animation.stop();
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
    const QRect frame = m_animation.frameRect();
    if (m_bBusy && frame.isValid()) {
        QPainter painter(viewport());
        const QRect area = viewport()->rect();
        painter.fillRect(area, QColor(0, 0, 0, 150));
        m_animation.draw(&painter, QPoint((area.width() - frame.width()) / 2,
                                          (area.height() - frame.height()) / 2));
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
    if (m_bBusy) {
        event->ignore();
        return;
    }
    QListView::keyPressEvent(event);
}

bool CTWListView::viewportEvent(QEvent* event)
{
    if (m_bBusy) {
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
