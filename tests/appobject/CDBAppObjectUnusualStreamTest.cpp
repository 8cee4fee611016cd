#include "tests/appobject/Module.h"

#include <cstddef>
#include <limits>
#include <string>

using namespace support;
using namespace modules;

namespace {

constexpr std::size_t kMegabyte = 1 << 20;
/// Far above what any of these documents takes, and far below what one takes
/// whose entities are written out.
constexpr std::size_t kMostMemory = std::size_t{256} << 20;

std::wstring Repeated(const std::wstring& part, std::size_t times) {
    std::wstring text;
    for (std::size_t i = 0; i < times; ++i) {
        text += part;
    }
    return text;
}

/// Whether a parser takes a text for XML.
bool IsXml(const std::wstring& text) {
    VARIANT_BOOL done = VARIANT_FALSE;
    NewDocument()->loadXML(com::Bstr(text).Get(), &done);
    return done != VARIANT_FALSE;
}

/// Device streams that are made to hurt whoever reads them. None does more
/// than fail, and the next good stream loads as ever.
class CDBAppObjectUnusualStreamTest : public ModuleTest {
  protected:
    /// A stream with these texts in its header and an input.
    static std::wstring With(const std::wstring& name, const std::wstring& objectId = L"3",
                             const std::wstring& more = {}) {
        return L"<Tam><Name>" + name + L"</Name><DevKey>K7</DevKey><IsLastOnDev>1</IsLastOnDev><TamObjID>" +
               objectId + L"</TamObjID>" + more + L"<InReferences><In1/></InReferences></Tam>";
    }
    /// The stream fails and leaves nothing, and a good one loads behind it.
    void ExpectRefused(const std::wstring& stream, HRESULT expected = kObjectNotSet) {
        const auto module = NewModule();
        const std::size_t before = PeakMemory();
        EXPECT_EQ(Load(module, stream), expected);
        EXPECT_LT(PeakMemory() - before, kMostMemory);
        EXPECT_EQ(InputCount(module), 0);
        EXPECT_EQ(Text(module, &IAppObject::get_UniqueIDString), L"");
        EXPECT_EQ(Load(module, With(L"Pump")), S_OK);
        EXPECT_EQ(Text(module, &IAppObject::get_Name), L"Pump");
        EXPECT_EQ(InputCount(module), 1);
    }
    /// The name that a stream gives.
    std::wstring NameOf(const std::wstring& name) {
        const auto module = NewModule();
        EXPECT_EQ(Load(module, With(name)), S_OK);
        return Text(module, &IAppObject::get_Name);
    }
    /// A reference to an entity that a document type before the stream defines.
    static std::wstring WithEntity(const std::wstring& entities, const std::wstring& reference) {
        return L"<!DOCTYPE Tam [" + entities + L"]>" + With(reference);
    }
};

TEST_F(CDBAppObjectUnusualStreamTest, MayHaveNoDocumentType) {
    for (const wchar_t* type :
         {L"<!DOCTYPE Tam>", L"<!DOCTYPE Tam []>", L"<!DOCTYPE Tam [<!ELEMENT Tam ANY>]>",
          L"<!DOCTYPE Tam [<!ENTITY e \"x\">]>", L"<?xml version='1.0'?><!--a--><!DOCTYPE Tam>",
          L"<!DOCTYPE Tam [<!ATTLIST Tam a CDATA 'b'>]>"}) {
        SCOPED_TRACE(com::Bstr(type).Get());
        ExpectRefused(type + With(L"Pump"));
    }
}

TEST_F(CDBAppObjectUnusualStreamTest, ReadsNoOtherFile) {
    const TextFile secret(Component::Folder() + L"secret.txt", L"SECRET");
    // Addresses of this kind are kept for examples: nobody answers there.
    for (const std::wstring& address :
         {L"file:///" + secret.Path(), secret.Path(), std::wstring(L"secret.txt"),
          std::wstring(L"http://192.0.2.1/secret.txt")}) {
        SCOPED_TRACE(com::Bstr(address).Get());
        ExpectRefused(WithEntity(L"<!ENTITY s SYSTEM \"" + address + L"\">", L"&s;"));
        ExpectRefused(WithEntity(L"<!ENTITY % s SYSTEM \"" + address + L"\"> %s;", L"Pump"));
        ExpectRefused(L"<!DOCTYPE Tam SYSTEM \"" + address + L"\">" + With(L"Pump"));
        ExpectRefused(L"<!DOCTYPE Tam PUBLIC \"-//x//y\" \"" + address + L"\">" + With(L"Pump"));
    }
}

TEST_F(CDBAppObjectUnusualStreamTest, DoesNotGrowByItsEntities) {
    std::wstring entities = L"<!ENTITY e0 \"aaaaaaaaaa\">";
    for (int i = 1; i <= 9; ++i) {
        entities += L"<!ENTITY e" + std::to_wstring(i) + L" \"" +
                    Repeated(L"&e" + std::to_wstring(i - 1) + L";", 10) + L"\">";
    }
    ExpectRefused(WithEntity(entities, L"&e9;"));
    ExpectRefused(WithEntity(entities, L"Pump"));
    // Two and a half gigabytes without an entity inside another.
    constexpr std::size_t kMany = 50000;
    ExpectRefused(WithEntity(L"<!ENTITY a \"" + std::wstring(kMany, L'a') + L"\">", Repeated(L"&a;", kMany)));
    // One that stands for itself.
    ExpectRefused(WithEntity(L"<!ENTITY a \"&b;\"><!ENTITY b \"&a;\">", L"&a;"));
}

TEST_F(CDBAppObjectUnusualStreamTest, KnowsTheFiveEntitiesAndCharactersByNumber) {
    EXPECT_EQ(NameOf(L"&lt;&amp;&quot;&apos;&gt;&#x41;&#66;&#x1F600;"), L"<&\"'>AB\xD83D\xDE00");
    for (const wchar_t* reference :
         {L"&none;", L"&#0;", L"&#xD800;", L"&#x110000;", L"&#1;", L"&amp", L"&"}) {
        SCOPED_TRACE(com::Bstr(reference).Get());
        ExpectRefused(With(reference));
    }
}

TEST_F(CDBAppObjectUnusualStreamTest, MayHoldNoCharacterThatXmlHasNot) {
    for (const wchar_t c : {L'\0', L'\x1', L'\x1B', L'\xFFFE', L'\xFFFF'}) {
        SCOPED_TRACE(static_cast<int>(c));
        ExpectRefused(With(std::wstring(L"Pu") + c + L"mp"));
        ExpectRefused(c + With(L"Pump"));
        ExpectRefused(With(L"<![CDATA[" + std::wstring(1, c) + L"]]>"));
    }
    EXPECT_EQ(NameOf(L"\xD83D\xDE00"), L"\xD83D\xDE00") << "a pair of surrogates is a character";
}

// What a parser makes of half a character, and of a NUL after the document's
// element, is its own affair.
TEST_F(CDBAppObjectUnusualStreamTest, FailsWhereTheParserDoes) {
    const std::wstring nul(1, L'\0');
    for (const std::wstring& stream : {With(L"\xD800"), With(L"\xDC00"), With(L"\xDC00\xD800"),
                                       With(L"Pump") + nul, With(L"Pump") + nul + L"<Tam/>"}) {
        EXPECT_EQ(Load(NewModule(), stream), IsXml(stream) ? S_OK : kObjectNotSet);
    }
}

TEST_F(CDBAppObjectUnusualStreamTest, MayBeDeep) {
    const auto chain = [](std::size_t depth, const std::wstring& text) {
        return Repeated(L"<a>", depth) + text + Repeated(L"</a>", depth);
    };
    EXPECT_EQ(NameOf(chain(200, L"Pump")), L"Pump");
    const auto module =
        Loaded(Stream({}, L"<Out1><LOGICALADDRESS>" + chain(200, L"7") + L"</LOGICALADDRESS><SNVTTYPE>" +
                              chain(200, L"105") + L"</SNVTTYPE></Out1>"));
    EXPECT_EQ(Text(Object(Output(module, L"Out1"), &IOutput::get_SNVTType), &ISNVType::get_ID), L"105");
    // How deep a text may be at all is the parser's affair.
    const std::wstring deep = With(chain(10000, L"Pump"));
    EXPECT_EQ(Load(module, deep), IsXml(deep) ? S_OK : kObjectNotSet);
    EXPECT_EQ(Load(module, With(L"Pump")), S_OK);
    EXPECT_EQ(Text(module, &IAppObject::get_Name), L"Pump");
}

TEST_F(CDBAppObjectUnusualStreamTest, MayHoldTextsOfAMegabyte) {
    const std::wstring text(kMegabyte, L'n');
    const auto module = Loaded(With(text, L"3" + std::wstring(kMegabyte, L'x'),
                                    L"<OutReferences><Out1><LOGICALADDRESS>" + text +
                                        L"</LOGICALADDRESS></Out1></OutReferences>"
                                        L"<Attributes><Gain><SNVTTYPE>105</SNVTTYPE><VALUE>" +
                                        text +
                                        L"</VALUE></Gain></Attributes>"
                                        L"<!--" +
                                        text + L"--><?x " + text + L"?><![CDATA[" + text + L"]]>"));
    EXPECT_TRUE(Text(module, &IAppObject::get_Name) == text);
    EXPECT_TRUE(Text(module, &IAppObject::get_UserName) == text);
    EXPECT_EQ(Short(module.As<ITamObject>(), &ITamObject::get_TamObjectID), 3);
    EXPECT_TRUE(Text(Attribute(module, L"Gain"), &IAttribute::get_Value) == text);
    const Document document = Parse(L"<Project/>");
    EXPECT_EQ(module->XMLSaveForInteroperability(Root(document).Get(), document.Get()), S_OK);
    const auto address =
        tam::dom::Select(tam::dom::Node(Root(document)), L"O_Tam_id/Outputs/Out1/LogicalAddress");
    EXPECT_TRUE(tam::dom::TextOf(address) == text);
}

TEST_F(CDBAppObjectUnusualStreamTest, NamesPointsAsPathsHaveWords) {
    std::wstring points;
    for (const wchar_t* name : {L"text", L"node", L"comment", L"or", L"and", L"div", L"mod", L"ancestor",
                                L"self", L"position", L"last", L"_", L"A.b-c", L"\x00C9t\x00E9", L"_1"}) {
        points += std::wstring(L"<") + name + L"><SNVTTYPE>105</SNVTTYPE></" + name + L">";
    }
    Define(L"Valve", L"<NAME>Valve</NAME>");
    const auto module = NewModule();
    EXPECT_TRUE(Init(module, L"Valve"));
    EXPECT_EQ(Load(module, Stream(points, points, points)), S_OK);
    EXPECT_EQ(InputCount(module), 15);
    EXPECT_EQ(OutputCount(module), 15);
    EXPECT_EQ(AttributeCount(module), 15);
    for (const wchar_t* name : {L"OR", L"a.B-c", L"\x00C9T\x00C9", L"_1"}) {
        EXPECT_TRUE(Input(module, name)) << com::Bstr(name).Get();
        EXPECT_TRUE(Attribute(module, name)) << com::Bstr(name).Get();
    }
    const Document document = Parse(L"<Project/>");
    EXPECT_EQ(module->XMLSaveForInteroperability(Root(document).Get(), document.Get()), S_OK);
}

TEST_F(CDBAppObjectUnusualStreamTest, HasEachNameOnceWhateverItsPrefixAndCase) {
    for (const wchar_t* points : {L"<In1/><IN1/>", L"<In1/><x:In1 xmlns:x='urn:x'/>",
                                  L"<In1/><In1 xmlns='urn:x'/>", L"<In1/><!--a--><In1 a='b'>c</In1>"}) {
        const auto module = NewModule();
        EXPECT_EQ(Load(module, Stream(points)), kDuplicateKey) << com::Bstr(points).Get();
        EXPECT_EQ(InputCount(module), 1);
        EXPECT_EQ(Text(module, &IAppObject::get_UniqueIDString), L"O_Tam_id") << "the header was read";
    }
}

TEST_F(CDBAppObjectUnusualStreamTest, HasElementsAndNoAttributesForItsTexts) {
    ExpectRefused(L"<Tam Name='Pump' DevKey='K7' IsLastOnDev='1' TamObjID='3'/>");
    const auto module = Loaded(With(L"Pump", L"3", L"<OutReferences><Out1 SNVTTYPE='105'/></OutReferences>"));
    EXPECT_FALSE(Object(Output(module, L"Out1"), &IOutput::get_SNVTType));
}

struct NumberCase {
    const wchar_t* text;
    double value;
};
constexpr double kTooLarge = std::numeric_limits<double>::infinity();

// The number that a text begins with; "." is the decimal mark of every user.
constexpr NumberCase kNumbers[] = {
    {L"", 0},
    {L"  ", 0},
    {L"abc", 0},
    {L"NaN", 0},
    {L"INF", 0},
    {L"-INF", 0},
    {L"--5", 0},
    {L"$5", 0},
    {L"(5)", 0},
    {L"0x10", 0},
    {L"\x0661", 0},
    {L"\xFF11", 0},
    {L"-", 0},
    {L".", 0},
    {L"+5", 5},
    {L"\t-5 ", -5},
    {L"5-", 5},
    {L"1 2", 12},
    {L"1\x00A0"
     L"2",
     1},
    {L"1,5", 1},
    {L"1,234", 1},
    {L"1'000", 1},
    {L"1.5.5", 2},
    {L"2.5", 2},
    {L"-2.5", -2},
    {L"1e2", 100},
    {L"1D2", 100},
    {L"1e", 1},
    {L"1e-400", 0},
    {L"00000000000000000000007", 7},
    {L"&amp;HFFFF", -1},
    {L"&amp;H7FFF", 32767},
    {L"&amp;O17", 15},
    {L"1e309", kTooLarge},
    {L"-1e309", kTooLarge},
    {L"&amp;HFFFFFFFFF", kTooLarge},
};

TEST_F(CDBAppObjectUnusualStreamTest, HasTheNumberThatATextBeginsWith) {
    for (const NumberCase& number : kNumbers) {
        SCOPED_TRACE(com::Bstr(number.text).Get());
        const std::wstring text = number.text;
        if (number.value == kTooLarge) {
            ExpectRefused(With(L"Pump", text), kOverflow);
            continue;
        }
        const auto module = Loaded(With(L"Pump", text, L"<CDB>" + text + L"</CDB><DDB>" + text + L"</DDB>"));
        EXPECT_EQ(Short(module.As<ITamObject>(), &ITamObject::get_TamObjectID), number.value);
        EXPECT_EQ(Long(module, &IAppObject::get_CDBDimension), number.value);
        EXPECT_EQ(Long(module, &IAppObject::get_DDBDimension), number.value);
    }
}

TEST_F(CDBAppObjectUnusualStreamTest, HasNumbersUpToTheirLimits) {
    const auto objectId = [&](const wchar_t* text) {
        return Short(Loaded(With(L"Pump", text)).As<ITamObject>(), &ITamObject::get_TamObjectID);
    };
    EXPECT_EQ(objectId(L"32767.4999"), 32767);
    EXPECT_EQ(objectId(L"-32768.5"), -32768) << "the even one of two neighbours";
    EXPECT_EQ(objectId(L"&amp;H8000"), -32768);
    EXPECT_EQ(objectId(L"&amp;H7FFF&amp;"), 32767);
    for (const wchar_t* text :
         {L"32767.5", L"32768", L"-32768.51", L"-32769", L"&amp;H8000&amp;", L"1e308"}) {
        ExpectRefused(With(L"Pump", text), kOverflow);
    }
    const auto size = [&](const std::wstring& text) {
        return Long(Loaded(With(L"Pump", L"3", L"<CDB>" + text + L"</CDB>")), &IAppObject::get_CDBDimension);
    };
    EXPECT_EQ(size(L"2147483647.4999"), 2147483647);
    EXPECT_EQ(size(L"-2147483648.5"), std::numeric_limits<long>::min());
    EXPECT_EQ(size(L"&amp;H80000000"), std::numeric_limits<long>::min());
    for (const wchar_t* text : {L"2147483647.5", L"2147483648", L"-2147483648.51", L"-2147483649"}) {
        ExpectRefused(With(L"Pump", L"3", std::wstring(L"<CDB>") + text + L"</CDB>"), kOverflow);
        ExpectRefused(With(L"Pump", L"3", std::wstring(L"<DDB>") + text + L"</DDB>"), kOverflow);
    }
}

} // namespace
