#include "frontends/netconf/transport/worker_pool.h"

#include <csignal>

namespace yfw::netconf {

WorkerPool::WorkerPool(size_t threads) {
    // Signals are handled by the event loop.
    sigset_t all;
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    for (size_t i = 0; i < threads; i++)
        threads_.emplace_back([this] { work(); });
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

WorkerPool::~WorkerPool() {
    {
        const std::lock_guard<std::mutex> guard(mutex_);
        ends_ = true;
        waiting_.clear();
    }
    more_.notify_all();
    for (std::thread &thread : threads_)
        thread.join();
}

void WorkerPool::add(Job job) {
    {
        const std::lock_guard<std::mutex> guard(mutex_);
        waiting_.push_back(std::move(job));
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

void WorkerPool::work() {
    std::unique_lock<std::mutex> lock(mutex_);
    for (;;) {
        more_.wait(lock, [&] { return ends_ || !waiting_.empty(); });
        if (ends_)
            return;
        const Job job = std::move(waiting_.front());
        waiting_.pop_front();
        lock.unlock();
        post(job());
        lock.lock();
    }
}

} // namespace yfw::netconf
