"""Reading, comparing and checking records."""

from __future__ import annotations

import json
import os
import pathlib
import pty
import re
import subprocess
from collections.abc import Callable
from typing import Any

import pytest

MODELS = pathlib.Path(__file__).parents[2] / "examples" / "models"
BUILD = pathlib.Path(os.environ.get("QUAY_BUILD_DIR", "build"))
Run = Callable[..., subprocess.CompletedProcess[str]]
Json = dict[str, Any]

COMMANDS = ["import", "tree", "info", "show", "diff", "validate", "graph"]


def element(kind: str, number: int, /, **values: object) -> Json:
    return {"class": f"ModelRefInfoRepo.{kind}", "id": f"00000000-0000-0000-0000-{number:012}", "values": values}


class Record:
    """A record that the test may change."""

    def __init__(self, path: pathlib.Path) -> None:
        self.path = path
        self.text: Json = json.loads(path.read_text())
        self.root: Json = self.text["roots"][0]["values"]

    def saved(self, name: str) -> pathlib.Path:
        path = self.path.with_name(name)
        path.write_text(json.dumps(self.text))
        return path


@pytest.fixture
def clocks(modelref: Run, tmp_path: pathlib.Path) -> Record:
    assert modelref("import", MODELS / "clocks.fmi3.xml", "-o", tmp_path / "record").returncode == 0
    return Record(tmp_path / "record")


@pytest.mark.parametrize("command", [[], *([c] for c in COMMANDS)], ids=str)
def test_help_has_examples(command: list[str], modelref: Run) -> None:
    result = modelref(*command, "--help")
    assert (result.returncode, result.stderr) == (0, "")
    assert f"modelref {command[0] if command else 'import'}" in result.stdout.split("Examples:")[1]


@pytest.mark.parametrize(
    "arguments",
    [[], ["nothing"], ["tree"], ["tree", "r", "more"], ["import", "m"], ["tree", "r", "--depth", "x"], ["tree", "r", "--depth", "-1"], ["graph", "r", "-d", "-1"], ["graph", "r", "-k", "x"]],
    ids=str,
)
def test_a_wrong_command_line_is_a_failure(arguments: list[str], modelref: Run) -> None:
    result = modelref(*arguments)
    assert (result.returncode, result.stdout) == (2, "")
    assert result.stderr.startswith("modelref: ") and result.stderr.endswith(" (--help tells more)\n")
    assert result.stderr.count("\n") == 1


@pytest.mark.parametrize("command", COMMANDS[1:])
def test_a_record_that_cannot_be_read_is_a_failure(command: str, modelref: Run, tmp_path: pathlib.Path) -> None:
    broken = tmp_path / "broken"
    for text, reason in [
        (None, "No such file"),
        ('{"roots": [{"class": "Nothing"}]}', "/roots/0/class: there is no class 'Nothing'"),
        ('{"roots": [', "ends too early"),
    ]:
        if text is not None:
            broken.write_text(text)
        result = modelref(command, broken, *([broken] if command == "diff" else []))
        assert (result.returncode, result.stdout, result.stderr.count("\n")) == (2, "", 1)
        assert str(broken) in result.stderr and reason in result.stderr


def test_tree_shows_what_owns_what(clocks: Record, modelref: Run) -> None:
    lines = modelref("tree", clocks.path, "--depth", 1).stdout.splitlines()
    assert lines[0] == "ModelRefInfoRoot"
    assert "├─ inports/4 InportInformation 'signal'" in lines
    (root,) = json.loads(modelref("tree", clocks.path, "--json").stdout)
    assert [port["name"] for port in root["owns"]["inports"]][:2] == ["fast", "slow"]
    assert root["owns"]["fcnCallPortGroups"][0]["owns"]["preCompRateSpec"][0]["class"] == "RateSpec"


def test_info_counts(clocks: Record, modelref: Run) -> None:
    info = json.loads(modelref("info", clocks.path, "--json").stdout)
    assert info["bytes"] == clocks.path.stat().st_size
    assert (info["roots"], info["classes"]["InportInformation"]) == (1, len(clocks.root["inports"]))
    assert info["elements"] == sum(info["classes"].values()) == clocks.path.read_text().count('"id":"')
    assert "InportInformation" in modelref("info", clocks.path).stdout


