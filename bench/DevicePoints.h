#pragma once

#include "bench/Device.h"
#include "bench/Model.h"

#include <string>

namespace bench {

/// The points of a module or channel: kind, name, whether it is visible; of an
/// input what it accepts and its value; of an output its type and whether it is
/// in displays; of an attribute its type, value and how that is displayed.
Json ReadPoints(IAppObject& object);
/// The same of a channel, each with the item that the module has for it.
Json ReadPoints(const OpenedDevice& device, const Channel& channel);
/// A channel's keys and what its object is, with its points and, of each, what
/// its definition says of its visibility.
Json ReadChannel(const OpenedDevice& device, const Channel& channel);

/// Sets an attribute or input. Throws BenchError when there is none of the name.
void SetPoint(Host& host, const Channel& channel, const std::wstring& name, const std::wstring& value);
/// Has an output shown in displays, or not. Throws BenchError when there is none of the name.
void SetDisplayed(Host& host, const Channel& channel, const std::wstring& name, bool displayed);

// Where a channel and the module's items for it differ. Both write the channel,
// which hands what it gets on to the module: that is the only way to the items.

/// Gives the channel what the items have.
void TakeFromModule(const OpenedDevice& device, const Channel& channel);
/// Gives the items what the channel has; answers which those were, with their
/// values before and after.
Json BringInLine(const OpenedDevice& device, const Channel& channel);

} // namespace bench
