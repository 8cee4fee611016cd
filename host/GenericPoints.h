#pragma once

#include "com/Enumerator.h"
#include "core/KeyedCollection.h"
#include "host/GenericAttribute.h"
#include "host/GenericInput.h"
#include "host/GenericOutput.h"

#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace orv {

/// The points of one kind, in the definition's order, each under its name. The
/// key of a point is the key of the collection, a backslash and the name.
template <class Derived, class Collection, class Face, class Item>
class GenericPoints : public com::DualObject<Derived, Collection> {
  public:
    using Items = tam::KeyedCollection<com::Ref<Item>>;

    /// "Duplicate key" for a name that is there already.
    void Add(com::Ref<Item> item) {
        const std::wstring name = item->Point().Name();
        item->Point().globalKeyAbove = globalKey_;
        item->Point().extendedKeyAbove = extendedKey_;
        items_.Add(name, std::move(item));
    }
    const Items& All() const noexcept { return items_; }
    /// Empty when there is no point of the name, in whichever letter case.
    com::Ref<Item> Find(std::wstring_view name) const {
        const com::Ref<Item>* found = items_.FindKey(name);
        return found != nullptr ? *found : com::Ref<Item>();
    }
    void SetGlobalKey(std::wstring key) noexcept { *globalKey_ = std::move(key); }
    void SetExtendedKey(std::wstring key) noexcept { *extendedKey_ = std::move(key); }

    HRESULT STDMETHODCALLTYPE get_Count(long* value) override {
        return this->Get(value, [&] { return static_cast<long>(items_.Count()); });
    }
    HRESULT STDMETHODCALLTYPE get_ExtendedKey(BSTR* value) override {
        return this->Answer(value, *extendedKey_);
    }
    HRESULT STDMETHODCALLTYPE get_GlobalKey(BSTR* value) override { return this->Answer(value, *globalKey_); }
    /// By name, else by the position that the text begins with; empty when
    /// neither finds one.
    HRESULT STDMETHODCALLTYPE get_Item(BSTR index, Face** value) override {
        return this->Get(value, [&] {
            const com::Ref<Item>* found = items_.Lookup(com::View(index));
            return found != nullptr ? *found : com::Ref<Item>();
        });
    }
    HRESULT STDMETHODCALLTYPE get_NewEnum(IUnknown** value) override {
        return this->Get(value, [&] { return com::EnumeratorOf<Face>(items_); });
    }

  private:
    Items items_;
    std::shared_ptr<std::wstring> globalKey_ = std::make_shared<std::wstring>();
    std::shared_ptr<std::wstring> extendedKey_ = std::make_shared<std::wstring>();
};

class GenericInputs final : public GenericPoints<GenericInputs, IInputs, IInput, GenericInput> {
  public:
    static REFCLSID ClassId() noexcept { return __uuidof(::GenericInputs); }
    HRESULT STDMETHODCALLTYPE putref_CallBack(IDispatch*) override { return S_OK; }
};

class GenericOutputs final : public GenericPoints<GenericOutputs, IOutputs, IOutput, GenericOutput> {
  public:
    static REFCLSID ClassId() noexcept { return __uuidof(::GenericOutputs); }
    HRESULT STDMETHODCALLTYPE putref_CallBack(IDispatch*) override { return S_OK; }
};

class GenericAttributes final
    : public GenericPoints<GenericAttributes, IAttributes, IAttribute, GenericAttribute> {
  public:
    static REFCLSID ClassId() noexcept { return __uuidof(::GenericAttributes); }
};

} // namespace orv
