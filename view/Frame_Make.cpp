#include "view/Frame.h"

#include "view/model/Colours.h"
#include "view/resource.h"

#include "bench/Text.h"

#include <algorithm>
#include <utility>

namespace view {

namespace {

/// The commands of the keys in a field.
struct FieldKeys {
    int enter;
    /// With Shift.
    int enterBack;
    int down;
    int escape;
};
constexpr FieldKeys kFilterKeys{IDM_VIEW_LIST, IDM_VIEW_LIST, IDM_VIEW_LIST, IDM_EDIT_CLEAR_FILTER};
constexpr FieldKeys kSearchKeys{IDM_EDIT_FIND_NEXT, IDM_EDIT_FIND_PREVIOUS, 0, IDM_EDIT_FIND_END};

HWND MakeControl(HWND parent, const wchar_t* kind, const wchar_t* text, DWORD style, int id,
                 DWORD exStyle = 0) {
    const HWND control = CreateWindowExW(exStyle, kind, text, WS_CHILD | WS_CLIPSIBLINGS | style, 0, 0, 0, 0,
                                         parent, reinterpret_cast<HMENU>(static_cast<INT_PTR>(id)),
                                         GetModuleHandleW(nullptr), nullptr);
    if (control == nullptr) {
        throw com::CallError(bench::CodeOf(GetLastError()));
    }
    return control;
}

int CommandOfKey(const FieldKeys& keys, WPARAM key) noexcept {
    switch (key) {
    case VK_RETURN:
        return GetKeyState(VK_SHIFT) < 0 ? keys.enterBack : keys.enter;
    case VK_DOWN:
        return keys.down;
    case VK_ESCAPE:
        return keys.escape;
    default:
        return 0;
    }
}

LRESULT CALLBACK OnFieldMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR,
                                DWORD_PTR keys) noexcept {
    const int command =
        message == WM_KEYDOWN ? CommandOfKey(*reinterpret_cast<const FieldKeys*>(keys), wParam) : 0;
    if (command != 0) {
        PostMessageW(GetParent(window), WM_COMMAND, static_cast<WPARAM>(command), 0);
        return 0;
    }
    if (message == WM_CHAR && (wParam == L'\r' || wParam == L'\x1B')) {
        return 0; // a beep
    }
    return DefSubclassProc(window, message, wParam, lParam);
}

std::vector<ListPane::Column> PointColumns() {
    return {{IDS_COLUMN_NAME, 132},         {IDS_COLUMN_TYPE, 116},  {IDS_COLUMN_VALUE, 80, true},
            {IDS_COLUMN_DISPLAYED, 104},    {IDS_COLUMN_UNIT, 50},   {IDS_COLUMN_DEFAULT, 64, true},
            {IDS_COLUMN_ADDRESS, 62, true}, {IDS_COLUMN_VISIBLE, 52}};
}

drawing::Colour GlyphColour() noexcept {
    constexpr drawing::Colour kCalm = 0x1D4E89;
    return IsHighContrast() || !IsLight(ColourOfSystem(COLOR_BTNFACE)) ? ColourOfSystem(COLOR_BTNTEXT)
                                                                       : kCalm;
}

} // namespace

