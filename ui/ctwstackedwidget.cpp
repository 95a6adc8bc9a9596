// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ctwstackedwidget.h"

namespace Dravo {

CTWStackedWidget::CTWStackedWidget(QWidget* parent) : CTWSkinned<QStackedWidget>(parent)
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

}  // namespace Dravo
