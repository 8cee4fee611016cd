#include "tests/com/EveryMember.h"

#include <utility>

namespace contract {

void EveryMemberTest::SetUp() {
    ContractTest::SetUp();
    // A dialog that does not take its OK is cancelled.
    Watcher().OnBox([](HWND window, const bench::Box& box) {
        return !box.isMessageBox && PostMessageW(window, WM_COMMAND, IDOK, 0) != FALSE &&
               PostMessageW(window, WM_COMMAND, IDCANCEL, 0) != FALSE;
    });
    document_ = support::Parse(L"<Host><Name>N</Name></Host>");
}

void EveryMemberTest::ForEachMember(const Body& body) {
    for (const Family family : kFamilies) {
        const auto subjects = Scriptables(family);
        const Supply supply = SupplyOf(subjects);
        for (std::size_t i = 0; i < subjects.size(); ++i) {
            for (const Interface& face : InterfacesOf(subjects[i])) {
                for (const Member& member : face.members) {
                    SCOPED_TRACE(subjects[i].name + ": " + Title(face, member));
                    body({family, i, face, member, subjects, supply});
                }
            }
        }
    }
}

Supply EveryMemberTest::SupplyOf(const std::vector<Subject>& subjects) {
    Supply supply;
    for (const Subject& subject : subjects) {
        supply.objects.push_back(subject.object);
    }
    supply.objects.emplace_back(item_.Get());
    supply.element = support::Root(document_);
    supply.document = document_;
    return supply;
}

EveryMemberTest::Fresh EveryMemberTest::NewObject(const Place& place) {
    auto subjects = Scriptables(place.family);
    Supply supply = SupplyOf(subjects);
    auto face = Face(subjects[place.index], place.face);
    return {std::move(subjects), std::move(supply), std::move(face)};
}

std::wstring EveryMemberTest::Shown() {
    std::wstring shown;
    for (const bench::Box& box : Boxes()) {
        shown += L"[" + box.caption + L"|" + box.text;
        for (const auto& [id, text] : box.controls) {
            shown += L"|" + text;
        }
        shown += L"]";
    }
    return shown;
}

com::Ref<IDispatch> EveryMemberTest::Face(const Subject& subject, const Interface& face) {
    com::Ref<IUnknown> pointer;
    com::Check(subject.object->QueryInterface(face.id, pointer.PutVoid()));
    return com::Ref<IDispatch>(static_cast<IDispatch*>(pointer.Get()));
}

} // namespace contract