void Frame::MakeParts() {
    const HWND frame = Handle();
    MakeToolbar();
    sheet_ = std::make_unique<SheetView>(
        frame, IDC_SHEET,
        SheetView::Events{[this](const drawing::PinId& pin) { OnPinPicked(pin); },
                          [this](const drawing::PinId& pin) {
                              if (const auto id = PointOf(pin)) {
                                  OpenEditor(*id);
                              }
                          },
                          [this] { UpdateStatus(); },
                          [this](const std::wstring& words) { OnProblem(words); }});
    MakeSplitters();
    filterLabel_ = MakeControl(frame, WC_STATICW, Text(IDS_FILTER).c_str(),
                               WS_VISIBLE | SS_CENTERIMAGE | SS_RIGHT, IDC_FILTER_LABEL);
    filter_ = MakeControl(frame, WC_EDITW, L"", WS_VISIBLE | WS_TABSTOP | ES_AUTOHSCROLL, IDC_FILTER,
                          WS_EX_CLIENTEDGE);
    SetWindowSubclass(filter_, OnFieldMessage, 1, reinterpret_cast<DWORD_PTR>(&kFilterKeys));
    tabs_ = MakeControl(frame, WC_TABCONTROLW, Text(IDS_PAGES).c_str(),
                        WS_VISIBLE | WS_TABSTOP | TCS_FOCUSNEVER, IDC_PAGES);
    for (const int title : {IDS_ATTRIBUTES, IDS_INPUTS, IDS_OUTPUTS, IDS_CATALOGUE}) {
        std::wstring text = Text(static_cast<UINT>(title));
        TCITEMW item{};
        item.mask = TCIF_TEXT;
        item.pszText = text.data();
        Send(tabs_, TCM_INSERTITEMW, Send(tabs_, TCM_GETITEMCOUNT), &item);
    }
    MakePointPage(0, Kind::Attribute, IDC_ATTRIBUTES, L"Attributes", IDS_ATTRIBUTES);
    MakePointPage(1, Kind::Input, IDC_INPUTS, L"Inputs", IDS_INPUTS);
    MakePointPage(2, Kind::Output, IDC_OUTPUTS, L"Outputs", IDS_OUTPUTS);
    MakeCatalogue();
    MakeFindings();
    searchLabel_ =
        MakeControl(frame, WC_STATICW, Text(IDS_SEARCH).c_str(), SS_CENTERIMAGE | SS_RIGHT, IDC_SEARCH_LABEL);
    search_ = MakeControl(frame, WC_EDITW, L"", WS_TABSTOP | ES_AUTOHSCROLL, IDC_SEARCH, WS_EX_CLIENTEDGE);
    SetWindowSubclass(search_, OnFieldMessage, 1, reinterpret_cast<DWORD_PTR>(&kSearchKeys));
    sourceTitle_ = MakeControl(frame, WC_STATICW, Text(IDS_SOURCE).c_str(), WS_VISIBLE | SS_CENTERIMAGE,
                               IDC_SOURCE_TITLE);
    sourceBox_ = MakeControl(frame, WC_EDITW, L"",
                             WS_VISIBLE | WS_TABSTOP | WS_VSCROLL | WS_HSCROLL | ES_MULTILINE | ES_READONLY |
                                 ES_AUTOVSCROLL | ES_AUTOHSCROLL | ES_NOHIDESEL,
                             IDC_SOURCE);
    Send(sourceBox_, EM_SETLIMITTEXT, 0); // as much as there is
    status_ = MakeControl(frame, STATUSCLASSNAMEW, L"", WS_VISIBLE | SBARS_SIZEGRIP, IDC_STATUS);
    progressLabel_ = MakeControl(frame, WC_STATICW, L"", 0, IDC_PROGRESS_LABEL);
    progress_ = MakeControl(frame, PROGRESS_CLASSW, L"", 0, IDC_PROGRESS);
    stop_ = MakeControl(frame, WC_BUTTONW, Text(IDS_STOP).c_str(), WS_TABSTOP | BS_PUSHBUTTON, IDC_STOP);
}

void Frame::MakeSplitters() {
    constexpr UINT kNames[] = {IDS_SPLIT_SHEET, IDS_SPLIT_PANES, IDS_SPLIT_SOURCE};
    for (std::size_t i = 0; i < splitters_.size(); ++i) {
        splitters_[i] = std::make_unique<Splitter>(
            Handle(), IDC_SPLIT_SHEET + static_cast<int>(i), i != 1, Text(kNames[i]),
            Splitter::Events{[this, i](int distance) { MoveSplit(i, distance); },
                             [this, i] { return settings_.splits.at(i); }, [this] { LeaveSplitter(); }});
    }
}

