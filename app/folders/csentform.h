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
