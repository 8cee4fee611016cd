#include "tests/points/Points.h"

#include <string>
#include <vector>

using namespace support;
using namespace points;

namespace {

constexpr const wchar_t* kReportClass = L"O_Tam_id Class Module CDBInput";

class CDBInputXmlTest : public PointsTest {
  protected:
    com::Ref<_CDBInput> One(const std::wstring& content) {
        module = WithInputs(L"<In1>" + content + L"</In1>");
        return Input(module, L"In1").As<_CDBInput>();
    }
    std::wstring Type() { return Interop(module, L"Inputs", L"In1", L"SNVTType"); }
    void ExpectOneReport(const std::wstring& description, const std::wstring& procedure,
                         const CalledFrom& = {}) {
        ExpectOnlyReport(Boxes(), description, kReportClass, procedure);
    }
};

TEST_F(CDBInputXmlTest, SavesItsCompatibleList) {
    const Document document = Parse(L"<Host><Before/></Host>");
    EXPECT_EQ(One(L"<SNVTCOMPATIBILITYLIST>105,8</SNVTCOMPATIBILITYLIST>")
                  ->XMLSave(document.Get(), Root(document).Get()),
              S_OK);
    EXPECT_EQ(ChildNames(document, L"Host"), (std::vector<std::wstring>{L"Before", L"In1"}));
    EXPECT_EQ(ChildNames(document, L"Host/In1"), std::vector<std::wstring>{L"SNVT_List"});
    EXPECT_EQ(TextAt(document, L"Host/In1/SNVT_List"), L"105,8");
}

TEST_F(CDBInputXmlTest, SavesAnEmptyList) {
    const Document document = Parse(L"<Host/>");
    EXPECT_EQ(One(L"<SNVTTYPE>105</SNVTTYPE>")->XMLSave(document.Get(), Root(document).Get()), S_OK);
    EXPECT_EQ(ChildNames(document, L"Host/In1"), std::vector<std::wstring>{L"SNVT_List"});
    EXPECT_EQ(TextAt(document, L"Host/In1/SNVT_List"), L"");
}

TEST_F(CDBInputXmlTest, ReportsASaveWithoutDocumentOrParent) {
    const auto input = One(L"");
    const Document document = Parse(L"<Host/>");
    EXPECT_EQ(input->XMLSave(nullptr, Root(document).Get()), S_OK);
    ExpectOneReport(kObjectNotSetText, L"Sub XMLSave");
    EXPECT_EQ(input->XMLSave(document.Get(), nullptr), S_OK);
    ExpectOneReport(kObjectNotSetText, L"Sub XMLSave");
    EXPECT_EQ(ChildNames(document, L"Host"), std::vector<std::wstring>{});
}

TEST_F(CDBInputXmlTest, LoadsOnlyTheType) {
    const auto input = One(L"<SNVTTYPE>105</SNVTTYPE><LOGICALADDRESS>A1</LOGICALADDRESS>"
                           L"<SNVTCOMPATIBILITYLIST>105</SNVTCOMPATIBILITYLIST>");
    EXPECT_EQ(input->XmlLoad(Saved(L"<In1><SNVT_List>8</SNVT_List><!--c--><SNVT_TYPE>51</SNVT_TYPE>"
                                   L"<LogicalAddress>B</LogicalAddress><SNVTTYPE>7</SNVTTYPE></In1>")
                                 .Get()),
              S_OK);
    EXPECT_EQ(Type(), L"51");
    EXPECT_EQ(Interop(module, L"Inputs", L"In1", L"LogicalAddress"), L"A1");
    EXPECT_EQ(Text(Object(Input(module, L"1"), &IInput::get_SNVTCompatibles), &ICompatibleSNVTs::ToString),
              L"105");
}

TEST_F(CDBInputXmlTest, ReadsTheTypeInAnyLetterCase) {
    EXPECT_EQ(One(L"")->XmlLoad(Saved(L"<In1><Snvt_Type>51</Snvt_Type></In1>").Get()), S_OK);
    EXPECT_EQ(Type(), L"51");
}

TEST_F(CDBInputXmlTest, ReadsTheWholeTextOfTheType) {
    EXPECT_EQ(One(L"")->XmlLoad(Saved(L"<In1><SNVT_TYPE>1<!--c-->05<b>6</b></SNVT_TYPE></In1>").Get()), S_OK);
    EXPECT_EQ(Type(), L"1056");
}

TEST_F(CDBInputXmlTest, LoadsATypeThatTheCatalogueDoesNotKnow) {
    EXPECT_EQ(One(L"")->XmlLoad(Saved(L"<In1><SNVT_TYPE>999</SNVT_TYPE></In1>").Get()), S_OK);
    EXPECT_EQ(Type(), L"999");
}

TEST_F(CDBInputXmlTest, KeepsItsTypeForAnElementWithoutOne) {
    EXPECT_EQ(One(L"<SNVTTYPE>105</SNVTTYPE>")->XmlLoad(Saved(L"<In1><SNVT_List>8</SNVT_List></In1>").Get()),
              S_OK);
    EXPECT_EQ(Type(), L"105");
}

TEST_F(CDBInputXmlTest, ReportsALoadWithoutElement) {
    EXPECT_EQ(One(L"")->XmlLoad(nullptr), S_OK);
    ExpectOneReport(kObjectNotSetText, L"Sub XmlLoad");
}

TEST_F(CDBInputXmlTest, ReportsALoadFromAnObjectThatIsNoNode) {
    const auto input = One(L"<SNVTTYPE>105</SNVTTYPE>");
    EXPECT_EQ(input->XmlLoad(module.Get()), S_OK);
    ExpectOneReport(kTypeMismatchText, L"Sub XmlLoad");
    EXPECT_EQ(Type(), L"105");
}

} // namespace
