// Input: a setup, then events in each of the dialogs: keys, pastes, carets set,
// OK pressed. What the text box holds stays what the editor promises.
#include "core/BitEditorState.h"
#include "core/EnumEditorState.h"
#include "core/ErrorReportState.h"
#include "core/LongText.h"
#include "core/StructureEditorState.h"
#include "core/TextEditorState.h"
#include "Editing.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tam::fuzz {

namespace {

constexpr std::ptrdiff_t kMostDigitsOfFloat = 39;
constexpr std::ptrdiff_t kMostDigits = 15;

std::ptrdiff_t Digits(const std::wstring& text) {
    return std::count_if(text.begin(), text.end(), [](wchar_t c) { return c >= L'0' && c <= L'9'; });
}

/// An optional sign, digits, and the mark once among them: what typing can lead to.
bool IsNumberOnTheWay(const std::wstring& text, wchar_t mark, bool takesMinus) {
    const bool hasMinus = !text.empty() && text.front() == L'-';
    const std::ptrdiff_t marks = std::count(text.begin(), text.end(), mark);
    const auto known = Digits(text) + marks + (hasMinus ? 1 : 0);
    return known == static_cast<std::ptrdiff_t>(text.size()) && marks <= 1 && (takesMinus || !hasMinus);
}

/// What a text box does with a key that it receives.
EditText Typed(const EditText& edit, wchar_t key) {
    constexpr wchar_t kSelectAll = 1;
    constexpr wchar_t kCut = 24;
    if (key == kSelectAll) {
        return AllSelected(edit.text);
    }
    if (key == kCut) {
        return edit.HasSelection() ? WithInsertion(edit, {}) : edit;
    }
    return IsEditingCommand(key) ? edit : WithInsertion(edit, {&key, 1});
}

EditText Answered(const KeyAnswer& answer, const EditText& edit) {
    if (answer.kind == KeyAnswer::Kind::PassOn) {
        return Typed(edit, answer.character);
    }
    return answer.kind == KeyAnswer::Kind::Replace ? answer.edit : edit;
}

void CheckConfirm(const NumericEditorState& state, const NumericEditorState::Setup& setup,
                  const std::wstring& text) {
    const std::wstring withZero = text.starts_with(setup.separator)          ? L"0" + text
                                  : text.starts_with(L"-" + setup.separator) ? L"-0" + text.substr(1)
                                                                             : text;
    try {
        const auto outcome = state.Confirm(text, setup.min);
        Require(Digits(text) > 0);
        Require(outcome.text == (outcome.accepted ? withZero : MoveDecimalMark(setup.min, setup.separator)));
        Require(outcome.accepted || ReadSingle(text) <= ReadSingle(setup.min));
        Require(state.Confirm(text, std::nullopt).text == withZero);
    } catch (const RunTimeError& error) {
        const bool isTooBig = error.Number() == static_cast<std::int32_t>(RunTime::Overflow);
        Require(isTooBig ||
                (error.Number() == static_cast<std::int32_t>(RunTime::TypeMismatch) && Digits(text) == 0));
        Require(!isTooBig || Digits(text) > kMostDigits);
    }
}

void RunNumeric(Input& input) {
    NumericEditorState::Setup setup = AnySetup(input);
    setup.value = std::to_wstring(input.Below(200)) + (input.Below(2) == 0 ? L"" : L".5");
    const NumericEditorState state(setup);
    const wchar_t mark = setup.separator.front();
    const std::ptrdiff_t most = state.IsFloat() ? kMostDigitsOfFloat : kMostDigits;
    EditText edit = AllSelected(state.CurrentValue());
    for (int events = 0; events < 200 && !input.IsAtEnd(); ++events) {
        const std::size_t choice = input.Below(8);
        if (choice == 0) {
            edit = AnyEdit(input, edit.text);
        } else if (choice == 1) {
            const std::wstring pasted = input.Word(8);
            if (const auto inserted = state.Insertion(pasted, edit)) {
                Require(inserted->empty() == pasted.empty());
                edit = WithInsertion(edit, *inserted);
            }
        } else if (choice == 2) {
            CheckConfirm(state, setup, edit.text);
        } else {
            constexpr std::wstring_view kUsual = L"0123456789.,--\x08\x1B";
            const wchar_t key = choice == 3 ? input.Character() : kUsual[input.Below(kUsual.size())];
            edit = Answered(state.Key(key, edit), edit);
        }
        Require(edit.selectionStart <= edit.selectionEnd && edit.selectionEnd <= edit.text.size());
        Require(IsNumberOnTheWay(edit.text, mark, TakesMinus(setup)));
        Require(Digits(edit.text) <= most);
        Require(state.IsOkEnabled(edit.text) == (!edit.text.empty() && edit.text != setup.separator));
        Require(!state.AboveLimit(edit.text, L""));
    }
}

void RunText(Input& input) {
    const TextEditorState state(input.Below(2) == 0 ? L"" : L"Room_1");
    const auto length = static_cast<std::int32_t>(input.Byte()) - 2;
    EditText edit = AllSelected(state.OpeningValue());
    for (int events = 0; events < 200 && !input.IsAtEnd(); ++events) {
        const std::size_t choice = input.Below(8);
        if (choice == 0) {
            edit = AnyEdit(input, edit.text);
        } else if (choice == 1) {
            const std::wstring pasted = input.Word(12);
            if (const auto inserted = TextEditorState::Insertion(pasted)) {
                Require(inserted->empty() == pasted.empty());
                edit = WithInsertion(edit, *inserted);
            }
        } else {
            const wchar_t key = input.Character();
            edit = Answered(state.Key(key, edit), edit);
        }
        if (const auto shortened = TextEditorState::TooLong(edit.text, length)) {
            Require(edit.text.starts_with(shortened->text) && shortened->text.size() < edit.text.size());
            Require(!TextEditorState::TooLong(shortened->text, length));
            edit = CaretAfter(shortened->text);
        }
        Require(length < 0 || edit.text.size() <= static_cast<std::size_t>(length));
        Require(edit.text.find(L' ') == std::wstring::npos);
        Require(edit.selectionStart <= edit.selectionEnd && edit.selectionEnd <= edit.text.size());
    }
}

void RunBits(Input& input) {
    const std::int32_t length = static_cast<std::int32_t>(input.Below(4));
    BitEditorState state(input.Word(10), length);
    Require(state.Count() == (length == 1 ? 8u : 16u));
    while (!input.IsAtEnd()) {
        const std::uint32_t before = state.Number();
        const std::size_t bit = input.Below(state.Count());
        state.Flip(bit);
        Require(state.Number() == (before ^ 1U << bit));
        Require((state.Number() >> bit & 1U) == (*state.Label(bit) == L'1' ? 1U : 0U));
        Require(Val(state.Value()) == state.Number());
        const std::wstring hex = state.Summary().substr(state.Value().size() + 4, state.Count() / 4);
        Require(Val(L"&H" + hex + L"&") == state.Number());
        Require(BitEditorState(state.Value(), length).Number() == state.Number());
    }
}

void RunEnumeration(Input& input) {
    const std::wstring value = input.Word(6);
    try {
        const EnumEditorState state(value, input.Rest());
        for (const EnumEntry& entry : state.Entries()) {
            // Of entries that show the same text the first one's value is written.
            const auto first = std::find_if(state.Entries().begin(), state.Entries().end(),
                                            [&](const EnumEntry& other) { return other.text == entry.text; });
            Require(state.ValueOf(entry.text) == std::to_wstring(first->value));
        }
        Require(!state.Selected() || *state.Selected() < state.Entries().size());
        Require(!state.ValueOf(L";"));
    } catch (const RunTimeError& error) {
        Require(error.Number() == static_cast<std::int32_t>(RunTime::Overflow));
    }
}

void RunReport(Input& input) {
    const std::wstring text = input.Word(20);
    ErrorReportState state(text, text, text, text, text);
    Require(state.Description() == text && state.Caption().starts_with(text));
    const std::wstring shown = WithLineBreaks(text);
    Require(WithLineBreaks(shown) == shown);
    Require(WithoutSoftBreaks(WithSoftBreaks(shown)) == shown);
    bool isShown = false;
    while (!input.IsAtEnd()) {
        if (input.Byte() % 2 == 0) {
            state.ToggleAdvanced();
            isShown = !isShown;
        }
        Require(state.IsAdvancedShown() == isShown);
    }
    Require(EditorFor(GeneralTypeOf(text)) == EditorKind::None || text.size() > 3);
}

} // namespace

void FuzzDialogs(Input& input) {
    constexpr std::array kDialogs = {&RunNumeric, &RunNumeric,     &RunText,
                                     &RunBits,    &RunEnumeration, &RunReport};
    kDialogs.at(input.Below(kDialogs.size()))(input);
}

} // namespace tam::fuzz
