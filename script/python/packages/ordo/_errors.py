"""The errors that failures of native code become: one base class, and a subclass for each kind of built-in error."""

from __future__ import annotations

import builtins

from ordo import _core


class Error(Exception):
    """A failure of native code, or of a conversion on the way to it. Its text is a readable sentence.

    `identifier` identifies the failure for programs, such as "quay0:messages:UniquenessConstraint", and `arguments` are
    the arguments of the sentence.
    """

    identifier: str
    arguments: tuple[str, ...]

    def __init__(self, text: str = "", identifier: str = "", arguments: tuple[str, ...] = ()) -> None:
        super().__init__(text)
        self.identifier = identifier
        self.arguments = arguments

    def __str__(self) -> str:
        return str(self.args[0])

    def __reduce__(self) -> tuple[object, ...]:
        return type(self), (self.args[0], self.identifier, self.arguments)


class ValueError(Error, builtins.ValueError):
    """The value is of the right type and can't be used."""


class TypeError(Error, builtins.TypeError):
    """The value is of another type than required, or is missing."""


class AttributeError(Error, builtins.AttributeError):
    """There is no such member, or it can't be assigned to."""


class KeyError(Error, builtins.KeyError):
    """There is no such key."""


class IndexError(Error, builtins.IndexError):
    """There is no such position."""


_CLASSES: tuple[type[Error], ...] = (Error, ValueError, TypeError, AttributeError, KeyError, IndexError)
for _class in _CLASSES:
    _class.__module__ = "ordo"

# If the packages are imported again, errors keep the classes that they had, to which the program may refer.
globals().update({kept.__name__: kept for kept in _core.set_errors(_CLASSES)})
