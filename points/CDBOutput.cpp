#include "points/CDBOutput.h"

#include "com/Required.h"
#include "common/Report.h"
#include "core/Case.h"
#include "core/ValueText.h"
#include "points/MacroConnections.h"
#include "points/PointWarnings.h"

#include <cstdint>

namespace tam {

namespace {

constexpr const wchar_t* kReportClass = L"O_Tam_id Class Module CDBOutput";

// Keywords of the definition element, compared in upper case.
constexpr const wchar_t* kTypeDependent = L"TYPEDEPENDENT";
constexpr const wchar_t* kVisible = L"VISIBLE";
constexpr const wchar_t* kSnvtType = L"SNVTTYPE";
constexpr const wchar_t* kLogicalAddress = L"LOGICALADDRESS";
constexpr const wchar_t* kMapAsObject = L"ISMAPASOO";
constexpr const wchar_t* kObjectOffset = L"OBJOFFSET";
constexpr const wchar_t* kAbsoluteObjectIndex = L"ABSOLUTEOBJECTINDEX";
constexpr const wchar_t* kWritable = L"ISWRITABLE";

// The saved element; read in any letter case.
constexpr const wchar_t* kSavedType = L"SNVT_Type";
constexpr const wchar_t* kSavedConnected = L"IsConnected";
constexpr const wchar_t* kSavedDisplayable = L"IsDisplayable";
constexpr const wchar_t* kSavedExportIndex = L"ExportIndex";

constexpr std::int16_t kReferenceDigits = 4;

} // namespace

void CDBOutput::SetSnvtType(const std::wstring& id) {
    if (!type_) {
        type_ = CSNVTType::Make();
    }
    type_->SetId(id);
}

void CDBOutput::ReadDefinition(const dom::Node& element, const std::wstring& ownerName) {
    typeDependent_ = false;
    displayWritable_ = false;
    dom::ForEachAttribute(element, [&](const std::wstring& name, const std::wstring&) {
        if (UpperCase(name) == kTypeDependent) {
            typeDependent_ = true;
        }
    });
    dom::ForEachChildButComments(element, [&](const dom::Node& child) {
        const std::wstring keyword = UpperCase(dom::BaseName(child));
        const std::wstring text = dom::TextOf(child);
        if (keyword == kVisible) {
            visible_ = true;
        } else if (keyword == kSnvtType) {
            if (text.empty()) {
                WarnNoCompatibilityList(name_, ownerName);
            }
            compatible_ = CCompatibleSNVT::Make(text);
            type_.Reset();
            SetSnvtType(text);
        } else if (keyword == kLogicalAddress) {
            logicalAddress_ = text;
        } else if (keyword == kMapAsObject) {
            mapAsObject_ = text;
        } else if (keyword == kObjectOffset) {
            objectOffset_ = text;
        } else if (keyword == kAbsoluteObjectIndex) {
            absoluteObjectIndex_ = text;
        } else if (keyword == kWritable) {
            writable_ = text;
        }
    });
}

STDMETHODIMP CDBOutput::XMLSave(IDispatch* document, IDispatch* parentNode) {
    Trap(kReportClass, L"Sub XMLSave", [&] {
        const dom::Document target = dom::DocumentOf(document);
        const dom::Node element(dom::Append(target, dom::NodeOf(parentNode), name_));
        dom::AppendText(target, element, kSavedType, CompatibleId());
        dom::AppendText(target, element, kSavedConnected, com::TextOf(connected_));
        dom::AppendText(target, element, kSavedDisplayable, com::TextOf(displayable_));
        dom::AppendText(target, element, kSavedExportIndex, exportIndex_);
    });
    return S_OK;
}

STDMETHODIMP CDBOutput::XmlLoad(IDispatch* element) {
    Trap(kReportClass, L"Sub XmlLoad", [&] {
        dom::ForEachChildButComments(dom::NodeOf(element), [&](const dom::Node& child) {
            const std::wstring keyword = dom::BaseName(child);
            if (EqualIgnoringCase(keyword, kSavedConnected)) {
                connected_ = com::BoolOf(dom::TextOf(child));
            } else if (EqualIgnoringCase(keyword, kSavedDisplayable)) {
                displayable_ = com::BoolOf(dom::TextOf(child));
            } else if (EqualIgnoringCase(keyword, kSavedExportIndex)) {
                exportIndex_ = dom::TextOf(child);
            }
        });
    });
    return S_OK;
}

STDMETHODIMP CDBOutput::get_Parent(IAppObject** value) {
    return Get(value, [&] { return ParentOf(Owner()); });
}

STDMETHODIMP CDBOutput::get_GlobalKey(BSTR* value) {
    return Get(value, [&] { return com::Bstr(SubItemKeyParts(globalKey_, name_)); });
}

STDMETHODIMP CDBOutput::get_ExtendedKey(BSTR* value) {
    return Get(value, [&] { return com::Bstr(SubItemKeyParts(extendedKey_, name_)); });
}

STDMETHODIMP CDBOutput::get_IsMacroConnected(VARIANT_BOOL* value) {
    const auto kept = This<_CDBOutput>(); // the host that is asked may drop the last reference
    return Get(value, [&] { return IsInMacroConnection(Owner(), globalKey_, name_); });
}

STDMETHODIMP CDBOutput::put_IsDisplayable(VARIANT_BOOL value) {
    displayable_ = value != VARIANT_FALSE;
    return S_OK;
}

STDMETHODIMP CDBOutput::put_IsConnected(VARIANT_BOOL value) {
    connected_ = value != VARIANT_FALSE;
    return S_OK;
}

STDMETHODIMP CDBOutput::putref_ConnectedType(IDispatch* value) {
    return Do([&] {
        const auto type = Required<ISNVType>(value);
        com::Bstr id;
        com::Call(type, &ISNVType::get_ID, id.Put());
        connectedTypeId_ = id.View();
    });
}

STDMETHODIMP CDBOutput::get_IsSNVTCompatible(BSTR identifier, VARIANT_BOOL* value) {
    return Get(value, [&] { return type_ && type_->Id() == com::View(identifier); });
}

STDMETHODIMP CDBOutput::get_Reference(BSTR* value) {
    return Get(value, [&] {
        std::int32_t reference = PointReference(OwnerOf(Owner()).OwnerExportIndex(), index_);
        return ToFixedHex(reference, kReferenceDigits);
    });
}

} // namespace tam
