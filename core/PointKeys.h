#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace tam {

/// What a reference is remembered by during an export, letter case aside: its text up
/// to its last "_", which is left out; the whole text when it has none.
std::wstring_view ReferenceKey(std::wstring_view text) noexcept;

/// A key of a collection as its points share it: each joins its own when it is asked
/// for one. Null for a point that was given none yet.
using SharedCollectionKey = std::shared_ptr<const std::wstring>;

/// The key of a point: the collection key, a backslash and its name; empty without a
/// collection key.
std::wstring PointKey(const SharedCollectionKey& collectionKey, std::wstring_view name);

/// The same in its parts, for a caller that joins them where they are wanted.
/// They last as long as the two arguments.
using KeyParts = std::array<std::wstring_view, 3>;
inline KeyParts PointKeyParts(const SharedCollectionKey& collectionKey, std::wstring_view name) noexcept {
    constexpr std::wstring_view kMark = L"\\"; // its length is counted once, by the compiler
    return collectionKey ? KeyParts{*collectionKey, kMark, name} : KeyParts{};
}

/// What tells one point from another: its name, the keys of the collection that it
/// stands in and its place there.
struct PointIdentity {
    // What a key is joined of stands together, so that it costs the fewest lines of the cache.
    SharedCollectionKey globalKey;
    SharedCollectionKey extendedKey;
    std::wstring name;
    /// From 0. Moving points does not renumber them.
    std::int32_t index = 0;

    KeyParts GlobalKey() const noexcept { return PointKeyParts(globalKey, name); }
    KeyParts ExtendedKey() const noexcept { return PointKeyParts(extendedKey, name); }
};

/// The number of an output as a point: 256 to each export index, from 16384
/// on. "Overflow" past 32 bits.
std::int32_t PointReference(std::int16_t exportIndex, std::int32_t index);

} // namespace tam
