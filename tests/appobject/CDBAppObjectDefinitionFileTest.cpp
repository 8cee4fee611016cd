// How the definition file is found and parsed: which folder, which parser, what
// is said of a file that the parser refuses.

#include "tests/appobject/Module.h"

#include "common/resource.h"
#include "tests/support/HostWindows.h"
#include "tests/support/ImportPatch.h"

#include <array>
#include <cstddef>
#include <string>
#include <vector>

using namespace support;
using namespace modules;

namespace {

/// The classes that the component makes objects of while this object lives.
class MadeClasses {
  public:
    explicit MadeClasses(HMODULE dll)
        : patch_(dll, "CoCreateInstance", reinterpret_cast<const void*>(&MadeClasses::Create)) {
        EXPECT_TRUE(patch_.IsImported());
        seen.clear();
    }
    static inline std::vector<CLSID> seen;

  private:
    static HRESULT WINAPI Create(REFCLSID clsid, IUnknown* outer, DWORD context, REFIID iid, void** out) {
        seen.push_back(clsid);
        return CoCreateInstance(clsid, outer, context, iid, out);
    }
    ImportPatch patch_;
};

/// Parsers that say these texts of what they refuse, while this object lives.
class ParserTexts {
  public:
    ParserTexts(const wchar_t* line, const wchar_t* reason) {
        com::Ref<IXMLDOMParseError> error;
        com::Check(NewDocument()->get_parseError(error.Put()));
        slots_ = *reinterpret_cast<ULONG_PTR**>(error.Get()) + kReason;
        originals_ = {slots_[0], slots_[1]};
        texts = {reason, line};
        WriteProtected(&slots_[0], reinterpret_cast<ULONG_PTR>(&ParserTexts::Get<0>));
        WriteProtected(&slots_[1], reinterpret_cast<ULONG_PTR>(&ParserTexts::Get<1>));
    }
    ~ParserTexts() {
        WriteProtected(&slots_[0], originals_[0]);
        WriteProtected(&slots_[1], originals_[1]);
    }
    ParserTexts(const ParserTexts&) = delete;
    ParserTexts& operator=(const ParserTexts&) = delete;

  private:
    // IUnknown 3 and IDispatch 4 members, the number, the URL; then the reason
    // and the line of the source.
    static constexpr std::size_t kReason = 9;

    template <std::size_t Index>
    static HRESULT STDMETHODCALLTYPE Get(IXMLDOMParseError*, BSTR* out) {
        *out = com::Bstr(texts[Index]).Detach();
        return S_OK;
    }

    static inline std::array<const wchar_t*, 2> texts;
    ULONG_PTR* slots_ = nullptr;
    std::array<ULONG_PTR, 2> originals_{};
};

/// Documents that are complete at the third question alone, while this object lives.
class SlowDocuments {
  public:
    SlowDocuments() {
        slot_ = *reinterpret_cast<ULONG_PTR**>(NewDocument().Get()) + kReadyState;
        original_ = *slot_;
        asked = 0;
        WriteProtected(slot_, reinterpret_cast<ULONG_PTR>(&SlowDocuments::Get));
    }
    ~SlowDocuments() { WriteProtected(slot_, original_); }
    SlowDocuments(const SlowDocuments&) = delete;
    SlowDocuments& operator=(const SlowDocuments&) = delete;

    static inline int asked;

  private:
    // IUnknown 3, IDispatch 4 and IXMLDOMNode 36 members, then 16 of the document.
    static constexpr std::size_t kReadyState = 59;

    static HRESULT STDMETHODCALLTYPE Get(IXMLDOMDocument*, long* out) {
        *out = ++asked < 3 ? 1 : 4;
        return S_OK;
    }

