// Fill, line and colour of drawing shapes over their spPr, with what the shape style (xdr:style)
// gives when spPr says nothing.
#include <cmath>
#include <functional>

#include "host/chart_constants.h"
#include "host/error.h"
#include "xlsx/book.h"
#include "xlsx/drawing.h"
#include "xlsx/drawingml.h"

namespace xlsx {

namespace {

using host::Ref;

constexpr const char* kThemeNames[] = {"", "dk1", "lt1", "dk2", "lt2", "accent1", "accent2", "accent3", "accent4",
                                       "accent5", "accent6", "hlink", "folHlink", "tx1", "bg1", "tx2", "bg2"};

// A shape's colour: RGB or one of the theme's colours.
class ColorFormatImpl : public SlotColor {
public:
    ColorFormatImpl(Book& book, ColorSlot slot) : SlotColor(book.theme(), std::move(slot)) {}
    long SchemeColor() override { NotAvailable("ColorFormat.SchemeColor of a shape"); }
    void SetSchemeColor(long) override { NotAvailable("ColorFormat.SchemeColor of a shape"); }
    long ObjectThemeColor() override {
        auto el = slot_.element();
        if (LocalName(el.name()) != "schemeClr") return host::msoNotThemeColor;
        std::string_view v = el.attribute("val").value();
        for (long i = 1; i < 17; ++i)
            if (v == kThemeNames[i]) return i;
        return host::msoNotThemeColor;
    }
    void SetObjectThemeColor(long v) override {
        if (v < 1 || v > 16) Refuse("The specified value is out of range.");
        slot_.write("schemeClr", kThemeNames[v]);
    }
    double TintAndShade() override {
        Plain("ColorFormat.TintAndShade");
        return 0;
    }
    void SetTintAndShade(double) override { NotAvailable("ColorFormat.TintAndShade"); }
    double Brightness() override {
        Plain("ColorFormat.Brightness");
        return 0;
    }
    void SetBrightness(double) override { NotAvailable("ColorFormat.Brightness"); }

private:
    // A colour without modifiers has no tint or shade; one with them isn't read yet.
    void Plain(const char* member) {
        if (slot_.element().first_child()) NotAvailable(member);
    }
};

// ---------------------------------------------------------------- shape properties

// spPr and the style of one shape, with the writing of fill elements in schema order.
struct ShapeProps {
    DrawingPtr drawing;
    ShapeNodes s;

    Drawing& D() { return *drawing; }
    Book& book() { return drawing->book(); }
    pugi::xml_node SpPr() {
        if (!D().Alive(s.el)) Refuse("The object invoked has disconnected from its clients.");
        return Kid(s.el, "spPr");
    }
    pugi::xml_node StyleRef(const char* which) { return Kid(Kid(s.el, "style"), which); }
    // Replaces the fill element under spPr or ln.
    pugi::xml_node PutFill(pugi::xml_node parent, const char* kind) {
        D().Root(true);
        return xlsx::PutFill(parent, kind, D().a);
    }
    pugi::xml_node Ln(bool make) {
        auto sp = SpPr();
        if (!make) return Kid(sp, "ln");
        D().Root(true);
        return Ensure(sp, "ln", kSpPrOrder, D().a);
    }

