#include "points/DefaultValues.h"

#include "tests/support/Read.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

// Default values are kept by attributes and shown to nobody, so the class is
// asked itself.

namespace {

using tam::DefaultValues;
using Value = std::optional<std::wstring>;

/// What the document's own query for one name gives.
Value Queried(const support::Document& document, const std::wstring& name) {
    const auto node = tam::dom::FirstByTagName(document, L"Tam/Attributes/" + name + L"/DefaultValue");
    if (!node || !tam::dom::FirstChild(node)) {
        return std::nullopt;
    }
    return tam::dom::FirstChildText(node);
}

/// The answer of the class, which is the query's.
Value Found(const std::wstring& xml, const std::wstring& name) {
    const auto document = support::Parse(xml);
    DefaultValues values{tam::dom::Document(document)};
    const Value found = values.Find(name);
    EXPECT_EQ(found, Queried(document, name));
    EXPECT_EQ(values.Find(name), found);
    return found;
}

std::wstring Definition(const std::wstring& attributes) {
    return L"<Tam><AppObject/><Attributes>" + attributes + L"</Attributes></Tam>";
}

TEST(DefaultValuesTest, HasNoneWithoutADocument) {
    EXPECT_EQ(DefaultValues().Find(L"Gain"), std::nullopt);
}

TEST(DefaultValuesTest, FindsTheValueOfEachName) {
    const std::wstring xml = Definition(L"<Gain><Other>0</Other><DefaultValue>1,5</DefaultValue></Gain>"
                                        L"<Rise><DefaultValue>2</DefaultValue></Rise>");
    EXPECT_EQ(Found(xml, L"Gain"), L"1,5");
    EXPECT_EQ(Found(xml, L"Rise"), L"2");
    EXPECT_EQ(Found(xml, L"Fall"), std::nullopt);
    EXPECT_EQ(Found(xml, L"gain"), std::nullopt);
}

TEST(DefaultValuesTest, TakesTheFirstOfSeveral) {
    const std::wstring xml =
        Definition(L"<Gain><DefaultValue>1</DefaultValue><DefaultValue>2</DefaultValue></Gain>"
                   L"<Gain><DefaultValue>3</DefaultValue></Gain>");
    EXPECT_EQ(Found(xml, L"Gain"), L"1");
}

TEST(DefaultValuesTest, TakesTheFirstInDocumentOrderWhereTheyAreNested) {
    const std::wstring xml = Definition(
        L"<Gain><Tam><Attributes><Gain><DefaultValue>inner</DefaultValue></Gain></Attributes></Tam>"
        L"<DefaultValue>outer</DefaultValue></Gain>");
    EXPECT_EQ(Found(xml, L"Gain"), L"inner");
}

TEST(DefaultValuesTest, FindsThemAnywhereInTheDocument) {
    EXPECT_EQ(Found(L"<Root><Part>" + Definition(L"<Gain><DefaultValue>7</DefaultValue></Gain>") +
                        L"</Part></Root>",
                    L"Gain"),
              L"7");
}

TEST(DefaultValuesTest, TakesNoneFromOtherPlaces) {
    EXPECT_EQ(Found(L"<Tam><Gain><DefaultValue>1</DefaultValue></Gain><Attributes/></Tam>", L"Gain"),
              std::nullopt);
    EXPECT_EQ(Found(Definition(L"<Group><Gain><DefaultValue>1</DefaultValue></Gain></Group>"), L"Gain"),
              std::nullopt);
}

TEST(DefaultValuesTest, DoesNotGoOnAfterAFirstOneWithoutAChild) {
    const std::wstring xml = Definition(L"<Gain><DefaultValue/><DefaultValue>2</DefaultValue></Gain>");
    EXPECT_EQ(Found(xml, L"Gain"), std::nullopt);
}

TEST(DefaultValuesTest, TakesTheFirstChildAlone) {
    EXPECT_EQ(Found(Definition(L"<Gain><DefaultValue>1<b>2</b></DefaultValue></Gain>"), L"Gain"), L"1");
    EXPECT_EQ(Found(Definition(L"<Gain><DefaultValue><b>2</b>1</DefaultValue></Gain>"), L"Gain"), L"2");
    EXPECT_EQ(Found(Definition(L"<Gain><DefaultValue> 1 </DefaultValue></Gain>"), L"Gain"), L" 1 ");
}

TEST(DefaultValuesTest, AgreesWithTheQueryWhereNamesHavePrefixesOrNamespaces) {
    for (const wchar_t* attributes :
         {L"<x:Gain xmlns:x='urn:x'><DefaultValue>1</DefaultValue></x:Gain>",
          L"<Gain xmlns='urn:x'><DefaultValue>1</DefaultValue></Gain>",
          L"<x:Gain xmlns:x='urn:x'><DefaultValue>1</DefaultValue></x:Gain>"
          L"<Gain><DefaultValue>2</DefaultValue></Gain>",
          L"<Gain><x:DefaultValue xmlns:x='urn:x'>1</x:DefaultValue><DefaultValue>2</DefaultValue></Gain>"}) {
        Found(Definition(attributes), L"Gain");
    }
    Found(L"<Tam xmlns='urn:x'><Attributes><Gain><DefaultValue>1</DefaultValue></Gain></Attributes></Tam>",
          L"Gain");
}

} // namespace