void Frame::MakeToolbar() {
    toolbar_ = MakeControl(Handle(), TOOLBARCLASSNAMEW, Text(IDS_TOOLBAR).c_str(),
                           WS_VISIBLE | TBSTYLE_FLAT | TBSTYLE_LIST | TBSTYLE_TOOLTIPS | CCS_NODIVIDER |
                               CCS_NOPARENTALIGN | CCS_NORESIZE,
                           IDC_TOOLBAR);
    Send(toolbar_, TB_BUTTONSTRUCTSIZE, sizeof(TBBUTTON));
    Send(toolbar_, TB_SETEXTENDEDSTYLE, 0, TBSTYLE_EX_MIXEDBUTTONS | TBSTYLE_EX_DRAWDDARROWS);
    struct Tool {
        int command;
        int image;
        UINT text;
        BYTE style;
    };
    const auto glyph = [](Glyph picture) { return static_cast<int>(picture); };
    const BYTE plain = BTNS_BUTTON | BTNS_AUTOSIZE;
    const BYTE labelled = plain | BTNS_SHOWTEXT;
    const BYTE check = BTNS_CHECK | BTNS_AUTOSIZE;
    const BYTE unit = BTNS_CHECKGROUP | BTNS_AUTOSIZE;
    const Tool tools[] = {{IDM_FILE_OPEN, glyph(Glyph::Open), IDS_TOOL_OPEN, labelled},
                          {IDM_FILE_SAVE, glyph(Glyph::Save), IDS_TOOL_SAVE, labelled},
                          {0, 0, 0, BTNS_SEP},
                          {IDM_EDIT_UNDO, glyph(Glyph::Undo), IDS_TOOL_UNDO, plain},
                          {IDM_EDIT_REDO, glyph(Glyph::Redo), IDS_TOOL_REDO, plain},
                          {IDM_EDIT_VALUE, glyph(Glyph::Edit), IDS_TOOL_EDIT, labelled},
                          {0, 0, 0, BTNS_SEP},
                          {IDM_VIEW_ZOOM_OUT, glyph(Glyph::ZoomOut), IDS_TOOL_ZOOM_OUT, plain},
                          {IDM_VIEW_ZOOM_IN, glyph(Glyph::ZoomIn), IDS_TOOL_ZOOM_IN, plain},
                          {IDM_VIEW_ZOOM_FIT, glyph(Glyph::Fit), IDS_TOOL_ZOOM_FIT, plain},
                          {0, 0, 0, BTNS_SEP},
                          {IDM_VIEW_SI, glyph(Glyph::Si), IDS_TOOL_SI, unit},
                          {IDM_VIEW_US, glyph(Glyph::Us), IDS_TOOL_US, unit},
                          {0, 0, 0, BTNS_SEP},
                          {IDM_VIEW_FINDINGS, glyph(Glyph::Findings), IDS_TOOL_FINDINGS, check},
                          {IDM_VIEW_SOURCE, glyph(Glyph::Source), IDS_TOOL_SOURCE, check}};
    for (const Tool& tool : tools) {
        TBBUTTON button{};
        const std::wstring text = tool.text != 0 ? Text(tool.text) : std::wstring();
        button.iBitmap = tool.image;
        button.idCommand = tool.command;
        button.fsState = TBSTATE_ENABLED;
        button.fsStyle = tool.style;
        button.iString = reinterpret_cast<INT_PTR>(text.c_str());
        Send(toolbar_, TB_ADDBUTTONSW, 1, &button);
    }
}

void Frame::MakePointPage(std::size_t index, Kind kind, int id, const wchar_t* key, UINT name) {
    PointPage& page = pages_.at(index);
    page.kind = kind;
    ListPane::Source source;
    source.cell = [&page](std::size_t row, std::size_t column) {
        return std::wstring(CellOf(page.table.Rows().at(row), static_cast<Column>(column)));
    };
    source.isBold = [&page](std::size_t row) { return page.table.Rows().at(row).isUnsaved; };
    const auto idOf = [&page](std::size_t row) { return page.table.Rows().at(row).id; };
    ListPane::Events events;
    events.failed = [this](const std::wstring& words) { OnProblem(words); };
    events.picked = [this, idOf](std::size_t row) { OnRowPicked(idOf(row)); };
    events.opened = [this, idOf](std::size_t row) { OpenEditor(idOf(row)); };
    events.typed = [this](wchar_t letter) { Filter(false, letter); };
    events.entered = [this, idOf](std::size_t row, const std::wstring& text) {
        OnCellEntered(idOf(row), text);
    };
    page.pane = std::make_unique<ListPane>(Handle(), id, key, name, PointColumns(), page.table.List(),
                                           std::move(source), std::move(events));
    page.pane->Read(settings_);
}

void Frame::MakeCatalogue() {
    ListPane::Source source;
    source.cell = [this](std::size_t row, std::size_t column) {
        const TypeRow& type = types_.at(row);
        const std::wstring* const cells[] = {&type.number, &type.name,     &type.kind,       &type.unit,
                                             &type.least,  &type.greatest, &type.resolution, &type.invalid};
        return *cells[column];
    };
    ListPane::Events events;
    events.typed = [this](wchar_t letter) { Filter(false, letter); };
    std::vector<ListPane::Column> columns = {{IDS_COLUMN_NUMBER, 60, true},
                                             {IDS_COLUMN_NAME, 170},
                                             {IDS_COLUMN_KIND, 110},
                                             {IDS_COLUMN_UNIT, 70},
                                             {IDS_COLUMN_LEAST, 90, true},
                                             {IDS_COLUMN_GREATEST, 90, true},
                                             {IDS_COLUMN_RESOLUTION, 80, true},
                                             {IDS_COLUMN_INVALID, 80, true}};
    typePane_ =
        std::make_unique<ListPane>(Handle(), IDC_CATALOGUE, L"Catalogue", IDS_CATALOGUE, std::move(columns),
                                   typeList_, std::move(source), std::move(events));
    typePane_->Read(settings_);
}

