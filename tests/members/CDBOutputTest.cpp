#include "tests/members/Members.h"
#include "tests/support/Recorder.h"

#include <string>

using namespace members;
using namespace support;

namespace {

class CDBOutputTest : public MembersTest {
  protected:
    void SetUp() override {
        MembersTest::SetUp();
        UseCatalogue(L"<SNVT_8><NAME>count</NAME><TYPE>Struct</TYPE></SNVT_8>"
                     L"<SNVT_9><NAME>state</NAME><TYPE>Enum</TYPE></SNVT_9>");
    }
    com::Ref<tam::CDBOutput> Defined(const std::wstring& definition) {
        module_ = Module(Stream({}, definition));
        return module_->Outputs()->GetItem(L"1");
    }
    void TearDown() override {
        module_.Reset();
        MembersTest::TearDown();
    }

  private:
    com::Ref<tam::CDBAppObject> module_;
};

TEST_F(CDBOutputTest, DependsOnATypeWhenAnAttributeSaysSo) {
    EXPECT_TRUE(Defined(L"<Out1 typeDependent=''/>")->Data().isTypeDependent);
    EXPECT_TRUE(Defined(L"<Out1 Other='1' TYPEDEPENDENT='0'/>")->Data().isTypeDependent);
    EXPECT_TRUE(Defined(L"<Out1 xmlns:q='q' q:TypeDependent='1'/>")->Data().isTypeDependent);
    EXPECT_FALSE(Defined(L"<Out1 Type='1' Dependent='1'/>")->Data().isTypeDependent);
    EXPECT_FALSE(Defined(L"<Out1><TYPEDEPENDENT>1</TYPEDEPENDENT></Out1>")->Data().isTypeDependent);
}

TEST_F(CDBOutputTest, KeepsTheIdentifierOfTheConnectedType) {
    const auto output = Defined(L"<Out1><SNVTTYPE>8</SNVTTYPE></Out1>");
    EXPECT_EQ(L"", output->Data().connectedType);
    const auto type = Recorder::Make(L"type", {&__uuidof(ISNVType)});
    type->Set(L"ID", L"105");
    EXPECT_EQ(S_OK, output->putref_ConnectedType(type->As<IDispatch>().Get()));
    EXPECT_EQ(L"105", output->Data().connectedType);
    EXPECT_EQ(L"8", output->Data().snvtType);
    EXPECT_EQ(kObjectNotSet, output->putref_ConnectedType(nullptr));
    EXPECT_EQ(L"105", output->Data().connectedType) << "a failed write changes nothing";
}

TEST_F(CDBOutputTest, MakesItsTypeOnceAndLoadsAnotherIntoIt) {
    const auto output = tam::CDBOutput::Make(L"Out1");
    output->SetSnvtType(L"8");
    com::Ref<ISNVType> type;
    ASSERT_EQ(S_OK, output->get_SNVTType(type.Put()));
    EXPECT_EQ(L"count", Text(type, &ISNVType::get_Name));
    output->SetSnvtType(L"9");
    com::Ref<ISNVType> after;
    ASSERT_EQ(S_OK, output->get_SNVTType(after.Put()));
    EXPECT_EQ(type.Get(), after.Get());
    EXPECT_EQ(L"state", Text(type, &ISNVType::get_Name));
}

} // namespace
