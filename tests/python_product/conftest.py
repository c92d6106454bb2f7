"""Fixtures: a record to test with."""

from __future__ import annotations

import gc
import sys
from collections.abc import Iterator
from pathlib import Path
from typing import Any

import ordo
import pytest
import quay

sys.path.insert(0, str(Path(__file__).parent))


@pytest.fixture
def model(request: pytest.FixtureRequest) -> Iterator[Any]:
    """A model. After the test, no script object of it may be bound."""
    gc.collect()
    before, failed = ordo.count_bindings(), request.session.testsfailed
    made = quay.zero.Model()
    yield made
    del made
    gc.collect()
    if request.session.testsfailed == failed:
        assert ordo.count_bindings() <= before + 1  # the fixture's own value is released later
