// Instance data as libyang reads it right.
#ifndef YFW_SOURCES_FILE_INSTANCE_TEXT_H
#define YFW_SOURCES_FILE_INSTANCE_TEXT_H

#include <string>

namespace yfw::sources {

enum class InstanceFormat { xml, json };

struct InstanceText {
    InstanceFormat format;
    std::string text; // in UTF-8, with the line breaks of the original
};

// The document without what libyang 2.1 misreads or refuses although it is legal: UTF-16 and byte order marks,
// CR LF (XML section 2.11), comments, processing instructions and CDATA sections inside text, JSON surrogate
// pairs. Throws Error (invalid_value, without a path) for text that is neither XML nor JSON, and for JSON that
// is not one value and nothing else.
InstanceText instance_text(std::string document);

} // namespace yfw::sources

#endif
