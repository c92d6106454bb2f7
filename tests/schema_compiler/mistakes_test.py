"""Breaks every rule of a schema once, and checks the report and its line."""

from __future__ import annotations

from typing import TYPE_CHECKING

import pytest

if TYPE_CHECKING:
    from conftest import Case, Workshop

GARDEN = "exemplar/garden.yaml"
TREES = "orchard/trees.yaml"
FILES = {"garden": GARDEN, "trees": TREES, "package": "orchard/package.yaml"}

# A file, a text that stands in it once, and what is put there; then what is said of that, as a Case has it. A pilcrow
# stands for the end of a line. "+ class" puts a class of that name before the exemplar's last but two.
CASES = r"""
# Form of a file
garden: abstract: true => abstrakt: true
    Support: unknown key "abstrakt"; did you mean "abstract"?
trees: base: Tree => base: Tree¶    base: Bench
    1|Apple: the key "base" is given twice
garden: {index: 1, name: isOpen, type: Boolean, shape: single, => {index: 1, name: isOpen, typ: Boolean,
    Frame.isOpen: the key "shape" is missing
    Frame.isOpen: the key "type" is missing
    Frame.isOpen: unknown key "typ"; did you mean "type"?
garden: name: Loam => name: Off
    Soil.Off: "name" is true or false (Off), but should be text; put it in quotes
trees: default: "2" => default: 2
    Bench.seats: "default" is a whole number (2), but should be text; put it in quotes
garden: index: 12 => index: twelve
    Bed.byHeight: "index" is text (twelve), but should be a whole number
trees: value: 3 => value: 0x3
    harvest.Late: "value" is a whole number (0x3), but should be one in decimal digits
garden: abstract: true => abstract: "yes"
    Support: "abstract" is text (yes), but should be true or false
garden: properties: [] => properties: {a: b}
    Stake: "properties" is a mapping, but should be a list
garden:     literals:¶ =>     literals:¶      - Clay¶
    1|Soil: here stands text (Clay), not a mapping of keys to values
garden: doc: What a bed is filled with. => doc: Soil: what
    not valid YAML: mapping values are not allowed in this context
garden: domain: Beds => title: Beds
    the key "domain" is missing
    unknown key "title"
trees: continued: true => continued: true¶    base: Bench
    1|Tree: unknown key "base"
package: files: [trees] => files: [trees, bushes]
    cannot read orchard/bushes.yaml: No such file or directory
package: brings_up: [../exemplar] => brings_up: [../park]
    cannot read park/package.yaml: No such file or directory
package: brings_up: [../exemplar] => brings_up: [../orchard, ../exemplar]
    orchard/package.yaml brings up itself
# What a package says of itself
package: orchard::MetaPackageOrchard => orchard::Meta Package
    package: the singleton "orchard::Meta Package" is no C++ name
package: namespace: orchard::trees => namespace: orchard::new
    -2|package: the namespace "orchard::new" is no C++ name
package: namespace: orchard::trees => namespace: orchard::Garden
    -2|package: the namespace "orchard::Garden" hides the namespace Garden that generated code needs
package: library: orchard => library: or-chard
    -1|package: the library "or-chard" must be a name of letters, digits and single underscores
package: script: orchard.trees => script: orchard trees
    -3|package: the script "orchard trees" must be names joined by dots
package: uri: quay0://quay/orchard/1/trees => uri: trees
    -1|package: "trees" is no URI with a scheme, a host and a path
package: uri: quay0://quay/orchard/1/trees => uri: quay0://quay/orchard/1
    -1|package: the root package and the schema package have the same URI
package:     - quay0://quay/garden/1¶ =>     - quay0://quay/garden/1¶    - quay0://quay/garden/2¶
    1|package: no package that is brought up has the imported URI quay0://quay/garden/2; did you mean "quay0://quay/garden/1"?
package:     - quay0://quay/garden/1¶ => 
    -11|package: Garden is brought up, but its URI quay0://quay/garden/1 is not imported
package:     - quay0://quay/garden/1¶ =>     - quay0://quay/garden/1¶    - quay0://quay/garden/1¶
    1|package: the import quay0://quay/garden/1 stands twice
package: primitives: [] => primitives: [Reel, Real, Real]
    package: the primitive type Real stands twice
    package: unknown primitive type "Reel"; did you mean "Real"?
package: name: orchard.trees => name: Garden
    -5|package: the name Garden is also that of exemplar/package.yaml
# Types and shapes
garden: type: Frame, shape: sequence => type: Fram, shape: sequence
    Bed.frames: unknown type "Fram"; did you mean "Frame"?
trees: type: Garden.Soil => type: Soil
    Tree.ground: unknown type "Soil"; did you mean "Garden.Soil"?
trees: type: Garden.Soil => type: Park.Way
    Tree.ground: unknown type "Park.Way"
garden: shape: optional => shape: optionel
    Bed.waterings: unknown shape "optionel"; did you mean "optional"?
garden: type: StdString, shape: set, => type: StdString, shape: set owned,
    Bed.tags: the shape "set owned" needs a class, but StdString is a primitive type
trees: type: Position, shape: sequence, => type: Position, shape: sequence owned,
    Nursery.gaps: the shape "sequence owned" needs a class, but Position is a data type
garden: type: Frame, shape: sequence owned, => type: Frame, shape: sequence,
    Bed.frames: Frame is a class, whose elements are always owned; the shape should be "sequence owned"
garden: type: Frame, shape: single owned, => type: Frame, shape: optional,
    Bed.frame: Frame is a class, whose elements are always owned; the shape should be "single owned"
garden: type: ZxArray, shape: single, => type: ZxArray, shape: sequence,
    Bed.plan: a ZxArray is single, not "sequence"
garden: base: Bed => base: Bad
    -2|RaisedBed: unknown base "Bad"; did you mean "Bed"?
garden: base: Bed => base: Soil
    -2|RaisedBed: the base "Soil" is an enumeration, not a class
garden: doc: A bed of the garden. => doc: A bed of the garden.¶    base: RaisedBed
    -2|Bed: the class is its own superclass: Bed -> RaisedBed -> Bed
garden: base: Support => base: Stake
    -2|Stake: the class is its own superclass: Stake -> Stake
trees:   - name: Tree¶    continued: true¶ =>   - name: Trees¶    continued: true¶    properties: []¶  - name: Tree¶    continued: true¶
    Trees: no file declares the class that this continues; did you mean "Tree"?
trees: {name: row, => {index: 1, name: row,
    Position.row: a field of a data type has neither an index nor a source nor a key
trees: row, type: Integer, shape: single, default: "-1" => row, type: Integer, shape: sequence
    Position.row: a field of a data type is single, not "sequence"
trees: row, type: Integer, shape: single, default: "-1" => row, type: Tree, shape: single
    Position.row: a field of a data type can't be of the type Tree
trees: type: nativeTypes.VwBlockPtr => type: nativeTypes.VwBlokPtr
    Tree.count.block: unknown type "nativeTypes.VwBlokPtr"; did you mean "nativeTypes.VwBlockPtr"?
trees: result: Integer => result: ZxArray
    -3|Tree.count: an operation can't take or give a ZxArray
# Names
garden: + class Frame
    Frame: the name is already that of another type (...)
garden: + class Soil
    Soil: the name is already that of another type (...)
garden: + class frame
    frame: differs from Frame (...) only in its first letter's case
garden: + class union
    union: "union" can't be used as a name in C++
garden: + class String
    String: String is the name of something that generated code needs
garden: + class Builder
    Builder: Builder is the name of something that generated code needs
garden: + class Handles
    Handles: Handles.h is already the header of the handles
garden: + class Bed_label
    Bed_label: collides with Bed.label (...): both would be the meta package's member Bed_label
garden: + class initialize
    initialize: the meta package has another member initialize
garden: name: Sand => name: Loam
    Soil.Loam: the name is given twice (first ...)
garden: name: Sand => name: NAN
    Soil.NAN: "NAN" can't be used as a name in C++
garden: name: soil, => name: label,
    Bed.label: the name is already that of Bed.label (...)
garden: name: legs => name: label
    RaisedBed.label: the name is already that of Bed.label (...)
trees: name: seats => name: legs
    Bench.legs: the name is already that of RaisedBed.legs (...)
garden: name: legs => name: Label
    RaisedBed.Label: collides with Bed.label (...): both would have getLabel
garden: name: legs => name: framesMutable
    RaisedBed.framesMutable: collides with Bed.frames (...): both would have getFramesMutable
garden: name: legs => name: model
    RaisedBed.model: its accessor getModel would hide one that every element has
garden: name: legs => name: Cast
    RaisedBed.Cast: every handle has another member cast
garden: name: legs => name: le__gs
    RaisedBed.le__gs: "le__gs" can't be used as a name in C++
trees: name: count => name: ground
    Tree.ground: collides with Tree.ground (...): both would be the meta package's member Tree_ground
trees: name: Default => name: Count
    -11|Tree.count: collides with Tree.Count (...): both would be members of the handle
trees: name: row, type: Integer, shape: single, => name: row, type: Integer, shape: single, unqueried: true,
    Position.row: queries have no word for a field of a data type
trees: name: where => name: table
    Tree.plant.table: the name is given twice (first ...)
trees: name: where => name: harvest
    Tree.plant.harvest: harvest is the name of a type or namespace
trees: name: count => name: Bench
    Tree.Bench: Bench is the name of a type or namespace
trees:   - name: Bench¶ =>   - name: Bench¶    script: almanac.Harvest¶
    Bench: the script name almanac.Harvest is also that of harvest (...)
trees: script: almanac.Harvest => script: almanac Harvest
    -2|harvest: the script name "almanac Harvest" must be names joined by dots
garden: value: 0 => value: 1
    Soil: the first literal must have the value 0
    1|Soil.Sand: the value 1 must be higher than that of Loam, 1
trees: value: 3 => value: 2147483648
    harvest.Late: the value 2147483648 is out of range
garden:     doc: A single pole.¶ => 
    -3|Stake: the doc is missing; say in one line what it is
garden: doc: A single pole. => doc: "A single\npole."
    -3|Stake: the doc has more than one line
garden: doc: A single pole. => doc: A single pole\
    -3|Stake: the doc ends in a backslash, which would continue the C++ comment
# Ids
garden: id: 85868903- => id: 8586890-
    Bed.label: the id "8586890-c5a0-32f6-91c5-5f98aedd2121" is no UUID in lower case; a fresh one is ...
garden: id: 85868903-c5a0 => id: 85868903-C5A0
    Bed.label: the id "85868903-C5A0-32f6-91c5-5f98aedd2121" is no UUID in lower case; a fresh one is ...
garden: -32f6-91c5- => -42f6-91c5-
    Bed.label: the id 85868903-c5a0-42f6-91c5-5f98aedd2121 is not of version 3; a fresh one is ...
garden: -32f6-91c5- => -32f6-c1c5-
    Bed.label: the id 85868903-c5a0-32f6-c1c5-5f98aedd2121 is not of version 3; a fresh one is ...
garden: 9fb6270f-78fc-3b2f-96cf-429b8ecc9925 => 85868903-c5a0-32f6-91c5-5f98aedd2121
    Bed.soil: the id 85868903-c5a0-32f6-91c5-5f98aedd2121 is that of Bed.label (...); a fresh one is ...
package:   id: d88ce9b0-138b-38ae-bc3f-923138782b65¶ => 
    -2|package: the id is missing; a fresh one is ...
# Indices
garden: {index: 12,  => {
    Bed.byHeight: the index is missing; the next free one is 12
garden: {index: 9,  => {
    Bed.frames: the index is missing; the next free one is 9
    1|Bed.supports: the index 10 leaves a gap; the next free one is 9
garden: index: 12 => index: 11
    Bed.byHeight: the index 11 is already that of plants; the next free one is 12
trees: index: 14 => index: 15
    Bench.seats: the index 15 leaves a gap; the next free one is 14
trees: index: 5 => index: 7
    Tree.Default: the index 7 leaves a gap; the next free one is 5
trees: index: 14 => index: 1
    Bench.seats: the index 1 is below 14, where the class's own start; the next free one is 14
garden: {derives: width, => {index: 3, derives: width,
    Bed.widthInFeet: a derived property has no index
garden: derives: width => derives: with
    Bed.widthInFeet: derives from "with", which is no indexed property of the class; did you mean "width"?
garden: derives: width => derives: widthInFeet
    Bed.widthInFeet: derives from "widthInFeet", which is no indexed property of the class; did you mean "width"?
garden: name: widthInFeet, type: Real, shape: single => name: widthInFeet, type: Real, shape: sequence
    Bed.widthInFeet: a derived property is single, not "sequence"
garden: name: widthInFeet, type: Real, shape: single => name: widthInFeet, type: Real, shape: single, default: "4"
    Bed.widthInFeet: a derived property takes no default
# Keys
garden: shape: map owned, key: name, => shape: map owned,
    Bed.plants: a map needs a key: the name of a single property of its entries
garden: type: Frame, shape: sequence owned, => type: Frame, shape: sequence owned, key: isOpen,
    Bed.frames: only a map has a key, and this has the shape "sequence owned"
garden: key: name => key: nam
    Bed.plants: the key "nam" is no property of Plant; did you mean "name"?
trees: type: Tree, shape: map owned, key: number => type: Nursery, shape: map owned, key: gaps
    Orchard.trees: the key "gaps" is sequence Position, but must be a single String, StdString, Integer or Real
garden: type: Frame, shape: sequence owned, => type: Bed, shape: map owned, key: widthInFeet,
    Bed.frames: the key "widthInFeet" is derived Real, but must be a single String, StdString, Integer or Real
trees: type: Tree, shape: map owned, key: number => type: Tree, shape: map owned, key: harvest
    Orchard.trees: the key "harvest" is single harvest, but must be a single String, StdString, Integer or Real
trees: type: Garden.Bed, shape: sequence owned, => type: Garden.Bed, shape: map owned, key: label,
    Orchard.beds: the key "label" belongs to Garden.Bed, whose setter knows no map of this package
trees: type: Garden.Bed, shape: sequence owned, => type: Bench, shape: map owned, key: label,
    Orchard.beds: the key "label" belongs to Garden.Bed, whose setter knows no map of this package
"""


