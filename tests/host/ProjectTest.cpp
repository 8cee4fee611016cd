#include "tests/host/HostDll.h"
#include "tests/support/Errors.h"

#include "com/LateBound.h"

#include <cstddef>
#include <string>
#include <vector>

namespace hosttest {

namespace {

class ProjectTest : public testing::Test {
  protected:
    com::Ref<IMacroConnectionGroups> Groups() {
        com::Ref<IMacroConnectionGroups> groups;
        EXPECT_EQ(S_OK, project_.As<IMacroConnections>()->get_Groups(groups.Put()));
        return groups;
    }
    com::Ref<IMacroConnectionGroup> AddGroup(std::initializer_list<const wchar_t*> keys) {
        com::Ref<IProjectGroup> group;
        EXPECT_EQ(S_OK, project_->AddGroup(group.Put()));
        for (const wchar_t* key : keys) {
            EXPECT_EQ(S_OK, group->AddItem(com::Bstr(key).Get()));
        }
        return group.As<IMacroConnectionGroup>();
    }
    static com::Ref<IMacroConnectedItems> ItemsOf(const com::Ref<IMacroConnectionGroup>& group) {
        com::Ref<IMacroConnectedItems> items;
        EXPECT_EQ(S_OK, group->get_Items(items.Put()));
        return items;
    }
    /// All keys, as an object's macro test walks them.
    std::vector<std::wstring> Keys() {
        std::vector<std::wstring> keys;
        const auto groups = Groups();
        for (long i = 1; i <= LongOf(*groups.Get(), &IMacroConnectionGroups::get_Count); ++i) {
            com::Ref<IMacroConnectionGroup> group;
            EXPECT_EQ(S_OK, groups->get_Item(i, group.Put()));
            const auto items = ItemsOf(group);
            for (long j = 1; j <= LongOf(*items.Get(), &IMacroConnectedItems::get_Count); ++j) {
                com::Ref<IMacroConnectedItem> item;
                EXPECT_EQ(S_OK, items->get_Item(j, item.Put()));
                keys.push_back(TextOf(*item.Get(), &IMacroConnectedItem::get_key));
            }
        }
        return keys;
    }

