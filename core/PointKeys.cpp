#include "core/PointKeys.h"

#include "core/RunTimeError.h"

#include <limits>

namespace tam {

std::wstring_view ReferenceKey(std::wstring_view text) noexcept {
    return text.substr(0, text.rfind(L'_'));
}

std::wstring PointKey(const SharedCollectionKey& collectionKey, std::wstring_view name) {
    std::wstring key;
    for (const std::wstring_view part : PointKeyParts(collectionKey, name)) {
        key += part;
    }
    return key;
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
