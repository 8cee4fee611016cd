#include "tests/appobject/Module.h"

#include "com/LateBound.h"
#include "tests/support/Recorder.h"

#include <olectl.h>

#include <string>
#include <vector>

using namespace support;
using namespace modules;

namespace {

/// A host object that is no document and no view.
com::Ref<Recorder> Stranger() {
    return Recorder::Make(L"stranger", {&__uuidof(IClonable)});
}

/// A host object whose server is gone: it says so of a document and of a view.
class Gone final : public com::DualObject<Gone, IClonable> {
  public:
    static const CLSID& ClassId() noexcept { return CLSID_NULL; }
    STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
        if (iid == __uuidof(IHostDocument) || iid == __uuidof(IHostView)) {
            *out = nullptr;
            LeaveError(L"The drawing is closed", L"Host");
            return CO_E_OBJNOTCONNECTED;
        }
        return Object::QueryInterface(iid, out);
    }
    STDMETHODIMP InterfaceSupportsErrorInfo(REFIID) override { return S_OK; }
    STDMETHODIMP Clone(IDispatch**) override { return E_NOTIMPL; }
};

class CDBAppObjectHostShowTest : public ModuleTest {
  protected:
    com::Ref<Recorder> view = Recorder::Make(L"view", {&__uuidof(IHostView)});
    /// The host's document, the parent of the module.
    com::Ref<Recorder> sheet = Recorder::Make(L"sheet", {&__uuidof(IHostDocument)});

    com::Ref<IAppObject> OnSheet() {
        sheet->Set(L"View", view);
        auto module = NewModule();
        module->putref_Parent(sheet->As<IDispatch>().Get());
        return module;
    }
    void ExpectShowReport(const std::wstring& description, const std::wstring& source = L"O_Tam_id") {
        ExpectOneReport(description, L"IAppObject_Show Class Module CDBAppObject", L"Sub IAppObject_Show",
                        source);
    }
    static bool Active(const com::Ref<IAppObject>& module) {
        return Flag(module, &IAppObject::get_IsPlugInActive);
    }
};

TEST_F(CDBAppObjectHostShowTest, AsksTheHostsViewOnceAndNothingElseOfIt) {
    const auto module = OnSheet();
    EXPECT_EQ(module->Show(), S_OK);
    EXPECT_EQ(Said(L"view"), std::vector<std::wstring>{L"view.ShowObject()"});
}

TEST_F(CDBAppObjectHostShowTest, IsActiveWhileItIsShown) {
    const auto module = OnSheet();
    bool active = false;
    view->On(L"ShowObject", [&](const Invocation&) {
        active = Active(module);
        return S_OK;
    });
    EXPECT_FALSE(Active(module));
    EXPECT_EQ(module->Show(), S_OK);
    EXPECT_TRUE(active);
    EXPECT_FALSE(Active(module));
}

TEST_F(CDBAppObjectHostShowTest, BearsAViewThatDropsTheLastReference) {
    auto module = OnSheet();
    view->On(L"ShowObject", [&](const Invocation&) {
        module.Reset();
        return S_OK;
    });
    IAppObject* const asked = module.Get();
    EXPECT_EQ(asked->Show(), S_OK);
    EXPECT_FALSE(module);
    EXPECT_EQ(Dll().CanUnload(), S_OK);
}

TEST_F(CDBAppObjectHostShowTest, ShowsNothingWithoutAParent) {
    const auto module = NewModule();
    EXPECT_EQ(module->Show(), S_OK);
    EXPECT_FALSE(Active(module));
}

TEST_F(CDBAppObjectHostShowTest, ShowsNothingAfterDestroy) {
    const auto module = OnSheet();
    module->Destroy();
    EXPECT_EQ(module->Show(), S_OK);
    EXPECT_EQ(view->Times(L"ShowObject"), 0u);
}

TEST_F(CDBAppObjectHostShowTest, ShowsByName) {
    const auto module = OnSheet();
    com::CallMember(*module.Get(), L"Show", {});
    EXPECT_EQ(view->Times(L"ShowObject"), 1u);
}

