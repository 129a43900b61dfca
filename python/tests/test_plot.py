"""Pictures: what is drawn is what was given."""

import warnings

import numpy as np
import pytest
from matplotlib.colors import to_rgba
from matplotlib.patches import PathPatch

import cxc
from cxc import plot
from cxc.plot_circle import angles, bend
from cxc.plot_head import places_of
from cxc.plot_lines import strongest
from cxc.plot_scale import NEUTRAL, make_scale
from cxc.plot_source import Panel

SITES = ["Fp1", "Fp2", "F3", "F4", "C3", "C4", "O1", "O2", "Cz"]


def matrix(count, seed=1):
    values = np.random.default_rng(seed).uniform(size=(count, count))
    return (values + values.T) / 2


def dataset(slices=7, labels=SITES, seed=1, signed=False, name="a name"):
    random = np.random.default_rng(seed)
    values = random.uniform(-0.5 if signed else 0.0, 0.9, (slices, len(labels), len(labels)))
    values = (values + values.transpose(0, 2, 1)) / 2
    sensors = ", ".join(f"{n} {label}" for n, label in enumerate(labels, 1))
    return cxc.Dataset.from_array(
        values, sampling_rate=2.0, latency=(1.0, 1.0 + (slices - 1) / 2), band=(8.0, 13.0),
        name=name, note=f"magnitude-squared coherence\nSensors: {sensors}",
    )  # fmt: skip


def package():
    held = cxc.Package(dataset(7, seed=1), dataset(5, seed=2))
    held.name = "subject 1"
    held.combine("subtract", accumulate_control=True)
    return held


def group():
    held = cxc.Group(dataset(7 - n, seed=n, name=f"subject {n}") for n in range(3))
    held.name = "all of them"
    return held


def panels(figure):
    """The axes that are no colour bars."""
    return [axes for axes in figure.axes if axes.get_label() != "colours"]


def bars(figure):
    return [axes for axes in figure.axes if axes.get_label() == "colours"]


def words(figure):
    found = [text.get_text() for text in figure.texts]
    for axes in figure.axes:
        found += [text.get_text() for text in axes.texts]
        found += [axes.get_title(), axes.get_xlabel(), axes.get_ylabel()]
    return "\n".join(found)


def curves(axes):
    """The lines between sensors, weakest first; the outline of the head lies below them."""
    return [p for p in axes.patches if isinstance(p, PathPatch) and p.get_zorder() >= 1]


def cells(axes):
    return np.asarray(axes.images[0].get_array())


DRAW = {
    "heat": plot.heatmap,
    "circle": plot.circle,
    "head": plot.head,
    "seed": lambda source, path=None, **options: plot.seed(source, path, sensor="O1", **options),
    "course": plot.course,
    "multiples": plot.multiples,
}
SOURCES = {"dataset": dataset, "package": package, "group": group}


@pytest.mark.parametrize("source", SOURCES)
@pytest.mark.parametrize("kind", DRAW)
@pytest.mark.parametrize("ending,begin", [("png", b"\x89PNG"), ("pdf", b"%PDF"), ("svg", b"<?xml")])
def test_every_kind_of_every_source_is_written_whole(tmp_path, source, kind, ending, begin):
    path = tmp_path / f"a.{ending}"
    DRAW[kind](SOURCES[source](), path, dpi=40)
    first = path.read_bytes()
    assert first.startswith(begin)
    if source == "dataset":
        DRAW[kind](SOURCES[source](), path, dpi=40)
        assert path.read_bytes() == first
    assert [entry.name for entry in tmp_path.iterdir()] == [path.name]


@pytest.mark.parametrize("count", [2, 19, 64])
@pytest.mark.parametrize("draw", [plot.heatmap, plot.circle])
def test_arrays_are_drawn_for_few_and_many_sensors(tmp_path, draw, count):
    path = tmp_path / "a.png"
    draw(matrix(count), [f"S{i}" for i in range(count)], str(path), title="title")
    assert path.read_bytes().startswith(b"\x89PNG")


def test_files_are_not_replaced_unless_told(tmp_path):
    path = tmp_path / "a.png"
    path.write_text("mine")
    with pytest.raises(FileExistsError):
        plot.heatmap(matrix(3), path, overwrite=False)
    assert path.read_text() == "mine"
    with pytest.raises(ValueError, match="end with .png, .pdf or .svg"):
        plot.heatmap(matrix(3), tmp_path / "a.jpg")
    assert len(list(tmp_path.iterdir())) == 1


