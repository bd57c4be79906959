"""The exceptions of the package."""

from __future__ import annotations

import typing

if typing.TYPE_CHECKING:
    from ._mox import Problem


class Error(Exception):
    """An operation failed. The exception contains the location of the cause if it is known.

    message is the message without the location. file, line and column (both counted from 1), node
    (an id) and port (a Cg name) are None if they are unknown. If the cause is an invalid material,
    problems lists all problems of that material.
    """

    def __init__(
        self,
        message: str = "",
        *,
        file: str | None = None,
        line: int | None = None,
        column: int | None = None,
        node: str | None = None,
        port: str | None = None,
        problems: typing.Iterable[Problem] = (),
    ) -> None:
        super().__init__(message)
        self.message = message
        self.file = file
        self.line = line
        self.column = column
        self.node = node
        self.port = port
        self.problems: tuple[Problem, ...] = tuple(problems)

    def __str__(self) -> str:
        place = ":".join(str(part) for part in (self.file, self.line, self.column) if part)
        parts = [place] if place else []
        if self.node:
            parts.append(f'node "{self.node}"')
        if self.port:
            parts.append(f'port "{self.port}"')
        return ": ".join([*parts, self.message])


class RefusedError(Error):
    """A step of a change cannot be applied, so nothing has changed.

    step is the number of the step, counted from 0.
    """

    def __init__(self, message: str = "", *, step: int | None = None, **place: typing.Any) -> None:
        super().__init__(message, **place)
        self.step = step


class StaleError(Error):
    """The program used a node or port that no longer exists.

    node is the id that was looked up. If only the port is missing, port is its name.
    """
