// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ctwlabel.h"

#include "uiresources.h"

namespace Dravo {

CTWLabel::CTWLabel(QWidget* parent, Qt::WindowFlags flags) : CTWSkinned<QLabel>(parent, flags)
{
    init();
}

CTWLabel::CTWLabel(const QString& strText, QWidget* parent, Qt::WindowFlags flags)
    : CTWSkinned<QLabel>(strText, parent, flags)
{
    init();
}

void CTWLabel::init()
{
    setAutoFillBackground(false);
    connect(m_busy.animation(), &CAnimation::frameChanged, this,
            &CTWLabel::onAnimationFrameChanged);
}

void CTWLabel::setArtPixmap(const QString& strPath)
{
    m_strArt = strPath;
    setPixmap(artPixmap(strPath, devicePixelRatioF()));
}

void CTWLabel::setBusy(bool bBusy)
{
    if (m_busy.setBusy(bBusy))
        update();
}

void CTWLabel::onAnimationFrameChanged()
{
    update();
}

void CTWLabel::paintEvent(QPaintEvent* event)
{
    // The window went to a screen of another pixel ratio since the art was set.
    if (!m_strArt.isEmpty() && pixmap().devicePixelRatio() != devicePixelRatioF())
        setPixmap(artPixmap(m_strArt, devicePixelRatioF()));
    {
        QPainter painter(this);
        paintBackground(painter);
    }
    // The text goes over the background and under the busy indicator.
    QLabel::paintEvent(event);
    if (m_busy.isShown()) {
        QPainter painter(this);
        m_busy.draw(painter, rect());
    }
}

}  // namespace Dravo
