// What a user of the store of commits is told.
#ifndef YFW_COMMITS_STORE_ERROR_H
#define YFW_COMMITS_STORE_ERROR_H

#include <stdexcept>

namespace yfw::commits {

// The store cannot be opened, read or written; the message names the file.
class StoreError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

} // namespace yfw::commits

#endif
