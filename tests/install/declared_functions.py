#!/usr/bin/python3
"""Prints the symbols that headers declare and a library must define.

Usage: declared_functions.py INCLUDE_FOLDER HEADER... -- COMPILER_FLAG...

Each header is compiled separately. Only declarations in headers of the folder count. Functions
that headers define, delete or leave to derived classes are omitted, as are templates, which have
no symbols.
"""
import os
import sys

from clang.cindex import CursorKind, Index

FUNCTIONS = {
    CursorKind.FUNCTION_DECL,
    CursorKind.CXX_METHOD,
    CursorKind.CONSTRUCTOR,
    CursorKind.DESTRUCTOR,
    CursorKind.CONVERSION_FUNCTION,
}
CLASSES = {CursorKind.CLASS_DECL, CursorKind.STRUCT_DECL, CursorKind.UNION_DECL}
SCOPES = CLASSES | {CursorKind.NAMESPACE, CursorKind.LINKAGE_SPEC}


def is_deleted(cursor):
    return [token.spelling for token in cursor.get_tokens()][-2:] == ["=", "delete"]


def needs_library(cursor):
    if cursor.kind == CursorKind.VAR_DECL:
        is_elsewhere = cursor.storage_class.name == "EXTERN" or cursor.semantic_parent.kind in CLASSES
        return is_elsewhere and not cursor.get_definition()
    if cursor.kind not in FUNCTIONS or cursor.get_definition() or cursor.is_pure_virtual_method():
        return False
    return not (cursor.is_default_method() or is_deleted(cursor))


def symbol(cursor):
    # An abstract class has no objects of its own, so not all compilers write the constructor for
    # them, which has C1 in its name; C2 is the one that derived classes call.
    is_abstract = cursor.kind == CursorKind.CONSTRUCTOR and cursor.semantic_parent.is_abstract_record()
    return cursor.mangled_name.replace("C1E", "C2E", 1) if is_abstract else cursor.mangled_name


def declared(scope, folder):
    for cursor in scope.get_children():
        file = cursor.location.file
        if not file or not file.name.startswith(folder):
            continue
        if cursor.kind in SCOPES:
            yield from declared(cursor, folder)
        elif needs_library(cursor):
            yield symbol(cursor)


def main():
    folder = os.path.join(os.path.realpath(sys.argv[1]), "")
    separator = sys.argv.index("--")
    symbols = set()
    is_whole = True
    for header in sys.argv[2:separator]:
        unit = Index.create().parse(
            os.path.join(folder, header),
            ["-x", "c++", "-std=c++20", "-I" + folder, *sys.argv[separator + 1:]])
        for message in unit.diagnostics:
            if message.severity >= message.Error:
                print(f"{header}: {message}", file=sys.stderr)
                is_whole = False
        symbols.update(declared(unit.cursor, folder))
    print("\n".join(sorted(symbols)))
    return 0 if is_whole else 1


sys.exit(main())
