// Which native entries the entries of an answer show when a mapping is not given keys.
#ifndef YFW_HOST_OUTLINE_H
#define YFW_HOST_OUTLINE_H

#include <string>
#include <unordered_map>

#include "host/answer_tree.h"
#include "yang/instance_tree.h"

namespace yfw::host {

class NativeResponse;

// Borrows the native data.
class Outline {
public:
    struct Shown {
        const yang::InstanceNode *native = nullptr;
        size_t dropped = 0; // more native entries that were mapped to the same entry
    };

    Outline() = default;
    // Of an answer that was made from the response.
    Outline(const AnswerTree &answer, const NativeResponse &response);

    // What the entry with the same place and keys as this one shows; nothing when there is none.
    const Shown *find(const AnswerEntry &entry) const;

private:
    std::unordered_map<std::string, Shown> entries_; // by path
};

} // namespace yfw::host

#endif
