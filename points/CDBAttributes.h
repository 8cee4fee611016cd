#pragma once

#include "points/CDBAttribute.h"
#include "points/PointCollection.h"

#include <O_Tam_id.h>
#include <OrvDBFaces.h>

#include <cstddef>
#include <functional>
#include <string>

namespace tam {

/// The attributes of one application object, in insertion order, keyed by name.
class CDBAttributes final
    : public PointCollection<CDBAttributes, CDBAttribute, _CDBAttributes, IAttributes, IAttribute> {
  public:
    static const CLSID& ClassId() noexcept { return __uuidof(::CDBAttributes); }
    static const IID& MembersId() noexcept { return __uuidof(::CDBAttributesMembers); }

    using PointCollection::PointCollection;

    // The component's own side.
    /// Asks `mayAdd`, which throws if not, when the definition is read: reading
    /// shows boxes.
    com::Ref<CDBAttribute> AddItem(const std::wstring& name, const dom::Node& definition, PointOwner* owner,
                                   const std::function<void()>& mayAdd);
    /// Takes away all after the first ones.
    void KeepFirst(std::size_t count) { items_.KeepFirst(count); }
    void Clear() { items_.Clear(); }

    // Own members
    STDMETHODIMP XmlLoad(IDispatch* element) override;
};

} // namespace tam
