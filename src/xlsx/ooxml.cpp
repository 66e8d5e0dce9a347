#include "xlsx/ooxml.h"

#include <cstring>

namespace xlsx {

std::string_view LocalName(const char* name) {
    const char* p = std::strchr(name, ':');
    return p ? std::string_view(p + 1) : std::string_view(name);
}

pugi::xml_node Kid(pugi::xml_node parent, std::string_view local) {
    for (auto c : parent.children())
        if (c.type() == pugi::node_element && LocalName(c.name()) == local) return c;
    return {};
}

// The prefix (with colon) bound to a namespace on an element, declared there when missing.
std::string PrefixFor(pugi::xml_node root, const char* ns, const char* preferred) {
    for (auto a : root.attributes()) {
        std::string_view n = a.name();
        if (std::strcmp(a.value(), ns) != 0) continue;
        if (n == "xmlns") return "";
        if (n.substr(0, 6) == "xmlns:") return std::string(n.substr(6)) + ":";
    }
    root.append_attribute((std::string("xmlns:") + preferred).c_str()).set_value(ns);
    return std::string(preferred) + ":";
}

std::string RelIdOf(pugi::xml_node node) {
    // The only prefixed "id" attribute the formats put on such elements is the relationship's.
    for (auto a : node.attributes())
        if (std::strchr(a.name(), ':') && LocalName(a.name()) == "id") return a.value();
    return {};
}

}  // namespace xlsx
