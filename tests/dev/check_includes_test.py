"""Tests the check of includes on a small tree of sources that is made up here."""

from __future__ import annotations

import pathlib

import check_includes
import pytest

HEADERS = [
    "runtime/keel/include/keel/message.h",
    "runtime/model/include/quay/zero/model.h",
    "runtime/model/src/pool.h",
    "runtime/elements/include/elements/level.h",
    "generated/product/include/Repo/Repo.h",
]


@pytest.fixture
def tree(tmp_path: pathlib.Path) -> pathlib.Path:
    for name in HEADERS:
        header = tmp_path / name
        header.parent.mkdir(parents=True)
        header.write_text("#pragma once\n")
    return tmp_path


@pytest.mark.parametrize(
    ("file", "include", "complaint"),
    [
        ("runtime/model/src/a.cpp", "<vector>", None),
        ("runtime/model/src/a.cpp", "<keel/message.h>", None),
        ("runtime/model/src/a.cpp", "<boost/optional.hpp>", None),
        ("runtime/model/src/a.cpp", "<unistd.h>", None),
        ("runtime/model/src/a.cpp", '"pool.h"', None),
        ("runtime/model/src/deep/a.cpp", '"../pool.h"', None),
        ("runtime/model/src/a.cpp", '"gone.h"', "isn't there"),
        ("runtime/model/src/a.cpp", '"quay/zero/model.h"', "isn't there"),
        ("runtime/model/src/a.cpp", "<elements/level.h>", "is of runtime/elements/"),
        ("runtime/model/src/a.cpp", "<Repo/Repo.h>", "knows no schema"),
        ("runtime/model/src/a.cpp", "<gtest/gtest.h>", "is of gtest"),
        ("runtime/model/src/a.cpp", "<unheard/of.h>", "no folder and no library"),
        ("runtime/model/include/quay/zero/a.h", "<elements/level.h>", "is of runtime/elements/"),
        ("runtime/elements/src/a.cpp", "<quay/zero/model.h>", None),
        ("runtime/elements/src/a.cpp", "<boost/optional.hpp>", None),
        ("runtime/elements/src/a.cpp", '"../../model/src/pool.h"', "leaves the folder"),
        ("runtime/elements/src/a.cpp", "<Python.h>", "is of python"),
        ("runtime/keel/src/a.cpp", "<boost/optional.hpp>", "is of boost"),
        ("runtime/keel/src/a.cpp", "<quay/zero/model.h>", "is of runtime/model/"),
        ("script/python/src/a.cpp", "<Repo/Repo.h>", "knows no schema"),
        ("script/python/src/a.cpp", "<elements/level.h>", "is of runtime/elements/"),
        ("tests/runtime/a_test.cpp", "<Repo/Repo.h>", None),
        ("tests/runtime/a_test.cpp", "<gtest/gtest.h>", None),
        ("tests/runtime/a_test.cpp", '"../../runtime/model/src/pool.h"', "leaves the folder"),
    ],
)
def test_tells_what_may_not_be_included(
    tree: pathlib.Path, file: str, include: str, complaint: str | None
) -> None:
    source = tree / file
    source.parent.mkdir(parents=True, exist_ok=True)
    source.write_text(f"// a comment\n\n#  include {include}\n")
    found = check_includes.Tree(tree, tree / "generated").complaints()
    if complaint is None:
        assert found == []
    else:
        assert len(found) == 1
        assert found[0].startswith(f"{file}:3: ")
        assert complaint in found[0]


CIRCLE = frozenset({"runtime/model/model", "runtime/model/pool"})


def tree_with_circle(tree: pathlib.Path, circles: dict[frozenset[str], str]) -> check_includes.Tree:
    """A source that includes a header whose own source leads back: no header alone shows it."""
    for name, include in (("model.cpp", "pool.h"), ("pool.cpp", "model.h")):
        line = f'#include "{include}"' if include == "pool.h" else "#include <quay/zero/model.h>"
        (tree / "runtime/model/src" / name).write_text(f"{line}\n")
    return check_includes.Tree(tree, tree / "generated", circles=circles)


def test_refuses_circles_through_sources(tree: pathlib.Path) -> None:
    found = tree_with_circle(tree, {}).complaints()
    assert found == ["these depend on each other: runtime/model/model, runtime/model/pool"]


def test_takes_excepted_circles_until_they_are_gone(tree: pathlib.Path) -> None:
    assert tree_with_circle(tree, {CIRCLE: "a reason"}).complaints() == []
    (tree / "runtime/model/src/pool.cpp").write_text("")
    found = check_includes.Tree(tree, tree / "generated", circles={CIRCLE: "a reason"}).complaints()
    assert found == ["no longer a circle: runtime/model/model, runtime/model/pool"]


def test_no_folder_may_use_itself_through_others() -> None:
    tree = check_includes.Tree(pathlib.Path())
    for folder, grant in check_includes.GRANTS.items():
        for below in grant.folders:
            assert folder not in tree.reach(below)
