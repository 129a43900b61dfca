"""A whole study: Active against Control in every subject, then the group.

Each subject becomes a package with Active, Control and Act-Ctl; the Act-Ctl datasets of all
become a group with their average and summary.
"""

from __future__ import annotations

import csv
import os
import re
from dataclasses import dataclass, field

import numpy as np

from .compute import Computation, compute, strongest_pairs
from .containers import Group, Package
from .dataset import Dataset
from .errors import CommandError
from .files import check_folder, whole_file


@dataclass(frozen=True)
class Subject:
    """One subject's two recordings."""

    name: str
    active: str
    control: str


@dataclass
class Result:
    """What came of one subject."""

    subject: Subject
    package: Package
    combined: Dataset  # the package's Act-Ctl
    active: Computation
    control: Computation
    control_slices: int  # before they were accumulated
    warnings: list[str] = field(default_factory=list)

    @property
    def labels(self) -> list[str]:
        return self.active.recording.labels


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
    subjects: list[Subject], out: str, options: dict, operation: str = "subtract", progress=None
) -> None:
    """Computes every subject and the group; leaves files, pictures and a report in `out`.

    Raises:
        CommandError: a recording does not fit, or subjects differ in their sensors.
    """
    os.makedirs(out, exist_ok=True)
    check_folder(out)
    results = []
    for subject in subjects:
        results.append(_run_subject(subject, options, operation, progress))
        result = results[-1]
        result.package.save(os.path.join(out, _file_name(subject.name) + ".cxcpkg"))
        _require_same_sensors(results[0], result)
    group = Group(result.combined for result in results)
    group.name = f"Act-Ctl of {len(results)} subjects"
    group.current = 0
    average = group.average()
    minimum, mean, maximum = Group(group[: len(results)]).summary()
    group.extend([minimum, mean, maximum])
    group.save(os.path.join(out, "group.cxcgrp"))
    average.save(os.path.join(out, "average.cxc"))
    _draw(results, average, out)
    _report(os.path.join(out, "report.md"), results, average, operation)
    print(
        f"study: {len(results)} subjects, {average.shape[1]} sensors, {len(average)} slices; "
        f"results in {out}"
    )


def _run_subject(subject: Subject, options: dict, operation: str, progress) -> Result:
    active = compute(subject.active, progress=progress, **options)
    control = compute(subject.control, progress=progress, **options)
    if active.recording.labels != control.recording.labels:
        raise CommandError(
            f"{subject.name}: the recordings differ in their sensors: "
            + _difference(active.recording.labels, control.recording.labels)
        )
    active_dataset, control_dataset = active.dataset(), control.dataset()
    package = Package(active_dataset, control_dataset)
    package.name = subject.name
    package.info = f"Active {active.recording.name}, Control {control.recording.name}"
    slices = len(control_dataset)
    combined = package.combine(operation, accumulate_control=True)
    _describe(combined, active_dataset, subject, operation, slices)
    package.current = 2
    return Result(subject, package, combined, active, control, slices)


def _describe(
    combined: Dataset, active: Dataset, subject: Subject, operation: str, slices: int
) -> None:
    """Gives Act-Ctl the description of Active, on which it stands slice by slice."""
    combined.name = f"{subject.name} Act-Ctl"
    combined.band, combined.latency = active.band, active.latency
    combined.sampling_rate = active.sampling_rate
    combined.channel_type = active.channel_type
    combined.header.largest_slice_count = len(combined)
    combined.selection = (0, len(combined) - 1)
    combined.channels_a, combined.channels_b = active.channels_a, active.channels_b
    combined.note = (
        f"Active {operation} Control, Control being the mean of its {slices} slices\n{active.note}"
    )


def _require_same_sensors(first: Result, other: Result) -> None:
    """The library averages by position, so position must mean the same sensor everywhere."""
    if other.labels != first.labels:
        raise CommandError(
            f"{other.subject.name} and {first.subject.name} differ in their sensors: "
            + _difference(other.labels, first.labels)
        )


def _difference(labels: list[str], others: list[str]) -> str:
    only = [label for label in labels if label not in others]
    missing = [label for label in others if label not in labels]
    parts = [f"only the first has {', '.join(only)}"] if only else []
    parts += [f"only the second has {', '.join(missing)}"] if missing else []
    return "; ".join(parts) or "the same sensors in another order"


