#include "tests/points/Points.h"
#include "tests/support/HostWindows.h"
#include "tests/support/Recorder.h"

#include "com/LateBound.h"

#include <climits>
#include <string>

using namespace support;
using namespace points;

namespace {

using List = com::Ref<ICompatibleSNVTs>;

class CCompatibleSNVTsTest : public PointsTest {
  protected:
    static void Add(const List& list, const std::wstring& text, const CalledFrom& = {}) {
        const com::Bstr ids(text);
        EXPECT_EQ(list->Add(ids.Get()), S_OK);
    }
    /// A list of its own, outside any module.
    List Made(const std::wstring& text, const CalledFrom& = {}) {
        const auto owner = WithInputs(L"<In1/>");
        List list = Object(Input(owner, L"1"), &IInput::get_SNVTCompatibles);
        Add(list, text);
        return list;
    }
    static std::wstring Shown(const List& list) { return Text(list, &ICompatibleSNVTs::ToString); }
    static bool Exists(const List& list, const std::wstring& id, const CalledFrom& = {}) {
        const com::Bstr text(id);
        VARIANT_BOOL value = VARIANT_FALSE;
        EXPECT_EQ(list->Exists(text.Get(), &value), S_OK);
        return value != VARIANT_FALSE;
    }
    static std::wstring At(const List& list, long position, const CalledFrom& = {}) {
        com::Ref<ICompatibleSNVT> entry;
        EXPECT_EQ(list->get_Item(position, entry.Put()), S_OK);
        return entry ? Text(entry, &ICompatibleSNVT::get_ID) : L"(none)";
    }
    static List Merged(const List& list, const List& other, const CalledFrom& = {}) {
        List result;
        EXPECT_EQ(list->Merge(other.Get(), result.Put()), S_OK);
        return result;
    }
    static List Cloned(const List& list, const CalledFrom& = {}) {
        com::Ref<IDispatch> copy;
        EXPECT_EQ(list.As<IClonable>()->Clone(copy.Put()), S_OK);
        return copy.As<ICompatibleSNVTs>();
    }
};

TEST_F(CCompatibleSNVTsTest, StartsEmpty) {
    const List list = Made(L"");
    EXPECT_EQ(Long(list, &ICompatibleSNVTs::get_Count), 0);
    EXPECT_EQ(Shown(list), L"");
    EXPECT_EQ(At(list, 1), L"(none)");
    EXPECT_FALSE(Exists(list, L""));
}

TEST_F(CCompatibleSNVTsTest, AddsTheFieldsOfATextOnceEach) {
    EXPECT_EQ(Shown(Made(L"3,4,4,5")), L"3,4,5");
    EXPECT_EQ(Shown(Made(L"3,3")), L"3");
    EXPECT_EQ(Shown(Made(L"7")), L"7");
}

TEST_F(CCompatibleSNVTsTest, EndsAtTheFirstEmptyField) {
    EXPECT_EQ(Shown(Made(L"3,,4")), L"3");
    EXPECT_EQ(Shown(Made(L"3,4,")), L"3,4");
    EXPECT_EQ(Shown(Made(L",3")), L"");
    EXPECT_EQ(Shown(Made(L",")), L"");
}

TEST_F(CCompatibleSNVTsTest, KeepsTheOrderInWhichItWasTold) {
    EXPECT_EQ(Shown(Made(L"5,3")), L"5,3");
}

TEST_F(CCompatibleSNVTsTest, KeepsBlanksAndLetterCase) {
    const List list = Made(L"3, 4,abc,ABC, ");
    EXPECT_EQ(Shown(list), L"3, 4,abc,ABC, ");
    EXPECT_EQ(Long(list, &ICompatibleSNVTs::get_Count), 5);
    EXPECT_TRUE(Exists(list, L" 4"));
    EXPECT_FALSE(Exists(list, L"4"));
    EXPECT_TRUE(Exists(list, L" "));
}

TEST_F(CCompatibleSNVTsTest, AddsAfterWhatIsThere) {
    const List list = Made(L"5,3");
    Add(list, L"");
    EXPECT_EQ(Shown(list), L"5,3");
    Add(list, L"3,9");
    Add(list, L"5");
    Add(list, L"1");
    EXPECT_EQ(Shown(list), L"5,3,9,1");
    EXPECT_EQ(list->Add(nullptr), S_OK);
    EXPECT_EQ(Shown(list), L"5,3,9,1");
}

TEST_F(CCompatibleSNVTsTest, ExistsForExactlyThatIdentifier) {
    const List list = Made(L"105,Abc");
    EXPECT_TRUE(Exists(list, L"105"));
    for (const wchar_t* id : {L"abc", L"10", L"1050", L"", L"1", L"105,Abc"}) {
        EXPECT_FALSE(Exists(list, id)) << id;
    }
}

TEST_F(CCompatibleSNVTsTest, AnswersEntriesByPosition) {
    const List list = Made(L"5,3,9");
    EXPECT_EQ(Long(list, &ICompatibleSNVTs::get_Count), 3);
    EXPECT_EQ(At(list, 1), L"5");
    EXPECT_EQ(At(list, 2), L"3");
    EXPECT_EQ(At(list, 3), L"9");
    for (const long position : {0L, 4L, -1L, LONG_MAX, LONG_MIN}) {
        EXPECT_EQ(At(list, position), L"(none)") << position;
    }
}

TEST_F(CCompatibleSNVTsTest, AnswersTheSameEntryEachTime) {
    const List list = Made(L"5,3");
    com::Ref<ICompatibleSNVT> first;
    com::Ref<ICompatibleSNVT> again;
    list->get_Item(2, first.Put());
    list->get_Item(2, again.Put());
    EXPECT_TRUE(com::SameObject(first.Get(), again.Get()));
}

TEST_F(CCompatibleSNVTsTest, RemovesAnEntry) {
    const List list = Made(L"5,3,9");
    const com::Bstr id(L"3");
    EXPECT_EQ(list->Remove(id.Get()), S_OK);
    EXPECT_EQ(Shown(list), L"5,9");
    EXPECT_EQ(At(list, 2), L"9");
    EXPECT_FALSE(Exists(list, L"3"));
    Add(list, L"3");
    EXPECT_EQ(Shown(list), L"5,9,3");
}

TEST_F(CCompatibleSNVTsTest, RefusesToRemoveWhatIsNotThere) {
    const List list = Made(L"5,3");
    for (const wchar_t* absent : {L"9", L"1", L""}) {
        const com::Bstr id(absent);
        EXPECT_EQ(list->Remove(id.Get()), kInvalidCall) << absent;
    }
    EXPECT_EQ(Shown(list), L"5,3");
}

TEST_F(CCompatibleSNVTsTest, LeavesAHeldEntryAsItIs) {
    List list = Made(L"5,3");
    com::Ref<ICompatibleSNVT> entry;
    list->get_Item(1, entry.Put());
    const com::Bstr id(L"5");
    list->Remove(id.Get());
    EXPECT_EQ(Text(entry, &ICompatibleSNVT::get_ID), L"5");
    list.Reset();
    EXPECT_EQ(Text(entry, &ICompatibleSNVT::get_ID), L"5");
}

TEST_F(CCompatibleSNVTsTest, MergesToTheIntersectionInTheOthersOrder) {
    const List list = Made(L"1,2,3");
    const List other = Made(L"3,2,9");
    EXPECT_EQ(Shown(Merged(list, other)), L"3,2");
    EXPECT_EQ(Shown(Merged(other, list)), L"2,3");
    EXPECT_EQ(Shown(list), L"1,2,3");
    EXPECT_EQ(Shown(other), L"3,2,9");
}

TEST_F(CCompatibleSNVTsTest, BearsAnotherListThatDropsTheLastReference) {
    List list = Made(L"1,2,3");
    const auto entry = Recorder::Make(L"entry", {&__uuidof(ICompatibleSNVT)});
    entry->On(L"get ID", [&](const Invocation& call) {
        list.Reset();
        return call.Answer(std::wstring(L"2"));
    });
    const auto other = Recorder::Make(L"other", {&__uuidof(ICompatibleSNVTs)});
    other->Set(L"Count", 1L);
    other->Set(L"Item", entry);
    ICompatibleSNVTs* const asked = list.Get();
    List merged;
    EXPECT_EQ(asked->Merge(other->As<ICompatibleSNVTs>().Get(), merged.Put()), S_OK);
    EXPECT_FALSE(list);
    EXPECT_EQ(Shown(merged), L"2");
}

TEST_F(CCompatibleSNVTsTest, MergesWithNothingToNothing) {
    EXPECT_EQ(Shown(Merged(Made(L"1,2"), Made(L""))), L"");
    EXPECT_EQ(Shown(Merged(Made(L""), Made(L"1,2"))), L"");
    EXPECT_EQ(Shown(Merged(Made(L"1,2"), Made(L"3"))), L"");
    EXPECT_EQ(Shown(Merged(Made(L"a"), Made(L"A"))), L"");
}

TEST_F(CCompatibleSNVTsTest, MergesWithItselfToAnEqualList) {
    const List list = Made(L"1,2");
    const List merged = Merged(list, list);
    EXPECT_FALSE(com::SameObject(list.Get(), merged.Get()));
    EXPECT_EQ(Shown(merged), L"1,2");
    Add(merged, L"3");
    EXPECT_EQ(Shown(list), L"1,2");
}

TEST_F(CCompatibleSNVTsTest, RefusesToMergeWithNoList) {
    List result;
    EXPECT_EQ(Made(L"1")->Merge(nullptr, result.Put()), kObjectNotSet);
    EXPECT_FALSE(result);
}

TEST_F(CCompatibleSNVTsTest, ClonesIntoAListOfItsOwn) {
    const List list = Made(L"5,3");
    const List copy = Cloned(list);
    ASSERT_TRUE(copy);
    EXPECT_FALSE(com::SameObject(list.Get(), copy.Get()));
    EXPECT_EQ(Shown(copy), L"5,3");
    Add(copy, L"9");
    EXPECT_EQ(Shown(copy), L"5,3,9");
    EXPECT_EQ(Shown(list), L"5,3");
    const com::Bstr id(L"5");
    list->Remove(id.Get());
    EXPECT_EQ(Shown(copy), L"5,3,9");
}

TEST_F(CCompatibleSNVTsTest, ClonesAnEmptyList) {
    const List copy = Cloned(Made(L""));
    ASSERT_TRUE(copy);
    EXPECT_EQ(Long(copy, &ICompatibleSNVTs::get_Count), 0);
    EXPECT_TRUE(Cloned(copy));
}

TEST_F(CCompatibleSNVTsTest, YieldsToTheMessageLoopInALongList) {
    const List list = Made(L"");
    int heard = 0;
    const Listener listener([&] { ++heard; });
    listener.Post();
    Add(list, L"1");
    EXPECT_EQ(heard, 0); // one identifier is no loop
    Add(list, L"1,2");
    EXPECT_EQ(heard, 1);
}

TEST_F(CCompatibleSNVTsTest, BearsAHostThatChangesItWhileItYields) {
    const List list = Made(L"");
    const Listener listener([&] {
        Add(list, L"9");
        Add(list, L"2,8");
    });
    listener.Post();
    Add(list, L"1,2,3");
    EXPECT_EQ(Shown(list), L"9,2,8,1,3");
}

TEST_F(CCompatibleSNVTsTest, TakesAThousandIdentifiers) {
    std::wstring text;
    for (int i = 1000; i > 0; --i) {
        text += std::to_wstring(i) + (i > 1 ? L"," : L"");
    }
    const List list = Made(text);
    EXPECT_EQ(Long(list, &ICompatibleSNVTs::get_Count), 1000);
    EXPECT_EQ(Shown(list), text);
    EXPECT_EQ(At(list, 1), L"1000");
    EXPECT_EQ(At(list, 1000), L"1");
    EXPECT_TRUE(Exists(list, L"500"));
    EXPECT_FALSE(Exists(list, L"1001"));
}

TEST_F(CCompatibleSNVTsTest, IsReachedByName) {
    const List list = Made(L"5,3");
    const auto script = list.As<IDispatch>();
    EXPECT_EQ(com::GetMember(*script.Get(), L"Count").Get().lVal, 2);
    const com::Variant more(L"9");
    VARIANT arguments[] = {more.Get()};
    com::CallMember(*script.Get(), L"Add", arguments);
    EXPECT_EQ(com::Text(com::CallMember(*script.Get(), L"ToString", {}).Get().bstrVal), L"5,3,9");
    EXPECT_EQ(com::CallMember(*script.Get(), L"Exists", arguments).Get().boolVal, VARIANT_TRUE);
    const auto copy = com::CallMember(*script.Get(), L"Clone", {});
    ASSERT_EQ(copy.Get().vt, VT_DISPATCH);
    EXPECT_EQ(com::GetMember(*copy.Get().pdispVal, L"Count").Get().lVal, 3);
}

} // namespace
