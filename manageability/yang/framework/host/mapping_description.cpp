#include "host/mapping_description.h"

#include <algorithm>
#include <set>
#include <string_view>

#include "base/bounded_text.h"
#include "base/error.h"
#include "yang/json_text.h"
#include "yfw_map.h"

namespace yfw::host {
namespace {

using Json = nlohmann::ordered_json;

[[noreturn]] void refuse(const std::filesystem::path &file, const std::string &why) {
    throw Error(ErrorTag::invalid_value, file.string(), why);
}

constexpr uint64_t largest_description = mebibyte;

std::string read_text(const std::filesystem::path &file, const std::string &plugin) {
    try {
        return bounded_file_text(file, largest_description);
    } catch (const Error &error) {
        refuse(file, error.what() + ("; expected the description of the mapping plug-in " + plugin));
    }
}

// The members of an object, read by name and expected type.
class Members {
public:
    Members(const Json &object, std::string place, const std::filesystem::path &file)
        : object_(object), place_(std::move(place)), file_(file) {
        if (!object.is_object())
            refuse(file, place_.empty() ? "expected an object" : quoted(place_) + " is not an object");
    }

    bool has(const char *name) { return find(name) != nullptr; }

    std::string text(const char *name, const char *expected) {
        return text_of(required(name, expected), place_of(name), expected);
    }

    bool flag(const char *name, const char *expected) {
        const Json &value = required(name, expected);
        if (!value.is_boolean())
            wrong(place_of(name), expected, "true or false");
        return value.get<bool>();
    }

    // `least`: the minimum number.
    std::vector<std::string> texts(const char *name, const char *expected, size_t least = 1) {
        std::vector<std::string> found;
        each(name, expected, [&](const Json &value, const std::string &place) {
            found.push_back(text_of(value, place, expected));
        });
        if (found.size() < least)
            wrong(place_of(name), expected, "an array that is not empty");
        return found;
    }

    template <class Read> void each(const char *name, const char *expected, Read &&read) {
        const Json &value = required(name, expected);
        if (!value.is_array())
            wrong(place_of(name), expected, "an array");
        for (size_t i = 0; i < value.size(); i++)
            read(value[i], place_of(name) + "[" + std::to_string(i) + "]");
    }

    Members object(const char *name, const char *expected) {
        const Json &value = required(name, expected);
        if (!value.is_object())
            wrong(place_of(name), expected, "an object");
        return {value, place_of(name), file_};
    }

    std::map<std::string, std::string> map(const char *name, const char *expected) {
        std::map<std::string, std::string> found;
        const Members members = object(name, expected);
        for (const auto &[key, value] : members.object_.items())
            found[key] = text_of(value, place_of(name) + "." + key, expected);
        return found;
    }

    // Call after all known members have been read.
    void refuse_others() const {
        for (const auto &[name, value] : object_.items())
            if (!known_.contains(name))
                refuse(file_, "member " + quoted(place_of(name)) + " is unknown; expected one of " + known());
    }

    const std::filesystem::path &file() const { return file_; }
    std::string place_of(const std::string &name) const { return place_.empty() ? name : place_ + "." + name; }

    [[noreturn]] void wrong(const std::string &place, const char *expected, const char *type) const {
        refuse(file_, "member " + quoted(place) + ": expected " + expected + ", as " + type);
    }

private:
    static std::string quoted(const std::string &text) { return "\"" + text + "\""; }

    std::string known() const {
        std::string words;
        for (const std::string &name : known_)
            words += (words.empty() ? "" : ", ") + name;
        return words;
    }

    const Json *find(const char *name) {
        known_.insert(name);
        const auto found = object_.find(name);
        return found != object_.end() ? &*found : nullptr;
    }

    const Json &required(const char *name, const char *expected) {
        const Json *found = find(name);
        if (found == nullptr)
            refuse(file_, "member " + quoted(place_of(name)) + " is missing; expected " + expected);
        return *found;
    }

    std::string text_of(const Json &value, const std::string &place, const char *expected) const {
        if (!value.is_string() || value.get<std::string>().empty())
            wrong(place, expected, "a text that is not empty");
        return value.get<std::string>();
    }

