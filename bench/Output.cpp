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

// Painted texts have the usual control sequences: ESC [ numbers m.
constexpr std::string_view kBegin = "\x1b[";
constexpr char kEnd = 'm';
constexpr std::string_view kPlain = "\x1b[0m";

std::string_view SequenceOf(Ink ink) {
    switch (ink) {
    case Ink::Heading:
        return "\x1b[1m";
    case Ink::Fault:
        return "\x1b[31m";
    case Ink::Good:
        return "\x1b[32m";
    default:
        return "\x1b[33m";
    }
}

/// The attributes of a console after one number of a sequence.
WORD AttributesAfter(unsigned number, WORD now, WORD plain) {
    constexpr unsigned kFirstColour = 30;
    constexpr unsigned kColours = 8;
    constexpr unsigned kForeground = FOREGROUND_BLUE | FOREGROUND_GREEN | FOREGROUND_RED;
    const unsigned others = now & ~kForeground;
    if (number == 0) {
        return plain;
    }
    if (number == 1) { // bright, or another colour where all is bright
        return (plain & FOREGROUND_INTENSITY) == 0
                   ? static_cast<WORD>(now | FOREGROUND_INTENSITY)
                   : static_cast<WORD>(others | FOREGROUND_GREEN | FOREGROUND_BLUE);
    }
    if (number < kFirstColour || number >= kFirstColour + kColours) {
        return now;
    }
    const unsigned colour = number - kFirstColour; // red, green and blue from the lowest bit on
    const unsigned bits = ((colour & 1U) != 0 ? FOREGROUND_RED : 0U) |
                          ((colour & 2U) != 0 ? FOREGROUND_GREEN : 0U) |
                          ((colour & 4U) != 0 ? FOREGROUND_BLUE : 0U);
    return static_cast<WORD>(others | bits | FOREGROUND_INTENSITY);
}

/// The attributes after a sequence's numbers, "1;31".
WORD AttributesAfter(std::string_view numbers, WORD now, WORD plain) {
    unsigned number = 0;
    for (const char c : numbers) {
        if (c == ';') {
            now = AttributesAfter(number, now, plain);
            number = 0;
        } else {
            number = number * 10 + static_cast<unsigned>(c - '0');
        }
    }
    return AttributesAfter(number, now, plain);
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
bool WritePainted(HANDLE console, std::string_view text) {
    CONSOLE_SCREEN_BUFFER_INFO info{};
    GetConsoleScreenBufferInfo(console, &info);
    WORD now = info.wAttributes;
    bool isWritten = true;
    while (!text.empty()) {
        const std::size_t begin = std::min(text.find(kBegin), text.size());
        isWritten = WriteToConsole(console, text.substr(0, begin)) && isWritten;
        text.remove_prefix(begin);
        const std::size_t end = text.find_first_not_of("0123456789;", kBegin.size());
        if (text.empty() || end == std::string_view::npos) {
            break;
        }
        if (text[end] == kEnd) {
            now = AttributesAfter(text.substr(kBegin.size(), end - kBegin.size()), now, info.wAttributes);
            SetConsoleTextAttribute(console, now);
        }
        text.remove_prefix(end + 1);
    }
    SetConsoleTextAttribute(console, info.wAttributes);
    return isWritten;
}

bool Show(std::FILE* file, DWORD which, std::string_view text) {
    const HANDLE handle = GetStdHandle(which);
    const bool isPainted = IsConsole(handle) && text.find(kBegin) != std::string_view::npos;
    return isPainted ? WritePainted(handle, text) : Write(file, handle, text);
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
    return std::string(SequenceOf(ink)) + std::string(text) + std::string(kPlain);
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
