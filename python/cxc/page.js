"use strict";

const byId = id => document.getElementById(id);
const data = JSON.parse(byId("data").textContent);
const GREY = [212, 212, 212];
const WHITE = [255, 255, 255];
const LISTED = 10;
const ASIDE = 300; // least width of what stands beside the pictures
const PALETTES = data.palettes.map(
  colours => colours.map(c => [1, 3, 5].map(i => parseInt(c.slice(i, i + 2), 16))));

const state = {
  view: "heat",
  slice: 0,
  lines: 30,
  thresholds: data.scales.map(() => 0),
  pointed: null, // [row, column]
  chosen: null,
};
let set = null; // the dataset that is shown
let scale = null; // its colours
let numbers = null; // its values in steps, [slice, row, column]

// -- values

function decoded(of) {
  const text = atob(of.values);
  const bytes = new Uint8Array(text.length);
  for (let i = 0; i < text.length; ++i) bytes[i] = text.charCodeAt(i);
  return data.kind === "u2" ? new Uint16Array(bytes.buffer) : bytes;
}

function value(row, column, slice = state.slice) {
  const n = numbers[(slice * set.rows + row) * set.columns + column];
  if (n === data.none) return NaN;
  // Halves, so that the widest range does not overflow.
  const v = (set.least / 2 + n * (set.step / 2)) * 2;
  return Math.abs(v) < set.step / 2 ? 0 : v;
}

const threshold = () => state.thresholds[set.scale];
const selfPair = (row, column) => set.same && row === column;

/** Least magnitude that is shown; a value that rounding took below the threshold stays. */
const floor = () => threshold() - set.step / 2;
const hidden = v => Math.abs(v) < floor();

function colour(v) {
  const share = (v / 2 - scale.low / 2) / (scale.high / 2 - scale.low / 2);
  return PALETTES[scale.palette][Math.max(0, Math.min(255, Math.floor(share * 256)))];
}

const css = rgb => "rgb(" + rgb.join(",") + ")";
const digits = () => data.kind === "u2" ? 4 : 3;
const written = (v, places = digits()) =>
  Number.isNaN(v) ? "no number" : String(Number(v.toPrecision(places)));

/** With as many decimals as any other value of the scale. */
function aligned(v) {
  const places = 3 - Math.ceil(Math.log10(Math.max(Math.abs(scale.low), Math.abs(scale.high))));
  return places >= 0 && places <= 12 ? v.toFixed(places) : written(v);
}

function time(slice) {
  if (!set.timed || set.times[slice] === null) return "slice " + slice;
  return "slice " + slice + ", at " + Number(set.times[slice].toPrecision(6)) + " s";
}

/** The `count` strongest pairs at or above the threshold, and how many there are. */
function strongest(count) {
  let found = [], least = floor(), total = 0;
  const trim = () => {
    found.sort((a, b) => b.size - a.size);
    if (found.length > count) found.length = count;
    if (found.length === count) least = found[count - 1].size;
  };
  for (let row = 0; row < set.rows; ++row) {
    for (let column = set.same ? row + 1 : 0; column < set.columns; ++column) {
      let pair = [row, column], v = value(row, column);
      if (set.directed && set.same) {
        const back = value(column, row);
        if (Number.isNaN(v) || Math.abs(back) > Math.abs(v)) {
          pair = [column, row];
          v = back;
        }
      }
      const size = Math.abs(v);
      if (!(size > 0) || hidden(v)) continue;
      ++total;
      if (size < least) continue;
      found.push({pair, v, size});
      if (found.length >= 4 * count + 64) trim();
    }
  }
  trim();
  return {found, total};
}

// -- words

function bdi(text) {
  const element = document.createElement("bdi");
  element.textContent = text;
  return element;
}

/** Both names apart, so that no direction of writing reaches beyond its own name. */
function pairName([row, column]) {
  const between = set.directed || !set.same ? " \u2192 " : " \u2013 ";
  return [bdi(set.rowNames[row]), between, bdi(set.columnNames[column])];
}

