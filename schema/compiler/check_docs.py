"""Checks docs: every entry has a doc of one line, which becomes a C++ comment and a Python docstring."""

from __future__ import annotations

from compiler.mistakes import Report
from compiler.scope import Scope
from compiler.walk import described


def check(scope: Scope, report: Report) -> None:
    for subject, entry in described(scope.package):
        doc = entry.doc
        if doc is None or not doc.strip():
            report.add(entry.place, subject, "the doc is missing; say in one line what it is")
        elif len(doc.splitlines()) > 1:
            report.add(entry.place, subject, "the doc has more than one line")
        elif not doc.isprintable():
            report.add(entry.place, subject, "the doc has a character that doesn't print")
        elif doc.endswith("\\"):
            report.add(entry.place, subject, "the doc ends in a backslash, which would continue the C++ comment")
