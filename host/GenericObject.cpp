#include "host/GenericObject.h"

#include "core/CollectionKey.h"
#include "core/RunTimeError.h"
#include "host/Library.h"

#include <utility>
#include <vector>

namespace orv {

namespace {

constexpr std::wstring_view kProgId = L"O_Generic.CDBAppObject";

template <class Points, class Item>
com::Ref<Points> MakeIndexed(const std::vector<Definition>& definitions, const OwnerRef& owner) {
    auto points = Points::Make();
    long index = 0;
    for (const Definition& definition : definitions) {
        points->Add(Item::Make(definition, owner, index++));
    }
    return points;
}

} // namespace

HRESULT GenericObject::Text(const wchar_t* keyword, BSTR* value) {
    return Get(value, [&] { return definition_ ? definition_->object.Text(keyword) : std::wstring(); });
}

HRESULT GenericObject::Number(const wchar_t* keyword, long* value) {
    return Get(value, [&] { return definition_ ? definition_->object.Number(keyword) : 0; });
}

HRESULT GenericObject::Flag(const wchar_t* keyword, VARIANT_BOOL* value) {
    return Get(value, [&] { return definition_ && definition_->object.Flag(keyword); });
}

STDMETHODIMP GenericObject::Init(BSTR name, VARIANT_BOOL* value) {
    return Get(value, [&] {
        std::wstring wanted = com::Text(name);
        auto definition = std::make_shared<const GenericDefinition>(ReadDefinition(LoadDefinition(wanted)));
        const long color = definition->object.Number(L"COLOR");
        definition_ = std::move(definition);
        definitionName_ = std::move(wanted);
        color_ = color;
        return true;
    });
}

STDMETHODIMP GenericObject::Create() {
    const auto self = This<IAppObject>(); // the catalogue is the host's
    return Do([&] { MakePoints(); });
}

void GenericObject::MakePoints() {
    if (!definition_) {
        throw tam::RunTimeError(static_cast<HRESULT>(errNotInitialised), {},
                                L"The block has no definition to make its points from; call Init first");
    }
    const auto definition = definition_;
    const auto link = std::make_shared<OwnerLink>();
    link->owner = this;
    const auto inputs = MakeIndexed<GenericInputs, GenericInput>(definition->inputs, link);
    const auto outputs = MakeIndexed<GenericOutputs, GenericOutput>(definition->outputs, link);
    const auto attributes = GenericAttributes::Make();
    for (const Definition& said : definition->attributes) {
        attributes->Add(GenericAttribute::Make(said, link));
    }
    tam::CollectionKeyTexts global(globalKey_);
    inputs->SetGlobalKey(std::move(global.inputs));
    outputs->SetGlobalKey(std::move(global.outputs));
    attributes->SetGlobalKey(std::move(global.attributes));
    tam::CollectionKeyTexts extended(extendedKey_);
    inputs->SetExtendedKey(std::move(extended.inputs));
    outputs->SetExtendedKey(std::move(extended.outputs));
    attributes->SetExtendedKey(std::move(extended.attributes));

    link_->owner = nullptr; // points of an earlier call belong to nobody
    link_ = link;
    inputs_ = inputs;
    outputs_ = outputs;
    attributes_ = attributes;
    created_ = true;
    if (saved_) {
        const SavedObject saved = *saved_;
        TakePoints(saved);
        saved_.reset(); // kept for another Create when the points did not take it
    }
}

STDMETHODIMP GenericObject::Destroy() {
    const auto self = This<IAppObject>(); // the interceptor may hold the last reference
    link_->owner = nullptr;
    interceptor_.Reset();
    inputs_.Reset();
    outputs_.Reset();
    attributes_.Reset();
    parent_.Reset();
    ownerDeviceXml_.Reset();
    catalogue_.Reset();
    saved_.reset();
    return S_OK;
}

STDMETHODIMP GenericObject::RegisterInterceptor(IAttributeInterceptor* interceptor) {
    const auto self = This<IAppObject>();
    interceptor_ = com::Ref<IAttributeInterceptor>(interceptor);
    return S_OK;
}

void GenericObject::ForgetInterceptor(const com::Ref<IAttributeInterceptor>& gone) noexcept {
    if (interceptor_ == gone) {
        interceptor_.Reset();
    }
}

STDMETHODIMP GenericObject::get_IsIntercepted(VARIANT_BOOL* value) {
    return Get(value, [&] { return static_cast<bool>(interceptor_); });
}

STDMETHODIMP GenericObject::GetDataFromDevice() {
    return Do([&] { FetchAll(); });
}

STDMETHODIMP GenericObject::ObjectDebug() {
    // To debug is to see what the device holds. It is also how a driver that
    // has only the wrapping object starts the fetching.
    return Do([&] { FetchAll(); });
}

void GenericObject::FetchAll() {
    const auto self = This<IAppObject>();
    const auto attributes = attributes_; // these, whatever an interceptor does meanwhile
    com::CheckSet(attributes.Get());
    std::optional<DeviceValues> values; // read once, when the first attribute wants its own
    for (const auto& attribute : attributes->All()) {
        attribute->Fetch(values);
    }
}

com::Ref<HostType> GenericObject::MakeType(std::wstring_view id) const {
    const auto catalogue = catalogue_;
    return HostType::Make(DescribeType(id, catalogue));
}

STDMETHODIMP GenericObject::ClearReferences() {
    return Do([&] {
        com::CheckSet(inputs_.Get());
        for (const auto& input : inputs_->All()) {
            input->SetLink({});
        }
    });
}

STDMETHODIMP GenericObject::ViewDatasheet(VARIANT) {
    return Do([&] {
        throw tam::RunTimeError(static_cast<HRESULT>(errNoDefinition), {},
                                L"The library has no data sheet of \"" + definitionName_ + L"\"");
    });
}

STDMETHODIMP GenericObject::put_GlobalKey(BSTR value) {
    return Do([&] {
        std::wstring key = com::Text(value);
        tam::CollectionKeyTexts keys(key);
        globalKey_ = std::move(key);
        if (attributes_) {
            inputs_->SetGlobalKey(std::move(keys.inputs));
            outputs_->SetGlobalKey(std::move(keys.outputs));
            attributes_->SetGlobalKey(std::move(keys.attributes));
        }
    });
}

STDMETHODIMP GenericObject::put_ExtendedKey(BSTR value) {
    return Do([&] {
        std::wstring key = com::Text(value);
        tam::CollectionKeyTexts keys(key);
        extendedKey_ = std::move(key);
        if (attributes_) {
            inputs_->SetExtendedKey(std::move(keys.inputs));
            outputs_->SetExtendedKey(std::move(keys.outputs));
            attributes_->SetExtendedKey(std::move(keys.attributes));
        }
    });
}

STDMETHODIMP GenericObject::Show() {
    const auto self = This<IAppObject>();
    showing_ = true;
    const HRESULT result = Do([&] {
        const auto document = parent_.As<IHostDocument>();
        if (!document) {
            return; // it lies on no sheet
        }
        com::Ref<IDispatch> object;
        com::Call(document, &IHostDocument::get_View, object.Put());
        const auto view = object.As<IHostView>();
        com::CheckSet(view.Get());
        com::Call(view, &IHostView::ShowObject);
    });
    showing_ = false;
    return result;
}

STDMETHODIMP GenericObject::get_ProgrammaticID(BSTR* value) {
    return Answer(value, kProgId);
}

STDMETHODIMP GenericObject::putref_XmlSNVTDoc(IDispatch* value) {
    // Counts for the types that are made from then on.
    return Do([&] { catalogue_ = value != nullptr ? tam::dom::DocumentOf(value) : tam::dom::Document(); });
}

} // namespace orv
