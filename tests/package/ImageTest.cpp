// The DLLs as files: exports, imports, sections, resources.

#include "tests/package/Image.h"

#include "com/Conversion.h"
#include "com/Ref.h"
#include "tests/FileVersion.h"
#include "tests/package/Dll.h"

#include <cctype>
#include <cstddef>
#include <ostream>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace package {

namespace {

struct Case {
    const char* name;
    const DllFacts& (*facts)();
};

void PrintTo(const Case& entry, std::ostream* out) {
    *out << entry.name;
}

class ImageTest : public ::testing::TestWithParam<Case> {
  protected:
    const DllFacts& Facts() const { return GetParam().facts(); }
    std::wstring Path() const { return DllFolder() + Facts().file; }
    Image File() const { return Image(Path()); }
};

TEST_P(ImageTest, IsADllForThisProcessor) {
    const Image file = File();
    EXPECT_EQ(sizeof(void*) == 8 ? IMAGE_FILE_MACHINE_AMD64 : IMAGE_FILE_MACHINE_I386, file.File().Machine);
    EXPECT_NE(0, file.File().Characteristics & IMAGE_FILE_DLL);
    EXPECT_EQ(IMAGE_SUBSYSTEM_WINDOWS_CUI, file.Optional().Subsystem);
    EXPECT_EQ(0U, file.File().NumberOfSymbols) << "symbols were left in it";
    EXPECT_EQ(0U, file.File().TimeDateStamp) << "two builds of one source would differ";
}

TEST_P(ImageTest, IsSmallEnoughToBeLoadedIntoEveryHost) {
    WIN32_FILE_ATTRIBUTE_DATA file{};
    ASSERT_TRUE(GetFileAttributesExW(Path().c_str(), GetFileExInfoStandard, &file));
    constexpr DWORD kMost = 900 * 1024;
    EXPECT_EQ(0U, file.nFileSizeHigh);
    EXPECT_GE(kMost, file.nFileSizeLow);
}

TEST_P(ImageTest, ExportsTheEntryPointsOfAServerAndNothingElse) {
    const std::vector<std::string> expected{"DllCanUnloadNow", "DllGetClassObject", "DllInstall",
                                            "DllRegisterServer", "DllUnregisterServer"};
    EXPECT_EQ(expected, File().Exports());
    EXPECT_EQ(5U, File().ExportCount());
}

TEST_P(ImageTest, ImportsTheseSystemDllsAndNoOther) {
    std::vector<std::string> names;
    for (const auto& [name, functions] : File().Imports()) {
        names.push_back(name);
        EXPECT_FALSE(functions.empty()) << name;
        for (const std::string& function : functions) {
            EXPECT_EQ(0, std::isdigit(static_cast<unsigned char>(function.front())))
                << name << " by number, which differs between versions";
        }
    }
    EXPECT_EQ(Facts().imports, names);
    EXPECT_EQ(0U, File().Optional().DataDirectory[IMAGE_DIRECTORY_ENTRY_DELAY_IMPORT].Size);
}

TEST_P(ImageTest, HasNoSectionBothWritableAndExecutable) {
    constexpr DWORD both = IMAGE_SCN_MEM_WRITE | IMAGE_SCN_MEM_EXECUTE;
    std::set<std::string> executable;
    for (const Image::Section& section : File().Sections()) {
        EXPECT_NE(both, section.flags & both) << section.name;
        EXPECT_EQ(0U, section.flags & IMAGE_SCN_MEM_SHARED) << section.name;
        if ((section.flags & IMAGE_SCN_MEM_EXECUTE) != 0) {
            executable.insert(section.name);
        }
    }
    EXPECT_EQ(std::set<std::string>{".text"}, executable);
}

TEST_P(ImageTest, MayLieAnywhereAndRunsNoData) {
    const Image file = File();
    constexpr int kAnywhere = sizeof(void*) == 8 ? IMAGE_DLLCHARACTERISTICS_HIGH_ENTROPY_VA : 0;
    EXPECT_EQ(IMAGE_DLLCHARACTERISTICS_DYNAMIC_BASE | IMAGE_DLLCHARACTERISTICS_NX_COMPAT | kAnywhere,
              file.Optional().DllCharacteristics);
    EXPECT_EQ(0, file.File().Characteristics & IMAGE_FILE_RELOCS_STRIPPED);
    EXPECT_LT(0U, file.Optional().DataDirectory[IMAGE_DIRECTORY_ENTRY_BASERELOC].Size);
}

TEST_P(ImageTest, TellsItsVersion) {
    const tests::FileVersion version(Path());
    ASSERT_TRUE(version.IsThere());
    const VS_FIXEDFILEINFO fixed = version.Fixed();
    EXPECT_EQ(0x10000U, fixed.dwFileVersionMS);
    EXPECT_EQ(0U, fixed.dwFileVersionLS);
    EXPECT_EQ(0x10000U, fixed.dwProductVersionMS);
    EXPECT_EQ(0U, fixed.dwProductVersionLS);
    EXPECT_EQ(0U, fixed.dwFileFlags);
    EXPECT_EQ(static_cast<DWORD>(VOS_NT_WINDOWS32), fixed.dwFileOS);
    EXPECT_EQ(static_cast<DWORD>(VFT_DLL), fixed.dwFileType);

    const std::wstring file = Facts().file;
    EXPECT_EQ(Facts().description, version.Text(L"FileDescription"));
    EXPECT_EQ(L"1.0.0.0", version.Text(L"FileVersion"));
    EXPECT_EQ(file.substr(0, file.find(L'.')), version.Text(L"InternalName"));
    EXPECT_EQ(file, version.Text(L"OriginalFilename"));
    EXPECT_EQ(L"O_Tam_id", version.Text(L"ProductName"));
    EXPECT_EQ(L"The developers of O_Tam_id", version.Text(L"CompanyName"));
    EXPECT_EQ(L"Copyright 2026 the developers of O_Tam_id", version.Text(L"LegalCopyright"));
    EXPECT_EQ(L"1.0.0.0", version.Text(L"ProductVersion"));
    EXPECT_EQ(L"", version.Text(L"OLESelfRegister")) << "tells installers that it registers itself";
}

TEST_P(ImageTest, CarriesBothTypeLibraries) {
    const std::wstring file = Facts().file;
    const std::wstring own = file.substr(0, file.find(L'.'));
    const std::pair<const wchar_t*, std::wstring> libraries[] = {
        {L"", own}, {L"\\1", own}, {L"\\2", L"OrvDBFaces"}};
    for (const auto& [resource, name] : libraries) {
        com::Ref<ITypeLib> library;
        ASSERT_EQ(S_OK, LoadTypeLibEx((Path() + resource).c_str(), REGKIND_NONE, library.Put()));
        com::Bstr text;
        ASSERT_EQ(S_OK, library->GetDocumentation(-1, text.Put(), nullptr, nullptr, nullptr));
        EXPECT_EQ(name, text.View());
        TLIBATTR* attributes = nullptr;
        ASSERT_EQ(S_OK, library->GetLibAttr(&attributes));
        EXPECT_EQ(sizeof(void*) == 8 ? SYS_WIN64 : SYS_WIN32, attributes->syskind);
        EXPECT_EQ(1, attributes->wMajorVerNum);
        EXPECT_EQ(0, attributes->wMinorVerNum);
        library->ReleaseTLibAttr(attributes);
    }
    com::Ref<ITypeLib> none;
    EXPECT_NE(S_OK, LoadTypeLibEx((Path() + L"\\3").c_str(), REGKIND_NONE, none.Put()));
}

INSTANTIATE_TEST_SUITE_P(Dlls, ImageTest,
                         ::testing::Values(Case{"Component", &Component},
                                           Case{"HostServices", &HostServices}),
                         [](const auto& entry) { return std::string(entry.param.name); });

/// Resources that the component has.
class ImageResourcesTest : public ::testing::Test {
  protected:
    std::wstring Text(UINT id) const {
        wchar_t text[256] = {};
        return std::wstring(text, static_cast<std::size_t>(LoadStringW(dll.Module(), id, text, 256)));
    }

