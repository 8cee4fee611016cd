#pragma once

#include "view/Glyphs.h"
#include "view/ListPane.h"
#include "view/model/BoxLog.h"
#include "view/model/FileWatch.h"
#include "view/model/FindingRow.h"
#include "view/model/History.h"
#include "view/model/RowTable.h"
#include "view/model/SourceSearch.h"
#include "view/RecoveryFile.h"
#include "view/Session.h"
#include "view/Settings.h"
#include "view/SheetView.h"
#include "view/Splitter.h"
#include "view/Window.h"

#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

namespace view {

/// The program's window: the sheet, the lists, the findings and the source of one file.
class Frame : public Window {
  public:
    explicit Frame(Settings& settings);
    ~Frame() override;

    /// Shows the window where it was last.
    void Show(int how);
    /// Offers what a program that ended without being asked left unsaved, then opens the
    /// first of the files that the program was started with, if any.
    void Start(const std::vector<std::wstring>& files);
    /// True for a key that is a command, or that moves the focus.
    bool Translate(MSG& message);

  private:
    /// A page of the lists: points of a kind.
    struct PointPage {
        Kind kind{};
        RowTable table;
        std::unique_ptr<ListPane> pane;
    };
    static constexpr std::size_t kPointPages = 3;
    static constexpr std::size_t kCatalogue = 3;
    static constexpr UINT_PTR kProgressTimer = 2;

    // Frame_Busy.h
    class Busy;
    class OwnBox;

    LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    /// The end of the window or of the person's session, and what no one else takes.
    LRESULT OnEndMessage(UINT message, WPARAM wParam, LPARAM lParam);
    void OnLookChanged(UINT message, WPARAM setting, LPARAM area);
    /// To the part that had it before the person went to another window.
    void ReturnFocus();
    void OnDropped(const std::vector<std::wstring>& files);
    void OnTimer(UINT_PTR timer);
    /// Something is typed or dragged, or a menu is open: the next key or click would answer a
    /// question that comes by itself.
    bool IsInHand() const;
    void OnProblem(const std::wstring& words) override;

    // Frame_Make.cpp
    void MakeParts();
    void MakeSplitters();
    void MakeToolbar();
    void MakePointPage(std::size_t index, Kind kind, int id, const wchar_t* key, UINT name);
    void MakeCatalogue();
    void MakeFindings();
    void SetFonts();

    // Frame_Layout.cpp
    void Layout();
    /// Pages at the left, the filter at the right of one line, the list below.
    void LayoutLists(const RECT& lists);
    /// The findings and the source, side by side.
    void LayoutPanes(const RECT& panes);
    /// The parts of the status line, and above them what shows progress.
    void LayoutStatus(long width, long bottomOfLine, int height);
    void MoveSplit(std::size_t split, int distance);
    void OnDpiChanged(const RECT& place);
    void SavePlaces();

    // Frame_Commands.cpp
    struct Command;
    /// Null for what is no command.
    static const Command* CommandOf(int wanted);
    /// False for what is no command.
    bool OnCommand(int id, int code, HWND control);
    bool IsEnabled(int id) const;
    bool HasPickedValue() const;
    void OpenChosen();
    void OpenRecent(std::size_t number);
    void Reload();
    void EditPicked();
    void Copy();
    void ShowKeys();
    void ShowAbout();

    // Frame_Status.cpp
    void UpdateTools();
    void UpdateStatus();
    void UpdateTitle();
    void Say(const std::wstring& words);
    /// Before work during which nothing is painted.
    void SayAtOnce(const std::wstring& words);
    int Ask(const std::wstring& words, UINT kind);

    // Frame_Pages.cpp
    ListPane& PaneOf(std::size_t page) const;
    Listing& ListingOf(std::size_t page);
    /// Null for another window than a list.
    ListPane* PaneOf(HWND list) const;
    /// The findings when they or their filter have the focus, else the list of the page.
    ListPane& PaneInFocus() const;
    LRESULT OnNotify(NMHDR& head);
    void ShowPage(std::size_t page);
    /// With the keyboard.
    void GoToPage(std::size_t page);
    void GoToList();
    /// As a click on the heading of the list in focus.
    void Sort(std::size_t column);
    void FitColumns();
    void StepColumn(bool isForward);
    void WidenColumn(bool isWider);
    void SayWidth(const ListPane& pane, std::size_t column);

