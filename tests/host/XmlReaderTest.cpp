#include "tests/host/Compiling.h"

#include <string>

namespace hosttest {

namespace {

// The compiler's XML reader, seen through the compiler: the document's device
// key carries what the reader made of a value, and refusals tell positions.

/// A document with this text as the value of DevKey, quotation marks included.
std::wstring WithKey(const std::wstring& quoted) {
    return L"<O_Tam_id DevAddr=\"\" AppID=\"\" DevKey=" + quoted +
           L" TamObjectID=\"1\" IsLastOnDev=\"0\"><Inputs/><Outputs/><Attributes/></O_Tam_id>";
}

/// The image of a document whose device key is this text, written plainly.
std::wstring ImageOf(const std::wstring& key) {
    return Compiler().Compile(WithKey(L"\"" + key + L"\"")).stream;
}

void ExpectKey(const std::wstring& expected, const std::wstring& quoted) {
    EXPECT_EQ(ImageOf(expected), Compiler().Compile(WithKey(quoted)).stream) << quoted;
}

TEST(XmlReaderTest, ReadsValuesInEitherQuotationMark) {
    ExpectKey(L"K7", L"'K7'");
    ExpectKey(L"K&apos;7", L"\"K'7\"");
    ExpectKey(L"K&quot;7", L"'K\"7'");
    ExpectKey(L"K7", L"\n\t'K7'"); // blanks after "="
}

TEST(XmlReaderTest, ReadsReferences) {
    ExpectKey(L"&#60;&#62;&#38;&#34;&#39;", L"'&lt;&gt;&amp;&quot;&apos;'");
    ExpectKey(L"A\u00E9", L"'&#65;&#xE9;'");
    ExpectKey(L"A\u00E9", L"'&#x41;&#xe9;'");
    ExpectKey(L"\xD83D\xDE00", L"'&#x1F600;'"); // beyond the basic plane: a pair
    ExpectKey(L"&#9;", L"'&#x9;'");
}

TEST(XmlReaderTest, ReadsNamesOfEveryScript) {
    for (const wchar_t* name : {L"Gr\u00F6\u00DFe", L"\u4E2D", L"_a", L"a-b.c\u00B71"}) {
        const std::wstring named = Document(L"<" + std::wstring(name) + Input(L"105").substr(2));
        EXPECT_NE(L"", Compiler().Compile(named).stream) << name;
    }
    for (const wchar_t* name : {L"1a", L"-a", L".a", L"\u00B7a", L"\u00BFa"}) {
        const std::wstring named = Document(L"<" + std::wstring(name) + Input(L"105").substr(2));
        EXPECT_NE(std::wstring::npos, Compiler().Refusal(named).find(L"a name is missing")) << name;
    }
}

TEST(XmlReaderTest, MakesBlanksOfLineEndsInValues) {
    ExpectKey(L"a b c d e", L"'a\tb\nc\rd\r\ne'");
    EXPECT_NE(ImageOf(L"a b"), ImageOf(L"a&#10;b")) << "a reference keeps the line end";
}

TEST(XmlReaderTest, PassesWhatIsNoElement) {
    const std::wstring plain = WithKey(L"'K'");
    const std::wstring image = Compiler().Compile(plain).stream;
    for (const wchar_t* before :
         {L"\uFEFF", L"<?xml version=\"1.0\"?>", L"\uFEFF<?xml version=\"1.0\" encoding=\"x\"?>\r\n",
          L"<!---->", L"<!-- <a> - & -->", L"<?xml-style a?>", L"<?a?><!--b--> "}) {
        EXPECT_EQ(image, Compiler().Compile(before + plain).stream) << before;
    }
    EXPECT_EQ(image, Compiler().Compile(plain + L"<!-- after --> <?a b?>\n").stream);
}

TEST(XmlReaderTest, RefusesWhatIsNotWellFormed) {
    const std::wstring good = WithKey(L"'K'");
    const struct {
        std::wstring document;
        const wchar_t* refusal;
    } faults[] = {
        {L"<", L"line 1, column 2: a name is missing"},
        {L"<1/>", L"line 1, column 2: a name is missing"},
        {L"<a", L"line 1, column 3: \">\" is missing"},
        {L"<a/ >", L"line 1, column 4: \">\" is missing"},
        {L"<a b>", L"line 1, column 5: \"=\" is missing"},
        {L"<a b=c>", L"line 1, column 6: the value of an attribute must stand in quotation marks"},
        {L"<a b=", L"line 1, column 6: the value of an attribute must stand in quotation marks"},
        {L"<a b='c", L"line 1, column 8: the text ends too early"},
        {L"<a b='<'/>", L"line 1, column 7: the value of an attribute must not hold \"<\""},
        {L"<a b=''c=''/>", L"line 1, column 8: \">\" is missing"},
        {L"<a b='' c='' b=''/>", L"line 1, column 14: attribute \"b\" stands twice"},
        {L"<a b='&c;'/>", L"line 1, column 7: a reference to nothing that is known"},
        {L"<a b='&'/>", L"line 1, column 8: the reference does not end"},
        {L"<a b='&#0;'/>", L"line 1, column 7: a reference to nothing that is known"},
        {L"<a b='&#;'/>", L"line 1, column 7: a reference to nothing that is known"},
        {L"<a b='&#xD800;'/>", L"line 1, column 7: a reference to nothing that is known"},
        {L"<a b='&#xDFFF;'/>", L"line 1, column 7: a reference to nothing that is known"},
        {L"<a b='&#x110000;'/>", L"line 1, column 7: a reference to nothing that is known"},
        {L"<a b='&#99999999999999999999;'/>", L"line 1, column 7: a reference to nothing that is known"},
        {L"<a b='&#1a;'/>", L"line 1, column 7: a reference to nothing that is known"},
        {L"<a b='\x01'/>", L"line 1, column 7: a character that XML does not allow"},
        {std::wstring(L"<a b='\0'/>", 10), L"line 1, column 7: a character that XML does not allow"},
        {L"<!-- a", L"line 1, column 5: the comment does not end"},
        {L"<!-- a -- b -->", L"line 1, column 1: a comment must not hold \"--\""},
        {L"<!--a--->", L"line 1, column 1: a comment must not hold \"--\""},
        {L"<?a", L"line 1, column 4: the processing instruction does not end"},
        {L"<?xml version='1.0'", L"line 1, column 1: the XML declaration does not end"},
        {L"\n<?xml version='1.0'?>" + good,
         L"line 2, column 1: the XML declaration must stand at the very beginning"},
        {L"<!DOCTYPE O_Tam_id>" + good, L"line 1, column 1: a document type is not accepted"},
        {L"x" + good, L"line 1, column 1: text outside the root element"},
        {L"<![CDATA[x]]>" + good, L"line 1, column 1: text outside the root element"},
    };
    Compiler compiler;
    for (const auto& fault : faults) {
        EXPECT_EQ(fault.refusal, compiler.Refusal(fault.document)) << fault.document;
    }
}

TEST(XmlReaderTest, RefusesEndsThatDoNotFit) {
    const std::wstring root =
        L"<O_Tam_id DevAddr='' AppID='' DevKey='' TamObjectID='1' IsLastOnDev='0'>"; // 72 characters
    ASSERT_EQ(72u, root.size());
    Compiler compiler;
    EXPECT_EQ(L"line 1, column 73: </Inputs> ends nothing that is open here",
              compiler.Refusal(root + L"</Inputs>"));
    EXPECT_EQ(L"line 1, column 81: </O_Tam_id> ends nothing that is open here",
              compiler.Refusal(root + L"<Inputs></O_Tam_id>"));
    EXPECT_EQ(L"line 1, column 81: <Inputs> does not end", compiler.Refusal(root + L"<Inputs>"));
    EXPECT_EQ(L"line 1, column 89: \">\" is missing", compiler.Refusal(root + L"<Inputs></Inputs"));
    EXPECT_EQ(L"line 1, column 81: \"Inputs\" must not hold text",
              compiler.Refusal(root + L"<Inputs>&amp;</Inputs>"));
    EXPECT_EQ(L"line 1, column 81: \"Inputs\" must not hold text",
              compiler.Refusal(root + L"<Inputs><![CDATA[x]]></Inputs>"));
    EXPECT_EQ(L"line 1, column 82: text must not hold \"]]>\"",
              compiler.Refusal(root + L"<Inputs>x]]></Inputs>"));
    EXPECT_EQ(L"line 1, column 90: the CDATA section does not end",
              compiler.Refusal(root + L"<Inputs><![CDATA[x</Inputs>"));
}

TEST(XmlReaderTest, RefusesMoreThanOneRoot) {
    const std::wstring good = WithKey(L"'K'");
    const std::wstring at = std::to_wstring(good.size() + 1);
    Compiler compiler;
    EXPECT_EQ(L"line 1, column " + at + L": a document has one root element",
              compiler.Refusal(good + L"<a/>"));
    EXPECT_EQ(L"line 1, column " + at + L": text outside the root element", compiler.Refusal(good + L"more"));
    EXPECT_EQ(L"line 1, column " + at + L": </a> ends nothing that is open here",
              compiler.Refusal(good + L"</a>"));
}

TEST(XmlReaderTest, CountsEveryKindOfLineEnd) {
    Compiler compiler;
    EXPECT_EQ(L"line 4, column 2: a name is missing", compiler.Refusal(L"\n\r\n\r<"));
    EXPECT_EQ(L"line 1, column 3: text outside the root element", compiler.Refusal(L" \tx"));
}

} // namespace

} // namespace hosttest
