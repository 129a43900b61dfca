"""MATLAB files, read and edited with SciPy and GNU Octave."""

import numpy as np
import pytest
from exchange_data import LABELS, bytes_of, make_dataset, octave
from scipy.io import loadmat, savemat

from cxc import exchange
from cxc.errors import CommandError


@pytest.fixture()
def path(tmp_path):
    path = str(tmp_path / "a.mat")
    exchange.to_matlab(make_dataset(), path)
    return path


def test_scipy_reads_the_structure(path):
    values = make_dataset().to_array()
    coh = loadmat(path, squeeze_me=True, struct_as_record=False)["coh"]
    assert coh.dimord == "chan_chan_time" and list(coh.label) == LABELS
    assert coh.cohspctrm.shape == (4, 4, 3)
    np.testing.assert_array_equal(coh.cohspctrm[0, 1], values[:, 0, 1])
    assert coh.freq == 10.5 and list(coh.band) == [8.0, 13.0]
    assert "from is the row" in coh.pair_order
    assert coh.cfg.method == "coh" and coh.cfg.computation == make_dataset().note


def test_octave_reads_the_structure(path):
    told = octave(
        f"load('{path}'); printf('%s\\n', class(coh), coh.dimord, coh.label{{:}}, coh.cfg.method);"
        "printf('%d ', size(coh.label), size(coh.cohspctrm), size(coh.time)); printf('\\n');"
        "printf('%.17g\\n', coh.cohspctrm(1, 2, 1), coh.cohspctrm(2, 1, 3));"
        "printf('%g ', coh.time, coh.freq, coh.band, coh.cfg.row_channels); printf('\\n');"
        "printf('%s\\n', coh.pair_order, coh.cfg.computation)"
    ).split("\n")
    values = make_dataset().to_array()
    assert told[:7] == ["struct", "chan_chan_time", *LABELS, "coh"]
    assert told[7].split() == ["4", "1", "4", "4", "3", "1", "3"]
    assert [float(told[8]), float(told[9])] == [values[0, 0, 1], values[2, 1, 0]]
    assert told[10].split() == ["1.5", "2", "2.5", "10.5", "8", "13", "11", "12", "13", "14"]
    assert "from * sensors + to" in told[11]
    assert "\n".join(told[12:]).rstrip("\n") == make_dataset().note


def test_what_octave_has_edited_becomes_a_dataset(path, tmp_path):
    edited = str(tmp_path / "b.mat")
    octave(f"load('{path}'); coh.cohspctrm(2, 3, 1) = 7; save('-v7', '{edited}', 'coh')")
    back = exchange.from_matlab(edited)
    expected = make_dataset().to_array()
    expected[0, 1, 2] = 7.0
    np.testing.assert_array_equal(back.to_array(), expected)
    original = make_dataset()
    assert back.note == original.note and back.latency == original.latency
    assert back.band == original.band and back.name == original.name
    np.testing.assert_array_equal(back.channels_b, original.channels_b)


def test_what_octave_has_saved_untouched_is_the_same_to_the_byte(path, tmp_path):
    again = str(tmp_path / "b.mat")
    octave(f"load('{path}'); save('-v7', '{again}', 'coh')")
    assert bytes_of(exchange.from_matlab(again), tmp_path) == bytes_of(make_dataset(), tmp_path)


def test_characters_that_scipy_cannot_read_back_become_question_marks(tmp_path):
    path = str(tmp_path / "a.mat")
    exchange.to_matlab(make_dataset(name="a\U0001f9e0b", note="c"), path)
    assert exchange.from_matlab(path).name == "a?b"


def test_one_slice_that_octave_has_left_of_three_has_its_own_time(path, tmp_path):
    edited = str(tmp_path / "b.mat")
    octave(
        f"load('{path}'); coh.cohspctrm = coh.cohspctrm(:, :, 2); coh.time = coh.time(2);"
        f"save('-v7', '{edited}', 'coh')"
    )
    back = exchange.from_matlab(edited)
    np.testing.assert_array_equal(back.to_array(), make_dataset().to_array()[1:2])
    assert back.latency == (2.0, 2.0)


