#include "view/Frame.h"

#include "view/resource.h"

#include "bench/Text.h"
#include "drawing/DisplayList.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace view {

Frame::PointPage* Frame::PageOf(Kind kind) {
    const auto found = std::find_if(pages_.begin(), pages_.end(),
                                    [kind](const PointPage& page) { return page.kind == kind; });
    return found != pages_.end() ? &*found : nullptr;
}

std::optional<PointId> Frame::PickedPoint() {
    if (page_ >= kPointPages) {
        return std::nullopt;
    }
    const PointPage& page = pages_.at(page_);
    const auto row = page.pane->Picked();
    return row ? std::optional(page.table.Rows().at(*row).id) : std::nullopt;
}

void Frame::OpenEditor(const PointId& id) {
    if (busy_ > 0 || !isLoaded_) {
        return;
    }
    PickPoint(id);
    const Row* const row = PageOf(id.kind)->table.Find(id);
    if (id.kind == Kind::Output || row == nullptr) {
        Say(Text(IDS_OUTPUT_HAS_NO_VALUE, id.name));
        return;
    }
    // An input's value is what it is wired to; it has no editor, nor has a value without a type.
    if (id.kind == Kind::Input || row->type.empty()) {
        StartCell();
        return;
    }
    const std::wstring before = row->value;
    std::optional<Problem> problem;
    {
        const Busy busy(*this);
        problem = Try([&] { session_->Edit(id.name); });
    }
    TakeBoxes();
    const std::wstring after = session_->ValueOf(id);
    if (after != before) {
        history_.Add({id, before, after});
        RefreshPoint(id);
        AfterChange();
    }
    if (problem) {
        Ask(problem->words, MB_OK | MB_ICONERROR);
    }
    SetFocus(PaneOf(page_).Handle());
}

void Frame::StartCell() {
    if (const auto id = PickedPoint(); id && id->kind != Kind::Output) {
        PointPage& page = pages_.at(page_);
        SetFocus(page.pane->Handle());
        page.pane->EditCell(static_cast<std::size_t>(Column::Value), page.table.Find(*id)->value);
    }
}

void Frame::OnCellEntered(const PointId& id, const std::wstring& text) {
    if (busy_ > 0 || !isLoaded_) {
        return;
    }
    const std::wstring before = session_->ValueOf(id);
    if (text == before) {
        return;
    }
    if (const auto words = session_->ProblemOf(id, text)) {
        MessageBeep(MB_ICONWARNING);
        Say(Text(IDS_VALUE_REFUSED, id.name, *words));
        return;
    }
    session_->SetValue(id, text);
    TakeBoxes();
    history_.Add({id, before, session_->ValueOf(id)});
    RefreshPoint(id);
    AfterChange();
}

void Frame::Apply(const std::vector<view::Change>& changes) {
    if (changes.empty()) {
        return;
    }
    for (const view::Change& change : changes) {
        session_->SetValue(change.point, change.after);
        RefreshPoint(change.point);
    }
    TakeBoxes();
    PickPoint(changes.back().point);
    AfterChange();
}

void Frame::RefreshPoint(const PointId& id) {
    PointPage& page = *PageOf(id.kind);
    const Row* const known = page.table.Find(id);
    std::optional<Row> row = session_->ReadRow(id);
    if (known == nullptr || !row) {
        return;
    }
    changed_.insert(id);
    const std::size_t number = static_cast<std::size_t>(known - page.table.Rows().data());
    row->index = known->index;
    row->isUnsaved = history_.IsUnsaved(id);
    page.table.Update(std::move(*row));
    page.pane->Redraw(number);
    if (id.kind == Kind::Input) {
        // Outputs tell which inputs read them.
        PointPage& outputs = *PageOf(Kind::Output);
        outputs.table.Assign(session_->ReadRows(Kind::Output));
        outputs.pane->RedrawAll();
        sheet_->Refresh(ReadSheet());
    }
}

drawing::Sheet Frame::ReadSheet() {
    return session_->ReadSheet(PageOf(Kind::Input)->table.Rows(), PageOf(Kind::Output)->table.Rows());
}

