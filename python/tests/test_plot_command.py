"""python -m cxc plot: a picture of any file."""

import numpy as np
import pytest

import cxc
from cxc import plot
from cxc.cli import PICTURES, main
from test_plot import dataset, group, package


@pytest.fixture
def files(tmp_path, monkeypatch):
    monkeypatch.chdir(tmp_path)
    dataset().save("one.cxc")
    package().save("subject.cxcpkg")
    group().save("all.cxcgrp")
    return tmp_path


def run(capsys, *arguments):
    code = main(["plot", *arguments])
    said = capsys.readouterr()
    return code, said.out, said.err


def test_every_picture_has_its_command():
    assert PICTURES == tuple(plot.KINDS)


def test_files_are_told_apart_by_what_is_in_them(files):
    (files / "one.cxc").rename(files / "x.bin")
    assert isinstance(cxc.open("x.bin"), cxc.Dataset)
    assert isinstance(cxc.open("subject.cxcpkg"), cxc.Package)
    assert isinstance(cxc.open(files / "all.cxcgrp"), cxc.Group)


def test_magics_of_8_bit_characters_are_known_too(files):
    narrow = bytes([10]) + b"SNSCOHFACE"
    bytes_of = (files / "subject.cxcpkg").read_bytes()
    (files / "narrow.cxcpkg").write_bytes(narrow + bytes_of[4 + 2 * 10 :])
    assert cxc.open("narrow.cxcpkg").name == "subject 1"


@pytest.mark.parametrize(
    "content", [b"", b"\xff", b"\xff\xfe\xff\x40", b"text", b"\xff\xfe\xff\xff"]
)
def test_files_of_no_kind_are_refused(files, content):
    (files / "none").write_bytes(content)
    with pytest.raises((cxc.CxcError, OSError)):
        cxc.open("none")


@pytest.mark.parametrize("kind", ["heat", "circle", "head", "course", "multiples"])
@pytest.mark.parametrize("source", ["one.cxc", "subject.cxcpkg", "all.cxcgrp"])
def test_every_kind_of_every_file_is_drawn(files, capsys, kind, source):
    assert run(capsys, kind, source, "-o", "a.png") == (0, f"a.png: {kind} of {source}\n", "")
    assert (files / "a.png").read_bytes().startswith(b"\x89PNG")


def test_the_picture_lies_here_under_the_name_of_the_file(files, capsys):
    assert run(capsys, "heat", str(files / "one.cxc"))[0] == 0
    assert (files / "one.png").exists()


def test_options_reach_the_picture(files, capsys, monkeypatch):
    seen = {}

    def draw(source, path, **options):
        seen.update(options, path=path, kind=type(source).__name__)

    monkeypatch.setitem(plot.KINDS, "seed", draw)
    code, _, _ = run(
        capsys, "seed", "all.cxcgrp", "-o", "s.svg", "--sensor", "Cz", "--slices", "1-3",
        "--limits", "0", "0.5", "--positions", "standard_1020", "--title", "T", "--dpi", "72",
        "--separate", "--force",
    )  # fmt: skip
    assert code == 0
    assert seen == {
        "kind": "Group", "path": "s.svg", "sensor": "Cz", "slices": slice(1, 4),
        "limits": [0.0, 0.5], "positions": "standard_1020", "title": "T", "dpi": 72,
        "shared": False, "overwrite": True,
    }  # fmt: skip


@pytest.mark.parametrize(
    "given, taken", [("2", 2), ("0-3", slice(0, 4)), ("2-2", slice(2, 3))]
)
def test_slices_are_counted_from_0_and_both_ends_belong(files, capsys, monkeypatch, given, taken):
    seen = {}
    monkeypatch.setitem(plot.KINDS, "heat", lambda source, path, **options: seen.update(options))
    assert run(capsys, "heat", "one.cxc", "--slices", given)[0] == 0
    assert seen["slices"] == taken


def test_what_cannot_be_drawn_is_one_line_and_leaves_nothing(files, capsys):
    def refused(*arguments):
        code, out, err = run(capsys, *arguments)
        assert (code, out, err.count("\n")) == (1, "", 1)
        assert not (files / "x.png").exists()
        return err

    to = ("-o", "x.png")
    assert "no such file" in refused("heat", "missing.cxc", *to).lower()
    assert "seed needs --sensor" in refused("seed", "one.cxc", *to)
    assert "there is no sensor 'Q9'" in refused("seed", "one.cxc", *to, "--sensor", "Q9")
    assert "heat has no --lines" in refused("heat", "one.cxc", *to, "--lines", "3")
    assert "heat has no --pair" in refused("heat", "one.cxc", *to, "--pair", "Cz", "O1")
    assert "no such slices" in refused("heat", "one.cxc", *to, "--slices", "9")
    assert "limits are two numbers" in refused("heat", "one.cxc", *to, "--limits", "1", "0")
    assert "pictures end with" in refused("heat", "one.cxc", "-o", "x.bmp")
    (files / "taken.png").write_bytes(b"mine")
    assert "exists already; --force" in refused("heat", "one.cxc", "-o", "taken.png")
    assert (files / "taken.png").read_bytes() == b"mine"


def test_wrong_usage_is_code_2(files):
    for wrong in (["pie", "one.cxc"], ["heat", "one.cxc", "--slices", "a"],
                  ["heat", "one.cxc", "--slices", "1", "--time", "0", "1"]):  # fmt: skip
        with pytest.raises(SystemExit) as ended:
            main(["plot", *wrong])
        assert ended.value.code == 2


def test_a_course_of_given_pairs_is_drawn(files, capsys):
    code, _, err = run(capsys, "course", "one.cxc", "--pair", "Cz", "O1", "--pair", "C3", "C4")
    assert (code, err) == (0, "")
    assert np.asarray(plot.course(cxc.open("one.cxc"), pairs=[("Cz", "O1")]).axes).size
