#include "ctwtoolbar.h"

#include <QPainter>

namespace Dravo {

CTWToolBar::CTWToolBar(QBoxLayout::Direction direction, QWidget* parent) : QWidget(parent)
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

void CTWToolBar::setBrush(const QBrush& brush)
{
    m_brush = brush;
    update();
}

void CTWToolBar::setSkin(const CSkin& skin)
{
    m_skin = skin;
    m_skin.resize(rect());
    update();
}

void CTWToolBar::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    if (m_skin.hasScaledImage())
        painter.drawImage(rect(), m_skin.scaledImage(), m_skin.scaledImage().rect());
    else
        painter.fillRect(rect(), m_brush);
}

void CTWToolBar::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    m_skin.resize(rect());
}

}  // namespace Dravo
