// The page of a plot: one moment and one stretch of time, shown by all its parts.
'use strict';
(() => {
  const data = JSON.parse(document.getElementById('data').textContent);
  const SPEEDS = ['#2c3e9e', '#2f6fc4', '#1f95b0', '#229a74', '#63a52a', '#c29a12', '#de7518', '#d0431c', '#971a2c'];
  const FIXES = ['#808080', '#d98212', '#2f6fc4', '#229a74', '#b5306b'];
  const FIX_NAMES = ['no fix', '2D', '3D', 'differential', 'dead-reckoned'];
  const SIGNALS = ['#971a2c', '#d0431c', '#de7518', '#c29a12', '#63a52a', '#229a74'];  // up to 15, 22, 29, 36, 43 dBHz, more
  const SIGNAL_STEPS = [15, 22, 29, 36, 43];
  const RECKONED = 4, BREAK_MS = 10000;

  // ---- what came with the page ----

  const running = row => { let last = 0; return row.map(n => n === null ? NaN : (last += n)); };
  const element = (tag, properties = {}, ...children) => {
    const made = Object.assign(document.createElement(tag), properties);
    made.append(...children);
    return made;
  };
  const colour = name => getComputedStyle(document.documentElement).getPropertyValue(name).trim();
  const isOne = (text, i) => text[i] === '1';

  const tracks = data.tracks.map((track, index) => {
    const points = track.points;
    points.t = running(points.t);
    points.lat = running(points.lat).map(n => n / 1e7);
    points.lon = running(points.lon).map(n => n / 1e7);
    points.speed = running(points.speed).map(n => n / 10);
    points.fix = Array.from(points.fix, Number);
    // In the order of time: a recorder's clock may go back, and recordings may follow in another order.
    points.order = points.t.map((t, i) => i).filter(i => points.t[i] >= 0).sort((a, b) => points.t[a] - points.t[b] || a - b);
    if (track.bins) track.bins.t = running(track.bins.t);
    if (track.scatter) for (const row of ['t', 'e', 'n']) track.scatter[row] = running(track.scatter[row]);
    return {...track, points, index, isShown: true};
  });
  const sky = data.sky && {...data.sky, t: running(data.sky.t), end: running(data.sky.end)};

  const colourOf = track => colour('--track' + track.index % 4);
  let from = Infinity, to = -Infinity;
  for (const {points} of tracks) {
    for (const i of points.order) { from = Math.min(from, points.t[i]); to = Math.max(to, points.t[i]); }
  }
  if (!(to > from)) { from = Number.isFinite(from) ? from : 0; to = from + 1000; }

  const two = n => String(n).padStart(2, '0');
  const durationText = ms => {
    const seconds = Math.round(ms / 1000);
    return Math.floor(seconds / 3600) + ':' + two(Math.floor(seconds / 60) % 60) + ':' + two(seconds % 60);
  };
  const isManyDays = Math.floor(from / 864e5) !== Math.floor(to / 864e5);
  const timeText = t => data.utc ? new Date(t).toISOString().slice(isManyDays ? 0 : 11, 19).replace('T', ' ') : durationText(t);
  const fixed = (n, digits, unit) => Number.isFinite(n) ? n.toFixed(digits) + (unit || '') : '–';

  /// The least index of a sorted row whose value is at least this.
  function bound(count, valueOf, value) {
    let low = 0, high = count;
    while (low < high) {
      const middle = (low + high) >> 1;
      if (valueOf(middle) < value) low = middle + 1; else high = middle;
    }
    return low;
  }

  /// Where a track was at a moment; null where it has no position.
  function placeAt(track, t) {
    const {order, t: times, lat, lon, speed, fix, breaks} = track.points;
    const at = bound(order.length, i => times[order[i]], t);
    if (at === order.length) return at > 0 && t - times[order[at - 1]] <= BREAK_MS ? pick(order[at - 1]) : null;
    const next = order[at];
    if (times[next] === t || at === 0) return times[next] - t <= BREAK_MS ? pick(next) : null;
    const last = order[at - 1];
    if (isOne(breaks, next) || last !== next - 1) {
      const nearest = t - times[last] < times[next] - t ? last : next;
      return Math.abs(times[nearest] - t) <= BREAK_MS ? pick(nearest) : null;
    }
    const part = (t - times[last]) / (times[next] - times[last]);
    const between = (row) => row[last] + (row[next] - row[last]) * part;
    return {lat: between(lat), lon: between(lon), speed: between(speed), fix: fix[next]};
    function pick(i) { return {lat: lat[i], lon: lon[i], speed: speed[i], fix: fix[i]}; }
  }

  // ---- the page ----

  const parts = [];  // each {moment(t), view(), theme()} of them, as far as it has them
  let now = from, view = [from, to], isPlaying = false;
  let byFix = data.colour === 'fix';

  const tell = what => { for (const part of parts) if (part[what]) part[what](); };
  let isMomentDue = false, isViewDue = false;
  const later = draw => requestAnimationFrame(draw);
  function setMoment(t) {
    now = Math.min(Math.max(t, from), to);
    if (!isMomentDue) later(() => { isMomentDue = false; tell('moment'); });
    isMomentDue = true;
  }
  function setView(first, last) {
    const least = Math.min(1000, to - from), width = Math.min(Math.max(last - first, least), to - from);
    first = Math.min(Math.max(first, from), to - width);
    view = [first, first + width];
    if (!isViewDue) later(() => { isViewDue = false; tell('view'); tell('moment'); });
    isViewDue = true;
  }
  const zoomView = (factor, about) => setView(about - (about - view[0]) * factor, about + (view[1] - about) * factor);

  const left = element('div', {className: 'column'}), right = element('div', {className: 'column'});
  const span = (data.utc ? new Date(from).toISOString().slice(0, 19).replace('T', ' ') + ' to ' +
    new Date(to).toISOString().slice(0, 19).replace('T', ' ') + ' UTC, ' : '') + durationText(to - from);
  document.body.append(
    element('header', {}, element('h1', {textContent: data.title}), element('div', {className: 'sub', textContent: span})),
    element('main', {}, left, right));

  function panel(column, title, id) {
    const value = element('span', {className: 'value'});
    const box = element('section', {id}, element('div', {className: 'head'}, element('h2', {textContent: title}), value));
    column.append(box);
    return {box, value};
  }

  // ---- map ----

  function topSpeed() {
    let top = 0;
    for (const {stats} of tracks) top = Math.max(top, stats.max_speed_kmh || 0);
    const width = [1, 2, 5, 10, 15, 20, 30, 50].find(n => n * SPEEDS.length >= top) || Math.ceil(top / 900) * 100;
    return width * SPEEDS.length;  // so that the legend tells of round numbers
  }
  const maxSpeed = topSpeed();
  const classAt = (points, i) => byFix ? points.fix[i] :
    Number.isFinite(points.speed[i]) ? Math.min(Math.floor(points.speed[i] / maxSpeed * SPEEDS.length), SPEEDS.length - 1) : -1;
  const colourOfClass = n => n < 0 ? '#808080' : (byFix ? FIXES : SPEEDS)[n];

  function addMap() {
    const {box, value} = panel(left, tracks.length > 1 ? 'Tracks' : 'Track', 'tracks');
    const place = element('div', {id: 'map'});
    const legend = element('div', {className: 'legend'});
    box.append(place, legend);
    const renderer = L.canvas({padding: 0.3});
    const map = L.map(place, {renderer, zoomSnap: 0, zoomDelta: 1, wheelPxPerZoomLevel: 90, maxZoom: 24, minZoom: 1, attributionControl: false,
                              inertia: true, worldCopyJump: false});
    L.control.scale({imperial: false, maxWidth: 140}).addTo(map);
    const north = L.control({position: 'topright'});
    north.onAdd = () => element('div', {className: 'north', innerHTML: '<svg width="18" height="26" viewBox="0 0 18 26"><path d="M9 0 L16 24 L9 19 L2 24 Z" fill="currentColor"/></svg><br>N'});
    north.addTo(map);
    const everything = L.latLngBounds([]);
    for (const {points} of tracks) points.lat.forEach((lat, i) => everything.extend([lat, points.lon[i]]));
    const fit = () => map.fitBounds(everything.getSize ? everything : everything.pad(0.02), {padding: [24, 24], maxZoom: 20, animate: false});
    fit();
    const reset = L.control({position: 'topleft'});
    reset.onAdd = () => {
      const button = element('a', {href: '#', title: 'The whole track', role: 'button', textContent: '⤢'});
      L.DomEvent.disableClickPropagation(button);
      button.addEventListener('click', event => { event.preventDefault(); fit(); });
      return element('div', {className: 'leaflet-bar'}, button);
    };
    reset.addTo(map);

    // One line for each colour, of as many pieces as it takes; dead reckoning beneath what was measured.
    const layers = tracks.map(track => {
      const layer = L.layerGroup();
      layer.draw = () => {
        layer.clearLayers();
        const {points} = track, pieces = new Map(), whole = [];
        for (let i = 0; i < points.lat.length; ++i) {
          const here = [points.lat[i], points.lon[i]];
          const isOn = i > 0 && !isOne(points.breaks, i);
          if (isOn) whole[whole.length - 1].push(here); else whole.push([here]);
          if (!isOn) continue;
          const key = classAt(points, i) + (points.fix[i] === RECKONED ? 'r' : '');
          const list = pieces.get(key) || pieces.set(key, []).get(key);
          const last = list[list.length - 1];
          if (last && last.end === i - 1) { last.push(here); last.end = i; } else {
            const piece = [[points.lat[i - 1], points.lon[i - 1]], here];
            piece.end = i;
            list.push(piece);
          }
        }
        if (tracks.length > 1) layer.addLayer(L.polyline(whole, {color: colourOf(track), weight: 10, opacity: 0.28, interactive: false, smoothFactor: 1}));
        for (const [key, list] of pieces) {
          layer.addLayer(L.polyline(list, {color: colourOfClass(parseInt(key, 10)), weight: 3.5, interactive: false, smoothFactor: 0.8,
            ...(key.endsWith('r') && {dashArray: '7 6', lineCap: 'butt'})}));
        }
        for (const piece of whole) if (piece.length === 1) layer.addLayer(L.circleMarker(piece[0], {radius: 3, color: colourOf(track), interactive: false}));
      };
      return layer;
    });
    const markers = tracks.map(() => L.circleMarker([0, 0], {radius: 7, weight: 3, fillOpacity: 1, interactive: false}));
    const drawLegend = () => {
      const occurring = new Set();
      let hasReckoned = false;
      for (const {points, isShown} of tracks) {
        for (let i = 0; isShown && i < points.lat.length; ++i) {
          hasReckoned = hasReckoned || points.fix[i] === RECKONED;
          occurring.add(classAt(points, i));
        }
      }
      const items = tracks.length < 2 ? [] : tracks.map((track, i) => {
        const box = element('input', {type: 'checkbox', checked: track.isShown});
        box.addEventListener('change', () => {
          track.isShown = box.checked;
          if (track.isShown) layers[i].addTo(map); else layers[i].remove();
          drawLegend();
          tell('moment');
        });
        const swatch = element('i', {className: 'swatch'});
        swatch.style.background = colourOf(track);
        return element('label', {}, box, swatch, track.name);
      });
      const choice = element('select', {title: 'What colours the track'}, new Option('by speed', 'speed', !byFix, !byFix), new Option('by fix', 'fix', byFix, byFix));
      choice.id = 'colour';
      choice.addEventListener('change', () => { byFix = choice.value === 'fix'; redraw(); });
      items.push(element('label', {}, choice));
      for (const n of [...occurring].sort((a, b) => a - b)) {
        const swatch = element('i', {className: 'swatch'});
        swatch.style.background = colourOfClass(n);
        const width = maxSpeed / SPEEDS.length;
        const name = n < 0 ? 'no speed' : byFix ? FIX_NAMES[n] : Math.round(n * width) + '–' + Math.round((n + 1) * width) + ' km/h';
        items.push(element('span', {}, swatch, name));
      }
      if (hasReckoned) items.push(element('span', {}, element('i', {className: 'swatch dash'}), 'dead-reckoned'));
      legend.replaceChildren(...items);
    };
    const redraw = () => {
      layers.forEach((layer, i) => { layer.draw(); if (tracks[i].isShown) layer.addTo(map); });
      markers.forEach(marker => marker.remove().addTo(map));
      drawLegend();
      moment();
    };
    const moment = () => {
      const texts = [];
      [...tracks].reverse().forEach(track => {  // the first above the others
        const i = track.index, here = track.isShown && placeAt(track, now);
        if (!here) return markers[i].remove();
        markers[i].setStyle({color: colourOf(track), fillColor: colour('--mark')}).setLatLng([here.lat, here.lon]).addTo(map).bringToFront();
        texts.unshift(here.lat.toFixed(6) + ', ' + here.lon.toFixed(6) + (tracks.length > 1 ? ' ' + track.name : ''));
      });
      value.textContent = texts.slice(0, 2).join(' · ');
    };
    for (const layer of [...layers].reverse()) layer.draw();
    [...layers].reverse().forEach(layer => layer.addTo(map));
    drawLegend();

    // The nearest position to the pointer, if it is near.
    const find = event => {
      const about = map.mouseEventToLatLng(event), scale = Math.cos(about.lat * Math.PI / 180);
      const one = map.containerPointToLatLng(map.mouseEventToContainerPoint(event).add([30, 0]));
      let best = ((one.lng - about.lng) * scale) ** 2, found = null;
      for (const {points, isShown} of tracks) {
        for (let i = 0; isShown && i < points.lat.length; ++i) {
          const far = (points.lat[i] - about.lat) ** 2 + ((points.lon[i] - about.lng) * scale) ** 2;
          if (far < best && points.t[i] >= 0) { best = far; found = points.t[i]; }
        }
      }
      if (found !== null) setMoment(found);
    };
    let due = null;
    const onPointer = event => {
      if (due === null) later(() => { find(due); due = null; });
      due = event;
    };
    place.addEventListener('pointermove', event => { if (event.buttons === 0) onPointer(event); });
    place.addEventListener('click', onPointer);
    new ResizeObserver(() => map.invalidateSize()).observe(place);
    parts.push({moment, theme: redraw});
    window.nfwMap = map;
  }

  // ---- curves over time ----

  const CURVES = [['speed', 'Speed', 'km/h', 1], ['altitude', 'Altitude', 'm', 1], ['satellites', 'Satellites used', '', 0], ['hdop', 'HDOP', '', 2]];

  /// Pointer and fingers on an axis of time: moving shows the moment, dragging pans, the wheel and two fingers zoom.
  function steer(place, timeAt) {
    const held = new Map();
    let start = null;
    place.addEventListener('pointerdown', event => {
      if (event.button !== 0) return;
      held.set(event.pointerId, event.clientX);
      start = {view: [...view], xs: [...held.values()]};
      place.setPointerCapture(event.pointerId);
    });
    place.addEventListener('pointermove', event => {
      if (!held.has(event.pointerId)) { if (event.buttons === 0) setMoment(timeAt(event.clientX)); return; }
      held.set(event.pointerId, event.clientX);
      const [a, b] = [...held.values()], perPixel = (start.view[1] - start.view[0]) / Math.max(timeAt.width(), 1);
      if (held.size === 1) {
        const shift = (start.xs[0] - a) * perPixel;
        setView(start.view[0] + shift, start.view[1] + shift);
      } else {
        const factor = Math.abs(start.xs[0] - start.xs[1]) / Math.max(Math.abs(a - b), 10);
        const about = (start.view[0] + start.view[1]) / 2;
        setView(about - (about - start.view[0]) * factor, about + (start.view[1] - about) * factor);
      }
    });
    const release = event => {
      if (held.delete(event.pointerId)) start = {view: [...view], xs: [...held.values()]};
    };
    place.addEventListener('pointerup', event => { if (held.has(event.pointerId) && Math.abs(start.xs[0] - event.clientX) < 4) setMoment(timeAt(event.clientX)); release(event); });
    place.addEventListener('pointercancel', release);
    place.addEventListener('wheel', event => {
      event.preventDefault();
      zoomView(Math.exp(Math.sign(event.deltaY) * Math.min(Math.abs(event.deltaY), 120) / 400), timeAt(event.clientX));
    }, {passive: false});
    place.addEventListener('dblclick', () => setView(from, to));
  }

  /// As short as tells the labels apart.
  function axisText(t) {
    if (!data.utc) return durationText(t);
    const iso = new Date(+t).toISOString(), width = view[1] - view[0];
    if (width < 4 * 60e3) return iso.slice(11, 19);
    return width < 2 * 864e5 ? iso.slice(11, 16) : iso.slice(5, 10) + ' ' + iso.slice(11, 16);
  }

  /// One row for each time that a track tells of; between its stretches one without a value.
  function rowsOf(key, shown) {
    const isBand = shown.some(track => track.bins[key].high);
    const rows = new Map();
    const rowAt = t => rows.get(t) || rows.set(t, [t, ...shown.map(() => null)]).get(t);
    shown.forEach((track, column) => {
      const {bins} = track, series = bins[key], scale = series.scale;
      const mean = running(series.mean), low = series.low && running(series.low), high = series.high && running(series.high);
      let last = -Infinity;
      bins.t.forEach((t, i) => {
        if (!Number.isFinite(mean[i])) return;
        const isOff = isOne(bins.breaks, i) || i > 0 && !Number.isFinite(mean[i - 1]) && t - last > BREAK_MS;
        if (isOff && last > -Infinity) rowAt(t - 1)[column + 1] = isBand ? [NaN, NaN, NaN] : NaN;
        last = t;
        const value = mean[i] / scale;
        rowAt(t)[column + 1] = !isBand ? value : [low ? low[i] / scale : value, value, high ? high[i] / scale : value];
      });
    });
    return {isBand, rows: [...rows.values()].sort((a, b) => a[0] - b[0])};
  }

  function addCurve([key, title, unit, digits], isFirst) {
    const shown = tracks.filter(track => track.bins && track.bins[key]).reverse();  // the first above the others
    if (shown.length === 0) return;
    const {box, value} = panel(right, title + (unit ? ', ' + unit : ''), 'curve-' + key);
    const graph = element('div', {className: 'graph' + (isFirst ? ' ranged' : '')}), cursor = element('div', {className: 'cursor'});
    box.append(element('div', {className: 'plot'}, graph, cursor));
    const {isBand, rows} = rowsOf(key, shown);
    if (rows.length === 0) return box.remove();
    const names = shown.map((track, i) => i + ' ' + track.name);
    const themed = () => ({colors: shown.map(colourOf), axisLineColor: colour('--line'), gridLineColor: colour('--grid'), rangeSelectorPlotStrokeColor: colour('--faint'), rangeSelectorPlotFillColor: colour('--grid'),
                           rangeSelectorForegroundStrokeColor: colour('--faint'), rangeSelectorBackgroundStrokeColor: colour('--line'), rangeSelectorPlotFillGradientColor: ''});
    const chart = new Dygraph(graph, rows, {
      labels: ['t', ...names], customBars: isBand, fillAlpha: 0.22, strokeWidth: 1.4, connectSeparatedPoints: true, legend: 'never',
      labelsUTC: true, includeZero: key !== 'altitude', dateWindow: [...view], interactionModel: {}, showRangeSelector: isFirst,
      rangeSelectorHeight: 26, highlightCircleSize: 0, axisLabelWidth: 46, yRangePad: 4, drawGapEdgePoints: true, axisLabelFontSize: 11,
      axes: {x: {drawAxis: true, axisLabelWidth: 64, valueFormatter: timeText,
                 ticker: Dygraph.dateTicker, axisLabelFormatter: axisText},
             y: {axisLabelWidth: 40, pixelsPerLabel: 24}},
      underlayCallback(canvas, area, g) {
        canvas.fillStyle = colour('--shade');
        for (const {bins, isShown} of shown) {
          for (let i = 0; isShown && i < bins.t.length; ++i) {
            if (!isOne(bins.reckoned, i)) continue;
            const first = i;
            while (i + 1 < bins.t.length && isOne(bins.reckoned, i + 1) && !isOne(bins.breaks, i + 1)) ++i;
            const x = g.toDomXCoord(bins.t[first]), end = g.toDomXCoord(bins.t[i]);
            canvas.fillRect(x, area.y, Math.max(end - x, 1), area.h);
          }
        }
      },
      drawCallback(g, isInitial) {  // the range selector changes the stretch by itself
        const [a, b] = g.xAxisRange();
        if (!isInitial && !isFollowing && (Math.abs(a - view[0]) > 1 || Math.abs(b - view[1]) > 1)) setView(a, b);
      },
      ...themed(),
    });
    let isFollowing = false;
    const area = () => chart.getArea();
    const timeAt = x => chart.toDataXCoord(x - graph.getBoundingClientRect().left);
    timeAt.width = () => area().w;
    steer(graph.querySelector('canvas:nth-of-type(2)') || graph, timeAt);
    const sorted = shown.map(track => track.bins.t.map((t, i) => i).sort((a, b) => track.bins.t[a] - track.bins.t[b]));
    const means = shown.map(track => running(track.bins[key].mean).map(n => n / track.bins[key].scale));
    const valueAt = n => {
      const {t} = shown[n].bins, order = sorted[n], at = bound(order.length, i => t[order[i]], now);
      let best = NaN, far = Math.max(BREAK_MS, (to - from) / 2000);
      for (const i of [at - 1, at]) {
        if (i < 0 || i >= order.length || Math.abs(t[order[i]] - now) > far) continue;
        far = Math.abs(t[order[i]] - now);
        best = means[n][order[i]];
      }
      return best;
    };
    const moment = () => {
      const {x, y, w, h} = area(), at = chart.toDomXCoord(now);
      cursor.style.cssText = at < x || at > x + w ? '' : `display:block;left:${at}px;top:${y}px;height:${h}px`;
      value.textContent = shown.map((track, n) => fixed(valueAt(n), digits) + (shown.length > 1 ? ' ' + track.name : '')).reverse().join(' · ');
    };
    parts.push({
      moment,
      view() {
        isFollowing = true;
        chart.updateOptions({dateWindow: [...view]});
        isFollowing = false;
      },
      theme() { chart.updateOptions(themed()); moment(); },
    });
    new ResizeObserver(() => { chart.resize(); moment(); }).observe(graph);
    return chart;
  }

  // ---- satellites ----

  const DIGITS = 'ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/';
  const snrOf = letter => letter === '.' ? -1 : letter === '-' || letter === undefined ? 0 : DIGITS.indexOf(letter);
  const signalColour = snr => snr <= 0 ? '#8a8f98' : SIGNALS[SIGNAL_STEPS.filter(step => snr >= step).length];

  function context(canvas) {
    const ratio = window.devicePixelRatio || 1, {width, height} = canvas.getBoundingClientRect();
    canvas.width = Math.max(Math.round(width * ratio), 1);
    canvas.height = Math.max(Math.round(height * ratio), 1);
    const pen = canvas.getContext('2d');
    pen.setTransform(ratio, 0, 0, ratio, 0, 0);
    pen.font = '11px system-ui, "DejaVu Sans", Arial, sans-serif';
    return {pen, width, height};
  }

  /// The stretch of the sky at a moment, -1 where there is none.
  const skyOrder = sky && sky.t.map((t, i) => i).sort((a, b) => sky.t[a] - sky.t[b]);
  function skyAt(t) {
    const at = bound(skyOrder.length, i => sky.t[skyOrder[i]], t + 1) - 1;
    if (at < 0) return -1;
    const i = skyOrder[at];
    return t - sky.end[i] <= BREAK_MS ? i : -1;
  }
  function wayAt(satellite, bin) {
    const {way} = satellite, at = bound(way.length / 3, i => way[i * 3], bin + 1) - 1;
    return at < 0 ? null : {elevation: way[at * 3 + 1], azimuth: way[at * 3 + 2]};
  }

  function signalLegend() {
    const legend = element('div', {className: 'legend'}), occurring = new Set();
    for (const {snr} of sky.satellites) for (const letter of new Set(snr)) if (letter !== '.') occurring.add(signalColour(snrOf(letter)));
    const names = ['under ' + SIGNAL_STEPS[0], ...SIGNAL_STEPS.map((step, i) => i + 1 < SIGNAL_STEPS.length ? step + '–' + (SIGNAL_STEPS[i + 1] - 1) : step + ' and more')];
    const add = (fill, name) => {
      if (!occurring.has(fill)) return;
      const swatch = element('i', {className: 'swatch'});
      swatch.style.background = fill;
      legend.append(element('span', {}, swatch, name));
    };
    SIGNALS.forEach((fill, i) => add(fill, names[i] + (i === SIGNALS.length - 1 ? ' dBHz' : '')));
    add(signalColour(0), 'no signal');
    return legend;
  }

  function addSky(column) {
    const {box, value} = panel(column, 'Sky', 'sky');
    const canvas = element('canvas', {className: 'square'});
    const systems = [...new Set(sky.satellites.map(satellite => satellite.system))];
    box.append(canvas, signalLegend(), element('div', {className: 'legend'},
      ...systems.map(system => element('span', {textContent: sky.satellites.find(s => s.system === system).name[0] + ' ' + system}))));
    let trails = null, drawn = [];
    const dot = (size, {elevation, azimuth}) => {
      const far = (90 - elevation) / 90 * (size / 2 - 18), angle = azimuth * Math.PI / 180;
      return [size / 2 + far * Math.sin(angle), size / 2 - far * Math.cos(angle)];
    };
    const drawBack = (pen, size) => {
      pen.strokeStyle = colour('--line');
      pen.fillStyle = colour('--faint');
      pen.textAlign = 'center';
      for (const elevation of [0, 30, 60]) {
        pen.beginPath();
        pen.arc(size / 2, size / 2, (90 - elevation) / 90 * (size / 2 - 18), 0, 7);
        pen.stroke();
        if (elevation > 0) pen.fillText(elevation + '°', size / 2, dot(size, {elevation, azimuth: 0})[1] - 3);
      }
      pen.beginPath();
      for (const azimuth of [0, 45, 90, 135]) {
        pen.moveTo(...dot(size, {elevation: 0, azimuth}));
        pen.lineTo(...dot(size, {elevation: 0, azimuth: azimuth + 180}));
      }
      pen.stroke();
      [['N', size / 2, 12], ['E', size - 8, size / 2 + 4], ['S', size / 2, size - 4], ['W', 8, size / 2 + 4]].forEach(n => pen.fillText(...n));
    };
    // Dots of what was in the stretch that is shown, as a picture beneath those of the moment.
    const drawTrails = () => {
      const {width} = context(canvas);
      trails = element('canvas', {width: canvas.width, height: canvas.height});
      const pen = trails.getContext('2d');
      pen.scale(canvas.width / width, canvas.width / width);
      pen.font = '11px system-ui, "DejaVu Sans", Arial, sans-serif';
      drawBack(pen, width);
      drawn = [];
      pen.globalAlpha = 0.55;
      for (const satellite of sky.satellites) {
        const {way, snr} = satellite;
        for (let i = 0; i * 3 < way.length; ++i) {
          const first = way[i * 3], end = i * 3 + 3 < way.length ? way[i * 3 + 3] : snr.length;
          let best = -1;
          for (let bin = first; bin < Math.min(end, snr.length); ++bin) {
            if (sky.end[bin] >= view[0] && sky.t[bin] <= view[1]) best = Math.max(best, snrOf(snr[bin]));
          }
          if (best < 0) continue;
          const [x, y] = dot(width, {elevation: way[i * 3 + 1], azimuth: way[i * 3 + 2]});
          drawn.push({x, y, t: sky.t[first]});
          pen.fillStyle = signalColour(best);
          pen.fillRect(x - 1.5, y - 1.5, 3, 3);
        }
      }
    };
    const moment = () => {
      if (!trails) drawTrails();
      const pen = canvas.getContext('2d'), size = canvas.getBoundingClientRect().width, bin = skyAt(now);
      pen.clearRect(0, 0, size, size);
      pen.drawImage(trails, 0, 0, size, size);
      let inView = 0;
      pen.textAlign = 'center';
      for (const satellite of sky.satellites) {
        const snr = bin < 0 ? -1 : snrOf(satellite.snr[bin] || '.'), where = snr < 0 ? null : wayAt(satellite, bin);
        if (snr >= 0) ++inView;
        if (!where) continue;
        const [x, y] = dot(size, where);
        pen.beginPath();
        pen.arc(x, y, 11, 0, 7);
        pen.fillStyle = signalColour(snr);
        pen.fill();
        pen.strokeStyle = colour('--panel');
        pen.stroke();
        pen.fillStyle = '#fff';
        pen.font = '600 9px system-ui, "DejaVu Sans", Arial, sans-serif';
        pen.fillText(satellite.name, x, y + 3);
      }
      value.textContent = bin < 0 ? 'nothing told' : inView + ' in view';
    };
    canvas.addEventListener('pointermove', event => {
      const {left: x0, top: y0, width} = canvas.getBoundingClientRect(), x = event.clientX - x0, y = event.clientY - y0;
      const bin = skyAt(now);
      const near = sky.satellites.find(satellite => {
        const where = bin >= 0 && snrOf(satellite.snr[bin] || '.') >= 0 && wayAt(satellite, bin);
        return where && Math.hypot(dot(width, where)[0] - x, dot(width, where)[1] - y) < 12;
      });
      if (!near) return moment();
      const {elevation, azimuth} = wayAt(near, bin), snr = snrOf(near.snr[bin]);
      value.textContent = `${near.system} ${near.name}: elevation ${elevation}°, azimuth ${azimuth}°, ${snr > 0 ? snr + ' dBHz' : 'no signal'}`;
    });
    canvas.addEventListener('click', event => {
      const {left: x0, top: y0} = canvas.getBoundingClientRect();
      let best = 12, found = null;
      for (const {x, y, t} of drawn) {
        const far = Math.hypot(x - event.clientX + x0, y - event.clientY + y0);
        if (far < best) { best = far; found = t; }
      }
      if (found !== null) setMoment(found);
    });
    const redraw = () => { trails = null; moment(); };
    new ResizeObserver(redraw).observe(canvas);
    parts.push({moment, view: redraw, theme: redraw});
  }

  function addSignals() {
    const {box, value} = panel(right, 'Signals, dBHz', 'signals');
    const order = sky.satellites.map((satellite, i) => i).sort((a, b) =>
      sky.satellites[a].system.localeCompare(sky.satellites[b].system) || sky.satellites[a].name.localeCompare(sky.satellites[b].name));
    const ROW = 11, LEFT = 46;
    const canvas = element('canvas', {id: 'snr'}), cursor = element('div', {className: 'cursor'});
    canvas.style.height = order.length * ROW + 4 + 'px';
    box.append(element('div', {className: 'plot'}, canvas, cursor), signalLegend());
    const width = () => canvas.getBoundingClientRect().width - LEFT;
    const xOf = t => LEFT + (t - view[0]) / (view[1] - view[0]) * width();
    const timeAt = x => view[0] + (x - canvas.getBoundingClientRect().left - LEFT) / width() * (view[1] - view[0]);
    timeAt.width = width;
    const draw = () => {
      const {pen, width: whole} = context(canvas), ends = sky.t.map((t, i) => Math.max(sky.end[i], i + 1 < sky.t.length && sky.t[i + 1] > t && sky.t[i + 1] - t <= BREAK_MS ? sky.t[i + 1] : t));
      pen.textAlign = 'right';
      order.forEach((index, row) => {
        const {name, snr} = sky.satellites[index], y = row * ROW + 2;
        pen.fillStyle = colour('--faint');
        pen.font = '9px system-ui, "DejaVu Sans", Arial, sans-serif';
        pen.fillText(name, LEFT - 5, y + 9);
        for (let i = 0; i < snr.length; ++i) {
          if (snr[i] === '.' || ends[i] < view[0] || sky.t[i] > view[1]) continue;
          const fill = signalColour(snrOf(snr[i])), first = i;
          while (i + 1 < snr.length && sky.t[i + 1] === ends[i] && signalColour(snrOf(snr[i + 1])) === fill && snr[i + 1] !== '.') ++i;
          const x = Math.max(xOf(sky.t[first]), LEFT), end = Math.min(xOf(ends[i]), whole);
          pen.fillStyle = fill;
          pen.fillRect(x, y, Math.max(end - x, 1), ROW - 2);
        }
      });
    };
    let rowOfPointer = -1;
    const moment = () => {
      const x = xOf(now), bin = skyAt(now);
      cursor.style.cssText = x < LEFT || x > LEFT + width() ? '' : `display:block;left:${x}px;height:${canvas.style.height}`;
      const told = bin < 0 ? [] : sky.satellites.map(satellite => snrOf(satellite.snr[bin] || '.')).filter(snr => snr > 0);
      const one = rowOfPointer >= 0 && sky.satellites[order[rowOfPointer]], snr = one && bin >= 0 ? snrOf(one.snr[bin] || '.') : -1;
      value.textContent = one ? one.system + ' ' + one.name + ': ' + (snr > 0 ? snr + ' dBHz' : snr === 0 ? 'no signal' : 'not in view') :
        told.length + ' with a signal' + (told.length ? ', mean ' + (told.reduce((a, b) => a + b, 0) / told.length).toFixed(1) : '');
    };
    steer(canvas, timeAt);
    canvas.addEventListener('pointermove', event => {
      rowOfPointer = Math.min(Math.max(Math.floor((event.clientY - canvas.getBoundingClientRect().top - 2) / ROW), 0), order.length - 1);
    });
    canvas.addEventListener('pointerleave', () => { rowOfPointer = -1; moment(); });
    const redraw = () => { draw(); moment(); };
    new ResizeObserver(redraw).observe(canvas);
    parts.push({moment, view: redraw, theme: redraw});
  }

  // ---- a standing receiver ----

  function addScatter(column) {
    const shown = tracks.filter(track => track.scatter);
    if (shown.length === 0) return;
    const {box, value} = panel(column, 'Scatter of the longest stand', 'scatter');
    const canvas = element('canvas', {className: 'square'});
    const legend = element('div', {className: 'legend'});
    box.append(canvas, legend);
    shown.forEach(track => {
      const {cep50, cep95, positions, duration} = track.scatter, swatch = element('i', {className: 'swatch'});
      swatch.style.background = `var(--track${track.index % 4})`;
      legend.append(element('span', {}, swatch, `${track.name}: CEP50 ${cep50.toFixed(2)} m, CEP95 ${cep95.toFixed(2)} m, ${positions} positions in ${durationText(duration)}`));
    });
    let reach = 0.1;
    for (const {scatter} of shown) scatter.e.forEach((e, i) => { reach = Math.max(reach, Math.hypot(e / 1000 - scatter.east, scatter.n[i] / 1000 - scatter.north)); });
    reach *= 1.1;
    let places = [];
    const draw = () => {
      const {pen, width} = context(canvas), half = width / 2, scale = (half - 8) / reach;
      const step = 10 ** Math.floor(Math.log10(reach)), unit = reach / step >= 5 ? step * 2 : reach / step >= 2 ? step : step / 2;
      pen.strokeStyle = colour('--grid');
      pen.fillStyle = colour('--faint');
      pen.textAlign = 'left';
      for (let n = 1; n * unit <= reach; ++n) {
        pen.beginPath();
        pen.arc(half, half, n * unit * scale, 0, 7);
        pen.stroke();
        pen.fillText(+(n * unit).toPrecision(2) + ' m', half + 3, half - n * unit * scale - 2);
      }
      pen.beginPath();
      pen.moveTo(half, 8); pen.lineTo(half, width - 8); pen.moveTo(8, half); pen.lineTo(width - 8, half);
      pen.stroke();
      places = [];
      for (const {scatter, index} of [...shown].reverse()) {
        const tint = colour('--track' + index % 4);
        pen.fillStyle = tint;
        pen.globalAlpha = 0.5;
        scatter.e.forEach((e, i) => {
          const x = half + (e / 1000 - scatter.east) * scale, y = half - (scatter.n[i] / 1000 - scatter.north) * scale;
          places.push({x, y, t: scatter.t[i]});
          pen.beginPath();
          pen.arc(x, y, 2.2, 0, 7);
          pen.fill();
        });
        pen.globalAlpha = 1;
        pen.strokeStyle = tint;
        pen.lineWidth = 1.5;
        for (const [radius, dash] of [[scatter.cep50, []], [scatter.cep95, [6, 4]]]) {
          pen.setLineDash(dash);
          pen.beginPath();
          pen.arc(half, half, radius * scale, 0, 7);
          pen.stroke();
        }
        pen.setLineDash([]);
        pen.lineWidth = 1;
      }
      const {scatter} = shown[0], at = bound(scatter.t.length, i => scatter.t[i], now);
      const i = at < scatter.t.length && Math.abs(scatter.t[at] - now) <= BREAK_MS ? at : -1;
      value.textContent = i < 0 ? '' : fixed((scatter.e[i] / 1000 - scatter.east), 2) + ' m east, ' + fixed(scatter.n[i] / 1000 - scatter.north, 2) + ' m north';
      if (i < 0) return;
      pen.beginPath();
      pen.arc(half + (scatter.e[i] / 1000 - scatter.east) * scale, half - (scatter.n[i] / 1000 - scatter.north) * scale, 6, 0, 7);
      pen.strokeStyle = colour('--cursor');
      pen.lineWidth = 2.5;
      pen.stroke();
    };
    canvas.addEventListener('pointermove', event => {
      const {left: x0, top: y0} = canvas.getBoundingClientRect();
      let best = 12, found = null;
      for (const {x, y, t} of places) {
        const far = Math.hypot(x - event.clientX + x0, y - event.clientY + y0);
        if (far < best) { best = far; found = t; }
      }
      if (found !== null) setMoment(found);
    });
    new ResizeObserver(draw).observe(canvas);
    parts.push({moment: draw, theme: draw});
  }

  // ---- numbers ----

  function addNumbers() {
    const {box} = panel(left, 'Numbers', 'numbers');
    const eventText = (event, text) => event ? text + (event.utc ? ' at ' + timeText(Date.parse(event.utc)) : ' at ' + durationText(event.elapsed_ms)) : '–';
    const ROWS = [
      ['Distance', s => fixed(s.distance_m / 1000, 2, ' km')],
      ['Moving, standing', s => durationText(s.moving_ms) + ', ' + durationText(s.standing_ms)],
      ['Greatest speed', s => fixed(s.max_speed_kmh === null ? NaN : s.max_speed_kmh, 1, ' km/h')],
      ['Fix', s => fixed(s.fix_percent, 1, ' %') + ' of ' + s.epochs + ' epochs'],
      ['', s => ['none', '2d', '3d', 'dgps', 'estimated'].map((key, i) => s.fix[key] ? s.fix[key] + ' ' + FIX_NAMES[i] : '').filter(Boolean).join(', ')],
      ['Gaps', s => s.gap_count + (s.gap_count ? ', ' + durationText(s.gap_ms) + ' in all' : '')],
      ['Longest gap', s => s.longest_gap ? eventText(s.longest_gap, durationText(s.longest_gap.length_ms) + ', up to its end') : '–'],
      ['Largest jump', s => s.largest_jump ? eventText(s.largest_jump, fixed(s.largest_jump.length_m, 1, ' m')) : '–'],
      ['Longest stand', s => s.longest_stand ? durationText(s.longest_stand.duration_ms) + ', CEP50 ' + fixed(s.longest_stand.cep50_m, 2, ' m') + ', CEP95 ' + fixed(s.longest_stand.cep95_m, 2, ' m') : '–'],
    ];
    box.append(element('table', {}, element('thead', {}, element('tr', {}, element('th'), ...tracks.map(track => element('th', {textContent: track.name})))),
      element('tbody', {}, ...ROWS.map(([name, text]) => element('tr', {}, element('th', {textContent: name}), ...tracks.map(track => element('td', {textContent: text(track.stats)})))))));
  }

  // ---- the bar of time ----

  function addBar() {
    const play = element('button', {id: 'play', textContent: '▶', title: 'Play, pause (space)'});
    const scrub = element('input', {type: 'range', id: 'scrub', min: from, max: to, step: 'any', value: from});
    scrub.setAttribute('aria-label', 'Moment');
    const clock = element('span', {id: 'clock'});
    const FACTORS = [1, 5, 10, 30, 60, 120, 300, 600, 1800, 3600];
    const usual = FACTORS.find(factor => (to - from) / 1000 / factor <= 60) || 3600;
    const pace = element('select', {id: 'pace', title: 'How fast it plays'}, ...FACTORS.map(n => new Option(n + '×', n, n === usual, n === usual)));
    const whole = element('button', {textContent: '⤢', title: 'All of the time (0)'});
    document.body.append(element('div', {id: 'bar'}, play, scrub, clock, pace, whole));
    let last = 0;
    const step = time => {
      if (!isPlaying) return;
      setMoment(now + (time - last) * Number(pace.value));
      last = time;
      if (now >= to) toggle(); else later(step);
    };
    const toggle = () => {
      isPlaying = !isPlaying;
      play.textContent = isPlaying ? '⏸' : '▶';
      if (!isPlaying) return;
      if (now >= to) now = from;
      later(time => { last = time; step(time); });
    };
    play.addEventListener('click', toggle);
    whole.addEventListener('click', () => setView(from, to));
    scrub.addEventListener('input', () => setMoment(Number(scrub.value)));
    document.addEventListener('keydown', event => {
      if (event.ctrlKey || event.metaKey || event.altKey || /^(SELECT|INPUT)$/.test(event.target.tagName) && event.target !== scrub) return;
      if (event.key === ' ') { if (event.target === play) play.blur(); event.preventDefault(); toggle(); }
      if (event.key === '0') setView(from, to);
      const way = {ArrowLeft: -1, ArrowRight: 1}[event.key];
      if (!way || event.target.closest('#map')) return;
      event.preventDefault();
      setMoment(now + way * (event.shiftKey ? 60000 : 1000));
    });
    parts.push({moment() {
      scrub.value = now;
      clock.textContent = timeText(now);
      // What plays stays in sight.
      if (isPlaying && (now < view[0] || now > view[1])) setView(now, now + view[1] - view[0]);
    }});
  }

  function addLicences() {
    document.body.append(element('details', {}, element('summary', {textContent: 'Charts by dygraphs (MIT), map by Leaflet (BSD-2-Clause): their licences'}),
      element('pre', {textContent: document.getElementById('licences').textContent})));
  }

  // One part a frame: what is there can be seen while the next is made.
  addBar();
  const waiting = [addMap, addNumbers];
  CURVES.forEach((curve, i) => waiting.push(() => addCurve(curve, i === 0)));
  const pair = element('div', {className: 'pair'});
  waiting.push(() => {
    left.append(pair);
    if (sky) addSky(pair);
    addScatter(pair);
  });
  if (sky) waiting.push(addSignals);
  waiting.push(addLicences);
  const bar = document.getElementById('bar');
  const next = () => {
    const add = waiting.shift();
    if (!add) {
      document.body.append(bar);
      tell('moment');
      document.documentElement.dataset.state = 'ready';
      return;
    }
    add();
    later(next);
  };
  later(next);
  matchMedia('(prefers-color-scheme: dark)').addEventListener('change', () => tell('theme'));
  window.nfwPlot = {get now() { return now; }, get view() { return [...view]; }, from, to, setMoment, setView};
})();
