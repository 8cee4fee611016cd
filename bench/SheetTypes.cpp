#include "bench/SheetTypes.h"

#include "bench/Model.h"
#include "bench/Text.h"
#include "check/Decimal.h"

#include <windows.h>

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <iterator>
#include <string_view>

namespace bench {

namespace {

long NumberAt(const Host& host, const std::wstring& id, const wchar_t* child, long otherwise) {
    const std::string text = Utf8(host.CatalogueText(id, child));
    return text.empty() ? otherwise : std::strtol(text.c_str(), nullptr, 10);
}

std::string WithMark(std::string number, const std::string& mark) {
    const std::size_t point = number.find('.');
    return point == std::string::npos ? number : number.replace(point, 1, mark);
}

std::string Limits(const Json& type) {
    const std::string min = type["min"];
    const std::string max = type["max"];
    return min.empty() && max.empty() ? "" : min + " to " + max;
}

std::string Invalid(const Json& type) {
    const std::string invalid = type["invalidValue"];
    return invalid.empty() ? "" : "invalid: " + invalid;
}

} // namespace

std::string DecimalMark() {
    wchar_t mark[8] = {};
    GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDECIMAL, mark, static_cast<int>(std::size(mark)));
    return std::wstring_view(mark).find(L',') != std::wstring_view::npos ? "," : ".";
}

Json TypeOfCatalogue(const Host& host, const std::wstring& id) {
    const std::string name = Utf8(host.CatalogueText(id, L"Name"));
    if (id.empty() || name.empty()) {
        return nullptr;
    }
    const std::string mark = DecimalMark();
    return {{"id", Utf8(id)},
            {"name", name},
            {"generalType", Utf8(host.CatalogueText(id, L"Type"))},
            {"unit", Utf8(host.CatalogueText(id, L"Unit"))},
            {"min", WithMark(Utf8(host.CatalogueText(id, L"Min")), mark)},
            {"max", WithMark(Utf8(host.CatalogueText(id, L"Max")), mark)},
            {"invalidValue", Utf8(host.CatalogueText(id, L"InvalidValue"))},
            {"a", NumberAt(host, id, L"A_Coef", 0)},
            {"b", NumberAt(host, id, L"B_Coef", 0)},
            {"enumDesc", Utf8(host.CatalogueText(id, L"EnumDesc"))}};
}

std::vector<page::Column> TypeColumns() {
    return {{"Type"}, {"Unit"}, {"Limits", true}, {"Resolution", true}};
}

std::vector<page::Cell> TypeCells(const Json& type) {
    if (type.is_null()) {
        return {{}, {}, {}, {}};
    }
    const std::string title = TypeTitle(type);
    const std::string kind = type["generalType"];
    return {{title == "-" ? "" : title, kind},
            {type["unit"]},
            {Limits(type), Invalid(type)},
            {Resolution(kind, type["a"], type["b"], DecimalMark())}};
}

std::string Resolution(const std::string& generalType, long a, long b, const std::string& mark) {
    // What no catalogue means is not written out.
    constexpr long kMost = 12;
    if ((generalType != "SignedNumeric" && generalType != "UnsignedNumeric") || a <= 0 || b > kMost ||
        b < -kMost) {
        return "";
    }
    return check::StepText(a, b, mark);
}

std::vector<page::Label> Labels(const std::string& description) {
    std::vector<page::Label> labels;
    for (std::size_t at = 0; at < description.size();) {
        const std::size_t end = std::min(description.find(';', at), description.size());
        const std::string entry = description.substr(at, end - at);
        const std::size_t comma = entry.find(',');
        if (comma != std::string::npos) {
            labels.push_back({entry.substr(0, comma), entry.substr(comma + 1)});
        } else if (!entry.empty()) {
            labels.push_back({entry, ""});
        }
        at = end + 1;
    }
    return labels;
}

void Enumerations::Add(const Json& type, const std::string& point) {
    if (type.is_null() || type["enumDesc"].get<std::string>().empty()) {
        return;
    }
    // The owner of a type may give it labels of its own.
    const std::string key = type["id"].get<std::string>() + " " + type["enumDesc"].get<std::string>();
    const auto found = std::find(descriptions_.begin(), descriptions_.end(), key);
    if (found == descriptions_.end()) {
        descriptions_.push_back(key);
        list_.push_back({TypeTitle(type), point, Labels(type["enumDesc"])});
    } else {
        list_[static_cast<std::size_t>(found - descriptions_.begin())].users += ", " + point;
    }
}

} // namespace bench
