"""Checks a schema: finds every mistake of a package, and of the packages that it brings up, in one run."""

from __future__ import annotations

from compiler import check_classes, check_docs, check_ids, check_names, check_package, check_properties
from compiler.mistakes import Report
from compiler.scope import Scope


def check(scope: Scope, report: Report) -> None:
    """Reports everything that is wrong with the package of `scope` and with the packages below it."""
    scopes = scope.all()
    for one in scopes:
        check_package.check(one, report)
        check_names.check(one, report)
        check_classes.check(one, report)
        check_properties.check(one, report)
        check_docs.check(one, report)
    check_ids.check(scopes, report)
