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
           "<DevKey>K7</DevKey><TamObjID>3</TamObjID><OutReferences/></O_Tam_id><O_Tam_AI_id><DevKey>K7</DevKey>"
           "<TamObjectKey>AI1</TamObjectKey><UserName>u</UserName><X_Position>2</X_Position><Y_Position>3</Y_Position>"
           "<Key>k</Key><Inputs/><Outputs/><Attributes/></O_Tam_AI_id></Project>")
INTEROP = ("<O_Tam_id><UserName>u</UserName><Key>k</Key><Inputs><A_B><Reference>0000</Reference>"
           "<LogicalAddress>1</LogicalAddress><isPermanent>True</isPermanent><SNVTType>8</SNVTType></A_B></Inputs>"
           "<Outputs/><Attributes/></O_Tam_id>")
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
    ("export-document", r'TamObjectID="3"', 'TamObjectID="three"'),
    ("catalogue", r"<A_Coef>1<", "<A_Coef>99999999999<"),
    ("project", r"<X_Position>2<", "<X_Position>x<"),
    ("project", r"<Y_Position>3<", "<Y_Position>x<"),
    ("project", r"<Y_Position>0<", "<Y_Position>x<"),
    ("project", r"<X_Position>2</X_Position>", r"\g<0>\g<0>"),
    ("project", r"<Y_Position>3</Y_Position>", r"\g<0>\g<0>"),
    ("project", r"(<UserName>u</UserName>)(<X_Position>2)", r"\1\1\2"),
    ("project", r"(<DevKey>K7</DevKey>)(<TamObjectKey>)", r"\1\1\2"),
    ("project", r"<DevKey>K7</DevKey><TamObjectKey>", "<DevKey/><TamObjectKey>"),
    ("project", r"<DevKey>K7</DevKey><TamObjID>", "<DevKey/><TamObjID>"),
    ("project", r"<TamObjectKey>AI1<", "<TamObjectKey><"),
    ("project", r"<OutReferences/>", '<OutReferences/><Outputs no="1"/>'),
    ("channel-definition", r'(<InReference Name="In1" Visible=)"1"', r'\1"true"'),
    ("channel-definition", r'(<OutReference Name="Out" Visible=)"1"', r'\1"true"'),
    ("channel-definition", r'(<Attrib Name="Channel" Visible=)"0"', r'\1"true"'),
    ("channel-definition", r'UnitDependent="1"', 'UnitDependent="true"'),
    ("channel-definition", r'<Attrib Name="', r'<Attrib Differential="true" Name="'),
    ("channel-definition", r"(?s)(<TAMConfig>.*?)(<InReferences>.*?</InReferences>)", r"\1\2\2"),
    ("channel-definition", r"(?s)(<TAMConfig>.*?)(<OutReferences>.*?</OutReferences>)", r"\1\2\2"),
    ("channel-definition", r"(?s)(<TAMConfig>.*?)(<Attributes>.*?</Attributes>)", r"\1\2\2"),
    ("device-library", r"<Firmware>.*?</Firmware>", "<Firmware/>"),
    ("device-library", r"<Channels>", "<Channels/><Channels>"),
    ("device-library", r'key="AI1"', 'key=""'),
    ("device-library", r"<Library>", '<Library><o_tam_id no="1"/>'),
    ("device-stream", r"<DevKey>.*?</DevKey>", "<DevKey/>"),
    ("module-definition", r'Size_area_1="12"', 'Size_area_1="256"'),
    ("module-definition", r'Size_area_2="8"', 'Size_area_2="256"'),
    ("module-definition", r"<AppObject>", '<AppObject><DATASIZES no="1"/>'),
]

# What stands once in a good document stands twice.
TWICE = {
    "device-stream": ["Name", "DevKey", "IsLastOnDev", "TamObjID", "CDB", "DDB", "InReferences", "OutReferences",
                      "Attributes"],
    "module-definition": ["T0", "T1", "T2", "T3", "T4", "T5", "Attributes"],
    "device-library": ["Stream", "Firmware", "FWVersion", "Library"],
    "project": ["TamObjectKey", "Key", "Inputs", "Outputs", "Attributes"],
    "interoperability": ["UserName", "Key", "Inputs", "Outputs", "Attributes"],
    "export-document": ["Inputs", "Outputs", "Attributes"],
}
# Elements that have no attribute, or not this one.
PLAIN = {
    "device-stream": ["InReferences", "OutReferences", "Attributes"],
    "channel-definition": ["InReferences", "OutReferences", "Attributes"],
    "module-definition": ["T0", "T1", "T2", "T3", "T4", "T5", "Attributes", "DataSizes"],
    "device-library": ["o_tam_ao_id", "o_tam_di_id", "o_tam_do_id", "o_inpcntx_id", "O_Tam_id"],
    "project": ["Inputs", "Outputs", "Attributes", "OutReferences"],
    "interoperability": ["Inputs", "Outputs", "Attributes"],
    "export-document": ["Inputs", "Outputs", "Attributes"],
}
POINT_WORDS = {"MANDATORY": "no", "VISIBLE": "no", "LOGICALADDRESS": "x", "ISPERMANENT": "yes",
               "SNVTCOMPATIBILITYLIST": "1,,2", "PROTOCOLREFERENCE": "0000000", "SNVTTYPE": "8 1", "ISMAPASOO": "yes",
               "OBJOFFSET": "x", "ABSOLUTEOBJECTINDEX": "x", "ISWRITABLE": "yes"}