void Frame::AfterChange() {
    recovery_.Keep({file_, stamp_, history_.Unsaved()});
    const std::size_t unsaved = history_.Unsaved().size();
    Say(unsaved == 0 ? Text(IDS_ALL_SAVED) : std::wstring());
    UpdateTitle();
    UpdateTools();
    UpdateStatus();
}

std::vector<bench::PointValue> Frame::ValuesToSave() const {
    std::vector<bench::PointValue> values;
    for (const PointId& point : changed_) {
        values.push_back({point.kind == Kind::Input, point.name, session_->ValueOf(point)});
    }
    return values;
}

void Frame::MarkSaved() {
    history_.MarkSaved();
    for (PointPage& page : pages_) {
        for (const Row& row : page.table.Rows()) {
            if (row.isUnsaved) {
                page.table.MarkUnsaved(PointId(row.id), false);
            }
        }
        page.pane->RedrawAll();
    }
    recovery_.Remove();
    UpdateTitle();
    UpdateTools();
    UpdateStatus();
}

void Frame::SetUnits(bool isUs) {
    isUs_ = isUs;
    if (session_ && isLoaded_) {
        session_->SetUnits(isUs);
        for (PointPage& page : pages_) {
            std::vector<Row> rows = session_->ReadRows(page.kind);
            for (Row& row : rows) {
                row.isUnsaved = history_.IsUnsaved(row.id);
            }
            page.table.Assign(std::move(rows));
            page.pane->Update();
        }
    }
    UpdateTools();
    UpdateStatus();
}

void Frame::TakeBoxes() {
    std::vector<FindingRow> boxes = session_->TakeBoxes();
    if (boxes.empty()) {
        return;
    }
    findings_.insert(findings_.begin(), std::make_move_iterator(boxes.begin()),
                     std::make_move_iterator(boxes.end()));
    ShowFindings();
}

void Frame::PickPoint(const PointId& id) {
    PointPage& page = *PageOf(id.kind);
    const Row* const row = page.table.Find(id);
    if (row == nullptr) {
        return;
    }
    const auto number = static_cast<std::size_t>(&page - pages_.data());
    if (number != page_) {
        ShowPage(number);
    }
    isPicking_ = true;
    const auto at = static_cast<std::size_t>(row - page.table.Rows().data());
    if (!page.pane->Pick(at)) {
        SetWindowTextW(filter_, L""); // the filter hides it
        OnFilter();
        page.pane->Pick(at);
    }
    isPicking_ = false;
    OnRowPicked(id);
}

void Frame::OnRowPicked(const PointId& id) {
    sheet_->Pick(PinOf(id));
    UpdateTools();
}

void Frame::OnPinPicked(const drawing::PinId& pin) {
    if (const auto id = PointOf(pin)) {
        PickPoint(*id);
        sheet_->Pick(pin); // a channel's pin stays picked, and not the module's item
    }
}

std::optional<PointId> Frame::PointOf(const drawing::PinId& pin) const {
    drawing::PinId own = pin;
    if (pin.block > 0) {
        // A channel's pin stands for the item of the module that has the same value.
        const std::vector<drawing::Mirror>& mirrors = sheet_->Sheet().mirrors;
        const auto found = std::find_if(mirrors.begin(), mirrors.end(),
                                        [&](const drawing::Mirror& mirror) { return mirror.channel == pin; });
        if (found == mirrors.end()) {
            return std::nullopt;
        }
        own = found->module;
    }
    const drawing::Pin* const known = drawing::Find(sheet_->Sheet(), own);
    if (known == nullptr) {
        return std::nullopt;
    }
    return PointId{own.side == drawing::Side::Input ? Kind::Input : Kind::Output, bench::Wide(known->name)};
}

std::optional<drawing::PinId> Frame::PinOf(const PointId& id) const {
    if (id.kind == Kind::Attribute) {
        return std::nullopt;
    }
    const PointPage& page = pages_.at(id.kind == Kind::Input ? 1 : 2);
    const Row* const row = page.table.Find(id);
    return row == nullptr
               ? std::nullopt
               : std::optional(drawing::PinId{
                     0, id.kind == Kind::Input ? drawing::Side::Input : drawing::Side::Output, row->index});
}

} // namespace view
