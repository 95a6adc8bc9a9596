// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "csentform.h"

#include "cformfactory.h"
#include "ctexts.h"
#include "dbusobject.h"

namespace Dravo {

CSentForm::CSentForm(QWidget* parent)
    : CFolderForm(parent, {"CSentForm", CAsyncTStorage::eFolderSent, CTexts::sentTitle(), true,
                           false, CFormFactory::eViewSent, false, false})
{
    connect(Tarvik::DBusObject::instance(), &Tarvik::DBusObject::MessagesSent, this,
            &CFolderForm::refresh, Qt::QueuedConnection);
    refresh();
}

}  // namespace Dravo
