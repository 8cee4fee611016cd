#include "com/Conversion.h"

#include "com/Boundary.h"
#include "core/RunTimeError.h"

#include <array>
#include <new>

namespace com {

namespace {

using tam::RunTime;
using tam::RunTimeError;

/// Conversions stop at a NUL, so a text that holds one is no number.
std::wstring Clean(std::wstring_view text) {
    if (text.find(L'\0') != std::wstring_view::npos) {
        throw RunTimeError(RunTime::TypeMismatch);
    }
    return std::wstring(text);
}

Variant NumberOf(std::wstring_view text, VARTYPE type) {
    Variant number;
    CheckConversion(ReadNumber(text, type, *number.Put()));
    return number;
}

} // namespace

void CheckConversion(HRESULT result) {
    if (result == DISP_E_OVERFLOW) {
        throw RunTimeError(RunTime::Overflow);
    }
    if (result == E_OUTOFMEMORY) {
        throw std::bad_alloc();
    }
    if (FAILED(result)) {
        throw RunTimeError(RunTime::TypeMismatch);
    }
}

Bstr::Bstr(std::wstring_view text) : text_(SysAllocStringLen(text.data(), static_cast<UINT>(text.size()))) {
    if (text_ == nullptr) {
        throw std::bad_alloc();
    }
}

std::wstring_view Bstr::View() const noexcept {
    return com::View(text_);
}

std::wstring_view View(BSTR text) noexcept {
    return text == nullptr ? std::wstring_view() : std::wstring_view(text, SysStringLen(text));
}

std::wstring Text(BSTR text) {
    return std::wstring(View(text));
}

Variant::Variant(std::wstring_view text) {
    VariantInit(&value_);
    value_.bstrVal = Bstr(text).Detach();
    value_.vt = VT_BSTR;
}

Variant::Variant(long number) noexcept {
    VariantInit(&value_);
    value_.vt = VT_I4;
    value_.lVal = number;
}

Variant::Variant(IDispatch* object) noexcept {
    VariantInit(&value_);
    value_.vt = VT_DISPATCH;
    value_.pdispVal = Ref<IDispatch>(object).Detach();
}

void Assign(BSTR* out, std::wstring_view text) {
    *out = Bstr(text).Detach();
}

// In the user's locale, and not as an amount of money: the plain conversion
// also takes the marks of those, and where a user has changed the marks of
// numbers alone, "2,5" would be 25.
HRESULT ReadNumber(std::wstring_view text, VARTYPE type, VARIANT& number) {
    if (text.find(L'\0') != std::wstring_view::npos) {
        return DISP_E_TYPEMISMATCH; // conversions stop there
    }
    constexpr ULONG kNumber = NUMPRS_STD & ~static_cast<ULONG>(NUMPRS_CURRENCY);
    std::array<BYTE, 256> digits{};
    NUMPARSE parsed{};
    parsed.cDig = static_cast<int>(digits.size());
    parsed.dwInFlags = kNumber;
    std::wstring copy(text);
    const HRESULT result = VarParseNumFromStr(copy.data(), LOCALE_USER_DEFAULT, 0, &parsed, digits.data());
    return FAILED(result) ? result : VarNumFromParseNum(&parsed, digits.data(), 1ul << type, &number);
}

long LongOf(std::wstring_view text) {
    return NumberOf(text, VT_I4).Get().lVal;
}

std::uint8_t ByteOf(std::wstring_view text) {
    return NumberOf(text, VT_UI1).Get().bVal;
}

float SingleOf(std::wstring_view text) {
    return NumberOf(text, VT_R4).Get().fltVal;
}

bool BoolOf(std::wstring_view text) {
    VARIANT_BOOL value = VARIANT_FALSE;
    CheckConversion(VarBoolFromStr(Clean(text).data(), LOCALE_USER_DEFAULT, 0, &value));
    return value != VARIANT_FALSE;
}

std::optional<bool> BoolIn(std::wstring_view text) {
    if (text.empty() || text.find(L'\0') != std::wstring_view::npos) {
        return std::nullopt;
    }
    VARIANT_BOOL value = VARIANT_FALSE;
    const HRESULT result = VarBoolFromStr(std::wstring(text).data(), LOCALE_USER_DEFAULT, 0, &value);
    if (result == E_OUTOFMEMORY) {
        throw std::bad_alloc();
    }
    return SUCCEEDED(result) ? std::optional(value != VARIANT_FALSE) : std::nullopt;
}

std::wstring TextOf(double number) {
    Bstr text;
    CheckConversion(VarBstrFromR8(number, LOCALE_USER_DEFAULT, 0, text.Put()));
    return std::wstring(text.View());
}

} // namespace com
