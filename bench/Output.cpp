#include "bench/Output.h"

#include "bench/Text.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace bench {

namespace {

// Inside a text for a coloured terminal: kMark, the letter of the ink, and at the end of
// the painted part kMark and kPlain. They never leave this file.
constexpr char kMark = '\x1b';
constexpr char kPlain = '0';
constexpr std::string_view kLetters = "hfgn";

WORD AttributesOf(char letter, WORD plain) {
    constexpr WORD kBackground = BACKGROUND_BLUE | BACKGROUND_GREEN | BACKGROUND_RED | BACKGROUND_INTENSITY;
    const auto background = static_cast<WORD>(plain & kBackground);
    switch (letter) {
    case 'h': // bright, or another colour where all is bright
        return (plain & FOREGROUND_INTENSITY) == 0
                   ? static_cast<WORD>(plain | FOREGROUND_INTENSITY)
                   : static_cast<WORD>(background | FOREGROUND_GREEN | FOREGROUND_BLUE |
                                       FOREGROUND_INTENSITY);
    case 'f':
        return static_cast<WORD>(background | FOREGROUND_RED | FOREGROUND_INTENSITY);
    case 'g':
        return static_cast<WORD>(background | FOREGROUND_GREEN);
    case 'n':
        return static_cast<WORD>(background | FOREGROUND_RED | FOREGROUND_GREEN);
    default:
        return plain;
    }
}

bool IsConsole(HANDLE handle) {
    DWORD mode = 0;
    return GetConsoleMode(handle, &mode) != FALSE;
}

/// A console takes characters: of bytes, which arrive one by one, it would make none.
bool WriteToConsole(HANDLE console, std::string_view text) {
    constexpr std::size_t kPiece = 4096;
    const std::wstring wide = Wide(text);
    for (std::size_t at = 0; at < wide.size(); at += kPiece) {
        const auto size = static_cast<DWORD>(std::min(kPiece, wide.size() - at));
        DWORD written = 0;
        if (WriteConsoleW(console, wide.data() + at, size, &written, nullptr) == FALSE || written != size) {
            return false;
        }
    }
    return true;
}

bool Write(std::FILE* file, HANDLE handle, std::string_view text) {
    if (IsConsole(handle)) {
        return WriteToConsole(handle, text);
    }
    const bool isWritten = std::fwrite(text.data(), 1, text.size(), file) == text.size();
    return std::fflush(file) == 0 && isWritten;
}

/// A painted text for a terminal: console colours work on every Windows and in Wine,
/// control sequences do not.
bool WritePainted(std::FILE* file, HANDLE console, std::string_view text) {
    CONSOLE_SCREEN_BUFFER_INFO info{};
    GetConsoleScreenBufferInfo(console, &info);
    bool isWritten = true;
    while (!text.empty()) {
        const std::size_t mark = std::min(text.find(kMark), text.size());
        isWritten = Write(file, console, text.substr(0, mark)) && isWritten;
        text.remove_prefix(mark);
        if (text.size() >= 2) {
            SetConsoleTextAttribute(console, AttributesOf(text[1], info.wAttributes));
            text.remove_prefix(2);
        } else {
            text = {};
        }
    }
    SetConsoleTextAttribute(console, info.wAttributes);
    return isWritten;
}

bool Show(std::FILE* file, DWORD which, std::string_view text) {
    const HANDLE handle = GetStdHandle(which);
    const bool isPainted = IsConsole(handle) && text.find(kMark) != std::string_view::npos;
    return isPainted ? WritePainted(file, handle, text) : Write(file, handle, text);
}

Screen ScreenOf(DWORD handle) {
    constexpr std::size_t kNarrowest = 40;
    Screen screen;
    DWORD mode = 0;
    CONSOLE_SCREEN_BUFFER_INFO info{};
    const HANDLE console = GetStdHandle(handle);
    if (GetConsoleMode(console, &mode) == FALSE || GetConsoleScreenBufferInfo(console, &info) == FALSE) {
        return screen;
    }
    // A line that fills its row would be followed by an empty one.
    const int columns = std::min<int>(info.srWindow.Right - info.srWindow.Left, info.dwSize.X - 1);
    screen.width = std::max(kNarrowest, static_cast<std::size_t>(std::max(columns, 0)));
    screen.isTerminal = true;
    const char* const noColor = std::getenv("NO_COLOR");
    screen.isColoured = noColor == nullptr || *noColor == '\0';
    return screen;
}

} // namespace

Screen OutputScreen() {
    return ScreenOf(STD_OUTPUT_HANDLE);
}

Screen ErrorScreen() {
    return ScreenOf(STD_ERROR_HANDLE);
}

std::string Painted(std::string_view text, Ink ink, const Screen& screen) {
    if (!screen.isColoured) {
        return std::string(text);
    }
    return std::string{kMark, kLetters[static_cast<std::size_t>(ink)]} + std::string(text) + kMark + kPlain;
}

bool Print(const std::string& text) {
    const bool isWritten = Show(stdout, STD_OUTPUT_HANDLE, text);
    if (!isWritten) {
        Complain("tambench: the output cannot be written\n");
    }
    return isWritten;
}

void Complain(const std::string& text) {
    static_cast<void>(Show(stderr, STD_ERROR_HANDLE, text));
}

void ShowProgress(std::string_view line) {
    const Screen screen = ErrorScreen();
    if (screen.isTerminal) {
        const std::string blanks(screen.width, ' ');
        static_cast<void>(
            Write(stderr, GetStdHandle(STD_ERROR_HANDLE), "\r" + blanks + "\r" + std::string(line)));
    }
}

} // namespace bench
