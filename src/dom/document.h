#pragma once
// The XML document object model the component's code is written against: documents, nodes, node
// lists and attribute maps with the automation DOM's behaviour (0-based lists, Null for an absent
// attribute, removed nodes that stay usable, the `xml` text as that DOM writes it).
//
// Handles are cheap values that keep their document alive. A default handle is Nothing: it tests
// false, and any member called on it raises error 91, as the automation run-time does.
#include <cstddef>
#include <iterator>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "host/variant.h"

namespace dom {

class Document;
class Node;
class NodeList;
class NamedNodeMap;
using DocumentRef = std::shared_ptr<Document>;
// Elements are nodes; element-only members raise 438 on other kinds of node.
using Element = Node;

// Node kinds, numbered as `nodeType` answers them.
enum NodeType : long {
    NODE_ELEMENT = 1,
    NODE_ATTRIBUTE = 2,
    NODE_TEXT = 3,
    NODE_CDATA_SECTION = 4,
    NODE_PROCESSING_INSTRUCTION = 7,
    NODE_COMMENT = 8,
    NODE_DOCUMENT = 9,
    NODE_DOCUMENT_TYPE = 10,
};

// The error number of a refused document operation (a bad query, a name that isn't a name, a node
// where it can't go): the unspecified-failure code, as the run-time reports it.
inline constexpr long DomError = -2147467259;

namespace detail {
struct Opaque;  // the parser's node or attribute record, never defined here
struct Access;
}  // namespace detail

class Node {
public:
    Node() = default;  // Nothing

    explicit operator bool() const { return kind_ != Kind::Nothing; }
    // The same node (the run-time's `Is`); two Nothings are equal.
    friend bool operator==(const Node& a, const Node& b);

    long nodeType() const;
    std::string nodeName() const;     // tag name, attribute name, "#text", "#document" ...
    host::Variant nodeValue() const;  // Null for elements and documents
    void setNodeValue(const host::Variant& value) const;
    std::string text() const;  // the text of all descendant text and CDATA nodes, in order
    void setText(std::string_view text) const;  // an element's children become one text node
    std::string xml() const;

    Node parentNode() const;  // Nothing for a node not (or no longer) in the tree, and attributes
    Node firstChild() const;
    Node lastChild() const;
    Node previousSibling() const;
    Node nextSibling() const;
    NodeList childNodes() const;  // a snapshot
    bool hasChildNodes() const;
    DocumentRef ownerDocument() const;  // null for the document itself

    // Answer the node now in the tree. A node of this document moves; a node of another document
    // is copied here and leaves its own tree, and the answer is the copy.
    Node appendChild(const Node& newChild) const;
    Node insertBefore(const Node& newChild, const Node& refChild) const;  // Nothing ref: append
    Node removeChild(const Node& child) const;  // the removed node stays usable
    Node cloneNode(bool deep) const;            // a copy outside the tree

    host::Variant getAttribute(std::string_view name) const;  // Null when absent
    void setAttribute(std::string_view name, const host::Variant& value) const;  // value by CStr
    void removeAttribute(std::string_view name) const;
    NamedNodeMap attributes() const;  // a Nothing map for nodes other than elements

    // XPath; relative paths start at this node. A malformed query raises DomError.
    Node selectSingleNode(std::string_view query) const;
    NodeList selectNodes(std::string_view query) const;

private:
    friend struct detail::Access;
    enum class Kind : unsigned char { Nothing, Node, Attribute, Document };

    std::shared_ptr<Document> doc_;
    detail::Opaque* p_ = nullptr;      // the node, or the attribute
    detail::Opaque* owner_ = nullptr;  // an attribute's element
    Kind kind_ = Kind::Nothing;        // Document resolves to the document's current content
};

class NodeList {
public:
    long length() const { return static_cast<long>(items_.size()); }
    Node item(long index) const;  // 0-based; Nothing outside the list