const plainName = pair => pairName(pair).map(part => part.textContent || part).join("");
const alike = (a, b) => a !== null && b !== null && a[0] === b[0] && a[1] === b[1];

/** Whether the two are one pair of sensors, in either direction where that is the same. */
const joins = (a, b) => alike(a, b) || (set.same && a !== null && b !== null &&
  alike([a[1], a[0]], b));

function short(name, most = 14) {
  const letters = Array.from(name);
  return letters.length <= most ? name : letters.slice(0, most - 1).join("") + "\u2026";
}

const ruler = document.createElement("canvas").getContext("2d");
function widest(names, size) {
  ruler.font = size + "px system-ui, sans-serif";
  return names.reduce((most, name) => Math.max(most, ruler.measureText(short(name)).width), 0);
}

// -- drawing

const SVG = byId("ring").namespaceURI;
function add(parent, name, attributes, text) {
  const element = document.createElementNS(SVG, name);
  for (const key in attributes) element.setAttribute(key, attributes[key]);
  if (text !== undefined) element.textContent = text;
  parent.append(element);
  return element;
}

const map = byId("map"), slider = byId("slice");
const ink = map.getContext("2d", {willReadFrequently: true});
const heat = {}; // measures of the heat map: left, top, width, height, cell sizes
const circle = {}; // and of the circle: size, radius, points

/** Width and height for each picture; the rest of the page stands beside or under them. */
function room() {
  const main = document.querySelector("main"), both = state.view === "both";
  const full = main.clientWidth - byId("bar").offsetWidth - 20;
  const beside = full - ASIDE;
  main.classList.toggle("under", beside < (both ? 2 : 1) * 300);
  const wide = main.classList.contains("under") ? full : beside;
  const top = main.getBoundingClientRect().top + window.scrollY;
  const high = Math.max(Math.min(window.innerHeight - top - 56, 1000), 360);
  return both ? [(wide - 16) / 2, high] : [wide, high];
}

function layOut() {
  byId("heat").hidden = state.view === "circle";
  byId("circle").hidden = state.view === "heat";
  const [wide, high] = room();
  layOutHeat(wide, high);
  if (set.same) layOutCircle(Math.min(wide, high - 24));
  const tall = state.view === "circle" ? circle.size * 0.8 : heat.height;
  byId("scale").parentElement.style.gridTemplateRows = Math.min(tall, 520) + "px auto";
  byId("bar").style.marginTop = state.view === "circle" ? circle.size * 0.1 + "px" : "4px";
}

function layOutHeat(wide, high) {
  heat.left = Math.min(widest(set.rowNames, 12), 130) + 10;
  heat.bottom = Math.min(widest(set.columnNames, 12), 130) + 12;
  heat.top = 4;
  let cell = [(wide - heat.left - 6) / set.columns, (high - heat.bottom - heat.top) / set.rows];
  if (set.rows === set.columns) cell = [Math.min(...cell), Math.min(...cell)];
  // Cells of a wide or high matrix may be oblong, but not bars.
  heat.cell = [Math.min(cell[0], 4 * cell[1], 120), Math.min(cell[1], 4 * cell[0], 120)];
  heat.width = heat.cell[0] * set.columns;
  heat.height = heat.cell[1] * set.rows;
  heat.turned = widest(set.columnNames, fontFor(heat.cell[0])) >
    heat.cell[0] * everyFor(heat.cell[0]) - 4;
  if (!heat.turned) heat.bottom = 20;
  const whole = [heat.left + heat.width + 6, heat.top + heat.height + heat.bottom];
  const plot = byId("heat").style;
  plot.width = whole[0] + "px";
  plot.aspectRatio = whole.join(" / ");
  map.width = set.columns;
  map.height = set.rows;
  Object.assign(map.style, {
    left: 100 * heat.left / whole[0] + "%",
    top: 100 * heat.top / whole[1] + "%",
    width: 100 * heat.width / whole[0] + "%",
    height: 100 * heat.height / whole[1] + "%",
  });
  byId("names").setAttribute("viewBox", "0 0 " + whole.join(" "));
  drawNames();
}

