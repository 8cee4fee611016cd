#include "points/CDBInput.h"

#include "common/DocumentFields.h"
#include "common/ErrorReport.h"
#include "core/Case.h"
#include "points/PointWarnings.h"

namespace tam {

namespace {

constexpr const wchar_t* kReportClass = L"O_Tam_id Class Module CDBInput";

/// The definition's list of compatible types, in capitals as names are compared.
constexpr const wchar_t* kCompatibilityList = L"SNVTCOMPATIBILITYLIST";
/// The same in the saved element.
constexpr const wchar_t* kSavedList = L"SNVT_List";

} // namespace

void CDBInput::ReadDefinition(const dom::Node& element, const std::wstring& ownerName) {
    dom::ForEachChildButComments(element, [&](const dom::Node& child) {
        const std::wstring keyword = UpperCase(dom::BaseName(child));
        if (keyword == kCompatibilityList) {
            compatible_->AddList(dom::FirstChildTextOrEmpty(child));
            if (compatible_->List().Count() == 0) {
                WarnNoCompatibilityList(PointName(), ownerName);
            }
        } else {
            TakeNode(kInputDefinition, keyword, data_, child, &dom::FirstChildTextOrEmpty);
        }
    });
}

STDMETHODIMP CDBInput::XMLSave(IDispatch* document, IDispatch* parentNode) {
    Trap(kReportClass, L"Sub XMLSave", [&] {
        const dom::Document target = dom::DocumentOf(document);
        const dom::Element element = dom::Append(target, dom::NodeOf(parentNode), PointName());
        dom::AppendText(target, dom::Node(element), kSavedList, compatible_->GetList());
    });
    return S_OK;
}

STDMETHODIMP CDBInput::XmlLoad(IDispatch* element) {
    Trap(kReportClass, L"Sub XmlLoad", [&] {
        dom::ForEachChildButComments(dom::NodeOf(element), [&](const dom::Node& child) {
            TakeNode(kSavedInput, UpperCase(dom::BaseName(child)), data_, child, &dom::TextOf);
        });
    });
    return S_OK;
}

STDMETHODIMP CDBInput::get_ConnectedType(ISNVType** value) {
    return Get(value, [&] { return connectedType_; });
}

STDMETHODIMP CDBInput::put_Value(BSTR value) {
    return Do([&] { data_.linkReference = com::View(value); });
}

STDMETHODIMP CDBInput::put_IsConnected(VARIANT_BOOL value) {
    data_.isConnected = value != VARIANT_FALSE;
    return S_OK;
}

STDMETHODIMP CDBInput::putref_ConnectedType(IDispatch* value) {
    // Nothing of another object: a point of the own module would keep the module,
    // which keeps this input.
    connectedType_ = com::Query<ISNVType>(value);
    return S_OK;
}

STDMETHODIMP CDBInput::get_IsSNVTCompatible(BSTR identifier, VARIANT_BOOL* value) {
    return Get(value, [&] {
        bool compatible = false;
        Trap(kReportClass, L"Function ISubItemConnable_IsSNVTCompatible",
             [&] { compatible = compatible_->List().Exists(com::View(identifier)); });
        return compatible;
    });
}

} // namespace tam
