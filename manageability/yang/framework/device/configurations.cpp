#include "device/configurations.h"

#include "base/error.h"

namespace yfw::device {

std::optional<Configuration> Configurations::find(int64_t number) {
    CommittedConfiguration &kept = source_.kept();
    if (std::optional<Configuration> both = kept.both(number))
        return both;
    std::optional<StoredConfiguration> stored = source_.read_configuration(number);
    if (!stored.has_value())
        return std::nullopt;
    const bool is_last = number == source_.last_number();
    if (!stored->openconfig.has_value()) {
        yang::DataTree translated = mapper_.translate(stored->native.get());
        if (is_last)
            return kept.keep_translated(number, std::move(*stored), std::move(translated));
        return Configuration{std::move(translated), std::move(stored->native)};
    }
    if (is_last)
        return kept.keep(number, std::move(*stored));
    return Configuration{std::move(*stored->openconfig), std::move(stored->native)};
}

Configuration Configurations::of(int64_t number) {
    std::optional<Configuration> found = find(number);
    if (!found.has_value())
        throw Error(ErrorTag::data_missing, source_.store().string(),
                    "there is no commit " + std::to_string(number));
    return std::move(*found);
}

std::optional<Configuration> Configurations::committed() {
    const std::optional<int64_t> number = source_.last_number();
    return number.has_value() ? find(*number) : std::nullopt;
}

std::optional<Part> Configurations::part(int64_t number, const IndependentEntries &entries,
                                         const EntryNames &names) {
    std::optional<Part> part = source_.kept().part(number, entries, names);
    if (!part.has_value() && find(number).has_value()) // which reads it
        part = source_.kept().part(number, entries, names);
    return part;
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
