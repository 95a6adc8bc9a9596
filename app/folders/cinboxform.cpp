// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cinboxform.h"

#include "cformfactory.h"
#include "ctexts.h"
#include "dbusobject.h"

namespace Dravo {

CInboxForm::CInboxForm(QWidget* parent)
    : CFolderForm(parent, {"CInboxForm", CAsyncTStorage::eFolderInbox, CTexts::inboxTitle(), true,
                           true, CFormFactory::eViewReceived, true, false})
{
    connect(Tarvik::DBusObject::instance(), &Tarvik::DBusObject::MessagesReceived, this,
            &CFolderForm::refresh, Qt::QueuedConnection);
    refresh();
}

}  // namespace Dravo
