"""Conversion of model descriptions to records."""

from __future__ import annotations

import json
import pathlib
import subprocess
import xml.etree.ElementTree as ElementTree
import zipfile
from collections.abc import Callable
from typing import Any

import pytest

MODELS = pathlib.Path(__file__).parents[2] / "examples" / "models"
Run = Callable[..., subprocess.CompletedProcess[str]]


def imported(modelref: Run, model: pathlib.Path, record: pathlib.Path) -> dict[str, Any]:
    result = modelref("import", model, "-o", record, "--json")
    assert result.returncode == 0, result.stderr
    summary: dict[str, Any] = json.loads(result.stdout)
    return summary


def described(folder: pathlib.Path, variables: str) -> pathlib.Path:
    model = folder / "model.xml"
    model.write_text(
        '<fmiModelDescription fmiVersion="3.1" modelName="M">'
        f"<ModelVariables>{variables}</ModelVariables></fmiModelDescription>"
    )
    return model


def shown(modelref: Run, record: pathlib.Path, path: str) -> Any:
    result = modelref("show", record, path, "--json")
    assert result.returncode == 0, result.stderr
    return json.loads(result.stdout)


def test_every_variable_is_recorded_or_listed(modelref: Run, example: pathlib.Path, tmp_path: pathlib.Path) -> None:
    summary = imported(modelref, example, tmp_path / "record")
    variables = [v.get("name") for v in ElementTree.parse(example).getroot().find("ModelVariables") or []]
    assert summary["variables"] == len(variables)
    assert summary["recorded"] + len(summary["notPlaced"]) == len(variables)
    assert {entry["name"] for entry in summary["notPlaced"]} < set(variables)
    assert summary["warnings"] == []
    # Variables that aren't listed are in the record under their names.
    text = (tmp_path / "record").read_text()
    listed = {entry["name"] for entry in summary["notPlaced"]}
    assert [name for name in variables if name not in listed and json.dumps(name, ensure_ascii=False) not in text] == []


def test_a_record_of_an_example_is_clean_and_is_itself(
    modelref: Run, example: pathlib.Path, tmp_path: pathlib.Path
) -> None:
    imported(modelref, example, tmp_path / "one")
    imported(modelref, example, tmp_path / "two")
    validated = modelref("validate", tmp_path / "one")
    assert (validated.returncode, validated.stdout) == (0, "")
    # Another import generates other ids, which comparisons ignore.
    assert (tmp_path / "one").read_bytes() != (tmp_path / "two").read_bytes()
    assert modelref("diff", tmp_path / "one", tmp_path / "two").returncode == 0


def test_an_archive_gives_what_its_description_gives(modelref: Run, tmp_path: pathlib.Path) -> None:
    model = MODELS / "controller.fmi2.xml"
    with zipfile.ZipFile(tmp_path / "controller.fmu", "w", zipfile.ZIP_DEFLATED) as archive:
        archive.write(model, "modelDescription.xml")
        archive.writestr("binaries/linux64/speed_controller.so", b"\x7fELF")
    imported(modelref, tmp_path / "controller.fmu", tmp_path / "packed")
    imported(modelref, model, tmp_path / "plain")
    assert modelref("diff", "-q", tmp_path / "packed", tmp_path / "plain").returncode == 0


def test_ports_have_names_numbers_types_ranges_and_rates(modelref: Run, tmp_path: pathlib.Path) -> None:
    record = tmp_path / "record"
    imported(modelref, MODELS / "controller.fmi2.xml", record)
    wanted = shown(modelref, record, "/inports/wanted")["values"]
    assert (wanted["designMin"], wanted["designMax"], wanted["rateInfos"]) == (-400, 400, [{"period": 0}])
    mode = shown(modelref, record, "/inports/2")["values"]
    assert (mode["compiledSignalLabel"], mode["originalPortNumber"]) == ("mode", 2)
    assert mode["designMax"] == {"$real": "Infinity"}
    assert mode["isNotDerivPort"] is True and "isNotDerivPort" not in wanted
    arguments = shown(modelref, record, "/varlowFunctions/compFunctions/step/fcnArgs")["values"]
    types = [argument["values"]["dataType"]["values"] for argument in arguments["inArgs"] + arguments["outArgs"]]
    assert [t["dataTypeName"] for t in types] == ["double", "double", "Mode", "double", "boolean"]
    assert types[2]["dataClass"] == "Enum"
    enumeration = shown(modelref, record, "/standaloneEnumInfos/Mode")["values"]
    assert (enumeration["labels"], enumeration["values"]) == (["off", "hold", "ramp"], [1, 2, 3])


