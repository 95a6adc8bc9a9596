// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QWidget>

#include "ctwskinned.h"

namespace Dravo {

// The skinned panel of a popup; reports taps so that a popup can close on them.
class CTWPopup : public CTWSkinned<QWidget>
{
    Q_OBJECT
public:
    explicit CTWPopup(QWidget* parent = nullptr);

signals:
    void onMousePressed();
    void onMouseReleased();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
};

}  // namespace Dravo
