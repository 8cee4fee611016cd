// Input: an export document. What the reader takes stands in the image, byte by
// byte; what it refuses, it refuses at a place of the text.
#include "core/RunTimeError.h"
#include "host/Image.h"
#include "host/XmlReader.h"
#include "ImageReader.h"
#include "Subjects.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tam::fuzz {

namespace {

using orv::ExportDocument;

/// "line 3, column 7: " and a reason, of a place that the text has.
void CheckPlace(const std::wstring& text, const std::wstring& description) {
    const std::wstring_view kLine = L"line ";
    const std::wstring_view kColumn = L", column ";
    const std::size_t columnAt = description.find(kColumn);
    const std::size_t colon = description.find(L": ", columnAt);
    Require(description.starts_with(kLine) && columnAt != std::wstring::npos && colon != std::wstring::npos &&
            colon + 2 < description.size());
    const std::size_t line = std::stoul(description.substr(kLine.size()));
    const std::size_t column = std::stoul(description.substr(columnAt + kColumn.size()));
    std::size_t begin = 0;
    for (std::size_t i = 1; i < line; ++i) {
        begin = text.find_first_of(L"\r\n", begin);
        Require(begin != std::wstring::npos);
        begin += text.compare(begin, 2, L"\r\n") == 0 ? 2u : 1u;
    }
    const std::size_t end = std::min(text.find_first_of(L"\r\n", begin), text.size());
    Require(column >= 1 && begin + column <= end + 2); // also right after the line, between CR and LF
}

/// Runs a reader; false where it says that the text is no document.
template <class F>
bool IsTaken(const std::wstring& text, F&& read) {
    try {
        read();
        return true;
    } catch (const RunTimeError& error) {
        Require(error.Code() == orv::kNotAnExportDocument && error.Source().empty());
        CheckPlace(text, error.Description());
        return false;
    }
}

/// Walks the text: nodes come in their order, elements are nested, and what is
/// read stands where the reader says.
void Walk(const std::wstring& text) {
    orv::XmlReader reader(text);
    std::vector<std::wstring> open;
    std::size_t last = 0;
    for (orv::XmlKind kind = reader.Next(); kind != orv::XmlKind::End; kind = reader.Next()) {
        Require(reader.Offset() >= last && reader.Offset() <= text.size());
        last = reader.Offset();
        if (kind == orv::XmlKind::Element) {
            Require(text.compare(last, reader.Name().size() + 1, L"<" + reader.Name()) == 0);
            for (const orv::XmlAttribute& attribute : reader.Attributes()) {
                Require(attribute.offset > last);
                Require(text.compare(attribute.offset, attribute.name.size(), attribute.name) == 0);
            }
            open.push_back(reader.Name());
        } else if (kind == orv::XmlKind::EndOfElement) {
            Require(!open.empty() && open.back() == reader.Name());
            open.pop_back();
        } else {
            Require(!open.empty());
        }
    }
    Require(open.empty());
}

std::optional<ExportDocument> Read(const std::wstring& text) {
    std::optional<ExportDocument> document;
    IsTaken(text, [&] { document = orv::ReadExportDocument(text); });
    return document;
}

/// An attribute with each character that means something written as a number.
std::wstring Attribute(const wchar_t* name, const std::wstring& value) {
    std::wstring text = std::wstring(L" ") + name + L"=\"";
    for (const wchar_t c : value) {
        const bool isPlain = std::wstring_view(L"&<\"\t\r\n").find(c) == std::wstring_view::npos;
        text += isPlain ? std::wstring(1, c) : L"&#" + std::to_wstring(static_cast<int>(c)) + L";";
    }
    return text + L"\"";
}

std::wstring Attribute(const wchar_t* name, int value) {
    return Attribute(name, std::to_wstring(value));
}

/// The document written again.
std::wstring TextOf(const ExportDocument& document) {
    std::wstring text = L"<O_Tam_id" + Attribute(L"DevAddr", document.deviceAddress) +
                        Attribute(L"AppID", document.applicationId) +
                        Attribute(L"DevKey", document.deviceKey) +
                        Attribute(L"TamObjectID", document.objectId) +
                        Attribute(L"IsLastOnDev", document.lastOnDevice) + L"><Inputs>";
    for (const orv::ExportInput& input : document.inputs) {
        text += L"<" + input.name + Attribute(L"LinkReference", input.linkReference) +
                Attribute(L"LogicalAddress", input.logicalAddress) +
                Attribute(L"SNVTType", input.type.identifier) + Attribute(L"isPermanent", input.permanent) +
                Attribute(L"IsConnected", input.connected) + L"/>";
    }
    text += L"</Inputs><Outputs>";
    for (const orv::ExportOutput& output : document.outputs) {
        text += L"<" + output.name + Attribute(L"LogicalAddress", output.logicalAddress) +
                Attribute(L"SNVTType", output.type.identifier) +
                Attribute(L"isMapAsOO", output.mappedAsObject) +
                Attribute(L"ObjOffset", output.objectOffset) +
                Attribute(L"AbsoluteObjectIndex", output.absoluteObjectIndex) +
                Attribute(L"IsConnected", output.connected) + Attribute(L"IsWritable", output.writable) +
                Attribute(L"DisplayWritable", output.displayWritable) + L"/>";
    }
    text += L"</Outputs><Attributes>";
    for (const orv::ExportAttribute& attribute : document.attributes) {
        text += L"<" + attribute.name + Attribute(L"LogicalAddress", attribute.logicalAddress) +
                Attribute(L"SNVTType", attribute.type.identifier) + Attribute(L"Value", attribute.value) +
                Attribute(L"isPermanent", attribute.permanent) +
                Attribute(L"IsConnected", attribute.connected) +
                Attribute(L"EnumDesc", attribute.enumDescription) + L"/>";
    }
    return text + L"</Attributes></O_Tam_id>";
}

/// The image of a document; nothing where one of its texts is too long for it.
std::optional<std::vector<std::uint8_t>> Image(const ExportDocument& document) {
    try {
        return orv::BuildImage(document);
    } catch (const RunTimeError& error) {
        Require(error.Code() == orv::kNotAnExportDocument && HasLongText(document));
        return std::nullopt;
    }
}

} // namespace

void FuzzExport(Input& input) {
    const std::wstring text = input.Rest();
    const bool isXml = IsTaken(text, [&] { Walk(text); });
    const auto document = Read(text);
    Require(isXml || !document);
    if (!document) {
        return;
    }
    Require(!Read(text.substr(0, text.rfind(L'>')))); // something is open until the last mark
    const auto image = Image(*document);
    Require(image.has_value() != HasLongText(*document));
    if (image) {
        CheckImage(*document, *image);
        const auto again = Read(TextOf(*document));
        Require(again && orv::BuildImage(*again) == *image);
    }
}

} // namespace tam::fuzz
