#include "dom/document.h"

#include <cctype>
#include <cstdio>
#include <cstring>
#include <unordered_map>

#include <pugixml.hpp>

#include "host/error.h"

namespace dom {

// ---------------------------------------------------------------- handles and the hidden parent
//
// The parser frees a node that leaves its document, but a removed node (and one created and not yet
// appended) must stay usable. Such nodes live under one hidden element, the last child of the
// parser's document node, which no navigation, query result or output ever shows.

namespace {

constexpr const char* kOrphanage = "#orphans";  // not a valid XML name, so no real element has it

[[noreturn]] void Fail(const std::string& description) { host::Raise(DomError, description); }

pugi::xml_node_struct* Raw(detail::Opaque* p) { return reinterpret_cast<pugi::xml_node_struct*>(p); }
detail::Opaque* ToOpaque(pugi::xml_node n) { return reinterpret_cast<detail::Opaque*>(n.internal_object()); }
detail::Opaque* ToOpaque(pugi::xml_attribute a) { return reinterpret_cast<detail::Opaque*>(a.internal_object()); }

bool IsOrphanage(pugi::xml_node n) {
    return n.type() == pugi::node_element && n.parent().type() == pugi::node_document &&
           std::strcmp(n.name(), kOrphanage) == 0;
}

pugi::xml_node FindOrphanage(pugi::xml_node root) {
    pugi::xml_node last = root.last_child();
    return IsOrphanage(last) ? last : pugi::xml_node();
}

pugi::xml_node Orphanage(pugi::xml_node root) {
    pugi::xml_node o = FindOrphanage(root);
    if (!o) {
        o = root.append_child(pugi::node_element);
        o.set_name(kOrphanage);
    }
    return o;
}

void Detach(pugi::xml_node n) {
    pugi::xml_node parent = n.parent();
    if (parent && !IsOrphanage(parent)) Orphanage(n.root()).append_move(n);
}

// The tree a node belongs to: the document node, or the top of a detached subtree.
pugi::xml_node_struct* TreeOf(pugi::xml_node n) {
    for (;;) {
        pugi::xml_node p = n.parent();
        if (!p) return n.internal_object();
        if (p.type() == pugi::node_document) return p.internal_object();
        if (IsOrphanage(p)) return n.internal_object();
        n = p;
    }
}

pugi::xml_node Visible(pugi::xml_node n) { return IsOrphanage(n) ? pugi::xml_node() : n; }

pugi::xml_node FirstElement(pugi::xml_node root) {
    for (pugi::xml_node c = root.first_child(); c; c = c.next_sibling())
        if (c.type() == pugi::node_element && !IsOrphanage(c)) return c;
    return {};
}

pugi::xml_attribute FindAttribute(pugi::xml_node element, std::string_view name) {
    for (pugi::xml_attribute a = element.first_attribute(); a; a = a.next_attribute())
        if (name == a.name()) return a;
    return {};
}

const char* TypeName(pugi::xml_node n) {
    switch (n.type()) {
        case pugi::node_element: return "ELEMENT";
        case pugi::node_pcdata: return "TEXT";
        case pugi::node_cdata: return "CDATA";
        case pugi::node_comment: return "COMMENT";
        case pugi::node_pi:
        case pugi::node_declaration: return "PROCESSING INSTRUCTION";
        case pugi::node_doctype: return "DOCUMENT TYPE";
        case pugi::node_document: return "DOCUMENT";
        default: return "NULL";
    }
}

[[noreturn]] void FailOnType(pugi::xml_node n) {
    Fail(std::string("This operation can not be performed with a Node of type ") + TypeName(n) + ".");
}

}  // namespace

struct Document::Impl {
    std::unique_ptr<pugi::xml_document> current = std::make_unique<pugi::xml_document>();
    // Earlier contents replaced by a load, kept for the handles that may still reach them.
    std::vector<std::unique_ptr<pugi::xml_document>> retired;

