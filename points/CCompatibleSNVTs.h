#pragma once

#include "com/Object.h"
#include "core/CompatibleList.h"
#include "points/CCompatibleSNVT.h"

#include <O_Tam_id.h>
#include <OrvDBFaces.h>

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <utility>

namespace tam {

/// The ordered set of types that may be connected to a point.
class CCompatibleSNVTs final : public com::DualObject<CCompatibleSNVTs, ICompatibleSNVTs, IClonable> {
  public:
    static const CLSID& ClassId() noexcept { return __uuidof(::CCompatibleSNVTs); }
    static const IID& MembersId() noexcept { return __uuidof(::CCompatibleSNVTsMembers); }

    CCompatibleSNVTs() = default;
    explicit CCompatibleSNVTs(CompatibleList list) : list_(std::move(list)) {}

    // The component's own side.

    /// Adds the identifiers of a comma-separated text. A failure is reported;
    /// what was added before it stays.
    void AddList(std::wstring_view text) noexcept;
    /// The identifiers joined by commas; a failure is reported and gives "".
    std::wstring GetList() const noexcept;
    void Clear();
    /// Removes by identifier, else by the 1-based position the text begins with.
    void RemoveItem(std::wstring_view index);
    const CompatibleList& List() const noexcept { return list_; }

    // ICompatibleSNVTs
    STDMETHODIMP Add(BSTR identifiers) override;
    STDMETHODIMP get_Count(long* value) override;
    STDMETHODIMP Exists(BSTR identifier, VARIANT_BOOL* value) override;
    STDMETHODIMP get_Item(long position, ICompatibleSNVT** value) override;
    STDMETHODIMP Merge(ICompatibleSNVTs* other, ICompatibleSNVTs** value) override;
    STDMETHODIMP get_NewEnum(IUnknown** value) override;
    STDMETHODIMP Remove(BSTR identifier) override;
    STDMETHODIMP ToString(BSTR* value) override;

    // IClonable
    STDMETHODIMP Clone(IDispatch** value) override;

  private:
    /// The entry at a 1-based position, the same object each time.
    com::Ref<CCompatibleSNVT> EntryAt(std::size_t position);

    CompatibleList list_;
    /// Entries are made when somebody asks for them: most lists are only searched.
    std::map<std::wstring, com::Ref<CCompatibleSNVT>> entries_;
};

} // namespace tam
