#pragma once

#include "com/Dom.h"
#include "common/LoadTickets.h"
#include "points/CDBInput.h"
#include "points/PointCollection.h"

#include <O_Tam_id.h>
#include <OrvDBFaces.h>

#include <cstddef>
#include <functional>
#include <string>

namespace tam {

/// The inputs of one application object, in definition order, keyed by name.
class CDBInputs final : public PointCollection<CDBInputs, CDBInput, _CDBInputs, IInputs, IInput> {
  public:
    static const CLSID& ClassId() noexcept { return __uuidof(::CDBInputs); }
    static const IID& MembersId() noexcept { return __uuidof(::CDBInputsMembers); }

    using PointCollection::PointCollection;

    // The component's own side.
    com::Ref<CDBInput> AddItem(const std::wstring& name, const dom::Node& definition, PointOwner* owner,
                               const std::function<void()>& mayAdd) {
        return AddDefined(name, definition, owner, mayAdd);
    }

    // Own members
    STDMETHODIMP XmlLoad(IDispatch* element) override;
    STDMETHODIMP RebuildIndexes() override;

    // IInputs
    STDMETHODIMP putref_CallBack(IDispatch*) override { return S_OK; }

  private:
    void CheckPosition(const com::Ref<CDBInput>& input, std::size_t wanted) noexcept;
    void Bring(const com::Ref<CDBInput>& input, std::size_t wanted) noexcept;

    LoadTickets loads_;
};

} // namespace tam
