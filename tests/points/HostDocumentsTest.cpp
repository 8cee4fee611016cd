#include "tests/points/Points.h"

#include <string>
#include <vector>

using namespace support;
using namespace points;

namespace {

/// A parser that a host may have its documents from.
struct Parser {
    const char* name;
    CLSID id;
};

constexpr Parser kParsers[] = {
    {"plain", {0x2933BF90, 0x7B36, 0x11D2, {0xB2, 0x0E, 0x00, 0xC0, 0x4F, 0x98, 0x3E, 0x60}}},
    {"3.0", {0xF5078F32, 0xC551, 0x11D3, {0x89, 0xB9, 0x00, 0x00, 0xF8, 0x1F, 0xE2, 0x21}}},
    {"6.0 free-threaded", {0x88D96A06, 0xF192, 0x11D4, {0xA6, 0x5F, 0x00, 0x40, 0x96, 0x32, 0x51, 0xE5}}},
};

constexpr const wchar_t* kDocument =
    L"<?xml version='1.0'?><!--c-->\n<Host>\n"
    L"  <SNVT_7 factor='3'>\n    <Name>N</Name>\n    <Type>Textual</Type>\n    <Length>4</Length>\n  "
    L"</SNVT_7>\n"
    L"  <Inputs>\n    <B/>\n    <A/>\n  </Inputs>\n"
    L"  <Outputs>\n    <O>\n      <IsDisplayable>True</IsDisplayable>\n    </O>\n  </Outputs>\n"
    L"  <Attributes>\n    <G>\n      <SNVT_TYPE>7</SNVT_TYPE>\n    </G>\n  </Attributes>\n"
    L"  <New/>\n</Host>";

/// Documents of a host that are not of the parser that the component makes itself, with and
/// without the white space between their elements.
class HostDocumentsTest : public PointsTest {
  protected:
    Document document;

    void TearDown() override {
        document.Reset();
        PointsTest::TearDown();
    }
    static Document Make(const Parser& parser, bool keepsWhiteSpace) {
        Document made;
        com::Check(CoCreateInstance(parser.id, nullptr, CLSCTX_INPROC_SERVER, __uuidof(IXMLDOMDocument2),
                                    made.PutVoid()));
        com::Check(made->put_async(VARIANT_FALSE));
        com::Check(made->put_preserveWhiteSpace(keepsWhiteSpace ? VARIANT_TRUE : VARIANT_FALSE));
        const com::Bstr text(kDocument);
        VARIANT_BOOL done = VARIANT_FALSE;
        com::Check(made->loadXML(text.Get(), &done));
        EXPECT_EQ(done, VARIANT_TRUE);
        return made;
    }
    com::Ref<IXMLDOMNode> At(const wchar_t* path) const {
        const com::Bstr text(path);
        com::Ref<IXMLDOMNode> node;
        com::Check(Root(document)->selectSingleNode(text.Get(), node.Put()));
        com::CheckSet(node.Get());
        return node;
    }
    template <class F>
    void WithEach(F&& ask) {
        for (const Parser& parser : kParsers) {
            for (const bool keepsWhiteSpace : {false, true}) {
                SCOPED_TRACE(std::string(parser.name) + (keepsWhiteSpace ? ", white space kept" : ""));
                document = Make(parser, keepsWhiteSpace);
                ASSERT_EQ(NewModule()->putref_XmlSNVTDoc(document.Get()), S_OK);
                module = Loaded(
                    Stream(L"<A/><B/>", L"<O><SNVTTYPE>7</SNVTTYPE></O>", L"<G><SNVTTYPE>7</SNVTTYPE></G>"));
                ask();
            }
        }
    }
};

TEST_F(HostDocumentsTest, HaveTypes) {
    WithEach([&] {
        const auto type = Object(Attribute(module, L"G"), &IAttribute::get_SNVTType);
        ASSERT_TRUE(type);
        EXPECT_EQ(Text(type, &ISNVType::get_ID), L"7");
        EXPECT_EQ(Text(type, &ISNVType::get_Name), L"N");
        EXPECT_EQ(Text(type, &ISNVType::get_GenType), L"Textual");
        EXPECT_EQ(Long(type, &ISNVType::get_Length), 4);
        EXPECT_EQ(Long(type, &ISNVType::get_Factor), 3);
    });
}

TEST_F(HostDocumentsTest, TakeSavedPoints) {
    WithEach([&] {
        const auto parent = At(L"New");
        EXPECT_EQ(Input(module, L"A").As<_CDBInput>()->XMLSave(document.Get(), parent.Get()), S_OK);
        EXPECT_EQ(Output(module, L"O").As<_CDBOutput>()->XMLSave(document.Get(), parent.Get()), S_OK);
        EXPECT_EQ(Attribute(module, L"G").As<_CDBAttribute>()->XMLSave(parent.Get(), document.Get()), S_OK);
        EXPECT_EQ(ChildNames(document, L"/Host/New"), (std::vector<std::wstring>{L"A", L"O", L"G"}));
        EXPECT_EQ(ChildNames(document, L"/Host/New/A"), std::vector<std::wstring>{L"SNVT_List"});
        EXPECT_EQ(TextAt(document, L"/Host/New/O/SNVT_Type"), L"7");
        EXPECT_EQ(ChildNames(document, L"/Host/New/G"), std::vector<std::wstring>{});
    });
}

TEST_F(HostDocumentsTest, GiveSavedPointsBack) {
    WithEach([&] {
        EXPECT_EQ(Inputs(module).As<_CDBInputs>()->XmlLoad(At(L"Inputs").Get()), S_OK);
        EXPECT_EQ(Names(Inputs(module)), (std::vector<std::wstring>{L"B", L"A"}));
        EXPECT_EQ(Outputs(module).As<_CDBOutputs>()->XmlLoad(At(L"Outputs").Get()), S_OK);
        EXPECT_TRUE(Flag(Output(module, L"O"), &IOutput::get_IsDisplayable));
        EXPECT_EQ(Attributes(module).As<_CDBAttributes>()->XmlLoad(At(L"Attributes").Get()), S_OK);
        EXPECT_EQ(Attribute(module, L"G").As<_CDBAttribute>()->XmlLoad(At(L"Attributes/G").Get()), S_OK);
    });
}

} // namespace
