#include "com/Enumerator.h"
#include "com/LateBound.h"
#include "tests/internal/Channel.h"

#include <cstddef>
#include <string>
#include <vector>

namespace internal_tests {

namespace {

using Texts = std::vector<std::wstring>;

class TamInternalOutputTest : public InternalTest {
  protected:
    void SetUp() override {
        InternalTest::SetUp();
        Contain({{L"AI1_Out", true}, {L"AI2_Out", false}, {L"AI3_Out", true}, {L"AI4_Out", true}});
        object = Created();
        output = OutputOf(object, L"Out");
        ASSERT_TRUE(output);
        Calls().clear();
    }
    void TearDown() override {
        output.Reset();
        object.Reset();
        contained.clear();
        InternalTest::TearDown();
    }
    struct Contained {
        std::wstring name;
        bool isConnected;
    };
    void Contain(const std::vector<Contained>& outputs) {
        contained.clear();
        for (const Contained& one : outputs) {
            contained.push_back(NewOutput(one.name, one.name));
            contained.back()->Set(L"IsConnected", one.isConnected);
        }
        container.Fill(L"container", {}, contained, {});
    }
    /// A container with one output that stands there many times.
    void ContainTimes(const Double& one, std::size_t times) {
        contained = {one};
        container.Fill(L"container", {}, contained, {});
        container.outputs->On(L"get NewEnum", [one, times](const Invocation& call) {
            const std::vector<com::Ref<IDispatch>> many(times, one->As<IDispatch>());
            return call.Answer(com::MakeEnumerator(many).Get());
        });
    }
    void SetStatus(long status) { EXPECT_EQ(InternalOf(object)->put_Status(status), S_OK); }
    long Index() { return support::Long(output, &IOutput::get_Index); }
    HRESULT FailingIndex() {
        long index = 77;
        const HRESULT result = output->get_Index(&index);
        EXPECT_EQ(index, 0);
        return result;
    }

