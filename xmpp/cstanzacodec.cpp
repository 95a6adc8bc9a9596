// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cstanzacodec.h"

#include <QCryptographicHash>
#include <QHash>
#include <QLocale>
#include <QRegularExpression>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <cmath>

#include "cxmppaddress.h"

namespace Dravo {

const char* const CStanzaCodec::tarvikNamespace = "urn:x-tarvik:message:1";

namespace {

const QString s_strClientNs = QStringLiteral("jabber:client");
const QString s_strGeolocNs = QStringLiteral("http://jabber.org/protocol/geoloc");
const QString s_strNickNs = QStringLiteral("http://jabber.org/protocol/nick");
const QString s_strDelayNs = QStringLiteral("urn:xmpp:delay");

// RFC 5870: "geo:" lat "," lon ["," alt] then ";crs=", ";u=" or other parameters. Name
// and value characters exclude ';', so matching stays linear.
const QRegularExpression& geoUriPattern()
{
    static const QRegularExpression s_re(
        QStringLiteral(
            "geo:(-?[0-9]+(?:\\.[0-9]+)?),(-?[0-9]+(?:\\.[0-9]+)?)"
            "(?:,-?[0-9]+(?:\\.[0-9]+)?)?(?:;[-a-z0-9]+(?:=[-a-z0-9_.!~*'()\\[\\]:&+$%]*)?)*"),
        QRegularExpression::CaseInsensitiveOption);
    return s_re;
}

// Shortest text that reads back to the same double.
QString exactNumber(double value)
{
    return QString::number(value, 'g', QLocale::FloatingPointShortest);
}

// XEP-0082 date-time in UTC, whole seconds.
QString xmppTime(const QDateTime& dateTime)
{
    if (!dateTime.isValid()) {
        return {};
    }
    return dateTime.toUTC().toString(QStringLiteral("yyyy-MM-dd'T'HH:mm:ss'Z'"));
}

// A XEP-0082 date-time as UTC; one without a zone is taken as UTC. Invalid when unreadable.
QDateTime parseTime(const QString& text)
{
    QDateTime dateTime = QDateTime::fromString(text.trimmed(), Qt::ISODateWithMs);
    if (!dateTime.isValid()) {
        return {};
    }
    if (dateTime.timeSpec() == Qt::LocalTime) {
        dateTime.setTimeSpec(Qt::UTC);
    }
    return dateTime.toUTC();
}

// Leaves out what XML 1.0 cannot carry: control characters other than tab, line feed and
// carriage return, U+FFFE, U+FFFF and unpaired surrogates.
QString xmlChars(const QString& text)
{
    QString out;
    out.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar c = text.at(i);
        const char16_t u = c.unicode();
        if (c.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
            out += c;
            out += text.at(++i);
        } else if (c.isSurrogate() || u == 0xFFFE || u == 0xFFFF ||
                   (u < 0x20 && u != 0x9 && u != 0xA && u != 0xD)) {
            continue;
        } else {
            out += c;
        }
    }
    return out;
}

// Element text; a carriage return goes as a character reference, since a reader turns a
// literal one into a line feed.
void writeText(QXmlStreamWriter& writer, const QString& text)
{
    const QStringList parts = xmlChars(text).split(QLatin1Char('\r'));
    for (qsizetype i = 0; i < parts.size(); ++i) {
        if (i > 0) {
            writer.writeEntityReference(QStringLiteral("#13"));
        }
        if (!parts.at(i).isEmpty()) {
            writer.writeCharacters(parts.at(i));
        }
    }
}

void writeTextElement(QXmlStreamWriter& writer, const QString& name, const QString& text)
{
    writer.writeStartElement(name);
    writeText(writer, text);
    writer.writeEndElement();
}

// Children whose text is empty are left out: the reader's defaults stand for them.
void writeOptional(QXmlStreamWriter& writer, const QString& name, const QString& text)
{
    if (!text.isEmpty()) {
        writeTextElement(writer, name, text);
    }
}

// What a stanza holds that matters to us, as text.
struct CParts
{
    QString m_strType;
    QString m_strFrom;
    QString m_strId;
    bool m_bBody = false;
    QString m_strBody;
    QString m_strNick;
    QString m_strDelay;
    bool m_bGeoloc = false;
    QHash<QString, QString> m_geoloc;
    bool m_bElement = false;
    QHash<QString, QString> m_element;
};

// The text of each child element in `ns` of the current element, first one of a name wins.
void readChildren(QXmlStreamReader& reader, const QString& ns, QHash<QString, QString>& fields)
{
    while (reader.readNextStartElement()) {
        if (reader.namespaceUri() != ns) {
            reader.skipCurrentElement();
            continue;
        }
        const QString name = reader.name().toString();
        const QString text = reader.readElementText(QXmlStreamReader::IncludeChildElements);
        if (!fields.contains(name)) {
            fields.insert(name, text);
        }
    }
}

// Reads the stanza's attributes and its direct children; nested stanzas (forwarded
// copies) are skipped whole. Returns an error text, empty on success.
QString readParts(const QString& xml, CParts& parts)
{
    QXmlStreamReader reader(xml);
    bool bRoot = false;
    while (!reader.atEnd()) {
        const QXmlStreamReader::TokenType token = reader.readNext();
        if (token == QXmlStreamReader::DTD || token == QXmlStreamReader::EntityReference) {
            return QStringLiteral("document type declaration");
        }
        if (token != QXmlStreamReader::StartElement) {
            continue;
        }
        if (bRoot) {
            return QStringLiteral("malformed XML: more than one element");
        }
        bRoot = true;
        if (reader.name() != QLatin1String("message") ||
            (!reader.namespaceUri().isEmpty() && reader.namespaceUri() != s_strClientNs)) {
            return QStringLiteral("not a message stanza");
        }
        const QXmlStreamAttributes attributes = reader.attributes();
        parts.m_strType = attributes.value(QLatin1String("type")).toString();
        parts.m_strFrom = attributes.value(QLatin1String("from")).toString();
        parts.m_strId = attributes.value(QLatin1String("id")).toString();
        const QString clientNs = reader.namespaceUri().toString();
        while (reader.readNextStartElement()) {
            const QStringView ns = reader.namespaceUri();
            const QStringView name = reader.name();
            if (ns == clientNs && name == QLatin1String("body") && !parts.m_bBody) {
                parts.m_bBody = true;
                parts.m_strBody = reader.readElementText(QXmlStreamReader::IncludeChildElements);
            } else if (ns == s_strNickNs && name == QLatin1String("nick")) {
                parts.m_strNick = reader.readElementText(QXmlStreamReader::IncludeChildElements);
            } else if (ns == s_strDelayNs && name == QLatin1String("delay")) {
                parts.m_strDelay = reader.attributes().value(QLatin1String("stamp")).toString();
                reader.skipCurrentElement();
            } else if (ns == s_strGeolocNs && name == QLatin1String("geoloc") && !parts.m_bGeoloc) {
                parts.m_bGeoloc = true;
                readChildren(reader, s_strGeolocNs, parts.m_geoloc);
            } else if (ns == QLatin1String(CStanzaCodec::tarvikNamespace) &&
                       name == QLatin1String("tarvik") && !parts.m_bElement) {
                parts.m_bElement = true;
                readChildren(reader, QString::fromLatin1(CStanzaCodec::tarvikNamespace),
                             parts.m_element);
            } else {
                reader.skipCurrentElement();
            }
        }
    }
    if (reader.hasError()) {
        return QStringLiteral("malformed XML: ") + reader.errorString();
    }
    if (!bRoot) {
        return QStringLiteral("malformed XML: no element");
    }
    return {};
}

int toInt(const QHash<QString, QString>& fields, const QString& name, int fallback)
{
    bool bOk = false;
    const int value = fields.value(name).trimmed().toInt(&bOk);
    return bOk ? value : fallback;
}

// The title is the first non-empty line, the note the rest, both trimmed.
void splitBody(const QString& body, CTarvik& tarvik)
{
    const QStringList lines = body.split(QLatin1Char('\n'));
    qsizetype i = 0;
    while (i < lines.size() && lines.at(i).trimmed().isEmpty()) {
        ++i;
    }
    if (i < lines.size()) {
        tarvik.setTitle(lines.at(i).trimmed());
        tarvik.setNote(lines.mid(i + 1).join(QLatin1Char('\n')).trimmed());
    }
}

}  // namespace

