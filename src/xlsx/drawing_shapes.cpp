// The shape objects of a worksheet: Shapes, Shape, ShapeRange, GroupShapes, ChartObjects and
// ChartObject over the sheet's drawing.
#include <algorithm>
#include <cmath>

#include "host/chart_constants.h"
#include "host/error.h"
#include "xlsx/book.h"
#include "xlsx/chart_part.h"
#include "xlsx/drawing.h"

namespace xlsx {

namespace {

using host::Ref;
using host::Variant;

constexpr const char* kChartRel = "http://schemas.openxmlformats.org/officeDocument/2006/relationships/chart";

bool True(long tri) { return tri != host::msoFalse; }
long Tri(bool b) { return b ? host::msoTrue : host::msoFalse; }

pugi::xml_node CNvPr(pugi::xml_node el) {
    for (auto c : el.children())
        if (LocalName(c.name()).substr(0, 2) == "nv") return Kid(c, "cNvPr");
    return {};
}

// The cNv*Pr that holds the locks of a shape (cNvSpPr, cNvPicPr, cNvGraphicFramePr ...).
pugi::xml_node CNvKindPr(pugi::xml_node el) {
    for (auto c : el.children())
        if (LocalName(c.name()).substr(0, 2) == "nv")
            for (auto k : c.children())
                if (LocalName(k.name()).substr(0, 3) == "cNv" && LocalName(k.name()) != "cNvPr") return k;
    return {};
}

void SetOrRemove(pugi::xml_node n, const char* name, const std::string& v) {
    if (v.empty()) {
        n.remove_attribute(name);
        return;
    }
    auto a = n.attribute(name);
    if (!a) a = n.append_attribute(name);
    a.set_value(v.c_str());
}

struct AutoShapeKind {
    long type;
    const char* prst;
    const char* name;  // what the application calls a new one
};
constexpr AutoShapeKind kAutoShapes[] = {
    {host::msoShapeRectangle, "rect", "Rectangle"},
    {host::msoShapeParallelogram, "parallelogram", "Parallelogram"},
    {host::msoShapeTrapezoid, "trapezoid", "Trapezoid"},
    {host::msoShapeDiamond, "diamond", "Diamond"},
    {host::msoShapeRoundedRectangle, "roundRect", "Rectangle: Rounded Corners"},
    {host::msoShapeOctagon, "octagon", "Octagon"},
    {host::msoShapeIsoscelesTriangle, "triangle", "Isosceles Triangle"},
    {host::msoShapeRightTriangle, "rtTriangle", "Right Triangle"},
    {host::msoShapeOval, "ellipse", "Oval"},
};
constexpr long kNotPrimitive = 138;  // msoShapeNotPrimitive

[[noreturn]] void DoesNotApply() { Refuse("Application-defined or object-defined error"); }

std::string Xml(const std::string& s) {
    std::string out;
    for (char c : s) {
        if (c == '&') out += "&amp;";
        else if (c == '<') out += "&lt;";
        else if (c == '>') out += "&gt;";
        else if (c == '"') out += "&quot;";
        else out += c;
    }
    return out;
}

}  // namespace

// ---------------------------------------------------------------- Shape

// A sheet's drawing as its shapes hold it: sharing the sheet's ownership, so that a shape keeps
// its sheet, and the sheet its drawing.
namespace {
DrawingPtr SheetDrawing(const std::shared_ptr<SheetImpl>& sheet) { return DrawingPtr(sheet, &sheet->drawing()); }
}  // namespace

class ShapeImpl : public host::Shape {
public:
    ShapeImpl(DrawingPtr drawing, ShapeNodes s) : drawing_(std::move(drawing)), s_(s) {}

    Drawing& D() { return *drawing_; }
    const ShapeNodes& nodes() {
        if (!D().Alive(s_.el)) Refuse("The object invoked has disconnected from its clients.");
        s_ = D().NodesOf(s_.el);
        return s_;
    }
    pugi::xml_node El() { return nodes().el; }
    pugi::xml_node Edit() {
        D().Root(true);
        return El();
    }

