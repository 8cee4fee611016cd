#include "tests/check/Documents.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

using namespace check;
using namespace checking;
using namespace std::string_literals;

namespace {

std::string WithName(std::string_view name) {
    return "<Tam><Name>" + std::string(name) +
           "</Name><DevKey>K7</DevKey><IsLastOnDev>0</IsLastOnDev><TamObjID>3</TamObjID></Tam>";
}

std::string Deep(std::size_t levels) {
    std::string text;
    for (std::size_t i = 1; i <= levels; ++i) {
        text += i == 257 ? "<^a>" : "<a>";
    }
    for (std::size_t i = 0; i < levels; ++i) {
        text += "</a>";
    }
    return text;
}

} // namespace

TEST(XmlRulesTest, AGoodDocumentHasNoFindings) {
    ExpectClean(WithName("Hall"));
    ExpectClean(
        "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"UTF-8\" standalone='yes'?>\r\n<!-- a - b -->\r\n" +
        WithName("B&amp;A &#x41;&#66;") + "\r\n<?end?>\r\n");
}

TEST(XmlRulesTest, SaysThatADocumentIsEmpty) {
    EXPECT_EQ(Places(Find("")), (std::vector<Place>{{RuleId::FileEmpty, 1, 1}}));
    EXPECT_EQ(Places(Find("\xEF\xBB\xBF \r\n")), (std::vector<Place>{{RuleId::FileEmpty, 1, 1}}));
}

TEST(XmlRulesTest, FindsBytesThatAreNoCharacters) {
    ExpectOne(RuleId::EncodingInvalid, WithName("B^\xFC"
                                                "ro"));
    const auto cut = Find("<Tam><Name>B\xC3");
    ASSERT_FALSE(cut.empty());
    EXPECT_EQ(cut.back().message, "the file ends in the middle of a character");
    EXPECT_EQ(cut.back().column, 13u);
}

TEST(XmlRulesTest, FindsEachByteThatIsNoCharacter) {
    constexpr std::size_t kBytes = 25;
    const Result result = CheckBytes(WithName(std::string(kBytes, '\xFC')), Types());
    EXPECT_EQ(result.Count(Severity::Error), kBytes);
    EXPECT_EQ(result.findings.size(), kBytes);
    const Result more = CheckBytes(WithName(std::string(Findings::kMost + kBytes, '\xFC')), Types());
    EXPECT_EQ(more.Count(Severity::Error), Findings::kMost + kBytes);
    EXPECT_EQ(more.findings.back().rule, RuleId::TooManyFindings);
}

TEST(XmlRulesTest, ChecksADocumentInUtf32ToItsEnd) {
    const auto utf32 = [](const std::string& text, bool isBigEndian) {
        std::string bytes = isBigEndian ? std::string("\0\0\xFE\xFF", 4) : std::string("\xFF\xFE\0\0", 4);
        for (const char c : text) {
            bytes += isBigEndian ? std::string(3, '\0') + c : c + std::string(3, '\0');
        }
        return bytes;
    };
    const std::string document =
        "<Tam><Name>H</Name><DevKey>K</DevKey><IsLastOnDev>yes</IsLastOnDev><TamObjID>3</TamObjID></Tam>";
    const std::vector<Place> expected = {{RuleId::EncodingUnknown, 1, 1}, {RuleId::FlagValue, 1, 51}};
    EXPECT_EQ(Places(Find(utf32(document, false))), expected);
    EXPECT_EQ(Places(Find(utf32(document, true))), expected);
}

TEST(XmlRulesTest, FindsEncodingsThatAreNotThere) {
    for (const std::string name : {"windows-875", "ISO-8859-12"}) { // another number is no slip of the pen
        ExpectOne(RuleId::EncodingUnknown,
                  "<?xml version=\"1.0\" encoding=\"^" + name + "\"?>" + WithName("Hall"));
    }
    ExpectOne(RuleId::EncodingUnknown, "<?xml version=\"1.0\" encoding=\"^UFT-8\"?>" + WithName("Hall"),
              "UTF-8");
    ExpectOne(RuleId::EncodingMismatch, "<?xml version=\"1.0\" encoding=\"^UTF-16\"?>" + WithName("Hall"),
              "UTF-8");
}

