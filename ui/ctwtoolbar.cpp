// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ctwtoolbar.h"

#include "ctoolbarlayout.h"
#include "ctwpushbutton.h"

namespace Dravo {

CTWToolBar::CTWToolBar(QBoxLayout::Direction direction, QWidget* parent)
    : CTWSkinned<QWidget>(parent)
{
    setAutoFillBackground(false);
    setLayout(new CToolBarLayout(direction));
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

void CTWToolBar::setWrapping(bool bWrapping)
{
    if (auto* pLayout = dynamic_cast<CToolBarLayout*>(layout()))
        pLayout->setWrapping(bWrapping);
}

CTWToolBar* CTWToolBar::createSideBar(QWidget* parent)
{
    auto* pBar = new CTWToolBar(QBoxLayout::TopToBottom, parent);
    pBar->setSkin(CSkin(QStringLiteral(":/res_ui/img/toolbar.png")));
    QBoxLayout* pBox = pBar->boxLayout();
    pBox->setSpacing(SIDE_BAR_SPACING);
    pBox->setContentsMargins(SIDE_BAR_MARGIN, SIDE_BAR_MARGIN, SIDE_BAR_MARGIN, SIDE_BAR_MARGIN);
    return pBar;
}

CTWPushButton* CTWToolBar::addButton(const QString& strText, Qt::Alignment alignment)
{
    auto* pButton = new CTWPushButton(strText, this);
    pButton->setAccessibleName(QString(strText).replace(QLatin1Char('\n'), QLatin1Char(' ')));
    pButton->setMinimumWidth(BUTTON_WIDTH);
    if (QBoxLayout* pBox = boxLayout())
        pBox->addWidget(pButton, 0, alignment);
    return pButton;
}

}  // namespace Dravo
