"""The command line: python -m cxc COMMAND.

Exit codes: 0 done, 1 an error told in one line on standard error, 2 wrong usage, 130 interrupted,
141 nobody reads the output any more.
"""

from __future__ import annotations

import argparse
import functools
import os
import re
import sys
import warnings
from typing import Iterable, Iterator, Sequence

from ._core import CxcError
from .errors import CommandError
from .files import check_output

# The keys of plot.KINDS, which is loaded when a picture is drawn.
PICTURES = ("heat", "circle", "head", "seed", "course", "multiples")


def main(arguments: Sequence[str] | None = None) -> int:
    _have_streams()
    _bear_any_text()
    options = _parser().parse_args(arguments)
    try:
        with warnings.catch_warnings():
            warnings.showwarning = _show_warning
            warnings.simplefilter("always", UserWarning)
            options.run(options)
            sys.stdout.flush()
        return 0
    except BrokenPipeError:
        return _end_quietly()
    except (CommandError, CxcError) as error:
        return _complain(str(error))
    except OSError as error:
        name = f"{error.filename}: " if error.filename else ""
        return _complain(f"{name}{error.strerror or error}")
    except MemoryError:
        return _complain("not enough memory")
    except KeyboardInterrupt:
        _complain("interrupted")
        return 130


def _have_streams() -> None:
    """Those that were closed before the start swallow what is written."""
    for name in ("stdout", "stderr"):
        if getattr(sys, name) is None:
            setattr(sys, name, open(os.devnull, "w", encoding="utf-8"))


def _bear_any_text() -> None:
    """Names in files may hold characters that the terminal's encoding lacks."""
    for stream in (sys.stdout, sys.stderr):
        if hasattr(stream, "reconfigure"):
            stream.reconfigure(errors="backslashreplace")


def _end_quietly() -> int:
    """The reader of our output has gone, as `head` does; nothing is left to say to it."""
    # The interpreter flushes once more at its end.
    os.dup2(os.open(os.devnull, os.O_WRONLY), sys.stdout.fileno())
    return 141  # as a program that the signal of a closed pipe ends


def _printable(text: str) -> str:
    """A file's text without what would steer the terminal."""
    return "".join(c if c.isprintable() else f"\\x{ord(c):02x}" for c in text)


def _complain(message: str) -> int:
    print("cxc: " + _printable(" ".join(message.split())), file=sys.stderr)
    return 1


def _show_warning(message, category, filename, lineno, file=None, line=None) -> None:
    print(f"cxc: warning: {_printable(str(message))}", file=sys.stderr)


def progress(items: Iterable, total: int, unit: str = "slice") -> Iterator:
    """A bar on a terminal, silence elsewhere."""
    if not sys.stderr.isatty():
        return iter(items)
    from tqdm import tqdm

    return iter(tqdm(items, total=total, unit=unit, leave=False))


def _parser() -> argparse.ArgumentParser:
    parser = argparse.ArgumentParser(
        prog="python -m cxc", description="Channel-by-channel coherence of MEG and EEG."
    )
    commands = parser.add_subparsers(metavar="COMMAND", required=True)
    for add in (
        _add_compute, _add_study, _add_info, _add_plot, _add_page, _add_convert, _add_simulate,
        _add_demo,
    ):  # fmt: skip
        add(commands)
    return parser


def _add_compute(commands) -> None:
    compute = commands.add_parser(
        "compute", help="coherence of every sensor pair of a recording, as a .cxc file"
    )
    compute.add_argument("recording", help="any recording that MNE reads")
    _add_output(compute, ".cxc", of="recording")
    _add_analysis(compute)
    compute.set_defaults(run=_compute)


