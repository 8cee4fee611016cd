// Calls a gated member of a manager before its Init, as a faulty host would,
// and writes down what happens for TamObjectManagerEndTest to read. The call
// ends the process, so that each of its lines stands written before the next.

#include "bench/BoxWatcher.h"
#include "com/Conversion.h"
#include "tests/support/Component.h"
#include "tests/support/HostDoubles.h"

#include <objbase.h>

#include <cstdio>
#include <string>

namespace {

/// Statuses that the component never leaves.
constexpr int kNothingEnded = 3;
constexpr int kCouldNotStart = 4;

void Say(const std::wstring& line) {
    std::string bytes;
    for (const wchar_t letter : line) {
        bytes += static_cast<char>(letter);
    }
    std::printf("%s\n", bytes.c_str());
    std::fflush(stdout);
}

bool Answer(HWND window, const bench::Box& box) {
    Say(L"box: " + box.text);
    Say(L"caption: " + box.caption);
    Say(L"icon: " + std::to_wstring(box.icon));
    for (const std::wstring& button : box.buttons) {
        Say(L"button: " + button);
    }
    PostMessageW(window, WM_COMMAND, IDOK, 0);
    return true;
}

void CallGated(ITamObjectManager& manager, const std::string& member) {
    com::Bstr text(L"o_tam_ai_id");
    com::Ref<IAppObject> object;
    VARIANT_BOOL answer = VARIANT_FALSE;
    if (member == "IsTamInternalObject") {
        manager.IsTamInternalObject(text.Get(), &answer);
    } else if (member == "CreateTamInternalAppObject") {
        manager.CreateTamInternalAppObject(text.Address(), nullptr, object.Put());
    } else if (member == "CreateTemplateTamInternalObject") {
        manager.CreateTemplateTamInternalObject(object.Put());
    } else if (member == "IsTamObject") {
        manager.IsTamObject(text.Get(), &answer);
    }
}

/// What the host does before the call that ends its process.
void Prepare(ITamObjectManager& manager, const std::string& before) {
    if (before == "InitWithNone") {
        manager.Init(nullptr);
    } else if (before == "FoundThenInitWithNone") {
        manager.Init(support::HostContext(L"A", L"<o_tam_id/>").Get());
        VARIANT_BOOL answer = VARIANT_FALSE;
        manager.IsTamInternalObject(com::Bstr(L"o_tam_ai_id").Get(), &answer);
        Say(answer != VARIANT_FALSE ? L"found" : L"not found");
        manager.Init(nullptr);
    }
}

/// Written by the ordinary end of a process, which this must not be.
struct AtEnd {
    ~AtEnd() { Say(L"unwound"); }
};

} // namespace

int main(int argc, char** argv) {
    if (argc < 2 || FAILED(CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED))) {
        return kCouldNotStart;
    }
    static const AtEnd atEnd;
    const support::Component component;
    bench::BoxWatcher watcher;
    watcher.OnBox(&Answer);
    const auto manager = component.Create<ITamObjectManager>(__uuidof(::TamObjectManager));
    if (!manager) {
        return kCouldNotStart;
    }
    Prepare(*manager.Get(), argc > 2 ? argv[2] : "");
    Say(L"calling");
    CallGated(*manager.Get(), argv[1]);
    Say(L"went on");
    return kNothingEnded;
}
