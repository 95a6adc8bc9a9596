// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

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

private:
    QString m_strUid;
    QString m_strName;
    QList<Attribute> m_lstAttributes;
};

using CContactEntryList = QList<CContactEntry>;

}  // namespace Dravo

Q_DECLARE_METATYPE(Dravo::CContactEntry)
Q_DECLARE_METATYPE(Dravo::CContactEntryList)
