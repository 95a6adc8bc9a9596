// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A message to the <ping> document: every field the sender or the recipient can type is
// arbitrary text; none of it may add, end or break an element.
#include "ctarvik.h"
#include "fuzzinput.h"

#include <QXmlStreamReader>

#include <cmath>

using namespace Dravo;
using namespace Dravo::Fuzz;

namespace {

// The document's elements in order; nothing typed may change this list.
const QStringList& expectedElements()
{
    static const QStringList s_lst = {
        QStringLiteral("ping"),        QStringLiteral("from"),      QStringLiteral("reg"),
        QStringLiteral("country"),     QStringLiteral("carrier"),   QStringLiteral("to"),
        QStringLiteral("date"),        QStringLiteral("time"),      QStringLiteral("tz"),
        QStringLiteral("title"),       QStringLiteral("note"),      QStringLiteral("address"),
        QStringLiteral("coordinates"), QStringLiteral("latitude"),  QStringLiteral("longitude"),
        QStringLiteral("version"),     QStringLiteral("screenname")};
    return s_lst;
}

// The escaping drops what XML 1.0 cannot carry except lone surrogates, which a reader
// rejects; a text with one is checked for markup only.
bool hasLoneSurrogate(const QString& text)
{
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        if (c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate())
            ++i;
        else if (c.isSurrogate())
            return true;
    }
    return false;
}

// The text a reader gets back: control characters other than tab, line feed and carriage
// return, and the two non-characters U+FFFE and U+FFFF, are left out.
QString readBack(const QString& text)
{
    QString out;
    for (QChar c : text) {
        const ushort u = c.unicode();
        if ((u >= 0x20 || u == 0x9 || u == 0xA || u == 0xD) && u != 0xFFFE && u != 0xFFFF)
            out += c;
    }
    return out;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    silenceQtLog();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t iSize)
{
    CFuzzInput in(pData, iSize);
    CTarvik tarvik;
    tarvik.setFrom(QStringLiteral("+358401234567"));
    tarvik.setReg(QStringLiteral("1"));
    tarvik.setCarrier(QStringLiteral("carrier"));
    tarvik.setVersion(QStringLiteral("1.0.5"));
    tarvik.setTo(in.takeString());
    tarvik.setTitle(in.takeString());
    tarvik.setNote(in.takeString());
    tarvik.setAddress(in.takeString());
    tarvik.setScreenname(in.takeString());
    tarvik.setCountry(in.take<int>());
    tarvik.setTz(in.take<int>());
    tarvik.setLatitude(in.take<double>());
    tarvik.setLongitude(in.take<double>());
    tarvik.setDateTime(
        QDateTime::fromSecsSinceEpoch(in.take<qint64>() % (qint64(1) << 40), Qt::UTC));

    const QString xml = tarvik.toXml();

    const QStringList typed = {tarvik.to(), tarvik.title(), tarvik.note(), tarvik.address(),
                               tarvik.screenname()};
    bool bReadable = true;
    for (const QString& text : typed)
        bReadable = bReadable && !hasLoneSurrogate(text);
    if (!bReadable) {
        // Still no markup from the typed text: every '<' is one of the document's own.
        FUZZ_CHECK(xml.count(QLatin1Char('<')) == 2 * expectedElements().size());
        return 0;
    }

    // Parsed back, the document has exactly its own elements and the typed texts come out
    // as they went in.
    QXmlStreamReader reader(xml);
    QStringList elements;
    QStringList texts;
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement) {
            const QString name = reader.name().toString();
            elements << name;
            if (name == QLatin1String("to") || name == QLatin1String("title") ||
                name == QLatin1String("note") || name == QLatin1String("address") ||
                name == QLatin1String("screenname"))
                texts << reader.readElementText();
        }
    }
    FUZZ_CHECK(!reader.hasError());
    FUZZ_CHECK(elements == expectedElements());
    QStringList expected;
    for (const QString& text : typed)
        expected << readBack(text);
    FUZZ_CHECK(texts == expected);
    return 0;
}
