#pragma once

#include "bench/Host.h"
#include "bench/Model.h"

#include <string>
#include <vector>

namespace bench {

/// The object of one channel, as the component made it.
struct Channel {
    std::wstring key;
    com::Ref<IAppObject> app;
    com::Ref<ITamInternalAppObject> item;
};

/// The sample device as a tool has it open: the module that the host loaded,
/// what the device says of its channels, and the objects placed for them.
class SampleDevice {
  public:
    /// The module is the sample stream's, loaded here.
    SampleDevice(Host& host, const Options& options, Report& report);
    /// Takes the channels' objects off the sheet, as a tool does.
    ~SampleDevice();
    SampleDevice(const SampleDevice&) = delete;
    SampleDevice& operator=(const SampleDevice&) = delete;

    /// True for an identifier of a channel's object, if the firmware has any.
    bool IsChannelObject(const std::wstring& identifier);
    /// Makes the object of a channel by its definition.
    const Channel& Place(const std::wstring& identifier, const std::wstring& key);
    /// One object of each kind: AI1, AO1, DI1, DO1, CTX1.
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
    void DescribeFirmware(const std::wstring& version);
    void DescribeChannels();

    Host& host_;
    com::Ref<ITamObjectManager> manager_;
    com::Ref<IDevice> device_;
    std::vector<Channel> channels_;
};

/// The points of a module or channel: kind, name, type, value, how it is
/// displayed, the entries of its enumeration, and whether it is visible.
Json ReadPoints(IAppObject& object);
/// The same of a channel, each with the item that the module has for it.
Json ReadPoints(const SampleDevice& device, const Channel& channel);
/// A channel's keys and what its object is, with its points.
Json ReadChannel(const SampleDevice& device, const Channel& channel);
/// Sets an attribute or input. Throws BenchError when there is none of the name.
void SetPoint(Host& host, const Channel& channel, const std::wstring& name, const std::wstring& value);

} // namespace bench
