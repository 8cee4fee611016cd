#pragma once

#include <windows.h>

// The classic run-time errors as a caller gets them: number and standard text.

namespace support {

inline constexpr auto kInvalidCall = static_cast<HRESULT>(0x800A0005);
inline constexpr auto kOverflow = static_cast<HRESULT>(0x800A0006);
inline constexpr auto kSubscript = static_cast<HRESULT>(0x800A0009);
inline constexpr auto kTypeMismatch = static_cast<HRESULT>(0x800A000D);
inline constexpr auto kObjectNotSet = static_cast<HRESULT>(0x800A005B);
inline constexpr auto kNoSuchMember = static_cast<HRESULT>(0x800A01B6);
inline constexpr auto kDuplicateKey = static_cast<HRESULT>(0x800A01C9);

inline constexpr const wchar_t* kInvalidCallText = L"Invalid procedure call or argument";
inline constexpr const wchar_t* kOverflowText = L"Overflow";
inline constexpr const wchar_t* kSubscriptText = L"Subscript out of range";
inline constexpr const wchar_t* kTypeMismatchText = L"Type mismatch";
inline constexpr const wchar_t* kObjectNotSetText = L"Object variable or With block variable not set";
inline constexpr const wchar_t* kDuplicateKeyText =
    L"This key is already associated with an element of this collection";

/// The standard text of one of these errors.
inline const wchar_t* StandardText(HRESULT code) {
    switch (code) {
    case kInvalidCall:
        return kInvalidCallText;
    case kOverflow:
        return kOverflowText;
    case kSubscript:
        return kSubscriptText;
    case kTypeMismatch:
        return kTypeMismatchText;
    case kObjectNotSet:
        return kObjectNotSetText;
    case kDuplicateKey:
        return kDuplicateKeyText;
    default:
        return L"none of the standard errors";
    }
}

} // namespace support
