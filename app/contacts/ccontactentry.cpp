// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ccontactentry.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

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

QByteArray CContactEntry::toWireLine() const
{
    QJsonArray attributes;
    for (const Attribute& attribute : m_lstAttributes) {
        if (attribute.first.size() <= kMaxText && attribute.second.size() <= kMaxText) {
            attributes.append(QJsonArray{attribute.first, attribute.second});
        }
    }
    const QJsonObject object{{QStringLiteral("uid"), m_strUid.left(kMaxText)},
                             {QStringLiteral("name"), m_strName.left(kMaxText)},
                             {QStringLiteral("attributes"), attributes}};
    return QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

QByteArray CContactEntry::errorWireLine(const QString& error)
{
    return QJsonDocument(QJsonObject{{QStringLiteral("error"), error}})
               .toJson(QJsonDocument::Compact) +
           '\n';
}

bool CContactEntry::fromWireLine(const QByteArray& line, CContactEntry* entry, QString* error)
{
    const QJsonObject object = QJsonDocument::fromJson(line).object();
    if (object.contains(QLatin1String("error"))) {
        *error = object.value(QLatin1String("error")).toString();
        return false;
    }
    const QJsonValue uid = object.value(QLatin1String("uid"));
    const QJsonValue name = object.value(QLatin1String("name"));
    if (!uid.isString() || !name.isString()) {
        return false;
    }
    QList<Attribute> attributes;
    for (const QJsonValue& value : object.value(QLatin1String("attributes")).toArray()) {
        const QJsonArray pair = value.toArray();
        if (pair.size() != 2 || !pair.at(0).isString() || !pair.at(1).isString()) {
            return false;
        }
        attributes.append({pair.at(0).toString(), pair.at(1).toString()});
    }
    *entry = CContactEntry(uid.toString(), name.toString(), attributes);
    return true;
}

}  // namespace Dravo
