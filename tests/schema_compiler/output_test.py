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


HANDLES = "include/orchard/trees/Handles.h"

def missing(table: str, written: dict[str, str]) -> list[str]:
    """Lines of a table that a file lacks: after the file's name, lines that it must have, set in by four spaces."""
    lacking: list[str] = []
    file: list[str] = []
    for line in table.strip().splitlines():
        if not line.startswith("    "):
            file = written[line].splitlines()
        elif line[4:] not in file:
            lacking.append(line)
    return lacking


# What the files compared above have no case of.
DERIVED = r"""
include/Garden/Handles.h
    class GARDEN_API Bed : public quay::zero::elements::Handle<Bed, quay::zero::ModelElement> {
      using Builder = quay::zero::elements::ConcreteBuilder<Bed>;
      static quay::zero::meta::Class const& metaClass();
      static quay::zero::ClassTable const& classTable();
      static Bed create(quay::zero::Model const& model, boost::uuids::uuid const& id = {});
      static OptionalConstrainable<int> const& waterings();
      static ConstrainableRelation<Frame> const& frame();
    class GARDEN_API RaisedBed : public quay::zero::elements::Handle<RaisedBed, Bed> {
      static Constrainable<unsigned int> const& legs();
include/Garden/RaisedBed.h
    class GARDEN_API RaisedBed::Impl : public quay::zero::elements::Level<RaisedBed, Bed> {
    class RaisedBed::Impl::BuilderBase : public Bed::Impl::BuilderBase<B> {
    class GARDEN_API RaisedBed::Constrainables : public Bed::Constrainables {
src/Plant.cpp
      static constexpr shapes::KeyedMap nameMaps[] = {{&Bed::classTable, 11, true}};
      static constexpr shapes::SingleKey<std::u16string> name{1, &Impl::name_, nameMaps};
      static constexpr shapes::KeyedMap heightMaps[] = {{&Bed::classTable, 12, false}};
src/Stake.cpp
      static constinit quay::zero::ClassTable table{&Support::classTable, 2, {}, &shapes::makeCollection<Stake>, &shapes::makeBuilder<Stake>};
        : Support::Constrainables(query, cls, mode) {}
include/Garden/MetaPackageGarden.h
    class GARDEN_API MetaPackageGarden final : public quay::zero::meta::DeclaredPackage {
      static MetaPackageGarden* getInstance();
      quay::zero::meta::EnumLiteral Soil_Sand;
src/MetaPackageGarden.cpp
      if (!instance->rootPackage) instance->initialize();
"""
LINES = r"""
include/orchard/trees/Bench.h
    #include "Garden/RaisedBed.h"
    class ORCHARD_API Bench::Impl : public quay::zero::elements::Level<Bench, Garden::RaisedBed> {
    class Bench::Impl::BuilderBase : public Garden::RaisedBed::Impl::BuilderBase<B> {
      unsigned long seats_ = 2ul;
include/orchard/trees/Handles.h
    #include "Garden/Handles.h"
    class ORCHARD_API Bench : public quay::zero::elements::Handle<Bench, Garden::RaisedBed> {
      static Constrainable<harvest> const& harvest_();
      static Constrainable<std::u16string> const& default_();
      static Constrainable<Garden::Soil> const& soil();
      static ConstrainableRelation<Garden::Bed> const& beds();
      static Constrainable<Garden::Bed> const& best();
    namespace VWTypeSys { class DataTypeTable; }
      static Tree plant(quay::zero::Model const& model, VWTypeSys::DataTypeTable* table, Position const& where);
      static int count(VWBlock* block);
include/orchard/trees/Orchard.h
      quay::zero::ElementSequence<Garden::Bed> beds_;
src/Orchard.cpp
    #include "Garden/Bed.h"
include/orchard/trees/Tree.h
    #include "Garden/Enumerations.h"
      Garden::Soil ground_ = Garden::Soil::Loam;
    #include "orchard/trees/Position.h"
      Position const& getPosition() const { return position_; }
      Position position_;
      int number_ = -2147483647 - 1;
      std::u16string default_ = u"a \"b\" \u00e4";
src/MetaPackageOrchard.cpp
            MetaPackageGarden::bringUp();
    #include "Garden/MetaPackageGarden.h"
src/Tree.cpp
      static constexpr shapes::Single<std::u16string> default_{5, &Impl::default_};
      static constexpr shapes::Single<harvest> harvest_{3, &Impl::harvest_};
      static constexpr shapes::KeyedMap numberMaps[] = {{&Nursery::classTable, 1, false}, {&Orchard::classTable, 1, true}};
    // Generated from trees.yaml. Changes belong there.
src/Bench.cpp
    #include "Garden/MetaPackageGarden.h"
    auto Bench::legs() -> Constrainable<unsigned int> const& { static Constrainable<unsigned int> const made(MetaPackageGarden::getInstance()->RaisedBed_legs); return made; }
include/orchard/trees/MetaPackageOrchard.h
    namespace orchard {
      quay::zero::meta::Package orchard_trees;
"""


