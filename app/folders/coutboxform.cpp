// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "coutboxform.h"

#include "ctexts.h"
#include "dbusobject.h"

namespace Dravo {

COutboxForm::COutboxForm(QWidget* parent)
    : CFolderForm(parent, {"COutboxForm", CAsyncTStorage::eFolderOutbox, CTexts::outboxTitle(),
                           false, false, -1, false, true})
{
    Tarvik::DBusObject* pBus = Tarvik::DBusObject::instance();
    connect(pBus, &Tarvik::DBusObject::MessagesPartiallySent, this, &CFolderForm::refresh,
            Qt::QueuedConnection);
    connect(pBus, &Tarvik::DBusObject::MessagesSendFailed, this, &CFolderForm::refresh,
            Qt::QueuedConnection);
    connect(pBus, &Tarvik::DBusObject::MessagesSent, this, &CFolderForm::refresh,
            Qt::QueuedConnection);
    refresh();
}

}  // namespace Dravo
