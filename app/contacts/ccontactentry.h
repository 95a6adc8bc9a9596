// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QByteArray>
#include <QList>
#include <QMetaType>
#include <QPair>
#include <QString>
#include <QStringList>

namespace Dravo {

// One address-book contact as the chooser needs it: its name and its vCard
// attributes (name, value) in their stored order.
class CContactEntry
{
public:
    using Attribute = QPair<QString, QString>;

    CContactEntry() = default;
    CContactEntry(const QString& strUid, const QString& strName,
                  const QList<Attribute>& lstAttributes);

    QString uid() const { return m_strUid; }
    QString name() const { return m_strName; }
    const QList<Attribute>& attributes() const { return m_lstAttributes; }

    // Attributes named exactly "TEL" or "EMAIL", in stored order.
    QList<Attribute> addressAttributes() const;
    static bool isAddressAttribute(const QString& name);
    // Name and addresses in one text, for searching.
    QString searchText() const;

    bool operator==(const CContactEntry& other) const
    {
        return m_strUid == other.m_strUid && m_strName == other.m_strName &&
               m_lstAttributes == other.m_lstAttributes;
    }
    bool operator!=(const CContactEntry& other) const { return !(*this == other); }

    // The address-book helper's output: one compact JSON object per line, UTF-8,
    //   {"uid":"...","name":"...","attributes":[["TEL","+3725550001"],["EMAIL","a@b"]]}
    // and, on failure, a single {"error":"..."} line. JSON escapes every control
    // character, so no value can break a line. Texts longer than kMaxText characters
    // are dropped (attributes) or cut (uid, name) by the writer.
    static constexpr int kMaxText = 1024;
    QByteArray toWireLine() const;
    static QByteArray errorWireLine(const QString& error);
    // Reads one line (without its newline); false when it is not a contact, with the
    // error text of an error line in *error.
    static bool fromWireLine(const QByteArray& line, CContactEntry* entry, QString* error);

private:
    QString m_strUid;
    QString m_strName;
    QList<Attribute> m_lstAttributes;
};

using CContactEntryList = QList<CContactEntry>;

}  // namespace Dravo

Q_DECLARE_METATYPE(Dravo::CContactEntry)
Q_DECLARE_METATYPE(Dravo::CContactEntryList)
