// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// tarvik-addressbook: reads the system address book once and writes every contact to
// standard output, one JSON line each (see CContactEntry::toWireLine()), then exits 0.
// On failure it writes one {"error":"..."} line and exits 1. The client runs it so that
// Evolution Data Server's libraries are never mapped into the client itself.
#include <cstdio>

#include "cedscontactreader.h"

using namespace Dravo;

namespace {

bool writeLine(const QByteArray& line)
{
    return std::fwrite(line.constData(), 1, size_t(line.size()), stdout) == size_t(line.size());
}

}  // namespace

int main()
{
    CContactEntryList contacts;
    QString error;
    if (!CEdsContactReader::readAll(&contacts, &error)) {
        writeLine(CContactEntry::errorWireLine(error));
        std::fflush(stdout);
        return 1;
    }
    bool ok = true;
    for (const CContactEntry& contact : contacts) {
        ok = ok && writeLine(contact.toWireLine());
    }
    ok = std::fflush(stdout) == 0 && ok;
    return ok ? 0 : 2;
}
