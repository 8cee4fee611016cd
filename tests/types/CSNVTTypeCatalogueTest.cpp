#include "tests/types/Types.h"

#include <string>

using namespace support;
using namespace types;

namespace {

constexpr const wchar_t* kNotFoundCaption = L"O_Tam_id-CSNVTType::ID [Property Let]";

class CSNVTTypeCatalogueTest : public TypesTest {
  protected:
    std::wstring NameOf(const Type& type) { return Text(type, &ISNVType::get_Name); }
    void ExpectNotFound(const std::wstring& id, const CalledFrom& = {}) {
        ExpectMessage(L"Can't find the node related to SNVT ID " + id, kNotFoundCaption, MB_ICONSTOP);
    }
    /// Hands over a whole document.
    void SetDocument(const std::wstring& xml) {
        const auto owner = NewModule();
        EXPECT_EQ(owner->putref_XmlSNVTDoc(Parse(xml).Get()), S_OK);
    }
};

TEST_F(CSNVTTypeCatalogueTest, FindsTheEntryOfTheIdentifier) {
    SetCatalogue(Entry(L"10", L"<Name>Ten</Name>") + Entry(L"105", L"<Name>HundredFive</Name>"));
    EXPECT_EQ(NameOf(Assigned(L"105")), L"HundredFive");
    EXPECT_EQ(NameOf(Assigned(L"10")), L"Ten");
}

TEST_F(CSNVTTypeCatalogueTest, FindsIdentifiersThatAreNoNumbers) {
    SetCatalogue(Entry(L"temp_p", L"<Name>A</Name>") + Entry(L"a.b-c", L"<Name>B</Name>"));
    EXPECT_EQ(NameOf(Assigned(L"temp_p")), L"A");
    EXPECT_EQ(NameOf(Assigned(L"a.b-c")), L"B");
}

TEST_F(CSNVTTypeCatalogueTest, ExaminesNoNameOfTheDocumentElement) {
    for (const wchar_t* root : {L"SNVT", L"anything", L"SNVT_1"}) {
        const std::wstring name = root;
        SetDocument(L"<" + name + L">" + Entry(L"1", L"<Name>One</Name>") + L"</" + name + L">");
        EXPECT_EQ(NameOf(Assigned(L"1")), L"One");
    }
}

TEST_F(CSNVTTypeCatalogueTest, FindsOnlyChildrenOfTheDocumentElement) {
    SetDocument(L"<SNVT_1><Name>Root</Name><Group>" + Entry(L"1", L"<Name>Deep</Name>") +
                L"</Group></SNVT_1>");
    EXPECT_EQ(AnswersOf(Assigned(L"1")), Answers());
    ExpectNotFound(L"1");
}

TEST_F(CSNVTTypeCatalogueTest, FindsTheEntrysNameInItsExactCaseAlone) {
    SetCatalogue(L"<snvt_1><Name>Lower</Name></snvt_1>" + Entry(L"Temp", L"<Name>Temp</Name>"));
    EXPECT_EQ(NameOf(Assigned(L"1")), L"");
    ExpectNotFound(L"1");
    EXPECT_EQ(NameOf(Assigned(L"temp")), L"");
    ExpectNotFound(L"temp");
    EXPECT_EQ(NameOf(Assigned(L"Temp")), L"Temp");
}

TEST_F(CSNVTTypeCatalogueTest, TakesTheFirstOfTwoEntries) {
    SetCatalogue(Entry(L"1", L"<Name>First</Name>") + Entry(L"1", L"<Name>Second</Name>"));
    EXPECT_EQ(NameOf(Assigned(L"1")), L"First");
}

TEST_F(CSNVTTypeCatalogueTest, DoesNotTrimTheIdentifier) {
    SetCatalogue(Entry(L"1", L"<Name>One</Name>"));
    EXPECT_EQ(NameOf(Assign(Untyped(), L" 1")), L""); // no path, as a message or a report
    EXPECT_EQ(Boxes().size(), 1u);
}

TEST_F(CSNVTTypeCatalogueTest, ReadsElementsInAnyLetterCase) {
    Answers expected;
    expected.id = L"1";
    expected.name = L"N";
    expected.genType = L"Float";
    expected.luiType = L"Float";
    expected.units = L"u";
    expected.bacnetUnits = L"b";
    expected.min = L"1";
    expected.max = L"2";
    expected.length = 4;
    expected.aCoef = 5;
    expected.bCoef = 6;
    expected.cCoef = 7;
    expected.invalidValue = L"i";
    EXPECT_EQ(
        AnswersOf(FromEntry(L"<NAME>N</NAME><TYPE>Float</TYPE><UNIT>u</UNIT><BACNETUNIT>b</BACNETUNIT>"
                            L"<MIN>1</MIN><MAX>2</MAX><LENGTH>4</LENGTH><A_COEF>5</A_COEF><B_COEF>6</B_COEF>"
                            L"<C_COEF>7</C_COEF><INVALIDVALUE>i</INVALIDVALUE>")),
        expected);
    EXPECT_EQ(
        AnswersOf(FromEntry(L"<name>N</name><type>Float</type><unit>u</unit><bacnetunit>b</bacnetunit>"
                            L"<min>1</min><max>2</max><length>4</length><a_coef>5</a_coef><b_coef>6</b_coef>"
                            L"<c_coef>7</c_coef><invalidvalue>i</invalidvalue>")),
        expected);
}

TEST_F(CSNVTTypeCatalogueTest, ReadsAttributesInAnyLetterCase) {
    for (const wchar_t* attributes :
         {L"FACTOR='5' Z3REGION='6'", L"factor='5' z3region='6'", L"FaCtOr='5' z3Region='6'"}) {
        const auto answers = AnswersOf(FromEntry(L"", attributes));
        EXPECT_EQ(answers.factor, 5);
        EXPECT_EQ(answers.z3Region, 6);
    }
}

TEST_F(CSNVTTypeCatalogueTest, ReadsElementsAndAttributesByLocalName) {
    const auto answers =
        AnswersOf(FromEntry(L"<x:Name>N</x:Name><x:Type>Textual</x:Type><x:Length>9</x:Length>",
                            L"xmlns:x='urn:x' x:Factor='5'"));
    EXPECT_EQ(answers.name, L"N");
    EXPECT_EQ(answers.length, 9);
    EXPECT_EQ(answers.factor, 5);
}

TEST_F(CSNVTTypeCatalogueTest, IgnoresOtherElementsAndAttributes) {
    Answers expected;
    expected.id = L"1";
    EXPECT_EQ(AnswersOf(FromEntry(L"<Names>x</Names><Types>Float</Types><Typ>Enum</Typ><Factor>9</Factor>"
                                  L"<Z3Region>8</Z3Region>text",
                                  L"Name='x' Type='Float' Length='3' Factors='2'")),
              expected);
}

TEST_F(CSNVTTypeCatalogueTest, PassesOverComments) {
    const auto answers = AnswersOf(FromEntry(L"<!--Name--><Name>N</Name><!--Type-->"
                                             L"<Type>Textual</Type><!--Length--><Length>9</Length>"));
    EXPECT_EQ(answers.name, L"N");
    EXPECT_EQ(answers.length, 9);
}

TEST_F(CSNVTTypeCatalogueTest, ReadsTheWholeTextOfAnElement) {
    const auto answers = AnswersOf(FromEntry(L"<Name>a<b>b</b>c</Name><Type><![CDATA[Textual]]></Type>"
                                             L"<Length><x>1</x>2</Length>"));
    EXPECT_EQ(answers.name, L"abc");
    EXPECT_EQ(answers.genType, L"Textual");
    EXPECT_EQ(answers.length, 12);
}

TEST_F(CSNVTTypeCatalogueTest, IsSharedByAllModules) {
    SetCatalogue(Entry(L"1", L"<Name>One</Name>"));
    const auto other = NewModule();
    EXPECT_EQ(NameOf(Assigned(L"1")), L"One");
}

TEST_F(CSNVTTypeCatalogueTest, AffectsLaterAssignmentsAloneWhenReplaced) {
    SetCatalogue(Entry(L"1", L"<Name>Old</Name>"));
    const auto gain = Untyped();
    const Type type = Assign(gain, L"1");
    SetCatalogue(Entry(L"1", L"<Name>New</Name>"));
    EXPECT_EQ(NameOf(type), L"Old");
    Assign(gain, L"1");
    EXPECT_EQ(NameOf(type), L"New");
}

TEST_F(CSNVTTypeCatalogueTest, IsReadAsItIsAtEachAssignment) {
    // The document is the host's: what it changes there counts at once.
    const auto owner = NewModule();
    const Document document = Parse(L"<C>" + Entry(L"1", L"<Name>Old</Name>") + L"</C>");
    EXPECT_EQ(owner->putref_XmlSNVTDoc(document.Get()), S_OK);
    EXPECT_EQ(NameOf(Assigned(L"1")), L"Old");
    const com::Bstr changed(L"<C>" + Entry(L"1", L"<Name>New</Name>") + L"</C>");
    VARIANT_BOOL done = VARIANT_FALSE;
    ASSERT_EQ(document->loadXML(changed.Get(), &done), S_OK);
    EXPECT_EQ(NameOf(Assigned(L"1")), L"New");
}

TEST_F(CSNVTTypeCatalogueTest, IsSeenAsTheHostEditsItInPlace) {
    const auto owner = NewModule();
    const Document document = Parse(L"<C>" + Entry(L"1", L"<Name>Old</Name>") + L"</C>");
    EXPECT_EQ(owner->putref_XmlSNVTDoc(document.Get()), S_OK);
    EXPECT_EQ(NameOf(Assigned(L"1")), L"Old");
    const auto root = Root(document);
    com::Ref<IXMLDOMNode> first;
    ASSERT_EQ(root->get_firstChild(first.Put()), S_OK);

    // Another text in the same entry.
    com::Ref<IXMLDOMNode> name;
    ASSERT_EQ(first->get_firstChild(name.Put()), S_OK);
    ASSERT_EQ(name->put_text(com::Bstr(L"New").Get()), S_OK);
    EXPECT_EQ(NameOf(Assigned(L"1")), L"New");

    // An entry of the same name before it: the first one counts.
    const Document other = Parse(Entry(L"1", L"<Name>Before</Name>"));
    VARIANT before{};
    before.vt = VT_UNKNOWN;
    before.punkVal = first.Get();
    com::Ref<IXMLDOMNode> added;
    ASSERT_EQ(root->insertBefore(Root(other).Get(), before, added.Put()), S_OK);
    EXPECT_EQ(NameOf(Assigned(L"1")), L"Before");

    // A new one, and none.
    const Document second = Parse(Entry(L"2", L"<Name>Two</Name>"));
    ASSERT_EQ(root->appendChild(Root(second).Get(), nullptr), S_OK);
    EXPECT_EQ(NameOf(Assigned(L"2")), L"Two");
    ASSERT_EQ(root->removeChild(added.Get(), nullptr), S_OK);
    EXPECT_EQ(NameOf(Assigned(L"1")), L"New");
    ASSERT_EQ(root->removeChild(first.Get(), nullptr), S_OK);
    EXPECT_EQ(NameOf(Assigned(L"1")), L"");
    ExpectNotFound(L"1");
}

TEST_F(CSNVTTypeCatalogueTest, LeavesTheObjectAsItWasWhenTheEntryIsMissing) {
    SetCatalogue(Entry(L"1",
                       L"<Type>Float</Type><Name>N</Name><Unit>x</Unit><Min>1.5</Min><Length>4</Length>",
                       L"Factor='3'"));
    const auto gain = Untyped();
    const Answers before = AnswersOf(Assign(gain, L"1"));
    EXPECT_EQ(before.name, L"N");
    EXPECT_EQ(AnswersOf(Assign(gain, L"2")), before);
    ExpectNotFound(L"2");
}

TEST_F(CSNVTTypeCatalogueTest, FindsOneOfAThousand) {
    std::wstring entries;
    for (int i = 1; i <= 1000; ++i) {
        entries += Entry(std::to_wstring(i), L"<Name>N" + std::to_wstring(i) + L"</Name>");
    }
    SetCatalogue(entries);
    const auto gain = Untyped();
    for (const int i : {1, 2, 10, 500, 999, 1000}) {
        EXPECT_EQ(NameOf(Assign(gain, std::to_wstring(i))), L"N" + std::to_wstring(i));
    }
}

} // namespace
