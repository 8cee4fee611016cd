#pragma once

#include "bench/CommandLine.h"
#include "bench/Host.h"

#include "page/Page.h"

namespace bench {

/// What a device sheet says of the module that the host has loaded: its points as the
/// component answers them, with what only the documents tell (the types of inputs,
/// default values, descriptions).
page::Page ReadDeviceSheet(Host& host, const Options& options);

} // namespace bench
