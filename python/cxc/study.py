"""A whole study: Active against Control in every subject, then the group.

Each subject becomes a package with Active, Control and Act-Ctl; the Act-Ctl datasets of all
become a group with their average and summary. Subjects are computed side by side; the group step
reads one package at a time.
"""

from __future__ import annotations

import contextlib
import csv
import json
import os
import re
import tempfile
import warnings
from dataclasses import asdict
from typing import Any

import numpy as np

from ._core import version
from .across import Summary, group_file
from .compute import strongest_pairs
from .containers import Package
from .dataset import Dataset
from .errors import CommandError
from .files import check_folder, whole_file
from .labels import numbered
from .study_runs import Outcomes, cores, locally, on_dask, package_name
from .study_work import Outcome, Side, Subject, Task, difference

_QUANTITIES = {
    "subtract": "difference of magnitude-squared coherence",
    "add": "sum of magnitude-squared coherence",
    "multiply": "product of magnitude-squared coherence",
    "divide": "ratio of magnitude-squared coherence",
}
# What the results have from the longest subject.
_DESCRIPTION = (
    "band", "latency", "sampling_rate", "channel_type", "channels_a", "channels_b", "note",
)  # fmt: skip
# What has been done, for a run that goes on with it.
_DONE = "subjects.json"
_GROUP_FILES = (
    "group.cxcgrp", "average.cxc", "average-heatmap.png", "average-circle.png", "report.md",
)  # fmt: skip

def subjects_of_folder(
    folder: str, active_suffix: str = "_2", control_suffix: str = "_1"
) -> list[Subject]:
    """Pairs the recordings NAME<suffix>.EXTENSION of a folder, in the order of their names.

    Raises:
        CommandError: no pair, or a recording without its counterpart.
    """
    found: dict[str, dict[str, str]] = {}
    suffixes = {"active": active_suffix, "control": control_suffix}
    try:
        entries = sorted(os.listdir(folder))
    except OSError as error:
        raise CommandError(f"{folder}: {error.strerror}") from error
    for entry in entries:
        stem = os.path.splitext(entry)[0]
        for role, suffix in suffixes.items():
            if stem.endswith(suffix) and len(stem) > len(suffix) and not entry.startswith("."):
                roles = found.setdefault(stem[: -len(suffix)], {})
                if role in roles:
                    raise CommandError(f"{folder}: {entry} is a second {role} recording")
                roles[role] = os.path.join(folder, entry)
    for name, roles in found.items():
        for role, suffix in suffixes.items():
            if role not in roles:
                raise CommandError(f"{folder}: {name} has no {role} recording ({name}{suffix}.*)")
    if not found:
        raise CommandError(
            f"{folder}: no recordings named *{active_suffix}.* and *{control_suffix}.*"
        )
    return [Subject(name, roles["active"], roles["control"]) for name, roles in found.items()]


def subjects_of_csv(path: str) -> list[Subject]:
    """Reads the columns subject, active and control; relative paths start at the CSV's folder.

    Raises:
        CommandError: a column or a value is missing.
    """
    try:
        with open(path, newline="", encoding="utf-8-sig") as file:
            rows = list(csv.DictReader(file))
    except OSError as error:
        raise CommandError(f"{path}: {error.strerror}") from error
    except (UnicodeDecodeError, csv.Error) as error:
        raise CommandError(f"{path}: is not a CSV file: {error}") from error
    folder = os.path.dirname(path)
    subjects = []
    for number, row in enumerate(rows, 2):
        values = {}
        for column in ("subject", "active", "control"):
            values[column] = (row.get(column) or "").strip()
            if not values[column]:
                raise CommandError(f"{path}, line {number}: no {column}")
        subjects.append(
            Subject(
                values["subject"],
                os.path.join(folder, values["active"]),
                os.path.join(folder, values["control"]),
            )
        )
    if not subjects:
        raise CommandError(f"{path}: no subjects")
    return subjects


def subjects_of(source: str, active_suffix: str = "_2", control_suffix: str = "_1"):
    """The subjects of a folder or of a CSV file.

    Raises:
        CommandError: as the two, and for names of which the results would replace each other.
    """
    if os.path.isdir(source):
        subjects = subjects_of_folder(source, active_suffix, control_suffix)
    else:
        subjects = subjects_of_csv(source)
    names = [_file_name(subject.name) for subject in subjects]
    for name in names:
        if names.count(name) > 1:
            raise CommandError(f"{source}: the subject {name} stands more than once")
        if name == "average":
            raise CommandError(f"{source}: the name average is kept for the group's own results")
    return subjects


