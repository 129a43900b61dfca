"""The documents are run as they are written: tutorial, exchange formats."""

import os
import pathlib
import re
import shutil

import pytest
from documents import Block, blocks_of, environment, files_of, missing_programs, run

DOCS = pathlib.Path(__file__).resolve().parents[2] / "docs"
OWN = "9. Your recordings"  # the section of the tutorial that needs some
RECORDINGS = "CXC_RECORDINGS"


def document(name):
    return (DOCS / name).read_text(encoding="utf-8")


def tutorial(own):
    text = document("tutorial.md")
    assert text.count("## " + OWN) == 1
    before, after = text.split("## " + OWN)
    return f"## {OWN}{after}" if own else before


def must_exist(text, folder):
    named = files_of(text)
    assert named
    for name in sorted(named):
        path = folder / name
        assert path.is_file() and path.stat().st_size > 0, f"{name} is named, but not made"
        content = path.read_bytes()
        assert content.startswith(_BEGINNINGS.get(path.suffix, b"")), name
        assert path.suffix not in _PICTURES or len(content) > 5000, f"{name} is hardly a picture"


_BEGINNINGS = {
    ".png": b"\x89PNG", ".pdf": b"%PDF", ".svg": b"<?xml", ".html": b"<!DOCTYPE", ".npz": b"PK",
    ".npy": b"\x93NUMPY", ".nc": b"\x89HDF", ".mat": b"MATLAB 5.0",
}  # fmt: skip
_PICTURES = (".png", ".pdf", ".svg")


def test_the_tutorial_does_what_it_says_and_shows(tmp_path):
    text = tutorial(own=False)
    run(blocks_of(text), tmp_path, environment(tmp_path))
    must_exist(text, tmp_path)


@pytest.mark.skipif(RECORDINGS not in os.environ, reason=f"{RECORDINGS} names no folder")
def test_the_tutorial_works_on_recordings(tmp_path):
    own = tutorial(own=True)
    saved = [block for block in blocks_of(tutorial(own=False)) if block.name]
    run([*saved, *blocks_of(own)], tmp_path, environment(tmp_path))
    must_exist(own, tmp_path)


def sections():
    return list(dict.fromkeys(block.section for block in blocks_of(document("exchange.md"))))


def section(name):
    return [block for block in blocks_of(document("exchange.md")) if block.section == name]


@pytest.fixture(scope="module")
def prepared(tmp_path_factory):
    """What the first section makes, which the others start from."""
    folder = tmp_path_factory.mktemp("exchange")
    run(section(sections()[0]), folder, environment(folder))
    return folder


@pytest.mark.parametrize("name", sections()[1:])
def test_a_format_is_exchanged_as_written(prepared, tmp_path, name):
    blocks = section(name)
    lacking = missing_programs(blocks)
    if lacking:
        pytest.skip(f"{', '.join(lacking)} is not installed")
    shutil.copy(prepared / "alpha.cxc", tmp_path)
    run(blocks, tmp_path, environment(tmp_path))
    text = document("exchange.md")
    part = text.split(f"## {name}\n")[1].split("\n## ")[0]
    must_exist(part, tmp_path)


def test_every_format_has_a_section_of_its_own():
    from cxc.exchange import _READERS, _WRITERS

    told = " ".join(sections())
    for ending in {*_READERS, *_WRITERS} - {".cxc", ".hdf5"}:
        assert ending in told, ending


@pytest.mark.parametrize("name", ["tutorial.md", "exchange.md"])
def test_pictures_and_pages_that_are_linked_are_there(name):
    links = re.findall(r"\]\(([^)#]+)", document(name))
    for link in links:
        assert (DOCS / link).is_file(), link


# -- the runner itself


def block(language, text, name="", joined=True):
    return Block(language, name, text, 1, "", joined)


def test_a_block_that_fails_is_told(tmp_path):
    for blocks, words in [
        ([block("sh", "false\ntrue")], "ended with 1"),
        ([block("sh", "false | cat")], "ended with 1"),
        ([block("sh", "cxc info no.cxc")], "ended with 1"),
        ([block("python", "import cxc\ncxc.open('no.cxc')")], "FileNotFoundError"),
        ([block("sh", "echo a warning >&2")], "a warning"),
        ([block("sh", "echo 1"), block("text", "2\n")], "shown is not what came:\n1"),
        ([block("sh", "echo 1"), block("text", "1\n", joined=False)], "shown is not"),
        ([block("sh", "printf '1\\n2\\n'"), block("text", "1\n")], "shown is not"),
        ([block("", "ls")], "cannot run ''"),
    ]:
        folder = tmp_path / str(len(os.listdir(tmp_path)))
        folder.mkdir()
        with pytest.raises(AssertionError, match=re.escape(words)):
            run(blocks, folder, environment(folder))


def test_lines_may_be_left_out_of_what_is_shown(tmp_path):
    variables = environment(tmp_path)
    for shown in ("1\n...\n5\n", "1\n2\n3\n...\n", "...\n4\n5\n", "...\n"):
        run([block("sh", "seq 5"), block("text", shown)], tmp_path, variables)
    for shown in ("1\n...\n", "2\n...\n2\n"):
        with pytest.raises(AssertionError):
            run([block("sh", "echo 2\necho 1"), block("text", shown)], tmp_path, variables)


def test_what_has_been_shown_is_not_shown_again(tmp_path):
    blocks = [block("sh", "echo 1"), block("text", "1\n"), block("sh", "echo 2")]
    run([*blocks, block("text", "2\n")], tmp_path, environment(tmp_path))


def test_fences_are_found_with_name_section_and_neighbour():
    text = "# A\n## B\n```sh\nls\n```\n```python x.py\n1\n```\n\n```text\n2\n```\n"
    assert blocks_of(text) == [
        Block("sh", "", "ls\n", 3, "B", False),
        Block("python", "x.py", "1\n", 6, "B", True),
        Block("text", "", "2\n", 10, "B", False),
    ]


def test_named_files_are_found_and_missing_ones_told(tmp_path):
    text = "`a.cxc` and `x --y` ```\n```sh\ncxc \"b/c.png\" $d.nc *.mat .cxc\n```\n"
    assert files_of(text) == {"a.cxc", "b/c.png"}
    (tmp_path / "a.cxc").write_text("x")
    with pytest.raises(AssertionError, match="b/c.png is named"):
        must_exist(text, tmp_path)
    (tmp_path / "b").mkdir()
    (tmp_path / "b" / "c.png").write_bytes(b"GIF89")
    with pytest.raises(AssertionError):
        must_exist(text, tmp_path)