    Doubles contained;
    com::Ref<IAppObject> object;
    com::Ref<IOutput> output;
};

TEST_F(TamInternalOutputTest, CountsTheConnectedContainerOutputsBeforeItsMatch) {
    EXPECT_EQ(Index(), 1);
    EXPECT_EQ(Said(L"AI4_Out"), Texts()) << "the walk ends at the match";
    EXPECT_EQ(Said(L"AI3_Out"), Texts{L"AI3_Out.get Name()"}) << "the match itself is not counted";
    EXPECT_EQ(Said(L"Out"), Texts{L"Out.get Name()"});
    EXPECT_EQ(Said(L"container.Outputs"), Texts{L"container.Outputs.get NewEnum()"});
}

TEST_F(TamInternalOutputTest, IsFirstWhereNoConnectedOutputStandsBefore) {
    Contain({{L"AI1_Out", false}, {L"AI3_Out", true}, {L"AI4_Out", true}});
    EXPECT_EQ(Index(), 0);
    Contain({{L"AI3_Out", false}});
    EXPECT_EQ(Index(), 0);
}

TEST_F(TamInternalOutputTest, CountsAllConnectedContainerOutputsWithoutAMatch) {
    Contain({{L"AI1_Out", true}, {L"AI2_Out", false}, {L"ai3_out", true}, {L"AI4_Out", true}});
    EXPECT_EQ(Index(), 3) << "names match in their exact letter case alone";
    Contain({});
    EXPECT_EQ(Index(), 0);
}

TEST_F(TamInternalOutputTest, CountsToTheEndOfSixteenBits) {
    const Double connected = NewOutput(L"Other", L"other");
    connected->Set(L"IsConnected", true);
    ContainTimes(connected, 32767);
    EXPECT_EQ(Index(), 32767);
}

TEST_F(TamInternalOutputTest, OverflowsPastSixteenBits) {
    const Double connected = NewOutput(L"Other", L"other");
    connected->Set(L"IsConnected", true);
    ContainTimes(connected, 32768);
    ExpectRaised(FailingIndex(), kOverflow);
}

TEST_F(TamInternalOutputTest, DoesNotCountOutputsThatAreNotConnected) {
    const Double loose = NewOutput(L"Other", L"other");
    ContainTimes(loose, 40000);
    EXPECT_EQ(Index(), 0);
}

TEST_F(TamInternalOutputTest, CountsAnOutputForAnyTrueThatItsHostWrites) {
    contained[0]->On(L"get IsConnected", [](const Invocation& call) {
        VARIANT one{};
        one.vt = VT_BOOL;
        one.boolVal = 1;
        return call.Answer(one);
    });
    EXPECT_EQ(Index(), 1);
}

TEST_F(TamInternalOutputTest, TakesTheInnerOutputsIndexAtStatusOne) {
    SetStatus(1);
    out->Set(L"Index", 32767L);
    EXPECT_EQ(Index(), 32767);
    out->Set(L"Index", -32768L);
    EXPECT_EQ(Index(), -32768);
    EXPECT_EQ(Said(), (Texts{L"Out.get Index()", L"Out.get Index()"}));
}

TEST_F(TamInternalOutputTest, OverflowsWhereTheInnerOutputsIndexNeedsMoreThanSixteenBits) {
    SetStatus(1);
    out->Set(L"Index", 32768L);
    ExpectRaised(FailingIndex(), kOverflow);
    out->Set(L"Index", -32769L);
    ExpectRaised(FailingIndex(), kOverflow);
}

TEST_F(TamInternalOutputTest, HasIndexZeroAtAnyOtherStatusWithoutAsking) {
    out->Set(L"Index", 5L);
    for (const long status : {2L, -1L, 3L, 2147483647L}) {
        SetStatus(status);
        EXPECT_EQ(Index(), 0);
    }
    EXPECT_EQ(Said(), Texts());
}

TEST_F(TamInternalOutputTest, ReadsTheStatusAtEachQuestion) {
    out->Set(L"Index", 9L);
    EXPECT_EQ(Index(), 1);
    SetStatus(1);
    EXPECT_EQ(Index(), 9);
    SetStatus(0);
    EXPECT_EQ(Index(), 1);
}

TEST_F(TamInternalOutputTest, MirrorsTheDisplayFlagToTheContainer) {
    for (const VARIANT_BOOL flag : {VARIANT_FALSE, VARIANT_TRUE}) {
        Calls().clear();
        const std::wstring printed = flag != VARIANT_FALSE ? L"True" : L"False";
        EXPECT_EQ(output->put_IsDisplayable(flag), S_OK);
        EXPECT_EQ(out->Value(L"IsDisplayable"), printed);
        EXPECT_EQ(contained[2]->Value(L"IsDisplayable"), printed);
        EXPECT_EQ(Said().front(), L"Out.put IsDisplayable(" + printed + L")");
        EXPECT_EQ(Said().back(), L"AI3_Out.put IsDisplayable(" + printed + L")");
        EXPECT_EQ(Said(L"container.Outputs"), Texts{L"container.Outputs.get Item(\"AI3_Out\")"});
    }
    EXPECT_EQ(contained[0]->Value(L"IsDisplayable"), L"none");
}

TEST_F(TamInternalOutputTest, TakesAMissingContainerOutputForNoMatch) {
    Contain({{L"AI1_Out", true}});
    EXPECT_EQ(output->put_IsDisplayable(VARIANT_FALSE), S_OK);
    EXPECT_EQ(out->Value(L"IsDisplayable"), L"False");
    EXPECT_EQ(contained[0]->Value(L"IsDisplayable"), L"none");
}

TEST_F(TamInternalOutputTest, ReadsTheDisplayFlagOfTheInnerOutputAlone) {
    out->Set(L"IsDisplayable", false);
    contained[2]->Set(L"IsDisplayable", true);
    EXPECT_FALSE(support::Flag(output, &IOutput::get_IsDisplayable));
    EXPECT_FALSE(support::Flag(output.As<IDisplayItem>(), &IDisplayItem::get_IsDisplayable));
}

TEST_F(TamInternalOutputTest, LeavesTheContainerWhenTheInnerOutputRefusesTheFlag) {
    out->Fail(L"put IsDisplayable", E_ACCESSDENIED, L"it is fixed");
    ExpectPassedBack(output->put_IsDisplayable(VARIANT_FALSE), E_ACCESSDENIED, L"it is fixed");
    EXPECT_EQ(Said(), Texts{L"Out.put IsDisplayable(False)"});
}

TEST_F(TamInternalOutputTest, TakesItsReferenceFromTheContainer) {
    out->Set(L"Reference", L"inner");
    contained[2]->Set(L"Reference", L"[3,2]");
    EXPECT_EQ(support::Text(output.As<IDisplayItem>(), &IDisplayItem::get_Reference), L"[3,2]");
    EXPECT_EQ(Said(L"Out"), Texts{L"Out.get Name()"});
    EXPECT_EQ(Said(L"container.Outputs"), Texts{L"container.Outputs.get Item(\"AI3_Out\")"});
}

TEST_F(TamInternalOutputTest, RaisesForAReferenceWithoutAContainerOutput) {
    Contain({{L"AI1_Out", true}});
    com::Bstr reference;
    ExpectRaised(output.As<IDisplayItem>()->get_Reference(reference.Put()), kObjectNotSet);
    EXPECT_EQ(reference.Get(), nullptr);
}

TEST_F(TamInternalOutputTest, RaisesForAReferenceOfAContainerOutputThatIsNoDisplayItem) {
    contained[2]->HideFace(__uuidof(IDisplayItem));
    com::Bstr reference;
    ExpectRaised(output.As<IDisplayItem>()->get_Reference(reference.Put()), kTypeMismatch);
}

TEST_F(TamInternalOutputTest, NeedsAContainer) {
    device->On(L"Container", [](const Invocation& call) { return call.Answer(nullptr); });
    com::Bstr reference;
    ExpectRaised(FailingIndex(), kObjectNotSet);
    ExpectRaised(output.As<IDisplayItem>()->get_Reference(reference.Put()), kObjectNotSet);
    ExpectRaised(output->put_IsDisplayable(VARIANT_TRUE), kObjectNotSet);
    EXPECT_EQ(out->Value(L"IsDisplayable"), L"True");
    SetStatus(2);
    EXPECT_EQ(Index(), 0);
}

TEST_F(TamInternalOutputTest, NeedsADeviceForWhatItsContainerKnows) {
    object = CreatedWithoutDevice();
    output = OutputOf(object, L"Out");
    ASSERT_TRUE(output);
    com::Bstr reference;
    ExpectRaised(FailingIndex(), kObjectNotSet);
    ExpectRaised(output.As<IDisplayItem>()->get_Reference(reference.Put()), kObjectNotSet);
    ExpectRaised(output->put_IsDisplayable(VARIANT_TRUE), kObjectNotSet);
    EXPECT_EQ(out->Value(L"IsDisplayable"), L"True");
    SetStatus(1);
    out->Set(L"Index", 4L);
    EXPECT_EQ(Index(), 4);
}

TEST_F(TamInternalOutputTest, NeedsAnInnerOutputThatCanBeWiredForThatSideAlone) {
    out->HideFace(__uuidof(ISubItemConnable));
    const auto connable = output.As<ISubItemConnable>();
    ASSERT_TRUE(connable);
    ExpectRaised(connable->put_IsConnected(VARIANT_TRUE), kTypeMismatch);
    com::Bstr name;
    ExpectRaised(connable->get_Name(name.Put()), kTypeMismatch);
    EXPECT_EQ(name.Get(), nullptr);
    EXPECT_EQ(support::Text(output, &IOutput::get_Name), L"Out");
    EXPECT_EQ(support::Put(output.As<IDisplayItem>(), &IDisplayItem::put_DisplayText, L"t"), S_OK);
}

TEST_F(TamInternalOutputTest, NeedsAnInnerOutputThatIsADisplayItemForThatSideAlone) {
    out->HideFace(__uuidof(IDisplayItem));
    contained[2]->Set(L"Reference", L"[3,2]");
    const auto item = output.As<IDisplayItem>();
    ASSERT_TRUE(item);
    ExpectRaised(support::Put(item, &IDisplayItem::put_DisplayText, L"t"), kTypeMismatch);
    com::Bstr text;
    ExpectRaised(item->get_DisplayText(text.Put()), kTypeMismatch);
    EXPECT_EQ(text.Get(), nullptr);
    EXPECT_EQ(support::Text(item, &IDisplayItem::get_Reference), L"[3,2]") << "that is the container's";
    EXPECT_EQ(output.As<ISubItemConnable>()->put_IsConnected(VARIANT_TRUE), S_OK);
}

TEST_F(TamInternalOutputTest, PassesErrorsBackUnchanged) {
    constexpr auto kCode = static_cast<HRESULT>(0x80049999u);
    const struct {
        Double at;
        const wchar_t* member;
        bool ofIndex;
        bool ofFlag;
        bool ofReference;
    } steps[] = {{out, L"get Name", true, true, true},
                 {device, L"Container", true, true, true},
                 {container.object, L"get Outputs", true, true, true},
                 {container.outputs, L"get NewEnum", true, false, false},
                 {container.outputs, L"get Item", false, true, true},
                 {contained[0], L"get Name", true, false, false},
                 {contained[0], L"get IsConnected", true, false, false},
                 {contained[2], L"put IsDisplayable", false, true, false},
                 {contained[2], L"get Reference", false, false, true}};
    for (const auto& step : steps) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(step.member)));
        const auto expect = [](HRESULT result, bool fails) {
            ExpectPassedBackIf(fails, result, kCode, L"the callee's words");
        };
        step.at->Fail(step.member, kCode, L"the callee's words");
        long index = 0;
        expect(output->get_Index(&index), step.ofIndex);
        expect(output->put_IsDisplayable(VARIANT_TRUE), step.ofFlag);
        com::Bstr reference;
        expect(output.As<IDisplayItem>()->get_Reference(reference.Put()), step.ofReference);
        step.at->FailNoMore();
    }
    SetStatus(1);
    out->Fail(L"get Index", kCode, L"no index");
    ExpectPassedBack(FailingIndex(), kCode, L"no index");
}

