// The entry of a libFuzzer program; TAM_FUZZ_SUBJECT is its subject's function.
#include "Subjects.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    tam::fuzz::Input input(data, size);
    tam::fuzz::TAM_FUZZ_SUBJECT(input);
    return 0;
}
