#pragma once

#include "tests/package/Expected.h"
#include "tests/Places.h"

#include <windows.h>

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace package {

std::wstring Wide(const std::string& ascii);

/// Folder of the DLLs with a closing backslash.
std::wstring DllFolder();

/// One of the two DLLs as the build made it, or a copy of it in another folder, loaded,
/// with its exports.
class Dll {
  public:
    explicit Dll(const DllFacts& facts, const std::wstring& folder = DllFolder());
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

/// A copy of a DLL's file in a folder of its own, which goes with it.
class Copy {
  public:
    explicit Copy(const Dll& original);
    ~Copy() { EXPECT_NE(FALSE, DeleteFileW(Path().c_str())) << "it is still loaded"; }
    Copy(const Copy&) = delete;
    Copy& operator=(const Copy&) = delete;

    /// With a closing backslash.
    std::wstring Folder() const { return (folder_.Path() / L"").native(); }
    std::wstring Path() const { return Folder() + file_; }

  private:
    const wchar_t* file_;
    tests::OwnFolder folder_;
};

/// Runs regsvr32 over a DLL; its exit status. A minute is allowed.
DWORD Regsvr32(const std::wstring& options, const std::wstring& path);

/// Lets a part of the registry stand for the machine's in this process, as long
/// as it lives: the machine's own has thousands of keys, which take a second to
/// read. Somebody else's class is in it.
class SmallMachine {
  public:
    SmallMachine();
    ~SmallMachine();
    SmallMachine(const SmallMachine&) = delete;
    SmallMachine& operator=(const SmallMachine&) = delete;

  private:
    HKEY key_ = nullptr;
};

/// A test with both DLLs and a registry that has neither; at the end it must be
/// as it was at the beginning.
class RegistryTest : public ::testing::Test {
  protected:
    void SetUp() override;
    void TearDown() override;

    Dll component{Component()};
    Dll hostServices{HostServices()};
    Lines before;

  private:
    std::optional<SmallMachine> machine_;
};

/// The system's registry without the two DLLs, as it was before the first test.
struct WholeRegistry {
    std::vector<Key> machine = ReadKeys(Scope::Machine);
    std::vector<Key> user = ReadKeys(Scope::User);

    bool operator==(const WholeRegistry&) const = default;
    Lines AsLines() const;

    static const WholeRegistry& Before();
};

/// A difference from what it was before fails the test.
void ExpectUnchanged();

/// A test with the machine's own registry, for what other processes or the
/// system itself do with it.
class WholeRegistryTest : public ::testing::Test {
  protected:
    void SetUp() override { WholeRegistry::Before(); }
    void TearDown() override;

    Dll component{Component()};
    Dll hostServices{HostServices()};
    const Lines& before = LinesBefore();

  private:
    static const Lines& LinesBefore() {
        static const Lines lines = WholeRegistry::Before().AsLines();
        return lines;
    }
};

/// Writes a text below Software\Classes as somebody else would have.
void Plant(Scope scope, const std::wstring& key, const wchar_t* value, const std::wstring& text);
/// Takes a key and all below it away.
void Clear(Scope scope, const std::wstring& key);

/// What an older version may have left: the DLL elsewhere, values and keys that
/// are not written any more, a value of another type, a key of an interface.
void PlantOlderInstall(const DllFacts& dll, Scope scope);

} // namespace package
