// export: what the module answers as its stream. With a compiler that is a database image,
// whose head and checksum are read here to be shown; without one it is the export document.
// When the compiler refuses the module, the component answers an empty stream and no reason.
// Then the module exports once more without a compiler, and the bench asks the compiler.

#include "bench/Commands.h"
#include "bench/Compiler.h"
#include "bench/Model.h"
#include "bench/Text.h"
#include "bench/WholeFile.h"
#include "bench/Xml.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace bench {

namespace {

/// Enumeration texts fill lines; the document in a file has them whole.
constexpr std::size_t kLongestShown = 40;

/// Where the component keeps its export document when DEBUG is 1.
std::wstring DumpPath(Host& host) {
    const short id = NumberOf(host.Tam(), &ITamObject::get_TamObjectID);
    return L"C:\\interop_" + host.DeviceKey() + L"_" + std::to_wstring(id) + L".xml";
}

/// The bytes of lines of hexadecimal digits; empty when the text holds anything else.
std::vector<unsigned> Bytes(const std::string& text) {
    std::vector<unsigned> bytes;
    std::string digits;
    for (const char c : text) {
        if (c != '\r' && c != '\n') {
            digits += c;
        }
    }
    if (digits.size() % 2 != 0 || digits.find_first_not_of("0123456789ABCDEF") != std::string::npos) {
        return {};
    }
    for (std::size_t at = 0; at < digits.size(); at += 2) {
        bytes.push_back(static_cast<unsigned>(std::stoul(digits.substr(at, 2), nullptr, 16)));
    }
    return bytes;
}

unsigned Word(const std::vector<unsigned>& bytes, std::size_t at) {
    return bytes[at] | bytes[at + 1] << 8;
}

unsigned Long(const std::vector<unsigned>& bytes, std::size_t at) {
    return Word(bytes, at) | Word(bytes, at + 2) << 16;
}

/// CRC-32, the checksum of Ethernet and ZIP.
unsigned Checksum(const std::vector<unsigned>& bytes, std::size_t count) {
    constexpr unsigned kPolynomial = 0xEDB88320;
    unsigned sum = ~0U;
    for (std::size_t at = 0; at < count; ++at) {
        sum ^= bytes[at];
        for (int bit = 0; bit < 8; ++bit) {
            sum = (sum & 1U) != 0 ? sum >> 1 ^ kPolynomial : sum >> 1;
        }
    }
    return ~sum;
}

/// The head of an image; null when the bytes are none of format 1.
Json ReadHead(const std::vector<unsigned>& bytes) {
    constexpr std::size_t kHead = 40;
    constexpr std::size_t kSum = 4;
    if (bytes.size() < kHead + kSum || bytes[0] != 'O' || bytes[1] != 'T' || bytes[2] != 'I' ||
        bytes[3] != 'M' || bytes[4] != 1) {
        return nullptr;
    }
    return {{"object", Word(bytes, 8)},
            {"address", Word(bytes, 6)},
            {"lastOnDevice", (bytes[5] & 1U) != 0},
            {"inputs", Word(bytes, 10)},
            {"outputs", Word(bytes, 12)},
            {"attributes", Word(bytes, 14)},
            {"length", Long(bytes, 16)},
            {"checksumRight", Checksum(bytes, bytes.size() - kSum) == Long(bytes, bytes.size() - kSum)}};
}

void TellHead(const Json& head, Answer& answer) {
    const auto number = [&](const char* key) { return std::to_string(head[key].get<unsigned>()); };
    Fields fields;
    fields.Add("Object", number("object") + ", address " + number("address") +
                             (head["lastOnDevice"].get<bool>() ? ", the last on its device" : ""));
    fields.Add("Points", number("inputs") + " inputs, " + number("outputs") + " outputs, " +
                             number("attributes") + " attributes");
    fields.Add("Checksum", head["checksumRight"].get<bool>() ? "right" : "wrong");
    answer.Add(fields);
}

std::string HexByte(unsigned byte) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    return {kDigits[byte / 16], kDigits[byte % 16]};
}

/// Offsets, bytes and characters, 16 bytes a line where there is room. Only the ends of a long image.
std::string Dump(const std::vector<unsigned>& bytes, std::size_t width) {
    constexpr std::size_t kWidthOfLongRow = 73;
    const std::size_t bytesInRow = width >= kWidthOfLongRow ? 16 : 8;
    constexpr std::size_t kRowsAtEnds = 8;
    const std::size_t rows = (bytes.size() + bytesInRow - 1) / bytesInRow;
    std::string text;
    for (std::size_t row = 0; row < rows; ++row) {
        if (row >= kRowsAtEnds && row + kRowsAtEnds < rows) {
            if (row == kRowsAtEnds) {
                text += "  ...   (" + Count(rows - 2 * kRowsAtEnds, "line") + " left out)\n";
            }
            continue;
        }
        std::string hex;
        std::string characters;
        for (std::size_t at = row * bytesInRow; at < std::min(bytes.size(), (row + 1) * bytesInRow); ++at) {
            hex += HexByte(bytes[at]);
            hex += ' ';
            characters += bytes[at] >= 0x20 && bytes[at] < 0x7F ? static_cast<char>(bytes[at]) : '.';
        }
        hex.resize(bytesInRow * 3, ' ');
        const std::size_t offset = row * bytesInRow;
        text.append("  ")
            .append(HexByte(static_cast<unsigned>(offset / 256 % 256)))
            .append(HexByte(static_cast<unsigned>(offset % 256)))
            .append("  ")
            .append(hex)
            .append(" ")
            .append(characters)
            .append("\n");
    }
    return text;
}

