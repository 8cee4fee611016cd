#pragma once

#include "com/Owned.h"
#include "common/LoadTurns.h"
#include "points/CDBOutput.h"
#include "points/PointItems.h"

#include <O_Tam_id.h>
#include <OrvDBFaces.h>

#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace tam {

/// The outputs of one application object, in definition order, keyed by name.
class CDBOutputs final : public com::OwnedDualObject<CDBOutputs, PointOwner, _CDBOutputs, IOutputs> {
  public:
    static const CLSID& ClassId() noexcept { return __uuidof(::CDBOutputs); }
    static const IID& MembersId() noexcept { return __uuidof(::CDBOutputsMembers); }

    explicit CDBOutputs(PointOwner& owner) { SetOwner(&owner); }

    // The component's own side.
    /// Asks `mayAdd`, which throws if not, when the definition is read: reading
    /// shows boxes.
    com::Ref<CDBOutput> AddItem(const std::wstring& name, const dom::Node& definition, const OwnerRef& owner,
                                const std::function<void()>& mayAdd);
    void RemoveItem(std::wstring_view index) { items_.Remove(index); }
    /// Empty when there is none.
    com::Ref<CDBOutput> GetItem(std::wstring_view index) const { return items_.Find(index); }
    void SetGlobalKey(NewCollectionKey key) noexcept { items_.SetGlobalKey(std::move(key)); }
    void SetExtendedKey(NewCollectionKey key) noexcept { items_.SetExtendedKey(std::move(key)); }
    const PointItems<CDBOutput>::Items& All() const noexcept { return items_.All(); }

    // Own members
    STDMETHODIMP XmlLoad(IDispatch* element) override;

    // IOutputs
    STDMETHODIMP putref_CallBack(IDispatch*) override { return S_OK; }
    STDMETHODIMP get_Count(long* value) override { return Answer(value, items_.Count()); }
    STDMETHODIMP get_ExtendedKey(BSTR* value) override { return Answer(value, items_.ExtendedKey()); }
    STDMETHODIMP get_GlobalKey(BSTR* value) override { return Answer(value, items_.GlobalKey()); }
    STDMETHODIMP get_Item(BSTR index, IOutput** value) override;
    STDMETHODIMP get_NewEnum(IUnknown** value) override;

  private:
    PointItems<CDBOutput> items_;
    LoadTurns loads_;
};

} // namespace tam
