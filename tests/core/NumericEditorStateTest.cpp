#include "core/NumericEditorState.h"

#include "core/Numbers.h"
#include "core/RunTimeError.h"
#include "Thrown.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>

namespace tam {
namespace {

using Kind = KeyAnswer::Kind;

/// Stands for the locale's conversion of a user who writes 0,5.
float CommaSingle(std::wstring_view text) {
    std::wstring plain(text);
    if (plain.find_first_of(L"0123456789") == std::wstring::npos) {
        throw RunTimeError(RunTime::TypeMismatch);
    }
    std::replace(plain.begin(), plain.end(), L',', L'.');
    return static_cast<float>(Val(plain));
}

NumericEditorState State(const std::wstring& value, const std::wstring& genType = L"SignedNumeric",
                         const std::wstring& min = L"-100", const std::wstring& separator = L".",
                         const std::wstring& invalid = L"") {
    return NumericEditorState({value, GeneralTypeOf(genType), min, invalid, separator, &CommaSingle});
}

/// Whether the box receives the key, with "[" and "]" around what is selected
/// and "|" for the caret.
bool Takes(const NumericEditorState& state, wchar_t key, std::wstring marked) {
    EditText edit;
    const auto caret = marked.find(L'|');
    if (caret != std::wstring::npos) {
        marked.erase(caret, 1);
        edit = {marked, caret, caret};
    } else {
        const auto start = marked.find(L'[');
        const auto end = marked.find(L']') - 1;
        std::erase_if(marked, [](wchar_t c) { return c == L'[' || c == L']'; });
        edit = {marked, start, end};
    }
    return state.Key(key, edit).kind == Kind::PassOn;
}

TEST(NumericEditorStateTest, TakesDigitsAndRefusesOtherKeys) {
    const auto state = State(L"1");
    for (const wchar_t digit : std::wstring(L"0123456789")) {
        EXPECT_TRUE(Takes(state, digit, L"12|"));
    }
    for (const wchar_t other : std::wstring(L"aEe+, /:%'\t")) {
        EXPECT_FALSE(Takes(state, other, L"12|")) << static_cast<int>(other);
    }
}

TEST(NumericEditorStateTest, LetsTheClipboardKeysThrough) {
    const auto state = State(L"1");
    for (const wchar_t command : {L'\x01', L'\x03', L'\x16', L'\x18', L'\x1A'}) {
        EXPECT_TRUE(Takes(state, command, L"12|"));
    }
}

TEST(NumericEditorStateTest, RefusesADigitPastTheDigitsThatANumberKeeps) {
    const auto scaled = State(L"1");
    EXPECT_TRUE(Takes(scaled, L'5', L"-1234567.8901234|"));
    EXPECT_FALSE(Takes(scaled, L'6', L"123456789012345|"));
    EXPECT_TRUE(Takes(scaled, L'6', L"12345678901234[5]"));
    const auto single = State(L"1", L"Float");
    EXPECT_TRUE(Takes(single, L'6', L"123456789012345|"));
    EXPECT_TRUE(Takes(single, L'6', std::wstring(38, L'9') + L"|"));
    EXPECT_FALSE(Takes(single, L'6', std::wstring(39, L'9') + L"|"));
}

TEST(NumericEditorStateTest, TakesADigitThatShortensATextThatIsTooLongAlready) {
    const auto state = State(L"1");
    EXPECT_TRUE(Takes(state, L'7', L"[12]345678901234567890"));
    EXPECT_TRUE(Takes(state, L'7', L"[1]2345678901234567890"));
    EXPECT_FALSE(Takes(state, L'7', L"12345678901234567890|"));
}

TEST(NumericEditorStateTest, RefusesADigitBeforeTheSign) {
    const auto state = State(L"1");
    EXPECT_FALSE(Takes(state, L'5', L"|-3"));
    EXPECT_TRUE(Takes(state, L'5', L"[-]3"));
    EXPECT_TRUE(Takes(state, L'5', L"-|3"));
}

TEST(NumericEditorStateTest, TakesTheDecimalMarkOnceAndAtTheEnd) {
    const auto state = State(L"1");
    EXPECT_TRUE(Takes(state, L'.', L"12|"));
    EXPECT_TRUE(Takes(state, L'.', L"|"));
    EXPECT_FALSE(Takes(state, L'.', L"1|2"));
    EXPECT_FALSE(Takes(state, L'.', L"1.2|"));
    EXPECT_TRUE(Takes(state, L'.', L"[1.2]"));
    EXPECT_FALSE(Takes(state, L'.', L"1[2]"));
    const auto comma = State(L"1", L"Float", L"", L",");
    EXPECT_TRUE(Takes(comma, L',', L"12|"));
    EXPECT_FALSE(Takes(comma, L'.', L"12|"));
}

TEST(NumericEditorStateTest, TakesTheSignAtTheStartOfATypeWithNegatives) {
    const auto state = State(L"1");
    EXPECT_TRUE(Takes(state, L'-', L"|"));
    EXPECT_TRUE(Takes(state, L'-', L"|12"));
    EXPECT_FALSE(Takes(state, L'-', L"1|2"));
    EXPECT_FALSE(Takes(state, L'-', L"|-12"));
    EXPECT_TRUE(Takes(state, L'-', L"[-12]"));
    EXPECT_TRUE(Takes(state, L'-', L"[-1]2"));
    EXPECT_FALSE(Takes(State(L"1", L"SignedNumeric", L"0"), L'-', L"|"));
    EXPECT_FALSE(Takes(State(L"1", L"UnsignedNumeric", L""), L'-', L"|"));
    EXPECT_TRUE(Takes(State(L"1", L"Float", L""), L'-', L"|"));
    EXPECT_TRUE(Takes(State(L"1", L"UnsignedNumeric", L"\r\n  -5 "), L'-', L"|"));
    EXPECT_FALSE(Takes(State(L"1", L"UnsignedNumeric", L" "), L'-', L"|"));
}

TEST(NumericEditorStateTest, EscapeGoesBackToTheCurrentValue) {
    const auto answer = State(L"1.5", L"Float", L"", L",").Key(kEscape, {L"99", 2, 2});
    EXPECT_EQ(answer.kind, Kind::Replace);
    EXPECT_EQ(answer.edit, (EditText{L"1,5", 0, 3}));
}

TEST(NumericEditorStateTest, EnterConfirmsAndBackspaceShortens) {
    EXPECT_EQ(State(L"1").Key(kEnter, {L"9", 1, 1}).kind, Kind::Confirm);
    const auto answer = State(L"1").Key(kBackspace, {L"98", 2, 2});
    EXPECT_EQ(answer.kind, Kind::Replace);
    EXPECT_EQ(answer.edit, (EditText{L"9", 1, 1}));
}

TEST(NumericEditorStateTest, TakesAPastedTextWholeOrNotAtAll) {
    const auto state = State(L"1");
    EXPECT_EQ(state.Insertion(L"-12.5", {L"7", 0, 1}), L"-12.5");
    EXPECT_EQ(state.Insertion(L" 12\r\n", {L"", 0, 0}), L"12");
    EXPECT_EQ(state.Insertion(L"", {L"7", 0, 1}), L"");
    EXPECT_EQ(state.Insertion(L" \t\r\n", {L"7", 0, 1}), std::nullopt);
    EXPECT_EQ(state.Insertion(L"12a", {L"", 0, 0}), std::nullopt);
    EXPECT_EQ(state.Insertion(L"1,5", {L"", 0, 0}), std::nullopt);
    EXPECT_EQ(state.Insertion(L"1.5", {L"0.5", 3, 3}), std::nullopt);
    EXPECT_EQ(state.Insertion(L"-1", {L"5", 1, 1}), std::nullopt);
    EXPECT_EQ(state.Insertion(std::wstring(16, L'1'), {L"", 0, 0}), std::nullopt);
}

TEST(NumericEditorStateTest, FindsANumberAboveTheLimit) {
    const auto state = State(L"1");
    EXPECT_EQ(state.AboveLimit(L"101", L"100"), L"100");
    EXPECT_EQ(state.AboveLimit(L"100.1", L"100,0"), L"100.0");
    EXPECT_EQ(state.AboveLimit(L"100", L"100"), std::nullopt);
    EXPECT_EQ(state.AboveLimit(L"1000", L""), std::nullopt);
}

TEST(NumericEditorStateTest, ComparesInTheLocaleOfADecimalComma) {
    const auto state = State(L"1", L"Float", L"", L",");
    EXPECT_EQ(state.AboveLimit(L"12,6", L"12.5"), L"12,5");
    EXPECT_EQ(state.AboveLimit(L"12,4", L"12.5"), std::nullopt);
}

TEST(NumericEditorStateTest, ComparesWithADecimalCommaInSinglePrecisionOnly) {
    const auto comma = State(L"1", L"Float", L"", L",");
    EXPECT_EQ(comma.AboveLimit(L"16777217", L"16777216"), std::nullopt);
    EXPECT_TRUE(comma.Confirm(L"16777216", L"16777217").accepted);
    const auto point = State(L"1", L"Float", L"");
    EXPECT_EQ(point.AboveLimit(L"16777217", L"16777216"), L"16777216");
    EXPECT_FALSE(point.Confirm(L"16777216", L"16777217").accepted);
}

TEST(NumericEditorStateTest, FindsNothingAboveALimitInATextThatIsNoNumberYet) {
    const auto state = State(L"1", L"SignedNumeric", L"-10", L",");
    for (const wchar_t* text : {L"", L"-", L",", L"-,"}) {
        EXPECT_EQ(state.AboveLimit(text, L"-5"), std::nullopt);
    }
}

TEST(NumericEditorStateTest, EnablesOkForAnyTextButTheDecimalMarkAlone) {
    const auto state = State(L"1", L"Float", L"", L",");
    EXPECT_FALSE(state.IsOkEnabled(L""));
    EXPECT_FALSE(state.IsOkEnabled(L","));
    EXPECT_TRUE(state.IsOkEnabled(L"."));
    EXPECT_TRUE(state.IsOkEnabled(L"-"));
    EXPECT_TRUE(state.IsOkEnabled(L"5"));
}

TEST(NumericEditorStateTest, OkPutsAZeroBeforeALeadingMark) {
    const auto comma = State(L"1", L"Float", L"", L",");
    EXPECT_EQ(comma.Confirm(L",5", L"").text, L"0,5");
    EXPECT_EQ(comma.Confirm(L"-,5", L"").text, L"-0,5");
    const auto point = State(L"1");
    EXPECT_EQ(point.Confirm(L".5", L"").text, L"0.5");
    EXPECT_EQ(point.Confirm(L"-.5", L"").text, L"-0.5");
    EXPECT_EQ(point.Confirm(L"12.50", L"").text, L"12.50");
    EXPECT_EQ(point.Confirm(L".5", std::nullopt).text, L"0.5")
        << "an invalid value is written like any other";
}

TEST(NumericEditorStateTest, OkRefusesANumberBelowTheLimit) {
    const auto refused = State(L"1").Confirm(L"-100.5", L"-100");
    EXPECT_FALSE(refused.accepted);
    EXPECT_EQ(refused.text, L"-100");
    EXPECT_TRUE(State(L"1").Confirm(L"-100", L"-100").accepted);
    EXPECT_TRUE(State(L"1").Confirm(L"-1000", L"").accepted);
    EXPECT_EQ(State(L"1", L"Float", L"", L",").Confirm(L"0,1", L"0.5").text, L"0,5");
}

TEST(NumericEditorStateTest, OkTakesTheInvalidValueWithoutALimit) {
    const auto outcome = State(L"1").Confirm(L"-999", std::nullopt);
    EXPECT_TRUE(outcome.accepted);
    EXPECT_EQ(outcome.text, L"-999");
    EXPECT_EQ(State(L"1").Confirm(L"NaN", std::nullopt).text, L"NaN");
    EXPECT_EQ(State(L"1", L"Float", L"", L",").Confirm(L"n/a", std::nullopt).text, L"n/a");
}

TEST(NumericEditorStateTest, OkFailsOnATextThatIsNoNumber) {
    EXPECT_EQ(ErrorOf([] { State(L"1").Confirm(L"-", L""); }), kTypeMismatch);
    EXPECT_EQ(ErrorOf([] { State(L"1").Confirm(L"-.", L""); }), kTypeMismatch);
}

TEST(NumericEditorStateTest, OpensInvalidWhenTheValueIsTheInvalidOne) {
    EXPECT_TRUE(State(L"327.67", L"SignedNumeric", L"", L",", L"327,67").OpensInvalid());
    EXPECT_FALSE(State(L"1", L"SignedNumeric", L"", L".", L"327.67").OpensInvalid());
    EXPECT_FALSE(State(L"", L"SignedNumeric", L"", L".", L"").OpensInvalid());
}

TEST(NumericEditorStateTest, KnowsAFloatByItsExactGeneralType) {
    EXPECT_TRUE(State(L"1", L"Float").IsFloat());
    EXPECT_FALSE(State(L"1", L"float").IsFloat());
}

} // namespace
} // namespace tam
