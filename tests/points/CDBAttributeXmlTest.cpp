#include "tests/points/Points.h"

#include <string>
#include <vector>

using namespace support;
using namespace points;

namespace {

constexpr const wchar_t* kReportClass = L"O_Tam_id Class Module CDBAttribute";

class CDBAttributeXmlTest : public PointsTest {
  protected:
    com::Ref<IAttribute> One(const std::wstring& content = L"<SNVTTYPE>105</SNVTTYPE><VALUE>4</VALUE>") {
        module = WithAttributes(L"<Gain>" + content + L"</Gain>");
        return Attribute(module, L"Gain");
    }
    HRESULT LoadSaved(const com::Ref<IAttribute>& attribute, const std::wstring& xml) {
        return attribute.As<_CDBAttribute>()->XmlLoad(Saved(xml).Get());
    }
    std::wstring TypeOf(const com::Ref<IAttribute>& attribute) {
        return Text(Object(attribute, &IAttribute::get_SNVTType), &ISNVType::get_ID);
    }
};

TEST_F(CDBAttributeXmlTest, SavesAnEmptyElementOfItsName) {
    const Document document = Parse(L"<Host><Before/></Host>");
    EXPECT_EQ(One().As<_CDBAttribute>()->XMLSave(Root(document).Get(), document.Get()), S_OK);
    EXPECT_EQ(ChildNames(document, L"Host"), (std::vector<std::wstring>{L"Before", L"Gain"}));
    EXPECT_EQ(ChildNames(document, L"Host/Gain"), std::vector<std::wstring>{});
    EXPECT_EQ(TextAt(document, L"Host/Gain/@*"), L"(none)");
}

TEST_F(CDBAttributeXmlTest, ReportsASaveWithoutDocument) {
    const Document document = Parse(L"<Host/>");
    EXPECT_EQ(One().As<_CDBAttribute>()->XMLSave(Root(document).Get(), nullptr), S_OK);
    ExpectOnlyReport(Boxes(), kObjectNotSetText, kReportClass, L"Sub XMLSave");
    EXPECT_EQ(ChildNames(document, L"Host"), std::vector<std::wstring>{});
}

TEST_F(CDBAttributeXmlTest, ReportsASaveWithoutParentNode) {
    const Document document = Parse(L"<Host/>");
    EXPECT_EQ(One().As<_CDBAttribute>()->XMLSave(nullptr, document.Get()), S_OK);
    ExpectOnlyReport(Boxes(), kObjectNotSetText, kReportClass, L"Sub XMLSave");
}

TEST_F(CDBAttributeXmlTest, BearsAHostThatDropsTheLastReferenceWhileABoxIsShown) {
    auto gain = One().As<_CDBAttribute>();
    Watcher().OnBox([&](HWND, const bench::Box&) {
        gain.Reset();
        module.Reset();
        return false;
    });
    _CDBAttribute* const asked = gain.Get();
    const auto saved = Saved(L"<Gain><SNVT_TYPE>777</SNVT_TYPE><SNVT_TYPE>95</SNVT_TYPE></Gain>");
    EXPECT_EQ(asked->XmlLoad(saved.Get()), S_OK);
    Watcher().OnBox(nullptr);
    EXPECT_FALSE(gain);
    ExpectOnlyBox(Boxes(), L"Can't find the node related to SNVT ID 777",
                  L"O_Tam_id-CSNVTType::ID [Property Let]", MB_ICONSTOP);
    EXPECT_EQ(Dll().CanUnload(), S_OK);
}

TEST_F(CDBAttributeXmlTest, LoadsOnlyTheType) {
    const auto gain = One();
    EXPECT_EQ(LoadSaved(gain, L"<Gain><Value>9</Value><SNVT_TYPE>95</SNVT_TYPE><Name>Other</Name></Gain>"),
              S_OK);
    EXPECT_EQ(TypeOf(gain), L"95");
    EXPECT_EQ(Text(gain, &IAttribute::get_Value), L"4");
    EXPECT_EQ(Text(gain, &IAttribute::get_Name), L"Gain");
}

TEST_F(CDBAttributeXmlTest, LoadsTheTypeIntoTheTypeObjectThatThereIs) {
    const auto gain = One();
    const auto type = Object(gain, &IAttribute::get_SNVTType);
    EXPECT_EQ(LoadSaved(gain, L"<Gain><SNVT_TYPE>8</SNVT_TYPE></Gain>"), S_OK);
    EXPECT_TRUE(com::SameObject(type.Get(), Object(gain, &IAttribute::get_SNVTType).Get()));
    EXPECT_EQ(Text(type, &ISNVType::get_Name), L"Count");
}

TEST_F(CDBAttributeXmlTest, MakesTheTypeObjectWhenThereIsNone) {
    module = NewModule();
    EXPECT_EQ(Load(module, Stream({}, {}, L"<Gain><VALUE>1.5</VALUE></Gain>")), kObjectNotSet);
    const auto gain = Attribute(module, L"Gain");
    EXPECT_EQ(LoadSaved(gain, L"<Gain><SNVT_TYPE>36</SNVT_TYPE></Gain>"), S_OK);
    EXPECT_EQ(TypeOf(gain), L"36");
    EXPECT_EQ(Text(gain, &IAttribute::get_DispValue), Local(L"1.5"));
}

TEST_F(CDBAttributeXmlTest, MakesTheTypeObjectBeforeATextThatIsNotThere) {
    module = NewModule();
    EXPECT_EQ(Load(module, Stream({}, {}, L"<B/>")), kObjectNotSet);
    const auto attribute = Attribute(module, L"B");
    ASSERT_TRUE(attribute);
    EXPECT_EQ(LoadSaved(attribute, L"<B><SNVT_TYPE/></B>"), S_OK);
    EXPECT_EQ(Boxes().size(), 1u);
    const auto type = Object(attribute, &IAttribute::get_SNVTType);
    ASSERT_TRUE(type);
    EXPECT_EQ(Text(type, &ISNVType::get_GenType), L"");
    EXPECT_EQ(Text(attribute, &IAttribute::get_DispValue), L"");
}

TEST_F(CDBAttributeXmlTest, ReadsTheTypeInAnyLetterCase) {
    const auto gain = One();
    EXPECT_EQ(LoadSaved(gain, L"<Gain><Snvt_Type>95</Snvt_Type></Gain>"), S_OK);
    EXPECT_EQ(TypeOf(gain), L"95");
}

TEST_F(CDBAttributeXmlTest, LoadsEachTypeInOrder) {
    const auto gain = One();
    EXPECT_EQ(
        LoadSaved(gain, L"<Gain><SNVT_TYPE>95</SNVT_TYPE><!--SNVT_TYPE--><SNVT_TYPE>8</SNVT_TYPE></Gain>"),
        S_OK);
    EXPECT_EQ(TypeOf(gain), L"8");
}

TEST_F(CDBAttributeXmlTest, TakesTheFirstChildOfTheType) {
    const auto gain = One();
    EXPECT_EQ(LoadSaved(gain, L"<Gain><SNVT_TYPE>95<b/>1</SNVT_TYPE></Gain>"), S_OK);
    EXPECT_EQ(TypeOf(gain), L"95");
    EXPECT_EQ(LoadSaved(gain, L"<Gain><SNVT_TYPE><b>8</b>1</SNVT_TYPE></Gain>"), S_OK);
    EXPECT_EQ(TypeOf(gain), L"8");
}

TEST_F(CDBAttributeXmlTest, ChangesNothingForAnEmptyElement) {
    const auto gain = One();
    EXPECT_EQ(LoadSaved(gain, L"<Gain/>"), S_OK);
    EXPECT_EQ(TypeOf(gain), L"105");
}

TEST_F(CDBAttributeXmlTest, ShowsAnUnknownTypeOnceAndKeepsTheOld) {
    const auto gain = One();
    EXPECT_EQ(LoadSaved(gain, L"<Gain><SNVT_TYPE>999</SNVT_TYPE></Gain>"), S_OK);
    ExpectOnlyBox(Boxes(), L"Can't find the node related to SNVT ID 999",
                  L"O_Tam_id-CSNVTType::ID [Property Let]", MB_ICONSTOP);
    EXPECT_EQ(TypeOf(gain), L"105");
}

TEST_F(CDBAttributeXmlTest, ReportsATypeWithoutTextAndKeepsWhatWasLoaded) {
    const auto gain = One();
    EXPECT_EQ(LoadSaved(gain, L"<Gain><SNVT_TYPE>95</SNVT_TYPE><SNVT_TYPE/><SNVT_TYPE>8</SNVT_TYPE></Gain>"),
              S_OK);
    ExpectOnlyReport(Boxes(), kObjectNotSetText, kReportClass, L"Sub XmlLoad");
    EXPECT_EQ(TypeOf(gain), L"95");
}

TEST_F(CDBAttributeXmlTest, ReportsALoadWithoutElement) {
    const auto gain = One();
    EXPECT_EQ(gain.As<_CDBAttribute>()->XmlLoad(nullptr), S_OK);
    ExpectOnlyReport(Boxes(), kObjectNotSetText, kReportClass, L"Sub XmlLoad");
}

TEST_F(CDBAttributeXmlTest, ReportsALoadFromAnObjectThatIsNoNode) {
    const auto gain = One();
    EXPECT_EQ(gain.As<_CDBAttribute>()->XmlLoad(module.Get()), S_OK);
    ExpectOnlyReport(Boxes(), kTypeMismatchText, kReportClass, L"Sub XmlLoad");
}

TEST_F(CDBAttributeXmlTest, LoadsWhatItSavedWithoutAChange) {
    const auto gain = One();
    const Document document = Parse(L"<Host/>");
    EXPECT_EQ(gain.As<_CDBAttribute>()->XMLSave(Root(document).Get(), document.Get()), S_OK);
    EXPECT_EQ(LoadSaved(gain, L"<Gain/>"), S_OK);
    EXPECT_EQ(TypeOf(gain), L"105");
    EXPECT_EQ(Text(gain, &IAttribute::get_Value), L"4");
}

} // namespace