def test_states_and_indicators_are_recorded(modelref: Run, tmp_path: pathlib.Path) -> None:
    record = tmp_path / "record"
    imported(modelref, MODELS / "plant.fmi3.xml", record)
    assert shown(modelref, record, "/numContinuousStates") == 2
    assert [s["values"]["name"] for s in shown(modelref, record, "/contStateRecordInfo")] == ["speed", "angle"]
    accessors = [s["values"]["stateAccessors"] for s in shown(modelref, record, "/stateAccessInfos")]
    assert accessors == [["der(speed)"], ["der(angle)"]]
    assert shown(modelref, record, "/zeroCrossingInfo/0/name") == "turned"
    assert shown(modelref, record, "/outports/speed/isState") is True
    imported(modelref, MODELS / "controller.fmi2.xml", record)
    assert shown(modelref, record, "/zeroCrossingInfo/0/width") == 2


def test_clocks_become_rates_events_and_port_groups(modelref: Run, tmp_path: pathlib.Path) -> None:
    record = tmp_path / "record"
    summary = imported(modelref, MODELS / "clocks.fmi3.xml", record)
    assert [entry["name"] for entry in summary["notPlaced"]] == ["inner"]
    rates = shown(modelref, record, "/runtimeNonFcnCallRateInfos")
    told = [(r["nonFcnCallPartitionName"], r.get("period", -1), r.get("offset", 0), r.get("priority")) for r in rates]
    assert told == [("fast", 0.01, 0, 0), ("slow", 0.05, 0.005, 1), ("timeout", -1, 0, 3)]
    assert shown(modelref, record, "/varTsUIDMap/entries/2/varTsUID") == "timeout"
    edge = shown(modelref, record, "/allEdges/0")["values"]
    assert (edge.get("srcNodeIdx", 0), edge["dstNodeIdx"]) == (0, 2)
    groups = [group["values"] for group in shown(modelref, record, "/fcnCallPortGroups")]
    assert [group.get("fcnCallInputPort", 0) for group in groups] == [0, 1, 2, 3]
    assert [group.get("isAsync", False) for group in groups] == [False, False, True, False]
    assert (groups[1]["dataOutputPorts"], groups[2]["dataInputPorts"]) == ([1, 2], [5])
    assert shown(modelref, record, "/inports/request/modelWideEventId") == "onRequest"
    assert shown(modelref, record, "/discStateRecordInfo/0/name") == "count"
    drawn = modelref("graph", record, "--kind", "rates").stdout
    assert "r0 -> r2" in drawn and "fast\\nperiod 0.01" in drawn


def test_arrays_keep_their_order_and_exact_values(modelref: Run, tmp_path: pathlib.Path) -> None:
    record = tmp_path / "record"
    imported(modelref, MODELS / "arrays.fmi3.xml", record)

    def start(name: str) -> Any:
        return shown(modelref, record, f"/argumentParameters/entries/{name}/value")["$array"]

    # Elements are in row-major order in the file, in column-major order in the record.
    assert start("weights") == {"class": "double", "data": [1, 4, 2, 5, 3, 6], "dims": [2, 3]}
    assert start("shift") == {"class": "int8", "data": [-128, 127], "dims": [1, 2]}
    assert start("key") == {"class": "uint8", "data": [0, 255, 127], "dims": [1, 3]}
    assert start("names") == {"class": "string", "data": ["left", "r\u00e9cht & \U0001f600"], "dims": [1, 2]}
    assert start("window")["data"] == [10]
    epoch = shown(modelref, record, "/inports/epoch/resolvedSignalObject")["$array"]
    assert -9223372036854775808 in epoch["data"][0][epoch["fields"].index("InitialValue")]["data"]
    levels = shown(modelref, record, "/varlowFunctions/compFunctions/step/fcnArgs/outArgs/0")["values"]
    assert (levels["dims"], levels["symbDimsStr"]) == ([4, 2], "4,channels")
    kinds = [p["class"].split(".")[1] for p in shown(modelref, record, "/interfaceParameterInfo/modelArguments")]
    assert kinds[:3] == ["FixedPointParameter", "FixedPointParameter", "BuiltinParameter"]
    assert "EnumParameter" in kinds
    assert shown(modelref, record, "/isNumAllowedInstancesOne") is True


