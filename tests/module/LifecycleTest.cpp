#include "tests/support/Fixture.h"

using namespace support;

namespace {

class CDBAppObjectTest : public ComponentTest {};

TEST_F(CDBAppObjectTest, LoadsAStream) {
    const auto module = Loaded(Stream(L"<In1><SNVTTYPE>105</SNVTTYPE></In1>"));
    EXPECT_EQ(Text(module, &IAppObject::get_Name), L"Module");
    EXPECT_EQ(Text(module, &IAppObject::get_UniqueIDString), L"O_Tam_id");
    const auto inputs = Object(module, &IAppObject::get_Inputs);
    EXPECT_EQ(Long(inputs, &IInputs::get_Count), 1);
}

TEST_F(CDBAppObjectTest, ReportsAMissingDefinition) {
    const auto module = NewModule();
    VARIANT_BOOL done = VARIANT_TRUE;
    const com::Bstr name(L"Nowhere");
    EXPECT_EQ(module->Init(name.Get(), &done), S_OK);
    EXPECT_EQ(done, VARIANT_FALSE);
    const auto boxes = Boxes();
    ASSERT_EQ(boxes.size(), 1u);
    ExpectReport(boxes[0], L"", L"IAppObject_Init Class Module CDBAppObject", L"Function IAppObject_Init");
}

} // namespace
