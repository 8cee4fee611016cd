#include "bench/Keys.h"

#include "bench/Text.h"

#include <algorithm>
#include <cstddef>
#include <cwctype>

namespace bench {

namespace {

constexpr int kMostPresses = 999;

struct NamedKey {
    const wchar_t* name;
    WORD key;
};

constexpr NamedKey kNamedKeys[] = {
    {L"ENTER", VK_RETURN},   {L"ESC", VK_ESCAPE}, {L"TAB", VK_TAB},   {L"SPACE", VK_SPACE},
    {L"BACKSPACE", VK_BACK}, {L"DEL", VK_DELETE}, {L"LEFT", VK_LEFT}, {L"RIGHT", VK_RIGHT},
    {L"UP", VK_UP},          {L"DOWN", VK_DOWN},  {L"HOME", VK_HOME}, {L"END", VK_END},
    {L"PGUP", VK_PRIOR},     {L"PGDN", VK_NEXT},  {L"F2", VK_F2},     {L"F4", VK_F4},
};

[[noreturn]] void Refuse(const std::string& reason) {
    throw KeysError(reason);
}

std::wstring Upper(std::wstring_view text) {
    std::wstring upper(text);
    std::transform(upper.begin(), upper.end(), upper.begin(), std::towupper);
    return upper;
}

std::string Quoted(std::wstring_view text) {
    return "{" + Utf8(text) + "}";
}

Stroke Plain(wchar_t character) {
    // A blank is a key too: it presses a button that has the focus.
    if (character == L' ') {
        return {Stroke::Kind::Key, character, VK_SPACE, L" "};
    }
    return {Stroke::Kind::Character, character, 0, std::wstring(1, character)};
}

Stroke Brace(wchar_t brace) {
    return {Stroke::Kind::Character, brace, 0, {L'{', brace, L'}'}};
}

/// "12" of "TAB 12": how often a key is pressed.
int PressesOf(std::wstring_view text, std::wstring_view whole) {
    const bool digits =
        !text.empty() && text.size() <= 3 &&
        std::all_of(text.begin(), text.end(), [](wchar_t c) { return c >= L'0' && c <= L'9'; });
    const int presses = digits ? std::stoi(std::wstring(text)) : 0;
    if (presses == 0) {
        Refuse(Quoted(whole) + ": after the name and a blank stands how often the key is pressed, 1 to " +
               std::to_string(kMostPresses));
    }
    return presses;
}

std::string ListOfNames() {
    std::string list;
    for (const std::wstring& name : KeyNames()) {
        list += (list.empty() ? "" : " ") + Utf8(name);
    }
    return list;
}

/// What stands between braces.
void ReadNamed(std::wstring_view inside, std::vector<Stroke>& strokes) {
    constexpr std::wstring_view kAlt = L"ALT+";
    if (Upper(inside.substr(0, kAlt.size())) == kAlt) {
        if (inside.size() != kAlt.size() + 1) {
            Refuse(Quoted(inside) + ": ALT+ takes one character, the underlined one of a control");
        }
        strokes.push_back(
            {Stroke::Kind::Access, inside.back(), 0, L"{ALT+" + std::wstring(1, inside.back()) + L"}"});
        return;
    }
    const std::size_t blank = inside.find(L' ');
    const std::wstring name = Upper(inside.substr(0, blank));
    const auto* const named = std::find_if(std::begin(kNamedKeys), std::end(kNamedKeys),
                                           [&](const NamedKey& key) { return name == key.name; });
    if (named == std::end(kNamedKeys)) {
        Refuse("there is no key " + Quoted(inside) + "; there are " + ListOfNames() +
               " {ALT+x}, and {{} and {}} for the braces");
    }
    const int presses = blank == std::wstring_view::npos ? 1 : PressesOf(inside.substr(blank + 1), inside);
    strokes.insert(strokes.end(), static_cast<std::size_t>(presses),
                   {Stroke::Kind::Key, 0, named->key, L"{" + name + L"}"});
}

} // namespace

const std::vector<std::wstring>& KeyNames() {
    static const std::vector<std::wstring> names = [] {
        std::vector<std::wstring> list;
        for (const NamedKey& key : kNamedKeys) {
            list.push_back(std::wstring(L"{") + key.name + L"}");
        }
        return list;
    }();
    return names;
}

std::vector<Stroke> ReadKeys(std::wstring_view text) {
    if (text.empty()) {
        Refuse("there is no key in it");
    }
    std::vector<Stroke> strokes;
    std::size_t at = 0;
    while (at < text.size()) {
        const wchar_t character = text[at];
        if (character == L'}') {
            Refuse("the } at character " + std::to_string(at + 1) +
                   " closes nothing; the brace itself is written {}}");
        }
        if (character < L' ') {
            Refuse("character " + std::to_string(at + 1) + " is a control character; write the key's name");
        }
        if (character != L'{') {
            strokes.push_back(Plain(character));
            ++at;
            continue;
        }
        const std::wstring_view three = text.substr(at, 3);
        if (three == L"{{}" || three == L"{}}") {
            strokes.push_back(Brace(three[1]));
            at += 3;
            continue;
        }
        const std::size_t end = text.find(L'}', at);
        if (end == std::wstring_view::npos) {
            Refuse("the { at character " + std::to_string(at + 1) +
                   " is not closed; the brace itself is written {{}");
        }
        ReadNamed(text.substr(at + 1, end - at - 1), strokes);
        at = end + 1;
    }
    return strokes;
}

} // namespace bench
