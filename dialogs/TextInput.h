#pragma once

#include "com/Boundary.h"
#include "core/EditText.h"

#include <windows.h>

#include <optional>
#include <string>
#include <string_view>

namespace tam {

/// A text box whose characters pass rules, whichever way they come: typed,
/// pasted, dropped or put in by a driver. It lives as long as its dialog shows.
class TextInput {
  public:
    class Rules {
      public:
        virtual KeyAnswer Key(wchar_t key, const EditText& edit) = 0;
        /// What a pasted text puts in; none when it is refused.
        virtual std::optional<std::wstring> Insertion(std::wstring_view pasted, const EditText& edit) = 0;
        /// Enter was pressed.
        virtual void Confirm() = 0;
        /// A character could not be dealt with; it has no effect, or half of one.
        virtual void OnKeyFailure(const com::Failure& failure) noexcept = 0;

      protected:
        ~Rules() = default;
    };

    explicit TextInput(Rules& rules) noexcept : rules_(rules) {}
    TextInput(const TextInput&) = delete;
    TextInput& operator=(const TextInput&) = delete;

    /// From now on the box's characters go through the rules.
    void Attach(HWND edit);

    EditText Read() const;
    std::wstring Text() const { return Read().text; }
    /// Shows a text and what is selected of it. A text that is there already
    /// counts as no change.
    void Show(const EditText& edit) const;
    /// Gives the box the focus and selects its text.
    void FocusAll() const;

  private:
    static LRESULT CALLBACK Procedure(HWND edit, UINT message, WPARAM wParam, LPARAM lParam) noexcept;
    LRESULT Handle(UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT Plain(UINT message, WPARAM wParam, LPARAM lParam) const;
    LRESULT Character(WPARAM wParam, LPARAM lParam);
    /// Puts a text in place of the selection, as far as the rules let it.
    void Insert(std::wstring_view text, bool canUndo);

    Rules& rules_;
    HWND edit_ = nullptr;
    WNDPROC plain_ = nullptr;
};

} // namespace tam