# -- what is shown


def test_a_heat_map_has_the_mean_of_the_slices_in_its_cells():
    shown = dataset()
    figure = plot.heatmap(shown, slices=slice(2, 5), limits=(0.0, 1.0))
    mean = shown.to_array()[2:5].mean(axis=0)
    expected = make_scale([mean], limits=(0.0, 1.0))(mean)
    expected[np.diag_indices(9)] = to_rgba(NEUTRAL)
    (axes,) = panels(figure)
    np.testing.assert_allclose(cells(axes), expected)
    assert [label.get_text() for label in axes.get_yticklabels()] == SITES
    text = words(figure)
    assert "a name" in text and "8 to 13 Hz, mean of slices 2 to 4 at 2 to 3 s" in text
    assert bars(figure)[0].get_ylabel() == "magnitude-squared coherence"


def test_slices_are_those_selected_or_named_or_timed():
    shown = dataset()
    shown.selection = (1, 3)
    assert "mean of slices 1 to 3 at" in words(plot.heatmap(shown))
    assert "mean of slices 4 to 6 at 3 to 4 s" in words(plot.heatmap(shown, time=(2.9, 9.0)))
    assert "8 to 13 Hz, 4 s" in words(plot.heatmap(shown, slices=-1))
    for wrong in ({"slices": 7}, {"slices": []}, {"slices": 0.5}, {"time": (9.0, 10.0)},
                  {"slices": 1, "time": (1.0, 2.0)}):  # fmt: skip
        with pytest.raises(ValueError, match="slice"):
            plot.heatmap(shown, **wrong)


def test_matrices_that_are_not_square_have_a_heat_map_and_a_course_only():
    values = np.random.default_rng(1).random((3, 2, 5))
    shown = cxc.Dataset.from_array(values)
    (axes,) = panels(plot.heatmap(shown))
    assert cells(axes).shape[:2] == (2, 5)
    assert not (cells(axes) == to_rgba(NEUTRAL)).all(axis=2).any()
    (axes,) = panels(plot.course(shown, pairs=[(1, 4)]))
    np.testing.assert_array_equal(axes.lines[0].get_ydata(), values[:, 1, 4])
    for draw in (plot.circle, plot.head, DRAW["seed"]):
        with pytest.raises(ValueError, match="same sensors as rows and as columns, not 2 x 5"):
            draw(shown)


def tick_names(axes):
    """Of rows and of columns."""
    both = axes.yaxis, axes.xaxis
    return [[label.get_text() for label in axis.get_ticklabels()] for axis in both]


@pytest.mark.parametrize("columns", [["Fp2", "O1", "Cz"], ["O1", "O2"], ["Fp2", "Fp1"]])
def test_a_heat_map_names_and_colours_columns_that_are_other_sensors(columns):
    part = dataset().select(rows=["Fp1", "Fp2"], columns=columns)
    (axes,) = panels(plot.heatmap(part))
    assert tick_names(axes) == [["Fp1", "Fp2"], columns]
    # No pair is one of a sensor with itself because of its place.
    assert not (cells(axes) == to_rgba(NEUTRAL)).all(axis=2).any()
    (axes,) = panels(plot.heatmap(part, ["A", "B"], None))
    assert tick_names(axes) == [["A", "B"], columns]


def test_panels_of_other_columns_have_names_of_their_own():
    held = cxc.Group(
        dataset().select(rows=["Fp1", "Fp2"], columns=columns)
        for columns in (["O1", "O2"], ["C3", "C4"])
    )
    first, second = panels(plot.heatmap(held))
    assert tick_names(first) == [["Fp1", "Fp2"], ["O1", "O2"]]
    assert tick_names(second) == [["Fp1", "Fp2"], ["C3", "C4"]]


def test_given_labels_name_rows_and_columns_of_the_same_sensors():
    (axes,) = panels(plot.heatmap(dataset(labels=SITES[:2]), labels=["A", "B"]))
    assert tick_names(axes) == [["A", "B"], ["A", "B"]]
    with pytest.raises(ValueError, match="3 labels for 2 sensors"):
        plot.heatmap(dataset(labels=SITES[:2]), labels=["A", "B", "C"])