    pugi::xml_node root() const { return *current; }
};

namespace detail {

// What a handle stands for: a node, or an attribute with its element.
struct Target {
    pugi::xml_node node;
    pugi::xml_attribute attr;
    bool isAttribute() const { return static_cast<bool>(attr); }
};

struct Access {
    static Node Make(const std::shared_ptr<Document>& doc, pugi::xml_node n) {
        Node r;
        if (!n) return r;
        r.doc_ = doc;
        if (n == doc->impl_->root()) {
            r.kind_ = Node::Kind::Document;
        } else {
            r.kind_ = Node::Kind::Node;
            r.p_ = ToOpaque(n);
        }
        return r;
    }

    static Node MakeAttribute(const std::shared_ptr<Document>& doc, pugi::xml_attribute a, pugi::xml_node owner) {
        Node r;
        if (!a) return r;
        r.doc_ = doc;
        r.kind_ = Node::Kind::Attribute;
        r.p_ = ToOpaque(a);
        r.owner_ = ToOpaque(owner);
        return r;
    }

    static Node MakeItem(const std::shared_ptr<Document>& doc, const NodeList::Item& item) {
        if (item.owner)
            return MakeAttribute(doc, pugi::xml_attribute(reinterpret_cast<pugi::xml_attribute_struct*>(item.p)),
                                 pugi::xml_node(Raw(item.owner)));
        return Make(doc, pugi::xml_node(Raw(item.p)));
    }

    static Target Resolve(const Node& h) {
        switch (h.kind_) {
            case Node::Kind::Nothing: host::Raise(host::err::ObjectVariableNotSet);
            case Node::Kind::Document: return {h.doc_->impl_->root(), {}};
            case Node::Kind::Node: return {pugi::xml_node(Raw(h.p_)), {}};
            case Node::Kind::Attribute: {
                pugi::xml_node owner(Raw(h.owner_));
                for (pugi::xml_attribute a = owner.first_attribute(); a; a = a.next_attribute())
                    if (ToOpaque(a) == h.p_) return {owner, a};
                Fail("The attribute is no longer part of its element.");
            }
        }
        host::Raise(host::err::ObjectVariableNotSet);
    }

