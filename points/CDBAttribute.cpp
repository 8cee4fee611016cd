#include "points/CDBAttribute.h"

#include "common/ComponentState.h"
#include "common/mSNVTDataConversion.h"
#include "common/Report.h"
#include "core/Case.h"
#include "core/EnumDescription.h"
#include "core/RunTimeError.h"
#include "points/MacroConnections.h"
#include "points/UnitConversion.h"

namespace tam {

namespace {

constexpr const wchar_t* kReportClass = L"O_Tam_id Class Module CDBAttribute";

// Keywords of the definition element, compared in upper case.
constexpr const wchar_t* kDescription = L"DESCRIPTION";
constexpr const wchar_t* kVisible = L"VISIBLE";
constexpr const wchar_t* kSnvtType = L"SNVTTYPE";
constexpr const wchar_t* kLogicalAddress = L"LOGICALADDRESS";
constexpr const wchar_t* kIsPermanent = L"ISPERMANENT";
constexpr const wchar_t* kValue = L"VALUE";

// The saved element.
constexpr const wchar_t* kSavedType = L"SNVT_TYPE";

std::wstring TrimBlanks(const std::wstring& text) {
    const auto first = text.find_first_not_of(L' ');
    return first == std::wstring::npos ? std::wstring()
                                       : text.substr(first, text.find_last_not_of(L' ') - first + 1);
}

} // namespace

void CDBAttribute::SetSNVTName(const std::wstring& name) {
    if (!type_) {
        type_ = CSNVTType::Make();
    }
    if (!name.empty()) {
        type_->SetId(name);
    }
}

void CDBAttribute::LoadDefinition(const dom::Node& element) noexcept {
    using com::Attempt;
    // A type that was read whole needs no second reading: no message of the
    // host comes in between that could change the catalogue.
    bool isTypeRead = false;
    const auto readChild = [&](const dom::Node& child) {
        const std::wstring keyword = UpperCase(dom::BaseName(child));
        if (keyword == kDescription) {
            description_ = dom::FirstChildText(child);
        } else if (keyword == kVisible) {
            visible_ = true;
        } else if (keyword == kSnvtType) {
            isTypeRead = false;
            Attempt([&] { typeName_ = dom::FirstChildText(child); });
            type_ = CSNVTType::Make();
            isTypeRead = type_->SetId(typeName_);
        } else if (keyword == kLogicalAddress) {
            logicalAddress_ = dom::FirstChildText(child);
        } else if (keyword == kIsPermanent) {
            isPermanent_ = dom::FirstChildText(child);
        } else if (keyword == kValue) {
            value_ = dom::FirstChildText(child);
        }
    };
    Attempt([&] {
        dom::ForEachChildButComments(element,
                                     [&](const dom::Node& child) { Attempt([&] { readChild(child); }); });
    });
    if (!type_) {
        return;
    }
    if (!isTypeRead) {
        type_->SetId(typeName_);
    }
    Attempt([&] {
        if (type_->IsNumeric()) {
            const auto text = OwnerOf(Owner()).OwnerDefaultValue(dom::BaseName(element));
            if (text) {
                defaultValue_ = UnlocalizeValue(*text);
            }
        }
    });
}

void CDBAttribute::CreateEditor() {
    editor_ = MakeValueEditor(RequiredType().GenType());
}

CSNVTType& CDBAttribute::RequiredType() const {
    com::CheckSet(type_.Get());
    return *type_.Get();
}

std::wstring CDBAttribute::DispValue() const {
    const CSNVTType& type = RequiredType();
    if (type.GenType() == L"Bitfield") {
        return TrimBlanks(value_);
    }
    if (type.GenType() == L"Enum") {
        return EnumLabel(LocalizeValue(value_), type.EnumDesc());
    }
    if (type.IsNumeric()) {
        return NumericDispValue();
    }
    return LocalizeValue(value_);
}

std::wstring CDBAttribute::NumericDispValue() const {
    const auto converter = OwnerOf(Owner()).OwnerUnitsManager();
    com::CheckSet(converter.Get());
    const std::wstring unit = RequiredType().Id(); // the converter may let another type be loaded
    const std::wstring converted = ConvertedValue(*converter.Get(), LocalizeValue(value_), unit);
    return converted + L" " + UnitLabel(*converter.Get(), unit);
}

STDMETHODIMP CDBAttribute::put_Value(BSTR value) {
    return Do([&] { value_ = com::View(value); });
}

STDMETHODIMP CDBAttribute::XmlLoad(IDispatch* element) {
    const auto kept = This<_CDBAttribute>(); // a box that a type shows may drop the last reference
    Trap(kReportClass, L"Sub XmlLoad", [&] {
        dom::ForEachChildButComments(dom::NodeOf(element), [&](const dom::Node& child) {
            if (UpperCase(dom::BaseName(child)) == kSavedType) {
                if (!type_) {
                    type_ = CSNVTType::Make();
                }
                type_->SetId(dom::FirstChildText(child));
            }
        });
    });
    return S_OK;
}

STDMETHODIMP CDBAttribute::XMLSave(IDispatch* parentNode, IDispatch* document) {
    Trap(kReportClass, L"Sub XMLSave",
         [&] { dom::Append(dom::DocumentOf(document), dom::NodeOf(parentNode), name_); });
    return S_OK;
}

STDMETHODIMP CDBAttribute::pConvertEnum(BSTR value, BSTR description, BSTR* label) {
    return Get(label, [&] { return EnumLabel(com::View(value), com::View(description)); });
}

STDMETHODIMP CDBAttribute::get_UnitsManager(IDispatch** value) {
    return Get(value, [&] { return OwnerOf(Owner()).OwnerUnitsManager(); });
}

STDMETHODIMP CDBAttribute::get_Parent(IAppObject** value) {
    return Get(value, [&] { return ParentOf(Owner()); });
}

STDMETHODIMP CDBAttribute::SetValue() {
    return Do([&] {
        com::CheckSet(editor_.get());
        editor_->SetDataPoint(static_cast<IAttribute*>(this));
        editor_->ShowModal();
    });
}

STDMETHODIMP CDBAttribute::get_DispValue(BSTR* value) {
    return Get(value, [&] { return DispValue(); });
}

STDMETHODIMP CDBAttribute::get_GlobalKey(BSTR* value) {
    return Get(value, [&] { return com::Bstr(SubItemKeyParts(globalKey_, name_)); });
}

STDMETHODIMP CDBAttribute::get_ExtendedKey(BSTR* value) {
    return Get(value, [&] { return com::Bstr(SubItemKeyParts(extendedKey_, name_)); });
}

STDMETHODIMP CDBAttribute::get_IsMacroConnected(VARIANT_BOOL* value) {
    const auto kept = This<_CDBAttribute>(); // the host that is asked may drop the last reference
    return Get(value, [&] { return IsInMacroConnection(Owner(), globalKey_, name_); });
}

} // namespace tam
