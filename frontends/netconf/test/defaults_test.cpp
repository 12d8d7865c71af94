// Data as printed for a client.
#include <string>

#include <gtest/gtest.h>

#include "frontends/netconf/filters/defaults.h"
#include "yang/test/test_schemas.h"

namespace yfw::netconf {
namespace {

class AText : public testing::TestWithParam<std::string> {
protected:
    AText() {
        lyd_node *made = nullptr;
        lyd_new_path(nullptr, schemas_.context(), path, GetParam().c_str(), 0, &made);
        data_.reset(made);
    }

    // What a client reads: parsed by libyang, but with line ends normalized as XML requires.
    std::string read_again() const {
        std::string xml = print_data(data_.get());
        std::erase(xml, '\r');
        lyd_node *read = nullptr;
        lyd_parse_data_mem(schemas_.context(), xml.c_str(), LYD_XML, LYD_PARSE_ONLY, 0, &read);
        const yang::DataTree owner(read);
        lyd_node *leaf = nullptr;
        lyd_find_path(read, path, 0, &leaf);
        return leaf != nullptr ? lyd_get_value(leaf) : "nothing";
    }

    static constexpr const char *path = "/openconfig-lldp:lldp/config/system-description";
    const yang::Schemas schemas_{YFW_MODELS_DIR, YFW_MODELS_DIR, yang::test::models()};
    yang::DataTree data_;
};

TEST_P(AText, IsWhatItWasWhenAClientReadsIt) {
    EXPECT_EQ(read_again(), GetParam());
}

INSTANTIATE_TEST_SUITE_P(With, AText,
                         testing::Values("one line", "two\nlines", "two\r\nlines", "\r", "\r\rx\r", "a<b>&\"c'",
                                         "\tx"));

} // namespace
} // namespace yfw::netconf
