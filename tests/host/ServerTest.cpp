// The rules that the host services share with the component are tested by tests/com.

#include "tests/host/HostDll.h"

#include <string>

namespace hosttest {

namespace {

TEST(ServerTest, ExportsWhatAServerExports) {
    for (const char* name :
         {"DllGetClassObject", "DllCanUnloadNow", "DllRegisterServer", "DllUnregisterServer", "DllInstall"}) {
        EXPECT_NE(nullptr, HostDll::Get().Export(name)) << name;
    }
}

TEST(ServerTest, CarriesBothTypeLibraries) {
    const struct {
        const wchar_t* resource;
        const wchar_t* name;
    } libraries[] = {{L"", L"OrvHost"}, {L"\\1", L"OrvHost"}, {L"\\2", L"OrvDBFaces"}};
    for (const auto& expected : libraries) {
        com::Ref<ITypeLib> library;
        const std::wstring path = HostDll::Get().Path() + expected.resource;
        ASSERT_EQ(S_OK, LoadTypeLibEx(path.c_str(), REGKIND_NONE, library.Put()));
        com::Bstr name;
        ASSERT_EQ(S_OK, library->GetDocumentation(-1, name.Put(), nullptr, nullptr, nullptr));
        EXPECT_EQ(expected.name, name.View());
    }
}

} // namespace

} // namespace hosttest