def _add_study(commands) -> None:
    study = commands.add_parser(
        "study", help="Active against Control in every subject, then average and summary"
    )
    study.add_argument(
        "source",
        help="a folder of recordings, or a CSV file with the columns subject, active, control",
    )
    study.add_argument("--out", default="study", help="folder for the results; default: study")
    study.add_argument(
        "--active-suffix", default="_2", help="in a folder: end of Active's names; default: _2"
    )
    study.add_argument(
        "--control-suffix", default="_1", help="in a folder: end of Control's names; default: _1"
    )
    study.add_argument(
        "--operation", choices=("subtract", "add", "multiply", "divide"), default="subtract",
        help="Active ... Control; default: subtract",
    )  # fmt: skip
    where = study.add_mutually_exclusive_group()
    where.add_argument(
        "--jobs", type=_count, metavar="N",
        help="subjects computed at a time, each in a process; default: as many as cores",
    )  # fmt: skip
    where.add_argument(
        "--dask", metavar="ADDRESS",
        help="compute on the workers of this Dask scheduler, such as tcp://10.0.0.1:8786; they "
        "read the recordings under the same paths",
    )  # fmt: skip
    earlier = study.add_mutually_exclusive_group()
    earlier.add_argument(
        "--force", action="store_true", help="replace the results of an earlier run"
    )
    earlier.add_argument(
        "--resume", action="store_true",
        help="go on with an earlier run: keep the subjects it has finished with these options",
    )  # fmt: skip
    _add_analysis(study)
    study.set_defaults(run=_study)


def _add_info(commands) -> None:
    info = commands.add_parser("info", help="what a file holds: a dataset, a package or a group")
    info.add_argument("file")
    info.set_defaults(run=_info)


def _add_plot(commands) -> None:
    plot = commands.add_parser(
        "plot", help="a picture of a dataset, a package or a group: .png, .pdf or .svg",
        description="A dataset gives one panel, a package one each for Active, Control and "
        "Act-Ctl, a group one for each dataset, all with one colour scale (Act-Ctl has its own).",
    )  # fmt: skip
    plot.add_argument(
        "kind", choices=PICTURES,
        help="heat: every pair; circle, head: the strongest pairs as lines; seed: one sensor with "
        "all others; course: pairs over time; multiples: single slices beside each other",
    )  # fmt: skip
    plot.add_argument("file", help="a .cxc file, a package or a group")
    _add_output(plot, ".png")
    which = plot.add_mutually_exclusive_group()
    which.add_argument(
        "--slices", type=_slices, metavar="FIRST-LAST",
        help="slices from 0, both included, or one; default: the selected ones",
    )  # fmt: skip
    which.add_argument(
        "--time", nargs=2, type=float, metavar=("BEGIN", "END"), help="slices by latency"
    )
    plot.add_argument(
        "--limits", nargs=2, type=float, metavar=("LOW", "HIGH"),
        help="values at the ends of the colours; default: from the values",
    )  # fmt: skip
    plot.add_argument("--top", type=float, help="the upper limit alone")
    plot.add_argument("--threshold", type=float, help="leave pairs of a smaller magnitude out")
    plot.add_argument("--lines", type=_count, metavar="N", help="number of lines")
    plot.add_argument("--sensor", help="seed: the sensor, by name")
    plot.add_argument(
        "--pair", nargs=2, action="append", metavar=("ROW", "COLUMN"),
        help="course: a pair of sensors, by name; may be given several times",
    )  # fmt: skip
    plot.add_argument(
        "--positions", help="head, seed: a montage of MNE, or a file with one, or a recording"
    )
    plot.add_argument(
        "--of", choices=("heat", "circle", "head"), help="multiples: of which kind; default: heat"
    )
    plot.add_argument("--count", type=_count, metavar="N", help="multiples: number of slices")
    plot.add_argument(
        "--separate", action="store_true", help="a colour scale for each panel"
    )
    plot.add_argument("--title", help="default: the name in the file")
    plot.add_argument("--dpi", type=_count, help="dots per inch of .png; default: 150")
    plot.set_defaults(run=_plot)


def _add_page(commands) -> None:
    page = commands.add_parser(
        "page",
        help="a dataset, package or group as one HTML file to browse: heat maps, circles, courses",
    )
    page.add_argument("file", help="a dataset, a package or a group")
    _add_output(page, ".html")
    page.add_argument(
        "--limits", nargs=2, type=float, metavar=("LOW", "HIGH"),
        help="values at the ends of the colours; default: those of all datasets",
    )  # fmt: skip
    page.add_argument(
        "--difference-limits", nargs=2, type=float, metavar=("LOW", "HIGH"),
        help="the same for Act-Ctl of a package",
    )  # fmt: skip
    page.set_defaults(run=_page)


