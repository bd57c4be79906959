"""The command line of the package: python3 -m mox check."""

from __future__ import annotations

import argparse
import sys

from . import Library, __version__, format_problems, lint
from ._errors import Error


def _parse() -> argparse.Namespace:
    parser = argparse.ArgumentParser(prog="python3 -m mox")
    parser.add_argument("--version", action="version", version=f"mox {__version__}")
    commands = parser.add_subparsers(required=True, metavar="COMMAND")
    check = commands.add_parser(
        "check",
        help="find all problems of materials, by the rules of mox and of a studio",
        description="Find all problems of materials, by the rules of mox and of a studio. The exit "
        "status is 1 if there is an error, or with --strict a warning, 2 if the command line is "
        "bad, and 0 otherwise.",
    )
    check.add_argument("files", nargs="+", metavar="FILE", help="material documents and folders")
    check.add_argument(
        "--rules",
        action="append",
        default=[],
        metavar="FILE.py",
        help="file with rules, see mox.lint; may be given several times",
    )
    form = check.add_mutually_exclusive_group()
    form.add_argument("--json", action="store_const", const="json", dest="form", help="a list for programs")
    form.add_argument(
        "--sarif",
        action="store_const",
        const="sarif",
        dest="form",
        help="a SARIF log for build systems and code review",
    )
    check.add_argument("--strict", action="store_true", help="warnings count as errors")
    check.add_argument("--environment", metavar="DIR", help="folder with another environment")
    for name, what in (("plugins", "plug-ins"), ("nodes", "node files")):
        check.add_argument(
            f"--{name}",
            action="append",
            default=[],
            metavar="DIR",
            help=f"folder with {what}, besides the usual ones; may be given several times",
        )
    return parser.parse_args()


def _main() -> int:
    options = _parse()
    try:
        library = Library(
            plugins=options.plugins, nodes=options.nodes, environment=options.environment
        )
        rules = [one for file in options.rules for one in lint.load_rules(file)]
        problems = lint.check(library, options.files, rules)
    except Error as error:
        print(f"mox: {error}", file=sys.stderr)
        return 1
    sys.stdout.write(format_problems(problems, options.form or "text"))
    failed = options.strict or any(problem.severity == "error" for problem in problems)
    return 1 if problems and failed else 0


if __name__ == "__main__":
    sys.exit(_main())
