#include "points/CDBAttribute.h"

#include "common/DocumentFields.h"
#include "common/ErrorReport.h"
#include "common/mSNVTDataConversion.h"
#include "core/Case.h"
#include "core/EnumDescription.h"
#include "core/Trimmed.h"
#include "points/UnitConversion.h"

namespace tam {

namespace {

constexpr const wchar_t* kReportClass = L"O_Tam_id Class Module CDBAttribute";

/// The definition's type, in capitals as names are compared.
constexpr const wchar_t* kSnvtType = L"SNVTTYPE";
/// The same in the saved element.
constexpr const wchar_t* kSavedType = L"SNVT_TYPE";

} // namespace

void CDBAttribute::SetSNVTName(const std::wstring& name) {
    if (!type_) {
        type_ = CSNVTType::Make();
    }
    if (!name.empty()) {
        type_->SetId(name);
    }
}

void CDBAttribute::ReadDefinition(const dom::Node& element) noexcept {
    using com::Attempt;
    std::wstring typeName;
    // A type that was read whole needs no second reading: no message of the
    // host comes in between that could change the catalogue.
    bool isTypeRead = false;
    const auto readChild = [&](const dom::Node& child) {
        const std::wstring keyword = UpperCase(dom::BaseName(child));
        if (keyword == kSnvtType) {
            isTypeRead = false;
            Attempt([&] { typeName = dom::FirstChildText(child); });
            type_ = CSNVTType::Make();
            isTypeRead = type_->SetId(typeName);
        } else {
            TakeNode(kAttributeDefinition, keyword, data_, child, &dom::FirstChildText);
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
        type_->SetId(typeName);
    }
    Attempt([&] {
        if (IsNumeric(type_->General())) {
            const auto text = OwnerOf(Owner()).OwnerDefaultValue(dom::BaseName(element));
            if (text) {
                data_.defaultValue = UnlocalizeValue(*text);
            }
        }
    });
}

void CDBAttribute::CreateEditor() {
    editor_ = MakeValueEditor(RequiredType().General());
}

CSNVTType& CDBAttribute::RequiredType() const {
    com::CheckSet(type_.Get());
    return *type_.Get();
}

std::wstring CDBAttribute::DispValue() const {
    const CSNVTType& type = RequiredType();
    const GeneralType general = type.General();
    if (general == GeneralType::Bitfield) {
        return std::wstring(Trimmed(data_.value));
    }
    if (general == GeneralType::Enum) {
        return EnumLabel(LocalizeValue(data_.value), type.Data().enumDescription);
    }
    return IsNumeric(general) ? NumericDispValue() : LocalizeValue(data_.value);
}

std::wstring CDBAttribute::NumericDispValue() const {
    const auto converter = OwnerOf(Owner()).OwnerUnitsManager();
    com::CheckSet(converter.Get());
    const std::wstring unit = RequiredType().Id(); // the converter may let another type be loaded
    const std::wstring converted = ConvertedValue(*converter.Get(), LocalizeValue(data_.value), unit);
    return converted + L" " + UnitLabel(*converter.Get(), unit);
}

STDMETHODIMP CDBAttribute::put_Value(BSTR value) {
    return Do([&] { data_.value = com::View(value); });
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
         [&] { dom::Append(dom::DocumentOf(document), dom::NodeOf(parentNode), PointName()); });
    return S_OK;
}

STDMETHODIMP CDBAttribute::pConvertEnum(BSTR value, BSTR description, BSTR* label) {
    return Get(label, [&] { return EnumLabel(com::View(value), com::View(description)); });
}

STDMETHODIMP CDBAttribute::get_UnitsManager(IDispatch** value) {
    return Get(value, [&] { return OwnerOf(Owner()).OwnerUnitsManager(); });
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

} // namespace tam