def read(text: str) -> dict[str, Case]:
    made: dict[str, Case] = {}
    mistakes: list[str] = []
    for line in text.strip().splitlines():
        if line.startswith("    "):
            mistakes.append(line.strip())
        elif not line.startswith("#"):
            file, _, change = line.replace("\u00b6", "\n").partition(": ")
            if change.startswith("+ class "):
                entry = f"  - name: {change[8:]}\n    id: 00000000-0000-3000-8000-000000000001\n    doc: Put in.\n"
                change = f"  - name: Stake\n => {entry}    properties: []\n\n  - name: Stake\n"
            old, _, new = change.partition(" => ")
            mistakes = []
            made[line] = (FILES[file], old, new, mistakes)
    return made


ALL = read(CASES)

# Type and default of a single property, and what is said.
DEFAULTS = [
    ("Boolean", "yes", 'default "yes" is neither "true" nor "false"'),
    ("Integer", "1.5", 'default "1.5" is not a whole number'),
    ("Integer", "2147483648", 'default "2147483648" is out of range; Integer goes from -2147483648 to 2147483647'),
    ("UnlimitedNatural", "-1", 'default "-1" is out of range; UnlimitedNatural goes from 0 to 4294967295'),
    (
        "UInteger64",
        "18446744073709551616",
        'default "18446744073709551616" is out of range; UInteger64 goes from 0 to 18446744073709551615',
    ),
    ("Real", "1,5", 'default "1,5" is not a decimal number'),
    ("Real", "nan", 'default "nan" is not a decimal number'),
    ("Real", "1e999", 'default "1e999" is too large for Real'),
    ("StdString", "\u00e4", 'default "\u00e4" of a StdString must be ASCII'),
    ("harvest", "Lat", 'default "Lat" is no literal of harvest; did you mean "Late"?'),
    ("Garden.Soil", "Clay", 'default "Clay" is no literal of Soil'),
    ("ZxArray", "", "a ZxArray takes no default; it starts as a null array"),
    ("Position", "", "a property of the data type Position takes no default; the type has its own"),
]