QString CStanzaCodec::messageId(const CTarvik& tarvik)
{
    if (!tarvik.guid().isEmpty()) {
        return tarvik.guid();
    }
    const QDateTime dateTime = tarvik.dateTime();
    const QStringList fields = {
        tarvik.from(),
        tarvik.to(),
        dateTime.isValid() ? QString::number(dateTime.toSecsSinceEpoch()) : QString(),
        QString::number(tarvik.tz()),
        tarvik.title(),
        tarvik.note(),
        exactNumber(tarvik.latitude()),
        exactNumber(tarvik.longitude()),
        tarvik.screenname(),
        tarvik.address()};
    const QByteArray hash =
        QCryptographicHash::hash(fields.join(QChar(0x1f)).toUtf8(), QCryptographicHash::Sha1);
    return QString::fromLatin1(hash.toHex().left(32));
}

QString CStanzaCodec::geoUri(double latitude, double longitude)
{
    const auto coordinate = [](double value) {
        QString text = QString::number(value, 'f', 7);
        if (text.contains(QLatin1Char('.'))) {
            while (text.endsWith(QLatin1Char('0'))) {
                text.chop(1);
            }
            if (text.endsWith(QLatin1Char('.'))) {
                text.chop(1);
            }
        }
        return text == QLatin1String("-0") ? QStringLiteral("0") : text;
    };
    return QLatin1String("geo:") + coordinate(latitude) + QLatin1Char(',') + coordinate(longitude);
}

