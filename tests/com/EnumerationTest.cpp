#include "com/LateBound.h"
#include "tests/com/Subjects.h"
#include "tests/support/Caller.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <string>
#include <vector>

using namespace contract;

namespace {

using Enumerator = com::Ref<IEnumVARIANT>;
using Identities = std::vector<IUnknown*>;

/// For Each over every collection that can be reached: an object with a member
/// NewEnum. Each of them has two items.
class EnumerationTest : public ContractTest {
  protected:
    struct Collection {
        com::Ref<IDispatch> object;
        /// Takes the item's number: a text or a position.
        com::Ref<IUnknown> Item(long position) const {
            com::Variant index(position);
            std::vector<VARIANT> values{index.Get()};
            com::Variant item;
            EXPECT_EQ(support::Invoke(object.Get(), DISPID_VALUE, DISPATCH_METHOD | DISPATCH_PROPERTYGET,
                                      values, item.Put(), nullptr),
                      S_OK);
            return Identity(item.Get());
        }
        Enumerator Begin() const {
            std::vector<VARIANT> none;
            com::Variant result;
            EXPECT_EQ(support::Invoke(object.Get(), DISPID_NEWENUM, DISPATCH_METHOD | DISPATCH_PROPERTYGET,
                                      none, result.Put(), nullptr),
                      S_OK);
            return com::Query<IEnumVARIANT>(result.Get().punkVal);
        }
    };

    static com::Ref<IUnknown> Identity(const VARIANT& item) {
        EXPECT_EQ(item.vt, VT_DISPATCH);
        return item.vt == VT_DISPATCH ? com::Query<IUnknown>(item.pdispVal) : com::Ref<IUnknown>();
    }
    /// The next item's identity; empty after the last.
    static com::Ref<IUnknown> Next(const Enumerator& enumerator) {
        com::Variant item;
        ULONG fetched = 9;
        const HRESULT result = enumerator->Next(1, item.Put(), &fetched);
        EXPECT_EQ(result, fetched == 1 ? S_OK : S_FALSE);
        EXPECT_LE(fetched, 1u);
        if (fetched == 0) {
            EXPECT_EQ(item.Get().vt, VT_EMPTY);
            return {};
        }
        return Identity(item.Get());
    }
    static Identities Rest(const Enumerator& enumerator) {
        Identities items;
        for (auto item = Next(enumerator); item; item = Next(enumerator)) {
            items.push_back(item.Get()); // the collection keeps it
        }
        return items;
    }