@pytest.mark.parametrize("kind", ["circle", "head", "seed"])
def test_pictures_of_one_set_of_sensors_take_no_other_columns(kind):
    part = dataset().select(rows=["Fp1", "Fp2"], columns=["O1", "O2"])
    with pytest.raises(ValueError, match="a name: .* needs the same sensors as rows and as col"):
        DRAW[kind](part)
    with pytest.raises(ValueError, match="needs the same sensors"):
        plot.multiples(part, of="circle")


@pytest.mark.parametrize("columns", [["Fp2", "O1", "Cz"], ["O1", "O2"]])
def test_a_course_names_and_finds_columns_that_are_other_sensors(columns):
    whole = dataset()
    part = whole.select(rows=["Fp1", "Fp2"], columns=columns)
    figure = plot.course(part, pairs=[("Fp2", columns[0]), ("Fp1", columns[1])])
    (axes,) = panels(figure)
    for line, (row, column) in zip(axes.lines, [(1, columns[0]), (0, columns[1])]):
        np.testing.assert_array_equal(line.get_ydata(), whole.pair(row, SITES.index(column)))
    named = {f"Fp2 \u2013 {columns[0]}", f"Fp1 \u2013 {columns[1]}"}
    assert named <= set(words(figure).split("\n"))
    with pytest.raises(ValueError, match="there is no sensor 'Fp1'"):
        plot.course(part, pairs=[("Fp1", "Fp1")])


def test_a_course_takes_the_strongest_of_all_pairs_where_columns_are_other_sensors():
    values = np.array([[[0.9, 0.1], [0.2, 0.8]]])
    part = cxc.Dataset.from_array(values, sensors=["A", "B"])
    part.note = "Row sensors: 1 A, 2 B\nColumn sensors: 1 C, 2 D"
    assert {"A \u2013 C", "B \u2013 D"} <= set(words(plot.course(part, lines=2)).split("\n"))


def test_a_course_says_so_where_the_datasets_name_their_sensors_differently():
    held = cxc.Group([dataset(labels=["A", "B"]), dataset(labels=["A", "C"], seed=2)])
    told = "name their sensors differently"
    assert told in words(plot.course(held)).replace("\n", " ")
    assert told not in words(plot.course(held, labels=["A", "B"])).replace("\n", " ")
    assert told not in words(plot.course(group())).replace("\n", " ")


def test_a_package_has_one_scale_for_its_conditions_and_one_for_the_difference():
    held = package()
    figure = plot.heatmap(held)
    assert len(panels(figure)) == 3 and len(bars(figure)) == 2
    first, second = bars(figure)
    top = first.get_ylim()[1]
    assert first.get_ylim()[0] == 0.0
    low, high = second.get_ylim()
    assert low == -high and high < top
    assert second.get_ylabel().replace("\n", " ").startswith("difference of")
    for axes, data in zip(panels(figure), held):
        mean = data.to_array().mean(axis=0)
        mean = np.array(mean)
        scale = make_scale([], signed=data == held.act_ctl,
                           limits=high if data == held.act_ctl else top)  # fmt: skip
        np.testing.assert_allclose(cells(axes)[0, 1], scale(mean[0, 1]))


def test_members_of_a_group_share_a_scale_unless_told():
    held = group()
    assert len(bars(plot.heatmap(held))) == 1
    own = plot.heatmap(held, shared=False)
    assert len(bars(own)) == 3
    (bar,) = bars(plot.heatmap(held, limits=(0.2, 0.4)))
    assert bar.get_ylim() == (0.2, 0.4)


def test_empty_and_huge_sources_are_refused():
    for empty in (cxc.Package(), cxc.Group(), cxc.Group([None]), cxc.Dataset()):
        with pytest.raises(ValueError, match="no dataset|no values"):
            plot.heatmap(empty)
    one = dataset(2)
    with pytest.raises(ValueError, match="101 datasets are too many"):
        plot.heatmap(cxc.Group([one] * 101))
    with pytest.raises(TypeError, match="not str"):
        plot.heatmap("a.cxc")
    with pytest.raises(TypeError, match="unknown argument 'colour'"):
        plot.heatmap(one, colour="red")


# -- colours


def test_values_of_both_signs_have_zero_in_the_middle():
    scale = make_scale([np.array([-0.1, 0.32])])
    assert scale.signed and (scale.norm.vmin, scale.norm.vmax) == (-0.4, 0.4)
    red, green, blue, _ = scale(0.0)
    assert min(red, green, blue) > 0.95
    assert scale(-0.4)[2] > scale(-0.4)[0] and scale(0.4)[0] > scale(0.4)[2]
    assert make_scale([np.array([-0.1, 0.3])], limits=(-0.1, 0.3)).norm.vmin == -0.3


