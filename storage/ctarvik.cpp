// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ctarvik.h"

#include <QDebug>

namespace Dravo {

CTarvik::CTarvik()
    : m_iId(-1),
      m_iTz(0),
      m_dLatitude(0.0),
      m_dLongitude(0.0),
      m_iPriority(0),
      m_iCountry(0),
      m_strCarrier(QStringLiteral("n/a")),
      m_iFlag(0)
{
}

CTarvik::~CTarvik() = default;

// Markup characters become entities (the ampersand first, so entities are not escaped
// twice). A carriage return is written as a character reference, since a parser would
// otherwise turn it into a line feed; other control characters cannot appear in an XML 1.0
// document at all and are left out, so the document always parses.
QString CTarvik::escapeXml(const QString& text)
{
    QString escaped;
    escaped.reserve(text.size() + 16);
    for (const QChar c : text) {
        switch (c.unicode()) {
            case '&':
                escaped += QLatin1String("&amp;");
                break;
            case '<':
                escaped += QLatin1String("&lt;");
                break;
            case '>':
                escaped += QLatin1String("&gt;");
                break;
            case '"':
                escaped += QLatin1String("&quot;");
                break;
            case '\'':
                escaped += QLatin1String("&apos;");
                break;
            case '\r':
                escaped += QLatin1String("&#13;");
                break;
            case '\t':
            case '\n':
                escaped += c;
                break;
            default:
                if (c.unicode() >= 0x20 && c.unicode() != 0xFFFE && c.unicode() != 0xFFFF) {
                    escaped += c;
                }
        }
    }
    return escaped;
}

QString CTarvik::toXml() const
{
    const QString to = escapeXml(m_strTo);
    const QString title = escapeXml(m_strTitle);
    const QString note = escapeXml(m_strNote);
    const QString address = escapeXml(m_strAddress);
    const QString screenname = escapeXml(m_strScreenname);

    QString xml;
    xml.reserve(256 + to.size() + title.size() + note.size() + address.size());
    xml += QLatin1String("<ping>");
    xml += QLatin1String("<from>") + m_strFrom + QLatin1String("</from>");
    xml += QLatin1String("<reg>") + m_strReg + QLatin1String("</reg>");
    xml += QStringLiteral("<country>%1</country>").arg(m_iCountry);
    xml += QLatin1String("<carrier>") + m_strCarrier + QLatin1String("</carrier>");
    xml += QLatin1String("<to>") + to + QLatin1String("</to>");
    xml += QLatin1String("<date>") + m_dtDateTime.date().toString(Qt::ISODate) +
           QLatin1String("</date>");
    xml += QLatin1String("<time>") + m_dtDateTime.time().toString(QStringLiteral("HH:mm:ss")) +
           QLatin1String("</time>");
    xml += QStringLiteral("<tz>%1</tz>").arg(m_iTz);
    xml += QLatin1String("<title>") + title + QLatin1String("</title>");
    xml += QLatin1String("<note>") + note + QLatin1String("</note>");
    xml += QLatin1String("<address>") + address + QLatin1String("</address>");
    xml += QStringLiteral(
               "<coordinates><latitude>%1</latitude><longitude>%2</longitude></coordinates>")
               .arg(QString::number(m_dLatitude, 'g', 6), QString::number(m_dLongitude, 'g', 6));
    xml += QLatin1String("<version>") + m_strVersion + QLatin1String("</version>");
    xml += QLatin1String("<screenname>") + screenname + QLatin1String("</screenname>");
    xml += QLatin1String("</ping>");
    return xml;
}

void CTarvik::dump() const
{
    qDebug() << "id:" << m_iId;
    qDebug().noquote() << "guid:" << m_strGuid;
    qDebug().noquote() << "type:" << m_strType;
    qDebug().noquote() << "from:" << m_strFrom;
    qDebug().noquote() << "to:" << m_strTo;
    qDebug() << "date & time:" << m_dtDateTime;
    qDebug() << "tz:" << m_iTz;
    qDebug().noquote() << "title:" << m_strTitle;
    qDebug().noquote() << "note:" << m_strNote;
    qDebug().noquote() << "address:" << m_strAddress;
    qDebug() << "latitude:" << m_dLatitude;
    qDebug() << "longitude:" << m_dLongitude;
    qDebug().noquote() << "screenname:" << m_strScreenname;
    qDebug().noquote() << "typedesc:" << m_strTypedesc;
    qDebug().noquote() << "image:" << m_strImage;
    qDebug() << "priority:" << m_iPriority;
    qDebug().noquote() << "color:" << m_strColor;
    qDebug().noquote() << "reg:" << m_strReg;
    qDebug() << "country:" << m_iCountry;
    qDebug().noquote() << "carrier:" << m_strCarrier;
    qDebug().noquote() << "version:" << m_strVersion;
    qDebug() << "flag:" << m_iFlag;
}

}  // namespace Dravo
