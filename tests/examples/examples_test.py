"""Runs what the README and the examples show."""

import os
import pathlib
import re
import subprocess
import sys

import pytest

ROOT = pathlib.Path(__file__).parents[2]
BUILD = pathlib.Path(os.environ["QUAY_BUILD_DIR"])


def run(*command: str | pathlib.Path) -> str:
    environment = os.environ | {"PYTHONPATH": str(BUILD / "python")}
    result = subprocess.run(command, capture_output=True, text=True, env=environment, cwd=ROOT)
    assert result.returncode == 0, result.stdout + result.stderr
    return result.stdout


def test_readme() -> None:
    snippets = re.findall(r"```python\n(.*?)```", (ROOT / "README.md").read_text(), re.DOTALL)
    assert [run(sys.executable, "-c", snippet) for snippet in snippets] == ["True True\n"]


@pytest.mark.parametrize(
    ("program", "said"),
    [("schema_tour", "(1 abstract)"), ("record_interface", "begins with m: measured\n")],
)
def test_native_examples(program: str, said: str) -> None:
    assert said in run(BUILD / "bin" / program)


def test_record_interface(tmp_path: pathlib.Path) -> None:
    said = run(sys.executable, "examples/record_interface.py", tmp_path / "plant.record").splitlines()
    assert said[1] == "changed: -5.0 undone: 0.0"
    assert "did you mean 'designMin'?" in said[2] and said[2].endswith("; rolled back: 1.0")
    assert said[3] == "saved and loaded alike: True"
    assert len((ROOT / "examples" / "record_interface.py").read_text().splitlines()) <= 40


def test_demo() -> None:
    said = run("examples/demo", os.path.relpath(BUILD, ROOT))
    assert "undone once" in said
    for name in ("controller.record", "changed.record", "ownership.svg", "rates.svg"):
        assert (BUILD / "demo" / name).stat().st_size > 0