    std::string Name() override { return CNvPr(El()).attribute("name").value(); }
    void SetName(const std::string& v) override {
        if (v.empty() || host::Len(v) > 255) Refuse("Application-defined or object-defined error");
        SetOrRemove(CNvPr(Edit()), "name", v);
    }
    std::string AlternativeText() override { return CNvPr(El()).attribute("descr").value(); }
    void SetAlternativeText(const std::string& v) override { SetOrRemove(CNvPr(Edit()), "descr", v); }
    long Type() override { return D().TypeOf(nodes()); }
    long AutoShapeType() override {
        auto spPr = Kid(El(), "spPr");
        if (!spPr) return host::msoShapeMixed;
        if (auto g = Kid(spPr, "prstGeom")) {
            std::string_view p = g.attribute("prst").value();
            for (auto& k : kAutoShapes)
                if (p == k.prst) return k.type;
            return kNotPrimitive;
        }
        return Kid(spPr, "custGeom") ? kNotPrimitive : host::msoShapeMixed;
    }
    void SetAutoShapeType(long v) override {
        auto g = Kid(Kid(El(), "spPr"), "prstGeom");
        if (!g) DoesNotApply();
        for (auto& k : kAutoShapes)
            if (k.type == v) {
                Edit();
                g.attribute("prst").set_value(k.prst);
                return;
            }
        NotAvailable("Shape.AutoShapeType of this kind");
    }
    long ID() override { return CNvPr(El()).attribute("id").as_int(); }

    double Left() override { return D().Rect(nodes()).x; }
    void SetLeft(double v) override { Move([&](PointRect& r) { r.x = v; }); }
    double Top() override { return D().Rect(nodes()).y; }
    void SetTop(double v) override { Move([&](PointRect& r) { r.y = v; }); }
    double Width() override { return D().Rect(nodes()).w; }
    void SetWidth(double v) override {
        if (v < 0) Refuse("The specified value is out of range.");
        bool lock = True(LockAspectRatio());
        Move([&](PointRect& r) {
            if (lock && r.w > 0) r.h *= v / r.w;
            r.w = v;
        });
    }
    double Height() override { return D().Rect(nodes()).h; }
    void SetHeight(double v) override {
        if (v < 0) Refuse("The specified value is out of range.");
        bool lock = True(LockAspectRatio());
        Move([&](PointRect& r) {
            if (lock && r.h > 0) r.w *= v / r.h;
            r.h = v;
        });
    }
    double Rotation() override { return Xfrm(El()).attribute("rot").as_llong() / 60000.0; }
    void SetRotation(double v) override {
        auto x = Xfrm(El());
        if (!x) DoesNotApply();
        Edit();
        v = std::fmod(v, 360.0);
        if (v < 0) v += 360;
        SetOrRemove(x, "rot", v == 0 ? "" : std::to_string(std::llround(v * 60000)));
    }
    long LockAspectRatio() override {
        for (auto c : CNvKindPr(El()).children())
            if (c.attribute("noChangeAspect").as_bool()) return host::msoTrue;
        return host::msoFalse;
    }
    void SetLockAspectRatio(long v) override {
        auto k = CNvKindPr(Edit());
        if (!k) DoesNotApply();
        auto locks = k.first_child();
        if (!locks) {
            // spLocks, picLocks, graphicFrameLocks ... named after their cNv*Pr.
            std::string kind(LocalName(k.name()));
            std::string base = kind.substr(3, kind.size() - 5);  // cNvSpPr -> Sp
            base[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(base[0])));
            locks = k.append_child((D().a + base + "Locks").c_str());
        }
        SetOrRemove(locks, "noChangeAspect", True(v) ? "1" : "");
    }
    long Placement() override {
        auto a = nodes().anchor;
        auto l = LocalName(a.name());
        if (l == "absoluteAnchor") return host::xlFreeFloating;
        if (l == "oneCellAnchor") return host::xlMove;
        std::string_view e = a.attribute("editAs").value();
        if (e == "oneCell") return host::xlMove;
        if (e == "absolute") return host::xlFreeFloating;
        return host::xlMoveAndSize;
    }
    void SetPlacement(long v) override {
        auto a = nodes().anchor;
        if (LocalName(a.name()) != "twoCellAnchor") NotAvailable("Shape.Placement of a one-cell or absolute anchor");
        Edit();
        const char* e = v == host::xlMove ? "oneCell" : v == host::xlFreeFloating ? "absolute" : v == host::xlMoveAndSize ? "" : nullptr;
        if (!e) Refuse("Unable to set the Placement property of the Shape class");
        SetOrRemove(a, "editAs", e);
    }
    Ref<host::Range> TopLeftCell() override {
        auto r = D().Rect(nodes());
        long c, r0, off;
        D().XToCol(r.x, c, off);
        D().YToRow(r.y, r0, off);
        return MakeRange(D().Sheet("Shape.TopLeftCell"), r0 + 1, c + 1, r0 + 1, c + 1);
    }
    Ref<host::Range> BottomRightCell() override {
        auto r = D().Rect(nodes());
        long c, r0, off;
        D().XToCol(r.x + r.w, c, off);
        D().YToRow(r.y + r.h, r0, off);
        return MakeRange(D().Sheet("Shape.BottomRightCell"), r0 + 1, c + 1, r0 + 1, c + 1);
    }
    long Visible() override { return Tri(!CNvPr(El()).attribute("hidden").as_bool()); }
    void SetVisible(long v) override { SetOrRemove(CNvPr(Edit()), "hidden", True(v) ? "" : "1"); }
    long ZOrderPosition() override { return D().ZPosition(nodes()); }
    void ZOrder(long cmd) override { D().ZOrder(nodes(), cmd); }

