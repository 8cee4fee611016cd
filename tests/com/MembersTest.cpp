#include "tests/com/Caller.h"
#include "tests/com/Subjects.h"

#include <functional>

using namespace contract;

namespace {

/// Every member of every interface, as the type library lists them: a member
/// that is added later is tested without a word here.
class MembersTest : public ContractTest {
  protected:
    void SetUp() override {
        ContractTest::SetUp();
        // A dialog that does not take its OK is cancelled.
        Watcher().OnBox([](HWND window, const bench::Box& box) {
            return !box.isMessageBox && PostMessageW(window, WM_COMMAND, IDOK, 0) != FALSE &&
                   PostMessageW(window, WM_COMMAND, IDCANCEL, 0) != FALSE;
        });
        document_ = support::Parse(L"<Host><Name>N</Name></Host>");
    }

    Supply SupplyOf(const std::vector<Subject>& subjects) {
        Supply supply;
        for (const Subject& subject : subjects) {
            supply.objects.push_back(subject.object);
        }
        supply.objects.emplace_back(static_cast<ITamInternalAppObject*>(item_.Get()));
        supply.element = support::Root(document_);
        supply.document = document_;
        return supply;
    }

    /// One member of one object.
    struct Place {
        Family family;
        /// Which of the family's objects it is.
        std::size_t index;
        const Interface& face;
        const Member& member;
        /// Objects of the family for tests that change nothing on them.
        const std::vector<Subject>& subjects;
        const Supply& supply;
    };
    using Body = std::function<void(const Place& place)>;
    void ForEachMember(const Body& body) {
        for (const Family family : kFamilies) {
            const auto subjects = Scriptables(family);
            const Supply supply = SupplyOf(subjects);
            for (std::size_t i = 0; i < subjects.size(); ++i) {
                for (const Interface& face : InterfacesOf(subjects[i])) {
                    for (const Member& member : face.members) {
                        SCOPED_TRACE(subjects[i].name + ": " + Title(face, member));
                        body({family, i, face, member, subjects, supply});
                    }
                }
            }
        }
    }

    /// A member's object made anew, with all that its calls may need.
    struct Fresh {
        std::vector<Subject> subjects;
        Supply supply;
        com::Ref<IDispatch> face;
    };
    Fresh Anew(const Place& place) {
        auto subjects = Scriptables(place.family);
        Supply supply = SupplyOf(subjects);
        auto face = Face(subjects[place.index], place.face);
        return {std::move(subjects), std::move(supply), std::move(face)};
    }

    /// What was shown during a call, in words.
    std::wstring Shown() {
        std::wstring shown;
        for (const bench::Box& box : Boxes()) {
            shown += L"[" + box.caption + L"|" + box.text;
            for (const auto& [id, text] : box.controls) {
                shown += L"|" + text;
            }
            shown += L"]";
        }
        return shown;
    }

    com::Ref<IDispatch> Face(const Subject& subject, const Interface& face) {
        com::Ref<IUnknown> pointer;
        com::Check(subject.object->QueryInterface(face.id, pointer.PutVoid()));
        return com::Ref<IDispatch>(static_cast<IDispatch*>(pointer.Get()));
    }

    /// Calls each member on two models that are alike, once by its slot and
    /// once by its name, and compares all that a caller can see.
    void CompareCalls(Fill fill) {
        std::size_t count = 0;
        ForEachMember([&](const Place& place) {
            const Member& member = place.member;
            const Fresh first = Anew(place);
            Arguments slotArguments(member, fill, first.supply);
            const Outcome bySlot = slotArguments.BySlot(first.face.Get());
            const std::wstring shownBySlot = Shown();

            const Fresh second = Anew(place);
            DISPID id = DISPID_UNKNOWN;
            ASSERT_EQ(IdOf(second.face.Get(), member.name, id), S_OK);
            EXPECT_EQ(id, member.id);
            Arguments nameArguments(member, fill, second.supply);
            const Outcome byName =
                nameArguments.ByName(second.face.Get(), id, static_cast<WORD>(member.kind));
            EXPECT_EQ(bySlot, byName);
            EXPECT_EQ(shownBySlot, Shown());
            ++count;
        });
        EXPECT_GT(count, 200u) << "the library lists fewer members than the host interfaces have";
    }

