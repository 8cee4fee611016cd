#include "types/CSNVTType.h"

#include "common/ComponentState.h"
#include "common/mSNVTDataConversion.h"
#include "common/Report.h"
#include "core/Case.h"
#include "core/Numbers.h"

#include <cstddef>
#include <string_view>

namespace tam {

namespace {

constexpr std::wstring_view kEntryPrefix = L"SNVT_";

std::wstring_view TrimBlanks(std::wstring_view text) {
    const auto first = text.find_first_not_of(L' ');
    if (first == std::wstring_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(L' ') - first + 1);
}

/// Stores a limit in local form. False when a report said that it could not,
/// which leaves an empty text.
bool StoreLimit(std::wstring& limit, const std::wstring& text) noexcept {
    limit = UnlocalizeValue(text);
    return limit.empty() == text.empty();
}

/// Whether a path is no more than a node's name. Blanks behind the name do not
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

} // namespace

bool CSNVTType::SetId(const std::wstring& id) noexcept {
    bool isClean = true;
    const auto failure = com::Attempt([&] {
        if (TrimBlanks(id).empty()) {
            genType_ = L"Enum";
            return;
        }
        isClean = ReadEntry(id);
    });
    if (failure) {
        com::Attempt([&] { Report(*failure, L"CSNVTType", L"ID [Property Let]  -  ID = '" + id + L"'"); });
    }
    return isClean && !failure;
}

bool CSNVTType::ReadEntry(const std::wstring& id) {
    const dom::Node entry = FindEntry(id);
    if (!entry) {
        ShowBox(L"Can't find the node related to SNVT ID " + id, L"O_Tam_id-CSNVTType::ID [Property Let]",
                MB_ICONSTOP);
        return false;
    }
    dom::ForEachAttribute(entry, [&](const std::wstring& name, const std::wstring& text) {
        const std::wstring keyword = UpperCase(name);
        if (keyword == L"FACTOR") {
            factor_ = ToInt32(Val(text));
        } else if (keyword == L"Z3REGION") {
            z3Region_ = ToInt32(Val(text));
        }
    });
    bool isClean = true;
    CatalogueFields fields(entry);
    fields.ForEach([&](const std::wstring& keyword, std::size_t field) {
        if (keyword == L"NAME") {
            name_ = fields.Text(field);
        } else if (keyword == L"TYPE") {
            genType_ = fields.Text(field);
            isClean = ReadGeneralType(fields, id) && isClean;
        }
    });
    // Last, so that a report on the way names the identifier held before.
    id_ = id;
    return isClean;
}

bool CSNVTType::ReadGeneralType(CatalogueFields& fields, const std::wstring& id) {
    if (genType_ == L"Enum") {
        luiType_ = L"Logic";
        length_ = 1;
        return true;
    }
    if (genType_ == L"Struct") {
        luiType_ = L"Invalid";
        return true;
    }
    if (genType_ == L"Float") {
        luiType_ = L"Float";
        return ReadNumeric(fields);
    }
    if (genType_ == L"Textual") {
        luiType_ = L"Textual";
        return ReadTextual(fields);
    }
    if (genType_ == L"SignedNumeric" || genType_ == L"UnsignedNumeric" || genType_ == L"Bitfield") {
        luiType_ = L"Numeric";
        return ReadNumeric(fields);
    }
    ShowBox(L"Error: SNVT_" + id + L" has a bad type", L"O_Tam_ID.CSNVTType::ID", MB_ICONSTOP);
    return false;
}

bool CSNVTType::ReadNumeric(CatalogueFields& fields) {
    bool hasLength = false;
    bool hasLimits = true;
    const bool isRead = ReadOrShow(L"pGetNumeric", [&] {
        fields.ForEach([&](const std::wstring& keyword, std::size_t field) {
            if (keyword == L"UNIT") {
                units_ = fields.Text(field);
            } else if (keyword == L"BACNETUNIT") {
                bacnetUnits_ = fields.Text(field);
            } else if (keyword == L"MIN") {
                hasLimits = StoreLimit(min_, fields.Text(field)) && hasLimits;
            } else if (keyword == L"MAX") {
                hasLimits = StoreLimit(max_, fields.Text(field)) && hasLimits;
            } else if (keyword == L"LENGTH") {
                length_ = com::LongOf(fields.Text(field));
            } else if (keyword == L"A_COEF") {
                aCoef_ = com::LongOf(fields.Text(field));
            } else if (keyword == L"B_COEF") {
                bCoef_ = com::LongOf(fields.Text(field));
            } else if (keyword == L"C_COEF") {
                cCoef_ = com::LongOf(fields.Text(field));
            } else if (keyword == L"INVALIDVALUE") {
                invalidValue_ = fields.Text(field);
            }
        });
        hasLength = length_ != 0;
        if (!hasLength) {
            // The identifier shown is the one held so far: the new one is taken over last.
            ShowBox(L"Error: SNVT_" + id_ + L" has a bad Length", L"O_Tam_id.CSNVTType::pGetNumeric",
                    MB_ICONSTOP);
        }
    });
    return isRead && hasLength && hasLimits;
}

bool CSNVTType::ReadTextual(CatalogueFields& fields) {
    return ReadOrShow(L"pGetTextual", [&] {
        fields.ForEach([&](const std::wstring& keyword, std::size_t field) {
            if (keyword == L"LENGTH") {
                length_ = com::LongOf(fields.Text(field));
            }
        });
    });
}

bool CSNVTType::IsEnum() const {
    return LowerCase(genType_) == L"enum";
}

bool CSNVTType::IsNumeric() const noexcept {
    return genType_ == L"Float" || genType_ == L"UnsignedNumeric" || genType_ == L"SignedNumeric";
}

STDMETHODIMP CSNVTType::get_Min(BSTR* value) {
    return Get(value, [&] { return LocalizeValue(min_); });
}

STDMETHODIMP CSNVTType::get_Max(BSTR* value) {
    return Get(value, [&] { return LocalizeValue(max_); });
}

STDMETHODIMP CSNVTType::put_EnumDesc(BSTR value) {
    return Do([&] { enumDesc_ = com::View(value); });
}

STDMETHODIMP CSNVTType::get_IsEnumType(VARIANT_BOOL* value) {
    return Get(value, [&] { return IsEnum(); });
}

} // namespace tam
