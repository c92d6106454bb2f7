"""A file that isn't a model description is refused with file, line and reason, and no output is written."""

from __future__ import annotations

import pathlib
import stat
import subprocess
import zipfile
from collections.abc import Callable

import pytest

MODELS = pathlib.Path(__file__).parents[2] / "examples" / "models"
Refused = Callable[[pathlib.Path], str]
Run = Callable[..., subprocess.CompletedProcess[str]]

VERSION2 = '<fmiModelDescription fmiVersion="2.0" modelName="M" guid="g"><CoSimulation modelIdentifier="m"/>{}</fmiModelDescription>'
VERSION3 = VERSION2.replace('"2.0"', '"3.0"').replace("guid", "instantiationToken")


def real(name: str, reference: int, more: str = "", inside: str = "") -> str:
    return f'<Float64 name="{name}" valueReference="{reference}" {more}>{inside}</Float64>'


def scalar(name: str, inside: str = "<Real/>", more: str = "") -> str:
    return f'<ScalarVariable name="{name}" valueReference="1" {more}>{inside}</ScalarVariable>'


def variables(*texts: str) -> str:
    return "<ModelVariables>" + "\n".join(texts) + "</ModelVariables>"


def states(*listed: int, derivatives: int = 2) -> str:
    """A state with value reference 0, some derivatives of it with 1, 2..., and the list of derivatives."""
    texts = [real("d%d" % i, i, 'derivative="0"') for i in range(1, derivatives + 1)]
    unknowns = "".join(f'<ContinuousStateDerivative valueReference="{i}"/>' for i in listed)
    return variables(real("x", 0), *texts) + f"<ModelStructure>{unknowns}</ModelStructure>"


ENUMERATION = (
    '<TypeDefinitions><SimpleType name="E"><Enumeration><Item name="a" value="1"/></Enumeration></SimpleType></TypeDefinitions>'
)


