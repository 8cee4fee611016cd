#include "tests/members/Members.h"

#include "com/Dll.h"

namespace members {

void MembersTest::SetUp() {
    com::ThisDll().Attach(GetModuleHandleW(nullptr));
    ComponentTest::SetUp();
    objectsBefore_ = com::ThisDll().Objects();
}

void MembersTest::TearDown() {
    EXPECT_EQ(objectsBefore_, com::ThisDll().Objects()) << "objects are still alive";
    tam::State().SnvtCatalogueDocument.Reset();
    tam::State().DecimalSeparator = decimalBefore_;
    tam::State().DataSizes = sizesBefore_;
    ComponentTest::TearDown();
}

com::Ref<tam::CDBAppObject> MembersTest::Module(const std::wstring& stream) {
    auto module = tam::CDBAppObject::Make();
    if (!stream.empty()) {
        const com::Bstr text(stream);
        EXPECT_EQ(S_OK, module->LoadFromXmlStream(text.Get()));
    }
    return module;
}

void MembersTest::UseCatalogue(const std::wstring& entries) {
    const auto document = support::Parse(L"<Catalogue>" + entries + L"</Catalogue>");
    tam::State().SnvtCatalogueDocument = com::Ref<IDispatch>(document.Get());
}

} // namespace members