    com::Ref<IProject> project_ = Create<IProject>(__uuidof(Project));
};

TEST_F(ProjectTest, StartsWithoutMacroConnections) {
    EXPECT_TRUE(Keys().empty());
}

TEST_F(ProjectTest, KeepsGroupsAndItemsInTheirOrder) {
    AddGroup({L"K1\\ATT\\Gain", L"K1\\ATT\\Limit"});
    AddGroup({});
    AddGroup({L"k1\\att\\gain", L""});
    EXPECT_EQ((std::vector<std::wstring>{L"K1\\ATT\\Gain", L"K1\\ATT\\Limit", L"k1\\att\\gain", L""}),
              Keys());
}

TEST_F(ProjectTest, RefusesPositionsThatAreNotThere) {
    const auto group = AddGroup({L"A"});
    for (const long position : {-1L, 0L, 2L}) {
        com::Ref<IMacroConnectionGroup> noGroup;
        com::Ref<IMacroConnectedItem> noItem;
        EXPECT_EQ(support::kSubscript, Groups()->get_Item(position, noGroup.Put()));
        EXPECT_EQ(support::kSubscriptText, LastError());
        EXPECT_EQ(support::kSubscript, ItemsOf(group)->get_Item(position, noItem.Put()));
        EXPECT_FALSE(noGroup);
        EXPECT_FALSE(noItem);
    }
}

TEST_F(ProjectTest, HandsOutTheSameObjectsEachTime) {
    const auto group = AddGroup({L"A"});
    com::Ref<IMacroConnectionGroup> first;
    EXPECT_EQ(S_OK, Groups()->get_Item(1, first.Put()));
    EXPECT_TRUE(com::SameObject(group.Get(), first.Get()));
    EXPECT_TRUE(com::SameObject(Groups().Get(), Groups().Get()));
}

TEST_F(ProjectTest, EnumeratesGroups) {
    AddGroup({L"A"});
    AddGroup({L"B"});
    com::Ref<IUnknown> unknown;
    ASSERT_EQ(S_OK, Groups()->get_NewEnum(unknown.Put()));
    const auto enumerator = unknown.As<IEnumVARIANT>();
    ASSERT_TRUE(enumerator);
    VARIANT items[3] = {};
    ULONG fetched = 0;
    EXPECT_EQ(S_FALSE, enumerator->Next(3, items, &fetched));
    ASSERT_EQ(2u, fetched);
    for (ULONG i = 0; i < fetched; ++i) {
        EXPECT_TRUE(com::Query<IMacroConnectionGroup>(items[i].pdispVal));
        VariantClear(&items[i]);
    }
}

TEST_F(ProjectTest, ForgetsItsGroups) {
    AddGroup({L"A"});
    const auto groups = Groups();
    EXPECT_EQ(S_OK, project_->ClearGroups());
    EXPECT_EQ(0, LongOf(*groups.Get(), &IMacroConnectionGroups::get_Count));
}

TEST_F(ProjectTest, CountsWhatItsViewWasAskedToShow) {
    com::Ref<IDispatch> object;
    ASSERT_EQ(S_OK, project_.As<IHostDocument>()->get_View(object.Put()));
    const auto view = object.As<IHostView>();
    const auto counter = object.As<IShowCounter>();
    ASSERT_TRUE(view);
    ASSERT_TRUE(counter);
    EXPECT_EQ(0, LongOf(*counter.Get(), &IShowCounter::get_ShowCount));
    EXPECT_EQ(S_OK, view->ShowObject());
    EXPECT_EQ(S_OK, view->ShowObject());
    EXPECT_EQ(2, LongOf(*counter.Get(), &IShowCounter::get_ShowCount));
    EXPECT_EQ(E_NOTIMPL, view->Reserved01());
    EXPECT_EQ(E_NOTIMPL, view->Reserved50());
    EXPECT_EQ(2, LongOf(*counter.Get(), &IShowCounter::get_ShowCount));
}

TEST_F(ProjectTest, ShowsThroughTheSlotsThatObjectsCall) {
    // An application object knows the two interfaces by identifier and slot:
    // the first own member of the document, the 51st of the view.
    IID documentIid{};
    IID viewIid{};
    ASSERT_EQ(S_OK, IIDFromString(L"{2690F178-80A7-47BE-ADCE-5BB1062776FF}", &documentIid));
    ASSERT_EQ(S_OK, IIDFromString(L"{999A42D2-A854-4E5A-B5E6-95BFB89CC88E}", &viewIid));
    using GetView = HRESULT(STDMETHODCALLTYPE*)(IUnknown*, IDispatch**);
    using Show = HRESULT(STDMETHODCALLTYPE*)(IUnknown*);
    constexpr std::size_t kInherited = 3 + 4;

    com::Ref<IUnknown> document;
    ASSERT_EQ(S_OK, project_->QueryInterface(documentIid, document.PutVoid()));
    com::Ref<IDispatch> object;
    ASSERT_EQ(S_OK, (*reinterpret_cast<const GetView* const*>(document.Get()))[kInherited](document.Get(),
                                                                                           object.Put()));
    com::Ref<IUnknown> view;
    ASSERT_EQ(S_OK, object->QueryInterface(viewIid, view.PutVoid()));
    ASSERT_EQ(S_OK, (*reinterpret_cast<const Show* const*>(view.Get()))[kInherited + 50](view.Get()));
    EXPECT_EQ(1, LongOf(*view.As<IShowCounter>().Get(), &IShowCounter::get_ShowCount));
}

TEST_F(ProjectTest, KeepsTheViewAfterItsOwnEnd) {
    com::Ref<IDispatch> object;
    ASSERT_EQ(S_OK, project_.As<IHostDocument>()->get_View(object.Put()));
    project_.Reset();
    EXPECT_EQ(S_OK, object.As<IHostView>()->ShowObject());
}

TEST_F(ProjectTest, IsBuiltAndReadByName) {
    // As a script does it, without knowing the interfaces: every member is
    // reached through the object's one IDispatch.
    const com::Variant group = com::CallMember(*project_.Get(), L"AddGroup", {});
    ASSERT_EQ(VT_DISPATCH, group.Get().vt);
    VARIANT key[] = {com::Variant(L"K1\\RIN\\In1").Detach()};
    com::CallMember(*group.Get().pdispVal, L"AddItem", key);
    VariantClear(&key[0]);

    const com::Variant groups = com::GetMember(*project_.Get(), L"Groups");
    ASSERT_EQ(VT_DISPATCH, groups.Get().vt);
    EXPECT_EQ(1, com::GetMember(*groups.Get().pdispVal, L"Count").Get().lVal);
    VARIANT position[] = {com::Variant(1L).Get()};
    const com::Variant first = com::CallMember(*groups.Get().pdispVal, L"Item", position);
    ASSERT_EQ(VT_DISPATCH, first.Get().vt);
    const com::Variant items = com::GetMember(*first.Get().pdispVal, L"Items");
    ASSERT_EQ(VT_DISPATCH, items.Get().vt);
    const com::Variant item = com::CallMember(*items.Get().pdispVal, L"Item", position);
    ASSERT_EQ(VT_DISPATCH, item.Get().vt);
    const com::Variant text = com::GetMember(*item.Get().pdispVal, L"Key");
    EXPECT_EQ(L"K1\\RIN\\In1", com::View(text.Get().bstrVal));

    const com::Variant view = com::GetMember(*project_.Get(), L"View");
    ASSERT_EQ(VT_DISPATCH, view.Get().vt);
    com::CallMember(*view.Get().pdispVal, L"ShowObject", {});
    EXPECT_EQ(1, com::GetMember(*view.Get().pdispVal, L"ShowCount").Get().lVal);
}

TEST_F(ProjectTest, RefusesMissingResults) {
    EXPECT_EQ(E_POINTER, project_->AddGroup(nullptr));
    EXPECT_EQ(E_POINTER, project_.As<IMacroConnections>()->get_Groups(nullptr));
    EXPECT_EQ(E_POINTER, project_.As<IHostDocument>()->get_View(nullptr));
    EXPECT_EQ(E_POINTER, Groups()->get_Count(nullptr));
    EXPECT_EQ(E_POINTER, Groups()->get_Item(1, nullptr));
    EXPECT_EQ(E_POINTER, Groups()->get_NewEnum(nullptr));
    EXPECT_EQ(0, LongOf(*Groups().Get(), &IMacroConnectionGroups::get_Count));
}

} // namespace

} // namespace hosttest
