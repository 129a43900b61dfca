"""CSV, read by csv and pandas; GraphML, read by networkx."""

import csv

import networkx
import numpy as np
import pandas
import pytest
from exchange_data import LABELS, make_dataset

import cxc
from cxc import exchange


def test_csv_is_row_by_row_with_every_digit(tmp_path):
    path, dataset = str(tmp_path / "a.csv"), make_dataset()
    exchange.to_csv(dataset, path)
    with open(path, encoding="utf-8", newline="") as text:
        lines = list(csv.DictReader(text))
    assert lines[4] == {
        "slice": "1", "latency": "2.0", "row": "1", "column": "2", "row_channel": "11",
        "column_channel": "12", "value": repr(dataset.value(1, 0, 1)), "from": "Fp1",
        "to": "Cz, ref",
    }  # fmt: skip
    assert len(lines) == 3 * 4 * 4


def test_pandas_reads_the_matrix_back(tmp_path):
    path, dataset = str(tmp_path / "a.csv"), make_dataset()
    exchange.to_csv(dataset, path)
    table = pandas.read_csv(path, float_precision="round_trip")
    np.testing.assert_array_equal(
        table["value"].to_numpy().reshape(4, 4, 3).transpose(2, 0, 1), dataset.to_array()
    )
    second = table[table["slice"] == 1].pivot(index="from", columns="to", values="value")
    assert second.loc["Cz, ref", "Fp1"] == dataset.value(1, 1, 0)


@pytest.mark.parametrize("columns", [[1, 2, 3], [2, 3]])
def test_csv_names_rows_and_columns_that_are_not_the_same_sensors(tmp_path, columns):
    whole, path = make_dataset(), str(tmp_path / "a.csv")
    exchange.to_csv(whole.select(rows=[0, 1], columns=columns), path)
    table = pandas.read_csv(path, float_precision="round_trip")
    assert len(table) == 3 * 2 * len(columns)
    for line in table.itertuples(index=False, name=None):
        told = dict(zip(table.columns, line))
        row, column = LABELS.index(told["from"]), LABELS.index(told["to"])
        assert told["value"] == whole.value(told["slice"], row, column)
        assert (told["row_channel"], told["column_channel"]) == (11 + row, 11 + column)


def test_csv_leaves_latencies_out_where_there_is_no_rate(tmp_path):
    path = tmp_path / "a.csv"
    exchange.to_csv(cxc.Dataset.from_array(np.array([[[0.5, 2.0], [3.0, 4.0]]])), str(path))
    lines = [line.split(",") for line in path.read_text().splitlines()]
    assert lines[2][:4] == ["0", "", "1", "2"] and lines[2][6:] == ["2.0", "1", "2"]


def graph_of(dataset, tmp_path, **options):
    path = str(tmp_path / "a.graphml")
    exchange.to_graphml(dataset, path, **options)
    return networkx.read_graphml(path)


def test_graphml_keeps_sensors_without_an_edge(tmp_path):
    graph = graph_of(make_dataset(), tmp_path)
    assert graph.is_directed()
    assert [graph.nodes[n]["label"] for n in ("1", "2", "3", "4")] == LABELS
    assert [graph.nodes[n]["channel"] for n in graph] == [11, 12, 13, 14]
    assert list(networkx.isolates(graph)) == ["4"]


def test_graphml_edges_run_from_the_row_to_the_column(tmp_path):
    graph = graph_of(make_dataset(), tmp_path)
    mean = make_dataset().to_array().mean(axis=0)
    for r in range(3):
        for c in range(3):
            if r != c:
                assert graph.edges[str(r + 1), str(c + 1)]["weight"] == mean[r, c]
    assert graph.number_of_edges() == 6
    assert graph.graph["pair_order"].startswith("edges run from the row sensor")
    assert (graph.graph["band_low"], graph.graph["band_high"]) == (8.0, 13.0)
    assert graph.graph["name"] == "alpha & <more>"
    assert graph.graph["computation"] == make_dataset().note


def test_graphml_is_the_mean_of_the_selected_slices(tmp_path):
    dataset = make_dataset()
    dataset.selection = (1, 2)
    graph = graph_of(dataset, tmp_path)
    assert graph.edges["2", "1"]["weight"] == dataset.to_array()[1:].mean(axis=0)[1, 0]
    assert graph.graph["slices"] == "mean of 1 to 2, counted from 0"


def test_graphml_leaves_out_what_is_within_the_threshold(tmp_path):
    dataset = cxc.Dataset.from_array(
        np.array([[[9.0, 0.5, -0.6], [np.nan, 9.0, np.inf], [0.4, -np.inf, 9.0]]])
    )
    graph = graph_of(dataset, tmp_path, threshold=0.5)
    weights = networkx.get_edge_attributes(graph, "weight")
    assert np.isnan(weights.pop(("2", "1")))
    assert weights == {("1", "3"): -0.6, ("2", "3"): np.inf, ("3", "2"): -np.inf}


@pytest.mark.parametrize("label", ["a\x01b", "]]>", "<&>\"'", "\uffff", "中"])
def test_graphml_bears_any_name(tmp_path, label):
    dataset = make_dataset(note=f"Sensors: 1 {label}, 2 b, 3 c, 4 d")
    told = graph_of(dataset, tmp_path).nodes["1"]["label"]
    assert told == label.replace("\x01", "?").replace("\uffff", "?")