TEST_F(CDBAppObjectHostShowTest, ReportsAParentThatIsNoDocument) {
    const auto module = NewModule();
    module->putref_Parent(Stranger()->As<IDispatch>().Get());
    EXPECT_EQ(module->Show(), S_OK);
    ExpectShowReport(kTypeMismatchText);
    EXPECT_FALSE(Active(module));
}

TEST_F(CDBAppObjectHostShowTest, ReportsWhyAParentOrAViewCannotBeReached) {
    const auto module = OnSheet();
    sheet->Set(L"View", com::Ref<IUnknown>(static_cast<IClonable*>(Gone::Make().Get())));
    EXPECT_EQ(module->Show(), S_OK);
    ExpectShowReport(L"The drawing is closed", L"Host");
    module->putref_Parent(Gone::Make().Get());
    EXPECT_EQ(module->Show(), S_OK);
    ExpectShowReport(L"The drawing is closed", L"Host");
    EXPECT_FALSE(Active(module));
}

TEST_F(CDBAppObjectHostShowTest, ReportsADocumentWithoutAView) {
    const auto module = OnSheet();
    sheet->Set(L"View", com::Ref<IUnknown>());
    EXPECT_EQ(module->Show(), S_OK);
    ExpectShowReport(kObjectNotSetText);
    EXPECT_FALSE(Active(module));
}

TEST_F(CDBAppObjectHostShowTest, ReportsAViewThatIsNone) {
    const auto module = OnSheet();
    sheet->Set(L"View", Stranger());
    EXPECT_EQ(module->Show(), S_OK);
    ExpectShowReport(kTypeMismatchText);
}

TEST_F(CDBAppObjectHostShowTest, ReportsADocumentThatFails) {
    const auto module = OnSheet();
    sheet->Refuse(L"get View", E_ACCESSDENIED);
    EXPECT_EQ(module->Show(), S_OK);
    ExpectShowReport({});
    EXPECT_EQ(view->Times(L"ShowObject"), 0u);
    EXPECT_FALSE(Active(module));
}

TEST_F(CDBAppObjectHostShowTest, ReportsACodeThatTheSystemHasNoWordsFor) {
    const auto module = OnSheet();
    sheet->Refuse(L"get View", static_cast<HRESULT>(0xA0F71234));
    EXPECT_EQ(module->Show(), S_OK);
    ExpectShowReport(L"Automation error");
}

TEST_F(CDBAppObjectHostShowTest, ReportsAFailingViewWithTheViewsOwnWords) {
    const auto module = OnSheet();
    view->On(L"ShowObject", [](const Invocation&) {
        LeaveError(L"The page is locked", L"Host.View");
        return E_FAIL;
    });
    EXPECT_EQ(module->Show(), S_OK);
    ExpectShowReport(L"The page is locked", L"Host.View");
    EXPECT_FALSE(Active(module));
}

