#include "points/CDBInputs.h"

#include "common/ErrorReport.h"

namespace tam {

namespace {

constexpr const wchar_t* kReportClass = L"O_Tam_id Class Module CDBInputs";

} // namespace

STDMETHODIMP CDBInputs::XmlLoad(IDispatch* element) {
    const auto kept = This<_CDBInputs>(); // a message of the host may drop the last reference
    Trap(kReportClass, L"Sub XmlLoad", [&] {
        const dom::Node saved = dom::NodeOf(element);
        const LoadTickets::Ticket ticket = loads_.Begin();
        const Items::Arranging arranging(items_.All());
        std::size_t position = 1;
        ForEachSaved(
            saved, [&] { loads_.Check(ticket); },
            [&](const com::Ref<CDBInput>& input, const dom::Node&) { CheckPosition(input, position++); });
    });
    return S_OK;
}

void CDBInputs::CheckPosition(const com::Ref<CDBInput>& input, std::size_t wanted) noexcept {
    Trap(kReportClass, L"Sub pCheckPosition", [&] {
        if (wanted <= items_.All().Count()) {
            Bring(input, wanted);
        }
    });
}

void CDBInputs::Bring(const com::Ref<CDBInput>& input, std::size_t wanted) noexcept {
    // Reports name it as the search for the input, which is a part of it.
    Trap(kReportClass, L"Sub pGetPosition", [&] { items_.All().Bring(input->PointName(), wanted); });
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

} // namespace tam