const fontFor = cell => Math.max(9, Math.min(12, cell * 0.75));
const everyFor = cell => Math.max(1, Math.ceil(fontFor(cell) * 1.15 / cell));

function rowName(parent, row, attributes) {
  return add(parent, "text", {
    x: heat.left - 5, y: heat.top + (row + 0.5) * heat.cell[1], "text-anchor": "end",
    "dominant-baseline": "central", "font-size": fontFor(heat.cell[1]), ...attributes,
  }, short(set.rowNames[row]));
}

function columnName(parent, column, attributes) {
  const x = heat.left + (column + 0.5) * heat.cell[0], y = heat.top + heat.height + 5;
  const place = heat.turned
    ? {x, y, transform: `rotate(-90 ${x} ${y})`, "text-anchor": "end",
       "dominant-baseline": "central"}
    : {x, y: y + 10, "text-anchor": "middle"};
  return add(parent, "text", {"font-size": fontFor(heat.cell[0]), ...place, ...attributes},
    short(set.columnNames[column]));
}

/** Every n-th name, as many as there is room for. */
function drawNames() {
  const names = byId("names");
  names.replaceChildren();
  add(names, "rect", {class: "frame", x: heat.left - 0.5, y: heat.top - 0.5,
    width: heat.width + 1, height: heat.height + 1});
  for (let r = 0; r < set.rows; r += everyFor(heat.cell[1])) rowName(names, r, {class: "row"});
  for (let c = 0; c < set.columns; c += everyFor(heat.cell[0])) {
    columnName(names, c, {class: "column"});
  }
  add(names, "g", {id: "marks"});
  drawMarks();
}

/** Frames the chosen pair and the pointed one, and names the latter at both axes. */
function drawMarks() {
  const marks = byId("marks");
  marks.replaceChildren();
  for (const pair of [state.chosen, state.pointed]) {
    if (pair === null) continue;
    const [width, height] = heat.cell.map(side => Math.max(side, 5));
    const box = {
      x: heat.left + (pair[1] + 0.5) * heat.cell[0] - width / 2,
      y: heat.top + (pair[0] + 0.5) * heat.cell[1] - height / 2, width, height,
    };
    const frame = add(marks, "g", {});
    add(frame, "rect", {class: "cell", ...box});
    add(frame, "rect", {class: "cell", ...box});
  }
  const named = state.pointed || state.chosen;
  if (named === null || state.view === "circle") return; // what is not shown has no size
  for (const text of [rowName(marks, named[0], {class: "named", "font-size": 12}),
                      columnName(marks, named[1], {class: "named", "font-size": 12})]) {
    const {x, y, width, height} = text.getBBox();
    const paper = add(marks, "rect", {class: "paper", x: x - 2, y, width: width + 4, height});
    if (text.hasAttribute("transform")) {
      paper.setAttribute("transform", text.getAttribute("transform"));
    }
    text.before(paper);
  }
}

function drawHeat() {
  const image = ink.createImageData(set.columns, set.rows);
  for (let r = 0, at = 0; r < set.rows; ++r) {
    for (let c = 0; c < set.columns; ++c, at += 4) {
      const v = value(r, c);
      const rgb = Number.isNaN(v) || selfPair(r, c) ? GREY : hidden(v) ? WHITE : colour(v);
      image.data[at] = rgb[0];
      image.data[at + 1] = rgb[1];
      image.data[at + 2] = rgb[2];
      image.data[at + 3] = 255;
    }
  }
  ink.putImageData(image, 0, 0);
}

