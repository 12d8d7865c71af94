// Reads of list entries by key.
#ifndef YFW_HOST_NAMED_ENTRIES_H
#define YFW_HOST_NAMED_ENTRIES_H

#include <vector>

#include "host/answer_tree.h"
#include "host/request.h"

namespace yfw::host {

// Whether it selects entries by the values of their keys, of lists that hold `content`.
bool names_entries(const Selection &selection, Content content);

// The same selection of all entries.
Selection without_keys(const Selection &selection);

// What a mapping that was given keys has found. A mapping may translate a key into a native one that fits other
// entries too, or none; what it found is therefore compared with what it shows without the keys. Borrows the
// answer and the lists.
class NamedEntries {
public:
    // `extended`: lists whose entries are another mapping's; that one of them is not here means nothing.
    NamedEntries(const AnswerTree &answer, const Selection &selection, Content content,
                 const std::vector<const lysc_node *> &extended);

    // Whether an entry that was asked for by key is not there.
    bool are_missing() const { return missing_; }

    // The entries found by key that show native entries.
    const std::vector<const AnswerEntry *> &found() const { return found_; }

private:
    using Entries = std::vector<const AnswerEntry *>;

    void look_below(const Entries &entries, const Selection &selection);
    static Entries children(const Entries &parents, const Selection &selection);

    const AnswerTree &answer_;
    Content content_;
    const std::vector<const lysc_node *> &extended_;
    bool missing_ = false;
    Entries found_;
};

} // namespace yfw::host

#endif
