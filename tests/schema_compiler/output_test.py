"""What the compiler writes."""

from __future__ import annotations

import difflib
import os
import re
import uuid
from pathlib import Path
from typing import TYPE_CHECKING

import pytest

if TYPE_CHECKING:
    from conftest import Workshop


def test_reproduces_the_exemplar_byte_for_byte(workshop: Workshop) -> None:
    assert workshop.run("exemplar").code == 0
    written = workshop.files()
    expected = Path(__file__).parent / "exemplar" / "expected"
    paths = [path for path in expected.rglob("*") if path.suffix in (".h", ".cpp")]
    assert paths
    for path in paths:
        name = str(path.relative_to(expected))
        want, got = path.read_text(encoding="utf-8"), written[name]
        assert got == want, "\n".join(difflib.unified_diff(want.splitlines(), got.splitlines(), name, "written", n=1))


BENCH = "include/orchard/trees/Bench.h"
HANDLES = "include/orchard/trees/Handles.h"
TREE = "include/orchard/trees/Tree.h"

# What the exemplar has no case of: file, and a line that it must have.
LINES = [
    # A base, a child and an enumeration of another package, with their headers.
    (BENCH, '#include "Garden/RaisedBed.h"'),
    (
        BENCH,
        "class ORCHARD_API Bench::Impl : public quay::zero::elements::Level<Bench, Garden::RaisedBed> {",
    ),
    (BENCH, "class Bench::Impl::BuilderBase : public Garden::RaisedBed::Impl::BuilderBase<B> {"),
    (HANDLES, '#include "Garden/Handles.h"'),
    (
        HANDLES,
        "class ORCHARD_API Bench : public quay::zero::elements::Handle<Bench, Garden::RaisedBed> {",
    ),
    ("include/orchard/trees/Orchard.h", "  quay::zero::ElementSequence<Garden::Bed> beds_;"),
    ("src/Orchard.cpp", '#include "Garden/Bed.h"'),
    (TREE, '#include "Garden/Enumerations.h"'),
    (TREE, "  Garden::Soil ground_ = Garden::Soil::Loam;"),
    ("src/MetaPackageOrchard.cpp", "        MetaPackageGarden::bringUp();"),
    ("src/MetaPackageOrchard.cpp", '#include "Garden/MetaPackageGarden.h"'),
    # Values: a data type by reference, the lowest int, text with quotes and umlauts, names that C++ has for itself.
    (TREE, '#include "orchard/trees/Position.h"'),
    (TREE, "  Position const& getPosition() const { return position_; }"),
    (TREE, "  Position position_;"),
    (TREE, "  int number_ = -2147483647 - 1;"),
    (TREE, '  std::u16string default_ = u"a \\"b\\" \\u00e4";'),
    (BENCH, "  unsigned long seats_ = 2ul;"),
    ("src/Tree.cpp", "  static constexpr shapes::Single<std::u16string> default_{5, &Impl::default_};"),
    ("src/Tree.cpp", "  static constexpr shapes::Single<harvest> harvest_{3, &Impl::harvest_};"),
    # Words for queries: beside a type or a keyword of that name, of another package's property, and into its classes.
    (HANDLES, "  static Constrainable<harvest> const& harvest_();"),
    (HANDLES, "  static Constrainable<std::u16string> const& default_();"),
    (HANDLES, "  static Constrainable<Garden::Soil> const& soil();"),
    (HANDLES, "  static ConstrainableRelation<Garden::Bed> const& beds();"),
    (HANDLES, "  static Constrainable<Garden::Bed> const& best();"),
    ("src/Bench.cpp", '#include "Garden/MetaPackageGarden.h"'),
    (
        "src/Bench.cpp",
        "auto Bench::legs() -> Constrainable<unsigned int> const& { static Constrainable<unsigned int> const "
        "made(MetaPackageGarden::getInstance()->RaisedBed_legs); return made; }",
    ),
    # One key of two maps, one of which has it by inheritance and takes equal keys.
    (
        "src/Tree.cpp",
        "  static constexpr shapes::KeyedMap numberMaps[] = "
        "{{&Nursery::classTable, 1, false}, {&Orchard::classTable, 1, true}};",
    ),
    # Operations, with the environment's types declared.
    (HANDLES, "namespace VWTypeSys { class DataTypeTable; }"),
    (
        HANDLES,
        "  static Tree plant(quay::zero::Model const& model, VWTypeSys::DataTypeTable* table, Position const& where);",
    ),
    (HANDLES, "  static int count(VWBlock* block);"),
    # The namespaces of types and meta package, and the order of the meta package's table.
    ("include/orchard/trees/MetaPackageOrchard.h", "namespace orchard {"),
    ("include/orchard/trees/MetaPackageOrchard.h", "  quay::zero::meta::Package orchard_trees;"),
    ("src/Tree.cpp", "// Generated from trees.yaml. Changes belong there."),
]


