#include "tests/internal/Channel.h"
#include "tests/internal/SlotTables.h"
#include "tests/support/Caller.h"

#include <cwchar>
#include <string>
#include <utility>
#include <vector>

// Every member of a channel objects that only forwards: the call reaches the
// same slot of the inner object with the same arguments, and what that
// answers or raises comes back.

namespace internal_tests {

namespace {

std::string TitleOf(const testing::TestParamInfo<SlotCase>& info) {
    return info.param.Title();
}

/// Arguments that tell their slot, one for each input.
std::vector<com::Variant> ArgumentsFor(const Member& member, long seed) {
    std::vector<com::Variant> arguments;
    for (const Parameter& input : member.Inputs()) {
        const long number =
            100 * (seed + 1) + static_cast<long>(10 * member.slot) + static_cast<long>(arguments.size());
        const std::wstring text = L"given " + std::to_wstring(number);
        com::Variant argument(text);
        VARIANT& value = *(input.type == VT_BSTR || input.type == VT_VARIANT ? nullptr : argument.Put());
        switch (input.type) {
        case VT_BSTR:
        case VT_VARIANT:
            break;
        case VT_BOOL:
            value.vt = VT_BOOL;
            value.boolVal = seed % 2 == 0 ? VARIANT_TRUE : VARIANT_FALSE;
            break;
        case VT_I2:
            value.vt = VT_I2;
            value.iVal = static_cast<SHORT>(number);
            break;
        case VT_I4:
            value.vt = VT_I4;
            value.lVal = number;
            break;
        case VT_R8:
            value.vt = VT_R8;
            value.dblVal = static_cast<double>(number) + 0.25;
            break;
        default:
            argument = com::Variant(Recorder::Make(text, {})->As<IDispatch>().Get());
            break;
        }
        arguments.push_back(std::move(argument));
    }
    return arguments;
}

std::vector<VARIANT> Borrow(const std::vector<com::Variant>& values) {
    std::vector<VARIANT> borrowed;
    for (const com::Variant& value : values) {
        borrowed.push_back(value.Get());
    }
    return borrowed;
}

class ForwardingTest : public InternalTest, public testing::WithParamInterface<SlotCase> {
  protected:
    void SetUp() override {
        InternalTest::SetUp();
        object_ = Created();
        // The names are what finds the points; here they answer like the rest.
        Choose();
        ASSERT_TRUE(face_);
        ASSERT_TRUE(inner_);
        member_ = &InterfaceOf(*GetParam().iid).At(GetParam().slot);
        Calls().clear();
    }
    void TearDown() override {
        face_.Reset();
        inner_.Reset();
        object_.Reset();
        InternalTest::TearDown();
    }

    void Choose() {
        const std::string& place = GetParam().place;
        const auto take = [&](const auto& object, const Double& inner) {
            IUnknown* face = nullptr;
            object->QueryInterface(*GetParam().iid, static_cast<void**>(static_cast<void*>(&face)));
            face_ = com::Ref<IUnknown>::Own(face);
            inner_ = inner;
        };
        if (place == "IAppObject") {
            take(object_, generic.object);
        } else if (place == "IInputs") {
            take(support::Object(object_, &IAppObject::get_Inputs), generic.inputs);
        } else if (place == "IInput" || place == "ISubItemConnableInput") {
            take(InputOf(object_, L"In1"), in1);
        } else if (place == "IOutputs") {
            take(support::Object(object_, &IAppObject::get_Outputs), generic.outputs);
        } else if (place == "IOutput" || place == "ISubItemConnableOutput" || place == "IDisplayItem") {
            take(OutputOf(object_, L"Out"), out);
        } else if (place == "IAttributes") {
            take(support::Object(object_, &IAppObject::get_Attributes), generic.attributes);
        } else if (place == "IAttribute") {
            take(AttributeOf(object_, L"Gain"), gain);
        }
    }

    /// The interface's own IDispatch, not that of the object.
    IDispatch* ByName() const { return static_cast<IDispatch*>(face_.Get()); }
    /// What the inner object's own slot does with these arguments.
    struct Direct {
        std::wstring call;
        std::vector<std::wstring> result;
    };
    Direct AskDirectly(const std::vector<VARIANT>& inputs) {
        com::Ref<IUnknown> own;
        inner_->QueryInterface(*GetParam().iid, own.PutVoid());
        const Outcome outcome = Arguments(*member_, inputs).BySlot(own.Get());
        EXPECT_EQ(outcome.code, S_OK);
        EXPECT_EQ(Calls().size(), 1u);
        Direct direct{Calls().back().text, outcome.values};
        Calls().clear();
        return direct;
    }
    /// Exactly one call arrived, in this slot.
    void ExpectTheCall(const std::wstring& text) {
        ASSERT_EQ(Said(), std::vector<std::wstring>{text});
        const Call& call = Calls().front();
        EXPECT_EQ(call.target, inner_.Get());
        EXPECT_EQ(call.face, InterfaceOf(*GetParam().iid).name);
        EXPECT_EQ(call.slot, GetParam().slot);
        // This one member goes by name.
        const bool goesByName = GetParam().place == "IOutput" && GetParam().name == L"CallBack";
        EXPECT_EQ(call.isByName, goesByName);
        Calls().clear();
    }