    Ref<host::TextFrame> TextFrame() override { return MakeTextFrame(Text()); }
    Ref<host::TextFrame2> TextFrame2() override { return MakeTextFrame2(Text()); }
    Ref<host::FillFormat> Fill() override {
        if (!Kid(El(), "spPr")) DoesNotApply();
        return MakeShapeFill(drawing_, nodes());
    }
    Ref<host::LineFormat> Line() override {
        if (!Kid(El(), "spPr")) DoesNotApply();
        return MakeShapeLine(drawing_, nodes());
    }
    long HasChart() override { return Tri(Type() == host::msoChart); }
    Ref<host::Chart> Chart() override;
    Ref<host::GroupShapes> GroupItems() override;
    Ref<host::ShapeRange> Ungroup() override;
    void Select(const Variant&) override { NotAvailable("Shape.Select"); }
    void Delete() override { D().Remove(nodes()); }

    const DrawingPtr& drawing() const { return drawing_; }

private:
    template <class F>
    void Move(F change) {
        auto r = D().Rect(nodes());
        change(r);
        if (r.w < 0 || r.h < 0) Refuse("The specified value is out of range.");
        D().SetRect(nodes(), r);
    }
    TextHost Text() {
        if (LocalName(El().name()) != "sp") DoesNotApply();
        return {drawing_, nodes()};
    }

    DrawingPtr drawing_;
    ShapeNodes s_;
};

std::shared_ptr<host::Shape> MakeShape(DrawingPtr drawing, const ShapeNodes& s) {
    return std::make_shared<ShapeImpl>(std::move(drawing), s);
}

Drawing& TextHost::drawing() { return *owner; }

pugi::xml_node TextHost::Body(bool make) {
    auto& d = drawing();
    if (!d.Alive(s.el)) Refuse("The object invoked has disconnected from its clients.");
    auto body = Kid(s.el, "txBody");
    if (body || !make) return body;
    d.Root(true);
    std::string xdr(s.el.name());
    xdr = xdr.substr(0, xdr.find(':') == std::string::npos ? 0 : xdr.find(':') + 1);
    body = s.el.append_child((xdr + "txBody").c_str());
    body.append_child((d.a + "bodyPr").c_str());
    body.append_child((d.a + "lstStyle").c_str());
    body.append_child((d.a + "p").c_str());
    return body;
}

// ---------------------------------------------------------------- ShapeRange

class ShapeRangeImpl : public host::ShapeRange {
public:
    explicit ShapeRangeImpl(std::vector<std::shared_ptr<host::Shape>> shapes) : shapes_(std::move(shapes)) {}

    long Count() override { return static_cast<long>(shapes_.size()); }
    Ref<host::Shape> Item(long index) override {
        if (index < 1 || index > Count()) Refuse("The index into the specified collection is out of bounds.");
        return shapes_[index - 1];
    }
    Ref<host::Shape> Item(const std::string& name) override {
        for (auto& s : shapes_)
            if (host::EqualsNoCase(s->Name(), name)) return s;
        Refuse("The item with the specified name wasn't found.");
    }
    Ref<host::Shape> Group() override {
        std::vector<ShapeNodes> members;
        DrawingPtr drawing;
        for (auto& s : shapes_) {
            auto impl = std::dynamic_pointer_cast<ShapeImpl>(s);
            if (!impl || (drawing && impl->drawing() != drawing)) NotAvailable("ShapeRange.Group of these shapes");
            drawing = impl->drawing();
            members.push_back(impl->nodes());
        }
        if (members.size() < 2) Refuse("Group method of ShapeRange class failed");
        return MakeShape(drawing, drawing->Group(members));
    }

