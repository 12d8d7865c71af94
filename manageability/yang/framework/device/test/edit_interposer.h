// Intercepts the plug-in's calls to the host's operations, counts them, and makes a chosen one fail.
#ifndef DEVICE_TEST_EDIT_INTERPOSER_H
#define DEVICE_TEST_EDIT_INTERPOSER_H

#include <map>
#include <string>
#include <vector>

#include "yfw_map.h"

namespace yfw::device::test {

// The first three count only within the walk of an edit.
enum class Call {
    add,       // yfw_map_datatree_add_path_flagged
    list_node, // yfw_map_update_current_list_node
    leafref,   // yfw_map_check_oc_leafref
    library,   // access() to the system database's library
    bind,      // _sysdb_bind
    unbind,    // _sysdb_unbind
    item,      // sysdb_item_get
    find,      // sysdb_find
    next,      // sysdb_list_next
    free_list  // sysdb_list_free
};

class Interposer {
public:
    // Lets every call through again and resets the counters.
    void reset();

    // The nth call, counted from 0, fails with the status and is not passed on. -1: every call.
    void fail(Call call, int nth, terrno status);

    // The number of calls since the reset.
    int calls(Call call) const;

    // The paths that edits have added since the reset, including the failing one.
    std::vector<std::string> added;

    // Counts a call. Returns the status to fail with, or 0.
    terrno enter(Call call);

private:
    std::map<Call, int> calls_;
    Call failing_ = Call::add;
    int nth_ = 0;
    terrno status_ = 0;
};

// The instance that this program's operations consult.
Interposer &interposer();

} // namespace yfw::device::test

#endif
