#pragma once

#include <string>
#include <string_view>

namespace bench {

/// Writes a file beside the one of this name and puts it in place when all of it
/// is on the disk: whoever looks finds the old file or the new one, and after a
/// failure the old one. What is no file on a disk, such as NUL, is written to.
/// Throws BenchError.
void WriteWholeFile(const std::wstring& path, std::string_view bytes);

} // namespace bench
