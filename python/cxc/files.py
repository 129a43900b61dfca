"""Output files that are whole or not there."""

from __future__ import annotations

import contextlib
import errno
import os
import secrets
import stat
import tempfile
from typing import Iterator

from .errors import CommandError


_NO_FILE = "is a device or a pipe, not a file"
_FULL = (errno.ENOSPC, errno.EDQUOT, errno.EFBIG)


def check_output(path: str, force: bool) -> None:
    """Finds out, before the work, whether `path` can be written.

    Raises:
        CommandError: the folder is missing or may not be written, the name is taken by a folder
            or a device, by a file that may not be written, or by any file without `force`.
    """
    folder = os.path.dirname(path) or "."
    if not os.path.exists(folder):
        raise CommandError(f"{folder}: no such folder")
    if not os.path.isdir(folder):
        raise CommandError(f"{folder}: is not a folder")
    if os.path.isdir(path):
        raise CommandError(f"{path}: is a folder, not a name for the output")
    if os.path.exists(path) and not os.path.isfile(path):
        raise CommandError(f"{path}: is a device or a pipe, not a name for the output")
    if os.path.lexists(path) and not force:
        raise CommandError(f"{path}: exists already; --force replaces it")
    if os.path.isfile(path) and not os.access(path, os.W_OK):
        raise CommandError(f"{path}: may not be written")
    check_folder(os.path.dirname(os.path.realpath(path)))


def check_folder(folder: str) -> None:
    """Raises CommandError when no file can be made in `folder`."""
    try:
        # Permission bits do not tell about read-only or full file systems; a trial does.
        with tempfile.TemporaryFile(dir=folder):
            pass
    except OSError as error:
        raise CommandError(f"{folder}: cannot be written to: {error.strerror}") from error


def input_name(path: str | os.PathLike[str]) -> bytes:
    """The name of a file to read, in the system's bytes.

    Raises:
        OSError: it is a device or a pipe, which gives its bytes once, or never.
    """
    name = os.fsencode(path)
    if _is_no_file(name):
        raise OSError(errno.EINVAL, _NO_FILE, os.fsdecode(path))
    return name


def check_input(path: str | os.PathLike[str]) -> None:
    """Finds out whether `path` would keep who opens it waiting.

    Raises:
        CommandError: it is a device or a pipe.
    """
    if _is_no_file(os.fsencode(path)):
        raise CommandError(f"{os.fsdecode(path)}: {_NO_FILE}")


def _is_no_file(name: bytes) -> bool:
    try:
        mode = os.stat(name).st_mode
    except OSError:
        return False  # opening it tells more
    return not stat.S_ISREG(mode) and not stat.S_ISDIR(mode)


@contextlib.contextmanager
def whole_file(
    path: str | os.PathLike, *, overwrite: bool = True, extension: str | None = None
) -> Iterator[str]:
    """Gives a name in the folder of `path` to write to; it becomes `path` when all went well.

    The name ends with `extension`, or else with that of `path`. On any exception, also an
    interrupt, nothing is left of it and `path` is as before. A symbolic link stays one, and a
    file that is replaced keeps its permissions.

    Raises:
        FileExistsError: without `overwrite`, `path` exists or has come to exist meanwhile.
        OSError: `path` is a folder, a device or a pipe, may not be written, or cannot be made.
    """
    path = os.fsdecode(path)
    target = os.path.realpath(path) if os.path.islink(path) else path
    permissions = _permissions(path, target, overwrite)
    if extension is None:
        extension = os.path.splitext(target)[1][:16]
    draft = os.path.join(os.path.dirname(target), f".{secrets.token_hex(8)}{extension}")
    try:
        # An ordinary creation, so that the new file gets the permissions that the user wants.
        os.close(os.open(draft, os.O_WRONLY | os.O_CREAT | os.O_EXCL, 0o666))
    except OSError as error:
        raise _about(error, path) from error
    try:
        yield draft
        if permissions is not None:
            os.chmod(draft, permissions)
        if overwrite:
            os.replace(draft, target)
        else:
            _claim(draft, target)
    except OSError as error:
        written = error.filename is not None and os.fsdecode(error.filename) == draft
        # Writing to an open file does not tell its name.
        if written or (error.filename is None and error.errno in _FULL):
            raise _about(error, path) from error
        raise
    finally:
        with contextlib.suppress(FileNotFoundError):
            os.unlink(draft)


def _permissions(path: str, target: str, overwrite: bool) -> int | None:
    """Those of the file that is to be replaced; None where there is none yet."""
    try:
        mode = os.stat(target).st_mode
    except FileNotFoundError:
        return None
    if stat.S_ISDIR(mode):
        raise _os_error(errno.EISDIR, path)
    if not stat.S_ISREG(mode):
        # A rename would put a file in the place of the device.
        raise OSError(errno.EINVAL, "is a device or a pipe, not a file", path)
    if not overwrite:
        raise _os_error(errno.EEXIST, path)
    if not os.access(target, os.W_OK):
        raise _os_error(errno.EACCES, path)
    return stat.S_IMODE(mode)


def _claim(draft: str, target: str) -> None:
    """Gives the draft its name unless the name is taken; a rename would replace silently."""
    try:
        os.link(draft, target)
    except FileExistsError:
        raise _os_error(errno.EEXIST, target) from None
    except OSError:
        # Some file systems know no hard links.
        if os.path.lexists(target):
            raise _os_error(errno.EEXIST, target) from None
        os.replace(draft, target)


def _os_error(number: int, path: str) -> OSError:
    return OSError(number, os.strerror(number), path)


def _about(error: OSError, path: str) -> OSError:
    """The same error, told of the name that the user knows."""
    return OSError(error.errno, error.strerror, path)
