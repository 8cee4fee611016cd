#include "bench/ImportPatch.h"
#include "com/Dom.h"
#include "tests/host/GenericObjects.h"

#include <string>

namespace hosttest {

namespace {

/// A user whose decimal mark is neither of the two that types know.
int WINAPI OwnMark(LCID, LCTYPE, LPWSTR text, int size) {
    if (size >= 2) {
        text[0] = L'\x066B';
        text[1] = L'\0';
    }
    return 2;
}

/// Types as the generic object makes them of a catalogue.
class HostTypeTest : public testing::Test {
  protected:
    HostTypeTest() {
        library_.Write(L"Typed.xml", "<AppObject><Attributes><A><SNVTTYPE>95</SNVTTYPE></A>"
                                     "</Attributes></AppObject>");
    }
    /// The type 95 of a catalogue whose entry has this content.
    com::Ref<ISNVType> Type(const std::wstring& content) {
        auto catalogue = tam::dom::NewDocument(tam::dom::kDocumentClass);
        VARIANT_BOOL loaded = VARIANT_FALSE;
        const com::Bstr xml(L"<Catalogue><!-- types --><SNVT_95>" + content + L"</SNVT_95></Catalogue>");
        EXPECT_EQ(S_OK, catalogue->loadXML(xml.Get(), &loaded));
        const auto object = Create<IAppObject>(__uuidof(GenericObject));
        VARIANT_BOOL done = VARIANT_FALSE;
        EXPECT_EQ(S_OK, object->putref_XmlSNVTDoc(catalogue.Get()));
        EXPECT_EQ(S_OK, object->Init(com::Bstr(L"Typed").Get(), &done));
        EXPECT_EQ(S_OK, object->Create());
        com::Ref<ISNVType> type;
        EXPECT_EQ(S_OK, AttributeOf(object, L"A")->get_SNVTType(type.Put()));
        return type;
    }
    static bool IsEnum(const com::Ref<ISNVType>& type) {
        return Flag(*type.As<IEnumType>().Get(), &IEnumType::get_IsEnumType);
    }

    TemporaryLibrary library_;
};

TEST_F(HostTypeTest, ClassifiesEachGeneralType) {
    const struct {
        const wchar_t* general;
        const wchar_t* lui;
        bool hasField;
        bool isEnum;
    } rows[] = {
        {L"Enum", L"Logic", false, true},
        {L"Struct", L"Invalid", true, false},
        {L"Float", L"Float", false, false},
        {L"Textual", L"Textual", false, false},
        {L"Bitfield", L"Numeric", false, false},
        {L"UnsignedNumeric", L"Numeric", false, false},
        {L"SignedNumeric", L"Numeric", false, false},
        {L"Fancy", L"Numeric", false, false}, // a word that is not known
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::PrintToString(std::wstring(row.general)));
        const auto type = Type(L"<Type>" + std::wstring(row.general) + L"</Type>");
        EXPECT_EQ(row.general, TextOf(*type.Get(), &ISNVType::get_GenType));
        EXPECT_EQ(row.lui, TextOf(*type.Get(), &ISNVType::get_LUIType));
        EXPECT_EQ(row.hasField, Flag(*type.Get(), &ISNVType::get_HasField));
        EXPECT_EQ(row.isEnum, IsEnum(type));
    }
}

TEST_F(HostTypeTest, TellsItsLimitsWithAMarkThatTypesKnow) {
    const auto type = Type(L"<Min>-5.5</Min><Max>7.25</Max>");
    const bench::ImportPatch marks(GetModuleHandleW(L"OrvHost.dll"), "GetLocaleInfoW",
                                   reinterpret_cast<const void*>(&OwnMark));
    ASSERT_TRUE(marks.IsImported());
    EXPECT_EQ(L"-5.5", TextOf(*type.Get(), &ISNVType::get_Min));
    EXPECT_EQ(L"7.25", TextOf(*type.Get(), &ISNVType::get_Max));
}

TEST_F(HostTypeTest, HasNoClassWithoutAGeneralType) {
    const auto type = Type(L"<Name>switch</Name>");
    EXPECT_EQ(L"", TextOf(*type.Get(), &ISNVType::get_LUIType));
    EXPECT_FALSE(IsEnum(type));
    EXPECT_EQ(S_OK, type.As<IEnumType>()->put_EnumDesc(com::Bstr(L"0,Off;").Get()));
    EXPECT_TRUE(IsEnum(type)) << "names for its values make it one";
}

TEST_F(HostTypeTest, ReadsItsEntryBesideCommentsAndText) {
    const auto type = Type(L"<!-- Length 9 --><LENGTH>2</LENGTH>stray<EnumDesc>0,Off;1,On;</EnumDesc>");
    EXPECT_EQ(2, LongOf(*type.Get(), &ISNVType::get_Length));
    EXPECT_EQ(L"0,Off;1,On;", TextOf(*type.Get(), &ISNVType::get_EnumDesc));
}

} // namespace

} // namespace hosttest
