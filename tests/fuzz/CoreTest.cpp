#include "core/RunTimeError.h"
#include "Mutator.h"
#include "Subjects.h"
#include "tests/Places.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <ios>
#include <iterator>
#include <span>
#include <string>
#include <utility>
#include <vector>

// The subjects of the fuzzers as a test: each file of the corpus as it stands,
// then inputs made from them, the same ones at each run.

namespace tam::fuzz {
namespace {

using Bytes = std::vector<std::uint8_t>;

std::filesystem::path Corpus(const std::string& subject) {
    return tests::TopFolder() / "tests" / "fuzz" / "corpus" / subject;
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

std::string Shown(const Bytes& bytes) {
    constexpr std::size_t kMostShown = 4000;
    std::string text = "\ninput (" + std::to_string(bytes.size()) + " bytes, hex): ";
    for (const std::uint8_t byte : std::span(bytes).first(std::min(bytes.size(), kMostShown))) {
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
        ADD_FAILURE() << what << ": " << broken.what() << Shown(bytes);
    } catch (const RunTimeError& error) {
        ADD_FAILURE() << what << ": run-time error " << error.Number() << Shown(bytes);
    }
    return false;
}

class CoreFuzzTest : public testing::TestWithParam<Subject> {};

TEST_P(CoreFuzzTest, HoldsForTheCorpus) {
    const auto files = Files(GetParam().name);
    EXPECT_FALSE(files.empty());
    for (const auto& [name, bytes] : files) {
        Holds(GetParam(), bytes, name);
    }
    Holds(GetParam(), {}, "nothing");
}

TEST_P(CoreFuzzTest, HoldsForInputsMadeFromTheCorpus) {
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

// A million bytes inside of a good input: no text is too long, nor takes time
// with the square of its length, for which the program's time limit is too short.
TEST_P(CoreFuzzTest, HoldsForLongInputs) {
    const std::size_t length = GetParam().isLinear ? 1000000 : 1000;
    const Bytes good = Files(GetParam().name).back().second;
    for (const char byte : {'a', '1', ';', '<', '&'}) {
        Bytes grown = good;
        grown.insert(grown.begin() + static_cast<std::ptrdiff_t>(grown.size() / 2), length,
                     static_cast<std::uint8_t>(byte));
        Holds(GetParam(), grown, std::string("many of ") + byte);
    }
}

// As many points, attributes of one element and open elements.
TEST(CoreExportFuzzTest, HoldsForManyNodes) {
    constexpr int kMany = 20000;
    const std::string root = "<O_Tam_id DevAddr='' AppID='' DevKey='' TamObjectID='1' IsLastOnDev='0'";
    std::string points, attributes, open;
    for (int i = 0; i < kMany; ++i) {
        const std::string name = "a" + std::to_string(i);
        points +=
            "<" + name + " LinkReference='' LogicalAddress='' SNVTType='' isPermanent='0' IsConnected='0'/>";
        attributes += " " + name + "=''";
        open += "<" + name + ">";
    }
    for (const std::string& text :
         {root + "><Inputs>" + points + "</Inputs><Outputs/><Attributes/></O_Tam_id>",
          root + attributes + "/>", root + ">" + open}) {
        Holds({"export", &FuzzExport, true}, Bytes(text.begin(), text.end()), "many nodes");
    }
}

INSTANTIATE_TEST_SUITE_P(Subjects, CoreFuzzTest, testing::ValuesIn(kSubjects),
                         [](const auto& subject) { return std::string(subject.param.name); });

} // namespace
} // namespace tam::fuzz