def test_writes_foreign_types_values_keys_and_operations(workshop: Workshop) -> None:
    assert workshop.run().errors == []
    written = workshop.files()
    missing = [(file, line) for file, line in LINES if line not in written[file].splitlines()]
    assert missing == []
    assert " pairs()" not in written[HANDLES]

    header = written["include/orchard/trees/MetaPackageOrchard.h"]
    slots = re.findall(r"^  quay::zero::meta::\w+ (\w+);$", header, re.MULTILINE)
    tree = ["Tree", "Tree_number", "Tree_position", "Tree_harvest", "Tree_ground", "Tree_Default"]
    plant = ["Tree_plant", "Tree_plant_model", "Tree_plant_table", "Tree_plant_where"]
    count = ["Tree_count", "Tree_count_block"]
    assert slots[slots.index("Tree") :] == [*tree, *plant, *count, "harvest", "harvest_Early", "harvest_Late"]

    declaration = written["src/MetaPackageOrchard.cpp"]
    assert '{u"seats", declare::Shape::Single, u"UInteger64", 14, u"2", nullptr, ' in declaration
    assert '{u"trees", declare::Shape::MapOwned, u"Tree", 1, nullptr, u"number", ' in declaration
    assert 'declare::makeEnumSerializers<orchard::trees::harvest>, "almanac.Harvest"},' in declaration
    assert "&declare::makeSerializer<orchard::trees::PositionDatatypeSerializer>}," in declaration


# What type checkers are told, and what scripts show for help.
SCRIPT_LINES = [
    ("orchard/trees/__init__.pyi", "class Bench(garden.RaisedBed):"),
    ("orchard/trees/__init__.pyi", "class BenchFields(garden.RaisedBedFields, total=False):"),
    ("orchard/trees/__init__.pyi", "    harvest: _zero.Attribute[almanac.Harvest, almanac.Harvest | str | int | None]"),
    ("orchard/trees/__init__.pyi", "    def young(self) -> _zero.Multimap[int, Apple]:"),
    ("orchard/trees/__init__.pyi", "    young: _Children[AppleFields] | None"),
    ("orchard/trees/__init__.pyi", "    def createIntoYoung(self, uuid: _Id = ..., /) -> Apple: ..."),
    ("almanac/__init__.pyi", "class Harvest(int):"),
    ("almanac/__init__.pyi", "    Early: _ClassVar[Harvest]"),
    ("garden/__init__.py", "ordo.attach(__name__)"),
    ("src/ScriptDocs.cpp", '    {"harvest", "When the tree is ripe."},'),
    ("src/ScriptDocs.cpp", '    {{"orchard.trees.Apple", "An apple tree."}, {}},'),
]


def test_tells_scripts_of_types_and_docs(workshop: Workshop) -> None:
    options = ("--typing", str(workshop.out), "--out", str(workshop.out), "--script-docs")
    assert workshop.run("orchard", *options).errors == []
    written = workshop.files()
    assert [(file, line) for file, line in SCRIPT_LINES if line not in written[file].splitlines()] == []
    assert sorted(workshop.run("orchard", "--list", *options).output.splitlines()) == list(written)
    assert "orchard/__init__.py" not in written


