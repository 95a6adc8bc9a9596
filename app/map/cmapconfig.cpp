// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cmapconfig.h"

#include "cplugindirectory.h"

#include <QCoreApplication>
#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QUrl>
#include <QtDebug>

#include "ctexts.h"

namespace Dravo {

namespace {
int s_iTilesTimeoutMs = 10000;
int s_iRouteTimeoutMs = 15000;

bool isWebUrl(const QUrl& url)
{
    return url.isValid() &&
           (url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https")) &&
           !url.host().isEmpty();
}

// Why a tile URL template cannot serve the map; empty when it can.
QString tileUrlProblem(const QString& strUrl)
{
    for (const char* pszPart : {"{z}", "{x}", "{y}"}) {
        if (!strUrl.contains(QLatin1String(pszPart)))
            return QStringLiteral("no %1 in it").arg(QLatin1String(pszPart));
    }
    // The place-holders stand for letters and digits once filled in.
    QString strFilled = strUrl;
    for (const char* pszPart : {"{s}", "{z}", "{x}", "{y}", "{r}"})
        strFilled.replace(QLatin1String(pszPart), QLatin1String("a0"));
    if (!isWebUrl(QUrl(strFilled)))
        return QStringLiteral("not an http or https URL");
    return QString();
}

// Why a route service base URL cannot serve the route page; empty when it can.
QString routeUrlProblem(const QString& strUrl)
{
    const QUrl url(strUrl);
    if (!isWebUrl(url))
        return QStringLiteral("not an http or https URL");
    if (url.hasQuery() || url.hasFragment())
        return QStringLiteral("the page appends a path, so it can carry no query or fragment");
    return QString();
}

// $pszName when set and usable, else the build's default; a value that is set but
// unusable is logged with the reason.
QString envOr(const char* pszName, const char* pszDefault,
              QString (*pProblem)(const QString&) = nullptr)
{
    const QString value = qEnvironmentVariable(pszName).trimmed();
    if (value.isEmpty())
        return QString::fromUtf8(pszDefault);
    const QString strProblem = pProblem ? pProblem(value) : QString();
    if (strProblem.isEmpty())
        return value;
    qWarning().noquote() << QStringLiteral("CMapConfig: %1 ignored (%2), using %3")
                                .arg(QLatin1String(pszName), strProblem,
                                     QString::fromUtf8(pszDefault));
    return QString::fromUtf8(pszDefault);
}
}  // namespace

QString CMapConfig::tileUrl()
{
    return envOr("TARVIK_TILE_URL", TARVIK_TILE_URL_DEFAULT, tileUrlProblem);
}

QString CMapConfig::tileAttribution()
{
    return envOr("TARVIK_TILE_ATTRIBUTION", TARVIK_TILE_ATTRIBUTION_DEFAULT);
}

QString CMapConfig::routeUrl()
{
    QString url = envOr("TARVIK_ROUTE_URL", TARVIK_ROUTE_URL_DEFAULT, routeUrlProblem);
    while (url.endsWith(QLatin1Char('/')))
        url.chop(1);
    return url;
}

QString CMapConfig::userAgent()
{
    return QStringLiteral("tarvik/" TARVIK_VERSION " (" TARVIK_CONTACT ")");
}

int CMapConfig::tilesTimeoutMs()
{
    return s_iTilesTimeoutMs;
}

void CMapConfig::setTilesTimeoutMs(int iMs)
{
    s_iTilesTimeoutMs = iMs;
}

int CMapConfig::routeTimeoutMs()
{
    return s_iRouteTimeoutMs;
}

void CMapConfig::setRouteTimeoutMs(int iMs)
{
    s_iRouteTimeoutMs = iMs;
}

QString CMapConfig::pageConfigScript()
{
    QJsonObject config;
    config.insert(QStringLiteral("tileUrl"), tileUrl());
    config.insert(QStringLiteral("tileAttribution"), tileAttribution());
    config.insert(QStringLiteral("routeUrl"), routeUrl());
    config.insert(QStringLiteral("routeTimeoutMs"), routeTimeoutMs());
    // The directions' first line in the client's language; the page fills in %1 and %2.
    config.insert(QStringLiteral("routeSummary"), CTexts::routeSummary());
    // Its distances and durations likewise, with the locale's decimal point.
    config.insert(QStringLiteral("units"),
                  QJsonObject{{QStringLiteral("m"), CTexts::distanceMetres()},
                              {QStringLiteral("km"), CTexts::distanceKilometres()},
                              {QStringLiteral("min"), CTexts::durationMinutes()},
                              {QStringLiteral("h"), CTexts::durationHours()},
                              {QStringLiteral("decimalPoint"), QLocale().decimalPoint()}});
    return QStringLiteral("window.tarvikConfig = %1;")
        .arg(QString::fromUtf8(QJsonDocument(config).toJson(QJsonDocument::Compact)));
}

QString CMapConfig::helperPath()
{
    return pluginFile(QStringLiteral("tarvik-mapview"));
}

}  // namespace Dravo
