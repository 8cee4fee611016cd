#pragma once

#include <string>
#include <string_view>

namespace page {

std::string Base64(std::string_view bytes);

} // namespace page
