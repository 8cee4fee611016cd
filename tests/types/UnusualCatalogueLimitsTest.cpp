#include "tests/support/HostWindows.h"
#include "tests/types/Types.h"

#include <functional>
#include <limits>
#include <string>

using namespace support;
using namespace types;

namespace {

constexpr CLSID kFreeThreadedDocument = {
    0x88D96A06, 0xF192, 0x11D4, {0xA6, 0x5F, 0x00, 0x40, 0x96, 0x32, 0x51, 0xE5}};
constexpr const wchar_t* kNotFoundCaption = L"O_Tam_id-CSNVTType::ID [Property Let]";
constexpr const wchar_t* kBadTypeCaption = L"O_Tam_ID.CSNVTType::ID";

using Node = com::Ref<IXMLDOMNode>;

/// Catalogues and identifiers that are made to lead astray. The catalogue is
/// the host's own document, which it may change while it is read.
class UnusualCatalogueLimitsTest : public TypesTest {
  protected:
    void HandOver(const Document& document) {
        EXPECT_EQ(NewModule()->putref_XmlSNVTDoc(document.Get()), S_OK);
    }
    /// The answers of a type in whose reading the host changes the document, at
    /// the message of its bad general type.
    Answers ReadWhile(const std::function<void(const Document&)>& change) {
        const Document document = Parse(L"<C><SNVT_1 Factor='3'><Name>First</Name><Type>Bad</Type>"
                                        L"<Name>Last</Name></SNVT_1></C>");
        HandOver(document);
        const Listener changing([&] { change(document); });
        const auto gain = Untyped();
        changing.Post();
        const Answers answers = AnswersOf(Assign(gain, L"1"));
        ExpectMessage(L"Error: SNVT_1 has a bad type", kBadTypeCaption, MB_ICONSTOP);
        return answers;
    }
    static Answers Read(const std::wstring& name) {
        Answers answers;
        answers.id = L"1";
        answers.factor = 3;
        answers.genType = L"Bad";
        answers.name = name;
        return answers;
    }
    void ExpectReadFailure(const std::wstring& error, const CalledFrom& = {}) {
        ExpectMessage(L"Error " + error + L" in procedure pGetTextual of Class Module CSNVTType",
                      L"Gateway Object", 0);
    }
    static void Remove(const Node& node) {
        Node removed;
        com::Check(tam::dom::ParentOf(node)->removeChild(node.Get(), removed.Put()));
    }
    static Node At(const Document& document, const wchar_t* path) {
        return tam::dom::Select(Node(document.Get()), path);
    }
};

TEST_F(UnusualCatalogueLimitsTest, HasNoEntryForAPathThatLeadsElsewhere) {
    SetCatalogue(Entry(L"1", L"<Name>One<b>x</b></Name>", L"Factor='3'") + Entry(L"2", L"<Name>Two</Name>"));
    for (const wchar_t* id : {L"1/Name", L"1/..", L"1/.", L"1/../SNVT_2", L"1 | //*", L"1 | *", L"9 | SNVT_1",
                              L"1/@Factor", L"1[1]", L"1//b", L"1/Name/text()", L"..", L"1..", L"."}) {
        EXPECT_EQ(AnswersOf(Assigned(id)), Answers()) << com::Bstr(id).Get();
        ExpectMessage(std::wstring(L"Can't find the node related to SNVT ID ") + id, kNotFoundCaption,
                      MB_ICONSTOP);
    }
}

TEST_F(UnusualCatalogueLimitsTest, ReportsIdentifiersThatAreNoPath) {
    SetCatalogue(Entry(L"1", L"<Name>One</Name>"));
    for (const wchar_t* id : {L"*", L"(", L"1)", L"1]", L"1'", L"1\"", L"1' or '1'='1", L"$x", L"a:b", L"x:1",
                              L"1/", L"1 or 1", L"1=1", L"1|", L"\xD83D\xDE00"}) {
        EXPECT_EQ(AnswersOf(Assign(Untyped(), id)).name, L"") << com::Bstr(id).Get();
        EXPECT_EQ(Boxes().size(), 1u) << com::Bstr(id).Get();
    }
    EXPECT_EQ(AnswersOf(Assigned(L"1")).name, L"One");
}

TEST_F(UnusualCatalogueLimitsTest, PassesOverBlanksAfterAnIdentifier) {
    SetCatalogue(Entry(L"1", L"<Name>One</Name>"));
    const auto answers = AnswersOf(Assign(Untyped(), L"1 \n\t"));
    EXPECT_EQ(answers.name, L"One");
    EXPECT_EQ(answers.id, L"1 \n\t");
}

TEST_F(UnusualCatalogueLimitsTest, MayBeADocumentForSeveralThreads) {
    Document document;
    ASSERT_EQ(CoCreateInstance(kFreeThreadedDocument, nullptr, CLSCTX_INPROC_SERVER,
                               __uuidof(IXMLDOMDocument2), document.PutVoid()),
              S_OK);
    VARIANT_BOOL done = VARIANT_FALSE;
    ASSERT_EQ(document->loadXML(com::Bstr(L"<C>" + Entry(L"1", L"<Name>One</Name>") + L"</C>").Get(), &done),
              S_OK);
    HandOver(document);
    EXPECT_EQ(AnswersOf(Assigned(L"1")).name, L"One");
}

TEST_F(UnusualCatalogueLimitsTest, MayHoldLongAndDeepTexts) {
    const std::wstring text(1 << 20, L'n');
    const Document document = Parse(L"<C>" +
                                    Entry(L"1", L"<Name/><Type>Float</Type><Length>4</Length><Min>" + text +
                                                    L".5</Min><Unit>" + text + L"</Unit>") +
                                    L"</C>");
    Node node = At(document, L"C/SNVT_1/Name");
    for (int i = 0; i < 10000; ++i) {
        node = Node(tam::dom::Append(document, node, L"a"));
    }
    tam::dom::AppendText(document, node, L"a", L"Deep");
    HandOver(document);
    const auto answers = AnswersOf(Assigned(L"1"));
    EXPECT_EQ(answers.name, L"Deep");
    EXPECT_TRUE(answers.units == text);
    EXPECT_TRUE(answers.min == text + DecimalMark() + L"5");
}

TEST_F(UnusualCatalogueLimitsTest, HasLengthsUpToTheirLimits) {
    const auto length = [&](const std::wstring& text) {
        return AnswersOf(FromEntry(L"<Type>Textual</Type><Length>" + text + L"</Length>")).length;
    };
    EXPECT_EQ(length(L"2147483647"), 2147483647);
    EXPECT_EQ(length(L"-2147483648"), std::numeric_limits<long>::min());
    EXPECT_EQ(length(Local(L"2147483647.4")), 2147483647);
    EXPECT_EQ(length(L" 7 "), 7);
    EXPECT_EQ(length(L"1e2"), 100);
    for (const std::wstring& text : {std::wstring(L"2147483648"), std::wstring(L"-2147483649"),
                                     Local(L"2147483647.5"), std::wstring(L"1e10")}) {
        EXPECT_EQ(length(text), 0) << com::Bstr(text).Get();
        ExpectReadFailure(L"6 (Overflow)");
    }
    for (const wchar_t* text :
         {L"", L" ", L"NaN", L"INF", L"1.#INF", L"--5", L"0x10", L"1e", L"5x", L"\x0661", L"%5"}) {
        EXPECT_EQ(length(text), 0) << com::Bstr(text).Get();
        ExpectReadFailure(L"13 (Type mismatch)");
    }
}

TEST_F(UnusualCatalogueLimitsTest, HasFactorsUpToTheirLimits) {
    const auto factor = [&](const std::wstring& text) {
        return AnswersOf(FromEntry(L"", L"Factor='" + text + L"'")).factor;
    };
    EXPECT_EQ(factor(L"2147483647.4999"), 2147483647);
    EXPECT_EQ(factor(L"-2147483648.5"), std::numeric_limits<long>::min());
    EXPECT_EQ(factor(L"&amp;H80000000"), std::numeric_limits<long>::min());
    EXPECT_EQ(factor(L"NaN"), 0);
    EXPECT_EQ(factor(L"INF"), 0);
    EXPECT_EQ(factor(L"1e-400"), 0);
    EXPECT_EQ(factor(L"1,5"), 1);
    for (const wchar_t* text : {L"2147483647.5", L"-2147483648.51", L"1e309", L"&amp;H100000000"}) {
        EXPECT_EQ(factor(text), 0);
        ExpectAssignmentReport(kOverflowText, L"1");
    }
}

TEST_F(UnusualCatalogueLimitsTest, IsReadOnWhenTheHostTakesTheEntryAway) {
    EXPECT_EQ(ReadWhile([](const Document& document) { Remove(At(document, L"C/SNVT_1")); }), Read(L"Last"));
}

TEST_F(UnusualCatalogueLimitsTest, EndsAtAnElementThatTheHostTakesAway) {
    EXPECT_EQ(ReadWhile([](const Document& document) { Remove(At(document, L"C/SNVT_1/Type")); }),
              Read(L"First"));
}

TEST_F(UnusualCatalogueLimitsTest, IsReadOnWhenTheHostHandsAnotherOver) {
    EXPECT_EQ(ReadWhile([this](const Document&) { HandOver(Parse(L"<C/>")); }), Read(L"Last"));
    EXPECT_EQ(
        ReadWhile([this](const Document&) { EXPECT_EQ(NewModule()->putref_XmlSNVTDoc(nullptr), S_OK); }),
        Read(L"Last"));
}

TEST_F(UnusualCatalogueLimitsTest, MayBeEmptiedWhileItIsRead) {
    const Answers answers = ReadWhile([](const Document& document) {
        VARIANT_BOOL done = VARIANT_FALSE;
        com::Check(document->loadXML(com::Bstr(L"<Other/>").Get(), &done));
    });
    EXPECT_EQ(answers.id, L"1");
    EXPECT_EQ(answers.factor, 3);
}

} // namespace