# Where words that are read in any letter case stand, and a text for each that it cannot have.
WORDS = {
    "device-stream": ("<AO1_In1>", POINT_WORDS),
    "channel-definition": ("<In1>", POINT_WORDS),
    "catalogue": ('<SNVT_1 Factor="1" Z3Region="0">',
                  {"TYPE": "none", "MIN": "x", "MAX": "x", "LENGTH": "0", "A_COEF": "0", "B_COEF": "0.1",
                   "C_COEF": "0.1", "INVALIDVALUE": "x", "ENUMDESC": "1"}),
}


def broken():
    """(schema, what is changed in the good document, into what, how often)."""
    for schema, pattern, replacement in BROKEN:
        yield schema, pattern, replacement, 0
    for schema, names in TWICE.items():
        for name in names:
            yield schema, rf"(?s)<{name}(?: [^>]*)?(?:/>|(?<!/)>.*?</{name}>)", r"\g<0>\g<0>", 1
    for schema, names in PLAIN.items():
        for name in names:
            yield schema, rf"<{name}(?=[ />])", r'\g<0> no="1"', 1
    for name in ("ai", "ao", "di", "do"):
        for channel in (f"o_tam_{name}_id", f"O_Tam_{name.upper()}_id"):
            yield "project", "<Project>", f"<Project><{channel}/>", 1
    for channel in ("o_inpcntx_id", "O_InpCntx_id"):
        yield "project", "<Project>", f"<Project><{channel}/>", 1
    for schema, (place, words) in WORDS.items():
        for one in ET.parse(ROOT / "schemas" / f"{schema}.xsd").getroot().findall(XS + "element"):
            if one.get("name").upper() in words:
                wrong = f"<{one.get('name')}>{words[one.get('name').upper()]}</{one.get('name')}>"
                yield schema, re.escape(place), r"\g<0>" + wrong, 1


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


def without_type(element, above):
    """Takes away the type that an element, an attribute or a restriction names. What it was; None when none is."""
    kind = element.tag.removeprefix(XS)
    named = element.get("type") or ""
    if kind in ("element", "attribute") and named not in ("", "xs:string", "xs:anyType"):
        element.set("type", "xs:string" if kind == "attribute" else "xs:anyType")
        return f"the type {named} of {element.get('name')} in {above[element].get('name') or 'the schema'}"
    if kind == "restriction" and element.get("base") != "xs:string":
        what = f"the base {element.get('base')} of {above[element].get('name')}"
        element.set("base", "xs:string")
        return what
    return None


def without_once(element, above):
    """Lets an element stand more than once."""
    if element.tag != XS + "element" or element.get("maxOccurs") is not None:
        return None
    if above[element].tag == XS + "all":
        # Of "all" each stands once: the same, with no order and no count.
        parts = above[element]
        parts.tag = XS + "choice"
        parts.set("minOccurs", "0")
        parts.set("maxOccurs", "unbounded")
        for one in parts.findall(XS + "element"):
            one.attrib.pop("minOccurs", None)
        return "that each of " + ", ".join(one.get("name") for one in parts) + " stands once"
    if above[element].tag == XS + "sequence":
        element.set("maxOccurs", "unbounded")
        return "that " + (element.get("name") or element.get("ref")) + " stands once"
    return None


def without_constraint(element, above):
    """Takes away a facet, a list of texts, a key or that a part is required."""
    kind = element.tag.removeprefix(XS)
    if kind in FACETS or kind in ("unique", "key", "keyref"):
        alike = above[element].findall(element.tag) if kind == "pattern" else [element]
        if element is not alike[0]:
            return None  # several patterns are one constraint
        for one in alike:
            above[element].remove(one)
        return kind + " " + (element.get("value") or element.get("name"))
    if kind == "restriction" and element.findall(XS + "enumeration"):
        texts = element.findall(XS + "enumeration")
        for one in texts:
            element.remove(one)
        return "the texts " + ", ".join(one.get("value") for one in texts)
    if element.get("use") == "required":
        element.set("use", "optional")
        return "required attribute " + element.get("name")
    if kind == "element" and above[element].tag in ORDERS and element.get("minOccurs") is None:
        element.set("minOccurs", "0")
        return "required element " + (element.get("name") or element.get("ref"))
    return None


def looser(path):
    """The schema with one constraint less, each in turn, and what the constraint was."""
    for place in range(sum(1 for _ in ET.parse(path).iter())):
        for weaken in (without_type, without_once, without_constraint):
            tree = ET.parse(path)
            above = {child: element for element in tree.iter() for child in element}
            what = weaken(list(tree.iter())[place], above)
            if what is not None:
                yield tree, what


def check_constraints():
    good = good_documents()
    for path in sorted((ROOT / "schemas").glob("*.xsd")):
        with tempfile.TemporaryDirectory() as folder:
            files = []
            for schema, pattern, replacement, most in broken():
                if schema == path.stem:
                    files.append(pathlib.Path(folder, f"{len(files)}.xml"))
                    files[-1].write_text(re.sub(pattern, replacement, good[schema], count=most), encoding="utf-8")
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
    for schema, pattern, replacement, most in broken():
        text, count = re.subn(pattern, replacement, good[schema], count=most)
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