def test_puts_bases_before_derived_handles(workshop: Workshop) -> None:
    assert workshop.run().code == 0
    text = workshop.files()[HANDLES]
    places = [text.index(words) for words in ("\nclass Apple;", "\nclass Tree;", "API Tree :", "API Apple :")]
    assert places == sorted(places)


@pytest.mark.parametrize("package", ["exemplar", "orchard"])
def test_lists_what_it_writes_and_writes_nothing_else(workshop: Workshop, package: str) -> None:
    listed = workshop.run(package, "--list", "--out", str(workshop.out))
    assert listed.code == 0
    assert not workshop.out.exists()
    assert workshop.run(package, "--check-only") == workshop.run(package, "--check-only", "--out", str(workshop.out))
    assert not workshop.out.exists()
    assert workshop.run(package).code == 0
    assert sorted(listed.output.splitlines()) == list(workshop.files())


def test_rewrites_only_what_changed_and_removes_what_is_gone(workshop: Workshop) -> None:
    workshop.run()
    own = workshop.out / "src" / "plant.cpp"
    own.write_text("// By hand.\n", encoding="utf-8")
    old = 1_000_000_000
    for name in workshop.files():
        os.utime(workshop.out / name, (old, old))

    workshop.replace("orchard/trees.yaml", "doc: A bed to sit on.", "doc: A bed to rest on.")
    workshop.replace("orchard/trees.yaml", 'default: "2"', 'default: "3"')
    workshop.replace("orchard/trees.yaml", "  - name: Apple\n", "  - name: Pear\n")
    workshop.replace("orchard/trees.yaml", "type: Apple", "type: Pear")
    assert workshop.run().code == 0

    written = {name for name in workshop.files() if (workshop.out / name).stat().st_mtime != old}
    headers = ("Bench", "Handles", "MetaPackageOrchard", "Nursery", "Pear", "trees")
    sources = ("MetaPackageOrchard", "Nursery", "Pear")
    assert written == {f"include/orchard/trees/{n}.h" for n in headers} | {f"src/{n}.cpp" for n in sources}
    left = set(workshop.files())
    assert "src/plant.cpp" in left
    assert not {"src/Apple.cpp", "include/orchard/trees/Apple.h"} & left


def test_draws_ids_from_qualified_names(workshop: Workshop) -> None:
    """The ids of the exemplar follow the rule by which a fresh one is offered."""
    line = workshop.replace("exemplar/garden.yaml", ", id: 85868903-c5a0-32f6-91c5-5f98aedd2121", "")
    space = uuid.uuid3(uuid.NAMESPACE_URL, "quay0://quay/garden/1/Garden")
    fresh = uuid.uuid3(space, "Garden.Bed.label")
    assert str(fresh) == "85868903-c5a0-32f6-91c5-5f98aedd2121"
    place = f"exemplar/garden.yaml:{line}"
    assert workshop.run("exemplar").errors == [f"{place}: Bed.label: the id is missing; a fresh one is {fresh}"]

    # After a renaming the old name's id is in use, and a new property of the old name needs another.
    workshop.replace("exemplar/garden.yaml", "name: crop,", "name: produce,")
    text = (workshop.folder / "exemplar/garden.yaml").read_text(encoding="utf-8")
    crop = uuid.uuid3(space, "Garden.Lane.crop")
    assert str(crop) in text
    new = "\n      - {index: 2, name: crop, type: String, shape: single, doc: What grows.}\n\n  - name: Plant\n"
    workshop.replace("exemplar/garden.yaml", "\n\n  - name: Plant\n", new)
    other = uuid.uuid3(space, "Garden.Lane.crop#2")
    assert f"Lane.crop: the id is missing; a fresh one is {other}" in "\n".join(workshop.run("exemplar").errors)


def test_needs_to_be_told_what_to_do(tmp_path: Path) -> None:
    from compiler.__main__ import main

    with pytest.raises(SystemExit):
        main(["--package", str(tmp_path / "package.yaml")])
