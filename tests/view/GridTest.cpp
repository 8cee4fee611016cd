// The lists: cells, order, filter, pages.

#include "tests/support/Clipboard.h"
#include "tests/view/Fixture.h"

#include <commctrl.h>

#include <algorithm>
#include <cstddef>
#include <string>

namespace viewtest {

namespace {

class GridTest : public OpenedTest {};

const Texts kInOrder = {L"AI1_Channel", L"AI1_Setup", L"AI1_Offset",  L"AO1_Channel",
                        L"AO1_Setup",   L"AO1_Gain",  L"DI1_Channel", L"DI1_Invert",
                        L"DO1_Channel", L"DO1_MinOn", L"CTX1_Mask"};

TEST_F(GridTest, ShowsAllOfAnAttribute) {
    const int place = viewer_.PlaceOf(IDC_ATTRIBUTES, L"AI1_Offset");
    EXPECT_EQ(2, place);
    EXPECT_EQ(L"147 temp_diff_p", viewer_.Cell(IDC_ATTRIBUTES, place, VIEW_COLUMN_TYPE));
    EXPECT_EQ(L"-0.50", viewer_.Cell(IDC_ATTRIBUTES, place, VIEW_COLUMN_VALUE));
    EXPECT_EQ(Local("-0.50 \xC2\xB0\x43"), viewer_.Cell(IDC_ATTRIBUTES, place, VIEW_COLUMN_DISPLAYED));
    EXPECT_EQ(L"\u00B0C", viewer_.Cell(IDC_ATTRIBUTES, place, VIEW_COLUMN_UNIT));
    EXPECT_EQ(L"11", viewer_.Cell(IDC_ATTRIBUTES, place, VIEW_COLUMN_ADDRESS));
    EXPECT_EQ(L"yes", viewer_.Cell(IDC_ATTRIBUTES, place, VIEW_COLUMN_VISIBLE));
}

TEST_F(GridTest, ShowsWhatAnInputIsWiredTo) {
    EXPECT_EQ((Texts{L"AO1_In1", L"DO1_In1", L"CTX1_In1"}), viewer_.Cells(IDC_INPUTS, VIEW_COLUMN_NAME));
    EXPECT_EQ((Texts{L"1", L"2", L"3"}), viewer_.Cells(IDC_INPUTS, VIEW_COLUMN_ADDRESS));
    EXPECT_EQ(L"DI1_Out", viewer_.ValueOf(IDC_INPUTS, L"DO1_In1"));
    EXPECT_EQ(L"95 switch", viewer_.Cell(IDC_INPUTS, 1, VIEW_COLUMN_TYPE));
}

// As the component has it: seven zeros are a name.
TEST_F(GridTest, UpToSixZerosLeadNowhere) {
    viewer_.Do(IDM_VIEW_INPUTS);
    const auto displayed = [this](const wchar_t* reference) {
        viewer_.SetCell(IDC_INPUTS, L"CTX1_In1", reference);
        return viewer_.Cell(IDC_INPUTS, 2, VIEW_COLUMN_DISPLAYED);
    };
    EXPECT_EQ(L"0000000", displayed(L"0000000"));
    EXPECT_EQ(L"", displayed(L"000000"));
}

TEST_F(GridTest, ShowsTheOutputs) {
    EXPECT_EQ((Texts{L"AI1_Out", L"AO1_Out", L"DI1_Out", L"DO1_Out", L"CTX1_Out"}),
              viewer_.Cells(IDC_OUTPUTS, VIEW_COLUMN_NAME));
    EXPECT_EQ(L"105 temp_p", viewer_.Cell(IDC_OUTPUTS, 0, VIEW_COLUMN_TYPE));
}

TEST_F(GridTest, ItsOrderIsTheFilesUntilAHeadingIsClicked) {
    EXPECT_EQ(kInOrder, viewer_.Cells(IDC_ATTRIBUTES, VIEW_COLUMN_NAME));
    Texts sorted = kInOrder;
    std::sort(sorted.begin(), sorted.end());
    const auto shows = [this](const Texts& names) {
        return [this, names] { return viewer_.Cells(IDC_ATTRIBUTES, VIEW_COLUMN_NAME) == names; };
    };
    viewer_.ClickHeading(IDC_ATTRIBUTES, VIEW_COLUMN_NAME);
    Await("names upward", shows(sorted));
    std::reverse(sorted.begin(), sorted.end());
    viewer_.ClickHeading(IDC_ATTRIBUTES, VIEW_COLUMN_NAME);
    Await("names downward", shows(sorted));
    viewer_.ClickHeading(IDC_ATTRIBUTES, VIEW_COLUMN_NAME);
    Await("the file's order", shows(kInOrder));
}

TEST_F(GridTest, SortsValuesAsNumbers) {
    viewer_.ClickHeading(IDC_ATTRIBUTES, VIEW_COLUMN_VALUE);
    const Texts upward = {L"-0.50", L"0", L"1", L"1.0000", L"1", L"3", L"5.0", L"9", L"13", L"21", L"21"};
    Await("values upward", [&] {
        const Texts values = viewer_.Cells(IDC_ATTRIBUTES, VIEW_COLUMN_VALUE);
        return values.front() == L"-0.50" && values.back() == L"21";
    });
    EXPECT_EQ(upward, viewer_.Cells(IDC_ATTRIBUTES, VIEW_COLUMN_VALUE)) << "equal ones as in the file";
}

TEST_F(GridTest, ShowsWhatIsTypedIntoTheFilter) {
    viewer_.Filter(L"setup");
    EXPECT_EQ((Texts{L"AI1_Setup", L"AO1_Setup"}), viewer_.Cells(IDC_ATTRIBUTES, VIEW_COLUMN_NAME));
    EXPECT_NE(std::wstring::npos, viewer_.Status(VIEW_STATUS_SHOWN).find(L"2")) << "of 11";
    EXPECT_NE(std::wstring::npos, viewer_.Status(VIEW_STATUS_SHOWN).find(L"11"));
    viewer_.Filter(L"setup dcm");
    EXPECT_EQ((Texts{L"AO1_Setup"}), viewer_.Cells(IDC_ATTRIBUTES, VIEW_COLUMN_NAME)) << "as displayed, too";
    viewer_.Filter(L"nothing");
    EXPECT_EQ(0, viewer_.Count(IDC_ATTRIBUTES));
    viewer_.Do(IDM_EDIT_CLEAR_FILTER);
    EXPECT_EQ(kInOrder, viewer_.Cells(IDC_ATTRIBUTES, VIEW_COLUMN_NAME));
}

TEST_F(GridTest, AFieldIsInSightInAListThatIsScrolledSideways) {
    const HWND list = viewer_.Part(IDC_ATTRIBUTES);
    SendMessageW(list, LVM_SETCOLUMNWIDTH, VIEW_COLUMN_NAME, 900);
    const HWND cell = viewer_.BeginCell(IDC_ATTRIBUTES, L"AI1_Channel", L"8");
    RECT field{};
    RECT sight{};
    GetWindowRect(cell, &field);
    GetWindowRect(list, &sight);
    EXPECT_GE(field.left, sight.left);
    EXPECT_LE(field.right, sight.right);
    // Where the column goes away from under the field, the value is entered.
    SendMessageW(list, LVM_SETCOLUMNWIDTH, VIEW_COLUMN_NAME, 100);
    EXPECT_FALSE(IsWindow(cell));
    EXPECT_EQ(L"8", viewer_.ValueOf(IDC_ATTRIBUTES, L"AI1_Channel"));
    EXPECT_EQ(100, SendMessageW(list, LVM_GETCOLUMNWIDTH, VIEW_COLUMN_NAME, 0));
}

TEST_F(GridTest, AnotherFileHasNoPickedRow) {
    viewer_.Do(IDM_VIEW_INPUTS);
    viewer_.Pick(IDC_INPUTS, L"CTX1_In1");
    viewer_.Do(IDM_VIEW_ATTRIBUTES);
    viewer_.Pick(IDC_ATTRIBUTES, L"AI1_Offset");
    viewer_.Do(IDM_FILE_RELOAD);
    EXPECT_EQ(L"CTX1_In1", viewer_.PickedName(IDC_INPUTS)) << "the same file keeps it";
    EXPECT_EQ(L"AI1_Offset", viewer_.PickedName(IDC_ATTRIBUTES));
    viewer_.Drop({Sample(L"full.xml")});
    AwaitAttributes(viewer_, 65);
    EXPECT_EQ(L"", viewer_.PickedName(IDC_INPUTS));
    EXPECT_EQ(0, viewer_.Picked(IDC_ATTRIBUTES)) << "the first one, as in each file";
}

TEST_F(GridTest, EachPageHasItsFilter) {
    viewer_.Filter(L"gain");
    viewer_.Do(IDM_VIEW_INPUTS);
    EXPECT_EQ(L"", viewer_.PartText(IDC_FILTER));
    EXPECT_EQ(kInputs, viewer_.Count(IDC_INPUTS));
    viewer_.Filter(L"ctx");
    EXPECT_EQ(1, viewer_.Count(IDC_INPUTS));
    viewer_.Do(IDM_VIEW_ATTRIBUTES);
    EXPECT_EQ(L"gain", viewer_.PartText(IDC_FILTER));
    EXPECT_EQ((Texts{L"AO1_Gain"}), viewer_.Cells(IDC_ATTRIBUTES, VIEW_COLUMN_NAME));
}

TEST_F(GridTest, AnEntryOfTheMenuShowsAPage) {
    const int pages[][2] = {{IDM_VIEW_INPUTS, IDC_INPUTS},
                            {IDM_VIEW_OUTPUTS, IDC_OUTPUTS},
                            {IDM_VIEW_CATALOGUE, IDC_CATALOGUE},
                            {IDM_VIEW_ATTRIBUTES, IDC_ATTRIBUTES}};
    for (const auto& page : pages) {
        viewer_.Do(page[0]);
        for (const int list : {IDC_ATTRIBUTES, IDC_INPUTS, IDC_OUTPUTS, IDC_CATALOGUE}) {
            EXPECT_EQ(list == page[1], viewer_.IsVisible(list)) << list << " after " << page[0];
        }
        EXPECT_EQ(page[1], viewer_.Focus());
    }
}

TEST_F(GridTest, UnitsChangeWhatIsDisplayedAndNotTheValue) {
    EXPECT_TRUE(viewer_.IsTicked(IDM_VIEW_SI));
    const std::wstring si = viewer_.Status(VIEW_STATUS_UNITS);
    viewer_.Do(IDM_VIEW_US);
    const int place = viewer_.PlaceOf(IDC_ATTRIBUTES, L"AI1_Offset");
    EXPECT_NE(std::wstring::npos, viewer_.Cell(IDC_ATTRIBUTES, place, VIEW_COLUMN_DISPLAYED).find(L"\u00B0F"))
        << Narrow(viewer_.Cell(IDC_ATTRIBUTES, place, VIEW_COLUMN_DISPLAYED));
    EXPECT_EQ(L"-0.50", viewer_.Cell(IDC_ATTRIBUTES, place, VIEW_COLUMN_VALUE));
    EXPECT_TRUE(viewer_.IsTicked(IDM_VIEW_US));
    EXPECT_FALSE(viewer_.IsTicked(IDM_VIEW_SI));
    EXPECT_NE(si, viewer_.Status(VIEW_STATUS_UNITS));
    EXPECT_FALSE(viewer_.IsEnabled(IDM_EDIT_UNDO)) << "a switch of units changes no value";
    viewer_.Do(IDM_VIEW_SI);
    EXPECT_EQ(Local("-0.50 \xC2\xB0\x43"), viewer_.Cell(IDC_ATTRIBUTES, place, VIEW_COLUMN_DISPLAYED));
}

TEST_F(GridTest, SelectsAllAndCopiesThemAsATable) {
    viewer_.Do(IDM_VIEW_INPUTS);
    viewer_.Pick(IDC_INPUTS, 0);
    viewer_.Do(IDM_EDIT_SELECT_ALL);
    viewer_.Do(IDM_EDIT_COPY);
    const support::OpenedClipboard clipboard(nullptr);
    ASSERT_TRUE(clipboard);
    const HANDLE data = GetClipboardData(CF_UNICODETEXT);
    const std::wstring text = data != nullptr ? static_cast<const wchar_t*>(GlobalLock(data)) : L"";
    EXPECT_EQ(3, std::count(text.begin(), text.end(), L'\n')) << Narrow(text);
    EXPECT_TRUE(text.starts_with(L"AO1_In1\t")) << Narrow(text);
    EXPECT_NE(std::wstring::npos, text.find(L"\r\nDO1_In1\t95 switch\tDI1_Out\t")) << Narrow(text);
}

TEST_F(GridTest, ACellThatIsCutOffSaysSo) {
    std::string text = BytesOf(Sample(L"channels.xml"));
    const std::string name = "AI1_Channel" + std::string(600, 'x');
    for (std::size_t at = 0; (at = text.find("AI1_Channel", at)) != std::string::npos; at += name.size()) {
        text.replace(at, 11, name);
    }
    viewer_.Drop({FileWith(L"long.xml", text)});
    Await("the file", [&] { return viewer_.Title().starts_with(L"long.xml"); });
    AwaitAttributes(viewer_, kAttributes);
    const std::wstring cell = viewer_.Cell(IDC_ATTRIBUTES, 0, VIEW_COLUMN_NAME);
    EXPECT_TRUE(cell.starts_with(L"AI1_Channelxxx")) << Narrow(cell);
    EXPECT_LT(cell.size(), name.size());
    EXPECT_TRUE(cell.ends_with(L"x\x2026")) << Narrow(cell);
    EXPECT_EQ(L"AI1_Setup", viewer_.Cell(IDC_ATTRIBUTES, 1, VIEW_COLUMN_NAME));
}

} // namespace

} // namespace viewtest
