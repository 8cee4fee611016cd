#pragma once

#include "tests/package/Expected.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <string>

namespace package {

/// One of the two DLLs as the build made it, loaded, with its exports.
class Dll {
  public:
    explicit Dll(const DllFacts& facts);
    ~Dll() { FreeLibrary(module_); }
    Dll(const Dll&) = delete;
    Dll& operator=(const Dll&) = delete;

    const DllFacts& Facts() const noexcept { return facts_; }
    HMODULE Module() const noexcept { return module_; }
    const std::wstring& Path() const noexcept { return path_; }

    /// DllRegisterServer for the machine, DllInstall with "user" for the user.
    HRESULT Register(Scope scope) const;
    HRESULT Unregister(Scope scope) const;
    HRESULT Install(BOOL install, const wchar_t* commandLine) const;
    HRESULT ClassObject(REFCLSID clsid, REFIID iid, void** out) const;
    HRESULT CanUnloadNow() const;

  private:
    const DllFacts& facts_;
    std::wstring path_;
    HMODULE module_;
};

/// Folder of the DLLs with a closing backslash.
std::wstring DllFolder();

/// Runs regsvr32 over a DLL; its exit status. A minute is allowed.
DWORD Regsvr32(const std::wstring& options, const std::wstring& path);

/// A test with both DLLs and a registry that has neither; at the end it must be
/// as it was at the beginning.
class RegistryTest : public ::testing::Test {
  protected:
    void SetUp() override;
    void TearDown() override;

    Dll component{Component()};
    Dll hostServices{HostServices()};
    Lines before;
};

/// Writes a text below Software\Classes as somebody else would have.
void Plant(Scope scope, const std::wstring& key, const wchar_t* value, const std::wstring& text);
/// Takes a key and all below it away.
void Clear(Scope scope, const std::wstring& key);

/// What an older version may have left: the DLL elsewhere, values and keys that
/// are not written any more, a value of another type, a key of an interface.
void PlantOlderInstall(const DllFacts& dll, Scope scope);

} // namespace package
