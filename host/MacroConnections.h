#pragma once

#include "com/Conversion.h"
#include "com/Enumerator.h"
#include "com/Object.h"
#include "core/RunTimeError.h"

#include <OrvDBFaces.h>
#include <OrvHost.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace orv {

/// A list of objects with 1-based positions, which only grows or is emptied.
/// A position that is not there is "subscript out of range".
template <class Derived, class I, class Item>
class MacroList : public com::DualObject<Derived, I> {
  public:
    void Add(com::Ref<Item> item) { items_.push_back(std::move(item)); }
    void Clear() noexcept { items_.clear(); }

    HRESULT STDMETHODCALLTYPE get_Count(long* value) override {
        return this->Get(value, [&] { return static_cast<long>(items_.size()); });
    }
    HRESULT STDMETHODCALLTYPE get_Item(long position, Item** value) override {
        return this->Get(value, [&] {
            if (position < 1 || static_cast<std::size_t>(position) > items_.size()) {
                throw tam::RunTimeError(tam::RunTime::Subscript);
            }
            return items_[static_cast<std::size_t>(position) - 1];
        });
    }
    HRESULT STDMETHODCALLTYPE get_NewEnum(IUnknown** value) override {
        return this->Get(value, [&] { return com::EnumeratorOf<Item>(items_); });
    }

  private:
    std::vector<com::Ref<Item>> items_;
};

/// One connected item: the key of a point or attribute.
class MacroItem final : public com::DualObject<MacroItem, IMacroConnectedItem> {
  public:
    explicit MacroItem(std::wstring_view key) : key_(key) {}
    static REFCLSID ClassId() noexcept { return __uuidof(::MacroItem); }

    HRESULT STDMETHODCALLTYPE get_key(BSTR* value) override { return Answer(value, key_); }

  private:
    std::wstring key_;
};

class MacroItems final : public MacroList<MacroItems, IMacroConnectedItems, IMacroConnectedItem> {
  public:
    static REFCLSID ClassId() noexcept { return __uuidof(::MacroItems); }
};

/// Items that one macro connects.
class MacroGroup final : public com::DualObject<MacroGroup, IMacroConnectionGroup, IProjectGroup> {
  public:
    static REFCLSID ClassId() noexcept { return __uuidof(::MacroGroup); }

    // IMacroConnectionGroup
    HRESULT STDMETHODCALLTYPE get_Items(IMacroConnectedItems** value) override {
        return Answer(value, items_);
    }

    // IProjectGroup
    HRESULT STDMETHODCALLTYPE AddItem(BSTR key) override {
        return Do([&] { items_->Add(MacroItem::Make(com::View(key))); });
    }

  private:
    com::Ref<MacroItems> items_ = MacroItems::Make();
};

class MacroGroups final : public MacroList<MacroGroups, IMacroConnectionGroups, IMacroConnectionGroup> {
  public:
    static REFCLSID ClassId() noexcept { return __uuidof(::MacroGroups); }
};

} // namespace orv
