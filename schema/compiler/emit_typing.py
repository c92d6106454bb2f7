"""Writes type stubs for Python's type checkers: one .pyi for each module of a plan, in packages marked as typed.

An outermost package with .pyi files only would hide the package that is created at run time, so a foreign module's
outermost package gets a few lines that add the contents of that one.
"""

from __future__ import annotations

from pathlib import Path

from compiler.emit import environment, write_if_changed
from compiler.plan_typing import TypedModule

_OUTERMOST = """\"\"\"Packages of {name}, which native libraries bring.\"\"\"

import ordo
import quay  # noqa: F401 - which loads those libraries

ordo.attach(__name__)
"""


def write_typing(modules: tuple[TypedModule, ...], out: Path) -> None:
    """Makes the modules' files below `out`, a folder from which Python imports; leaves all other files alone."""
    template = environment().get_template("typing/module.pyi.j2")
    for path, module in typing_files(modules).items():
        if path.endswith(".py"):
            write_if_changed(out / path, _OUTERMOST.format(name=path.partition("/")[0]))
        else:
            write_if_changed(out / path, template.render(m=module) if module else "")


def typing_files(modules: tuple[TypedModule, ...]) -> dict[str, TypedModule | None]:
    """The files by path: those of the modules, empty ones for the packages around them, and the py.typed markers."""
    found: dict[str, TypedModule | None] = {}
    for module in modules:
        folders = module.name.split(".")
        for depth in range(1, len(folders)):
            found.setdefault(f"{'/'.join(folders[:depth])}/__init__.pyi", None)
        found[f"{folders[0]}/py.typed"] = None
        if module.foreign:
            found[f"{folders[0]}/__init__.py"] = None
        found[f"{'/'.join(folders)}/__init__.pyi"] = module
    return found