def test_lines_are_never_as_pale_as_the_paper():
    for values in ([0.0, 0.9], [-0.9, 0.9]):
        scale = make_scale([np.array(values)], for_lines=True)
        colours = scale(np.linspace(scale.norm.vmin, scale.norm.vmax, 101))[:, :3]
        assert (colours @ [0.2126, 0.7152, 0.0722]).max() < 0.88


def test_colours_run_from_light_to_dark_for_every_eye():
    shades = make_scale([np.array([0.0, 1.0])])(np.linspace(0, 1, 64))[:, :3]
    assert (np.diff(shades @ [0.2126, 0.7152, 0.0722]) < 0).all()


def test_values_outside_of_the_limits_are_pointed_out():
    assert make_scale([np.array([0.1, 0.9])], limits=(0.2, 0.8)).beyond == "both"
    assert make_scale([np.array([0.1, 0.9])], limits=(0.0, 0.8)).beyond == "max"
    assert make_scale([np.array([0.1, 0.9])]).beyond == "neither"
    for wrong in ((1.0, 1.0), (0.0, np.nan), (1.0,) * 3, 0.0):
        with pytest.raises(ValueError, match="lower one first"):
            make_scale([np.array([0.5])], limits=wrong)


@pytest.mark.parametrize("value", [1e-320, 1e-300, 1e300, 1.7e308, 0.0])
def test_scales_of_extreme_values_are_finite(value):
    scale = make_scale([np.array([value])])
    assert np.isfinite([scale.norm.vmin, scale.norm.vmax]).all()
    assert scale.norm.vmin < scale.norm.vmax
    assert plot.shared_top([np.full((2, 2), value)]) >= value


# -- no numbers


@pytest.mark.parametrize("kind", DRAW)
@pytest.mark.parametrize("bad", [np.nan, np.inf, -np.inf])
def test_values_that_are_no_numbers_are_left_out_and_counted(kind, bad):
    values = dataset(3).to_array()
    values[0, 6, 7] = values[1, 0, 1] = bad
    shown = cxc.Dataset.from_array(values, note=dataset().note, sampling_rate=2.0)
    with warnings.catch_warnings():
        warnings.simplefilter("error")
        assert "2 values that are no finite number left out" in words(DRAW[kind](shown)).lower()


@pytest.mark.parametrize("kind", DRAW)
def test_nothing_but_no_numbers_is_refused(kind):
    shown = cxc.Dataset.from_array(np.full((2, 3, 3), np.nan), note="Sensors: 1 O1, 2 O2, 3 Cz")
    with pytest.raises(ValueError, match="no finite value"):
        DRAW[kind](shown)


def test_a_cell_without_a_number_is_grey_and_one_below_the_threshold_white():
    values = np.array([[1.0, 0.9, 0.1], [0.9, 1.0, np.nan], [0.1, np.nan, 1.0]])
    (axes,) = panels(plot.heatmap(values, threshold=0.5))
    assert tuple(cells(axes)[1, 2]) == to_rgba(NEUTRAL)
    assert tuple(cells(axes)[0, 2]) == to_rgba("white")
    assert tuple(cells(axes)[0, 0]) == to_rgba(NEUTRAL)
    assert "Magnitudes below 0.5 are white" in words(plot.heatmap(values[:2, :2], threshold=0.5))
    assert "which are all" in words(plot.heatmap(values[:2, :2], threshold=5.0))


@pytest.mark.parametrize("kind", DRAW)
def test_one_slice_is_enough(kind):
    assert "8 to 13 Hz" in words(DRAW[kind](dataset(1)))


# -- lines


def test_the_strongest_pairs_come_first():
    values = np.array([[1.0, 0.1, 0.9], [0.1, 1.0, 0.5], [0.9, 0.5, 1.0]])
    panel = Panel(values, ["A", "B", "C"], ["A", "B", "C"])
    assert [(line.first, line.second) for line in strongest(panel, 2)] == [(0, 2), (1, 2)]
    assert len(strongest(panel, 9, threshold=0.2)) == 2
    values[2, 0] = -0.95
    assert strongest(panel, 1)[0].value == -0.95


