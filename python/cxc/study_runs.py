"""Where the subjects of a study are computed: local processes, or a Dask cluster.

Both give the outcomes as they come, with the number of the subject, and leave its package in the
folder under `package_name`. The values do not depend on where they were computed: every process
calculates with one thread.
"""

from __future__ import annotations

import concurrent.futures as cf
import contextlib
import logging
import multiprocessing
import multiprocessing.connection
import os
import signal
import threading
import warnings
from collections import deque
from concurrent.futures.process import BrokenProcessPool
from multiprocessing.context import SpawnContext
from typing import Generator, Iterator, Tuple

from ._core import version
from .errors import CommandError
from .study_work import Outcome, Task, work

# Numeric libraries read these when they are loaded.
_ONE_THREAD = {
    name: "1"
    for name in (
        "OMP_NUM_THREADS", "OPENBLAS_NUM_THREADS", "MKL_NUM_THREADS", "BLIS_NUM_THREADS",
        "VECLIB_MAXIMUM_THREADS", "NUMEXPR_NUM_THREADS",
    )
}  # fmt: skip

Outcomes = Generator[Tuple[int, Outcome], None, None]

_PATIENCE = 30  # for a cluster to answer [s]


def cores() -> int:
    """How many this process may use."""
    if hasattr(os, "sched_getaffinity"):
        return len(os.sched_getaffinity(0))
    return os.cpu_count() or 1


def package_name(number: int) -> str:
    return f"{number}.cxcpkg"


# -- local processes


def locally(tasks: list[Task], folder: str, jobs: int) -> Outcomes:
    """Computes `jobs` subjects at a time, each in a process.

    A process that is killed, as where memory runs out, fails its own subject only: those that it
    may have been working on are repeated one by one.
    """
    waiting = deque(range(len(tasks)))
    suspects: deque[int] = deque()
    while waiting or suspects:
        alone = bool(suspects)
        numbers = suspects if alone else waiting
        lost = yield from _until_broken(tasks, folder, numbers, 1 if alone else jobs)
        if alone and lost:
            yield lost[0], Outcome(
                tasks[lost[0]].subject.name,
                "its process was ended from outside; there may not be enough memory",
            )
        else:
            suspects.extend(lost)


def _until_broken(tasks: list[Task], folder: str, numbers: deque[int], jobs: int):
    """Works off `numbers` from the left; returns those that were being worked on at a breakdown."""
    with _processes(jobs) as pool:
        running: dict[cf.Future, int] = {}
        while numbers or running:
            try:
                while numbers and len(running) < jobs:
                    target = os.path.join(folder, package_name(numbers[0]))
                    with _shielded():
                        future = pool.submit(work, tasks[numbers[0]], target)
                    running[future] = numbers.popleft()
            except BrokenProcessPool:
                return list(running.values())
            done = cf.wait(running, return_when=cf.FIRST_COMPLETED).done
            if any(isinstance(future.exception(), BrokenProcessPool) for future in done):
                return list(running.values())
            for future in done:
                yield running.pop(future), future.result()
    return []


class _Context(SpawnContext):
    """Knows the processes that were started with it."""

    def __init__(self) -> None:
        super().__init__()
        self.started: list = []

    # The name of the method of all contexts.
    def Process(self, *arguments, **options):  # noqa: N802
        process = SpawnContext.Process(*arguments, **options)
        self.started.append(process)
        return process


@contextlib.contextmanager
def _processes(jobs: int) -> Iterator[cf.ProcessPoolExecutor]:
    """A pool; on any exception, also an interrupt, its processes are ended at once."""
    context = _Context()
    pool = cf.ProcessPoolExecutor(jobs, mp_context=context, initializer=_follow_parent)
    try:
        yield pool
    except BaseException:
        for process in context.started:
            if process.pid is not None:
                process.kill()
        raise
    finally:
        pool.shutdown(wait=True, cancel_futures=True)


@contextlib.contextmanager
def _shielded() -> Iterator[None]:
    """Processes started meanwhile use one numeric thread and leave Ctrl-C to their parent."""
    before = {name: os.environ.get(name) for name in _ONE_THREAD}
    os.environ.update(_ONE_THREAD)
    # A mask is inherited, and what comes meanwhile is delivered to this process afterwards.
    mask = None
    if hasattr(signal, "pthread_sigmask"):
        mask = signal.pthread_sigmask(signal.SIG_BLOCK, {signal.SIGINT})
    try:
        yield
    finally:
        for name, value in before.items():
            if value is None:
                del os.environ[name]
            else:
                os.environ[name] = value
        if mask is not None:
            signal.pthread_sigmask(signal.SIG_SETMASK, mask)


def _follow_parent() -> None:
    """Ends this process when its parent has ended, however that came."""
    parent = multiprocessing.parent_process()
    assert parent is not None
    ends = parent.sentinel

    def watch() -> None:
        multiprocessing.connection.wait([ends])
        os._exit(1)

    threading.Thread(target=watch, daemon=True).start()


# -- a Dask cluster


def on_dask(tasks: list[Task], folder: str, address: str) -> Outcomes:
    """Computes the subjects on the workers of a cluster.

    A worker reads the recordings by their paths and returns the package's bytes, so that it needs
    no access to the folder of the results. Dask repeats the subjects of workers that end.
    """
    try:
        from distributed import CancelledError, as_completed
    except ImportError as error:
        raise CommandError(f"--dask needs the Python package distributed: {error}") from error
    with _client(address) as client:
        futures = {
            client.submit(work, task, None, key=f"cxc-study-{os.getpid()}-{number}", pure=False):
            number for number, task in enumerate(tasks)
        }  # fmt: skip
        for future in as_completed(list(futures), loop=client.loop):
            number = futures.pop(future)
            name = tasks[number].subject.name
            try:
                outcome = future.result()
            except CancelledError as error:
                raise CommandError(f"{address}: the Dask scheduler has gone") from error
            except Exception as error:  # whatever went wrong on the worker
                yield number, Outcome(name, _failure(error))
                continue
            del future  # the worker may forget the result
            yield number, _received(outcome, os.path.join(folder, package_name(number)))


def _received(outcome: Outcome, path: str) -> Outcome:
    if outcome.version != version:
        outcome.error = f"the worker has cxc {outcome.version}, this is {version}"
    if not outcome.error:
        with open(path, "wb") as file:
            file.write(outcome.package or b"")
            file.flush()
            os.fsync(file.fileno())
    outcome.package = None
    return outcome


def _failure(error: Exception) -> str:
    if type(error).__name__ == "KilledWorker":
        return "every worker that tried it has ended; there may not be enough memory"
    text = " ".join(str(error).split())
    return f"on the worker: {type(error).__name__}: {text}"


@contextlib.contextmanager
def _client(address: str):
    """A connection to the scheduler; what is not done at its end is given up."""
    from distributed import Client

    logger = logging.getLogger("distributed")
    level = logger.level
    logger.setLevel(logging.CRITICAL)
    try:
        try:
            with warnings.catch_warnings():
                warnings.simplefilter("ignore", DeprecationWarning)  # of what it is made of
                client = Client(address, timeout=_PATIENCE, set_as_default=False)
        except Exception as error:  # of many kinds, by what is wrong with the address
            text = " ".join(str(error).split()) or type(error).__name__
            raise CommandError(f"{address}: no Dask scheduler answers: {text}") from error
        try:
            try:
                client.wait_for_workers(1, timeout=_PATIENCE)
            except Exception as error:
                raise CommandError(f"{address}: the Dask scheduler has no workers") from error
            yield client
        finally:
            client.close(timeout=5)
    finally:
        logger.setLevel(level)
