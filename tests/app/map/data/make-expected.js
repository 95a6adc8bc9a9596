// Writes route_expected.txt: the sentences osrm-text-instructions makes of the steps in
// route.json, one a line, as the route page is expected to show them.
// Run from this directory: node make-expected.js
var path = require('path');
var fs = require('fs');
var oti = require(path.join(__dirname, '../../../../third_party/osrm-text-instructions'))('v5');
var route = JSON.parse(fs.readFileSync(path.join(__dirname, 'route.json'), 'utf8')).routes[0];
var lines = [];
route.legs.forEach(function (leg, legIndex) {
    leg.steps.forEach(function (step) {
        lines.push(oti.compile('en', step, { legCount: route.legs.length, legIndex: legIndex }));
    });
});
fs.writeFileSync(path.join(__dirname, 'route_expected.txt'), lines.join('\n') + '\n');
