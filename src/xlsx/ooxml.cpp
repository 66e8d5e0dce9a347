#include "xlsx/ooxml.h"

#include <limits>

#include <charconv>
#include <cstring>
#include <iterator>
#include <set>
#include <vector>

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

std::string ElementPrefix(pugi::xml_node n) {
    std::string_view name = n.name();
    auto colon = name.find(':');
    return colon == std::string_view::npos ? "" : std::string(name.substr(0, colon + 1));
}

void SetAttr(pugi::xml_node n, const char* name, const std::string& value) {
    auto a = n.attribute(name);
    if (!a) a = n.append_attribute(name);
    a.set_value(value.c_str());
}

bool OneOf(std::string_view alternatives, std::string_view local) {
    while (true) {
        auto bar = alternatives.find('|');
        if (alternatives.substr(0, bar) == local) return true;
        if (bar == std::string_view::npos) return false;
        alternatives.remove_prefix(bar + 1);
    }
}

std::vector<pugi::xml_node> ChildrenL(pugi::xml_node parent, std::string_view local) {
    std::vector<pugi::xml_node> out;
    for (auto ch : parent.children())
        if (ch.type() == pugi::node_element && LocalName(ch) == local) out.push_back(ch);
    return out;
}

namespace {
size_t Rank(std::string_view local, const std::vector<std::string_view>& order) {
    for (size_t i = 0; i < order.size(); ++i)
        if (OneOf(order[i], local)) return i;
    return order.size();
}
}  // namespace

pugi::xml_node InsertAt(pugi::xml_node parent, std::string_view local, const std::vector<std::string_view>& order,
                        const std::string& prefix) {
    size_t r = Rank(local, order);
    std::string name = prefix + std::string(local);
    pugi::xml_node after;
    for (auto ch : parent.children()) {
        if (ch.type() != pugi::node_element) continue;
        if (Rank(LocalName(ch), order) <= r) after = ch;
        else break;
    }
    return after ? parent.insert_child_after(name.c_str(), after) : parent.prepend_child(name.c_str());
}

pugi::xml_node Ensure(pugi::xml_node parent, std::string_view local, const std::vector<std::string_view>& order,
                      const std::string& prefix) {
    if (auto n = Kid(parent, local)) return n;
    return InsertAt(parent, local, order, prefix);
}

pugi::xml_node MoveInto(pugi::xml_node parent, pugi::xml_node node, const std::vector<std::string_view>& order,
                        const std::string& prefix) {
    auto place = InsertAt(parent, LocalName(node), order, prefix);
    auto moved = parent.insert_move_after(node, place);
    parent.remove_child(place);
    return moved;
}

void RemoveL(pugi::xml_node parent, std::string_view local) {
    for (auto n : ChildrenL(parent, local)) parent.remove_child(n);
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

long LongOf(std::string_view text) {
    auto v = IntegerOf(text);
    return v && *v >= std::numeric_limits<long>::min() && *v <= std::numeric_limits<long>::max() ? long(*v) : 0;
}

unsigned HexOf(std::string_view text) {
    unsigned v = 0;
    auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), v, 16);
    return ec == std::errc{} && end == text.data() + text.size() ? v : 0;
}

std::optional<long long> IntegerOf(std::string_view text) {
    auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
    while (!text.empty() && blank(text.front())) text.remove_prefix(1);
    while (!text.empty() && blank(text.back())) text.remove_suffix(1);
    if (!text.empty() && text.front() == '+') {
        text.remove_prefix(1);
        if (!text.empty() && text.front() == '-') return std::nullopt;
    }
    long long v = 0;
    auto [end, ec] = std::from_chars(text.data(), text.data() + text.size(), v);
    if (ec != std::errc{} || end != text.data() + text.size() || text.empty()) return std::nullopt;
    return v;
}

// ---------------------------------------------------------------- namespaces by prefix

namespace {

struct KnownNamespace {
    const char* uri;
    const char* prefix;  // the engine's, without colon
};

// SpreadsheetML and the package's own parts never meet in one document, so all three can be the
// default namespace.
constexpr KnownNamespace kKnown[] = {
    {ns::kMain, ""},           {ns::kPackageRels, ""},  {ns::kContentTypes, ""}, {ns::kRel, "r"},
    {ns::kDrawingMl, "a"},     {ns::kSheetDrawing, "xdr"}, {ns::kChart, "c"},     {ns::kChartDrawing, "cdr"},
};
constexpr int kKnownCount = static_cast<int>(std::size(kKnown));
constexpr int kRelIndex = 3;

int KnownIndex(const char* uri) {
    for (int i = 0; i < kKnownCount; ++i)
        if (std::strcmp(uri, kKnown[i].uri) == 0) return i;
    return -1;
}

std::string_view PrefixOf(const char* name) {
    const char* colon = std::strchr(name, ':');
    return colon ? std::string_view(name, static_cast<size_t>(colon - name)) : std::string_view{};
}

// Attributes of markup compatibility whose values name prefixes ("p" or "p:local").
bool NamesPrefixes(std::string_view local) {
    return local == "Ignorable" || local == "ProcessContent" || local == "MustUnderstand" || local == "Requires" ||
           local == "PreserveElements" || local == "PreserveAttributes";
}

pugi::xml_node FirstElement(pugi::xml_node n) {
    for (n = n.first_child(); n && n.type() != pugi::node_element; n = n.next_sibling()) {
    }
    return n;
}

pugi::xml_node NextElement(pugi::xml_node n) {
    for (n = n.next_sibling(); n && n.type() != pugi::node_element; n = n.next_sibling()) {
    }
    return n;
}

class Normalizer {
public:
    explicit Normalizer(pugi::xml_node root) : root_(root) {}

