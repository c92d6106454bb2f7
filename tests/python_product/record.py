"""The schema as read from its YAML, and a check of errors."""

from __future__ import annotations

from collections.abc import Iterator
from contextlib import contextmanager
from pathlib import Path

import ordo
import pytest
from compiler.load import load
from compiler.mistakes import Report
from compiler.scope import ClassType, Scope

PACKAGE = "Varlow.ModelReference.internal.compileInfo"


def read_schema() -> Scope:
    package = load(Path(__file__).parents[2] / "schema" / "package.yaml", Report())
    assert package is not None
    return Scope(package)


SCHEMA = read_schema()
CLASSES = sorted(SCHEMA.classes)
CONCRETE = [name for name in CLASSES if not SCHEMA.classes[name].entry.abstract]


def chain_of(name: str) -> list[ClassType]:
    """A class of the record and its superclasses."""
    return [SCHEMA.classes[name], *SCHEMA.ancestors(SCHEMA.classes[name])]


@contextmanager
def refused(identifier: str, kind: type[Exception] = ordo.Error) -> Iterator[None]:
    """Checks that the block raises the error with this identifier, and that the error is of this kind too."""
    with pytest.raises(ordo.Error) as caught:
        yield
    assert caught.value.identifier == identifier
    assert isinstance(caught.value, kind)
