// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "cmapconfig.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <QWebEngineProfile>
#include <QWebEngineScript>
#include <QWebEngineScriptCollection>

#include "ctexts.h"

namespace Dravo {

namespace {
int s_iTilesTimeoutMs = 10000;
int s_iRouteTimeoutMs = 15000;

QString envOr(const char* pszName, const char* pszDefault)
{
    const QString value = qEnvironmentVariable(pszName).trimmed();
    return value.isEmpty() ? QString::fromUtf8(pszDefault) : value;
}
}  // namespace

QString CMapConfig::tileUrl()
{
    return envOr("TARVIK_TILE_URL", TARVIK_TILE_URL_DEFAULT);
}

QString CMapConfig::tileAttribution()
{
    return envOr("TARVIK_TILE_ATTRIBUTION", TARVIK_TILE_ATTRIBUTION_DEFAULT);
}

QString CMapConfig::routeUrl()
{
    QString url = envOr("TARVIK_ROUTE_URL", TARVIK_ROUTE_URL_DEFAULT);
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
    return QStringLiteral("window.tarvikConfig = %1;")
        .arg(QString::fromUtf8(QJsonDocument(config).toJson(QJsonDocument::Compact)));
}

QWebEngineProfile* CMapConfig::profile()
{
    static QWebEngineProfile* s_pProfile = nullptr;
    if (!s_pProfile) {
        // No storage name: nothing is written to disk; tiles stay in the memory cache
        // for the next map.
        s_pProfile = new QWebEngineProfile(qApp);
        s_pProfile->setHttpUserAgent(userAgent());
        s_pProfile->setHttpCacheType(QWebEngineProfile::MemoryHttpCache);
    }
    return s_pProfile;
}

}  // namespace Dravo