    // First pass: what would be renamed, and whether renaming keeps every name's meaning.
    bool Needed() {
        Walk(false);
        return !renamed_.empty();
    }

    bool Safe() const {
        if (clash_) return false;
        unsigned defaults = 0;
        for (int k = 0; k < kKnownCount; ++k)
            if ((needed_ & (1u << k)) && *kKnown[k].prefix == 0) defaults |= 1u << k;
        // Two namespaces can't both be the default one, and unprefixed elements in no namespace
        // would move into the one declared on the root.
        if (defaults & (defaults - 1)) return false;
        if (defaults && noNamespace_) return false;
        for (auto& p : renamed_)
            if (compat_.count(p)) return false;
        return true;
    }

    void Apply() {
        Walk(true);
        for (int k = 0; k < kKnownCount; ++k) {
            if (!(needed_ & (1u << k))) continue;
            std::string decl = *kKnown[k].prefix ? std::string("xmlns:") + kKnown[k].prefix : std::string("xmlns");
            // First, so that readers taking the first declaration of a namespace find this one.
            if (!root_.attribute(decl.c_str())) root_.prepend_attribute(decl.c_str()).set_value(kKnown[k].uri);
        }
    }

private:
    struct Binding {
        std::string_view prefix;
        int known;  // index in kKnown, -1 for another namespace
    };

    const Binding* Resolve(std::string_view prefix) {
        // Elements mostly share a prefix or two: answers hold while the scope is unchanged.
        for (auto& c : cache_)
            if (c.valid && c.prefix == prefix) return c.binding;
        const Binding* found = nullptr;
        for (auto it = scope_.rbegin(); it != scope_.rend(); ++it)
            if (it->prefix == prefix) {
                found = &*it;
                break;
            }
        auto& c = cache_[next_++ % std::size(cache_)];
        c = {true, std::string(prefix), found};
        return found;
    }

    void Forget() {
        for (auto& c : cache_) c.valid = false;
    }

    void Declare(pugi::xml_node el) {
        for (auto a = el.first_attribute(); a; a = a.next_attribute()) {
            const char* name = a.name();
            if (name[0] != 'x' || std::strncmp(name, "xmlns", 5) != 0 || (name[5] != 0 && name[5] != ':')) continue;
            std::string_view prefix = name[5] ? std::string_view(name + 6) : std::string_view{};
            int known = *a.value() ? KnownIndex(a.value()) : -1;
            scope_.push_back({prefix, known});
            Forget();
        }
    }

    // The prefix an element or attribute name should have, when it has another.
    const char* Canonical(const char* name, const char* colon, bool attribute, bool apply) {
        std::string_view prefix = colon ? std::string_view(name, static_cast<size_t>(colon - name)) : std::string_view{};
        if (attribute && (prefix == "xmlns" || prefix == "xml")) return nullptr;
        const Binding* b = Resolve(prefix);
        if (!b || b->known < 0) {
            if (!attribute && !colon) noNamespace_ = noNamespace_ || !b;
            return nullptr;
        }
        if (attribute && b->known != kRelIndex) return nullptr;  // SpreadsheetML attributes have no prefix
        int known = b->known;
        const char* canonical = kKnown[known].prefix;
        if (prefix == canonical) return nullptr;
        if (apply) return canonical;
        // Where the engine's prefix means another namespace, the new name would too. Unbound, it
        // takes the declaration put on the root.
        if (const Binding* there = Resolve(canonical); there && there->known != known) clash_ = true;
        needed_ |= 1u << known;
        if (renamed_.empty() || prefix != lastRenamed_) {
            lastRenamed_ = prefix;
            renamed_.emplace(prefix);
        }
        return canonical;
    }

    static std::string Named(const char* canonical, const char* local) {
        return *canonical ? std::string(canonical) + ":" + local : std::string(local);
    }

