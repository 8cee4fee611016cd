#include "com/Module.h"

#include "com/Boundary.h"

#include <cstring>

namespace com {

namespace {

/// Type libraries stand in the resources as numbers 1 and 2. The second has the
/// host interfaces; the first repeats some of them, with references to the
/// second that only a registered library resolves. So the second comes first.
constexpr int kLibraryResources = 2;

Ref<ITypeInfo> FindTypeInfo(const std::wstring& filePath, REFGUID guid, HRESULT& result) {
    result = TYPE_E_ELEMENTNOTFOUND;
    for (int index = kLibraryResources; index >= 1; --index) {
        Ref<ITypeLib> library;
        const std::wstring path = filePath + L"\\" + std::to_wstring(index);
        if (FAILED(LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.Put()))) {
            continue;
        }
        Ref<ITypeInfo> info;
        result = library->GetTypeInfoOfGuid(guid, info.Put());
        if (SUCCEEDED(result)) {
            return info;
        }
        info.Detach();
    }
    return {};
}

} // namespace

bool GuidLess::operator()(const GUID& left, const GUID& right) const noexcept {
    return std::memcmp(&left, &right, sizeof(GUID)) < 0;
}

std::wstring Module::FilePath() const {
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

std::wstring Module::Folder() const {
    const std::wstring path = FilePath();
    return path.substr(0, path.find_last_of(L'\\') + 1);
}

std::wstring Module::Name() const {
    const std::wstring path = FilePath();
    const std::wstring file = path.substr(path.find_last_of(L'\\') + 1);
    return file.substr(0, file.find_last_of(L'.'));
}

const Module::Info& Module::Load(REFGUID guid) {
    const auto found = infos_.find(guid);
    if (found != infos_.end()) {
        return found->second;
    }
    Info info;
    info.info = FindTypeInfo(FilePath(), guid, info.result);
    if (info.info) {
        info.shapes = ReadShapes(*info.info.Get());
    }
    return infos_.emplace(guid, std::move(info)).first->second;
}

HRESULT Module::TypeInfo(REFGUID guid, ITypeInfo** info) noexcept {
    *info = nullptr;
    HRESULT result = E_OUTOFMEMORY;
    const auto failure = Attempt([&] {
        const Info& entry = Load(guid);
        result = entry.result;
        if (SUCCEEDED(result)) {
            *info = Ref<ITypeInfo>(entry.info).Detach();
        }
    });
    return failure ? failure->code : result;
}

Module& ThisModule() noexcept {
    static Module module;
    return module;
}

} // namespace com
