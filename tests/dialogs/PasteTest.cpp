// Pasting when the clipboard has nothing for the box: what is there stays.

#include "common/resource.h"
#include "tests/dialogs/Driver.h"
#include "tests/support/Clipboard.h"

#include <functional>
#include <string>
#include <utility>

namespace dialogs {
namespace {

class PasteTest : public DialogTest {
  protected:
    /// Does this in the number box and in the text box; the value that is there
    /// stays, all of it selected.
    void ExpectNothingPasted(const std::function<void(Shown& dialog)>& paste) {
        const auto script = [&paste](Shown& dialog) {
            const std::wstring before = dialog.Text(kValueBox);
            paste(dialog);
            EXPECT_EQ(dialog.Text(kValueBox), before);
            EXPECT_EQ(dialog.Selection(kValueBox), std::make_pair(0, static_cast<int>(before.size())));
            EXPECT_TRUE(dialog.IsEnabled(IDOK));
            dialog.Click(IDOK);
        };
        EXPECT_EQ(Edit(Attribute(kSigned, L"12"), script), L"12");
        EXPECT_EQ(Edit(Attribute(kText, L"hall"), script), L"hall");
    }
};

TEST_F(PasteTest, AnEmptyClipboard) {
    ExpectNothingPasted([](Shown& dialog) {
        {
            const support::OpenedClipboard clipboard(dialog.Window());
            ASSERT_TRUE(clipboard);
            EmptyClipboard();
        }
        dialog.PressPaste(kValueBox);
    });
}

TEST_F(PasteTest, AClipboardOfOtherData) {
    ExpectNothingPasted([](Shown& dialog) {
        {
            const support::OpenedClipboard clipboard(dialog.Window());
            ASSERT_TRUE(clipboard);
            EmptyClipboard();
            EXPECT_NE(SetClipboardData(RegisterClipboardFormatW(L"A drawing"), GlobalAlloc(GMEM_MOVEABLE, 4)),
                      nullptr);
        }
        dialog.PressPaste(kValueBox);
    });
}

TEST_F(PasteTest, AClipboardThatAnotherWindowHasOpen) {
    ExpectNothingPasted([](Shown& dialog) {
        dialog.Copy(L"7");
        const support::OpenedClipboard clipboard(dialog.Window());
        ASSERT_TRUE(clipboard);
        dialog.PressPaste(kValueBox);
    });
}

TEST_F(PasteTest, ATextThatIsEmptyForTheBox) {
    ExpectNothingPasted([](Shown& dialog) {
        dialog.Paste(kValueBox, L"\r\n");
        SendMessageW(dialog.Control(kValueBox), EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(L"\r\n"));
    });
    EXPECT_EQ(Edit(Attribute(kSigned, L"12"),
                   [](Shown& dialog) {
                       dialog.Paste(kValueBox, L" \t ");
                       dialog.Click(IDOK);
                   }),
              L"12");
}

TEST_F(PasteTest, AnEmptyTextFromADriverTakesTheSelectionAway) {
    Edit(Attribute(kSigned, L"12"), [](Shown& dialog) {
        SendMessageW(dialog.Control(kValueBox), EM_REPLACESEL, TRUE, reinterpret_cast<LPARAM>(L""));
        EXPECT_EQ(dialog.Text(kValueBox), L"");
        dialog.Click(IDCANCEL);
    });
}

} // namespace
} // namespace dialogs
