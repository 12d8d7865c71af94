#include "frontends/gnmi/subscriptions/publisher.h"

#include <algorithm>
#include <csignal>

#include "base/error.h"
#include "frontends/gnmi/data/reading.h"

namespace yfw::gnmi {

// The readings of one moment: feeds that want the same of the device share one.
class Publisher::Readings {
public:
    explicit Readings(const Target &target) : target_(target) {}

    // Throws Error.
    std::shared_ptr<const Snapshot> of(const FeedKind &kind) {
        for (const Reading &known : known_)
            if (known.patterns == kind.wanted.patterns && known.reads == kind.reads)
                return known.snapshot;
        device::Service &service = target_.service();
        const auto rules =
            kind.reads.user.empty() ? nullptr : service.rules_of(kind.reads.user, kind.reads.groups);
        known_.push_back(
            {kind.wanted.patterns, kind.reads, read_snapshot(service, rules.get(), kind.wanted.patterns)});
        return known_.back().snapshot;
    }

    size_t count() const { return known_.size(); }

private:
    struct Reading {
        std::vector<PathPattern> patterns;
        Reads reads;
        std::shared_ptr<const Snapshot> snapshot;
    };
    const Target &target_;
    std::vector<Reading> known_;
};

Publisher::Publisher(const Target &target, std::function<void(const std::string &)> say)
    : target_(target), say_(std::move(say)) {
    sigset_t all; // signals are for the main thread
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    thread_ = std::thread([this] { run(); });
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    target_.service().events().add(*this);
}

Publisher::~Publisher() {
    target_.service().events().remove(*this);
    {
        const std::lock_guard<std::mutex> guard(wake_mutex_);
        ends_ = true;
    }
    wake_.notify_all();
    thread_.join();
}

void Publisher::mark_changed() {
    const std::lock_guard<std::mutex> guard(wake_mutex_);
    has_changed_ = true;
    wake_.notify_all();
}

std::vector<std::shared_ptr<const Snapshot>> Publisher::join(Subscriber &reader,
                                                             const std::vector<FeedKind> &kinds) {
    std::vector<std::shared_ptr<const Snapshot>> first;
    {
        const std::lock_guard<std::mutex> guard(mutex_);
        Readings readings(target_);
        std::vector<Feed *> joined;
        for (const FeedKind &kind : kinds) {
            auto feed = std::find_if(feeds_.begin(), feeds_.end(),
                                     [&kind](const Feed &each) { return each.kind() == kind; });
            if (feed == feeds_.end())
                feed = feeds_.emplace(feeds_.end(), target_, kind, readings.of(kind));
            joined.push_back(&*feed);
            first.push_back(feed->snapshot());
        }
        readings_ += readings.count();
        for (Feed *feed : joined)
            feed->add(reader);
    }
    const std::lock_guard<std::mutex> guard(wake_mutex_);
    is_rescheduled_ = true;
    wake_.notify_all();
    return first;
}

void Publisher::leave(Subscriber &reader) {
    const std::lock_guard<std::mutex> guard(mutex_);
    for (Feed &feed : feeds_)
        feed.remove(reader);
    std::erase_if(feeds_, [](const Feed &feed) { return !feed.has_readers(); });
}

std::vector<std::shared_ptr<const Snapshot>> Publisher::read(const std::vector<FeedKind> &kinds) {
    Readings readings(target_);
    std::vector<std::shared_ptr<const Snapshot>> snapshots;
    for (const FeedKind &kind : kinds)
        snapshots.push_back(readings.of(kind));
    const std::lock_guard<std::mutex> guard(mutex_);
    readings_ += readings.count();
    return snapshots;
}

size_t Publisher::readings() const {
    const std::lock_guard<std::mutex> guard(mutex_);
    return readings_;
}

std::optional<Clock::time_point> Publisher::next_due() const {
    const std::lock_guard<std::mutex> guard(mutex_);
    std::optional<Clock::time_point> next;
    for (const Feed &feed : feeds_)
        if (const auto due = feed.due(); due.has_value() && (!next.has_value() || *due < *next))
            next = due;
    return next;
}

void Publisher::run() {
    for (;;) {
        const auto due = next_due();
        bool has_changed = false;
        {
            std::unique_lock<std::mutex> lock(wake_mutex_);
            const auto is_woken = [this] { return has_changed_ || is_rescheduled_ || ends_; };
            if (due.has_value())
                wake_.wait_until(lock, *due, is_woken);
            else
                wake_.wait(lock, is_woken);
            if (ends_)
                return;
            has_changed = std::exchange(has_changed_, false);
            is_rescheduled_ = false;
        }
        publish(has_changed);
    }
}

void Publisher::publish(bool has_changed) {
    const std::lock_guard<std::mutex> guard(mutex_);
    const Clock::time_point now = Clock::now();
    Readings readings(target_);
    for (Feed &feed : feeds_) {
        const auto due = feed.due();
        const bool is_due = due.has_value() && *due <= now;
        if (!is_due && !(has_changed && !feed.is_sampled()))
            continue;
        try {
            feed.publish(readings.of(feed.kind()), now);
        } catch (const Error &error) {
            say_(std::string("warning: the device cannot be read for subscribers: ") + error.what());
            feed.publish(feed.snapshot(), now); // what is due is what is known
        }
    }
    readings_ += readings.count();
}

} // namespace yfw::gnmi