    // What the shape's fill and its line share: the line's paint is a fill inside ln, and the
    // shape style (fillRef, lnRef) paints where the shape says nothing.
    pugi::xml_node Paint(bool line, bool make) { return line ? Ln(make) : SpPr(); }
    const char* Style(bool line) { return line ? "lnRef" : "fillRef"; }
    Ref<host::ColorFormat> Color(bool line, bool fore);
    long Visible(bool line) {
        if (auto f = FillIn(Paint(line, false))) return LocalName(f) == "noFill" ? host::msoFalse : host::msoTrue;
        return StyleRef(Style(line)).attribute("idx").as_int() > 0 ? host::msoTrue : host::msoFalse;
    }
    void SetVisible(bool line, long v) {
        bool on = v != host::msoFalse;
        if (on == (Visible(line) == host::msoTrue)) return;
        if (!on) {
            PutFill(Paint(line, true), "noFill");
            return;
        }
        Solid(line);
    }
    void Solid(bool line) {
        long rgb = Color(line, true)->RGB();
        WriteColor(PutFill(Paint(line, true), "solidFill"), "srgbClr", RgbToHex(rgb));
    }
    void WriteColor(pugi::xml_node holder, std::string_view model, const std::string& val) {
        D().Root(true);
        PutColor(holder, model, val, D().a);
    }
};

// The fore colour: of a solid fill, a pattern's foreground, a gradient's first stop, else the
// style's; the back colour: a pattern's background. Only a pattern has a second colour in the
// file: for other fills it reads white and a write has nowhere to go, as in the application's files.
Ref<host::ColorFormat> ShapeProps::Color(bool line, bool fore) {
    ShapeProps p = *this;
    const char* part = fore ? "fgClr" : "bgClr";
    return std::make_shared<ColorFormatImpl>(book(), ColorSlot{
        [p, line, fore, part]() mutable {
            auto f = FillIn(p.Paint(line, false));
            auto l = LocalName(f);
            if (l == "pattFill") return ColorIn(Kid(f, part));
            if (!fore) return pugi::xml_node{};
            if (l == "solidFill") return ColorIn(f);
            if (l == "gradFill") return ColorIn(Kid(Kid(f, "gsLst"), "gs"));
            return f ? pugi::xml_node{} : ColorIn(p.StyleRef(p.Style(line)));
        },
        [p, line, fore]() mutable { return fore ? p.book().theme().Color(line ? "tx1" : "accent1") : 0xFFFFFFL; },
        [p, line, fore, part](std::string_view model, const std::string& val) mutable {
            auto holder = p.Paint(line, line && fore);
            auto f = FillIn(holder);
            if (LocalName(f) == "pattFill") return p.WriteColor(KidMade(f, part), model, val);
            if (fore) p.WriteColor(p.PutFill(holder, "solidFill"), model, val);
        }});
}

class ShapeFill : public PlainFill {
public:
    explicit ShapeFill(ShapeProps p) : PlainFill("of a shape"), p_(std::move(p)) {}

    Ref<host::ColorFormat> ForeColor() override { return p_.Color(false, true); }
    Ref<host::ColorFormat> BackColor() override { return p_.Color(false, false); }
    long Visible() override { return p_.Visible(false); }
    void SetVisible(long v) override { p_.SetVisible(false, v); }
    double Transparency() override {
        auto c = ColorIn(FillIn(p_.SpPr()));
        auto alpha = Kid(c, "alpha");
        return alpha ? 1 - alpha.attribute("val").as_double() / 100000 : 0;
    }
    void SetTransparency(double v) override {
        if (v < 0 || v > 1) Refuse("The specified value is out of range.");
        if (LocalName(FillIn(p_.SpPr()).name()) != "solidFill") Solid();
        auto c = ColorIn(FillIn(p_.SpPr()));
        p_.D().Root(true);
        auto alpha = Kid(c, "alpha");
        if (v == 0) {
            if (alpha) c.remove_child(alpha);
            return;
        }
        if (!alpha) alpha = c.append_child((p_.D().a + "alpha").c_str());
        if (!alpha.attribute("val")) alpha.append_attribute("val");
        alpha.attribute("val").set_value(std::lround((1 - v) * 100000));
    }
    long Type() override {
        auto l = LocalName(FillIn(p_.SpPr()).name());
        if (l == "pattFill") return host::msoFillPatterned;
        if (l == "gradFill") return host::msoFillGradient;
        if (l == "blipFill") return host::msoFillPicture;
        if (l == "noFill") return host::msoFillBackground;
        return host::msoFillSolid;
    }
    void Solid() override { p_.Solid(false); }

private:
    ShapeProps p_;
};

struct DashName {
    long style;
    const char* name;
};
constexpr DashName kDashes[] = {{host::msoLineSolid, "solid"},         {host::msoLineRoundDot, "sysDot"},
                                {host::msoLineSquareDot, "sysDash"},    {host::msoLineDash, "dash"},
                                {host::msoLineDashDot, "dashDot"},      {host::msoLineDashDotDot, "sysDashDotDot"},
                                {host::msoLineLongDash, "lgDash"},      {host::msoLineLongDashDot, "lgDashDot"},
                                {host::msoLineLongDashDotDot, "lgDashDotDot"}, {host::msoLineSysDashDot, "sysDashDot"}};
constexpr DashName kCompounds[] = {{host::msoLineSingle, "sng"},
                                   {host::msoLineThinThin, "dbl"},
                                   {host::msoLineThinThick, "thinThick"},
                                   {host::msoLineThickThin, "thickThin"},
                                   {host::msoLineThickBetweenThin, "tri"}};

class ShapeLine : public host::LineFormat {
public:
    explicit ShapeLine(ShapeProps p) : p_(std::move(p)) {}