def test_writes_subclasses_keys_and_abstract_classes(workshop: Workshop) -> None:
    assert workshop.run("exemplar").errors == []
    written = workshop.files()
    assert missing(DERIVED, written) == []
    assert "Builder final" not in written["include/Garden/Support.h"]
    assert "Support create(" not in written["include/Garden/Handles.h"]


def test_writes_foreign_types_values_keys_and_operations(workshop: Workshop) -> None:
    assert workshop.run().errors == []
    written = workshop.files()
    assert missing(LINES, written) == []
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


# Lines of the type stubs, and of the docs that scripts show as help.
SCRIPT_LINES = r"""
orchard/trees/__init__.pyi
    class Bench(garden.RaisedBed):
    class BenchFields(garden.RaisedBedFields, total=False):
        harvest: _zero.Attribute[almanac.Harvest, almanac.Harvest | str | int | None]
        def young(self) -> _zero.Multimap[int, Apple]:
        young: _Children[AppleFields] | None
        def createIntoYoung(self, uuid: _Id = ..., /) -> Apple: ...
almanac/__init__.pyi
    class Harvest(int):
        Early: _ClassVar[Harvest]
garden/__init__.py
    ordo.attach(__name__)
src/ScriptDocs.cpp
        {"harvest", "When the tree is ripe."},
        {{"orchard.trees.Apple", "An apple tree."}, {}},
"""


def test_tells_scripts_of_types_and_docs(workshop: Workshop) -> None:
    options = ("--typing", str(workshop.out), "--out", str(workshop.out), "--script-docs")
    assert workshop.run("orchard", *options).errors == []
    written = workshop.files()
    assert missing(SCRIPT_LINES, written) == []
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
    """The ids of the exemplar follow the rule for new ids."""
    line = workshop.replace("exemplar/garden.yaml", ", id: 85868903-c5a0-32f6-91c5-5f98aedd2121", "")
    space = uuid.uuid3(uuid.NAMESPACE_URL, "quay0://quay/garden/1/Garden")
    fresh = uuid.uuid3(space, "Garden.Bed.label")
    assert str(fresh) == "85868903-c5a0-32f6-91c5-5f98aedd2121"
    place = f"exemplar/garden.yaml:{line}"
    assert workshop.run("exemplar").errors == [f"{place}: Bed.label: the id is missing; a fresh one is {fresh}"]

    # After a property is renamed, its id is still the one of the old name, so a new property of that name needs
    # another.
    workshop.replace("exemplar/garden.yaml", "name: isOpen,", "name: isUp,")
    text = (workshop.folder / "exemplar/garden.yaml").read_text(encoding="utf-8")
    opened = uuid.uuid3(space, "Garden.Frame.isOpen")
    assert str(opened) in text
    new = "\n      - {index: 2, name: isOpen, type: String, shape: single, doc: Whether it is.}\n\n  - name: Plant\n"
    workshop.replace("exemplar/garden.yaml", "\n\n  - name: Plant\n", new)
    other = uuid.uuid3(space, "Garden.Frame.isOpen#2")
    assert f"Frame.isOpen: the id is missing; a fresh one is {other}" in "\n".join(workshop.run("exemplar").errors)


def test_needs_to_be_told_what_to_do(tmp_path: Path) -> None:
    from compiler.__main__ import main

    with pytest.raises(SystemExit):
        main(["--package", str(tmp_path / "package.yaml")])
