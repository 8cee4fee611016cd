#!/usr/bin/env python3
"""Whether the schemas and the outputs of the checks are what they say.

    scripts/check_schemas.py [TAMCHECK]

- Every good sample validates against its XML Schema (xmllint); one counterexample
  for each constraint does not. With a constraint taken away one of them validates:
  each constraint has its own.
- The JSON that the program TAMCHECK answers, where one is named, validates against
  docs/json. Its SARIF validates against the schema there of the part that it writes,
  and against all of SARIF's in SARIF_SCHEMA, where that variable names a file.

Prints what is wrong and ends with 1 then."""

import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ET

ROOT = pathlib.Path(__file__).resolve().parent.parent
SAMPLES = ROOT / "samples"
GOOD = {
    "device-stream": ["streams/full.xml", "streams/channels.xml"],
    "module-definition": ["O_Tam_id.xml"],
    "channel-definition": ["channels/O_InpCntx_id.xml", "channels/O_Tam_AI_id.xml", "channels/O_Tam_AO_id.xml",
                           "channels/O_Tam_DI_id.xml", "channels/O_Tam_DO_id.xml"],
    "device-library": ["device.xml"],
    "catalogue": ["catalogue.xml"],
}
PROJECT = ("<Project><O_Tam_id><UserName>u</UserName><X_Position>1.5</X_Position><Y_Position>0</Y_Position>"
           "<DevKey>K7</DevKey><TamObjID>3</TamObjID></O_Tam_id><O_Tam_AI_id><DevKey>K7</DevKey>"
           "<TamObjectKey>AI1</TamObjectKey><UserName>u</UserName></O_Tam_AI_id></Project>")
INTEROP = ("<O_Tam_id><UserName>u</UserName><Key>k</Key><Inputs><A_B><Reference>0000</Reference>"
           "<LogicalAddress>1</LogicalAddress><isPermanent>True</isPermanent><SNVTType>8</SNVTType></A_B></Inputs></O_Tam_id>")
EXPORT = ('<O_Tam_id DevAddr="5" AppID="" DevKey="K7" TamObjectID="3" IsLastOnDev="0"><Inputs/><Outputs/><Attributes/>'
          "</O_Tam_id>")
XS = "{http://www.w3.org/2001/XMLSchema}"
ORDERS = (XS + "sequence", XS + "all")
FACETS = ("pattern", "minInclusive", "maxInclusive", "minLength", "maxLength")
OWN = {"project": PROJECT, "interoperability": INTEROP, "export-document": EXPORT}

