"""Files whose form is wrong, and packages that say something wrong of themselves."""

from __future__ import annotations

from typing import TYPE_CHECKING

import pytest

if TYPE_CHECKING:
    from conftest import Case, Workshop

GARDEN = "exemplar/garden.yaml"
TREES = "orchard/trees.yaml"
PACKAGE = "orchard/package.yaml"

FORM: dict[str, Case] = {
    "unknown key": (
        GARDEN,
        "abstract: true",
        "abstrakt: true",
        ['Support: unknown key "abstrakt"; did you mean "abstract"?'],
    ),
    "key given twice": (TREES, "base: Tree", "base: Tree\n    base: Bench", ['1|Apple: the key "base" is given twice']),
    "missing keys": (
        GARDEN,
        "{index: 1, name: isOpen, type: Boolean, shape: single,",
        "{index: 1, name: isOpen, typ: Boolean,",
        [
            'Frame.isOpen: the key "shape" is missing',
            'Frame.isOpen: the key "type" is missing',
            'Frame.isOpen: unknown key "typ"; did you mean "type"?',
        ],
    ),
    "text that YAML takes for something else": (
        GARDEN,
        "name: Loam",
        "name: Off",
        ['Soil.Off: "name" is true or false (Off), but should be text; put it in quotes'],
    ),
    "default without quotes": (
        TREES,
        'default: "2"',
        "default: 2",
        ['Bench.seats: "default" is a whole number (2), but should be text; put it in quotes'],
    ),
    "index that is no number": (
        GARDEN,
        "index: 12",
        "index: twelve",
        ['Bed.visitors: "index" is text (twelve), but should be a whole number'],
    ),
    "number that isn't decimal": (
        TREES,
        "value: 3",
        "value: 0x3",
        ['harvest.Late: "value" is a whole number (0x3), but should be one in decimal digits'],
    ),
    "flag that is text": (
        GARDEN,
        "abstract: true",
        'abstract: "yes"',
        ['Support: "abstract" is text (yes), but should be true or false'],
    ),
    "list that is a mapping": (
        GARDEN,
        "properties: []",
        "properties: {a: b}",
        ['Stake: "properties" is a mapping, but should be a list'],
    ),
    "mapping that is text": (
        GARDEN,
        "    literals:\n",
        "    literals:\n      - Clay\n",
        ["1|Soil: here stands text (Clay), not a mapping of keys to values"],
    ),
    "no YAML": (
        GARDEN,
        "doc: What a bed is filled with.",
        "doc: Soil: what",
        ["not valid YAML: mapping values are not allowed in this context"],
    ),
    "no domain": (GARDEN, "domain: ", "title: ", ['the key "domain" is missing', 'unknown key "title"']),
    "keys of a class where it is continued": (
        TREES,
        "continued: true",
        "continued: true\n    base: Bench",
        ['1|Tree: unknown key "base"'],
    ),
    "file that isn't there": (
        PACKAGE,
        "files: [trees]",
        "files: [trees, bushes]",
        ["cannot read orchard/bushes.yaml: No such file or directory"],
    ),
    "package that isn't there": (
        PACKAGE,
        "brings_up: [../exemplar]",
        "brings_up: [../park]",
        ["cannot read park/package.yaml: No such file or directory"],
    ),
    "package that brings up itself": (
        PACKAGE,
        "brings_up: [../exemplar]",
        "brings_up: [../orchard, ../exemplar]",
        ["orchard/package.yaml brings up itself"],
    ),
}

PACKAGES: dict[str, Case] = {
    "singleton": (
        PACKAGE,
        "orchard::MetaPackageOrchard",
        "orchard::Meta Package",
        ['package: the singleton "orchard::Meta Package" is no C++ name'],
    ),
    "namespace with a keyword": (
        PACKAGE,
        "namespace: orchard::trees",
        "namespace: orchard::new",
        ['-2|package: the namespace "orchard::new" is no C++ name'],
    ),
    "namespace that hides another": (
        PACKAGE,
        "namespace: orchard::trees",
        "namespace: orchard::Garden",
        ['-2|package: the namespace "orchard::Garden" hides the namespace Garden that generated code needs'],
    ),
    "library": (
        PACKAGE,
        "library: orchard",
        "library: or-chard",
        ['-1|package: the library "or-chard" must be a name of letters, digits and single underscores'],
    ),
    "script prefix": (
        PACKAGE,
        "script: orchard.trees",
        "script: orchard trees",
        ['-3|package: the script "orchard trees" must be names joined by dots'],
    ),
    "URI": (
        PACKAGE,
        "uri: quay0://quay/orchard/1/trees",
        "uri: trees",
        ['-1|package: "trees" is no URI with a scheme, a host and a path'],
    ),
    "one URI for two packages": (
        PACKAGE,
        "uri: quay0://quay/orchard/1/trees",
        "uri: quay0://quay/orchard/1",
        ["-1|package: the root package and the schema package have the same URI"],
    ),
    "unknown import": (
        PACKAGE,
        "    - quay0://quay/garden/1\n",
        "    - quay0://quay/garden/1\n    - quay0://quay/garden/2\n",
        [
            "1|package: no package that is brought up has the imported URI quay0://quay/garden/2; "
            'did you mean "quay0://quay/garden/1"?'
        ],
    ),
    "import missing": (
        PACKAGE,
        "    - quay0://quay/garden/1\n",
        "",
        ["-11|package: Garden is brought up, but its URI quay0://quay/garden/1 is not imported"],
    ),
    "import twice": (
        PACKAGE,
        "    - quay0://quay/garden/1\n",
        "    - quay0://quay/garden/1\n" * 2,
        ["1|package: the import quay0://quay/garden/1 stands twice"],
    ),
    "unknown primitive type": (
        PACKAGE,
        "primitives: []",
        "primitives: [Reel, Real, Real]",
        [
            "package: the primitive type Real stands twice",
            'package: unknown primitive type "Reel"; did you mean "Real"?',
        ],
    ),
    "name of another package": (
        PACKAGE,
        "name: orchard.trees",
        "name: Garden",
        ["-5|package: the name Garden is also that of exemplar/package.yaml"],
    ),
}


@pytest.mark.parametrize("name", FORM)
def test_refuses_a_malformed_file(workshop: Workshop, name: str) -> None:
    expected, said = workshop.said(FORM[name])
    assert said == expected


@pytest.mark.parametrize("name", PACKAGES)
def test_refuses_what_a_package_says_of_itself(workshop: Workshop, name: str) -> None:
    expected, said = workshop.said(PACKAGES[name])
    assert said == expected


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
