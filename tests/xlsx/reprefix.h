#pragma once
// Rewriting a workbook as writers that choose other namespace prefixes write it.
#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <pugixml.hpp>

#include "xlsx/package.h"

namespace reprefix {

// namespace -> the prefix it gets; "" makes it the default namespace
using Prefixes = std::map<std::string, std::string>;

// Prefixes no writer of the application's family uses, for every namespace the engine reads names
// of: the main one, which is usually the default, gets one too.
inline const Prefixes& Unusual() {
    static const Prefixes p = {
        {"http://schemas.openxmlformats.org/spreadsheetml/2006/main", "x"},
        {"http://schemas.openxmlformats.org/officeDocument/2006/relationships", "rel"},
        {"http://schemas.openxmlformats.org/drawingml/2006/main", "dm"},
        {"http://schemas.openxmlformats.org/drawingml/2006/spreadsheetDrawing", "sd"},
        {"http://schemas.openxmlformats.org/drawingml/2006/chart", "ch"},
        {"http://schemas.openxmlformats.org/drawingml/2006/chartDrawing", "cd"},
        {"http://schemas.openxmlformats.org/package/2006/relationships", "pr"},
        {"http://schemas.openxmlformats.org/package/2006/content-types", "ct"},
    };
    return p;
}

// The drawing namespaces as the default ones, as some writers have them.
inline const Prefixes& Defaults() {
    static const Prefixes p = [] {
        Prefixes p = Unusual();
        p["http://schemas.openxmlformats.org/drawingml/2006/spreadsheetDrawing"] = "";
        p["http://schemas.openxmlformats.org/drawingml/2006/chartDrawing"] = "";
        return p;
    }();
    return p;
}

// The same document with every element and prefixed attribute of those namespaces under its new
// prefix, declared once on the root; the declarations it had for them are gone. Attributes of a
// namespace made the default keep their names.
inline std::string Xml(const std::string& text, const Prefixes& to) {
    pugi::xml_document doc;
    if (!doc.load_string(text.c_str(), pugi::parse_default | pugi::parse_declaration | pugi::parse_ws_pcdata)) return text;
    std::vector<std::pair<pugi::xml_node, std::string>> elements;
    std::vector<std::pair<pugi::xml_attribute, std::string>> attributes;
    std::vector<std::pair<pugi::xml_node, pugi::xml_attribute>> declarations;
    std::map<std::string, std::string> used;  // prefix -> namespace
    using Scope = std::map<std::string, std::string>;
    std::function<void(pugi::xml_node, Scope)> walk = [&](pugi::xml_node n, Scope scope) {
        for (auto a : n.attributes()) {
            std::string name = a.name();
            if (name != "xmlns" && name.rfind("xmlns:", 0) != 0) continue;
            scope[name == "xmlns" ? "" : name.substr(6)] = a.value();
            if (to.count(a.value())) declarations.push_back({n, a});
        }
        auto renamed = [&](const std::string& name, bool attribute) -> std::string {
            auto colon = name.find(':');
            std::string prefix = colon == std::string::npos ? "" : name.substr(0, colon);
            auto uri = scope.find(prefix);
            if (uri == scope.end()) return {};
            auto p = to.find(uri->second);
            if (p == to.end() || (attribute && p->second.empty())) return {};
            used[p->second] = p->first;
            std::string local = colon == std::string::npos ? name : name.substr(colon + 1);
            return p->second.empty() ? local : p->second + ":" + local;
        };
        if (auto name = renamed(n.name(), false); !name.empty()) elements.push_back({n, name});
        for (auto a : n.attributes()) {
            std::string name = a.name();
            if (name.find(':') == std::string::npos || name.rfind("xmlns:", 0) == 0) continue;
            if (auto now = renamed(name, true); !now.empty()) attributes.push_back({a, now});
        }
        for (auto c : n.children())
            if (c.type() == pugi::node_element) walk(c, scope);
    };
    walk(doc.document_element(), {});
    for (auto& [n, name] : elements) n.set_name(name.c_str());
    for (auto& [a, name] : attributes) a.set_name(name.c_str());
    for (auto& [n, a] : declarations) n.remove_attribute(a);
    for (auto& [prefix, uri] : used)
        doc.document_element().append_attribute((prefix.empty() ? "xmlns" : "xmlns:" + prefix).c_str()) = uri.c_str();
    std::ostringstream out;
    doc.save(out, "", pugi::format_raw);
    return out.str();
}

// Rewrites every XML part of a workbook that way, in place.
inline void Workbook(const std::string& path, const Prefixes& to = Unusual()) {
    auto pkg = xlsx::Package::Open(path);
    for (auto& part : pkg->Parts()) {
        bool xml = part.size() > 4 && (part.substr(part.size() - 4) == ".xml" || part.substr(part.size() - 5) == ".rels");
        if (xml && part.rfind("docProps/", 0) != 0) pkg->Put(part, Xml(pkg->Bytes(part), to));
    }
    pkg->Save(path);
}

}  // namespace reprefix
