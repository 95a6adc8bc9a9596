// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "cfolderform.h"

namespace Dravo {

// The messages waiting to be sent, or whose sending failed.
class COutboxForm : public CFolderForm
{
    Q_OBJECT
public:
    explicit COutboxForm(QWidget* parent = nullptr);
};

}  // namespace Dravo
