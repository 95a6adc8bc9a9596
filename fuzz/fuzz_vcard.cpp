// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The address-book helper's walk over a contact's vCard and the line it writes for it: the
// address book is filled by other programs (sync, import), so any text may be in it.
#include "cedscontactreader.h"
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
    const CContactEntry entry = CEdsContactReader::entryFromVCard(vcard);
    for (const CContactEntry::Attribute& attribute : entry.attributes())
        FUZZ_CHECK(CContactEntry::isAddressAttribute(attribute.first));
    FUZZ_CHECK(entry.addressAttributes() == entry.attributes());
    // One line per contact whatever it holds, read back as written (long texts cut or
    // dropped by the writer).
    const QByteArray line = entry.toWireLine();
    FUZZ_CHECK(line.indexOf('\n') == line.size() - 1);
    CContactEntry back;
    QString error;
    FUZZ_CHECK(CContactEntry::fromWireLine(line.chopped(1), &back, &error));
    FUZZ_CHECK(back.uid() == entry.uid().left(CContactEntry::kMaxText));
    FUZZ_CHECK(back.name() == entry.name().left(CContactEntry::kMaxText));
    FUZZ_CHECK(back.attributes().size() <= entry.attributes().size());
    return 0;
}
