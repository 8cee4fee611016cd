#include "view/Frame_Busy.h"

#include "view/resource.h"

#include "bench/Text.h"
#include "drawing/DisplayList.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

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

void Frame::EnterCells() {
    for (const PointPage& page : pages_) {
        if (page.pane) {
            page.pane->EnterCell();
        }
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
    if (id.kind == Kind::Input) {
        RefreshWiring();
    }
    AfterChange();
    if (id.kind == Kind::Input && session_->LeadsOutside(text)) {
        Say(Text(IDS_NO_SUCH_OUTPUT, text));
    }
}

void Frame::Undo() {
    if (!Apply(history_.Undo())) {
        history_.Redo();
    }
}

void Frame::Redo() {
    if (!Apply(history_.Redo())) {
        history_.Undo();
    }
}

bool Frame::Apply(const std::vector<view::Change>& changes) {
    if (changes.empty()) {
        return true;
    }
    std::size_t set = 0;
    std::optional<Problem> problem;
    {
        const Busy busy(*this);
        problem = Try([&] {
            for (; set < changes.size(); ++set) {
                session_->SetValue(changes[set].point, changes[set].after);
            }
        });
        for (; problem && set > 0; --set) { // half a step is none
            Try([&] { session_->SetValue(changes[set - 1].point, changes[set - 1].before); });
        }
    }
    TakeBoxes();
    if (problem) {
        Ask(problem->words, MB_OK | MB_ICONERROR);
        return false;
    }
    bool isWiringChanged = false;
    for (const view::Change& change : changes) {
        RefreshPoint(change.point);
        isWiringChanged = isWiringChanged || change.point.kind == Kind::Input;
    }
    if (isWiringChanged) {
        RefreshWiring();
    }
    PickPoint(changes.back().point);
    AfterChange();
    return true;
}

void Frame::RefreshPoint(const PointId& id) {
    PointPage& page = *PageOf(id.kind);
    const Row* const known = page.table.Find(id);
    std::optional<Row> row = session_->ReadRow(id);
    if (known == nullptr || !row) {
        return;
    }
    const auto number = static_cast<std::size_t>(known - page.table.Rows().data());
    row->index = known->index;
    row->isUnsaved = history_.IsUnsaved(id);
    page.table.Update(std::move(*row));
    page.pane->Redraw(number);
}

void Frame::RefreshWiring() {
    // Outputs tell which inputs read them.
    PointPage& outputs = *PageOf(Kind::Output);
    outputs.table.Assign(session_->ReadRows(Kind::Output));
    outputs.pane->Update(); // the filter may show others now
    sheet_->Refresh(ReadSheet());
}

drawing::Sheet Frame::ReadSheet() {
    return session_->ReadSheet(PageOf(Kind::Input)->table.Rows(), PageOf(Kind::Output)->table.Rows());
}

void Frame::AfterChange() {
    if (history_.IsDirty()) {
        isKept_ = recovery_.Keep({watch_.Files(), project_, history_.Changed(), session_->ModuleKeyOf()});
    } else {
        recovery_.Remove();
    }
    Say(!history_.IsDirty() ? Text(IDS_ALL_SAVED) : isKept_ ? std::wstring() : Text(IDS_NOT_KEPT));
    UpdateTitle();
    UpdateTools();
    UpdateStatus();
}

std::vector<bench::PointValue> Frame::ValuesToSave() const {
    std::vector<bench::PointValue> values;
    for (const auto& [point, value] : history_.Changed()) {
        values.push_back({point.kind == Kind::Input, point.name, value});
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
    if (session_ && isLoaded_) {
        // All is read before any of it is shown.
        session_->SetUnits(isUs);
        std::array<std::vector<Row>, kPointPages> rows;
        for (std::size_t i = 0; i < kPointPages; ++i) {
            rows.at(i) = session_->ReadRows(pages_.at(i).kind);
            for (Row& row : rows.at(i)) {
                row.isUnsaved = history_.IsUnsaved(row.id);
            }
        }
        for (std::size_t i = 0; i < kPointPages; ++i) {
            pages_.at(i).table.Assign(std::move(rows.at(i)));
            pages_.at(i).pane->Update();
        }
    }
    isUs_ = isUs;
    UpdateTools();
    UpdateStatus();
}

void Frame::TakeBoxes() {
    const std::vector<FindingRow> boxes = session_->TakeBoxes();
    if (!boxes.empty()) {
        boxes_.Add(boxes);
        ShowFindings();
    }
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
        ShowAllRows(number); // the filter hides it
        page.pane->Pick(at);
    }
    isPicking_ = false;
    OnRowPicked(id);
}

void Frame::OnRowPicked(const PointId& id) {
    sheet_->Pick(PinOf(id));
    UpdateTools();
    // Bold is nothing to an ear.
    if (history_.IsUnsaved(id)) {
        Say(Text(IDS_ROW_UNSAVED, id.name));
        isRowTold_ = true;
    } else if (std::exchange(isRowTold_, false)) {
        Say({});
    }
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
