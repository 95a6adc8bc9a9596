// SPDX-FileCopyrightText: 2026 The tarvik authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Shared by the position and the route page: the bridge to the client, the tile layer
// and the directions object that asks the route service.
'use strict';

var tarvikConfig = window.tarvikConfig || {};

// The client's jsEventsListener. Calls made before the channel is up are kept and
// delivered once it is.
var jsEventsListener = (function () {
    var remote = null;
    var pending = [];
    function call(name, args) {
        if (remote) {
            remote[name].apply(remote, args);
        } else {
            pending.push([name, args]);
        }
    }
    if (typeof QWebChannel !== 'undefined' && window.qt && qt.webChannelTransport) {
        new QWebChannel(qt.webChannelTransport, function (channel) {
            remote = channel.objects.jsEventsListener;
            pending.forEach(function (c) { call(c[0], c[1]); });
            pending = [];
        });
    }
    return {
        onRouteError: function (text) { call('onRouteError', [String(text)]); },
        onRouteLoaded: function () { call('onRouteLoaded', []); },
        onMapTilesLoaded: function () { call('onMapTilesLoaded', []); }
    };
})();

function isBrowserCompatible() {
    return typeof L !== 'undefined' && typeof fetch !== 'undefined';
}

// The map moves only through the client's buttons: every handler that would move it on
// a tap, drag, pinch, wheel turn or key press is off.
var TARVIK_MAP_NO_USER_INPUT = {
    dragging: false,
    touchZoom: false,
    scrollWheelZoom: false,
    doubleClickZoom: false,
    boxZoom: false,
    keyboard: false,
    tap: false
};

function createTarvikMap(elementId) {
    var map = L.map(elementId, Object.assign({}, TARVIK_MAP_NO_USER_INPUT, {
        zoomControl: false,
        fadeAnimation: false,
        zoomAnimation: false,
        markerZoomAnimation: false,
        inertia: false
    }));
    L.tileLayer(tarvikConfig.tileUrl, {
        attribution: tarvikConfig.tileAttribution,
        maxZoom: 19,
        subdomains: 'abc'
    }).on('load', function () {
        sendEventToListener('tilesloaded');
    }).addTo(map);
    return map;
}

// Pans by half the map's size; (dx, dy) as the page functions name them: (0, 1) is north.
function panTarvikMap(map, direction) {
    var steps = { north: [0, 1], east: [-1, 0], south: [0, -1], west: [1, 0] };
    var step = steps[direction];
    if (!step) return;
    var size = map.getSize();
    map.panBy([-step[0] * size.x / 2, -step[1] * size.y / 2], { animate: false });
}

function zoomTarvikMap(map, direction) {
    if (direction === 'in') map.zoomIn(1, { animate: false });
    else if (direction === 'out') map.zoomOut(1, { animate: false });
}

var ROUTE_COLOUR = '#ff2d6f';

// The client's unit texts ("%1 km") and decimal point; English without them.
function unitText(name, first, second) {
    var units = tarvikConfig.units || {};
    var fallback = { m: '%1 m', km: '%1 km', min: '%1 min', h: '%1 h %2 min' };
    return (units[name] || fallback[name]).replace('%1', first).replace('%2', second);
}

// Metres to the nearest ten below 1 km, then kilometres to one decimal below 10 km and
// whole ones above; the rounding decides the unit, so 996 m reads 1.0 km, not 1000 m.
function formatDistance(metres) {
    var tens = Math.round(metres / 10) * 10;
    if (tens < 1000) return unitText('m', tens);
    var text = (metres / 1000).toFixed(1);
    if (Number(text) >= 10) text = (metres / 1000).toFixed(0);
    return unitText('km', text.replace('.', (tarvikConfig.units || {}).decimalPoint || '.'));
}

function formatDuration(seconds) {
    var minutes = Math.max(1, Math.round(seconds / 60));
    if (minutes < 60) return unitText('min', minutes);
    return unitText('h', Math.floor(minutes / 60), minutes % 60);
}

var routeAnswers = {};

// One route query, shown on a map (options.map) or as text (options.panel), or both.
// load() may be called once; the handlers get 'error' or 'load'.
function RouteDirections(options) {
    this.map = options.map || null;
    this.panel = options.panel || null;
    this.handlers = {};
}

RouteDirections.prototype.on = function (event, handler) {
    this.handlers[event] = handler;
    return this;
};

