// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cfoldernames.h"

namespace Dravo {

const QStringList& CFolderNames::tableNames()
{
    static const QStringList names = {QStringLiteral("inbox"), QStringLiteral("outbox"),
                                      QStringLiteral("sent"), QStringLiteral("draft")};
    return names;
}

QString CFolderNames::tableName(int folder)
{
    return isValidFolder(folder) ? tableNames().at(folder) : QString();
}

}  // namespace Dravo
