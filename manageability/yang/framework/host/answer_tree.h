// The OpenConfig answer while the plug-in builds it: nodes are found by schema index and key hash, never by
// scanning.
#ifndef YFW_HOST_ANSWER_TREE_H
#define YFW_HOST_ANSWER_TREE_H

#include <deque>
#include <functional>
#include <memory_resource>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "base/mapped_memory.h"
#include "host/answer_schema.h"
#include "host/request.h"
#include "host/tree_owner.h"
#include "platform/trace_buffer.h"

namespace yfw::host {

struct AnswerEntry;

// Entries by the text of their key.
using AnswerIndex = std::pmr::unordered_map<std::string_view, AnswerEntry *>;

// A list below one parent. Adds without a key go to the current entry.
struct AnswerList {
    AnswerEntry *first = nullptr;
    AnswerEntry *last = nullptr;
    AnswerEntry *current = nullptr;
    AnswerIndex *index = nullptr; // NULL while the list is so short that it is searched instead
    size_t length = 0;
};

struct AnswerLeafListValue {
    const char *text;
    AnswerLeafListValue *next;
};

// The content at one index of a container or list entry; the schema determines the active member.
union AnswerSlot {
    const char *text; // leaf; NULL without a value
    AnswerEntry *container;
    AnswerList *list;
    AnswerLeafListValue *values;
};

// A container or list entry. `handle` is the plug-in's view of it, created on demand.
struct AnswerEntry {
    tidl_yfw_datatree *handle;
    const AnswerNode *schema;
    AnswerEntry *parent;
    AnswerEntry *next; // of the same list
    AnswerSlot *slots; // one for each of the schema's children
};

// A list entry, and how it came from native ones.
struct AnswerListEntry : AnswerEntry {
    const tidl_yfw_datatree *source; // only compared, never followed; NULL when it came from none
    uint32_t dropped;                // how many more native entries were mapped to it
    bool is_aside;                   // in no list: what was added for one of those
};

// The values of a list entry's keys, as one text; a key without a value counts as an empty one.
std::string keys_of(const AnswerEntry &entry);

// The entry's instance path, as libyang writes it: "/module:list[key='value']".
std::string path_of(const AnswerEntry &entry);

class AnswerTree final : public TreeOwner {
public:
    // Borrows the schema.
    explicit AnswerTree(const AnswerSchema &schema);
    ~AnswerTree() override;
    AnswerTree(const AnswerTree &) = delete;
    AnswerTree &operator=(const AnswerTree &) = delete;

    tidl_yfw_datatree *root() { return handle_of(*root_); }
    const AnswerEntry &root_entry() const { return *root_; }
    AnswerEntry &root_entry() { return *root_; }
    const AnswerSchema &schema() const { return schema_; }

    // A copy of the text that lives as long as the tree.
    const char *keep(std::string_view text);

    // Replaces the configuration in the tree by `configuration`, which is from the top container down (NULL:
    // none). Of lists whose entries `selection` names by key only these entries are taken. Call when the
    // plug-in is done.
    void replace_configuration(const lyd_node *configuration, const Selection &selection);

    // Prefixes identity values with the module names of the namespaces that the plug-in gave them. Call when
    // the plug-in is done.
    void qualify_identities(const ly_ctx *context);

    // Adds what `other` has and this tree lacks. A leaf's value in this tree stands, the values of leaf-lists
    // are united, and list entries with the same keys become one. Copies texts.
    // Of `extended` lists, entries that are not here are left out.
    void join(const AnswerTree &other, const std::vector<const lysc_node *> &extended = {});

    // Makes this tree, which is empty, a copy of what `selection` selects of `other`.
    void copy(const AnswerTree &other, const Selection &selection);

    // A node missing from the model does not fail the add; it is only recorded in unknown_paths().
    terrno add(tidl_yfw_datatree &parent, const AddArguments &arguments) override;
    tidl_yfw_datatree *find_or_add_entry(tidl_yfw_datatree &parent, std::string_view list_path,
                                         std::string_view key_name, std::string_view key_value) override;
    tidl_yfw_datatree *map_entry(tidl_yfw_datatree &parent, std::string_view list_path,
                                 std::string_view key_name, std::string_view key_value,
                                 const tidl_yfw_datatree *source) override;

