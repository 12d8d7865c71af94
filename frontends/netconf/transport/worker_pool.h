// Worker threads that answer requests while the event loop runs.
#ifndef YFW_FRONTENDS_NETCONF_TRANSPORT_WORKER_POOL_H
#define YFW_FRONTENDS_NETCONF_TRANSPORT_WORKER_POOL_H

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "base/wakeup.h"

namespace yfw::netconf {

// A job runs on one of the pool's threads and returns a function that the event loop runs afterwards. The loop
// waits for descriptor() to become readable and then calls run_finished(). Jobs and functions must not throw.
// Any thread may call add() and post(); everything else belongs to the event loop's thread.
class WorkerPool {
public:
    using Finish = std::function<void()>;
    using Job = std::function<Finish()>;

    explicit WorkerPool(size_t threads);
    // Waits for running jobs; drops those not yet started and functions not yet run.
    ~WorkerPool();
    WorkerPool(const WorkerPool &) = delete;
    WorkerPool &operator=(const WorkerPool &) = delete;

    // Queues a job.
    void add(Job job);
    // Queues a function for the event loop, behind all earlier ones.
    void post(Finish finish);
    int descriptor() const { return finished_some_.descriptor(); }
    // Runs the queued functions on the calling thread.
    void run_finished();

private:
    void work();

    std::mutex mutex_;
    std::condition_variable more_;
    std::deque<Job> waiting_;
    std::vector<Finish> finished_;
    bool ends_ = false;
    Wakeup finished_some_;
    std::vector<std::thread> threads_;
};

} // namespace yfw::netconf

#endif
