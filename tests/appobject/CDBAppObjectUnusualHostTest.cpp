#include "tests/appobject/Module.h"
#include "tests/appobject/ShellPatch.h"

#include "com/LateBound.h"
#include "common/resource.h"
#include "tests/support/CalledFrom.h"
#include "tests/support/Recorder.h"

#include <cstddef>
#include <span>
#include <string>
#include <utility>
#include <vector>

using namespace support;
using namespace modules;

namespace {

/// A compiler of another make: it writes into its arguments and then fails with
/// its own words, or lacks a member, or leaves no text.
class UnusualCompiler final : public ByNameDouble {
  public:
    bool raises = false;
    int compiled = 0;

    static com::Ref<UnusualCompiler> Make(std::vector<std::wstring> names = {L"SetDBPath",
                                                                             L"CompileTamObject"}) {
        return com::Ref<UnusualCompiler>::Own(new UnusualCompiler(std::move(names)));
    }

  private:
    explicit UnusualCompiler(std::vector<std::wstring> names) : ByNameDouble(std::move(names)) {}
    HRESULT Call(std::size_t member, WORD, DISPPARAMS& params, VARIANT*, EXCEPINFO* error) override {
        if (names_[member] == L"SetDBPath") {
            return S_OK;
        }
        ++compiled;
        for (UINT i = 0; i < params.cArgs; ++i) {
            SysFreeString(*params.rgvarg[i].pbstrVal);
            *params.rgvarg[i].pbstrVal = raises ? SysAllocString(L"77") : nullptr;
        }
        if (!raises) {
            return S_OK;
        }
        if (error != nullptr) {
            error->scode = E_FAIL;
            error->bstrSource = SysAllocString(L"Compiler");
            error->bstrDescription = SysAllocString(L"line 5 does not compile");
        }
        return DISP_E_EXCEPTION;
    }
};

/// Hosts that do what is legal and that others do not do.
class CDBAppObjectUnusualHostTest : public ModuleTest {
  protected:
    /// A module with an input and the sizes 11 and 22.
    com::Ref<IAppObject> Sized() {
        return Loaded(
            L"<Tam><Name>Pump</Name><DevKey>K7</DevKey><IsLastOnDev>1</IsLastOnDev><TamObjID>3</TamObjID>"
            L"<CDB>11</CDB><DDB>22</DDB></Tam>");
    }
    /// The stream that the compiler leaves, and the sizes behind it.
    void ExpectStream(const com::Ref<UnusualCompiler>& compiler, const std::wstring& stream, long cdb,
                      long ddb, CalledFrom = {}) {
        UseDatabaseLocation();
        const HostClass registered(kCompilerClass, kCompilerProgId, [&](REFIID iid, void** out) {
            return compiler->QueryInterface(iid, out);
        });
        const auto module = Sized();
        EXPECT_EQ(Text(module, &IAppObject::get_Stream), stream);
        EXPECT_EQ(LastError().description, L"") << "what was passed over is not handed on";
        EXPECT_EQ(Long(module, &IAppObject::get_CDBDimension), cdb);
        EXPECT_EQ(Long(module, &IAppObject::get_DDBDimension), ddb);
    }
    /// What writing a member by name from a script answers.
    static HRESULT PutByName(const com::Ref<IAppObject>& module, const std::wstring& member,
                             const VARIANT& value) {
        const auto failure = com::Attempt([&] { com::PutMember(*module.Get(), member, value); });
        return failure ? failure->code : S_OK;
    }
};

TEST_F(CDBAppObjectUnusualHostTest, EndsEmptyWhenTheCompilerWritesAndThenRaises) {
    const auto compiler = UnusualCompiler::Make();
    compiler->raises = true;
    ExpectStream(compiler, L"", 11, 22);
    EXPECT_EQ(compiler->compiled, 1);
}

TEST_F(CDBAppObjectUnusualHostTest, EndsEmptyWhenTheCompilerHasNoSetDBPath) {
    const auto compiler = UnusualCompiler::Make({L"CompileTamObject"});
    ExpectStream(compiler, L"", 11, 22);
    EXPECT_EQ(compiler->compiled, 0);
}

TEST_F(CDBAppObjectUnusualHostTest, TakesTextsThatTheCompilerLeavesNullForEmptyOnes) {
    const auto compiler = UnusualCompiler::Make();
    ExpectStream(compiler, L"", 0, 0);
    EXPECT_EQ(compiler->compiled, 1);
}

TEST_F(CDBAppObjectUnusualHostTest, HandsTheWordsOfTheDatabaseLocationToTheHost) {
    const auto location = Recorder::Make(L"location", {&__uuidof(IDatabaseLocation)});
    location->On(L"get Path", [](const Invocation&) {
        LeaveError(L"No project is open", L"Host.Database");
        return E_ACCESSDENIED;
    });
    const HostClass registered(kDatabaseLocationClass, L"",
                               [&](REFIID iid, void** out) { return location->QueryInterface(iid, out); });
    const auto module = Sized();
    com::Bstr stream;
    EXPECT_EQ(module->get_Stream(stream.Put()), E_ACCESSDENIED);
    const ErrorTexts error = LastError();
    EXPECT_EQ(error.description, L"No project is open");
    EXPECT_EQ(error.source, L"Host.Database");
    const auto failure = com::Attempt([&] { com::GetMember(*module.Get(), L"Stream"); });
    ASSERT_TRUE(failure.has_value());
    EXPECT_EQ(failure->code, E_ACCESSDENIED);
    EXPECT_EQ(failure->description, L"No project is open");
    EXPECT_EQ(failure->source, L"Host.Database");
}

TEST_F(CDBAppObjectUnusualHostTest, TakesTheOwnerWindowFromAVariable) {
    const TextFile sheet(Component::Folder() + L"Sheet.pdf", L"sheet");
    const auto module = Defined(L"<NAME>Valve</NAME>");
    ShellPatch shell(Dll().Module());
    long handle = 4660;
    VARIANT number{};
    number.vt = VT_I4 | VT_BYREF;
    number.plVal = &handle;
    VARIANT variable{};
    variable.vt = VT_VARIANT | VT_BYREF;
    variable.pvarVal = &number;
    EXPECT_EQ(module->ViewDatasheet(number), S_OK);
    number = com::Variant(4661L).Detach();
    EXPECT_EQ(module->ViewDatasheet(variable), S_OK);
    ASSERT_EQ(shell.calls.size(), 2u);
    EXPECT_EQ(shell.calls[0].owner, reinterpret_cast<HWND>(4660));
    EXPECT_EQ(shell.calls[1].owner, reinterpret_cast<HWND>(4661));
}

// Decided: what is no number is no owner window; the sheet opens all the same.
TEST_F(CDBAppObjectUnusualHostTest, OpensWithoutAnOwnerWindowThatIsNoNumber) {
    const TextFile sheet(Component::Folder() + L"Sheet.pdf", L"sheet");
    const auto module = Defined(L"<NAME>Valve</NAME>");
    ShellPatch shell(Dll().Module());
    const com::Variant text(L"window");
    VARIANT null{};
    null.vt = VT_NULL;
    for (const VARIANT& owner : {VARIANT{}, null, text.Get()}) {
        EXPECT_EQ(module->ViewDatasheet(owner), S_OK);
    }
    ASSERT_EQ(shell.calls.size(), 3u);
    for (const ShellCall& call : shell.calls) {
        EXPECT_EQ(call.owner, nullptr);
        EXPECT_EQ(call.verb, "open");
    }
}

TEST_F(CDBAppObjectUnusualHostTest, PassesOverFoldersHiddenAndSystemFilesForDataSheets) {
    const std::wstring folder = Component::Folder() + L"A folder.pdf";
    CreateDirectoryW(folder.c_str(), nullptr);
    const TextFile hidden(Component::Folder() + L"B hidden.pdf", L"sheet");
    SetFileAttributesW(hidden.Path().c_str(), FILE_ATTRIBUTE_HIDDEN);
    const TextFile ofTheSystem(Component::Folder() + L"B system.pdf", L"sheet");
    SetFileAttributesW(ofTheSystem.Path().c_str(), FILE_ATTRIBUTE_SYSTEM);
    EXPECT_FALSE(Flag(Defined(L"<NAME>Valve</NAME>"), &IAppObject::get_DatasheetAvailable));
    {
        const TextFile sheet(Component::Folder() + L"C sheet.pdf", L"sheet");
        const auto module = Defined(L"<NAME>Valve</NAME>");
        ShellPatch shell(Dll().Module());
        EXPECT_EQ(module->ViewDatasheet(VARIANT{}), S_OK);
        ASSERT_EQ(shell.calls.size(), 1u);
        const std::wstring path = sheet.Path();
        EXPECT_EQ(shell.calls[0].file, std::string(path.begin(), path.end()));
    }
    SetFileAttributesW(hidden.Path().c_str(), FILE_ATTRIBUTE_NORMAL);
    SetFileAttributesW(ofTheSystem.Path().c_str(), FILE_ATTRIBUTE_NORMAL);
    RemoveDirectoryW(folder.c_str());
}

TEST_F(CDBAppObjectUnusualHostTest, LetsTheHostDestroyTheObjectWhileItIsShown) {
    const auto view = Recorder::Make(L"view", {&__uuidof(IHostView)});
    const auto sheet = Recorder::Make(L"sheet", {&__uuidof(IHostDocument)});
    sheet->Set(L"View", view);
    const auto module = NewModule();
    module->putref_Parent(sheet->As<IDispatch>().Get());
    view->On(L"ShowObject", [&](const Invocation&) { return module->Destroy(); });
    EXPECT_EQ(module->Show(), S_OK);
    EXPECT_EQ(view->Times(L"ShowObject"), 1u);
    EXPECT_FALSE(Flag(module, &IAppObject::get_IsPlugInActive));
    EXPECT_FALSE(Object(module, &IAppObject::get_Parent));
    EXPECT_EQ(module->Show(), S_OK);
    EXPECT_EQ(view->Times(L"ShowObject"), 1u) << "no parent is left";
}

TEST_F(CDBAppObjectUnusualHostTest, SearchesItsPointsByName) {
    const auto module = Loaded(Stream(L"<_AI1_Value/>"));
    const auto item = ChannelItem(L"K7", L"AI1");
    VARIANT argument{};
    argument.vt = VT_DISPATCH;
    argument.pdispVal = item.Get();
    const com::Variant contained =
        com::CallMember(*module.Get(), L"Contains", std::span<VARIANT>(&argument, 1));
    EXPECT_EQ(contained.Get().vt, VT_BOOL);
    EXPECT_EQ(contained.Get().boolVal, VARIANT_TRUE);
}

TEST_F(CDBAppObjectUnusualHostTest, InitsAgainAfterDestroy) {
    const auto module = Defined(L"<NAME>Valve</NAME>");
    module->Destroy();
    Define(L"Pump", L"<NAME>Pump</NAME><ID>7</ID>");
    EXPECT_TRUE(Init(module, L"Pump"));
    EXPECT_EQ(Text(module, &IAppObject::get_Name), L"Pump");
    EXPECT_FALSE(Object(module, &IAppObject::get_Inputs)) << "collections come with a stream alone";
    EXPECT_EQ(module->putref_OwnerDeviceXML(nullptr), S_OK);
}

TEST_F(CDBAppObjectUnusualHostTest, ConvertsWhatAScriptWrites) {
    const auto module = NewModule();
    const auto tam = module.As<ITamObject>();
    EXPECT_EQ(PutByName(module, L"Address", com::Variant(L"12").Get()), S_OK);
    EXPECT_EQ(Short(tam, &ITamObject::get_Address), 12);
    EXPECT_EQ(PutByName(module, L"UserName", com::Variant(5L).Get()), S_OK);
    EXPECT_EQ(Text(module, &IAppObject::get_UserName), L"5");
    EXPECT_EQ(PutByName(module, L"XPosition", com::Variant(L"25").Get()), S_OK);
    EXPECT_EQ(Double(module, &IAppObject::get_XPosition), 25.0);
}

TEST_F(CDBAppObjectUnusualHostTest, KeepsItsValuesWhenAScriptWritesWhatDoesNotConvert) {
    const auto module = NewModule();
    const auto tam = module.As<ITamObject>();
    tam->put_Address(12);
    module->put_YPosition(3);
    EXPECT_EQ(PutByName(module, L"Address", com::Variant(40000L).Get()), DISP_E_OVERFLOW);
    EXPECT_EQ(PutByName(module, L"YPosition", com::Variant(L"far").Get()), DISP_E_TYPEMISMATCH);
    EXPECT_EQ(Short(tam, &ITamObject::get_Address), 12);
    EXPECT_EQ(Double(module, &IAppObject::get_YPosition), 3.0);
}

TEST_F(CDBAppObjectUnusualHostTest, TakesAndForgetsObjectsFromAScript) {
    const auto module = NewModule();
    const auto parent = Held::Make();
    VARIANT object{};
    object.vt = VT_DISPATCH;
    object.pdispVal = static_cast<IHostDocument*>(parent.Get());
    EXPECT_EQ(PutByName(module, L"Parent", object), S_OK);
    EXPECT_EQ(parent->Others(), 1u);
    object.pdispVal = nullptr;
    EXPECT_EQ(PutByName(module, L"Parent", object), S_OK);
    EXPECT_EQ(parent->Others(), 0u);
}

/// The name that the rename dialog leaves in a caller's variable.
class CDBAppObjectUnusualHostRenameTest : public ModuleTest {
  protected:
    void Type(const wchar_t* name) {
        Watcher().OnBox([name](HWND window, const bench::Box&) {
            SetDlgItemTextW(window, IDC_DEVICE_NAME, name);
            return false;
        });
    }
};

TEST_F(CDBAppObjectUnusualHostRenameTest, ReplacesATextByReference) {
    Type(L"a_1");
    com::Bstr name(L"Dev1");
    VARIANT argument = com::ByReference(name);
    short choice = 0;
    EXPECT_EQ(NewModule().As<ITamDialogs>()->ShowRename(&argument, nullptr, &choice), S_OK);
    EXPECT_EQ(choice, 1);
    EXPECT_EQ(name.View(), L"a_1");
    EXPECT_EQ(argument.vt, VT_BSTR | VT_BYREF) << "the variable stays where it is";
    const auto boxes = Boxes();
    ASSERT_EQ(boxes.size(), 1u);
    EXPECT_EQ(boxes[0].controls.at(IDC_DEVICE_NAME), L"Dev1");
}

TEST_F(CDBAppObjectUnusualHostRenameTest, ReplacesAVariableOfAScriptWhateverItHeld) {
    for (const long before : {0L, 7L}) {
        Type(L"a_1");
        com::Variant variable = before == 0 ? com::Variant() : com::Variant(before);
        VARIANT argument{};
        argument.vt = VT_VARIANT | VT_BYREF;
        argument.pvarVal = const_cast<VARIANT*>(&variable.Get());
        short choice = 0;
        EXPECT_EQ(NewModule().As<ITamDialogs>()->ShowRename(&argument, nullptr, &choice), S_OK);
        EXPECT_EQ(choice, 1);
        ASSERT_EQ(variable.Get().vt, VT_BSTR);
        EXPECT_EQ(com::Text(variable.Get().bstrVal), L"a_1");
        const auto boxes = Boxes();
        ASSERT_EQ(boxes.size(), 1u);
        EXPECT_EQ(boxes[0].controls.at(IDC_DEVICE_NAME), before == 0 ? L"" : L"7");
    }
}

} // namespace
