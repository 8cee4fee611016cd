#pragma once

#include "com/Owned.h"
#include "points/CDBAttribute.h"
#include "points/PointItems.h"

#include <O_Tam_id.h>
#include <OrvDBFaces.h>

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace tam {

/// The attributes of one application object, in insertion order, keyed by name.
class CDBAttributes final
    : public com::OwnedDualObject<CDBAttributes, PointOwner, _CDBAttributes, IAttributes> {
  public:
    static const CLSID& ClassId() noexcept { return __uuidof(::CDBAttributes); }
    static const IID& MembersId() noexcept { return __uuidof(::CDBAttributesMembers); }

    explicit CDBAttributes(PointOwner& owner) { SetOwner(&owner); }

    // The component's own side.
    /// Asks `mayAdd`, which throws if not, when the definition is read: reading
    /// shows boxes.
    com::Ref<CDBAttribute> AddItem(const std::wstring& name, const dom::Node& definition,
                                   const OwnerRef& owner, const std::function<void()>& mayAdd);
    /// Takes away all behind the first ones.
    void KeepFirst(std::size_t count) { items_.KeepFirst(count); }
    void RemoveItem(std::wstring_view index) { items_.Remove(index); }
    /// Empty when there is none.
    com::Ref<CDBAttribute> GetItem(std::wstring_view index) const { return items_.Find(index); }
    void Clear() { items_.Clear(); }
    void SetGlobalKey(NewCollectionKey key) noexcept { items_.SetGlobalKey(std::move(key)); }
    void SetExtendedKey(NewCollectionKey key) noexcept { items_.SetExtendedKey(std::move(key)); }
    const PointItems<CDBAttribute>::Items& All() const noexcept { return items_.All(); }

    // Own members
    STDMETHODIMP XmlLoad(IDispatch* element) override;

    // IAttributes
    STDMETHODIMP get_Count(long* value) override { return Answer(value, items_.Count()); }
    STDMETHODIMP get_ExtendedKey(BSTR* value) override { return Answer(value, items_.ExtendedKey()); }
    STDMETHODIMP get_GlobalKey(BSTR* value) override { return Answer(value, items_.GlobalKey()); }
    STDMETHODIMP get_Item(BSTR index, IAttribute** value) override;
    STDMETHODIMP get_NewEnum(IUnknown** value) override;

  private:
    PointItems<CDBAttribute> items_;
};

} // namespace tam
