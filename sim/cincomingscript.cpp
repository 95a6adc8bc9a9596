// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cincomingscript.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QUuid>
#include <cmath>

#include "ctarvikstorage.h"

namespace Dravo {

CIncomingScript::CIncomingScript(uint firstEntry)
    : m_lstEntries(builtInEntries()), m_uNext(firstEntry)
{
}

QList<CIncomingScript::CEntry> CIncomingScript::builtInEntries()
{
    // Numbers are from ranges set aside for fiction where the country has one.
    return {
        {QStringLiteral("+358405550101"), QStringLiteral("Aino"),
         QStringLiteral("Coffee at the market?"),
         QStringLiteral("I'm at the Kauppatori stalls, by the fountain. Come over if you're near!"),
         QStringLiteral("Kauppatori, Helsinki"), 60.1675, 24.9525, 2},
        {QStringLiteral("+4915550123456"), QStringLiteral("Jonas"),
         QStringLiteral("Meet at the gate"),
         QStringLiteral("Standing right under the Brandenburg Gate, blue jacket, can't miss me."),
         QStringLiteral("Pariser Platz, Berlin"), 52.5163, 13.3777, 1},
        {QStringLiteral("+33639980123"), QStringLiteral("Camille"),
         QStringLiteral("Picnic spot found"),
         QStringLiteral("Champ de Mars, under the big chestnut tree. Bring something to drink."),
         QStringLiteral("Champ de Mars, Paris"), 48.8556, 2.2986, 1},
        {QStringLiteral("+447700900123"), QStringLiteral("Oliver"), QStringLiteral("Running late"),
         QStringLiteral("Stuck on the bridge by Westminster, ten more minutes. Sorry!"),
         QStringLiteral("Westminster Bridge, London"), 51.5008, -0.1219, 0},
        {QStringLiteral("+34600555017"), QStringLiteral("Lucía"),
         QStringLiteral("The queue is short!"),
         QStringLiteral("Only ten minutes to get into the Sagrada Família right now."),
         QStringLiteral("Carrer de Mallorca 401, Barcelona"), 41.4036, 2.1744, 1},
        {QStringLiteral("+12125550143"), QStringLiteral("Maya"),
         QStringLiteral("Found the bookshop"),
         QStringLiteral("The one you told me about is right here, second floor. Want anything?"),
         QStringLiteral("Bryant Park, New York"), 40.7536, -73.9832, -5},
        {QStringLiteral("+819055550177"), QStringLiteral("Haruto"), QStringLiteral("By the statue"),
         QStringLiteral("Waiting next to Hachikō, the crossing is packed tonight."),
         QStringLiteral("Shibuya Station, Tokyo"), 35.6590, 139.7006, 9},
        {QStringLiteral("+61491570156"), QStringLiteral("Chloe"), QStringLiteral("Ferry at five"),
         QStringLiteral("At Circular Quay, the Manly ferry leaves at five. I'll hold a seat."),
         QStringLiteral("Circular Quay, Sydney"), -33.8610, 151.2108, 10},
        {QStringLiteral("+5521955550199"), QStringLiteral("Rafael"),
         QStringLiteral("View from the top"),
         QStringLiteral("Up at Cristo Redentor, the clouds just cleared. Worth the climb!"),
         QStringLiteral("Corcovado, Rio de Janeiro"), -22.9519, -43.2105, -3},
        {QStringLiteral("anna.kask@example.org"), QStringLiteral("Anna"),
         QStringLiteral("Old town café"),
         QStringLiteral(
             "At the Town Hall Square, the café with the red door. Table by the window."),
         QStringLiteral("Raekoja plats, Tallinn"), 59.4372, 24.7453, 2},
    };
}

bool CIncomingScript::loadFromFile(const QString& path, QString* pError, QStringList* pWarnings)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        if (pError) {
            *pError = QStringLiteral("cannot read %1: %2").arg(path, file.errorString());
        }
        return false;
    }
    return loadFromJson(file.readAll(), pError, pWarnings);
}

