"""What a study does with one subject, in whatever process that happens."""

from __future__ import annotations

import os
import tempfile
import threading
import warnings
from dataclasses import dataclass, field

from ._core import CxcError, version
from .errors import CommandError

# Collecting warnings is a matter of the whole process, so subjects take turns in one that works
# with several threads.
_turn = threading.Lock()


@dataclass(frozen=True)
class Subject:
    """One subject's two recordings."""

    name: str
    active: str
    control: str


@dataclass(frozen=True)
class Task:
    """One subject and what is to be done."""

    subject: Subject
    options: dict  # of `compute`
    operation: str


@dataclass
class Side:
    """What is told of one recording."""

    recording: str
    slices: int  # before Control is accumulated
    left_out: list[tuple[str, str]]  # label, and why
    silent: str  # windows and sensors without signal


@dataclass
class Outcome:
    """What came of one subject; its package is in a file or in `package`."""

    subject: str
    error: str = ""  # the rest is empty then
    labels: list[str] = field(default_factory=list)
    sides: dict[str, Side] = field(default_factory=dict)  # "active" and "control"
    warnings: list[str] = field(default_factory=list)
    version: str = version
    package: bytes | None = None

    @property
    def slices(self) -> int:
        """Of Act-Ctl."""
        return self.sides["active"].slices


def work(task: Task, target: str | None) -> Outcome:
    """Computes one subject's package.

    Args:
        target: the file for the package; its bytes are returned where None, for processes that
            may not share a disk.

    What is wrong with the subject, its recordings or the disk is told in the outcome.
    """
    with _turn:
        try:
            return _work(task, target)
        except (CommandError, CxcError) as error:
            return Outcome(task.subject.name, str(error))
        except OSError as error:
            where = f"{error.filename}: " if error.filename else ""
            return Outcome(task.subject.name, f"{where}{error.strerror or error}")
        except MemoryError:
            return Outcome(task.subject.name, "not enough memory")
        except Exception as error:  # the other subjects are not to suffer
            text = " ".join(str(error).split())
            return Outcome(task.subject.name, f"{type(error).__name__}: {text}")


def _work(task: Task, target: str | None) -> Outcome:
    with warnings.catch_warnings(record=True) as caught:
        warnings.simplefilter("always")
        package, outcome = _package(task)
    outcome.warnings = [str(w.message) for w in caught if issubclass(w.category, UserWarning)]
    if target is not None:
        package.save(target)
        return outcome
    with tempfile.TemporaryDirectory() as folder:
        path = os.path.join(folder, "subject.cxcpkg")
        package.save(path)
        with open(path, "rb") as file:
            outcome.package = file.read()
    return outcome


def _package(task: Task):
    from .compute import compute
    from .containers import Package

    subject = task.subject
    made = {
        "active": compute(subject.active, **task.options),
        "control": compute(subject.control, **task.options),
    }
    active, control = made["active"], made["control"]
    if active.recording.labels != control.recording.labels:
        raise CommandError(
            "the recordings differ in their sensors: "
            + difference(active.recording.labels, control.recording.labels)
        )
    package = Package(active.dataset(), control.dataset())
    package.name = subject.name
    package.info = f"Active {active.recording.name}, Control {control.recording.name}"
    combined = package.combine(task.operation, accumulate_control=True)
    combined.name = f"{subject.name} Act-Ctl"
    package.current = 2
    sides = {
        role: Side(
            computed.recording.name,
            computed.plan.slices,
            computed.recording.left_out,
            computed.describe_silent(),
        )
        for role, computed in made.items()
    }
    return package, Outcome(subject.name, labels=active.recording.labels, sides=sides)


def difference(labels: list[str], others: list[str]) -> str:
    """In what two lists of sensors differ, in words."""
    only = [label for label in labels if label not in others]
    missing = [label for label in others if label not in labels]
    parts = [f"only the first has {', '.join(only)}"] if only else []
    parts += [f"only the second has {', '.join(missing)}"] if missing else []
    return "; ".join(parts) or "the same sensors in another order"
