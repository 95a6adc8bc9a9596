// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ctwtoolbutton.h"

#include <QPainter>

namespace Dravo {

CTWToolButton::CTWToolButton(QWidget* parent) : QToolButton(parent)
{
    setAutoFillBackground(false);
    setContentsMargins(0, 0, 0, 0);
}

CTWToolButton* CTWToolButton::createButton(const QIcon& icon, bool bCheckable, bool bAutoExclusive,
                                           bool bFocusable)
{
    CTWToolButton* pButton = new CTWToolButton();
    pButton->setIcon(icon);
    pButton->setIconSize(icon.actualSize(QSize(2147483647, 2147483647), QIcon::Normal, QIcon::Off));
    pButton->setCheckable(bCheckable);
    pButton->setAutoExclusive(bAutoExclusive);
    if (!bFocusable)
        pButton->setFocusPolicy(Qt::NoFocus);
    return pButton;
}

CTWToolButton* CTWToolButton::createButton(const QIcon& icon, bool bFocusable)
{
    return createButton(icon, false, false, bFocusable);
}

QIcon CTWToolButton::createIcon(const QString& strDir, const QString& strNormalOff,
                                const QString& strNormalOn, const QString& strDisabled)
{
    QIcon icon;
    icon.addFile(strDir + strNormalOff, QSize(), QIcon::Normal, QIcon::Off);
    icon.addFile(strDir + strNormalOn, QSize(), QIcon::Normal, QIcon::On);
    icon.addFile(strDir + strDisabled, QSize(), QIcon::Disabled, QIcon::On);
    icon.addFile(strDir + strDisabled, QSize(), QIcon::Disabled, QIcon::Off);
    return icon;
}

void CTWToolButton::setBrush(const QBrush& brush)
{
    m_brush = brush;
    update();
}

void CTWToolButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), m_brush);
    const QIcon::Mode mode = isEnabled() ? QIcon::Normal : QIcon::Disabled;
    const QIcon::State state = (isDown() || isChecked()) ? QIcon::On : QIcon::Off;
    icon().paint(&painter, rect(), Qt::AlignHCenter | Qt::AlignVCenter, mode, state);
}

}  // namespace Dravo
