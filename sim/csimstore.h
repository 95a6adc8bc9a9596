// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QList>
#include <QString>

#include "csimoptions.h"
#include "ctarvik.h"
#include "ctsettings.h"

namespace Dravo {

class CTarvikStorage;

// The simulator's side of the shared database. Every operation opens its own
// connection and closes it again, so the simulator never holds the file open while
// the client recreates it, and a file that appears or vanishes later is seen.
// Nothing here creates a missing database except ensureDatabase().
class CSimStore
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

    static QString databasePath();
    static bool databaseExists();

    // Creates the database from the template when it is missing and checks that it
    // can be read.
    bool ensureDatabase(QString* pError);
    bool readSettings(CTSettings& settings, QString* pError);
    // regflag 1 or 0; the rest of the settings stays as the client saved it.
    bool setRegistered(bool registered, QString* pError);
    // Own number, screen name and regflag 1 in one save.
    bool registerAccount(const QString& number, const QString& screenname, QString* pError);

    // Works through the outbox messages with tflag 1 as `mode` says. Silent mode is the
    // caller's business and changes nothing here.
    CSendResult sendOutbox(CSimOptions::eSendMode mode, const QString& ownNumber);
    // Stores the messages in the inbox; returns how many were stored.
    int deliver(const QList<CTarvik>& tarviks, QString* pError);
    // Fills the inbox, sent and outbox folders with demo messages, each only when it is
    // empty. Returns how many messages were written.
    int seedDemo(const QString& ownNumber, const QString& screenname, QString* pError);

    // True when `ownNumber` is one of the comma-separated recipients in `to`. Phone
    // numbers compare by their digits (a leading 00 counts as +), e-mail addresses
    // without regard to case.
    static bool isAddressedTo(const QString& to, const QString& ownNumber);
    static QString normalizedAddress(const QString& address);

private:
    // An open connection, or null with the reason in pError.
    CTarvikStorage* open(QString* pError);

    int m_iConnection;
};

}  // namespace Dravo
