// An object's first word points to the table of its class: one address for each method. A
// method is replaced by writing another address into the table, so all objects of the class
// have it. The stand-in looks at its return address: a call of the component can be made to
// fail, every other call goes to the method that stood there. The destructor puts all back.
#include "tests/fault/Slots.h"

namespace fault {

namespace {

Slots* current = nullptr;

} // namespace

Slots::Slots(HMODULE caller) : callerBegin_(reinterpret_cast<ULONG_PTR>(caller)) {
    const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(caller);
    const auto* nt =
        reinterpret_cast<const IMAGE_NT_HEADERS*>(callerBegin_ + static_cast<ULONG_PTR>(dos->e_lfanew));
    callerEnd_ = callerBegin_ + nt->OptionalHeader.SizeOfImage;
    current = this;
}

Slots::~Slots() {
    for (const auto& [place, original] : originals_) {
        support::WriteProtected(place, original);
    }
    current = nullptr;
}

std::map<std::string, const long*>& Slots::Counts() {
    static std::map<std::string, const long*> counts;
    return counts;
}

bool Slots::IsFromCaller(const void* address) noexcept {
    const auto place = reinterpret_cast<ULONG_PTR>(address);
    return place >= current->callerBegin_ && place < current->callerEnd_;
}

ULONG_PTR Slots::Original(Table table, std::size_t index) {
    return current->originals_.at(table + index);
}

void Slots::ReplaceSlot(Table table, std::size_t index, ULONG_PTR hook) {
    if (originals_.try_emplace(table + index, table[index]).second) {
        support::WriteProtected(table + index, hook);
    }
}

} // namespace fault
