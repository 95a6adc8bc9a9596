// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "ctwlabel.h"
#include "ctwwidget.h"

namespace Dravo {

// The skinned title bar at the top of a form: one centred line of white bold text.
class CTitle : public CTWWidget
{
    Q_OBJECT
public:
    explicit CTitle(QWidget* parent = nullptr);

    void setText(const QString& strTitle);
    CTWLabel* label() const { return m_pLabel; }

private:
    CTWLabel* m_pLabel;
};

}  // namespace Dravo
