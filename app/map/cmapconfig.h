// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

class QWebEngineProfile;

namespace Dravo {

// Where the map pages get their tiles and routes, how long the client waits for them,
// and the browser profile the map views share.
class CMapConfig
{
public:
    CMapConfig() = delete;

    // Tile URL template with {z}, {x}, {y} and optional {s}: $TARVIK_TILE_URL, else the
    // build's default. A value that is not an http(s) URL or lacks {z}, {x} or {y} is
    // logged and the default used.
    static QString tileUrl();
    // The attribution shown on the map, as HTML: $TARVIK_TILE_ATTRIBUTION, else the
    // build's default.
    static QString tileAttribution();
    // Base URL of the OSRM-compatible route service, without a trailing slash:
    // $TARVIK_ROUTE_URL, else the build's default. A value that is not an http(s) URL or
    // carries a query or fragment is logged and the default used.
    static QString routeUrl();
    // "tarvik/<version> (<contact>)", sent with every tile and route request.
    static QString userAgent();

    // How long the map form waits for the first tiles before it shows its controls anyway.
    static int tilesTimeoutMs();
    static void setTilesTimeoutMs(int iMs);
    // How long the route page waits for the route service before it reports a failure;
    // the map form gives the page this long plus a margin.
    static int routeTimeoutMs();
    static void setRouteTimeoutMs(int iMs);

    // The script that hands the settings above to the pages, run before their own scripts.
    static QString pageConfigScript();
    // An off-the-record profile with the client's User-Agent, shared by all map pages;
    // they report themselves below, and it is deleted once the last of them is (the
    // pointer is then stale: ask again for the next page).
    static QWebEngineProfile* profile();
    static void pageCreated();
    static void pageDestroyed();
};

}  // namespace Dravo