def run_study(
    subjects: list[Subject],
    out: str,
    options: dict,
    operation: str = "subtract",
    progress=None,
    *,
    jobs: int | None = None,
    dask: str | None = None,
    overwrite: bool = False,
    resume: bool = False,
) -> None:
    """Computes every subject and the group; leaves files, pictures and a report in `out`.

    The files are the same wherever and in whatever order the subjects were computed.

    Args:
        subjects, options: from `subjects_of`, and as `compute` takes them.
        progress: wraps the outcomes (and their number) to show how far the work is.
        jobs: subjects at a time, each in a process; as many as there are cores when None.
        dask: address of a Dask scheduler, whose workers compute instead. They see the recordings
            under the same paths, and have this package.
        overwrite: replace results of an earlier run.
        resume: go on with an earlier run: subjects that it has finished, with the same options
            and recordings, are taken from there.

    Raises:
        CommandError: subjects failed, those that did not being kept; recordings differ in their
            sensors; `out` holds results and neither `overwrite` nor `resume` is set.
    """
    os.makedirs(out, exist_ok=True)
    check_folder(out)
    if not (overwrite or resume):
        _require_free(subjects, out)
    tasks = [Task(_absolute(subject), options, operation) for subject in subjects]
    book = _Book(out, tasks, resume)
    with tempfile.TemporaryDirectory(prefix=".study-", dir=out) as folder:
        left = [task for task in tasks if task.subject.name not in book.outcomes]
        if dask is None:
            coming = locally(left, folder, min(jobs or cores(), max(len(left), 1)))
        else:
            coming = on_dask(left, folder, dask)
        failed = _take_all(coming, left, folder, book, progress)
    if failed:
        kept = f"; the other {len(book.outcomes)} are kept, and --resume goes on with them"
        raise CommandError(
            f"{len(failed)} of {len(tasks)} subjects failed: {', '.join(failed)}"
            + (kept if book.outcomes else "")
        )
    outcomes = [book.outcomes[task.subject.name] for task in tasks]
    _require_same_sensors(outcomes)
    slices, sensors = _Group(outcomes, out).make(operation)
    print(
        f"study: {len(outcomes)} subjects, {sensors} sensors, {slices} slices; results in {out}"
    )


def _absolute(subject: Subject) -> Subject:
    """Other processes may have other folders."""
    return Subject(
        subject.name, os.path.abspath(subject.active), os.path.abspath(subject.control)
    )


def _package_path(out: str, name: str) -> str:
    return os.path.join(out, _file_name(name) + ".cxcpkg")


def _require_free(subjects: list[Subject], out: str) -> None:
    paths = [_package_path(out, subject.name) for subject in subjects]
    paths += [os.path.join(out, name) for name in _GROUP_FILES]
    for path in paths:
        if os.path.lexists(path):
            raise CommandError(
                f"{path}: exists already; --force replaces the results of an earlier run, "
                "--resume goes on with it"
            )


def _take_all(
    coming: Outcomes, tasks: list[Task], folder: str, book: _Book, progress
) -> list[str]:
    """Keeps what comes; returns the names of the subjects that failed, in their order."""
    failed = set()
    with contextlib.closing(coming):
        for number, outcome in progress(coming, len(tasks)) if progress and tasks else coming:
            for text in outcome.warnings:
                warnings.warn(f"{outcome.subject}: {text}", stacklevel=2)
            if outcome.error:
                failed.add(number)
                warnings.warn(f"{outcome.subject} failed: {outcome.error}", stacklevel=2)
            else:
                book.keep(tasks[number], outcome, os.path.join(folder, package_name(number)))
    return [tasks[number].subject.name for number in sorted(failed)]


