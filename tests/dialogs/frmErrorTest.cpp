#include "common/resource.h"
#include "tests/dialogs/Driver.h"
#include "tests/dialogs/HostPoint.h"
#include "tests/support/Clipboard.h"

#include "com/Counted.h"
#include "com/Object.h"
#include "core/RunTimeError.h"

#include <array>
#include <string>
#include <string_view>
#include <utility>

namespace dialogs {
namespace {

/// Milliseconds far below the minutes that an unbroken line of this length takes to draw;
/// with room for a slow machine.
constexpr ULONGLONG kNoMinutes = 180'000;

/// An error object of a host's own. The system's ends its texts at a NUL.
class OwnError final : public com::Counted<IErrorInfo> {
  public:
    explicit OwnError(std::wstring text) : text_(std::move(text)) {}
    STDMETHODIMP GetGUID(GUID*) override { return E_FAIL; }
    STDMETHODIMP GetSource(BSTR*) override { return E_FAIL; }
    STDMETHODIMP GetDescription(BSTR* text) override { return *text = com::Bstr(text_).Detach(), S_OK; }
    STDMETHODIMP GetHelpFile(BSTR*) override { return E_FAIL; }
    STDMETHODIMP GetHelpContext(DWORD*) override { return E_FAIL; }

  private:
    std::wstring text_;
};

/// A host's object that is asked for its XML node and fails with an error of its own.
class NoNode final : public com::DualObject<NoNode, IHostDocument> {
  public:
    explicit NoNode(const std::wstring& text) : error_(com::Ref<IErrorInfo>::Own(new OwnError(text))) {}
    static const CLSID& ClassId() noexcept { return CLSID_NULL; }
    STDMETHODIMP QueryInterface(REFIID iid, void** out) override {
        if (iid != __uuidof(IXMLDOMNode)) {
            return com::DualObject<NoNode, IHostDocument>::QueryInterface(iid, out);
        }
        *out = nullptr;
        SetErrorInfo(0, error_.Get());
        return E_FAIL;
    }
    STDMETHODIMP InterfaceSupportsErrorInfo(REFIID) override { return S_OK; }
    STDMETHODIMP get_View(IDispatch**) override { return E_NOTIMPL; }