    void Visit(pugi::xml_node el, bool apply) {
        const char* name = el.name();
        const char* colon = std::strchr(name, ':');
        if (const char* canonical = Canonical(name, colon, false, apply); canonical && apply)
            el.set_name(Named(canonical, colon ? colon + 1 : name).c_str());
        for (auto a = el.first_attribute(); a; a = a.next_attribute()) {
            const char* an = a.name();
            const char* ac = std::strchr(an, ':');
            if (!apply && NamesPrefixes(ac ? std::string_view(ac + 1) : std::string_view(an))) Tokens(a.value());
            if (!ac) continue;
            const char* canonical = Canonical(an, ac, true, apply);
            if (!canonical) continue;
            std::string now = Named(canonical, ac + 1);
            if (apply) a.set_name(now.c_str());
            else clash_ = clash_ || el.attribute(now.c_str());  // the same name twice: not renamed
        }
    }

    void Tokens(std::string_view v) {
        while (!v.empty()) {
            size_t start = v.find_first_not_of(" \t\r\n");
            if (start == std::string_view::npos) break;
            v.remove_prefix(start);
            std::string_view token = v.substr(0, v.find_first_of(" \t\r\n"));
            v.remove_prefix(token.size());
            compat_.emplace(token.substr(0, token.find(':')));
        }
    }

    // Depth first without recursion: documents nest as deep as their writers like.
    void Walk(bool apply) {
        scope_.clear();
        Forget();
        std::vector<size_t> marks;
        pugi::xml_node n = root_;
        while (n) {
            marks.push_back(scope_.size());
            Declare(n);
            Visit(n, apply);
            if (auto child = FirstElement(n)) {
                n = child;
                continue;
            }
            while (n) {
                if (scope_.size() != marks.back()) {
                    scope_.resize(marks.back());
                    Forget();
                }
                marks.pop_back();
                if (n == root_) {
                    n = {};
                    break;
                }
                if (auto next = NextElement(n)) {
                    n = next;
                    break;
                }
                n = n.parent();
            }
        }
    }

    pugi::xml_node root_;
    std::vector<Binding> scope_;
    struct Cached {
        bool valid = false;
        std::string prefix;  // a copy: renaming may reuse the buffer of the name it came from
        const Binding* binding = nullptr;
    };
    Cached cache_[4];
    unsigned next_ = 0;
    std::string lastRenamed_;

    unsigned needed_ = 0;  // known namespaces whose names get the engine's prefix
    bool noNamespace_ = false;
    bool clash_ = false;
    std::set<std::string, std::less<>> renamed_, compat_;
};

// True when no namespace declaration in the text binds a known namespace to a prefix other than
// the engine's: then no name needs renaming. Anything unclear (a value with a reference, "xmlns"
// in a text, a text not in an ASCII-compatible encoding) answers false.
bool DeclaresOnlyCanonical(std::string_view text) {
    if (text.size() < 2 || text[0] == 0 || text[1] == 0 || static_cast<unsigned char>(text[0]) >= 0xFE) return false;
    auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
    for (size_t at = text.find("xmlns"); at != std::string_view::npos; at = text.find("xmlns", at + 5)) {
        size_t p = at + 5;
        std::string_view prefix;
        if (p < text.size() && text[p] == ':') {
            size_t end = text.find_first_of("= \t\r\n", p + 1);
            if (end == std::string_view::npos) return false;
            prefix = text.substr(p + 1, end - p - 1);
            p = end;
        }
        while (p < text.size() && blank(text[p])) ++p;
        if (p >= text.size() || text[p] != '=') return false;
        ++p;
        while (p < text.size() && blank(text[p])) ++p;
        if (p >= text.size() || (text[p] != '"' && text[p] != '\'')) return false;
        size_t close = text.find(text[p], p + 1);
        if (close == std::string_view::npos) return false;
        std::string_view uri = text.substr(p + 1, close - p - 1);
        if (uri.find('&') != std::string_view::npos) return false;
        for (auto& k : kKnown)
            if (uri == k.uri && prefix != k.prefix) return false;
    }
    return true;
}

}  // namespace

bool NormalizeNamespaces(pugi::xml_document& doc, std::string_view text) {
    auto root = doc.document_element();
    if (!root) return true;
    if (!text.empty() && DeclaresOnlyCanonical(text)) return true;
    Normalizer n(root);
    if (!n.Needed()) return true;
    if (!n.Safe()) return false;
    n.Apply();
    return true;
}

bool HasCanonicalRoot(const pugi::xml_document& doc) {
    auto root = doc.document_element();
    std::string_view prefix = PrefixOf(root.name());
    std::string decl = prefix.empty() ? "xmlns" : "xmlns:" + std::string(prefix);
    int known = KnownIndex(root.attribute(decl.c_str()).value());
    return known < 0 || prefix == kKnown[known].prefix;
}

}  // namespace xlsx
