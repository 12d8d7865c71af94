#include "gnmi_fixture.h"

#include <stdexcept>

#include "host/mapping_description.h"
#include "sources/opened_source.h"
#include "yang/module_files.h"
#include "yang/text_writer.h"

namespace yfw::gnmi::test {
namespace {

namespace fs = std::filesystem;

const host::MappingDescription &mapping() {
    static const host::MappingDescription read = host::read_mapping(YFW_PLUGINS);
    return read;
}

fs::path copied_device(const fs::path &to) {
    fs::copy(YFW_EXAMPLES_DIR "/r1", to / "device");
    return to / "device";
}

std::optional<access::Nacm> rules_of(const yfw::test::TemporaryDirectory &directory,
                                     const std::optional<std::string> &rules) {
    if (!rules.has_value())
        return std::nullopt;
    const yang::ModuleFiles files({YFW_MODELS_DIR, YFW_STANDARD_MODELS_DIR});
    return access::Nacm(directory.add("nacm.xml", *rules), files, mapping().modules.openconfig);
}

} // namespace

const yang::Schemas &schemas() {
    static const yang::Schemas loaded(YFW_MODELS_DIR, YFW_MODELS_DIR, mapping().modules);
    return loaded;
}

ServedDevice::ServedDevice(const std::optional<std::string> &rules)
    : device_(schemas(),
              sources::open_source({copied_device(directory_.path()).string(), {}}, sources::Use::serving),
              directory_.path() / "store.db", mapping()),
      service_(device_, rules_of(directory_, rules)), target_(service_) {}

Caller ServedDevice::caller(const std::string &user) {
    return {0, user, true, "", service_.rules_of(user, {})};
}

void ServedDevice::change_state(const std::string &from, const std::string &to) {
    const fs::path file = directory_.path() / "device" / "oper.xml";
    std::string text = yfw::test::read_file(file);
    const size_t at = text.find(from);
    if (at == std::string::npos)
        throw std::runtime_error("the device's state has no " + from);
    yfw::test::write_file(file, text.replace(at, from.size(), to));
    service_.events().tell_state_change();
}

void ServedDevice::remove_files() {
    fs::remove_all(directory_.path() / "device");
}

std::string ServedDevice::configuration() {
    std::string text;
    yang::JsonWriter writer([&text](std::string_view piece) { text += piece; }, yang::Layout::compact);
    service_.device().answer({host::Content::config, {{{schemas().openconfig_root(), {}}}}, {}}).write(writer);
    writer.finish();
    return text;
}

} // namespace yfw::gnmi::test
