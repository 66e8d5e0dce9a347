// Formats of chart elements: fills (solid, pattern, none), lines, colours from the theme and the
// workbook palette, and the chart and plot areas that carry them.
#include <algorithm>
#include <cmath>
#include <cstring>

#include "xlsx/book.h"
#include "xlsx/chart_model.h"

namespace xlsx {

namespace {
constexpr long xlDashDot = 4;
constexpr long xlDashDotDot = 5;
constexpr const char* kThemeRel = "http://schemas.openxmlformats.org/officeDocument/2006/relationships/theme";
const char* kFills[] = {"noFill", "solidFill", "gradFill", "blipFill", "pattFill", "grpFill"};

// msoPattern... <-> a:pattFill prst
const char* kPatterns[] = {
    nullptr, "pct5", "pct10", "pct20", "pct25", "pct30", "pct40", "pct50", "pct60", "pct70", "pct75", "pct80",
    "pct90", "dkHorz", "dkVert", "dkDnDiag", "dkUpDiag", "smCheck", "trellis", "ltHorz", "ltVert", "ltDnDiag",
    "ltUpDiag", "smGrid", "dotDmnd", "wdDnDiag", "wdUpDiag", "dashUpDiag", "dashDnDiag", "narVert", "narHorz",
    "dashVert", "dashHorz", "lgConfetti", "lgGrid", "horzBrick", "lgCheck", "smConfetti", "zigZag", "solidDmnd",
    "diagBrick", "openDmnd", "plaid", "sphere", "weave", "dotGrid", "divot", "shingle", "wave", "horz", "vert",
    "cross", "dnDiag", "upDiag", "diagCross"};
constexpr long kPatternCount = sizeof(kPatterns) / sizeof(kPatterns[0]);

// The patterns of the older interior model, drawn with the DrawingML presets that look like them.
const std::pair<long, const char*> kInteriorPatterns[] = {
    {host::xlPatternGray75, "pct75"}, {host::xlPatternGray50, "pct50"}, {host::xlPatternGray25, "pct25"},
    {host::xlPatternGray16, "pct20"}, {host::xlPatternGray8, "pct10"}, {host::xlPatternHorizontal, "dkHorz"},
    {host::xlPatternVertical, "dkVert"}, {host::xlPatternDown, "dkDnDiag"}, {host::xlPatternUp, "dkUpDiag"},
    {host::xlPatternChecker, "smCheck"}, {host::xlPatternSemiGray75, "trellis"},
    {host::xlPatternLightHorizontal, "ltHorz"}, {host::xlPatternLightVertical, "ltVert"},
    {host::xlPatternLightDown, "ltDnDiag"}, {host::xlPatternLightUp, "ltUpDiag"}, {host::xlPatternGrid, "smGrid"},
    {host::xlPatternCrissCross, "openDmnd"}};

pugi::xml_node FillOf(pugi::xml_node spPr) {
    for (auto f : kFills)
        if (auto n = Kid(spPr, f)) return n;
    return {};
}

void ClearFills(pugi::xml_node spPr) {
    for (auto f : kFills) RemoveL(spPr, f);
}

pugi::xml_node SpPr(ChartDoc& doc, const Holder& h, bool edit) {
    auto owner = h.node(edit);
    if (!edit) return Kid(owner, "spPr");
    doc.Touch();
    return Ensure(owner, "spPr", *h.order, doc.c);
}

pugi::xml_node SetSolid(ChartDoc& doc, pugi::xml_node parent, const std::vector<std::string_view>& order, long rgb) {
    ClearFills(parent);
    auto fill = InsertAt(parent, "solidFill", order, doc.a);
    fill.append_child(doc.A("srgbClr").c_str()).append_attribute("val") = RgbToHex(rgb).c_str();
    return fill;
}

// Colours of the default theme, used when the workbook has none.
long DefaultThemeColor(std::string_view name) {
    if (name == "dk1" || name == "tx1") return 0x000000;
    if (name == "lt1" || name == "bg1") return 0xFFFFFF;
    if (name == "dk2" || name == "tx2") return HexToRgb("44546A");
    if (name == "lt2" || name == "bg2") return HexToRgb("E7E6E6");
    static const char* accents[] = {"4472C4", "ED7D31", "A5A5A5", "FFC000", "5B9BD5", "70AD47"};
    if (name.size() == 7 && name.substr(0, 6) == "accent" && name[6] >= '1' && name[6] <= '6')
        return HexToRgb(accents[name[6] - '1']);
    if (name == "hlink") return HexToRgb("0563C1");
    if (name == "folHlink") return HexToRgb("954F72");
    return 0;
}

long Channel(long rgb, int shift) { return (rgb >> shift) & 0xFF; }

// lumMod / lumOff / tint / shade of a colour element, applied roughly as the application does.
long ApplyMods(pugi::xml_node clr, long rgb) {
    double r = Channel(rgb, 0), g = Channel(rgb, 8), b = Channel(rgb, 16);
    for (auto m : clr.children()) {
        auto l = LocalName(m);
        double v = m.attribute("val").as_double() / 100000.0;
        if (l == "lumMod") { r *= v; g *= v; b *= v; }
        else if (l == "lumOff") { r += 255 * v; g += 255 * v; b += 255 * v; }
        else if (l == "shade") { r *= v; g *= v; b *= v; }
        else if (l == "tint") { r = 255 - (255 - r) * v; g = 255 - (255 - g) * v; b = 255 - (255 - b) * v; }
    }
    auto c = [](double x) { return long(std::lround(std::clamp(x, 0.0, 255.0))); };
    return c(r) | (c(g) << 8) | (c(b) << 16);
}

class ColorFormatImpl : public ColorFormatBase {
public:
    // clr(edit) answers the fill element (a:solidFill, or the fgClr / bgClr of a pattern).
    ColorFormatImpl(DocPtr d, std::function<pugi::xml_node(bool)> clr, long dflt)
        : d_(std::move(d)), clr_(std::move(clr)), dflt_(dflt) {}
    long RGB() override { return ColorOf(*d_, clr_(false), dflt_); }
    void SetRGB(long rgb) override {
        if (rgb < 0 || rgb > 0xFFFFFF) Refuse("The specified value is out of range.");
        Replace().append_child(d_->A("srgbClr").c_str()).append_attribute("val") = RgbToHex(rgb).c_str();
    }
    // SchemeColor indexes the workbook palette, as the chart's own colour dialogs of old did.
    long SchemeColor() override { return NearestPaletteIndex(*d_, RGB()); }
    void SetSchemeColor(long index) override {
        if (index < 1 || index > 80) Refuse("The specified value is out of range.");
        SetRGB(index <= 56 ? d_->PaletteRgb(index) : 0);
    }
    long Type() override {
        auto c = clr_(false);
        for (auto ch : c.children()) {
            if (LocalName(ch) == "schemeClr") return host::msoColorTypeScheme;
        }
        return host::msoColorTypeRGB;
    }

private:
    pugi::xml_node Replace() {
        d_->Touch();
        auto c = clr_(true);
        while (c.first_child()) c.remove_child(c.first_child());
        return c;
    }
    DocPtr d_;
    std::function<pugi::xml_node(bool)> clr_;
    long dflt_;
};

class InteriorImpl : public InteriorBase {
public:
    InteriorImpl(DocPtr d, Holder h) : d_(std::move(d)), h_(std::move(h)) {}
    Variant Color() override {
        auto f = FillOf(SpPr(*d_, h_, false));
        if (!f) return h_.autoColor;
        if (LocalName(f) == "noFill") return 0xFFFFFF;
        if (LocalName(f) == "pattFill") return ColorOf(*d_, Kid(f, "fgClr"), 0);
        if (LocalName(f) == "solidFill") return ColorOf(*d_, f, h_.autoColor);
        return h_.autoColor;
    }
    // On a pattern the colour is that of the pattern's foreground, and the pattern stays.
    void SetColor(const Variant& v) override {
        long rgb = host::CLng(v);
        if (rgb < 0 || rgb > 0xFFFFFF) Refuse("Unable to set the Color property of the Interior class");
        auto sp = SpPr(*d_, h_, true);
        if (auto f = FillOf(sp); f && LocalName(f) == "pattFill") return SetPatternPart(f, "fgClr", rgb);
        SetSolid(*d_, sp, kSpPrOrder, rgb);
    }
    Variant ColorIndex() override {
        auto f = FillOf(SpPr(*d_, h_, false));
        if (!f) return host::xlColorIndexAutomatic;
        if (LocalName(f) == "noFill") return host::xlColorIndexNone;
        return NearestPaletteIndex(*d_, host::CLng(Color()));
    }
    void SetColorIndex(const Variant& v) override {
        long i = host::CLng(v);
        auto sp = SpPr(*d_, h_, true);
        if (i == host::xlColorIndexNone) {
            ClearFills(sp);
            InsertAt(sp, "noFill", kSpPrOrder, d_->a);
        } else if (i == host::xlColorIndexAutomatic) {
            ClearFills(sp);
        } else if (i >= 1 && i <= 56) {
            if (auto f = FillOf(sp); f && LocalName(f) == "pattFill") return SetPatternPart(f, "fgClr", d_->PaletteRgb(i));
            SetSolid(*d_, sp, kSpPrOrder, d_->PaletteRgb(i));
        } else {
            Refuse("Unable to set the ColorIndex property of the Interior class");
        }
    }
    Variant Pattern() override {
        auto f = FillOf(SpPr(*d_, h_, false));
        if (f && LocalName(f) == "noFill") return host::xlPatternNone;
        if (f && LocalName(f) == "pattFill") {
            std::string_view prst = f.attribute("prst").value();
            for (auto& [xl, name] : kInteriorPatterns)
                if (prst == name) return xl;
            return host::xlPatternAutomatic;
        }
        return host::xlPatternSolid;
    }
    void SetPattern(const Variant& v) override {
        long p = host::CLng(v);
        auto sp = SpPr(*d_, h_, true);
        auto f = FillOf(sp);
        bool patterned = f && LocalName(f) == "pattFill";
        if (p == host::xlPatternNone) {
            ClearFills(sp);
            InsertAt(sp, "noFill", kSpPrOrder, d_->a);
            return;
        }
        if (p == host::xlPatternSolid || p == host::xlPatternAutomatic) {
            if (patterned) SetSolid(*d_, sp, kSpPrOrder, ColorOf(*d_, Kid(f, "fgClr"), h_.autoColor));
            return;
        }
        const char* prst = nullptr;
        for (auto& [xl, name] : kInteriorPatterns)
            if (xl == p) prst = name;
        if (!prst) Refuse("Unable to set the Pattern property of the Interior class");
        long fg = host::CLng(Color());
        long bg = patterned ? ColorOf(*d_, Kid(f, "bgClr"), 0xFFFFFF) : 0xFFFFFF;
        ClearFills(sp);
        auto fill = InsertAt(sp, "pattFill", kSpPrOrder, d_->a);
        fill.append_attribute("prst") = prst;
        SetPatternPart(fill, "fgClr", fg);
        SetPatternPart(fill, "bgClr", bg);
    }
    Variant PatternColor() override {
        auto f = FillOf(SpPr(*d_, h_, false));
        if (f && LocalName(f) == "pattFill") return ColorOf(*d_, Kid(f, "bgClr"), 0xFFFFFF);
        return 0;
    }
    // Without a pattern the file has no place for a pattern colour: it is not kept.
    void SetPatternColor(const Variant& v) override {
        long rgb = host::CLng(v);
        if (rgb < 0 || rgb > 0xFFFFFF) Refuse("Unable to set the PatternColor property of the Interior class");
        auto f = FillOf(SpPr(*d_, h_, false));
        if (f && LocalName(f) == "pattFill") SetPatternPart(FillOf(SpPr(*d_, h_, true)), "bgClr", rgb);
    }
    Variant PatternColorIndex() override {
        auto f = FillOf(SpPr(*d_, h_, false));
        if (!f || LocalName(f) != "pattFill") return host::xlColorIndexAutomatic;
        return NearestPaletteIndex(*d_, host::CLng(PatternColor()));
    }
    void SetPatternColorIndex(const Variant& v) override {
        long i = host::CLng(v);
        if (i == host::xlColorIndexAutomatic || i == host::xlColorIndexNone) return;
        if (i < 1 || i > 56) Refuse("Unable to set the PatternColorIndex property of the Interior class");
        SetPatternColor(d_->PaletteRgb(i));
    }

private:
    void SetPatternPart(pugi::xml_node fill, const char* which, long rgb) {
        d_->Touch();
        auto c = Kid(fill, which);
        if (!c) c = std::string_view(which) == "fgClr" ? fill.prepend_child(d_->A(which).c_str()) : fill.append_child(d_->A(which).c_str());
        while (c.first_child()) c.remove_child(c.first_child());
        c.append_child(d_->A("srgbClr").c_str()).append_attribute("val") = RgbToHex(rgb).c_str();
    }
    DocPtr d_;
    Holder h_;
};

long Weight(pugi::xml_node ln) {
    if (!ln.attribute("w")) return host::xlThin;
    double pt = ln.attribute("w").as_double() / 12700.0;
    if (pt < 0.5) return host::xlHairline;
    if (pt < 1.5) return host::xlThin;
    if (pt < 2.5) return host::xlMedium;
    return host::xlThick;
}

class BorderImpl : public BorderBase {
public:
    BorderImpl(DocPtr d, Holder h) : d_(std::move(d)), h_(std::move(h)) {}
    Variant LineStyle() override {
        auto ln = Kid(SpPr(*d_, h_, false), "ln");
        if (!ln) return host::xlAutomatic;
        if (Kid(ln, "noFill")) return host::xlLineStyleNone;
        std::string dash = Val(ln, "prstDash", "solid");
        if (dash == "solid") return host::xlContinuous;
        if (dash == "sysDot" || dash == "dot") return host::xlDot;
        if (dash == "sysDashDot" || dash == "dashDot" || dash == "lgDashDot") return xlDashDot;
        if (dash == "sysDashDotDot" || dash == "lgDashDotDot") return xlDashDotDot;
        return host::xlDash;
    }
    void SetLineStyle(const Variant& v) override {
        long s = host::CLng(v);
        auto ln = Ln();
        // 0 is no named style; hosts take it, as old macros write it, for no line
        if (s == host::xlLineStyleNone || s == 0) {
            ClearLine(ln);
            InsertAt(ln, "noFill", kLnOrder, d_->a);
            return;
        }
        if (s == host::xlAutomatic) {
            ln.parent().remove_child(ln);
            return;
        }
        const char* dash = s == host::xlContinuous ? "solid" : s == host::xlDot ? "sysDot" : s == host::xlDash ? "dash"
                         : s == xlDashDot ? "dashDot" : s == xlDashDotDot ? "sysDashDotDot" : nullptr;
        if (!dash) Refuse("Unable to set the LineStyle property of the Border class");
        RemoveL(ln, "noFill");
        if (!FillOf(ln)) SetSolid(*d_, ln, kLnOrder, 0);
        SetVal(ln, "prstDash", dash, kLnOrder, d_->a);
    }
    Variant Weight() override { return xlsx::Weight(Kid(SpPr(*d_, h_, false), "ln")); }
    void SetWeight(const Variant& v) override {
        long w = host::CLng(v);
        double pt = w == host::xlHairline ? 0.25 : w == host::xlThin ? 0.75 : w == host::xlMedium ? 2 : w == host::xlThick ? 3 : -1;
        if (pt < 0) Refuse("Unable to set the Weight property of the Border class");
        auto ln = Ln();
        auto a = ln.attribute("w");
        if (!a) a = ln.append_attribute("w");
        a = std::to_string(std::lround(pt * 12700)).c_str();
    }
    Variant Color() override {
        auto ln = Kid(SpPr(*d_, h_, false), "ln");
        return ColorOf(*d_, Kid(ln, "solidFill"), 0);
    }
    void SetColor(const Variant& v) override {
        long rgb = host::CLng(v);
        if (rgb < 0 || rgb > 0xFFFFFF) Refuse("Unable to set the Color property of the Border class");
        SetSolid(*d_, Ln(), kLnOrder, rgb);
    }
    Variant ColorIndex() override {
        auto ln = Kid(SpPr(*d_, h_, false), "ln");
        if (!ln) return host::xlColorIndexAutomatic;
        if (Kid(ln, "noFill")) return host::xlColorIndexNone;
        return NearestPaletteIndex(*d_, host::CLng(Color()));
    }
    void SetColorIndex(const Variant& v) override {
        long i = host::CLng(v);
        if (i == host::xlColorIndexNone) return SetLineStyle(host::xlLineStyleNone);
        if (i == host::xlColorIndexAutomatic) {
            ClearLine(Ln());
            return;
        }
        if (i < 1 || i > 56) Refuse("Unable to set the ColorIndex property of the Border class");
        SetSolid(*d_, Ln(), kLnOrder, d_->PaletteRgb(i));
    }

private:
    pugi::xml_node Ln() { return Ensure(SpPr(*d_, h_, true), "ln", kSpPrOrder, d_->a); }
    static void ClearLine(pugi::xml_node ln) {
        for (auto f : kFills) RemoveL(ln, f);
        RemoveL(ln, "prstDash");
        RemoveL(ln, "custDash");
    }
    DocPtr d_;
    Holder h_;
};

class ChartFillImpl : public ChartFillFormatBase {
public:
    ChartFillImpl(DocPtr d, Holder h) : d_(std::move(d)), h_(std::move(h)) {}
    Ref<host::ColorFormat> ForeColor() override { return Color(true); }
    Ref<host::ColorFormat> BackColor() override { return Color(false); }
    long Visible() override {
        auto f = FillOf(SpPr(*d_, h_, false));
        return f && LocalName(f) == "noFill" ? host::msoFalse : host::msoTrue;
    }
    void SetVisible(long v) override {
        auto sp = SpPr(*d_, h_, true);
        if (v == host::msoFalse) {
            ClearFills(sp);
            InsertAt(sp, "noFill", kSpPrOrder, d_->a);
        } else if (auto f = FillOf(sp); !f || LocalName(f) == "noFill") {
            SetSolid(*d_, sp, kSpPrOrder, h_.autoColor);
        }
    }
    long Type() override {
        auto f = FillOf(SpPr(*d_, h_, false));
        if (!f || LocalName(f) == "solidFill" || LocalName(f) == "noFill") return host::msoFillSolid;
        if (LocalName(f) == "pattFill") return host::msoFillPatterned;
        if (LocalName(f) == "gradFill") return host::msoFillGradient;
        if (LocalName(f) == "blipFill") return host::msoFillPicture;
        return host::msoFillBackground;
    }
    long Pattern() override {
        auto f = FillOf(SpPr(*d_, h_, false));
        if (!f || LocalName(f) != "pattFill") return host::msoPatternMixed;
        std::string prst = f.attribute("prst").value();
        for (long k = 1; k < kPatternCount; ++k)
            if (prst == kPatterns[k]) return k;
        return host::msoPatternMixed;
    }
    void Solid() override {
        auto sp = SpPr(*d_, h_, true);
        long rgb = ColorOf(*d_, FillOf(sp), h_.autoColor);
        SetSolid(*d_, sp, kSpPrOrder, rgb);
    }
    void Patterned(long pattern) override {
        if (pattern < 1 || pattern >= kPatternCount) Refuse("The specified value is out of range.");
        auto sp = SpPr(*d_, h_, true);
        auto old = FillOf(sp);
        long fg = old && LocalName(old) == "pattFill" ? ColorOf(*d_, Kid(old, "fgClr"), 0)
                                                  : ColorOf(*d_, old && LocalName(old) == "solidFill" ? old : pugi::xml_node(), h_.autoColor);
        long bg = old && LocalName(old) == "pattFill" ? ColorOf(*d_, Kid(old, "bgClr"), 0xFFFFFF) : 0xFFFFFF;
        ClearFills(sp);
        auto f = InsertAt(sp, "pattFill", kSpPrOrder, d_->a);
        f.append_attribute("prst") = kPatterns[pattern];
        f.append_child(d_->A("fgClr").c_str()).append_child(d_->A("srgbClr").c_str()).append_attribute("val") = RgbToHex(fg).c_str();
        f.append_child(d_->A("bgClr").c_str()).append_child(d_->A("srgbClr").c_str()).append_attribute("val") = RgbToHex(bg).c_str();
    }

private:
    Ref<host::ColorFormat> Color(bool fore) {
        auto d = d_;
        auto h = h_;
        return std::make_shared<ColorFormatImpl>(
            d_,
            [d, h, fore](bool edit) -> pugi::xml_node {
                auto sp = SpPr(*d, h, edit);
                auto f = FillOf(sp);
                if (f && LocalName(f) == "pattFill") {
                    const char* which = fore ? "fgClr" : "bgClr";
                    auto c = Kid(f, which);
                    if (!c && edit) c = fore ? f.prepend_child(d->A(which).c_str()) : f.append_child(d->A(which).c_str());
                    return c;
                }
                if (!fore) {
                    if (edit) NotAvailable("ChartFillFormat.BackColor");
                    return {};
                }
                if (edit && (!f || LocalName(f) != "solidFill")) f = SetSolid(*d, sp, kSpPrOrder, h.autoColor);
                return f;
            },
            fore ? h_.autoColor : 0xFFFFFF);
    }
    DocPtr d_;
    Holder h_;
};

// ---------------------------------------------------------------- chart and plot areas

class ChartAreaImpl : public ChartAreaBase {
public:
    explicit ChartAreaImpl(DocPtr d) : d_(std::move(d)) {}
    Ref<host::Interior> Interior() override { return MakeInterior(d_, H()); }
    Ref<host::Border> Border() override { return MakeBorder(d_, H()); }
    Ref<host::ChartFillFormat> Fill() override { return MakeFill(d_, H()); }
    Ref<host::Font> Font() override { return MakeFont(d_, H()); }
    Variant AutoScaleFont() override { return AutoScaleFontOf(H()); }
    void SetAutoScaleFont(const Variant& v) override { SetAutoScaleFontOf(*d_, H(), v); }
    double Left() override { return 0; }
    double Top() override { return 0; }
    double Width() override {
        if (auto f = d_->frame.lock()) return f->Width();
        NotAvailable("ChartArea.Width");
    }
    double Height() override {
        if (auto f = d_->frame.lock()) return f->Height();
        NotAvailable("ChartArea.Height");
    }
    bool RoundedCorners() override { return BoolVal(d_->Root(false), "roundedCorners", true); }
    void SetRoundedCorners(bool v) override {
        d_->Touch();
        SetVal(d_->Root(false), "roundedCorners", v ? "1" : "0", kChartSpaceOrder, d_->c);
    }
    void ClearFormats() override {
        d_->Touch();
        RemoveL(d_->Root(false), "spPr");
        RemoveL(d_->Root(false), "txPr");
    }

private:
    Holder H() {
        auto d = d_;
        return Holder{[d](bool e) { return d->Root(e); }, &kChartSpaceOrder, 0xFFFFFF, 10};
    }
    DocPtr d_;
};

const std::vector<std::string_view> kManualOrder = {"layoutTarget", "xMode", "yMode", "wMode", "hMode",
                                                    "x", "y", "w", "h", "extLst"};

struct Box {
    double left, top, width, height;
};

class PlotAreaImpl : public PlotAreaBase {
public:
    explicit PlotAreaImpl(DocPtr d) : d_(std::move(d)) {}
    double Left() override { return Outer().left; }
    double Top() override { return Outer().top; }
    double Width() override { return Outer().width; }
    double Height() override { return Outer().height; }
    // The plot stays inside the chart: a place or size that would take part of it out is cut back,
    // one that would take all of it out (or a negative size) is refused, as the application does.
    void SetLeft(double v) override {
        auto b = Outer();
        if (v + b.width < 0 || v > Size().width) Refuse("Unable to set the Left property of the PlotArea class");
        b.left = std::clamp(v, 0.0, std::max(0.0, Size().width - b.width));
        Place(b);
    }
    void SetTop(double v) override {
        auto b = Outer();
        if (v + b.height < 0 || v > Size().height) Refuse("Unable to set the Top property of the PlotArea class");
        b.top = std::clamp(v, 0.0, std::max(0.0, Size().height - b.height));
        Place(b);
    }
    void SetWidth(double v) override {
        if (v < 0) Refuse("Unable to set the Width property of the PlotArea class");
        auto b = Outer();
        b.width = std::min(v, std::max(0.0, Size().width - b.left));
        Place(b);
    }
    void SetHeight(double v) override {
        if (v < 0) Refuse("Unable to set the Height property of the PlotArea class");
        auto b = Outer();
        b.height = std::min(v, std::max(0.0, Size().height - b.top));
        Place(b);
    }
    double InsideLeft() override { return Inner(Outer()).left; }
    double InsideTop() override { return Inner(Outer()).top; }
    double InsideWidth() override { return Inner(Outer()).width; }
    double InsideHeight() override { return Inner(Outer()).height; }
    Ref<host::Interior> Interior() override { return MakeInterior(d_, H()); }
    Ref<host::Border> Border() override { return MakeBorder(d_, H()); }
    Ref<host::ChartFillFormat> Fill() override { return MakeFill(d_, H()); }
    long Position() override {
        return Kid(Kid(d_->PlotArea(false), "layout"), "manualLayout") ? host::xlChartElementPositionCustom
                                                                              : host::xlChartElementPositionAutomatic;
    }
    void SetPosition(long v) override {
        if (v != host::xlChartElementPositionAutomatic) NotAvailable("PlotArea.Position");
        auto layout = Kid(d_->PlotArea(true), "layout");
        RemoveL(layout, "manualLayout");
    }
    void ClearFormats() override { RemoveL(d_->PlotArea(true), "spPr"); }

private:
    Box Size() {
        if (auto f = d_->frame.lock()) return {0, 0, f->Width(), f->Height()};
        return {0, 0, 480, 288};
    }
    bool HasAxes() {
        for (auto n : d_->PlotArea(false).children())
            if (IsAxis(LocalName(n))) return true;
        return false;
    }
    // The outer box holds the tick labels around the box the axes enclose.
    Box Inner(Box b) {
        Sides l = HasAxes() ? AxisLabelRoom(*d_) : Sides{};
        return {b.left + l.left, b.top + l.top, std::max(0.0, b.width - l.left - l.right),
                std::max(0.0, b.height - l.top - l.bottom)};
    }
    // The box of a manual layout, else where the application puts the plot beside the title,
    // the axis titles and the legend.
    Box Outer() {
        Box s = Size();
        auto m = Kid(Kid(d_->PlotArea(false), "layout"), "manualLayout");
        if (m && Kid(m, "x") && Kid(m, "y") && Kid(m, "w") && Kid(m, "h")) {
            auto num = [&](const char* k) { return std::atof(Val(m, k, "0").c_str()); };
            Box b{num("x") * s.width, num("y") * s.height, num("w") * s.width, num("h") * s.height};
            if (Val(m, "layoutTarget", "outer") == "inner" && HasAxes()) {
                Sides l = AxisLabelRoom(*d_);
                b = {b.left - l.left, b.top - l.top, b.width + l.left + l.right, b.height + l.top + l.bottom};
            }
            return b;
        }
        auto chart = d_->Chart(false);
        Sides titles = AxisTitleRoom(*d_);
        double top = (Kid(chart, "title") ? 30 : 7) + titles.top, left = 7 + titles.left, right = 7 + titles.right,
               bottom = 7 + titles.bottom;
        if (auto legend = Kid(chart, "legend"); legend && !BoolVal(legend, "overlay", false)) {
            std::string pos = Val(legend, "legendPos", "r");
            if (pos == "r" || pos == "tr") right += 80;
            else if (pos == "l") left += 80;
            else if (pos == "t") top += 20;
            else bottom += 20;
        }
        return {left, top, std::max(0.0, s.width - left - right), std::max(0.0, s.height - top - bottom)};
    }
    // Written as the box the axes enclose, as the application writes it, so that readers put the
    // labels and titles around it in the room left for them.
    void Place(Box b) {
        Box s = Size();
        bool inner = HasAxes();
        if (inner) b = Inner(b);
        auto pa = d_->PlotArea(true);
        auto layout = Ensure(pa, "layout", kPlotAreaOrder, d_->c);
        auto m = Ensure(layout, "manualLayout", {"manualLayout", "extLst"}, d_->c);
        RemoveL(m, "layoutTarget");
        if (inner) SetVal(m, "layoutTarget", "inner", kManualOrder, d_->c);
        auto frac = [](double v, double of) { return host::NumberToText(std::clamp(v / of, 0.0, 1.0)); };
        SetVal(m, "xMode", "edge", kManualOrder, d_->c);
        SetVal(m, "yMode", "edge", kManualOrder, d_->c);
        SetVal(m, "x", frac(b.left, s.width), kManualOrder, d_->c);
        SetVal(m, "y", frac(b.top, s.height), kManualOrder, d_->c);
        SetVal(m, "w", frac(b.width, s.width), kManualOrder, d_->c);
        SetVal(m, "h", frac(b.height, s.height), kManualOrder, d_->c);
    }
    Holder H() {
        auto d = d_;
        return Holder{[d](bool e) { return d->PlotArea(e); }, &kPlotAreaOrder, 0xFFFFFF, 10};
    }
    DocPtr d_;
};

}  // namespace

long HexToRgb(std::string_view hex) {
    if (hex.size() < 6) return 0;
    long v = std::strtol(std::string(hex.substr(0, 6)).c_str(), nullptr, 16);
    return ((v >> 16) & 0xFF) | (v & 0xFF00) | ((v & 0xFF) << 16);
}

std::string RgbToHex(long rgb) {
    char buf[8];
    std::snprintf(buf, sizeof buf, "%02X%02X%02X", int(Channel(rgb, 0)), int(Channel(rgb, 8)), int(Channel(rgb, 16)));
    return buf;
}

long ThemeColor(ChartDoc& doc, std::string_view name) {
    auto& pkg = doc.book.pkg();
    std::string theme;
    for (auto& r : pkg.Rels(doc.book.WorkbookPart()))
        if (r.type == kThemeRel) theme = pkg.Target(doc.book.WorkbookPart(), r.id);
    if (name == "tx1") name = "dk1";
    if (name == "bg1") name = "lt1";
    if (name == "tx2") name = "dk2";
    if (name == "bg2") name = "lt2";
    if (!theme.empty() && pkg.Has(theme)) {
        auto root = pkg.Read(theme).document_element();
        auto scheme = Kid(Kid(root, "themeElements"), "clrScheme");
        if (auto c = Kid(scheme, name)) {
            if (auto s = Kid(c, "srgbClr")) return HexToRgb(s.attribute("val").value());
            if (auto s = Kid(c, "sysClr")) return HexToRgb(s.attribute("lastClr").value());
        }
    }
    return DefaultThemeColor(name);
}

long ColorOf(ChartDoc& doc, pugi::xml_node fill, long dflt) {
    for (auto c : fill.children()) {
        auto l = LocalName(c);
        if (l == "srgbClr") return ApplyMods(c, HexToRgb(c.attribute("val").value()));
        if (l == "schemeClr") return ApplyMods(c, ThemeColor(doc, c.attribute("val").value()));
        if (l == "sysClr") return ApplyMods(c, HexToRgb(c.attribute("lastClr").value()));
        if (l == "prstClr") {
            std::string_view v = c.attribute("val").value();
            return v == "white" ? 0xFFFFFF : 0;
        }
    }
    return dflt;
}

long NearestPaletteIndex(ChartDoc& doc, long rgb) {
    long best = 1, bestDist = -1;
    for (long i = 1; i <= 56; ++i) {
        long p = doc.PaletteRgb(i);
        long dr = Channel(p, 0) - Channel(rgb, 0), dg = Channel(p, 8) - Channel(rgb, 8), db = Channel(p, 16) - Channel(rgb, 16);
        long dist = dr * dr + dg * dg + db * db;
        if (bestDist < 0 || dist < bestDist) {
            best = i;
            bestDist = dist;
        }
    }
    return best;
}

long SeriesAutoColor(ChartDoc& doc, long idx) {
    static const char* accents[] = {"accent1", "accent2", "accent3", "accent4", "accent5", "accent6"};
    long base = ThemeColor(doc, accents[idx % 6]);
    long round = idx / 6;
    if (round == 0) return base;
    // later rounds darken the accents, then lighten them
    pugi::xml_document tmp;
    auto clr = tmp.append_child("c");
    clr.append_child("lumMod").append_attribute("val") = round % 2 ? 60000 : 80000;
    if (round % 2 == 0) clr.append_child("lumOff").append_attribute("val") = 20000;
    return ApplyMods(clr, base);
}

Ref<host::Interior> MakeInterior(DocPtr doc, Holder h) { return std::make_shared<InteriorImpl>(std::move(doc), std::move(h)); }
Ref<host::Border> MakeBorder(DocPtr doc, Holder h) { return std::make_shared<BorderImpl>(std::move(doc), std::move(h)); }
Ref<host::ChartFillFormat> MakeFill(DocPtr doc, Holder h) { return std::make_shared<ChartFillImpl>(std::move(doc), std::move(h)); }
Ref<host::ChartArea> MakeChartArea(DocPtr doc) { return std::make_shared<ChartAreaImpl>(std::move(doc)); }
Ref<host::PlotArea> MakePlotArea(DocPtr doc) { return std::make_shared<PlotAreaImpl>(std::move(doc)); }

}  // namespace xlsx
