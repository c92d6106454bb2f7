"""Writes a plan's files: substitutes into the templates and decides nothing."""

from __future__ import annotations

from pathlib import Path

import jinja2

from compiler.plan import Plan

_MARK = "// Generated from "


def write(plan: Plan, out: Path) -> None:
    """Makes all files of the plan below `out`.

    Files whose text is unchanged aren't written, so that nothing is built again for them. Generated files that the plan
    no longer has are removed, so that no source includes the header of a class that doesn't exist any more.
    """
    templates = environment()
    written = set()
    for file in plan.files:
        path = out / file.path
        written.add(path)
        write_if_changed(path, templates.get_template(file.template).render(package=plan.package, c=file.cls))
    for folder in {path.parent for path in written}:
        for path in folder.iterdir():
            if path.suffix in (".h", ".cpp") and path not in written and _is_generated(path):
                path.unlink()


def environment() -> jinja2.Environment:
    """The templates, and how they are read."""
    return jinja2.Environment(
        loader=jinja2.FileSystemLoader(Path(__file__).parent / "templates"),
        undefined=jinja2.StrictUndefined,
        trim_blocks=True,
        lstrip_blocks=True,
        keep_trailing_newline=True,
    )


def write_if_changed(path: Path, text: str) -> None:
    if not path.is_file() or path.read_text(encoding="utf-8") != text:
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_text(text, encoding="utf-8")


def _is_generated(path: Path) -> bool:
    with path.open(encoding="utf-8", errors="replace") as stream:
        return stream.readline().startswith(_MARK)
