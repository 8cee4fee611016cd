#include "com/Dll.h"

#include "com/Boundary.h"

#include <cstring>
#include <new>
#include <utility>

namespace com {

namespace {

/// Type libraries stand in the resources as numbers 1 and 2. The second has the
/// host interfaces; the first repeats some of them, with references to the
/// second that only a registered library resolves. So the second comes first.
constexpr int kLibraryResources = 2;

/// Lack of memory passes; what else a library answers stays so.
HRESULT CheckMemory(HRESULT result) {
    if (result == E_OUTOFMEMORY) {
        throw std::bad_alloc();
    }
    return result;
}

} // namespace

bool GuidLess::operator()(const GUID& left, const GUID& right) const noexcept {
    return std::memcmp(&left, &right, sizeof(GUID)) < 0;
}

std::wstring Dll::FilePath() const {
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(instance_, path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size()) {
            path.resize(length);
            return path;
        }
        path.resize(path.size() * 2);
    }
}

std::wstring Dll::Folder() const {
    const std::wstring path = FilePath();
    return path.substr(0, path.find_last_of(L'\\') + 1);
}

std::wstring Dll::Name() const {
    const std::wstring path = FilePath();
    const std::wstring file = path.substr(path.find_last_of(L'\\') + 1);
    return file.substr(0, file.find_last_of(L'.'));
}

bool Dll::Unlock() noexcept {
    long locks = locks_;
    while (locks > 0) {
        if (locks_.compare_exchange_weak(locks, locks - 1)) {
            return true;
        }
    }
    return false;
}

const std::vector<Ref<ITypeLib>>& Dll::Libraries() {
    if (!areLibrariesLoaded_) {
        std::vector<Ref<ITypeLib>> loaded;
        for (int index = kLibraryResources; index >= 1; --index) {
            Ref<ITypeLib> library;
            const std::wstring path = FilePath() + L"\\" + std::to_wstring(index);
            if (SUCCEEDED(CheckMemory(LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.Put())))) {
                loaded.push_back(std::move(library));
            }
        }
        libraries_ = std::move(loaded);
        areLibrariesLoaded_ = true;
    }
    return libraries_;
}

const TypeEntry& Dll::Type(REFGUID guid) {
    const auto found = types_.find(guid);
    if (found != types_.end()) {
        return found->second;
    }
    TypeEntry type;
    type.result = TYPE_E_ELEMENTNOTFOUND;
    for (const Ref<ITypeLib>& library : Libraries()) {
        Ref<ITypeInfo> info;
        type.result = library->GetTypeInfoOfGuid(guid, info.Put());
        if (SUCCEEDED(type.result)) {
            type.shapes = ReadShapes(*info.Get());
            type.info = std::move(info);
            break;
        }
        info.Detach(); // nothing came
        CheckMemory(type.result);
    }
    return types_.emplace(guid, std::move(type)).first->second;
}

HRESULT Dll::TypeInfo(REFGUID guid, ITypeInfo** info) noexcept {
    *info = nullptr;
    HRESULT result = E_OUTOFMEMORY;
    const auto failure = Attempt([&] {
        const TypeEntry& entry = Type(guid);
        result = entry.result;
        if (SUCCEEDED(result)) {
            *info = Ref<ITypeInfo>(entry.info).Detach();
        }
    });
    return failure ? failure->code : result;
}

Dll& ThisDll() noexcept {
    static Dll module;
    return module;
}

} // namespace com
