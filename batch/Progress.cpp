#include "batch/Progress.h"

#include <utility>

namespace batch {

namespace {

bool StartsCharacter(char c) {
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
}

std::size_t Width(std::string_view text) {
    std::size_t width = 0;
    for (const char c : text) {
        width += StartsCharacter(c) ? 1U : 0U;
    }
    return width;
}

/// The end of a text: of a path that is where files differ.
std::string End(std::string_view text, std::size_t width) {
    if (Width(text) <= width) {
        return std::string(text);
    }
    std::size_t begin = text.size();
    for (std::size_t seen = 1; begin > 0 && seen < width; --begin) {
        seen += StartsCharacter(text[begin - 1]) ? 1U : 0U;
    }
    return width == 0 ? std::string() : "…" + std::string(text.substr(begin));
}

std::string TimeLeft(std::chrono::milliseconds left) {
    constexpr long long kMinute = 60;
    const long long seconds = (left.count() + 999) / 1000;
    return seconds < kMinute ? std::to_string(seconds) + " s left"
                             : std::to_string((seconds + kMinute - 1) / kMinute) + " min left";
}

} // namespace

std::string ProgressLine(std::size_t done, std::size_t total, std::string_view name,
                         std::chrono::milliseconds elapsed, std::size_t width) {
    const std::string count = std::to_string(done) + " of " + std::to_string(total) + "  ";
    std::string left;
    if (done > 0) {
        const auto each = static_cast<double>(elapsed.count()) / static_cast<double>(done);
        const auto rest = static_cast<long long>(each * static_cast<double>(total - done));
        left = "  " + TimeLeft(std::chrono::milliseconds(rest));
    }
    const std::size_t taken = count.size() + left.size();
    return count + End(name, width > taken ? width - taken : 0) + left;
}

Progress::Progress(ShowLine show, std::size_t total, std::size_t width)
    : show_(std::move(show)), total_(total), width_(width) {}

Progress::~Progress() {
    Clear();
}

void Progress::At(std::size_t done, std::string_view name) {
    if (show_) {
        const auto elapsed = std::chrono::steady_clock::now() - started_;
        show_(ProgressLine(done, total_, name, std::chrono::duration_cast<std::chrono::milliseconds>(elapsed),
                           width_));
        isShown_ = true;
    }
}

void Progress::Clear() {
    if (std::exchange(isShown_, false)) {
        show_("");
    }
}

} // namespace batch