  private:
    com::Ref<support::ChannelItem> item_ = support::ChannelItem::Make(L"K7", L"AI1");
    support::Document document_;
};

TEST_F(MembersTest, AnswerAlikeBySlotAndByNameWithNothingGiven) {
    CompareCalls(Fill::Nothing);
}

TEST_F(MembersTest, AnswerAlikeBySlotAndByNameWithSomethingGiven) {
    CompareCalls(Fill::Something);
}

TEST_F(MembersTest, RefuseANullOut) {
    std::size_t count = 0;
    ForEachMember([&](const Place& place) {
        const Member& member = place.member;
        for (std::size_t i = 0; i < member.parameters.size(); ++i) {
            if (!member.parameters[i].out) {
                continue;
            }
            const Fresh fresh = Anew(place);
            Arguments arguments(member, Fill::Something, fresh.supply);
            EXPECT_EQ(arguments.BySlot(fresh.face.Get(), static_cast<int>(i)).result, E_POINTER)
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
        const Fresh first = Anew(place);
        Arguments declared(member, Fill::Something, first.supply);
        const Outcome expected = declared.ByName(first.face.Get());
        const std::wstring shown = Shown();
        for (const int flags : {DISPATCH_PROPERTYPUT, DISPATCH_PROPERTYPUTREF,
                                DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF}) {
            const Fresh fresh = Anew(place);
            Arguments arguments(member, Fill::Something, fresh.supply);
            EXPECT_EQ(arguments.ByName(fresh.face.Get(), member.id, static_cast<WORD>(flags)), expected)
                << "flags " << flags;
            EXPECT_EQ(Shown(), shown);
        }
        ++count;
    });
    EXPECT_GT(count, 30u);
}

TEST_F(MembersTest, RefuseAnArgumentTooMany) {
    ForEachMember([&](const Place& place) {
        const Member& member = place.member;
        Arguments arguments(member, Fill::Something, place.supply);
        auto values = arguments.Script();
        values.insert(member.IsWrite() ? values.end() : values.begin(), com::Variant(1L).Get());
        EXPECT_EQ(contract::Invoke(Face(place.subjects[place.index], place.face).Get(), member.id,
                                   static_cast<WORD>(member.kind), values, nullptr, nullptr),
                  DISP_E_BADPARAMCOUNT);
        EXPECT_EQ(Shown(), L"");
    });
}

TEST_F(MembersTest, RefuseAnArgumentTooFew) {
    ForEachMember([&](const Place& place) {
        const Member& member = place.member;
        if (member.Given() == 0 || member.IsWrite() || member.parameters[member.Given() - 1].optional) {
            return;
        }
        Arguments arguments(member, Fill::Something, place.supply);
        auto values = arguments.Script();
        values.erase(values.begin());
        EXPECT_EQ(contract::Invoke(Face(place.subjects[place.index], place.face).Get(), member.id,
                                   static_cast<WORD>(member.kind), values, nullptr, nullptr),
                  DISP_E_BADPARAMCOUNT);
        EXPECT_EQ(Shown(), L"");
    });
}

TEST_F(MembersTest, NameTheArgumentOfTheWrongType) {
    SAFEARRAY* const array = SafeArrayCreateVector(VT_I4, 0, 1);
    std::size_t count = 0;
    ForEachMember([&](const Place& place) {
        const Member& member = place.member;
        for (std::size_t i = 0; i < member.parameters.size(); ++i) {
            const Parameter& parameter = member.parameters[i];
            if (!parameter.in || parameter.out || parameter.type == VT_VARIANT) {
                continue;
            }
            Arguments arguments(member, Fill::Something, place.supply);
            auto values = arguments.Script();
            const std::size_t given = values.size() - 1 - i;
            values[given].vt = VT_ARRAY | VT_I4;
            values[given].parray = array;
            UINT wrong = 99;
            EXPECT_EQ(contract::Invoke(Face(place.subjects[place.index], place.face).Get(), member.id,
                                       static_cast<WORD>(member.kind), values, nullptr, nullptr, &wrong),
                      DISP_E_TYPEMISMATCH);
            EXPECT_EQ(wrong, given) << Narrow(parameter.name);
            EXPECT_EQ(Shown(), L"");
            ++count;
        }
    });
    SafeArrayDestroy(array);
    EXPECT_GT(count, 50u);
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
