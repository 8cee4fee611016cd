#!/usr/bin/env python3
"""Whether the schemas and the outputs of the checks are what they say.

    scripts/check_schemas.py [TAMCHECK]

- Every good sample validates against its XML Schema (xmllint); one counterexample
  for each constraint does not.
- The JSON that the program TAMCHECK answers, where one is named, validates against
  docs/json. Its SARIF validates against the schema in SARIF_SCHEMA, where that
  variable names a file.

Prints what is wrong and ends with 1 then."""

import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile

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
OWN = {"project": PROJECT, "interoperability": INTEROP, "export-document": EXPORT}

# (schema, what is changed in the good document, into what): each breaks one constraint.
BROKEN = [
    ("device-stream", r"<Tam>", "<Tan>"),
    ("device-stream", r"<Name>.*?</Name>", ""),
    ("device-stream", r"<Name>.*?</Name>", "<Name/>"),
    ("device-stream", r"<DevKey>.*?</DevKey>", ""),
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
    ("channel-definition", r'Name="In1"', 'Nam="In1"'),
    ("channel-definition", r"TAMConfig>", "TamConfig>"),
    ("channel-definition", r'Visible="1"', 'Visible="true"'),
    ("channel-definition", r"<Attrib ", "<Attribute "),
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
    ("interoperability", r"<Key>k</Key>", ""),
    ("interoperability", r"<isPermanent>True<", "<isPermanent>perhaps<"),
    ("interoperability", r"<LogicalAddress>1<", "<LogicalAddress>one<"),
    ("export-document", r'AppID="" ', ""),
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


def check_schemas():
    good = dict(OWN)
    for schema, names in GOOD.items():
        for name in names:
            text = (SAMPLES / name).read_text(encoding="utf-8")
            if not validates(schema, text):
                yield f"samples/{name} does not validate against schemas/{schema}.xsd"
        good[schema] = (SAMPLES / names[0]).read_text(encoding="utf-8")
    good["channel-definition"] = (SAMPLES / "channels/O_Tam_AO_id.xml").read_text(encoding="utf-8")
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
    if sarif["version"] != "2.1.0" or not sarif["runs"][0]["results"]:
        yield "--format sarif has no results"
    if "SARIF_SCHEMA" in os.environ:
        schema = json.loads(pathlib.Path(os.environ["SARIF_SCHEMA"]).read_text(encoding="utf-8"))
        yield from errors("--format sarif", schema, sarif)


def main():
    if len(sys.argv) > 2:
        sys.exit(__doc__)
    findings = list(check_schemas())
    for program in sys.argv[1:]:
        findings += check_outputs(program)
    for finding in findings:
        print(finding)
    sys.exit(1 if findings else 0)


main()
