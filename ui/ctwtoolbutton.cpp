// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ctwtoolbutton.h"

#include <QPainter>
#include <QStyle>

#include "uiresources.h"

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
    pButton->setIconSize(artIconSize(icon));
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
    // The icon size in logical pixels, shrunk to fit; the pixmap in the device's pixels.
    QSize size = iconSize();
    if (size.width() > width() || size.height() > height())
        size.scale(this->size(), Qt::KeepAspectRatio);
    const QPixmap pixmap = icon().pixmap(size, painter.device()->devicePixelRatioF(), mode, state);
    if (!pixmap.isNull())
        painter.drawPixmap(QStyle::alignedRect(layoutDirection(), Qt::AlignCenter, size, rect()),
                           pixmap);
}

}  // namespace Dravo