    com::Ref<IAppObject> object_;
    com::Ref<IUnknown> face_;
    Double inner_;
    const Member* member_ = nullptr;
};

TEST_P(ForwardingTest, ReachesTheSameSlotOfTheInnerObject) {
    for (const long seed : {0L, 1L}) {
        inner_->Reseed(seed);
        const auto arguments = ArgumentsFor(*member_, seed);
        const auto inputs = Borrow(arguments);
        const Direct direct = AskDirectly(inputs);

        const Outcome outcome = Arguments(*member_, inputs).BySlot(face_.Get());
        EXPECT_EQ(outcome.code, S_OK);
        EXPECT_EQ(outcome.values, direct.result);
        ExpectTheCall(direct.call);
    }
}

TEST_P(ForwardingTest, ReachesItByName) {
    for (const long seed : {0L, 1L}) {
        inner_->Reseed(seed);
        const auto arguments = ArgumentsFor(*member_, seed);
        const auto inputs = Borrow(arguments);
        const Direct direct = AskDirectly(inputs);

        const Outcome outcome = CallByName(ByName(), *member_, inputs);
        EXPECT_EQ(outcome.code, S_OK);
        EXPECT_EQ(outcome.values, direct.result);
        ExpectTheCall(direct.call);
    }
}

TEST_P(ForwardingTest, PassesAnErrorBackUnchanged) {
    constexpr auto kCode = static_cast<HRESULT>(0x8004ABCDu);
    const auto arguments = ArgumentsFor(*member_, 0);
    const auto inputs = Borrow(arguments);
    inner_->Fail(L"", kCode, L"the inner object's own words");

    const Outcome bySlot = Arguments(*member_, inputs).BySlot(face_.Get());
    EXPECT_EQ(bySlot.code, kCode);
    EXPECT_EQ(bySlot.description, L"the inner object's own words");
    EXPECT_EQ(bySlot.source, L"Double");
    EXPECT_EQ(bySlot.help, kRecorderHelp);
    EXPECT_EQ(Calls().size(), 1u);

    const Outcome byName = CallByName(ByName(), *member_, inputs);
    EXPECT_EQ(byName.code, kCode);
    EXPECT_EQ(byName.description, L"the inner object's own words");
    EXPECT_EQ(byName.source, L"Double");
    EXPECT_EQ(byName.help, L"double.hlp#4711");
    EXPECT_EQ(Calls().size(), 2u);
}

TEST_P(ForwardingTest, PassesEmptyArgumentsButWantsAPlaceForTheResult) {
    std::vector<VARIANT> inputs(member_->Given());
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        inputs[i].vt =
            member_->parameters[i].type == VT_VARIANT ? VARTYPE{VT_EMPTY} : member_->parameters[i].type;
    }
    const Direct direct = AskDirectly(inputs);
    EXPECT_EQ(Arguments(*member_, inputs).BySlot(face_.Get()).code, S_OK);
    ExpectTheCall(direct.call);

    if (member_->Result() != nullptr) {
        const int result = static_cast<int>(member_->parameters.size()) - 1;
        EXPECT_EQ(Arguments(*member_, inputs).BySlot(face_.Get(), result).code, E_POINTER);
        EXPECT_EQ(Calls().size(), 0u) << "the inner object was asked without a place for its answer";
    }
}

INSTANTIATE_TEST_SUITE_P(Member, ForwardingTest, testing::ValuesIn(ForwardedSlots()), TitleOf);

class ForwardingSlotOrderTest : public testing::TestWithParam<SlotCase> {};

TEST_P(ForwardingSlotOrderTest, HasTheMemberWithItsTypesInItsSlot) {
    // A type library keeps one letter case for a name that stands in it twice.
    const std::wstring signature = InterfaceOf(*GetParam().iid).At(GetParam().slot).Signature();
    EXPECT_EQ(_wcsicmp(signature.c_str(), GetParam().signature.c_str()), 0)
        << testing::PrintToString(signature);
}

INSTANTIATE_TEST_SUITE_P(Member, ForwardingSlotOrderTest, testing::ValuesIn(AllSlots()), TitleOf);

TEST(ForwardingSlotOrderTest, HasNoMemberAfterTheLast) {
    for (std::size_t i = 0; i < AllSlots().size(); ++i) {
        const SlotCase& one = AllSlots()[i];
        SCOPED_TRACE(one.Title());
        const bool isLast = i + 1 == AllSlots().size() || AllSlots()[i + 1].place != one.place;
        if (isLast) {
            EXPECT_EQ(InterfaceOf(*one.iid).members.back().slot, one.slot);
        }
    }
}

} // namespace

} // namespace internal_tests
