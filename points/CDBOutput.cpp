#include "points/CDBOutput.h"

#include "com/Required.h"
#include "common/DocumentFields.h"
#include "common/ErrorReport.h"
#include "core/Case.h"
#include "core/ValueText.h"
#include "points/PointWarnings.h"

#include <cstdint>

namespace tam {

namespace {

constexpr const wchar_t* kReportClass = L"O_Tam_id Class Module CDBOutput";

/// The definition's type, in capitals as names are compared.
constexpr const wchar_t* kSnvtType = L"SNVTTYPE";

constexpr std::int16_t kReferenceDigits = 4;

} // namespace

void CDBOutput::SetSnvtType(const std::wstring& id) {
    if (!type_) {
        type_ = CSNVTType::Make();
    }
    type_->SetId(id);
}

void CDBOutput::ReadDefinition(const dom::Node& element, const std::wstring& ownerName) {
    dom::ForEachAttribute(element, [&](const std::wstring& name, const std::wstring& text) {
        TakeAttribute(kOutputDefinitionAttributes, UpperCase(name), data_, text);
    });
    dom::ForEachChildButComments(element, [&](const dom::Node& child) {
        const std::wstring keyword = UpperCase(dom::BaseName(child));
        if (keyword == kSnvtType) {
            ReadType(dom::TextOf(child), ownerName);
        } else {
            TakeNode(kOutputDefinition, keyword, data_, child, &dom::TextOf);
        }
    });
}

void CDBOutput::ReadType(const std::wstring& id, const std::wstring& ownerName) {
    if (id.empty()) {
        WarnNoCompatibilityList(PointName(), ownerName);
    }
    data_.snvtType = id;
    data_.hasType = true;
    compatible_.Reset();
    type_.Reset();
    SetSnvtType(id);
}

STDMETHODIMP CDBOutput::XMLSave(IDispatch* document, IDispatch* parentNode) {
    Trap(kReportClass, L"Sub XMLSave", [&] {
        const dom::Document target = dom::DocumentOf(document);
        const dom::Node element(dom::Append(target, dom::NodeOf(parentNode), PointName()));
        AppendFields(target, element, kOutputToSave, data_);
    });
    return S_OK;
}

STDMETHODIMP CDBOutput::XmlLoad(IDispatch* element) {
    Trap(kReportClass, L"Sub XmlLoad", [&] {
        dom::ForEachChildButComments(dom::NodeOf(element), [&](const dom::Node& child) {
            TakeNode(kSavedOutput, UpperCase(dom::BaseName(child)), data_, child, &dom::TextOf);
        });
    });
    return S_OK;
}

STDMETHODIMP CDBOutput::get_SNVTCompatible(ICompatibleSNVT** value) {
    return Get(value, [&] {
        if (!compatible_ && data_.hasType) {
            compatible_ = CCompatibleSNVT::Make(data_.snvtType);
        }
        return compatible_;
    });
}

STDMETHODIMP CDBOutput::put_IsDisplayable(VARIANT_BOOL value) {
    data_.isDisplayable = value != VARIANT_FALSE;
    return S_OK;
}

STDMETHODIMP CDBOutput::put_IsConnected(VARIANT_BOOL value) {
    data_.isConnected = value != VARIANT_FALSE;
    return S_OK;
}

STDMETHODIMP CDBOutput::putref_ConnectedType(IDispatch* value) {
    const auto kept = Kept(); // the type that is asked may drop the last reference
    return Do([&] {
        const auto type = Required<ISNVType>(value);
        com::Bstr id;
        com::Call(type, &ISNVType::get_ID, id.Put());
        data_.connectedType = id.View();
    });
}

STDMETHODIMP CDBOutput::get_IsSNVTCompatible(BSTR identifier, VARIANT_BOOL* value) {
    return Get(value, [&] { return type_ && type_->Id() == com::View(identifier); });
}

STDMETHODIMP CDBOutput::get_Reference(BSTR* value) {
    return Get(value, [&] {
        std::int32_t reference = PointReference(OwnerOf(Owner()).OwnerExportIndex(), Index());
        return ToFixedHex(reference, kReferenceDigits);
    });
}

} // namespace tam