@pytest.mark.parametrize("draw", [plot.circle, plot.head])
def test_the_number_of_lines_and_the_threshold_hold(draw):
    shown = dataset()
    (axes,) = panels(draw(shown, lines=4))
    assert len(curves(axes)) == 4
    mean = shown.to_array().mean(axis=0)[np.triu_indices(9, 1)]
    (axes,) = panels(draw(shown, lines=99, threshold=0.5))
    assert len(curves(axes)) == (mean >= 0.5).sum() > 0
    assert [p.get_linewidth() for p in curves(axes)] == sorted(
        p.get_linewidth() for p in curves(axes)
    )
    figure = draw(shown, threshold=5.0)
    assert curves(panels(figure)[0]) == []
    assert "No pair at or above 5, so no lines" in words(figure)
    with pytest.raises(ValueError, match="at least one line"):
        draw(shown, lines=0)


@pytest.mark.parametrize("draw", [plot.circle, plot.head])
def test_lines_of_nearly_the_same_strength_are_nearly_of_the_same_width(draw):
    values = np.zeros((1, 9, 9))
    for first, second, value in ((0, 1, 0.5), (2, 3, 0.45), (4, 5, 0.25), (6, 7, 0.1)):
        values[0, first, second] = values[0, second, first] = value
    about = "Sensors: " + ", ".join(f"{n} {label}" for n, label in enumerate(SITES, 1))
    shown = cxc.Dataset.from_array(values, note=about)

    def widths(count):
        drawn = [p.get_linewidth() for p in curves(panels(draw(shown, lines=count))[0])]
        return [width / drawn[-1] for width in reversed(drawn)]

    assert widths(2) == pytest.approx([1.0, 0.84])
    assert widths(3) == pytest.approx([1.0, 0.84, 0.2])
    # A pair below half of the strongest is the thinnest then.
    assert widths(4) == pytest.approx([1.0, 0.9, 0.5, 0.2])


def test_of_two_directions_the_stronger_is_drawn_and_told():
    values = matrix(4)
    assert "directions" not in words(plot.circle(values))
    values[0, 3] = 2.0
    assert "of the two directions of a pair the stronger one" in words(plot.circle(values))


def test_sensors_stand_on_the_circle_as_on_the_head():
    labels = ["O2", "Fz", "T7", "Fp1", "Pz", "Fp2", "T8", "O1"]
    around = angles(labels)
    x, y = np.cos(around), np.sin(around)
    at = labels.index
    assert y.argmax() == at("Fz") and y.argmin() == at("Pz")
    assert all(x[at(left)] < -0.1 for left in ("Fp1", "T7", "O1"))
    assert all(x[at(right)] > 0.1 for right in ("Fp2", "T8", "O2"))
    for left, right in (("Fp1", "Fp2"), ("T7", "T8"), ("O1", "O2")):
        assert x[at(left)] == pytest.approx(-x[at(right)])
        assert y[at(left)] == pytest.approx(y[at(right)])
    np.testing.assert_allclose(np.diff(np.sort(around)), np.pi / 4)


def test_lines_of_neighbours_stay_near_the_rim_and_of_opposites_cross_the_middle():
    def depth(degrees):
        angle = np.radians(degrees)
        return np.hypot(*bend(np.array([1.0, 0.0]), np.array([np.cos(angle), np.sin(angle)])))

    depths = [depth(degrees) for degrees in (6, 45, 90, 135, 180)]
    assert depths == sorted(depths, reverse=True)
    assert depths[0] > 0.75 and depths[-1] < 1e-6


def test_older_names_of_sites_stand_where_the_newer_ones_do():
    newer = ["F7", "T7", "C3", "P7", "P3", "O1", "F8", "T8", "C4", "P8", "P4", "O2"]
    older = ["F7", "T3", "C3", "T5", "P3", "O1", "F8", "T4", "C4", "T6", "P4", "O2"]
    np.testing.assert_array_equal(angles(older), angles(newer))
    heights = np.sin(angles(older))
    assert heights[older.index("C3")] > heights[older.index("T5")]


# -- the head


def test_sites_lie_on_the_head_where_they_belong():
    labels = ["Cz", "T7", "T8", "Fpz", "Oz", "EEG C3", "fp1", "unknown"]
    places = dict(zip(labels, places_of(labels)))
    assert np.hypot(*places["Cz"]) < 0.1
    assert places["T7"][0] < -0.75 and places["T8"][0] > 0.75
    assert places["Fpz"][1] > 0.75 and places["Oz"][1] < -0.7
    assert all(np.hypot(*places[name]) < 1.0 for name in labels[:-1])
    assert abs(places["T7"][1]) < 0.1 and abs(places["Fpz"][0]) < 0.05
    assert places["T7"][0] < places["EEG C3"][0] < places["Cz"][0]
    assert np.isfinite(places["fp1"]).all() and np.isnan(places["unknown"]).all()


