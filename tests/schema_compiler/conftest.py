"""Fixtures that change copies of two small schemas and run the compiler on them."""

from __future__ import annotations

import contextlib
import io
import re
import shutil
from dataclasses import dataclass
from pathlib import Path

import pytest

from compiler.__main__ import main

HERE = Path(__file__).parent


# A change and the mistakes that must be reported: a file, a text that occurs in it once, its replacement, the mistakes.
# A mistake is on the first line of the text, or on the line that a number and a bar before it count from there. "(...)"
# stands for the place of another entry, "..." for a new id.
Case = tuple[str, str, str, list[str]]


@dataclass(frozen=True)
class Outcome:
    """The result of one run of the command."""

    code: int
    output: str
    errors: list[str]


class Workshop:
    """Copies of the exemplar's schema, and of the orchard's, which builds on it, in a folder of their own."""

    def __init__(self, folder: Path) -> None:
        self.folder = folder
        self.out = folder / "out"
        for name in ("exemplar", "orchard"):
            shutil.copytree(HERE / name, folder / name, ignore=shutil.ignore_patterns("expected"))

    def replace(self, file: str, old: str, new: str) -> int:
        """Replaces the text `old`, which occurs once in a file; returns its line."""
        path = self.folder / file
        text = path.read_text(encoding="utf-8")
        assert text.count(old) == 1, f"{old!r} stands {text.count(old)} times in {file}"
        path.write_text(text.replace(old, new), encoding="utf-8")
        return text[: text.index(old)].count("\n") + 1

    def run(self, package: str = "orchard", *options: str) -> Outcome:
        """Runs the command on a package; by default it writes to `out`. The folder is removed from places in errors."""
        output, errors = io.StringIO(), io.StringIO()
        arguments = ["--package", str(self.folder / package / "package.yaml"), *(options or ("--out", str(self.out)))]
        with contextlib.redirect_stdout(output), contextlib.redirect_stderr(errors):
            code = main(arguments)
        lines = errors.getvalue().replace(f"{self.folder}/", "").replace("orchard/../", "").splitlines()
        return Outcome(code, output.getvalue(), lines)

    def said(self, case: Case) -> tuple[list[str], list[str]]:
        """The expected and the actual reports after the case's change, both in order. Checks that nothing was
        written."""
        file, old, new, mistakes = case
        line = self.replace(file, old, new)
        expected = []
        for mistake in mistakes:
            offset, _, text = mistake.rpartition("|")
            expected.append(f"{file}:{line + int(offset or 0)}: {text}")
        outcome = self.run()
        assert outcome.code == 1
        assert not self.out.exists()
        places = re.compile(r"\((first )?[^() ]+\.yaml:[0-9]+\)")
        ids = re.compile(r"a fresh one is [0-9a-f-]{36}$")
        return expected, [ids.sub("a fresh one is ...", places.sub(r"(\1...)", error)) for error in outcome.errors]

    def files(self) -> dict[str, str]:
        """All files that were written, by their path below `out`."""
        paths = sorted(path for path in self.out.rglob("*") if path.is_file())
        return {str(path.relative_to(self.out)): path.read_text(encoding="utf-8") for path in paths}


@pytest.fixture
def workshop(tmp_path: Path) -> Workshop:
    return Workshop(tmp_path)
