// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "cfolderform.h"

namespace Dravo {

// The messages the daemon has sent.
class CSentForm : public CFolderForm
{
    Q_OBJECT
public:
    explicit CSentForm(QWidget* parent = nullptr);
};

}  // namespace Dravo
