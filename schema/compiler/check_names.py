"""Checks names: valid in C++, unique, and still different in the forms that generated code gives them."""

from __future__ import annotations

from collections.abc import Iterable

from compiler import form
from compiler.check_package import is_dotted
from compiler.mistakes import Place, Report, did_you_mean
from compiler.names import (
    HANDLE_FUNCTIONS,
    HIDING,
    MEMBER_FUNCTIONS,
    Slot,
    accessors,
    flat,
    is_identifier,
    is_usable,
    lower,
    roots,
    slots,
)
from compiler.files import header_names
from compiler.scope import PRIMITIVES, ClassType, Scope
from compiler.walk import described, types


def check(scope: Scope, report: Report) -> None:
    package = scope.package
    for subject, entry in described(package):
        # Generated code always adds something to a property's name, so it may be a keyword.
        usable = is_identifier if isinstance(entry, form.Property) else is_usable
        if not usable(entry.name):
            report.add(entry.place, subject, f'"{entry.name}" can\'t be used as a name in C++')
    _check_types(scope, report)
    _check_script_names(package, report)
    for enumeration in package.enumerations:
        _check_once(enumeration.name, enumeration.literals, report)
        _check_values(enumeration, report)
    for data_type in package.data_types:
        _check_once(data_type.name, data_type.properties, report)
    for cls in scope.classes.values():
        _check_members(cls, report)
    _check_slots(scope, report)


def _check_types(scope: Scope, report: Report) -> None:
    reserved = HIDING | roots(scope) | set(PRIMITIVES)
    seen: dict[str, form.Described] = {}
    files = {header: what for header, what in header_names(scope.package)}
    for entry in types(scope.package):
        if entry.name in reserved:
            report.add(entry.place, entry.name, f"{entry.name} is the name of something that generated code needs")
        if entry.name in files:
            report.add(entry.place, entry.name, f"{entry.name}.h is already the header of {files[entry.name]}")
        other = seen.setdefault(lower(entry.name), entry)
        if other.name == entry.name and other is not entry:
            report.add(entry.place, entry.name, f"the name is already that of another type ({other.place})")
        elif other is not entry:
            text = f"differs from {other.name} ({other.place}) only in its first letter's case"
            report.add(entry.place, entry.name, text)
    for cls in scope.package.classes:
        if cls.continued and cls.name not in scope.classes:
            hint = did_you_mean(cls.name, scope.classes)
            report.add(cls.place, cls.name, f"no file declares the class that this continues{hint}")


def _check_script_names(package: form.Package, report: Report) -> None:
    seen: dict[str, form.Described] = {}
    for entry in types(package):
        name = entry.script or f"{package.schema.script}.{entry.name}"
        other = seen.setdefault(name, entry)
        if entry.script and not is_dotted(name):
            report.add(entry.place, entry.name, f'the script name "{name}" must be names joined by dots')
        elif other.name != entry.name:
            report.add(entry.place, entry.name, f"the script name {name} is also that of {other.name} ({other.place})")


def _check_once(owner: str, members: Iterable[form.Described], report: Report) -> None:
    seen: dict[str, Place] = {}
    for member in members:
        if member.name in seen:
            report.add(member.place, f"{owner}.{member.name}", f"the name is given twice (first {seen[member.name]})")
        seen.setdefault(member.name, member.place)


def _check_values(enumeration: form.Enumeration, report: Report) -> None:
    """Literals are declared by rising value and start at zero, the initial value of a property without a default."""
    name = enumeration.name
    if not enumeration.literals:
        report.add(enumeration.place, name, "the enumeration has no literal")
    elif enumeration.literals[0].value != 0:
        report.add(enumeration.literals[0].place, name, "the first literal must have the value 0")
    for before, literal in zip(enumeration.literals, enumeration.literals[1:]):
        if literal.value <= before.value:
            text = f"the value {literal.value} must be higher than that of {before.name}, {before.value}"
            report.add(literal.place, f"{name}.{literal.name}", text)
        elif literal.value >= 2**31:
            report.add(literal.place, f"{name}.{literal.name}", f"the value {literal.value} is out of range")


