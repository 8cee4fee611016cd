#include "points/CDBInputs.h"

#include "common/ErrorReport.h"
#include "common/MessageLoop.h"

namespace tam {

namespace {

constexpr const wchar_t* kReportClass = L"O_Tam_id Class Module CDBInputs";

} // namespace

com::Ref<CDBInput> CDBInputs::AddItem(const std::wstring& name, const dom::Node& definition,
                                      const OwnerRef& owner, const std::function<void()>& mayAdd) {
    auto input = CDBInput::Make(name);
    input->ReadDefinition(definition, OwnerOf(owner).OwnerName());
    mayAdd();
    items_.Add(name, input);
    input->SetOwner(owner);
    input->SetIndex(items_.Count() - 1);
    return input;
}

STDMETHODIMP CDBInputs::XmlLoad(IDispatch* element) {
    const auto kept = This<_CDBInputs>(); // a message of the host may drop the last reference
    Trap(kReportClass, L"Sub XmlLoad", [&] {
        const dom::Node saved = dom::NodeOf(element);
        const LoadTurns::Turn turn = loads_.Begin();
        std::size_t position = 1;
        dom::ForEachChild(saved, [&](const dom::Node& child) {
            YieldToHost();
            loads_.Check(turn);
            if (!dom::IsElement(child)) {
                return;
            }
            const com::Ref<CDBInput> input = items_.FindName(dom::BaseName(child));
            if (!input) {
                throw RunTimeError(RunTime::InvalidCall);
            }
            CheckPosition(input, position);
            ++position;
        });
    });
    return S_OK;
}

void CDBInputs::CheckPosition(const com::Ref<CDBInput>& input, std::size_t wanted) noexcept {
    Trap(kReportClass, L"Sub pCheckPosition", [&] {
        auto& items = items_.All();
        if (wanted > items.Count() || items.ItemAt(wanted - 1) == input) {
            return;
        }
        items.Move(GetPosition(input), wanted);
    });
}

std::size_t CDBInputs::GetPosition(const com::Ref<CDBInput>& input) const noexcept {
    std::size_t position = 0;
    Trap(kReportClass, L"Sub pGetPosition",
         [&] { position = items_.All().PositionOfKey(input->PointName()); });
    return position;
}

STDMETHODIMP CDBInputs::RebuildIndexes() {
    // This one report names its place without the word "Module".
    Trap(L"O_Tam_id Class CDBInputs", L"Sub RebuildIndexes", [&] {
        long index = 0;
        for (const auto& input : items_.All()) {
            input->SetIndex(index++);
        }
    });
    return S_OK;
}

STDMETHODIMP CDBInputs::get_Item(BSTR index, IInput** value) {
    return Get(value, [&] { return items_.Find(com::View(index)); });
}

STDMETHODIMP CDBInputs::get_NewEnum(IUnknown** value) {
    return Get(value, [&] { return items_.Enumerate<IInput>(); });
}

} // namespace tam
