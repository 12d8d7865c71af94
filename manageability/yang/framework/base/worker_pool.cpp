#include "base/worker_pool.h"

#include <algorithm>
#include <csignal>

namespace yfw {
namespace {

// How many jobs of each lane run at once.
constexpr std::array<size_t, 4> most_running{1, SIZE_MAX, 1, 2};

} // namespace

WorkerPool::WorkerPool(size_t threads) {
    // Signals are handled by the event loop.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    for (size_t i = 0; i < std::max(threads, fewest_threads); i++)
        threads_.emplace_back([this] { work(); });
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

WorkerPool::~WorkerPool() {
    {
        const std::lock_guard<std::mutex> guard(mutex_);
        ends_ = true;
        for (Queue &queue : queues_)
            queue.waiting.clear();
    }
    more_.notify_all();
    for (std::thread &thread : threads_)
        thread.join();
}

void WorkerPool::add(Lane lane, const std::string &user, Job job) {
    {
        const std::lock_guard<std::mutex> guard(mutex_);
        queues_[static_cast<size_t>(lane)].waiting.push(user, std::move(job));
    }
    more_.notify_one();
}

void WorkerPool::post(Finish finish) {
    const std::lock_guard<std::mutex> guard(mutex_);
    finished_.push_back(std::move(finish));
    finished_some_.wake();
}

void WorkerPool::run_finished() {
    finished_some_.clear();
    std::vector<Finish> finished;
    {
        const std::lock_guard<std::mutex> guard(mutex_);
        finished.swap(finished_);
    }
    for (const Finish &finish : finished)
        finish();
}

// The lanes take turns, too: a flood of quick jobs must not hold up the others for good.
size_t WorkerPool::next_lane() const {
    for (size_t step = 1; step <= lanes; step++) {
        const size_t lane = (last_lane_ + step) % lanes;
        if (!queues_[lane].waiting.empty() && queues_[lane].running < most_running[lane])
            return lane;
    }
    return lanes;
}

// A thread that has finished a job looks for the next one itself, so nobody has to be told that its lane may
// run another.
void WorkerPool::work() {
    std::unique_lock<std::mutex> lock(mutex_);
    for (;;) {
        more_.wait(lock, [&] { return ends_ || next_lane() != lanes; });
        if (ends_)
            return;
        last_lane_ = next_lane();
        Queue &queue = queues_[last_lane_];
        Job job = queue.waiting.pop();
        queue.running++;
        lock.unlock();
        if (Finish finish = job())
            post(std::move(finish));
        job = nullptr; // what it held may take locks of its own when it is freed
        lock.lock();
        queue.running--;
    }
}

} // namespace yfw
