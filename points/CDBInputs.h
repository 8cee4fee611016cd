#pragma once

#include "com/Dom.h"
#include "com/Owned.h"
#include "common/LoadTurns.h"
#include "points/CDBInput.h"
#include "points/PointItems.h"

#include <O_Tam_id.h>
#include <OrvDBFaces.h>

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace tam {

/// The inputs of one application object, in definition order, keyed by name.
class CDBInputs final : public com::OwnedDualObject<CDBInputs, PointOwner, _CDBInputs, IInputs> {
  public:
    static const CLSID& ClassId() noexcept { return __uuidof(::CDBInputs); }
    static const IID& MembersId() noexcept { return __uuidof(::CDBInputsMembers); }

    explicit CDBInputs(PointOwner& owner) { SetOwner(&owner); }

    // The component's own side.
    /// Asks `mayAdd`, which throws if not, when the definition is read: reading
    /// yields and shows boxes.
    com::Ref<CDBInput> AddItem(const std::wstring& name, const dom::Node& definition, const OwnerRef& owner,
                               const std::function<void()>& mayAdd);
    void RemoveItem(std::wstring_view index) { items_.Remove(index); }
    /// Empty when there is none.
    com::Ref<CDBInput> GetItem(std::wstring_view index) const { return items_.Find(index); }
    void SetGlobalKey(NewCollectionKey key) noexcept { items_.SetGlobalKey(std::move(key)); }
    void SetExtendedKey(NewCollectionKey key) noexcept { items_.SetExtendedKey(std::move(key)); }
    const PointItems<CDBInput>::Items& All() const noexcept { return items_.All(); }

    // Own members
    STDMETHODIMP XmlLoad(IDispatch* element) override;
    STDMETHODIMP RebuildIndexes() override;

    // IInputs
    STDMETHODIMP putref_CallBack(IDispatch*) override { return S_OK; }
    STDMETHODIMP get_Count(long* value) override { return Answer(value, items_.Count()); }
    STDMETHODIMP get_ExtendedKey(BSTR* value) override { return Answer(value, items_.ExtendedKey()); }
    STDMETHODIMP get_GlobalKey(BSTR* value) override { return Answer(value, items_.GlobalKey()); }
    STDMETHODIMP get_Item(BSTR index, IInput** value) override;
    STDMETHODIMP get_NewEnum(IUnknown** value) override;

  private:
    void CheckPosition(const com::Ref<CDBInput>& input, std::size_t wanted) noexcept;
    std::size_t GetPosition(const com::Ref<CDBInput>& input) const noexcept;

    PointItems<CDBInput> items_;
    LoadTurns loads_;
};

} // namespace tam
