#pragma once

#include "bench/DeviceFile.h"
#include "bench/Host.h"

#include <string>
#include <vector>

namespace bench {

/// The object of one channel, as the component made it.
struct Channel {
    std::wstring key;
    com::Ref<IAppObject> app;
    com::Ref<ITamInternalAppObject> item;
};

/// A device as a tool has it open: the module that the host loaded,
/// what the device says of its channels, and the objects placed for them.
class OpenedDevice {
  public:
    /// The module is of the stream that the device file names, loaded here. No channel is placed yet.
    OpenedDevice(Host& host, const Options& options, Answer& answer);
    /// Takes the channels' objects off the sheet, as a tool does.
    ~OpenedDevice();
    OpenedDevice(const OpenedDevice&) = delete;
    OpenedDevice& operator=(const OpenedDevice&) = delete;

    /// True for an identifier of a channel object, if the firmware has any.
    bool IsChannelObject(const std::wstring& identifier);
    /// The identifier of a kind of channel: "ai", "ao", "di", "do", "ctx" or the
    /// identifier itself. Throws BenchError for what no channel can be made of.
    std::wstring IdentifierOf(const std::wstring& kind);
    /// Makes the object of a channel by its definition, as new. The reference
    /// holds until the next is placed.
    const Channel& Place(const std::wstring& identifier, const std::wstring& key);
    /// An object for each channel of the device file, with the values that the module has for them.
    void PlaceAll();
    /// In any letter case. Throws BenchError when no such object is placed.
    const Channel& At(const std::wstring& key) const;
    /// Has a channel get all its attributes' data from the device.
    void Fetch(const Channel& channel) const;
    const std::vector<Channel>& Channels() const noexcept { return channels_; }

    Host& Module() const noexcept { return host_; }
    const std::wstring& Key() const noexcept { return host_.DeviceKey(); }

  private:
    const Channel* Find(const std::wstring& key) const noexcept;
    void DescribeFirmware();
    void DescribeChannels();

    Host& host_;
    DeviceFile file_;
    std::wstring firmware_;
    com::Ref<ITamObjectManager> manager_;
    com::Ref<IDevice> device_;
    std::vector<Channel> channels_;
};

} // namespace bench
