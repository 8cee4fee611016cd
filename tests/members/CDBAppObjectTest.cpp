#include "tests/members/Members.h"
#include "tests/support/Recorder.h"

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