def _add_convert(commands) -> None:
    convert = commands.add_parser(
        "convert", help="a dataset to or from netCDF, MATLAB, CSV, GraphML, NumPy: by the endings"
    )
    convert.add_argument("source", help=".cxc, .nc, .h5, .mat, .npy or .npz")
    convert.add_argument("target", help=".cxc, .nc, .h5, .mat, .csv, .graphml or .npz")
    convert.add_argument("--force", action="store_true", help="replace an existing output")
    convert.set_defaults(run=_convert)


def _add_simulate(commands) -> None:
    simulate = commands.add_parser(
        "simulate", help="recordings of several subjects with known coupling, to try a study on",
        description="Writes NAME_1.fif (Control) and NAME_2.fif (Active) for each subject, always "
        "the same. In 8 to 13 Hz F3-P3 is coupled in both, C3-C4 in Active only and O1-O2 in "
        "Control only; Active of the last subject is shorter.",
    )  # fmt: skip
    simulate.add_argument("folder", help="for the recordings; made when missing")
    simulate.add_argument(
        "--subjects", type=_count, default=10, metavar="N", help="how many; default: 10"
    )
    simulate.add_argument("--force", action="store_true", help="replace existing recordings")
    simulate.set_defaults(run=_simulate)


def _add_demo(commands) -> None:
    demo = commands.add_parser(
        "demo", help="recording, coherence, dataset, file, picture: the whole way"
    )
    demo.add_argument("recording", nargs="?", help="default: a simulated one")
    demo.add_argument("--out", default="out", help="folder for the results; default: out")
    _add_analysis(demo)
    demo.set_defaults(run=_demo)


def _slices(text: str) -> slice | int:
    """FIRST-LAST, both included as everywhere else in the library, or one slice."""
    first, dash, last = text.partition("-")
    return slice(int(first), int(last) + 1) if dash else int(first)


def _add_output(parser: argparse.ArgumentParser, ending: str, of: str = "file") -> None:
    parser.add_argument("-o", "--output", help=f"default: the {of}'s name with {ending}, here")
    parser.add_argument("--force", action="store_true", help="replace an existing output")


def _output_of(options: argparse.Namespace, source: str, ending: str) -> str:
    """Where to write, found out to be writable."""
    stem = os.path.splitext(os.path.basename(os.path.normpath(source)))[0]
    output = options.output or stem + ending
    check_output(output, options.force)
    return output


def _add_analysis(parser: argparse.ArgumentParser) -> None:
    parser.add_argument(
        "--band", nargs=2, type=float, default=(8.0, 13.0), metavar=("LOW", "HIGH"),
        help="frequencies in Hz, both included; default: 8 13",
    )  # fmt: skip
    parser.add_argument("--window", type=float, default=4.0, help="seconds; default: 4")
    parser.add_argument("--step", type=float, default=1.0, help="seconds; default: 1")
    parser.add_argument("--segment", type=float, help="of Welch, in seconds; default: window / 4")
    parser.add_argument(
        "--overlap", type=float, default=0.5, help="of segments, 0 to below 1; default: 0.5"
    )
    parser.add_argument("--taper", default="hann", help="of segments; default: hann")
    parser.add_argument(
        "--picks", choices=("all", "eeg", "meg"), default="all", help="sensors; default: all"
    )


def _count(text: str) -> int:
    count = int(text)
    if count < 1:
        raise argparse.ArgumentTypeError("at least 1")
    return count


def analysis_of(options: argparse.Namespace) -> dict:
    """The options of `compute.compute` that the command line gave."""
    names = ("band", "window", "step", "segment", "overlap", "taper", "picks")
    return {name: getattr(options, name) for name in names}


def _compute(options: argparse.Namespace) -> None:
    from .compute import compute

    output = _output_of(options, options.recording, ".cxc")
    result = compute(options.recording, progress=progress, **analysis_of(options))
    dataset = result.dataset()
    dataset.save(output, overwrite=options.force)
    print(f"{_printable(output)}: {describe(dataset)}")


