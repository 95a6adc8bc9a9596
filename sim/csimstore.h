// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "cdaemonstore.h"
#include "csimoptions.h"

namespace Dravo {

// The simulator's outcomes on the shared database: sends that succeed, fail or half
// succeed as told, and a demo account's folders.
class CSimStore : public CDaemonStore
{
public:
    struct CSendResult
    {
        bool m_bOk = true;             // false: the outbox could not be read at all
        int m_iQueued = 0;             // outbox messages with tflag 1
        int m_iSent = 0;               // moved to the sent folder
        int m_iFailed = 0;             // left in the outbox with tflag 0
        QList<CTarvik> m_lstLoopback;  // sent messages addressed to the own number
        QString m_strError;
    };

    CSimStore();

    // Works through the outbox messages with tflag 1 as `mode` says. Silent mode is the
    // caller's business and changes nothing here.
    CSendResult sendOutbox(CSimOptions::eSendMode mode, const QString& ownNumber);
    // Fills the inbox, sent and outbox folders with demo messages, each only when it is
    // empty. Returns how many messages were written.
    int seedDemo(const QString& ownNumber, const QString& screenname, QString* pError);
};

}  // namespace Dravo