    // Frame_Filter.cpp
    ListPane& FilteredPane() const;
    Listing& FilteredList();
    void AimFilter(bool isAtFindings);
    void ShowFilter();
    void OnFilter();
    /// As a letter that is typed into a list.
    void Filter(bool isOfFindings, wchar_t letter);
    void GoToFilter();
    void ClearFilter();
    void ShowAllRows(std::size_t page);

    // Frame_Focus.cpp
    void ShowParts(bool findings, bool source);
    void MoveFocus(bool isForward);
    void MoveTab(bool isForward);
    void FocusSplitter(bool isForward);
    void LeaveSplitter();

    // Frame_Search.cpp
    bool HasSource() const;
    void BeginSearch();
    void EndSearch();
    /// For what stands in the field.
    void Search(bool isForward);

    // Frame_Menus.cpp
    void UpdateMenu(HMENU menu);
    /// At a place of the screen; at (-1, -1) when a key asked for it.
    void ShowListMenu(ListPane& pane, POINT place);
    void FillRecentMenu(HMENU menu) const;
    void FillSortMenu(HMENU menu);
    void FillModuleMenu(HMENU menu);
    /// Whether the open project has such a module, and it can be opened.
    bool IsModule(std::size_t number) const;
    /// Of the modules of the open project.
    void OpenModule(std::size_t number);

    // Frame_Load.cpp
    void Load(const std::wstring& file);
    void BeginLoad(const std::wstring& file);
    std::optional<Problem> ReadFromFile();
    std::optional<Problem> LoadIntoModule();
    void ShowOutcome(bool isRead, const std::optional<Problem>& problem);
    void SayLoaded();
    void AddProblem(const Problem& problem, UINT rule);
    void Fill();
    void OnProgress();
    void ShowProgress(bool isShown);

    // Frame_Recovery.cpp
    void OfferRecovery();
    /// At the end that the person agreed to: "no" may have been a letter for another window.
    void ForgetUnsaved();
    /// Sets what was left unsaved; false, and nothing is set, when a value is refused.
    bool BringBack(const Recovery& recovery);

    // Frame_Files.cpp
    /// Opens a file; asks first when something is unsaved. False when it does not come to that.
    bool Open(const std::wstring& file);
    /// The first one: the window shows one file. Of the others it tells.
    void OpenFirst(const std::vector<std::wstring>& files);
    void TellOfOthers(std::size_t others);
    /// Files that fell on the window: what falls while another file loads is opened after it.
    void OpenDropped(const std::vector<std::wstring>& files);
    void OpenWaiting();
    /// False when the person thinks better of it.
    bool AskToSave();
    /// The file of a dialog; empty when the person thinks better of it.
    std::wstring Chosen(const std::function<std::wstring()>& choose);
    bool Save();
    bool SaveAs();
    /// Whether a project is as this window has read or written it.
    bool IsAsKnown(const std::wstring& path) const;
    bool SaveProject(const std::wstring& path);
    void SaveStream();
    void SayNotSaved(const std::wstring& path, const Problem& problem);
    void Export(int command);
    /// What the person wrote is no change of somebody else.
    void MarkAsRead(const std::wstring& path);
    /// Closes the file, and the window is as it was before one was opened.
    void CloseFile();
    /// What is open is open no longer; the lists still show it.
    void LetGo();
    void CheckDisk();
    void Close();
    bool OnQueryEnd();
    void OnEnd();

    // Frame_Values.cpp
    PointPage* PageOf(Kind kind);
    /// The values, as they are now, of all points that were changed since the file was
    /// opened: what was saved into a project before belongs into the next one too.
    std::vector<bench::PointValue> ValuesToSave() const;
    void MarkSaved();
    void OpenEditor(const PointId& id);
    void StartCell();
    /// A value that is being typed is entered before anything else is done.
    void EnterCells();
    void OnCellEntered(const PointId& id, const std::wstring& text);
    void Undo();
    void Redo();
    /// Sets all values or, where one is refused, none: the answer is false then.
    bool Apply(const std::vector<view::Change>& changes);
    void RefreshPoint(const PointId& id);
    void RefreshWiring();
    void AfterChange();
    drawing::Sheet ReadSheet();
    void SetUnits(bool isUs);
    void TakeBoxes();
    std::optional<PointId> PickedPoint();
    void PickPoint(const PointId& id);
    void OnPinPicked(const drawing::PinId& pin);
    void OnRowPicked(const PointId& id);
    std::optional<PointId> PointOf(const drawing::PinId& pin) const;
    std::optional<drawing::PinId> PinOf(const PointId& id) const;