def test_positions_come_from_montages_infos_files_and_mappings(tmp_path):
    import mne

    montage = mne.channels.make_standard_montage("biosemi32")
    wanted = places_of(["Cz", "O1"], montage)
    np.testing.assert_allclose(places_of(["Cz", "O1"], "biosemi32"), wanted)
    info = mne.create_info(["Cz", "O1", "misc"], 100.0, ["eeg", "eeg", "misc"])
    info.set_montage(montage)
    found = places_of(["O1", "misc"], info)
    assert found[0, 1] < -0.5 and np.isnan(found[1]).all()
    raw = mne.io.RawArray(np.zeros((3, 100)), info, verbose="ERROR")
    raw.save(tmp_path / "a_raw.fif", verbose="ERROR")
    np.testing.assert_allclose(places_of(["O1", "misc"], tmp_path / "a_raw.fif"), found, atol=1e-6)
    flat = {"A": (0.5, 0.25), "B": (-0.5, 0.0)}
    np.testing.assert_array_equal(places_of(["B", "A"], flat), [[-0.5, 0.0], [0.5, 0.25]])


def test_sensors_of_a_helmet_are_turned_into_the_head():
    import mne

    info = mne.create_info(["MEG 0111", "MEG 0113"], 100.0, ["mag", "grad"])
    for channel in info["chs"]:
        channel["loc"][:3] = [0.0, 0.0, 0.1]
        channel["coord_frame"] = mne.io.constants.FIFF.FIFFV_COORD_DEVICE
    quarter = np.array([[1, 0, 0, 0], [0, 0, 1, 0], [0, -1, 0, 0], [0, 0, 0, 1.0]])
    info["dev_head_t"] = mne.transforms.Transform("meg", "head", quarter)
    places = places_of(["MEG0111", "MEG 0113"], info)
    np.testing.assert_array_equal(places[0], places[1])
    assert places[0, 1] > 0.8 and abs(places[0, 0]) < 1e-9


@pytest.mark.parametrize("wrong", ["no_such_montage", 5, {"O1": (1.0,)}])
def test_positions_that_are_none_are_refused_in_one_line(wrong):
    with pytest.raises(ValueError) as raised:
        places_of(["O1"], wrong)
    assert "\n" not in str(raised.value)


def test_damaged_position_files_are_refused_in_one_line(tmp_path):
    for name in ("a.fif", "a.elc", "a.edf", "a.sfp"):
        (tmp_path / name).write_bytes(b"no such thing\n" * 3)
        with pytest.raises((ValueError, OSError)) as raised:
            places_of(["O1"], tmp_path / name)
        assert "\n" not in str(raised.value)


def test_sensors_without_position_are_listed_and_not_fatal():
    shown = dataset(labels=["Fp1", "X1", "O1", "O2", "X2"])
    for draw in (plot.head, DRAW["seed"]):
        with pytest.warns(UserWarning, match="without position and not shown: X1, X2"):
            figure = draw(shown, **({"bars": False} if draw is not plot.head else {}))
        assert "ithout position and not shown: X1, X2" in words(figure)
    with pytest.warns(UserWarning):
        (axes,) = panels(plot.head(shown, lines=99))
    assert len(curves(axes)) == 3


def test_no_positions_at_all_give_one_clear_line_or_bars():
    shown = dataset(labels=["A", "B", "C", "D"])
    with pytest.raises(ValueError, match="fewer than two sensors have a position; give them"):
        plot.head(shown)
    figure = plot.seed(shown, sensor="B")
    (axes,) = panels(figure)
    mean = shown.to_array().mean(axis=0)[1, [0, 2, 3]]
    assert [bar.get_width() for bar in axes.patches] == pytest.approx(sorted(mean, reverse=True))
    assert "too few sensors have positions for a map" in words(figure).lower()


# -- seeds


