// An answer that is complete: what is left of it cannot fail any more.
#ifndef YFW_HOST_SETTLED_ANSWER_H
#define YFW_HOST_SETTLED_ANSWER_H

#include <memory>
#include <string>
#include <vector>

#include "host/answer_tree.h"
#include "yang/data_tree.h"
#include "yang/tree_writer.h"

namespace yfw::host {

// Needs the engine's schemas, and nothing else of the device.
class SettledAnswer {
public:
    SettledAnswer() = default;
    // One that settle() has reduced, or data; either may be NULL.
    SettledAnswer(std::shared_ptr<const AnswerTree> tree, std::vector<std::string> warnings)
        : warnings_(std::move(warnings)), tree_(std::move(tree)) {}
    SettledAnswer(yang::DataTree data, std::vector<std::string> warnings)
        : warnings_(std::move(warnings)), data_(std::move(data)) {}

    // What was omitted, one line each.
    const std::vector<std::string> &warnings() const { return warnings_; }
    bool empty() const;

    // Writes the answer from the top container down; calls nothing when it is empty.
    void write(yang::TreeWriter &to) const;
    // The answer as libyang's data; NULL when it is empty.
    yang::DataTree take_data();

private:
    std::vector<std::string> warnings_;
    std::shared_ptr<const AnswerTree> tree_;
    yang::DataTree data_;
};

} // namespace yfw::host

#endif
