#include "tests/com/EveryMember.h"
#include "tests/support/Caller.h"
#include "tests/support/Describe.h"

#include <cstddef>
#include <string>
#include <vector>

using namespace contract;

namespace {

class MembersTest : public EveryMemberTest {
  protected:
    /// All that the object called and its model say of themselves.
    std::wstring StateOf(const Place& place, const Fresh& fresh) {
        const Libraries libraries{&Own(), &Services()};
        std::wstring state = Describe(libraries, fresh.face.Get());
        if (place.index != 0) {
            state += Describe(libraries, fresh.subjects.front().object.Get());
        }
        return state + Shown();
    }

    /// Calls each member on two models that are alike, once by its slot and
    /// once by its name, and compares all that a caller can see.
    void CompareCalls(Fill fill) {
        std::size_t count = 0;
        ForEachMember([&](const Place& place) {
            const Member& member = place.member;
            const Fresh first = NewObject(place);
            Arguments slotArguments(member, fill, first.supply);
            const Outcome bySlot = slotArguments.BySlot(first.face.Get());
            const std::wstring shownBySlot = Shown();

            const Fresh second = NewObject(place);
            DISPID id = DISPID_UNKNOWN;
            ASSERT_EQ(IdOf(second.face.Get(), member.name, id), S_OK);
            EXPECT_EQ(id, member.id);
            Arguments nameArguments(member, fill, second.supply);
            const Outcome byName =
                nameArguments.ByName(second.face.Get(), id, static_cast<WORD>(member.kind));
            EXPECT_EQ(bySlot, byName);
            EXPECT_EQ(shownBySlot, Shown());
            if (member.kind != INVOKE_PROPERTYGET) {
                EXPECT_EQ(StateOf(place, first), StateOf(place, second));
            }
            ++count;
        });
        EXPECT_GT(count, 200u) << "the library lists fewer members than the host interfaces have";
    }
};

TEST_F(MembersTest, AnswerAlikeBySlotAndByNameWithNothingGiven) {
    CompareCalls(Fill::Nothing);
}

TEST_F(MembersTest, AnswerAlikeBySlotAndByNameWithSomethingGiven) {
    CompareCalls(Fill::Something);
}

TEST_F(MembersTest, AnswerAlikeBySlotAndByNameWithSomethingElseGiven) {
    CompareCalls(Fill::SomethingElse);
}

TEST_F(MembersTest, RefuseANullOut) {
    std::size_t count = 0;
    ForEachMember([&](const Place& place) {
        const Member& member = place.member;
        for (std::size_t i = 0; i < member.parameters.size(); ++i) {
            if (!member.parameters[i].out) {
                continue;
            }
            const Fresh fresh = NewObject(place);
            Arguments arguments(member, Fill::Something, fresh.supply);
            EXPECT_EQ(arguments.BySlot(fresh.face.Get(), static_cast<int>(i)).code, E_POINTER)
                << Narrow(member.parameters[i].name);
            EXPECT_EQ(Shown(), L"") << "a refused call does nothing";
            ++count;
        }
    });
    EXPECT_GT(count, 150u);
}

TEST_F(MembersTest, TakeAssignmentAndAssignmentByReference) {
    std::size_t count = 0;
    ForEachMember([&](const Place& place) {
        const Member& member = place.member;
        if (!member.IsWrite()) {
            return;
        }
        const Fresh first = NewObject(place);
        Arguments declared(member, Fill::Something, first.supply);
        const Outcome expected = declared.ByName(first.face.Get());
        const std::wstring shown = Shown();
        for (const int flags : {DISPATCH_PROPERTYPUT, DISPATCH_PROPERTYPUTREF,
                                DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF}) {
            const Fresh fresh = NewObject(place);
            Arguments arguments(member, Fill::Something, fresh.supply);
            EXPECT_EQ(arguments.ByName(fresh.face.Get(), member.id, static_cast<WORD>(flags)), expected)
                << "flags " << flags;
            EXPECT_EQ(Shown(), shown);
        }
        ++count;
    });
    EXPECT_GT(count, 30u);
}

// Read with a place for its result, a property hands what is too many to the
// default member of what it answers.
TEST_F(MembersTest, HandWhatIsTooManyToWhatTheyAnswer) {
    std::size_t items = 0;
    ForEachMember([&](const Place& place) {
        const Member& member = place.member;
        if (member.kind != INVOKE_PROPERTYGET || member.Given() != 0) {
            return;
        }
        const auto face = Face(place);
        std::vector<VARIANT> none;
        std::vector<VARIANT> one{com::Variant(1L).Get()};
        com::Variant owner;
        com::Variant item;
        HRESULT expected =
            support::Invoke(face.Get(), member.id, DISPATCH_PROPERTYGET, none, owner.Put(), nullptr);
        const bool isObject = owner.Get().vt == VT_DISPATCH && owner.Get().pdispVal != nullptr;
        if (isObject) {
            expected = support::Invoke(owner.Get().pdispVal, DISPID_VALUE, DISPATCH_PROPERTYGET, one,
                                       item.Put(), nullptr);
        } else if (SUCCEEDED(expected)) {
            expected = DISP_E_NOTACOLLECTION;
        }
        com::Variant result;
        EXPECT_EQ(support::Invoke(face.Get(), member.id, DISPATCH_PROPERTYGET, one, result.Put(), nullptr),
                  expected);
        EXPECT_EQ(result.Get().vt, item.Get().vt);
        items += SUCCEEDED(expected) && item.Get().vt == VT_DISPATCH ? 1u : 0u;
        Boxes(); // what reading a property shows is another test's
    });
    EXPECT_EQ(items, 14u)
        << "points of three application objects, three compatible lists, macro groups and items";
}

TEST_F(MembersTest, AreFoundFromEveryInterfaceOfTheirObject) {
    for (const Subject& subject : Scriptables()) {
        for (const Interface& asked : InterfacesOf(subject)) {
            const auto script = Face(subject, asked);
            for (const Interface& face : InterfacesOf(subject)) {
                for (const Member& member : face.members) {
                    SCOPED_TRACE(subject.name + ": " + Title(face, member) + " from " + Narrow(asked.name));
                    DISPID id = DISPID_UNKNOWN;
                    EXPECT_EQ(IdOf(script.Get(), member.name, id), S_OK);
                    std::wstring upper = member.name;
                    CharUpperW(upper.data());
                    DISPID again = DISPID_UNKNOWN;
                    EXPECT_EQ(IdOf(script.Get(), upper, again), S_OK)
                        << "scripts write names in any letter case";
                    EXPECT_EQ(again, id);
                }
            }
        }
    }
}

TEST_F(MembersTest, AreReadByTheirNumberFromEveryInterfaceOfTheirObject) {
    const auto subjects = Scriptables();
    const Supply supply = SupplyOf(subjects);
    for (const Subject& subject : subjects) {
        for (const Interface& asked : InterfacesOf(subject)) {
            const auto script = Face(subject, asked);
            for (const Interface& face : InterfacesOf(subject)) {
                for (const Member& member : face.members) {
                    if (member.kind != INVOKE_PROPERTYGET) {
                        continue;
                    }
                    SCOPED_TRACE(subject.name + ": " + Title(face, member) + " from " + Narrow(asked.name));
                    Arguments here(member, Fill::Something, supply);
                    Arguments there(member, Fill::Something, supply);
                    EXPECT_EQ(here.BySlot(Face(subject, face).Get()), there.ByName(script.Get()));
                }
            }
        }
    }
}

} // namespace
