// A property that one interface reads and another one writes, found by name:
// what keeps the write from being done reaches the script.

#include "tests/com/Subjects.h"
#include "tests/support/Caller.h"

#include <vector>

using namespace contract;

namespace {

class DispatchOtherNameTest : public ContractTest {};

TEST_F(DispatchOtherNameTest, TellsWhyAWriteWasNotDone) {
    com::Ref<IInputs> inputs;
    ASSERT_EQ(Module()->get_Inputs(inputs.Put()), S_OK);
    com::Ref<IInput> input;
    ASSERT_EQ(inputs->get_Item(com::Bstr(L"AI1_Value").Get(), input.Put()), S_OK);
    DISPID id = DISPID_UNKNOWN;
    ASSERT_EQ(IdOf(input.Get(), L"IsConnected", id), S_OK);
    const com::Bstr text(L"perhaps");
    VARIANT value{};
    value.vt = VT_BSTR;
    value.bstrVal = text.Get();
    std::vector<VARIANT> values{value};
    UINT wrong = 99;
    EXPECT_EQ(Invoke(input.Get(), id, DISPATCH_PROPERTYPUT, values, nullptr, nullptr, &wrong),
              DISP_E_TYPEMISMATCH);
    EXPECT_EQ(wrong, 0U);
}

} // namespace