function drawScale() {
  const bar = byId("scale"), brush = bar.getContext("2d");
  for (let i = 0; i < 256; ++i) {
    const v = (scale.low / 2 + (scale.high / 2 - scale.low / 2) * (255.5 - i) / 256) * 2;
    brush.fillStyle = css(hidden(v) ? WHITE : colour(v));
    brush.fillRect(0, i, 1, 1);
  }
  const middle = scale.low / 2 + scale.high / 2;
  byId("high").textContent = (scale.above ? "\u2265 " : "") + written(scale.high, 3);
  byId("middle").textContent = written(middle, 3);
  byId("low").textContent = (scale.below ? "\u2264 " : "") + written(scale.low, 3);
  byId("quantity").textContent = set.quantity;
  bar.setAttribute("aria-label",
    `Colours from ${written(scale.low, 3)} to ${written(scale.high, 3)}`);
}

// -- the circle

function layOutCircle(size) {
  const most = Math.min(widest(set.rowNames, 12), 110);
  circle.size = Math.max(size, 260);
  circle.radius = circle.size / 2 - most - 14;
  circle.points = set.angles.map(a => [Math.cos(a), -Math.sin(a)]);
  byId("circle").style.width = circle.size + "px";
  byId("ring").setAttribute("viewBox", [-1, -1, 2, 2].map(x => x * circle.size / 2).join(" "));
}

/** Neighbours are joined near the rim and opposite ones through the middle. */
function curve([first, second]) {
  const [a, b] = [circle.points[first], circle.points[second]];
  const middle = [a[0] + b[0], a[1] + b[1]];
  const length = Math.hypot(...middle);
  const apart = Math.sqrt(Math.max(1 - (length / 2) ** 2, 0));
  const bend = length < 1e-9 ? [0, 0] : middle.map(m => m / length * (1 - apart) * 0.85);
  const at = point => point.map(x => (x * circle.radius).toFixed(2)).join(" ");
  return `M ${at(a)} Q ${at(bend)} ${at(b)}`;
}

function drawCircle() {
  const ring = byId("ring");
  ring.replaceChildren();
  const {found, total} = strongest(state.lines);
  const top = Math.max(Math.abs(scale.low), Math.abs(scale.high));
  const thick = Math.max(2.5, Math.min(6, circle.size / 90));
  const marked = [state.chosen, state.pointed];
  for (const {pair, v, size} of [...found].reverse()) {
    const d = curve(pair);
    const width = (thick * (0.15 + 0.85 * Math.min(size / top, 1))).toFixed(2);
    const mine = marked.some(one => joins(one, pair));
    if (mine) add(ring, "path", {class: "halo", d, "stroke-width": Number(width) + 3});
    add(ring, "path", {class: "line", d, stroke: css(colour(v)), "stroke-width": width,
      "data-row": pair[0], "data-column": pair[1], "data-value": written(v)});
  }
  for (const {pair} of [...found].reverse()) {
    add(ring, "path", {class: "hit", d: curve(pair), "data-row": pair[0],
      "data-column": pair[1]});
  }
  drawSensors(ring, new Set(found.flatMap(one => one.pair)),
    new Set(marked.filter(one => one !== null).flat()));
  const few = found.length < total ? `the ${found.length} strongest of ${total} pairs` :
    total === 1 ? "one pair" : `all ${total} pairs`;
  const above = threshold() > 0 ? ` at or above ${written(threshold())}` : " above 0";
  const both = set.directed ? "; of two directions the stronger one" : "";
  byId("count").textContent = (total ? "Lines: " + few : "No pair is") + above + both;
  ring.setAttribute("aria-label", "Sensors on a circle. " + byId("count").textContent +
    (found.length ? ". Strongest: " + plainName(found[0].pair) + ", " + written(found[0].v) : ""));
}

