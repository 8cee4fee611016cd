// The menus as the program's resources hold them, and that no entry is without a test.

#include "tests/view/Fixture.h"

#include <algorithm>
#include <cstddef>
#include <cwctype>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace viewtest {

namespace {

struct Entry {
    UINT id;
    std::wstring text;
};

class MenuTest : public ViewTest {
  protected:
    MenuTest()
        : program_(LoadLibraryExW((benchtest::ProgramFolder() + L"tamview.exe").c_str(), nullptr,
                                  LOAD_LIBRARY_AS_DATAFILE)) {}
    ~MenuTest() override { FreeLibrary(program_); }

    void SetUp() override {
        ASSERT_NE(nullptr, program_);
        for (const int menu : {IDR_MENU, IDR_LIST_MENU}) {
            const HMENU loaded = LoadMenuW(program_, MAKEINTRESOURCEW(menu));
            ASSERT_NE(nullptr, loaded) << menu;
            Read(loaded);
            DestroyMenu(loaded);
        }
    }

    /// Each menu and menu within a menu as the entries that it shows.
    std::vector<std::vector<Entry>> menus_;
    HMODULE program_;

  private:
    void Read(HMENU menu) {
        std::vector<Entry> entries;
        for (int i = 0; i < GetMenuItemCount(menu); ++i) {
            wchar_t text[128] = {};
            GetMenuStringW(menu, static_cast<UINT>(i), text, 128, MF_BYPOSITION);
            const HMENU inner = GetSubMenu(menu, i);
            if (inner != nullptr) {
                Read(inner);
                entries.push_back({0, text});
            } else if (GetMenuItemID(menu, i) != 0) {
                entries.push_back({GetMenuItemID(menu, i), text});
            }
        }
        menus_.push_back(std::move(entries));
    }
};

wchar_t AccessKey(const std::wstring& text) {
    const std::size_t mark = text.find(L'&');
    return mark != std::wstring::npos && mark + 1 < text.size()
               ? static_cast<wchar_t>(std::towlower(static_cast<wint_t>(text[mark + 1])))
               : L'\0';
}

TEST_F(MenuTest, EachEntryHasAnAccessKeyOfItsOwn) {
    for (const std::vector<Entry>& menu : menus_) {
        std::map<wchar_t, std::wstring> keys;
        for (const Entry& entry : menu) {
            if (entry.id == IDM_FILE_RECENT || entry.id == IDM_FILE_MODULE || entry.text.empty()) {
                continue; // a word that stands for no file, and the menu of a list as a whole
            }
            const wchar_t key = AccessKey(entry.text);
            EXPECT_NE(L'\0', key) << Narrow(entry.text);
            const auto [other, isNew] = keys.try_emplace(key, entry.text);
            EXPECT_TRUE(isNew) << Narrow(entry.text) << " has the key of " << Narrow(other->second);
        }
    }
}

TEST_F(MenuTest, AKeyThatAnEntryNamesIsItsOwn) {
    std::map<std::wstring, UINT> keys;
    for (const std::vector<Entry>& menu : menus_) {
        for (const Entry& entry : menu) {
            const std::size_t tab = entry.text.find(L'\t');
            if (tab != std::wstring::npos) {
                const auto [other, isNew] = keys.try_emplace(entry.text.substr(tab + 1), entry.id);
                EXPECT_TRUE(isNew || other->second == entry.id) << Narrow(entry.text);
            }
        }
    }
    EXPECT_GT(keys.size(), 15U);
}

// A new entry belongs into this list together with a test of what it does.
TEST_F(MenuTest, NoEntryIsWithoutATest) {
    const std::set<UINT> tested = {
        // OpeningTest
        IDM_FILE_OPEN, IDM_FILE_RECENT, IDM_FILE_RELOAD,
        // FileCloseTest
        IDM_FILE_CLOSE,
        // SavingTest, ExportTest, ClosingTest
        IDM_FILE_SAVE, IDM_FILE_SAVE_AS, IDM_FILE_SAVE_STREAM, IDM_FILE_EXPORT_IMAGE, IDM_FILE_EXPORT_INTEROP,
        IDM_FILE_EXPORT_SHEET, IDM_FILE_EXPORT_PNG, IDM_FILE_EXPORT_SVG, IDM_FILE_EXIT,
        // HistoryTest, EditorTest, GridTest
        IDM_EDIT_UNDO, IDM_EDIT_REDO, IDM_EDIT_VALUE, IDM_EDIT_CELL, IDM_EDIT_COPY, IDM_EDIT_SELECT_ALL,
        IDM_EDIT_CLEAR_FILTER, IDM_VIEW_ATTRIBUTES, IDM_VIEW_INPUTS, IDM_VIEW_OUTPUTS, IDM_VIEW_CATALOGUE,
        IDM_VIEW_SI, IDM_VIEW_US,
        // ProjectTest
        IDM_FILE_MODULE,
        // ListKeysTest
        IDM_VIEW_SORT, IDM_VIEW_SORT + 1, IDM_VIEW_SORT + 2, IDM_VIEW_SORT + 3, IDM_VIEW_SORT + 4,
        IDM_VIEW_SORT + 5, IDM_VIEW_SORT + 6, IDM_VIEW_SORT + 7,
        // ColumnsTest
        IDM_VIEW_FIT_COLUMNS, IDM_VIEW_NEXT_COLUMN, IDM_VIEW_PREVIOUS_COLUMN, IDM_VIEW_WIDER,
        IDM_VIEW_NARROWER,
        // SheetTest
        IDM_VIEW_SHEET, IDM_VIEW_ZOOM_IN, IDM_VIEW_ZOOM_OUT, IDM_VIEW_ZOOM_FIT, IDM_VIEW_ZOOM_ACTUAL,
        // FindingsTest
        IDM_VIEW_FINDINGS, IDM_VIEW_SOURCE, IDM_VIEW_NEXT_FINDING, IDM_VIEW_PREVIOUS_FINDING,
        // SearchingTest
        IDM_EDIT_FIND, IDM_EDIT_FIND_NEXT, IDM_EDIT_FIND_PREVIOUS,
        // KeyboardTest
        IDM_EDIT_FILTER, IDM_VIEW_NEXT_PART, IDM_VIEW_PREVIOUS_PART, IDM_VIEW_NEXT_SPLITTER,
        IDM_VIEW_PREVIOUS_SPLITTER, IDM_HELP_KEYS, IDM_HELP_ABOUT,
        // ManyPointsTest
        IDM_VIEW_STOP};
    std::set<UINT> found;
    for (const std::vector<Entry>& menu : menus_) {
        for (const Entry& entry : menu) {
            if (entry.id != 0 && entry.id != static_cast<UINT>(-1)) {
                found.insert(entry.id);
            }
        }
    }
    EXPECT_EQ(tested, found);
}

// Another language has another resource: no text of the title or of an entry that is made
// at run time stands elsewhere.
TEST_F(MenuTest, TextsThatAreMadeUpComeFromTheResource) {
    const auto text = [&](UINT id) {
        wchar_t form[128] = {};
        return std::wstring(form, static_cast<std::size_t>(LoadStringW(program_, id, form, 128)));
    };
    const auto made = [&](UINT id, const std::wstring& first, const std::wstring& second) {
        std::wstring words = text(id);
        for (const auto& [place, what] : {std::pair(L"%1", first), {L"%2", second}}) {
            for (std::size_t at = 0; (at = words.find(place)) != std::wstring::npos;) {
                words.replace(at, 2, what);
            }
        }
        return words;
    };
    Viewer viewer({OwnSample(L"channels.xml")});
    AwaitAttributes(viewer, kAttributes);
    EXPECT_EQ(made(IDS_TITLE_OF, L"channels.xml", text(IDS_TITLE)), viewer.Title());
    viewer.SetCell(IDC_ATTRIBUTES, L"AI1_Channel", L"6");
    EXPECT_EQ(made(IDS_TITLE_UNSAVED, L"channels.xml", text(IDS_TITLE)), viewer.Title());
    EXPECT_EQ(L"channels.xml * - Module View", viewer.Title());
    EXPECT_EQ(L"&1  Name\tCtrl+Shift+1", made(IDS_SORT_ENTRY, L"1", L"Name"));
}

} // namespace

} // namespace viewtest
