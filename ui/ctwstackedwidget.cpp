#include "ctwstackedwidget.h"

#include <QPainter>

namespace Dravo {

CTWStackedWidget::CTWStackedWidget(QWidget* parent) : QStackedWidget(parent)
{
    setAutoFillBackground(false);
}

void CTWStackedWidget::push(QWidget* pWidget)
{
    if (!pWidget)
        return;
    setCurrentIndex(addWidget(pWidget));
}

void CTWStackedWidget::pop()
{
    QWidget* pWidget = currentWidget();
    if (!pWidget)
        return;
    removeWidget(pWidget);
    delete pWidget;
}

void CTWStackedWidget::setBrush(const QBrush& brush)
{
    m_brush = brush;
    update();
}

void CTWStackedWidget::setSkin(const CSkin& skin)
{
    m_skin = skin;
    m_skin.resize(rect());
    update();
}

void CTWStackedWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    if (m_skin.hasScaledImage())
        painter.drawImage(rect(), m_skin.scaledImage(), m_skin.scaledImage().rect());
    else
        painter.fillRect(rect(), m_brush);
}

void CTWStackedWidget::resizeEvent(QResizeEvent* event)
{
    QStackedWidget::resizeEvent(event);
    m_skin.resize(rect());
}

}  // namespace Dravo
