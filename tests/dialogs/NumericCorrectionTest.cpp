// What the numeric editor corrects, whichever way a text gets into its box.

#include "common/resource.h"
#include "tests/dialogs/Driver.h"
#include "tests/dialogs/HostPoint.h"

#include <string>
#include <utility>
#include <vector>

namespace dialogs {
namespace {

using support::Local;

class NumericCorrectionTest : public DialogTest {
  protected:
    void Edit(const HostPoint& point, Script script) {
        const auto module = NewModule().As<ITamDialogs>();
        Next(std::move(script));
        EXPECT_EQ(module->EditValue(point.object.Get()), S_OK);
    }
    /// The limit is in the box, all of it selected, and was told once.
    void ExpectCorrected(const Shown& dialog, const std::wstring& limit) {
        SCOPED_TRACE(::testing::PrintToString(limit));
        EXPECT_EQ(dialog.Text(kValueBox), limit);
        EXPECT_EQ(dialog.Selection(kValueBox), std::make_pair(0, static_cast<int>(limit.size())));
        EXPECT_TRUE(dialog.IsEnabled(IDOK));
        support::ExpectOnlyBox(TakeMessages(), L"The value is greater than " + limit, L"Gateway Object");
    }
    /// The message boxes so far; the dialogs around them are left out.
    std::vector<bench::Box> TakeMessages() {
        std::vector<bench::Box> messages = Messages();
        std::erase_if(messages, [](const bench::Box& box) { return !box.isMessageBox; });
        return messages;
    }
};

TEST_F(NumericCorrectionTest, AfterBackspace) {
    HostPoint cold(L"Cold", L"-12", L"SignedNumeric");
    cold.type->AddText(L"Max", L"-5");
    Edit(cold, [this](Shown& dialog) {
        dialog.Select(kValueBox, 3, 3);
        dialog.Type(kValueBox, L"\b");
        ExpectCorrected(dialog, L"-5");
        dialog.Click(IDCANCEL);
    });
}

TEST_F(NumericCorrectionTest, AfterEscape) {
    HostPoint high(L"High", L"2000", L"Float");
    high.type->AddText(L"Max", L"1000.25");
    Edit(high, [this](Shown& dialog) {
        EXPECT_EQ(dialog.Text(kValueBox), L"2000") << "what is there at opening stays";
        dialog.Type(kValueBox, L"7");
        dialog.Type(kValueBox, L"\x1B");
        ExpectCorrected(dialog, Local(L"1000.25"));
        dialog.Click(IDOK);
    });
    EXPECT_EQ(high.writes, std::vector<std::wstring>{Local(L"1000.25")});
}

TEST_F(NumericCorrectionTest, AfterPasting) {
    HostPoint speed(L"Speed", L"40", L"UnsignedNumeric");
    speed.type->AddText(L"Max", L"100");
    Edit(speed, [this](Shown& dialog) {
        dialog.Paste(kValueBox, L"101");
        ExpectCorrected(dialog, L"100");
        SetWindowTextW(dialog.Control(kValueBox), L"4711");
        ExpectCorrected(dialog, L"100");
        dialog.Click(IDCANCEL);
    });
}

TEST_F(NumericCorrectionTest, NothingWhileTheInvalidValueIsTicked) {
    HostPoint speed(L"Speed", L"40", L"UnsignedNumeric");
    speed.type->AddText(L"Max", L"100");
    speed.type->AddText(L"InvalidValue", L"255");
    Edit(speed, [](Shown& dialog) {
        dialog.Click(IDC_INVALID);
        EXPECT_EQ(dialog.Text(kValueBox), L"255");
        dialog.Click(IDOK);
    });
    EXPECT_EQ(speed.writes, std::vector<std::wstring>{L"255"});
}

TEST_F(NumericCorrectionTest, NoInvalidValueThatIsAWord) {
    HostPoint speed(L"Speed", L"40", L"Float");
    speed.type->AddText(L"Min", L"0");
    speed.type->AddText(L"InvalidValue", L"NaN");
    Edit(speed, [](Shown& dialog) {
        dialog.Click(IDC_INVALID);
        EXPECT_EQ(dialog.Text(kValueBox), L"NaN");
        dialog.Click(IDOK);
    });
    EXPECT_EQ(speed.writes, std::vector<std::wstring>{L"NaN"});
}

TEST_F(NumericCorrectionTest, PutsAZeroBeforeTheMarkOfAnInvalidValueToo) {
    HostPoint speed(L"Speed", L"40", L"Float");
    speed.type->AddText(L"Min", L"1");
    speed.type->AddText(L"InvalidValue", L"-.5");
    Edit(speed, [](Shown& dialog) {
        dialog.Click(IDC_INVALID);
        EXPECT_EQ(dialog.Text(kValueBox), Local(L"-.5"));
        dialog.Click(IDOK);
    });
    EXPECT_EQ(speed.writes, std::vector<std::wstring>{Local(L"-0.5")});
}

TEST_F(NumericCorrectionTest, TheMaximumIsReadAtEachChangeAndTheMinimumAtOk) {
    HostPoint speed(L"Speed", L"40", L"SignedNumeric");
    std::wstring min = L"0";
    std::wstring max = L"100";
    speed.type->Add(L"Min", [&](auto) { return com::Variant(min); });
    speed.type->Add(L"Max", [&](auto) { return com::Variant(max); });
    Edit(speed, [&](Shown& dialog) {
        max = L"50";
        dialog.Type(kValueBox, L"51");
        ExpectCorrected(dialog, L"50");
        min = L"45.5";
        max = L"";
        dialog.Type(kValueBox, L"44");
        EXPECT_TRUE(TakeMessages().empty());
        dialog.Click(IDOK);
        EXPECT_EQ(dialog.Text(kValueBox), Local(L"45.5"));
        EXPECT_EQ(dialog.Selection(kValueBox), std::make_pair(0, 4));
        support::ExpectOnlyBox(TakeMessages(), L"The value is less than " + Local(L"45.5"),
                               L"Gateway Object");
        min = L"";
        dialog.Type(kValueBox, L"1");
        dialog.Click(IDOK);
    });
    EXPECT_EQ(speed.writes, std::vector<std::wstring>{L"1"});
}

} // namespace
} // namespace dialogs
