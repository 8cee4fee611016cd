#pragma once

#include "common/LoadTickets.h"
#include "points/CDBOutput.h"
#include "points/PointCollection.h"

#include <O_Tam_id.h>
#include <OrvDBFaces.h>

#include <functional>
#include <string>

namespace tam {

/// The outputs of one application object, in definition order, keyed by name.
class CDBOutputs final : public PointCollection<CDBOutputs, CDBOutput, _CDBOutputs, IOutputs, IOutput> {
  public:
    static const CLSID& ClassId() noexcept { return __uuidof(::CDBOutputs); }
    static const IID& MembersId() noexcept { return __uuidof(::CDBOutputsMembers); }

    using PointCollection::PointCollection;

    // The component's own side.
    com::Ref<CDBOutput> AddItem(const std::wstring& name, const dom::Node& definition, PointOwner* owner,
                                const std::function<void()>& mayAdd) {
        return AddDefined(name, definition, owner, mayAdd);
    }

    // Own members
    STDMETHODIMP XmlLoad(IDispatch* element) override;

    // IOutputs
    STDMETHODIMP putref_CallBack(IDispatch*) override { return S_OK; }

  private:
    LoadTickets loads_;
};

} // namespace tam
