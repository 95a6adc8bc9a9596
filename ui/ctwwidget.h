// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QWidget>

#include "cbusyindicator.h"
#include "ctwskinned.h"

namespace Dravo {

// A plain widget painted with a skin (or a brush when the skin cannot be made), with an
// optional busy indicator centred over it.
class CTWWidget : public CTWSkinned<QWidget>
{
    Q_OBJECT
public:
    explicit CTWWidget(QWidget* parent = nullptr);

    void setBusy(bool bBusy);
    bool isBusy() const { return m_busy.isBusy(); }
    // The busy indicator; a form may load another strip into it.
    CAnimation* animation() { return m_busy.animation(); }

public slots:
    void onAnimationFrameChanged();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    CBusyIndicator m_busy;
};

}  // namespace Dravo
