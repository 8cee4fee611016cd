#include "types/CSNVTType.h"

#include "common/Case.h"
#include "common/ComponentState.h"
#include "common/Numbers.h"
#include "common/Report.h"
#include "points/ValueText.h"

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

std::wstring LocalForm(std::wstring_view number) {
    return MoveDecimalMark(number, State().DecimalSeparator);
}

/// The entry of an identifier among the children of the catalogue's document
/// element; empty when there is none.
dom::Node FindEntry(const std::wstring& id) {
    const com::Ref<IDispatch>& catalogue = State().SnvtCatalogueDocument;
    com::CheckSet(catalogue.Get());
    const auto document = catalogue.As<IXMLDOMDocument>();
    com::CheckSet(document.Get());
    dom::Element root;
    com::Check(document->get_documentElement(root.Put()));
    com::CheckSet(root.Get());
    return dom::Select(dom::Node(root), std::wstring(kEntryPrefix) + id);
}

/// A failure inside one of the two value reads ends that read alone and is
/// shown in a plain box.
template <class F>
void ReadOrShow(const wchar_t* procedure, F&& read) {
    const auto failure = com::Attempt(std::forward<F>(read));
    if (failure) {
        ShowBox(L"Error " + std::to_wstring(failure->Number()) + L" (" + failure->Description() +
                    L") in procedure " + procedure + L" of Class Module CSNVTType",
                ComponentTitle());
    }
}

} // namespace

void CSNVTType::SetId(const std::wstring& id) noexcept {
    const auto failure = com::Attempt([&] {
        if (TrimBlanks(id).empty()) {
            genType_ = L"Enum";
            return;
        }
        ReadEntry(id);
    });
    if (failure) {
        com::Attempt([&] { Report(*failure, L"CSNVTType", L"ID [Property Let]  -  ID = '" + id + L"'"); });
    }
}

void CSNVTType::ReadEntry(const std::wstring& id) {
    const dom::Node entry = FindEntry(id);
    if (!entry) {
        ShowBox(L"Can't find the node related to SNVT ID " + id, L"O_Tam_id-CSNVTType::ID [Property Let]",
                MB_ICONSTOP);
        return;
    }
    dom::ForEachAttribute(entry, [&](const std::wstring& name, const std::wstring& text) {
        const std::wstring keyword = UpperCase(name);
        if (keyword == L"FACTOR") {
            factor_ = ToInt32(Val(text));
        } else if (keyword == L"Z3REGION") {
            z3Region_ = ToInt32(Val(text));
        }
    });
    dom::ForEachChildButComments(entry, [&](const dom::Node& child) {
        const std::wstring keyword = UpperCase(dom::BaseName(child));
        if (keyword == L"NAME") {
            name_ = dom::TextOf(child);
        } else if (keyword == L"TYPE") {
            genType_ = dom::TextOf(child);
            ReadGeneralType(entry, id);
        }
    });
    // Last, so that a report on the way names the identifier held before.
    id_ = id;
}

void CSNVTType::ReadGeneralType(const dom::Node& entry, const std::wstring& id) {
    if (genType_ == L"Enum") {
        luiType_ = L"Logic";
        length_ = 1;
    } else if (genType_ == L"Struct") {
        luiType_ = L"Invalid";
    } else if (genType_ == L"Float") {
        luiType_ = L"Float";
        ReadNumeric(entry);
    } else if (genType_ == L"Textual") {
        luiType_ = L"Textual";
        ReadTextual(entry);
    } else if (genType_ == L"SignedNumeric" || genType_ == L"UnsignedNumeric" || genType_ == L"Bitfield") {
        luiType_ = L"Numeric";
        ReadNumeric(entry);
    } else {
        ShowBox(L"Error: SNVT_" + id + L" has a bad type", L"O_Tam_ID.CSNVTType::ID", MB_ICONSTOP);
    }
}

void CSNVTType::ReadNumeric(const dom::Node& entry) {
    ReadOrShow(L"pGetNumeric", [&] {
        dom::ForEachChildButComments(entry, [&](const dom::Node& child) {
            const std::wstring keyword = UpperCase(dom::BaseName(child));
            if (keyword == L"UNIT") {
                units_ = dom::TextOf(child);
            } else if (keyword == L"BACNETUNIT") {
                bacnetUnits_ = dom::TextOf(child);
            } else if (keyword == L"MIN") {
                min_ = LocalForm(dom::TextOf(child));
            } else if (keyword == L"MAX") {
                max_ = LocalForm(dom::TextOf(child));
            } else if (keyword == L"LENGTH") {
                length_ = com::LongOf(dom::TextOf(child));
            } else if (keyword == L"A_COEF") {
                aCoef_ = com::LongOf(dom::TextOf(child));
            } else if (keyword == L"B_COEF") {
                bCoef_ = com::LongOf(dom::TextOf(child));
            } else if (keyword == L"C_COEF") {
                cCoef_ = com::LongOf(dom::TextOf(child));
            } else if (keyword == L"INVALIDVALUE") {
                invalidValue_ = dom::TextOf(child);
            }
        });
        if (length_ == 0) {
            // The identifier shown is the one held so far: the new one is taken over last.
            ShowBox(L"Error: SNVT_" + id_ + L" has a bad Length", L"O_Tam_id.CSNVTType::pGetNumeric",
                    MB_ICONSTOP);
        }
    });
}

void CSNVTType::ReadTextual(const dom::Node& entry) {
    ReadOrShow(L"pGetTextual", [&] {
        dom::ForEachChildButComments(entry, [&](const dom::Node& child) {
            if (UpperCase(dom::BaseName(child)) == L"LENGTH") {
                length_ = com::LongOf(dom::TextOf(child));
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
    return Get(value, [&] { return LocalForm(min_); });
}

STDMETHODIMP CSNVTType::get_Max(BSTR* value) {
    return Get(value, [&] { return LocalForm(max_); });
}

STDMETHODIMP CSNVTType::put_EnumDesc(BSTR value) {
    return Do([&] { enumDesc_ = com::View(value); });
}

STDMETHODIMP CSNVTType::get_IsEnumType(VARIANT_BOOL* value) {
    return Get(value, [&] { return IsEnum(); });
}

} // namespace tam
