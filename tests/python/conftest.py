"""Fixtures for `workshop`, a small native library that has every kind of script class."""

from __future__ import annotations

import gc
import importlib
import os
from collections.abc import Iterator
from pathlib import Path
from types import ModuleType
from typing import Any

import ordo
import pytest

LIBRARY = Path(os.environ["QUAY_BUILD_DIR"]) / "lib" / "libworkshop.so"


@pytest.fixture(scope="session")
def loaded() -> ModuleType:
    ordo.load(LIBRARY, "ZLInitialize_workshop")
    return importlib.import_module("workshop")


@pytest.fixture
def workshop(loaded: ModuleType) -> Iterator[Any]:
    """The package. A test fails if it leaves script objects or items behind."""
    gc.collect()
    before = ordo.count_bindings(), loaded.Item.itemCount()
    yield loaded
    gc.collect()
    assert (ordo.count_bindings(), loaded.Item.itemCount()) == before