TEST(XmlRulesTest, SaysWhichEncodingsAreNotRead) {
    for (const std::string name : {"Shift_JIS", "gbk", "Big5"}) {
        const auto findings = Find("<?xml version=\"1.0\" encoding=\"" + name + "\"?>" + WithName("Hall"));
        ASSERT_EQ(findings.size(), 1u) << name;
        EXPECT_EQ(findings[0].message, "the encoding \"" + name + "\" is not read");
        EXPECT_EQ(findings[0].suggestion, "");
    }
}

TEST(XmlRulesTest, ReadsEncodingsThatGoByAnotherName) {
    const auto declared = [](const std::string& encoding, const std::string& name) {
        return "<?xml version=\"1.0\" encoding=\"^" + encoding + "\"?>" + WithName(name);
    };
    // The one finding: the bytes are characters of the encoding that is meant.
    ExpectOne(RuleId::EncodingUnknown, declared("utf8", "B\xC3\xBCro"), "UTF-8");
    ExpectOne(RuleId::EncodingUnknown, declared("ascii", "Hall"), "US-ASCII");
    ExpectOne(RuleId::EncodingUnknown, declared("latin1", "B\xFCro"), "ISO-8859-1");
    ExpectOne(RuleId::EncodingUnknown, declared("ISO8859-15", "\xA4 5"), "ISO-8859-15");
    ExpectOne(RuleId::EncodingUnknown, declared("ISO_8859-1", "B\xFCro"), "ISO-8859-1");
    ExpectOne(RuleId::EncodingUnknown, declared("cp1252", "\x80 5"), "WINDOWS-1252");
    ExpectOne(RuleId::EncodingUnknown, declared("CP-1251", "\xC0"), "WINDOWS-1251");
    ExpectOne(RuleId::EncodingUnknown, declared("cp866", "\x80"), "IBM866");
}

TEST(XmlRulesTest, WantsADefinitionInAnEncodingThatEveryParserLoads) {
    const auto declared = [](const std::string& encoding, const std::string& rest) {
        return "<?xml version=\"1.0\" encoding=\"" + encoding + "\"?>" + rest;
    };
    const std::string module =
        "<AppObject><NAME>\xC1</NAME><ID>TAM</ID><DESCRIPTION>d</DESCRIPTION><CATEGORY>c</CATEGORY>"
        "<DataSizes/></AppObject>";
    const std::string channel =
        "<AppObject><NAME>\xC1</NAME><ID>o_tam_ai_id</ID><OutReferences><Out><SNVTTYPE>"
        "105</SNVTTYPE></Out></OutReferences></AppObject>";
    for (const std::string encoding : {"KOI8-R", "windows-874", "ISO-8859-16", "IBM850", "macintosh"}) {
        ExpectClean(declared(encoding, WithName("\xC1")));
        ExpectOne(RuleId::EncodingUnknown, declared("^" + encoding, module));
        ExpectOne(RuleId::EncodingUnknown, declared("^" + encoding, channel));
    }
    for (const std::string encoding : {"ISO-8859-11", "ISO-8859-15", "windows-1251"}) {
        ExpectClean(declared(encoding, module));
        ExpectClean(declared(encoding, channel));
    }
    // The edition of 1987 has no euro sign, and some parsers know that edition alone.
    ExpectOne(RuleId::EncodingInvalid, declared("ISO-8859-7", WithName("^\xA4")));
}