QString CStanzaCodec::toStanza(const CTarvik& tarvik, const QString& toJid, const QString& id)
{
    const QString time = xmppTime(tarvik.dateTime());
    const QString lat = exactNumber(tarvik.latitude());
    const QString lon = exactNumber(tarvik.longitude());

    QStringList body;
    if (!tarvik.title().isEmpty()) {
        body << tarvik.title();
    }
    if (!tarvik.note().isEmpty()) {
        body << tarvik.note();
    }
    body << geoUri(tarvik.latitude(), tarvik.longitude());

    QString xml;
    QXmlStreamWriter writer(&xml);
    writer.writeStartElement(QStringLiteral("message"));
    writer.writeAttribute(QStringLiteral("xmlns"), s_strClientNs);
    writer.writeAttribute(QStringLiteral("type"), QStringLiteral("chat"));
    writer.writeAttribute(QStringLiteral("to"), xmlChars(toJid));
    writer.writeAttribute(QStringLiteral("id"), xmlChars(id));
    writeTextElement(writer, QStringLiteral("body"), body.join(QLatin1Char('\n')));

    writer.writeStartElement(QStringLiteral("geoloc"));
    writer.writeAttribute(QStringLiteral("xmlns"), s_strGeolocNs);
    writeTextElement(writer, QStringLiteral("lat"), lat);
    writeTextElement(writer, QStringLiteral("lon"), lon);
    writeOptional(writer, QStringLiteral("timestamp"), time);
    writer.writeEndElement();

    if (!tarvik.screenname().isEmpty()) {
        writer.writeStartElement(QStringLiteral("nick"));
        writer.writeAttribute(QStringLiteral("xmlns"), s_strNickNs);
        writeText(writer, tarvik.screenname());
        writer.writeEndElement();
    }

    writer.writeStartElement(QStringLiteral("tarvik"));
    writer.writeAttribute(QStringLiteral("xmlns"), QString::fromLatin1(tarvikNamespace));
    writeOptional(writer, QStringLiteral("title"), tarvik.title());
    writeOptional(writer, QStringLiteral("note"), tarvik.note());
    writeTextElement(writer, QStringLiteral("lat"), lat);
    writeTextElement(writer, QStringLiteral("lon"), lon);
    writeOptional(writer, QStringLiteral("time"), time);
    writeTextElement(writer, QStringLiteral("tz"), QString::number(tarvik.tz()));
    writeOptional(writer, QStringLiteral("to"), tarvik.to());
    writeOptional(writer, QStringLiteral("address"), tarvik.address());
    writeOptional(writer, QStringLiteral("type"), tarvik.type());
    writeOptional(writer, QStringLiteral("typedesc"), tarvik.typedesc());
    writeOptional(writer, QStringLiteral("image"), tarvik.image());
    writeTextElement(writer, QStringLiteral("priority"), QString::number(tarvik.priority()));
    writeOptional(writer, QStringLiteral("color"), tarvik.color());
    writeTextElement(writer, QStringLiteral("country"), QString::number(tarvik.country()));
    writeOptional(writer, QStringLiteral("carrier"), tarvik.carrier());
    writeOptional(writer, QStringLiteral("version"), tarvik.version());
    writer.writeEndElement();

    writer.writeEndElement();
    return xml;
}