def test_show_follows_paths(clocks: Record, modelref: Run) -> None:
    shown = {
        "/inports/0/rateInfos/0": clocks.root["inports"][0]["values"]["rateInfos"][0],
        "/inports/fast/rateInfos/0": clocks.root["inports"][0]["values"]["rateInfos"][0],
        "/FMUBlockMap/entries/Logger/fmuMode": "ScheduledExecution",
        "/fcnCallPortGroups/0/preCompRateSpec": clocks.root["fcnCallPortGroups"][0]["values"]["preCompRateSpec"],
        "//0/numTs": 3,
        "/inports/4/rateInfos/0": {"nonFcnCallPartitionName": "fast", "period": 0.01, "priority": 0, "rateIdx": 0},
        "/standaloneEnumInfos": [],
    }
    for path, value in shown.items():
        assert json.loads(modelref("show", clocks.path, path, "--json").stdout) == value, path
    assert json.loads(modelref("show", clocks.path, "--json").stdout) == clocks.text["roots"][0]
    hard = ["a,b", 'c"],[{', "\\", ""]
    clocks.root["multiThreadingBlockers"] = hard
    changed = clocks.saved("hard")
    for position, text in enumerate(hard):
        assert json.loads(modelref("show", changed, f"/multiThreadingBlockers/{position}").stdout) == text
    text = modelref("show", clocks.path, "/inports/1").stdout
    assert 'compiledSignalLabel = "slow"' in text and "designMin" in text and "isMessage" not in text
    assert "isMessage = false" in modelref("show", clocks.path, "/inports/1", "--all").stdout


@pytest.fixture
def named(clocks: Record) -> pathlib.Path:
    """A record with names and keys that look like positions or escapes."""
    hard = ["1", "x", "0", "a/b", "~1", "~x0a", "c d", "line\nfeed", "\x1b[31m", "\u009b31m", "\u00e4", "07", "99"]
    clocks.root["inports"] = [element("InportInformation", 10 + i, compiledSignalLabel=n) for i, n in enumerate(hard)]
    clocks.root["argumentParameters"] = element(
        "ArgumentValueMap", 1, entries=[element("ArgumentValue", 30 + i, name=n) for i, n in enumerate(["", "~", *hard])]
    )
    clocks.root["varTsUIDMap"] = element(
        "VarTsUIDMap", 2, entries=[element("VarTsUIDEntry", 5, varTsIdx=2), element("VarTsUIDEntry", 6, varTsIdx=1)]
    )
    unions = [(1, 8), (-3, 9), (1, 10)]
    clocks.root["unionTsContainedTs"] = [
        element("UnionTsContainedTsElem", 60 + i, unionTs=u, containedTs=c) for i, (u, c) in enumerate(unions)
    ]
    return clocks.saved("named")


