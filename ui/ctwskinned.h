// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QBrush>
#include <QPainter>
#include <QResizeEvent>

#include "cskin.h"

namespace Dravo {

// Gives a Qt widget class a skinned background: the skin scaled to the widget, or the brush
// where the skin makes no image. The skin follows every resize. Widgets built on it turn off
// autoFillBackground in their constructors.
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
        m_skin.resize(this->rect());
        this->update();
    }
    const CSkin& skin() const { return m_skin; }

protected:
    void paintBackground(QPainter& painter) const
    {
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
        m_skin.resize(this->rect());
    }

private:
    QBrush m_brush;
    CSkin m_skin;
};

}  // namespace Dravo
