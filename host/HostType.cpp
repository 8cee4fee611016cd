#include "host/HostType.h"

#include "core/Case.h"
#include "core/GeneralType.h"
#include "core/Numbers.h"
#include "host/TypeTable.h"

#include <algorithm>

namespace orv {

namespace {

namespace dom = tam::dom;
using tam::GeneralType;
using tam::GeneralTypeOf;

constexpr std::wstring_view kEntryPrefix = L"SNVT_";

long NumberIn(const std::wstring& text) {
    return tam::ToInt32(tam::Val(text));
}

/// A catalogue's entries are named by index; any other text names none.
bool IsIndex(std::wstring_view id) noexcept {
    return !id.empty() && std::ranges::all_of(id, [](wchar_t c) { return c >= L'0' && c <= L'9'; });
}

dom::Node EntryOf(std::wstring_view id, const dom::Document& catalogue) {
    dom::Element root;
    if (catalogue && IsIndex(id)) {
        com::Call(catalogue, &IXMLDOMDocument::get_documentElement, root.Put());
    }
    return root ? dom::Select(dom::Node(root), std::wstring(kEntryPrefix).append(id)) : dom::Node();
}

void ReadChild(TypeDescription& type, const std::wstring& keyword, const std::wstring& text) {
    const struct {
        const wchar_t* keyword;
        std::wstring TypeDescription::*field;
    } texts[] = {
        {L"NAME", &TypeDescription::name},         {L"TYPE", &TypeDescription::generalType},
        {L"UNIT", &TypeDescription::units},        {L"BACNETUNIT", &TypeDescription::bacnetUnits},
        {L"MIN", &TypeDescription::min},           {L"MAX", &TypeDescription::max},
        {L"ENUMDESC", &TypeDescription::enumDesc}, {L"INVALIDVALUE", &TypeDescription::invalidValue},
    };
    const struct {
        const wchar_t* keyword;
        long TypeDescription::*field;
    } numbers[] = {
        {L"LENGTH", &TypeDescription::length}, {L"A_COEF", &TypeDescription::a},
        {L"B_COEF", &TypeDescription::b},      {L"C_COEF", &TypeDescription::c},
        {L"FACTOR", &TypeDescription::factor}, {L"Z3REGION", &TypeDescription::region},
    };
    for (const auto& entry : texts) {
        if (keyword == entry.keyword) {
            type.*entry.field = text;
        }
    }
    for (const auto& entry : numbers) {
        if (keyword == entry.keyword) {
            type.*entry.field = NumberIn(text);
        }
    }
}

} // namespace

TypeDescription DescribeType(std::wstring_view id, const dom::Document& catalogue) {
    TypeDescription type;
    type.id = id;
    if (const dom::Node entry = EntryOf(id, catalogue)) {
        dom::ForEachAttribute(entry, [&](const std::wstring& name, const std::wstring& text) {
            ReadChild(type, tam::UpperCase(name), text);
        });
        dom::ForEachChild(entry, [&](const dom::Node& child) {
            if (dom::IsElement(child)) {
                ReadChild(type, tam::UpperCase(dom::BaseName(child)), dom::TextOf(child));
            }
        });
    } else if (const auto facts = FindType(id)) {
        type.name = facts->name;
        type.units = facts->unit;
        type.length = facts->length;
    }
    return type;
}

HRESULT HostType::get_LUIType(BSTR* value) {
    return Get(value, [&]() -> std::wstring_view {
        const GeneralType general = GeneralTypeOf(type_.generalType);
        const bool isUnknown = general == GeneralType::Other && !type_.generalType.empty();
        return isUnknown ? L"Numeric" : tam::LuiTypeOf(general);
    });
}

HRESULT HostType::get_HasField(VARIANT_BOOL* value) {
    return Get(value, [&] { return GeneralTypeOf(type_.generalType) == GeneralType::Struct; });
}

HRESULT HostType::get_IsEnumType(VARIANT_BOOL* value) {
    // A count that was given names for its values is an enumeration too.
    return Get(value, [&] {
        return GeneralTypeOf(type_.generalType) == GeneralType::Enum || !type_.enumDesc.empty();
    });
}

} // namespace orv