def test_a_seed_map_goes_through_the_values_at_the_sensors():
    labels = ["Fz", "Cz", "Pz", "C3", "C4", "Oz", "T7", "T8"]
    values = matrix(8)
    shown = plot.seed(values, sensor="Cz", labels=labels, limits=(0.0, 1.0))
    (axes,) = panels(shown)
    picture = cells(axes)
    left, right, bottom, top = axes.images[0].get_extent()
    scale = make_scale([], limits=(0.0, 1.0), signed=False)
    for name, (x, y) in zip(labels, places_of(labels)):
        if name == "Cz":
            continue
        column = round((x - left) / (right - left) * (picture.shape[1] - 1))
        row = round((y - bottom) / (top - bottom) * (picture.shape[0] - 1))
        near = picture[row, column]
        at = np.abs(scale(np.linspace(0, 1, 501)) - near).sum(axis=1).argmin() / 500
        assert at == pytest.approx(values[1, labels.index(name)], abs=0.02)
    with pytest.raises(ValueError, match="there is no sensor 'Q'; there are Fz, Cz"):
        plot.seed(values, sensor="Q", labels=labels)
    with pytest.raises(ValueError, match="count from 0 to 7"):
        plot.seed(values, sensor=8, labels=labels)


def test_a_map_never_leaves_the_range_of_the_sensors():
    from cxc.plot_head import _surface

    where = np.random.default_rng(1).uniform(-0.8, 0.8, (12, 2))
    what = np.zeros(12)
    what[3] = 1.0
    surface = _surface(where, what, 1.0)
    assert surface.min() == 0.0 and surface.max() <= 1.0
    assert _surface(where[:3], what[:3], 1.0) is None
    assert _surface(where * [1, 0], what, 1.0) is None


def test_many_bars_are_cut_to_the_strongest():
    figure = plot.seed(matrix(90), sensor=4)
    assert len(panels(figure)[0].patches) == 60
    assert "strongest 60 of 89 sensors" in words(figure)


# -- time


def test_a_course_has_the_values_over_time():
    shown = dataset()
    figure = plot.course(shown, pairs=[("O1", "o2"), (0, 1)])
    (axes,) = panels(figure)
    array = shown.to_array()
    np.testing.assert_array_equal(axes.lines[0].get_xdata(), 1.0 + np.arange(7) / 2)
    np.testing.assert_array_equal(axes.lines[0].get_ydata(), array[:, 6, 7])
    np.testing.assert_array_equal(axes.lines[1].get_ydata(), array[:, 0, 1])
    assert axes.get_xlabel() == "time [s]"
    assert {"O1 \u2013 O2", "Fp1 \u2013 Fp2"} <= set(words(figure).split("\n"))


def test_without_pairs_the_strongest_are_taken():
    shown = dataset()
    mean = shown.to_array().mean(axis=0)
    rows, columns = np.triu_indices(9, 1)
    best = np.argsort(-mean[rows, columns])[:3]
    (axes,) = panels(plot.course(shown, lines=3))
    for line, at in zip(axes.lines, best):
        np.testing.assert_array_equal(
            line.get_ydata(), shown.to_array()[:, rows[at], columns[at]]
        )


def test_a_group_has_its_mean_in_a_band_of_minimum_and_maximum():
    held = group()
    figure = plot.course(held, pairs=[(0, 1), (2, 3)])
    assert len(panels(figure)) == 2
    stack = np.stack([data.to_array()[:5, 2, 3] for data in held])
    axes = panels(figure)[1]
    np.testing.assert_allclose(axes.lines[0].get_ydata(), stack.mean(axis=0))
    corners = axes.collections[0].get_paths()[0].vertices
    for t in range(5):
        at = corners[np.isclose(corners[:, 0], 1.0 + t / 2), 1]
        assert at.min() == pytest.approx(stack[:, t].min())
        assert at.max() == pytest.approx(stack[:, t].max())
    assert "First 5 slices, which all datasets have" in words(figure)


def test_courses_have_one_value_axis_or_each_its_own():
    held = cxc.Group(
        cxc.Dataset.from_array(np.full((3, 3, 3), value) * [[0, 1, 8], [1, 0, 1], [8, 1, 0]])
        for value in (0.1, 0.11)
    )
    pairs = [(0, 1), (0, 2)]
    first, second = panels(plot.course(held, pairs=pairs))
    assert first.get_ylim() == second.get_ylim()
    own = plot.course(held, pairs=pairs, shared=False)
    own.draw_without_rendering()
    first, second = panels(own)
    assert first.get_ylim()[1] < 0.2 and second.get_ylim()[1] > 0.8
    assert first.get_xlim() == second.get_xlim()