/// An icon file of one size, 1 bit a pixel, all of it black.
class IconFile {
  public:
    IconFile(const std::wstring& name, BYTE size) : path_(Component::Folder() + name + L".ico") {
        const DWORD row = ((size + 31u) / 32u) * 4u;
        const DWORD bits = row * size;
        const DWORD length = 40 + 8 + 2 * bits;
        std::vector<BYTE> data = {0, 0, 1, 0, 1, 0, size, size, 2, 0, 1, 0, 1, 0};
        const auto add = [&](DWORD value, int bytes) {
            for (int i = 0; i < bytes; ++i) {
                data.push_back(static_cast<BYTE>(value >> (8 * i)));
            }
        };
        add(length, 4);
        add(22, 4); // where the picture begins
        add(40, 4);
        add(size, 4);
        add(size * 2u, 4); // colours above the mask
        add(1, 2);
        add(1, 2);
        for (const DWORD value : std::initializer_list<DWORD>{0, 2 * bits, 0, 0, 2, 0}) {
            add(value, 4);
        }
        add(0, 4);
        add(0xFFFFFF, 4);
        data.resize(data.size() + 2 * bits);
        const HANDLE file = CreateFileW(path_.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
        DWORD written = 0;
        WriteFile(file, data.data(), static_cast<DWORD>(data.size()), &written, nullptr);
        CloseHandle(file);
    }
    ~IconFile() { DeleteFileW(path_.c_str()); }
    IconFile(const IconFile&) = delete;
    IconFile& operator=(const IconFile&) = delete;

  private:
    std::wstring path_;
};

class CDBAppObjectHostIconTest : public ModuleTest {
  protected:
    /// Width in pixels of the icon in a picture; 0 when it holds none.
    static long IconWidth(IDispatch* object) {
        const auto picture = com::Query<IPicture>(object);
        short type = PICTYPE_NONE;
        OLE_HANDLE handle = 0;
        ICONINFO info{};
        if (!picture || FAILED(picture->get_Type(&type)) || type != PICTYPE_ICON ||
            FAILED(picture->get_Handle(&handle)) ||
            GetIconInfo(reinterpret_cast<HICON>(static_cast<UINT_PTR>(handle)), &info) == FALSE) {
            return 0;
        }
        BITMAP bitmap{};
        GetObjectW(info.hbmMask, sizeof(bitmap), &bitmap);
        DeleteObject(info.hbmMask);
        DeleteObject(info.hbmColor);
        return bitmap.bmWidth;
    }
    static long WidthOf(const com::Ref<IAppObject>& module) {
        return IconWidth(Object(module, &IAppObject::get_Icon).Get());
    }
    /// The component's own icon as it is loaded from its resources.
    static long LogoWidth() { return GetSystemMetrics(SM_CXICON); }
    static constexpr BYTE kSize = 16;
};

TEST_F(CDBAppObjectHostIconTest, IsThePictureFileOfTheDefinition) {
    ASSERT_NE(LogoWidth(), kSize);
    const IconFile file(L"Valve", kSize);
    EXPECT_EQ(WidthOf(Defined(L"<NAME>Pump</NAME>", L"Valve")), kSize);
}

TEST_F(CDBAppObjectHostIconTest, IsTheLogoWithoutAFile) {
    EXPECT_EQ(WidthOf(Defined(L"<NAME>Valve</NAME>", L"Valve")), LogoWidth());
}

TEST_F(CDBAppObjectHostIconTest, IsTheLogoBeforeInit) {
    EXPECT_EQ(WidthOf(NewModule()), LogoWidth());
}

TEST_F(CDBAppObjectHostIconTest, IsTheLogoWhenTheFileIsNoPicture) {
    for (const wchar_t* content :
         {L"", L"words", L"a text that is longer than the head of any picture file"}) {
        const TextFile file(Component::Folder() + L"Valve.ico", content);
        EXPECT_EQ(WidthOf(Defined(L"<NAME>Valve</NAME>", L"Valve")), LogoWidth()) << content;
    }
}

TEST_F(CDBAppObjectHostIconTest, IsNamedAfterTheFileAndNotAfterTheObject) {
    const IconFile file(L"Pump", kSize);
    EXPECT_EQ(WidthOf(Defined(L"<NAME>Pump</NAME>", L"Valve")), LogoWidth());
}

TEST_F(CDBAppObjectHostIconTest, IsTheComponentsFileAfterAStream) {
    const IconFile file(L"O_Tam_id", kSize);
    EXPECT_EQ(WidthOf(Loaded(Stream({}))), kSize);
}

TEST_F(CDBAppObjectHostIconTest, IsLoadedAgainAtEachRead) {
    const auto module = Defined(L"<NAME>Valve</NAME>", L"Valve");
    EXPECT_EQ(WidthOf(module), LogoWidth());
    const IconFile file(L"Valve", kSize);
    EXPECT_EQ(WidthOf(module), kSize);
}

TEST_F(CDBAppObjectHostIconTest, OutlivesItsModule) {
    auto module = NewModule();
    const auto first = Object(module, &IAppObject::get_Icon);
    {
        const auto second = Object(module, &IAppObject::get_Icon);
        EXPECT_EQ(IconWidth(second.Get()), LogoWidth());
    }
    module.Reset();
    EXPECT_EQ(IconWidth(first.Get()), LogoWidth()) << "a picture that goes does not take the logo with it";
}

TEST_F(CDBAppObjectHostIconTest, AnswersByName) {
    const com::Variant icon = com::GetMember(*NewModule().Get(), L"Icon");
    ASSERT_EQ(icon.Get().vt, VT_DISPATCH);
    EXPECT_EQ(IconWidth(icon.Get().pdispVal), LogoWidth());
}

} // namespace
