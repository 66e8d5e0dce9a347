// Drawings: the drawing part of a sheet or of a chart's user shapes, its anchors and positions,
// adding and removing shapes with the parts only they use.
#include "xlsx/drawing.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <functional>

#include "host/chart_constants.h"
#include "host/error.h"
#include "xlsx/book.h"

namespace xlsx {

namespace {

constexpr const char* kXdrNs = "http://schemas.openxmlformats.org/drawingml/2006/spreadsheetDrawing";
constexpr const char* kDrawingMlNs = "http://schemas.openxmlformats.org/drawingml/2006/main";
constexpr const char* kRelNs = "http://schemas.openxmlformats.org/officeDocument/2006/relationships";
constexpr const char* kDrawingRel = "http://schemas.openxmlformats.org/officeDocument/2006/relationships/drawing";
constexpr const char* kDrawingContentType = "application/vnd.openxmlformats-officedocument.drawing+xml";
constexpr const char* kCdrNs = "http://schemas.openxmlformats.org/drawingml/2006/chartDrawing";
constexpr const char* kChartNs = "http://schemas.openxmlformats.org/drawingml/2006/chart";
constexpr const char* kUserShapesRel = "http://schemas.openxmlformats.org/officeDocument/2006/relationships/chartUserShapes";
constexpr const char* kUserShapesContentType = "application/vnd.openxmlformats-officedocument.drawingml.chartshapes+xml";

bool IsAnchor(std::string_view local) {
    return local == "twoCellAnchor" || local == "oneCellAnchor" || local == "absoluteAnchor" ||
           local == "relSizeAnchor" || local == "absSizeAnchor";
}

bool IsShapeElement(std::string_view local) {
    return local == "sp" || local == "grpSp" || local == "graphicFrame" || local == "cxnSp" || local == "pic" ||
           local == "contentPart";
}

// mc:AlternateContent: the first Choice that holds what we look for, else the Fallback; the
// application understands every Choice it writes.
pugi::xml_node Alternative(pugi::xml_node ac, const std::function<pugi::xml_node(pugi::xml_node)>& find) {
    for (auto c : ac.children())
        if (LocalName(c.name()) == "Choice")
            if (auto hit = find(c)) return hit;
    for (auto c : ac.children())
        if (LocalName(c.name()) == "Fallback")
            if (auto hit = find(c)) return hit;
    return {};
}

pugi::xml_node ShapeElementIn(pugi::xml_node parent) {
    for (auto c : parent.children()) {
        auto l = LocalName(c.name());
        if (IsShapeElement(l)) return c;
        if (l == "AlternateContent")
            if (auto hit = Alternative(c, ShapeElementIn)) return hit;
    }
    return {};
}

pugi::xml_node AnchorIn(pugi::xml_node parent) {
    for (auto c : parent.children())
        if (IsAnchor(LocalName(c.name()))) return c;
    return {};
}

long long Emu(pugi::xml_node n, const char* attr) { return n.attribute(attr).as_llong(); }

void SetAttr(pugi::xml_node n, const char* name, long long v) {
    auto a = n.attribute(name);
    if (!a) a = n.append_attribute(name);
    a.set_value(v);
}

long long ToEmu(double points) { return std::llround(points * kEmuPerPoint); }

pugi::xml_node NvProps(pugi::xml_node el) {
    for (auto c : el.children())
        if (LocalName(c.name()).substr(0, 2) == "nv") return Kid(c, "cNvPr");
    return {};
}

bool Wrapping(std::string_view l) { return l == "Choice" || l == "Fallback" || l == "AlternateContent"; }

// The group or anchor an element belongs to, past any mc:AlternateContent around it.
pugi::xml_node Container(pugi::xml_node el) {
    auto p = el.parent();
    while (p && Wrapping(LocalName(p.name()))) p = p.parent();
    return p;
}

// The outermost node that holds the element inside its container.
pugi::xml_node Wrapper(pugi::xml_node el) {
    auto n = el;
    while (n.parent() && Wrapping(LocalName(n.parent().name()))) n = n.parent();
    return n;
}

bool InGroup(pugi::xml_node el) { return LocalName(Container(el).name()) == "grpSp"; }

// The prefix (with colon) the root declares for DrawingML, the first where it declares several.
std::string DrawingMlPrefix(pugi::xml_node root) {
    for (auto at : root.attributes())
        if (std::strcmp(at.value(), kDrawingMlNs) == 0 && std::string_view(at.name()).substr(0, 6) == "xmlns:")
            return std::string(at.name() + 6) + ":";
    return {};
}

}  // namespace

pugi::xml_node Xfrm(pugi::xml_node el) {
    auto l = LocalName(el.name());
    if (l == "graphicFrame") return Kid(el, "xfrm");
    if (l == "grpSp") return Kid(Kid(el, "grpSpPr"), "xfrm");
    return Kid(Kid(el, "spPr"), "xfrm");
}

pugi::xml_node KidMade(pugi::xml_node parent, std::string_view local) {
    if (auto k = Kid(parent, local)) return k;
    std::string_view pn = parent.name();
    auto colon = pn.find(':');
    std::string name = colon == std::string_view::npos ? std::string(local) : std::string(pn.substr(0, colon + 1)) + std::string(local);
    return parent.append_child(name.c_str());
}

long ShapeType(pugi::xml_node el) {
    auto l = LocalName(el.name());
    if (l == "grpSp") return host::msoGroup;
    if (l == "pic") return host::msoPicture;
    if (l == "contentPart") return host::msoInk;
    if (l == "graphicFrame") {
        std::string uri = Kid(Kid(el, "graphic"), "graphicData").attribute("uri").value();
        if (uri.find("chart") != std::string::npos) return host::msoChart;
        if (uri.find("slicer") != std::string::npos || uri.find("timeslicer") != std::string::npos) return host::msoSlicer;
        if (uri.find("diagram") != std::string::npos) return host::msoSmartArt;
        if (uri.find("table") != std::string::npos) return host::msoTable;
        return host::msoEmbeddedOLEObject;
    }
    auto spPr = Kid(el, "spPr");
    std::string prst = Kid(spPr, "prstGeom").attribute("prst").value();
    if (prst == "line") return host::msoLine;
    if (l == "sp") {
        for (auto c : Kid(el, "nvSpPr").children())
            if (LocalName(c.name()) == "cNvSpPr" && c.attribute("txBox").as_bool()) return host::msoTextBox;
        if (Kid(spPr, "custGeom")) return host::msoFreeform;
    }
    return host::msoAutoShape;
}

// ---------------------------------------------------------------- the drawing part

Drawing::Drawing(SheetImpl& sheet) : sheet_(&sheet), book_(sheet.book()) {}

Drawing::Drawing(Book& book, std::string chartPart, std::function<PointRect()> chartSize)
    : book_(book), chartPart_(std::move(chartPart)), chartSize_(std::move(chartSize)) {}

std::shared_ptr<SheetImpl> Drawing::Sheet(const char* member) {
    if (!sheet_) NotAvailable((std::string(member) + " of a shape inside a chart").c_str());
    return std::static_pointer_cast<SheetImpl>(sheet_->shared_from_this());
}

pugi::xml_node Drawing::ContainerPart(bool edit) {
    auto& pkg = book().pkg();
    const std::string& part = sheet_ ? sheet_->Part() : chartPart_;
    return edit ? pkg.Edit(part).document_element() : pkg.Read(part).document_element();
}

void Drawing::Resolve() {
    // another model of the same chart may have given it its shapes since
    if (resolved_ && !(InChart() && part_.empty())) return;
    resolved_ = true;
    auto& pkg = book().pkg();
    auto root = ContainerPart(false);
    const char* element = sheet_ ? "drawing" : "userShapes";
    for (auto c : root.children()) {
        if (LocalName(c.name()) != element) continue;
        for (auto a : c.attributes())
            if (LocalName(a.name()) == "id") part_ = pkg.Target(sheet_ ? sheet_->Part() : chartPart_, a.value());
    }
    if (!part_.empty() && !pkg.Has(part_)) part_.clear();
    if (!part_.empty()) Prefixes();
}

// The root of a chart's drawing is c:userShapes; its anchors are in the chartDrawing namespace,
// which the application declares on each anchor: the root gets a declaration for the ones we add.
void Drawing::ChartPrefixes(pugi::xml_node root) {
    xdr = "cdr:";
    for (auto c : root.children())
        if (c.type() == pugi::node_element) {
            std::string_view n = c.name();
            auto colon = n.find(':');
            xdr = colon == std::string_view::npos ? "" : std::string(n.substr(0, colon + 1));
            break;
        }
}

void Drawing::Prefixes() {
    auto root = book().pkg().Read(part_).document_element();
    if (InChart()) {
        ChartPrefixes(root);
        a = DrawingMlPrefix(root);
        return;
    }
    std::string_view n = root.name();
    auto colon = n.find(':');
    xdr = colon == std::string_view::npos ? "" : std::string(n.substr(0, colon + 1));
    a = DrawingMlPrefix(root);
}

const std::string& Drawing::Part() {
    Resolve();
    return part_;
}

pugi::xml_node Drawing::Root(bool edit) {
    Resolve();
    if (part_.empty()) return {};
    auto& pkg = book().pkg();
    auto root = edit ? pkg.Edit(part_).document_element() : pkg.Read(part_).document_element();
    if (edit && a.empty()) a = PrefixFor(root, kDrawingMlNs, "a");
    if (edit && InChart() && !xdr.empty()) {
        std::string declared = PrefixFor(root, kCdrNs, xdr.substr(0, xdr.size() - 1).c_str());
        if (declared != xdr) xdr = declared;
    }
    return root;
}

pugi::xml_node Drawing::EnsureRoot() {
    if (auto r = Root(true)) return r;
    auto& pkg = book().pkg();
    std::string part;
    for (int n = 1;; ++n) {
        part = "xl/drawings/drawing" + std::to_string(n) + ".xml";
        if (!pkg.Has(part)) break;
    }
    if (InChart()) {
        auto& doc = pkg.PutXml(part, kUserShapesContentType);
        auto root = doc.append_child("c:userShapes");
        root.append_attribute("xmlns:c").set_value(kChartNs);
        root.append_attribute("xmlns:a").set_value(kDrawingMlNs);
        root.append_attribute("xmlns:cdr").set_value(kCdrNs);
        std::string rid = pkg.AddRel(chartPart_, kUserShapesRel, part);
        // c:userShapes stands before c:extLst only, at the end of chartSpace
        auto space = ContainerPart(true);
        std::string_view sn = space.name();
        auto colon = sn.find(':');
        std::string c = colon == std::string_view::npos ? "" : std::string(sn.substr(0, colon + 1));
        auto ext = Kid(space, "extLst");
        auto u = ext ? space.insert_child_before((c + "userShapes").c_str(), ext) : space.append_child((c + "userShapes").c_str());
        u.append_attribute((PrefixFor(space, kRelNs, "r") + "id").c_str()).set_value(rid.c_str());
        part_ = part;
        resolved_ = true;
        xdr = "cdr:";
        a = "a:";
        return root;
    }
    auto& doc = pkg.PutXml(part, kDrawingContentType);
    auto root = doc.append_child("xdr:wsDr");
    root.append_attribute("xmlns:xdr").set_value(kXdrNs);
    root.append_attribute("xmlns:a").set_value(kDrawingMlNs);
    std::string rid = pkg.AddRel(sheet_->Part(), kDrawingRel, part);

    // <drawing> goes before whatever the schema puts after it in a worksheet or chart sheet.
    auto sheet = pkg.Edit(sheet_->Part()).document_element();
    std::string r = PrefixFor(sheet, kRelNs, "r");
    static const std::set<std::string_view> kAfter = {"legacyDrawing", "legacyDrawingHF", "drawingHF", "picture",
                                                      "oleObjects",    "controls",        "webPublishItems",
                                                      "tableParts",    "extLst",          "AlternateContent"};
    pugi::xml_node before;
    for (auto c : sheet.children())
        if (kAfter.count(LocalName(c.name()))) {
            before = c;
            break;
        }
    std::string_view sn = sheet.name();
    auto colon = sn.find(':');
    std::string name = (colon == std::string_view::npos ? "" : std::string(sn.substr(0, colon + 1))) + "drawing";
    auto d = before ? sheet.insert_child_before(name.c_str(), before) : sheet.append_child(name.c_str());
    d.append_attribute((r + "id").c_str()).set_value(rid.c_str());

    part_ = part;
    resolved_ = true;
    xdr = "xdr:";
    a = "a:";
    return root;
}

std::vector<ShapeNodes> Drawing::TopShapes() {
    std::vector<ShapeNodes> out;
    auto root = Root(false);
    for (auto c : root.children()) {
        auto l = LocalName(c.name());
        pugi::xml_node anchor;
        if (IsAnchor(l)) anchor = c;
        else if (l == "AlternateContent") anchor = Alternative(c, AnchorIn);
        if (!anchor) continue;
        if (auto el = ShapeElementIn(anchor)) out.push_back({c, anchor, el});
    }
    return out;
}

ShapeNodes Drawing::NodesOf(pugi::xml_node el) {
    ShapeNodes s{{}, {}, el};
    for (auto n = el; n && n.parent(); n = n.parent()) {
        if (!s.anchor && IsAnchor(LocalName(n.name()))) s.anchor = n;
        if (n.parent().parent().type() == pugi::node_document) s.top = n;  // a child of wsDr
    }
    return s;
}

std::vector<ShapeNodes> Drawing::Members(const ShapeNodes& group) {
    std::vector<ShapeNodes> out;
    for (auto c : group.el.children()) {
        auto l = LocalName(c.name());
        pugi::xml_node el;
        if (IsShapeElement(l)) el = c;
        else if (l == "AlternateContent") el = Alternative(c, ShapeElementIn);
        if (el) out.push_back({group.top, group.anchor, el});
    }
    return out;
}

ShapeNodes Drawing::FindByName(const std::string& name) {
    std::function<ShapeNodes(const std::vector<ShapeNodes>&)> walk = [&](const std::vector<ShapeNodes>& list) {
        for (auto& s : list)
            if (host::EqualsNoCase(NvProps(s.el).attribute("name").value(), name)) return s;
        for (auto& s : list)
            if (LocalName(s.el.name()) == "grpSp")
                if (auto hit = walk(Members(s))) return hit;
        return ShapeNodes{};
    };
    return walk(TopShapes());
}

long Drawing::NextId() {
    long top = 1;
    auto root = Root(false);
    for (auto n : root.select_nodes(".//*[local-name()='cNvPr']")) top = std::max<long>(top, n.node().attribute("id").as_int());
    return top + 1;
}

ShapeNodes Drawing::AddAnchor(const std::string& xml, const PointRect& r) {
    auto root = EnsureRoot();
    pugi::xml_document tmp;
    tmp.load_string(xml.c_str());
    std::function<void(pugi::xml_node)> rename = [&](pugi::xml_node n) {
        std::string_view name = n.name();
        if (name.substr(0, 4) == "xdr:") n.set_name((xdr + std::string(name.substr(4))).c_str());
        else if (name.substr(0, 2) == "a:") n.set_name((a + std::string(name.substr(2))).c_str());
        for (auto c : n.children())
            if (c.type() == pugi::node_element) rename(c);
    };
    rename(tmp.document_element());
    if (InChart()) {
        // the sheet anchor's shape goes into an anchor of fractions of the chart
        auto shape = ShapeElementIn(tmp.document_element());
        auto rel = tmp.append_child((xdr + "relSizeAnchor").c_str());
        for (const char* corner : {"from", "to"}) {
            auto m = rel.append_child((xdr + corner).c_str());
            m.append_child((xdr + "x").c_str()).text() = "0";
            m.append_child((xdr + "y").c_str()).text() = "0";
        }
        rel.append_copy(shape);
        tmp.remove_child(tmp.document_element());
    }
    auto anchor = root.append_copy(tmp.document_element());
    ShapeNodes s{anchor, anchor, ShapeElementIn(anchor)};
    dead_.erase(s.el.internal_object());
    SetRect(s, r);
    return s;
}

// ---------------------------------------------------------------- grouping

namespace {

void WriteXfrm(pugi::xml_node x, long long ox, long long oy, long long cx, long long cy) {
    auto off = KidMade(x, "off"), ext = KidMade(x, "ext");
    SetAttr(off, "x", ox);
    SetAttr(off, "y", oy);
    SetAttr(ext, "cx", cx);
    SetAttr(ext, "cy", cy);
}

}  // namespace

ShapeNodes Drawing::Group(const std::vector<ShapeNodes>& members) {
    auto root = Root(true);
    for (auto& m : members)
        if (InGroup(m.el)) NotAvailable("ShapeRange.Group of shapes already in a group");
    // Members keep their Z order; the group takes the place of the frontmost.
    std::vector<ShapeNodes> order;
    for (auto& t : TopShapes())
        for (auto& m : members)
            if (m.top == t.top) order.push_back(t);
    double x1 = 1e300, y1 = 1e300, x2 = -1e300, y2 = -1e300;
    std::vector<PointRect> rects;
    for (auto& m : order) {
        auto r = Rect(m);
        rects.push_back(r);
        x1 = std::min(x1, r.x), y1 = std::min(y1, r.y);
        x2 = std::max(x2, r.x + r.w), y2 = std::max(y2, r.y + r.h);
    }
    long id = NextId();
    std::string xml =
        "<xdr:twoCellAnchor><xdr:from><xdr:col>0</xdr:col><xdr:colOff>0</xdr:colOff><xdr:row>0</xdr:row>"
        "<xdr:rowOff>0</xdr:rowOff></xdr:from><xdr:to><xdr:col>0</xdr:col><xdr:colOff>0</xdr:colOff><xdr:row>0</xdr:row>"
        "<xdr:rowOff>0</xdr:rowOff></xdr:to><xdr:grpSp><xdr:nvGrpSpPr><xdr:cNvPr id=\"" + std::to_string(id) +
        "\" name=\"Group " + std::to_string(id - 1) +
        "\"/><xdr:cNvGrpSpPr/></xdr:nvGrpSpPr><xdr:grpSpPr><a:xfrm><a:off x=\"0\" y=\"0\"/><a:ext cx=\"0\" cy=\"0\"/>"
        "<a:chOff x=\"0\" y=\"0\"/><a:chExt cx=\"0\" cy=\"0\"/></a:xfrm></xdr:grpSpPr></xdr:grpSp><xdr:clientData/>"
        "</xdr:twoCellAnchor>";
    auto g = AddAnchor(xml, {x1, y1, x2 - x1, y2 - y1});
    root.insert_move_after(g.top, order.back().top);
    auto gx = Xfrm(g.el);
    WriteXfrm(gx, ToEmu(x1), ToEmu(y1), ToEmu(x2 - x1), ToEmu(y2 - y1));
    SetAttr(Kid(gx, "chOff"), "x", ToEmu(x1));
    SetAttr(Kid(gx, "chOff"), "y", ToEmu(y1));
    SetAttr(Kid(gx, "chExt"), "cx", ToEmu(x2 - x1));
    SetAttr(Kid(gx, "chExt"), "cy", ToEmu(y2 - y1));
    for (size_t i = 0; i < order.size(); ++i) {
        auto& m = order[i];
        auto& r = rects[i];
        // A member's own transform is its place in the group's child space: here, the sheet's EMU.
        auto x = Xfrm(m.el);
        if (!x) {
            std::string_view l = LocalName(m.el.name());
            auto holder = l == "graphicFrame" ? m.el : l == "grpSp" ? KidMade(m.el, "grpSpPr") : KidMade(m.el, "spPr");
            auto after = l == "graphicFrame" ? Kid(m.el, "nvGraphicFramePr") : pugi::xml_node{};
            std::string name = (l == "graphicFrame" ? xdr : a) + "xfrm";
            x = after ? holder.insert_child_after(name.c_str(), after) : holder.prepend_child(name.c_str());
        }
        // A nested group keeps its child space; only its place changes.
        WriteXfrm(x, ToEmu(r.x), ToEmu(r.y), ToEmu(r.w), ToEmu(r.h));
        g.el.append_move(Wrapper(m.el));
        root.remove_child(m.top);
    }
    return NodesOf(g.el);
}

std::vector<ShapeNodes> Drawing::Ungroup(const ShapeNodes& group) {
    auto root = Root(true);
    if (InGroup(group.el)) NotAvailable("Shape.Ungroup of a group inside a group");
    std::vector<std::pair<ShapeNodes, PointRect>> members;
    for (auto& m : Members(group)) members.push_back({m, Rect(m)});
    std::vector<ShapeNodes> out;
    auto after = group.top;
    for (auto& [m, r] : members) {
        auto anchor = root.insert_copy_after(group.anchor, after);
        for (auto c = anchor.first_child(); c;) {  // an empty anchor like the group's
            auto next = c.next_sibling();
            auto l = LocalName(c.name());
            if (l != "from" && l != "to" && l != "pos" && l != "ext" && l != "clientData") anchor.remove_child(c);
            c = next;
        }
        auto client = Kid(anchor, "clientData");
        auto moved = Wrapper(m.el);
        if (client) anchor.insert_move_before(moved, client);
        else anchor.append_move(moved);
        ShapeNodes s{anchor, anchor, m.el};
        SetRect(s, r);
        out.push_back(s);
        after = anchor;
    }
    Bury(group.el);
    root.remove_child(group.top);
    return out;
}

// ---------------------------------------------------------------- removing

void Drawing::Bury(pugi::xml_node n) {
    if (IsShapeElement(LocalName(n.name()))) {
        dead_.insert(n.internal_object());
        frames_.erase(n.internal_object());
    }
    for (auto c : n.children())
        if (c.type() == pugi::node_element) Bury(c);
}

void Drawing::Remove(const ShapeNodes& s) {
    if (IsLegacyObject(s)) NotAvailable("Shape.Delete of OLE objects and controls");
    auto& pkg = book().pkg();
    auto root = Root(true);
    pugi::xml_node gone = InGroup(s.el) ? Wrapper(s.el) : s.top;

    std::set<std::string> ids;
    std::map<std::string, std::string> known;  // id -> type
    for (auto& rel : pkg.Rels(part_)) known[rel.id] = rel.type;
    std::function<void(pugi::xml_node, std::set<std::string>&)> collect = [&](pugi::xml_node n, std::set<std::string>& into) {
        for (auto at : n.attributes()) {
            if (!std::strchr(at.name(), ':') || !known.count(at.value())) continue;
            into.insert(at.value());
            // A diagram's data names the diagram's drawing, a relationship of this part, by relId.
            const std::string& type = known[at.value()];
            if (type.size() > 12 && type.substr(type.size() - 12) == "/diagramData") {
                auto data = pkg.Target(part_, at.value());
                if (!data.empty() && pkg.Has(data))
                    for (auto x : pkg.Read(data).select_nodes("//@relId"))
                        if (known.count(x.attribute().value())) into.insert(x.attribute().value());
            }
        }
        for (auto c : n.children())
            if (c.type() == pugi::node_element) collect(c, into);
    };
    collect(gone, ids);
    auto parent = gone.parent();
    Bury(gone);
    parent.remove_child(gone);

    std::set<std::string> still;
    collect(root, still);
    for (auto& id : ids) {
        if (still.count(id)) continue;
        std::string target = pkg.Target(part_, id);
        pkg.RemoveRel(part_, id);
        if (!target.empty() && pkg.Has(target) && !pkg.IsTarget(target)) pkg.RemoveTree(target);
    }

    // A group left without members goes too.
    if (LocalName(parent.name()) == "grpSp" && Members({s.top, s.anchor, parent}).empty()) {
        Remove({s.top, s.anchor, parent});
        return;
    }
    if (root.find_child([](pugi::xml_node n) { return n.type() == pugi::node_element; })) return;

    // The last shape went: the part, its relationship and the sheet's (chart's) reference go as well.
    std::string part = part_;
    book().pkg().RemoveTree(part);
    auto owner = ContainerPart(true);
    const std::string& ownerPart = sheet_ ? sheet_->Part() : chartPart_;
    for (auto c : owner.children()) {
        if (LocalName(c.name()) != (sheet_ ? "drawing" : "userShapes")) continue;
        for (auto at : c.attributes())
            if (LocalName(at.name()) == "id") pkg.RemoveRel(ownerPart, at.value());
        owner.remove_child(c);
        break;
    }
    part_.clear();
}

// ---------------------------------------------------------------- positions

double Drawing::ColX(long col0) { return Sheet("Shape.Left")->ColumnLeft(col0 + 1); }

double Drawing::RowY(long row0) { return Sheet("Shape.Top")->RowTop(row0 + 1); }

namespace {
// The 0-based cell a distance from the sheet's edge falls in, and the offset into it in EMU; past
// the last cell, the last one. size(i) answers the points of cell i (1-based).
template <class Size>
void Locate(double at, long last, Size size, long& cell0, long& offEmu) {
    double acc = 0;
    at = std::max(0.0, at);
    for (long i = 1; i <= last; ++i) {
        double w = size(i);
        if (at < acc + w || i == last) {
            cell0 = i - 1;
            offEmu = std::min(ToEmu(at - acc), ToEmu(w));
            return;
        }
        acc += w;
    }
}
}  // namespace

void Drawing::XToCol(double x, long& col0, long& offEmu) {
    auto& sheet = *Sheet("Shape.Left");
    Locate(x, kMaxCols, [&](long c) { return sheet.ColumnWidthPoints(c); }, col0, offEmu);
}

void Drawing::YToRow(double y, long& row0, long& offEmu) {
    auto& sheet = *Sheet("Shape.Top");
    Locate(y, kMaxRows, [&](long r) { return sheet.RowHeightPoints(r); }, row0, offEmu);
}

PointRect Drawing::AnchorRect(pugi::xml_node anchor) {
    auto l = LocalName(anchor.name());
    if (l == "relSizeAnchor" || l == "absSizeAnchor") {
        auto size = chartSize_();
        auto at = [&](const char* corner, const char* axis) { return Kid(Kid(anchor, corner), axis).text().as_double(); };
        PointRect r{at("from", "x") * size.w, at("from", "y") * size.h, 0, 0};
        if (l == "relSizeAnchor") {
            r.w = at("to", "x") * size.w - r.x;
            r.h = at("to", "y") * size.h - r.y;
        } else {
            auto ext = Kid(anchor, "ext");
            r.w = Emu(ext, "cx") / kEmuPerPoint;
            r.h = Emu(ext, "cy") / kEmuPerPoint;
        }
        return r;
    }
    auto corner = [&](pugi::xml_node m, double& x, double& y) {
        x = ColX(Kid(m, "col").text().as_int()) + Kid(m, "colOff").text().as_llong() / kEmuPerPoint;
        y = RowY(Kid(m, "row").text().as_int()) + Kid(m, "rowOff").text().as_llong() / kEmuPerPoint;
    };
    PointRect r;
    if (l == "absoluteAnchor") {
        auto pos = Kid(anchor, "pos");
        r.x = Emu(pos, "x") / kEmuPerPoint;
        r.y = Emu(pos, "y") / kEmuPerPoint;
    } else {
        corner(Kid(anchor, "from"), r.x, r.y);
    }
    if (l == "twoCellAnchor") {
        double x2, y2;
        corner(Kid(anchor, "to"), x2, y2);
        r.w = x2 - r.x;
        r.h = y2 - r.y;
    } else {
        auto ext = Kid(anchor, "ext");
        r.w = Emu(ext, "cx") / kEmuPerPoint;
        r.h = Emu(ext, "cy") / kEmuPerPoint;
    }
    return r;
}

void Drawing::WriteAnchor(pugi::xml_node anchor, const PointRect& r) {
    auto l = LocalName(anchor.name());
    if (l == "relSizeAnchor" || l == "absSizeAnchor") {
        auto size = chartSize_();
        const PointRect& in = r;
        auto put = [&](const char* corner, double x, double y) {
            auto m = KidMade(anchor, corner);
            KidMade(m, "x").text().set(host::NumberToText(size.w > 0 ? x / size.w : 0).c_str());
            KidMade(m, "y").text().set(host::NumberToText(size.h > 0 ? y / size.h : 0).c_str());
        };
        put("from", in.x, in.y);
        if (l == "relSizeAnchor") {
            put("to", in.x + in.w, in.y + in.h);
        } else {
            auto ext = Kid(anchor, "ext");
            SetAttr(ext, "cx", ToEmu(in.w));
            SetAttr(ext, "cy", ToEmu(in.h));
        }
        return;
    }
    auto corner = [&](const char* which, double x, double y) {
        auto m = KidMade(anchor, which);
        long col, row, colOff, rowOff;
        XToCol(x, col, colOff);
        YToRow(y, row, rowOff);
        KidMade(m, "col").text().set(col);
        KidMade(m, "colOff").text().set(static_cast<long long>(colOff));
        KidMade(m, "row").text().set(row);
        KidMade(m, "rowOff").text().set(static_cast<long long>(rowOff));
    };
    if (l == "absoluteAnchor") {
        auto pos = Kid(anchor, "pos");
        SetAttr(pos, "x", ToEmu(r.x));
        SetAttr(pos, "y", ToEmu(r.y));
    } else {
        corner("from", r.x, r.y);
    }
    if (l == "twoCellAnchor") {
        corner("to", r.x + r.w, r.y + r.h);
    } else {
        auto ext = Kid(anchor, "ext");
        SetAttr(ext, "cx", ToEmu(r.w));
        SetAttr(ext, "cy", ToEmu(r.h));
    }
}

PointRect Drawing::Rect(const ShapeNodes& s) {
    if (!InGroup(s.el)) return AnchorRect(s.anchor);
    auto group = Container(s.el);
    PointRect g = Rect({s.top, s.anchor, group});
    auto gx = Xfrm(group);
    auto chOff = Kid(gx, "chOff"), chExt = Kid(gx, "chExt");
    auto x = Xfrm(s.el);
    auto off = Kid(x, "off"), ext = Kid(x, "ext");
    double cx = Emu(chExt, "cx"), cy = Emu(chExt, "cy");
    double sx = cx ? g.w / cx : 0, sy = cy ? g.h / cy : 0;
    return {g.x + (Emu(off, "x") - Emu(chOff, "x")) * sx, g.y + (Emu(off, "y") - Emu(chOff, "y")) * sy,
            Emu(ext, "cx") * sx, Emu(ext, "cy") * sy};
}

void Drawing::SetRect(const ShapeNodes& s, const PointRect& asked) {
    Root(true);
    auto x = Xfrm(s.el);
    PointRect r = asked;
    if (InChart() && !InGroup(s.el)) {
        // a shape stays inside its chart, as the application keeps it; a place wholly outside is
        // refused
        auto size = chartSize_();
        if (r.x + r.w < 0 || r.x > size.w || r.y + r.h < 0 || r.y > size.h) Refuse("The specified value is out of range.");
        r.w = std::min(r.w, size.w);
        r.h = std::min(r.h, size.h);
        r.x = std::clamp(r.x, 0.0, size.w - r.w);
        r.y = std::clamp(r.y, 0.0, size.h - r.h);
    }
    if (!InGroup(s.el)) {
        WriteAnchor(s.anchor, r);
        // The shape's own transform follows the anchor as the application writes it; a chart
        // frame's stays as it is (the application writes zeros there).
        if (x && LocalName(s.el.name()) != "graphicFrame") {
            auto off = KidMade(x, "off"), ext = KidMade(x, "ext");
            SetAttr(off, "x", ToEmu(r.x));
            SetAttr(off, "y", ToEmu(r.y));
            SetAttr(ext, "cx", ToEmu(r.w));
            SetAttr(ext, "cy", ToEmu(r.h));
        }
        return;
    }
    auto group = Container(s.el);
    PointRect g = Rect({s.top, s.anchor, group});
    if (g.w <= 0 || g.h <= 0 || !x) NotAvailable("Moving a member of an empty group");
    auto gx = Xfrm(group);
    auto chOff = Kid(gx, "chOff"), chExt = Kid(gx, "chExt");
    double ux = Emu(chExt, "cx") / g.w, uy = Emu(chExt, "cy") / g.h;
    auto off = KidMade(x, "off"), ext = KidMade(x, "ext");
    SetAttr(off, "x", Emu(chOff, "x") + std::llround((r.x - g.x) * ux));
    SetAttr(off, "y", Emu(chOff, "y") + std::llround((r.y - g.y) * uy));
    SetAttr(ext, "cx", std::llround(r.w * ux));
    SetAttr(ext, "cy", std::llround(r.h * uy));
}

long Drawing::ZPosition(const ShapeNodes& s) {
    if (InGroup(s.el)) NotAvailable("Shape.ZOrderPosition of a group member");
    auto all = TopShapes();
    for (size_t i = 0; i < all.size(); ++i)
        if (all[i].top == s.top) return static_cast<long>(i) + 1;
    return 0;
}

void Drawing::ZOrder(const ShapeNodes& s, long cmd) {
    if (InGroup(s.el)) NotAvailable("Shape.ZOrder of a group member");
    auto root = Root(true);
    auto all = TopShapes();
    auto it = std::find_if(all.begin(), all.end(), [&](const ShapeNodes& x) { return x.top == s.top; });
    if (it == all.end()) return;
    switch (cmd) {
        case host::msoBringToFront:
            if (all.back().top != s.top) root.insert_move_after(s.top, all.back().top);
            break;
        case host::msoSendToBack:
            if (all.front().top != s.top) root.insert_move_before(s.top, all.front().top);
            break;
        case host::msoBringForward:
            if (it + 1 != all.end()) root.insert_move_after(s.top, (it + 1)->top);
            break;
        case host::msoSendBackward:
            if (it != all.begin()) root.insert_move_before(s.top, (it - 1)->top);
            break;
        default:
            NotAvailable("Shape.ZOrder with this command");
    }
}

bool Drawing::IsLegacyObject(const ShapeNodes& s) {
    // The shape of an OLE object or a control names its VML twin (a14:compatExt).
    auto list = Kid(NvProps(s.el), "extLst");
    for (auto ext : list.children())
        if (Kid(ext, "compatExt")) return true;
    return false;
}

long Drawing::TypeOf(const ShapeNodes& s) {
    long t = ShapeType(s.el);
    if (!IsLegacyObject(s) || !sheet_) return t;
    std::string id = NvProps(s.el).attribute("id").value();
    auto& pkg = book().pkg();
    auto sheet = pkg.Read(sheet_->Part()).document_element();
    for (auto x : sheet.select_nodes(".//*[local-name()='oleObject' or local-name()='control']")) {
        auto n = x.node();
        if (id != n.attribute("shapeId").value()) continue;
        if (LocalName(n.name()) == "oleObject") return n.attribute("link") ? host::msoLinkedOLEObject : host::msoEmbeddedOLEObject;
        for (auto at : n.attributes())
            if (LocalName(at.name()) == "id")
                for (auto& rel : pkg.Rels(sheet_->Part()))
                    if (rel.id == at.value())
                        return rel.type.size() >= 8 && rel.type.substr(rel.type.size() - 8) == "ctrlProp" ? host::msoFormControl
                                                                                                     : host::msoOLEControlObject;
    }
    return t;
}

std::string Drawing::ChartPart(const ShapeNodes& s) {
    if (LocalName(s.el.name()) != "graphicFrame" || InChart()) return {};
    auto data = Kid(Kid(s.el, "graphic"), "graphicData");
    // Only DrawingML charts: the newer chart kinds (chartex) have a part of another model.
    if (std::string_view(data.attribute("uri").value()) != "http://schemas.openxmlformats.org/drawingml/2006/chart") return {};
    for (auto c : data.children())
        if (LocalName(c.name()) == "chart")
            for (auto at : c.attributes())
                if (LocalName(at.name()) == "id") return book().pkg().Target(part_, at.value());
    return {};
}

// ---------------------------------------------------------------- verifying

namespace {

// The coordinates of the schemas, in EMU: beyond what any sheet measures.
constexpr long long kMinCoordinate = -27273042329600LL, kMaxCoordinate = 27273042316900LL;

class AnchorCheck {
public:
    AnchorCheck(Book& book, std::string part) : book_(book), part_(std::move(part)) {}

