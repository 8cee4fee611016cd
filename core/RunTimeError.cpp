#include "core/RunTimeError.h"

#include <utility>

namespace tam {

namespace {

constexpr std::uint32_t kClassicBase = 0x800A0000u;

} // namespace

std::wstring_view StandardText(RunTime number) {
    switch (number) {
    case RunTime::InvalidCall:
        return L"Invalid procedure call or argument";
    case RunTime::Overflow:
        return L"Overflow";
    case RunTime::Subscript:
        return L"Subscript out of range";
    case RunTime::TypeMismatch:
        return L"Type mismatch";
    case RunTime::ObjectNotSet:
        return L"Object variable or With block variable not set";
    case RunTime::DuplicateKey:
        return L"This key is already associated with an element of this collection";
    }
    return L"Application-defined or object-defined error";
}

RunTimeError::RunTimeError(RunTime number)
    : code_(static_cast<std::int32_t>(kClassicBase + static_cast<std::uint32_t>(number)))
    , description_(StandardText(number)) {}

RunTimeError::RunTimeError(std::int32_t code, std::wstring source, std::wstring description)
    : code_(code), source_(std::move(source)), description_(std::move(description)) {}

std::int32_t RunTimeError::Number() const noexcept {
    const auto bits = static_cast<std::uint32_t>(code_);
    if ((bits & 0xFFFF0000u) == kClassicBase) {
        return static_cast<std::int32_t>(bits & 0xFFFFu);
    }
    return code_;
}

} // namespace tam
