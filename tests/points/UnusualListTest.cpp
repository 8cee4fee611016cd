#include "tests/points/Points.h"
#include "tests/support/Recorder.h"

#include <cstddef>
#include <string>
#include <vector>

using namespace support;
using namespace points;

namespace {

/// Merging with a list that is not the component's own.
class UnusualListTest : public PointsTest {
  protected:
    /// It knows nothing but its entries.
    com::Ref<Recorder> other = Recorder::Make(L"list", {&__uuidof(ICompatibleSNVTs)});
    std::vector<com::Ref<Recorder>> entries;

    void Give(std::initializer_list<const wchar_t*> ids) {
        entries.clear();
        for (const wchar_t* id : ids) {
            entries.push_back(Recorder::Make(L"entry", {&__uuidof(ICompatibleSNVT)}));
            entries.back()->Set(L"ID", id);
        }
        other->RefuseOthers();
        other->Set(L"Count", static_cast<long>(entries.size()));
        other->On(L"get Item", [this](const Invocation& call) {
            return call.Answer(entries.at(static_cast<std::size_t>(call.Input(0).lVal) - 1));
        });
    }
    com::Ref<ICompatibleSNVTs> Own(const std::wstring& ids) {
        module = WithInputs(L"<In1><SNVTCOMPATIBILITYLIST>" + ids + L"</SNVTCOMPATIBILITYLIST></In1>");
        return Object(Input(module, L"1"), &IInput::get_SNVTCompatibles);
    }
    std::wstring Merged(const std::wstring& ids, const CalledFrom& = {}) {
        com::Ref<ICompatibleSNVTs> result;
        EXPECT_EQ(Own(ids)->Merge(other->As<ICompatibleSNVTs>().Get(), result.Put()), S_OK);
        return result ? Text(result, &ICompatibleSNVTs::ToString) : L"(none)";
    }
};

TEST_F(UnusualListTest, MergesInTheOthersOrder) {
    Give({L"3", L"2", L"9", L"3"});
    EXPECT_EQ(Merged(L"1,2,3"), L"3,2");
}

TEST_F(UnusualListTest, TakesAnIdentifierAsAWhole) {
    // No identifier of the own list has a comma or is empty: such entries have
    // no counterpart, and they do not end or split the walk.
    Give({L"1,2", L"", L"3"});
    EXPECT_EQ(Merged(L"1,2,3"), L"3");
}

TEST_F(UnusualListTest, ComparesExactly) {
    Give({L"a", L" B", L"c"});
    EXPECT_EQ(Merged(L"A, B,c"), L" B,c");
}

TEST_F(UnusualListTest, HandsItsFailureToTheCaller) {
    const auto list = Own(L"1");
    com::Ref<ICompatibleSNVTs> result;
    Give({L"1"});
    other->Refuse(L"get Count", E_ACCESSDENIED);
    EXPECT_EQ(list->Merge(other->As<ICompatibleSNVTs>().Get(), result.Put()), E_ACCESSDENIED);
    EXPECT_FALSE(result);
    other->FailNoMore();
    entries[0].Reset();
    EXPECT_EQ(list->Merge(other->As<ICompatibleSNVTs>().Get(), result.Put()), kObjectNotSet);
    EXPECT_FALSE(result);
}

} // namespace
