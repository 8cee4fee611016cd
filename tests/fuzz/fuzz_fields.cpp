// Input: a delimiter, a line feed, a text. Fields and lists of types.
#include "common/FieldParser.h"
#include "Input.h"
#include "points/CompatibleList.h"

using namespace tam;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::wstring text = fuzz::TextOf(data, size);
    const std::wstring delimiter = fuzz::TakeLine(text);

    FieldWalker walker(text, delimiter);
    std::int32_t count = 0;
    for (auto field = walker.Next(); field; field = walker.Next()) {
        if (count < 64) {
            fuzz::Require(ParseString(text, count, delimiter) == *field);
        }
        ++count;
    }
    fuzz::Require(ParseString(text, count, delimiter).empty());
    fuzz::Require(ParseString(text, -1, delimiter).empty());

    CompatibleList list;
    list.Add(text);
    for (const std::wstring& id : list.Ids()) {
        fuzz::Require(!id.empty() && list.Exists(id));
    }
    CompatibleList again;
    again.Add(list.GetList());
    fuzz::Require(again == list && list.Merge(again) == list);
    return 0;
}
