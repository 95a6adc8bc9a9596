// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <QString>

namespace Dravo {

// Where the map pages get their tiles and routes, how long the client waits for them,
// and where the map view helper is.
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
    // The map view helper, tarvik-mapview: beside the plugins, in $TARVIK_PLUGIN_DIR when
    // that is set, otherwise where the build or the installation puts them, relative to
    // the executable.
    static QString helperPath();
};

}  // namespace Dravo
