"""Every rule of a schema broken once: what is said of it, and the line that is named."""

from __future__ import annotations

from typing import TYPE_CHECKING

import pytest

if TYPE_CHECKING:
    from conftest import Case, Workshop

GARDEN = "exemplar/garden.yaml"
TREES = "orchard/trees.yaml"


def one_more_class(name: str, *mistakes: str) -> Case:
    """A class of that name, put before the exemplar's last but two."""
    id = "00000000-0000-3000-8000-000000000001"
    entry = f"  - name: {name}\n    id: {id}\n    doc: Put in.\n    properties: []\n\n"
    return GARDEN, "  - name: Stake\n", f"{entry}  - name: Stake\n", list(mistakes)


TYPES: dict[str, Case] = {
    "unknown": (GARDEN, "type: Lane", "type: Lain", ['Bed.lanes: unknown type "Lain"; did you mean "Lane"?']),
    "of another package, without its name": (
        TREES,
        "type: Garden.Soil",
        "type: Soil",
        ['Tree.ground: unknown type "Soil"; did you mean "Garden.Soil"?'],
    ),
    "of a package that isn't brought up": (
        TREES,
        "type: Garden.Soil",
        "type: Park.Way",
        ['Tree.ground: unknown type "Park.Way"'],
    ),
    "unknown shape": (
        GARDEN,
        "shape: optional",
        "shape: optionel",
        ['Bed.waterings: unknown shape "optionel"; did you mean "optional"?'],
    ),
    "owned value": (
        GARDEN,
        "type: StdString, shape: set,",
        "type: StdString, shape: set owned,",
        ['Bed.tags: the shape "set owned" needs a class, but StdString is a primitive type'],
    ),
    "owned data type": (
        TREES,
        "type: Position, shape: sequence,",
        "type: Position, shape: sequence owned,",
        ['Nursery.gaps: the shape "sequence owned" needs a class, but Position is a data type'],
    ),
    "class that isn't owned": (
        GARDEN,
        "type: Lane, shape: sequence owned,",
        "type: Lane, shape: sequence,",
        ['Bed.lanes: Lane is a class, whose elements are always owned; the shape should be "sequence owned"'],
    ),
    "class that is optional": (
        GARDEN,
        "type: Frame, shape: single owned,",
        "type: Frame, shape: optional,",
        ['Bed.frame: Frame is a class, whose elements are always owned; the shape should be "single owned"'],
    ),
    "sequence of arrays": (
        GARDEN,
        "type: ZxArray, shape: single,",
        "type: ZxArray, shape: sequence,",
        ['Bed.plan: a ZxArray is single, not "sequence"'],
    ),
    "unknown base": (GARDEN, "base: Bed", "base: Bad", ['-2|RaisedBed: unknown base "Bad"; did you mean "Bed"?']),
    "base that is no class": (
        GARDEN,
        "base: Bed",
        "base: Soil",
        ['-2|RaisedBed: the base "Soil" is an enumeration, not a class'],
    ),
    "circle of bases": (
        GARDEN,
        "doc: A bed of the garden.",
        "doc: A bed of the garden.\n    base: RaisedBed",
        ["-2|Bed: the class is its own superclass: Bed -> RaisedBed -> Bed"],
    ),
    "class as its own base": (
        GARDEN,
        "base: Support",
        "base: Stake",
        ["-2|Stake: the class is its own superclass: Stake -> Stake"],
    ),
    "continuing a class that isn't there": (
        TREES,
        "  - name: Tree\n    continued: true\n",
        "  - name: Trees\n    continued: true\n    properties: []\n  - name: Tree\n    continued: true\n",
        ['Trees: no file declares the class that this continues; did you mean "Tree"?'],
    ),
    "field with an index": (
        TREES,
        "{name: row,",
        "{index: 1, name: row,",
        ["Position.row: a field of a data type has neither an index nor a source nor a key"],
    ),
    "field that is a sequence": (
        TREES,
        'row, type: Integer, shape: single, default: "-1"',
        "row, type: Integer, shape: sequence",
        ['Position.row: a field of a data type is single, not "sequence"'],
    ),
    "field of a class": (
        TREES,
        'row, type: Integer, shape: single, default: "-1"',
        "row, type: Tree, shape: single",
        ["Position.row: a field of a data type can't be of the type Tree"],
    ),
    "unknown argument": (
        TREES,
        "type: nativeTypes.VwBlockPtr",
        "type: nativeTypes.VwBlokPtr",
        ['Tree.count.block: unknown type "nativeTypes.VwBlokPtr"; did you mean "nativeTypes.VwBlockPtr"?'],
    ),
    "array from an operation": (
        TREES,
        "result: Integer",
        "result: ZxArray",
        ["-3|Tree.count: an operation can't take or give a ZxArray"],
    ),
}