function drawSensors(ring, joined, named) {
  const order = [...set.angles.keys()].sort((a, b) => set.angles[a] - set.angles[b]);
  const arc = 2 * Math.PI * circle.radius / order.length;
  const size = Math.max(9, Math.min(13, arc * 0.75));
  const every = Math.max(1, Math.ceil(size * 1.05 / arc));
  order.forEach((sensor, place) => {
    const [x, y] = circle.points[sensor];
    const looks = (joined.has(sensor) ? " joined" : " faint") + (named.has(sensor) ? " named" : "");
    const group = add(ring, "g", {class: "sensor", "data-sensor": sensor});
    add(group, "circle", {class: "dot" + looks, cx: x * circle.radius, cy: y * circle.radius,
      r: Math.max(2, Math.min(5, arc * 0.25))});
    if (place % every && !named.has(sensor)) return;
    const turn = -set.angles[sensor] * 180 / Math.PI, left = x < -1e-9;
    const at = circle.radius + 9;
    add(group, "text", {
      class: looks.trim(), "font-size": size, "text-anchor": left ? "end" : "start",
      "dominant-baseline": "central", x: left ? -at : at, y: 0,
      transform: `rotate(${left ? turn + 180 : turn})`,
    }, short(set.rowNames[sensor], 12));
  });
}

// -- pair, course and list

function tellPair() {
  const pair = state.pointed || state.chosen, out = byId("pair");
  if (pair === null) {
    out.textContent = "None";
  } else {
    out.replaceChildren(...pairName(pair), ": " + written(value(...pair)));
  }
  byId("course").toggleAttribute("hidden", state.chosen === null);
  byId("hint").textContent = state.chosen === null
    ? "Point at a pair to read it; click it for its course over the slices."
    : "Click into the course to go to a slice.";
}

const chart = {width: 320, height: 170, left: 44, right: 14, top: 14, bottom: 34};

function courseX(slice) {
  const wide = chart.width - chart.left - chart.right;
  return chart.left + (set.slices === 1 ? 0.5 : slice / (set.slices - 1)) * wide;
}

function courseY(v) {
  const tall = chart.height - chart.top - chart.bottom;
  return chart.top + (chart.high / 2 - v / 2) / (chart.high / 2 - chart.low / 2) * tall;
}

/** The course of the chosen pair on the axis of the colours, wider where it passes them. */
function drawCourse() {
  const course = byId("course");
  course.replaceChildren();
  if (state.chosen === null) return;
  course.setAttribute("viewBox", `0 0 ${chart.width} ${chart.height}`);
  const values = Array.from({length: set.slices}, (_, t) => value(...state.chosen, t));
  chart.low = scale.low;
  chart.high = scale.high;
  for (const v of values) {
    if (v < chart.low) chart.low = v;
    if (v > chart.high) chart.high = v;
  }
  const right = chart.width - chart.right, bottom = chart.height - chart.bottom;
  for (const v of [chart.low, chart.low / 2 + chart.high / 2, chart.high]) {
    const y = courseY(v);
    add(course, "line", {class: "axis", x1: chart.left, x2: right, y1: y, y2: y});
    add(course, "text", {x: chart.left - 5, y, "text-anchor": "end", "font-size": 11,
      "dominant-baseline": "central"}, written(v, 3));
  }
  const limits = threshold() > 0 ? [threshold(), -threshold()] : [];
  for (const v of limits.filter(v => v >= chart.low && v <= chart.high)) {
    add(course, "line", {class: "limit", x1: chart.left, x2: right, y1: courseY(v),
      y2: courseY(v)});
  }
  const timed = set.timed && set.times[0] !== null && set.times[set.slices - 1] !== null;
  const name = t => timed ? written(set.times[t], 6) : String(t);
  const tick = (t, anchor) => add(course, "text", {x: courseX(t), y: bottom + 14,
    "text-anchor": anchor, "font-size": 11}, name(t));
  if (set.slices > 1) tick(0, "start");
  tick(set.slices - 1, set.slices > 1 ? "end" : "middle");
  add(course, "text", {x: (chart.left + right) / 2, y: chart.height - 4, "text-anchor": "middle",
    "font-size": 11, class: "faint"}, timed ? "time (s)" : "slice");
  let d = "", pen = false;
  values.forEach((v, t) => {
    if (Number.isNaN(v)) {
      pen = false;
      return;
    }
    d += `${pen ? "L" : "M"}${courseX(t).toFixed(1)} ${courseY(v).toFixed(1)}`;
    // A value between two gaps is a dot.
    if (!pen && !(t + 1 < set.slices && !Number.isNaN(values[t + 1]))) d += "h.01";
    pen = true;
  });
  add(course, "path", {class: "course", d, "stroke-linecap": "round"});
  add(course, "g", {id: "now"});
  const held = values.filter(v => !Number.isNaN(v));
  const range = held.length ? `from ${written(held.reduce((a, b) => Math.min(a, b)))} to ` +
    written(held.reduce((a, b) => Math.max(a, b))) : "no number";
  course.setAttribute("aria-label",
    `Course of ${plainName(state.chosen)} over ${set.slices} slices, ${range}`);
  drawNow();
}