DESCRIPTIONS = {
    "": "this isn't XML",
    "plain text": "this isn't XML",
    "<a>": "this isn't XML",
    "<a/>": "expected a <fmiModelDescription>, found <a>",
    '<fmiModelDescription modelName="M"/>': "has no fmiVersion",
    '<fmiModelDescription fmiVersion="1.0" modelName="M"/>': "version '1.0' of the FMI standard isn't read",
    '<fmiModelDescription fmiVersion="20" modelName="M"/>': "version '20'",
    "<!DOCTYPE a [<!ENTITY x SYSTEM 'file:///etc/passwd'>]><a>&x;</a>": "document types and entities aren't read",
    VERSION3.format("&x;"): "the reference '&x;' isn't one of XML's own",
    VERSION3.format('<A b="&x;"/>'): "the reference '&x;' isn't one of XML's own",
    VERSION3.format('<A b="1" b="2"/>'): "the attribute 'b' stands twice",
    VERSION3.format(variables()) + "<b/>": "there is a second root element",
    VERSION3.format(variables()) + "\nmore": "there is text outside of the root element",
    "less\n" + VERSION3.format(variables()): "there is text outside of the root element",
    VERSION3.format(variables()) + "<![CDATA[more]]>": "there is text outside of the root element",
    "<!-- nothing -->": "there is no element",
    VERSION3.format('\n<A b="1 < 2"/>'): "line 2: this isn't XML: there is a '<' in the attribute 'b'",
    **{
        VERSION3.format(f'\n<A b="{reference}"/>'): f"line 2: the reference '{reference}' isn't one of XML's own"
        for reference in ("&#0;", "&#27;", "&#xD800;", "&#xFFFE;", "&#x110000;", "&#xFFFFFFFFFF;", "&#x;", "&#1", "&#;")
    },
    VERSION3.format('\n<A b="\x01"/>'): "line 2: this isn't XML: there is a character that XML doesn't have",
    VERSION3.format(variables()) + "\n\0": "line 2: this isn't XML: there is a character that XML doesn't have",
    VERSION3.format("\n<A>]]></A>"): "line 2: this isn't XML: there is a ']]>' in a text",
    VERSION3.format("\n<A>\uffff</A>"): "line 2: this isn't XML: there is a character that XML doesn't have",
    VERSION3.format(""): "there are no <ModelVariables>",
    VERSION3.format(variables() * 2): "there is a second <ModelVariables>",
    VERSION3.format(variables(real("a", 1), real("a", 2))): "line 2: there is a second variable 'a'",
    VERSION3.format(variables(real("a", 1), real("b", 1))): "line 2: there is a second value reference 1",
    VERSION3.format(variables(real("a", 1), real("b", 2**32))): "line 2: valueReference has more than 32 bits",
    VERSION3.format(variables(real("a", 1, inside='<Alias name="a"/>'))): "there is a second variable 'a'",
    VERSION3.format(variables(real("a", 1, inside='<Alias name="b"/>'), real("b", 2))): "line 2: there is a second variable 'b'",
    VERSION3.format(variables(real("a", 1, 'causality="dependent"'))): "causality is 'dependent', which isn't known",
    VERSION3.format(states(1, 1)): "'d1' is listed as a derivative twice",
    VERSION3.format(states(1, 2)): "'d2' is a second derivative of 'x'",
    VERSION3.format(
        variables('<Clock name="c" valueReference="1" clocks="1" intervalVariability="triggered"/>')
    ): "clocks names the clock itself",
    VERSION3.replace("<CoSimulation", "<CoSimulation" + "".join(f' a{i}=""' for i in range(1000))).format(
        variables()
    ): "<CoSimulation> has too many attributes",
    VERSION3.format(variables('<Float64 name="a"/>')): "<Float64> has no valueReference",
    VERSION3.format(variables('<Float64 valueReference="1"/>')): "<Float64> has no name",
    VERSION3.format(variables(real("a", -1))): "valueReference is '-1', which is no natural number",
    VERSION3.format(variables('<Float16 name="a" valueReference="1"/>')): "<Float16> is no known type",
    VERSION3.format(variables(real("a", 1, 'causality="in"'))): "causality is 'in', which isn't known",
    VERSION3.format(variables(real("a", 1, 'start="1 x"'))): "the start of 'a' is 'x', which is no value of double",
    VERSION3.format(variables('<Int8 name="a" valueReference="1" start="128"/>')): "is '128', which is no value of int8",
    VERSION3.format(
        variables('<Float32 name="a" valueReference="1" start="-1e300"/>')
    ): "is '-1e300', which is no value of single",
    VERSION3.format(variables(real("a", 1, 'start="1e400"'))): "is '1e400', which is no value of double",
    VERSION2.format(
        ENUMERATION + variables(scalar("a", '<Enumeration declaredType="E" start="5000000000"/>'))
    ): "is '5000000000', which is no value of enumeration",
    VERSION3.format(variables(real("a", 1, 'min="2" max="1"'))): "min is above max",
    VERSION3.format(variables(real("a", 1, 'min="low"'))): "min is 'low', which is no number",
    VERSION3.format(variables(real("a", 1, 'declaredType="T"'))): "there is no type 'T'",
    VERSION3.format(variables(real("a", 1, 'derivative="9"'))): "derivative is 9, which is no variable's value reference",
    VERSION3.format(variables(real("a", 1, 'clocks="1"'))): "clocks names 'a', which is no clock",
    VERSION3.format(variables(real("a", 1, "", '<Dimension valueReference="7"/>'))): "valueReference is 7, which is no",
    VERSION3.format(variables(real("a", 1, "", '<Dimension valueReference="1"/>'))): "has no number as its start",
    VERSION3.format(
        variables(real("a", 1, "", '<Dimension start="4000000000"/>' * 3))
    ): "'a' has too many elements",
    VERSION3.format(variables('<Clock name="c" valueReference="1"/>')): "a clock needs an intervalVariability",
    VERSION3.format(
        variables('<Clock name="c" valueReference="1" intervalVariability="fixed" intervalCounter="1" resolution="0"/>')
    ): "resolution is 0",
    VERSION3.format(
        variables(real("a", 1)) + '<ModelStructure><Output valueReference="2"/></ModelStructure>'
    ): "valueReference is 2",
    VERSION3.format(
        variables(real("a", 1)) + '<ModelStructure><ContinuousStateDerivative valueReference="1"/></ModelStructure>'
    ): "'a' is listed as a derivative and is none",
    VERSION2.format(variables(scalar("a"), scalar("a"))): "line 2: there is a second variable 'a'",
    VERSION2.format(variables(real("a", 1))): "expected a <ScalarVariable>, found <Float64>",
    VERSION2.format(variables(scalar("a", "<Complex/>"))): "<ScalarVariable> has no known type",
    VERSION2.format(variables(scalar("a", "<Real/><Integer/>"))): "<ScalarVariable> has a second type",
    VERSION2.format(variables(scalar("a", "<Real/><Real/>"))): "there is a second <Real>",
    VERSION2.format(
        variables(scalar("a")) + '<ModelStructure><Outputs/><Outputs><Unknown index="2"/></Outputs></ModelStructure>'
    ): "there is a second <Outputs>",
    VERSION2.format(variables(scalar("a", '<Real derivative="2"/>'))): "derivative is 2, and there are 1 variables",
    VERSION2.format(variables(scalar("a", "<Enumeration/>"))): "an enumeration needs a declaredType",
    VERSION2.format(
        variables(scalar("a")) + '<ModelStructure><Outputs><Unknown index="0"/></Outputs></ModelStructure>'
    ): "index is 0, and there are 1 variables",
    VERSION2.replace("guid", 'numberOfEventIndicators="9999999999" guid').format(variables()): "is too large",
}


