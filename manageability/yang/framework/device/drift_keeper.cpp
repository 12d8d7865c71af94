#include "device/drift_keeper.h"

#include <algorithm>

#include "base/error.h"

namespace yfw::device {

DriftKeeper::DriftKeeper(Service &service, std::chrono::milliseconds interval,
                         std::function<void(const std::string &)> say, PutRight on_put_right)
    : service_(service), interval_(interval), say_(std::move(say)), on_put_right_(std::move(on_put_right)),
      thread_([this] { keep(); }) {}

DriftKeeper::~DriftKeeper() {
    stop_.wake();
    thread_.join();
}

// Without what a setting holds back.
std::vector<Drift> DriftKeeper::reparable() {
    std::vector<Drift> drift = service_.device().drift();
    std::erase_if(drift, [](const Drift &one) { return !one.reason.empty(); });
    return drift;
}

void DriftKeeper::put_right() {
    const std::vector<Drift> before = reparable();
    if (before.empty() || before == left_) {
        left_ = before;
        return;
    }
    service_.device().apply_last_commit();
    left_ = reparable();
    std::vector<std::string> paths;
    std::string list;
    for (const Drift &one : before) {
        if (std::find(left_.begin(), left_.end(), one) != left_.end())
            continue;
        paths.push_back(one.path);
        list += (list.empty() ? "" : ", ") + one.path;
    }
    if (paths.empty())
        return;
    say_("the device had been changed by other means and runs the last commit again: " + list);
    on_put_right_(paths);
}

void DriftKeeper::keep() {
    while (!sources::stops_within(stop_.descriptor(), static_cast<int>(interval_.count()))) {
        try {
            put_right();
        } catch (const Error &error) {
            say_(std::string("warning: the device cannot be compared with its configuration: ") + error.what());
        }
    }
}

} // namespace yfw::device
