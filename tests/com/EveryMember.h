#pragma once

#include "tests/com/Subjects.h"
#include "tests/support/Caller.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace contract {

/// A test over every member of every interface, as the type library lists
/// them: a member that is added later is tested without a word here.
class EveryMemberTest : public ContractTest {
  protected:
    void SetUp() override;

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
    void ForEachMember(const Body& body);

    Supply SupplyOf(const std::vector<Subject>& subjects);

    /// A member's object made for this call, with all that its calls may need.
    struct Fresh {
        std::vector<Subject> subjects;
        Supply supply;
        com::Ref<IDispatch> face;
    };
    Fresh NewObject(const Place& place);

    /// What was shown during a call, in words.
    std::wstring Shown();

    static com::Ref<IDispatch> Face(const Subject& subject, const Interface& face);
    static com::Ref<IDispatch> Face(const Place& place) {
        return Face(place.subjects[place.index], place.face);
    }

  private:
    com::Ref<ITamInternalAppObject> item_ = ChannelItem(L"K7", L"AI1");
    support::Document document_;
};

} // namespace contract