TEST_F(TamInternalOutputTest, HasTheChannelObjectAsItsParent) {
    EXPECT_TRUE(com::SameObject(support::Object(output, &IOutput::get_Parent).Get(), object.Get()));
    EXPECT_EQ(Said(), Texts());
}

TEST_F(TamInternalOutputTest, WantsAPlaceForEachResultOfItsOwn) {
    EXPECT_EQ(output->get_Parent(nullptr), E_POINTER);
    EXPECT_EQ(output->get_Index(nullptr), E_POINTER);
    EXPECT_EQ(output.As<IDisplayItem>()->get_Reference(nullptr), E_POINTER);
    EXPECT_EQ(Said(), Texts());
}

TEST_F(TamInternalOutputTest, GivesItsCallBackByName) {
    const Double target = Recorder::Make(L"target", {});
    EXPECT_EQ(output->putref_CallBack(target->As<IDispatch>().Get()), S_OK);
    ASSERT_EQ(Said(), Texts{L"Out.set CallBack(target)"});
    EXPECT_TRUE(Calls().front().isByName);
}

TEST_F(TamInternalOutputTest, GivesItsCallBackByPlainAssignmentWhereTheOutputTakesNoOther) {
    out->TakeObjectsByPlainAssignment();
    const Double target = Recorder::Make(L"target", {});
    EXPECT_EQ(output->putref_CallBack(target->As<IDispatch>().Get()), S_OK);
    EXPECT_EQ(Said(), Texts{L"Out.set CallBack(target)"});
    out->Fail(L"set CallBack", E_ACCESSDENIED, L"not now");
    EXPECT_EQ(output->putref_CallBack(nullptr), E_ACCESSDENIED);
    EXPECT_EQ(support::LastError().description, L"not now");
}

TEST_F(TamInternalOutputTest, RaisesForAnOutputThatTakesNoCallBack) {
    out->On(L"set CallBack", [](const Invocation&) { return DISP_E_MEMBERNOTFOUND; });
    EXPECT_EQ(output->putref_CallBack(nullptr), DISP_E_MEMBERNOTFOUND);
}

TEST_F(TamInternalOutputTest, WorksByNameOverAllItsInterfaces) {
    IDispatch& script = *output.Get();
    contained[2]->Set(L"Reference", L"[3,2]");
    EXPECT_EQ(Print(com::GetMember(script, L"Index").Get()), L"1");
    EXPECT_EQ(Print(com::GetMember(script, L"Reference").Get()), L"\"[3,2]\"");
    VARIANT no{};
    no.vt = VT_BOOL;
    com::PutMember(script, L"IsDisplayable", no);
    EXPECT_EQ(contained[2]->Value(L"IsDisplayable"), L"False");
    const com::Variant parent = com::GetMember(script, L"Parent");
    ASSERT_EQ(parent.Get().vt, VT_DISPATCH);
    EXPECT_TRUE(com::SameObject(parent.Get().pdispVal, object.Get()));
}

} // namespace

} // namespace internal_tests