    ULONG_PTR* slot_ = nullptr;
    ULONG_PTR original_ = 0;
};

/// The component's own file lies in a folder "Moved" while this object lives, as
/// far as the component can tell.
class MovedComponent {
  public:
    explicit MovedComponent(HMODULE dll)
        : patch_(dll, "GetModuleFileNameW", reinterpret_cast<const void*>(&MovedComponent::FileName)) {
        EXPECT_TRUE(patch_.IsImported());
        CreateDirectoryW(Folder().c_str(), nullptr);
    }
    ~MovedComponent() { RemoveDirectoryW(Folder().c_str()); }
    MovedComponent(const MovedComponent&) = delete;
    MovedComponent& operator=(const MovedComponent&) = delete;
    static std::wstring Folder() { return Component::Folder() + L"Moved\\"; }

  private:
    static DWORD WINAPI FileName(HMODULE, LPWSTR path, DWORD size) {
        const std::wstring file = Folder() + L"O_Tam_id.dll";
        const std::size_t length = file.copy(path, size - 1);
        path[length] = L'\0';
        return static_cast<DWORD>(length);
    }
    ImportPatch patch_;
};

class CDBAppObjectDefinitionFileTest : public ModuleTest {};

TEST_F(CDBAppObjectDefinitionFileTest, GivesTheHostATurnWhileTheDocumentIsNotComplete) {
    DefineWhole(L"Valve", L"<Tam><AppObject><NAME>Valve</NAME></AppObject></Tam>");
    const auto module = NewModule();
    const SlowDocuments slow;
    const Reposter host;
    EXPECT_TRUE(Init(module, L"Valve"));
    EXPECT_EQ(SlowDocuments::asked, 3);
    EXPECT_EQ(host.Handled(), 2);
    EXPECT_EQ(Text(module, &IAppObject::get_Name), L"Valve");
}

TEST_F(CDBAppObjectDefinitionFileTest, IsParsedByTheClassOfDefinitions) {
    constexpr CLSID kDefinitions = {
        0xF6D90F11, 0x9C73, 0x11D3, {0xB3, 0x2E, 0x00, 0xC0, 0x4F, 0x99, 0x0B, 0xB4}};
    Define(L"Valve", L"<NAME>Valve</NAME>");
    const auto module = NewModule();
    const MadeClasses made(Dll().Module());
    EXPECT_TRUE(Init(module, L"Valve"));
    ASSERT_EQ(MadeClasses::seen.size(), 1u);
    EXPECT_EQ(MadeClasses::seen[0], kDefinitions);
}

TEST_F(CDBAppObjectDefinitionFileTest, IsReportedWithTheParsersLineThenItsReason) {
    DefineWhole(L"Broken", L"<AppObject>\n</Wrong>");
    const ParserTexts texts(L"</Wrong>", L"The end tag 'Wrong' does not match the start tag 'AppObject'.");
    const auto module = NewModule();
    EXPECT_FALSE(Init(module, L"Broken"));
    const auto boxes = Boxes();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].controls.at(IDC_ERROR_DESCRIPTION),
              L"</Wrong>\rThe end tag 'Wrong' does not match the start tag 'AppObject'.");
}

TEST_F(CDBAppObjectDefinitionFileTest, IsLookedForInTheFolderOfTheLastConstruction) {
    Define(L"Valve", L"<NAME>Of the first folder</NAME>");
    const auto first = NewModule();
    {
        const MovedComponent moved(Dll().Module());
        const TextFile definition(MovedComponent::Folder() + L"Valve.xml",
                                  L"<AppObject><NAME>Of the second</NAME></AppObject>");
        EXPECT_TRUE(Init(first, L"Valve"));
        EXPECT_EQ(Text(first, &IAppObject::get_Name), L"Of the first folder") << "nothing was made since";
        const auto second = NewModule();
        EXPECT_TRUE(Init(first, L"Valve"));
        EXPECT_EQ(Text(first, &IAppObject::get_Name), L"Of the second") << "one path for all";
    }
    EXPECT_FALSE(Init(first, L"Valve")) << "still that of the second object";
    ExpectOneReport(L"", L"IAppObject_Init Class Module CDBAppObject", L"Function IAppObject_Init");
    const auto third = NewModule();
    EXPECT_TRUE(Init(first, L"Valve"));
    EXPECT_EQ(Text(first, &IAppObject::get_Name), L"Of the first folder");
}

} // namespace