    const Json &object_;
    std::string place_;
    const std::filesystem::path &file_;
    std::set<std::string> known_;
};

// An absolute path of names, without prefixes and keys.
std::string checked_path(const Members &members, const std::string &place, std::string path) {
    if (path.front() != '/' || path.back() == '/' || path.find("//") != std::string::npos ||
        path.find_first_of(":[ ") != std::string::npos)
        refuse(members.file(),
               "member \"" + place + "\": expected a schema path such as /top/list, found \"" + path + "\"");
    return path;
}

std::string path_in(Members &members, const char *name, const char *expected) {
    return checked_path(members, members.place_of(name), members.text(name, expected));
}

NativeNode read_native_node(Members members) {
    NativeNode node;
    node.module = members.text("module", "the name of a native module");
    node.path = path_in(members, "path", "the schema path of a native node");
    members.refuse_others();
    return node;
}

std::vector<NativeNode> read_native_nodes(Members &members, const char *expected) {
    std::vector<NativeNode> nodes;
    members.each("native", expected, [&](const Json &value, const std::string &place) {
        nodes.push_back(read_native_node({value, place, members.file()}));
    });
    return nodes;
}

SharedKey read_key(Members members) {
    SharedKey key;
    key.leaf = path_in(members, "leaf", "the schema path of an OpenConfig list's key");
    key.native = read_native_nodes(members, "the native keys with the same value");
    members.refuse_others();
    return key;
}

std::vector<SharedKey> read_keys(Members &members, const char *name, const char *expected) {
    std::vector<SharedKey> keys;
    if (members.has(name))
        members.each(name, expected, [&](const Json &value, const std::string &place) {
            keys.push_back(read_key({value, place, members.file()}));
        });
    return keys;
}

Suspension read_suspension(Members members) {
    Suspension suspension;
    suspension.leaf = path_in(members, "leaf", "the schema path of an OpenConfig leaf");
    suspension.value = members.text("value", "the leaf's value that suspends");
    for (const std::string &path : members.texts("nodes", "the schema paths of what is suspended"))
        suspension.nodes.push_back(checked_path(members, members.place_of("nodes"), path));
    if (members.has("native"))
        suspension.native = read_native_nodes(members, "what is removed from the native configuration");
    members.refuse_others();
    return suspension;
}

void read_openconfig(Members members, MappingDescription &to) {
    to.modules.openconfig =
        members.texts("modules", "the names of the OpenConfig modules, that of the top container first");
    to.modules.top = members.text("top", "the name of the top container");
    if (members.has("state"))
        for (const std::string &path : members.texts("state", "the schema paths of state"))
            to.state.push_back(checked_path(members, members.place_of("state"), path));
    if (members.has("sampled"))
        for (const std::string &path :
             members.texts("sampled", "the schema paths of what changes all the time"))
            to.sampled.push_back(checked_path(members, members.place_of("sampled"), path));
    if (members.has("suspensions"))
        members.each("suspensions", "what a leaf's value suspends",
                     [&](const Json &value, const std::string &place) {
                         to.suspensions.push_back(read_suspension({value, place, members.file()}));
                     });
    if (members.has("extends"))
        for (const std::string &path :
             members.texts("extends", "the schema paths of lists whose entries are another mapping's"))
            to.extends.push_back(checked_path(members, members.place_of("extends"), path));
    to.keys = read_keys(members, "keys", "the keys that are native keys, too");
    to.entries =
        read_keys(members, "entries", "the lists whose entries are mapped independently of one another");
    members.refuse_others();
}

MappedSubtree read_subtree(Members members) {
    MappedSubtree subtree;
    subtree.module = members.text("module", "the name of a native module");
    subtree.path = path_in(members, "path", "the path by which the library looks the node up");
    subtree.sums = members.flag("sums", "whether the library sums values up over the node's children");
    members.refuse_others();
    return subtree;
}

Example read_example(Members members) {
    Example example;
    example.module = members.text("module", "the name of a native module");
    example.path = path_in(members, "path", "the schema path of a native leaf");
    example.value = members.text("value", "a value that the mapping understands");
    members.refuse_others();
    return example;
}

InterfaceEntries read_entries(Members members) {
    InterfaceEntries entries;
    entries.module = members.text("module", "the name of a native module");
    entries.path = path_in(members, "path", "the schema path of a list of interfaces");
    entries.name = members.text("name", "the leaf that holds an interface's name");
    if (members.has("where"))
        entries.where = members.map("where", "the value that a leaf must have");
    if (members.has("holding"))
        entries.holding = members.text("holding", "the container that must have content");
    members.refuse_others();
    return entries;
}

DeviceAnswers::Switch read_switch(Members members) {
    DeviceAnswers::Switch found;
    found.module = members.text("module", "the name of a native module");
    found.path = path_in(members, "path", "the schema path of a leaf");
    found.on = members.text("on", "the leaf's value when the protocol is on");
    members.refuse_others();
    return found;
}

DeviceAnswers read_device(Members members) {
    DeviceAnswers device;
    if (members.has("enabled"))
        device.enabled = read_switch(members.object("enabled", "the leaf that switches the protocol on"));
    if (members.has("configured-interfaces"))
        device.configured_interfaces =
            read_entries(members.object("configured-interfaces", "where configured interfaces are"));
    if (members.has("interfaces"))
        members.each("interfaces", "where interfaces are", [&](const Json &value, const std::string &place) {
            device.interfaces.push_back(read_entries({value, place, members.file()}));
        });
    members.refuse_others();
    return device;
}

ChangeNotification read_notification(Members members) {
    ChangeNotification notification;
    notification.module = members.text("module", "the name of the notification's module");
    notification.name = members.text("name", "the name of the notification");
    notification.entry = path_in(members, "entry", "the schema path of the list whose changes are told");
    notification.keys =
        members.texts("keys", "the notification's leaves for the keys of the lists down to the entry");
    members.refuse_others();
    return notification;
}

void read_subtrees(Members &members, MappingDescription &to) {
    const char *const expected = "the native nodes that the library looks up by their paths";
    members.each("subtrees", expected, [&](const Json &value, const std::string &place) {
        to.subtrees.push_back(read_subtree({value, place, members.file()}));
    });
    if (to.subtrees.size() > YFW_REQUEST_SUBTREES)
        members.wrong("subtrees", expected, "an array of 50 at most");
}

void add_new(std::vector<std::string> &to, const std::vector<std::string> &names) {
    for (const std::string &name : names)
        if (std::find(to.begin(), to.end(), name) == to.end())
            to.push_back(name);
}

std::filesystem::path folder_of(const std::filesystem::path &file) {
    return file.has_parent_path() ? file.parent_path() : ".";
}

// What a description is read for: as the main mapping, or beside one.
enum class Role { main, beside };

// `naming`: which file names the plug-in, for the message about one that is missing.
MappingDescription read_description(const std::filesystem::path &plugin, Role role, const std::string &naming);

void add_beside(MappingDescription beside, MappingDescription &to) {
    if (beside.modules.top != to.modules.top ||
        beside.modules.openconfig.front() != to.modules.openconfig.front())
        refuse(beside.file, "member \"openconfig\": expected the top container " + to.modules.top +
                                " of module " + to.modules.openconfig.front() + ", as in " + to.file.string());
    add_new(to.modules.openconfig, beside.modules.openconfig);
    add_new(to.modules.native, beside.modules.native);
    to.examples.insert(to.examples.end(), beside.examples.begin(), beside.examples.end());
    to.beside.push_back(std::move(beside));
}

// What concerns the device as a whole is for the main mapping to say.
void read_main_members(Members &members, MappingDescription &to) {
    if (members.has("device"))
        to.device = read_device(members.object("device", "what the platform is answered from"));
    if (members.has("notification"))
        to.notification = read_notification(members.object("notification", "the notification of changes"));
    if (members.has("beside"))
        for (const std::string &name : members.texts("beside", "the plug-ins that are loaded with this one"))
            add_beside(read_description(folder_of(to.file) / name, Role::beside,
                                        ", which " + to.file.string() + " names"),
                       to);
}

void refuse_main_member(const std::filesystem::path &file, const std::string &name) {
    refuse(file, "member \"" + name + "\": a mapping that is loaded beside another one cannot have it");
}

void refuse_main_members(Members &members, const MappingDescription &read) {
    for (const char *name : {"beside", "device", "notification"})
        if (members.has(name))
            refuse_main_member(members.file(), name);
    if (!read.suspensions.empty())
        refuse_main_member(members.file(), "openconfig.suspensions");
    if (!read.sampled.empty())
        refuse_main_member(members.file(), "openconfig.sampled");
    if (!read.entries.empty())
        refuse_main_member(members.file(), "openconfig.entries");
}

void read_library(Members &members, MappingDescription &to) {
    // Without a directory, the loader would search the system's library path.
    to.library = folder_of(to.file) / members.text("library", "the file of the library");
    to.registration_functions =
        members.texts("registration-functions", "the functions that register the mapping's trees");
    to.walker_prefix = members.text("walker-prefix", "what the names of the OpenConfig walkers begin with");
    if (members.has("allocated-variables"))
        to.allocated_variables =
            members.texts("allocated-variables", "the library's pointers that its loader frees", 0);
    if (members.has("subtrees"))
        read_subtrees(members, to);
    if (members.has("examples"))
        members.each("examples", "values that the mapping understands",
                     [&](const Json &value, const std::string &place) {
                         to.examples.push_back(read_example({value, place, members.file()}));
                     });
    if (members.has("edits"))
        to.edits = members.flag("edits", "whether the library maps edits");
    if (members.has("offer-absent-tops"))
        to.offer_absent_tops = members.flag(
            "offer-absent-tops", "whether the library is called for a top node that the device does not have");
}

MappingDescription read_members(Members members, Role role) {
    MappingDescription made;
    made.file = members.file();
    made.edits = role == Role::main;
    read_library(members, made);
    read_openconfig(members.object("openconfig", "the OpenConfig side of the mapping"), made);
    made.modules.native = members.texts("native-modules", "the names of the native modules");
    if (role == Role::main)
        read_main_members(members, made);
    else
        refuse_main_members(members, made);
    members.refuse_others();
    return made;
}

// A description's file, parsed but not yet read.
struct Document {
    std::filesystem::path file;
    Json json;

