#include "tests/fuzz/DocumentMutator.h"

#include "tests/fuzz/Texts.h"

#include <algorithm>
#include <cstddef>
#include <utility>
#include <vector>

namespace component_fuzz {

namespace {

constexpr std::size_t kDeep = 10000;

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

/// Just after a tag somewhere in a text.
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

std::string Utf8(const std::wstring& text) {
    std::string bytes;
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
    default:
        return Utf8(text);
    }
}

} // namespace component_fuzz
