// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QDateTime>
#include <QList>
#include <QMetaType>
#include <QString>

namespace Dravo {

// One message: title, note and the sender's position, addressed to one recipient.
class CTarvik
{
public:
    CTarvik();
    CTarvik(const CTarvik& other) = default;
    CTarvik(CTarvik&& other) noexcept = default;
    CTarvik& operator=(const CTarvik& other) = default;
    CTarvik& operator=(CTarvik&& other) noexcept = default;
    virtual ~CTarvik();

    int id() const { return m_iId; }
    void setId(int id) { m_iId = id; }
    QString guid() const { return m_strGuid; }
    void setGuid(const QString& guid) { m_strGuid = guid; }
    QString from() const { return m_strFrom; }
    void setFrom(const QString& from) { m_strFrom = from; }
    QString to() const { return m_strTo; }
    void setTo(const QString& to) { m_strTo = to; }
    QDateTime dateTime() const { return m_dtDateTime; }
    void setDateTime(const QDateTime& dateTime) { m_dtDateTime = dateTime; }
    int tz() const { return m_iTz; }
    void setTz(int tz) { m_iTz = tz; }
    QString title() const { return m_strTitle; }
    void setTitle(const QString& title) { m_strTitle = title; }
    QString note() const { return m_strNote; }
    void setNote(const QString& note) { m_strNote = note; }
    double latitude() const { return m_dLatitude; }
    void setLatitude(double latitude) { m_dLatitude = latitude; }
    double longitude() const { return m_dLongitude; }
    void setLongitude(double longitude) { m_dLongitude = longitude; }
    QString screenname() const { return m_strScreenname; }
    void setScreenname(const QString& screenname) { m_strScreenname = screenname; }
    QString address() const { return m_strAddress; }
    void setAddress(const QString& address) { m_strAddress = address; }
    QString type() const { return m_strType; }
    void setType(const QString& type) { m_strType = type; }
    QString typedesc() const { return m_strTypedesc; }
    void setTypedesc(const QString& typedesc) { m_strTypedesc = typedesc; }
    QString image() const { return m_strImage; }
    void setImage(const QString& image) { m_strImage = image; }
    int priority() const { return m_iPriority; }
    void setPriority(int priority) { m_iPriority = priority; }
    QString color() const { return m_strColor; }
    void setColor(const QString& color) { m_strColor = color; }
    QString reg() const { return m_strReg; }
    void setReg(const QString& reg) { m_strReg = reg; }
    int country() const { return m_iCountry; }
    void setCountry(int country) { m_iCountry = country; }
    QString carrier() const { return m_strCarrier; }
    void setCarrier(const QString& carrier) { m_strCarrier = carrier; }
    QString version() const { return m_strVersion; }
    void setVersion(const QString& version) { m_strVersion = version; }
    int flag() const { return m_iFlag; }
    void setFlag(int flag) { m_iFlag = flag; }

    // The <ping> document the service exchanges: one line, five fields escaped.
    QString toXml() const;
    // Writes one labelled line per field to the debug log.
    void dump() const;

    // Replaces & < > " ' by their XML entities (ampersand first) and a carriage return by a
    // character reference; drops control characters that XML cannot carry.
    static QString escapeXml(const QString& text);

private:
    int m_iId;
    QString m_strGuid;
    QString m_strFrom;
    QString m_strTo;
    QDateTime m_dtDateTime;
    int m_iTz;
    QString m_strTitle;
    QString m_strNote;
    double m_dLatitude;
    double m_dLongitude;
    QString m_strScreenname;
    QString m_strAddress;
    QString m_strType;
    QString m_strTypedesc;
    QString m_strImage;
    int m_iPriority;
    QString m_strColor;
    QString m_strReg;
    int m_iCountry;
    QString m_strCarrier;
    QString m_strVersion;
    int m_iFlag;
};

}  // namespace Dravo

// Nothing in a message points into itself, so lists may move it by memory copy.
Q_DECLARE_TYPEINFO(Dravo::CTarvik, Q_RELOCATABLE_TYPE);
Q_DECLARE_METATYPE(Dravo::CTarvik)