    class iterator {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = Node;
        using difference_type = std::ptrdiff_t;
        using pointer = void;
        using reference = Node;
        iterator(const NodeList* list, long i) : list_(list), i_(i) {}
        Node operator*() const { return list_->item(i_); }
        iterator& operator++() { ++i_; return *this; }
        iterator operator++(int) { iterator t = *this; ++i_; return t; }
        friend bool operator==(const iterator& a, const iterator& b) { return a.i_ == b.i_; }
    private:
        const NodeList* list_;
        long i_;
    };
    iterator begin() const { return {this, 0}; }
    iterator end() const { return {this, length()}; }

private:
    friend struct detail::Access;
    struct Item { detail::Opaque* p; detail::Opaque* owner; };
    std::shared_ptr<Document> doc_;
    std::vector<Item> items_;
};

// An element's attributes, in document order.
class NamedNodeMap {
public:
    explicit operator bool() const { return static_cast<bool>(element_); }
    long length() const;
    Node item(long index) const;                     // 0-based; Nothing outside
    Node getNamedItem(std::string_view name) const;  // Nothing when absent

private:
    friend class Node;
    Node element_;
};

struct ParseError {
    long errorCode = 0;  // 0 after a successful load, DomError otherwise
    std::string reason;
    long filepos = 0;  // byte offset in the text
};

class Document : public std::enable_shared_from_this<Document> {
    struct Private {};

public:
    explicit Document(Private);
    ~Document();
    Document(const Document&) = delete;
    Document& operator=(const Document&) = delete;

    // Kept as set; only preserveWhiteSpace changes a load (whitespace-only text kept or dropped).
    bool async() const { return async_; }
    void setAsync(bool v) { async_ = v; }
    bool validateOnParse() const { return validateOnParse_; }
    void setValidateOnParse(bool v) { validateOnParse_ = v; }
    bool resolveExternals() const { return resolveExternals_; }
    void setResolveExternals(bool v) { resolveExternals_ = v; }
    bool preserveWhiteSpace() const { return preserveWhiteSpace_; }
    void setPreserveWhiteSpace(bool v) { preserveWhiteSpace_ = v; }
    // "SelectionLanguage" ("XPath" or "XSLPattern"; queries run as XPath either way) and
    // "SelectionNamespaces" (kept, not used); other names raise DomError.
    void setProperty(std::string_view name, const host::Variant& value);
    host::Variant getProperty(std::string_view name) const;

    // False on text that isn't well-formed XML, and the document is then empty.
    bool loadXML(std::string_view text);
    const ParseError& parseError() const { return parseError_; }
    // Each top-level node followed by CR LF; a declaration without its encoding.
    std::string xml() const;
    std::string text() const;

    Node documentElement();
    Node createElement(std::string_view tagName);
    Node createTextNode(std::string_view data);
    Node node();  // the document as a node

    NodeList childNodes() { return node().childNodes(); }
    Node firstChild() { return node().firstChild(); }
    Node appendChild(const Node& newChild) { return node().appendChild(newChild); }
    Node insertBefore(const Node& newChild, const Node& refChild) { return node().insertBefore(newChild, refChild); }
    Node removeChild(const Node& child) { return node().removeChild(child); }
    Node selectSingleNode(std::string_view query) { return node().selectSingleNode(query); }
    NodeList selectNodes(std::string_view query) { return node().selectNodes(query); }

private:
    friend struct detail::Access;
    friend DocumentRef NewDocument();
    struct Impl;
    std::unique_ptr<Impl> impl_;
    ParseError parseError_;
    std::string selectionLanguage_ = "XSLPattern";
    std::string selectionNamespaces_;
    bool async_ = true;
    bool validateOnParse_ = true;
    bool resolveExternals_ = true;
    bool preserveWhiteSpace_ = false;
};

// A new empty document, with the DOM's defaults for its properties.
DocumentRef NewDocument();

}  // namespace dom
