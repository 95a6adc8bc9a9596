#include "ctwlabel.h"

#include <QPainter>
#include <QResizeEvent>

namespace Dravo {

CTWLabel::CTWLabel(QWidget* parent, Qt::WindowFlags flags)
    : QLabel(parent, flags), m_bBusy(false), m_animation(CAnimation::PROGRESS_ANIMATION)
{
    init();
}

CTWLabel::CTWLabel(const QString& strText, QWidget* parent, Qt::WindowFlags flags)
    : QLabel(strText, parent, flags), m_bBusy(false), m_animation(CAnimation::PROGRESS_ANIMATION)
{
    init();
}

void CTWLabel::init()
{
    setAutoFillBackground(false);
    connect(&m_animation, &CAnimation::frameChanged, this, &CTWLabel::onAnimationFrameChanged);
}

void CTWLabel::setBrush(const QBrush& brush)
{
    m_brush = brush;
    update();
}

void CTWLabel::setSkin(const CSkin& skin)
{
    m_skin = skin;
    m_skin.resize(rect());
    update();
}

void CTWLabel::setBusy(bool bBusy)
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

void CTWLabel::onAnimationFrameChanged()
{
    update();
}

void CTWLabel::paintEvent(QPaintEvent* event)
{
    {
        QPainter painter(this);
        if (m_skin.hasScaledImage())
            painter.drawImage(rect(), m_skin.scaledImage(), m_skin.scaledImage().rect());
        else
            painter.fillRect(rect(), m_brush);
    }
    QLabel::paintEvent(event);
    if (m_bBusy) {
        const QRect frame = m_animation.frameRect();
        if (frame.isValid()) {
            QPainter painter(this);
            m_animation.draw(
                &painter, QPoint((width() - frame.width()) / 2, (height() - frame.height()) / 2));
        }
    }
}

void CTWLabel::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    m_skin.resize(rect());
}

}  // namespace Dravo
