// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ctwpushbutton.h"

namespace Dravo {

CTWPushButton::CTWPushButton(QWidget* parent) : QPushButton(parent) {}

CTWPushButton::CTWPushButton(const QString& strText, QWidget* parent) : QPushButton(strText, parent)
{
}

}  // namespace Dravo
