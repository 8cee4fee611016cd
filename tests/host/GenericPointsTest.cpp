#include "tests/host/GenericObjects.h"
#include "tests/support/Errors.h"

#include <string>

namespace hosttest {

namespace {

const char* const kDefinition =
    "<AppObject>"
    "<InReferences><First><MANDATORY/><VISIBLE>1</VISIBLE><SNVTTYPE>81</SNVTTYPE>"
    "<SNVTCOMPATIBILITYLIST>81,21,81,55</SNVTCOMPATIBILITYLIST><CDBPOSITION>4</CDBPOSITION>"
    "<EXTENDED>1</EXTENDED></First>"
    "<!-- a comment --><Second><visible>0</visible><SNVTTYPE>95</SNVTTYPE></Second><Third/></InReferences>"
    "<OutReferences><Out TypeDependent=\"1\"><VISIBLE/><SNVTTYPE>105</SNVTTYPE><ISWRITABLE>1</ISWRITABLE>"
    "</Out><Other/></OutReferences>"
    "</AppObject>";

class GenericPointsTest : public testing::Test {
  protected:
    GenericPointsTest() {
        library_.Write(L"Points.xml", kDefinition);
        object_ = NewObject(L"Points");
    }
    com::Ref<IInput> Input(const wchar_t* index) { return InputOf(object_, index); }
    com::Ref<IOutput> Output(const wchar_t* index) { return OutputOf(object_, index); }
    static std::wstring TypeOf(const com::Ref<ISubItemConnable>& point) {
        com::Ref<ISNVType> type;
        EXPECT_EQ(S_OK, point->get_SNVTType(type.Put()));
        return type ? TextOf(*type.Get(), &ISNVType::get_ID) : L"(none)";
    }