    // Reading needs exactly one shape; writing goes to every shape.
#define PS_GET(T, M) \
    T M() override { return One()->M(); }
#define PS_SET(T, M) \
    void Set##M(T v) override { \
        for (auto& s : shapes_) s->Set##M(v); \
    }
    PS_GET(std::string, Name)
    PS_SET(const std::string&, Name)
    PS_GET(std::string, AlternativeText)
    PS_SET(const std::string&, AlternativeText)
    PS_GET(long, Type)
    PS_GET(long, AutoShapeType)
    PS_SET(long, AutoShapeType)
    PS_GET(long, ID)
    PS_GET(double, Left)
    PS_SET(double, Left)
    PS_GET(double, Top)
    PS_SET(double, Top)
    PS_GET(double, Width)
    PS_SET(double, Width)
    PS_GET(double, Height)
    PS_SET(double, Height)
    PS_GET(double, Rotation)
    PS_SET(double, Rotation)
    PS_GET(long, LockAspectRatio)
    PS_SET(long, LockAspectRatio)
    PS_GET(long, Placement)
    PS_SET(long, Placement)
    PS_GET(Ref<host::Range>, TopLeftCell)
    PS_GET(Ref<host::Range>, BottomRightCell)
    PS_GET(long, Visible)
    PS_SET(long, Visible)
    PS_GET(long, ZOrderPosition)
    PS_GET(Ref<host::TextFrame>, TextFrame)
    PS_GET(Ref<host::TextFrame2>, TextFrame2)
    PS_GET(Ref<host::FillFormat>, Fill)
    PS_GET(Ref<host::LineFormat>, Line)
    PS_GET(long, HasChart)
    PS_GET(Ref<host::Chart>, Chart)
    PS_GET(Ref<host::GroupShapes>, GroupItems)
#undef PS_GET
#undef PS_SET
    void ZOrder(long cmd) override {
        for (auto& s : shapes_) s->ZOrder(cmd);
    }
    Ref<host::ShapeRange> Ungroup() override { return One()->Ungroup(); }
    void Select(const Variant&) override { NotAvailable("ShapeRange.Select"); }
    void Delete() override {
        for (auto& s : shapes_) s->Delete();
    }

private:
    std::shared_ptr<host::Shape> One() {
        if (shapes_.size() != 1) Refuse("This member can only be accessed for a single shape.");
        return shapes_.front();
    }
    std::vector<std::shared_ptr<host::Shape>> shapes_;
};

namespace {

Ref<host::ShapeRange> RangeOf(const std::vector<std::string>& names,
                              const std::function<Ref<host::Shape>(const std::string&)>& item) {
    std::vector<std::shared_ptr<host::Shape>> list;
    for (auto& n : names) list.push_back(item(n));
    return std::make_shared<ShapeRangeImpl>(std::move(list));
}

}  // namespace

// ---------------------------------------------------------------- GroupShapes

class GroupShapesImpl : public host::GroupShapes {
public:
    GroupShapesImpl(DrawingPtr drawing, ShapeNodes group) : drawing_(std::move(drawing)), g_(group) {}
    long Count() override { return static_cast<long>(List().size()); }
    Ref<host::Shape> Item(long index) override {
        auto l = List();
        if (index < 1 || index > static_cast<long>(l.size())) Refuse("The index into the specified collection is out of bounds.");
        return MakeShape(drawing_, l[index - 1]);
    }
    Ref<host::Shape> Item(const std::string& name) override {
        for (auto& s : List())
            if (host::EqualsNoCase(CNvPr(s.el).attribute("name").value(), name)) return MakeShape(drawing_, s);
        Refuse("The item with the specified name wasn't found.");
    }
    Ref<host::ShapeRange> Range(const std::vector<std::string>& names) override {
        return RangeOf(names, [&](const std::string& n) { return Item(n); });
    }

private:
    std::vector<ShapeNodes> List() {
        if (!drawing_->Alive(g_.el)) Refuse("The object invoked has disconnected from its clients.");
        return drawing_->Members(drawing_->NodesOf(g_.el));
    }
    DrawingPtr drawing_;
    ShapeNodes g_;
};