    static bool IsDocumentHandle(const Node& h) { return h.kind_ == Node::Kind::Document; }
    static pugi::xml_node Root(const Document& d) { return d.impl_->root(); }
    static Node DocumentNode(const std::shared_ptr<Document>& doc) {
        Node r;
        r.doc_ = doc;
        r.kind_ = Node::Kind::Document;
        return r;
    }
    static NodeList List(const std::shared_ptr<Document>& doc) {
        NodeList l;
        l.doc_ = doc;
        return l;
    }
    static void Add(NodeList& l, pugi::xml_node n) { l.items_.push_back({ToOpaque(n), nullptr}); }
    static void Add(NodeList& l, pugi::xml_attribute a, pugi::xml_node owner) {
        l.items_.push_back({ToOpaque(a), ToOpaque(owner)});
    }
};

}  // namespace detail

using detail::Access;
using detail::Target;

// ---------------------------------------------------------------- names and escaping

namespace {

// XML names as the DOM accepts them: a letter, '_' or ':' first, then also digits, '-' and '.';
// every non-ASCII character counts as a letter.
void CheckName(std::string_view name) {
    if (name.empty()) Fail("An empty name is not allowed.");
    for (size_t i = 0; i < name.size(); ++i) {
        unsigned char c = static_cast<unsigned char>(name[i]);
        bool start = c >= 0x80 || std::isalpha(c) || c == '_' || c == ':';
        if (i == 0 && !start) Fail(std::string("This name may not begin with the '") + name[i] + "' character.");
        if (!start && !std::isdigit(c) && c != '-' && c != '.')
            Fail(std::string("This name may not contain the '") + name[i] + "' character.");
    }
}

// Text escapes & < > and a carriage return (so that CR LF survives a reload); attributes also " and
// the line breaks and tabs that a reload would turn into blanks. Other control characters by number.
void AppendEscaped(std::string& out, const char* s, bool attribute) {
    const char* run = s;
    const char* p = s;
    for (; *p; ++p) {
        unsigned char c = static_cast<unsigned char>(*p);
        if (c > '>') continue;
        const char* rep = nullptr;
        char buf[8];
        switch (c) {
            case '&': rep = "&amp;"; break;
            case '<': rep = "&lt;"; break;
            case '>': rep = "&gt;"; break;
            case '"': rep = attribute ? "&quot;" : nullptr; break;
            case '\r': rep = "&#13;"; break;
            case '\n': rep = attribute ? "&#10;" : nullptr; break;
            case '\t': rep = attribute ? "&#9;" : nullptr; break;
            default:
                if (c < 0x20) {
                    std::snprintf(buf, sizeof buf, "&#%u;", static_cast<unsigned>(c));
                    rep = buf;
                }
        }
        if (!rep) continue;
        out.append(run, p);
        out += rep;
        run = p + 1;
    }
    out.append(run, p);
}

void AppendAttribute(std::string& out, pugi::xml_attribute a) {
    out += a.name();
    out += "=\"";
    AppendEscaped(out, a.value(), true);
    out += '"';
}

// The declaration's pseudo-attributes as one text, without the encoding: the text is no longer in
// the encoding the declaration named.
std::string DeclarationData(pugi::xml_node n) {
    std::string out;
    for (pugi::xml_attribute a : n.attributes()) {
        if (std::strcmp(a.name(), "encoding") == 0) continue;
        if (!out.empty()) out += ' ';
        AppendAttribute(out, a);
    }
    return out;
}

}  // namespace

// ---------------------------------------------------------------- output

namespace {

void Write(std::string& out, pugi::xml_node n) {
    switch (n.type()) {
        case pugi::node_element:
            out += '<';
            out += n.name();
            for (pugi::xml_attribute a = n.first_attribute(); a; a = a.next_attribute()) {
                out += ' ';
                AppendAttribute(out, a);
            }
            if (!n.first_child()) {
                out += "/>";
                return;
            }
            out += '>';
            for (pugi::xml_node c = n.first_child(); c; c = c.next_sibling()) Write(out, c);
            out += "</";
            out += n.name();
            out += '>';
            return;
        case pugi::node_pcdata: AppendEscaped(out, n.value(), false); return;
        case pugi::node_cdata:
            out += "<![CDATA[";
            out += n.value();
            out += "]]>";
            return;
        case pugi::node_comment:
            out += "<!--";
            out += n.value();
            out += "-->";
            return;
        case pugi::node_pi:
            out += "<?";
            out += n.name();
            if (*n.value()) {
                out += ' ';
                out += n.value();
            }
            out += "?>";
            return;
        case pugi::node_declaration: {
            std::string data = DeclarationData(n);
            out += "<?";
            out += n.name();
            if (!data.empty()) {
                out += ' ';
                out += data;
            }
            out += "?>";
            return;
        }
        case pugi::node_doctype:
            out += "<!DOCTYPE ";
            out += n.value();
            out += '>';
            return;
        case pugi::node_document:
            for (pugi::xml_node c = n.first_child(); c; c = c.next_sibling()) {
                if (IsOrphanage(c)) continue;
                Write(out, c);
                out += "\r\n";
            }
            return;
        default: return;
    }
}

void AppendText(std::string& out, pugi::xml_node n) {
    for (pugi::xml_node c = n.first_child(); c; c = c.next_sibling()) {
        switch (c.type()) {
            case pugi::node_pcdata:
            case pugi::node_cdata: out += c.value(); break;
            case pugi::node_element:
                if (!IsOrphanage(c)) AppendText(out, c);
                break;
            default: break;
        }
    }
}

}  // namespace

// ---------------------------------------------------------------- loading
//
// The parser is lenient where the DOM is strict; these checks refuse what the DOM refuses and the
// parser lets through: unknown entity references, a bare '&', '<' inside an attribute value, an
// attribute given twice, more than one top-level element.

namespace {

bool ValidReference(std::string_view s, size_t amp) {
    size_t semi = s.find(';', amp + 1);
    if (semi == std::string_view::npos) return false;
    std::string_view ref = s.substr(amp + 1, semi - amp - 1);
    if (ref == "amp" || ref == "lt" || ref == "gt" || ref == "quot" || ref == "apos") return true;
    if (ref.size() < 2 || ref[0] != '#') return false;
    bool hex = ref[1] == 'x';
    std::string_view digits = ref.substr(hex ? 2 : 1);
    if (digits.empty()) return false;
    for (char c : digits)
        if (!(hex ? std::isxdigit(static_cast<unsigned char>(c)) : std::isdigit(static_cast<unsigned char>(c))))
            return false;
    return true;
}

bool CheckMarkup(std::string_view s, std::string& why, long& pos) {
    auto fail = [&](size_t at, const char* what) {
        why = what;
        pos = static_cast<long>(at);
        return false;
    };
    auto skipTo = [&](size_t from, std::string_view end) {
        size_t e = s.find(end, from);
        return e == std::string_view::npos ? s.size() : e + end.size();
    };
    size_t i = 0;
    while (i < s.size()) {
        size_t next = s.find_first_of("<&", i);
        if (next == std::string_view::npos) break;
        i = next;
        if (s[i] == '&') {
            if (!ValidReference(s, i)) return fail(i, "Whitespace or an unknown entity follows '&'.");
            ++i;
            continue;
        }
        std::string_view rest = s.substr(i);
        if (rest.starts_with("<!--")) {
            i = skipTo(i + 4, "-->");
        } else if (rest.starts_with("<![CDATA[")) {
            i = skipTo(i + 9, "]]>");
        } else if (rest.starts_with("<?")) {
            i = skipTo(i + 2, "?>");
        } else if (rest.starts_with("<!")) {
            return true;  // a document type may declare entities of its own: leave it to the parser
        } else {
            char quote = 0;
            for (++i; i < s.size(); ++i) {
                char c = s[i];
                if (quote) {
                    if (c == quote) quote = 0;
                    else if (c == '<') return fail(i, "The character '<' cannot be used in an attribute value.");
                    else if (c == '&' && !ValidReference(s, i)) return fail(i, "Whitespace or an unknown entity follows '&'.");
                } else if (c == '"' || c == '\'') {
                    quote = c;
                } else if (c == '>') {
                    ++i;
                    break;
                }
            }
        }
    }
    return true;
}

bool CheckTree(pugi::xml_node root, std::string& why) {
    int elements = 0;
    for (pugi::xml_node c = root.first_child(); c; c = c.next_sibling())
        if (c.type() == pugi::node_element) ++elements;
    if (elements != 1) {
        why = "Only one top level element is allowed in an XML document.";
        return false;
    }
    for (pugi::xml_node n = root.first_child(); n;) {
        if (n.type() == pugi::node_element) {
            for (pugi::xml_attribute a = n.first_attribute(); a; a = a.next_attribute())
                for (pugi::xml_attribute b = a.next_attribute(); b; b = b.next_attribute())
                    if (std::strcmp(a.name(), b.name()) == 0) {
                        why = std::string("Duplicate attribute '") + a.name() + "'.";
                        return false;
                    }
        }
        if (n.first_child()) {
            n = n.first_child();
            continue;
        }
        while (n && !n.next_sibling()) n = n.parent();
        if (n) n = n.next_sibling();
    }
    return true;
}

}  // namespace

// ---------------------------------------------------------------- queries

namespace {

// Compiled queries, by text: the same few queries run on thousands of documents.
const pugi::xpath_query& Compiled(std::string_view text) {
    thread_local std::unordered_map<std::string, pugi::xpath_query> cache;
    std::string key(text);
    if (auto it = cache.find(key); it != cache.end()) return it->second;
    if (cache.size() >= 256) cache.clear();
    std::string problem;
    try {
        pugi::xpath_query q(key.c_str());
        if (!q) problem = q.result().description();
        else if (q.return_type() != pugi::xpath_type_node_set) problem = "Expression does not evaluate to node set";
        else return cache.emplace(key, std::move(q)).first->second;
    } catch (const pugi::xpath_exception& e) {
        problem = e.what();
    }
    Fail("Invalid query \"" + key + "\": " + problem + ".");
}

pugi::xpath_node Context(const Target& t) {
    return t.isAttribute() ? pugi::xpath_node(t.attr, t.node) : pugi::xpath_node(t.node);
}

// A result is kept when it lies in the tree of the context, so that removed and created nodes
// don't answer queries made elsewhere.
bool Keep(const pugi::xpath_node& x, bool detached, pugi::xml_node_struct* tree) {
    pugi::xml_node n = x.attribute() ? x.parent() : x.node();
    if (IsOrphanage(n)) return false;
    return !detached || TreeOf(n) == tree;
}

}  // namespace

NodeList Node::selectNodes(std::string_view query) const {
    Target t = Access::Resolve(*this);
    const pugi::xpath_query& q = Compiled(query);
    pugi::xpath_node_set set;
    try {
        set = q.evaluate_node_set(Context(t));
    } catch (const pugi::xpath_exception& e) {
        Fail("Invalid query \"" + std::string(query) + "\": " + e.what() + ".");
    }
    if (set.type() != pugi::xpath_node_set::type_sorted) set.sort();
    pugi::xml_node orphanage = FindOrphanage(t.node.root());
    bool detached = orphanage && orphanage.first_child();
    pugi::xml_node_struct* tree = detached ? TreeOf(t.node) : nullptr;
    NodeList list = Access::List(doc_);
    for (const pugi::xpath_node& x : set) {
        if (!Keep(x, detached, tree)) continue;
        if (x.attribute()) Access::Add(list, x.attribute(), x.parent());
        else Access::Add(list, x.node());
    }
    return list;
}

Node Node::selectSingleNode(std::string_view query) const {
    Target t = Access::Resolve(*this);
    pugi::xml_node orphanage = FindOrphanage(t.node.root());
    if (!orphanage || !orphanage.first_child()) {
        const pugi::xpath_query& q = Compiled(query);
        pugi::xpath_node x;
        try {
            x = q.evaluate_node(Context(t));
        } catch (const pugi::xpath_exception& e) {
            Fail("Invalid query \"" + std::string(query) + "\": " + e.what() + ".");
        }
        if (!x) return {};
        if (x.attribute()) return Access::MakeAttribute(doc_, x.attribute(), x.parent());
        if (!IsOrphanage(x.node())) return Access::Make(doc_, x.node());
    }
    return selectNodes(query).item(0);
}

// ---------------------------------------------------------------- nodes

bool operator==(const Node& a, const Node& b) {
    if (!a || !b) return !a && !b;
    Target x = Access::Resolve(a), y = Access::Resolve(b);
    return x.node == y.node && x.attr == y.attr;
}

long Node::nodeType() const {
    Target t = Access::Resolve(*this);
    if (t.isAttribute()) return NODE_ATTRIBUTE;
    switch (t.node.type()) {
        case pugi::node_element: return NODE_ELEMENT;
        case pugi::node_pcdata: return NODE_TEXT;
        case pugi::node_cdata: return NODE_CDATA_SECTION;
        case pugi::node_comment: return NODE_COMMENT;
        case pugi::node_pi:
        case pugi::node_declaration: return NODE_PROCESSING_INSTRUCTION;
        case pugi::node_doctype: return NODE_DOCUMENT_TYPE;
        default: return NODE_DOCUMENT;
    }
}

std::string Node::nodeName() const {
    Target t = Access::Resolve(*this);
    if (t.isAttribute()) return t.attr.name();
    switch (t.node.type()) {
        case pugi::node_pcdata: return "#text";
        case pugi::node_cdata: return "#cdata-section";
        case pugi::node_comment: return "#comment";
        case pugi::node_document: return "#document";
        case pugi::node_doctype: {
            std::string_view v = t.node.value();
            return std::string(v.substr(0, v.find_first_of(" \t\r\n[")));
        }
        default: return t.node.name();
    }
}

host::Variant Node::nodeValue() const {
    Target t = Access::Resolve(*this);
    if (t.isAttribute()) return std::string(t.attr.value());
    switch (t.node.type()) {
        case pugi::node_pcdata:
        case pugi::node_cdata:
        case pugi::node_comment:
        case pugi::node_pi: return std::string(t.node.value());
        case pugi::node_declaration: return DeclarationData(t.node);
        default: return host::Variant::Null();
    }
}

void Node::setNodeValue(const host::Variant& value) const {
    Target t = Access::Resolve(*this);
    std::string v = host::CStr(value);
    if (t.isAttribute()) {
        t.attr.set_value(v.data(), v.size());
        return;
    }
    switch (t.node.type()) {
        case pugi::node_pcdata:
        case pugi::node_cdata:
        case pugi::node_comment:
        case pugi::node_pi: t.node.set_value(v.data(), v.size()); return;
        default: FailOnType(t.node);
    }
}

std::string Node::text() const {
    Target t = Access::Resolve(*this);
    if (t.isAttribute()) return t.attr.value();
    switch (t.node.type()) {
        case pugi::node_element:
        case pugi::node_document: {
            std::string out;
            AppendText(out, t.node);
            return out;
        }
        case pugi::node_declaration: return DeclarationData(t.node);
        default: return t.node.value();
    }
}

void Node::setText(std::string_view text) const {
    Target t = Access::Resolve(*this);
    if (t.isAttribute()) {
        t.attr.set_value(text.data(), text.size());
        return;
    }
    switch (t.node.type()) {
        case pugi::node_element: {
            while (pugi::xml_node c = t.node.first_child()) Detach(c);
            if (!text.empty()) t.node.append_child(pugi::node_pcdata).set_value(text.data(), text.size());
            return;
        }
        case pugi::node_pcdata:
        case pugi::node_cdata:
        case pugi::node_comment:
        case pugi::node_pi: t.node.set_value(text.data(), text.size()); return;
        default: FailOnType(t.node);
    }
}

std::string Node::xml() const {
    Target t = Access::Resolve(*this);
    std::string out;
    if (t.isAttribute()) AppendAttribute(out, t.attr);
    else Write(out, t.node);
    return out;
}

Node Node::parentNode() const {
    Target t = Access::Resolve(*this);
    if (t.isAttribute()) return {};
    pugi::xml_node p = t.node.parent();
    return IsOrphanage(p) ? Node() : Access::Make(doc_, p);
}

Node Node::firstChild() const {
    Target t = Access::Resolve(*this);
    if (t.isAttribute()) return {};
    return Access::Make(doc_, Visible(t.node.first_child()));
}

Node Node::lastChild() const {
    Target t = Access::Resolve(*this);
    if (t.isAttribute()) return {};
    pugi::xml_node c = t.node.last_child();
    if (IsOrphanage(c)) c = c.previous_sibling();
    return Access::Make(doc_, c);
}

Node Node::previousSibling() const {
    Target t = Access::Resolve(*this);
    if (t.isAttribute() || IsOrphanage(t.node.parent())) return {};
    return Access::Make(doc_, Visible(t.node.previous_sibling()));
}

Node Node::nextSibling() const {
    Target t = Access::Resolve(*this);
    if (t.isAttribute() || IsOrphanage(t.node.parent())) return {};
    return Access::Make(doc_, Visible(t.node.next_sibling()));
}

NodeList Node::childNodes() const {
    Target t = Access::Resolve(*this);
    NodeList list = Access::List(doc_);
    if (t.isAttribute()) return list;
    for (pugi::xml_node c = t.node.first_child(); c; c = c.next_sibling())
        if (!IsOrphanage(c)) Access::Add(list, c);
    return list;
}

bool Node::hasChildNodes() const { return static_cast<bool>(firstChild()); }

DocumentRef Node::ownerDocument() const {
    Access::Resolve(*this);
    return Access::IsDocumentHandle(*this) ? nullptr : doc_;
}

Node Node::appendChild(const Node& newChild) const { return insertBefore(newChild, Node()); }

Node Node::insertBefore(const Node& newChild, const Node& refChild) const {
    Target parent = Access::Resolve(*this);
    if (!newChild) host::Raise(host::err::InvalidProcedureCall);
    Target child = Access::Resolve(newChild);
    pugi::xml_node p = parent.node, c = child.node;
    if (parent.isAttribute()) Fail("This operation can not be performed with a Node of type ATTRIBUTE.");
    if (p.type() != pugi::node_element && p.type() != pugi::node_document) FailOnType(p);
    if (child.isAttribute()) Fail("An attribute can't be inserted as a child.");
    if (c.type() == pugi::node_document) Fail("A document can't be inserted as a child.");
    pugi::xml_node ref;
    if (refChild) {
        Target r = Access::Resolve(refChild);
        if (r.isAttribute() || r.node.parent() != p)
            host::Raise(host::err::InvalidProcedureCall, "The reference node is not a child of this node.");
        ref = r.node;
    }
    if (p.type() == pugi::node_document) {
        if (c.type() == pugi::node_pcdata || c.type() == pugi::node_cdata)
            Fail("Text can't be a top-level node of a document.");
        pugi::xml_node element = FirstElement(p);
        if (c.type() == pugi::node_element && element && element != c)
            Fail("Only one top level element is allowed in an XML document.");
    } else if (c.type() == pugi::node_declaration || c.type() == pugi::node_doctype) {
        FailOnType(c);
    }
    if (ref == c) return newChild;

    pugi::xml_node placed;
    if (c.root() == p.root()) {
        placed = ref ? p.insert_move_before(c, ref) : p.append_move(c);
        if (!placed) Fail("Inserting a node or its ancestor under itself is not allowed.");
    } else {
        placed = ref ? p.insert_copy_before(c, ref) : p.append_copy(c);
        if (!placed) Fail("The node can't be inserted here.");
        Detach(c);
    }
    if (p.type() == pugi::node_document)
        if (pugi::xml_node o = FindOrphanage(p); o && o.next_sibling()) p.append_move(o);
    return Access::Make(doc_, placed);
}

Node Node::removeChild(const Node& child) const {
    Target parent = Access::Resolve(*this);
    if (!child) host::Raise(host::err::InvalidProcedureCall);
    Target c = Access::Resolve(child);
    if (parent.isAttribute() || c.isAttribute() || c.node.parent() != parent.node)
        host::Raise(host::err::InvalidProcedureCall, "The parameter node is not a child of this node.");
    Detach(c.node);
    return child;
}

Node Node::cloneNode(bool deep) const {
    Target t = Access::Resolve(*this);
    if (t.isAttribute()) Fail("An attribute can't be cloned on its own.");
    if (t.node.type() == pugi::node_document) {
        DocumentRef copy = NewDocument();
        const Document& from = *doc_;
        copy->setAsync(from.async());
        copy->setValidateOnParse(from.validateOnParse());
        copy->setResolveExternals(from.resolveExternals());
        copy->setPreserveWhiteSpace(from.preserveWhiteSpace());
        if (deep) {
            pugi::xml_node root = Access::Root(*copy);
            for (pugi::xml_node c = t.node.first_child(); c; c = c.next_sibling())
                if (!IsOrphanage(c)) root.append_copy(c);
        }
        return copy->node();
    }
    pugi::xml_node orphanage = Orphanage(t.node.root());
    pugi::xml_node copy;
    if (deep || t.node.type() != pugi::node_element) {
        copy = orphanage.append_copy(t.node);
    } else {
        copy = orphanage.append_child(pugi::node_element);
        copy.set_name(t.node.name());
        for (pugi::xml_attribute a = t.node.first_attribute(); a; a = a.next_attribute()) copy.append_copy(a);
    }
    return Access::Make(doc_, copy);
}

// ---------------------------------------------------------------- attributes

namespace {

pugi::xml_node ElementOf(const Node& h) {
    Target t = Access::Resolve(h);
    if (t.isAttribute() || t.node.type() != pugi::node_element) host::Raise(host::err::NoSuchProperty);
    return t.node;
}

}  // namespace

host::Variant Node::getAttribute(std::string_view name) const {
    pugi::xml_attribute a = FindAttribute(ElementOf(*this), name);
    return a ? host::Variant(std::string(a.value())) : host::Variant::Null();
}

void Node::setAttribute(std::string_view name, const host::Variant& value) const {
    pugi::xml_node e = ElementOf(*this);
    std::string v = host::CStr(value);
    pugi::xml_attribute a = FindAttribute(e, name);
    if (!a) {
        CheckName(name);
        a = e.append_attribute(std::string(name).c_str());
    }
    a.set_value(v.data(), v.size());
}

void Node::removeAttribute(std::string_view name) const {
    pugi::xml_node e = ElementOf(*this);
    if (pugi::xml_attribute a = FindAttribute(e, name)) e.remove_attribute(a);
}

NamedNodeMap Node::attributes() const {
    Target t = Access::Resolve(*this);
    NamedNodeMap map;
    if (!t.isAttribute() && t.node.type() == pugi::node_element) map.element_ = *this;
    return map;
}

long NamedNodeMap::length() const {
    Target t = Access::Resolve(element_);
    long n = 0;
    for (pugi::xml_attribute a = t.node.first_attribute(); a; a = a.next_attribute()) ++n;
    return n;
}

Node NamedNodeMap::item(long index) const {
    Target t = Access::Resolve(element_);
    long i = 0;
    for (pugi::xml_attribute a = t.node.first_attribute(); a; a = a.next_attribute(), ++i)
        if (i == index) return Access::MakeAttribute(element_.ownerDocument(), a, t.node);
    return {};
}

Node NamedNodeMap::getNamedItem(std::string_view name) const {
    Target t = Access::Resolve(element_);
    return Access::MakeAttribute(element_.ownerDocument(), FindAttribute(t.node, name), t.node);
}

Node NodeList::item(long index) const {
    if (index < 0 || index >= length()) return {};
    return Access::MakeItem(doc_, items_[static_cast<size_t>(index)]);
}

// ---------------------------------------------------------------- documents

Document::Document(Private) : impl_(std::make_unique<Impl>()) {}
Document::~Document() = default;

DocumentRef NewDocument() { return std::make_shared<Document>(Document::Private{}); }

void Document::setProperty(std::string_view name, const host::Variant& value) {
    if (name == "SelectionLanguage") {
        std::string v = host::CStr(value);
        if (v != "XPath" && v != "XSLPattern") Fail("The selection language \"" + v + "\" is not supported.");
        selectionLanguage_ = v;
    } else if (name == "SelectionNamespaces") {
        selectionNamespaces_ = host::CStr(value);
    } else {
        Fail("Property name is invalid: \"" + std::string(name) + "\".");
    }
}

host::Variant Document::getProperty(std::string_view name) const {
    if (name == "SelectionLanguage") return selectionLanguage_;
    if (name == "SelectionNamespaces") return selectionNamespaces_;
    Fail("Property name is invalid: \"" + std::string(name) + "\".");
}

bool Document::loadXML(std::string_view text) {
    parseError_ = {};
    if (impl_->current->first_child()) {
        impl_->retired.push_back(std::move(impl_->current));
        impl_->current = std::make_unique<pugi::xml_document>();
    }
    unsigned options = pugi::parse_default | pugi::parse_declaration | pugi::parse_comments | pugi::parse_pi |
                       pugi::parse_doctype;
    if (preserveWhiteSpace_) options |= pugi::parse_ws_pcdata;
    pugi::xml_parse_result r = impl_->current->load_buffer(text.data(), text.size(), options, pugi::encoding_utf8);
    std::string why;
    long pos = 0;
    if (!r) {
        why = r.description();
        pos = static_cast<long>(r.offset);
    } else if (CheckMarkup(text, why, pos) && CheckTree(impl_->root(), why)) {
        return true;
    }
    impl_->current->reset();
    parseError_ = {DomError, why, pos};
    return false;
}

std::string Document::xml() const {
    std::string out;
    Write(out, impl_->root());
    return out;
}

std::string Document::text() const {
    std::string out;
    AppendText(out, impl_->root());
    return out;
}

Node Document::documentElement() { return Access::Make(shared_from_this(), FirstElement(impl_->root())); }

Node Document::createElement(std::string_view tagName) {
    CheckName(tagName);
    pugi::xml_node e = Orphanage(impl_->root()).append_child(pugi::node_element);
    e.set_name(std::string(tagName).c_str());
    return Access::Make(shared_from_this(), e);
}

Node Document::createTextNode(std::string_view data) {
    pugi::xml_node t = Orphanage(impl_->root()).append_child(pugi::node_pcdata);
    t.set_value(data.data(), data.size());
    return Access::Make(shared_from_this(), t);
}

Node Document::node() { return Access::DocumentNode(shared_from_this()); }

}  // namespace dom
