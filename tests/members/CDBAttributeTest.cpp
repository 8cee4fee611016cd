#include "tests/members/Members.h"

using namespace members;
using namespace support;

namespace {

class CDBAttributeTest : public MembersTest {
  protected:
    void SetUp() override {
        MembersTest::SetUp();
        UseCatalogue(L"<SNVT_8><NAME>count</NAME><TYPE>Struct</TYPE></SNVT_8>"
                     L"<SNVT_9><NAME>state</NAME><TYPE>Enum</TYPE></SNVT_9>");
    }
    static com::Ref<ISNVType> TypeOf(tam::CDBAttribute& attribute) {
        com::Ref<ISNVType> type;
        EXPECT_EQ(S_OK, attribute.get_SNVTType(type.Put()));
        return type;
    }
};

TEST_F(CDBAttributeTest, HasNoTypeAndNoNameOfOneAtFirst) {
    const auto attribute = tam::CDBAttribute::Make(L"A1");
    EXPECT_FALSE(TypeOf(*attribute.Get()));
    EXPECT_EQ(L"", attribute->SNVTName());
}

TEST_F(CDBAttributeTest, AnEmptyTypeNameMakesTheTypeAndLoadsNothing) {
    const auto attribute = tam::CDBAttribute::Make(L"A1");
    attribute->SetSNVTName(L"");
    const auto type = TypeOf(*attribute.Get());
    ASSERT_TRUE(type);
    EXPECT_EQ(L"", Text(type, &ISNVType::get_ID));
    EXPECT_EQ(L"", Text(type, &ISNVType::get_GenType));
    EXPECT_EQ(L"", attribute->SNVTName());
}

TEST_F(CDBAttributeTest, ATypeNameLoadsTheTypeIntoTheOneThatIsThere) {
    const auto attribute = tam::CDBAttribute::Make(L"A1");
    attribute->SetSNVTName(L"8");
    const auto type = TypeOf(*attribute.Get());
    EXPECT_EQ(L"8", attribute->SNVTName());
    EXPECT_EQ(L"count", Text(type, &ISNVType::get_Name));
    EXPECT_EQ(L"Struct", Text(type, &ISNVType::get_GenType));

    attribute->SetSNVTName(L"9");
    EXPECT_EQ(type.Get(), TypeOf(*attribute.Get()).Get());
    EXPECT_EQ(L"9", attribute->SNVTName());
    EXPECT_EQ(L"state", Text(type, &ISNVType::get_Name));
    EXPECT_EQ(L"Enum", Text(type, &ISNVType::get_GenType));

    attribute->SetSNVTName(L"");
    EXPECT_EQ(L"9", attribute->SNVTName());
    EXPECT_EQ(L"state", Text(type, &ISNVType::get_Name));
}

TEST_F(CDBAttributeTest, ATypeNameThatIsUnknownIsToldAndChangesNothing) {
    const auto attribute = tam::CDBAttribute::Make(L"A1");
    attribute->SetSNVTName(L"8");
    attribute->SetSNVTName(L"7");
    const auto boxes = Boxes();
    ASSERT_EQ(1U, boxes.size());
    ExpectBox(boxes[0], L"Can't find the node related to SNVT ID 7", L"O_Tam_id-CSNVTType::ID [Property Let]",
              MB_ICONSTOP);
    EXPECT_EQ(L"8", attribute->SNVTName());
}

} // namespace