STARTS = [
    ("Float64", 'start="1e-400"', {"class": "double", "data": [0], "dims": [1, 1]}),
    ("Float64", 'start="-1e-400"', {"class": "double", "data": [-0.0], "dims": [1, 1]}),
    ("Float64", f'start="0.{"0" * 400}1"', {"class": "double", "data": [0], "dims": [1, 1]}),
    ("Float64", 'start="4e-320"', {"class": "double", "data": [4e-320], "dims": [1, 1]}),
    ("Float32", 'start="-1e-60"', {"class": "single", "data": [-0.0], "dims": [1, 1]}),
    # Rounded directly to 32 bits; rounding to 64 bits first would give another number.
    ("Float32", 'start="1.00000017881393432617187499"', {"class": "single", "data": [1.0000001], "dims": [1, 1]}),
    ("String", ("a", "b"), {"class": "string", "data": ["a", "b"], "dims": [1, 2]}),
    ("Binary", ("00ff",), {"class": "uint8", "data": [0, 255], "dims": [1, 2]}),
]


@pytest.mark.parametrize(("kind", "start", "value"), STARTS, ids=range(len(STARTS)))
def test_start_values_are_the_nearest_there_are(
    kind: str, start: str | tuple[str, ...], value: Any, modelref: Run, tmp_path: pathlib.Path
) -> None:
    attribute, inside = (start, "") if isinstance(start, str) else ("", "".join(f'<Start value="{s}"/>' for s in start))
    text = f'<{kind} name="a" valueReference="1" causality="parameter" {attribute}>{inside}</{kind}>'
    imported(modelref, described(tmp_path, text), tmp_path / "record")
    recorded = shown(modelref, tmp_path / "record", "/argumentParameters/entries/a/value")["$array"]
    assert json.dumps(recorded) == json.dumps(value)  # distinguishes -0.0 from 0


def test_a_name_stays_on_its_line(modelref: Run, tmp_path: pathlib.Path) -> None:
    """Line feeds and escape characters are valid in XML, and so can be in a name."""
    text = '<Float64 name="a&#10;modelref: b&#x9b;31m" valueReference="1" start="1 2"/>'
    model = described(tmp_path, text)
    result = modelref("import", model, "-o", tmp_path / "record")
    assert result.returncode == 0 and result.stderr.count("\n") == len(result.stderr.splitlines()) == 4
    assert result.stderr.count("a\\x0amodelref: b\\xc2\\x9b31m") == 2


def test_a_description_comes_through_a_pipe(modelref: Run, tmp_path: pathlib.Path) -> None:
    model = MODELS / "plant.fmi3.xml"
    imported(modelref, model, tmp_path / "one")
    with subprocess.Popen(["cat", model], stdout=subprocess.PIPE) as cat:
        result = modelref("import", "/dev/stdin", "-o", tmp_path / "two", stdin=cat.stdout)
    assert result.returncode == 0, result.stderr
    assert modelref("diff", tmp_path / "one", tmp_path / "two").returncode == 0


def test_a_missing_interface_kind_is_a_warning(modelref: Run, tmp_path: pathlib.Path) -> None:
    summary = imported(modelref, described(tmp_path, ""), tmp_path / "record")
    assert "no interface kind" in summary["warnings"][0] and summary["variables"] == 0
