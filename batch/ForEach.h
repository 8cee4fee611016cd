#pragma once

#include "batch/Inputs.h"
#include "batch/Progress.h"

#include <atomic>
#include <cstddef>
#include <future>
#include <stop_token>
#include <thread>
#include <type_traits>
#include <vector>

namespace batch {

/// Works on every input and hands the results over in the inputs' order, on the calling
/// thread, each as soon as those before it are there. With one job the work is done on the
/// calling thread too; with more, on as many threads of its own, so it must be pure.
///
/// What `work` throws is thrown where the result would have been handed over: a work that
/// is to go on after a broken file answers a result for it. Clear the progress before
/// something is printed in between.
template <class Work, class Take>
void ForEach(const std::vector<Input>& inputs, unsigned jobs, Progress& progress, Work&& work, Take&& take) {
    if (jobs <= 1 || inputs.size() <= 1) {
        for (std::size_t i = 0; i < inputs.size(); ++i) {
            progress.At(i, NameOf(inputs[i].file));
            take(inputs[i], work(inputs[i]));
        }
        return;
    }
    using Result = std::invoke_result_t<Work&, const Input&>;
    std::vector<std::packaged_task<Result()>> tasks;
    std::vector<std::future<Result>> results;
    for (const Input& input : inputs) {
        tasks.emplace_back([&work, &input] { return work(input); });
        results.push_back(tasks.back().get_future());
    }
    std::atomic<std::size_t> next = 0;
    std::vector<std::jthread> threads; // ended before what they use
    for (unsigned job = 0; job < jobs && job < inputs.size(); ++job) {
        threads.emplace_back([&tasks, &next](const std::stop_token& stop) {
            for (std::size_t i = next++; i < tasks.size() && !stop.stop_requested(); i = next++) {
                tasks[i]();
            }
        });
    }
    for (std::size_t i = 0; i < inputs.size(); ++i) {
        progress.At(i, NameOf(inputs[i].file));
        take(inputs[i], results[i].get());
    }
}

} // namespace batch