class _Book:
    """The subjects that are done, in a file of the study's folder."""

    def __init__(self, out: str, tasks: list[Task], resume: bool) -> None:
        self._out = out
        self._path = os.path.join(out, _DONE)
        self._entries: dict[str, dict[str, Any]] = {}
        self.outcomes: dict[str, Outcome] = {}
        if not resume:
            return
        known = self._read()
        for task in tasks:
            name = task.subject.name
            entry = known.get(name)
            if (
                isinstance(entry, dict)
                and entry.get("made_from") == _made_from(task)
                and os.path.isfile(_package_path(out, name))
            ):
                self._entries[name] = entry
                self.outcomes[name] = _outcome_of(entry["outcome"])

    def _read(self) -> dict[str, Any]:
        try:
            with open(self._path, encoding="utf-8") as file:
                known = json.load(file)
        except FileNotFoundError:
            return {}
        except ValueError as error:
            raise CommandError(f"{self._path}: cannot be read: {error}") from error
        return known if isinstance(known, dict) else {}

    def keep(self, task: Task, outcome: Outcome, package: str) -> None:
        """Moves the package of a subject to its place, and remembers the subject."""
        name = task.subject.name
        os.replace(package, _package_path(self._out, name))
        self._entries[name] = {"made_from": _made_from(task), "outcome": asdict(outcome)}
        self.outcomes[name] = outcome
        with whole_file(self._path) as draft, open(draft, "w", encoding="utf-8") as file:
            json.dump(dict(sorted(self._entries.items())), file, indent=1, ensure_ascii=False)


def _made_from(task: Task) -> dict[str, Any]:
    """What must be the same for a package to be the same; as it comes back from JSON."""
    made_from: dict[str, Any] = {
        "cxc": version,
        "operation": task.operation,
        "options": {**task.options, "band": list(task.options["band"])},
    }
    for role, path in (("active", task.subject.active), ("control", task.subject.control)):
        with contextlib.suppress(OSError):
            status = os.stat(path)
            made_from[role] = [path, status.st_size, status.st_mtime_ns]
    return made_from


def _outcome_of(kept: dict[str, Any]) -> Outcome:
    outcome = Outcome(**kept)
    outcome.sides = {role: Side(**side) for role, side in kept["sides"].items()}
    for side in outcome.sides.values():
        side.left_out = [(label, why) for label, why in side.left_out]
    return outcome


def _require_same_sensors(outcomes: list[Outcome]) -> None:
    """The library averages by position, so position must mean the same sensor everywhere."""
    first = outcomes[0]
    for other in outcomes:
        if other.labels != first.labels:
            raise CommandError(
                f"{other.subject} and {first.subject} differ in their sensors: "
                + difference(other.labels, first.labels)
            )


