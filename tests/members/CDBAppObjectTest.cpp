#include "common/ComponentState.h"
#include "tests/members/Members.h"
#include "tests/support/Recorder.h"

#include <string>

using namespace members;
using namespace support;

namespace {

using CDBAppObjectTest = MembersTest;

TEST_F(CDBAppObjectTest, AnswersItsCollectionsAsWhatTheyAre) {
    UseCatalogue(L"<SNVT_8><NAME>count</NAME><TYPE>Struct</TYPE></SNVT_8>");
    const auto module = Module(Stream(L"<I1/>", L"<O1/>", L"<A1><SNVTTYPE>8</SNVTTYPE></A1>"));
    EXPECT_EQ(L"I1", module->Inputs()->GetItem(L"1")->PointName());
    EXPECT_EQ(L"O1", module->Outputs()->GetItem(L"1")->PointName());
    EXPECT_EQ(L"A1", module->Attributes()->GetItem(L"1")->PointName());

    // They are the ones that the host is given.
    com::Ref<IInputs> inputs;
    com::Ref<IOutputs> outputs;
    com::Ref<IAttributes> attributes;
    ASSERT_EQ(S_OK, module->get_Inputs(inputs.Put()));
    ASSERT_EQ(S_OK, module->get_Outputs(outputs.Put()));
    ASSERT_EQ(S_OK, module->get_Attributes(attributes.Put()));
    EXPECT_EQ(inputs.Get(), static_cast<IInputs*>(module->Inputs().Get()));
    EXPECT_EQ(outputs.Get(), static_cast<IOutputs*>(module->Outputs().Get()));
    EXPECT_EQ(attributes.Get(), static_cast<IAttributes*>(module->Attributes().Get()));
}

TEST_F(CDBAppObjectTest, HasCollectionsFromTheStartAndNoneAfterDestroy) {
    const auto module = Module();
    EXPECT_TRUE(module->Inputs());
    EXPECT_TRUE(module->Outputs());
    EXPECT_TRUE(module->Attributes());
    EXPECT_EQ(S_OK, module->Destroy());
    EXPECT_FALSE(module->Inputs());
    EXPECT_FALSE(module->Outputs());
    EXPECT_FALSE(module->Attributes());
}

TEST_F(CDBAppObjectTest, AnswersTheConverterThatItWasMadeWith) {
    const auto module = Module();
    const auto converter = module->UnitsManager().As<IUnitConverter>();
    EXPECT_EQ(static_cast<IUnitConverter*>(&Units()), converter.Get());
    EXPECT_EQ(S_OK, module->Destroy());
    EXPECT_TRUE(module->UnitsManager());
}

TEST_F(CDBAppObjectTest, KeepsItsChannelNumber) {
    const auto module = Module();
    EXPECT_EQ(255, module->ChannelNumber());
    module->SetChannelNumber(7);
    EXPECT_EQ(7, module->ChannelNumber());
    module->SetChannelNumber(0);
    EXPECT_EQ(0, module->ChannelNumber());
    EXPECT_EQ(255, Module()->ChannelNumber());
}

/// Reads a definition with this content.
void Init(const com::Ref<tam::CDBAppObject>& module, const std::wstring& content) {
    const TextFile file(tam::State().AppPath + L"Sized.xml", L"<Tam>" + content + L"</Tam>");
    VARIANT_BOOL done = VARIANT_FALSE;
    EXPECT_EQ(S_OK, module->Init(com::Bstr(L"Sized").Get(), &done));
    EXPECT_EQ(VARIANT_TRUE, done);
}

TEST_F(CDBAppObjectTest, TheLastDefinitionOverwritesTheRowsOfSizesThatItHas) {
    tam::State().DataSizes = {};
    Init(Module(), L"<AppObject><DataSizes><T0 Name='a' CDB_Size='1' Size_area_1='2' Size_area_2='3'/>"
                   L"<x2 Name='c' CDB_Size='9'/></DataSizes></AppObject>");
    using Row = tam::DataSizeEntry;
    const tam::DataSizeTable& table = tam::State().DataSizes;
    EXPECT_EQ((Row{L"a", 1, 2, 3}), table.Rows()[0]);
    EXPECT_EQ((Row{L"c", 9, 0, 0}), table.Rows()[2]);
    EXPECT_EQ(2, table.Count());
    Init(Module(), L"<AppObject><DataSizes><T0 Name='b' CDB_Size='4' Size_area_1='5' Size_area_2='255'/>"
                   L"</DataSizes></AppObject>");
    EXPECT_EQ((Row{L"b", 4, 5, 255}), table.Rows()[0]);
    EXPECT_EQ(Row(), table.Rows()[1]);
    EXPECT_EQ((Row{L"c", 9, 0, 0}), table.Rows()[2]);
    EXPECT_EQ(1, table.Count());
}

// Hosts are told that there is no default value; the component keeps it.
TEST_F(CDBAppObjectTest, KeepsTheDefaultValueOfNumbersAlone) {
    const std::wstring kinds[] = {L"Float", L"SignedNumeric", L"UnsignedNumeric",
                                  L"Enum",  L"Textual",       L"Struct"};
    std::wstring entries;
    std::wstring attributes;
    std::wstring defaults;
    for (int i = 0; i < 6; ++i) {
        const std::wstring number = std::to_wstring(i + 1);
        entries +=
            L"<SNVT_" + number + L"><NAME>kind</NAME><TYPE>" + kinds[i] + L"</TYPE></SNVT_" + number + L">";
        attributes += L"<A" + number + L"><SNVTTYPE>" + number + L"</SNVTTYPE></A" + number + L">";
        defaults += L"<A" + number + L"><DefaultValue>1,5</DefaultValue></A" + number + L">";
    }
    UseCatalogue(entries);
    const auto module = Module();
    tam::State().DecimalSeparator = L".";
    Init(module, L"<AppObject/><Attributes>" + defaults + L"</Attributes>");
    ASSERT_EQ(S_OK, module->LoadFromXmlStream(com::Bstr(Stream({}, {}, attributes)).Get()));
    Boxes(); // entries without limits are told
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(i < 3 ? L"1.5" : L"",
                  module->Attributes()->GetItem(std::to_wstring(i + 1))->Data().defaultValue)
            << com::Bstr(kinds[i]).Get();
    }
}

TEST_F(CDBAppObjectTest, EndsThePlugInWhileItIsShown) {
    const auto module = Module();
    const auto view = Recorder::Make(L"view", {&__uuidof(IHostView)});
    const auto sheet = Recorder::Make(L"sheet", {&__uuidof(IHostDocument)});
    sheet->Set(L"View", view);
    const auto active = [&] {
        VARIANT_BOOL value = VARIANT_FALSE;
        EXPECT_EQ(S_OK, module->get_IsPlugInActive(&value));
        return value != VARIANT_FALSE;
    };
    view->On(L"ShowObject", [&](const Invocation&) {
        EXPECT_TRUE(active());
        module->EndPlugIn();
        EXPECT_FALSE(active());
        return S_OK;
    });
    ASSERT_EQ(S_OK, module->putref_Parent(sheet->As<IDispatch>().Get()));
    EXPECT_EQ(S_OK, module->Show());
    EXPECT_EQ(1U, view->Times(L"ShowObject"));
    EXPECT_FALSE(active());
    EXPECT_EQ(S_OK, module->putref_Parent(nullptr));
}

} // namespace
