#include "check/Catalogue.h"

#include "check/Decimal.h"
#include "check/Nearest.h"
#include "check/Utf8.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>
#include <utility>

namespace check {

namespace {

constexpr std::string_view kPrefix = "SNVT_";

struct Retired {
    std::string_view id;
    std::string_view name;
};

// Called obsolete in the master list of types.
constexpr Retired kRetired[] = {
    {"10", "SNVT_date_cal"}, {"12", "SNVT_date_time"},  {"22", "SNVT_lev_disc"},   {"40", "SNVT_time_passed"},
    {"80", "SNVT_ISO_7811"}, {"178", "SNVT_sec_state"}, {"179", "SNVT_sec_status"}};

/// Letters that are taken for digits.
char DigitFor(char c) {
    switch (c) {
    case 'O':
    case 'o':
        return '0';
    case 'l':
    case 'I':
        return '1';
    default:
        return c;
    }
}

} // namespace

std::vector<EnumLabel> ReadLabels(std::string_view description) {
    std::vector<EnumLabel> labels;
    while (!description.empty()) {
        const std::size_t end = description.find(';');
        const std::string_view entry = description.substr(0, end);
        const std::size_t comma = entry.find(',');
        if (comma != std::string_view::npos) {
            labels.push_back({std::string(entry.substr(0, comma)), std::string(entry.substr(comma + 1))});
        }
        description.remove_prefix(end == std::string_view::npos ? description.size() : end + 1);
    }
    return labels;
}

std::string FaultOfDescription(std::string_view description) {
    constexpr long long kLeast = -32768;
    constexpr long long kMost = 32767;
    if (description.empty()) {
        return "it is empty";
    }
    if (!description.ends_with(';')) {
        return "the last entry is not closed by \";\"";
    }
    std::vector<std::string> values;
    while (!description.empty()) {
        const std::size_t end = description.find(';');
        const std::string_view entry = description.substr(0, end);
        const std::size_t comma = entry.find(',');
        if (comma == std::string_view::npos) {
            return "the entry " + Quoted(entry) + " has no \",\"";
        }
        const auto value = ReadWhole(entry.substr(0, comma));
        if (!value || *value < kLeast || *value > kMost) {
            return Quoted(entry.substr(0, comma)) + " is no whole number from -32768 to 32767";
        }
        if (comma + 1 == entry.size()) {
            return "the entry " + Quoted(entry) + " has no label";
        }
        values.emplace_back(entry.substr(0, comma));
        description.remove_prefix(end + 1);
    }
    std::sort(values.begin(), values.end());
    const auto twin = std::adjacent_find(values.begin(), values.end());
    return twin == values.end() ? std::string() : "the value " + *twin + " stands twice";
}

bool Catalogue::Add(std::string id, TypeInfo info) {
    idOfName_.emplace(Upper(info.name), id);
    return types_.emplace(std::move(id), std::move(info)).second;
}

bool Catalogue::HasName(std::string_view name) const {
    const auto found = idOfName_.find(Upper(name));
    return found != idOfName_.end() && types_.at(found->second).name == name;
}

std::vector<std::string> Catalogue::Identifiers() const {
    std::vector<std::string> identifiers;
    for (const auto& [id, type] : types_) {
        identifiers.push_back(id);
    }
    std::sort(identifiers.begin(), identifiers.end());
    return identifiers;
}

const TypeInfo* Catalogue::Find(std::string_view id) const {
    const auto found = types_.find(std::string(id));
    return found != types_.end() ? &found->second : nullptr;
}

std::string Catalogue::Suggest(std::string_view text) const {
    std::string word(Trim(text));
    const auto named = idOfName_.find(Upper(word));
    if (named != idOfName_.end()) {
        return named->second;
    }
    const auto prefixed = idOfName_.find(Upper(std::string(kPrefix) + word));
    if (prefixed != idOfName_.end()) {
        return prefixed->second;
    }
    std::string digits = word.starts_with(kPrefix) ? word.substr(kPrefix.size()) : word;
    std::transform(digits.begin(), digits.end(), digits.begin(), DigitFor);
    digits.erase(0, std::min(digits.find_first_not_of('0'), digits.size()));
    std::string plain = digits.substr(0, digits.find_first_of(".,"));
    if (plain != text && types_.contains(plain)) {
        return plain;
    }
    if (word.find_first_of("_abcdefghijklmnopqrstuvwxyz") == std::string::npos) {
        return {};
    }
    std::vector<std::string_view> names;
    for (const auto& [name, id] : idOfName_) {
        names.emplace_back(name);
    }
    std::string_view near = Nearest(word, names);
    const std::string withPrefix = std::string(kPrefix) + word;
    if (near.empty()) {
        near = Nearest(withPrefix, names);
    }
    return near.empty() ? std::string() : idOfName_.at(std::string(near));
}

bool IsRetired(std::string_view id, const TypeInfo& info) {
    return std::any_of(std::begin(kRetired), std::end(kRetired), [&](const Retired& type) {
        return type.id == id && EqualKeyword(type.name, info.name);
    });
}

} // namespace check
