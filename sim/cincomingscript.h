// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDateTime>
#include <QList>
#include <QString>

#include "ctarvik.h"

namespace Dravo {

// The messages the simulator "receives" from other people: who sends them, what they
// say and where the sender stands. A built-in set of senders in real cities, or a
// JSON file. Entries are handed out in turn, so a run is reproducible.
class CIncomingScript
{
public:
    struct CEntry
    {
        QString m_strFrom;
        QString m_strScreenname;
        QString m_strTitle;
        QString m_strNote;
        QString m_strAddress;
        double m_dLatitude;
        double m_dLongitude;
        int m_iTz;
    };

    explicit CIncomingScript(uint firstEntry = 0);

    static QList<CEntry> builtInEntries();

    // Replaces the entries by those of a JSON array. Entries without a sender or with a
    // position off the globe are skipped and described in `pWarnings`. False (and the
    // entries left as they were) when the file cannot be read or holds no usable entry.
    bool loadFromFile(const QString& path, QString* pError, QStringList* pWarnings = nullptr);
    bool loadFromJson(const QByteArray& json, QString* pError, QStringList* pWarnings = nullptr);

    const QList<CEntry>& entries() const { return m_lstEntries; }

    // The next scripted message, addressed to `ownNumber`, unread, written at `when`.
    CTarvik next(const QString& ownNumber, const QDateTime& when);

    // A message made from one entry.
    static CTarvik makeTarvik(const CEntry& entry, const QString& ownNumber, const QDateTime& when,
                              int flag);

private:
    QList<CEntry> m_lstEntries;
    uint m_uNext;
};

}  // namespace Dravo