# (schema, what is changed in the good document, into what): each breaks one constraint.
BROKEN = [
    ("device-stream", r"<Tam>", "<Tan>"),
    ("device-stream", r"<Name>.*?</Name>", ""),
    ("device-stream", r"<Name>.*?</Name>", "<Name/>"),
    ("device-stream", r"<DevKey>.*?</DevKey>", ""),
    ("device-stream", r"<IsLastOnDev>.*?</IsLastOnDev>", ""),
    ("device-stream", r"<TamObjID>.*?</TamObjID>", ""),
    ("device-stream", r"<IsLastOnDev>1<", "<IsLastOnDev>yes<"),
    ("device-stream", r"<TamObjID>3<", "<TamObjID>40000<"),
    ("device-stream", r"<CDB>426<", "<CDB>426 bytes<"),
    ("device-stream", r"<DDB>160<", "<DDB>-1<"),
    ("device-stream", r"InReferences>", "InReference>"),
    ("device-stream", r"<LOGICALADDRESS>1<", "<LOGICALADDRESS>65536<"),
    ("device-stream", r"<ISPERMANENT>1<", "<ISPERMANENT>true<"),
    ("device-stream", r"<SNVTCOMPATIBILITYLIST>81,21,55<", "<SNVTCOMPATIBILITYLIST>81,,55<"),
    ("device-stream", r"<PROTOCOLREFERENCE>000000<", "<PROTOCOLREFERENCE>0000000<"),
    ("device-stream", r"<SNVTTYPE>81<", "<SNVTTYPE>8 1<"),
    ("device-stream", r"<MANDATORY/>", "<MANDATORY>no</MANDATORY>"),
    ("module-definition", r"AppObject>", "Object>"),
    ("module-definition", r"<T5 ", "<T6 "),
    ("module-definition", r'CDB_Size="32"', 'CDB_Size="256"'),
    ("module-definition", r'CDB_Size="32"', 'CDBSize="32"'),
    ("module-definition", r"<DefaultValue>10.0<", "<DefaultValue>warm<"),
    ("module-definition", r"DESCRIPTION>", "DESCRIPTON>"),
    ("module-definition", r"(?s)<Attributes>.*</Attributes>", ""),
    ("channel-definition", r'Name="In1"', 'Nam="In1"'),
    ("channel-definition", r"TAMConfig>", "TamConfig>"),
    ("channel-definition", r'Visible="1"', 'Visible="true"'),
    ("channel-definition", r"<Attrib ", "<Attribute "),
    ("channel-definition", r'<InReference Name="In1"', "<InReference"),
    ("channel-definition", r'<OutReference Name="Out"', "<OutReference"),
    ("channel-definition", r'<Attrib Name="[^"]*"', "<Attrib"),
    ("channel-definition", r"81,21,55", "81,,55"),
    ("channel-definition", r"<SNVTTYPE>81<", "<SNVTTYPE>8 1<"),
    ("channel-definition", r"<PROTOCOLREFERENCE>0000<", "<PROTOCOLREFERENCE>0000000<"),
    ("channel-definition", r"<VISIBLE>1<", "<VISIBLE>yes<"),
    ("device-library", r"FWVersion>", "Versions>"),
    ("device-library", r"<Stream>.*?</Stream>", ""),
    ("device-library", r"<Stream>.*?</Stream>", "<Stream/>"),
    ("device-library", r'key="AI1" ', ""),
    ("device-library", r'kind="ai" ', ""),
    ("device-library", r'kind="ai" ', 'kind="" '),
    ("device-library", r'key="AO1"', 'key="AI1"'),
    ("device-library", r'terminal=', 'terminals='),
    ("device-library", r"Library>", "Libary>"),
    ("device-library", r"<o_tam_ai_id/>", "<o_tam_ai_id>x</o_tam_ai_id>"),
    ("catalogue", r"SNVTCatalogue>", "Catalogue>"),
    ("catalogue", r"<Type>SignedNumeric<", "<Type>Signed<"),
    ("catalogue", r"<Min>-3276.8<", "<Min>-3276,8<"),
    ("catalogue", r"<Length>2<", "<Length>0<"),
    ("catalogue", r"<A_Coef>1<", "<A_Coef>0<"),
    ("catalogue", r"<B_Coef>-1<", "<B_Coef>0.1<"),
    ("catalogue", r"6,DAY_SAT;-1,DAY_NUL;", "6,DAY_SAT;-1,DAY_NUL"),
    ("project", r"<UserName>u</UserName><X", "<UserName/><X"),
    ("project", r"<X_Position>1.5<", "<X_Position>1,5<"),
    ("project", r"<TamObjID>3<", "<TamObjID>three<"),
    ("project", r"<TamObjectKey>AI1</TamObjectKey>", ""),
    ("project", r"<DevKey>K7</DevKey><TamObjectKey>", "<TamObjectKey>"),
    ("interoperability", r"<UserName>u</UserName>", ""),
    ("interoperability", r"<Key>k</Key>", ""),
    ("interoperability", r"<isPermanent>True<", "<isPermanent>perhaps<"),
    ("interoperability", r"<LogicalAddress>1<", "<LogicalAddress>one<"),
    ("export-document", r'DevAddr="5" ', ""),
    ("export-document", r'AppID="" ', ""),
    ("export-document", r'DevKey="K7" ', ""),
    ("export-document", r'TamObjectID="3" ', ""),
    ("export-document", r' IsLastOnDev="0"', ""),
    ("export-document", r"<Inputs/>", ""),
    ("export-document", r"<Outputs/>", ""),
    ("export-document", r"<Attributes/>", ""),
    ("export-document", r'IsLastOnDev="0"', 'IsLastOnDev="2"'),
    ("export-document", r'DevAddr="5"', 'DevAddr="five"'),
    ("export-document", r"<Inputs/><Outputs/>", "<Outputs/><Inputs/>"),
]


def validates(schema, text):
    with tempfile.NamedTemporaryFile("w", suffix=".xml", encoding="utf-8") as file:
        file.write(text)
        file.flush()
        command = ["xmllint", "--noout", "--schema", str(ROOT / "schemas" / f"{schema}.xsd"), file.name]
        return subprocess.run(command, capture_output=True, text=True, check=False).returncode == 0


def good_documents():
    good = dict(OWN)
    for schema, names in GOOD.items():
        good[schema] = (SAMPLES / names[0]).read_text(encoding="utf-8")
    good["channel-definition"] = (SAMPLES / "channels/O_Tam_AO_id.xml").read_text(encoding="utf-8")
    return good