    Dll dll{Component()};
};

TEST_F(ImageResourcesTest, HasTwoTexts) {
    EXPECT_EQ(L"Gateway Object", Text(101));
    EXPECT_EQ(L"Point Summary", Text(120));
    for (UINT id = 0; id < 512; ++id) {
        if (id != 101 && id != 120) {
            EXPECT_EQ(L"", Text(id)) << id;
        }
    }
}

TEST_F(ImageResourcesTest, HasAnIconInThreeSizes) {
    ASSERT_NE(nullptr, FindResourceW(dll.Module(), L"A_LOGO", MAKEINTRESOURCEW(14))); // RT_GROUP_ICON
    for (const int size : {16, 32, 48}) {
        const auto icon =
            static_cast<HICON>(LoadImageW(dll.Module(), L"A_LOGO", IMAGE_ICON, size, size, LR_DEFAULTCOLOR));
        ASSERT_NE(nullptr, icon) << size;
        ICONINFO info{};
        ASSERT_TRUE(GetIconInfo(icon, &info));
        BITMAP bitmap{};
        GetObjectW(info.hbmMask, sizeof bitmap, &bitmap);
        EXPECT_EQ(size, bitmap.bmWidth);
        DeleteObject(info.hbmMask);
        DeleteObject(info.hbmColor);
        DestroyIcon(icon);
    }
}

TEST_F(ImageResourcesTest, DrawsWithTheNewCommonControls) {
    // Number 2 is the manifest of a DLL that others load.
    const HRSRC found = FindResourceW(dll.Module(), MAKEINTRESOURCEW(2), MAKEINTRESOURCEW(24));
    ASSERT_NE(nullptr, found);
    const auto* const bytes = static_cast<const char*>(LockResource(LoadResource(dll.Module(), found)));
    const std::string text(bytes, SizeofResource(dll.Module(), found));
    for (const char* part :
         {"<assemblyIdentity type=\"win32\" name=\"Microsoft.Windows.Common-Controls\" version=\"6.0.0.0\"",
          "processorArchitecture=\"*\" publicKeyToken=\"6595b64144ccf1df\" language=\"*\"/>"}) {
        EXPECT_NE(std::string::npos, text.find(part)) << part << " is not in\n" << text;
    }

    ACTCTXW request{};
    request.cbSize = sizeof request;
    request.dwFlags = ACTCTX_FLAG_HMODULE_VALID | ACTCTX_FLAG_RESOURCE_NAME_VALID;
    request.hModule = dll.Module();
    request.lpResourceName = MAKEINTRESOURCEW(2);
    const HANDLE context = CreateActCtxW(&request);
    ASSERT_NE(INVALID_HANDLE_VALUE, context)
        << "the system does not take the manifest, error " << GetLastError();
    ReleaseActCtx(context);
}

} // namespace

} // namespace package
