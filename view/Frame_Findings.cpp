#include "view/Frame.h"

#include "view/resource.h"

#include "bench/Text.h"
#include "core/Numbers.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>

namespace view {

namespace {

constexpr std::size_t kColumnsOfFindings = 4;

std::wstring FromUtf16(const std::u16string& text) {
    return {text.begin(), text.end()};
}

} // namespace

void Frame::ShowFindings() {
    const auto former = findingPane_->Picked();
    const auto picked = former ? std::optional(findingTexts_.at(*former)) : std::nullopt;
    findings_ = checked_;
    if (boxes_.LeftOut() > 0) {
        FindingRow row;
        row.weight = Weight::Box;
        row.message = bench::Utf8(Text(IDS_OLDER_BOXES, std::to_wstring(boxes_.LeftOut())));
        findings_.push_back(std::move(row));
    }
    findings_.insert(findings_.end(), boxes_.Latest().begin(), boxes_.Latest().end());
    SortByWeight(findings_);
    findingTexts_.clear();
    for (const FindingRow& finding : findings_) {
        constexpr UINT kWords[] = {IDS_BOX, IDS_ERROR, IDS_WARNING, IDS_NOTE};
        findingTexts_.push_back({Text(kWords[static_cast<std::size_t>(finding.weight)]),
                                 finding.line == 0 ? std::wstring() : WordsOf({finding.line, finding.column}),
                                 bench::Wide(finding.message), bench::Wide(finding.rule)});
    }
    findingList_.Reset(findings_.size(), kColumnsOfFindings);
    findingPane_->Forget();
    findingPane_->Update();
    if (picked) { // others may have come before it
        const auto same = std::find(findingTexts_.begin(), findingTexts_.end(), *picked);
        if (same != findingTexts_.end()) {
            findingPane_->Pick(static_cast<std::size_t>(same - findingTexts_.begin()));
        }
    }
    ShowCountOfFindings();
    UpdateStatus();
}

void Frame::ShowCountOfFindings() {
    std::size_t errors = boxes_.All();
    for (const FindingRow& finding : checked_) {
        errors += finding.weight == Weight::Box || finding.weight == Weight::Error ? 1U : 0U;
    }
    std::wstring title = !session_ ? Text(IDS_FINDINGS)
                         : findings_.empty()
                             ? Text(IDS_NO_FINDINGS)
                             : Text(IDS_FINDINGS_COUNT, std::to_wstring(checked_.size() + boxes_.All()),
                                    std::to_wstring(errors));
    if (findingList_.Shown() != findingList_.Rows()) {
        title = Text(IDS_FINDINGS_SHOWN, title, std::to_wstring(findingList_.Shown()));
    }
    if (TextOf(findingsTitle_) != title) {
        SetWindowTextW(findingsTitle_, title.c_str());
    }
}

void Frame::GoToFinding(std::size_t row) {
    const FindingRow finding = findings_.at(row);
    const bool hasPoint =
        finding.point && isLoaded_ && PageOf(finding.point->kind)->table.Find(*finding.point) != nullptr;
    if (!hasPoint && finding.line != 0 && !settings_.showsSource) {
        ShowParts(settings_.showsFindings, true); // there is nothing else to go to
    }
    GoToSource(finding);
    if (hasPoint) {
        PickPoint(*finding.point);
        SetFocus(PaneOf(page_).Handle());
    } else if (settings_.showsSource) {
        SetFocus(sourceBox_);
    }
}

void Frame::StepFinding(bool isForward) {
    if (findingList_.Shown() == 0) {
        return;
    }
    if (!settings_.showsFindings) {
        ShowParts(true, settings_.showsSource);
    }
    const auto picked = findingPane_->Picked();
    const std::size_t count = findingList_.Shown();
    std::size_t place = isForward ? 0 : count - 1;
    if (picked) {
        place = (findingList_.PlaceOf(*picked).value_or(0) + (isForward ? 1 : count - 1)) % count;
    }
    const std::size_t row = findingList_.RowAt(place);
    findingPane_->Pick(row);
    GoToFinding(row);
}

void Frame::ShowSource() {
    if (isSourceShown_ || !session_) {
        return;
    }
    isSourceShown_ = true;
    SetWindowTextW(sourceBox_, FromUtf16(session_->Source().Shown(u"\r\n")).c_str());
    SetWindowTextW(sourceTitle_, Text(IDS_SOURCE_OF, NameOf(session_->SourceFile())).c_str());
}

void Frame::GoToSource(const FindingRow& finding) {
    if (finding.line == 0 || !session_ || !settings_.showsSource) {
        return;
    }
    ShowSource();
    constexpr std::size_t kLineEnd = 2;
    const SourceText& source = session_->Source();
    const std::size_t begin = source.ShownOffsetOf({finding.line, finding.column}, kLineEnd);
    const std::size_t end =
        std::max(begin, source.ShownOffsetOf({finding.endLine, finding.endColumn}, kLineEnd));
    SelectInSource({begin, end}, {finding.line, finding.column});
}

void Frame::SelectInSource(TextRange range, SourcePlace place) {
    Send(sourceBox_, EM_SETSEL, range.end, range.begin);
    Send(sourceBox_, EM_SCROLLCARET);
    SetWindowTextW(sourceTitle_, Text(IDS_SOURCE_AT, NameOf(session_->SourceFile()), WordsOf(place)).c_str());
}

std::wstring Frame::WordsOf(SourcePlace place) {
    return std::to_wstring(place.line) + L":" + std::to_wstring(place.column);
}

} // namespace view