TEST(XmlRulesTest, FindsWrongDeclarations) {
    ExpectOne(RuleId::XmlDeclaration, "<?xml version=\"^1.1\"?>" + WithName("Hall"), "1.0");
    ExpectOne(RuleId::XmlDeclaration, "<?xml ^encoding=\"UTF-8\"?>" + WithName("Hall"));
    ExpectOne(RuleId::XmlDeclaration, "<!-- first -->^<?xml version=\"1.0\"?>" + WithName("Hall"));
    ExpectOne(RuleId::XmlDeclaration, "\n^<?xml version=\"1.0\"?>" + WithName("Hall"));
}

TEST(XmlRulesTest, FindsCharactersThatXmlDoesNotAllow) {
    ExpectOne(RuleId::XmlCharacter, WithName("a^\x07"));
    ExpectOne(RuleId::XmlCharacter, WithName("a^\xEF\xBF\xBF"));
    ExpectOne(RuleId::XmlCharacter, WithName("a^\0"s));
}

TEST(XmlRulesTest, FindsTagsThatAreNotWellFormed) {
    ExpectOne(RuleId::XmlTag, WithName("a ^< b"), "&lt;");
    ExpectOne(RuleId::XmlTag, "<Tam><Name ^#>Hall</Name><DevKey>K7</DevKey><IsLastOnDev>0</IsLastOnDev>"
                              "<TamObjID>3</TamObjID></Tam>");
    ExpectAmong(RuleId::XmlTag, "<Tam><Name^");
}

TEST(XmlRulesTest, FindsElementsThatAreNotEnded) {
    ExpectOne(RuleId::XmlUnclosed,
              WithAttribute("<AI1_Value><LOGICALADDRESS>3</LOGICALADDRESS><VALUE>1</VALUE>"
                            "<^SNVTTYPE>105</AI1_Value>"));
    ExpectOne(RuleId::XmlUnclosed, "<^Tam><Name>H</Name><DevKey>K</DevKey><IsLastOnDev>0</IsLastOnDev>"
                                   "<TamObjID>3</TamObjID>");
}

TEST(XmlRulesTest, FindsEndTagsThatEndNothing) {
    ExpectOne(RuleId::XmlEndTag,
              "<Tam><Name>H</^Nmae><DevKey>K</DevKey><IsLastOnDev>0</IsLastOnDev>"
              "<TamObjID>3</TamObjID></Tam>",
              "Name");
    ExpectOne(RuleId::XmlEndTag, "<Tam><Name>H</Name></^Other><DevKey>K</DevKey><IsLastOnDev>0</IsLastOnDev>"
                                 "<TamObjID>3</TamObjID></Tam>");
    ExpectOne(RuleId::XmlEndTag, WithName("Hall") + "^</Tam>");
}

TEST(XmlRulesTest, FindsAttributesThatAreNotWellFormed) {
    const std::string rest = "<NAME>m</NAME></AppObject>";
    ExpectAmong(RuleId::XmlAttribute, "<AppObject a=^1>" + rest);
    ExpectAmong(RuleId::XmlAttribute, "<AppObject ^a>" + rest);
    ExpectAmong(RuleId::XmlAttribute, "<AppObject a=^\"1>" + rest);
    ExpectAmong(RuleId::XmlAttribute, "<AppObject a=\"1^<\">" + rest, "&lt;");
    ExpectAmong(RuleId::XmlAttribute, "<AppObject a=\"1\"^b=\"2\">" + rest);
    ExpectAmong(RuleId::XmlAttributeTwice, "<AppObject a=\"1\" b=\"2\" ^a=\"3\">" + rest);
}

TEST(XmlRulesTest, FindsReferencesThatStandForNothing) {
    ExpectOne(RuleId::XmlReference, WithName("Heating ^& cooling"), "&amp;");
    ExpectOne(RuleId::XmlReference, WithName("a^&nbsp;b"));
    ExpectOne(RuleId::XmlReference, WithName("a^&ampp;b"), "&amp;");
    ExpectOne(RuleId::XmlReference, WithName("a^&#0;b"));
    ExpectOne(RuleId::XmlReference, WithName("a^&#xD800;b"));
}

