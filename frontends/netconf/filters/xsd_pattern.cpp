// Matches with PCRE2, step by step: its own limits count matches, not what each of them costs.
#define PCRE2_CODE_UNIT_WIDTH 8
#include "frontends/netconf/filters/xsd_pattern.h"

#include <pcre2.h>

namespace yfw::netconf {
namespace {

constexpr size_t longest_pattern = 4096;
constexpr uint32_t most_heap = 20000; // KiB
// A step may pass over the whole text; passing over it is cheaper than other steps.
constexpr size_t passed_in_a_step = 16;

constexpr uint32_t pattern_options = PCRE2_UTF | PCRE2_ANCHORED | PCRE2_ENDANCHORED | PCRE2_NO_AUTO_CAPTURE |
                                     PCRE2_NEVER_BACKSLASH_C | PCRE2_NO_START_OPTIMIZE | PCRE2_AUTO_CALLOUT;

struct StepCounter {
    size_t &left;
    size_t cost_of_one;
};

// Called before each item of the pattern. A positive result would be "no match here".
int count_step(pcre2_callout_block *, void *data) {
    auto &steps = *static_cast<StepCounter *>(data);
    if (steps.left < steps.cost_of_one)
        return PCRE2_ERROR_MATCHLIMIT;
    steps.left -= steps.cost_of_one;
    return 0;
}

struct FreeMatch {
    void operator()(pcre2_match_data *match) const { pcre2_match_data_free(match); }
};
struct FreeMatchContext {
    void operator()(pcre2_match_context *context) const { pcre2_match_context_free(context); }
};

} // namespace

std::optional<XsdPattern> XsdPattern::of(std::string_view text) {
    const std::optional<std::string> translated =
        text.size() <= longest_pattern ? pcre_of_xsd(text) : std::nullopt;
    if (!translated.has_value())
        return std::nullopt;
    int error = 0;
    PCRE2_SIZE place = 0;
    pcre2_code *code = pcre2_compile(reinterpret_cast<PCRE2_SPTR>(translated->data()), translated->size(),
                                     pattern_options, &error, &place, nullptr);
    if (code == nullptr)
        return std::nullopt;
    return XsdPattern({code, [](const pcre2_code *it) { pcre2_code_free(const_cast<pcre2_code *>(it)); }});
}

std::optional<bool> XsdPattern::matches(std::string_view text, size_t &left) const {
    const std::unique_ptr<pcre2_match_data, FreeMatch> match(pcre2_match_data_create(1, nullptr));
    const std::unique_ptr<pcre2_match_context, FreeMatchContext> context(pcre2_match_context_create(nullptr));
    if (match == nullptr || context == nullptr)
        throw std::bad_alloc();
    StepCounter steps{left, 1 + text.size() / passed_in_a_step};
    pcre2_set_callout(context.get(), count_step, &steps);
    pcre2_set_heap_limit(context.get(), most_heap);
    const int result = pcre2_match(code_.get(), reinterpret_cast<PCRE2_SPTR>(text.data()), text.size(), 0, 0,
                                   match.get(), context.get());
    if (result >= 0)
        return true;
    return result == PCRE2_ERROR_NOMATCH ? std::optional(false) : std::nullopt;
}

} // namespace yfw::netconf
