#include "device/configurations.h"

#include "yang/configuration_text.h"

namespace yfw::device {

Configuration Configurations::of(const commits::Commit &commit) {
    const yang::SharedData native = source_.configuration_of(commit);
    {
        const std::lock_guard<std::mutex> guard(mutex_);
        if (kept_.has_value() && kept_->number == commit.number && kept_->native == native)
            return {kept_->openconfig, native};
    }
    yang::SharedData openconfig =
        commit.openconfig.has_value()
            ? yang::parse_configuration(schemas_, *commit.openconfig, source_.store().string())
            : mapper_.translate(native.get());
    const std::lock_guard<std::mutex> guard(mutex_);
    kept_ = Kept{commit.number, native, openconfig};
    return {std::move(openconfig), native};
}

std::optional<Configuration> Configurations::committed() {
    const std::optional<int64_t> number = source_.last_number();
    if (!number.has_value())
        return std::nullopt;
    if (const std::optional<yang::SharedData> native = source_.kept_configuration(*number)) {
        const std::lock_guard<std::mutex> guard(mutex_);
        if (kept_.has_value() && kept_->number == *number && kept_->native == *native)
            return Configuration{kept_->openconfig, *native};
    }
    const std::optional<commits::Commit> last = source_.find_commit(*number);
    return last.has_value() ? std::optional(of(*last)) : std::nullopt;
}

Configuration Configurations::recorded() {
    yang::SharedData native = source_.recorded_configuration();
    yang::SharedData openconfig = mapper_.translate(native.get());
    return {std::move(openconfig), std::move(native)};
}

Configuration Configurations::running() {
    std::optional<Configuration> last = committed();
    return last.has_value() ? std::move(*last) : recorded();
}

} // namespace yfw::device
