"""The error that the commands show to the user."""


class CommandError(Exception):
    """Something the user can act on; the text is one line and complete."""
