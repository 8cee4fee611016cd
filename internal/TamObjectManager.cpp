#include "internal/TamObjectManager.h"

#include "com/Dom.h"
#include "common/ComponentState.h"
#include "common/ErrorReport.h"
#include "common/MessageLoop.h"
#include "core/Case.h"
#include "internal/TamInternalAppObject.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <utility>

namespace tam {

namespace {

// Identifiers are compared in lower case.
constexpr std::wstring_view kModuleObject = L"o_tam_id";
constexpr std::array<std::wstring_view, 5> kInternalObjects = {L"o_tam_ao_id", L"o_tam_ai_id", L"o_tam_di_id",
                                                               L"o_tam_do_id", L"o_inpcntx_id"};

/// The status that a process ended by a call before Init leaves.
constexpr UINT kEndedBeforeInit = 1;

bool IsModuleObject(std::wstring_view identifier) {
    return LowerCase(identifier) == kModuleObject;
}

} // namespace

STDMETHODIMP TamObjectManager::IsTamInternalObject(BSTR identifier, VARIANT_BOOL* value) {
    return Get(value, [&] {
        // Before the search: a message of the host may end what the caller gave.
        const std::wstring wanted = LowerCase(com::View(identifier));
        return IsTamLibraryAvailable() &&
               std::find(kInternalObjects.begin(), kInternalObjects.end(), wanted) != kInternalObjects.end();
    });
}

STDMETHODIMP TamObjectManager::IsTamObject(BSTR identifier, VARIANT_BOOL* value) {
    return Get(value, [&] { return IsModuleObject(com::View(identifier)); });
}

STDMETHODIMP TamObjectManager::CreateTamInternalAppObject(BSTR* internalObjectKey, IDispatch* device,
                                                          IAppObject** value) {
    if (value != nullptr && internalObjectKey == nullptr) {
        *value = nullptr;
        return com::Refuse(E_POINTER);
    }
    return Get(value, [&] {
        // Before the search: a message of the host may end what the caller gave.
        std::wstring key = com::Text(*internalObjectKey);
        com::Ref<IDispatch> held(device);
        com::Ref<TamInternalAppObject> object;
        if (IsTamLibraryAvailable()) {
            object = TamInternalAppObject::Make();
            object->SetUp(std::move(key), std::move(held));
        }
        return com::Ref<IAppObject>(object);
    });
}

STDMETHODIMP TamObjectManager::CreateTemplateTamInternalObject(IAppObject** value) {
    return Get(value, [&] {
        return IsTamLibraryAvailable() ? com::Ref<IAppObject>(TamInternalAppObject::Make())
                                       : com::Ref<IAppObject>();
    });
}

STDMETHODIMP TamObjectManager::Init(IDispatch* deviceContext) {
    deviceContext_ = com::Ref<IDispatch>(deviceContext);
    return S_OK;
}

bool TamObjectManager::IsTamLibraryAvailable() {
    const auto kept = This<ITamObjectManager>(); // a message of the host may drop the last reference
    if (!deviceContext_) {
        com::Attempt([] { ShowBox(L"TamObjectManager not Inizialized", ComponentTitle()); });
        // There is no error for this case: nothing goes on from here.
        TerminateProcess(GetCurrentProcess(), kEndedBeforeInit);
    }
    if (library_ == Library::NotSearched) {
        library_ = Library::NotFound; // what a failing search leaves
        if (SearchLibrary()) {
            library_ = Library::Found;
        }
    }
    return library_ == Library::Found;
}

bool TamObjectManager::SearchLibrary() const {
    const auto context = Required<IDeviceContext>(deviceContext_);
    com::Ref<IDispatch> object;
    com::Call(context, &IDeviceContext::get_Document, object.Put());
    const dom::Document document = dom::DocumentOf(object.Get());
    com::Bstr version;
    com::Call(context, &IDeviceContext::get_FirmwareVersion, version.Put());
    const dom::Node library = dom::Select(
        dom::Node(document), L"Device/FWVersion/" + std::wstring(version.View()) + L"/Objects/Library");
    com::CheckSet(library.Get());
    return dom::AnyChild(library, [](const dom::Node& child) {
        YieldToHost();
        if (!dom::IsElement(child)) {
            return false;
        }
        com::Bstr name;
        com::Call(child, &IXMLDOMNode::get_nodeName, name.Put());
        return IsModuleObject(name.View());
    });
}

} // namespace tam