bool CIncomingScript::loadFromJson(const QByteArray& json, QString* pError, QStringList* pWarnings)
{
    QJsonParseError parseError;
    const QJsonDocument doc = QJsonDocument::fromJson(json, &parseError);
    if (parseError.error != QJsonParseError::NoError) {
        if (pError) {
            *pError = QStringLiteral("not JSON at offset %1: %2")
                          .arg(parseError.offset)
                          .arg(parseError.errorString());
        }
        return false;
    }
    if (!doc.isArray()) {
        if (pError) {
            *pError = QStringLiteral("expected an array of messages");
        }
        return false;
    }
    QList<CEntry> entries;
    const QJsonArray array = doc.array();
    for (int i = 0; i < array.size(); ++i) {
        const QJsonObject object = array.at(i).toObject();
        const QJsonValue lat = object.value(QStringLiteral("latitude"));
        const QJsonValue lon = object.value(QStringLiteral("longitude"));
        CEntry entry{object.value(QStringLiteral("from")).toString().trimmed(),
                     object.value(QStringLiteral("screenname")).toString(),
                     object.value(QStringLiteral("title")).toString(),
                     object.value(QStringLiteral("note")).toString(),
                     object.value(QStringLiteral("address")).toString(),
                     lat.toDouble(),
                     lon.toDouble(),
                     object.value(QStringLiteral("tz")).toInt()};
        QString problem;
        if (!array.at(i).isObject()) {
            problem = QStringLiteral("not an object");
        } else if (entry.m_strFrom.isEmpty()) {
            problem = QStringLiteral("no sender (from)");
        } else if (!lat.isDouble() || !lon.isDouble() || !std::isfinite(entry.m_dLatitude) ||
                   !std::isfinite(entry.m_dLongitude) || std::fabs(entry.m_dLatitude) > 90.0 ||
                   std::fabs(entry.m_dLongitude) > 180.0) {
            problem = QStringLiteral("no valid latitude/longitude");
        }
        if (!problem.isEmpty()) {
            if (pWarnings) {
                pWarnings->append(QStringLiteral("entry %1 skipped: %2").arg(i).arg(problem));
            }
            continue;
        }
        if (entry.m_strScreenname.isEmpty()) {
            entry.m_strScreenname = entry.m_strFrom;
        }
        entries.append(entry);
    }
    if (entries.isEmpty()) {
        if (pError) {
            *pError = QStringLiteral("no usable message in the file");
        }
        return false;
    }
    m_lstEntries = entries;
    return true;
}

CTarvik CIncomingScript::next(const QString& ownNumber, const QDateTime& when)
{
    const CEntry& entry = m_lstEntries.at(static_cast<int>(m_uNext % m_lstEntries.size()));
    ++m_uNext;
    return makeTarvik(entry, ownNumber, when, 1);
}

CTarvik CIncomingScript::makeTarvik(const CEntry& entry, const QString& ownNumber,
                                    const QDateTime& when, int flag)
{
    CTarvik tarvik;
    tarvik.setGuid(QUuid::createUuid().toString(QUuid::WithoutBraces));
    tarvik.setFrom(entry.m_strFrom);
    tarvik.setTo(ownNumber);
    tarvik.setDateTime(when.toUTC());
    tarvik.setTz(entry.m_iTz);
    tarvik.setTitle(entry.m_strTitle);
    tarvik.setNote(entry.m_strNote);
    tarvik.setLatitude(entry.m_dLatitude);
    tarvik.setLongitude(entry.m_dLongitude);
    tarvik.setScreenname(entry.m_strScreenname);
    tarvik.setAddress(entry.m_strAddress);
    tarvik.setVersion(CTarvikStorage::softwareVersion);
    tarvik.setFlag(flag);
    return tarvik;
}

}  // namespace Dravo
