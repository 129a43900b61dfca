"""Output files that are whole or not there."""

from __future__ import annotations

import contextlib
import os
import tempfile
from typing import Iterator

from .errors import CommandError


def check_output(path: str, force: bool) -> None:
    """Finds out, before the work, whether `path` can be written.

    Raises:
        CommandError: the folder is missing or may not be written, the name is taken by a folder,
            or by a file and `force` is not set.
    """
    folder = os.path.dirname(path) or "."
    if not os.path.exists(folder):
        raise CommandError(f"{folder}: no such folder")
    if not os.path.isdir(folder):
        raise CommandError(f"{folder}: is not a folder")
    if os.path.isdir(path):
        raise CommandError(f"{path}: is a folder, not a name for the output")
    if os.path.lexists(path) and not force:
        raise CommandError(f"{path}: exists already; --force replaces it")
    check_folder(folder)


def check_folder(folder: str) -> None:
    """Raises CommandError when no file can be made in `folder`."""
    try:
        # Permission bits do not tell about read-only or full file systems; a trial does.
        with tempfile.TemporaryFile(dir=folder):
            pass
    except OSError as error:
        raise CommandError(f"{folder}: cannot be written to: {error.strerror}") from error


@contextlib.contextmanager
def whole_file(path: str, *, force: bool = True) -> Iterator[str]:
    """Gives a name in the folder of `path` to write to; it becomes `path` when all went well.

    The name ends as `path` does, because writers choose the format by it. On any exception,
    also an interrupt, nothing is left of it and `path` is as before.

    Raises:
        CommandError: without `force`, `path` has come to exist meanwhile.
    """
    folder, name = os.path.split(path)
    handle, draft = tempfile.mkstemp(prefix=".", suffix="-" + name, dir=folder or ".")
    os.close(handle)
    try:
        yield draft
        os.chmod(draft, 0o666 & ~_umask())
        if force:
            os.replace(draft, path)
        else:
            _claim(draft, path)
    finally:
        with contextlib.suppress(FileNotFoundError):
            os.unlink(draft)


def _claim(draft: str, path: str) -> None:
    """Gives the draft its name unless the name is taken; a rename would replace silently."""
    try:
        os.link(draft, path)
    except FileExistsError as error:
        raise CommandError(f"{path}: exists already; --force replaces it") from error
    except OSError:
        # Some file systems know no hard links.
        if os.path.lexists(path):
            raise CommandError(f"{path}: exists already; --force replaces it") from None
        os.replace(draft, path)


def _umask() -> int:
    mask = os.umask(0)
    os.umask(mask)
    return mask
