"""What the tests of the exchange formats share."""

import subprocess

import numpy as np

import cxc

LABELS = ["Fp1", "Cz, ref", "Oµ <2> & 'x'", "M1"]
NOTE = "How\n\n  it was computed \nSensors: " + ", ".join(
    f"{n} {label}" for n, label in enumerate(LABELS, 1)
)


def make_dataset(**changes):
    """Three slices of four sensors; the last one has no coupling."""
    values = np.random.default_rng(5).normal(size=(3, 4, 4))
    values[:, 3, :] = values[:, :, 3] = 0.0
    values[0, 0, 1] = 1 / 3
    options = {
        "sampling_rate": 2.0, "latency": (1.5, 2.75), "band": (8.0, 13.0), "name": "alpha & <more>",
        "note": NOTE, "channels": [11, 12, 13, 14], "channel_type": 2, **changes,
    }  # fmt: skip
    return cxc.Dataset.from_array(values, **options)


def bytes_of(dataset, folder):
    path = folder / "bytes.cxc"
    dataset.save(path)
    return path.read_bytes()


def octave(script):
    """What GNU Octave prints."""
    return subprocess.run(
        ["/usr/bin/octave-cli", "--no-gui", "--norc", "--eval", script],
        capture_output=True, encoding="utf-8", check=True,
    ).stdout  # fmt: skip