@pytest.mark.parametrize("text", DESCRIPTIONS, ids=range(len(DESCRIPTIONS)))
def test_refuses_a_bad_description(text: str, refused: Refused, tmp_path: pathlib.Path) -> None:
    model = tmp_path / "model.xml"
    model.write_text(text)
    message = refused(model)
    assert message.startswith("line ") and DESCRIPTIONS[text] in message


def test_refuses_texts_that_are_not_utf8(refused: Refused, tmp_path: pathlib.Path) -> None:
    model = tmp_path / "model.xml"
    model.write_bytes(VERSION3.format(variables(real("a?", 1))).encode().replace(b"?", b"\xff"))
    assert "isn't UTF-8" in refused(model)


def test_refuses_every_truncation(refused: Refused, tmp_path: pathlib.Path) -> None:
    text = (MODELS / "clocks.fmi3.xml").read_bytes()
    model = tmp_path / "model.xml"
    for end in range(0, len(text) - 2, 97):
        model.write_bytes(text[:end])
        refused(model)


def test_refuses_files_that_are_not_there(refused: Refused, tmp_path: pathlib.Path) -> None:
    assert refused(tmp_path / "nothing.fmu") == "can't be read: No such file or directory"
    assert refused(tmp_path) == "can't be read: Is a directory"


def test_refuses_an_output_that_leads_nowhere(modelref: Run, tmp_path: pathlib.Path) -> None:
    link = tmp_path / "link"
    link.symlink_to("nothing")
    result = modelref("import", MODELS / "plant.fmi3.xml", "-o", link)
    assert (result.returncode, result.stderr.count("\n")) == (2, 1) and "a link to a file that isn't there" in result.stderr
    assert link.is_symlink() and not link.exists()


class TestArchives:
    """Archives that are made to deceive the reader."""

    def fmu(self, folder: pathlib.Path, *names: str) -> pathlib.Path:
        path = folder / "model.fmu"
        with zipfile.ZipFile(path, "w", zipfile.ZIP_DEFLATED) as archive:
            for name in names:
                archive.writestr(name, VERSION3.format(variables()))
        return path

    @pytest.mark.parametrize("name", ["../up", "a/../../up", "/etc/up", "a\\..\\up", "C:/up"])
    def test_refuses_paths_that_lead_outside(self, name: str, refused: Refused, tmp_path: pathlib.Path) -> None:
        assert "names a file outside itself" in refused(self.fmu(tmp_path, "modelDescription.xml", name))

    def test_refuses_other_files(self, refused: Refused, tmp_path: pathlib.Path) -> None:
        model = tmp_path / "model.fmu"
        model.write_text("<fmiModelDescription/>")
        assert "the archive is damaged" in refused(model)
        assert "the archive has no modelDescription.xml" in refused(self.fmu(tmp_path, "other.xml"))

    @pytest.mark.filterwarnings("ignore:Duplicate name")
    def test_refuses_a_second_description(self, refused: Refused, tmp_path: pathlib.Path) -> None:
        names = ("modelDescription.xml", "modelDescription.xml")
        message = refused(self.fmu(tmp_path, *names))
        assert "twice" in message or "damaged" in message

    def test_refuses_truncated_archives(self, refused: Refused, tmp_path: pathlib.Path) -> None:
        model = self.fmu(tmp_path, "modelDescription.xml")
        whole = model.read_bytes()
        for end in (2, 30, len(whole) // 2, len(whole) - 1):
            model.write_bytes(whole[:end])
            assert "archive" in refused(model)

    def test_refuses_bombs(self, refused: Refused, tmp_path: pathlib.Path) -> None:
        model = tmp_path / "model.fmu"
        with zipfile.ZipFile(model, "w", zipfile.ZIP_DEFLATED) as archive:
            with archive.open("modelDescription.xml", "w") as entry:
                for _ in range(80):
                    entry.write(b" " * (1 << 20))
        assert model.stat().st_size < 1 << 20
        assert "larger than 64 MiB" in refused(model)

    def test_refuses_links(self, refused: Refused, tmp_path: pathlib.Path) -> None:
        model = tmp_path / "model.fmu"
        entry = zipfile.ZipInfo("modelDescription.xml")
        entry.create_system = 3
        entry.external_attr = (stat.S_IFLNK | 0o777) << 16
        with zipfile.ZipFile(model, "w") as archive:
            archive.writestr(entry, "/etc/passwd")
        assert "is a link" in refused(model)
