#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <thread>

namespace vantrel {

/**
 * Calls `work` with each place from 0 to `count`, on this thread and on a second one if that is worth its
 * while; returns when all is done. Calls for different places must not meet.
 */
template <typename Work>
void onTwoThreads(std::size_t count, const Work &work)
{
    // Small, so that a thread that is held up leaves the rest to the other one.
    constexpr std::size_t portion = 32;
    std::atomic<std::size_t> next = 0;
    const auto takePortions = [&] {
        for (std::size_t first = next.fetch_add(portion); first < count; first = next.fetch_add(portion)) {
            for (std::size_t place = first; place < std::min(first + portion, count); ++place) {
                work(place);
            }
        }
    };
    std::thread helper;
    if (count > 2 * portion) {
        helper = std::thread(takePortions);
    }
    takePortions();
    if (helper.joinable()) {
        helper.join();
    }
}

} // namespace vantrel
