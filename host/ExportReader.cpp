#include "host/ExportDocument.h"

#include "host/TypeTable.h"
#include "host/XmlReader.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace orv {

namespace {

constexpr std::wstring_view kRoot = L"O_Tam_id";
constexpr std::wstring_view kInputs = L"Inputs";
constexpr std::wstring_view kOutputs = L"Outputs";
constexpr std::wstring_view kAttributes = L"Attributes";

/// The records hold counts of 16 bits.
constexpr std::size_t kMaxPoints = 0xFFFF;

/// An empty type text is an enumeration, which is one byte long.
constexpr std::uint8_t kEnumerationLength = 1;
/// Room for a type that the table does not know: the longest simple value.
constexpr std::uint8_t kUnknownLength = 4;

/// No element has more attributes than an output.
constexpr std::size_t kMaxFields = 8;

struct FieldRule {
    std::wstring_view name;
    bool optional = false;
};

// The attributes of each element. The enumerations are positions in the lists.
enum RootField { DevAddr, AppID, DevKey, TamObjectID, IsLastOnDev };
constexpr std::array kRootFields{FieldRule{L"DevAddr"}, FieldRule{L"AppID"}, FieldRule{L"DevKey"},
                                 FieldRule{L"TamObjectID"}, FieldRule{L"IsLastOnDev"}};

enum InputField { InLink, InAddress, InType, InPermanent, InConnected };
constexpr std::array kInputFields{FieldRule{L"LinkReference"}, FieldRule{L"LogicalAddress"},
                                  FieldRule{L"SNVTType"}, FieldRule{L"isPermanent"},
                                  FieldRule{L"IsConnected"}};

enum OutputField {
    OutAddress,
    OutType,
    OutMapped,
    OutOffset,
    OutIndex,
    OutConnected,
    OutWritable,
    OutDisplay
};
constexpr std::array kOutputFields{FieldRule{L"LogicalAddress"},      FieldRule{L"SNVTType"},
                                   FieldRule{L"isMapAsOO"},           FieldRule{L"ObjOffset"},
                                   FieldRule{L"AbsoluteObjectIndex"}, FieldRule{L"IsConnected"},
                                   FieldRule{L"IsWritable"},          FieldRule{L"DisplayWritable", true}};

enum AttributeField { AttAddress, AttType, AttValue, AttPermanent, AttConnected, AttEnum };
constexpr std::array kAttributeFields{FieldRule{L"LogicalAddress"}, FieldRule{L"SNVTType"},
                                      FieldRule{L"Value"},          FieldRule{L"isPermanent"},
                                      FieldRule{L"IsConnected"},    FieldRule{L"EnumDesc", true}};

std::wstring Quoted(std::wstring_view text) {
    return L"\"" + std::wstring(text) + L"\"";
}

PointType TypeOf(std::wstring identifier) {
    PointType type;
    if (const auto facts = FindType(identifier)) {
        type.index = facts->index;
        type.length = facts->length;
    }
    if (type.length == 0) {
        type.length = identifier.empty() ? kEnumerationLength : kUnknownLength;
    }
    type.identifier = std::move(identifier);
    return type;
}

/// The attributes of one element, checked against their rules.
class Fields {
  public:
    Fields(const XmlReader& reader, std::span<const FieldRule> rules, std::wstring_view section = {})
        : reader_(reader), rules_(rules), section_(section) {
        for (const XmlAttribute& attribute : reader.Attributes()) {
            const auto rule = std::ranges::find(rules, attribute.name, &FieldRule::name);
            if (rule == rules.end()) {
                reader.Fail(attribute.offset,
                            Where() + L" has an unknown attribute " + Quoted(attribute.name));
            }
            found_[static_cast<std::size_t>(rule - rules.begin())] = &attribute;
        }
        for (std::size_t i = 0; i < rules.size(); ++i) {
            if (!rules[i].optional && found_[i] == nullptr) {
                reader.Fail(reader.Offset(), Where() + L" has no attribute " + Quoted(rules[i].name));
            }
        }
    }

    /// Empty for an optional attribute that is not there.
    std::wstring Text(std::size_t field) const { return std::wstring(View(field)); }

    /// What objects work out themselves is exactly "0" or "1"; an optional
    /// attribute that is not there is false.
    bool Flag(std::size_t field) const {
        const std::wstring_view text = View(field);
        if (text != L"0" && text != L"1" && found_[field] != nullptr) {
            Refuse(field, L"\"0\" or \"1\"");
        }
        return text == L"1";
    }

    /// What objects pass on from a definition may also be left out there, or
    /// be written as the platform writes a Boolean.
    bool DefinitionFlag(std::size_t field) const {
        const std::wstring_view text = View(field);
        const bool yes = text == L"1" || text == L"True";
        if (!yes && !text.empty() && text != L"0" && text != L"False") {
            Refuse(field, L"\"0\", \"1\", \"False\", \"True\" or nothing");
        }
        return yes;
    }

