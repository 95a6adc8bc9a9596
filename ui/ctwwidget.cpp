#include "ctwwidget.h"

#include <QPainter>
#include <QResizeEvent>

namespace Dravo {

CTWWidget::CTWWidget(QWidget* parent)
    : QWidget(parent), m_bBusy(false), m_animation(CAnimation::PROGRESS_ANIMATION)
{
    setAutoFillBackground(false);
    connect(&m_animation, &CAnimation::frameChanged, this, &CTWWidget::onAnimationFrameChanged);
}

void CTWWidget::setBrush(const QBrush& brush)
{
    m_brush = brush;
    update();
}

void CTWWidget::setSkin(const CSkin& skin)
{
    m_skin = skin;
    m_skin.resize(rect());
    update();
}

void CTWWidget::setBusy(bool bBusy)
{
    if (m_bBusy == bBusy)
        return;
    m_bBusy = bBusy;
    if (m_bBusy)
        m_animation.start();
    else
        m_animation.stop();
    update();
}

void CTWWidget::onAnimationFrameChanged()
{
    update();
}

void CTWWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    if (m_skin.hasScaledImage())
        painter.drawImage(rect(), m_skin.scaledImage(), m_skin.scaledImage().rect());
    else
        painter.fillRect(rect(), m_brush);
    if (m_bBusy) {
        const QRect frame = m_animation.frameRect();
        if (frame.isValid())
            m_animation.draw(
                &painter, QPoint((width() - frame.width()) / 2, (height() - frame.height()) / 2));
    }
}

void CTWWidget::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    m_skin.resize(rect());
}

}  // namespace Dravo
