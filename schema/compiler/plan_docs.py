"""Collects the one-line docs of types and their members, which scripts show as help."""

from __future__ import annotations

from dataclasses import dataclass

from compiler import cpp, form
from compiler.plan_typing import script_name
from compiler.scope import EnumerationType, OwnType, Scope


@dataclass(frozen=True)
class PlannedDoc:
    """A type's script name, and the docs of the type and of its members; all are C++ literals."""

    type: str
    doc: str
    members: tuple[tuple[str, str], ...]


def plan_docs(scope: Scope) -> tuple[PlannedDoc, ...]:
    """The docs of a package and of all that it brings up, in order of the script names."""
    found = [own for one in scope.all() for own in one.own.values()]
    return tuple(
        PlannedDoc(
            cpp.text(script_name(own)),
            cpp.text(own.entry.doc or ""),
            tuple((cpp.text(member.name), cpp.text(member.doc or "")) for member in _members(own)),
        )
        for own in sorted(found, key=script_name)
    )


def _members(found: OwnType) -> list[form.Described]:
    return [*found.entry.literals] if isinstance(found, EnumerationType) else [*found.properties]