    /// A decimal number; nothing is 0.
    template <class T>
    T Number(std::size_t field) const {
        constexpr long kLeast = std::numeric_limits<T>::min();
        constexpr long kMost = std::numeric_limits<T>::max();
        std::wstring_view text = View(field);
        const bool negative = kLeast < 0 && text.starts_with(L'-');
        text.remove_prefix(negative ? 1 : 0);
        bool good = !negative || !text.empty();
        long number = 0;
        for (const wchar_t character : text) {
            good = good && character >= L'0' && character <= L'9';
            number = good ? std::min(number * 10 + (character - L'0'), kMost + 2) : 0;
        }
        number = negative ? -number : number;
        if (!good || number < kLeast || number > kMost) {
            Refuse(field, L"a number from " + std::to_wstring(kLeast) + L" to " + std::to_wstring(kMost) +
                              L" or nothing");
        }
        return static_cast<T>(number);
    }

  private:
    std::wstring_view View(std::size_t field) const {
        return found_[field] == nullptr ? std::wstring_view() : found_[field]->value;
    }

    std::wstring Where() const {
        return Quoted(reader_.Name()) + (section_.empty() ? std::wstring() : L" in " + Quoted(section_));
    }

    [[noreturn]] void Refuse(std::size_t field, const std::wstring& expected) const {
        const XmlAttribute& attribute = *found_[field];
        reader_.Fail(attribute.offset, L"attribute " + Quoted(attribute.name) + L" of " + Where() + L" is " +
                                           Quoted(attribute.value) + L"; it must be " + expected);
    }

    const XmlReader& reader_;
    std::span<const FieldRule> rules_;
    std::wstring_view section_;
    /// One for each rule; those of the element that the reader is at.
    std::array<const XmlAttribute*, kMaxFields> found_{};
};

ExportInput ReadInput(XmlReader& reader) {
    const Fields fields(reader, kInputFields, kInputs);
    return {reader.Name(),
            fields.Text(InLink),
            fields.Number<std::uint16_t>(InAddress),
            TypeOf(fields.Text(InType)),
            fields.Flag(InPermanent),
            fields.Flag(InConnected)};
}

ExportOutput ReadOutput(XmlReader& reader) {
    const Fields fields(reader, kOutputFields, kOutputs);
    return {reader.Name(),
            fields.Number<std::uint16_t>(OutAddress),
            TypeOf(fields.Text(OutType)),
            fields.DefinitionFlag(OutMapped),
            fields.Number<std::uint16_t>(OutOffset),
            fields.Number<std::uint16_t>(OutIndex),
            fields.Flag(OutConnected),
            fields.DefinitionFlag(OutWritable),
            fields.Flag(OutDisplay)};
}

ExportAttribute ReadAttribute(XmlReader& reader) {
    const Fields fields(reader, kAttributeFields, kAttributes);
    return {reader.Name(),         fields.Number<std::uint16_t>(AttAddress), TypeOf(fields.Text(AttType)),
            fields.Text(AttValue), fields.DefinitionFlag(AttPermanent),      fields.Flag(AttConnected),
            fields.Text(AttEnum)};
}

template <class Point>
std::vector<Point> ReadSection(XmlReader& reader, std::wstring_view name, Point (*read)(XmlReader&)) {
    std::vector<Point> points;
    if (reader.Next() != XmlKind::Element || reader.Name() != name) {
        reader.Fail(reader.Offset(), Quoted(kRoot) + L" must hold " + Quoted(name) + L" here");
    }
    const Fields none(reader, {});
    for (XmlKind kind = reader.Next(); kind != XmlKind::EndOfElement; kind = reader.Next()) {
        if (kind == XmlKind::Text) {
            reader.Fail(reader.Offset(), Quoted(name) + L" must not hold text");
        }
        if (points.size() == kMaxPoints) {
            reader.Fail(reader.Offset(), Quoted(name) + L" holds more than 65535 points");
        }
        points.push_back(read(reader));
        if (reader.Next() != XmlKind::EndOfElement) {
            reader.Fail(reader.Offset(),
                        Quoted(points.back().name) + L" in " + Quoted(name) + L" must be empty");
        }
    }
    return points;
}

} // namespace

ExportDocument ReadExportDocument(std::wstring_view xml) {
    XmlReader reader(xml);
    if (reader.Next() != XmlKind::Element || reader.Name() != kRoot) {
        reader.Fail(reader.Offset(), L"the root element must be " + Quoted(kRoot));
    }
    const Fields fields(reader, kRootFields);
    ExportDocument document;
    document.deviceAddress = fields.Number<std::int16_t>(DevAddr);
    document.applicationId = fields.Text(AppID);
    document.deviceKey = fields.Text(DevKey);
    document.objectId = fields.Number<std::int16_t>(TamObjectID);
    document.lastOnDevice = fields.Flag(IsLastOnDev);
    document.inputs = ReadSection(reader, kInputs, ReadInput);
    document.outputs = ReadSection(reader, kOutputs, ReadOutput);
    document.attributes = ReadSection(reader, kAttributes, ReadAttribute);
    if (reader.Next() != XmlKind::EndOfElement) {
        reader.Fail(reader.Offset(), Quoted(kRoot) + L" must end after " + Quoted(kAttributes));
    }
    reader.Next(); // only comments and blanks may come before the end
    return document;
}

} // namespace orv
