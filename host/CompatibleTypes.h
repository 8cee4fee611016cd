#pragma once

#include "com/Enumerator.h"
#include "com/Object.h"

#include <OrvDBFaces.h>
#include <OrvHost.h>

#include <string>
#include <string_view>
#include <vector>

namespace orv {

/// One identifier of a list of compatible types.
class CompatibleType final : public com::DualObject<CompatibleType, ICompatibleSNVT> {
  public:
    explicit CompatibleType(std::wstring_view id) : id_(id) {}
    static REFCLSID ClassId() noexcept { return __uuidof(::CompatibleType); }
    const std::wstring& Id() const noexcept { return id_; }

    HRESULT STDMETHODCALLTYPE get_ID(BSTR* value) override { return Answer(value, id_); }

  private:
    std::wstring id_;
};

/// The types that may be connected to a point: identifiers in the order in
/// which they were added, each once, letter case included.
class CompatibleTypes final : public com::DualObject<CompatibleTypes, ICompatibleSNVTs, IClonable> {
  public:
    static REFCLSID ClassId() noexcept { return __uuidof(::CompatibleTypes); }

    /// Adds the identifiers of a comma-separated text up to the first empty one.
    void AddList(std::wstring_view identifiers);
    bool Has(std::wstring_view id) const noexcept { return Find(id) != types_.end(); }
    bool IsEmpty() const noexcept { return types_.empty(); }

    // ICompatibleSNVTs
    HRESULT STDMETHODCALLTYPE Add(BSTR identifiers) override;
    HRESULT STDMETHODCALLTYPE get_Count(long* value) override;
    HRESULT STDMETHODCALLTYPE Exists(BSTR identifier, VARIANT_BOOL* value) override;
    HRESULT STDMETHODCALLTYPE get_Item(long position, ICompatibleSNVT** value) override;
    HRESULT STDMETHODCALLTYPE Merge(ICompatibleSNVTs* other, ICompatibleSNVTs** value) override;
    HRESULT STDMETHODCALLTYPE get_NewEnum(IUnknown** value) override;
    HRESULT STDMETHODCALLTYPE Remove(BSTR identifier) override;
    HRESULT STDMETHODCALLTYPE ToString(BSTR* value) override;

    // IClonable
    HRESULT STDMETHODCALLTYPE Clone(IDispatch** value) override;

  private:
    using Types = std::vector<com::Ref<CompatibleType>>;
    Types::const_iterator Find(std::wstring_view id) const noexcept;

    Types types_;
};

} // namespace orv
