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
    auto* pLayout = dynamic_cast<CToolBarLayout*>(layout());
    if (!pLayout || pLayout->isWrapping() == bWrapping)
        return;
    pLayout->setWrapping(bWrapping);
    // A side bar's edge faces the content: at the left in a column, on top in rows.
    if (m_bSideBar)
        setSkin(CSkin(bWrapping ? QStringLiteral(":/res_ui/img/toolbar_bottom.png")
                                : QStringLiteral(":/res_ui/img/toolbar.png")));
}

CTWToolBar* CTWToolBar::createSideBar(QWidget* parent)
{
    auto* pBar = new CTWToolBar(QBoxLayout::TopToBottom, parent);
    pBar->m_bSideBar = true;
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
