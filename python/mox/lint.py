"""Custom rules: Python functions that check a material.

A rule is a function with the decorator rule. It receives a Material and yields its findings:

    @mox.rule("studio/lower-case-ids")
    def lower_case_ids(material):
        for node in material.nodes:
            if node.id != node.id.lower():
                yield node, "the id is not in lower case"

A finding is a message, a tuple of a Node or Port and a message, or a Problem.
"""

from __future__ import annotations

import runpy
import traceback
import typing
from collections.abc import Callable, Iterable

from ._errors import Error
from ._mox import Library, Material, Node, Port, Problem

if typing.TYPE_CHECKING:
    import os

Finding = typing.Union[str, Problem, "tuple[Node | Port, str]"]
Function = Callable[[Material], "Iterable[Finding] | None"]


class Rule(typing.NamedTuple):
    """A rule: a function that finds problems of one kind."""

    name: str
    severity: typing.Literal["error", "warning"]
    function: Function


_FAILED = "rule-failed"
_registered: list[Rule] = []


def rule(
    name: str, *, severity: typing.Literal["error", "warning"] = "warning"
) -> Callable[[Function], Function]:
    """Turns a function into a rule.

    name becomes the rule of the problems that the function reports. It must contain a slash, as in
    "studio/names", to distinguish it from the built-in rules. Raises ValueError if it does not.
    """
    if "/" not in name:
        raise ValueError(f'the name of a rule must contain a slash, as in "studio/{name}"')

    def register(function: Function) -> Function:
        _registered.append(Rule(name, severity, function))
        return function

    return register


def load_rules(file: str | os.PathLike[str]) -> list[Rule]:
    """Runs a Python file and returns the rules that it defines.

    Raises Error with the file, and the line if there is one, if the file cannot be read or run.
    """
    before = len(_registered)
    try:
        runpy.run_path(str(file))
    except Exception as error:
        line = _line_in(file, error)
        message = f"{type(error).__name__}: {error}"
        if isinstance(error, OSError) and line is None:
            message = f"cannot be read: {error.strerror}"
        raise Error(message, file=str(file), line=line)
    finally:
        rules = _registered[before:]
        del _registered[before:]
    return rules


def apply_rules(
    material: Material, rules: Iterable[Rule], *, file: str | os.PathLike[str] | None = None
) -> list[Problem]:
    """Returns the findings of rules for a material, in the order of the rules.

    file is the name of the material in the findings; by default, the name of its file. If a rule
    raises an exception, an error with the rule "rule-failed" reports it.
    """
    name = file or material.file
    problems = []
    for one in rules:
        try:
            problems += [_place(name, one, finding) for finding in one.function(material) or ()]
        except Exception as error:
            source = one.function.__code__.co_filename
            problems.append(
                Problem(
                    _FAILED,
                    f'the rule "{one.name}" failed: {type(error).__name__}: {error}',
                    severity="error",
                    file=source,
                    line=_line_in(source, error),
                )
            )
    return problems


def check(
    library: Library, files: Iterable[str | os.PathLike[str]], rules: Iterable[Rule] = ()
) -> list[Problem]:
    """Returns all problems of materials. For each material, the findings of rules follow the
    problems that the built-in checks find.

    files lists files and folders. In it, the string "-" stands for standard input, which is checked
    before the files. Raises Error in the same cases as Library.check.
    """
    rules = list(rules)
    files = list(files)
    others = [file for file in files if file != "-"]
    problems = library.check()
    if len(others) < len(files):
        problems += _check_standard_input(library, rules)
    for file in library.find(others):
        try:
            material = library.open(file)
        except Error:
            problems += library.check([file])  # reports why it cannot be read
            continue
        problems += [*material.problems, *apply_rules(material, rules, file=file)]
    return problems


def _check_standard_input(library: Library, rules: list[Rule]) -> list[Problem]:
    name = "standard input"
    try:
        with open(0, "rb", closefd=False) as stream:
            material = library.parse(stream.read(), file=name)
    except OSError:
        return [Problem("unreadable", "cannot be read", severity="error", file=name)]
    return [*material.problems, *apply_rules(material, rules, file=name)]


def _place(file: str | os.PathLike[str] | None, one: Rule, finding: Finding) -> Problem:
    if isinstance(finding, Problem):
        return finding
    where, message = (None, finding) if isinstance(finding, str) else finding
    node = where.node if isinstance(where, Port) else where
    return Problem(
        one.name,
        message,
        severity=one.severity,
        file=file,
        line=node.line or None if node else None,
        node=node.id if node else None,
        port=where.name if isinstance(where, Port) else None,
    )


def _line_in(file: str | os.PathLike[str], error: BaseException) -> int | None:
    """Returns the line of a file in which an exception was raised."""
    if isinstance(error, SyntaxError):
        return error.lineno
    lines = [
        frame.lineno
        for frame in traceback.extract_tb(error.__traceback__)
        if frame.filename == str(file)
    ]
    return lines[-1] if lines else None
