#include "points/CDBOutputs.h"

#include "common/ErrorReport.h"
#include "common/MessageLoop.h"

namespace tam {

com::Ref<CDBOutput> CDBOutputs::AddItem(const std::wstring& name, const dom::Node& definition,
                                        const OwnerRef& owner, const std::function<void()>& mayAdd) {
    auto output = CDBOutput::Make(name);
    output->ReadDefinition(definition, OwnerOf(owner).OwnerName());
    mayAdd();
    items_.Add(name, output);
    output->SetOwner(owner);
    output->SetIndex(items_.Count() - 1);
    return output;
}

STDMETHODIMP CDBOutputs::XmlLoad(IDispatch* element) {
    const auto kept = This<_CDBOutputs>(); // a message of the host may drop the last reference
    Trap(L"O_Tam_id Class Module CDBOutputs", L"Sub XmlLoad", [&] {
        const dom::Node saved = dom::NodeOf(element);
        const LoadTurns::Turn turn = loads_.Begin();
        dom::ForEachChild(saved, [&](const dom::Node& child) {
            YieldToHost();
            loads_.Check(turn);
            if (!dom::IsElement(child)) {
                return;
            }
            const com::Ref<CDBOutput> output = items_.FindName(dom::BaseName(child));
            if (!output) {
                throw RunTimeError(RunTime::InvalidCall);
            }
            output->XmlLoad(child.Get());
        });
    });
    return S_OK;
}

STDMETHODIMP CDBOutputs::get_Item(BSTR index, IOutput** value) {
    return Get(value, [&] { return items_.Find(com::View(index)); });
}

STDMETHODIMP CDBOutputs::get_NewEnum(IUnknown** value) {
    return Get(value, [&] { return items_.Enumerate<IOutput>(); });
}

} // namespace tam
