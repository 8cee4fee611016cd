#pragma once

#include "com/Ref.h"

#include <windows.h>

#include <oleauto.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace com {

/// A BSTR that this side owns. Keeps embedded NULs. Move-only.
class Bstr {
  public:
    Bstr() noexcept = default;
    /// Throws std::bad_alloc.
    explicit Bstr(std::wstring_view text);
    Bstr(Bstr&& other) noexcept : text_(other.Detach()) {}
    Bstr& operator=(Bstr&& other) noexcept {
        std::swap(text_, other.text_);
        return *this;
    }
    ~Bstr() { SysFreeString(text_); }

    BSTR Get() const noexcept { return text_; }
    BSTR* Put() noexcept {
        SysFreeString(Detach());
        return &text_;
    }
    /// The address for a callee that reads the text and may replace it.
    BSTR* Address() noexcept { return &text_; }
    BSTR Detach() noexcept { return std::exchange(text_, nullptr); }
    std::wstring_view View() const noexcept;

  private:
    BSTR text_ = nullptr;
};

/// The characters of a BSTR; a null one is empty.
std::wstring_view View(BSTR text) noexcept;
std::wstring Text(BSTR text);

/// A VARIANT that this side owns. Move-only.
class Variant {
  public:
    Variant() noexcept { VariantInit(&value_); }
    explicit Variant(std::wstring_view text);
    explicit Variant(long number) noexcept;
    explicit Variant(IDispatch* object) noexcept;
    Variant(Variant&& other) noexcept : value_(other.Detach()) {}
    Variant& operator=(Variant&& other) noexcept {
        std::swap(value_, other.value_);
        return *this;
    }
    ~Variant() { VariantClear(&value_); }

    const VARIANT& Get() const noexcept { return value_; }
    VARIANT* Put() noexcept {
        VariantClear(&value_);
        return &value_;
    }
    /// The address for a callee that reads the value and may replace it.
    VARIANT* Address() noexcept { return &value_; }
    VARIANT Detach() noexcept {
        VARIANT taken = value_;
        VariantInit(&value_);
        return taken;
    }

  private:
    VARIANT value_{};
};

/// Writes a result through a COM out pointer that has been checked.
void Assign(BSTR* out, std::wstring_view text);
inline void Assign(BSTR* out, Bstr text) noexcept {
    *out = text.Detach();
}
inline void Assign(VARIANT_BOOL* out, bool value) noexcept {
    *out = value ? VARIANT_TRUE : VARIANT_FALSE;
}
inline void Assign(long* out, long value) noexcept {
    *out = value;
}
inline void Assign(short* out, short value) noexcept {
    *out = value;
}
inline void Assign(double* out, double value) noexcept {
    *out = value;
}
inline void Assign(VARIANT* out, Variant value) noexcept {
    *out = value.Detach();
}
template <class I, class J>
void Assign(I** out, Ref<J> object) noexcept {
    *out = object.Detach();
}

/// Empties a COM out pointer before anything can fail.
inline void Empty(BSTR* out) noexcept {
    *out = nullptr;
}
inline void Empty(VARIANT_BOOL* out) noexcept {
    *out = VARIANT_FALSE;
}
inline void Empty(long* out) noexcept {
    *out = 0;
}
inline void Empty(double* out) noexcept {
    *out = 0;
}
inline void Empty(VARIANT* out) noexcept {
    VariantInit(out);
}
template <class I>
void Empty(I** out) noexcept {
    *out = nullptr;
}

/// What a failed conversion of the platform means: RunTime::Overflow for a value
/// out of range, std::bad_alloc without memory, else RunTime::TypeMismatch.
void CheckConversion(HRESULT result);

// The platform's conversions in the user's locale, without those of currency
// amounts. A text that is no such value is RunTime::TypeMismatch, one out of
// range RunTime::Overflow.
long LongOf(std::wstring_view text);
/// As LongOf, of a type of number (VT_I2, VT_I4, VT_R8 …); a text that is no
/// such value is DISP_E_TYPEMISMATCH or DISP_E_OVERFLOW. Throws std::bad_alloc.
HRESULT ReadNumber(std::wstring_view text, VARTYPE type, VARIANT& number);
std::uint8_t ByteOf(std::wstring_view text);
float SingleOf(std::wstring_view text);
bool BoolOf(std::wstring_view text);
/// As BoolOf; nothing for a text that it refuses. Throws std::bad_alloc alone.
std::optional<bool> BoolIn(std::wstring_view text);
/// A number in the user's locale, as the platform shows it by default.
std::wstring TextOf(double number);

} // namespace com
