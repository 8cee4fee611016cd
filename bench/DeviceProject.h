#pragma once

#include "bench/Device.h"

namespace bench {

/// Opens a device: with what the project says that the options name, else with
/// new objects for the channels of the device file. Answers what LoadProject does, null
/// without a project.
Json OpenDevice(OpenedDevice& device, const Options& options, Answer& answer);

/// Loads the module's part of the project that the options name, and an object
/// for each channel of the device in it, then brings the module's items in line
/// with the channels. A document that cannot be taken whole is refused before
/// anything is loaded; where the component reports an error in it, the device is
/// not to be used on, unless the options tolerate that.
///
/// "loaded" and "passedOver": the elements, "restored": the channels' points
/// that are no longer as their definitions make them, "broughtInLine": items of
/// the module that a channel changed, "notes": what a user may wonder about.
/// Throws BenchError.
Json LoadProject(OpenedDevice& device, const Options& options, const Answer& answer);

/// The module and the channels as one project document.
xml::Node SaveProject(const OpenedDevice& device);

/// The elements of a project with the keys that they carry.
Json ReadElements(const xml::Node& project);

} // namespace bench
