#include "tests/support/Component.h"

#include "tests/Places.h"

#include <cstddef>
#include <filesystem>
#include <stdexcept>
#include <utility>
#include <vector>

namespace support {

namespace {

/// Removed when the process ends.
class CopiedFolder {
  public:
    CopiedFolder() : path_((outer_.Path() / L"Component" / L"").native()) {
        std::filesystem::create_directory(path_);
        const std::wstring built = (tests::BinFolder() / L"O_Tam_id.dll").native();
        if (CopyFileW(built.c_str(), (path_ + L"O_Tam_id.dll").c_str(), FALSE) == FALSE) {
            throw std::runtime_error("the component cannot be copied");
        }
    }
    const std::wstring& Path() const noexcept { return path_; }

  private:
    tests::OwnFolder outer_;
    std::wstring path_;
};

template <class F>
F Export(HMODULE module, const char* name) {
    const FARPROC address = GetProcAddress(module, name);
    if (address == nullptr) {
        throw std::runtime_error(std::string("the component lacks ") + name);
    }
    return reinterpret_cast<F>(reinterpret_cast<void*>(address));
}

} // namespace

Component::Component() : module_(LoadLibraryW(DllPath().c_str())) {
    if (module_ == nullptr) {
        throw std::runtime_error("the component cannot be loaded");
    }
}

Component::~Component() {
    FreeLibrary(module_);
}

const std::wstring& Component::Folder() {
    static const CopiedFolder folder;
    return folder.Path();
}

HRESULT Component::ClassObject(REFCLSID clsid, REFIID iid, void** out) const {
    using Function = HRESULT(STDAPICALLTYPE*)(REFCLSID, REFIID, void**);
    return Export<Function>(module_, "DllGetClassObject")(clsid, iid, out);
}

HRESULT Component::CanUnload() const {
    using Function = HRESULT(STDAPICALLTYPE*)();
    return Export<Function>(module_, "DllCanUnloadNow")();
}

HRESULT Component::CreateInstance(REFCLSID clsid, REFIID iid, void** out) const {
    com::Ref<IClassFactory> factory;
    const HRESULT result = ClassObject(clsid, IID_IClassFactory, factory.PutVoid());
    return FAILED(result) ? result : factory->CreateInstance(nullptr, iid, out);
}

TextFile::TextFile(std::wstring path, const std::wstring& text) : path_(std::move(path)) {
    const int length = static_cast<int>(text.size());
    const int size = WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
    std::vector<char> bytes(static_cast<std::size_t>(size));
    WideCharToMultiByte(CP_UTF8, 0, text.data(), length, bytes.data(), size, nullptr, nullptr);
    const HANDLE file = CreateFileW(path_.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD written = 0;
    const bool isWhole =
        WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr) != FALSE &&
        written == bytes.size();
    CloseHandle(file);
    if (!isWhole) {
        throw std::runtime_error("a test's file cannot be written");
    }
}

} // namespace support
