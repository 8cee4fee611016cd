#pragma once

#include "view/model/Listing.h"
#include "view/Settings.h"
#include "view/Window.h"

#include <windows.h>

#include <commctrl.h>

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace view {

/// A text with no more letters than there is room for. The sign at its end tells that there
/// are more.
std::wstring Shortened(std::wstring text, std::size_t room);

/// A virtual list in report view over a listing: it asks for what it shows, so a long
/// list costs no more than a short one.
class ListPane {
  public:
    struct Column {
        UINT title = 0;
        /// Pixels at 96 dots to the inch.
        int width = 0;
        bool isNumber = false;
    };
    struct Source {
        std::function<std::wstring(std::size_t row, std::size_t column)> cell;
        /// Not needed: whether a row is bold, and the colour of its text.
        std::function<bool(std::size_t row)> isBold = {};
        std::function<std::optional<COLORREF>(std::size_t row)> colour = {};
    };
    struct Events {
        std::function<void(std::size_t row)> picked = {};
        /// Double click or Enter.
        std::function<void(std::size_t row)> opened = {};
        /// A letter was typed into the list.
        std::function<void(wchar_t letter)> typed = {};
        /// A value was typed into the cell of a row.
        std::function<void(std::size_t row, const std::wstring& text)> entered = {};
        /// The words of what went wrong in one of these.
        std::function<void(const std::wstring& words)> failed = {};
    };

    /// `key` names the list in the settings, `name` to a screen reader.
    ListPane(HWND parent, int id, const wchar_t* key, UINT name, std::vector<Column> columns,
             Listing& listing, Source source, Events events);
    ~ListPane();
    ListPane(const ListPane&) = delete;
    ListPane& operator=(const ListPane&) = delete;

    HWND Handle() const noexcept { return list_; }
    void Read(const Settings& settings);
    void Write(const Settings& settings) const;
    void SetFonts(const Fonts& fonts, Scaling scaling);
    /// The system's, as they are now.
    void SetColours();

    /// The listing shows other rows. The picked row stays picked, when it is still shown.
    void Update();
    /// The rows are others: the one that was picked is none of them.
    void Forget();
    /// The cells of a row changed.
    void Redraw(std::size_t row);
    void RedrawAll();
    /// None when no row has the focus.
    std::optional<std::size_t> Picked() const;
    /// Picks a row and brings it into sight; false when the filter hides it.
    bool Pick(std::size_t row);
    void SelectAll();
    /// The selected rows as lines, with tabs between the cells.
    std::wstring SelectedText() const;

    std::size_t Columns() const noexcept { return columns_.size(); }
    std::wstring Title(std::size_t column) const { return Text(columns_.at(column).title); }
    const std::optional<SortOrder>& Order() const noexcept { return listing_.Order(); }
    /// As a click on the column's heading.
    void Sort(std::size_t column);
    int WidthOf(std::size_t column) const noexcept;
    /// Makes each column as wide as its title and the texts of the rows that are shown.
    void FitColumns();
    /// The column that Widen is about, brought into sight; at first the left one. The answer
    /// is that column.
    std::size_t StepColumn(bool isForward);
    std::size_t Widen(bool isWider);
    /// Where on the screen a menu of the picked row comes up: below its name.
    POINT PlaceOfMenu() const;

    /// Opens a field over a cell of the picked row.
    void EditCell(std::size_t column, const std::wstring& text);
    /// Closes the field as the end of typing does: what stands in it is entered.
    void EnterCell() { EndCell(true); }
    bool IsTyped() const noexcept { return cell_ != nullptr; }

    /// What the list tells its parent.
    LRESULT OnNotify(NMHDR& head);

  private:
    static LRESULT CALLBACK OnListMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                          UINT_PTR id, DWORD_PTR data) noexcept;
    static LRESULT CALLBACK OnCellMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam,
                                          UINT_PTR id, DWORD_PTR data) noexcept;
    /// Of a row that is shown.
    RECT CellAreaOf(std::size_t row, std::size_t column) const;
    /// False when it fails; the events' owner has the words then.
    bool Do(const std::function<void()>& act) const noexcept;
    LRESULT OnDraw(NMLVCUSTOMDRAW& draw) const;
    void ShowOrder();
    void ShowColumn();
    void EndCell(bool isTaken);

    HWND list_;
    HWND cell_ = nullptr;
    HWND cellLabel_ = nullptr;
    std::size_t cellRow_ = 0;
    std::size_t column_ = 0;
    std::wstring key_;
    std::vector<Column> columns_;
    Listing& listing_;
    Source source_;
    Events events_;
    HFONT bold_ = nullptr;
    Scaling scaling_;
    /// The row that was picked last, to find it again where it is shown.
    std::optional<std::size_t> picked_;
    bool isUpdating_ = false;
};

} // namespace view