void Frame::MakeFindings() {
    findingsTitle_ = MakeControl(Handle(), WC_STATICW, Text(IDS_FINDINGS).c_str(),
                                 WS_VISIBLE | SS_CENTERIMAGE, IDC_FINDINGS_TITLE);
    ListPane::Source source;
    source.cell = [this](std::size_t row, std::size_t column) { return findingTexts_.at(row).at(column); };
    source.colour = [this](std::size_t row) -> std::optional<COLORREF> {
        const auto colour = IsHighContrast()
                                ? std::nullopt
                                : ColourOf(findings_.at(row).weight, ColourOfSystem(COLOR_WINDOW));
        return colour ? std::optional(RGB(*colour >> 16U & 0xFFU, *colour >> 8U & 0xFFU, *colour & 0xFFU))
                      : std::nullopt;
    };
    ListPane::Events events;
    events.failed = [this](const std::wstring& words) { OnProblem(words); };
    events.typed = [this](wchar_t letter) { Filter(true, letter); };
    // While a file is loaded the list still shows the former file's.
    events.picked = [this](std::size_t row) {
        if (busy_ == 0) {
            GoToSource(findings_.at(row));
        }
    };
    events.opened = [this](std::size_t row) {
        if (busy_ == 0) {
            GoToFinding(row);
        }
    };
    std::vector<ListPane::Column> columns = {{IDS_COLUMN_WEIGHT, 64},
                                             {IDS_COLUMN_PLACE, 56, true},
                                             {IDS_COLUMN_MESSAGE, 360},
                                             {IDS_COLUMN_RULE, 130}};
    findingPane_ =
        std::make_unique<ListPane>(Handle(), IDC_FINDINGS, L"Findings", IDS_FINDINGS, std::move(columns),
                                   findingList_, std::move(source), std::move(events));
    findingPane_->Read(settings_);
    ShowWindow(findingPane_->Handle(), SW_SHOWNA);
}

void Frame::SetFonts() {
    // A value that is refused leaves no part with fonts that are gone: it is told at the end.
    const std::optional<Problem> refused = Try([this] { EnterCells(); });
    scaling_ = Scaling::Of(Handle());
    std::optional<Fonts> fonts;
    fonts.emplace(scaling_);
    const HFONT normal = fonts->normal.Get();
    const auto widthOf = [normal](UINT text) { return static_cast<int>(SizeOf(normal, Text(text)).cx); };
    room_.line = std::max(scaling_(24), static_cast<int>(SizeOf(normal, L"Ag").cy) + scaling_(8));
    room_.label =
        std::max(scaling_(44), std::max(widthOf(IDS_FILTER), widthOf(IDS_FILTER_FINDINGS)) + scaling_(8));
    room_.search = widthOf(IDS_SEARCH) + scaling_(8);
    room_.stop = std::max(scaling_(64), widthOf(IDS_STOP) + scaling_(20));
    const std::wstring many = L"99999";
    const std::wstring parts[] = {Text(IDS_SHOWN_OF, many, many), Text(IDS_UNSAVED, many), Text(IDS_UNITS_SI),
                                  Text(IDS_ZOOM, L"800")};
    constexpr int kLeast[] = {160, 120, 80, 100};
    for (std::size_t i = 0; i < room_.parts.size(); ++i) {
        room_.parts.at(i) =
            std::max(scaling_(kLeast[i]), static_cast<int>(SizeOf(normal, parts[i]).cx) + scaling_(12));
    }
    for (const HWND control : {toolbar_, filterLabel_, filter_, tabs_, findingsTitle_, searchLabel_, search_,
                               sourceTitle_, status_, stop_}) {
        Send(control, WM_SETFONT, normal, TRUE);
    }
    Send(sourceBox_, WM_SETFONT, fonts->fixed.Get(), TRUE);
    for (const PointPage& page : pages_) {
        page.pane->SetFonts(*fonts, scaling_);
    }
    typePane_->SetFonts(*fonts, scaling_);
    for (ListPane* const pane : {pages_[0].pane.get(), pages_[1].pane.get(), pages_[2].pane.get(),
                                 typePane_.get(), findingPane_.get()}) {
        pane->SetColours();
    }
    sheet_->SetScaling(scaling_);
    findingPane_->SetFonts(*fonts, scaling_);
    fonts_ = std::move(fonts); // nobody has the old ones any more
    Images images = MakeGlyphs(scaling_, GlyphColour());
    Send(toolbar_, TB_SETIMAGELIST, 0, images.get());
    images_ = std::move(images);
    // Not every system greys pictures that have an opacity.
    Images disabled = MakeGlyphs(scaling_, ColourOfSystem(COLOR_GRAYTEXT));
    Send(toolbar_, TB_SETDISABLEDIMAGELIST, 0, disabled.get());
    disabledImages_ = std::move(disabled);
    Send(toolbar_, TB_SETPADDING, 0, MAKELPARAM(scaling_(9), scaling_(8)));
    Send(toolbar_, TB_AUTOSIZE);
    Send(status_, SB_SETMINHEIGHT, scaling_(20)); // there is a button in it
    Layout();
    if (refused) {
        OnProblem(refused->words);
    }
}

} // namespace view
