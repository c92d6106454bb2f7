"""Runs the command as a user does."""

from __future__ import annotations

import os
import pathlib
import subprocess
from collections.abc import Callable
from typing import IO

import pytest

BUILD = pathlib.Path(os.environ.get("QUAY_BUILD_DIR", "build"))
MODELS = pathlib.Path(__file__).resolve().parent.parent.parent / "examples" / "models"

Run = Callable[..., subprocess.CompletedProcess[str]]


@pytest.fixture
def modelref() -> Run:
    """Runs the command with those arguments, and gives its result."""

    def run(*arguments: object, stdin: IO[bytes] | None = None) -> subprocess.CompletedProcess[str]:
        command = [str(BUILD / "bin" / "modelref"), *map(str, arguments)]
        return subprocess.run(command, stdin=stdin, capture_output=True, text=True, timeout=120)

    return run


@pytest.fixture
def refused(modelref: Run, tmp_path: pathlib.Path) -> Callable[[pathlib.Path], str]:
    """Imports a file that must be refused: one line, exit code 2, and no output file, not even a part of one."""

    def run(file: pathlib.Path) -> str:
        before = sorted(tmp_path.iterdir())
        result = modelref("import", file, "-o", tmp_path / "refused.record")
        assert (result.returncode, result.stdout, result.stderr.count("\n")) == (2, "", 1), result
        assert sorted(tmp_path.iterdir()) == before
        assert result.stderr.startswith(f"modelref: {file}: ")
        return result.stderr.removeprefix(f"modelref: {file}: ").rstrip("\n")

    return run


@pytest.fixture(params=sorted(path.name for path in MODELS.glob("*.xml")))
def example(request: pytest.FixtureRequest) -> pathlib.Path:
    """Each of the example models."""
    return MODELS / str(request.param)
