// Fill, line and colour of drawing shapes over their spPr, with the theme's colours for scheme
// colours and for what the shape style (xdr:style) gives when spPr says nothing.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>

#include "host/chart_constants.h"
#include "host/error.h"
#include "xlsx/book.h"
#include "xlsx/drawing.h"

namespace xlsx {

namespace {

using host::Ref;

constexpr const char* kThemeRel = "http://schemas.openxmlformats.org/officeDocument/2006/relationships/theme";

long Rgb(int r, int g, int b) { return r | (g << 8) | (b << 16); }

pugi::xml_node ThemeRoot(Book& book) {
    auto& pkg = book.pkg();
    for (auto& rel : pkg.Rels(book.WorkbookPart()))
        if (rel.type == kThemeRel) {
            auto part = pkg.Target(book.WorkbookPart(), rel.id);
            if (!part.empty() && pkg.Has(part)) return pkg.Read(part).document_element();
        }
    return {};
}

// Hue, saturation and luminance modulation as DrawingML defines lumMod and lumOff.
void ApplyLum(double& r, double& g, double& b, double mod, double off) {
    double mx = std::max({r, g, b}), mn = std::min({r, g, b});
    double l = (mx + mn) / 2, s = 0, h = 0;
    if (mx != mn) {
        double d = mx - mn;
        s = l > 0.5 ? d / (2 - mx - mn) : d / (mx + mn);
        if (mx == r) h = (g - b) / d + (g < b ? 6 : 0);
        else if (mx == g) h = (b - r) / d + 2;
        else h = (r - g) / d + 4;
        h /= 6;
    }
    l = std::clamp(l * mod + off, 0.0, 1.0);
    auto hue = [](double p, double q, double t) {
        if (t < 0) t += 1;
        if (t > 1) t -= 1;
        if (t < 1.0 / 6) return p + (q - p) * 6 * t;
        if (t < 0.5) return q;
        if (t < 2.0 / 3) return p + (q - p) * (2.0 / 3 - t) * 6;
        return p;
    };
    if (s == 0) {
        r = g = b = l;
        return;
    }
    double q = l < 0.5 ? l * (1 + s) : l + s - l * s, p = 2 * l - q;
    r = hue(p, q, h + 1.0 / 3);
    g = hue(p, q, h);
    b = hue(p, q, h - 1.0 / 3);
}

pugi::xml_node ColorIn(pugi::xml_node parent) {
    for (auto c : parent.children()) {
        auto l = LocalName(c.name());
        if (l.size() > 3 && l.substr(l.size() - 3) == "Clr") return c;
    }
    return {};
}

bool IsFill(std::string_view l) {
    return l == "noFill" || l == "solidFill" || l == "gradFill" || l == "blipFill" || l == "pattFill" || l == "grpFill";
}

pugi::xml_node FillIn(pugi::xml_node parent) {
    for (auto c : parent.children())
        if (IsFill(LocalName(c.name()))) return c;
    return {};
}

std::string Hex(long rgb) {
    char buf[8];
    std::snprintf(buf, sizeof buf, "%02X%02X%02X", static_cast<int>(rgb & 0xFF), static_cast<int>((rgb >> 8) & 0xFF),
                  static_cast<int>((rgb >> 16) & 0xFF));
    return buf;
}

constexpr const char* kThemeNames[] = {"", "dk1", "lt1", "dk2", "lt2", "accent1", "accent2", "accent3", "accent4",
                                       "accent5", "accent6", "hlink", "folHlink", "tx1", "bg1", "tx2", "bg2"};

// A colour held somewhere in the DOM: where to find its element, what it is when absent, and how
// to write a new one (srgbClr or schemeClr with a value).
struct ColorSlot {
    std::function<pugi::xml_node()> element;
    std::function<long()> fallback;
    std::function<void(const char* kind, const std::string& val)> write;
};

class ColorFormatImpl : public host::ColorFormat {
public:
    ColorFormatImpl(Book& book, ColorSlot slot) : book_(book), slot_(std::move(slot)) {}
    long RGB() override { return ColorElementRgb(book_, slot_.element(), slot_.fallback()); }
    void SetRGB(long rgb) override {
        if (rgb < 0 || rgb > 0xFFFFFF) Refuse("The specified value is out of range.");
        slot_.write("srgbClr", Hex(rgb));
    }
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
    long Type() override {
        return LocalName(slot_.element().name()) == "schemeClr" ? host::msoColorTypeScheme : host::msoColorTypeRGB;
    }

private:
    // A colour without modifiers has no tint or shade; one with them isn't read yet.
    void Plain(const char* member) {
        if (slot_.element().first_child()) NotAvailable(member);
    }
    Book& book_;
    ColorSlot slot_;
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
    long StyleColor(const char* which, long fallback) {
        auto ref = StyleRef(which);
        return ref ? ColorElementRgb(book(), ColorIn(ref), fallback) : fallback;
    }
    // Replaces the fill element under parent (or adds one before the elements that follow fills).
    pugi::xml_node PutFill(pugi::xml_node parent, const char* kind) {
        D().Root(true);
        std::string name = D().a + kind;
        if (auto old = FillIn(parent)) {
            auto made = parent.insert_child_before(name.c_str(), old);
            parent.remove_child(old);
            return made;
        }
        for (auto c : parent.children()) {
            auto l = LocalName(c.name());
            if (l == "ln" || l == "effectLst" || l == "effectDag" || l == "scene3d" || l == "sp3d" || l == "extLst" ||
                l == "prstDash" || l == "custDash" || l == "round" || l == "bevel" || l == "miter" || l == "headEnd" ||
                l == "tailEnd")
                return parent.insert_child_before(name.c_str(), c);
        }
        return parent.append_child(name.c_str());
    }
    pugi::xml_node Ln(bool make) {
        auto sp = SpPr();
        auto ln = Kid(sp, "ln");
        if (!make) return ln;
        D().Root(true);
        if (ln) return ln;
        std::string name = D().a + "ln";
        for (auto c : sp.children()) {
            auto l = LocalName(c.name());
            if (l == "effectLst" || l == "effectDag" || l == "scene3d" || l == "sp3d" || l == "extLst")
                return sp.insert_child_before(name.c_str(), c);
        }
        return sp.append_child(name.c_str());
    }
};

void WriteColor(Drawing& d, pugi::xml_node solid, const char* kind, const std::string& val) {
    d.Root(true);
    for (auto c = solid.first_child(); c;) {
        auto next = c.next_sibling();
        solid.remove_child(c);
        c = next;
    }
    solid.append_child((d.a + kind).c_str()).append_attribute("val").set_value(val.c_str());
}

class ShapeFill : public host::FillFormat {
public:
    explicit ShapeFill(ShapeProps p) : p_(std::move(p)) {}