Ref<host::ShapeRange> ShapeImpl::Ungroup() {
    if (LocalName(El().name()) != "grpSp") DoesNotApply();
    std::vector<std::shared_ptr<host::Shape>> list;
    for (auto& m : D().Ungroup(nodes())) list.push_back(MakeShape(drawing_, m));
    return std::make_shared<ShapeRangeImpl>(std::move(list));
}

Ref<host::GroupShapes> ShapeImpl::GroupItems() {
    if (LocalName(El().name()) != "grpSp") DoesNotApply();
    return std::make_shared<GroupShapesImpl>(drawing_, nodes());
}

// ---------------------------------------------------------------- ChartObject

// One per chart frame, kept by the drawing so that a chart's Parent stays its frame. It holds its
// sheet weakly: the drawing that keeps it belongs to that sheet.
class ChartObjectImpl : public host::ChartObject, public std::enable_shared_from_this<ChartObjectImpl> {
public:
    ChartObjectImpl(std::weak_ptr<SheetImpl> sheet, ShapeNodes s) : sheet_(std::move(sheet)), s_(s) {}

    std::shared_ptr<SheetImpl> Sheet() {
        auto sheet = sheet_.lock();
        if (!sheet) Refuse("The object invoked has disconnected from its clients.");
        return sheet;
    }
    std::shared_ptr<ShapeImpl> S() { return std::make_shared<ShapeImpl>(SheetDrawing(Sheet()), s_); }

    std::string Name() override { return S()->Name(); }
    void SetName(const std::string& v) override { S()->SetName(v); }
    Ref<host::Chart> Chart() override {
        auto sheet = Sheet();
        auto part = sheet->drawing().ChartPart(S()->nodes());
        if (part.empty()) Refuse("Application-defined or object-defined error");
        if (!chart_ || part != chartPart_) {
            chart_ = MakeChart(sheet->book(), part, weak_from_this());
            chartPart_ = part;
        }
        return chart_;
    }
    Ref<host::ShapeRange> ShapeRange() override {
        return std::make_shared<ShapeRangeImpl>(std::vector<std::shared_ptr<host::Shape>>{S()});
    }
    long Index() override;
    double Left() override { return S()->Left(); }
    void SetLeft(double v) override { S()->SetLeft(v); }
    double Top() override { return S()->Top(); }
    void SetTop(double v) override { S()->SetTop(v); }
    double Width() override { return S()->Width(); }
    void SetWidth(double v) override { S()->SetWidth(v); }
    double Height() override { return S()->Height(); }
    void SetHeight(double v) override { S()->SetHeight(v); }
    Ref<host::Range> TopLeftCell() override { return S()->TopLeftCell(); }
    Ref<host::Range> BottomRightCell() override { return S()->BottomRightCell(); }
    Variant Placement() override { return S()->Placement(); }
    void SetPlacement(const Variant& v) override { S()->SetPlacement(host::CLng(v)); }
    bool Visible() override { return True(S()->Visible()); }
    void SetVisible(bool v) override { S()->SetVisible(Tri(v)); }
    long ZOrder() override { return S()->ZOrderPosition(); }
    void BringToFront() override { S()->ZOrder(host::msoBringToFront); }
    void SendToBack() override { S()->ZOrder(host::msoSendToBack); }
    bool RoundedCorners() override { NotAvailable("ChartObject.RoundedCorners"); }
    void SetRoundedCorners(bool) override { NotAvailable("ChartObject.RoundedCorners"); }
    bool Shadow() override { NotAvailable("ChartObject.Shadow"); }
    void SetShadow(bool) override { NotAvailable("ChartObject.Shadow"); }
    // clientData: the frame's lock and print flags, true unless written false.
    bool Locked() override { return ClientFlag("fLocksWithSheet"); }
    void SetLocked(bool v) override { SetClientFlag("fLocksWithSheet", v); }
    bool PrintObject() override { return ClientFlag("fPrintsWithSheet"); }
    void SetPrintObject(bool v) override { SetClientFlag("fPrintsWithSheet", v); }
    Ref<host::Border> Border() override { NotAvailable("ChartObject.Border"); }
    Ref<host::Interior> Interior() override { NotAvailable("ChartObject.Interior"); }
    void Activate() override { NotAvailable("ChartObject.Activate"); }
    void Select(const Variant&) override { NotAvailable("ChartObject.Select"); }
    void Delete() override { S()->Delete(); }

private:
    bool ClientFlag(const char* name) {
        auto a = Kid(S()->nodes().anchor, "clientData").attribute(name);
        return !a || a.as_bool();
    }
    void SetClientFlag(const char* name, bool v) {
        auto anchor = S()->nodes().anchor;
        Sheet()->drawing().Root(true);
        SetOrRemove(KidMade(anchor, "clientData"), name, v ? "" : "0");
    }