function drawNow() {
  if (state.chosen === null) return;
  const now = byId("now"), x = courseX(state.slice), v = value(...state.chosen);
  now.replaceChildren();
  add(now, "line", {class: "now", x1: x, x2: x, y1: chart.top - 6,
    y2: chart.height - chart.bottom, "data-slice": state.slice});
  if (!Number.isNaN(v)) {
    add(now, "circle", {class: "spot", cx: x, cy: courseY(v), r: 4.5, "data-value": written(v)});
  }
}

const rows = Array.from({length: LISTED}, () => {
  const row = byId("list").insertRow(), button = document.createElement("button");
  button.type = "button";
  button.addEventListener("click", () => choose(row.pair));
  row.insertCell().append(button);
  row.insertCell();
  return row;
});

function drawList() {
  const {found} = strongest(LISTED);
  rows.forEach((row, place) => {
    row.hidden = place >= found.length;
    if (row.hidden) return;
    const {pair, v} = found[place];
    row.pair = pair;
    const swatch = document.createElement("span");
    swatch.className = "swatch";
    swatch.style.background = css(colour(v));
    row.cells[0].firstChild.replaceChildren(swatch, ...pairName(pair));
    row.cells[0].firstChild.setAttribute("aria-pressed", String(joins(state.chosen, pair)));
    row.cells[1].textContent = aligned(v);
  });
  byId("none").hidden = found.length > 0;
}

// -- what happens

/** Everything that depends on the slice. */
function show() {
  slider.value = state.slice;
  slider.setAttribute("aria-valuetext", time(state.slice));
  byId("time").textContent = time(state.slice);
  drawHeat();
  if (state.view !== "heat") drawCircle();
  drawList();
  tellPair();
  drawNow();
}

function goTo(slice) {
  state.slice = Math.max(0, Math.min(set.slices - 1, slice));
  show();
}

/** Everything that depends on the dataset, the scale, the threshold or the size of the window. */
function redraw() {
  scale = byId("same").checked ? data.scales[set.scale] : set.own;
  const top = Math.max(Math.abs(scale.low), Math.abs(scale.high));
  byId("threshold").max = top;
  byId("threshold").step = top / 200;
  byId("threshold").value = threshold();
  if (document.activeElement !== byId("thresholdNumber")) {
    byId("thresholdNumber").value = written(threshold());
  }
  const most = Math.min(set.rows * (set.rows - 1) / 2, 1000);
  byId("lines").max = Math.max(most, 1);
  state.lines = Math.max(1, Math.min(state.lines, most));
  byId("lines").value = state.lines;
  byId("linesField").hidden = state.view === "heat";
  for (const button of document.querySelectorAll("[data-view]")) {
    button.setAttribute("aria-pressed", String(button.dataset.view === state.view));
    button.disabled = button.dataset.view !== "heat" && !set.same;
    button.title = button.disabled ? "Rows and columns are not the same sensors" : "";
  }
  layOut();
  drawScale();
  drawCourse();
  show();
}

