"""Checks ids: name-based UUIDs of version 3, each used once in all packages."""

from __future__ import annotations

import re
import uuid
from collections.abc import Iterator
from dataclasses import dataclass

from compiler import form
from compiler.mistakes import Place, Report
from compiler.scope import Scope
from compiler.walk import described

_FORM = re.compile(r"[0-9a-f]{8}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{4}-[0-9a-f]{12}")
_VERSION_3 = re.compile(r".{14}3.{4}[89ab].*")


@dataclass(frozen=True)
class _Holder:
    """An entry that has an id: its description for messages, and the names from which a new id is generated."""

    place: Place
    subject: str
    id: str | None
    space: uuid.UUID
    name: str


def check(scopes: list[Scope], report: Report) -> None:
    """Checks the ids of all packages together, since all meta objects live in one registry."""
    holders = [holder for scope in scopes for holder in _holders(scope.package)]
    first: dict[str, _Holder] = {}
    for holder in holders:
        if holder.id is not None:
            first.setdefault(holder.id, holder)
    for holder in holders:
        fault = _fault(holder, first)
        if fault:
            report.add(holder.place, holder.subject, f"{fault}; a fresh one is {_fresh(holder, set(first))}")


def _fault(holder: _Holder, first: dict[str, _Holder]) -> str | None:
    if holder.id is None:
        return "the id is missing"
    if not _FORM.fullmatch(holder.id):
        return f'the id "{holder.id}" is no UUID in lower case'
    if not _VERSION_3.fullmatch(holder.id):
        return f"the id {holder.id} is not of version 3"
    other = first[holder.id]
    return None if other is holder else f"the id {holder.id} is that of {other.subject} ({other.place})"


def _fresh(holder: _Holder, used: set[str]) -> str:
    """The id generated from the entry's name; if another entry has that id, from the name and a number."""
    drawn = str(uuid.uuid3(holder.space, holder.name))
    number = 2
    while drawn in used:
        drawn = str(uuid.uuid3(holder.space, f"{holder.name}#{number}"))
        number += 1
    return drawn


def _holders(package: form.Package) -> Iterator[_Holder]:
    yield _Holder(package.place, "package", package.id, uuid.NAMESPACE_URL, package.uri)
    space = uuid.uuid3(uuid.NAMESPACE_URL, package.schema.uri)
    for name, entry in described(package):
        yield _Holder(entry.place, name, entry.id, space, f"{package.schema.name}.{name}")
