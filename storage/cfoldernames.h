// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QMetaType>
#include <QString>
#include <QStringList>

namespace Dravo {

// The four message folders. CAsyncTStorage and CTarvikStorage both derive from this,
// so the enumeration is spelled CAsyncTStorage::eFolderName where it is used.
class CFolderNames
{
public:
    // A fixed underlying type: folder numbers arrive from the bus and from rows, and a
    // value outside 0..3 must stay a value that can be checked, not undefined behaviour.
    enum eFolderName : int
    {
        eFolderInbox = 0,
        eFolderOutbox = 1,
        eFolderSent = 2,
        eFolderDraft = 3
    };

    // "inbox", "outbox", "sent", "draft", indexed by eFolderName.
    static const QStringList& tableNames();
    static bool isValidFolder(int folder) { return folder >= 0 && folder < 4; }
    // The table name, or an empty string for a value outside 0..3.
    static QString tableName(int folder);
};

}  // namespace Dravo

Q_DECLARE_METATYPE(Dravo::CFolderNames::eFolderName)
