#pragma once

#include "com/Dom.h"
#include "com/Owned.h"
#include "common/MessageLoop.h"
#include "core/RunTimeError.h"
#include "points/PointItems.h"
#include "points/PointOwner.h"

#include <O_Tam_id.h>
#include <OrvDBFaces.h>

#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace tam {

/// What the collections of inputs, outputs and attributes have in common: the points of
/// one application object, each under its name, and what hosts and the application
/// object ask of them.
/// `OwnFace` is the class's own interface and `HostFace` the host's, whose items have
/// `PointFace`.
template <class Derived, class Point, class OwnFace, class HostFace, class PointFace>
class PointCollection : public com::OwnedDualObject<Derived, PointOwner, OwnFace, HostFace> {
  public:
    using Items = typename PointItems<Point>::Items;

    explicit PointCollection(PointOwner& owner) { this->SetOwner(&owner); }

    // The component's own side.
    void RemoveItem(std::wstring_view index) { items_.Remove(index); }
    /// Empty when there is none.
    com::Ref<Point> GetItem(std::wstring_view index) const { return items_.Find(index); }
    void SetGlobalKey(NewCollectionKey key) noexcept { items_.SetGlobalKey(std::move(key)); }
    void SetExtendedKey(NewCollectionKey key) noexcept { items_.SetExtendedKey(std::move(key)); }
    const Items& All() const noexcept { return items_.All(); }

    // HostFace
    STDMETHODIMP get_Count(long* value) override { return this->Answer(value, items_.Count()); }
    STDMETHODIMP get_ExtendedKey(BSTR* value) override { return this->Answer(value, items_.ExtendedKey()); }
    STDMETHODIMP get_GlobalKey(BSTR* value) override { return this->Answer(value, items_.GlobalKey()); }
    STDMETHODIMP get_Item(BSTR index, PointFace** value) override {
        return this->Get(value, [&] { return items_.Find(com::View(index)); });
    }
    STDMETHODIMP get_NewEnum(IUnknown** value) override {
        return this->Get(value, [&] { return items_.template Enumerate<PointFace>(); });
    }

  protected:
    /// Adds an input or output at the end. Asks `mayAdd`, which throws if not, when the
    /// definition is read: reading yields and shows boxes.
    com::Ref<Point> AddDefined(const std::wstring& name, const dom::Node& definition, PointOwner* owner,
                               const std::function<void()>& mayAdd) {
        auto point = Point::Make(name);
        point->ReadDefinition(definition, OwnerOf(owner).OwnerName());
        mayAdd();
        items_.Add(name, point);
        point->SetOwner(owner);
        point->SetIndex(items_.Count() - 1);
        return point;
    }
    /// Calls visit with the point of each element below a saved one, in the document's
    /// order. An element that names no point is an invalid call. The host gets a turn
    /// before each child, and `check`, which throws to end the walk, is asked after it.
    template <class Check, class F>
    void ForEachSaved(const dom::Node& saved, Check&& check, F&& visit) {
        dom::ForEachChild(saved, [&](const dom::Node& child) {
            YieldToHost();
            check();
            if (!dom::IsElement(child)) {
                return;
            }
            const com::Ref<Point> point = items_.FindName(dom::BaseName(child));
            if (!point) {
                throw RunTimeError(RunTime::InvalidCall);
            }
            visit(point, child);
        });
    }

    PointItems<Point> items_;
};

} // namespace tam