def _check_members(cls: ClassType, report: Report) -> None:
    """No accessor of a class may have the name of another property's accessor in the chain, or of a member of every
    element."""
    name = cls.entry.name
    seen: dict[str, tuple[str, form.Property]] = {}
    for ancestor in reversed(cls.scope.ancestors(cls)):
        for prop in ancestor.properties:
            for accessor in accessors(prop):
                seen.setdefault(accessor, (f"{ancestor.entry.name}.{prop.name}", prop))
    for prop in (p for part in cls.parts for p in part.properties):
        subject = f"{name}.{prop.name}"
        for accessor in accessors(prop):
            owner, other = seen.setdefault(accessor, (subject, prop))
            if other is prop and accessor in MEMBER_FUNCTIONS:
                report.add(prop.place, subject, f"its accessor {accessor} would hide one that every element has")
                break
            if other is not prop:
                text = f"the name is already that of {owner} ({other.place})"
                if other.name != prop.name:
                    text = f"collides with {owner} ({other.place}): both would have {accessor}"
                report.add(prop.place, subject, text)
                break
    for member in [*cls.properties, *cls.operations]:
        if lower(member.name) in HANDLE_FUNCTIONS:
            report.add(member.place, f"{name}.{member.name}", f"every handle has another member {lower(member.name)}")
    _check_words(cls, report)
    for operation in cls.operations:
        _check_operation(cls.scope, name, operation, report)
    _check_once(name, cls.operations, report)


def _check_words(cls: ClassType, report: Report) -> None:
    """The query functions of the chain's properties are members of the handle, as are its operations: no name twice."""
    chain = [cls, *cls.scope.ancestors(cls)]
    words = {lower(prop.name): (owner, prop) for owner in chain for prop in owner.properties}
    for owner in chain:
        for operation in owner.operations:
            holder, prop = words.get(operation.name, (owner, None))
            # Two members of one class with the same name are reported by the check of slots.
            if prop is None or (holder is owner and prop.name == operation.name) or cls not in (holder, owner):
                continue
            mine, other, others = (operation, prop, holder) if owner is cls else (prop, operation, owner)
            text = f"collides with {others.entry.name}.{other.name} ({other.place}): both would be members of the handle"
            report.add(mine.place, f"{cls.entry.name}.{mine.name}", text)


def _check_operation(scope: Scope, owner: str, operation: form.Operation, report: Report) -> None:
    """An operation hides a type of its name from the class, and a parameter hides one from the parameters after it."""
    subject = f"{owner}.{operation.name}"
    _check_once(subject, operation.arguments, report)
    named = [(subject, operation), *((f"{subject}.{argument.name}", argument) for argument in operation.arguments)]
    for hider, entry in named:
        if entry.name in scope.own or entry.name in roots(scope):
            report.add(entry.place, hider, f"{entry.name} is the name of a type or namespace")


def _check_slots(scope: Scope, report: Report) -> None:
    """The meta package has all meta objects as members of one class; their names are composed and must be unique."""
    singleton = scope.package.singleton.rpartition("::")[2]
    schema = flat(scope.package.schema.name)
    phases = ("instantiate", "weave", f"instantiate_{schema}", f"weave_{schema}")
    functions = ("getInstance", "initialize", "declareInRegistry", *phases, singleton)
    seen: dict[str, Slot] = {}
    for slot in slots(scope):
        if slot.name in functions:
            report.add(slot.place, slot.subject, f"the meta package has another member {slot.name}")
        other = seen.setdefault(slot.name, slot)
        # Two entries of the same kind and name are reported by another check.
        if (other.subject, other.meta) != (slot.subject, slot.meta):
            text = f"collides with {other.subject} ({other.place}): both would be the meta package's member {slot.name}"
            report.add(slot.place, slot.subject, text)
