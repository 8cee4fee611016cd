#include "com/Dll.h"

#include "tests/com/Subjects.h"
#include "tests/support/Caller.h"
#include "tests/support/ImportPatch.h"

using namespace contract;

namespace {

/// Stands in the place of the loading of type libraries.
class Loading {
  public:
    explicit Loading(HMODULE component)
        : load_(component, "LoadTypeLibEx", reinterpret_cast<const void*>(&Load)) {
        result = S_OK;
        calls = 0;
    }

    /// What each loading answers; the library when it is S_OK.
    static inline HRESULT result = S_OK;
    static inline int calls = 0;

  private:
    static HRESULT WINAPI Load(LPCOLESTR path, REGKIND kind, ITypeLib** library) {
        ++calls;
        return FAILED(result) ? result : LoadTypeLibEx(path, kind, library);
    }

    support::ImportPatch load_;
};

/// The first look at the type information of a component that was just loaded.
class ModuleTypesTest : public ContractTest {
  protected:
    static HRESULT NameOf(IDispatch* object) {
        DISPID id = DISPID_UNKNOWN;
        return IdOf(object, L"Name", id);
    }
};

TEST_F(ModuleTypesTest, LoadsItsLibrariesOnce) {
    const auto module = NewModule();
    const Loading loading(Dll().Module());
    EXPECT_EQ(NameOf(module.Get()), S_OK);
    EXPECT_EQ(NameOf(module.Get()), S_OK);
    EXPECT_EQ(loading.calls, 2) << "its own and the host interfaces";
}

TEST_F(ModuleTypesTest, ForgetsALackOfMemory) {
    const auto module = NewModule();
    const Loading loading(Dll().Module());
    loading.result = E_OUTOFMEMORY;
    com::Ref<ITypeInfo> info;
    EXPECT_EQ(NameOf(module.Get()), E_OUTOFMEMORY);
    EXPECT_EQ(module->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.Put()), E_OUTOFMEMORY);
    EXPECT_FALSE(info);
    loading.result = S_OK;
    EXPECT_EQ(NameOf(module.Get()), S_OK);
    EXPECT_EQ(module->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.Put()), S_OK);
}

TEST_F(ModuleTypesTest, DoesNotTryALibraryAgainThatIsNotThere) {
    const auto module = NewModule();
    const Loading loading(Dll().Module());
    loading.result = TYPE_E_CANTLOADLIBRARY;
    com::Ref<ITypeInfo> info;
    EXPECT_EQ(NameOf(module.Get()), TYPE_E_ELEMENTNOTFOUND);
    EXPECT_EQ(loading.calls, 2);
    loading.result = S_OK;
    EXPECT_EQ(NameOf(module.Get()), TYPE_E_ELEMENTNOTFOUND);
    EXPECT_EQ(module->GetTypeInfo(0, LOCALE_USER_DEFAULT, info.Put()), TYPE_E_ELEMENTNOTFOUND);
    EXPECT_FALSE(info);
    EXPECT_EQ(loading.calls, 2);
}

} // namespace
