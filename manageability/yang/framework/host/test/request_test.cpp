#include "host/request.h"

#include <ostream>

#include <gtest/gtest.h>

#include "data_texts.h"
#include "test_device.h"

namespace yfw::host::test {
namespace {

struct Merge {
    Lines paths;
    const char *merged;
};

std::ostream &operator<<(std::ostream &out, const Merge &merge) {
    for (const std::string &line : merge.paths)
        out << line << ' ';
    return out;
}

class MergedPaths : public testing::TestWithParam<Merge> {};

TEST_P(MergedPaths, AreOneTree) {
    EXPECT_EQ(text(selection(GetParam().paths)), GetParam().merged);
}

INSTANTIATE_TEST_SUITE_P(Containers, MergedPaths,
                         testing::Values(Merge{{"/lldp"}, "lldp"}, Merge{{"/lldp/config"}, "lldp{config}"},
                                         Merge{{"/lldp/config/enabled", "/lldp/config/hello-timer"},
                                               "lldp{config{enabled hello-timer}}"},
                                         Merge{{"/lldp/config/enabled", "/lldp/state/enabled"},
                                               "lldp{config{enabled} state{enabled}}"},
                                         Merge{{"/lldp/config/enabled", "/lldp/config/enabled"},
                                               "lldp{config{enabled}}"},
                                         Merge{{"/lldp/config", "/lldp/config/enabled"}, "lldp{config}"},
                                         Merge{{"/lldp/config/enabled", "/lldp/config"}, "lldp{config}"},
                                         Merge{{"/lldp/config/enabled", "/lldp", "/lldp/state"}, "lldp"}));

INSTANTIATE_TEST_SUITE_P(
    ListEntries, MergedPaths,
    testing::Values(
        Merge{{"/lldp/interfaces/interface"}, "lldp{interfaces{interface}}"},
        Merge{{"/lldp/interfaces/interface[name='a']"}, "lldp{interfaces{interface{name=a}}}"},
        Merge{{"/lldp/interfaces/interface[name='a']/state", "/lldp/interfaces/interface[name='a']/config"},
              "lldp{interfaces{interface{name=a state config}}}"},
        Merge{{"/lldp/interfaces/interface[name='a']", "/lldp/interfaces/interface[name='b']"},
              "lldp{interfaces{interface{name=a} interface{name=b}}}"},
        Merge{{"/lldp/interfaces/interface[name='a']", "/lldp/interfaces/interface[name=\"a\"]"},
              "lldp{interfaces{interface{name=a}}}"},
        Merge{{"/lldp/interfaces/interface[name='a']/state", "/lldp/interfaces/interface[name='a']"},
              "lldp{interfaces{interface{name=a}}}"},
        Merge{{"/lldp/interfaces/interface", "/lldp/interfaces/interface[name='a']/state"},
              "lldp{interfaces{interface}}"},
        Merge{{"/lldp/interfaces/interface[name='a']/state/enabled", "/lldp/interfaces/interface/state"},
              "lldp{interfaces{interface{state}}}"},
        Merge{{"/lldp/interfaces/interface[name='a']/state", "/lldp/interfaces/interface/config"},
              "lldp{interfaces{interface{name=a state} interface{config}}}"},
        Merge{{"/lldp/interfaces/interface/name"}, "lldp{interfaces{interface{name}}}"},
        Merge{{"/lldp/interfaces/interface[name='a']/name"}, "lldp{interfaces{interface{name=a!}}}"},
        Merge{{"/lldp/interfaces/interface/neighbors/neighbor/custom-tlvs/"
               "tlv[type='127'][oui='o']/state",
               "/lldp/interfaces/interface/neighbors/neighbor/custom-tlvs/tlv[oui='o'][type='127']/config"},
              "lldp{interfaces{interface{neighbors{neighbor{custom-tlvs{"
              "tlv{type=127 oui=o state config}}}}}}}"}));

TEST(SelectedNode, IsSelectedWholeWhenItsChildrenOnlyNarrow) {
    const Selection merged = selection({"/lldp/interfaces/interface[name='a']"});
    const Selection &entry = merged.children.at(0).children.at(0);
    EXPECT_FALSE(entry.selects_below());
    EXPECT_TRUE(merged.selects_below());
    EXPECT_TRUE(entry.children.at(0).only_narrows());
    EXPECT_TRUE(entry.children.at(0).is_key());
}

TEST(SelectedNode, IsNotWholeWhenItsKeyIsNamedToo) {
    const Selection merged = selection({"/lldp/interfaces/interface[name='a']/name"});
    const Selection &entry = merged.children.at(0).children.at(0);
    EXPECT_TRUE(entry.selects_below());
    EXPECT_FALSE(entry.children.at(0).only_narrows());
}

struct Touches {
    const char *path;
    bool state;
};

std::ostream &operator<<(std::ostream &out, const Touches &touches) {
    return out << touches.path;
}

// The nodes that the description lists as state.
std::vector<const lysc_node *> state_nodes() {
    return {path("/lldp/interfaces").back().node, path("/lldp/state").back().node};
}

class RequestedState : public testing::TestWithParam<Touches> {};

TEST_P(RequestedState, IsSeenInThePath) {
    EXPECT_EQ(selects_state(selection({GetParam().path}), state_nodes()), GetParam().state);
}

INSTANTIATE_TEST_SUITE_P(
    Paths, RequestedState,
    testing::Values(Touches{"/lldp", true}, Touches{"/lldp/config", false},
                    Touches{"/lldp/config/enabled", false}, Touches{"/lldp/state", true},
                    Touches{"/lldp/state/counters/frame-in", true}, Touches{"/lldp/interfaces", true},
                    Touches{"/lldp/interfaces/interface", true},
                    Touches{"/lldp/interfaces/interface[name='a']", true},
                    Touches{"/lldp/interfaces/interface/name", false},
                    Touches{"/lldp/interfaces/interface[name='a']/config", false},
                    Touches{"/lldp/interfaces/interface/config/enabled", false},
                    Touches{"/lldp/interfaces/interface/state", true},
                    Touches{"/lldp/interfaces/interface[name='a']/neighbors", true},
                    Touches{"/lldp/interfaces/interface/neighbors/neighbor/state/ttl", true}));

TEST(RequestedState, IsSeenBesideConfiguration) {
    EXPECT_TRUE(
        selects_state(selection({"/lldp/config", "/lldp/interfaces/interface/state/enabled"}), state_nodes()));
    EXPECT_FALSE(
        selects_state(selection({"/lldp/config", "/lldp/interfaces/interface/config"}), state_nodes()));
}

TEST(RequestedState, IsOfNoConcernOutsideTheNodesThatAreLookedAt) {
    const std::vector<const lysc_node *> interfaces{path("/lldp/interfaces").back().node};
    EXPECT_FALSE(selects_state(selection({"/lldp/state"}), interfaces));
    EXPECT_TRUE(selects_state(selection({"/lldp"}), interfaces));
    EXPECT_FALSE(selects_state(selection({"/lldp"}), {}));
}

} // namespace
} // namespace yfw::host::test
