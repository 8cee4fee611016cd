#include "bench/DeviceFile.h"

#include "bench/Samples.h"
#include "bench/Text.h"
#include "bench/Xml.h"
#include "com/Boundary.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace bench {

namespace {

struct Kind {
    const wchar_t* name;
    const wchar_t* identifier;
};

constexpr Kind kKinds[] = {{L"ai", L"o_tam_ai_id"},
                           {L"ao", L"o_tam_ao_id"},
                           {L"di", L"o_tam_di_id"},
                           {L"do", L"o_tam_do_id"},
                           {L"ctx", L"o_inpcntx_id"}};

constexpr const char* kExample =
    "; a channel is written as <Channel key=\"AI1\" kind=\"ai\" terminal=\"5\" setup=\"2,Ni1000\"/>";

[[noreturn]] void Refuse(const std::wstring& path, const std::string& reason) {
    throw BenchError(E_INVALIDARG, Utf8(path) + " is no device file: " + reason);
}

std::wstring SampleFile() {
    return SamplesFolder() + L"device.xml";
}

xml::Node RootOf(const xml::Document& document) {
    com::Ref<IXMLDOMElement> root;
    com::Call(document, &IXMLDOMDocument::get_documentElement, root.Put());
    return xml::Node(root);
}

std::wstring AttributeOf(const xml::Node& element, const wchar_t* name) {
    return xml::TextAt(element, std::wstring(L"@") + name);
}

/// A file named inside another one is beside it; else it is a sample.
std::wstring FileBeside(const std::wstring& path, const std::wstring& name) {
    const std::wstring full = FullPath(path);
    const std::wstring beside = full.substr(0, full.find_last_of(L'\\') + 1) + name;
    return IsFile(beside) ? beside : FindStream(name);
}

DescribedChannel ReadChannel(const xml::Node& element, std::size_t number, const std::wstring& path) {
    const std::string which = "channel " + std::to_string(number);
    if (xml::NameOf(element) != L"Channel") {
        Refuse(path, which + " is an element " + Utf8(xml::NameOf(element)) + kExample);
    }
    DescribedChannel channel{AttributeOf(element, L"key"), AttributeOf(element, L"kind"), std::nullopt,
                             AttributeOf(element, L"setup")};
    if (channel.key.empty() || channel.kind.empty()) {
        Refuse(path, which + " has no " + (channel.key.empty() ? "key" : "kind") + kExample);
    }
    if (xml::Select(element, L"@terminal")) {
        channel.terminal = AttributeOf(element, L"terminal");
    }
    return channel;
}

std::vector<DescribedChannel> ReadChannels(const xml::Node& root, const std::wstring& path) {
    std::vector<DescribedChannel> channels;
    const xml::Node section = xml::Select(root, L"Channels");
    if (!section) {
        return channels;
    }
    xml::ForEachElement(section, [&](const xml::Node& element) {
        DescribedChannel channel = ReadChannel(element, channels.size() + 1, path);
        if (std::any_of(channels.begin(), channels.end(),
                        [&](const DescribedChannel& other) { return SameKey(other.key, channel.key); })) {
            Refuse(path, "the channel " + Utf8(channel.key) + " is there twice");
        }
        channels.push_back(std::move(channel));
    });
    return channels;
}

} // namespace

DeviceFile ReadDeviceFile(const std::wstring& path) {
    DeviceFile file;
    file.path = path.empty() ? SampleFile() : path;
    const xml::Document document = xml::LoadFile(file.path);
    const xml::Node root = RootOf(document);
    if (xml::NameOf(root) != L"Device") {
        Refuse(file.path, "its root is " + Utf8(xml::NameOf(root)) + " and should be Device");
    }
    file.stream = xml::TextAt(root, L"Stream");
    if (file.stream.empty()) {
        Refuse(file.path, "it names no stream of its module; write <Stream>hall.xml</Stream>");
    }
    file.streamFile = FileBeside(file.path, file.stream);
    const bool hasFirmware = static_cast<bool>(xml::Select(root, L"FWVersion"));
    file.firmwareFile = hasFirmware ? file.path : SampleFile();
    file.firmware = xml::TextAt(root, L"Firmware");
    if (file.firmware.empty()) {
        file.firmware = xml::TextAt(RootOf(xml::LoadFile(SampleFile())), L"Firmware");
    }
    file.channels = ReadChannels(root, file.path);
    return file;
}

std::wstring IdentifierOfKind(const std::wstring& kind) {
    const auto* const found = std::find_if(std::begin(kKinds), std::end(kKinds),
                                           [&](const Kind& known) { return SameKey(known.name, kind); });
    return found != std::end(kKinds) ? found->identifier : kind;
}

} // namespace bench
