// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QBrush>
#include <QPainter>
#include <QResizeEvent>

#include "cskin.h"

namespace Dravo {

// Gives a Qt widget class a skinned background: the skin scaled to the widget, or the brush
// where the skin makes no image. The skin follows every resize and the device pixel ratio it is
// painted at. Widgets built on it turn off autoFillBackground in their constructors.
template <typename TBase>
class CTWSkinned : public TBase
{
public:
    using TBase::TBase;

    void setBrush(const QBrush& brush)
    {
        m_brush = brush;
        this->update();
    }
    const QBrush& brush() const { return m_brush; }
    void setSkin(const CSkin& skin)
    {
        m_skin = skin;
        m_skin.resize(this->rect(), this->devicePixelRatioF());
        this->update();
    }
    const CSkin& skin() const { return m_skin; }

protected:
    void paintBackground(QPainter& painter) const
    {
        // A no-op unless the widget went to a screen of another ratio since the last resize.
        m_skin.resize(this->rect(), painter.device()->devicePixelRatioF());
        if (m_skin.hasScaledImage())
            painter.drawImage(this->rect(), m_skin.scaledImage(), m_skin.scaledImage().rect());
        else
            painter.fillRect(this->rect(), m_brush);
    }
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        paintBackground(painter);
    }
    void resizeEvent(QResizeEvent* event) override
    {
        TBase::resizeEvent(event);
        m_skin.resize(this->rect(), this->devicePixelRatioF());
    }

private:
    QBrush m_brush;
    mutable CSkin m_skin;
};

}  // namespace Dravo
