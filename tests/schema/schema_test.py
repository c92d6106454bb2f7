"""What the meta registry holds once a package is loaded, against the YAML that describes the package.

The YAML is read here without the schema compiler, so that a mistake of the compiler's can't hide in both.
"""

from __future__ import annotations

import os
import subprocess
import uuid
from collections import Counter
from functools import cache
from pathlib import Path
from typing import Any

import pytest
import yaml

SCHEMA = Path(__file__).parents[2] / "schema"
BUILD = Path(os.environ["QUAY_BUILD_DIR"])
OURS = "vw_modelref_info"

Row = list[str]
Data = dict[str, Any]

# Of each shape: flags, ordered, unique, lower and upper bound.
SHAPES = {
    "single": (1, 1, 1, 1, 1),
    "optional": (0, 1, 1, 0, 1),
    "single owned": (1, 1, 1, 1, 1),
    "sequence": (2, 1, 0, 0, -1),
    "sequence owned": (2, 1, 0, 0, -1),
    "set": (4, 0, 1, 0, -1),
    "set owned": (4, 0, 1, 0, -1),
    "map owned": (6, 0, 0, 0, -1),
    "multimap owned": (5, 0, 0, 0, -1),
}


class Yaml:
    """One package as described by its files, converted to the lines that its dump must have."""

    def __init__(self, folder: Path) -> None:
        self.package: Data = yaml.safe_load((folder / "package.yaml").read_text(encoding="utf-8"))["package"]
        self.classes: dict[str, Data] = {}
        self.data_types: dict[str, Data] = {}
        self.enumerations: dict[str, Data] = {}
        for name in self.package["files"]:
            file: Data = yaml.safe_load((folder / f"{name}.yaml").read_text(encoding="utf-8"))
            self.data_types |= {entry["name"]: entry for entry in file.get("data_types", [])}
            self.enumerations |= {entry["name"]: entry for entry in file.get("enumerations", [])}
            for entry in file.get("classes", []):
                if entry.get("continued"):
                    for members in ("properties", "operations"):
                        self.classes[entry["name"]].setdefault(members, []).extend(entry.get(members, []))
                else:
                    self.classes[entry["name"]] = entry

    def rows(self) -> list[Row]:
        schema = self.package["schema"]
        rows = [["package", '""', self.package["id"], self.package["uri"]]]
        rows += [["import", uri] for uri in self.package["imports"]]
        rows.append(["package", f'"{schema["name"]}"', "", schema["uri"]])
        for name in sorted(self.classes | self.data_types):
            rows += self._class(name) if name in self.classes else self._data_type(name)
        for name in sorted(self.enumerations):
            rows += self._enumeration(name)
        return rows

    def _named(self, name: str) -> str:
        """The qualified name of a type as it is written in the package's own files."""
        own = name in self.classes or name in self.data_types or name in self.enumerations
        return f"{self.package['schema']['name']}.{name}" if own else name

    def _registration(self, entry: Data) -> Row:
        schema = self.package["schema"]
        return [f"{schema['namespace']}::{entry['name']}", self._script(entry), "", "found"]

    def _script(self, entry: Data) -> str:
        return str(entry.get("script") or f"{self.package['schema']['script']}.{entry['name']}")

    def _class(self, name: str) -> list[Row]:
        entry = self.classes[name]
        abstract = bool(entry.get("abstract"))
        base = self._named(entry.get("base", "ModelElement"))
        row = ["class", self._named(name), entry["id"], base, flag(abstract), flag(not abstract), self._script(entry)]
        rows = [row + self._registration(entry)]
        rows += [self._property(name, member) for member in in_order(entry.get("properties", []))]
        for operation in entry.get("operations", []):
            full = f"{self._named(name)}.{operation['name']}"
            rows.append(["operation", full, operation["id"], self._named(operation["result"]), *"110110"])
            for argument in operation["arguments"]:
                typed = self._named(argument["type"])
                rows.append(["argument", f"{full}.{argument['name']}", argument["id"], typed, *"111"])
        return rows

    def _data_type(self, name: str) -> list[Row]:
        entry = self.data_types[name]
        row = ["data type", self._named(name), entry["id"], "1", self._script(entry), *self._registration(entry)]
        return [row, *(self._property(name, field) for field in entry["properties"])]

    def _enumeration(self, name: str) -> list[Row]:
        entry = self.enumerations[name]
        rows = [["enum", self._named(name), entry["id"], "Integer", "", "+++", *self._registration(entry)]]
        for literal in sorted(entry["literals"], key=lambda literal: str(literal["name"])):
            full = f"{self._named(name)}.{literal['name']}"
            rows.append(["literal", full, literal["id"], str(literal["value"])])
        return rows

    def _property(self, owner: str, entry: Data) -> Row:
        shape = entry["shape"]
        flags, ordered, unique, lower, upper = SHAPES[shape]
        default = f'"{entry["default"]}"' if "default" in entry else "none"
        row = ["property", f"{self._named(owner)}.{entry['name']}", entry["id"], self._named(entry["type"])]
        row += [str(flags), flag(shape.endswith("owned")), str(ordered), str(unique), str(lower), str(upper)]
        row += [flag("derives" in entry), str(entry.get("index", 0)), default, self._key(entry)]
        return [*row, flag(shape != "multimap owned")]

    def _key(self, entry: Data) -> str:
        """The key, qualified by the class in the child's chain that declares it."""
        if "key" not in entry:
            return "-"
        child = entry["type"]
        while all(member["name"] != entry["key"] for member in self.classes[child]["properties"]):
            child = self.classes[child]["base"]
        return f"{self._named(child)}.{entry['key']}"