    std::weak_ptr<SheetImpl> sheet_;
    ShapeNodes s_;
    std::shared_ptr<host::Chart> chart_;
    std::string chartPart_;
};

std::shared_ptr<ChartObjectImpl> Drawing::Frame(const ShapeNodes& s) {
    auto& f = frames_[s.el.internal_object()];
    if (!f) f = std::make_shared<ChartObjectImpl>(Sheet("ChartObject")->weak_from_this(), s);
    return f;
}

Ref<host::Chart> ShapeImpl::Chart() {
    if (Type() != host::msoChart) DoesNotApply();
    if (D().ChartPart(nodes()).empty()) NotAvailable("Shape.Chart of the newer chart kinds");
    return D().Frame(nodes())->Chart();
}

namespace {

std::vector<ShapeNodes> Frames(Drawing& d) {
    std::vector<ShapeNodes> out;
    for (auto& s : d.TopShapes())
        if (!d.ChartPart(s).empty()) out.push_back(s);
    return out;
}

std::string NewName(const char* kind, long id) { return std::string(kind) + " " + std::to_string(id - 1); }

std::string TwoCellAnchor(const std::string& inner) {
    return "<xdr:twoCellAnchor><xdr:from><xdr:col>0</xdr:col><xdr:colOff>0</xdr:colOff><xdr:row>0</xdr:row>"
           "<xdr:rowOff>0</xdr:rowOff></xdr:from><xdr:to><xdr:col>0</xdr:col><xdr:colOff>0</xdr:colOff>"
           "<xdr:row>0</xdr:row><xdr:rowOff>0</xdr:rowOff></xdr:to>" +
           inner + "<xdr:clientData/></xdr:twoCellAnchor>";
}

ShapeNodes AddFrame(Drawing& d, double left, double top, double width, double height) {
    if (width < 0 || height < 0) Refuse("The specified value is out of range.");
    auto& book = d.book();
    d.EnsureRoot();
    std::string part = NewChartPart(book);
    std::string rid = book.pkg().AddRel(d.Part(), kChartRel, part);
    long id = d.NextId();
    std::string xml = TwoCellAnchor(
        "<xdr:graphicFrame macro=\"\"><xdr:nvGraphicFramePr><xdr:cNvPr id=\"" + std::to_string(id) + "\" name=\"" +
        NewName("Chart", id) +
        "\"/><xdr:cNvGraphicFramePr/></xdr:nvGraphicFramePr><xdr:xfrm><a:off x=\"0\" y=\"0\"/><a:ext cx=\"0\" "
        "cy=\"0\"/></xdr:xfrm><a:graphic><a:graphicData uri=\"http://schemas.openxmlformats.org/drawingml/2006/chart\">"
        "<c:chart xmlns:c=\"http://schemas.openxmlformats.org/drawingml/2006/chart\" "
        "xmlns:r=\"http://schemas.openxmlformats.org/officeDocument/2006/relationships\" r:id=\"" +
        rid + "\"/></a:graphicData></a:graphic></xdr:graphicFrame>");
    return d.AddAnchor(xml, {left, top, width, height});
}

}  // namespace

// ---------------------------------------------------------------- ChartObjects

