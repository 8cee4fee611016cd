#include "com/Boundary.h"

#include "com/Dll.h"
#include "core/RunTimeError.h"

#include <algorithm>
#include <cstddef>
#include <new>

namespace com {

namespace {

std::wstring SystemText(HRESULT code) {
    wchar_t buffer[512] = {};
    const DWORD length =
        FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                       static_cast<DWORD>(code), 0, buffer, static_cast<DWORD>(std::size(buffer)), nullptr);
    std::wstring text(buffer, length);
    while (!text.empty() && (text.back() == L'\r' || text.back() == L'\n' || text.back() == L' ')) {
        text.pop_back();
    }
    return text.empty() ? std::wstring(L"Automation error") : text;
}

/// A text of an error object; empty where it has none to tell.
std::wstring Told(IErrorInfo& info, HRESULT (STDMETHODCALLTYPE IErrorInfo::*get)(BSTR*)) {
    Bstr text;
    if (FAILED((info.*get)(text.Put()))) {
        text.Detach(); // a failing object may leave anything in the out pointer
    }
    return std::wstring(text.View());
}

/// Runs the body and hands on what it throws. The one catch of everything. A body that
/// throws nothing, as nearly all do, makes no failure.
template <class OnFailure>
void Run(Body body, OnFailure&& onFailure) noexcept {
    try {
        body();
    } catch (...) {
        onFailure(CurrentFailure());
    }
}

} // namespace

Ref<IErrorInfo> TakeError(IUnknown* object, REFIID iid) noexcept {
    Ref<IErrorInfo> info;
    if (GetErrorInfo(0, info.Put()) != S_OK) {
        info.Detach();
        return {};
    }
    const auto support = Query<ISupportErrorInfo>(object);
    const bool isItsOwn = support && support->InterfaceSupportsErrorInfo(iid) == S_OK;
    return isItsOwn ? info : Ref<IErrorInfo>();
}

void ThrowCallError(HRESULT result) {
    throw CallError(result);
}

void ThrowCallError(HRESULT result, IUnknown* object, REFIID iid) {
    throw CallError(result, TakeError(object, iid));
}

void CheckSet(const void* object) {
    if (object == nullptr) {
        throw tam::RunTimeError(tam::RunTime::ObjectNotSet);
    }
}

Failure CurrentFailure() noexcept {
    Failure failure;
    try {
        try {
            throw; // cppcheck-suppress rethrowNoCurrentException; called from handlers alone
        } catch (tam::RunTimeError& error) {
            failure.code = static_cast<HRESULT>(error.Code());
            failure.source = error.Source();
            failure.description = error.Description();
        } catch (const CallError& error) {
            failure.code = error.Code();
            failure.isCallees = error.IsCallees();
            failure.info = error.Info();
            if (failure.info) {
                failure.description = Told(*failure.info.Get(), &IErrorInfo::GetDescription);
                failure.source = Told(*failure.info.Get(), &IErrorInfo::GetSource);
            }
        } catch (const std::bad_alloc&) {
            failure.code = E_OUTOFMEMORY;
        }
    } catch (...) {
        // Either an exception that nobody names, or no memory left while the
        // texts were copied: the code that is known by now stays.
    }
    return failure;
}

std::optional<Failure> Attempt(Body body) noexcept {
    std::optional<Failure> caught;
    Run(body, [&](Failure&& failure) { caught = std::move(failure); });
    return caught;
}

HRESULT Guard(REFIID iid, Body body) noexcept {
    ForgetErrors(); // what an earlier call left is not this call's error
    HRESULT result = S_OK;
    Run(body, [&](Failure&& failure) { result = Publish(failure, iid); });
    return result;
}

HRESULT ReturnJoined(REFIID iid, BSTR* out, std::span<const std::wstring_view> parts) noexcept {
    if (out == nullptr) {
        return Refuse(E_POINTER);
    }
    std::size_t length = 0;
    for (const std::wstring_view part : parts) {
        length += part.size();
    }
    *out = SysAllocStringLen(nullptr, static_cast<UINT>(length));
    if (*out == nullptr) {
        Failure failure;
        failure.code = E_OUTOFMEMORY;
        return Publish(failure, iid);
    }
    wchar_t* end = *out;
    for (const std::wstring_view part : parts) {
        if (part.size() == 1) {
            *end++ = part.front(); // the mark between two texts is not worth a call
        } else {
            end = std::copy(part.begin(), part.end(), end);
        }
    }
    return S_OK;
}

long Failure::Number() const noexcept {
    const auto bits = static_cast<unsigned long>(code);
    return (bits & 0xFFFF0000ul) == 0x800A0000ul ? static_cast<long>(bits & 0xFFFFul) : code;
}

std::wstring Failure::Description() const {
    return description.empty() ? SystemText(code) : description;
}

std::wstring Failure::Source() const {
    return source.empty() ? ThisDll().Name() : source;
}

HRESULT Publish(const Failure& failure, REFIID iid) noexcept {
    Ref<IErrorInfo> info = failure.info;
    if (!info && !failure.isCallees) {
        Ref<ICreateErrorInfo> create;
        if (SUCCEEDED(CreateErrorInfo(create.Put()))) {
            const auto trouble = Attempt([&] {
                create->SetGUID(iid);
                create->SetSource(Bstr(failure.Source()).Get());
                create->SetDescription(Bstr(failure.Description()).Get());
            });
            if (!trouble) {
                info = create.As<IErrorInfo>();
            }
        }
    }
    SetErrorInfo(0, info.Get());
    return failure.code;
}

} // namespace com
