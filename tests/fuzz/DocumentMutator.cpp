#include "tests/fuzz/DocumentMutator.h"

#include <algorithm>

namespace component_fuzz {

namespace {

constexpr std::size_t kMegabyte = 1 << 20;
constexpr std::size_t kDeep = 10000;

const std::vector<std::wstring>& Texts() {
    static const std::vector<std::wstring> texts = {L"",
                                                    L" ",
                                                    L"\t\r\n",
                                                    L"0",
                                                    L"1",
                                                    L"-1",
                                                    L"-0",
                                                    L"00000000000000000000",
                                                    L"127",
                                                    L"128",
                                                    L"255",
                                                    L"255.5",
                                                    L"256",
                                                    L"32767",
                                                    L"32767.5",
                                                    L"32768",
                                                    L"-32768",
                                                    L"-32769",
                                                    L"65535",
                                                    L"65536",
                                                    L"2147483647",
                                                    L"2147483647.5",
                                                    L"2147483648",
                                                    L"-2147483648",
                                                    L"-2147483649",
                                                    L"4294967295",
                                                    L"4294967296",
                                                    L"9223372036854775808",
                                                    L"1e308",
                                                    L"1.7976931348623158e308",
                                                    L"1e309",
                                                    L"1e999",
                                                    L"-1e999",
                                                    L"1e-999",
                                                    L"1d5",
                                                    L"1e",
                                                    L"1e+",
                                                    L".",
                                                    L",",
                                                    L"-.",
                                                    L"NaN",
                                                    L"nan(1)",
                                                    L"inf",
                                                    L"-INF",
                                                    L"1.#INF",
                                                    L"&HFFFF",
                                                    L"&H10000",
                                                    L"&H80000000",
                                                    L"&HFFFFFFFFF",
                                                    L"&O17",
                                                    L"0x10",
                                                    L"1,5",
                                                    L"1.5",
                                                    L"1.234,5",
                                                    L"1,234.5",
                                                    L"1'000",
                                                    L"1 000",
                                                    L"1\u00A0000",
                                                    L"\u0661\u0662",
                                                    L"\uFF11",
                                                    L"$5",
                                                    L"5%",
                                                    L"(5)",
                                                    L"1-",
                                                    L"+1",
                                                    L"--1",
                                                    L"true",
                                                    L"True",
                                                    L"-1.0",
                                                    L"1 ",
                                                    L" 1",
                                                    L"1.0",
                                                    L"105",
                                                    L"36",
                                                    L"95",
                                                    L"81",
                                                    L"999999",
                                                    L"105,95,,36",
                                                    L",105",
                                                    L"105;95",
                                                    L"0,Off;1,On;",
                                                    L"1,",
                                                    L";;;",
                                                    L"0000",
                                                    L"000000",
                                                    L"DI1_Out",
                                                    L"_",
                                                    L"CONFIG",
                                                    L"NoTextField",
                                                    L"'",
                                                    L"\"",
                                                    L"]]>",
                                                    L"<a>",
                                                    L"&amp;",
                                                    L"105' or '1'='1",
                                                    L"105 | //*",
                                                    L"105/..",
                                                    L"//*",
                                                    L"..",
                                                    L"*",
                                                    L"name()",
                                                    L"@x",
                                                    L"a:b",
                                                    L"\\",
                                                    L"..\\..\\x",
                                                    L"C:\\x",
                                                    L"%s%n",
                                                    L"\xD800",
                                                    L"\xDC00x",
                                                    L"\xD83D\xDE00",
                                                    L"\xFFFE",
                                                    L"\xFFFF",
                                                    L"e\u0301",
                                                    L"\u0130i\u0131I",
                                                    L"\u00DF",
                                                    L"\x01",
                                                    L"\x1B"};
    return texts;
}

const std::vector<std::wstring>& Names() {
    static const std::vector<std::wstring> names = {L"Tam",
                                                    L"Name",
                                                    L"NAME",
                                                    L"name",
                                                    L"ID",
                                                    L"AppObject",
                                                    L"DataSizes",
                                                    L"T0",
                                                    L"T5",
                                                    L"T6",
                                                    L"T255",
                                                    L"T256",
                                                    L"T-1",
                                                    L"T",
                                                    L"Tam.1",
                                                    L"DevKey",
                                                    L"TamObjID",
                                                    L"IsLastOnDev",
                                                    L"CDB",
                                                    L"DDB",
                                                    L"InReferences",
                                                    L"OutReferences",
                                                    L"Attributes",
                                                    L"Outputs",
                                                    L"UserName",
                                                    L"X_Position",
                                                    L"VISIBLE",
                                                    L"SNVTTYPE",
                                                    L"Value",
                                                    L"LOGICALADDRESS",
                                                    L"SNVTCOMPATIBILITYLIST",
                                                    L"Length",
                                                    L"Type",
                                                    L"SNVT_105",
                                                    L"SNVT_",
                                                    L"AI1_Value",
                                                    L"ai1_value",
                                                    L"_",
                                                    L"__",
                                                    L"_1",
                                                    L"A.b-c",
                                                    L"\u00C9l\u00E9ment",
                                                    L"\u0416",
                                                    L"xml",
                                                    L"x:y",
                                                    L"text",
                                                    L"node",
                                                    L"comment",
                                                    L"IsDisplayable",
                                                    L"TYPEDEPENDENT",
                                                    L"Factor",
                                                    L"CDB_Size"};
    return names;
}

/// Names that are no names in XML.
const std::vector<std::wstring>& BadNames() {
    static const std::vector<std::wstring> names = {
        L"",  L" ",   L"1a",   L"a b", L"a/b", L"//*", L"*",     L"..",     L"@a",     L"a[1]",  L"a|b",
        L"<", L"a>b", L"a\"b", L"&",   L"-",   L":",   L"a:b:c", L"\xD800", L"\xFFFF", L"text()"};
    return names;
}

std::wstring AnyName(Random& random) {
    return random.OneIn(6) ? random.Of(BadNames()) : random.Of(Names());
}

void ChangeText(Tree& element, Random& random) {
    const auto kind = random.OneIn(8) ? Tree::Kind::CData : Tree::Kind::Text;
    element.children.clear();
    element.children.push_back(Tree::Leaf(kind, AnyText(random)));
}

void ChangeAttribute(Tree& element, Random& random) {
    if (element.attributes.empty() || random.OneIn(3)) {
        element.attributes.emplace_back(AnyName(random), AnyText(random));
        return;
    }
    auto& attribute = random.Of(element.attributes);
    switch (random.Below(4)) {
    case 0:
        attribute.first = AnyName(random);
        return;
    case 1:
        element.attributes.push_back(attribute);
        return;
    case 2:
        std::swap(attribute, element.attributes.back());
        element.attributes.pop_back();
        return;
    default:
        attribute.second = AnyText(random);
    }
}

void PutIn(Tree& parent, Tree child, Random& random) {
    const auto at = static_cast<std::ptrdiff_t>(random.Below(parent.children.size() + 1));
    parent.children.insert(parent.children.begin() + at, std::move(child));
}

void ChangeChild(Tree& parent, Random& random) {
    if (parent.children.empty()) {
        return;
    }
    const std::size_t at = random.Below(parent.children.size());
    switch (random.Below(4)) {
    case 0:
        parent.children.erase(parent.children.begin() + static_cast<std::ptrdiff_t>(at));
        return;
    case 1: {
        Tree copy = parent.children[at];
        std::transform(copy.name.begin(), copy.name.end(), copy.name.begin(),
                       [&](wchar_t c) { return c >= L'a' && c <= L'z' && random.OneIn(2) ? c - 32 : c; });
        PutIn(parent, std::move(copy), random);
        return;
    }
    case 2:
        std::swap(parent.children[at], parent.children.back());
        return;
    default:
        for (std::size_t copies = random.Below(40); copies > 0; --copies) {
            Tree copy = parent.children[at];
            if (!random.OneIn(4)) {
                copy.name += std::to_wstring(copies);
            }
            parent.children.push_back(std::move(copy));
        }
    }
}

void Change(Tree& tree, Random& random) {
    const std::vector<Tree*> elements = Elements(tree);
    Tree& element = *elements[random.Below(elements.size())];
    switch (random.Below(10)) {
    case 0:
    case 1:
    case 2:
        return ChangeText(element, random);
    case 3:
        return ChangeAttribute(element, random);
    case 4:
    case 5:
        return ChangeChild(element, random);
    case 6:
        element.name = AnyName(random);
        return;
    case 7: { // a copy of one element stands in another one
        Tree copy = *elements[random.Below(elements.size())];
        return PutIn(element, std::move(copy), random);
    }
    case 8:
        return PutIn(element,
                     Tree::Leaf(random.OneIn(2) ? Tree::Kind::Comment : Tree::Kind::Instruction, L"note"),
                     random);
    default:
        return PutIn(element,
                     Tree::Leaf(random.OneIn(2) ? Tree::Kind::Text : Tree::Kind::CData, AnyText(random)),
                     random);
    }
}

std::wstring Repeated(std::wstring_view part, std::size_t times) {
    std::wstring text;
    text.reserve(part.size() * times);
    for (std::size_t i = 0; i < times; ++i) {
        text += part;
    }
    return text;
}

/// Just behind a tag somewhere in a text.
std::size_t BehindATag(const std::wstring& text, Random& random) {
    const std::size_t end = text.find(L'>', random.Below(text.size()));
    return end == std::wstring::npos ? text.size() : end + 1;
}

std::wstring GrowingEntities() {
    std::wstring dtd = L"<!DOCTYPE Tam [<!ENTITY e0 \"aaaaaaaaaa\">";
    for (int i = 1; i <= 9; ++i) {
        const std::wstring before = L"&e" + std::to_wstring(i - 1) + L";";
        dtd += L"<!ENTITY e" + std::to_wstring(i) + L" \"" + Repeated(before, 10) + L"\">";
    }
    return dtd + L"]>";
}

} // namespace

std::wstring AnyText(Random& random) {
    if (random.OneIn(60)) {
        const std::vector<std::wstring> parts = {L"A", L"9", L" ", L",", L"1;", L"\u20AC"};
        const std::wstring& part = random.Of(parts);
        return Repeated(part, kMegabyte / part.size());
    }
    if (random.OneIn(40)) {
        return Repeated(L"105,81,", 300);
    }
    std::wstring text = random.Of(Texts());
    if (random.OneIn(20)) {
        text.insert(random.Below(text.size() + 1), 1, L'\0');
    }
    return text;
}

void Mutate(Tree& tree, Random& random) {
    for (std::size_t changes = 1 + random.Below(5); changes > 0; --changes) {
        Change(tree, random);
    }
}

std::wstring Damage(const Tree& tree, const std::wstring& secretFile, Random& random) {
    std::wstring text = TextOf(tree);
    const std::size_t behindTag = BehindATag(text, random);
    switch (random.Below(24)) {
    case 0:
        text.resize(random.Below(text.size()));
        break;
    case 1:
        text.insert(random.Below(text.size()), 1, static_cast<wchar_t>(random.Below(0x10000)));
        break;
    case 2:
        text.insert(behindTag, Repeated(L"<a>", kDeep) + Repeated(L"</a>", kDeep));
        break;
    case 3:
        text.insert(behindTag, Repeated(L"<a>", 200) + Repeated(L"</a>", 200));
        break;
    case 4:
        text.insert(behindTag, L"&e9;");
        text.insert(0, GrowingEntities());
        break;
    case 5:
        text.insert(behindTag, L"&e3;");
        text.insert(0, GrowingEntities());
        break;
    case 6:
        text.insert(behindTag, L"&s;");
        text.insert(0, L"<!DOCTYPE Tam [<!ENTITY s SYSTEM \"" + secretFile + L"\">]>");
        break;
    case 7:
        text.insert(0, L"<!DOCTYPE Tam SYSTEM \"" + secretFile + L"\">");
        break;
    case 8:
        text.insert(0, L"<?xml version=\"1.0\" encoding=\"UTF-16\"?>");
        break;
    case 9:
        text.insert(0, L"<?xml version=\"1.0\" encoding=\"no-such\"?>");
        break;
    case 10:
        text += text;
        break;
    case 11:
        text.insert(behindTag, L"&#0;&#xD800;&#x110000;&none;");
        break;
    default:
        break;
    }
    return text;
}

std::string Encode(const std::wstring& text, Random& random) {
    std::string bytes;
    switch (random.Below(6)) {
    case 0: // two bytes a character, with or without the mark that says so
        bytes = random.OneIn(2) ? "\xFF\xFE" : "";
        for (const wchar_t c : text) {
            bytes += static_cast<char>(c & 0xFF);
            bytes += static_cast<char>(c >> 8);
        }
        return bytes;
    case 1: // one byte a character, which no declaration says
        for (const wchar_t c : text) {
            bytes += static_cast<char>(c);
        }
        return bytes;
    default: // UTF-8, in which each half of a surrogate pair is written as if it were a character
        for (const wchar_t c : text) {
            const auto code = static_cast<unsigned>(c);
            if (code < 0x80) {
                bytes += static_cast<char>(code);
            } else if (code < 0x800) {
                bytes += static_cast<char>(0xC0 | code >> 6);
                bytes += static_cast<char>(0x80 | (code & 0x3F));
            } else {
                bytes += static_cast<char>(0xE0 | code >> 12);
                bytes += static_cast<char>(0x80 | (code >> 6 & 0x3F));
                bytes += static_cast<char>(0x80 | (code & 0x3F));
            }
        }
        return bytes;
    }
}

} // namespace component_fuzz