    MappingDescription read(Role role) const { return read_members({json, "", file}, role); }
};

Document parse_description(const std::filesystem::path &plugin, const std::string &naming) {
    std::filesystem::path file = plugin;
    if (file.extension() == ".so")
        file.replace_extension(".json");
    const std::string text = read_text(file, plugin.string() + naming);
    try {
        return {file, yang::parse_json(text)};
    } catch (const Error &error) {
        refuse(file, error.what());
    }
}

MappingDescription read_description(const std::filesystem::path &plugin, Role role, const std::string &naming) {
    return parse_description(plugin, naming).read(role);
}

// ---- a directory of plug-ins ----------------------------------------------------------------------------

std::vector<std::filesystem::path> files_in(const std::filesystem::path &directory, const char *extension) {
    std::vector<std::filesystem::path> files;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(directory, error), end; !error && entry != end;
         entry.increment(error))
        if (entry->path().extension() == extension)
            files.push_back(entry->path());
    if (error)
        refuse(directory, "cannot be read: " + error.message());
    std::sort(files.begin(), files.end());
    return files;
}

bool says_that_it_maps_edits(const Document &document) {
    const auto edits = document.json.is_object() ? document.json.find("edits") : document.json.end();
    return edits != document.json.end() && edits->is_boolean() && edits->get<bool>();
}

// The one that maps edits; one that is alone is the main mapping whatever it maps.
size_t main_of(const std::vector<Document> &documents, const std::filesystem::path &directory) {
    const auto main = std::find_if(documents.begin(), documents.end(), says_that_it_maps_edits);
    if (main == documents.end() && documents.size() > 1)
        refuse(directory, "none of the descriptions here has \"edits\": true; expected it in that of the main "
                          "mapping");
    if (main == documents.end())
        return 0;
    const auto other = std::find_if(main + 1, documents.end(), says_that_it_maps_edits);
    if (other != documents.end())
        refuse(other->file, "member \"edits\": true is for the main mapping, which " + main->file.string() +
                                " describes already");
    return static_cast<size_t>(main - documents.begin());
}

bool describes(const MappingDescription &mapping, const std::filesystem::path &library) {
    std::error_code ignored;
    return mapping.library == library || std::filesystem::equivalent(mapping.library, library, ignored);
}

// A library that is forgotten would go unnoticed: its nodes would just be missing.
void expect_descriptions_of_all(const std::filesystem::path &directory, const MappingDescription &main) {
    for (const std::filesystem::path &library : files_in(directory, ".so"))
        if (!describes(main, library) &&
            std::none_of(main.beside.begin(), main.beside.end(),
                         [&](const MappingDescription &beside) { return describes(beside, library); }))
            refuse(library, "no description of this mapping plug-in; expected one in " +
                                std::filesystem::path(library).replace_extension(".json").string());
}

MappingDescription read_directory(const std::filesystem::path &directory) {
    std::vector<Document> documents;
    for (const std::filesystem::path &file : files_in(directory, ".json"))
        documents.push_back(parse_description(file, ""));
    if (documents.empty())
        refuse(directory, "no mapping plug-in here; expected a description, *.json, of at least one");
    const size_t main = main_of(documents, directory);
    MappingDescription made = documents[main].read(Role::main);
    for (size_t i = 0; i < documents.size(); i++)
        if (i != main &&
            std::none_of(made.beside.begin(), made.beside.end(), [&](const MappingDescription &known) {
                return known.file == documents[i].file; // named by "beside"
            }))
            add_beside(documents[i].read(Role::beside), made);
    expect_descriptions_of_all(directory, made);
    return made;
}

} // namespace

MappingDescription read_mapping(const std::filesystem::path &plugin) {
    std::error_code ignored;
    return std::filesystem::is_directory(plugin, ignored) ? read_directory(plugin)
                                                          : read_description(plugin, Role::main, "");
}

} // namespace yfw::host
