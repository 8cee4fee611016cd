#include "tests/bench/DeviceRun.h"

#include <gtest/gtest.h>

#include <cstddef>

namespace benchtest {

Json ChannelOf(const Json& document, const std::string& key) {
    for (const Json& channel : document.at("channels")) {
        if (channel.at("objectKey") == key) {
            return channel;
        }
    }
    ADD_FAILURE() << "no channel " << key;
    return nullptr;
}

std::vector<std::string> Hidden(const Json& points) {
    std::vector<std::string> names;
    for (const Json& point : points) {
        if (point.at("visible") == false) {
            names.push_back(point.at("name"));
        }
    }
    return names;
}

std::wstring SavedDevice(const wchar_t* name, std::vector<std::wstring> arguments) {
    const std::wstring file = ScratchFolder() + name;
    arguments.insert(arguments.begin(), {L"device", L"save"});
    arguments.insert(arguments.end(), {L"-o", file});
    const Outcome run = RunBench(arguments);
    EXPECT_EQ(0U, run.status) << run.err;
    return file;
}

std::wstring WrittenFile(const wchar_t* name, std::string_view text) {
    const std::wstring path = ScratchFolder() + name;
    const HANDLE file =
        CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    DWORD written = 0;
    WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr);
    CloseHandle(file);
    EXPECT_EQ(text.size(), written) << Narrow(path);
    ForgetRunsOf(path);
    return path;
}

std::string Replaced(std::string text, std::string_view part, std::string_view by) {
    const std::size_t at = text.find(part);
    EXPECT_NE(std::string::npos, at) << "no " << part << " in\n" << text;
    return at != std::string::npos ? text.replace(at, part.size(), by) : text;
}

} // namespace benchtest
