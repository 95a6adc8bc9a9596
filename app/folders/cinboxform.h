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