Json ReadSizes(Host& host) {
    return {{"cdb", NumberOf(host.App(), &IAppObject::get_CDBDimension)},
            {"ddb", NumberOf(host.App(), &IAppObject::get_DDBDimension)},
            {"sdb", NumberOf(host.App(), &IAppObject::get_SDBDimension)}};
}

Table SizeTable(const Json& before, const Json& after) {
    Table table({"Database", ">As loaded", ">After the export"});
    const std::pair<const char*, const char*> rows[] = {
        {"cdb", "configuration (CDB)"}, {"ddb", "data (DDB)"}, {"sdb", "SDB"}};
    for (const auto& [key, title] : rows) {
        table.Add({title, std::to_string(before[key].get<long>()), std::to_string(after[key].get<long>())});
    }
    return table;
}

void TellStream(const std::string& stream, Answer& answer) {
    const std::vector<unsigned> bytes = Bytes(stream);
    if (!bytes.empty()) {
        answer.data["kind"] = "image";
        answer.data["imageBytes"] = bytes.size();
        answer.Heading("The database image: " + Count(bytes.size(), "byte"));
        const Json& head = answer.data["head"] = ReadHead(bytes);
        if (!head.is_null()) {
            TellHead(head, answer);
        }
        answer.Block(Dump(bytes, answer.Width()));
        return;
    }
    const xml::Document document = xml::LoadText(Wide(stream));
    com::Ref<IXMLDOMElement> root;
    com::Call(document, &IXMLDOMDocument::get_documentElement, root.Put());
    if (root) {
        answer.data["kind"] = "export document";
        answer.Heading("Not compiled: the export document itself");
        answer.Document(xml::Print(xml::Node(root), kLongestShown));
    } else {
        answer.data["kind"] = stream.empty() ? "nothing" : "other";
        answer.Heading(stream.empty() ? "The component answered no stream"
                                      : "The stream is neither an image nor an export document");
    }
}

/// When a file was written last; 0 for none.
ULONGLONG WrittenAt(const std::wstring& path) {
    WIN32_FILE_ATTRIBUTE_DATA found{};
    if (!IsFile(path) || GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &found) == FALSE) {
        return 0;
    }
    return static_cast<ULONGLONG>(found.ftLastWriteTime.dwHighDateTime) << 32 |
           found.ftLastWriteTime.dwLowDateTime;
}

/// The file that the component keeps when DEBUG is 1. An older one is not taken for it.
class KeptDocument {
  public:
    explicit KeptDocument(std::wstring path) : path_(std::move(path)), before_(WrittenAt(path_)) {
        SetEnvironmentVariableW(L"DEBUG", L"1");
    }

    /// False when the component has written none.
    bool Tell(Answer& answer) const {
        const ULONGLONG now = WrittenAt(path_);
        const bool isWritten = now != 0 && now != before_;
        answer.data["dump"] = isWritten ? Json(Utf8(path_)) : Json();
        if (isWritten) {
            answer.Line("\nThe component kept its export document in " + Utf8(path_) + ".");
        }
        return isWritten;
    }
    const std::wstring& Path() const noexcept { return path_; }

  private:
    std::wstring path_;
    ULONGLONG before_;
};

} // namespace

void Export(Host& host, const Options& options, Answer& answer) {
    LoadAndTell(host, answer);
    SetValues(host, options, answer);
    ExportLoaded(host, options, answer);
}

void ExportLoaded(Host& host, const Options& options, Answer& answer) {
    if (options.wire) {
        answer.data["wires"] = ReadWires(host);
    }
    std::optional<KeptDocument> kept;
    if (options.debugDump) {
        kept.emplace(DumpPath(host));
    }
    const Json before = ReadSizes(host);
    std::string stream;
    host.Step("Stream", [&] { stream = ReadStream(host, !options.noCompiler); });
    const Json after = ReadSizes(host);

    answer.data["sizesBefore"] = before;
    answer.data["sizes"] = after;
    answer.data["streamText"] = stream;
    answer.Heading("Sizes in bytes");
    answer.Add(SizeTable(before, after));
    TellStream(stream, answer);
    const bool isKept = !kept || kept->Tell(answer);
    if (stream.empty()) {
        host.Step("Stream", [&] { ThrowRefusal(host, answer); });
    }
    if (!isKept) {
        throw BenchError(E_FAIL, "the component did not write " + Utf8(kept->Path()));
    }
    if (!options.output.empty()) {
        WriteWholeFile(options.output, stream);
        answer.data["file"] = Utf8(options.output);
        answer.Line("\nWritten to " + Utf8(options.output) + ".");
    }
}

} // namespace bench
