"""A dataset as one HTML file: every slice as a heat map, with a slider; no server, no network."""

from __future__ import annotations

import base64
import html
import json
import os
import re

import numpy as np

from .dataset import Dataset
from .exchange import labels_of, times_of
from .files import whole_file

# Above this many values one byte each has to do.
_MOST_WITH_TWO_BYTES = 4_000_000


def write_page(
    dataset: Dataset,
    path: str | os.PathLike,
    *,
    limits: tuple[float, float] | None = None,
    overwrite: bool = True,
) -> None:
    """Writes the page: a heat map of each slice, browsed by slider, keys or playing.

    The colours mean the same in all slices. Values of both signs get diverging colours with zero
    in the middle. Values are stored in steps, whose size the page tells: 1/65534 of the range,
    or 1/254 where there are more than 4,000,000.

    Args:
        limits: values at the ends of the colours; from the values when None.
        overwrite: replace an existing file.

    Raises:
        ValueError: the dataset holds no finite value, or the limits are none.
    """
    values = dataset.to_array()
    finite = values[np.isfinite(values)]
    if finite.size == 0:
        raise ValueError("the dataset holds no finite value")
    signed, low, high = _limits(finite, limits)
    stored, kind, step = _stored(values, float(finite.min()), float(finite.max()))
    slices, rows, columns = values.shape
    labels = labels_of(dataset)
    data = {
        "slices": slices,
        "rows": rows,
        "columns": columns,
        "rowLabels": labels,
        "columnLabels": labels if rows == columns else [str(c + 1) for c in range(columns)],
        "times": [float(time) for time in times_of(dataset)],
        "hasTimes": dataset.sampling_rate > 0,
        "least": float(finite.min()),
        "step": step,
        "kind": kind,
        "low": low,
        "high": high,
        "colours": _colours(signed),
        "values": base64.b64encode(stored.tobytes()).decode("ascii"),
    }
    begin, end = dataset.band
    fillings = {
        "title": html.escape(dataset.name),
        "band": f"{begin:g} to {end:g} Hz",
        "shape": f"{slices} slices of {rows} x {columns} sensors",
        "step": f"{step:.2g}",
        "last": str(slices - 1),
        "note": html.escape(dataset.note),
        # Nothing of a file may end the script.
        "data": json.dumps(data).replace("<", "\\u003c"),
    }
    # In one go, so that texts of a file are not filled in turn.
    text = re.sub(r"\{\{(\w+)\}\}", lambda mark: fillings[mark[1]], _TEMPLATE)
    with whole_file(path, overwrite=overwrite) as draft, open(draft, "w", encoding="utf-8") as file:
        file.write(text)


def _limits(finite: np.ndarray, limits) -> tuple[bool, float, float]:
    signed = bool(finite.min() < 0 < finite.max())
    if limits is not None:
        low, high = map(float, limits)
        if not low < high:
            raise ValueError("the lower limit must be below the upper one")
        return signed, low, high
    if signed:
        most = float(np.abs(finite).max())
        return True, -most, most
    low, high = min(float(finite.min()), 0.0), max(float(finite.max()), 0.0)
    return False, low, high if high > low else low + 1.0


def _stored(values: np.ndarray, least: float, most: float) -> tuple[np.ndarray, str, float]:
    """Values in steps from the least, the largest number standing for none."""
    kind, type_ = ("u2", "<u2") if values.size <= _MOST_WITH_TWO_BYTES else ("u1", "u1")
    none = int(np.iinfo(type_).max)
    # Halves, so that the difference of the largest numbers is one.
    step = (most / 2.0 - least / 2.0) / (none - 1) * 2.0 or 1.0
    with np.errstate(invalid="ignore", over="ignore"):
        numbers = np.rint((values / 2.0 - least / 2.0) / (step / 2.0))
    return np.where(np.isfinite(values), numbers, none).astype(type_), kind, step


def _colours(signed: bool) -> list[str]:
    from matplotlib import colormaps
    from matplotlib.colors import to_hex

    colours = colormaps["RdBu_r" if signed else "viridis"]
    return [to_hex(colours(i / 255.0)) for i in range(256)]


