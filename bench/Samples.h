#pragma once

#include <string>

namespace bench {

/// The folder of the samples, with the closing backslash: beside the program, else where
/// it was started.
std::wstring SamplesFolder();

/// The file of the sample of this name; empty when there is none.
std::wstring SampleStream(const std::wstring& name);

/// The file of a device stream: one that is there, or that of a sample of this name; "-"
/// as it is. Throws a BenchError that names the samples where there is neither.
std::wstring FindStream(const std::wstring& name);

} // namespace bench
