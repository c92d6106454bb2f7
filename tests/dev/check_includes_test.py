"""The order of the house, tried on a small made-up tree."""

from __future__ import annotations

import pathlib

import check_includes
import pytest

HEADERS = [
    "platform/keel/include/keel/message.h",
    "runtime/include/quay/zero/model.h",
    "runtime/src/pool.h",
    "elements/include/elements/level.h",
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
        ("runtime/src/a.cpp", "<vector>", None),
        ("runtime/src/a.cpp", "<keel/message.h>", None),
        ("runtime/src/a.cpp", "<boost/optional.hpp>", None),
        ("runtime/src/a.cpp", "<unistd.h>", None),
        ("runtime/src/a.cpp", '"pool.h"', None),
        ("runtime/src/deep/a.cpp", '"../pool.h"', None),
        ("runtime/src/a.cpp", '"gone.h"', "isn't there"),
        ("runtime/src/a.cpp", '"quay/zero/model.h"', "isn't there"),
        ("runtime/src/a.cpp", "<elements/level.h>", "is of elements/"),
        ("runtime/src/a.cpp", "<Repo/Repo.h>", "knows no schema"),
        ("runtime/src/a.cpp", "<gtest/gtest.h>", "is of gtest"),
        ("runtime/src/a.cpp", "<unheard/of.h>", "no room and no library"),
        ("runtime/include/quay/zero/a.h", "<elements/level.h>", "is of elements/"),
        ("elements/src/a.cpp", "<quay/zero/model.h>", None),
        ("elements/src/a.cpp", "<boost/optional.hpp>", None),
        ("elements/src/a.cpp", '"../../runtime/src/pool.h"', "leaves the room"),
        ("elements/src/a.cpp", "<Python.h>", "is of python"),
        ("platform/keel/src/a.cpp", "<boost/optional.hpp>", "is of boost"),
        ("platform/keel/src/a.cpp", "<quay/zero/model.h>", "is of runtime/"),
        ("python/src/a.cpp", "<Repo/Repo.h>", "knows no schema"),
        ("python/src/a.cpp", "<elements/level.h>", "is of elements/"),
        ("tests/runtime/a_test.cpp", "<Repo/Repo.h>", None),
        ("tests/runtime/a_test.cpp", "<gtest/gtest.h>", None),
        ("tests/runtime/a_test.cpp", '"../../runtime/src/pool.h"', "leaves the room"),
    ],
)
def test_tells_what_may_not_be_included(
    tree: pathlib.Path, file: str, include: str, complaint: str | None
) -> None:
    source = tree / file
    source.parent.mkdir(parents=True, exist_ok=True)
    source.write_text(f"// a comment\n\n#  include {include}\n")
    found = check_includes.House(tree, tree / "generated").complaints()
    if complaint is None:
        assert found == []
    else:
        assert len(found) == 1
        assert found[0].startswith(f"{file}:3: ")
        assert complaint in found[0]


def test_the_house_has_no_stairs_that_lead_in_a_circle() -> None:
    house = check_includes.House(pathlib.Path())
    for room, grant in check_includes.HOUSE.items():
        for below in grant.rooms:
            assert room not in house.reach(below)
