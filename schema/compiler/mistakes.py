"""The mistakes of a schema, and their places."""

from __future__ import annotations

import difflib
from collections.abc import Iterable
from dataclasses import dataclass


@dataclass(frozen=True, order=True)
class Place:
    """A line of a schema file; printed in the form that editors can jump to."""

    file: str
    line: int

    def __str__(self) -> str:
        return f"{self.file}:{self.line}"


@dataclass(frozen=True, order=True)
class Mistake:
    """One fault: its place, what it is about ("Bed.label", empty for the whole file) and a sentence."""

    place: Place
    subject: str
    text: str

    def __str__(self) -> str:
        return f"{self.place}: {self.subject}: {self.text}" if self.subject else f"{self.place}: {self.text}"


class Report:
    """Collects mistakes, so that one run reports all of them."""

    def __init__(self) -> None:
        self._mistakes: set[Mistake] = set()

    def add(self, place: Place, subject: str, text: str) -> None:
        self._mistakes.add(Mistake(place, subject, text))

    def sorted(self) -> list[Mistake]:
        return sorted(self._mistakes)


def did_you_mean(word: str, candidates: Iterable[str]) -> str:
    """The end of a sentence about an unknown word: a suggestion of the most similar known one, or nothing if none is
    similar."""
    known = sorted(set(candidates))
    lowered: dict[str, str] = {}
    for candidate in known:
        lowered.setdefault(candidate.lower(), candidate)
        # "EventScope" should find "vwtp.mm.core.EventScope".
        lowered.setdefault(candidate.rpartition(".")[2].lower(), candidate)
    close = difflib.get_close_matches(word.lower(), lowered, n=1, cutoff=0.6)
    return f'; did you mean "{lowered[close[0]]}"?' if close else ""
