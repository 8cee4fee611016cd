// The menus as the program's resources hold them, and that each entry is chosen by some test.

#include "tests/view/Fixture.h"

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

HMODULE LoadProgram() {
    return LoadLibraryExW((benchtest::ProgramFolder() + L"tamview.exe").c_str(), nullptr,
                          LOAD_LIBRARY_AS_DATAFILE);
}

/// What an entry stands for that is one of several, by its first one.
int FirstOf(int entry) {
    for (const auto& [first, last] :
         {std::pair(IDM_FILE_RECENT, IDM_FILE_RECENT_LAST), {IDM_FILE_MODULE, IDM_FILE_MODULE_LAST}}) {
        if (entry >= first && entry <= last) {
            return first;
        }
    }
    return entry;
}

void ReadEntries(HMENU menu, std::map<int, std::wstring>& entries) {
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
        if (const HMENU inner = GetSubMenu(menu, i)) {
            ReadEntries(inner, entries);
        } else if (GetMenuItemID(menu, i) != 0) {
            wchar_t text[128] = {};
            GetMenuStringW(menu, static_cast<UINT>(i), text, 128, MF_BYPOSITION);
            entries[static_cast<int>(GetMenuItemID(menu, i))] = text;
        }
    }
}

/// After the last test: each entry of the menus was chosen by one of them.
class EveryEntry : public testing::Environment {
  public:
    void TearDown() override {
        const testing::UnitTest& all = *testing::UnitTest::GetInstance();
        if (all.test_to_run_count() + all.disabled_test_count() < all.total_test_count()) {
            return; // some of the tests alone
        }
        std::set<int> chosen;
        for (const int command : Viewer::Commands()) {
            chosen.insert(FirstOf(command));
        }
        const HMODULE program = LoadProgram();
        std::map<int, std::wstring> entries;
        for (const int menu : {IDR_MENU, IDR_LIST_MENU}) {
            const HMENU loaded = LoadMenuW(program, MAKEINTRESOURCEW(menu));
            ReadEntries(loaded, entries);
            DestroyMenu(loaded);
        }
        FreeLibrary(program);
        EXPECT_GT(entries.size(), 50U);
        for (const auto& [entry, text] : entries) {
            EXPECT_TRUE(chosen.contains(entry)) << "no test chooses \"" << Narrow(text) << "\"";
        }
    }
};

const auto* const kEveryEntry = testing::AddGlobalTestEnvironment(new EveryEntry);

class MenuTest : public ViewTest {
  protected:
    MenuTest() : program_(LoadProgram()) {}
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