TEST(XmlRulesTest, FindsCommentsSectionsAndInstructions) {
    ExpectOne(RuleId::XmlComment, "<!-- one ^-- two -->" + WithName("Hall"));
    ExpectOne(RuleId::XmlComment, "<!-- one ^--->" + WithName("Hall"));
    ExpectAmong(RuleId::XmlComment, WithName("Hall") + "^<!-- one");
    ExpectOne(RuleId::XmlCData, WithName("a^]]>b"), "]]&gt;");
    ExpectAmong(RuleId::XmlCData, "<Tam><Name>^<![CDATA[a</Name></Tam>");
    ExpectOne(RuleId::XmlInstruction, "^<? note?>" + WithName("Hall"));
    ExpectAmong(RuleId::XmlInstruction, WithName("Hall") + "^<?note");
}

TEST(XmlRulesTest, FindsHalvesOfCharactersInTexts) {
    const auto places = [](const std::string& text) {
        return Places(CheckText("<Library><!--" + text + "--></Library>", {}).findings);
    };
    const auto whole = places("\xED\xA0\xBD\xED\xB8\x80");
    for (const char* const half : {"\xED\xA0\xBD", "\xED\xB8\x80", "\xED\xB8\x80\xED\xA0\xBD"}) {
        EXPECT_GT(places(half).size(), whole.size()) << half;
    }
}

TEST(XmlRulesTest, FindsDocumentTypes) {
    ExpectOne(RuleId::XmlDoctype, "^<!DOCTYPE Tam [<!ENTITY e \"a>b\">]>" + WithName("Hall"));
    ExpectOne(RuleId::XmlDoctype,
              "^<!DOCTYPE Tam [<!-- don't ]> --> <?note that's \"?>]>" + WithName("Hall's \"1\""));
    ExpectAmong(RuleId::XmlDoctype, "^<!DOCTYPE Tam [<!-- no end");
}

TEST(XmlRulesTest, FindsSecondRootsAndTextsBesideTheRoot) {
    ExpectOne(RuleId::XmlRoot, WithName("Hall") + "<^Tam/>");
    ExpectOne(RuleId::XmlRoot, WithName("Hall") + " ^more");
    ExpectOne(RuleId::XmlRoot, "^more " + WithName("Hall"));
    EXPECT_EQ(Places(Find("just a text")), (std::vector<Place>{{RuleId::XmlRoot, 1, 1}}));
    EXPECT_EQ(Places(Find("<!-- nothing -->")), (std::vector<Place>{{RuleId::XmlRoot, 1, 17}}));
}

TEST(XmlRulesTest, FindsElementsThatAreTooDeep) {
    ExpectAmong(RuleId::XmlTooDeep, Deep(257));
    ExpectAmong(RuleId::XmlTooDeep, Deep(5000));
    EXPECT_EQ(Places(Find(Deep(256))), (std::vector<Place>{{RuleId::KindUnknown, 1, 2}}));
}

TEST(XmlRulesTest, FindsTextsThatAreTooLong) {
    ExpectOne(RuleId::XmlTooLong, WithName("^" + std::string(10'000'000, 'x')));
    ExpectAmong(RuleId::XmlTooLong, "<Tam><^" + std::string(50'001, 'x') + "/></Tam>");
}

TEST(XmlRulesTest, FindsNamespacesAndBlanksThatAreKept) {
    ExpectAmong(RuleId::XmlNamespace, "<Tam ^xmlns=\"urn:tam\"/>");
    ExpectAmong(RuleId::XmlNamespace, "<Tam><^t:Name/></Tam>");
    ExpectAmong(RuleId::XmlNamespace, "<Tam ^t:a=\"1\"/>");
    ExpectAmong(RuleId::XmlSpace, "<Tam ^xml:space=\"preserve\"/>");
    ExpectClean("<Tam xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
                "xsi:noNamespaceSchemaLocation=\"stream.xsd\"" +
                WithName("Hall").substr(4));
}
