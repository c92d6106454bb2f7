"""Checks classes: superclasses, the series of indices, operations."""

from __future__ import annotations

from compiler import form
from compiler.mistakes import Report, did_you_mean
from compiler.scope import ELEMENT, OPERATION_TYPES, ClassType, Scope, describe


def check(scope: Scope, report: Report) -> None:
    for cls in scope.classes.values():
        if _check_base(scope, cls, report):
            _check_indices(scope, cls, report)
        for operation in cls.operations:
            _check_operation(scope, cls, operation, report)


def _check_base(scope: Scope, cls: ClassType, report: Report) -> bool:
    """Whether the chain above the class has no mistakes, so that its indices can be checked."""
    name, base = cls.entry.name, cls.entry.base
    if base is None or base == ELEMENT:
        return True
    found = scope.find(base)
    if found is None:
        report.add(cls.entry.place, name, f'unknown base "{base}"{did_you_mean(base, _class_names(scope))}')
        return False
    if not isinstance(found, ClassType):
        report.add(cls.entry.place, name, f'the base "{base}" is {describe(found)}, not a class')
        return False
    ancestors = scope.ancestors(cls)
    circle = [cls, *ancestors]
    if scope.base_of(circle[-1]) is cls:
        # Reported for one class of the circle only.
        if cls is min(circle, key=lambda one: one.entry.place):
            names = " -> ".join(one.entry.name for one in [*circle, cls])
            report.add(cls.entry.place, name, f"the class is its own superclass: {names}")
        return False
    return all(one.entry.base in (None, ELEMENT) or scope.base_of(one) for one in ancestors)


def _class_names(scope: Scope) -> list[str]:
    return [name for name in scope.names() if isinstance(scope.find(name), ClassType)]


def _check_indices(scope: Scope, cls: ClassType, report: Report) -> None:
    """A chain's indices must be one series without a gap; derived properties have none."""
    first = scope.first_index(cls)
    taken: dict[int, form.Property] = {}
    for prop in cls.properties:
        if prop.index is not None:
            taken.setdefault(prop.index, prop)
    free = first
    while free in taken:
        free += 1

    expected = first
    for prop in cls.properties:
        subject = f"{cls.entry.name}.{prop.name}"
        if prop.derives is not None:
            if prop.index is not None:
                report.add(prop.place, subject, "a derived property has no index")
            continue
        if prop.index is None:
            report.add(prop.place, subject, f"the index is missing; the next free one is {free}")
            continue
        if taken[prop.index] is not prop:
            other = taken[prop.index].name
            text = f"the index {prop.index} is already that of {other}; the next free one is {free}"
            report.add(prop.place, subject, text)
            continue
        if prop.index < first:
            text = f"the index {prop.index} is below {first}, where the class's own start; the next free one is {free}"
            report.add(prop.place, subject, text)
            continue
        if prop.index > expected:
            text = f"the index {prop.index} leaves a gap; the next free one is {expected}"
            report.add(prop.place, subject, text)
        expected = prop.index + 1


def _check_operation(scope: Scope, cls: ClassType, operation: form.Operation, report: Report) -> None:
    subject = f"{cls.entry.name}.{operation.name}"
    typed = [(f"{subject}.{argument.name}", argument.place, argument.type) for argument in operation.arguments]
    for owner, place, name in [(subject, operation.place, operation.result), *typed]:
        if name not in OPERATION_TYPES and scope.find(name) is None:
            hint = did_you_mean(name, [*scope.names(), *OPERATION_TYPES])
            report.add(place, owner, f'unknown type "{name}"{hint}')
        elif name == "ZxArray":
            report.add(place, owner, "an operation can't take or give a ZxArray")