CStanzaCodec::CIncoming CStanzaCodec::fromStanza(const QString& xml, const QString& domain,
                                                 const QString& ownAddress, const QDateTime& now)
{
    CIncoming in;
    const auto reject = [&in](const QString& reason) {
        in.m_strReason = reason;
        return in;
    };
    // Checked in characters first, so an oversize text is never converted.
    if (xml.size() > maxStanzaBytes || xml.toUtf8().size() > maxStanzaBytes) {
        return reject(QStringLiteral("stanza too large"));
    }
    CParts parts;
    const QString error = readParts(xml, parts);
    if (!error.isEmpty()) {
        return reject(error);
    }
    if (!parts.m_strType.isEmpty() && parts.m_strType != QLatin1String("chat") &&
        parts.m_strType != QLatin1String("normal")) {
        return reject(QStringLiteral("message of type ") + parts.m_strType);
    }
    const QString sender = CXmppAddress::bareJid(parts.m_strFrom).trimmed();
    if (sender.isEmpty()) {
        return reject(QStringLiteral("no sender"));
    }

    // The position: our element's, else the geoloc's, else the body's geo: URI.
    const QRegularExpressionMatch uri =
        parts.m_bBody ? geoUriPattern().match(parts.m_strBody) : QRegularExpressionMatch();
    QString lat;
    QString lon;
    if (parts.m_element.contains(QStringLiteral("lat")) ||
        parts.m_element.contains(QStringLiteral("lon"))) {
        lat = parts.m_element.value(QStringLiteral("lat"));
        lon = parts.m_element.value(QStringLiteral("lon"));
    } else if (parts.m_geoloc.contains(QStringLiteral("lat")) ||
               parts.m_geoloc.contains(QStringLiteral("lon"))) {
        lat = parts.m_geoloc.value(QStringLiteral("lat"));
        lon = parts.m_geoloc.value(QStringLiteral("lon"));
    } else if (uri.hasMatch()) {
        lat = uri.captured(1);
        lon = uri.captured(2);
    } else {
        return reject(QStringLiteral("no position"));
    }
    bool bLatOk = false;
    bool bLonOk = false;
    const double latitude = lat.trimmed().toDouble(&bLatOk);
    const double longitude = lon.trimmed().toDouble(&bLonOk);
    if (!bLatOk || !bLonOk || !std::isfinite(latitude) || !std::isfinite(longitude) ||
        latitude < -90.0 || latitude > 90.0 || longitude < -180.0 || longitude > 180.0) {
        return reject(QStringLiteral("invalid position"));
    }

    CTarvik& tarvik = in.m_tarvik;
    tarvik.setLatitude(latitude);
    tarvik.setLongitude(longitude);
    tarvik.setFrom(CXmppAddress::senderForJid(sender, domain));
    tarvik.setScreenname(parts.m_strNick);

    const QHash<QString, QString>& element = parts.m_element;
    if (parts.m_bElement) {
        tarvik.setTitle(element.value(QStringLiteral("title")));
        tarvik.setNote(element.value(QStringLiteral("note")));
    } else if (parts.m_bBody) {
        QString body = parts.m_strBody;
        if (uri.hasMatch()) {
            body.remove(uri.capturedStart(), uri.capturedLength());
        }
        splitBody(body, tarvik);
    }
    tarvik.setTo(element.contains(QStringLiteral("to")) ? element.value(QStringLiteral("to"))
                                                        : ownAddress);

    QDateTime time = parseTime(element.value(QStringLiteral("time")));
    if (!time.isValid()) {
        time = parseTime(parts.m_strDelay);
    }
    if (!time.isValid()) {
        time = parseTime(parts.m_geoloc.value(QStringLiteral("timestamp")));
    }
    tarvik.setDateTime(time.isValid() ? time : now.toUTC());

    tarvik.setTz(toInt(element, QStringLiteral("tz"), tarvik.tz()));
    tarvik.setAddress(element.value(QStringLiteral("address")));
    tarvik.setType(element.value(QStringLiteral("type")));
    tarvik.setTypedesc(element.value(QStringLiteral("typedesc")));
    tarvik.setImage(element.value(QStringLiteral("image")));
    tarvik.setPriority(toInt(element, QStringLiteral("priority"), tarvik.priority()));
    tarvik.setColor(element.value(QStringLiteral("color")));
    tarvik.setCountry(toInt(element, QStringLiteral("country"), tarvik.country()));
    tarvik.setCarrier(element.value(QStringLiteral("carrier"), tarvik.carrier()));
    tarvik.setVersion(element.value(QStringLiteral("version")));

    in.m_strId = parts.m_strId.isEmpty() ? messageId(tarvik) : parts.m_strId;
    tarvik.setGuid(in.m_strId);
    tarvik.setFlag(1);
    in.m_bTarvik = true;
    return in;
}

}  // namespace Dravo