    void Anchor(pugi::xml_node anchor) {
        auto l = LocalName(anchor.name());
        if (l == "relSizeAnchor" || l == "absSizeAnchor") {
            for (const char* corner : {"from", "to"})
                for (const char* axis : {"x", "y"})
                    if (auto n = Kid(Kid(anchor, corner), axis)) Fraction(n.text().get());
        } else {
            for (const char* corner : {"from", "to"})
                if (auto m = Kid(anchor, corner)) Marker(m);
        }
        if (auto pos = Kid(anchor, "pos"))
            for (const char* axis : {"x", "y"}) Whole(pos.attribute(axis).value(), kMinCoordinate, kMaxCoordinate, "places a shape at");
        if (auto ext = Kid(anchor, "ext"))
            for (const char* axis : {"cx", "cy"}) Whole(ext.attribute(axis).value(), 0, kMaxCoordinate, "gives a shape the size");
    }

private:
    void Marker(pugi::xml_node m) {
        // Positions walk columns and rows up to these: a number beyond the sheet would be walked for ever.
        if (auto n = Kid(m, "col")) Whole(n.text().get(), 0, kMaxCols - 1, "anchors a shape at column index");
        if (auto n = Kid(m, "row")) Whole(n.text().get(), 0, kMaxRows - 1, "anchors a shape at row index");
        for (const char* off : {"colOff", "rowOff"})
            if (auto n = Kid(m, off)) Whole(n.text().get(), kMinCoordinate, kMaxCoordinate, "offsets a shape by");
    }

