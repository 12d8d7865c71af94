// Worker threads that answer requests while the event loop runs.
#ifndef YFW_BASE_WORKER_POOL_H
#define YFW_BASE_WORKER_POOL_H

#include <array>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "base/fair_queue.h"
#include "base/wakeup.h"

namespace yfw {

// The kinds of jobs. Each has its own queue; all but `quick` run on a limited number of threads, so that some
// are always left for quick jobs.
enum class Lane : size_t {
    upkeep, // after sessions and commits; one at a time
    quick,
    edit,  // serialized by the datastores anyway; one at a time
    costly // two at a time
};

// A job runs on one of the pool's threads and returns a function that the event loop runs afterwards, or an
// empty one. The loop waits for descriptor() to become readable and then calls run_finished(). Jobs and
// functions must not throw. Any thread, also one that runs a job, may call add() and post(); everything else
// belongs to the event loop's thread.
class WorkerPool {
public:
    using Finish = std::function<void()>;
    using Job = std::function<Finish()>;

    // Jobs other than quick ones take up to four threads.
    static constexpr size_t fewest_threads = 5;

    // Starts at least the fewest.
    explicit WorkerPool(size_t threads);
    // Waits for running jobs; drops those not yet started and functions not yet run.
    ~WorkerPool();
    WorkerPool(const WorkerPool &) = delete;
    WorkerPool &operator=(const WorkerPool &) = delete;

    // Queues a job. The users whose jobs wait in a lane take turns.
    void add(Lane lane, const std::string &user, Job job);
    // Queues a function for the event loop, behind all earlier ones.
    void post(Finish finish);
    int descriptor() const { return finished_some_.descriptor(); }
    // Runs the queued functions on the calling thread.
    void run_finished();

private:
    static constexpr size_t lanes = 4;

    struct Queue {
        FairQueue<Job> waiting;
        size_t running = 0;
    };

    void work();
    // The lane whose turn it is, of those that may start a job; `lanes` when there is none.
    size_t next_lane() const;

    std::mutex mutex_;
    std::condition_variable more_;
    std::array<Queue, lanes> queues_;
    size_t last_lane_ = 0;
    std::vector<Finish> finished_;
    bool ends_ = false;
    Wakeup finished_some_;
    std::vector<std::thread> threads_;
};

} // namespace yfw

#endif