@pytest.mark.parametrize("name", ALL)
def test_refuses(workshop: Workshop, name: str) -> None:
    expected, said = workshop.said(ALL[name])
    assert said == expected


@pytest.mark.parametrize(("type", "default", "text"), DEFAULTS)
def test_refuses_a_default(workshop: Workshop, type: str, default: str, text: str) -> None:
    old = 'type: harvest, shape: single, default: "Late"'
    new = f'type: {type}, shape: single, default: "{default}"'
    expected, said = workshop.said((TREES, old, new, [f"Tree.harvest: {text}"]))
    assert said == expected


@pytest.mark.parametrize("type", ["harvest", "Garden.Soil"])
def test_refuses_an_enumeration_without_a_default(workshop: Workshop, type: str) -> None:
    first = {"harvest": "Early", "Garden.Soil": "Loam"}[type]
    old = 'type: harvest, shape: single, default: "Late"'
    text = f'Tree.harvest: a single property of an enumeration needs a default; the first literal is "{first}"'
    expected, said = workshop.said((TREES, old, f"type: {type}, shape: single", [text]))
    assert said == expected


@pytest.mark.parametrize("shape", ["optional", "sequence", "set"])
def test_refuses_a_default_where_nothing_is_there_to_start_with(workshop: Workshop, shape: str) -> None:
    text = f'Tree.harvest: a property of the shape "{shape}" takes no default; it starts empty'
    old = 'type: harvest, shape: single, default: "Late"'
    expected, said = workshop.said((TREES, old, f'type: harvest, shape: {shape}, default: "Late"', [text]))
    assert said == expected


