#pragma once

#include "bench/CommandLine.h"
#include "bench/Device.h"
#include "bench/Host.h"

#include "page/Page.h"

namespace bench {

/// What a device sheet says of the module that the host has loaded: its points as the
/// component answers them, with what only the documents tell (the types of inputs,
/// default values, descriptions).
page::Page ReadDeviceSheet(Host& host, const Options& options);
/// Adds the channels of a device: blocks beside the module's, and a table of each one's points.
/// DeviceSheet_Channels.cpp
void AddChannels(const OpenedDevice& device, page::Page& page);

} // namespace bench
