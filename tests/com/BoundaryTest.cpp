#include "tests/com/Subjects.h"
#include "tests/support/Caller.h"

#include <string>
#include <vector>

using namespace contract;

namespace {

class BoundaryTest : public ContractTest {
  protected:
    static HRESULT Load(const com::Ref<IAppObject>& module, const std::wstring& stream) {
        const com::Bstr text(stream);
        return module.As<ITamObject>()->LoadFromXmlStream(text.Get());
    }
    struct ByName {
        HRESULT result = S_OK;
        EXCEPINFO exception{};
        com::Bstr description;
        com::Bstr source;
    };
    static ByName LoadByName(const com::Ref<IAppObject>& module, const std::wstring& stream) {
        com::Variant text(stream);
        std::vector<VARIANT> values{text.Get()};
        ByName answer;
        answer.result =
            support::Invoke(module.Get(), 0x203, DISPATCH_METHOD, values, nullptr, &answer.exception);
        *answer.description.Put() = answer.exception.bstrDescription;
        *answer.source.Put() = answer.exception.bstrSource;
        SysFreeString(answer.exception.bstrHelpFile);
        return answer;
    }
};

TEST_F(BoundaryTest, GivesTheErrorObjectOfAFailingMember) {
    EXPECT_EQ(Load(NewModule(), L"<Tam/>"), kObjectNotSet);
    const support::ErrorTexts error = support::LastError();
    EXPECT_EQ(error.description, kObjectNotSetText);
    EXPECT_EQ(error.source, L"O_Tam_id");
}

TEST_F(BoundaryTest, GivesTheErrorAsAnExceptionByName) {
    const ByName answer = LoadByName(NewModule(), L"no XML");
    EXPECT_EQ(answer.result, DISP_E_EXCEPTION);
    EXPECT_EQ(answer.exception.scode, kObjectNotSet);
    EXPECT_EQ(answer.description.View(), kObjectNotSetText);
    EXPECT_EQ(answer.source.View(), L"O_Tam_id");
}

TEST_F(BoundaryTest, TellsEachErrorByItsOwnNumber) {
    const std::wstring twice = support::Stream(L"<In/><In/>");
    EXPECT_EQ(Load(NewModule(), twice), kDuplicateKey);
    EXPECT_EQ(support::LastError().description, kDuplicateKeyText);
    const ByName answer = LoadByName(NewModule(), twice);
    EXPECT_EQ(answer.exception.scode, kDuplicateKey);
    EXPECT_EQ(answer.description.View(), kDuplicateKeyText);
}

TEST_F(BoundaryTest, TakesACallByNameWithoutAPlaceForTheException) {
    const auto module = NewModule();
    com::Variant text(L"no XML");
    std::vector<VARIANT> values{text.Get()};
    EXPECT_EQ(support::Invoke(module.Get(), 0x203, DISPATCH_METHOD, values, nullptr, nullptr),
              DISP_E_EXCEPTION);
}

TEST_F(BoundaryTest, GivesNoErrorThatAnEarlierCallLeft) {
    const auto module = Module();
    support::LeaveError(L"Of long ago");
    EXPECT_EQ(Load(module, L"<Tam/>"), kObjectNotSet);
    EXPECT_EQ(support::LastError().description, kObjectNotSetText);
}

TEST_F(BoundaryTest, ClearsTheErrorOfAnEarlierCall) {
    const auto module = Module();
    EXPECT_EQ(Load(module, L"<Tam/>"), kObjectNotSet);
    EXPECT_EQ(Load(module, support::Stream({})), S_OK);
    EXPECT_EQ(support::LastError().description, L"");
}

TEST_F(BoundaryTest, PassesTheHostsFailureOnAsItWasTold) {
    const auto module = Module();
    support::LeaveError(L"Of long ago");
    UseDatabaseLocation().result = E_ACCESSDENIED;
    com::Bstr stream;
    EXPECT_EQ(module->get_Stream(stream.Put()), E_ACCESSDENIED);
    EXPECT_EQ(stream.Get(), nullptr);
    EXPECT_FALSE(support::HasLastError()) << "the host's object told nothing";
}

TEST_F(BoundaryTest, RefusesAMissingPlaceWithoutTheErrorOfAnEarlierCall) {
    const auto module = Module();
    support::LeaveError(L"Of long ago");
    EXPECT_EQ(module->get_Name(nullptr), E_POINTER);
    EXPECT_FALSE(support::HasLastError());
    // A point's keys leave the thread's error object alone where they succeed.
    const auto input = Item(Object(module, &IAppObject::get_Inputs), &IInputs::get_Item, L"1");
    support::LeaveError(L"Of long ago");
    EXPECT_EQ(input->get_GlobalKey(nullptr), E_POINTER);
    EXPECT_FALSE(support::HasLastError());
}

TEST_F(BoundaryTest, EmptiesTheResultOfAFailingMember) {
    const auto module = Module();
    UseDatabaseLocation().result = E_FAIL;
    BSTR stream = SysAllocString(L"left over");
    BSTR out = stream;
    EXPECT_EQ(module->get_Stream(&out), E_FAIL);
    EXPECT_EQ(out, nullptr);
    SysFreeString(stream);
}

TEST_F(BoundaryTest, EmptiesTheResultBesideAMissingArgumentByReference) {
    short choice = 7;
    const auto module = Module();
    support::LeaveError(L"an earlier call's");
    EXPECT_EQ(module.As<ITamDialogs>()->ShowRename(nullptr, nullptr, &choice), E_POINTER);
    EXPECT_FALSE(support::HasLastError());
    EXPECT_EQ(choice, 0);
    const auto device = HostContext();
    IAppObject* channel = reinterpret_cast<IAppObject*>(&choice);
    EXPECT_EQ(Manager()->CreateTamInternalAppObject(nullptr, device.Get(), &channel), E_POINTER);
    EXPECT_EQ(channel, nullptr);
}

TEST_F(BoundaryTest, TakesANullTextForAnEmptyOne) {
    const auto module = Module();
    EXPECT_EQ(module->put_Tag(nullptr), S_OK);
    EXPECT_EQ(support::Text(module, &IAppObject::get_Tag), L"");
    EXPECT_EQ(module.As<ITamObject>()->LoadFromXmlStream(nullptr), kObjectNotSet);
    com::Ref<IInput> input;
    EXPECT_EQ(support::Object(module, &IAppObject::get_Inputs)->get_Item(nullptr, input.Put()), S_OK);
    EXPECT_FALSE(input);
}

TEST_F(BoundaryTest, KeepsATextWithANulWhole) {
    const auto module = Module();
    const std::wstring text(L"a\0b", 3);
    EXPECT_EQ(support::Put(module, &IAppObject::put_Tag, text), S_OK);
    EXPECT_EQ(support::Text(module, &IAppObject::get_Tag), text);
}

} // namespace
