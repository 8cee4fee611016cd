#include "tests/fault/ModuleFaultTest.h"

#include "component/resource.h"

// The value editors, opened, typed into and confirmed as by a user.

namespace {

using namespace fault;
using namespace modules;
using namespace support;

constexpr UINT kEdit = WM_APP;

class EditFaultTest : public ModuleFaultTest {
  protected:
    void SetUp() override {
        ModuleFaultTest::SetUp();
        runner_ = CreateWindowExW(0, L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr, nullptr, nullptr);
        SetWindowLongPtrW(runner_, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(&EditFaultTest::Procedure));
        Watcher().OnBox([this](HWND window, const bench::Box& box) {
            // Reports and messages are answered plainly.
            const bool isEditor = !box.isMessageBox && GetDlgItem(window, IDC_NEW_VALUE) != nullptr;
            if (isEditor) {
                PostMessageW(runner_, kEdit, 0, reinterpret_cast<LPARAM>(window));
            }
            return isEditor;
        });
    }
    void TearDown() override {
        Watcher().OnBox(nullptr);
        DestroyWindow(runner_);
        attribute_.Reset();
        ModuleFaultTest::TearDown();
    }

    Job Editing(const char* name, const wchar_t* attribute) {
        Job job;
        job.name = name;
        job.prepare = [this, attribute] {
            module_ = Loaded(SmallStream());
            attribute_ = Attribute(module_, attribute);
        };
        job.run = [this] { return Left{attribute_->SetValue(), {}, {}}; };
        job.read = [this] { return std::vector<std::wstring>{Text(attribute_, &IAttribute::get_Value)}; };
        job.release = [this] {
            attribute_.Reset();
            module_.Reset();
        };
        job.judge = [](const Case& run) {
            // The value is the new one or the old one, never another.
            const auto& value = run.left.fields;
            EXPECT_TRUE(value == run.untouched.fields || value == run.before.fields);
            if (run.HasFailed()) {
                EXPECT_EQ(value, run.before.fields);
            }
        };
        return job;
    }

  private:
    /// Types a 7 over what is there and confirms; cancels when that fails.
    static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        if (message != kEdit) {
            return DefWindowProcW(window, message, wParam, lParam);
        }
        const auto dialog = reinterpret_cast<HWND>(lParam);
        if (IsWindow(dialog) == FALSE) {
            return 0;
        }
        ShowWindow(dialog, SW_SHOW);
        const HWND box = GetDlgItem(dialog, IDC_NEW_VALUE);
        SendMessageW(box, EM_SETSEL, 0, -1);
        SendMessageW(box, WM_CHAR, L'7', 1);
        for (const WPARAM button : {WPARAM{IDOK}, WPARAM{IDCANCEL}}) {
            if (IsWindow(dialog) != FALSE && IsWindowVisible(dialog) != FALSE) {
                SendMessageW(dialog, WM_COMMAND, button, 0);
            }
        }
        if (IsWindow(dialog) != FALSE && IsWindowVisible(dialog) != FALSE) {
            ADD_FAILURE() << "the editor cannot be closed";
            EndDialog(dialog, 0);
        }
        return 0;
    }

    HWND runner_ = nullptr;
    com::Ref<IAttribute> attribute_;
};

TEST_F(EditFaultTest, Text) {
    Job job = Editing("SetValue of a text", L"Attribute_first");
    job.kinds = {Kind::Memory, Kind::Text};
    job.reports = {L"Sub txtNewCPValue_Change"};
    Loop().Run(job);
}

TEST_F(EditFaultTest, Number) {
    Job job = Editing("SetValue of a number", L"Attribute_second");
    job.kinds = {Kind::Memory, Kind::Text};
    job.reports = {L"Sub txtNewCPValue_Change", L"Sub txtNewCPValue_KeyPress"};
    Loop().Run(job);
}

} // namespace
