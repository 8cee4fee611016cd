#include "tests/points/Points.h"

#include <string>
#include <vector>

using namespace support;
using namespace points;

namespace {

class CDBInputsTest : public PointsTest {
  protected:
    com::Ref<IInputs> Three() {
        module = WithInputs(Named({L"In1", L"Level", L"Set"}));
        return Inputs(module);
    }
};

TEST_F(CDBInputsTest, KeepsTheDefinitionsOrderAndNumbersFromZero) {
    const auto inputs = Three();
    EXPECT_EQ(Long(inputs, &IInputs::get_Count), 3);
    EXPECT_EQ(Names(inputs), (std::vector<std::wstring>{L"In1", L"Level", L"Set"}));
    for (long i = 0; i < 3; ++i) {
        EXPECT_EQ(Long(Input(module, std::to_wstring(i + 1)), &IInput::get_Index), i);
    }
}

TEST_F(CDBInputsTest, ReadsADuplicatesDefinitionBeforeItRefusesIt) {
    module = NewModule();
    EXPECT_EQ(Load(module, Stream(L"<In1/><In1><SNVTCOMPATIBILITYLIST/></In1>")), kDuplicateKey);
    EXPECT_EQ(Boxes().size(), 1u);
}

} // namespace
