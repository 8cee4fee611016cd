#include "host/HostType.h"

#include "core/Case.h"
#include "core/ElementFields.h"
#include "core/GeneralType.h"
#include "core/ValueText.h"
#include "host/TypeTable.h"
#include "host/UserMarks.h"

#include <algorithm>
#include <functional>

namespace orv {

namespace {

namespace dom = tam::dom;
using tam::GeneralType;
using tam::GeneralTypeOf;

constexpr std::wstring_view kEntryPrefix = L"SNVT_";

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

constexpr tam::ReadField<TypeDescription> kEntry[] = {
    {L"NAME", tam::TakeText<&TypeDescription::name>},
    {L"TYPE", tam::TakeText<&TypeDescription::generalType>},
    {L"UNIT", tam::TakeText<&TypeDescription::units>},
    {L"BACNETUNIT", tam::TakeText<&TypeDescription::bacnetUnits>},
    {L"MIN", tam::TakeText<&TypeDescription::min>},
    {L"MAX", tam::TakeText<&TypeDescription::max>},
    {L"ENUMDESC", tam::TakeText<&TypeDescription::enumDesc>},
    {L"INVALIDVALUE", tam::TakeText<&TypeDescription::invalidValue>},
    {L"LENGTH", tam::TakeInt32<&TypeDescription::length>},
    {L"A_COEF", tam::TakeInt32<&TypeDescription::a>},
    {L"B_COEF", tam::TakeInt32<&TypeDescription::b>},
    {L"C_COEF", tam::TakeInt32<&TypeDescription::c>},
    {L"FACTOR", tam::TakeInt32<&TypeDescription::factor>},
    {L"Z3REGION", tam::TakeInt32<&TypeDescription::region>},
};
/// A limit as a type of a module tells it: of the user's marks it knows "," and ".", as all
/// that reads it back. The catalogue writes ".".
std::wstring InUsersForm(const std::wstring& limit) {
    return tam::MoveDecimalMark(limit, tam::DecimalSeparatorFrom(UserMarks().decimal));
}

/// No row follows the user's locale.
constexpr tam::LocaleRules kNoLocale{};

void TakeNamed(TypeDescription& type, const std::wstring& name, const std::function<std::wstring()>& text) {
    tam::TakeElement(kEntry, tam::UpperCase(name), type, {text, kNoLocale});
}

} // namespace

TypeDescription DescribeType(std::wstring_view id, const dom::Document& catalogue) {
    TypeDescription type;
    type.id = id;
    if (const dom::Node entry = EntryOf(id, catalogue)) {
        dom::ForEachAttribute(entry, [&](const std::wstring& name, const std::wstring& text) {
            TakeNamed(type, name, [&] { return text; });
        });
        dom::ForEachChild(entry, [&](const dom::Node& child) {
            if (dom::IsElement(child)) {
                TakeNamed(type, dom::BaseName(child), [&] { return dom::TextOf(child); });
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

HRESULT HostType::get_Min(BSTR* value) {
    return Get(value, [&] { return InUsersForm(type_.min); });
}

HRESULT HostType::get_Max(BSTR* value) {
    return Get(value, [&] { return InUsersForm(type_.max); });
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
