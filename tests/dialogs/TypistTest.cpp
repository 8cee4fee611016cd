#include "bench/Typist.h"
#include "tests/dialogs/Driver.h"
#include "tests/dialogs/HostPoint.h"

#include <cstddef>
#include <string>
#include <vector>

namespace dialogs {
namespace {

/// Dialogs that are worked by keys alone, as the bench's are.
class TypistTest : public DialogTest {
  protected:
    void SetUp() override {
        DialogTest::SetUp();
        Watcher().OnBox([](HWND, const bench::Box& box) { return !box.isMessageBox; });
        speed_.type->AddText(L"Max", L"100");
        bits_.type->AddText(L"Length", L"1");
        mode_.type->AddText(L"EnumDesc", L"0,Off;1,On;2,Auto;");
        inner_.SetFields({&deep_, &bits_});
        structure_.SetFields({&speed_, &inner_, &mode_});
    }

    /// Edits the structure by these keys; those that are left afterwards.
    std::wstring TypeInto(const std::wstring& keys) {
        const auto module = NewModule().As<ITamDialogs>();
        bench::Typist typist(bench::ReadKeys(keys));
        EXPECT_EQ(module->EditValue(structure_.object.Get()), S_OK);
        leftOpen_ = typist.LeftOpen().size();
        return typist.Left();
    }
    /// The names that the editors showed, in the order in which they opened.
    std::vector<std::wstring> Opened() {
        std::vector<std::wstring> names;
        for (const bench::Box& box : Boxes()) {
            names.push_back(box.text.substr(0, box.text.find(L'\n')));
        }
        return names;
    }

    HostPoint speed_{L"Speed", L"40", L"UnsignedNumeric"};
    HostPoint deep_{L"Deep", L"1", L"SignedNumeric"};
    HostPoint bits_{L"Bits", L"5", L"Bitfield"};
    HostPoint mode_{L"Mode", L"0", L"Enum"};
    HostPoint inner_{L"Inner", L"in", L"Struct"};
    HostPoint structure_{L"Setpoints", L"whole", L"Struct"};
    std::size_t leftOpen_ = 0;
};

TEST_F(TypistTest, ReachesEveryEditorOfANestedStructure) {
    EXPECT_EQ(TypeInto(L"{F2}55{ENTER}"                    // the field Speed
                       L"{DOWN}{F2}"                       // the structure Inner
                       L" 7{ENTER}"                        // its field Deep
                       L"{DOWN}{SPACE}{RIGHT 6} {ENTER}"   // its field Bits: flips bit 1
                       L"{ENTER}"                          // closes Inner
                       L"{DOWN}{ALT+E}{END}{ENTER}{ENTER}" // the field Mode, then the whole
                       ),
              L"");
    EXPECT_EQ(leftOpen_, 0U);
    EXPECT_EQ(Opened(),
              (std::vector<std::wstring>{L"Setpoints", L"Speed", L"Inner", L"Deep", L"Bits", L"Mode"}));
    EXPECT_EQ(speed_.value, L"55");
    EXPECT_EQ(deep_.value, L"7");
    EXPECT_EQ(bits_.value, L"7");
    EXPECT_EQ(mode_.value, L"2");
    EXPECT_EQ(structure_.writes, std::vector<std::wstring>{L"whole"});
}

TEST_F(TypistTest, CancelsWhateverIsOpenWhenTheKeysHaveRunOut) {
    EXPECT_EQ(TypeInto(L"{DOWN}{F2}{F2}9"), L"");
    EXPECT_EQ(leftOpen_, 3U);
    EXPECT_EQ(Opened(), (std::vector<std::wstring>{L"Setpoints", L"Inner", L"Deep"}));
    EXPECT_EQ(deep_.value, L"1");
    EXPECT_TRUE(structure_.writes.empty());
}

TEST_F(TypistTest, KeepsTheKeysThatNoDialogWasLeftFor) {
    EXPECT_EQ(TypeInto(L"{esc}{tab 2}a{}}"), L"{TAB}{TAB}a{}}");
    EXPECT_EQ(leftOpen_, 0U);
}

} // namespace
} // namespace dialogs
