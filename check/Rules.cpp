#include "check/Rules.h"

#include <array>
#include <cstddef>

namespace check {

namespace {

using enum Severity;
using enum RuleId;

constexpr std::array kRules = {
    Rule{FileEmpty, "file-empty", Error, "The document is empty",
         "A file without anything but blanks is no document: a load fails.", ""},
    Rule{EncodingInvalid, "encoding-invalid", Error, "Bytes that are no characters",
         "Bytes do not fit the encoding: that of the byte order mark, that of the declaration, or UTF-8. "
         "Often the "
         "file was saved in another encoding than it says, or it was cut in the middle of a character.",
         "<Name>B\\xFCro</Name> in a file without a declaration"},
    Rule{EncodingUnknown, "encoding-unknown", Error, "The declaration names an unknown encoding",
         "Parsers differ in what they know beside these encodings; most refuse the document.",
         "<?xml version=\"1.0\" encoding=\"UFT-8\"?>"},
    Rule{EncodingMismatch, "encoding-mismatch", Error,
         "The declaration names another encoding than the file has",
         "The byte order mark or the bytes themselves show another encoding than the declaration. Parsers "
         "differ in "
         "which one they believe.",
         "<?xml version=\"1.0\" encoding=\"UTF-16\"?> in a file of UTF-8"},
    Rule{XmlDeclaration, "xml-declaration", Error, "The XML declaration is wrong or in the wrong place",
         "A declaration stands at the very beginning and has version, encoding and standalone in this order.",
         "<!-- first --><?xml version=\"1.0\"?>"},
    Rule{XmlCharacter, "xml-character", Error, "A character that XML does not allow",
         "Control characters but tab and the ends of line have no place in a document, not even as a "
         "reference.",
         "<Name>\\x07</Name>"},
    Rule{XmlTag, "xml-tag", Error, "A tag is not well-formed",
         "A \"<\" begins a tag, which has a name, attributes and \">\".", "<VALUE 5</VALUE>"},
    Rule{XmlUnclosed, "xml-unclosed", Error, "An element is not ended",
         "The end tag is missing. What follows counts as content of the element.",
         "<AI1_Out><SNVTTYPE>105</AI1_Out>"},
    Rule{XmlEndTag, "xml-end-tag", Error, "An end tag ends nothing",
         "The name of an end tag is that of the element which is open; letter case counts.",
         "<VALUE>5</Value>"},
    Rule{XmlAttribute, "xml-attribute", Error, "An attribute is not well-formed",
         "An attribute is a name, \"=\" and a value in quotation marks, with a blank before it and no \"<\" "
         "in it.",
         "<T0 CDB_Size=32/>"},
    Rule{XmlAttributeTwice, "xml-attribute-twice", Error, "An attribute stands twice in a tag",
         "A tag has each attribute once.", "<T0 Name=\"a\" Name=\"b\"/>"},
    Rule{XmlReference, "xml-reference", Error, "A reference that stands for nothing",
         "\"&\" begins a reference: &lt; &gt; &amp; &quot; &apos; or the number of a character.",
         "<Name>Heating & cooling</Name>"},
    Rule{XmlComment, "xml-comment", Error, "A comment is not well-formed",
         "A comment ends with \"-->\" and has no \"--\" in it.", "<!-- one -- two -->"},
    Rule{XmlCData, "xml-cdata", Error, "A CDATA section is not well-formed",
         "A CDATA section ends with \"]]>\", which stands nowhere else in a text.", "<Name>]]></Name>"},
    Rule{XmlInstruction, "xml-instruction", Error, "A processing instruction is not well-formed",
         "An instruction is \"<?\", a name without colon, a blank, its text and \"?>\".", "<? note ?>"},
    Rule{XmlDoctype, "xml-doctype", Error, "The document has a document type",
         "The component refuses document types, because they can fetch other files and grow without limit.",
         "<!DOCTYPE Tam>"},
    Rule{XmlRoot, "xml-root", Error, "Not exactly one document element",
         "A document is one element, with comments and instructions beside it at most.", "<Tam/><Tam/>"},
    Rule{XmlTooDeep, "xml-too-deep", Error, "Elements are too deep",
         "The DOM's parsers refuse elements that are more than 256 levels deep.", "<a><a><a>... 257 times"},
    Rule{XmlTooLong, "xml-too-long", Error, "A name or a text is too long",
         "The DOM's parsers refuse texts of ten million bytes and names of 50,000.", ""},
    Rule{XmlNamespace, "xml-namespace", Error, "Names of elements with a prefix or a namespace",
         "Elements are found by their plain names: one in a namespace is not found, or is taken for another. "
         "An "
         "attribute may have a prefix that is declared, such as xsi.",
         "<Tam xmlns=\"urn:tam\">"},
    Rule{XmlSpace, "xml-space", Error, "\"xml:space\" keeps blanks",
         "With xml:space the blanks between elements become texts, which are taken for values and rows.",
         "<Tam xml:space=\"preserve\">"},

    Rule{KindUnknown, "kind-unknown", Error, "The kind of the document is not known",
         "Neither the document element nor what is in it is that of a device stream, a definition, a device "
         "library, "
         "a catalogue, a project, an interoperability element or an export document.",
         "<html/>"},
    Rule{RootName, "root-name", Error, "The document element has the wrong name",
         "Everything is looked for below the document element of the right name; letter case counts.",
         "<TAM>...</TAM>"},
    Rule{ElementUnknown, "element-unknown", Warning, "An element means nothing here",
         "Elements without a meaning are passed over without a word.",
         "<AI1_Out><COLOUR>red</COLOUR></AI1_Out>"},
    Rule{ElementMisspelt, "element-misspelt", Error, "The name of an element is misspelt",
         "The name is near to one that means something. As it stands it is passed over, with all that is in "
         "it.",
         "<VALEU>5</VALEU>"},
    Rule{ElementRepeated, "element-repeated", Error, "An element stands twice",
         "Of two elements of one name one counts: the first of a document's parts, the last of a point's.",
         "<VALUE>1</VALUE><VALUE>2</VALUE>"},
    Rule{ElementMisplaced, "element-misplaced", Error, "An element stands in the wrong place",
         "The name means something elsewhere: in another kind of point, or on another level.",
         "<OutReferences><AI1_Out><VALUE>5</VALUE></AI1_Out></OutReferences>"},
    Rule{ElementMissing, "element-missing", Error, "A required element is missing",
         "Without it the load fails, or what depends on it is lost.", "<Tam> without <DevKey>"},
    Rule{ElementEmpty, "element-empty", Error, "An element that must have a text is empty",
         "An empty element of a project ends the reading with an error; an empty key or number of a stream "
         "is none.",
         "<UserName></UserName>"},
    Rule{ElementInText, "element-in-text", Error, "Elements inside a text",
         "An element that holds a text holds nothing else.", "<VALUE><B>5</B></VALUE>"},
    Rule{SectionOrder, "section-order", Warning, "Sections in the wrong order",
         "The order is Name, DevKey, IsLastOnDev, TamObjID, CDB, DDB, InReferences, OutReferences, "
         "Attributes. Other "
         "tools rely on it.",
         "<Attributes/> before <InReferences/>"},
    Rule{TextSplit, "text-split", Error, "A text in pieces, or with a comment in it",
         "Of most elements the first piece alone is read: the comment itself where it stands first.",
         "<VALUE><!-- default -->5</VALUE>"},
    Rule{TextStray, "text-stray", Warning, "A text between elements",
         "A text where elements belong is passed over.", "<AI1_Out>105</AI1_Out>"},
    Rule{InstructionInside, "instruction-inside", Error, "An instruction inside the document",
         "An instruction is taken for the element of its name. Before the document element it does no harm.",
         "<AI1_Out><?VALUE 5?></AI1_Out>"},
    Rule{AttributeUnknown, "attribute-unknown", Warning, "An attribute means nothing here",
         "Attributes without a meaning are passed over.", "<Tam Version=\"2\">"},
    Rule{AttributeMisspelt, "attribute-misspelt", Error, "The name of an attribute is misspelt",
         "The name is near to one that means something; letter case counts. As it stands it is passed over.",
         "<T0 CDBSize=\"32\"/>"},
    Rule{AttributeMissing, "attribute-missing", Error, "A required attribute is missing",
         "Without it the element is refused or means nothing.", "<Attrib Visible=\"1\"/>"},
    Rule{
        BlankAround, "blank-around", Warning, "Blanks around a text",
        "Blanks and ends of line beside a text belong to it where the component keeps the text as it stands.",
        "<VALUE> 5 </VALUE>"},
    Rule{NumberForm, "number-form", Error, "A text that is no whole number",
         "The component reads the number that the text begins with, 0 when it begins with none.",
         "<CDB>128 bytes</CDB>"},
    Rule{NumberRange, "number-range", Error, "A number outside its range",
         "Object numbers have 16 bits, addresses and offsets 16 bits without sign, sizes 32 bits.",
         "<TamObjID>40000</TamObjID>"},
    Rule{FlagValue, "flag-value", Error, "A flag that is neither 0 nor 1",
         "Flags are compared with \"1\" as it stands: \"true\" and \" 1\" mean no.",
         "<ISPERMANENT>true</ISPERMANENT>"},
    Rule{FlagPresence, "flag-presence", Warning, "A 0 in an element that counts by being there",
         "VISIBLE and MANDATORY count whatever they hold: with a 0 in it the point is visible all the same.",
         "<VISIBLE>0</VISIBLE>"},

    Rule{PointTwice, "point-twice", Error, "Two points of one name",
         "Names are keys, in which letter case does not count. The second point of a name ends the load with "
         "the "
         "error 457.",
         "<AO1_Gain/><ao1_gain/>"},
    Rule{PointName, "point-name", Warning, "A name that no channel can match",
         "A point of a module is named by the key of its channel, \"_\" and the name of the channel's point. "
         "Another "
         "name is no channel's.",
         "<Gain/>"},
    Rule{PointNameCase, "point-name-case", Warning, "The key of a channel in two spellings",
         "Channels find their inputs by names in which letter case counts: ai1_Out is not a point of AI1.",
         "<AI1_In1/><ai1_In2/>"},
    Rule{TypeMissing, "type-missing", Error, "A point without a type",
         "An attribute without SNVTTYPE ends the load with the error 91; an output without one has no type.",
         "<AO1_Gain><VALUE>1</VALUE></AO1_Gain>"},
    Rule{InputUntyped, "input-untyped", Warning, "An input without a type",
         "The input accepts what its list says, but has no type of its own.", "<AO1_In1/>"},
    Rule{TypeEmpty, "type-empty", Error, "An empty type",
         "An output with an empty type shows a warning; an attribute becomes an enumeration without labels.",
         "<SNVTTYPE/>"},
    Rule{TypeUnknown, "type-unknown", Error, "A type that the catalogue does not have",
         "Identifiers are texts, compared as they stand: 0105 is not 105, and a name is no identifier. The "
         "load shows "
         "a box for each use.",
         "<SNVTTYPE>9999</SNVTTYPE>"},
    Rule{TypeFaulty, "type-faulty", Error, "A type whose entry in the catalogue has errors",
         "The box that the entry deserves is shown for each use of the type. Check the catalogue itself.",
         ""},
    Rule{TypeIncomplete, "type-incomplete", Warning, "A type of which the catalogue knows the name alone",
         "Without a general type there is no editor, and values are shown as they stand.",
         "<SNVTTYPE>216</SNVTTYPE>"},
    Rule{TypeRetired, "type-retired", Note, "A retired type",
         "The master list of types calls it obsolete. It works; new devices do not use it.",
         "<SNVTTYPE>10</SNVTTYPE>"},
    Rule{AddressMissing, "address-missing", Warning, "A point without a logical address",
         "The point is exported without an address, which counts as 0.",
         "<AI1_Out><SNVTTYPE>105</SNVTTYPE></AI1_Out>"},
    Rule{AddressTwice, "address-twice", Error, "Two points with one logical address",
         "A logical address belongs to one point of the module, whichever section the point is in.",
         "<LOGICALADDRESS>4</LOGICALADDRESS> in two points"},
    Rule{ReferenceNothing, "reference-nothing", Error, "A reference to an output that is not there",
         "The reference names a channel of this module, but the module has no such output.",
         "<PROTOCOLREFERENCE>AI1_Uot</PROTOCOLREFERENCE>"},
    Rule{ReferenceForm, "reference-form", Warning, "A text that is no reference",
         "A reference is the key of an object, \"_\" and the name of its output. 0000 and 000000 mean none; "
         "more "
         "zeros count as a connection.",
         "<PROTOCOLREFERENCE>00000000</PROTOCOLREFERENCE>"},

    Rule{ListMissing, "list-missing", Warning, "An input without a list of compatible types",
         "Nothing can be wired to the input.", "<AO1_In1><SNVTTYPE>81</SNVTTYPE></AO1_In1>"},
    Rule{ListEmpty, "list-empty", Error, "An empty list of compatible types",
         "The load shows a warning for each one. A comma in front makes the list empty, too.",
         "<SNVTCOMPATIBILITYLIST/>"},
    Rule{ListEndsEarly, "list-ends-early", Error, "A list that ends in the middle",
         "An empty entry ends the list: what stands after two commas is lost.",
         "<SNVTCOMPATIBILITYLIST>81,,21</SNVTCOMPATIBILITYLIST>"},
    Rule{ListEntryUnknown, "list-entry-unknown", Error, "An entry of a list that is no type",
         "Entries are compared as they stand, blanks included.",
         "<SNVTCOMPATIBILITYLIST>95, 22</SNVTCOMPATIBILITYLIST>"},
    Rule{ListEntryTwice, "list-entry-twice", Warning, "An entry that is in a list twice",
         "The second one changes nothing. Perhaps another type was meant.",
         "<SNVTCOMPATIBILITYLIST>81,21,81</SNVTCOMPATIBILITYLIST>"},
    Rule{ListOwnType, "list-own-type", Warning, "A list without the point's own type",
         "An output of the input's own type cannot be wired to it.",
         "<SNVTCOMPATIBILITYLIST>21</SNVTCOMPATIBILITYLIST><SNVTTYPE>81</SNVTTYPE>"},

    Rule{ValueMissing, "value-missing", Warning, "An attribute without a value",
         "The attribute shows nothing until somebody gives it a value.",
         "<AO1_Gain><SNVTTYPE>82</SNVTTYPE></AO1_Gain>"},
    Rule{ValueNotNumber, "value-not-number", Error, "A value that is no number",
         "Values are kept as they stand, so a word shows up as a word. Numbers are digits with \".\", "
         "without unit.",
         "<SNVTTYPE>105</SNVTTYPE><VALUE>warm</VALUE>"},
    Rule{ValueDecimalMark, "value-decimal-mark", Error, "A number with a comma",
         "Documents have \".\" as decimal mark under every locale.", "<VALUE>21,5</VALUE>"},
    Rule{ValueLimit, "value-limit", Error, "A value outside the limits of its type",
         "The limits are those of the catalogue.", "<SNVTTYPE>105</SNVTTYPE><VALUE>99999</VALUE>"},
    Rule{ValueInvalid, "value-invalid", Error, "The invalid value of the type",
         "The value is the one by which the type says that there is none.",
         "<SNVTTYPE>105</SNVTTYPE><VALUE>327.67</VALUE>"},
    Rule{ValueResolution, "value-resolution", Warning, "More digits than the type resolves",
         "The value lies between two values of the type: the device holds another one.",
         "<SNVTTYPE>105</SNVTTYPE><VALUE>21.555</VALUE>"},
    Rule{ValueBits, "value-bits", Error, "A bit field that is wider than its type",
         "A bit field is one whole number, with eight bits for each byte of the type.",
         "<SNVTTYPE>83</SNVTTYPE><VALUE>70000</VALUE>"},
    Rule{ValueTooLong, "value-too-long", Error, "A text that is longer than its type",
         "A type holds as many characters as it has bytes.", "<SNVTTYPE>7</SNVTTYPE><VALUE>ab</VALUE>"},
    Rule{EnumNoLabel, "enum-no-label", Error, "A value of an enumeration without a label",
         "The value is compared with the description as a text: 07 is not 7, and a label is no value.",
         "<SNVTTYPE>22</SNVTTYPE><VALUE>77</VALUE>"},
    Rule{EnumDescription, "enum-description", Error, "The description of an enumeration is not well-formed",
         "Every entry is a whole number, \",\", a label and \";\". An entry that is not closed cannot be "
         "shown.",
         "<EnumDesc>0,Off;1,On</EnumDesc>"},

    Rule{RowName, "row-name", Error, "An element that is no row of DataSizes",
         "A row is named by one letter and its number, 0 to 5. Any other ends the reading with the error 9 "
         "or 13.",
         "<T6 Name=\"More\"/>"},
    Rule{RowTwice, "row-twice", Error, "Two rows of one number", "The second one replaces the first.",
         "<T1/><R1/>"},
    Rule{RowStray, "row-stray", Error, "Something other than a row in DataSizes",
         "Comments and texts are taken for rows too, and end the reading with an error.",
         "<DataSizes><!-- bytes --></DataSizes>"},
    Rule{SizeRange, "size-range", Error, "A size outside 0 to 255",
         "A size is one byte. Another text ends the reading with an error.", "<T0 CDB_Size=\"256\"/>"},
    Rule{DefaultNotNumber, "default-not-number", Error, "A default that is no number",
         "Only attributes of numeric types have defaults.", "<DefaultValue>warm</DefaultValue>"},
    Rule{DefaultNotTaken, "default-not-taken", Error, "A default of an attribute that takes none",
         "Defaults are read for Float, SignedNumeric and UnsignedNumeric. The attribute is of another type "
         "in a "
         "stream of the same run.",
         "<DI1_Invert><DefaultValue>0</DefaultValue></DI1_Invert>"},

    Rule{ConfigNothing, "config-nothing", Error, "TAMConfig names a point that is not there",
         "The entry changes nothing.", "<Attrib Name=\"Ofset\" Visible=\"0\"/>"},

    Rule{EntryName, "entry-name", Error, "An element that is no entry of the catalogue",
         "Entries are SNVT_ and the identifier; letter case counts. Another element is never found.",
         "<snvt_105/>"},
    Rule{EntryTwice, "entry-twice", Error, "Two entries of one type",
         "The first one of an identifier is found. Names of types are different, too.",
         "<SNVT_105/><SNVT_105/>"},
    Rule{EntryType, "entry-type", Error, "A general type that is none",
         "Letter case counts. Every use of the type shows a box.", "<Type>Signed</Type>"},
    Rule{EntryUntyped, "entry-untyped", Note, "An entry without a general type",
         "Values of the type are shown as they stand and cannot be edited.",
         "<SNVT_216><Name>...</Name></SNVT_216>"},
    Rule{EntryLength, "entry-length", Error, "A length that is missing or no number of bytes",
         "A numeric type without length shows a box for each use.", "<Length>two</Length>"},
    Rule{EntryCoefficient, "entry-coefficient", Error, "A coefficient that is no whole number",
         "value = A * 10^B * (raw + C), with A other than 0. Another text shows a box for each use.",
         "<A_Coef>0.5</A_Coef>"},
    Rule{EntryLimitForm, "entry-limit-form", Error, "A limit that is no number",
         "Limits and the invalid value are numbers with \".\" as decimal mark.", "<Max>327,66</Max>"},
    Rule{EntryLimitMissing, "entry-limit-missing", Warning, "A numeric type without limits",
         "Values of the type are not checked, and its editor takes every number.", "<SNVT_1> without <Max>"},
    Rule{EntryLimitOrder, "entry-limit-order", Error, "Limits the wrong way round",
         "No value is above the least and below the greatest.", "<Min>100</Min><Max>0</Max>"},

    Rule{LibraryMissing, "library-missing", Error, "A version without a library",
         "With this firmware, asking whether a name is that of a channel object fails with the error 91.",
         "<V3_00><Objects/></V3_00>"},
    Rule{LibraryNoModule, "library-no-module", Warning, "A library without the module",
         "Channel objects are made only where the library has the module itself.",
         "<Library><o_tam_ai_id/></Library>"},
    Rule{LibraryObject, "library-object", Warning, "An object that this component does not know",
         "It is passed over.", "<o_tam_ia_id/>"},

    Rule{ProjectModule, "project-module", Error, "A module without its device stream",
         "No stream of the same run has the object number. Said only where the run has streams.",
         "<TamObjID>99</TamObjID>"},
    Rule{ProjectChannel, "project-channel", Error, "A channel that no module has",
         "No module of the same run has points with this key. Said only where the run has streams.",
         "<TamObjectKey>AI99</TamObjectKey>"},
    Rule{ProjectPoint, "project-point", Error, "A point that the module or the channel does not have",
         "A flag for an output that is not there ends the reading of the project with the error 91. What is "
         "saved of a channel's point is lost where the definition, if it is in the same run, has no such "
         "point.",
         "<OutReferences><AI1_Uot>1</AI1_Uot></OutReferences>"},
    Rule{ProjectKey, "project-key", Error, "Two elements of one key",
         "A device has one module, and each of its channels one element.",
         "<TamObjectKey>AI1</TamObjectKey> twice"},

    Rule{ExportForm, "export-form", Error, "The compiler refuses this part of the document",
         "An export document has exactly these elements and attributes, in this order, and no texts.",
         "<Inputs><AI1 Colour=\"red\"/></Inputs>"},
    Rule{ExportConnected, "export-connected", Warning, "A connection that the reference denies",
         "IsConnected is 1 where the reference is other than zeros.",
         "LinkReference=\"0000\" IsConnected=\"1\""},

    Rule{TooManyFindings, "too-many-findings", Note, "More findings than are listed",
         "Of one document 10,000 findings are listed, errors before all others. The summary counts them all.",
         ""},
};

static_assert(kRules.size() == static_cast<std::size_t>(RuleId::Count));

constexpr bool IsInOrder() {
    for (std::size_t i = 0; i < kRules.size(); ++i) {
        if (static_cast<std::size_t>(kRules[i].id) != i) {
            return false;
        }
    }
    return true;
}
static_assert(IsInOrder());

} // namespace

const Rule& RuleOf(RuleId id) {
    return kRules[static_cast<std::size_t>(id)];
}

std::span<const Rule> AllRules() {
    return kRules;
}

std::string_view NameOf(Severity severity) {
    return severity == Severity::Error ? "error" : severity == Severity::Warning ? "warning" : "note";
}

} // namespace check
