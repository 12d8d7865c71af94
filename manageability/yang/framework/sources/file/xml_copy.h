// A copy of elements as XML, as they are read.
#ifndef YFW_SOURCES_FILE_XML_COPY_H
#define YFW_SOURCES_FILE_XML_COPY_H

#include <string>
#include <string_view>
#include <vector>

#include "xml/element_stream.h"

namespace yfw::sources {

// Refuses attributes, text beside elements, and text that no YANG string may be.
class XmlCopy final : public xml::ElementHandler {
public:
    bool start(const char *name, const char *ns, bool has_attributes) override;
    bool end() override;
    bool text(std::string_view piece) override;

    bool is_open() const { return !open_.empty(); }
    // What was copied.
    const std::string &copied() const { return copied_; }

private:
    struct Open {
        const char *name;
        const char *ns;
        bool has_children;
    };

    std::vector<Open> open_;
    std::string text_; // of the open element, since its last child
    std::string copied_;
};

} // namespace yfw::sources

#endif
