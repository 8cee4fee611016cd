#pragma once

#include "tests/bench/BenchRun.h"

#include <string>
#include <string_view>
#include <vector>

namespace benchtest {

/// The channel of a key in what a command tells of a device.
Json ChannelOf(const Json& document, const std::string& key);
/// Names of the points that are not visible.
std::vector<std::string> Hidden(const Json& points);
/// A file of this name that the bench has saved a device in, with these arguments.
std::wstring SavedDevice(const wchar_t* name, std::vector<std::wstring> arguments);
/// A file of this name with this text.
std::wstring WrittenFile(const wchar_t* name, std::string_view text);
/// A text with the first occurrence of a part replaced; a failed test when there is none.
std::string Replaced(std::string text, std::string_view part, std::string_view by);

} // namespace benchtest
