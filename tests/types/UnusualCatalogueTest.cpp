#include "tests/types/Types.h"

#include <string>

using namespace support;
using namespace types;

namespace {

constexpr CLSID kOlderDocumentClass = {
    0xF5078F32, 0xC551, 0x11D3, {0x89, 0xB9, 0x00, 0x00, 0xF8, 0x1F, 0xE2, 0x21}};

/// Catalogues as other programs write and load them.
class UnusualCatalogueTest : public TypesTest {
  protected:
    void HandOver(const Document& document, const CalledFrom& = {}) {
        EXPECT_EQ(NewModule()->putref_XmlSNVTDoc(document.Get()), S_OK);
    }
    static Answers Level() {
        Answers answers;
        answers.id = L"1";
        answers.name = L"Level";
        answers.genType = L"Float";
        answers.luiType = L"Float";
        answers.factor = 3;
        answers.z3Region = 4;
        answers.units = L"%";
        answers.min = Local(L"-1.5");
        answers.length = 4;
        return answers;
    }
};

const std::wstring kLevel =
    L"<Name>Level</Name><Type>Float</Type><Unit>%</Unit><Min>-1.5</Min><Length>4</Length>";

TEST_F(UnusualCatalogueTest, StandsAfterCommentsAndInstructions) {
    HandOver(Parse(L"<?xml version='1.0'?><?tool a?><!--x--><C><!--y--><?tool b?>" +
                   Entry(L"1", kLevel, L"Factor='3' Z3Region='4'") + L"</C><!--z-->"));
    EXPECT_EQ(AnswersOf(Assigned(L"1")), Level());
}

TEST_F(UnusualCatalogueTest, HasItsAttributesInAnyOrderAmongOthers) {
    for (const wchar_t* attributes :
         {L"Z3Region='4' Factor='3'", L"a='1' Z3Region='4' b='2' Factor='3' c='5'"}) {
        EXPECT_EQ(AnswersOf(FromEntry(kLevel, attributes)), Level());
    }
}

TEST_F(UnusualCatalogueTest, HasItsElementsInAnyOrderWithSectionsAndCommentsBetween) {
    EXPECT_EQ(AnswersOf(FromEntry(L"<Length><!--four-->4</Length>text<!--x--><Min><![CDATA[-1.5]]></Min>"
                                  L"<?tool?><Unit>\n   %\n  </Unit><Type>Fl<!--y-->oat</Type>"
                                  L"<Name><![CDATA[Le]]>vel</Name>",
                                  L"Factor='3' Z3Region='4'")),
              Level());
}

TEST_F(UnusualCatalogueTest, ExaminesEveryNodeButComments) {
    // An instruction's local name is its target, its text what stands after it.
    const auto answers =
        AnswersOf(FromEntry(L"<?Name Instructed?><Type>Textual</Type><?length 7?><!--Length 8-->"));
    EXPECT_EQ(answers.name, L"Instructed");
    EXPECT_EQ(answers.length, 7);
}

TEST_F(UnusualCatalogueTest, KeepsItsWhiteSpaceWhereTheDocumentDoes) {
    const Document document = NewDocument();
    ASSERT_EQ(document->put_preserveWhiteSpace(VARIANT_TRUE), S_OK);
    const com::Bstr text(L"<C>\n  <SNVT_1 Factor='3' Z3Region='4'>\n    <Name>Level</Name>\n    "
                         L"<Type>Float</Type>\n    <Unit> % </Unit>\n    <Min>-1.5</Min>\n    "
                         L"<Length> 4 </Length>\n  </SNVT_1>\n</C>");
    VARIANT_BOOL done = VARIANT_FALSE;
    ASSERT_EQ(document->loadXML(text.Get(), &done), S_OK);
    HandOver(document);
    Answers expected = Level();
    expected.units = L" % ";
    EXPECT_EQ(AnswersOf(Assigned(L"1")), expected);
}

TEST_F(UnusualCatalogueTest, IsADocumentOfAnOlderParser) {
    Document document;
    ASSERT_EQ(CoCreateInstance(kOlderDocumentClass, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IXMLDOMDocument2),
                               document.PutVoid()),
              S_OK);
    const com::Bstr text(L"<C>" + Entry(L"1", kLevel, L"Factor='3' Z3Region='4'") + L"</C>");
    VARIANT_BOOL done = VARIANT_FALSE;
    ASSERT_EQ(document->loadXML(text.Get(), &done), S_OK);
    HandOver(document);
    EXPECT_EQ(AnswersOf(Assigned(L"1")), Level());
    EXPECT_EQ(AnswersOf(Assigned(L"2")), Answers());
    ExpectMessage(L"Can't find the node related to SNVT ID 2", L"O_Tam_id-CSNVTType::ID [Property Let]",
                  MB_ICONSTOP);
}

TEST_F(UnusualCatalogueTest, HasNoEntryInANamespace) {
    // A name without a prefix is one without a namespace.
    HandOver(Parse(L"<C xmlns='urn:x'>" + Entry(L"1", kLevel) + L"</C>"));
    EXPECT_EQ(AnswersOf(Assigned(L"1")), Answers());
    ExpectMessage(L"Can't find the node related to SNVT ID 1", L"O_Tam_id-CSNVTType::ID [Property Let]",
                  MB_ICONSTOP);
}

TEST_F(UnusualCatalogueTest, MayBeEmpty) {
    HandOver(Parse(L"<C/>"));
    EXPECT_EQ(AnswersOf(Assigned(L"1")), Answers());
    ExpectMessage(L"Can't find the node related to SNVT ID 1", L"O_Tam_id-CSNVTType::ID [Property Let]",
                  MB_ICONSTOP);
}

TEST_F(UnusualCatalogueTest, IsAnythingButADocument) {
    // What is handed over is looked at when a type is looked up.
    const auto owner = NewModule();
    EXPECT_EQ(owner->putref_XmlSNVTDoc(Root(Parse(L"<C/>")).Get()), S_OK);
    EXPECT_EQ(AnswersOf(Assigned(L"1")), Answers());
    ExpectAssignmentReport(kObjectNotSetText, L"1");
}

TEST_F(UnusualCatalogueTest, HasNumbersInEveryFormOfThePlatform) {
    const auto length = [&](const wchar_t* text) {
        return AnswersOf(FromEntry(std::wstring(L"<Type>Textual</Type><Length>") + text + L"</Length>"))
            .length;
    };
    EXPECT_EQ(length(L"&amp;H1F"), 31);
    EXPECT_EQ(length(L"1E2"), 100);
    EXPECT_EQ(length(L"+7"), 7);
    EXPECT_EQ(length(L"(7)"), -7);
    EXPECT_EQ(length(L"7-"), -7);
    const auto factor = [&](const wchar_t* text) {
        return AnswersOf(FromEntry(L"", std::wstring(L"Factor='") + text + L"'")).factor;
    };
    EXPECT_EQ(factor(L"&amp;H1F"), 31);
    EXPECT_EQ(factor(L"1 0 0"), 100);
    EXPECT_EQ(factor(L"(7)"), 0);
}

} // namespace
