#include "core/PointKeys.h"

#include "core/Case.h"
#include "core/RunTimeError.h"

#include <limits>

namespace tam {

std::wstring ReferenceKey(std::wstring_view text) {
    return UpperCase(text.substr(0, text.rfind(L'_')));
}

std::wstring PointKey(const SharedCollectionKey& collectionKey, std::wstring_view name) {
    std::wstring key;
    for (const std::wstring_view part : PointKeyParts(collectionKey, name)) {
        key += part;
    }
    return key;
}

KeyParts PointKeyParts(const SharedCollectionKey& collectionKey, std::wstring_view name) noexcept {
    return collectionKey ? KeyParts{*collectionKey, L"\\", name} : KeyParts{};
}

std::int32_t PointReference(std::int16_t exportIndex, std::int32_t index) {
    const std::int64_t reference = std::int64_t{exportIndex} * 256 + 16384 + index;
    if (reference < std::numeric_limits<std::int32_t>::min() ||
        reference > std::numeric_limits<std::int32_t>::max()) {
        throw RunTimeError(RunTime::Overflow);
    }
    return static_cast<std::int32_t>(reference);
}

} // namespace tam