    Ref<host::ColorFormat> ForeColor() override {
        auto p = p_;
        return std::make_shared<ColorFormatImpl>(p_.book(), ColorSlot{
            [p]() mutable {
                auto f = FillIn(p.SpPr());
                auto l = LocalName(f.name());
                if (l == "solidFill") return ColorIn(f);
                if (l == "pattFill") return ColorIn(Kid(f, "fgClr"));
                if (l == "gradFill") return ColorIn(Kid(Kid(f, "gsLst"), "gs"));
                if (!f) return ColorIn(p.StyleRef("fillRef"));
                return pugi::xml_node{};
            },
            [p]() mutable { return ThemeColorRgb(p.book(), "accent1"); },
            [p](const char* kind, const std::string& val) mutable {
                auto f = FillIn(p.SpPr());
                if (LocalName(f.name()) == "pattFill") return WriteColor(p.D(), KidMade(f, "fgClr"), kind, val);
                WriteColor(p.D(), p.PutFill(p.SpPr(), "solidFill"), kind, val);
            }});
    }
    Ref<host::ColorFormat> BackColor() override {
        auto p = p_;
        // Only a pattern has a second colour in the file; for other fills it reads white and a
        // write has nowhere to go, as in the application's files.
        return std::make_shared<ColorFormatImpl>(p_.book(), ColorSlot{
            [p]() mutable {
                auto f = FillIn(p.SpPr());
                return LocalName(f.name()) == "pattFill" ? ColorIn(Kid(f, "bgClr")) : pugi::xml_node{};
            },
            []() { return 0xFFFFFFL; },
            [p](const char* kind, const std::string& val) mutable {
                auto f = FillIn(p.SpPr());
                if (LocalName(f.name()) == "pattFill") WriteColor(p.D(), KidMade(f, "bgClr"), kind, val);
            }});
    }
    long Visible() override {
        auto f = FillIn(p_.SpPr());
        if (f) return LocalName(f.name()) == "noFill" ? host::msoFalse : host::msoTrue;
        return p_.StyleRef("fillRef").attribute("idx").as_int() > 0 ? host::msoTrue : host::msoFalse;
    }
    void SetVisible(long v) override {
        bool on = v != host::msoFalse;
        if (on == (Visible() == host::msoTrue)) return;
        if (!on) {
            p_.PutFill(p_.SpPr(), "noFill");
            return;
        }
        long rgb = ForeColor()->RGB();
        WriteColor(p_.D(), p_.PutFill(p_.SpPr(), "solidFill"), "srgbClr", Hex(rgb));
    }
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
    long Pattern() override { NotAvailable("FillFormat.Pattern of a shape"); }
    long GradientStyle() override { NotAvailable("FillFormat.GradientStyle of a shape"); }
    void Solid() override {
        long rgb = ForeColor()->RGB();
        WriteColor(p_.D(), p_.PutFill(p_.SpPr(), "solidFill"), "srgbClr", Hex(rgb));
    }
    void Patterned(long) override { NotAvailable("FillFormat.Patterned of a shape"); }
    void OneColorGradient(long, long, double) override { NotAvailable("FillFormat.OneColorGradient of a shape"); }
    void TwoColorGradient(long, long) override { NotAvailable("FillFormat.TwoColorGradient of a shape"); }
    void PresetGradient(long, long, long) override { NotAvailable("FillFormat.PresetGradient of a shape"); }

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

