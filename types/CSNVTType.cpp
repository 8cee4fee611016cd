#include "types/CSNVTType.h"

#include "common/ComponentState.h"
#include "common/DocumentFields.h"
#include "common/ErrorReport.h"
#include "common/mSNVTDataConversion.h"
#include "core/Case.h"
#include "core/Trimmed.h"

#include <cstddef>
#include <functional>
#include <string_view>

namespace tam {

namespace {

constexpr std::wstring_view kEntryPrefix = L"SNVT_";

// Children of an entry that are not read by a table.
constexpr std::wstring_view kType = L"TYPE";
constexpr std::wstring_view kMin = L"MIN";
constexpr std::wstring_view kMax = L"MAX";

TypePool& Pool() {
    static TypePool pool;
    return pool;
}

/// Stores a limit in local form. False when a report said that it could not,
/// which leaves an empty text.
bool StoreLimit(std::wstring& limit, const std::wstring& text) noexcept {
    limit = UnlocalizeValue(text);
    return limit.empty() == text.empty();
}

/// Whether a path is no more than a node's name. Blanks after the name do not
/// count in a path.
bool IsNameOf(const dom::Node& node, std::wstring_view path) {
    const std::wstring name = dom::BaseName(node);
    return path.starts_with(name) &&
           path.find_first_not_of(L" \t\r\n", name.size()) == std::wstring_view::npos;
}

/// The entry of an identifier among the children of the catalogue's document
/// element; empty when there is none.
dom::Node FindEntry(const std::wstring& id) {
    const com::Ref<IDispatch>& catalogue = State().SnvtCatalogueDocument;
    com::CheckSet(catalogue.Get());
    const auto document = catalogue.As<IXMLDOMDocument>();
    com::CheckSet(document.Get());
    dom::Element root;
    com::Call(document, &IXMLDOMDocument::get_documentElement, root.Put());
    com::CheckSet(root.Get());
    const std::wstring path = std::wstring(kEntryPrefix) + id;
    const dom::Node entry = dom::Select(dom::Node(root), path);
    // An identifier such as "105/.." or "105 | //*" is a path that leads elsewhere.
    return entry && IsNameOf(entry, path) ? entry : dom::Node();
}

/// A failure inside one of the two value reads ends that read alone and is
/// shown in a plain box.
template <class F>
bool ReadOrShow(const wchar_t* procedure, F&& read) {
    const auto failure = com::Attempt(std::forward<F>(read));
    if (failure) {
        ShowBox(L"Error " + std::to_wstring(failure->Number()) + L" (" + failure->Description() +
                    L") in procedure " + procedure + L" of Class Module CSNVTType",
                ComponentTitle());
    }
    return !failure;
}

/// Lets the row of a child's name take it. False when there is none.
template <std::size_t N>
bool TakeChild(const ReadField<TypeData> (&table)[N], const std::wstring& keyword,
               const CatalogueFields& fields, std::size_t field, TypeData& data) {
    const std::function<std::wstring()> text = [&] { return fields.Text(field); };
    return TakeElement(table, keyword, data, {text, kUserRules});
}

bool ReadNumeric(CatalogueFields& fields, TypeData& data) {
    bool hasLength = false;
    bool hasLimits = true;
    const bool isRead = ReadOrShow(L"pGetNumeric", [&] {
        fields.ForEach([&](const std::wstring& keyword, std::size_t field) {
            if (keyword == kMin) {
                hasLimits = StoreLimit(data.min, fields.Text(field)) && hasLimits;
            } else if (keyword == kMax) {
                hasLimits = StoreLimit(data.max, fields.Text(field)) && hasLimits;
            } else {
                TakeChild(kNumericType, keyword, fields, field, data);
            }
        });
        hasLength = data.length != 0;
        if (!hasLength) {
            // The identifier shown is the one held so far: the new one is taken over last.
            ShowBox(L"Error: SNVT_" + data.id + L" has a bad Length", L"O_Tam_id.CSNVTType::pGetNumeric",
                    MB_ICONSTOP);
        }
    });
    return isRead && hasLength && hasLimits;
}

bool ReadTextual(CatalogueFields& fields, TypeData& data) {
    return ReadOrShow(L"pGetTextual", [&] {
        fields.ForEach([&](const std::wstring& keyword, std::size_t field) {
            TakeChild(kTextualType, keyword, fields, field, data);
        });
    });
}

} // namespace

const TypeData& CSNVTType::Data() const noexcept {
    static const TypeData nothing;
    return data_ ? *data_ : nothing;
}

TypeData& CSNVTType::Own() {
    if (data_.use_count() != 1) {
        data_ = std::make_shared<TypeData>(Data());
    }
    return *data_;
}

bool CSNVTType::SetId(const std::wstring& id) noexcept {
    bool isClean = true;
    ++readings_;
    const auto failure = com::Attempt([&] {
        if (readings_ == 1) {
            // New even where nobody shares the old: a message of the host may let
            // another type find that, and this one is written to as it is read.
            data_ = std::make_shared<TypeData>(Data());
        }
        TypeData& data = Own();
        if (Trimmed(id).empty()) {
            data.generalType = GeneralTypeText(GeneralType::Enum);
            return;
        }
        isClean = ReadEntry(id, data);
    });
    if (failure) {
        com::Attempt(
            [&] { ShowErrorReport(*failure, L"CSNVTType", L"ID [Property Let]  -  ID = '" + id + L"'"); });
    }
    --readings_;
    if (readings_ == 0 && data_) {
        com::Attempt([&] { data_ = Pool().Shared(data_); });
    }
    return isClean && !failure;
}

bool CSNVTType::ReadEntry(const std::wstring& id, TypeData& data) {
    const dom::Node entry = FindEntry(id);
    if (!entry) {
        ShowBox(L"Can't find the node related to SNVT ID " + id, L"O_Tam_id-CSNVTType::ID [Property Let]",
                MB_ICONSTOP);
        return false;
    }
    dom::ForEachAttribute(entry, [&](const std::wstring& name, const std::wstring& text) {
        TakeAttribute(kTypeAttributes, UpperCase(name), data, text);
    });
    bool isClean = true;
    CatalogueFields fields(entry);
    fields.ForEach([&](const std::wstring& keyword, std::size_t field) {
        if (keyword == kType) {
            data.generalType = fields.Text(field);
            isClean = ReadGeneralType(fields, id, data) && isClean;
        } else {
            TakeChild(kEveryType, keyword, fields, field, data);
        }
    });
    // Last, so that a report on the way names the identifier held before.
    data.id = id;
    return isClean;
}

bool CSNVTType::ReadGeneralType(CatalogueFields& fields, const std::wstring& id, TypeData& data) {
    const GeneralType general = GeneralTypeOf(data.generalType);
    if (general == GeneralType::Other) {
        ShowBox(L"Error: SNVT_" + id + L" has a bad type", L"O_Tam_ID.CSNVTType::ID", MB_ICONSTOP);
        return false;
    }
    data.luiType = LuiTypeOf(general);
    if (general == GeneralType::Enum) {
        data.length = 1;
    }
    if (general == GeneralType::Textual) {
        return ReadTextual(fields, data);
    }
    return !HasNumericFields(general) || ReadNumeric(fields, data);
}

bool CSNVTType::IsEnum() const {
    return LowerCase(Data().generalType) == L"enum";
}

STDMETHODIMP CSNVTType::get_Min(BSTR* value) {
    return Get(value, [&] { return LocalizeValue(Data().min); });
}

STDMETHODIMP CSNVTType::get_Max(BSTR* value) {
    return Get(value, [&] { return LocalizeValue(Data().max); });
}

STDMETHODIMP CSNVTType::put_EnumDesc(BSTR value) {
    return Do([&] { Own().enumDescription = com::View(value); });
}

STDMETHODIMP CSNVTType::get_IsEnumType(VARIANT_BOOL* value) {
    return Get(value, [&] { return IsEnum(); });
}

} // namespace tam
