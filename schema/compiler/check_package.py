"""Checks what a package says of itself: its names, its imports and the packages that it brings up."""

from __future__ import annotations

import re

from compiler.mistakes import Place, Report, did_you_mean
from compiler.names import is_identifier, is_usable, roots
from compiler.scope import META_URI, PRIMITIVES, Scope

_URI = re.compile(r"[a-z][a-z0-9+.-]*://[^\s/]+(/[^\s/]+)+")


def check(scope: Scope, report: Report) -> None:
    package = scope.package
    schema = package.schema

    def fault(place: Place, text: str) -> None:
        report.add(place, "package", text)

    for key, place, name in (
        ("singleton", package.place, package.singleton),
        ("namespace", schema.place, schema.namespace),
    ):
        parts = name.split("::")
        if not all(is_usable(part) for part in parts):
            fault(place, f'the {key} "{name}" is no C++ name')
        for part in parts[1:]:
            if part in roots(scope) | {schema.namespace.split("::")[0]}:
                fault(place, f'the {key} "{name}" hides the namespace {part} that generated code needs')
    if not is_identifier(package.library):
        text = f'the library "{package.library}" must be a name of letters, digits and single underscores'
        fault(package.place, text)
    for key, name in (("name", schema.name), ("script", schema.script)):
        if not is_dotted(name):
            fault(schema.place, f'the {key} "{name}" must be names joined by dots')
    for place, uri in ((package.place, package.uri), (schema.place, schema.uri)):
        if not _URI.fullmatch(uri):
            fault(place, f'"{uri}" is no URI with a scheme, a host and a path')
    if package.uri == schema.uri:
        fault(schema.place, "the root package and the schema package have the same URI")
    _check_primitives(scope, report)
    _check_foreign(scope, report)


def is_dotted(name: str) -> bool:
    """Whether a package or script name is made of identifiers with dots between."""
    return all(is_identifier(part) for part in name.split("."))


def _check_primitives(scope: Scope, report: Report) -> None:
    seen = set()
    for word in scope.package.primitives:
        if word.text not in PRIMITIVES:
            hint = did_you_mean(word.text, PRIMITIVES)
            report.add(word.place, "package", f'unknown primitive type "{word.text}"{hint}')
        if word.text in seen:
            report.add(word.place, "package", f"the primitive type {word.text} stands twice")
        seen.add(word.text)


def _check_foreign(scope: Scope, report: Report) -> None:
    """Imports must agree with the packages brought up, and no two packages may have the same name."""
    package = scope.package
    known = {other.uri: other for other in package.brings_up}
    imported = set()
    for word in package.imports:
        if word.text in imported:
            report.add(word.place, "package", f"the import {word.text} stands twice")
        elif word.text != META_URI and word.text not in known:
            hint = did_you_mean(word.text, [META_URI, *known])
            report.add(word.place, "package", f"no package that is brought up has the imported URI {word.text}{hint}")
        imported.add(word.text)
    for uri, other in known.items():
        if uri not in imported:
            text = f"{other.schema.name} is brought up, but its URI {uri} is not imported"
            report.add(package.place, "package", text)

    packages = [other.package for other in scope.all()]
    for index, one in enumerate(packages):
        for other in packages[index + 1 :]:
            for key, mine, its in (
                ("name", one.schema.name, other.schema.name),
                ("namespace", one.schema.namespace, other.schema.namespace),
                ("singleton", one.singleton, other.singleton),
                ("URI", one.uri, other.uri),
            ):
                if mine == its:
                    report.add(one.place, "package", f"the {key} {mine} is also that of {other.file}")
