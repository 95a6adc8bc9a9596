// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QList>
#include <QSet>
#include <QString>

#include "ctarvik.h"
#include "ctsettings.h"

namespace Dravo {

class CTarvikStorage;

// A daemon's side of the shared database. Every operation opens its own connection and
// closes it again, so the daemon never holds the file open while the client recreates it,
// never keeps a transaction open across network traffic, and sees a file that appears or
// vanishes later. Nothing here creates a missing database except ensureDatabase().
class CDaemonStore
{
public:
    // `name` prefixes the SQL connection names, one per daemon ("tarvik_simd", "tarvikd").
    explicit CDaemonStore(const QString& name);
    virtual ~CDaemonStore();

    static QString databasePath();
    static bool databaseExists();

    // Creates the database from the template when it is missing (under the same lock the
    // client takes) and checks that it can be read.
    bool ensureDatabase(QString* pError);
    bool readSettings(CTSettings& settings, QString* pError);
    // regflag 1 or 0; the rest of the settings stays as the client saved it.
    bool setRegistered(bool registered, QString* pError);
    // Own number, screen name and regflag 1 in one save.
    bool registerAccount(const QString& number, const QString& screenname, QString* pError);

    // The outbox messages with tflag 1, in outbox order.
    bool queuedOutbox(QList<CTarvik>& queued, QString* pError);
    // Guids of the sent folder: a queued message whose id is already there went out before
    // (the client saved its stale copy of the outbox back).
    bool sentGuids(QSet<QString>& guids, QString* pError);
    // Writes the messages into the sent folder as they are (guid set by the caller, tflag
    // 0), then removes their outbox rows (their ids) in one transaction. Copy first, then
    // remove: a failure in between leaves a duplicate, never a loss. Returns how many
    // reached the sent folder.
    int moveToSent(const QList<CTarvik>& tarviks, QString* pError);
    // Removes outbox rows that are already in the sent folder.
    bool dropFromOutbox(const QList<int>& tids, QString* pError);
    // Sets tflag 0 on these outbox rows; a row the client removed meanwhile is skipped.
    int markFailed(const QList<CTarvik>& tarviks, QString* pError);
    // Stores the messages in the inbox in one transaction; returns how many were stored.
    int deliver(const QList<CTarvik>& tarviks, QString* pError);
    bool inbox(QList<CTarvik>& tarviks, QString* pError);

    // True when `ownNumber` is one of the comma-separated recipients in `to`. Phone
    // numbers compare by their digits (a leading 00 counts as +), e-mail addresses
    // without regard to case.
    static bool isAddressedTo(const QString& to, const QString& ownNumber);
    static QString normalizedAddress(const QString& address);

protected:
    // An open connection, or null with the reason in pError.
    CTarvikStorage* open(QString* pError);

private:
    QString m_strName;
    int m_iConnection;
};

}  // namespace Dravo