    TemporaryLibrary library_;
    com::Ref<IAppObject> object_;
};

TEST_F(GenericPointsTest, StandInTheDefinitionsOrder) {
    const wchar_t* const names[] = {L"First", L"Second", L"Third"};
    com::Ref<IInputs> inputs;
    ASSERT_EQ(S_OK, object_->get_Inputs(inputs.Put()));
    EXPECT_EQ(3, LongOf(*inputs.Get(), &IInputs::get_Count));
    com::Ref<IUnknown> unknown;
    ASSERT_EQ(S_OK, inputs->get_NewEnum(unknown.Put()));
    const auto walk = unknown.As<IEnumVARIANT>();
    for (long i = 0; i < 3; ++i) {
        com::Variant item;
        ASSERT_EQ(S_OK, walk->Next(1, item.Put(), nullptr));
        const auto input = com::Query<IInput>(item.Get().pdispVal);
        EXPECT_EQ(names[i], TextOf(*input.Get(), &IInput::get_Name));
        EXPECT_EQ(i, LongOf(*input.Get(), &IInput::get_Index));
    }
    EXPECT_EQ(1, LongOf(*Output(L"Other").Get(), &IOutput::get_Index));
}

TEST_F(GenericPointsTest, AreFoundByNameOrPosition) {
    EXPECT_EQ(L"Second", TextOf(*Input(L"SECOND").Get(), &IInput::get_Name));
    EXPECT_EQ(L"Third", TextOf(*Input(L"3").Get(), &IInput::get_Name));
    EXPECT_EQ(L"Other", TextOf(*Output(L" 2nd").Get(), &IOutput::get_Name));
    EXPECT_FALSE(Input(L"Fourth"));
    EXPECT_FALSE(Input(L"4"));
    EXPECT_FALSE(Input(L""));
}

TEST_F(GenericPointsTest, AreShownAsTheDefinitionSays) {
    EXPECT_TRUE(Flag(*Input(L"First").Get(), &IInput::get_Visible));
    EXPECT_FALSE(Flag(*Input(L"Second").Get(), &IInput::get_Visible)) << "\"0\"";
    EXPECT_FALSE(Flag(*Input(L"Third").Get(), &IInput::get_Visible)) << "no VISIBLE";
    EXPECT_TRUE(Flag(*Output(L"Out").Get(), &IOutput::get_Visible)) << "an empty VISIBLE";
}

TEST_F(GenericPointsTest, AreShownAndHidden) {
    ASSERT_EQ(S_OK, Input(L"Third").As<IVisibleItem>()->put_Visible(VARIANT_TRUE));
    EXPECT_TRUE(Flag(*Input(L"Third").Get(), &IInput::get_Visible));
    ASSERT_EQ(S_OK, Output(L"Out").As<IVisibleItem>()->put_Visible(VARIANT_FALSE));
    EXPECT_FALSE(Flag(*Output(L"Out").Get(), &IOutput::get_Visible));
}

TEST_F(GenericPointsTest, HaveWhatTheDefinitionGivesThem) {
    const auto input = Input(L"First");
    EXPECT_TRUE(Flag(*input.Get(), &IInput::get_Mandatory));
    EXPECT_TRUE(Flag(*input.Get(), &IInput::get_Extended));
    EXPECT_EQ(4, LongOf(*input.Get(), &IInput::get_CDBPosition));
    EXPECT_EQ(7, LongOf(*input.Get(), &IInput::get_NodeType));
    EXPECT_EQ(7, LongOf(*input.As<ISubItemConnable>().Get(), &ISubItemConnable::get_itemType));
    EXPECT_FALSE(Flag(*Input(L"Second").Get(), &IInput::get_Mandatory));
    const auto output = Output(L"Out");
    EXPECT_TRUE(Flag(*output.Get(), &IOutput::get_IsTypeDependent));
    EXPECT_TRUE(Flag(*output.Get(), &IOutput::get_DisplayWritable));
    EXPECT_TRUE(Flag(*output.As<IDisplayItem>().Get(), &IDisplayItem::get_IsWritable));
    EXPECT_EQ(8, LongOf(*output.Get(), &IOutput::get_NodeType));
    EXPECT_EQ(8, LongOf(*output.As<ISubItemConnable>().Get(), &ISubItemConnable::get_itemType));
    EXPECT_EQ(10, LongOf(*output.As<IDisplayItem>().Get(), &IDisplayItem::get_itemType));
    EXPECT_FALSE(Flag(*Output(L"Other").Get(), &IOutput::get_IsTypeDependent));
    EXPECT_FALSE(Flag(*Output(L"Other").Get(), &IOutput::get_DisplayWritable));
}

TEST_F(GenericPointsTest, KnowTheirOwner) {
    com::Ref<IAppObject> parent;
    ASSERT_EQ(S_OK, Input(L"First")->get_Parent(parent.Put()));
    EXPECT_TRUE(com::SameObject(object_.Get(), parent.Get()));
    const auto kept = Output(L"Out");
    ASSERT_EQ(S_OK, object_->Create());
    ASSERT_EQ(S_OK, kept->get_Parent(parent.Put()));
    EXPECT_FALSE(parent) << "a point that was replaced belongs to nobody";
    EXPECT_EQ(L"Out", TextOf(*kept.Get(), &IOutput::get_Name));
}

TEST_F(GenericPointsTest, HaveTypes) {
    EXPECT_EQ(L"81", TypeOf(Input(L"First").As<ISubItemConnable>()));
    EXPECT_EQ(L"(none)", TypeOf(Input(L"Third").As<ISubItemConnable>()));
    EXPECT_EQ(L"105", TypeOf(Output(L"Out").As<ISubItemConnable>()));
    com::Ref<ICompatibleSNVT> compatible;
    ASSERT_EQ(S_OK, Output(L"Out")->get_SNVTCompatible(compatible.Put()));
    EXPECT_EQ(L"105", TextOf(*compatible.Get(), &ICompatibleSNVT::get_ID));
    ASSERT_EQ(S_OK, Output(L"Other")->get_SNVTCompatible(compatible.Put()));
    EXPECT_FALSE(compatible);
}

TEST_F(GenericPointsTest, ChangeTheirTypes) {
    com::Variant text(L"55");
    ASSERT_EQ(S_OK, Input(L"First")->changeType(text.Get()));
    EXPECT_EQ(L"55", TypeOf(Input(L"First").As<ISubItemConnable>()));
    com::Ref<ISNVType> type;
    ASSERT_EQ(S_OK, Output(L"Out")->get_SNVTType(type.Put()));
    const com::Variant object(type.Get());
    ASSERT_EQ(S_OK, Input(L"First")->changeType(object.Get()));
    EXPECT_EQ(L"105", TypeOf(Input(L"First").As<ISubItemConnable>()));
    VARIANT leftOut{};
    leftOut.vt = VT_ERROR;
    leftOut.scode = DISP_E_PARAMNOTFOUND;
    ASSERT_EQ(S_OK, Input(L"First")->changeType(leftOut));
    EXPECT_EQ(L"81", TypeOf(Input(L"First").As<ISubItemConnable>()));
    const com::Variant wrong(object_.Get());
    EXPECT_EQ(support::kTypeMismatch, Output(L"Out")->changeType(wrong.Get()));
    EXPECT_EQ(L"105", TypeOf(Output(L"Out").As<ISubItemConnable>()));
}

TEST_F(GenericPointsTest, RefuseATypeThatIsNoText) {
    VARIANT object{};
    object.vt = VT_DISPATCH; // of no object: as if left out
    ASSERT_EQ(S_OK, Input(L"First")->changeType(com::Variant(L"55").Get()));
    ASSERT_EQ(S_OK, Input(L"First")->changeType(object));
    EXPECT_EQ(L"81", TypeOf(Input(L"First").As<ISubItemConnable>()));
    SAFEARRAY* const list = SafeArrayCreateVector(VT_I4, 0, 1);
    VARIANT array{};
    array.vt = VT_ARRAY | VT_I4;
    array.parray = list;
    EXPECT_EQ(support::kTypeMismatch, Input(L"First")->changeType(array));
    EXPECT_EQ(L"81", TypeOf(Input(L"First").As<ISubItemConnable>()));
    SafeArrayDestroy(list);
}

TEST_F(GenericPointsTest, EndTheirListsAtAnEmptyField) {
    com::Ref<ICompatibleSNVTs> list;
    com::Bstr text;
    ASSERT_EQ(S_OK, Input(L"Third")->get_SNVTCompatibles(list.Put()));
    ASSERT_EQ(S_OK, list->Add(com::Bstr(L"3,,4").Get()));
    ASSERT_EQ(S_OK, list->Add(com::Bstr(L",5").Get()));
    ASSERT_EQ(S_OK, list->Add(com::Bstr(L"6,").Get()));
    ASSERT_EQ(S_OK, list->ToString(text.Put()));
    EXPECT_EQ(L"3,6", text.View());
}

TEST_F(GenericPointsTest, GiveEachPlaceOfTheirLists) {
    com::Ref<ICompatibleSNVTs> list;
    ASSERT_EQ(S_OK, Input(L"First")->get_SNVTCompatibles(list.Put()));
    com::Ref<ICompatibleSNVT> entry;
    ASSERT_EQ(S_OK, list->get_Item(1, entry.Put()));
    EXPECT_EQ(L"81", TextOf(*entry.Get(), &ICompatibleSNVT::get_ID));
    ASSERT_EQ(S_OK, list->get_Item(3, entry.Put()));
    EXPECT_EQ(L"55", TextOf(*entry.Get(), &ICompatibleSNVT::get_ID));
    ASSERT_EQ(S_OK, list->get_Item(0, entry.Put()));
    EXPECT_FALSE(entry);
}

TEST_F(GenericPointsTest, SayWhatMayBeConnected) {
    const auto input = Input(L"First");
    com::Ref<ICompatibleSNVTs> list;
    ASSERT_EQ(S_OK, input->get_SNVTCompatibles(list.Put()));
    com::Bstr text;
    ASSERT_EQ(S_OK, list->ToString(text.Put()));
    EXPECT_EQ(L"81,21,55", text.View());
    const auto fits = [](const com::Ref<ISubItemConnable>& point, const wchar_t* id) {
        VARIANT_BOOL answer = VARIANT_FALSE;
        EXPECT_EQ(S_OK, point->get_IsSNVTCompatible(com::Bstr(id).Get(), &answer));
        return answer != VARIANT_FALSE;
    };
    EXPECT_TRUE(fits(input.As<ISubItemConnable>(), L"21"));
    EXPECT_FALSE(fits(input.As<ISubItemConnable>(), L"105"));
    EXPECT_TRUE(fits(Input(L"Second").As<ISubItemConnable>(), L"95")) << "its own type, without a list";
    EXPECT_FALSE(fits(Input(L"Second").As<ISubItemConnable>(), L"81"));
    EXPECT_TRUE(fits(Output(L"Out").As<ISubItemConnable>(), L"105"));
    EXPECT_FALSE(fits(Output(L"Out").As<ISubItemConnable>(), L"10"));
    EXPECT_FALSE(fits(Output(L"Other").As<ISubItemConnable>(), L""));
}

TEST_F(GenericPointsTest, MergeAndCopyTheirLists) {
    com::Ref<ICompatibleSNVTs> list;
    com::Ref<ICompatibleSNVTs> other;
    ASSERT_EQ(S_OK, Input(L"First")->get_SNVTCompatibles(list.Put()));
    ASSERT_EQ(S_OK, Input(L"Second")->get_SNVTCompatibles(other.Put()));
    ASSERT_EQ(S_OK, other->Add(com::Bstr(L"55,9,81").Get()));
    com::Ref<ICompatibleSNVTs> merged;
    com::Bstr text;
    ASSERT_EQ(S_OK, list->Merge(other.Get(), merged.Put()));
    ASSERT_EQ(S_OK, merged->ToString(text.Put()));
    EXPECT_EQ(L"55,81", text.View());
    com::Ref<IDispatch> copy;
    ASSERT_EQ(S_OK, list.As<IClonable>()->Clone(copy.Put()));
    ASSERT_EQ(S_OK, copy.As<ICompatibleSNVTs>()->Remove(com::Bstr(L"21").Get()));
    ASSERT_EQ(S_OK, copy.As<ICompatibleSNVTs>()->ToString(text.Put()));
    EXPECT_EQ(L"81,55", text.View());
    EXPECT_EQ(3, LongOf(*list.Get(), &ICompatibleSNVTs::get_Count));
    EXPECT_EQ(support::kInvalidCall, list->Remove(com::Bstr(L"9").Get()));
    com::Ref<ICompatibleSNVT> entry;
    ASSERT_EQ(S_OK, list->get_Item(2, entry.Put()));
    EXPECT_EQ(L"21", TextOf(*entry.Get(), &ICompatibleSNVT::get_ID));
    ASSERT_EQ(S_OK, list->get_Item(4, entry.Put()));
    EXPECT_FALSE(entry);
}

TEST_F(GenericPointsTest, AreConnected) {
    const auto input = Input(L"First");
    const auto wiring = input.As<ISubItemConnable>();
    com::Ref<ISNVType> type;
    ASSERT_EQ(S_OK, Output(L"Out")->get_SNVTType(type.Put()));
    EXPECT_FALSE(Flag(*input.Get(), &IInput::get_IsConnected));
    ASSERT_EQ(S_OK, wiring->put_IsConnected(VARIANT_TRUE));
    ASSERT_EQ(S_OK, wiring->putref_ConnectedType(type.Get()));
    EXPECT_TRUE(Flag(*input.Get(), &IInput::get_IsConnected));
    com::Ref<ISNVType> connected;
    ASSERT_EQ(S_OK, input->get_ConnectedType(connected.Put()));
    EXPECT_EQ(type, connected);
    EXPECT_EQ(support::kTypeMismatch, wiring->putref_ConnectedType(object_.Get()));
    ASSERT_EQ(S_OK, wiring->put_IsConnected(VARIANT_FALSE));
    ASSERT_EQ(S_OK, input->get_ConnectedType(connected.Put()));
    EXPECT_FALSE(connected);
    ASSERT_EQ(S_OK, Output(L"Out").As<ISubItemConnable>()->put_IsConnected(VARIANT_TRUE));
    EXPECT_TRUE(Flag(*Output(L"Out").Get(), &IOutput::get_IsConnected));
    EXPECT_TRUE(Flag(*Output(L"Out").As<IDisplayItem>().Get(), &IDisplayItem::get_IsConnected));
}

TEST_F(GenericPointsTest, AreConnectedByMacros) {
    const auto project = Create<IProject>(__uuidof(Project));
    com::Ref<IProjectGroup> group;
    ASSERT_EQ(S_OK, project->AddGroup(group.Put()));
    ASSERT_EQ(S_OK, group->AddItem(com::Bstr(L"K\\RIN\\First").Get()));
    ASSERT_EQ(S_OK, object_->put_GlobalKey(com::Bstr(L"K").Get()));
    EXPECT_FALSE(Flag(*Input(L"First").Get(), &IInput::get_IsMacroConnected)) << "no parent";
    ASSERT_EQ(S_OK, object_->putref_Parent(project.Get()));
    EXPECT_TRUE(Flag(*Input(L"First").Get(), &IInput::get_IsMacroConnected));
    EXPECT_FALSE(Flag(*Input(L"Second").Get(), &IInput::get_IsMacroConnected));
    EXPECT_FALSE(Flag(*Output(L"Out").Get(), &IOutput::get_IsMacroConnected));
}

TEST_F(GenericPointsTest, AreDisplayed) {
    const auto output = Output(L"Other");
    const auto item = output.As<IDisplayItem>();
    EXPECT_FALSE(Flag(*output.Get(), &IOutput::get_IsDisplayable));
    ASSERT_EQ(S_OK, output->put_IsDisplayable(VARIANT_TRUE));
    EXPECT_TRUE(Flag(*item.Get(), &IDisplayItem::get_IsDisplayable));
    EXPECT_EQ(L"Other", TextOf(*item.Get(), &IDisplayItem::get_DisplayText));
    ASSERT_EQ(S_OK, item->put_DisplayText(com::Bstr(L"shown").Get()));
    EXPECT_EQ(L"shown", TextOf(*item.Get(), &IDisplayItem::get_DisplayText));
    ASSERT_EQ(S_OK, object_->put_ExtendedKey(com::Bstr(L"E").Get()));
    EXPECT_EQ(L"E\\ROU\\Other", TextOf(*item.Get(), &IDisplayItem::get_key));
    EXPECT_FALSE(Flag(*item.Get(), &IDisplayItem::get_IsTrendable));
    EXPECT_EQ(L"4001", TextOf(*item.Get(), &IDisplayItem::get_Reference));
    ASSERT_EQ(S_OK, object_->put_ExportIndex(2));
    EXPECT_EQ(L"4201", TextOf(*item.Get(), &IDisplayItem::get_Reference));
    ASSERT_EQ(S_OK, object_->put_ExportIndex(-63));
    EXPECT_EQ(L"0101", TextOf(*item.Get(), &IDisplayItem::get_Reference));
    ASSERT_EQ(S_OK, object_->put_ExportIndex(-65));
    EXPECT_EQ(L"FFFFFF01", TextOf(*item.Get(), &IDisplayItem::get_Reference));
    ASSERT_EQ(S_OK, object_->Destroy());
    com::Bstr text;
    EXPECT_EQ(support::kObjectNotSet, item->get_Reference(text.Put()));
}

} // namespace

} // namespace hosttest
