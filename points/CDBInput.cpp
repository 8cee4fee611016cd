#include "points/CDBInput.h"

#include "common/Report.h"
#include "core/Case.h"
#include "points/MacroConnections.h"
#include "points/PointWarnings.h"

namespace tam {

namespace {

constexpr const wchar_t* kReportClass = L"O_Tam_id Class Module CDBInput";

// Keywords of the definition element, compared in upper case.
constexpr const wchar_t* kMandatory = L"MANDATORY";
constexpr const wchar_t* kVisible = L"VISIBLE";
constexpr const wchar_t* kLogicalAddress = L"LOGICALADDRESS";
constexpr const wchar_t* kIsPermanent = L"ISPERMANENT";
constexpr const wchar_t* kCompatibilityList = L"SNVTCOMPATIBILITYLIST";
constexpr const wchar_t* kProtocolReference = L"PROTOCOLREFERENCE";
constexpr const wchar_t* kSnvtType = L"SNVTTYPE";

// The saved element.
constexpr const wchar_t* kSavedList = L"SNVT_List";
constexpr const wchar_t* kSavedType = L"SNVT_TYPE";

} // namespace

void CDBInput::ReadDefinition(const dom::Node& element, const std::wstring& ownerName) {
    dom::ForEachChildButComments(element, [&](const dom::Node& child) {
        const std::wstring keyword = UpperCase(dom::BaseName(child));
        const std::wstring text = dom::FirstChildTextOrEmpty(child);
        if (keyword == kMandatory) {
            mandatory_ = false; // the element's presence clears the flag
        } else if (keyword == kVisible) {
            visible_ = true;
        } else if (keyword == kLogicalAddress) {
            logicalAddress_ = text;
        } else if (keyword == kIsPermanent) {
            permanent_ = text == L"1"; // a blank beside it makes it another text
        } else if (keyword == kCompatibilityList) {
            compatible_->AddList(text);
            if (compatible_->GetList().empty()) {
                WarnNoCompatibilityList(name_, ownerName);
            }
        } else if (keyword == kProtocolReference) {
            protocolReference_ = text;
        } else if (keyword == kSnvtType) {
            snvtType_ = text;
        }
    });
}

STDMETHODIMP CDBInput::XMLSave(IDispatch* document, IDispatch* parentNode) {
    Trap(kReportClass, L"Sub XMLSave", [&] {
        const dom::Document target = dom::DocumentOf(document);
        const dom::Element element = dom::Append(target, dom::NodeOf(parentNode), name_);
        dom::AppendText(target, dom::Node(element), kSavedList, compatible_->GetList());
    });
    return S_OK;
}

STDMETHODIMP CDBInput::XmlLoad(IDispatch* element) {
    Trap(kReportClass, L"Sub XmlLoad", [&] {
        dom::ForEachChildButComments(dom::NodeOf(element), [&](const dom::Node& child) {
            if (UpperCase(dom::BaseName(child)) == kSavedType) {
                snvtType_ = dom::TextOf(child);
            }
        });
    });
    return S_OK;
}

STDMETHODIMP CDBInput::get_ConnectedType(ISNVType** value) {
    return Get(value, [&] { return connectedType_; });
}

STDMETHODIMP CDBInput::put_Value(BSTR value) {
    return Do([&] { value_ = com::View(value); });
}

STDMETHODIMP CDBInput::get_Parent(IAppObject** value) {
    return Get(value, [&] { return ParentOf(Owner()); });
}

STDMETHODIMP CDBInput::get_GlobalKey(BSTR* value) {
    return Get(value, [&] { return com::Bstr(SubItemKeyParts(globalKey_, name_)); });
}

STDMETHODIMP CDBInput::get_ExtendedKey(BSTR* value) {
    return Get(value, [&] { return com::Bstr(SubItemKeyParts(extendedKey_, name_)); });
}

STDMETHODIMP CDBInput::get_IsMacroConnected(VARIANT_BOOL* value) {
    const auto kept = This<_CDBInput>(); // the host that is asked may drop the last reference
    return Get(value, [&] { return IsInMacroConnection(Owner(), globalKey_, name_); });
}

STDMETHODIMP CDBInput::put_IsConnected(VARIANT_BOOL value) {
    connected_ = value != VARIANT_FALSE;
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