class ChartObjectsImpl : public host::ChartObjects {
public:
    explicit ChartObjectsImpl(std::shared_ptr<SheetImpl> sheet) : sheet_(std::move(sheet)) {}
    long Count() override { return static_cast<long>(Frames(D()).size()); }
    Ref<host::ChartObject> Item(long index) override {
        auto l = Frames(D());
        if (index < 1 || index > static_cast<long>(l.size())) Refuse("Unable to get the ChartObjects property of the Worksheet class");
        return D().Frame(l[index - 1]);
    }
    Ref<host::ChartObject> Item(const std::string& name) override {
        for (auto& s : Frames(D()))
            if (host::EqualsNoCase(CNvPr(s.el).attribute("name").value(), name)) return D().Frame(s);
        Refuse("Unable to get the ChartObjects property of the Worksheet class");
    }
    Ref<host::ChartObject> Add(double left, double top, double width, double height) override {
        return D().Frame(AddFrame(D(), left, top, width, height));
    }
    void Delete() override {
        for (auto& s : Frames(D())) D().Remove(s);
    }

private:
    Drawing& D() { return sheet_->drawing(); }
    std::shared_ptr<SheetImpl> sheet_;
};

long ChartObjectImpl::Index() {
    auto l = Frames(Sheet()->drawing());
    for (size_t i = 0; i < l.size(); ++i)
        if (l[i].el == s_.el) return static_cast<long>(i) + 1;
    Refuse("The object invoked has disconnected from its clients.");
}

// ---------------------------------------------------------------- Shapes

