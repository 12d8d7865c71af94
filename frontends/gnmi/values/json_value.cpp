#include "frontends/gnmi/values/json_value.h"

#include "frontends/gnmi/data/matching.h"
#include "frontends/gnmi/paths/key_value.h"
#include "yang/json_values.h"
#include "yang/node_kind.h"

namespace yfw::gnmi {
namespace {

using Index = Snapshot::Index;

// Whether a number or boolean is written without quotes.
bool is_bare(LY_DATA_TYPE type, JsonForm form) {
    const bool is_long = type == LY_TYPE_INT64 || type == LY_TYPE_UINT64 || type == LY_TYPE_DEC64;
    return yang::is_bare_in_json(type) || (is_long && form == JsonForm::plain);
}

void append_quoted(std::string &to, std::string_view text) {
    yang::write_json_string(text, [&to](std::string_view piece) { to += piece; });
}

} // namespace

std::optional<std::string> JsonValues::of(const Snapshot &snapshot, Index node) {
    std::string text;
    const lysc_node *schema = snapshot[node].schema;
    if (schema == nullptr || !yang::is_term(schema))
        return write_object(snapshot, node, 0, true, text) ? std::optional(text) : std::nullopt;
    if (!takes(schema))
        return std::nullopt;
    if (schema->nodetype == LYS_LEAFLIST)
        write_values(snapshot, node, text);
    else
        write_value(schema, snapshot[node].value, text);
    return text;
}

std::string JsonValues::of(const lysc_node *leaf, const char *value) {
    std::string text;
    write_value(leaf, value, text);
    return text;
}

void JsonValues::begin_member(const lysc_node *parent, const lysc_node *node, bool is_top,
                              std::string &to) const {
    if (to.back() != '{')
        to += ',';
    to += '"';
    if (options_.form == JsonForm::ietf && (is_top || parent == nullptr || parent->module != node->module))
        to.append(node->module->name).append(1, ':');
    to.append(node->name).append("\":");
}

// Writes the members that are taken; leaves `to` as it was when there is none but keys.
bool JsonValues::write_object(const Snapshot &snapshot, Index node, uint32_t depth, bool is_top,
                              std::string &to) {
    const size_t start = to.size();
    const bool is_cut = options_.depth != 0 && depth == options_.depth;
    bool is_any = false;
    to += '{';
    for (Index at = Snapshot::first_child(node); at < snapshot[node].end;) {
        const lysc_node *schema = snapshot[at].schema;
        const size_t before = to.size();
        Index next = snapshot[at].end;
        bool is_written = true;
        if (lysc_is_key(schema)) {
            begin_member(snapshot[node].schema, schema, is_top, to);
            write_value(schema, snapshot[at].value, to);
            is_written = !is_cut && takes(schema); // alone, a key is no content
            is_any = is_any || is_written;
            at = next;
            continue;
        }
        begin_member(snapshot[node].schema, schema, is_top, to);
        if (is_cut || (yang::is_term(schema) && !takes(schema))) {
            is_written = false;
        } else if (schema->nodetype == LYS_LEAF) {
            write_value(schema, snapshot[at].value, to);
        } else if (schema->nodetype == LYS_LEAFLIST) {
            write_values(snapshot, at, to);
            next = end_of_values(snapshot, at);
        } else if (schema->nodetype == LYS_LIST) {
            next = at;
            is_written = write_entries(snapshot, next, depth + 1, to);
        } else {
            is_written = write_object(snapshot, at, depth + 1, false, to);
        }
        if (!is_written)
            to.resize(before);
        is_any = is_any || is_written;
        at = next;
    }
    to += '}';
    if (!is_any)
        to.resize(start);
    return is_any;
}

// Of one list, from `at` on; leaves `at` behind them.
bool JsonValues::write_entries(const Snapshot &snapshot, Index &at, uint32_t depth, std::string &to) {
    const lysc_node *list = snapshot[at].schema;
    const Index end = snapshot[snapshot[at].parent].end;
    bool is_any = false;
    to += '[';
    for (; at < end && snapshot[at].schema == list; at = snapshot[at].end) {
        const size_t before = to.size();
        if (is_any)
            to += ',';
        if (write_object(snapshot, at, depth, false, to))
            is_any = true;
        else
            to.resize(before);
    }
    to += ']';
    return is_any;
}

void JsonValues::write_values(const Snapshot &snapshot, Index first, std::string &to) {
    const Index end = end_of_values(snapshot, first);
    to += '[';
    for (Index at = first; at < end; at++) {
        if (at != first)
            to += ',';
        write_value(snapshot[at].schema, snapshot[at].value, to);
    }
    to += ']';
}

void JsonValues::write_value(const lysc_node *leaf, const char *value, std::string &to) {
    LY_DATA_TYPE type = texts_.plain_type(leaf);
    std::string_view text(value);
    if (type == LY_TYPE_UNKNOWN) {
        const yang::ValueText &resolved = texts_.of(leaf, value);
        type = resolved.type;
        text = options_.form == JsonForm::ietf ? std::string_view(resolved.text) : bare_value(leaf, value);
        if (type == LY_TYPE_IDENT && options_.form == JsonForm::ietf &&
            text.find(':') == std::string_view::npos)
            text = value; // RFC 7951 leaves the module of the leaf itself out; clients expect it
    }
    if (type == LY_TYPE_EMPTY)
        to += "[null]";
    else if (is_bare(type, options_.form))
        to += text;
    else
        append_quoted(to, text);
}

} // namespace yfw::gnmi
