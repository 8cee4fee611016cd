#include "common/RunTimeError.h"
#include "Mutator.h"
#include "Subjects.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

// The subjects of the fuzzers as a test: each file of the corpus as it stands,
// then inputs made from them, the same ones at each run.

namespace tam::fuzz {
namespace {

using Bytes = std::vector<std::uint8_t>;

/// The corpus lies where the sources do; TAM_FUZZ_CORPUS says it otherwise.
std::filesystem::path Corpus(const std::string& subject) {
    const char* given = std::getenv("TAM_FUZZ_CORPUS");
    return std::filesystem::path(given != nullptr ? given : TAM_FUZZ_CORPUS) / subject;
}

std::vector<std::pair<std::string, Bytes>> Files(const std::string& subject) {
    std::vector<std::pair<std::string, Bytes>> files;
    for (const auto& entry : std::filesystem::directory_iterator(Corpus(subject))) {
        std::ifstream file(entry.path(), std::ios::binary);
        files.emplace_back(entry.path().filename().string(),
                           Bytes(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()));
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::string Hexadecimal(const Bytes& bytes) {
    std::string text;
    for (const std::uint8_t byte : bytes) {
        text += "0123456789abcdef"[byte / 16];
        text += "0123456789abcdef"[byte % 16];
    }
    return text;
}

/// False when a property is broken.
bool Holds(const Subject& subject, const Bytes& bytes, const std::string& what) {
    Input input(bytes.data(), bytes.size());
    try {
        subject.run(input);
        return true;
    } catch (const BrokenProperty& broken) {
        ADD_FAILURE() << what << ": " << broken.what() << "\ninput (hex): " << Hexadecimal(bytes);
    } catch (const RunTimeError& error) {
        ADD_FAILURE() << what << ": run-time error " << error.Number()
                      << "\ninput (hex): " << Hexadecimal(bytes);
    }
    return false;
}

class FuzzCoreTest : public testing::TestWithParam<Subject> {};

TEST_P(FuzzCoreTest, HoldsForTheCorpus) {
    const auto files = Files(GetParam().name);
    EXPECT_FALSE(files.empty());
    for (const auto& [name, bytes] : files) {
        Holds(GetParam(), bytes, name);
    }
    Holds(GetParam(), {}, "nothing");
}

TEST_P(FuzzCoreTest, HoldsForInputsMadeFromTheCorpus) {
    constexpr unsigned kSeed = 20250307;
    constexpr int kInputs = 6000;
    std::vector<Bytes> pool;
    for (auto& file : Files(GetParam().name)) {
        pool.push_back(std::move(file.second));
    }
    Mutator mutator(kSeed);
    for (int i = 0; i < kInputs; ++i) {
        if (!Holds(GetParam(), mutator.Make(pool), "input " + std::to_string(i))) {
            return;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Subjects, FuzzCoreTest, testing::ValuesIn(kSubjects),
                         [](const auto& subject) { return std::string(subject.param.name); });

} // namespace
} // namespace tam::fuzz