    void ForEachCollection(const std::function<void(const Collection& collection)>& body) {
        std::size_t count = 0;
        for (const Subject& subject : Scriptables()) {
            for (const Interface& face : InterfacesOf(subject)) {
                const bool enumerates = std::any_of(face.members.begin(), face.members.end(),
                                                    [](const Member& m) { return m.id == DISPID_NEWENUM; });
                if (!enumerates) {
                    continue;
                }
                SCOPED_TRACE(subject.name + ": " + Narrow(face.name));
                com::Ref<IUnknown> pointer;
                ASSERT_EQ(subject.object->QueryInterface(face.id, pointer.PutVoid()), S_OK);
                body({com::Ref<IDispatch>(static_cast<IDispatch*>(pointer.Get()))});
                ++count;
            }
        }
        EXPECT_EQ(count, 14u) << "module 5 (attributes twice), channel 3, macros 2, generic object 4";
    }
};

TEST_F(EnumerationTest, GivesTheItemsInTheirOrderEachTime) {
    ForEachCollection([](const Collection& collection) {
        const auto first = collection.Item(1);
        const auto second = collection.Item(2);
        const Identities expected{first.Get(), second.Get()};
        EXPECT_EQ(Rest(collection.Begin()), expected);
        EXPECT_EQ(Rest(collection.Begin()), expected);
    });
}

TEST_F(EnumerationTest, WalksNestedLoopsApart) {
    ForEachCollection([](const Collection& collection) {
        std::size_t pairs = 0;
        const auto outer = collection.Begin();
        while (Next(outer)) {
            const auto inner = collection.Begin();
            EXPECT_NE(inner, outer);
            pairs += Rest(inner).size();
        }
        EXPECT_EQ(pairs, 4u);
    });
}

TEST_F(EnumerationTest, SkipsAndStartsAgain) {
    ForEachCollection([](const Collection& collection) {
        const auto first = collection.Item(1);
        const auto second = collection.Item(2);
        const auto enumerator = collection.Begin();
        EXPECT_EQ(enumerator->Skip(0), S_OK);
        EXPECT_EQ(enumerator->Skip(1), S_OK);
        EXPECT_EQ(Rest(enumerator), Identities{second.Get()});
        EXPECT_EQ(enumerator->Skip(1), S_FALSE);
        EXPECT_EQ(enumerator->Reset(), S_OK);
        EXPECT_EQ(enumerator->Skip(2), S_OK);
        EXPECT_FALSE(Next(enumerator));
        EXPECT_EQ(enumerator->Reset(), S_OK);
        EXPECT_EQ(enumerator->Skip(3), S_FALSE);
        EXPECT_FALSE(Next(enumerator)) << "a skip past the end ends there";
        EXPECT_EQ(enumerator->Reset(), S_OK);
        EXPECT_EQ(Rest(enumerator), (Identities{first.Get(), second.Get()}));
    });
}

TEST_F(EnumerationTest, ClonesItsPlace) {
    ForEachCollection([](const Collection& collection) {
        const auto first = collection.Item(1);
        const auto second = collection.Item(2);
        const auto enumerator = collection.Begin();
        EXPECT_EQ(Next(enumerator), first);
        Enumerator copy;
        ASSERT_EQ(enumerator->Clone(copy.Put()), S_OK);
        EXPECT_NE(copy, enumerator);
        EXPECT_EQ(Rest(enumerator), Identities{second.Get()});
        EXPECT_EQ(Rest(copy), Identities{second.Get()});
        EXPECT_EQ(copy->Reset(), S_OK);
        EXPECT_EQ(Next(copy), first);
        EXPECT_FALSE(Next(enumerator));
    });
}

TEST_F(EnumerationTest, FetchesSeveralAtOnce) {
    ForEachCollection([](const Collection& collection) {
        const auto enumerator = collection.Begin();
        VARIANT items[3];
        ULONG fetched = 9;
        EXPECT_EQ(enumerator->Next(3, items, &fetched), S_FALSE);
        EXPECT_EQ(fetched, 2u);
        EXPECT_EQ(Identity(items[0]), collection.Item(1));
        EXPECT_EQ(Identity(items[1]), collection.Item(2));
        EXPECT_EQ(items[2].vt, VT_EMPTY);
        for (VARIANT& item : items) {
            VariantClear(&item);
        }
        EXPECT_EQ(enumerator->Next(0, items, &fetched), S_OK);
        EXPECT_EQ(fetched, 0u);
    });
}

TEST_F(EnumerationTest, RefusesMissingPlaces) {
    ForEachCollection([](const Collection& collection) {
        const auto enumerator = collection.Begin();
        com::Variant item;
        ULONG fetched = 0;
        EXPECT_EQ(enumerator->Next(1, nullptr, &fetched), E_POINTER);
        EXPECT_EQ(enumerator->Next(2, item.Put(), nullptr), E_POINTER) << "one place alone may go uncounted";
        EXPECT_EQ(enumerator->Clone(nullptr), E_POINTER);
        EXPECT_EQ(Rest(enumerator).size(), 2u) << "a refused call takes nothing";
        EXPECT_EQ(enumerator->Reset(), S_OK);
        EXPECT_EQ(enumerator->Next(1, item.Put(), nullptr), S_OK);
    });
}

TEST_F(EnumerationTest, GoesOnWhileItsListLosesItsItems) {
    std::size_t count = 0;
    for (const Subject& subject : Scriptables()) {
        const auto list = com::Query<ICompatibleSNVTs>(subject.object.Get());
        if (!list) {
            continue;
        }
        SCOPED_TRACE(subject.name);
        const auto script = list.As<IDispatch>();
        const Collection collection{script};
        const auto first = collection.Item(1);
        const auto second = collection.Item(2);
        const auto enumerator = collection.Begin();
        EXPECT_EQ(Next(enumerator), first);
        for (const wchar_t* identifier : {L"105", L"95"}) {
            EXPECT_EQ(list->Remove(com::Bstr(identifier).Get()), S_OK);
        }
        EXPECT_EQ(support::Long(list, &ICompatibleSNVTs::get_Count), 0);
        EXPECT_EQ(Rest(enumerator), Identities{second.Get()});
        EXPECT_EQ(Rest(collection.Begin()), Identities());
        ++count;
    }
    EXPECT_EQ(count, 2u) << "of a module's input and of a generic object's";
}

TEST_F(EnumerationTest, GoesOnWhileItsProjectLosesItsGroups) {
    const auto project = Host().Create<IProject>(__uuidof(::Project));
    com::Ref<IProjectGroup> group;
    for (int i = 0; i < 2; ++i) {
        ASSERT_EQ(project->AddGroup(group.Put()), S_OK);
        ASSERT_EQ(group->AddItem(com::Bstr(L"K7\\RIN\\AI1_Value").Get()), S_OK);
        ASSERT_EQ(group->AddItem(com::Bstr(L"K7\\RIN\\AI2_Value").Get()), S_OK);
    }
    const auto connections = project.As<IMacroConnections>();
    const Collection groups{support::Object(connections, &IMacroConnections::get_Groups)};
    const auto items = support::Object(group.As<IMacroConnectionGroup>(), &IMacroConnectionGroup::get_Items);
    const auto secondGroup = groups.Item(2);
    const auto secondItem = Collection{items}.Item(2);
    const auto groupLoop = groups.Begin();
    const auto itemLoop = Collection{items}.Begin();
    EXPECT_TRUE(Next(groupLoop));
    EXPECT_TRUE(Next(itemLoop));
    EXPECT_EQ(project->ClearGroups(), S_OK);
    group.Reset();
    EXPECT_EQ(Rest(groupLoop), Identities{secondGroup.Get()});
    EXPECT_EQ(Rest(itemLoop), Identities{secondItem.Get()});
    EXPECT_EQ(Rest(groups.Begin()), Identities());
}

// Points go with their owner alone: no host interface removes one.
TEST_F(EnumerationTest, GoesOnWhenItsOwnerIsDestroyed) {
    for (const Family family : {Family::Module, Family::Channel, Family::Generic}) {
        for (const wchar_t* name : {L"Inputs", L"Outputs", L"Attributes"}) {
            auto owner = com::Query<IAppObject>(Subjects(family).front().object.Get());
            ASSERT_TRUE(owner);
            SCOPED_TRACE(std::to_string(static_cast<int>(family)) + " " + Narrow(name));
            Collection points{com::Ref<IDispatch>(com::GetMember(*owner.Get(), name).Get().pdispVal)};
            const auto first = points.Item(1);
            const auto second = points.Item(2);
            const auto enumerator = points.Begin();
            EXPECT_EQ(Next(enumerator), first);
            points.object.Reset();
            EXPECT_EQ(owner->Destroy(), S_OK);
            owner.Reset();
            EXPECT_EQ(Rest(enumerator), Identities{second.Get()});
            EXPECT_EQ(enumerator->Reset(), S_OK);
            EXPECT_EQ(Rest(enumerator), (Identities{first.Get(), second.Get()}));
        }
    }
}

TEST_F(EnumerationTest, OutlivesItsCollection) {
    for (const Family family : kFamilies) {
        const std::size_t count = Subjects(family).size();
        for (std::size_t i = 0; i < count; ++i) {
            Subject last = Subjects(family)[i];
            if (last.classId) {
                continue;
            }
            SCOPED_TRACE(last.name);
            const auto enumerator = com::Query<IEnumVARIANT>(last.object.Get());
            EXPECT_TRUE(Next(enumerator));
            EXPECT_TRUE(Next(enumerator));
            EXPECT_FALSE(Next(enumerator));
        }
    }
}

} // namespace