function point(pair) {
  if (pair === state.pointed || alike(pair, state.pointed)) return;
  state.pointed = pair;
  drawMarks();
  tellPair();
}

function choose(pair) {
  state.chosen = pair;
  state.pointed = null;
  drawMarks();
  drawCourse();
  show();
}

/** The same pair in another dataset, by the names of its sensors. */
function again(pair, from) {
  if (pair === null) return null;
  const row = set.rowNames.indexOf(from.rowNames[pair[0]]);
  const column = set.columnNames.indexOf(from.columnNames[pair[1]]);
  return row < 0 || column < 0 ? null : [row, column];
}

/** The slice of the same latency, or else of the same number. */
function sameTime(from) {
  const at = from.times[state.slice];
  if (!from.timed || !set.timed || at === null) return Math.min(state.slice, set.slices - 1);
  let best = 0;
  set.times.forEach((time, t) => {
    if (time !== null && Math.abs(time - at) < Math.abs(set.times[best] - at)) best = t;
  });
  return best;
}

function pick(index) {
  const from = set;
  set = data.datasets[index];
  numbers = decoded(set);
  if (from !== null) {
    state.slice = sameTime(from);
    state.chosen = again(state.chosen, from);
    state.pointed = null;
  }
  if (!set.same) state.view = "heat";
  slider.max = set.slices - 1;
  for (const id of ["slice", "play", "back", "next", "speed"]) {
    byId(id).disabled = set.slices === 1;
  }
  if (set.slices === 1) stop();
  const told = [document.title, set.name].includes(set.called);
  byId("about").replaceChildren(...(told ? [] : [bdi(set.called), ": "]), set.about);
  byId("note").textContent = set.note;
  byId("steps").textContent = set.steps;
  map.setAttribute("aria-label", `Heat map: ${set.rows} row sensors down, ${set.columns} ` +
    "column sensors across. Arrow keys go from pair to pair.");
  [...byId("datasets").children].forEach((button, place) =>
    button.setAttribute("aria-pressed", String(place === index)));
  byId("dataset").value = index;
  redraw();
}

function cellAt(event) {
  const box = map.getBoundingClientRect();
  const column = Math.floor((event.clientX - box.left) / box.width * set.columns);
  const row = Math.floor((event.clientY - box.top) / box.height * set.rows);
  const inside = row >= 0 && column >= 0 && row < set.rows && column < set.columns;
  return inside ? [row, column] : null;
}

function pointCell(pair) {
  if (pair === state.pointed || alike(pair, state.pointed)) return;
  point(pair);
  if (state.view === "both") drawCircle();
}
map.addEventListener("pointermove", event => pointCell(cellAt(event)));
map.addEventListener("pointerleave", () => pointCell(null));
map.addEventListener("click", event => {
  const pair = cellAt(event);
  if (pair !== null) choose(pair);
});

const MOVES = {ArrowUp: [-1, 0], ArrowDown: [1, 0], ArrowLeft: [0, -1], ArrowRight: [0, 1]};
map.addEventListener("keydown", event => {
  const move = MOVES[event.key];
  if (!move || event.altKey || event.ctrlKey || event.metaKey) return;
  event.preventDefault();
  event.stopPropagation();
  const [row, column] = state.chosen || [-move[0], -move[1]];
  choose([Math.max(0, Math.min(set.rows - 1, row + move[0])),
          Math.max(0, Math.min(set.columns - 1, column + move[1]))]);
});

document.addEventListener("keydown", event => {
  if (event.altKey || event.ctrlKey || event.metaKey) return;
  if (event.key === "Escape") choose(null);
  if (event.target.closest("input, select")) return;
  if (event.key === "ArrowLeft") goTo(state.slice - 1);
  if (event.key === "ArrowRight") goTo(state.slice + 1);
});

