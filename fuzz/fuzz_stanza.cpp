// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Any text as an incoming <message> stanza: reading it never crashes, and a message read
// from it comes out the same after being sent on again. The same bytes also make up the
// texts of an outgoing message, which must always give a stanza that reads back.
#include "cstanzacodec.h"
#include "fuzzinput.h"

#include <cmath>

using namespace Dravo;
using namespace Dravo::Fuzz;

namespace {

const QString s_strDomain = QStringLiteral("tarvik.localhost");
const QString s_strOwn = QStringLiteral("+3725550009");
const QDateTime s_dtNow = QDateTime::fromSecsSinceEpoch(1780000000, Qt::UTC);

// The stanza as the server delivers it, with the sender's address added.
CStanzaCodec::CIncoming deliver(const CTarvik& tarvik, const QString& id)
{
    QString xml = CStanzaCodec::toStanza(tarvik, QStringLiteral("3725550009@tarvik.localhost"), id);
    FUZZ_CHECK(xml.startsWith(QLatin1String("<message ")));
    xml.insert(8, QLatin1String(" from=\"3725550001@tarvik.localhost/phone\""));
    return CStanzaCodec::fromStanza(xml, s_strDomain, s_strOwn, s_dtNow);
}

// What a reader gets back of a text: XML 1.0 cannot carry most control characters,
// U+FFFE, U+FFFF or unpaired surrogates.
QString carried(const QString& text)
{
    QString out;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        const char16_t u = c.unicode();
        if (c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
            out += c;
            out += text.at(++i);
        } else if (!c.isSurrogate() && u != 0xFFFE && u != 0xFFFF &&
                   (u >= 0x20 || u == 0x9 || u == 0xA || u == 0xD)) {
            out += c;
        }
    }
    return out;
}

// A coordinate within [-limit, limit] from any double.
double coordinate(double value, double limit)
{
    return std::isfinite(value) ? std::fmod(value, limit) : 0.0;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    silenceQtLog();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t iSize)
{
    const QString xml = QString::fromUtf8(reinterpret_cast<const char*>(pData), qsizetype(iSize));
    const CStanzaCodec::CIncoming first =
        CStanzaCodec::fromStanza(xml, s_strDomain, s_strOwn, s_dtNow);
    FUZZ_CHECK(first.m_bTarvik || !first.m_strReason.isEmpty());
    if (first.m_bTarvik) {
        const CTarvik& a = first.m_tarvik;
        const CStanzaCodec::CIncoming second = deliver(a, first.m_strId);
        FUZZ_CHECK(second.m_bTarvik);
        const CTarvik& b = second.m_tarvik;
        FUZZ_CHECK(second.m_strId == first.m_strId);
        FUZZ_CHECK(b.title() == a.title());
        FUZZ_CHECK(b.note() == a.note());
        FUZZ_CHECK(b.latitude() == a.latitude());
        FUZZ_CHECK(b.longitude() == a.longitude());
        FUZZ_CHECK(b.screenname() == a.screenname());
        FUZZ_CHECK(b.to() == a.to());
        FUZZ_CHECK(b.address() == a.address());
    }

    // The bytes as the texts of a message the user typed.
    CFuzzInput in(pData, iSize);
    CTarvik typed;
    typed.setTitle(in.takeString());
    typed.setNote(in.takeString());
    typed.setScreenname(in.takeString());
    typed.setAddress(in.takeString());
    typed.setTo(in.takeString());
    typed.setLatitude(coordinate(in.take<double>(), 90.0));
    typed.setLongitude(coordinate(in.take<double>(), 180.0));
    const QString id = in.takeString();
    const CStanzaCodec::CIncoming got = deliver(typed, id);
    FUZZ_CHECK(got.m_bTarvik);
    FUZZ_CHECK(got.m_tarvik.title() == carried(typed.title()));
    FUZZ_CHECK(got.m_tarvik.note() == carried(typed.note()));
    FUZZ_CHECK(got.m_tarvik.screenname() == carried(typed.screenname()));
    FUZZ_CHECK(got.m_tarvik.address() == carried(typed.address()));
    FUZZ_CHECK(got.m_tarvik.to() == (typed.to().isEmpty() ? s_strOwn : carried(typed.to())));
    FUZZ_CHECK(got.m_tarvik.latitude() == typed.latitude());
    FUZZ_CHECK(got.m_tarvik.longitude() == typed.longitude());
    const QString sentId = carried(id);
    FUZZ_CHECK(sentId.isEmpty() || got.m_strId == sentId);
    return 0;
}
