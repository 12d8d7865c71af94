#include "host/settled_answer.h"

#include "host/answer_data.h"
#include "yang/data_writing.h"

namespace yfw::host {

bool SettledAnswer::empty() const {
    return data_ == nullptr && (tree_ == nullptr || tree_->root_entry().slots[0].container == nullptr);
}

void SettledAnswer::write(yang::TreeWriter &to) const {
    if (tree_ != nullptr)
        host::write(*tree_, to);
    else if (data_ != nullptr)
        yang::write(data_.get(), to);
}

yang::DataTree SettledAnswer::take_data() {
    if (tree_ != nullptr)
        data_ = data_of(*tree_);
    tree_.reset();
    return std::move(data_);
}

} // namespace yfw::host
