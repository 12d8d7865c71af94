#include "native_modules.h"

#include "sources/lldpd/native_data.h"
#include "sources/lldpd/neighbor_ids.h"
#include "support/answers.h"
#include "yang/configuration_text.h"
#include "yang/forest.h"
#include "yang/schemas.h"
#include "yang/test/data_texts.h"
#include "yang/test/test_schemas.h"
#include "yang/tree_text.h"

namespace yfw::sources::test {

const ly_ctx *native_modules() {
    static const yang::Schemas schemas(YFW_MODELS_DIR, YFW_MODELS_DIR, yang::test::models());
    return schemas.context();
}

yang::DataTree native_data(const std::string &xml) {
    return yang::parse_data(native_modules(), xml, LYD_XML, LYD_PARSE_STRICT | LYD_PARSE_ONLY);
}

std::string fault_of(const yang::DataTree &data) {
    yang::DataTree copy = yang::copy_configuration(data.get());
    if (copy == nullptr)
        return "no copy of the data";
    const LY_ERR status = yang::change_first(copy, [](lyd_node *&first) {
        return lyd_validate_all(&first, nullptr, LYD_VALIDATE_PRESENT, nullptr);
    });
    return status == LY_SUCCESS ? "" : yang::take_yang_error(native_modules());
}

std::vector<std::string> announcements(const lldpd::Neighbor &neighbor) {
    const yang::DataTree data =
        lldpd::neighbor_data(native_modules(), "eth1", lldpd::device_id(neighbor), neighbor);
    std::vector<std::string> found;
    for (const std::string &line : yang::test::leaves(data.get()))
        if (const size_t at = line.find("/lldp-neighbor"); at != std::string::npos)
            found.push_back(line.substr(line.find('/', at + 1) + 1));
    return found;
}

std::vector<std::string> operational_values(const lldpd::State &state, const std::string &xpath) {
    const yang::DataTree data = lldpd::operational_data(native_modules(), state);
    return yfw::test::values_at(data.get(), "/Tarvo-QD-ethernet-lldp-oper:lldp" + xpath);
}

lldpd::State state_of(std::vector<lldpd::Neighbor> neighbors) {
    lldpd::State state;
    state.local.id = "00:00:5e:00:53:01";
    state.ports.push_back({.name = "eth1", .status = {}, .counters = {}, .neighbors = std::move(neighbors)});
    return state;
}

lldpd::Neighbor neighbor_named(const std::string &name, const std::string &port) {
    lldpd::Neighbor neighbor;
    neighbor.chassis.id_subtype = 4;
    neighbor.chassis.id = "00:00:5e:00:53:02";
    neighbor.chassis.name = name;
    neighbor.port_id_subtype = 5;
    neighbor.port_id = port;
    neighbor.time_to_live = 120;
    return neighbor;
}

} // namespace yfw::sources::test