  private:
    com::Ref<IErrorInfo> error_;
};

class frmErrorTest : public DialogTest {
  protected:
    /// A member that traps: an XML node that is none.
    void Report(Script script, IDispatch* node = nullptr) {
        const auto point = Attribute(kSigned, L"1").As<_CDBAttribute>();
        Next(std::move(script));
        EXPECT_EQ(point->XmlLoad(node), S_OK);
    }
    /// A report on this text: a field of a structure that fails with it once.
    void ReportText(const std::wstring& text, Script script) {
        HostPoint field(L"Field", L"1", L"Float");
        HostPoint structure(L"Structure", L"", L"Struct");
        structure.SetFields({&field});
        bool fails = false;
        field.object->Replace(L"Value", [&](auto) {
            if (fails) {
                throw tam::RunTimeError(NamedObject::kRaised, L"Host", text);
            }
            return com::Variant(std::wstring_view(L"1"));
        });
        Next([&](Shown& dialog) {
            fails = true;
            Next(std::move(script));
            dialog.DoubleClickRow(IDC_FIELDS, 0);
            fails = false;
            dialog.Click(IDCANCEL);
        });
        EXPECT_EQ(NewModule().As<ITamDialogs>()->EditValue(structure.object.Get()), S_OK);
    }
    /// A report on this text is drawn whole, and does not take minutes.
    void ExpectShownInNoMinutes(const std::wstring& text) {
        const ULONGLONG begin = GetTickCount64();
        ReportText(text, [&](Shown& dialog) {
            RedrawWindow(dialog.Window(), nullptr, nullptr, RDW_INVALIDATE | RDW_ALLCHILDREN | RDW_UPDATENOW);
            EXPECT_TRUE(dialog.Text(IDC_ERROR_DESCRIPTION) == text);
            dialog.Click(IDOK);
        });
        EXPECT_LT(GetTickCount64() - begin, kNoMinutes);
    }
    /// What Ctrl+C copies of a text box.
    static std::wstring Copied(const Shown& dialog, int id, int first, int last) {
        dialog.Select(id, first, last);
        // While another program has the clipboard open, the box copies nothing.
        const DWORD number = GetClipboardSequenceNumber();
        const ULONGLONG end = GetTickCount64() + kNoMinutes;
        do {
            SendMessageW(dialog.Control(id), WM_COPY, 0, 0);
        } while (GetClipboardSequenceNumber() == number && GetTickCount64() < end);
        const support::OpenedClipboard clipboard(dialog.Window());
        EXPECT_TRUE(clipboard);
        const HANDLE data = GetClipboardData(CF_UNICODETEXT);
        const std::wstring text = data != nullptr ? static_cast<const wchar_t*>(GlobalLock(data)) : L"";
        GlobalUnlock(data);
        return text;
    }
};

TEST_F(frmErrorTest, ShowsTheErrorAndFoldsItsAdvancedPart) {
    Report([](Shown& dialog) {
        EXPECT_EQ(dialog.Caption(), L"Gateway Object - Error report");
        EXPECT_EQ(dialog.Text(IDC_ERROR_TITLE), L"Gateway Object");
        EXPECT_EQ(dialog.Text(IDC_ERROR_LINE1), L"The application has reported the following error:");
        EXPECT_EQ(dialog.Text(IDC_ERROR_DESCRIPTION), support::kObjectNotSetText);
        EXPECT_EQ(dialog.Text(IDC_ERROR_ADVANCED), L"Advanced Information  > >");
        EXPECT_FALSE(dialog.IsVisible(IDC_ERROR_ADVANCED_INFO));
        EXPECT_EQ(dialog.DefaultButton(), IDOK);
        EXPECT_TRUE(dialog.HasFocus(IDOK));
        const int folded = dialog.Height();
        RECT button{};
        GetWindowRect(dialog.Control(IDOK), &button);
        RECT window{};
        GetWindowRect(dialog.Window(), &window);
        EXPECT_LT(button.right, window.right) << "the button is in sight";

        dialog.Click(IDC_ERROR_ADVANCED);
        EXPECT_EQ(dialog.Text(IDC_ERROR_ADVANCED), L"Advanced Information  < <");
        EXPECT_TRUE(dialog.IsVisible(IDC_ERROR_ADVANCED_INFO));
        EXPECT_GT(dialog.Height(), folded);
        EXPECT_EQ(dialog.Text(IDC_ERROR_ADVANCED_INFO),
                  L"* Source application (Err.Source): \r\n  O_Tam_id\r\n"
                  L"* Calling object (Me.Name or module name): \r\n  O_Tam_id Class Module CDBAttribute\r\n"
                  L"* Calling function: \r\n  Sub XmlLoad");

        dialog.Click(IDC_ERROR_ADVANCED);
        EXPECT_EQ(dialog.Height(), folded);
        EXPECT_FALSE(dialog.IsVisible(IDC_ERROR_ADVANCED_INFO));
        dialog.Click(IDOK);
    });
}

TEST_F(frmErrorTest, ItsTextsAreReadOnlyAndCanBeCopied) {
    Report([](Shown& dialog) {
        dialog.Click(IDC_ERROR_ADVANCED);
        for (const int id : {IDC_ERROR_DESCRIPTION, IDC_ERROR_ADVANCED_INFO}) {
            EXPECT_NE(GetWindowLongW(dialog.Control(id), GWL_STYLE) & ES_READONLY, 0);
            EXPECT_NE(GetWindowLongW(dialog.Control(id), GWL_STYLE) & WS_TABSTOP, 0);
            EXPECT_FALSE(dialog.Text(id).empty());
            EXPECT_EQ(Copied(dialog, id, 0, -1), dialog.Text(id));
            bool isReached = false;
            for (int stops = 0; stops < 4 && !isReached; ++stops) { // two buttons and two texts
                dialog.PressKey(VK_TAB);
                isReached = dialog.HasFocus(id);
            }
            EXPECT_TRUE(isReached) << id;
        }
        dialog.PressKey(VK_ESCAPE);
        EXPECT_FALSE(dialog.IsOpen());
    });
}

TEST_F(frmErrorTest, GrowsAndStaysOnTheScreen) {
    Report([](Shown& dialog) {
        MONITORINFO monitor{};
        monitor.cbSize = sizeof(monitor);
        GetMonitorInfoW(MonitorFromWindow(dialog.Window(), MONITOR_DEFAULTTONEAREST), &monitor);
        const RECT work = monitor.rcWork;
        RECT place{};
        GetWindowRect(dialog.Window(), &place);
        const int folded = place.bottom - place.top;
        SetWindowPos(dialog.Window(), nullptr, work.right - (place.right - place.left), work.bottom - folded,
                     0, 0, SWP_NOSIZE | SWP_NOZORDER);

        dialog.Click(IDC_ERROR_ADVANCED);
        GetWindowRect(dialog.Window(), &place);
        EXPECT_GT(place.bottom - place.top, folded);
        EXPECT_EQ(place.bottom, work.bottom);
        EXPECT_EQ(place.right, work.right);
        EXPECT_GE(place.top, work.top);
        EXPECT_GE(place.left, work.left);
        dialog.Click(IDOK);
    });
}

TEST_F(frmErrorTest, ShowsATextOfAMegabyteWholeInNoMinutes) {
    ExpectShownInNoMinutes(std::wstring(1 << 20, L'n'));
}

TEST_F(frmErrorTest, ShowsAMegabyteOfWordsInNoMinutes) {
    std::wstring text;
    while (text.size() < 1 << 20) {
        text += L"some words and ";
    }
    ExpectShownInNoMinutes(text);
}

TEST_F(frmErrorTest, WhoReadsALongTextGetsIt) {
    const std::wstring text = std::wstring(1200, L'x') + L" " + std::wstring(1200, L'y') + L"\r\nend";
    ReportText(text, [&](Shown& dialog) {
        const HWND box = dialog.Control(IDC_ERROR_DESCRIPTION);
        EXPECT_EQ(dialog.Text(IDC_ERROR_DESCRIPTION), text);
        EXPECT_EQ(GetWindowTextLengthW(box), static_cast<int>(text.size()));
        std::string narrow(text.size() + 1, 'z');
        EXPECT_EQ(GetWindowTextA(box, narrow.data(), static_cast<int>(narrow.size())),
                  static_cast<int>(text.size()));
        EXPECT_EQ(narrow.substr(0, text.size()), std::string(text.begin(), text.end()));
        std::array<wchar_t, 8> part{};
        part.fill(L'z');
        EXPECT_EQ(SendMessageW(box, WM_GETTEXT, 5, reinterpret_cast<LPARAM>(part.data())), 4);
        EXPECT_EQ(std::wstring(part.data(), part.size()),
                  (std::wstring{L'x', L'x', L'x', L'x', 0, L'z', L'z', L'z'}));
        EXPECT_EQ(SendMessageW(box, WM_GETTEXT, 0, 0), 0);
        EXPECT_EQ(Copied(dialog, IDC_ERROR_DESCRIPTION, 0, -1), text);
        EXPECT_EQ(Copied(dialog, IDC_ERROR_DESCRIPTION, 400, 600), std::wstring(197, L'x'))
            << "the break of the display between them is three characters long";
        EXPECT_GT(SendMessageW(box, EM_GETLINECOUNT, 0, 0), 6);
        dialog.Click(IDOK);
    });
}

TEST_F(frmErrorTest, ALineBreakOfOneCharacterIsOne) {
    const std::wstring text = L"a\nb\rc\r\nd";
    ReportText(text, [&](Shown& dialog) {
        EXPECT_EQ(SendMessageW(dialog.Control(IDC_ERROR_DESCRIPTION), EM_GETLINECOUNT, 0, 0), 4);
        EXPECT_EQ(dialog.Text(IDC_ERROR_DESCRIPTION), text) << "a reader has the text as it was given";
        EXPECT_EQ(Copied(dialog, IDC_ERROR_DESCRIPTION, 0, -1), L"a\r\nb\r\nc\r\nd");
        dialog.Click(IDOK);
    });
}

TEST_F(frmErrorTest, ATextGoesOnAfterANul) {
    const std::wstring text = L"before" + std::wstring(1, L'\0') + L"behind";
    const auto node = NoNode::Make(text);
    Report(
        [&](Shown& dialog) {
            EXPECT_EQ(dialog.Text(IDC_ERROR_DESCRIPTION), text) << "a reader has the text as it was given";
            EXPECT_EQ(Copied(dialog, IDC_ERROR_DESCRIPTION, 0, -1), L"before behind");
            dialog.Click(IDOK);
        },
        node.Get());
    SetErrorInfo(0, nullptr);
}

TEST_F(frmErrorTest, OpensOnTheScreenOverAWindowThatIsHalfOffIt) {
    RECT work{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    const POINT corners[] = {{work.right - 60, work.bottom - 40}, {work.left - 340, work.top - 260}};
    for (const POINT& corner : corners) {
        const HWND owner = CreateWindowExW(0, L"Static", L"host", WS_POPUP | WS_VISIBLE, corner.x, corner.y,
                                           400, 300, nullptr, nullptr, nullptr, nullptr);
        SetActiveWindow(owner);
        ASSERT_EQ(GetActiveWindow(), owner);
        Report([&](Shown& dialog) {
            EXPECT_EQ(GetWindow(dialog.Window(), GW_OWNER), owner);
            RECT place{};
            GetWindowRect(dialog.Window(), &place);
            const bool isRight = corner.x > work.left;
            EXPECT_EQ(isRight ? place.right : place.left, isRight ? work.right : work.left);
            EXPECT_EQ(isRight ? place.bottom : place.top, isRight ? work.bottom : work.top);
            dialog.Click(IDOK);
        });
        DestroyWindow(owner);
    }
}

} // namespace
} // namespace dialogs
