#pragma once

#include "com/Owned.h"
#include "core/PointKeys.h"
#include "points/MacroConnections.h"
#include "points/PointOwner.h"

#include <OrvDBFaces.h>

#include <string>
#include <tuple>
#include <utility>

namespace tam {

/// What every point has: a name, the keys of its collection, its owner. Each
/// member answers in all interfaces that have it.
template <class Derived, class... Faces_>
class Point : public com::OwnedObject<Derived, PointOwner, Faces_...> {
  public:
    // The component's own side.
    void SetGlobalKeyUnder(SharedCollectionKey collectionKey) noexcept {
        identity_.globalKey = std::move(collectionKey);
    }
    void SetExtendedKeyUnder(SharedCollectionKey collectionKey) noexcept {
        identity_.extendedKey = std::move(collectionKey);
    }
    void SetIndex(long index) noexcept { identity_.index = index; }
    const std::wstring& PointName() const noexcept { return identity_.name; }

    STDMETHODIMP get_Name(BSTR* value) final { return this->Answer(value, identity_.name); }
    STDMETHODIMP get_GlobalKey(BSTR* value) final { return this->GetJoined(value, identity_.GlobalKey()); }
    STDMETHODIMP get_ExtendedKey(BSTR* value) final {
        return this->GetJoined(value, identity_.ExtendedKey());
    }
    STDMETHODIMP get_Parent(IAppObject** value) final {
        return this->Get(value, [&] { return ParentOf(this->Owner()); });
    }
    STDMETHODIMP get_IsMacroConnected(VARIANT_BOOL* value) final {
        const auto kept = this->Kept(); // the host that is asked may drop the last reference
        return this->Get(value, [&] { return IsInMacroConnection(this->Owner(), identity_); });
    }

  protected:
    explicit Point(std::wstring name) { identity_.name = std::move(name); }

    long Index() const noexcept { return identity_.index; }
    /// The point, held over a call of the host.
    auto Kept() noexcept {
        using DefaultFace = std::tuple_element_t<0, std::tuple<Faces_...>>;
        return this->template This<typename DefaultFace::Interface>();
    }

  private:
    PointIdentity identity_;
};

} // namespace tam
