#pragma once

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <map>
#include <mutex>
#include <thread>
#include <vector>

// Does the work for each number below `count` on several threads, and hands over what comes of it
// on the calling thread, in the order of the numbers. `hand_over(index, result)` gives false to end
// it all. No more results wait than there are a few for each thread.
template <typename Result, typename Work, typename HandOver>
void do_in_order(size_t count, size_t threads, Work work, HandOver hand_over)
{
    threads =
        std::min(threads ? threads : std::max(std::thread::hardware_concurrency(), 1u), count);
    if (threads <= 1) {
        for (size_t i = 0; i < count; i++)
            if (!hand_over(i, work(i)))
                return;
        return;
    }
    std::mutex mutex;
    std::condition_variable changed;
    std::map<size_t, Result> finished;
    size_t next = 0;   // to work on
    size_t wanted = 0; // to be handed over
    bool stopped = false;
    const size_t most_waiting = 4 * threads;

    const auto serve = [&] {
        std::unique_lock lock(mutex);
        while (true) {
            changed.wait(lock, [&] { return stopped || next < wanted + most_waiting; });
            if (stopped || next >= count)
                return;
            const size_t index = next++;
            lock.unlock();
            Result result = work(index);
            lock.lock();
            finished.emplace(index, std::move(result));
            changed.notify_all();
        }
    };
    std::vector<std::thread> workers;
    for (size_t i = 0; i < threads; i++)
        workers.emplace_back(serve);

    std::unique_lock lock(mutex);
    while (wanted < count && !stopped) {
        changed.wait(lock, [&] { return finished.count(wanted) > 0; });
        auto result = finished.extract(wanted);
        lock.unlock();
        const bool go_on = hand_over(wanted, std::move(result.mapped()));
        lock.lock();
        wanted++;
        stopped = !go_on;
        changed.notify_all();
    }
    stopped = true;
    changed.notify_all();
    lock.unlock();
    for (std::thread &worker : workers)
        worker.join();
}
