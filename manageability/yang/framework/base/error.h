// The error reported to a user: tag, place and message.
#ifndef YFW_BASE_ERROR_H
#define YFW_BASE_ERROR_H

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace yfw {

// The error tags of RFC 6241 appendix A that the host uses.
enum class ErrorTag {
    invalid_value,
    unknown_element,
    unknown_namespace,
    missing_element,
    bad_element,
    bad_attribute,
    unknown_attribute,
    access_denied,
    in_use,
    lock_denied,
    data_exists,
    data_missing,
    resource_denied,
    operation_not_supported,
    operation_failed
};

std::string_view to_string(ErrorTag tag);

// `path`: the offending node or place, empty when there is none. `status`: the plug-in's status, 0 when the
// host found the error.
class Error : public std::runtime_error {
public:
    Error(ErrorTag tag, std::string path, const std::string &message, uint32_t status = 0)
        : std::runtime_error(message), tag_(tag), path_(std::move(path)), status_(status) {}

    // Adds what the error is about besides the path: the unknown namespace or attribute, the missing key, or
    // the session that holds a lock.
    Error &&about(std::string subject) && {
        subject_ = std::move(subject);
        return std::move(*this);
    }
    const std::string &subject() const { return subject_; }

    // The request itself cannot be served, whatever its content (error-type "protocol", RFC 6241 section 4.3).
    Error &&by_request() && {
        is_by_request_ = true;
        return std::move(*this);
    }
    bool is_by_request() const { return is_by_request_; }

    // The device cannot be reached or does not do what it should, or its recorded data is wrong (then the tag is
    // invalid_value), whatever the request.
    Error &&by_device() && {
        is_by_device_ = true;
        return std::move(*this);
    }
    bool is_by_device() const { return is_by_device_; }

    ErrorTag tag() const { return tag_; }
    const std::string &path() const { return path_; }
    uint32_t status() const { return status_; }

private:
    ErrorTag tag_;
    std::string path_;
    std::string subject_;
    uint32_t status_;
    bool is_by_request_ = false;
    bool is_by_device_ = false;
};

} // namespace yfw

#endif