class ShapesImpl : public host::Shapes {
public:
    explicit ShapesImpl(DrawingPtr drawing) : drawing_(std::move(drawing)) {}
    long Count() override { return static_cast<long>(D().TopShapes().size()); }
    Ref<host::Shape> Item(long index) override {
        auto l = D().TopShapes();
        if (index < 1 || index > static_cast<long>(l.size())) Refuse("The index into the specified collection is out of bounds.");
        return MakeShape(drawing_, l[index - 1]);
    }
    Ref<host::Shape> Item(const std::string& name) override {
        auto s = D().FindByName(name);
        if (!s) Refuse("The item with the specified name wasn't found.");
        return MakeShape(drawing_, s);
    }
    Ref<host::ShapeRange> Range(const std::string& name) override { return Range(std::vector<std::string>{name}); }
    Ref<host::ShapeRange> Range(const std::vector<std::string>& names) override {
        return RangeOf(names, [&](const std::string& n) { return Item(n); });
    }
    Ref<host::Shape> AddTextbox(long orientation, double left, double top, double width, double height) override {
        static const std::map<long, const char*> kVert = {
            {host::msoTextOrientationHorizontal, ""},          {host::msoTextOrientationUpward, " vert=\"vert270\""},
            {host::msoTextOrientationDownward, " vert=\"vert\""}, {host::msoTextOrientationVerticalFarEast, " vert=\"eaVert\""},
            {host::msoTextOrientationVertical, " vert=\"wordArtVert\""}};
        auto v = kVert.find(orientation);
        if (v == kVert.end()) Refuse("The specified value is out of range.");
        long id = D().NextId();
        std::string xml = TwoCellAnchor(
            "<xdr:sp macro=\"\" textlink=\"\"><xdr:nvSpPr><xdr:cNvPr id=\"" + std::to_string(id) + "\" name=\"" +
            NewName("TextBox", id) +
            "\"/><xdr:cNvSpPr txBox=\"1\"/></xdr:nvSpPr><xdr:spPr><a:xfrm><a:off x=\"0\" y=\"0\"/><a:ext cx=\"0\" "
            "cy=\"0\"/></a:xfrm><a:prstGeom prst=\"rect\"><a:avLst/></a:prstGeom><a:solidFill><a:schemeClr val=\"lt1\"/>"
            "</a:solidFill><a:ln w=\"9525\" cmpd=\"sng\"><a:solidFill><a:schemeClr val=\"lt1\"><a:shade val=\"50000\"/>"
            "</a:schemeClr></a:solidFill></a:ln></xdr:spPr><xdr:style><a:lnRef idx=\"0\"><a:scrgbClr r=\"0\" g=\"0\" "
            "b=\"0\"/></a:lnRef><a:fillRef idx=\"0\"><a:scrgbClr r=\"0\" g=\"0\" b=\"0\"/></a:fillRef><a:effectRef "
            "idx=\"0\"><a:scrgbClr r=\"0\" g=\"0\" b=\"0\"/></a:effectRef><a:fontRef idx=\"minor\"><a:schemeClr "
            "val=\"dk1\"/></a:fontRef></xdr:style><xdr:txBody><a:bodyPr vertOverflow=\"clip\" horzOverflow=\"clip\"" +
            std::string(v->second) +
            " wrap=\"square\" rtlCol=\"0\" anchor=\"t\"/><a:lstStyle/><a:p><a:endParaRPr lang=\"en-US\" sz=\"1100\"/>"
            "</a:p></xdr:txBody></xdr:sp>");
        return Added(xml, left, top, width, height);
    }
    Ref<host::Shape> AddShape(long type, double left, double top, double width, double height) override {
        auto k = std::find_if(std::begin(kAutoShapes), std::end(kAutoShapes), [&](const AutoShapeKind& x) { return x.type == type; });
        if (k == std::end(kAutoShapes)) NotAvailable("Shapes.AddShape of this kind");
        long id = D().NextId();
        std::string xml = TwoCellAnchor(
            "<xdr:sp macro=\"\" textlink=\"\"><xdr:nvSpPr><xdr:cNvPr id=\"" + std::to_string(id) + "\" name=\"" +
            Xml(NewName(k->name, id)) +
            "\"/><xdr:cNvSpPr/></xdr:nvSpPr><xdr:spPr><a:xfrm><a:off x=\"0\" y=\"0\"/><a:ext cx=\"0\" cy=\"0\"/>"
            "</a:xfrm><a:prstGeom prst=\"" +
            k->prst +
            "\"><a:avLst/></a:prstGeom></xdr:spPr><xdr:style><a:lnRef idx=\"2\"><a:schemeClr val=\"accent1\"><a:shade "
            "val=\"50000\"/></a:schemeClr></a:lnRef><a:fillRef idx=\"1\"><a:schemeClr val=\"accent1\"/></a:fillRef>"
            "<a:effectRef idx=\"0\"><a:schemeClr val=\"accent1\"/></a:effectRef><a:fontRef idx=\"minor\"><a:schemeClr "
            "val=\"lt1\"/></a:fontRef></xdr:style><xdr:txBody><a:bodyPr vertOverflow=\"clip\" horzOverflow=\"clip\" "
            "rtlCol=\"0\" anchor=\"ctr\"/><a:lstStyle/><a:p><a:pPr algn=\"l\"/><a:endParaRPr lang=\"en-US\" sz=\"1100\"/>"
            "</a:p></xdr:txBody></xdr:sp>");
        return Added(xml, left, top, width, height);
    }
    Ref<host::Shape> AddChart(const Variant& type, const Variant& left, const Variant& top, const Variant& width,
                              const Variant& height) override {
        // Left out, the frame takes the application's default size of 5 by 3 inches at the sheet's corner.
        if (D().InChart()) NotAvailable("Shapes.AddChart inside a chart");
        auto num = [](const Variant& v, double d) { return v.IsEmpty() ? d : host::CDbl(v); };
        auto s = AddFrame(D(), num(left, 0), num(top, 0), num(width, 360), num(height, 216));
        if (!type.IsEmpty()) D().Frame(s)->Chart()->SetChartType(host::CLng(type));
        return MakeShape(drawing_, s);
    }

private:
    Ref<host::Shape> Added(const std::string& xml, double left, double top, double width, double height) {
        if (width < 0 || height < 0) Refuse("The specified value is out of range.");
        return MakeShape(drawing_, D().AddAnchor(xml, {left, top, width, height}));
    }
    Drawing& D() { return *drawing_; }
    DrawingPtr drawing_;
};

// ---------------------------------------------------------------- the sheet's side

Drawing& SheetImpl::drawing() {
    if (!drawing_) drawing_ = std::make_shared<Drawing>(*this);
    return *drawing_;
}

host::Ref<host::Shapes> SheetImpl::Shapes() { return std::make_shared<ShapesImpl>(SheetDrawing(shared_from_this())); }

std::shared_ptr<host::Shapes> MakeShapes(DrawingPtr drawing) { return std::make_shared<ShapesImpl>(std::move(drawing)); }

host::Ref<host::ChartObjects> SheetImpl::ChartObjects() { return std::make_shared<ChartObjectsImpl>(shared_from_this()); }

host::Ref<host::ChartObject> SheetImpl::ChartObjects(const host::Variant& indexOrName) {
    auto objects = ChartObjects();
    if (indexOrName.IsString()) return objects->Item(indexOrName.RawString());
    return objects->Item(host::CLng(indexOrName));
}

}  // namespace xlsx