RouteDirections.prototype.fail = function (reason) {
    if (window.console) console.log('route failed: ' + reason);
    if (this.handlers.error) this.handlers.error(reason);
};

// query: "from: <lat>, <lon> to: <lat>, <lon>"
RouteDirections.prototype.load = function (query) {
    var self = this;
    var m = /^from: (\S+), (\S+) to: (\S+), (\S+)$/.exec(query);
    if (!m || !isFinite(m[1]) || !isFinite(m[2]) || !isFinite(m[3]) || !isFinite(m[4])) {
        this.fail('bad query ' + query);
        return;
    }
    var url = tarvikConfig.routeUrl + '/route/v1/driving/' + Number(m[2]) + ',' + Number(m[1]) +
        ';' + Number(m[4]) + ',' + Number(m[3]) + '?overview=full&geometries=geojson&steps=true';
    var controller = new AbortController();
    var timer = setTimeout(function () { controller.abort(); }, tarvikConfig.routeTimeoutMs || 15000);
    // The route map and the directions ask the same question: one answer serves both.
    if (!routeAnswers[url]) {
        routeAnswers[url] = fetch(url, { signal: controller.signal }).then(function (response) {
            if (!response.ok) throw new Error('HTTP status ' + response.status);
            return response.json();
        });
        routeAnswers[url].catch(function () { delete routeAnswers[url]; });
    }
    routeAnswers[url].then(function (data) {
        clearTimeout(timer);
        if (!data || data.code !== 'Ok' || !data.routes || !data.routes.length ||
            !data.routes[0].legs) {
            throw new Error('no route: ' + (data && data.code));
        }
        self.show(data.routes[0]);
        if (self.handlers.load) self.handlers.load();
    }).catch(function (error) {
        clearTimeout(timer);
        self.fail(controller.signal.aborted ? 'time-out' : String(error));
    });
};

RouteDirections.prototype.show = function (route) {
    if (this.map && route.geometry) {
        var line = L.geoJSON(route.geometry, {
            style: { color: ROUTE_COLOUR, weight: 6, opacity: 1 }
        }).addTo(this.map);
        var coords = route.geometry.coordinates;
        if (coords && coords.length) {
            var last = coords[coords.length - 1];
            L.circleMarker([coords[0][1], coords[0][0]], {
                radius: 7, color: '#ffffff', weight: 3, fillColor: ROUTE_COLOUR, fillOpacity: 1
            }).addTo(this.map);
            L.marker([last[1], last[0]]).addTo(this.map);
        }
        this.map.fitBounds(line.getBounds(), { padding: [30, 30], animate: false });
    }
    if (this.panel) this.write(route);
};

// Writes the directions as text (never markup: the service's names are data).
RouteDirections.prototype.write = function (route) {
    var doc = this.panel.ownerDocument;
    var instructions = osrmTextInstructions('v5');
    // The client's language (the page's), else its base language, else English.
    var wanted = navigator.language || 'en';
    var language = [wanted, wanted.split('-')[0], 'en'].filter(function (code) {
        try {
            instructions.compile(code, { maneuver: { type: 'depart', modifier: 'left' },
                                         name: '', mode: 'driving' });
            return true;
        } catch (e) {
            return false;
        }
    })[0] || 'en';
    this.panel.textContent = '';
    var summary = doc.createElement('p');
    summary.className = 'summary';
    var template = (window.tarvikConfig && window.tarvikConfig.routeSummary) ||
        'Route: %1, about %2';
    summary.textContent = template.replace('%1', formatDistance(route.distance || 0))
        .replace('%2', formatDuration(route.duration || 0));
    this.panel.appendChild(summary);
    var list = doc.createElement('ol');
    var legs = route.legs;
    legs.forEach(function (leg, legIndex) {
        (leg.steps || []).forEach(function (step) {
            var item = doc.createElement('li');
            var text = doc.createElement('span');
            text.className = 'instruction';
            try {
                text.textContent = instructions.compile(language, step,
                    { legCount: legs.length, legIndex: legIndex });
            } catch (e) {
                text.textContent = String(step.name || '');
            }
            item.appendChild(text);
            if (step.distance > 0) {
                var distance = doc.createElement('span');
                distance.className = 'distance';
                distance.textContent = formatDistance(step.distance);
                item.appendChild(distance);
            }
            list.appendChild(item);
        });
    });
    this.panel.appendChild(list);
};
