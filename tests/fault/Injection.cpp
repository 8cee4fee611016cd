#include "tests/fault/Injection.h"

namespace fault {

namespace {

struct Plan {
    bool armed = false;
    Kind kind = Kind::Memory;
    int n = 0;
    Mode mode = Mode::Once;
    int calls = 0;
    DWORD thread = 0;
};
Plan plan;

} // namespace

const char* NameOf(Kind kind) noexcept {
    switch (kind) {
    case Kind::Memory:
        return "memory";
    case Kind::Text:
        return "text";
    case Kind::Dom:
        return "dom";
    case Kind::Host:
        return "host";
    case Kind::Creation:
        return "creation";
    case Kind::File:
        break;
    }
    return "file";
}

HRESULT CodeOf(Kind kind) noexcept {
    switch (kind) {
    case Kind::Memory:
    case Kind::Text:
        return E_OUTOFMEMORY;
    case Kind::Dom:
        return E_ABORT;
    case Kind::Host:
        return E_ACCESSDENIED;
    case Kind::Creation:
        return REGDB_E_CLASSNOTREG;
    case Kind::File:
        break;
    }
    return S_OK; // no call of this kind answers an HRESULT
}

std::wstring SystemText(HRESULT code) {
    wchar_t buffer[512] = {};
    const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                                        static_cast<DWORD>(code), 0, buffer, 512, nullptr);
    std::wstring text(buffer, length);
    text.erase(text.find_last_not_of(L"\r\n ") + 1);
    return text.empty() ? L"Automation error" : text; // which is what the component says then
}

Injection::Injection(Kind kind, int n, Mode mode) noexcept {
    plan = Plan{true, kind, n, mode, 0, GetCurrentThreadId()};
}

Injection::~Injection() {
    plan.armed = false;
}

bool Injection::HasHappened() const noexcept {
    return plan.calls >= plan.n;
}

int Injection::Calls() const noexcept {
    return plan.calls;
}

bool Fails(Kind kind) noexcept {
    if (!plan.armed || plan.kind != kind || GetCurrentThreadId() != plan.thread) {
        return false;
    }
    ++plan.calls;
    return plan.n != 0 && (plan.mode == Mode::ForEver ? plan.calls >= plan.n : plan.calls == plan.n);
}

} // namespace fault
