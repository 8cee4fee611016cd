#include "tests/appobject/Module.h"

#include "com/Dom.h"
#include "common/resource.h"

#include <cstddef>
#include <string>

using namespace support;
using namespace modules;

namespace {

/// Far above what any of these documents takes, and far below what one takes
/// whose entities are written out.
constexpr std::size_t kMostMemory = std::size_t{256} << 20;

/// Definition files that are made to hurt whoever reads them.
class CDBAppObjectUnusualDefinitionTest : public ModuleTest {
  protected:
    static std::wstring With(const std::wstring& name) {
        return L"<Definition><AppObject><NAME>" + name + L"</NAME></AppObject></Definition>";
    }
    /// What this system's parser says when it refuses the document itself; where it
    /// lets it through, the component refuses it in these words.
    static std::wstring RefusalOf(const std::wstring& xml) {
        com::Ref<IXMLDOMDocument2> document;
        EXPECT_EQ(S_OK, CoCreateInstance(tam::dom::kDocumentClass, nullptr, CLSCTX_INPROC_SERVER,
                                         __uuidof(IXMLDOMDocument2), document.PutVoid()));
        VARIANT yes{};
        yes.vt = VT_BOOL;
        yes.boolVal = VARIANT_TRUE;
        document->setProperty(com::Bstr(L"ProhibitDTD").Get(), yes);
        VARIANT_BOOL done = VARIANT_FALSE;
        document->loadXML(com::Bstr(xml).Get(), &done);
        if (done != VARIANT_FALSE) {
            return L"DTD is prohibited.";
        }
        com::Ref<IXMLDOMParseError> error;
        com::Bstr reason;
        document->get_parseError(error.Put());
        error->get_reason(reason.Put());
        return std::wstring(reason.View());
    }
    /// Init answers False with one report, and the object is as it was.
    void ExpectRefused(const std::wstring& xml) {
        const auto module = Defined(L"<NAME>Valve</NAME><ID>77</ID>");
        DefineWhole(L"Hostile", xml);
        const std::size_t before = PeakMemory();
        EXPECT_FALSE(Init(module, L"Hostile"));
        EXPECT_LT(PeakMemory() - before, kMostMemory);
        const auto boxes = Boxes();
        ASSERT_EQ(boxes.size(), 1u);
        ExpectReport(boxes[0], {}, L"IAppObject_Init Class Module CDBAppObject", L"Function IAppObject_Init");
        EXPECT_NE(boxes[0].controls.at(IDC_ERROR_DESCRIPTION).find(RefusalOf(xml)), std::wstring::npos);
        EXPECT_EQ(Text(module, &IAppObject::get_Name), L"Valve");
        EXPECT_EQ(Text(module, &IAppObject::get_ID), L"77");
        EXPECT_TRUE(Init(module, L"Valve"));
    }
};

TEST_F(CDBAppObjectUnusualDefinitionTest, MayHaveNoDocumentType) {
    for (const wchar_t* type : {L"<!DOCTYPE Definition>", L"<!DOCTYPE Definition [<!ENTITY e \"x\">]>",
                                L"<?xml version=\"1.0\"?><!--a--><!DOCTYPE Definition []>"}) {
        SCOPED_TRACE(com::Bstr(type).Get());
        ExpectRefused(type + With(L"Pump"));
    }
}

TEST_F(CDBAppObjectUnusualDefinitionTest, ReadsNoOtherFile) {
    const TextFile secret(Component::Folder() + L"secret.txt", L"SECRET");
    for (const std::wstring& address :
         {L"file:///" + secret.Path(), secret.Path(), std::wstring(L"secret.txt"),
          std::wstring(L"http://192.0.2.1/secret.txt")}) { // an address kept for examples
        SCOPED_TRACE(com::Bstr(address).Get());
        ExpectRefused(L"<!DOCTYPE a [<!ENTITY s SYSTEM \"" + address + L"\">]>" + With(L"&s;"));
        ExpectRefused(L"<!DOCTYPE a SYSTEM \"" + address + L"\">" + With(L"Pump"));
    }
}

TEST_F(CDBAppObjectUnusualDefinitionTest, DoesNotGrowByItsEntities) {
    constexpr std::size_t kMany = 50000;
    std::wstring references;
    for (std::size_t i = 0; i < kMany; ++i) {
        references += L"&a;";
    }
    ExpectRefused(L"<!DOCTYPE a [<!ENTITY a \"" + std::wstring(kMany, L'a') + L"\">]>" + With(references));
}

TEST_F(CDBAppObjectUnusualDefinitionTest, MayBeDeepAndLong) {
    std::wstring open;
    std::wstring close;
    for (int i = 0; i < 200; ++i) {
        open += L"<a>";
        close += L"</a>";
    }
    const std::wstring text(1 << 20, L'n');
    const auto module = Defined(open + L"<NAME>No</NAME>" + close + L"<NAME>" + open + L"Valve" + close +
                                L"</NAME><DESCRIPTION>" + text + L"</DESCRIPTION><CATEGORY><![CDATA[" + text +
                                L"]]></CATEGORY>");
    EXPECT_EQ(Text(module, &IAppObject::get_Name), L"Valve");
    EXPECT_TRUE(Text(module, &IAppObject::get_Description) == text);
    EXPECT_TRUE(Text(module, &IAppObject::get_Category) == text);
}

TEST_F(CDBAppObjectUnusualDefinitionTest, MayHaveAnyTextForItsId) {
    for (const wchar_t* id : {L"*", L"..\\x", L"?", L"a|b", L"C:\\x", L"%s%n", L"'"}) {
        const auto module = Defined(std::wstring(L"<ID>") + id + L"</ID>");
        EXPECT_EQ(Text(module, &IAppObject::get_ID), id);
    }
}

} // namespace
