// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QString>

#include "ccontactentry.h"

namespace Dravo {

// Reads the built-in system address book of Evolution Data Server through libebook.
// Only the tarvik-addressbook helper links it, so the client never maps Evolution's
// libraries.
class CEdsContactReader
{
public:
    // Connects to the session bus, the source registry and the system address book and
    // reads every contact; false with a message in *error when any step fails.
    static bool readAll(CContactEntryList* contacts, QString* error);

    // The entry made of one contact given as vCard text.
    static CContactEntry entryFromVCard(const QByteArray& vcard);
};

}  // namespace Dravo
