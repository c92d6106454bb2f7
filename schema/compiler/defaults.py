"""Initial values: what the text of a `default` means for a type."""

from __future__ import annotations

import math
import re

from compiler.mistakes import did_you_mean
from compiler.scope import DataType, EnumerationType, PrimitiveType, Type

_RANGES = {
    "Integer": (-(2**31), 2**31 - 1),
    "UnlimitedNatural": (0, 2**32 - 1),
    "UInteger64": (0, 2**64 - 1),
}
_WHOLE = re.compile(r"-?[0-9]+")
_DECIMAL = re.compile(r"-?[0-9]+(\.[0-9]+)?([eE][+-]?[0-9]+)?")

# A default as a Python value; for an enumeration the literal's name.
Value = bool | int | float | str


def zero(found: Type) -> Value | None:
    """The initial value of a property without a default; None if that is a default-constructed object."""
    if not isinstance(found, PrimitiveType) or found.name == "ZxArray":
        return None
    if found.name == "Boolean":
        return False
    if found.name == "Real":
        return 0.0
    return 0 if found.name in _RANGES else ""


def parse(found: Type, text: str) -> Value:
    """The value of `text`. Raises ValueError with a sentence if it has none."""
    if isinstance(found, EnumerationType):
        names = [literal.name for literal in found.entry.literals]
        if text not in names:
            hint = did_you_mean(text, names)
            raise ValueError(f'default "{text}" is no literal of {found.entry.name}{hint}')
        return text
    if isinstance(found, DataType):
        raise ValueError(f"a property of the data type {found.entry.name} takes no default; the type has its own")
    if not isinstance(found, PrimitiveType):
        raise ValueError("an owned property takes no default")
    return _primitive(found.name, text)


def _primitive(name: str, text: str) -> Value:
    if name == "Boolean":
        if text not in ("true", "false"):
            raise ValueError(f'default "{text}" is neither "true" nor "false"')
        return text == "true"
    if name in _RANGES:
        low, high = _RANGES[name]
        if not _WHOLE.fullmatch(text):
            raise ValueError(f'default "{text}" is not a whole number')
        if not low <= int(text) <= high:
            raise ValueError(f'default "{text}" is out of range; {name} goes from {low} to {high}')
        return int(text)
    if name == "Real":
        if not _DECIMAL.fullmatch(text):
            raise ValueError(f'default "{text}" is not a decimal number')
        if math.isinf(float(text)):
            raise ValueError(f'default "{text}" is too large for Real')
        return float(text)
    if name == "ZxArray":
        raise ValueError("a ZxArray takes no default; it starts as a null array")
    if name == "StdString" and not text.isascii():
        raise ValueError(f'default "{text}" of a StdString must be ASCII')
    return text
