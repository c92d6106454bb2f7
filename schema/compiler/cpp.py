"""C++ spellings of types and values."""

from __future__ import annotations

from dataclasses import dataclass

from compiler import defaults, form
from compiler.files import folder
from compiler.scope import ClassType, EnumerationType, PrimitiveType, Scope, Type

_PRIMITIVES = {
    "Boolean": "bool",
    "Integer": "int",
    "UnlimitedNatural": "unsigned int",
    "UInteger64": "unsigned long",
    "Real": "double",
    "String": "std::u16string",
    "StdString": "std::string",
    # Properties of this type pass a pointer to this array.
    "ZxArray": "zxArray_tag",
}
_TEXTS = ("String", "StdString")


@dataclass(frozen=True)
class Native:
    """A C++ type of the runtime or the environment that only operations take."""

    passed: str
    declaration: str | None


_NATIVES = {
    "Model": Native("quay::zero::Model const&", None),
    "nativeTypes.DataTypeTablePtr": Native("VWTypeSys::DataTypeTable*", "namespace VWTypeSys { class DataTypeTable; }"),
    "nativeTypes.VwBlockPtr": Native("VWBlock*", "class VWBlock;"),
}


def type_name(found: Type, user: Scope) -> str:
    """The type as code in `user`'s namespace names it: the bare name for an own one."""
    if isinstance(found, PrimitiveType):
        return _PRIMITIVES[found.name]
    name = found.entry.name
    return name if found.scope is user else f"{found.scope.package.schema.namespace}::{name}"


def qualified(found: Type) -> str:
    """The type's name in code that is outside all schema namespaces."""
    if isinstance(found, PrimitiveType):
        return _PRIMITIVES[found.name]
    return f"{found.scope.package.schema.namespace}::{found.entry.name}"


def is_scalar(found: Type) -> bool:
    """Whether the type is passed by value: numbers, truth values and enumerations."""
    return isinstance(found, EnumerationType) or (isinstance(found, PrimitiveType) and found.name not in _TEXTS)


def passed(found: Type, user: Scope) -> str:
    """The type of a function's parameter for a value of the type."""
    name = type_name(found, user)
    return name if is_scalar(found) else f"{name} const&"


def native(name: str, scope: Scope) -> Native | None:
    """The C++ type for a type of operations that no schema declares; None for a schema's type."""
    return None if scope.find(name) is not None else _NATIVES.get(name)


def header(found: Type) -> str | None:
    """The header that declares a type; None for a primitive type."""
    if isinstance(found, PrimitiveType):
        return None
    names: dict[type, str] = {EnumerationType: "Enumerations", ClassType: "Handles"}
    return header_path(found.scope.package, names.get(type(found), found.entry.name))


def header_path(package: form.Package, name: str) -> str:
    return f"{folder(package)}/{name}.h"


def value(found: Type, default: str | None, user: Scope) -> str:
    """The initial value of a plain field as an expression; empty if the C++ type's default is right."""
    start = defaults.zero(found) if default is None else defaults.parse(found, default)
    if start is None or start == "":
        return ""
    if isinstance(found, EnumerationType):
        return f"{type_name(found, user)}::{start}"
    if isinstance(start, bool):
        return "true" if start else "false"
    if isinstance(start, str):
        return text16(start) if isinstance(found, PrimitiveType) and found.name == "String" else text(start)
    if isinstance(start, float):
        return repr(start)
    # The lowest int has no literal: the minus sign isn't part of a literal.
    number = f"{start + 1} - 1" if start == -(2**31) else str(start)
    suffix = {"unsigned int": "u", "unsigned long": "ul"}.get(type_name(found, user), "")
    return number + suffix


def text(value: str) -> str:
    """An 8-bit string literal."""
    return f'"{"".join(map(_escape, value))}"'


def text16(value: str) -> str:
    """A UTF-16 string literal."""
    return f"u{text(value)}"


def _escape(character: str) -> str:
    code = ord(character)
    if character in '"\\':
        return f"\\{character}"
    if code < 0x20 or code == 0x7F:
        return f"\\{code:03o}"
    if code < 0x7F:
        return character
    return f"\\u{code:04x}" if code < 0x10000 else f"\\U{code:08x}"
