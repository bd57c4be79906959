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
        help="find all problems of materials with the built-in rules and with custom rules",
        description="Find all problems of materials with the built-in rules and with custom rules. "
        "With --nodes, the node files in the given folders are also checked, and with "
        "--environment, the given environment. Neither option requires a material. The exit status "
        "is 1 if there is an error, or a warning with --strict. It is 2 if the command line is "
        "invalid, and 0 otherwise.",
    )
    check.add_argument(
        "files",
        nargs="*",
        metavar="FILE",
        help="material documents and folders; - for standard input",
    )
    check.add_argument(
        "--rules",
        action="append",
        default=[],
        metavar="FILE.py",
        help="Python file with custom rules (see mox.lint); may be repeated",
    )
    form = check.add_mutually_exclusive_group()
    form.add_argument(
        "--json",
        action="store_const",
        const="json",
        dest="form",
        help="print the problems as JSON",
    )
    form.add_argument(
        "--sarif",
        action="store_const",
        const="sarif",
        dest="form",
        help="print a SARIF log for build systems and code review",
    )
    check.add_argument("--strict", action="store_true", help="treat warnings as errors")
    check.add_argument(
        "--environment",
        metavar="DIR",
        help="environment folder; by default the one installed with mox",
    )
    for name, what in (("plugins", "plug-ins"), ("nodes", "node files")):
        check.add_argument(
            f"--{name}",
            action="append",
            default=[],
            metavar="DIR",
            help=f"additional folder with {what}; may be repeated",
        )
    options = parser.parse_args()
    if not (options.files or options.nodes or options.environment):
        check.error("FILE is required")
    if options.files.count("-") > 1:
        check.error("-: standard input can be read only once")
    return options


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
