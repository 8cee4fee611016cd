#include "view/model/History.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <iterator>
#include <map>
#include <random>
#include <string>
#include <vector>

using namespace view;

namespace {

PointId Point(const std::wstring& name) {
    return {Kind::Attribute, name};
}

Change Of(const std::wstring& name, const std::wstring& before, const std::wstring& after) {
    return {Point(name), before, after};
}

using Step = std::vector<Change>;

TEST(HistoryTest, HasNothingToUndoAtFirst) {
    History history;
    EXPECT_FALSE(history.CanUndo());
    EXPECT_FALSE(history.CanRedo());
    EXPECT_FALSE(history.IsDirty());
    EXPECT_EQ(nullptr, history.NextUndo());
    EXPECT_EQ(nullptr, history.NextRedo());
    EXPECT_EQ(Step(), history.Undo());
    EXPECT_EQ(Step(), history.Redo());
}

TEST(HistoryTest, UndoesAndRedoesStepByStep) {
    History history;
    history.Add(Of(L"a", L"1", L"2"));
    history.Add(Of(L"a", L"2", L"3"));
    history.Add(Of(L"b", L"x", L"y"));
    EXPECT_EQ((Step{Of(L"b", L"y", L"x")}), history.Undo());
    EXPECT_EQ((Step{Of(L"a", L"3", L"2")}), history.Undo());
    EXPECT_EQ((Step{Of(L"a", L"2", L"3")}), *history.NextRedo());
    EXPECT_EQ((Step{Of(L"a", L"2", L"3")}), history.Redo());
    EXPECT_EQ((Step{Of(L"a", L"3", L"2")}), history.Undo());
    EXPECT_EQ((Step{Of(L"a", L"2", L"1")}), history.Undo());
    EXPECT_FALSE(history.CanUndo());
    EXPECT_TRUE(history.CanRedo());
}

TEST(HistoryTest, ANewStepEndsWhatCouldBeRedone) {
    History history;
    history.Add(Of(L"a", L"1", L"2"));
    history.Undo();
    history.Add(Of(L"b", L"x", L"y"));
    EXPECT_FALSE(history.CanRedo());
    EXPECT_EQ((Step{Of(L"b", L"y", L"x")}), history.Undo());
    EXPECT_FALSE(history.CanUndo());
}

TEST(HistoryTest, AChangeOfNothingIsNoStep) {
    History history;
    history.Add(Of(L"a", L"1", L"2"));
    history.Undo();
    history.Add(Of(L"a", L"1", L"1"));
    history.Add(Step());
    EXPECT_FALSE(history.CanUndo());
    EXPECT_TRUE(history.CanRedo()) << "and it ends no redo";
}

TEST(HistoryTest, UndoesAStepOfSeveralChangesBackwards) {
    History history;
    history.Add(Step{Of(L"a", L"1", L"2"), Of(L"b", L"x", L"x"), Of(L"a", L"2", L"3")});
    EXPECT_EQ((Step{Of(L"a", L"3", L"2"), Of(L"a", L"2", L"1")}), history.Undo());
    EXPECT_FALSE(history.CanUndo());
    EXPECT_FALSE(history.IsDirty());
    EXPECT_EQ((Step{Of(L"a", L"1", L"2"), Of(L"a", L"2", L"3")}), history.Redo());
}

TEST(HistoryTest, KnowsWhatIsUnsaved) {
    History history;
    history.Add(Of(L"a", L"1", L"2"));
    history.Add(Of(L"b", L"x", L"y"));
    EXPECT_TRUE(history.IsDirty());
    EXPECT_TRUE(history.IsUnsaved(Point(L"a")));
    EXPECT_FALSE(history.IsUnsaved(Point(L"c")));
    EXPECT_FALSE(history.IsUnsaved({Kind::Input, L"a"}));
    EXPECT_EQ((std::map<PointId, std::wstring>{{Point(L"a"), L"2"}, {Point(L"b"), L"y"}}), history.Unsaved());
    history.MarkSaved();
    EXPECT_FALSE(history.IsDirty());
    EXPECT_FALSE(history.IsUnsaved(Point(L"a")));
}

TEST(HistoryTest, AChangeBackToTheSavedValueIsNoLongerUnsaved) {
    History history;
    history.Add(Of(L"a", L"1", L"2"));
    history.Add(Of(L"a", L"2", L"1"));
    EXPECT_FALSE(history.IsDirty());
    EXPECT_TRUE(history.CanUndo());
    history.Undo();
    EXPECT_TRUE(history.IsDirty());
    history.Undo();
    EXPECT_FALSE(history.IsDirty());
}

TEST(HistoryTest, UndoPastASaveIsUnsaved) {
    History history;
    history.Add(Of(L"a", L"1", L"2"));
    history.MarkSaved();
    EXPECT_TRUE(history.CanUndo());
    history.Undo();
    EXPECT_TRUE(history.IsUnsaved(Point(L"a")));
    EXPECT_EQ(L"1", history.Unsaved().at(Point(L"a")));
    history.Redo();
    EXPECT_FALSE(history.IsDirty());
}

TEST(HistoryTest, KnowsAllThatWasChangedSavedOrNot) {
    History history;
    history.Add(Of(L"a", L"1", L"2"));
    history.Add(Of(L"b", L"x", L"y"));
    history.MarkSaved();
    history.Add(Of(L"b", L"y", L"z"));
    history.Add(Of(L"c", L"5", L"6"));
    history.Undo();
    EXPECT_EQ(
        (std::map<PointId, std::wstring>{{Point(L"a"), L"2"}, {Point(L"b"), L"z"}, {Point(L"c"), L"5"}}),
        history.Changed());
}

TEST(HistoryTest, ADocumentThatIsOpenedHasNoHistory) {
    History history;
    history.Add(Of(L"a", L"1", L"2"));
    history.Clear();
    EXPECT_FALSE(history.CanUndo());
    EXPECT_FALSE(history.IsDirty());
    history.Add(Of(L"a", L"7", L"8"));
    history.Undo();
    EXPECT_FALSE(history.IsDirty());
}

/// Any walk of changes, undos, redos and saves, against lists of whole states.
TEST(HistoryTest, AgreesWithAListOfWholeStates) {
    using State = std::map<PointId, std::wstring>;
    std::mt19937 random(20260805);
    for (int walk = 0; walk < 50; ++walk) {
        State first;
        for (const wchar_t* name : {L"a", L"b", L"c"}) {
            first[Point(name)] = L"0";
        }
        State now = first;
        State saved = first;
        std::vector<State> states = {first};
        std::size_t at = 0;
        History history;
        for (int i = 0; i < 300; ++i) {
            const auto choice = random() % 10;
            if (choice < 5) {
                auto& [point, value] = *std::next(now.begin(), static_cast<std::ptrdiff_t>(random() % 3));
                const std::wstring after = std::to_wstring(random() % 3);
                history.Add(Change{point, value, after});
                if (value != after) {
                    value = after;
                    states.resize(++at);
                    states.push_back(now);
                }
            } else if (choice < 9) {
                for (const Change& change : choice < 7 ? history.Undo() : history.Redo()) {
                    EXPECT_EQ(change.before, now[change.point]);
                    now[change.point] = change.after;
                }
                at = choice < 7 ? at - (at > 0 ? 1 : 0) : at + (at + 1 < states.size() ? 1 : 0);
            } else {
                history.MarkSaved();
                saved = now;
            }
            ASSERT_EQ(states[at], now) << walk << " " << i;
            ASSERT_EQ(at > 0, history.CanUndo());
            ASSERT_EQ(at + 1 < states.size(), history.CanRedo());
            ASSERT_EQ(saved != now, history.IsDirty());
            for (const auto& [point, value] : history.Changed()) {
                ASSERT_EQ(now[point], value);
            }
            for (const auto& [point, value] : now) {
                ASSERT_EQ(value != saved[point], history.IsUnsaved(point));
            }
        }
    }
}

} // namespace