def test_tells_every_mistake_of_all_packages_in_one_run_by_place(workshop: Workshop) -> None:
    changes = [
        (TREES, "index: 14", "index: 16", "Bench.seats: the index 16 leaves a gap; the next free one is 14"),
        (GARDEN, "type: Support,", "type: Suport,", 'Bed.supports: unknown type "Suport"; did you mean "Support"?'),
        (GARDEN, "doc: Drains quickly.", 'doc: ""', "Soil.Sand: the doc is missing; say in one line what it is"),
        (GARDEN, 'default: "1.2"', 'default: "wide"', 'Bed.width: default "wide" is not a decimal number'),
        (
            TREES,
            "key: number, id: c",
            "key: nummer, id: c",
            'Orchard.trees: the key "nummer" is no property of Tree; did you mean "number"?',
        ),
    ]
    lines = [(file, workshop.replace(file, old, new), text) for file, old, new, text in changes]
    outcome = workshop.run()
    assert outcome.code == 1
    assert outcome.errors == [f"{file}:{line}: {text}" for file, line, text in sorted(lines)]


def test_names_the_place_of_the_other_entry(workshop: Workshop) -> None:
    lines = (workshop.folder / GARDEN).read_text(encoding="utf-8").splitlines()
    first = next(number for number, line in enumerate(lines, 1) if "name: label," in line)
    line = workshop.replace(GARDEN, "name: legs", "name: label")
    text = f"RaisedBed.label: the name is already that of Bed.label ({GARDEN}:{first})"
    assert workshop.run("exemplar").errors == [f"{GARDEN}:{line}: {text}"]


@pytest.mark.parametrize(
    ("content", "text"),
    [
        (b"", "the file is empty"),
        (b"- a\n", "here stands a list, not a mapping of keys to values"),
        (b"a: \xff\n", "the file is not UTF-8: invalid start byte"),
    ],
)
def test_refuses_files_without_keys(workshop: Workshop, content: bytes, text: str) -> None:
    (workshop.folder / GARDEN).write_bytes(content)
    assert workshop.run("exemplar").errors == [f"{GARDEN}:1: {text}"]