NAMES: dict[str, Case] = {
    "class twice": one_more_class("Frame", "Frame: the name is already that of another type (...)"),
    "class of an enumeration's name": one_more_class("Soil", "Soil: the name is already that of another type (...)"),
    "types that differ in case": one_more_class(
        "frame",
        "frame: differs from Frame (...) only in its first letter's case",
    ),
    "keyword": one_more_class("union", 'union: "union" can\'t be used as a name in C++'),
    "primitive type": one_more_class("String", "String: String is the name of something that generated code needs"),
    "member type": one_more_class("Builder", "Builder: Builder is the name of something that generated code needs"),
    "header": one_more_class("Handles", "Handles: Handles.h is already the header of the handles"),
    "member of the meta package": one_more_class(
        "Bed_label",
        "Bed_label: collides with Bed.label (...): both would be the meta package's member Bed_label",
    ),
    "function of the meta package": one_more_class(
        "initialize",
        "initialize: the meta package has another member initialize",
    ),
    "literal twice": (GARDEN, "name: Sand", "name: Loam", ["Soil.Loam: the name is given twice (first ...)"]),
    "macro": (GARDEN, "name: Sand", "name: NAN", ['Soil.NAN: "NAN" can\'t be used as a name in C++']),
    "property twice": (
        GARDEN,
        "name: height, type: Real, shape: single, id: 9",
        "name: name, type: Real, shape: single, id: 9",
        ["Plant.name: the name is already that of Plant.name (...)"],
    ),
    "property of the superclass": (
        GARDEN,
        "name: legs",
        "name: label",
        ["RaisedBed.label: the name is already that of Bed.label (...)"],
    ),
    "property of another package's superclass": (
        TREES,
        "name: seats",
        "name: legs",
        ["Bench.legs: the name is already that of RaisedBed.legs (...)"],
    ),
    "properties that differ in case": (
        GARDEN,
        "name: legs",
        "name: Label",
        ["RaisedBed.Label: collides with Bed.label (...): both would have getLabel"],
    ),
    "accessor of another property": (
        GARDEN,
        "name: legs",
        "name: lanesMutable",
        ["RaisedBed.lanesMutable: collides with Bed.lanes (...): both would have getLanesMutable"],
    ),
    "accessor of every element": (
        GARDEN,
        "name: legs",
        "name: model",
        ["RaisedBed.model: its accessor getModel would hide one that every element has"],
    ),
    "member of every handle": (
        GARDEN,
        "name: legs",
        "name: Cast",
        ["RaisedBed.Cast: every handle has another member cast"],
    ),
    "two underscores": (
        GARDEN,
        "name: legs",
        "name: le__gs",
        ['RaisedBed.le__gs: "le__gs" can\'t be used as a name in C++'],
    ),
    "operation of a property's name": (
        TREES,
        "name: count",
        "name: ground",
        ["Tree.ground: collides with Tree.ground (...): both would be the meta package's member Tree_ground"],
    ),
    "operation of a query's word": (
        TREES,
        "name: Default",
        "name: Count",
        ["-11|Tree.count: collides with Tree.Count (...): both would be members of the handle"],
    ),
    "unqueried field": (
        TREES,
        "name: row, type: Integer, shape: single,",
        "name: row, type: Integer, shape: single, unqueried: true,",
        ["Position.row: queries have no word for a field of a data type"],
    ),
    "argument twice": (TREES, "name: where", "name: table", ["Tree.plant.table: the name is given twice (first ...)"]),
    "argument of a type's name": (
        TREES,
        "name: where",
        "name: harvest",
        ["Tree.plant.harvest: harvest is the name of a type or namespace"],
    ),
    "operation of a type's name": (
        TREES,
        "name: count",
        "name: Bench",
        ["Tree.Bench: Bench is the name of a type or namespace"],
    ),
    "script name twice": (
        TREES,
        "  - name: Bench\n",
        "  - name: Bench\n    script: almanac.Harvest\n",
        ["Bench: the script name almanac.Harvest is also that of harvest (...)"],
    ),
    "script name of no form": (
        TREES,
        "script: almanac.Harvest",
        "script: almanac Harvest",
        ['-2|harvest: the script name "almanac Harvest" must be names joined by dots'],
    ),
    "no first value of zero": (
        GARDEN,
        "value: 0",
        "value: 1",
        [
            "Soil: the first literal must have the value 0",
            "1|Soil.Sand: the value 1 must be higher than that of Loam, 1",
        ],
    ),
    "value out of range": (
        TREES,
        "value: 3",
        "value: 2147483648",
        ["harvest.Late: the value 2147483648 is out of range"],
    ),
    "no doc": (
        GARDEN,
        "    doc: A single pole.\n",
        "",
        ["-3|Stake: the doc is missing; say in one line what it is"],
    ),
    "doc of two lines": (
        GARDEN,
        "doc: A single pole.",
        'doc: "A single\\npole."',
        ["-3|Stake: the doc has more than one line"],
    ),
    "doc that would go on": (
        GARDEN,
        "doc: A single pole.",
        "doc: A single pole\\",
        ["-3|Stake: the doc ends in a backslash, which would continue the C++ comment"],
    ),
}

