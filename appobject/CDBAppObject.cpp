#include "appobject/CDBAppObject.h"

#include "com/Creation.h"
#include "common/ComponentState.h"
#include "core/Numbers.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace tam {

namespace {

constexpr const wchar_t* kConverterProgId = L"UnitManager.Converter";

/// The keys of the collections, ready to be taken over.
struct NewCollectionKeys {
    explicit NewCollectionKeys(CollectionKeyTexts&& texts)
        : attributes(std::make_shared<std::wstring>(std::move(texts.attributes)))
        , inputs(std::make_shared<std::wstring>(std::move(texts.inputs)))
        , outputs(std::make_shared<std::wstring>(std::move(texts.outputs))) {}
    NewCollectionKey attributes;
    NewCollectionKey inputs;
    NewCollectionKey outputs;
};

/// True when the name of any point of the collection begins with the prefix.
template <class Collection>
bool AnyNameBegins(const com::Owned<Collection>& collection, const std::wstring& prefix) {
    if (!collection) {
        return false;
    }
    return std::ranges::any_of(collection->All(),
                               [&](const auto& point) { return point->PointName().starts_with(prefix); });
}

} // namespace

CDBAppObject::CDBAppObject()
    : inputs_(CDBInputs::Make(AsOwner()))
    , outputs_(CDBOutputs::Make(AsOwner()))
    , attributes_(CDBAttributes::Make(AsOwner())) {
    State().AppPath = com::ThisDll().Folder();
    InitDecimalSeparator();
    unitsManager_ = com::CreateByProgId(kConverterProgId);
}

template <class Give>
void CDBAppObject::TakeKey(std::wstring& field, BSTR value, Give give) {
    std::wstring key(com::View(value));
    NewCollectionKeys keys{CollectionKeyTexts(key)};
    field = std::move(key);
    if (attributes_) {
        give(*attributes_.Get(), std::move(keys.attributes));
    }
    if (inputs_) {
        give(*inputs_.Get(), std::move(keys.inputs));
    }
    if (outputs_) {
        give(*outputs_.Get(), std::move(keys.outputs));
    }
}

STDMETHODIMP CDBAppObject::put_GlobalKey(BSTR value) {
    return Do([&] {
        TakeKey(data_.notes.globalKey, value,
                [](auto& points, NewCollectionKey key) { points.SetGlobalKey(std::move(key)); });
    });
}

STDMETHODIMP CDBAppObject::put_ExtendedKey(BSTR value) {
    return Do([&] {
        TakeKey(data_.notes.extendedKey, value,
                [](auto& points, NewCollectionKey key) { points.SetExtendedKey(std::move(key)); });
    });
}

STDMETHODIMP CDBAppObject::Destroy() {
    // A load that is under way does not bring the collections back.
    streamLoads_.Begin();
    projectLoads_.Begin();
    attributesBefore_.reset();
    parent_.Reset();
    inputs_.Reset();
    outputs_.Reset();
    attributes_.Reset();
    return S_OK;
}

STDMETHODIMP CDBAppObject::get_ProgrammaticID(BSTR* value) {
    return Get(value, [&] { return com::ThisDll().Name() + L".CDBAppObject"; });
}

STDMETHODIMP CDBAppObject::putref_XmlSNVTDoc(IDispatch* value) {
    State().SnvtCatalogueDocument = com::Ref<IDispatch>(value);
    return S_OK;
}

STDMETHODIMP CDBAppObject::get_Address(short* value) {
    return Get(value, [&] { return ToInt16(Val(data_.device.address)); });
}

STDMETHODIMP CDBAppObject::put_Address(short value) {
    return Do([&] { data_.device.address = std::to_wstring(value); });
}

STDMETHODIMP CDBAppObject::Contains(ITamInternalAppObject* item, VARIANT_BOOL* value) {
    const auto kept = This<ITamObject>(); // the item that is asked may drop the last reference
    return Get(value, [&] {
        com::CheckSet(item);
        com::Bstr deviceKey;
        com::Call(item, &ITamInternalAppObject::get_TamDeviceKey, deviceKey.Put());
        if (deviceKey.View() != data_.device.streamKey) {
            return false;
        }
        com::Bstr objectKey;
        com::Call(item, &ITamInternalAppObject::get_TamInternalObjectKey, objectKey.Put());
        const std::wstring prefix = L"_" + std::wstring(objectKey.View());
        return AnyNameBegins(inputs_, prefix) || AnyNameBegins(outputs_, prefix) ||
               AnyNameBegins(attributes_, prefix);
    });
}

} // namespace tam