    Ref<host::ColorFormat> ForeColor() override {
        auto p = p_;
        return std::make_shared<ColorFormatImpl>(p_.book(), ColorSlot{
            [p]() mutable {
                auto f = FillIn(p.Ln(false));
                if (LocalName(f.name()) == "solidFill") return ColorIn(f);
                if (LocalName(f.name()) == "pattFill") return ColorIn(Kid(f, "fgClr"));
                if (!f) return ColorIn(p.StyleRef("lnRef"));
                return pugi::xml_node{};
            },
            [p]() mutable { return ThemeColorRgb(p.book(), "tx1"); },
            [p](const char* kind, const std::string& val) mutable {
                auto ln = p.Ln(true);
                auto f = FillIn(ln);
                if (LocalName(f.name()) == "pattFill") return WriteColor(p.D(), KidMade(f, "fgClr"), kind, val);
                WriteColor(p.D(), p.PutFill(ln, "solidFill"), kind, val);
            }});
    }
    Ref<host::ColorFormat> BackColor() override {
        auto p = p_;
        return std::make_shared<ColorFormatImpl>(p_.book(), ColorSlot{
            [p]() mutable {
                auto f = FillIn(p.Ln(false));
                return LocalName(f.name()) == "pattFill" ? ColorIn(Kid(f, "bgClr")) : pugi::xml_node{};
            },
            []() { return 0xFFFFFFL; },
            [p](const char* kind, const std::string& val) mutable {
                auto f = FillIn(p.Ln(false));
                if (LocalName(f.name()) == "pattFill") WriteColor(p.D(), KidMade(f, "bgClr"), kind, val);
            }});
    }
    long Visible() override {
        auto f = FillIn(p_.Ln(false));
        if (f) return LocalName(f.name()) == "noFill" ? host::msoFalse : host::msoTrue;
        return p_.StyleRef("lnRef").attribute("idx").as_int() > 0 ? host::msoTrue : host::msoFalse;
    }
    void SetVisible(long v) override {
        bool on = v != host::msoFalse;
        if (on == (Visible() == host::msoTrue)) return;
        if (!on) {
            p_.PutFill(p_.Ln(true), "noFill");
            return;
        }
        long rgb = ForeColor()->RGB();
        WriteColor(p_.D(), p_.PutFill(p_.Ln(true), "solidFill"), "srgbClr", Hex(rgb));
    }
    double Weight() override {
        auto ln = p_.Ln(false);
        if (ln.attribute("w")) return ln.attribute("w").as_llong() / kEmuPerPoint;
        // The theme's line style of the shape style's lnRef.
        long idx = p_.StyleRef("lnRef").attribute("idx").as_int();
        auto list = Kid(Kid(Kid(ThemeRoot(p_.book()), "themeElements"), "fmtScheme"), "lnStyleLst");
        long i = 1;
        for (auto c : list.children())
            if (i++ == idx) return c.attribute("w").as_llong() / kEmuPerPoint;
        return 0.75;
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
            if (d.style == v) {
                auto ln = p_.Ln(true);
                auto dash = Kid(ln, "prstDash");
                if (!dash) {
                    std::string name = p_.D().a + "prstDash";
                    pugi::xml_node before;
                    for (auto c : ln.children()) {
                        auto l = LocalName(c.name());
                        if (!IsFill(l)) {
                            before = c;
                            break;
                        }
                    }
                    dash = before ? ln.insert_child_before(name.c_str(), before) : ln.append_child(name.c_str());
                }
                if (!dash.attribute("val")) dash.append_attribute("val");
                dash.attribute("val").set_value(d.name);
                return;
            }
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
            if (c.style == v) {
                auto ln = p_.Ln(true);
                if (!ln.attribute("cmpd")) ln.append_attribute("cmpd");
                ln.attribute("cmpd").set_value(c.name);
                return;
            }
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

long ThemeColorRgb(Book& book, std::string_view name) {
    if (name == "tx1") name = "dk1";
    else if (name == "bg1") name = "lt1";
    else if (name == "tx2") name = "dk2";
    else if (name == "bg2") name = "lt2";
    auto scheme = Kid(Kid(ThemeRoot(book), "themeElements"), "clrScheme");
    if (auto c = Kid(scheme, name)) {
        auto el = ColorIn(c);
        if (LocalName(el.name()) == "sysClr")
            if (auto last = el.attribute("lastClr")) {
                unsigned v = HexOf(last.value());
                return Rgb((v >> 16) & 0xFF, (v >> 8) & 0xFF, v & 0xFF);
            }
        if (LocalName(el.name()) != "schemeClr") return ColorElementRgb(book, el, 0);
    }
    // The standard Office scheme, for books without a theme.
    static const std::pair<std::string_view, long> kDefault[] = {
        {"dk1", 0x000000}, {"lt1", 0xFFFFFF}, {"dk2", Rgb(0x44, 0x54, 0x6A)}, {"lt2", Rgb(0xE7, 0xE6, 0xE6)},
        {"accent1", Rgb(0x44, 0x72, 0xC4)}, {"accent2", Rgb(0xED, 0x7D, 0x31)}, {"accent3", Rgb(0xA5, 0xA5, 0xA5)},
        {"accent4", Rgb(0xFF, 0xC0, 0x00)}, {"accent5", Rgb(0x5B, 0x9B, 0xD5)}, {"accent6", Rgb(0x70, 0xAD, 0x47)},
        {"hlink", Rgb(0x05, 0x63, 0xC1)}, {"folHlink", Rgb(0x95, 0x4F, 0x72)}};
    for (auto& [n, v] : kDefault)
        if (n == name) return v;
    return 0;
}

std::string ThemeMinorFont(Book& book) {
    auto font = Kid(Kid(Kid(Kid(ThemeRoot(book), "themeElements"), "fontScheme"), "minorFont"), "latin");
    std::string face = font.attribute("typeface").value();
    return face.empty() ? book.styles().DefaultFontName() : face;
}

long ColorElementRgb(Book& book, pugi::xml_node color, long fallback) {
    auto l = LocalName(color.name());
    long rgb = fallback;
    if (l == "srgbClr") {
        unsigned v = HexOf(color.attribute("val").as_string("0"));
        rgb = Rgb((v >> 16) & 0xFF, (v >> 8) & 0xFF, v & 0xFF);
    } else if (l == "sysClr") {
        std::string last = color.attribute("lastClr").value();
        if (!last.empty()) {
            unsigned v = HexOf(last);
            rgb = Rgb((v >> 16) & 0xFF, (v >> 8) & 0xFF, v & 0xFF);
        } else {
            rgb = std::string_view(color.attribute("val").value()) == "window" ? 0xFFFFFF : 0;
        }
    } else if (l == "schemeClr") {
        rgb = ThemeColorRgb(book, color.attribute("val").value());
    } else if (l == "scrgbClr") {
        auto c = [&](const char* a) { return static_cast<int>(std::lround(color.attribute(a).as_double() * 255 / 100000)); };
        rgb = Rgb(c("r"), c("g"), c("b"));
    } else if (l == "prstClr") {
        std::string_view v = color.attribute("val").value();
        if (v == "black") rgb = 0;
        else if (v == "white") rgb = 0xFFFFFF;
    } else {
        return fallback;
    }
    double r = (rgb & 0xFF) / 255.0, g = ((rgb >> 8) & 0xFF) / 255.0, b = ((rgb >> 16) & 0xFF) / 255.0;
    double mod = 1, off = 0;
    for (auto m : color.children()) {
        auto ml = LocalName(m.name());
        double v = m.attribute("val").as_double() / 100000;
        if (ml == "lumMod") mod = v;
        else if (ml == "lumOff") off = v;
        else if (ml == "shade") r *= v, g *= v, b *= v;
        else if (ml == "tint") r += (1 - r) * (1 - v), g += (1 - g) * (1 - v), b += (1 - b) * (1 - v);
    }
    if (mod != 1 || off != 0) ApplyLum(r, g, b, mod, off);
    auto byte = [](double x) { return static_cast<int>(std::lround(std::clamp(x, 0.0, 1.0) * 255)); };
    return Rgb(byte(r), byte(g), byte(b));
}

std::shared_ptr<host::FillFormat> MakeShapeFill(DrawingPtr drawing, const ShapeNodes& s) {
    return std::make_shared<ShapeFill>(ShapeProps{std::move(drawing), s});
}

std::shared_ptr<host::LineFormat> MakeShapeLine(DrawingPtr drawing, const ShapeNodes& s) {
    return std::make_shared<ShapeLine>(ShapeProps{std::move(drawing), s});
}

}  // namespace xlsx