    void Whole(const char* text, long long lo, long long hi, const char* what) {
        auto n = IntegerOf(text);
        if (!n || *n < lo || *n > hi)
            book_.Damaged(part_, std::string(what) + " '" + text + "', outside " + std::to_string(lo) + " to " + std::to_string(hi));
    }

    void Fraction(const char* text) {
        char* end = nullptr;
        double v = std::strtod(text, &end);
        while (end && (*end == ' ' || *end == '\t' || *end == '\r' || *end == '\n')) ++end;
        if (end == text || !end || *end || !std::isfinite(v))
            book_.Damaged(part_, "places a shape at '" + std::string(text) + "' of its chart, which is not a number");
    }

    Book& book_;
    std::string part_;
};

}  // namespace

void VerifyDrawing(Book& book, const std::string& owner, bool chart) {
    auto& pkg = book.pkg();
    pugi::xml_node ref;
    for (auto c : pkg.Read(owner).document_element().children())
        if (LocalName(c.name()) == (chart ? "userShapes" : "drawing")) {
            ref = c;
            break;
        }
    if (!ref) return;
    // A drawing the engine can't find would read as a sheet without shapes, and charts would be lost.
    auto target = [&](const std::string& source, pugi::xml_node el) {
        std::string id = RelIdOf(el);
        std::string part = pkg.Target(source, id);
        if (part.empty())
            book.Damaged(source, "refers to relationship '" + id + "', which '" + Package::RelsPartOf(source) + "' doesn't have");
        if (!pkg.Has(part)) book.Damaged(Package::RelsPartOf(source), "points at '" + part + "', which the package doesn't have");
        return part;
    };
    std::string part = target(owner, ref);
    auto root = book.ExpectRoot(part, chart ? "c:userShapes" : "xdr:wsDr").document_element();

    AnchorCheck check(book, part);
    for (auto c : root.children()) {
        auto l = LocalName(c.name());
        if (IsAnchor(l)) check.Anchor(c);
        if (l != "AlternateContent") continue;
        for (auto alt : c.children())
            for (auto a : alt.children())
                if (IsAnchor(LocalName(a.name()))) check.Anchor(a);
    }
    if (chart) return;
    for (auto x : root.select_nodes(".//*[local-name()='graphicData']")) {
        auto data = x.node();
        if (std::strcmp(data.attribute("uri").value(), kChartNs) != 0) continue;
        if (auto c = Kid(data, "chart")) pkg.Read(target(part, c));
    }
    // Deleting a diagram reads its data part.
    for (auto& rel : pkg.Rels(part)) {
        if (rel.external || rel.type.size() < 12 || rel.type.substr(rel.type.size() - 12) != "/diagramData") continue;
        std::string data = pkg.Target(part, rel.id);
        if (!data.empty() && pkg.Has(data)) pkg.Read(data);
    }
}

}  // namespace xlsx
