#include "ctwpopup.h"

#include <QMouseEvent>
#include <QPainter>

namespace Dravo {

CTWPopup::CTWPopup(QWidget* parent) : QWidget(parent)
{
    setAutoFillBackground(false);
}

void CTWPopup::setBrush(const QBrush& brush)
{
    m_brush = brush;
    update();
}

void CTWPopup::setSkin(const CSkin& skin)
{
    m_skin = skin;
    m_skin.resize(rect());
    update();
}

void CTWPopup::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    if (m_skin.hasScaledImage())
        painter.drawImage(rect(), m_skin.scaledImage(), m_skin.scaledImage().rect());
    else
        painter.fillRect(rect(), m_brush);
}

void CTWPopup::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    m_skin.resize(rect());
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