def test_show_takes_the_paths_that_others_print(named: pathlib.Path, modelref: Run) -> None:
    lines = modelref("tree", named, "--ids").stdout.splitlines()[1:]
    parts: list[str] = []
    seen = set()
    for line in lines:
        branch = re.fullmatch(r"((?:│  |   )*)[├└]─ (.*?) (\w+)( '.*')? ([0-9a-f-]{36})", line)
        assert branch, line
        parts[len(branch[1]) // 3 :] = [branch[2]]
        if not branch[2].startswith(("inports/", "entries/", "unionTs")):
            continue
        path = "/" + "/".join(parts)
        assert json.loads(modelref("show", named, path, "--json").stdout)["id"] == branch[5], path
        seen.add(path.rpartition("/entries/")[0] if "/entries/" in path else path.split("/")[1])
    assert seen >= {"inports", "unionTsContainedTs", "/argumentParameters", "/varTsUIDMap"}
    assert json.loads(modelref("show", named, "/inports/x", "--json").stdout)["values"]["compiledSignalLabel"] == "x"
    unions = {}
    for finding in json.loads(modelref("validate", named, "--json").stdout):
        if finding["path"].startswith("/unionTs"):
            unions[finding["path"].removeprefix("/unionTsContainedTs/")] = int(finding["message"].split()[0])
            assert int(modelref("show", named, finding["path"]).stdout) == int(finding["message"].split()[0])
    assert unions == {"-3/unionTs": -3, "-3/containedTs": 9, "1/0/containedTs": 8, "1/1/containedTs": 10}


def test_diff_prints_paths_of_the_old_record(named: pathlib.Path, clocks: Record, modelref: Run) -> None:
    for port in clocks.root["inports"]:
        port["values"]["designMax"] = 1
    for entry in clocks.root["unionTsContainedTs"]:
        entry["values"]["containedTs"] = 2
    listed = json.loads(modelref("diff", named, clocks.saved("changed"), "--json").stdout)
    assert len(listed) == len(clocks.root["inports"]) + 3
    for difference in listed:
        assert modelref("show", named, difference["path"]).stdout == difference["old"] + "\n", difference["path"]


@pytest.mark.parametrize(
    ("path", "reason"),
    [
        ("/nothing", "ModelRefInfoRoot has no property 'nothing'"),
        ("/inports/9999", "inports has no '9999' among its 6"),
        ("/messageInfo/x", "messageInfo is empty"),
        ("/numTs/0", "a value has no parts"),
        ("/inports/0/rateInfos/7", "there are only 1 values"),
        ("//1", "there is no such root"),
        ("/varTsUIDMap/entries/0", "entries has no '0' among its 1"),
    ],
)
def test_show_refuses_paths_that_lead_nowhere(path: str, reason: str, clocks: Record, modelref: Run) -> None:
    result = modelref("show", clocks.path, path)
    assert (result.returncode, result.stdout, result.stderr.count("\n")) == (2, "", 1)
    assert reason in result.stderr


def test_diff_tells_what_changed_by_meaning(clocks: Record, modelref: Run) -> None:
    inports: list[Json] = clocks.root["inports"]
    inports[0], inports[1] = inports[1], inports[0]
    inports[2]["values"]["compiledSignalLabel"] = "on/Request"
    inports[3]["values"]["hierCondInfos"] = [element("HierCondInfo", 1, hierIdx=1), element("HierCondInfo", 2)]
    clocks.root["triggerType"] = 7
    clocks.root["varTsUIDMap"]["values"]["entries"].append(element("VarTsUIDEntry", 3, varTsIdx=1))
    del clocks.root["methodInfo"]
    clocks.root["allEdges"].append(element("SampleTimeGraphEdge", 4))
    changed = clocks.saved("changed")
    result = modelref("diff", clocks.path, changed)
    assert result.returncode == 1
    assert sorted(result.stdout.splitlines()) == sorted(
        [
            "> /inports/fast: from 0 to 1",
            "- /inports/onRequest: InportInformation 'onRequest'",
            "+ /inports/on~1Request: InportInformation 'on/Request'",
            "+ /inports/timeout/hierCondInfos/0: HierCondInfo",
            "+ /inports/timeout/hierCondInfos/1: HierCondInfo",
            "~ /triggerType: 5 -> 7",
            "+ /varTsUIDMap/entries/1: VarTsUIDEntry '1'",
            "- /methodInfo: MethodExistenceInfo",
            "+ /allEdges/1: SampleTimeGraphEdge",
        ]
    )
    listed = json.loads(modelref("diff", clocks.path, changed, "--json").stdout)
    assert {"kind": "changed", "path": "/triggerType", "old": "5", "new": "7"} in listed and len(listed) == 9
    quiet = modelref("diff", "-q", clocks.path, changed)
    assert (quiet.returncode, quiet.stdout, quiet.stderr) == (1, "", "")


def test_diff_does_not_mind_ids_or_the_order_of_sets(clocks: Record, modelref: Run) -> None:
    values = clocks.root["inports"][0]["values"]
    values["hierCondInfos"] = [element("HierCondInfo", 1, hierIdx=1), element("HierCondInfo", 2, hierIdx=2)]
    one = clocks.saved("one")
    values["hierCondInfos"] = [element("HierCondInfo", 3, hierIdx=2), element("HierCondInfo", 4, hierIdx=1)]
    assert modelref("diff", one, clocks.saved("other")).returncode == 0
    values["hierCondInfos"].append(element("HierCondInfo", 5, hierIdx=2))
    assert modelref("diff", one, clocks.saved("third")).returncode == 1


def ports(*names: str) -> list[Json]:
    return [element("InportInformation", 10 + i, compiledSignalLabel=name) for i, name in enumerate(names)]


def reference(number: int) -> Json:
    return {"class": "ModelRefInfoRepo.InportInformation", "ref": element("", number)["id"]}


def root(number: int, name: str = "", /, **values: object) -> Json:
    interface = {"class": "ci.Model", "id": element("", number + 100)["id"], "values": {"name": name}}
    return element("ModelRefInfoRoot", number, **values, **({"rootBlockDiagramInterface": interface} if name else {}))


# Roots before and after, and their differences.
ROOTS: list[tuple[list[Json], list[Json], list[str]]] = [
    ([root(1, triggerType=3), root(2, triggerType=6)], [root(1, triggerType=6), root(2, triggerType=3)], []),
    ([root(1, "a", triggerType=3), root(2, "b", triggerType=6)], [root(1, "b", triggerType=7), root(2, "a", triggerType=3)],
     ["~ //1/triggerType: 6 -> 7"]),
    ([root(1, triggerType=3), root(2, triggerType=6)], [root(1, triggerType=6)], ["- /: ModelRefInfoRoot"]),
    ([root(1, triggerType=3), root(2, triggerType=6)], [root(1, triggerType=6), root(2, triggerType=7), root(3)],
     ["~ /triggerType: 3 -> 7", "+ //2: ModelRefInfoRoot"]),
    ([root(1, "a")], [root(1, "b")], ["~ /rootBlockDiagramInterface/name: \"a\" -> \"b\""]),
    ([root(1, inports=ports(*"abcdef"))], [root(1, inports=ports(*"bcdefa"))], ["> /inports/a: from 0 to 5"]),
    ([root(1, inports=ports(*"abcd"))], [root(1, inports=ports(*"xdbc"))],
     ["- /inports/a: InportInformation 'a'", "+ /inports/x: InportInformation 'x'", "> /inports/d: from 3 to 1"]),
    # References to a port that is contained in another root: one is removed, one refers to another port afterwards.
    ([root(1, "a", inports=ports(*"pq")), root(2, "b", inports=[reference(10)])],
     [root(1, "a", inports=ports(*"pq")), root(2, "b")], ["~ //1/inports: [/inports/0] -> []"]),
    ([root(1, "a", inports=ports(*"pq")), root(2, "b", inports=[reference(10)])],
     [root(1, "a", inports=ports(*"pq")), root(2, "b", inports=[reference(11)])],
     ["~ //1/inports: [/inports/0] -> [/inports/1]"]),
]  # fmt: skip


@pytest.mark.parametrize(("before", "after", "differences"), ROOTS, ids=range(len(ROOTS)))
def test_diff_matches_roots_ports_and_references(
    before: list[Json], after: list[Json], differences: list[str], clocks: Record, modelref: Run
) -> None:
    clocks.text["roots"] = before
    old = clocks.saved("old")
    clocks.text["roots"] = after
    result = modelref("diff", old, clocks.saved("new"))
    assert (result.stdout.splitlines(), result.returncode) == (differences, 1 if differences else 0), result.stderr


# Changes of the root, and the findings that they cause.
DANGLING: list[tuple[Json, list[str]]] = [
    ({"dataPortGroup": element("DataPortGroup", 1, dataInputPorts=[0, 6], compDataOutputPorts=[-1], srcPortGroups=[4])},
     ["/dataPortGroup/dataInputPorts/1", "/dataPortGroup/compDataOutputPorts/0", "/dataPortGroup/srcPortGroups/0"]),
    ({"fcnCallPortGroups": [element("FcnCallPortGroup", 1, fcnCallInputPort=9, serviceInputPort=9, muxedPortGroups=[1],
                                    varlowFunctionName=element("QualifiedFunctionName", 2, functionName="none"))]},
     ["/fcnCallPortGroups/0/fcnCallInputPort", "/fcnCallPortGroups/0/serviceInputPort",
      "/fcnCallPortGroups/0/muxedPortGroups/0", "/fcnCallPortGroups/0/varlowFunctionName/functionName"]),
    ({"IRTSideIOPortGroups": [element("IRTSideIOPortGroup", 1, dataOutputPorts=[4])]},
     ["/IRTSideIOPortGroups/0/dataOutputPorts/0"]),
    ({"compToGrOutputPortMaps": [element("GrCompIOPortMaps", 1, grAndCompPorts=[0, 4])]},
     ["/compToGrOutputPortMaps/0/grAndCompPorts/1"]),
    ({"portGroupsRequireSameRate": element("PortGroupsRequireSameRate", 1, DSMPortGroups=element(
        "NameToPortGroupIdxVectMap", 2, entries=[element("NameIntVectAssociation", 3, name="a/b", idxVect=[4])]))},
     ["/portGroupsRequireSameRate/DSMPortGroups/entries/a~1b/idxVect/0"]),
    ({"messageInfo": element("MessageInformation", 1,
                             inputQueues=[element("InputQueue", 2, inputPortIdx=6)],
                             messageListeners=[element("MessageListener", 3, functionName="none")],
                             rootOutportInfo=element("MessageRootPortInfo", 4, CompMsgInfoMap=[
                                 element("MessageCompPortInfo", 5, portIdx=4)]))},
     ["/messageInfo/inputQueues/0/inputPortIdx", "/messageInfo/messageListeners/0/functionName",
      "/messageInfo/rootOutportInfo/CompMsgInfoMap/4/portIdx"]),
    ({"unionTsContainedTs": [element("UnionTsContainedTsElem", 1, unionTs=1, containedTs=8)],
      "sortedUnionRateIndices": [1, 2]},
     ["/unionTsContainedTs/1/containedTs", "/sortedUnionRateIndices/1"]),
    ({"allEdges": [element("SampleTimeGraphEdge", 1, srcNodeIdx=2**64 - 1)]}, ["/allEdges/0/srcNodeIdx"]),
    ({"numTs": -1, "allEdges": [element("SampleTimeGraphEdge", 1, srcNodeIdx=9)], "varTsUIDMap": element(
        "VarTsUIDMap", 2, entries=[element("VarTsUIDEntry", 3, varTsIdx=-1)])},
     ["/allEdges/0/srcNodeIdx", "/varTsUIDMap/entries/-1/varTsIdx"]),
    ({"varTsUIDMap": element("VarTsUIDMap", 1, entries=[element("VarTsUIDEntry", 2, varTsIdx=3)])},
     ["/varTsUIDMap/entries/3/varTsIdx"]),
    ({"argumentParameters": element("ArgumentValueMap", 1, entries=[element("ArgumentValue", 2, name="none")])},
     ["/argumentParameters/entries/none/name"]),
    ({"interfaceParameterInfo": element("InterfaceParameterInfo", 1, inactiveParamNames=["none"], modelArguments=[
        element("EnumParameter", 2, parameterName="p", enumName="none")])},
     ["/interfaceParameterInfo/inactiveParamNames/0", "/interfaceParameterInfo/modelArguments/0/enumName"]),
    ({"varlowFunctions": element("VarlowFunctions", 1, compFunctions=[element(
        "CompFunction", 2, functionName="f", stateOwners=["count", "none"], resetEventsContainingCallers=["none"],
        childCallers=[element("ChildCaller", 3, functionName="f"), element("ChildCaller", 4, functionName="g")],
        fcnArgs=element("CompFunctionArgs", 5, argNameMap=[element("ArgNameMap", 6, name="a")]))])},
     ["/varlowFunctions/compFunctions/0/stateOwners/1", "/varlowFunctions/compFunctions/0/fcnArgs/argNameMap/a/position",
      "/varlowFunctions/compFunctions/0/resetEventsContainingCallers/0",
      "/varlowFunctions/compFunctions/0/childCallers/1/functionName"]),
    ({"periodicStateInfo": [element("PeriodicStateInfo", 1)]}, ["/periodicStateInfo/0/continuousStateIndex"]),
    ({"stateWriterToOwnerMap": element("StateWriterInfo", 1, entries=[element(
        "StateAssociation", 2, writerSID="w", ownerBlkPath="none")])},
     ["/stateWriterToOwnerMap/entries/w/ownerBlkPath"]),
    ({"rateBasedMdlGlobalDSMRateSpec": element("GlobalDSMRateSpecMap", 1, entries=[element(
        "GlobalDSMRateSpecAssociation", 2, dSMName="none")])},
     ["/rateBasedMdlGlobalDSMRateSpec/entries/none/dSMName"]),
    ({"scopedDSMInfo": [element("ScopedDataStoreMemoryInfo", 1, accessorPortGroups=[0, 4])]},
     ["/scopedDSMInfo/0/accessorPortGroups/1"]),
]  # fmt: skip


@pytest.mark.parametrize(("values", "places"), DANGLING, ids=range(len(DANGLING)))
def test_validate_finds_what_points_nowhere(values: Json, places: list[str], clocks: Record, modelref: Run) -> None:
    assert modelref("validate", clocks.path).returncode == 0
    clocks.root.update(values)
    result = modelref("validate", clocks.saved("dangling"), "--json")
    assert result.returncode == 1
    assert sorted(finding["path"] for finding in json.loads(result.stdout)) == sorted(places)


def test_graph_draws_and_writes(clocks: Record, modelref: Run, tmp_path: pathlib.Path) -> None:
    drawn = modelref("graph", clocks.path, "--depth", 1)
    assert drawn.returncode == 0
    assert drawn.stdout.startswith("digraph ownership {") and "InportInformation\\nsignal" in drawn.stdout
    assert modelref("graph", clocks.path, "-d", 1, "-o", tmp_path / "graph.dot").stdout == ""
    assert (tmp_path / "graph.dot").read_text() == drawn.stdout
    assert modelref("graph", clocks.path, "-o", tmp_path / "none" / "graph.dot").returncode == 2


def test_rates_of_several_roots_are_drawn_apart(clocks: Record, modelref: Run) -> None:
    unions = [element("UnionTsContainedTsElem", 1, unionTs=-3, containedTs=0)]
    clocks.text["roots"] = [root(2, unionTsContainedTs=unions), root(3, runtimeNonFcnCallRateInfos=[{"period": 7}])]
    drawn = modelref("graph", clocks.saved("several"), "-k", "rates").stdout
    nodes = dict(re.findall(r'^  (\w+) \[label="(.*)"\];$', drawn, re.MULTILINE))
    assert sorted(nodes.values()) == ["rate -3", "rate 0", "rate 0\\nperiod 7"]
    assert re.findall(r"^  (\w+) -> (\w+) ", drawn, re.MULTILINE) == [
        tuple(node for label in ("rate -3", "rate 0") for node, text in nodes.items() if text == label)
    ]


def test_colours_are_for_terminals(clocks: Record, modelref: Run) -> None:
    def on_terminal(**more: str) -> bytes:
        ours, theirs = pty.openpty()
        command = [str(BUILD / "bin" / "modelref"), "tree", str(clocks.path), "--depth", "0"]
        subprocess.run(command, stdout=theirs, check=True, env={**os.environ, "TERM": "xterm", "NO_COLOR": "", **more})
        os.close(theirs)
        output = os.read(ours, 1000)
        os.close(ours)
        return output

    assert b"\033[" in on_terminal()
    assert b"\033[" not in on_terminal(NO_COLOR="1") + on_terminal(TERM="dumb")
    assert "\033[" not in modelref("tree", clocks.path).stdout


def test_output_that_cannot_be_written_is_a_failure(clocks: Record) -> None:
    with open("/dev/full", "w") as full:
        command = [str(BUILD / "bin" / "modelref"), "tree", str(clocks.path)]
        result = subprocess.run(command, stdout=full, stderr=subprocess.PIPE, text=True, check=False)
    assert (result.returncode, result.stderr) == (2, "modelref: standard output can't be written\n")
