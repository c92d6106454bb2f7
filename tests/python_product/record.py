"""The schema as its YAML tells it, and what scripts are refused."""

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
    """A class of the record and those that it derives from."""
    return [SCHEMA.classes[name], *SCHEMA.ancestors(SCHEMA.classes[name])]


@contextmanager
def refused(identifier: str, kind: type[Exception] = ordo.Error) -> Iterator[None]:
    """Holds that what runs inside raises the error of that identifier, which also is of that kind."""
    with pytest.raises(ordo.Error) as caught:
        yield
    assert caught.value.identifier == identifier
    assert isinstance(caught.value, kind)
