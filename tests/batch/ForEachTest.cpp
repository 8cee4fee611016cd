#include "batch/ForEach.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <set>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace batch {

namespace {

std::vector<Input> Inputs(std::size_t count) {
    std::vector<Input> inputs;
    for (std::size_t i = 0; i < count; ++i) {
        inputs.push_back({PathOf(std::to_string(i)), "", ""});
    }
    return inputs;
}

class ForEachTest : public testing::TestWithParam<unsigned> {
  protected:
    template <class Work, class Take>
    void Do(const std::vector<Input>& inputs, const Work& work, const Take& take) {
        ForEach(inputs, GetParam(), progress_, work, take);
    }

  private:
    Progress progress_{nullptr, 0, 80};
};

TEST_P(ForEachTest, HandsResultsOverInOrderOnTheCallingThread) {
    std::vector<std::string> taken;
    const auto caller = std::this_thread::get_id();
    Do(
        Inputs(50),
        [](const Input& input) {
            // The first ones take the longest.
            std::this_thread::sleep_for(std::chrono::milliseconds(input.file == "0" ? 30 : 0));
            return NameOf(input.file);
        },
        [&](const Input& input, const std::string& result) {
            EXPECT_EQ(NameOf(input.file), result);
            EXPECT_EQ(caller, std::this_thread::get_id());
            taken.push_back(result);
        });
    ASSERT_EQ(50U, taken.size());
    for (std::size_t i = 0; i < taken.size(); ++i) {
        EXPECT_EQ(std::to_string(i), taken[i]);
    }
}

TEST_P(ForEachTest, AnErrorOfTheWorkEndsTheRunAtItsPlace) {
    std::vector<int> taken;
    EXPECT_THROW(Do(
                     Inputs(20),
                     [](const Input& input) {
                         if (input.file == "3") {
                             throw std::runtime_error("broken");
                         }
                         return 1;
                     },
                     [&](const Input&, int result) { taken.push_back(result); }),
                 std::runtime_error);
    EXPECT_EQ(3U, taken.size());
}

TEST_P(ForEachTest, TakesNothingForNothing) {
    Do(
        {}, [](const Input&) { return 1; }, [](const Input&, int) { FAIL(); });
}

INSTANTIATE_TEST_SUITE_P(Jobs, ForEachTest, testing::Values(0U, 1U, 2U, 7U, 100U));

TEST(ForEachThreadsTest, OneJobIsDoneOnTheCallingThread) {
    Progress progress(nullptr, 0, 80);
    std::set<std::thread::id> threads;
    ForEach(
        Inputs(5), 1, progress,
        [&](const Input&) {
            threads.insert(std::this_thread::get_id());
            return 0;
        },
        [](const Input&, int) {});
    EXPECT_EQ(std::set{std::this_thread::get_id()}, threads);
}

} // namespace

} // namespace batch
