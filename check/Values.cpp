#include "check/Values.h"

#include "check/Decimal.h"
#include "check/Nearest.h"
#include "check/Surroundings.h"
#include "check/Utf8.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <string>
#include <vector>

namespace check {

namespace {

std::string WithUnit(const std::string& number, const TypeInfo& type) {
    return type.unit.empty() ? number : number + " " + type.unit;
}

std::string Range(const TypeInfo& type) {
    if (type.minText.empty() || type.maxText.empty()) {
        return "a number";
    }
    return type.minText + " to " + WithUnit(type.maxText, type);
}

/// Reports a text that is no number.
void ReportNoNumber(Document& document, const TypeInfo& type, std::string_view text, Span span) {
    if (const auto withPoint = WithPoint(text)) {
        document.Report(RuleId::ValueDecimalMark, span, Quoted(text) + " has a comma as its decimal mark",
                        "\".\" as the decimal mark", *withPoint);
        return;
    }
    const std::string leading = LeadingNumber(text);
    document.Report(RuleId::ValueNotNumber, span, Quoted(text) + " is no number", Range(type), leading);
}

void CheckNumber(Document& document, const TypeInfo& type, std::string_view text, Span span) {
    const auto number = ReadDecimal(text);
    if (!number) {
        return ReportNoNumber(document, type, text, span);
    }
    if (type.invalid && number->value == *type.invalid) {
        document.Report(RuleId::ValueInvalid, span,
                        std::string(text) + " is the value that means \"invalid\" for " + type.name,
                        Range(type));
        return;
    }
    if ((type.min && number->value < *type.min) || (type.max && number->value > *type.max) ||
        std::isinf(number->value)) {
        document.Report(RuleId::ValueLimit, span,
                        std::string(text) + " is outside the limits of " + type.name, Range(type));
        return;
    }
    if (type.HasScale() && !IsMultiple(*number, type.a, type.b)) {
        document.Report(RuleId::ValueResolution, span,
                        std::string(text) + " is finer than " + type.name + " resolves",
                        "steps of " + WithUnit(StepText(type.a, type.b, "."), type));
    }
}

void CheckBits(Document& document, const TypeInfo& type, std::string_view text, Span span) {
    constexpr long kMostBytes = 7; // wider fields are not counted in one number
    const auto number = ReadWhole(text);
    const long bits = 8 * std::clamp(type.length, 1L, kMostBytes);
    const long long most = (1LL << static_cast<unsigned>(bits)) - 1;
    const std::string expected = "a whole number from 0 to " + std::to_string(most);
    if (!number) {
        const bool isNumber = ReadDecimal(text).has_value();
        const std::string leading = LeadingNumber(text);
        document.Report(isNumber ? RuleId::ValueBits : RuleId::ValueNotNumber, span,
                        Quoted(text) + " is no set of bits", expected,
                        ReadWhole(leading) ? leading : std::string());
    } else if (*number < 0) {
        document.Report(RuleId::ValueBits, span, Quoted(text) + " is no set of bits", expected);
    } else if (*number > most && type.length <= kMostBytes) {
        document.Report(RuleId::ValueBits, span,
                        std::string(text) + " needs more than the " + std::to_string(bits) + " bits of " +
                            type.name,
                        expected);
    }
}

void CheckLabel(Document& document, const TypeInfo& type, std::string_view text, Span span) {
    if (!type.hasLabels) {
        if (!ReadWhole(text)) {
            document.Report(RuleId::ValueNotNumber, span, Quoted(text) + " is no value of an enumeration",
                            "a whole number");
        }
        return;
    }
    std::vector<std::string_view> labels;
    std::string values;
    for (const EnumLabel& entry : type.labels) {
        if (entry.value == text) {
            return;
        }
        labels.push_back(entry.label);
        values += (values.empty() ? "" : ", ") + entry.value;
    }
    std::string suggestion;
    const auto number = ReadWhole(Trim(text));
    const std::string_view near = Nearest(Trim(text), labels);
    for (const EnumLabel& entry : type.labels) {
        if ((number && ReadWhole(entry.value) == number) ||
            (!number && !near.empty() && entry.label == near)) {
            suggestion = entry.value;
        }
    }
    constexpr std::size_t kLongest = 80;
    document.Report(RuleId::EnumNoLabel, span, Quoted(text) + " has no label in " + type.name,
                    values.size() > kLongest ? values.substr(0, values.rfind(',', kLongest)) + ", ..."
                                             : values,
                    suggestion);
}

} // namespace

void CheckValueText(Document& document, const TypeInfo& type, std::string_view text, Span span) {
    if (type.isFaulty) {
        return;
    }
    if (type.IsNumber()) {
        CheckNumber(document, type, Trim(text), span);
    } else if (type.general == "Bitfield") {
        CheckBits(document, type, Trim(text), span);
    } else if (type.general == "Enum") {
        CheckLabel(document, type, text, span);
    } else if (type.general == "Textual" && type.length > 0 &&
               CountCodeUnits(text) > static_cast<std::size_t>(type.length)) {
        document.Report(RuleId::ValueTooLong, span,
                        "a text of " + std::to_string(CountCodeUnits(text)) + " characters",
                        "at most " + std::to_string(type.length) + " in " + type.name);
    }
}

void CheckValue(Document& document, const TypeInfo& type, const Leaf& leaf) {
    if (type.general != "Textual" && type.general != "Enum") {
        document.ReportBlanks(leaf);
    }
    CheckValueText(document, type, leaf.text, leaf.span);
}

const TypeInfo* CheckType(Document& document, std::string_view text, Span span, bool isRaw) {
    if (!document.Others().HasTypes()) {
        return nullptr;
    }
    const std::string_view id = isRaw ? text : Trim(text);
    const TypeInfo* type = document.Types().Find(id);
    if (type == nullptr) {
        document.Report(RuleId::TypeUnknown, span, "the catalogue has no type " + Quoted(text), "",
                        document.MaySuggest() ? document.Types().Suggest(text) : std::string());
        return nullptr;
    }
    const std::string shown = type->name.empty() ? "the type " + std::string(id) : type->name;
    if (type->isFaulty) {
        document.Report(RuleId::TypeFaulty, span, "the catalogue's entry of " + shown + " has errors itself");
    } else if (type->general.empty()) {
        document.Report(RuleId::TypeIncomplete, span,
                        "the catalogue does not say what kind of type " + shown + " is");
    } else if (IsRetired(id, *type) && document.IsFirst("retired " + std::string(id))) {
        document.Report(RuleId::TypeRetired, span,
                        shown + " is retired: new devices do not use it (said once for each type)");
    }
    return type;
}

} // namespace check
