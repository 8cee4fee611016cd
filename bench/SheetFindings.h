#pragma once

#include "bench/Host.h"

#include "page/Page.h"

#include <vector>

namespace bench {

/// What is wrong with the stream that the host has loaded, in its order.
std::vector<page::Finding> FindingsOf(const Host& host);

} // namespace bench