IDS: dict[str, Case] = {
    "no UUID": (
        GARDEN,
        "id: 85868903-",
        "id: 8586890-",
        ['Bed.label: the id "8586890-c5a0-32f6-91c5-5f98aedd2121" is no UUID in lower case; a fresh one is ...'],
    ),
    "capitals": (
        GARDEN,
        "id: 85868903-c5a0",
        "id: 85868903-C5A0",
        ['Bed.label: the id "85868903-C5A0-32f6-91c5-5f98aedd2121" is no UUID in lower case; a fresh one is ...'],
    ),
    "version": (
        GARDEN,
        "-32f6-91c5-",
        "-42f6-91c5-",
        ["Bed.label: the id 85868903-c5a0-42f6-91c5-5f98aedd2121 is not of version 3; a fresh one is ..."],
    ),
    "variant": (
        GARDEN,
        "-32f6-91c5-",
        "-32f6-c1c5-",
        ["Bed.label: the id 85868903-c5a0-32f6-c1c5-5f98aedd2121 is not of version 3; a fresh one is ..."],
    ),
    "twice": (
        GARDEN,
        "9fb6270f-78fc-3b2f-96cf-429b8ecc9925",
        "85868903-c5a0-32f6-91c5-5f98aedd2121",
        ["Bed.soil: the id 85868903-c5a0-32f6-91c5-5f98aedd2121 is that of Bed.label (...); a fresh one is ..."],
    ),
    "missing in a package": (
        "orchard/package.yaml",
        "  id: d88ce9b0-138b-38ae-bc3f-923138782b65\n",
        "",
        ["-2|package: the id is missing; a fresh one is ..."],
    ),
}