def _info(options: argparse.Namespace) -> None:
    from .containers import Package
    from .dataset import Dataset
    from .opening import open_file

    held = open_file(options.file)
    if not isinstance(held, Dataset):
        print(f"{_printable(options.file)}: {_printable(repr(held)[1:-1])}")
        places: list[tuple[str | int, Dataset | None]] = []
        if isinstance(held, Package):
            places.extend(held.items())
        else:
            places.extend(enumerate(held))
        for place, dataset in places:
            told = "empty" if dataset is None else f"{dataset.name}: {describe(dataset)}"
            print(f"{place}: {_printable(told)}")
        return
    dataset = held
    low, high = dataset.band
    begin, end = dataset.latency
    print(f"{_printable(options.file)}: {describe(dataset)}")
    print(f"name: {_printable(dataset.name)}")
    print(f"band: {low:g} to {high:g} Hz")
    print(f"slices per second: {dataset.sampling_rate:g}")
    print(f"latency: {begin:g} to {end:g}")
    print(f"sensors: {dataset.type_name}")
    print(f"selected slices: {dataset.selection[0]} to {dataset.selection[1]}")
    if dataset.header.has_grid():
        figures = dataset.statistics()
        print(f"values: {figures['min']:g} to {figures['max']:g}, mean {figures['mean']:g}")
    print("computation:")
    for line in dataset.note.splitlines():
        print("  " + _printable(line))


def _page(options: argparse.Namespace) -> None:
    from .opening import open_file
    from .page import write_page

    output = _output_of(options, options.file, ".html")
    source = open_file(options.file)
    try:
        write_page(
            source, output, limits=options.limits, difference_limits=options.difference_limits,
            overwrite=options.force,
        )  # fmt: skip
    except ValueError as error:
        raise CommandError(f"{options.file}: {error}") from error
    print(f"{_printable(output)}: {describe(source)}")


def _plot(options: argparse.Namespace) -> None:
    from . import plot
    from .opening import open_file

    output = _output_of(options, options.file, ".png")
    given = {
        "slices": options.slices, "time": options.time, "limits": options.limits,
        "top": options.top, "threshold": options.threshold, "lines": options.lines,
        "sensor": options.sensor, "pairs": options.pair, "positions": options.positions,
        "of": options.of, "count": options.count, "title": options.title, "dpi": options.dpi,
    }  # fmt: skip
    wanted = {name: value for name, value in given.items() if value is not None}
    if options.kind == "seed" and options.sensor is None:
        raise CommandError("seed needs --sensor NAME")
    source = open_file(options.file)
    try:
        plot.KINDS[options.kind](
            source, output, shared=not options.separate, overwrite=options.force, **wanted
        )
    except TypeError as error:
        unknown = re.search(r"argument '(\w+)'", str(error))
        if unknown is None:
            raise
        option = "pair" if unknown[1] == "pairs" else unknown[1]
        raise CommandError(f"{options.kind} has no --{option}") from error
    except ValueError as error:
        raise CommandError(f"{options.file}: {error}") from error
    print(f"{_printable(output)}: {options.kind} of {_printable(options.file)}")


def _convert(options: argparse.Namespace) -> None:
    from .exchange import convert

    dataset = convert(options.source, options.target, overwrite=options.force)
    print(f"{_printable(options.target)}: {describe(dataset)}")


def _study(options: argparse.Namespace) -> None:
    from .study import run_study, subjects_of

    subjects = subjects_of(options.source, options.active_suffix, options.control_suffix)
    run_study(
        subjects, options.out, analysis_of(options), options.operation,
        functools.partial(progress, unit="subject"), jobs=options.jobs, dask=options.dask,
        overwrite=options.force, resume=options.resume,
    )  # fmt: skip


def _simulate(options: argparse.Namespace) -> None:
    from .simulate import write_study

    files = write_study(options.folder, options.subjects, options.force)
    count = sum(1 for _ in progress(files, 2 * options.subjects, unit="file"))
    subjects = "1 subject" if options.subjects == 1 else f"{options.subjects} subjects"
    print(f"{_printable(options.folder)}: {count} recordings of {subjects}")


def _demo(options: argparse.Namespace) -> None:
    from .demo import run_demo

    run_demo(options.recording, options.out, analysis_of(options), progress)


def describe(source) -> str:
    """A dataset in words, or how many a package or group holds."""
    if not hasattr(source, "shape"):
        return f"{len(source)} datasets"
    slices, rows, columns = source.shape
    return f"{slices} slices of {rows} x {columns} sensors"
