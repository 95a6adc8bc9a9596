// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QPushButton>

namespace Dravo {

// The push button of the forms; looks come from the application's style.
class CTWPushButton : public QPushButton
{
    Q_OBJECT
public:
    explicit CTWPushButton(QWidget* parent = nullptr);
    explicit CTWPushButton(const QString& strText, QWidget* parent = nullptr);
};

}  // namespace Dravo