_TEMPLATE = """<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<title>{{title}}</title>
<style>
body { font: 15px/1.45 system-ui, sans-serif; color: #222; margin: 1.5rem auto; max-width: 60rem;
       padding: 0 1rem; }
h1 { font-size: 1.4rem; margin: 0; }
p { margin: .2rem 0 .8rem; color: #555; }
.row { display: flex; gap: 1rem; align-items: center; flex-wrap: wrap; margin: .6rem 0; }
#slice { flex: 1; min-width: 12rem; }
.picture { display: flex; gap: 1rem; align-items: stretch; height: min(38rem, 75vh, 75vw); }
#map { image-rendering: pixelated; height: 100%; background: #d4d4d4; cursor: crosshair; }
.bar { display: flex; flex-direction: column; justify-content: space-between; font-size: .85rem; }
#scale { width: 1rem; height: 100%; }
output { font-variant-numeric: tabular-nums; }
button { font: inherit; padding: .2rem .8rem; }
details { margin-top: 1rem; } pre { white-space: pre-wrap; font-size: .85rem; }
@media print { .row button, #slice { display: none; } body { margin: 0; } }
</style>
</head>
<body>
<h1>{{title}}</h1>
<p>{{band}}, {{shape}}; values in steps of {{step}}</p>
<div class="row">
  <button id="play" type="button">Play</button>
  <label for="slice">Slice</label>
  <input id="slice" type="range" min="0" max="{{last}}" value="0" step="1">
  <output id="time" for="slice" aria-live="polite"></output>
</div>
<div class="picture">
  <canvas id="map" role="img" aria-label="Heat map: row sensors down, column sensors across">
  </canvas>
  <canvas id="scale" width="1" height="256" role="img" aria-label="Colours from low to high">
  </canvas>
  <div class="bar"><span id="high"></span><span id="middle"></span><span id="low"></span></div>
</div>
<div class="row"><output id="pair">Point at a pair to read it.</output></div>
<details><summary>How the values were computed</summary><pre>{{note}}</pre></details>
<script type="application/json" id="data">{{data}}</script>
<script>
"use strict";
const data = JSON.parse(document.getElementById("data").textContent);
const bytes = Uint8Array.from(atob(data.values), c => c.charCodeAt(0));
const numbers = data.kind === "u2" ? new Uint16Array(bytes.buffer) : bytes;
const none = data.kind === "u2" ? 65535 : 255;
const colours = data.colours.map(c => [1, 3, 5].map(i => parseInt(c.slice(i, i + 2), 16)));
const byId = id => document.getElementById(id);
const map = byId("map"), slider = byId("slice");
map.width = data.columns;
map.height = data.rows;
map.style.aspectRatio = data.columns + " / " + data.rows;
const ink = map.getContext("2d", {willReadFrequently: true});

function value(t, r, c) {
  const n = numbers[(t * data.rows + r) * data.columns + c];
  return n === none ? NaN : data.least + n * data.step;
}
function colour(v) {
  const at = (v - data.low) / (data.high - data.low);
  return colours[Math.max(0, Math.min(255, Math.floor(at * 256)))];
}
function show() {
  const t = Number(slider.value);
  const image = ink.createImageData(data.columns, data.rows);
  for (let r = 0; r < data.rows; ++r) {
    for (let c = 0; c < data.columns; ++c) {
      const v = value(t, r, c), at = 4 * (r * data.columns + c);
      const rgb = Number.isNaN(v) ? [212, 212, 212] : colour(v);
      image.data.set([rgb[0], rgb[1], rgb[2], 255], at);
    }
  }
  ink.putImageData(image, 0, 0);
  byId("time").textContent = data.hasTimes
    ? "slice " + t + ", at " + Number(data.times[t].toPrecision(6)) : "slice " + t;
  tell();
}
let pointed = null;
function tell() {
  if (pointed === null) return;
  const [r, c] = pointed, v = value(Number(slider.value), r, c);
  byId("pair").textContent = data.rowLabels[r] + " \\u2192 " + data.columnLabels[c] + ": " +
    (Number.isNaN(v) ? "no number" : Number(v.toPrecision(4)));
}
map.addEventListener("pointermove", event => {
  const box = map.getBoundingClientRect();
  const c = Math.floor((event.clientX - box.left) / box.width * data.columns);
  const r = Math.floor((event.clientY - box.top) / box.height * data.rows);
  if (r < 0 || c < 0 || r >= data.rows || c >= data.columns) return;
  pointed = [r, c];
  tell();
});
slider.addEventListener("input", show);
let playing = null;
byId("play").addEventListener("click", () => {
  if (playing !== null) {
    clearInterval(playing);
    playing = null;
  } else {
    playing = setInterval(() => {
      slider.value = (Number(slider.value) + 1) % data.slices;
      show();
    }, 250);
  }
  byId("play").textContent = playing === null ? "Play" : "Pause";
});
const scale = byId("scale").getContext("2d");
for (let i = 0; i < 256; ++i) {
  scale.fillStyle = data.colours[255 - i];
  scale.fillRect(0, i, 1, 1);
}
const ends = {high: data.high, middle: (data.low + data.high) / 2, low: data.low};
for (const id in ends) byId(id).textContent = Number(ends[id].toPrecision(3));
show();
</script>
</body>
</html>
"""
