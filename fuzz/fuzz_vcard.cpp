// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The contact chooser's walk over a contact's vCard: the address book is filled by other
// programs (sync, import), so any text may be in it.
#include "caddressbook.h"
#include "fuzzinput.h"

using namespace Dravo;
using namespace Dravo::Fuzz;

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    silenceQtLog();
    // libebook reports bad vCards through GLib's log: keep the run quiet.
    setenv("G_MESSAGES_DEBUG", "", 1);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t iSize)
{
    // The parser takes a C string: cut at the first NUL as a C caller would.
    const QByteArray vcard(reinterpret_cast<const char*>(pData), qsizetype(iSize));
    const CContactEntry entry = CAddressBook::entryFromVCard(vcard);
    for (const CContactEntry::Attribute& attribute : entry.attributes())
        FUZZ_CHECK(CContactEntry::isAddressAttribute(attribute.first));
    FUZZ_CHECK(entry.addressAttributes() == entry.attributes());
    return 0;
}
