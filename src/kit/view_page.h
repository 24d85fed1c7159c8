// The page of bgrkit view: its style, its body and its own script, which
// draws the scene description (SCENE) with the map library.
#pragma once

namespace bgr::kit {

inline constexpr const char* kViewStyle = R"CSS(
html, body { margin: 0; height: 100%; font: 13px/1.35 sans-serif; }
body { display: flex; }
#side { width: 330px; height: 100vh; overflow: auto; padding: 8px 10px; box-sizing: border-box; border-right: 1px solid #bbb; background: #fff; }
#side h1 { font-size: 15px; margin: 0 0 4px; word-break: break-all; }
#side h2 { font-size: 13px; margin: 12px 0 4px; }
#side p { margin: 2px 0; color: #444; word-break: break-all; }
.panel { background: #f6f6f0; border: 1px solid #ddd; padding: 4px 6px; min-height: 2.6em; white-space: pre-wrap; }
#findings ul { list-style: none; margin: 0 0 6px; padding: 0; }
#findings li { padding: 2px 4px; cursor: pointer; border-bottom: 1px solid #eee; }
#findings li:hover, #findings li.on { background: #fff3c4; }
#findings h3 { font-size: 12px; margin: 8px 0 2px; }
.error { color: #b00000; } .warning { color: #a05a00; } .note { color: #1e4f9a; }
#warnings p { color: #a05a00; }
#map { flex: 1; height: 100vh; background: #f4f1ea; }
.sw { display: inline-block; width: 12px; height: 12px; margin: 0 4px -2px 0; border: 1px solid #000; box-sizing: border-box; }
.sw.line { height: 3px; border: none; margin-bottom: 3px; }
.sw.lights { border-radius: 50%; border: none; width: 8px; height: 8px; margin: 0 6px 0 2px; }
.sw.outline { background: none !important; border-width: 2px; }
.lbl { font: 11px sans-serif; color: #000; white-space: nowrap; text-shadow: 0 0 2px #fff, 0 0 2px #fff; }
.tileidx { font: 11px sans-serif; color: #4a6fa5; white-space: nowrap; }
.origin { width: 16px; height: 16px; background: linear-gradient(#c00000, #c00000) center/16px 2px no-repeat, linear-gradient(#c00000, #c00000) center/2px 16px no-repeat; }
.box { background: #fff; padding: 3px 6px; border: 1px solid #999; border-radius: 3px; font: 12px sans-serif; }
#scale div { border: 2px solid #000; border-top: none; height: 6px; margin-top: 2px; }
#north { text-align: center; font-weight: bold; line-height: 1.1; }
#fit { cursor: pointer; }
)CSS";

inline constexpr const char* kViewBody = R"HTML(<div id="side">
<h1 id="title"></h1>
<p id="files"></p>
<p id="credit"></p>
<div id="warnings"></div>
<h2>Under the pointer</h2>
<div id="hover" class="panel">Point at an object to see what it is.</div>
<h2>Selected</h2>
<div id="info" class="panel">Click an object or a finding to select it.</div>
<h2 id="findings-head">Findings of bgrkit check</h2>
<div id="findings"></div>
</div>
<div id="map"></div>
)HTML";

// The scene comes as JSON text, which the browser reads much faster than a script of the same size.
inline constexpr const char* kViewScript = R"JS(var SCENE = JSON.parse(document.getElementById('scene').textContent);
(function () {
'use strict';
var S = SCENE, $ = function (id) { return document.getElementById(id); };
function esc(t) { return String(t).replace(/[&<>"]/g, function (c) { return { '&': '&amp;', '<': '&lt;', '>': '&gt;', '"': '&quot;' }[c]; }); }
function ll(x, z) { return L.latLng(z, x); }
function ft(v) { return (Math.round(v * 100) / 100).toString(); }
function degrees(x, z) {
  var lat = S.origin.lat + z / S.origin.feetNorth, lon = S.origin.lon + (S.origin.feetEast ? x / S.origin.feetEast : 0);
  return lat.toFixed(6) + ', ' + lon.toFixed(6);
}

var map = L.map('map', { crs: L.CRS.Simple, minZoom: -12, maxZoom: 6, zoomSnap: 0.25, zoomDelta: 0.5,
  wheelPxPerZoomLevel: 120, preferCanvas: true });
var canvas = L.canvas({ padding: 0.3 });
fitAll();  // the map needs a view before it takes layers
map.attributionControl.setPrefix('');
if (S.attribution) { map.attributionControl.addAttribution(esc(S.attribution)); $('credit').textContent = S.attribution; }
$('title').textContent = S.files[0] || '';
$('files').textContent = S.files.join(', ') + '; origin ' + S.origin.lat.toFixed(6) + ', ' + S.origin.lon.toFixed(6);
S.warnings.forEach(function (w) { var p = document.createElement('p'); p.textContent = 'warning: ' + w; $('warnings').appendChild(p); });

// Many small shapes in feet, kept as the page's numbers and projected straight from them: no map
// coordinates are made for them, which would cost more time and memory than drawing them.
var Flat = {
  options: { noClip: true },
  initialize: function (shapes, dots, options) { L.setOptions(this, options); this._shapes = shapes; this._dots = dots; },
  count: function () { return this._dots ? this._shapes.reduce(function (n, s) { return n + (s.length - 2) / 2; }, 0) : this._shapes.length; },
  _project: function () {
    var m = this._map, k = Math.pow(2, m.getZoom()), o = m.getPixelOrigin(), rings = this._rings = [], dots = this._dots;
    var x0 = Infinity, y0 = Infinity, x1 = -Infinity, y1 = -Infinity;
    this._shapes.forEach(function (s) {
      var ring = [];
      for (var i = 2; i < s.length; i += 2) {
        var p = new L.Point(s[i] * k - o.x, -s[i + 1] * k - o.y);
        if (p.x < x0) x0 = p.x; if (p.x > x1) x1 = p.x; if (p.y < y0) y0 = p.y; if (p.y > y1) y1 = p.y;
        if (dots) rings.push([p, p]); else ring.push(p);
      }
      if (!dots) rings.push(ring);
    });
    if (x0 > x1) { this._pxBounds = null; return; }
    this._rawPxBounds = new L.Bounds([x0, y0], [x1, y1]);
    this._updateBounds();
  },
  _update: function () { if (this._map && this._pxBounds) { this._clipPoints(); this._updatePath(); } }
};
// Areas: each ring filled on its own, so that overlapping shapes of one layer add up rather than cancel.
var Areas = L.Polygon.extend(L.extend({}, Flat, {
  _updatePath: function () {
    var parts = this._parts;
    for (var i = 0; i < parts.length; i++) { this._parts = [parts[i]]; this._renderer._updatePoly(this, true); }
    this._parts = parts;
  }
}));
// Dots: a light at each point.
var Dots = L.Polyline.extend(Flat);

function ringsOf(shapes, from) {
  return shapes.map(function (s) { var r = []; for (var i = from; i < s.length; i += 2) r.push(ll(s[i], s[i + 1])); return r; });
}

S.layers.forEach(function (d) {  // the points come as tenths of a foot, each as the step from the one before
  var x = 0, z = 0;
  d.shapes.forEach(function (s) {
    for (var i = 2; i < s.length; i += 2) { x += s[i]; z += s[i + 1]; s[i] = x / 10; s[i + 1] = z / 10; }
  });
});
var layers = {}, overlays = {}, strokes = [], edgeWidth = [], edgeLayer = [], aprons = null;
var base = { renderer: canvas, interactive: false };
S.layers.forEach(function (d) {
  var g, o = L.extend({}, base, { color: d.colour, opacity: d.opacity, fillColor: d.colour, fillOpacity: d.opacity });
  if (d.paint === 'fill') {
    // the tiles' shapes by tile, so that a redraw passes over the tiles out of sight
    var byTile = {};
    d.shapes.forEach(function (s) { var k = d.id === 'apron' ? 0 : s[0]; (byTile[k] = byTile[k] || []).push(s); });
    L.extend(o, { stroke: false, fill: true });
    g = L.layerGroup(Object.keys(byTile).map(function (k) { return new Areas(byTile[k], false, o); }));
    if (d.id === 'apron') aprons = d;
  } else if (d.paint === 'stroke') {
    // one line for each width, its weight in pixels following the zoom
    var byWidth = {};
    d.shapes.forEach(function (s) {
      (byWidth[s[1]] = byWidth[s[1]] || []).push([ll(s[2], s[3]), ll(s[4], s[5])]);
      edgeWidth[s[0]] = s[1]; edgeLayer[s[0]] = d.id;
    });
    g = L.layerGroup(Object.keys(byWidth).map(function (w) {
      var line = L.polyline(byWidth[w], L.extend({}, o, { lineCap: 'round' }));
      line.feet = +w; strokes.push(line); return line;
    }));
  } else if (d.paint === 'line' && d.id === 'origin') {
    g = L.marker(ll(d.shapes[0][2], d.shapes[0][3]), { interactive: false, keyboard: false,
      icon: L.divIcon({ className: 'origin', iconSize: [16, 16] }) });
  } else if (d.paint === 'line') {
    d.shapes.forEach(function (s) { edgeWidth[s[0]] = edgeWidth[s[0]] || s[1]; if (d.id === 'paint') edgeLayer[s[0]] = d.id; });
    g = L.polyline(ringsOf(d.shapes, 2), L.extend(o, { weight: d.pixels }));
  } else if (d.paint === 'lights') {
    var dots = {};
    d.shapes.forEach(function (s) { var k = d.id === 'plylight' ? 0 : s[0]; (dots[k] = dots[k] || []).push(s); });
    L.extend(o, { weight: d.pixels, lineCap: 'round' });
    g = L.layerGroup(Object.keys(dots).map(function (k) { return new Dots(dots[k], true, o); }));
  } else {
    var items = ringsOf(d.shapes, 2).map(function (r) { return L.polygon(r, L.extend({}, o, { weight: d.pixels, fill: false })); });
    d.shapes.forEach(function (s) {
      items.push(L.marker(ll(s[2], s[9]), { interactive: false, keyboard: false,
        icon: L.divIcon({ className: 'tileidx', html: Math.floor(s[0] / 8) + ',' + s[0] % 8, iconSize: null, iconAnchor: [-3, -2] }) }));
    });
    g = L.layerGroup(items);
  }
  g.sceneLayer = d;
  layers[d.id] = g.addTo(map);
  var cls = d.paint === 'stroke' || d.paint === 'fill' ? '' : d.paint;
  overlays['<span class="sw ' + cls + '" style="background:' + d.colour + ';opacity:' + d.opacity +
    (cls === 'outline' ? ';border-color:' + d.colour : '') + '"></span>' + esc(d.label)] = g;
});

// Point numbers, where each collides with no other at the zoom shown.
var labels = L.layerGroup().addTo(map);
function showLabels() {
  labels.clearLayers();
  if (!map.hasLayer(labels)) return;
  var zoom = map.getZoom(), view = map.getBounds().pad(0.05), shown = 0;
  for (var i = 0; i < S.labels.length && shown < 4000; i += 2) {
    var p = S.labels[i], at;
    if (S.labels[i + 1] > zoom) continue;
    at = ll(S.nodes[2 * p], S.nodes[2 * p + 1]);
    if (!view.contains(at)) continue;
    labels.addLayer(L.marker(at, { interactive: false, keyboard: false,
      icon: L.divIcon({ className: 'lbl', html: String(p), iconSize: null, iconAnchor: [-2, 13] }) }));
    ++shown;
  }
}
overlays['point numbers'] = labels;

// The findings, grouped by severity, each a mark on the map where it has a place.
var colours = { error: '#d00000', warning: '#f08000', note: '#2060d0' };
var marks = L.layerGroup().addTo(map), listed = [];
['error', 'warning', 'note'].forEach(function (sev) {
  var these = S.findings.filter(function (f) { return f.severity === sev; });
  if (!these.length) return;
  var h = document.createElement('h3'), ul = document.createElement('ul');
  h.className = sev; h.textContent = sev + 's (' + these.length + ')';
  these.forEach(function (f) {
    var li = document.createElement('li');
    li.className = sev; li.textContent = f.text;
    li.addEventListener('click', function () { showFinding(f, li); });
    ul.appendChild(li); listed.push(li);
    if (f.x !== undefined) marks.addLayer(L.circleMarker(ll(f.x, f.z), L.extend({}, base,
      { radius: 6, color: colours[sev], weight: 2, fillOpacity: 0.2 })));
  });
  $('findings').appendChild(h); $('findings').appendChild(ul);
});
if (!S.findings.length) $('findings').textContent = S.edgeText.length ? 'none' : 'none: no network to check';
overlays['findings of check'] = marks;
L.control.layers(null, overlays, { collapsed: false }).addTo(map);

// What lies under a place: a point, an edge, an apron or a tile, of the layers shown.
function shown(id) { return layers[id] && map.hasLayer(layers[id]); }
function pick(p) {
  var x = p.lng, z = p.lat, tol = 6 / Math.pow(2, map.getZoom()), best = null, bd = Infinity, i;
  var net = shown('runway') || shown('taxiway') || shown('paint');
  if (net) {
    for (i = 0; i < S.nodes.length; i += 2) {
      var d = Math.hypot(S.nodes[i] - x, S.nodes[i + 1] - z);
      if (d <= tol && d < bd) { bd = d; best = { kind: 'point', n: i / 2 }; }
    }
    if (best) return best;
    for (i = 0; i < S.edges.length; i += 2) {
      var e = i / 2, a = S.edges[i], b = S.edges[i + 1];
      if (!shown(edgeLayer[e]) || 2 * a >= S.nodes.length || 2 * b >= S.nodes.length || a < 0 || b < 0) continue;
      var ax = S.nodes[2 * a], az = S.nodes[2 * a + 1], dx = S.nodes[2 * b] - ax, dz = S.nodes[2 * b + 1] - az;
      var t = dx || dz ? Math.max(0, Math.min(1, ((x - ax) * dx + (z - az) * dz) / (dx * dx + dz * dz))) : 0;
      var dd = Math.hypot(ax + t * dx - x, az + t * dz - z);
      if (dd <= Math.max((edgeWidth[e] || 0) / 2, tol) && dd < bd) { bd = dd; best = { kind: 'edge', n: e }; }
    }
    if (best) return best;
  }
  if (aprons && shown('apron')) {
    for (i = aprons.shapes.length - 1; i >= 0; i--) {
      var s = aprons.shapes[i], inside = false;
      for (var j = 2, k = s.length - 2; j < s.length; k = j, j += 2)
        if ((s[j + 1] > z) !== (s[k + 1] > z) && x < (s[k] - s[j]) * (z - s[j + 1]) / (s[k + 1] - s[j + 1]) + s[j]) inside = !inside;
      if (inside) return { kind: 'apron', n: s[0] };
    }
  }
  if (S.tiles && shown('grid')) {
    var tx = Math.floor((x - S.tiles.x) / S.tiles.side), tz = Math.floor((z - S.tiles.z) / S.tiles.side);
    if (tx >= 0 && tx < 8 && tz >= 0 && tz < 8) return { kind: 'tile', n: tx * 8 + tz };
  }
  return null;
}
function describe(sel) {
  if (!sel) return '';
  var n = sel.n;
  if (sel.kind === 'point') {
    var x = S.nodes[2 * n], z = S.nodes[2 * n + 1];
    return 'point ' + n + ': x ' + ft(x) + ' ft, z ' + ft(z) + ' ft (' + degrees(x, z) + ')';
  }
  if (sel.kind === 'edge') return S.edgeText[n];
  if (sel.kind === 'apron') {
    var name = S.apronNames[n - 1];
    return 'apron ' + n + (name ? ' "' + name + '"' : '') + ': ' + (aprons.shapes[n - 1].length - 2) / 2 + ' corners';
  }
  if (sel.kind === 'tile') {
    var h = S.tiles.holds.slice(4 * n, 4 * n + 4);
    return 'tile ' + Math.floor(n / 8) + ',' + n % 8 + ': ' + h[0] + ' pavement, ' + h[1] + ' edge-mark and ' + h[2] +
      ' centre-line polygons, ' + h[3] + ' light strings';
  }
  return '';
}
var highlight = L.layerGroup().addTo(map), hl = { renderer: canvas, interactive: false, color: '#ff0000', weight: 4, fill: false };
function mark(sel, at) {
  highlight.clearLayers();
  if (sel && sel.kind === 'point') highlight.addLayer(L.circleMarker(ll(S.nodes[2 * sel.n], S.nodes[2 * sel.n + 1]), L.extend({}, hl, { radius: 8 })));
  else if (sel && sel.kind === 'edge') {
    var a = S.edges[2 * sel.n], b = S.edges[2 * sel.n + 1];
    if (2 * a < S.nodes.length && 2 * b < S.nodes.length)
      highlight.addLayer(L.polyline([ll(S.nodes[2 * a], S.nodes[2 * a + 1]), ll(S.nodes[2 * b], S.nodes[2 * b + 1])], hl));
  } else if (sel && sel.kind === 'apron') highlight.addLayer(L.polygon(ringsOf([aprons.shapes[sel.n - 1]], 2)[0], hl));
  else if (sel && sel.kind === 'tile') {
    var x0 = S.tiles.x + Math.floor(sel.n / 8) * S.tiles.side, z0 = S.tiles.z + (sel.n % 8) * S.tiles.side;
    highlight.addLayer(L.rectangle([ll(x0, z0), ll(x0 + S.tiles.side, z0 + S.tiles.side)], hl));
  }
  if (at) highlight.addLayer(L.circleMarker(at, L.extend({}, hl, { radius: 12, weight: 2 })));
}
function showFinding(f, li) {
  listed.forEach(function (x) { x.classList.remove('on'); });
  li.classList.add('on');
  var sel = null, at = null;
  if (f.object === 'point' && f.number >= 0 && 2 * f.number < S.nodes.length) sel = { kind: 'point', n: f.number };
  else if (f.object === 'edge' && f.number >= 0 && f.number < S.edgeText.length) sel = { kind: 'edge', n: f.number };
  else if (f.object === 'polygon' && aprons && f.number >= 1 && f.number <= aprons.shapes.length) sel = { kind: 'apron', n: f.number };
  if (f.x !== undefined) { at = ll(f.x, f.z); map.setView(at, Math.max(map.getZoom(), -1), { animate: false }); }
  mark(sel, at);
  $('info').textContent = f.text + (sel ? '\n' + describe(sel) : '');
}

// the pointer: its place in feet and degrees, and what lies there
var where = L.control({ position: 'bottomleft' });
where.onAdd = function () { var d = L.DomUtil.create('div', 'box'); d.id = 'where'; d.textContent = 'x, z ft'; return d; };
where.addTo(map);
var pending = null;
map.on('mousemove', function (e) {
  $('where').textContent = 'x ' + ft(e.latlng.lng) + ' ft, z ' + ft(e.latlng.lat) + ' ft  (' + degrees(e.latlng.lng, e.latlng.lat) + ')';
  if (pending) return;
  pending = requestAnimationFrame(function () { pending = null; $('hover').textContent = describe(pick(e.latlng)) || ' '; });
});
map.on('click', function (e) {
  var sel = pick(e.latlng);
  listed.forEach(function (x) { x.classList.remove('on'); });
  mark(sel, null);
  $('info').textContent = describe(sel) || ' ';
});

// a scale bar in feet, of 1, 2 or 5 times a power of ten
var scale = L.control({ position: 'bottomleft' });
scale.onAdd = function () { var d = L.DomUtil.create('div', 'box'); d.id = 'scale'; return d; };
scale.addTo(map);
function showScale() {
  var k = Math.pow(2, map.getZoom()), most = 140 / k, p = Math.pow(10, Math.floor(Math.log10(most))), n = p;
  [5, 2, 1].some(function (m) { if (m * p <= most) { n = m * p; return true; } return false; });
  $('scale').innerHTML = '<span>' + n + ' ft</span><div style="width:' + Math.round(n * k) + 'px"></div>';
}
var fit = L.control({ position: 'topleft' });
fit.onAdd = function () {
  var d = L.DomUtil.create('div', 'box'); d.id = 'fit'; d.textContent = 'fit'; d.title = 'show everything';
  L.DomEvent.disableClickPropagation(d);
  d.addEventListener('click', fitAll); return d;
};
fit.addTo(map);
var north = L.control({ position: 'topleft' });
north.onAdd = function () { var d = L.DomUtil.create('div', 'box'); d.id = 'north'; d.innerHTML = '&#9650;<br>N'; d.title = 'north is up'; return d; };
north.addTo(map);

function weights() {
  var k = Math.pow(2, map.getZoom());
  strokes.forEach(function (line) { line.setStyle({ weight: Math.max(1, line.feet * k) }); });
}
function fitAll() {
  var b = S.bounds, pad = Math.max(b[2] - b[0], b[3] - b[1], 100) * 0.03;
  map.fitBounds([ll(b[0] - pad, b[1] - pad), ll(b[2] + pad, b[3] + pad)], { animate: false });
}
map.on('zoomend', function () { weights(); showScale(); });
map.on('moveend overlayadd', showLabels);
weights(); showScale(); showLabels();

window.bgrView = { map: map, layers: layers, labels: labels, findings: marks, listed: listed,
  count: function (id) {
    var g = layers[id]; if (!g) return 0;
    var n = 0;
    (g.getLayers ? g.getLayers() : [g]).forEach(function (l) { n += l.count ? l.count() : l.getLatLngs ? l.getLatLngs().length : 0; });
    return n;
  } };
})();
)JS";

}  // namespace bgr::kit
