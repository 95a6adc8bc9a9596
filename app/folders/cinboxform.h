// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "cfolderform.h"

namespace Dravo {

// The received messages.
class CInboxForm : public CFolderForm
{
    Q_OBJECT
public:
    explicit CInboxForm(QWidget* parent = nullptr);
};

}  // namespace Dravo