const ring = byId("ring");
const lineAt = event => {
  const hit = event.target.closest(".hit");
  return hit ? [Number(hit.dataset.row), Number(hit.dataset.column)] : null;
};
ring.addEventListener("pointerover", event => {
  const pair = lineAt(event), sensor = event.target.closest(".sensor");
  point(pair);
  for (const line of ring.querySelectorAll(".line")) {
    const ends = [line.dataset.row, line.dataset.column];
    const far = sensor ? !ends.includes(sensor.dataset.sensor)
      : pair !== null && !alike(ends.map(Number), pair);
    line.classList.toggle("far", far);
  }
});
ring.addEventListener("pointerleave", () => {
  point(null);
  for (const line of ring.querySelectorAll(".far")) line.classList.remove("far");
});
ring.addEventListener("click", event => {
  const pair = lineAt(event);
  if (pair !== null) choose(pair);
});

function goToCourse(event) {
  const box = byId("course").getBoundingClientRect();
  const x = (event.clientX - box.left) / box.width * chart.width;
  const share = (x - chart.left) / (chart.width - chart.left - chart.right);
  goTo(Math.round(share * (set.slices - 1)));
}
byId("course").addEventListener("pointerdown", event => {
  byId("course").setPointerCapture(event.pointerId);
  goToCourse(event);
});
byId("course").addEventListener("pointermove", event => {
  if (event.buttons & 1) goToCourse(event);
});

slider.addEventListener("input", () => goTo(Number(slider.value)));
byId("back").addEventListener("click", () => goTo(state.slice - 1));
byId("next").addEventListener("click", () => goTo(state.slice + 1));

let playing = null;
function stop() {
  clearInterval(playing);
  playing = null;
  byId("play").textContent = "Play";
  // Nobody wants to hear every slice of a film.
  for (const id of ["time", "pair"]) byId(id).setAttribute("aria-live", "polite");
}
function start() {
  clearInterval(playing);
  for (const id of ["time", "pair"]) byId(id).setAttribute("aria-live", "off");
  byId("play").textContent = "Pause";
  playing = setInterval(() => goTo((state.slice + 1) % set.slices),
    1000 / Number(byId("speed").value));
}
byId("play").addEventListener("click", () => playing === null ? start() : stop());
byId("speed").addEventListener("change", () => {
  if (playing !== null) start();
});

function setThreshold(text) {
  const wanted = Number(text);
  state.thresholds[set.scale] = Number.isFinite(wanted) ? Math.max(0, wanted) : 0;
  redraw();
}
byId("threshold").addEventListener("input", event => setThreshold(event.target.value));
byId("thresholdNumber").addEventListener("input", event => setThreshold(event.target.value));
byId("thresholdNumber").addEventListener("change", event => {
  event.target.value = written(threshold());
});
byId("lines").addEventListener("change", event => {
  state.lines = Math.round(Number(event.target.value)) || 1;
  redraw();
});
byId("same").addEventListener("change", redraw);
for (const button of document.querySelectorAll("[data-view]")) {
  button.addEventListener("click", () => {
    state.view = button.dataset.view;
    redraw();
  });
}
window.addEventListener("resize", redraw);

// Few datasets are buttons, to go to and fro; many are a list.
data.datasets.forEach((one, index) => {
  if (data.listed) {
    byId("dataset").add(new Option(one.name, index));
  } else {
    const button = document.createElement("button");
    button.type = "button";
    button.textContent = button.title = one.name;
    button.addEventListener("click", () => pick(index));
    byId("datasets").append(button);
  }
});
byId("dataset").addEventListener("change", event => pick(Number(event.target.value)));
byId("choice").hidden = data.datasets.length === 1;
byId("dataset").hidden = !data.listed;
byId("datasets").hidden = data.listed;
byId("sameField").hidden = !data.choosable;
pick(0);
