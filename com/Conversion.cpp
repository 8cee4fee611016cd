#include "com/Conversion.h"

#include "com/Boundary.h"
#include "common/RunTimeError.h"

#include <new>

namespace com {

namespace {

using tam::RunTime;
using tam::RunTimeError;

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

/// Conversions stop at a NUL, so a text that holds one is no number.
std::wstring Clean(std::wstring_view text) {
    if (text.find(L'\0') != std::wstring_view::npos) {
        throw RunTimeError(RunTime::TypeMismatch);
    }
    return std::wstring(text);
}

} // namespace

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

long LongOf(std::wstring_view text) {
    LONG value = 0;
    CheckConversion(VarI4FromStr(Clean(text).data(), LOCALE_USER_DEFAULT, 0, &value));
    return value;
}

std::uint8_t ByteOf(std::wstring_view text) {
    BYTE value = 0;
    CheckConversion(VarUI1FromStr(Clean(text).data(), LOCALE_USER_DEFAULT, 0, &value));
    return value;
}

bool BoolOf(std::wstring_view text) {
    VARIANT_BOOL value = VARIANT_FALSE;
    CheckConversion(VarBoolFromStr(Clean(text).data(), LOCALE_USER_DEFAULT, 0, &value));
    return value != VARIANT_FALSE;
}

std::wstring TextOf(double number) {
    Bstr text;
    CheckConversion(VarBstrFromR8(number, LOCALE_USER_DEFAULT, 0, text.Put()));
    return std::wstring(text.View());
}

std::wstring TextOf(bool value) {
    return value ? L"True" : L"False";
}

} // namespace com
