// Searching the source: a field in the line of the source's title, shown while it is wanted.

#include "view/Frame.h"

#include "view/model/SourceSearch.h"
#include "view/resource.h"

#include <string>

namespace view {

namespace {

constexpr std::size_t kLineEnd = 2; // CR LF, as the control has it

} // namespace

bool Frame::HasSource() const {
    return session_ != nullptr && !session_->Source().Text().empty();
}

void Frame::BeginSearch() {
    if (!settings_.showsSource) {
        ShowParts(settings_.showsFindings, true);
    }
    isSearchShown_ = true;
    Layout();
    SetFocus(search_);
    Send(search_, EM_SETSEL, 0, -1);
}

void Frame::EndSearch() {
    SetFocus(sourceBox_); // before the field with the focus is hidden
    isSearchShown_ = false;
    Layout();
}

void Frame::Search(bool isForward) {
    const std::wstring words = TextOf(search_);
    if (words.empty()) {
        BeginSearch();
        return;
    }
    if (!settings_.showsSource) {
        ShowParts(settings_.showsFindings, true);
    }
    ShowSource();
    DWORD begin = 0;
    DWORD end = 0;
    Send(sourceBox_, EM_GETSEL, &begin, &end);
    const SourceText& source = session_->Source();
    const auto match = FindInText(source.Shown(u"\r\n"), std::u16string(words.begin(), words.end()),
                                  {begin, end}, isForward);
    if (!match) {
        MessageBeep(MB_ICONWARNING);
        Say(Text(IDS_NOT_FOUND, words));
        return;
    }
    const SourcePlace place = source.PlaceOfShown(match->range.begin, kLineEnd);
    SelectInSource(match->range, place);
    Say(Text(!match->isAround ? IDS_FOUND
             : isForward      ? IDS_FOUND_FROM_START
                              : IDS_FOUND_FROM_END,
             WordsOf(place)));
}

} // namespace view