def _draw(results: list[Result], average: Dataset, out: str) -> None:
    from .plot import circle, heatmap, shared_top

    labels = results[0].labels
    means = [result.combined.to_array().mean(axis=0) for result in results]
    overall = average.to_array().mean(axis=0)
    top = shared_top([*means, overall])
    low, high = average_band(results)
    for result, values in zip(results, means):
        heatmap(
            values,
            labels,
            os.path.join(out, _file_name(result.subject.name) + "-heatmap.png"),
            title=f"{result.subject.name}: Act-Ctl coherence, {low:g} to {high:g} Hz",
            subtitle=f"mean of {len(result.combined)} slices; one scale for the study",
            quantity="difference of magnitude-squared coherence",
            signed=True,
            top=top,
        )
    title = f"Average of {len(results)} subjects: Act-Ctl coherence, {low:g} to {high:g} Hz"
    subtitle = f"mean of {len(average)} slices; one scale for the study"
    quantity = "difference of magnitude-squared coherence"
    heatmap(
        overall, labels, os.path.join(out, "average-heatmap.png"),
        title=title, subtitle=subtitle,
        quantity=quantity, signed=True, top=top,
    )  # fmt: skip
    circle(
        overall, labels, os.path.join(out, "average-circle.png"),
        title=title, subtitle=subtitle, quantity=quantity, signed=True, top=top,
    )  # fmt: skip


def average_band(results: list[Result]) -> tuple[float, float]:
    return results[0].combined.band


def _report(path: str, results: list[Result], average: Dataset, operation: str) -> None:
    labels = results[0].labels
    lines = ["# Study", "", f"{len(results)} subjects, Active {operation} Control.", ""]
    lines += ["| subject | Active | slices | Control | slices, accumulated |"]
    lines += ["|---|---|---|---|---|"]
    for result in results:
        lines.append(
            f"| {result.subject.name} | {result.active.recording.name} "
            f"| {result.active.plan.slices} | {result.control.recording.name} "
            f"| {result.control_slices} |"
        )
    lines += ["", "## Sensors", "", ", ".join(f"{n} {label}" for n, label in enumerate(labels, 1))]
    lines += ["", "## Slices", "", *_lengths(results, len(average))]
    lines += ["", "## Left out and without signal", "", *_remarks(results)]
    lines += ["", "## Largest differences, mean of all slices of the average", ""]
    lines += ["| pair | Act-Ctl |", "|---|---|"]
    overall = average.to_array().mean(axis=0)
    order = strongest_pairs(np.abs(overall), labels)
    for first, second, _ in order:
        value = overall[labels.index(first), labels.index(second)]
        lines.append(f"| {first} - {second} | {value:+.3f} |")
    with whole_file(path) as draft, open(draft, "w", encoding="utf-8") as file:
        file.write("\n".join(lines) + "\n")


def _lengths(results: list[Result], longest: int) -> list[str]:
    """Says where the average rests on fewer subjects than it is divided by."""
    counts = {result.subject.name: len(result.combined) for result in results}
    shorter = {name: count for name, count in counts.items() if count < longest}
    if not shorter:
        return [f"All subjects have {longest} slices."]
    lines = [
        f"The average has {longest} slices and is divided by {len(results)} throughout. "
        "Shorter subjects count as zeros behind their end:",
        "",
    ]
    lines += [
        f"- {name}: {count} slices, zero in slices {count + 1} to {longest}"
        for name, count in shorter.items()
    ]
    return lines


def _remarks(results: list[Result]) -> list[str]:
    lines = []
    for result in results:
        for made in (result.active, result.control):
            left = ", ".join(f"{label} ({why})" for label, why in made.recording.left_out)
            silent = made.describe_silent()
            lines.append(
                f"- {made.recording.name}: left out {left or 'nothing'}; "
                f"without signal, set to 0: {silent or 'nothing'}"
            )
    return lines


def _file_name(name: str) -> str:
    """The subject's name as a part of file names."""
    return re.sub(r"[^\w.-]+", "_", name).strip("._") or "subject"