    // Frame_Findings.cpp
    void ShowFindings();
    void ShowCountOfFindings();
    void GoToFinding(std::size_t row);
    void StepFinding(bool isForward);
    void ShowSource();
    void GoToSource(const FindingRow& finding);
    void SelectInSource(TextRange range, SourcePlace place);
    /// Line and column.
    static std::wstring WordsOf(SourcePlace place);

    struct DestroyTheTable {
        void operator()(HACCEL table) const noexcept { DestroyAcceleratorTable(table); }
    };
    using Keys = std::unique_ptr<std::remove_pointer_t<HACCEL>, DestroyTheTable>;

    Settings& settings_;
    Keys keys_;
    /// Those that mean something else in a field, and in one that is typed into.
    Keys listKeys_;
    Keys undoKeys_;
    /// Those that mean something else on the sheet.
    Keys columnKeys_;
    /// Those that mean something else outside of the source.
    Keys sourceKeys_;
    Scaling scaling_;
    std::optional<Fonts> fonts_;
    /// What words take in these fonts, in pixels.
    struct Room {
        int line = 0;
        int label = 0;
        int search = 0;
        int stop = 0;
        /// The parts of the status line after the message.
        std::array<int, 4> parts{};
    };
    Room room_;
    Images images_;
    Images disabledImages_;
    HWND toolbar_ = nullptr;
    HWND status_ = nullptr;
    HWND tabs_ = nullptr;
    HWND filterLabel_ = nullptr;
    HWND filter_ = nullptr;
    HWND findingsTitle_ = nullptr;
    HWND searchLabel_ = nullptr;
    HWND search_ = nullptr;
    HWND sourceTitle_ = nullptr;
    HWND sourceBox_ = nullptr;
    HWND progressLabel_ = nullptr;
    HWND progress_ = nullptr;
    HWND stop_ = nullptr;
    std::unique_ptr<SheetView> sheet_;
    std::array<std::unique_ptr<Splitter>, 3> splitters_;
    std::array<PointPage, kPointPages> pages_;
    std::vector<TypeRow> types_;
    Listing typeList_;
    std::unique_ptr<ListPane> typePane_;
    /// What was wrong with the load, and what the checks said.
    std::vector<FindingRow> checked_;
    BoxLog boxes_;
    /// These and the boxes, as they are shown.
    std::vector<FindingRow> findings_;
    /// The cells of each: weight, place, message, rule.
    std::vector<std::array<std::wstring, 4>> findingTexts_;
    Listing findingList_;
    std::unique_ptr<ListPane> findingPane_;
    std::size_t page_ = 0;
    bool isFindingsFiltered_ = false;

    std::unique_ptr<Session> session_;
    bool isLoaded_ = false;
    std::wstring file_;
    /// The file whose points the lists have, and the module of a project.
    std::wstring shownFile_;
    std::optional<ModuleKey> shownModule_;
    /// The module to open of a project that has several.
    std::optional<ModuleKey> module_;
    /// What fell on the window while a file was loaded.
    std::vector<std::wstring> waiting_;
    std::wstring project_;
    /// As this window read or wrote it.
    FileStamp projectStamp_;
    FileWatch watch_;
    History history_;
    RecoveryFile recovery_;
    /// The files of what was offered and not wanted.
    std::vector<std::wstring> notWanted_;
    bool isUs_ = false;
    /// What the status line tells.
    std::wstring said_;
    HWND lastFocus_ = nullptr;
    /// Where the keyboard was before it came to a splitter.
    HWND beforeSplitter_ = nullptr;
    int busy_ = 0;
    bool isLoading_ = false;
    DWORD loadStart_ = 0;
    bool isClosing_ = false;
    bool isEndAgreed_ = false;
    /// The window comes to the place where it was last.
    bool isPlacing_ = false;
    /// Whether the unsaved values are on the disk.
    bool isKept_ = false;
    bool isSourceShown_ = false;
    bool isSearchShown_ = false;
    /// The status line tells of the picked row.
    bool isRowTold_ = false;
    bool isPicking_ = false;
};

} // namespace view