def structure(**changes):
    made = {
        "label": np.array([["A"], ["B"]], dtype=object), "dimord": "chan_chan_time",
        "cohspctrm": np.arange(12.0).reshape(2, 2, 3), "time": [0.0, 0.5, 1.0], "freq": 10.0,
    }  # fmt: skip
    made.update(changes)
    return {name: value for name, value in made.items() if value is not None}


def read(tmp_path, **changes):
    path = str(tmp_path / "a.mat")
    savemat(path, {"x": 1.0, "data": structure(**changes)})
    return exchange.from_matlab(path)


def test_structures_of_other_origin_become_datasets(tmp_path):
    made = read(tmp_path)
    np.testing.assert_array_equal(made.to_array()[1], [[1.0, 4.0], [7.0, 10.0]])
    assert made.sampling_rate == 2.0 and made.latency == (0.0, 1.0)
    assert made.band == (10.0, 10.0) and made.sensors == ["A", "B"]
    assert made.channels_a.tolist() == [[1, 1], [2, 2]]
    values = np.arange(4.0).reshape(2, 2)
    one = read(tmp_path, dimord="chan_chan", cohspctrm=None, plvspctrm=values)
    np.testing.assert_array_equal(one.to_array(), [values])
    one = read(tmp_path, dimord="chan_chan_freq", cohspctrm=None, connectivity=values)
    np.testing.assert_array_equal(one.to_array(), [values])
    with_frequency = np.arange(12.0).reshape(2, 2, 1, 3)
    made = read(tmp_path, dimord="chan_chan_freq_time", cohspctrm=with_frequency)
    np.testing.assert_array_equal(made.to_array()[1], [[1.0, 4.0], [7.0, 10.0]])


@pytest.mark.parametrize(
    "changes, told",
    [
        ({"dimord": None}, "holds 0 structures with a dimord"),
        ({"dimord": "chancmb_freq"}, 'dimord is "chancmb_freq"'),
        ({"label": None}, "no field label"),
        ({"label": np.array([["A"], ["B"], ["C"]], dtype=object)}, "2 x 2 x 3, but there are 3"),
        ({"cohspctrm": None}, "one field such as cohspctrm is needed; there is none"),
        ({"plvspctrm": 1.0}, "there is cohspctrm, plvspctrm"),
        ({"cohspctrm": np.ones((2, 3, 3))}, "the values are 2 x 3 x 3, but there are 2 labels"),
        ({"cohspctrm": np.ones((3, 2, 2))}, "the values are 3 x 2 x 2, but there are 2 labels"),
        ({"cohspctrm": np.ones((2, 2, 2, 3))}, "the values are 2 x 2 x 2 x 3"),
        ({"cohspctrm": np.ones((2, 2, 3)) * 1j}, "complex values"),
        ({"cohspctrm": "text"}, "the values are"),
        ({"cohspctrm": {"a": 1.0}}, "the values are"),
        ({"cohspctrm": np.ones((2, 2, 5))}, "tells 3 times, but holds 5 slices"),
        ({"time": [0.0, 1.0, 9.0]}, "equal steps"),
        ({"dimord": "chan_chan_freq"}, "holds 3 frequencies"),
        ({"freq": "low"}, "could not convert"),
    ],
)
def test_other_structures_are_refused_in_one_line(tmp_path, changes, told):
    with pytest.raises(CommandError, match=told) as error:
        read(tmp_path, **changes)
    assert str(error.value).startswith(f"{tmp_path / 'a.mat'}: ")
    assert "\n" not in str(error.value)


def test_octaves_other_formats_are_refused_with_advice(path, tmp_path):
    for option in ("-text", "-hdf5"):
        other = str(tmp_path / "b.mat")
        octave(f"load('{path}'); save('{option}', '{other}', 'coh')")
        with pytest.raises(CommandError, match="-v7"):
            exchange.from_matlab(other)