INDICES: dict[str, Case] = {
    "missing": (GARDEN, "{index: 12, ", "{", ["Bed.visitors: the index is missing; the next free one is 12"]),
    "missing in the middle": (
        GARDEN,
        "{index: 9, ",
        "{",
        [
            "Bed.lanes: the index is missing; the next free one is 9",
            "1|Bed.supports: the index 10 leaves a gap; the next free one is 9",
        ],
    ),
    "twice": (
        GARDEN,
        "index: 12",
        "index: 11",
        ["Bed.visitors: the index 11 is already that of plants; the next free one is 12"],
    ),
    "gap": (TREES, "index: 14", "index: 15", ["Bench.seats: the index 15 leaves a gap; the next free one is 14"]),
    "gap between the parts of a class": (
        TREES,
        "index: 5",
        "index: 7",
        ["Tree.Default: the index 7 leaves a gap; the next free one is 5"],
    ),
    "starting anew in a subclass": (
        TREES,
        "index: 14",
        "index: 1",
        ["Bench.seats: the index 1 is below 14, where the class's own start; the next free one is 14"],
    ),
    "derived with an index": (
        GARDEN,
        "{derives: width,",
        "{index: 3, derives: width,",
        ["Bed.widthInFeet: a derived property has no index"],
    ),
    "derived from nothing": (
        GARDEN,
        "derives: width",
        "derives: with",
        ['Bed.widthInFeet: derives from "with", which is no indexed property of the class; did you mean "width"?'],
    ),
    "derived from itself": (
        GARDEN,
        "derives: width",
        "derives: widthInFeet",
        [
            'Bed.widthInFeet: derives from "widthInFeet", which is no indexed property of the class; '
            'did you mean "width"?'
        ],
    ),
    "derived sequence": (
        GARDEN,
        "name: widthInFeet, type: Real, shape: single",
        "name: widthInFeet, type: Real, shape: sequence",
        ['Bed.widthInFeet: a derived property is single, not "sequence"'],
    ),
    "derived with a default": (
        GARDEN,
        "name: widthInFeet, type: Real, shape: single",
        'name: widthInFeet, type: Real, shape: single, default: "4"',
        ["Bed.widthInFeet: a derived property takes no default"],
    ),
}

KEYS: dict[str, Case] = {
    "missing": (
        GARDEN,
        "shape: map owned, key: name,",
        "shape: map owned,",
        ["Bed.plants: a map needs a key: the name of a single property of its entries"],
    ),
    "of no map": (
        GARDEN,
        "type: Lane, shape: sequence owned,",
        "type: Lane, shape: sequence owned, key: crop,",
        ['Bed.lanes: only a map has a key, and this has the shape "sequence owned"'],
    ),
    "unknown": (
        GARDEN,
        "key: name",
        "key: nam",
        ['Bed.plants: the key "nam" is no property of Plant; did you mean "name"?'],
    ),
    "that isn't single": (
        TREES,
        "type: Tree, shape: map owned, key: number",
        "type: Nursery, shape: map owned, key: gaps",
        ['Orchard.trees: the key "gaps" is sequence Position, but must be a single String, StdString, Integer or Real'],
    ),
    "that is derived": (
        GARDEN,
        "type: Lane, shape: sequence owned,",
        "type: Bed, shape: map owned, key: widthInFeet,",
        ['Bed.lanes: the key "widthInFeet" is derived Real, but must be a single String, StdString, Integer or Real'],
    ),
    "of a type that can't be one": (
        TREES,
        "type: Tree, shape: map owned, key: number",
        "type: Tree, shape: map owned, key: harvest",
        ['Orchard.trees: the key "harvest" is single harvest, but must be a single String, StdString, Integer or Real'],
    ),
    "of another package": (
        TREES,
        "type: Garden.Bed, shape: sequence owned,",
        "type: Garden.Bed, shape: map owned, key: label,",
        ['Orchard.beds: the key "label" belongs to Garden.Bed, whose setter knows no map of this package'],
    ),
    "inherited from another package": (
        TREES,
        "type: Garden.Bed, shape: sequence owned,",
        "type: Bench, shape: map owned, key: label,",
        ['Orchard.beds: the key "label" belongs to Garden.Bed, whose setter knows no map of this package'],
    ),
}

GROUPS = {"type": TYPES, "name": NAMES, "id": IDS, "index": INDICES, "key": KEYS}
ALL = {f"{group}: {name}": case for group, cases in GROUPS.items() for name, case in cases.items()}

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
        (GARDEN, "type: Lane", "type: Lain", 'Bed.lanes: unknown type "Lain"; did you mean "Lane"?'),
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
