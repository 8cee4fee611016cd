#include "bench/DeviceFile.h"

#include "bench/Samples.h"
#include "bench/Text.h"
#include "bench/TextFile.h"
#include "check/Findings.h"
#include "check/XmlTree.h"
#include "core/Trimmed.h"

#include <algorithm>
#include <iterator>
#include <optional>
#include <set>
#include <string>
#include <string_view>
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

std::wstring SampleFile() {
    return SamplesFolder() + L"device.xml";
}

/// A file named inside another one is beside it; else it is a sample.
std::wstring FileBeside(const std::wstring& path, const std::wstring& name) {
    const std::wstring full = FullPath(path);
    const std::wstring beside = full.substr(0, full.find_last_of(L'\\') + 1) + name;
    return IsFile(beside) ? beside : FindStream(name);
}

/// A device file's text with its elements.
class Reader {
  public:
    explicit Reader(const std::wstring& path) : path_(path), tree_(TextIn(path), findings_) {
        if (findings_.Errors() > 0) {
            throw BenchError(E_INVALIDARG, Utf8(path) + " is no XML document: " + WhyNoXml(ReadBytes(path)));
        }
    }

    DeviceFile Read() const {
        const auto root = tree_.Root();
        if (tree_.Name(root) != "Device") {
            Refuse(root, "the root is " + std::string(tree_.Name(root)) + " and should be Device");
        }
        DeviceFile file;
        file.path = path_;
        file.stream = Wide(TextBelow(root, "Stream"));
        if (file.stream.empty()) {
            Refuse(root, "no stream of the module is named; write <Stream>hall.xml</Stream>");
        }
        file.firmware = Wide(TextBelow(root, "Firmware"));
        if (tree_.Child(root, "FWVersion") != check::XmlTree::kNone) {
            file.firmwareFile = path_;
        }
        const auto section = tree_.Child(root, "Channels");
        if (section != check::XmlTree::kNone) {
            tree_.ForEachElement(section, [&](Node element) { AddChannel(element, file.channels); });
        }
        return file;
    }

  private:
    using Node = check::XmlTree::Index;

    static std::string TextIn(const std::wstring& path) { return Utf8(ReadTextFile(path)); }

    [[noreturn]] void Refuse(Node where, const std::string& reason) const {
        const std::string_view before = tree_.Text().substr(0, tree_.OffsetOf(where));
        throw BenchError(E_INVALIDARG,
                         Utf8(path_) + " is no device file: line " +
                             std::to_string(1 + std::count(before.begin(), before.end(), '\n')) + ": " +
                             reason);
    }

    std::string TextBelow(Node parent, std::string_view name) const {
        const Node element = tree_.Child(parent, name);
        const std::string text = element == check::XmlTree::kNone ? std::string() : tree_.OwnText(element);
        return std::string(tam::Trimmed(text, " \t\r\n"));
    }

    std::optional<std::wstring> AttributeOf(Node element, std::string_view name) const {
        const auto attribute = tree_.FindAttribute(element, name);
        return attribute ? std::optional(Wide(tree_.ValueOf(*attribute))) : std::nullopt;
    }

    void AddChannel(Node element, std::vector<DescribedChannel>& channels) const {
        if (tree_.Name(element) != "Channel") {
            Refuse(element,
                   "an element " + std::string(tree_.Name(element)) + " among the channels" + kExample);
        }
        DescribedChannel channel{AttributeOf(element, "key").value_or(std::wstring()),
                                 AttributeOf(element, "kind").value_or(std::wstring()),
                                 AttributeOf(element, "terminal"),
                                 AttributeOf(element, "setup").value_or(std::wstring())};
        if (channel.key.empty() || channel.kind.empty()) {
            Refuse(element,
                   std::string("a channel without ") + (channel.key.empty() ? "key" : "kind") + kExample);
        }
        if (std::any_of(channels.begin(), channels.end(),
                        [&](const DescribedChannel& other) { return SameKey(other.key, channel.key); })) {
            Refuse(element, "the channel " + Utf8(channel.key) + " is there already");
        }
        channels.push_back(std::move(channel));
    }

    std::wstring path_;
    check::Findings findings_;
    check::XmlTree tree_;
};

} // namespace

DeviceFile ReadDeviceFile(const std::wstring& path) {
    DeviceFile file = Reader(path.empty() ? SampleFile() : path).Read();
    file.streamFile = FileBeside(file.path, file.stream);
    if (file.firmwareFile.empty() || file.firmware.empty()) {
        const DeviceFile sample = Reader(SampleFile()).Read();
        file.firmwareFile = file.firmwareFile.empty() ? sample.firmwareFile : file.firmwareFile;
        file.firmware = file.firmware.empty() ? sample.firmware : file.firmware;
    }
    return file;
}

std::wstring IdentifierOfKind(const std::wstring& kind) {
    const auto* const found = std::find_if(std::begin(kKinds), std::end(kKinds),
                                           [&](const Kind& known) { return SameKey(known.name, kind); });
    return found != std::end(kKinds) ? found->identifier : kind;
}

} // namespace bench