def looser(path):
    """The schema with one constraint less, each in turn, and what the constraint was."""
    for place in range(sum(1 for _ in ET.parse(path).iter())):
        tree = ET.parse(path)
        above = {child: element for element in tree.iter() for child in element}
        element = list(tree.iter())[place]
        kind = element.tag.removeprefix(XS)
        if kind in FACETS or kind in ("unique", "key", "keyref"):
            alike = above[element].findall(element.tag) if kind == "pattern" else [element]
            if element is not alike[0]:
                continue  # several patterns are one constraint
            for one in alike:
                above[element].remove(one)
            what = kind + " " + (element.get("value") or element.get("name"))
        elif kind == "restriction" and element.findall(XS + "enumeration"):
            what = "the texts " + ", ".join(one.get("value") for one in element.findall(XS + "enumeration"))
            for one in element.findall(XS + "enumeration"):
                element.remove(one)
        elif element.get("use") == "required":
            element.set("use", "optional")
            what = "required attribute " + element.get("name")
        elif kind == "element" and above[element].tag in ORDERS and element.get("minOccurs") is None:
            element.set("minOccurs", "0")
            what = "required element " + (element.get("name") or element.get("ref"))
        else:
            continue
        yield tree, what


def check_constraints():
    good = good_documents()
    for path in sorted((ROOT / "schemas").glob("*.xsd")):
        with tempfile.TemporaryDirectory() as folder:
            files = []
            for schema, pattern, replacement in BROKEN:
                if schema == path.stem:
                    files.append(pathlib.Path(folder, f"{len(files)}.xml"))
                    files[-1].write_text(re.sub(pattern, replacement, good[schema]), encoding="utf-8")
            changed = pathlib.Path(folder, path.name)
            for tree, what in looser(path):
                tree.write(changed)
                run = subprocess.run(["xmllint", "--noout", "--schema", changed, *files],
                                     capture_output=True, text=True, check=False)
                if not re.search(r" validates$", run.stderr, re.MULTILINE):
                    yield f"schemas/{path.name}: no counterexample for {what}"


def check_schemas():
    good = good_documents()
    for schema, names in GOOD.items():
        for name in names:
            if not validates(schema, (SAMPLES / name).read_text(encoding="utf-8")):
                yield f"samples/{name} does not validate against schemas/{schema}.xsd"
    for schema, text in OWN.items():
        if not validates(schema, text):
            yield f"the good document of schemas/{schema}.xsd does not validate"
    for schema, pattern, replacement in BROKEN:
        text, count = re.subn(pattern, replacement, good[schema])
        if count == 0:
            yield f"{schema}: nothing fits {pattern}"
        elif validates(schema, text):
            yield f"{schema}: validates with {replacement} for {pattern}"


def answer(program, *arguments):
    return json.loads(subprocess.run([program, *arguments], capture_output=True, text=True, check=False).stdout)


def check_outputs(program):
    import jsonschema  # not needed for the XML Schemas alone

    def errors(name, schema, document):
        validator = jsonschema.validators.validator_for(schema)(schema)
        for error in list(validator.iter_errors(document))[:5]:
            yield f"{name}: {error.message[:200]}"

    def schema_of(name):
        return json.loads((ROOT / "docs" / "json" / name).read_text(encoding="utf-8"))

    targets = [str(SAMPLES), "/nowhere.xml"]
    yield from errors("--format json", schema_of("check.schema.json"), answer(program, *targets, "--format", "json"))
    yield from errors("--rules --format json", schema_of("check-rules.schema.json"),
                      answer(program, "--rules", "--format", "json"))
    sarif = answer(program, *targets, "--format", "sarif")
    yield from errors("--format sarif", schema_of("check-sarif.schema.json"), sarif)
    if not sarif["runs"][0]["results"]:
        yield "--format sarif has no results"
    if "SARIF_SCHEMA" in os.environ:
        schema = json.loads(pathlib.Path(os.environ["SARIF_SCHEMA"]).read_text(encoding="utf-8"))
        yield from errors("--format sarif", schema, sarif)


def main():
    if len(sys.argv) > 2:
        sys.exit(__doc__)
    findings = [*check_schemas(), *check_constraints()]
    for program in sys.argv[1:]:
        findings += check_outputs(program)
    for finding in findings:
        print(finding)
    sys.exit(1 if findings else 0)


main()
