#include "tests/members/Members.h"

#include <initializer_list>

using namespace members;
using namespace support;

namespace {

class CCompatibleSNVTsTest : public MembersTest {
  protected:
    static com::Ref<tam::CCompatibleSNVTs> ListOf(const wchar_t* text) {
        auto list = tam::CCompatibleSNVTs::Make();
        list->AddList(text);
        return list;
    }
    static com::Ref<ICompatibleSNVT> EntryAt(const com::Ref<tam::CCompatibleSNVTs>& list, long position) {
        com::Ref<ICompatibleSNVT> entry;
        EXPECT_EQ(S_OK, list->get_Item(position, entry.Put()));
        return entry;
    }
    static long CountOf(const com::Ref<tam::CCompatibleSNVTs>& list) {
        long count = -1;
        EXPECT_EQ(S_OK, list->get_Count(&count));
        return count;
    }
};

TEST_F(CCompatibleSNVTsTest, ClearLeavesNoEntry) {
    const auto list = ListOf(L"8,9");
    const auto held = EntryAt(list, 1);
    list->Clear();
    EXPECT_EQ(0, CountOf(list));
    EXPECT_EQ(L"", list->GetList());
    EXPECT_FALSE(EntryAt(list, 1));
    EXPECT_EQ(L"8", Text(held, &ICompatibleSNVT::get_ID));

    list->AddList(L"9,8");
    EXPECT_EQ(L"9,8", list->GetList());
    EXPECT_EQ(L"9", Text(EntryAt(list, 1), &ICompatibleSNVT::get_ID));
    EXPECT_NE(held.Get(), EntryAt(list, 2).Get());
}

TEST_F(CCompatibleSNVTsTest, RemovesByIdentifier) {
    const auto list = ListOf(L"5,3,1");
    list->RemoveItem(L"1");
    EXPECT_EQ(L"5,3", list->GetList()) << "an identifier goes before a position";
    list->RemoveItem(L"5");
    EXPECT_EQ(L"3", list->GetList());
}

TEST_F(CCompatibleSNVTsTest, RemovesByPositionWhatIsNoIdentifier) {
    const auto list = ListOf(L"50,30,10");
    list->RemoveItem(L"2");
    EXPECT_EQ(L"50,10", list->GetList());
    list->RemoveItem(L"2");
    EXPECT_EQ(L"50", list->GetList());
    list->RemoveItem(L"1");
    EXPECT_EQ(L"", list->GetList());
}

TEST_F(CCompatibleSNVTsTest, AnEntryThatCameBackIsANewOne) {
    const auto list = ListOf(L"50,30");
    const auto first = EntryAt(list, 1);
    const auto second = EntryAt(list, 2);
    list->RemoveItem(L"50");
    list->RemoveItem(L"1");
    list->AddList(L"50,30");
    EXPECT_NE(first.Get(), EntryAt(list, 1).Get());
    EXPECT_NE(second.Get(), EntryAt(list, 2).Get());
}

TEST_F(CCompatibleSNVTsTest, RefusesToRemoveWhatIsNotThere) {
    const auto list = ListOf(L"50,30");
    for (const wchar_t* const index : {L"", L"0", L"3", L"-1", L"fifty", L"99999999999", L"1e999"}) {
        EXPECT_EQ(kInvalidCall, ErrorOf([&] { list->RemoveItem(index); })) << com::Bstr(index).Get();
    }
    EXPECT_EQ(L"50,30", list->GetList());
}

} // namespace