def test_a_group_of_different_sensors_has_no_course():
    held = cxc.Group([dataset(), dataset(labels=SITES[:4])])
    with pytest.raises(ValueError, match="differ in their sensors"):
        plot.course(held)
    assert len(panels(plot.heatmap(held))) == 2


def test_a_package_has_its_conditions_in_each_panel():
    held = package()
    figure = plot.course(held, pairs=[("O1", "O2")])
    (axes,) = panels(figure)
    np.testing.assert_array_equal(axes.lines[0].get_ydata(), held.active.to_array()[:, 6, 7])
    assert set(axes.lines[1].get_ydata()) == {held.control.value(0, 6, 7)}
    assert [text.get_text() for text in figure.legends[0].get_texts()] == ["Active", "Control"]


def test_multiples_are_spread_over_the_slices_and_have_one_scale():
    shown = dataset(50)
    figure = plot.multiples(shown, limits=(0.0, 1.0), count=5)
    assert len(panels(figure)) == 5 and len(bars(figure)) == 1
    for axes, t in zip(panels(figure), (0, 12, 24, 37, 49)):
        expected = make_scale([], limits=(0.0, 1.0), signed=False)(shown.value(t, 0, 1))
        np.testing.assert_allclose(cells(axes)[0, 1], expected)
        assert f"{1 + t / 2:.4g} s" in [text.get_text() for text in axes.texts]
    assert len(panels(plot.multiples(shown))) == 12
    assert len(panels(plot.multiples(package(), of="circle"))) == 6 + 1 + 6
    assert len(panels(plot.multiples(group(), of="head", count=2))) == 6
    with pytest.raises(ValueError, match="multiples of heat, circle or head"):
        plot.multiples(shown, of="pie")


# -- words


def test_names_with_signs_of_formulas_and_long_ones_are_shown_as_they_are(tmp_path):
    shown = dataset(labels=["$a_b$", "\\frac{", "O1", "x" * 40], name="$\\frac$ " + "long " * 60)
    for kind in ("heat", "circle", "course"):
        figure = DRAW[kind](shown, tmp_path / "a.png")
        width = figure.get_size_inches()[0] * figure.dpi
        renderer = figure.canvas.get_renderer()
        for text in figure.texts:
            assert text.get_window_extent(renderer).x1 <= width, text.get_text()


def test_titles_and_quantities_can_be_given():
    text = words(plot.circle(dataset(), title="My title", subtitle="Below", quantity="What"))
    assert "My title" in text and "Below" in text and "What" in text and "a name" not in text


def _overlaps(figure):
    """Titles, captions, axes and bars that lie over each other or leave the picture."""
    figure.canvas.draw()
    renderer = figure.canvas.get_renderer()
    boxes = [(text.get_text(), text.get_window_extent(renderer)) for text in figure.texts]
    boxes += [(f"axes {n}", a.get_window_extent(renderer)) for n, a in enumerate(figure.axes)]
    boxes = [(name, box) for name, box in boxes if name and box.width > 0]
    page = figure.bbox
    for name, box in boxes:
        if box.x0 < -1 or box.y0 < -1 or box.x1 > page.x1 + 1 or box.y1 > page.y1 + 1:
            yield f"{name} leaves the picture"
    for n, (name, box) in enumerate(boxes):
        for other, around in boxes[n + 1 :]:
            if min(box.x1, around.x1) - max(box.x0, around.x0) > 1 and (
                min(box.y1, around.y1) - max(box.y0, around.y0) > 1
            ):
                yield f"{name} lies over {other}"


@pytest.mark.parametrize("source", SOURCES)
@pytest.mark.parametrize("kind", DRAW)
def test_nothing_lies_over_another_thing(kind, source):
    options = {"threshold": 0.1} if kind in ("heat", "circle", "head", "multiples") else {}
    assert list(_overlaps(DRAW[kind](SOURCES[source](), **options))) == []


def test_what_a_group_has_made_of_its_datasets_is_no_further_subject():
    held = cxc.Group([dataset(5, seed=1), dataset(5, seed=2)])
    held.average()
    held.summary()
    assert len(held) == 6
    assert len(panels(plot.heatmap(held))) == 2
    assert "mean of 2, minimum to maximum" in legend_of(plot.course(held, pairs=[("Cz", "O1")]))
    results = cxc.Group(held[2:])
    assert len(panels(plot.heatmap(results))) == 4


def legend_of(figure):
    return [text.get_text() for legend in figure.legends for text in legend.get_texts()]
