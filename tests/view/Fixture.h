#pragma once

#include "tests/bench/BenchRun.h"
#include "tests/view/UserState.h"
#include "tests/view/Viewer.h"
#include "view/resource.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>

namespace viewtest {

using benchtest::Narrow;

/// What of the screen no bar covers.
RECT WorkArea();

/// A number text with "." as this machine's user writes it.
std::wstring Local(const std::string& number);

/// A user who has never opened the window, and a folder for the files of the test.
class ViewTest : public testing::Test {
  protected:
    ViewTest();
    ~ViewTest() override;

    /// The file of a sample stream; one that may be changed.
    static std::wstring Sample(const std::wstring& name);
    static std::wstring OwnSample(const std::wstring& name);
    /// A file of the test's folder; the path when nothing is to be written.
    static std::wstring FileNamed(const std::wstring& name);
    static std::wstring FileWith(const std::wstring& name, const std::string& text);
    static bool IsFile(const std::wstring& path);
    static std::string BytesOf(const std::wstring& path) { return benchtest::ReadFileBytes(path); }

    /// Waits until a file with so many attributes is open.
    static void AwaitAttributes(const Viewer& viewer, int count);
    /// Has the viewer load larger and larger files until one takes long enough to show the
    /// button that stops it, and does something about it then. True when that ended the loading.
    static bool StopsBy(const Viewer& viewer, const std::function<void()>& act);
    /// The same; true when it was still loading after what was done.
    static bool LoadsDuring(const Viewer& viewer, const std::function<void()>& act);

  private:
    /// Has larger and larger files loaded until one takes so long that the act, which gets the
    /// number of its attributes, says that it did its work meanwhile.
    static bool LoadsLongEnough(const Viewer& viewer, const std::function<bool(int attributes)>& act);

    UserState user_;
};

/// The numbers of points in the sample "channels".
inline constexpr int kAttributes = 11;
inline constexpr int kInputs = 3;
inline constexpr int kOutputs = 5;

/// A window with the sample "channels", in a file that may be changed.
class OpenedTest : public ViewTest {
  protected:
    OpenedTest() : file_(OwnSample(L"channels.xml")), viewer_({file_}) {
        AwaitAttributes(viewer_, kAttributes);
    }

    std::wstring file_;
    Viewer viewer_;
};

/// A stream of so many points: a third each of attributes, inputs and outputs.
std::string LargeStream(int points);

} // namespace viewtest
