#include "tests/points/Points.h"

#include "com/LateBound.h"
#include "tests/support/Recorder.h"

#include <string>

using namespace support;
using namespace points;

namespace {

/// A type of another component that knows nothing but its identifier.
com::Ref<Recorder> UnusualType() {
    auto type = Recorder::Make(L"type", {&__uuidof(ISNVType)});
    type->Set(L"ID", L"77");
    type->RefuseOthers();
    return type;
}

class CDBOutputTest : public PointsTest {
  protected:
    com::Ref<IOutput> One(const std::wstring& content = L"<SNVTTYPE>105</SNVTTYPE>") {
        module = WithOutputs(L"<Out1>" + content + L"</Out1>");
        return Output(module, L"Out1");
    }
    bool Compatible(const com::Ref<IOutput>& output, const std::wstring& id, const CalledFrom& = {}) {
        const com::Bstr text(id);
        VARIANT_BOOL value = VARIANT_FALSE;
        EXPECT_EQ(output.As<ISubItemConnable>()->get_IsSNVTCompatible(text.Get(), &value), S_OK);
        return value != VARIANT_FALSE;
    }
    /// The reference of the output at an index of a module of five outputs.
    std::wstring Reference(short exportIndex, int index, const CalledFrom& = {}) {
        if (!module) {
            module = WithOutputs(Named({L"A", L"B", L"C", L"D", L"E"}));
        }
        EXPECT_EQ(module->put_ExportIndex(exportIndex), S_OK);
        return Text(Output(module, std::to_wstring(index + 1)).As<IDisplayItem>(),
                    &IDisplayItem::get_Reference);
    }
};

TEST_F(CDBOutputTest, AnswersItsFixedValues) {
    const auto output = One();
    EXPECT_EQ(Long(output, &IOutput::get_NodeType), 8);
    EXPECT_TRUE(Flag(output, &IOutput::get_Visible));
    EXPECT_FALSE(Flag(output, &IOutput::get_IsTypeDependent));
    EXPECT_FALSE(Flag(output, &IOutput::get_IsMacroConnected));
    EXPECT_EQ(Long(output.As<ISubItemConnable>(), &ISubItemConnable::get_itemType), 8);
}

TEST_F(CDBOutputTest, AnswersTheFixedValuesOfADisplayItem) {
    const auto item = One().As<IDisplayItem>();
    ASSERT_TRUE(item);
    EXPECT_EQ(Long(item, &IDisplayItem::get_itemType), 10);
    EXPECT_FALSE(Object(item, &IDisplayItem::get_Icon));
    EXPECT_FALSE(Flag(item, &IDisplayItem::get_IsWritable));
    EXPECT_FALSE(Flag(item, &IDisplayItem::get_IsTrendable));
    EXPECT_FALSE(Object(item, &IDisplayItem::get_Fields));
}

TEST_F(CDBOutputTest, StartsUnconnectedAndNotDisplayable) {
    const auto output = One();
    EXPECT_FALSE(Flag(output, &IOutput::get_IsConnected));
    EXPECT_FALSE(Flag(output, &IOutput::get_IsDisplayable));
    EXPECT_EQ(Text(output, &IOutput::get_GlobalKey), L"");
    EXPECT_EQ(Text(output, &IOutput::get_ExtendedKey), L"");
}

TEST_F(CDBOutputTest, HasItsElementsNameOnAllInterfaces) {
    const auto output = One();
    EXPECT_EQ(Text(output, &IOutput::get_Name), L"Out1");
    EXPECT_EQ(Text(output.As<ISubItemConnable>(), &ISubItemConnable::get_Name), L"Out1");
    EXPECT_EQ(Text(output.As<IDisplayItem>(), &IDisplayItem::get_DisplayText), L"Out1");
}

TEST_F(CDBOutputTest, IgnoresAWrittenDisplayText) {
    const auto output = One();
    EXPECT_EQ(Put(output.As<IDisplayItem>(), &IDisplayItem::put_DisplayText, L"Other"), S_OK);
    EXPECT_EQ(Text(output.As<IDisplayItem>(), &IDisplayItem::get_DisplayText), L"Out1");
    EXPECT_EQ(Text(output, &IOutput::get_Name), L"Out1");
}

TEST_F(CDBOutputTest, AnswersItsKeys) {
    const auto output = One();
    Put(module, &IAppObject::put_GlobalKey, L"K");
    Put(module, &IAppObject::put_ExtendedKey, L"E");
    EXPECT_EQ(Text(output, &IOutput::get_GlobalKey), L"K\\ROU\\Out1");
    EXPECT_EQ(Text(output.As<ISubItemConnable>(), &ISubItemConnable::get_GlobalKey), L"K\\ROU\\Out1");
    EXPECT_EQ(Text(output, &IOutput::get_ExtendedKey), L"E\\ROU\\Out1");
    EXPECT_EQ(Text(output.As<IDisplayItem>(), &IDisplayItem::get_key), L"E\\ROU\\Out1");
}

TEST_F(CDBOutputTest, ReportsItsConnectionAsAnOutputAndNeverAsADisplayItem) {
    const auto output = One();
    EXPECT_EQ(output.As<ISubItemConnable>()->put_IsConnected(VARIANT_TRUE), S_OK);
    EXPECT_TRUE(Flag(output, &IOutput::get_IsConnected));
    EXPECT_FALSE(Flag(output.As<IDisplayItem>(), &IDisplayItem::get_IsConnected));
    EXPECT_EQ(output.As<ISubItemConnable>()->put_IsConnected(VARIANT_FALSE), S_OK);
    EXPECT_FALSE(Flag(output, &IOutput::get_IsConnected));
}

TEST_F(CDBOutputTest, StoresTheDisplayableFlag) {
    const auto output = One();
    EXPECT_EQ(output->put_IsDisplayable(VARIANT_TRUE), S_OK);
    EXPECT_TRUE(Flag(output, &IOutput::get_IsDisplayable));
    EXPECT_TRUE(Flag(output.As<IDisplayItem>(), &IDisplayItem::get_IsDisplayable));
    EXPECT_EQ(output->put_IsDisplayable(VARIANT_FALSE), S_OK);
    EXPECT_FALSE(Flag(output.As<IDisplayItem>(), &IDisplayItem::get_IsDisplayable));
}

TEST_F(CDBOutputTest, ShowsOneTypeOnAllInterfaces) {
    const auto output = One();
    const auto type = Object(output, &IOutput::get_SNVTType);
    ASSERT_TRUE(type);
    EXPECT_TRUE(com::SameObject(
        type.Get(), Object(output.As<ISubItemConnable>(), &ISubItemConnable::get_SNVTType).Get()));
    EXPECT_TRUE(
        com::SameObject(type.Get(), Object(output.As<IDisplayItem>(), &IDisplayItem::get_SNVTType).Get()));
}

TEST_F(CDBOutputTest, ShowsOneCompatibleType) {
    const auto output = One();
    const auto compatible = Object(output, &IOutput::get_SNVTCompatible);
    ASSERT_TRUE(compatible);
    EXPECT_TRUE(com::SameObject(compatible.Get(), Object(output, &IOutput::get_SNVTCompatible).Get()));
}

TEST_F(CDBOutputTest, IsCompatibleWithItsTypesIdentifierExactly) {
    SetCatalogue(L"<SNVT_Temp><Name>T</Name></SNVT_Temp>");
    const auto output = One(L"<SNVTTYPE>Temp</SNVTTYPE>");
    EXPECT_TRUE(Compatible(output, L"Temp"));
    for (const wchar_t* id : {L"temp", L"TEMP", L" Temp", L"Temp ", L"", L"Tem"}) {
        EXPECT_FALSE(Compatible(output, id)) << id;
    }
}

TEST_F(CDBOutputTest, IsNotCompatibleWithATypeThatWasNotFound) {
    const auto output = One(L"<SNVTTYPE>999</SNVTTYPE>");
    EXPECT_EQ(Boxes().size(), 1u);
    EXPECT_FALSE(Compatible(output, L"999"));
    EXPECT_TRUE(Compatible(output, L"")); // its type's identifier is empty
}

TEST_F(CDBOutputTest, IsCompatibleWithNothingWithoutAType) {
    EXPECT_FALSE(Compatible(One(L""), L""));
    EXPECT_FALSE(Compatible(One(L""), L"105"));
}

TEST_F(CDBOutputTest, ReadsTheIdentifierOfAConnectedTypeAndKeepsNothingElse) {
    const auto connable = One().As<ISubItemConnable>();
    const auto type = UnusualType();
    EXPECT_EQ(connable->putref_ConnectedType(type->As<IDispatch>().Get()), S_OK);
    EXPECT_EQ(type->Times(L"get ID"), 1u);
    EXPECT_EQ(type->Others(), 0u);
    // Its own type stays.
    EXPECT_EQ(Text(Object(connable, &ISubItemConnable::get_SNVTType), &ISNVType::get_ID), L"105");
}

TEST_F(CDBOutputTest, BearsAConnectedTypeThatDropsTheLastReference) {
    auto connable = Output(Loaded(Stream({}, L"<Out1/>")), L"1").As<ISubItemConnable>();
    const auto type = Recorder::Make(L"type", {&__uuidof(ISNVType)});
    type->On(L"get ID", [&](const Invocation& call) {
        connable.Reset();
        return call.Answer(std::wstring(L"an identifier that is longer than a small text"));
    });
    ISubItemConnable* const asked = connable.Get();
    EXPECT_EQ(asked->putref_ConnectedType(type->As<IDispatch>().Get()), S_OK);
    EXPECT_FALSE(connable);
}

TEST_F(CDBOutputTest, HandsAFailingConnectedTypeToTheCaller) {
    const auto connable = One().As<ISubItemConnable>();
    const auto type = UnusualType();
    type->Refuse(L"get ID", E_ACCESSDENIED);
    EXPECT_EQ(connable->putref_ConnectedType(type->As<IDispatch>().Get()), E_ACCESSDENIED);
}

TEST_F(CDBOutputTest, HandsAConnectedTypeThatCannotBeReachedToTheCaller) {
    const auto connable = One().As<ISubItemConnable>();
    const auto type = UnusualType();
    type->HideFace(__uuidof(ISNVType), CO_E_OBJNOTCONNECTED);
    EXPECT_EQ(connable->putref_ConnectedType(type->As<IDispatch>().Get()), CO_E_OBJNOTCONNECTED);
    type->HideFace(__uuidof(ISNVType), E_NOINTERFACE);
    EXPECT_EQ(connable->putref_ConnectedType(type->As<IDispatch>().Get()), kTypeMismatch);
    EXPECT_EQ(type->Times(L"get ID"), 0u);
}

TEST_F(CDBOutputTest, RefusesAConnectedTypeThatIsNone) {
    const auto connable = One().As<ISubItemConnable>();
    EXPECT_EQ(connable->putref_ConnectedType(nullptr), kObjectNotSet);
    EXPECT_EQ(connable->putref_ConnectedType(module.Get()), kTypeMismatch);
}

TEST_F(CDBOutputTest, IgnoresPriorityAndConnectionIndexAndChangeOfType) {
    const auto output = One();
    EXPECT_EQ(output.As<ISubItemConnable>()->put_HasPriority(VARIANT_TRUE), S_OK);
    EXPECT_EQ(output.As<ISubItemConnable>()->put_IncrementalConnIndex(5), S_OK);
    const com::Variant type(L"8");
    EXPECT_EQ(output->changeType(type.Get()), S_OK);
    EXPECT_EQ(Long(output, &IOutput::get_Index), 0);
    EXPECT_EQ(Text(Object(output, &IOutput::get_SNVTType), &ISNVType::get_ID), L"105");
}

TEST_F(CDBOutputTest, KeepsNothingOfACallBack) {
    const auto output = One();
    const auto target = Held::Make();
    EXPECT_EQ(output->putref_CallBack(target.Get()), S_OK);
    EXPECT_EQ(target->Others(), 0u);
}

TEST_F(CDBOutputTest, HasItsModuleAsParent) {
    const auto output = One();
    EXPECT_TRUE(com::SameObject(Object(output, &IOutput::get_Parent).Get(), module.Get()));
}

TEST_F(CDBOutputTest, FormsItsReferenceFromExportIndexAndIndex) {
    EXPECT_EQ(Reference(0, 0), L"4000");
    EXPECT_EQ(Reference(2, 3), L"4203");
    EXPECT_EQ(Reference(0, 4), L"4004");
    EXPECT_EQ(Reference(1, 0), L"4100");
    EXPECT_EQ(Reference(191, 4), L"FF04");
}

TEST_F(CDBOutputTest, ShowsZerosForAReferencePastFourDigits) {
    EXPECT_EQ(Reference(192, 0), L"0000"); // exactly 65536: the last four digits of 10000
    EXPECT_EQ(Reference(192, 4), L"0000"); // above: clamped to 65536
    EXPECT_EQ(Reference(193, 1), L"0000");
    EXPECT_EQ(Reference(32767, 0), L"0000");
}

TEST_F(CDBOutputTest, TakesASignedExportIndex) {
    EXPECT_EQ(Reference(-1, 0), L"3F00");
    EXPECT_EQ(Reference(-64, 0), L"0000");
    EXPECT_EQ(Reference(-64, 4), L"0004");
    EXPECT_EQ(Reference(-65, 1), L"FF01"); // -255 is FFFFFF01
    EXPECT_EQ(Reference(-32768, 2), L"4002");
}

TEST_F(CDBOutputTest, IsReachedByNameOverAllItsInterfaces) {
    const auto output = One();
    const auto script = output.As<IDispatch>();
    EXPECT_EQ(com::Text(com::GetMember(*script.Get(), L"Name").Get().bstrVal), L"Out1");
    EXPECT_EQ(com::GetMember(*script.Get(), L"NodeType").Get().lVal, 8);
    EXPECT_EQ(com::Text(com::GetMember(*script.Get(), L"Reference").Get().bstrVal), L"4000");
    EXPECT_EQ(com::GetMember(*script.Get(), L"IsTrendable").Get().boolVal, VARIANT_FALSE);
    VARIANT yes{};
    yes.vt = VT_BOOL;
    yes.boolVal = VARIANT_TRUE;
    com::PutMember(*script.Get(), L"IsDisplayable", yes);
    EXPECT_TRUE(Flag(output, &IOutput::get_IsDisplayable));
    const auto item = output.As<IDisplayItem>();
    EXPECT_EQ(com::GetMember(*item.Get(), L"itemType").Get().lVal, 10);
    EXPECT_EQ(com::GetMember(*output.As<ISubItemConnable>().Get(), L"itemType").Get().lVal, 8);
}

} // namespace