def in_order(properties: list[Data]) -> list[Data]:
    """The properties by rising index, since several files may declare members of one class; a derived one stays after
    its predecessor."""
    last = 0
    keyed = []
    for entry in properties:
        last = entry.get("index", last)
        keyed.append((last, entry))
    return [entry for _, entry in sorted(keyed, key=lambda pair: pair[0])]


def flag(value: bool) -> str:
    return "1" if value else "0"


@cache
def described(library: str) -> Yaml:
    return Yaml(SCHEMA if library == OURS else SCHEMA / "foreign" / library)


@cache
def dumped(library: str) -> list[Row]:
    command = [BUILD / "bin/schema_dump", BUILD / f"lib/lib{OURS}.so", described(library).package["uri"]]
    done = subprocess.run(command, check=True, capture_output=True, text=True)
    return [line.split("\t") for line in done.stdout.splitlines()]


@pytest.mark.parametrize("library", [OURS, "vwtp_mm", "mm_tree_node_datamodel", "ci", "vwexec_mm_sto"])
def test_everything_is_registered_as_the_yaml_has_it_and_in_its_order(library: str) -> None:
    rows = dumped(library)
    inner = [row for row in rows if row[0] == "package"][1]
    inner[2] = ""  # the only id that isn't in the YAML
    assert rows == described(library).rows()


def test_counts() -> None:
    """The figures that documents and users rely on; they are changed here when the schema grows."""
    rows = dumped(OURS)
    assert Counter(row[0] for row in rows) == {
        "package": 2,
        "import": 5,
        "class": 103,
        "data type": 2,
        "enum": 8,
        "literal": 32,
        "property": 641,
        "operation": 2,
        "argument": 6,
    }
    classes = {row[1]: row for row in rows if row[0] == "class"}
    assert sum(row[3] == "ModelElement" for row in classes.values()) == 83
    assert [name for name, row in classes.items() if row[4] == "1"] == ["ModelRefInfoRepo.InterfaceParameter"]


def test_ids_are_name_based_and_never_shared() -> None:
    ids = [row[2] for library in (OURS, "ci", "vwexec_mm_sto", "vwtp_mm") for row in dumped(library) if len(row) > 2]
    ids = [text for text in ids if text]
    assert len(ids) == len(set(ids))
    fixed = [uuid.UUID(row[2]) for row in dumped(OURS) if row[0] not in ("package", "import")]
    assert all(value.version == 3 for value in fixed)


# Columns by number that saved records and callers depend on, independently of the YAML.
LANDMARKS: list[tuple[str, dict[int, str]]] = [
    ("AUTOSARInportInfo.IsErrorStatus", {2: "2db9fd5c-6926-35d4-a58f-894dee017c1b", 11: "3", 12: '"false"'}),
    ("VwtpEventData.scope", {3: "vwtp.mm.core.EventScope", 11: "4", 12: '"Scoped"'}),
    ("ModelRefInfoRoot.autoSolverStatusFlags", {10: "1", 11: "0", 12: "none"}),
    ("RootIOPortInformation.rateInfo", {3: "ModelRefInfoRepo.RateInfo", 10: "1", 11: "0", 12: "none"}),
    ("CompServicePort.servicePortKey", {3: "ModelRefInfoRepo.ServicePortKey", 10: "0", 12: "none"}),
    ("ModelRefInfoRoot.unionTsContainedTs", {4: "5", 14: "0"}),
    ("ModelRefInfoRoot.stoClientDataRegistry", {3: "sto.ClientDataRegistry", 5: "1"}),
    ("ModelRefInfoRoot.rootBlockDiagramInterface", {3: "ci.Model", 5: "1"}),
]


@pytest.mark.parametrize(("name", "columns"), LANDMARKS)
def test_landmarks(name: str, columns: dict[int, str]) -> None:
    row = next(row for row in dumped(OURS) if row[1] == f"ModelRefInfoRepo.{name}")
    assert {column: row[column] for column in columns} == columns
