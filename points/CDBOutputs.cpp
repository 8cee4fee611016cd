#include "points/CDBOutputs.h"

#include "common/ErrorReport.h"

namespace tam {

STDMETHODIMP CDBOutputs::XmlLoad(IDispatch* element) {
    const auto kept = This<_CDBOutputs>(); // a message of the host may drop the last reference
    Trap(L"O_Tam_id Class Module CDBOutputs", L"Sub XmlLoad", [&] {
        const dom::Node saved = dom::NodeOf(element);
        const LoadTickets::Ticket ticket = loads_.Begin();
        ForEachSaved(
            saved, [&] { loads_.Check(ticket); },
            [](const com::Ref<CDBOutput>& output, const dom::Node& child) { output->XmlLoad(child.Get()); });
    });
    return S_OK;
}

} // namespace tam
