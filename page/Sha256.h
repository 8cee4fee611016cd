#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace page {

/// The SHA-256 digest of bytes, by which a content policy names a style.
std::array<std::uint8_t, 32> Sha256(std::string_view bytes);

} // namespace page
