"""A record to try things on."""

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
    """A model. Whatever a test did, nothing of it may stay bound once it is over."""
    gc.collect()
    before, failed = ordo.count_bindings(), request.session.testsfailed
    made = quay.zero.Model()
    yield made
    del made
    gc.collect()
    if request.session.testsfailed == failed:
        assert ordo.count_bindings() <= before + 1  # the fixture's own value is let go of later
