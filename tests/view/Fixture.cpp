#include "tests/view/Fixture.h"

#include <cstddef>

namespace viewtest {

namespace {

std::wstring Folder() {
    const std::wstring folder = benchtest::ScratchFolder() + L"view\\";
    CreateDirectoryW(folder.c_str(), nullptr);
    return folder;
}

void Clear(const std::wstring& folder) {
    WIN32_FIND_DATAW found{};
    const HANDLE search = FindFirstFileW((folder + L"*").c_str(), &found);
    do {
        DeleteFileW((folder + found.cFileName).c_str());
    } while (FindNextFileW(search, &found) != FALSE);
    FindClose(search);
}

} // namespace

RECT WorkArea() {
    RECT room{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &room, 0);
    return room;
}

std::wstring Local(const std::string& number) {
    const std::string local = benchtest::Local(number);
    std::wstring wide(local.size(), L'\0');
    wide.resize(
        static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, local.data(), static_cast<int>(local.size()),
                                                     wide.data(), static_cast<int>(wide.size()))));
    return wide;
}

ViewTest::ViewTest() : user_(Folder()) {
    ForgetUnsaved();
}

ViewTest::~ViewTest() {
    ForgetUnsaved();
    Clear(Folder());
}

bool ViewTest::LoadsLongEnough(const Viewer& viewer, const std::function<bool(int attributes)>& act) {
    constexpr int kLargest = 400000;
    for (int points = 20000; points < kLargest; points *= 4) {
        const int attributes = (points + 2) / 3;
        viewer.Drop({FileWith(L"large" + std::to_wstring(points) + L".xml", LargeStream(points))});
        Await("the button",
              [&] { return viewer.IsVisible(IDC_STOP) || viewer.Count(IDC_ATTRIBUTES) == attributes; });
        if (act(attributes)) {
            return true;
        }
    }
    return false;
}

bool ViewTest::StopsBy(const Viewer& viewer, const std::function<void()>& act) {
    return LoadsLongEnough(viewer, [&](int attributes) {
        act();
        Await("the end of loading", [&] { return viewer.IsEnabled(IDM_FILE_OPEN); });
        return viewer.Count(IDC_ATTRIBUTES) != attributes;
    });
}

bool ViewTest::LoadsDuring(const Viewer& viewer, const std::function<void()>& act) {
    return LoadsLongEnough(viewer, [&](int attributes) {
        act();
        const bool isLoading = viewer.IsVisible(IDC_STOP);
        if (!isLoading) {
            AwaitAttributes(viewer, attributes);
        }
        return isLoading;
    });
}

std::wstring ViewTest::Sample(const std::wstring& name) {
    return benchtest::SamplesFolder() + L"streams\\" + name;
}

std::wstring ViewTest::OwnSample(const std::wstring& name) {
    EXPECT_TRUE(CopyFileW(Sample(name).c_str(), FileNamed(name).c_str(), FALSE))
        << "error " << GetLastError();
    return FileNamed(name);
}

std::wstring ViewTest::FileNamed(const std::wstring& name) {
    return Folder() + name;
}

std::wstring ViewTest::FileWith(const std::wstring& name, const std::string& text) {
    const HANDLE file = CreateFileW(FileNamed(name).c_str(), GENERIC_WRITE, FILE_SHARE_READ, nullptr,
                                    CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    DWORD written = 0;
    WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
    CloseHandle(file);
    EXPECT_EQ(text.size(), written);
    return FileNamed(name);
}

bool ViewTest::IsFile(const std::wstring& path) {
    return GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES;
}

void ViewTest::AwaitAttributes(const Viewer& viewer, int count) {
    Await(std::to_string(count) + " attributes in the list",
          [&] { return viewer.Count(IDC_ATTRIBUTES) == count && viewer.IsEnabled(IDM_FILE_OPEN); });
}

std::string LargeStream(int points) {
    std::string inputs;
    std::string outputs;
    std::string attributes;
    for (int i = 0; i < points; ++i) {
        const std::string number = std::to_string(i);
        const std::string address = "<LOGICALADDRESS>" + number + "</LOGICALADDRESS>";
        if (i % 3 == 0) {
            attributes += "<A" + number + "><SNVTTYPE>8</SNVTTYPE>" + address + "<VALUE>" +
                          std::to_string(i % 1000) + "</VALUE></A" + number + ">\n";
        } else if (i % 3 == 1) {
            inputs += "<I" + number + "><SNVTTYPE>81</SNVTTYPE>" + address +
                      "<SNVTCOMPATIBILITYLIST>81</SNVTCOMPATIBILITYLIST><PROTOCOLREFERENCE>0000"
                      "</PROTOCOLREFERENCE></I" +
                      number + ">\n";
        } else {
            outputs += "<O" + number + "><SNVTTYPE>105</SNVTTYPE>" + address + "</O" + number + ">\n";
        }
    }
    return "<Tam><Name>Large</Name><DevKey>K7</DevKey><IsLastOnDev>0</IsLastOnDev><TamObjID>1</TamObjID>\n"
           "<InReferences>\n" +
           inputs + "</InReferences>\n<OutReferences>\n" + outputs + "</OutReferences>\n<Attributes>\n" +
           attributes + "</Attributes>\n</Tam>\n";
}

} // namespace viewtest