    Ref<host::ColorFormat> ForeColor() override { return p_.Color(true, true); }
    Ref<host::ColorFormat> BackColor() override { return p_.Color(true, false); }
    long Visible() override { return p_.Visible(true); }
    void SetVisible(long v) override { p_.SetVisible(true, v); }
    double Weight() override {
        auto ln = p_.Ln(false);
        if (ln.attribute("w")) return ln.attribute("w").as_llong() / kEmuPerPoint;
        // The theme's line style of the shape style's lnRef.
        return p_.book().theme().LineWidth(p_.StyleRef("lnRef").attribute("idx").as_int());
    }
    void SetWeight(double v) override {
        if (v < 0 || v > 1584) Refuse("The specified value is out of range.");
        auto ln = p_.Ln(true);
        p_.D().Root(true);
        if (!ln.attribute("w")) ln.append_attribute("w");
        ln.attribute("w").set_value(std::llround(v * kEmuPerPoint));
    }
    long DashStyle() override {
        std::string_view v = Kid(p_.Ln(false), "prstDash").attribute("val").value();
        if (v.empty()) return host::msoLineSolid;
        for (auto& d : kDashes)
            if (v == d.name) return d.style;
        return host::msoLineDashStyleMixed;
    }
    void SetDashStyle(long v) override {
        for (auto& d : kDashes)
            if (d.style == v) return SetAttr(Ensure(p_.Ln(true), "prstDash", kLnOrder, p_.D().a), "val", d.name);
        Refuse("The specified value is out of range.");
    }
    long Style() override {
        std::string_view v = p_.Ln(false).attribute("cmpd").value();
        for (auto& c : kCompounds)
            if (v == c.name) return c.style;
        return host::msoLineSingle;
    }
    void SetStyle(long v) override {
        for (auto& c : kCompounds)
            if (c.style == v) return SetAttr(p_.Ln(true), "cmpd", c.name);
        Refuse("The specified value is out of range.");
    }
    double Transparency() override {
        auto alpha = Kid(ColorIn(FillIn(p_.Ln(false))), "alpha");
        return alpha ? 1 - alpha.attribute("val").as_double() / 100000 : 0;
    }
    void SetTransparency(double) override { NotAvailable("LineFormat.Transparency of a shape"); }
    long Pattern() override { NotAvailable("LineFormat.Pattern of a shape"); }
    void SetPattern(long) override { NotAvailable("LineFormat.Pattern of a shape"); }

private:
    ShapeProps p_;
};

}  // namespace

std::shared_ptr<host::FillFormat> MakeShapeFill(DrawingPtr drawing, const ShapeNodes& s) {
    return std::make_shared<ShapeFill>(ShapeProps{std::move(drawing), s});
}

std::shared_ptr<host::LineFormat> MakeShapeLine(DrawingPtr drawing, const ShapeNodes& s) {
    return std::make_shared<ShapeLine>(ShapeProps{std::move(drawing), s});
}

}  // namespace xlsx