class _Group:
    """The group step: in memory are its results and one subject's package."""

    def __init__(self, outcomes: list[Outcome], out: str) -> None:
        self._outcomes = outcomes
        self._out = out
        self._labels = outcomes[0].labels
        self._means: list[np.ndarray] = []  # of all slices, one for each subject
        self._longest = 0
        self._description: dict[str, Any] = {}

    def make(self, operation: str) -> tuple[int, int]:
        """Writes the group, the average, the pictures and the report.

        Returns slices and sensors of the average.
        """
        sensors, count = len(self._labels), len(self._outcomes)
        slices = max(outcome.slices for outcome in self._outcomes)
        summary = Summary(slices, sensors, sensors)
        path = os.path.join(self._out, "group.cxcgrp")
        with group_file(path, count + 4, name=f"Act-Ctl of {count} subjects") as append:
            for outcome in self._outcomes:
                self._take(outcome, summary, append)
            average = self._results(summary, append)
        average.save(os.path.join(self._out, "average.cxc"))
        overall = _mean_over_time(average)
        self._draw(overall, slices, operation)
        path = os.path.join(self._out, "report.md")
        with whole_file(path) as draft, open(draft, "w", encoding="utf-8") as file:
            file.write("\n".join(self._report(overall, slices, operation)) + "\n")
        return slices, sensors

    def _take(self, outcome: Outcome, summary: Summary, append) -> None:
        path = _package_path(self._out, outcome.subject)
        combined = Package.open(path).act_ctl
        shape = (outcome.slices, len(self._labels), len(self._labels))
        if combined is None or combined.shape != shape:
            raise CommandError(f"{path}: is not what the study wrote; --force computes it again")
        if outcome.slices > self._longest:
            # The results are as long as the longest, and so is their latency.
            self._longest = outcome.slices
            self._description = {name: getattr(combined, name) for name in _DESCRIPTION}
        summary.take(combined)
        append(combined)
        self._means.append(_mean_over_time(combined))

    def _results(self, summary: Summary, append) -> Dataset:
        """Appends average, minimum, mean and maximum; returns the average."""
        count = len(self._outcomes)
        minimum, mean, maximum = summary.finish()
        for made, name, what in (
            (mean, f"Average{count} Result", "Mean"),
            (minimum, f"Cxc{count} Minimum", "Minimum"),
            (mean, f"Cxc{count} Mean", "Mean"),
            (maximum, f"Cxc{count} Max", "Maximum"),
        ):
            made.name = name
            self._describe(made, what)
            append(made)
        mean.name = f"Average{count} Result"
        return mean

    def _describe(self, made: Dataset, what: str) -> None:
        for name, value in self._description.items():
            setattr(made, name, value)
        made.header.largest_slice_count = len(made)
        made.selection = (0, len(made) - 1)
        subjects = ", ".join(outcome.subject for outcome in self._outcomes)
        made.note = (
            f"{what} of {len(self._outcomes)} subjects, value by value: {subjects}\n"
            f"The longest: {self._description['note']}"
        )
        made.data_range()

    def _draw(self, overall: np.ndarray, slices: int, operation: str) -> None:
        from .plot import circle, heatmap, shared_top

        low, high = self._description["band"]
        look = {
            "quantity": _QUANTITIES[operation],
            "signed": operation == "subtract",
            "top": shared_top([*self._means, overall]),
        }
        for outcome, values in zip(self._outcomes, self._means):
            heatmap(
                values,
                self._labels,
                os.path.join(self._out, _file_name(outcome.subject) + "-heatmap.png"),
                title=f"{outcome.subject}: Act-Ctl coherence, {low:g} to {high:g} Hz",
                subtitle=f"mean of {outcome.slices} slices; one scale for the study",
                **look,
            )
        for draw, name in ((heatmap, "average-heatmap.png"), (circle, "average-circle.png")):
            draw(
                overall,
                self._labels,
                os.path.join(self._out, name),
                title=f"Average of {len(self._outcomes)} subjects: Act-Ctl coherence, "
                f"{low:g} to {high:g} Hz",
                subtitle=f"mean of {slices} slices; one scale for the study",
                **look,
            )

    def _report(self, overall: np.ndarray, slices: int, operation: str) -> list[str]:
        outcomes, labels = self._outcomes, self._labels
        lines = ["# Study", "", f"{len(outcomes)} subjects, Active {operation} Control.", ""]
        lines += ["| subject | Active | slices | Control | slices, accumulated |"]
        lines += ["|---|---|---|---|---|"]
        for outcome in outcomes:
            active, control = outcome.sides["active"], outcome.sides["control"]
            lines.append(
                f"| {outcome.subject} | {active.recording} | {active.slices} "
                f"| {control.recording} | {control.slices} |"
            )
        lines += ["", "## Sensors", "", numbered(labels)]
        lines += ["", "## Slices", "", *_lengths(outcomes, slices)]
        lines += ["", "## Left out and without signal", "", *_remarks(outcomes)]
        lines += ["", "## Largest differences, mean of all slices of the average", ""]
        lines += ["| pair | Act-Ctl |", "|---|---|"]
        for first, second, _ in strongest_pairs(np.abs(overall), labels):
            value = overall[labels.index(first), labels.index(second)]
            lines.append(f"| {first} - {second} | {value:+.3f} |")
        return lines


def _mean_over_time(dataset: Dataset) -> np.ndarray:
    """The mean of all slices; the dataset is used up, as a copy of it may not fit in memory."""
    dataset.accumulate_time()
    return dataset.to_array()[0]


def _lengths(outcomes: list[Outcome], longest: int) -> list[str]:
    """Says where the average rests on fewer subjects than it is divided by."""
    counts = {outcome.subject: outcome.slices for outcome in outcomes}
    shorter = {name: count for name, count in counts.items() if count < longest}
    if not shorter:
        return [f"All subjects have {longest} slices."]
    lines = [
        f"The average has {longest} slices and is divided by {len(outcomes)} throughout. "
        "Shorter subjects count as zeros behind their end:",
        "",
    ]
    lines += [
        f"- {name}: {count} slices, zero in slices {count + 1} to {longest}"
        for name, count in shorter.items()
    ]
    return lines


def _remarks(outcomes: list[Outcome]) -> list[str]:
    lines = []
    for outcome in outcomes:
        for side in outcome.sides.values():
            left = ", ".join(f"{label} ({why})" for label, why in side.left_out)
            lines.append(
                f"- {side.recording}: left out {left or 'nothing'}; "
                f"without signal, set to 0: {side.silent or 'nothing'}"
            )
    return lines


def _file_name(name: str) -> str:
    """The subject's name as a part of file names."""
    return re.sub(r"[^\w.-]+", "_", name).strip("._") or "subject"
