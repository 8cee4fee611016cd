// Input: two lists, each a text up to a line feed, then operations on the first.
#include "core/CompatibleList.h"
#include "Subjects.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

namespace tam::fuzz {

namespace {

using Plain = std::vector<std::wstring>;

bool Has(const Plain& list, const std::wstring& id) {
    return std::find(list.begin(), list.end(), id) != list.end();
}

void AddByRule(Plain& list, const std::wstring& text) {
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t comma = std::min(text.find(L',', begin), text.size());
        const std::wstring id = text.substr(begin, comma - begin);
        if (id.empty()) {
            return;
        }
        if (!Has(list, id)) {
            list.push_back(id);
        }
        begin = comma + 1;
    }
}

void Compare(const CompatibleList& list, const Plain& plain) {
    Require(list.Count() == plain.size());
    std::wstring joined;
    for (std::size_t i = 0; i < plain.size(); ++i) {
        joined += (i == 0 ? L"" : L",") + plain[i];
        Require(list.Exists(plain[i]));
        Require(list.At(i + 1) != nullptr && *list.At(i + 1) == plain[i]);
    }
    Require(list.At(0) == nullptr && list.At(plain.size() + 1) == nullptr);
    Require(list.GetList() == joined);
}

} // namespace

void FuzzCompatible(Input& input) {
    CompatibleList list;
    Plain plain;
    CompatibleList other;
    Plain otherPlain;
    const std::wstring first = input.Line();
    const std::wstring second = input.Line();
    list.Add(first);
    AddByRule(plain, first);
    Compare(list, plain);
    other.Add(second);
    AddByRule(otherPlain, second);
    Compare(other, otherPlain);

    std::erase_if(otherPlain, [&](const std::wstring& id) { return !Has(plain, id); });
    Compare(list.Merge(other), otherPlain);
    Require(list.Merge(list).GetList() == list.GetList());
    CompatibleList again;
    again.Add(list.GetList());
    Require(again.GetList() == list.GetList());

    while (!input.IsAtEnd()) {
        const std::size_t choice = input.Below(4);
        const std::size_t position = input.Below(plain.size() + 2);
        const std::wstring text = input.Word(choice == 0 ? 12 : 4);
        if (choice == 0) {
            list.Add(text);
            AddByRule(plain, text);
        } else if (choice == 1) {
            Require(list.Remove(text) == Has(plain, text));
            std::erase(plain, text);
        } else if (choice == 2) {
            const bool isThere = position >= 1 && position <= plain.size();
            Require(list.RemovePosition(position) == isThere);
            if (isThere) {
                plain.erase(plain.begin() + static_cast<std::ptrdiff_t>(position) - 1);
            }
        } else if (!plain.empty()) {
            // The text of an entry itself, which lies in the list.
            const std::wstring& own = *list.At(position % plain.size() + 1);
            plain.erase(plain.begin() + static_cast<std::ptrdiff_t>(position % plain.size()));
            Require(list.Remove(own));
        }
        Compare(list, plain);
    }
}

} // namespace tam::fuzz
