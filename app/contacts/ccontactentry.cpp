// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ccontactentry.h"

namespace Dravo {

CContactEntry::CContactEntry(const QString& strUid, const QString& strName,
                             const QList<Attribute>& lstAttributes)
    : m_strUid(strUid), m_strName(strName), m_lstAttributes(lstAttributes)
{
}

bool CContactEntry::isAddressAttribute(const QString& name)
{
    return name == QLatin1String("TEL") || name == QLatin1String("EMAIL");
}

QList<CContactEntry::Attribute> CContactEntry::addressAttributes() const
{
    QList<Attribute> result;
    for (const Attribute& attribute : m_lstAttributes) {
        if (isAddressAttribute(attribute.first)) {
            result.append(attribute);
        }
    }
    return result;
}

QString CContactEntry::searchText() const
{
    QStringList parts{m_strName};
    for (const Attribute& attribute : addressAttributes()) {
        parts.append(attribute.second);
    }
    return parts.join(QLatin1Char('\n'));
}

}  // namespace Dravo