    // The native entry that this entry shows; NULL when the plug-in did not map one to it.
    const tidl_yfw_datatree *source_of(const AnswerEntry &entry) const;
    // How many more native entries were mapped to it, and dropped.
    size_t dropped_for(const AnswerEntry &entry) const;

    // Takes over how many native entries another tree dropped for this entry of a list.
    void set_dropped(const AnswerEntry &entry, size_t count);

    // A leaf that was written, and the length of the trace at that time.
    struct Written {
        const AnswerNode *node;
        uint64_t trace_lines;
    };
    // Records from now on what is written. The trace is borrowed.
    void follow(const platform::TraceBuffer &trace) { trace_ = &trace; }
    const std::vector<Written> &written() const { return written_; }

    // Paths that were added but are not in the model, as the plug-in spelled them.
    const std::set<std::string, std::less<>> &unknown_paths() const { return unknown_paths_; }

private:
    // What the plug-in receives for an entry; leads back to the entry.
    struct EntryHandle {
        tidl_yfw_datatree node;
        AnswerEntry *entry;
    };
    // A leaf handed to the plug-in, and the location of its value.
    struct LeafHandle {
        tidl_yfw_datatree node;
        const char **text;
    };

    static AnswerEntry &entry_of(tidl_yfw_datatree &node);

    void clear_configuration(AnswerEntry &entry);
    void load(const lyd_node *data, AnswerEntry &to, const std::vector<const Selection *> &selections);
    void load_list(const lyd_node *first, const AnswerNode &schema, AnswerEntry &to,
                   const std::vector<const Selection *> &selections);
    AnswerEntry &entry_for(const lyd_node *data, const AnswerNode &schema, AnswerEntry &parent);

    tidl_yfw_datatree *handle_of(AnswerEntry &entry);
    AnswerEntry *make_entry(const AnswerNode &schema, AnswerEntry *parent);
    AnswerList &list_at(AnswerEntry &parent, const AnswerNode &schema);
    AnswerIndex &index_of(AnswerList &list);
    // Of several keys, any; only entries that were made for a key are found by it then. NULL when there is
    // none.
    static AnswerEntry *find_entry(const AnswerList &list, const AnswerNode &schema, std::string_view key);
    AnswerEntry &append_entry(AnswerEntry &parent, const AnswerNode &schema);
    AnswerEntry &current_child(AnswerEntry &parent, const AnswerNode &schema);
    // The entry for `schema` below `start`, created if missing.
    AnswerEntry &reach(AnswerEntry &start, const AnswerNode &schema);
    AnswerEntry &start_for(tidl_yfw_datatree &parent, const AnswerNode &target);
    const AnswerNode *resolve(tidl_yfw_datatree &parent, std::string_view path) const;
    void record(const AnswerNode &leaf) {
        if (trace_ != nullptr)
            written_.push_back({&leaf, trace_->written()});
    }
    void index_key(AnswerEntry &entry, const char *before, const char *now);
    const char **set_value(AnswerEntry &parent, const AnswerNode &target, const char *value);
    tidl_yfw_datatree *hand_out(const char **text, const AnswerNode &target);
    struct Joined {
        const AnswerTree &tree;
        const std::vector<const lysc_node *> &extended;
    };
    void join_entry(AnswerEntry &to, const AnswerEntry &from, const Joined &other);
    void join_list(AnswerEntry &parent, const AnswerNode &schema, const AnswerList &from, const Joined &other);
    void copy_entry(AnswerEntry &to, const AnswerEntry &from, const AnswerTree &other,
                    const std::vector<const Selection *> &selections);
    void copy_list(AnswerEntry &parent, const AnswerNode &schema, const AnswerList &from,
                   const AnswerTree &other, const std::vector<const Selection *> &selections);

    const AnswerSchema &schema_;
    MappedMemory pages_;
    std::pmr::monotonic_buffer_resource memory_{&pages_}; // of everything below
    std::pmr::deque<LeafHandle> handles_{&memory_};
    AnswerEntry *root_;
    const platform::TraceBuffer *trace_ = nullptr; // NULL: nothing is recorded
    std::vector<Written> written_;
    std::set<std::string, std::less<>> unknown_paths_;
};

} // namespace yfw::host

#endif
