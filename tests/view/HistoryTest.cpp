// Undo and redo in the window, against a plain list of states.

#include "tests/view/Fixture.h"

#include <cstddef>
#include <iterator>
#include <map>
#include <random>
#include <string>
#include <vector>

namespace viewtest {

namespace {

class HistoryTest : public OpenedTest {
  protected:
    using State = std::map<std::wstring, std::wstring>;

    /// The values of whole-number attributes.
    State Values() const {
        State values;
        const Texts names = viewer_.Cells(IDC_ATTRIBUTES, VIEW_COLUMN_NAME);
        for (std::size_t i = 0; i < names.size(); ++i) {
            if (names[i].ends_with(L"_Channel")) {
                values[names[i]] = viewer_.Cell(IDC_ATTRIBUTES, static_cast<int>(i), VIEW_COLUMN_VALUE);
            }
        }
        return values;
    }
    void Undo() { viewer_.Do(IDM_EDIT_UNDO); }
    void Redo() { viewer_.Do(IDM_EDIT_REDO); }
};

TEST_F(HistoryTest, UndoesAndRedoesAChange) {
    viewer_.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"7");
    Undo();
    EXPECT_EQ(L"1", viewer_.ValueOf(IDC_ATTRIBUTES, L"AI1_Channel"));
    EXPECT_FALSE(viewer_.IsEnabled(IDM_EDIT_UNDO));
    EXPECT_TRUE(viewer_.IsEnabled(IDM_EDIT_REDO));
    Redo();
    EXPECT_EQ(L"7", viewer_.ValueOf(IDC_ATTRIBUTES, L"AI1_Channel"));
    EXPECT_TRUE(viewer_.IsEnabled(IDM_EDIT_UNDO));
    EXPECT_FALSE(viewer_.IsEnabled(IDM_EDIT_REDO));
}

TEST_F(HistoryTest, UndoesTheWorkOfAnEditor) {
    viewer_.Pick(IDC_ATTRIBUTES, L"AI1_Offset");
    viewer_.Begin(IDM_EDIT_VALUE);
    const Box editor = viewer_.NextBox();
    const HWND edit = FindWindowExW(editor.Window(), nullptr, L"Edit", nullptr);
    SendMessageW(edit, EM_SETSEL, 0, -1);
    SendMessageW(edit, WM_CHAR, L'3', 1);
    editor.Press(IDOK);
    Await("the new value", [&] { return viewer_.ValueOf(IDC_ATTRIBUTES, L"AI1_Offset") == L"3"; });
    Undo();
    EXPECT_EQ(L"-0.50", viewer_.ValueOf(IDC_ATTRIBUTES, L"AI1_Offset")) << "as the file writes it";
    Redo();
    EXPECT_EQ(L"3", viewer_.ValueOf(IDC_ATTRIBUTES, L"AI1_Offset"));
}

TEST_F(HistoryTest, GoesOnAcrossASwitchOfUnits) {
    viewer_.SetCell(IDC_ATTRIBUTES, L"AI1_Offset", L"4");
    viewer_.Do(IDM_VIEW_US);
    EXPECT_TRUE(viewer_.IsEnabled(IDM_EDIT_UNDO));
    Undo();
    EXPECT_EQ(L"-0.50", viewer_.ValueOf(IDC_ATTRIBUTES, L"AI1_Offset"));
    viewer_.Do(IDM_VIEW_SI);
    EXPECT_EQ(L"-0.50", viewer_.ValueOf(IDC_ATTRIBUTES, L"AI1_Offset"));
    Redo();
    EXPECT_EQ(L"4", viewer_.ValueOf(IDC_ATTRIBUTES, L"AI1_Offset"));
}

TEST_F(HistoryTest, GoesOnAcrossAFilter) {
    viewer_.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"7");
    viewer_.Filter(L"gain");
    Undo();
    EXPECT_EQ(L"1", viewer_.ValueOf(IDC_ATTRIBUTES, L"AI1_Channel"));
    EXPECT_EQ(L"AI1_Channel", viewer_.PickedName(IDC_ATTRIBUTES)) << "what was undone is in sight";
}

TEST_F(HistoryTest, ShowsThePageOfWhatIsUndone) {
    viewer_.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"7");
    viewer_.Do(IDM_VIEW_INPUTS);
    viewer_.SetCell(IDC_INPUTS, L"CTX1_In1", L"DI1_Out");
    viewer_.Do(IDM_VIEW_OUTPUTS);
    Undo();
    EXPECT_TRUE(viewer_.IsVisible(IDC_INPUTS));
    Undo();
    EXPECT_TRUE(viewer_.IsVisible(IDC_ATTRIBUTES));
}

TEST_F(HistoryTest, AnotherFileHasNoHistory) {
    viewer_.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"7");
    viewer_.Drop({Sample(L"full.xml")});
    viewer_.NextBox().Press(IDNO);
    AwaitAttributes(viewer_, 65);
    EXPECT_FALSE(viewer_.IsEnabled(IDM_EDIT_UNDO));
    EXPECT_FALSE(viewer_.IsEnabled(IDM_EDIT_REDO));
}

TEST_F(HistoryTest, AgreesWithAListOfStates) {
    std::mt19937 random(20261122);
    State now = Values();
    std::vector<State> states = {now};
    std::size_t at = 0;
    for (int i = 0; i < 120; ++i) {
        const auto choice = random() % 12;
        if (choice < 5) {
            const auto point = std::next(now.begin(), static_cast<std::ptrdiff_t>(random() % now.size()));
            const std::wstring value = std::to_wstring(random() % 4);
            viewer_.SetCell(IDC_ATTRIBUTES, point->first, value);
            if (point->second != value) {
                point->second = value;
                states.resize(++at);
                states.push_back(now);
            }
        } else if (choice < 8) {
            Undo();
            at -= at > 0 ? 1U : 0U;
        } else if (choice < 10) {
            Redo();
            at += at + 1 < states.size() ? 1U : 0U;
        } else if (choice == 10) {
            viewer_.Do(random() % 2 == 0 ? IDM_VIEW_US : IDM_VIEW_SI);
        } else {
            // What is undone may be hidden by the filter.
            viewer_.Filter(L"ai1");
            if (random() % 2 == 0) {
                Undo();
                at -= at > 0 ? 1U : 0U;
            } else {
                Redo();
                at += at + 1 < states.size() ? 1U : 0U;
            }
            viewer_.Do(IDM_EDIT_CLEAR_FILTER);
        }
        now = states[at];
        ASSERT_EQ(now, Values()) << "after step " << i;
        ASSERT_EQ(at > 0, viewer_.IsEnabled(IDM_EDIT_UNDO)) << i;
        ASSERT_EQ(at + 1 < states.size(), viewer_.IsEnabled(IDM_EDIT_REDO)) << i;
        ASSERT_EQ(now != states.front(), viewer_.Title().find(L'*') != std::wstring::npos) << i;
    }
}

} // namespace

} // namespace viewtest
