// Stands between the plug-in and the operations that it calls, counts the calls, and makes one of them fail.
#ifndef DEVICE_TEST_EDIT_INTERPOSER_H
#define DEVICE_TEST_EDIT_INTERPOSER_H

#include <map>
#include <string>
#include <vector>

#include "yfw_map.h"

namespace yfw::device::test {

// The first three within a walk of an edit only.
enum class Call {
    add,       // yfw_map_datatree_add_path_flagged
    list_node, // yfw_map_update_current_list_node
    leafref,   // yfw_map_check_oc_leafref
    library,   // access, of the system database's library
    bind,      // _sysdb_bind
    unbind,    // _sysdb_unbind
    item,      // sysdb_item_get
    find,      // sysdb_find
    next,      // sysdb_list_next
    free_list  // sysdb_list_free
};

class Interposer {
public:
    // Every call goes through again, and nothing has been called.
    void reset();

    // The nth call, counted from 0, fails with the status and is not handed on. -1: every call.
    void fail(Call call, int nth, terrno status);

    // How often it was called since the reset.
    int calls(Call call) const;

    // The paths of an edit's adds since the reset, the failing one included.
    std::vector<std::string> added;

    // Counts a call. The status that it is to fail with, or 0.
    terrno enter(Call call);

private:
    std::map<Call, int> calls_;
    Call failing_ = Call::add;
    int nth_ = 0;
    terrno status_ = 0;
};

// The one that the operations of this program ask.
Interposer &interposer();

} // namespace yfw::device::test

#endif
