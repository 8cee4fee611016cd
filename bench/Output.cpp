#include "bench/Output.h"

#include <cstdio>

namespace bench {

namespace {

bool Write(std::FILE* file, const std::string& text) {
    const bool isWritten = std::fwrite(text.data(), 1, text.size(), file) == text.size();
    return std::fflush(file) == 0 && isWritten;
}

} // namespace

bool Print(const std::string& text) {
    const bool isWritten = Write(stdout, text);
    if (!isWritten) {
        Complain("tambench: the output cannot be written\n");
    }
    return isWritten;
}

void Complain(const std::string& text) {
    static_cast<void>(Write(stderr, text));
}

} // namespace bench
