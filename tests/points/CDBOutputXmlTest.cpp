#include "tests/points/Points.h"

#include <string>
#include <vector>

using namespace support;
using namespace points;

namespace {

constexpr const wchar_t* kReportClass = L"O_Tam_id Class Module CDBOutput";

class CDBOutputXmlTest : public PointsTest {
  protected:
    com::Ref<IOutput> One(const std::wstring& content = L"<SNVTTYPE>105</SNVTTYPE>") {
        module = WithOutputs(L"<Out1>" + content + L"</Out1>");
        return Output(module, L"Out1");
    }
    HRESULT LoadSaved(const com::Ref<IOutput>& output, const std::wstring& content) {
        return output.As<_CDBOutput>()->XmlLoad(Saved(L"<Out1>" + content + L"</Out1>").Get());
    }
    /// What the output writes into a child of its element.
    std::wstring Written(const com::Ref<IOutput>& output, const std::wstring& child, const CalledFrom& = {}) {
        const Document document = Parse(L"<Host/>");
        EXPECT_EQ(output.As<_CDBOutput>()->XMLSave(document.Get(), Root(document).Get()), S_OK);
        return TextAt(document, L"Host/Out1/" + child);
    }
    void ExpectOneReport(const std::wstring& description, const std::wstring& procedure,
                         const CalledFrom& = {}) {
        ExpectOnlyReport(Boxes(), description, kReportClass, procedure);
    }
};

TEST_F(CDBOutputXmlTest, SavesItsChildrenInTheirOrder) {
    const Document document = Parse(L"<Host><Before/></Host>");
    EXPECT_EQ(One().As<_CDBOutput>()->XMLSave(document.Get(), Root(document).Get()), S_OK);
    EXPECT_EQ(ChildNames(document, L"Host"), (std::vector<std::wstring>{L"Before", L"Out1"}));
    EXPECT_EQ(ChildNames(document, L"Host/Out1"),
              (std::vector<std::wstring>{L"SNVT_Type", L"IsConnected", L"IsDisplayable", L"ExportIndex"}));
}

TEST_F(CDBOutputXmlTest, SavesAFreshOutput) {
    const auto output = One();
    EXPECT_EQ(Written(output, L"SNVT_Type"), L"105");
    EXPECT_EQ(Written(output, L"IsConnected"), L"False");
    EXPECT_EQ(Written(output, L"IsDisplayable"), L"False");
    EXPECT_EQ(Written(output, L"ExportIndex"), L"");
}

TEST_F(CDBOutputXmlTest, SavesFlagsInTheSameWordsUnderEveryLocale) {
    const auto output = One();
    output->put_IsDisplayable(VARIANT_TRUE);
    EXPECT_EQ(Written(output, L"IsDisplayable"), L"True");
    EXPECT_EQ(Written(output, L"IsConnected"), L"False");
    output.As<ISubItemConnable>()->put_IsConnected(VARIANT_TRUE);
    EXPECT_EQ(Written(output, L"IsConnected"), L"True");
}

TEST_F(CDBOutputXmlTest, SavesNoTypeAsAnEmptyText) {
    EXPECT_EQ(Written(One(L""), L"SNVT_Type"), L"");
}

TEST_F(CDBOutputXmlTest, SavesAnUnknownTypesIdentifier) {
    const auto output = One(L"<SNVTTYPE>999</SNVTTYPE>");
    Boxes();
    EXPECT_EQ(Written(output, L"SNVT_Type"), L"999");
}

TEST_F(CDBOutputXmlTest, LoadsFlagsAndExportIndex) {
    const auto output = One();
    EXPECT_EQ(LoadSaved(output, L"<IsConnected>True</IsConnected><IsDisplayable>True</IsDisplayable>"
                                L"<ExportIndex>12</ExportIndex>"),
              S_OK);
    EXPECT_TRUE(Flag(output, &IOutput::get_IsConnected));
    EXPECT_TRUE(Flag(output, &IOutput::get_IsDisplayable));
    EXPECT_EQ(Written(output, L"ExportIndex"), L"12");
}

TEST_F(CDBOutputXmlTest, ReadsNamesInAnyLetterCase) {
    const auto output = One();
    EXPECT_EQ(LoadSaved(output, L"<ISCONNECTED>True</ISCONNECTED><isdisplayable>True</isdisplayable>"
                                L"<exportindex>x</exportindex>"),
              S_OK);
    EXPECT_TRUE(Flag(output, &IOutput::get_IsConnected));
    EXPECT_TRUE(Flag(output, &IOutput::get_IsDisplayable));
    EXPECT_EQ(Written(output, L"ExportIndex"), L"x");
}

TEST_F(CDBOutputXmlTest, LoadsFlagsAsThePlatformReadsThem) {
    const auto output = One();
    for (const wchar_t* yes : {L"True", L"true", L"TRUE", L"1", L"-1", L"#TRUE#"}) {
        output->put_IsDisplayable(VARIANT_FALSE);
        EXPECT_EQ(LoadSaved(output, std::wstring(L"<IsDisplayable>") + yes + L"</IsDisplayable>"), S_OK);
        EXPECT_TRUE(Flag(output, &IOutput::get_IsDisplayable)) << yes;
    }
    for (const wchar_t* no : {L"False", L"false", L"0"}) {
        output->put_IsDisplayable(VARIANT_TRUE);
        EXPECT_EQ(LoadSaved(output, std::wstring(L"<IsDisplayable>") + no + L"</IsDisplayable>"), S_OK);
        EXPECT_FALSE(Flag(output, &IOutput::get_IsDisplayable)) << no;
    }
}

TEST_F(CDBOutputXmlTest, IgnoresTypeCommentsAndOtherChildren) {
    const auto output = One();
    EXPECT_EQ(
        LoadSaved(output, L"<!--IsConnected--><SNVT_Type>8</SNVT_Type><Name>Other</Name><Index>4</Index>"),
        S_OK);
    EXPECT_EQ(Text(Object(output, &IOutput::get_SNVTType), &ISNVType::get_ID), L"105");
    EXPECT_EQ(Written(output, L"SNVT_Type"), L"105");
    EXPECT_EQ(Text(output, &IOutput::get_Name), L"Out1");
    EXPECT_EQ(Long(output, &IOutput::get_Index), 0);
}

TEST_F(CDBOutputXmlTest, LeavesItsReferenceToTheModulesExportIndex) {
    const auto output = One();
    EXPECT_EQ(LoadSaved(output, L"<ExportIndex>2</ExportIndex>"), S_OK);
    EXPECT_EQ(Text(output.As<IDisplayItem>(), &IDisplayItem::get_Reference), L"4000");
}

TEST_F(CDBOutputXmlTest, ReportsATextThatIsNoFlagAndKeepsWhatWasLoaded) {
    const auto output = One();
    EXPECT_EQ(LoadSaved(output, L"<ExportIndex>3</ExportIndex><IsConnected>True</IsConnected>"
                                L"<IsDisplayable>yes indeed</IsDisplayable><ExportIndex>4</ExportIndex>"),
              S_OK);
    ExpectOneReport(kTypeMismatchText, L"Sub XmlLoad");
    EXPECT_TRUE(Flag(output, &IOutput::get_IsConnected));
    EXPECT_FALSE(Flag(output, &IOutput::get_IsDisplayable));
    EXPECT_EQ(Written(output, L"ExportIndex"), L"3");
}

TEST_F(CDBOutputXmlTest, ReportsAnEmptyFlag) {
    const auto output = One();
    EXPECT_EQ(LoadSaved(output, L"<IsConnected/>"), S_OK);
    ExpectOneReport(kTypeMismatchText, L"Sub XmlLoad");
}

TEST_F(CDBOutputXmlTest, ReportsALoadWithoutElementOrNode) {
    const auto output = One();
    EXPECT_EQ(output.As<_CDBOutput>()->XmlLoad(nullptr), S_OK);
    ExpectOneReport(kObjectNotSetText, L"Sub XmlLoad");
    EXPECT_EQ(output.As<_CDBOutput>()->XmlLoad(module.Get()), S_OK);
    ExpectOneReport(kTypeMismatchText, L"Sub XmlLoad");
}

TEST_F(CDBOutputXmlTest, ReportsASaveWithoutDocumentOrParent) {
    const auto output = One();
    const Document document = Parse(L"<Host/>");
    EXPECT_EQ(output.As<_CDBOutput>()->XMLSave(nullptr, Root(document).Get()), S_OK);
    ExpectOneReport(kObjectNotSetText, L"Sub XMLSave");
    EXPECT_EQ(output.As<_CDBOutput>()->XMLSave(document.Get(), nullptr), S_OK);
    ExpectOneReport(kObjectNotSetText, L"Sub XMLSave");
    EXPECT_EQ(ChildNames(document, L"Host"), std::vector<std::wstring>{});
}

TEST_F(CDBOutputXmlTest, LoadsWhatItSaved) {
    const auto output = One();
    output->put_IsDisplayable(VARIANT_TRUE);
    output.As<ISubItemConnable>()->put_IsConnected(VARIANT_TRUE);
    LoadSaved(output, L"<ExportIndex>7</ExportIndex>");
    const Document document = Parse(L"<Host/>");
    EXPECT_EQ(output.As<_CDBOutput>()->XMLSave(document.Get(), Root(document).Get()), S_OK);
    const auto other = One();
    com::Ref<IXMLDOMNode> element;
    ASSERT_EQ(Root(document)->get_firstChild(element.Put()), S_OK);
    EXPECT_EQ(other.As<_CDBOutput>()->XmlLoad(element.Get()), S_OK);
    EXPECT_TRUE(Flag(other, &IOutput::get_IsConnected));
    EXPECT_TRUE(Flag(other, &IOutput::get_IsDisplayable));
    EXPECT_EQ(Written(other, L"ExportIndex"), L"7");
}

} // namespace
