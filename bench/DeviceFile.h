#pragma once

#include <optional>
#include <string>
#include <vector>

namespace bench {

/// A channel that a device file describes.
struct DescribedChannel {
    std::wstring key;
    /// "ai" or an identifier, as it stands there.
    std::wstring kind;
    /// The terminal that the channel uses. Without one the device knows no channel for the object.
    std::optional<std::wstring> terminal;
    /// What the channel can be set to, the first entry being what it is set to.
    std::wstring setup;
};

/// A device as a file describes it (docs/formats.md).
struct DeviceFile {
    std::wstring path;
    /// The stream of its module, as the file names it, and its file.
    std::wstring stream;
    std::wstring streamFile;
    std::wstring firmware;
    /// The document that says what each firmware offers.
    std::wstring firmwareFile;
    std::vector<DescribedChannel> channels;
};

/// Reads a device file; without a path that of the sample device. What a file does not say
/// of its firmware is as for the sample device. Throws BenchError.
DeviceFile ReadDeviceFile(const std::wstring& path);

/// "ai", "ao", "di", "do" and "ctx" as identifiers; other texts as they are.
std::wstring IdentifierOfKind(const std::wstring& kind);

} // namespace bench
