// Formats of chart elements: their interior, border, fill and colours over the element's shape
// properties, with the workbook palette of the older colour members; the automatic series colours.
#include <cmath>

#include "xlsx/book.h"
#include "xlsx/chart_model.h"

namespace xlsx {

namespace {
constexpr long xlDashDot = 4;
constexpr long xlDashDotDot = 5;

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

pugi::xml_node SpPr(ChartDoc& doc, const Holder& h, bool edit) {
    auto owner = h.node(edit);
    if (!edit) return Kid(owner, "spPr");
    doc.Touch();
    return Ensure(owner, "spPr", *h.order, doc.c);
}

// A chart colour: of a solid fill, or the fgClr / bgClr of a pattern; clr(edit) answers that
// element. SchemeColor indexes the workbook palette, as the chart's own colour dialogs of old did.
class ColorFormatImpl : public SlotColor {
public:
    ColorFormatImpl(DocPtr d, std::function<pugi::xml_node(bool)> clr, long dflt)
        : SlotColor(d->book.theme(), ColorSlot{[clr] { return ColorIn(clr(false)); }, [dflt] { return dflt; },
                                               [d, clr](std::string_view model, const std::string& val) {
                                                   d->Touch();
                                                   PutColor(clr(true), model, val, d->a);
                                               }}),
          d_(std::move(d)) {}
    long SchemeColor() override { return NearestPaletteIndex(d_->book, RGB()); }
    void SetSchemeColor(long index) override {
        if (index < 1 || index > 80) Refuse("The specified value is out of range.");
        SetRGB(index <= 56 ? d_->PaletteRgb(index) : 0);
    }

private:
    DocPtr d_;
};

class InteriorImpl : public host::Interior {
public:
    InteriorImpl(DocPtr d, Holder h) : d_(std::move(d)), h_(std::move(h)) {}
    Variant Color() override {
        auto f = FillIn(SpPr(*d_, h_, false));
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
        if (auto f = FillIn(sp); f && LocalName(f) == "pattFill") return SetPatternPart(f, "fgClr", rgb);
        PutSolid(sp, rgb, d_->a);
    }
    Variant ColorIndex() override {
        auto f = FillIn(SpPr(*d_, h_, false));
        if (!f) return host::xlColorIndexAutomatic;
        if (LocalName(f) == "noFill") return host::xlColorIndexNone;
        return NearestPaletteIndex(d_->book, host::CLng(Color()));
    }
    void SetColorIndex(const Variant& v) override {
        long i = host::CLng(v);
        auto sp = SpPr(*d_, h_, true);
        if (i == host::xlColorIndexNone) {
            PutFill(sp, "noFill", d_->a);
        } else if (i == host::xlColorIndexAutomatic) {
            RemoveFills(sp);
        } else if (i >= 1 && i <= 56) {
            if (auto f = FillIn(sp); f && LocalName(f) == "pattFill") return SetPatternPart(f, "fgClr", d_->PaletteRgb(i));
            PutSolid(sp, d_->PaletteRgb(i), d_->a);
        } else {
            Refuse("Unable to set the ColorIndex property of the Interior class");
        }
    }
    Variant Pattern() override {
        auto f = FillIn(SpPr(*d_, h_, false));
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
        auto f = FillIn(sp);
        bool patterned = f && LocalName(f) == "pattFill";
        if (p == host::xlPatternNone) {
            PutFill(sp, "noFill", d_->a);
            return;
        }
        if (p == host::xlPatternSolid || p == host::xlPatternAutomatic) {
            if (patterned) PutSolid(sp, ColorOf(*d_, Kid(f, "fgClr"), h_.autoColor), d_->a);
            return;
        }
        const char* prst = nullptr;
        for (auto& [xl, name] : kInteriorPatterns)
            if (xl == p) prst = name;
        if (!prst) Refuse("Unable to set the Pattern property of the Interior class");
        long fg = host::CLng(Color());
        long bg = patterned ? ColorOf(*d_, Kid(f, "bgClr"), 0xFFFFFF) : 0xFFFFFF;
        auto fill = PutFill(sp, "pattFill", d_->a);
        fill.append_attribute("prst") = prst;
        SetPatternPart(fill, "fgClr", fg);
        SetPatternPart(fill, "bgClr", bg);
    }
    Variant PatternColor() override {
        auto f = FillIn(SpPr(*d_, h_, false));
        if (f && LocalName(f) == "pattFill") return ColorOf(*d_, Kid(f, "bgClr"), 0xFFFFFF);
        return 0;
    }
    // Without a pattern the file has no place for a pattern colour: it is not kept.
    void SetPatternColor(const Variant& v) override {
        long rgb = host::CLng(v);
        if (rgb < 0 || rgb > 0xFFFFFF) Refuse("Unable to set the PatternColor property of the Interior class");
        auto f = FillIn(SpPr(*d_, h_, false));
        if (f && LocalName(f) == "pattFill") SetPatternPart(FillIn(SpPr(*d_, h_, true)), "bgClr", rgb);
    }
    Variant PatternColorIndex() override {
        auto f = FillIn(SpPr(*d_, h_, false));
        if (!f || LocalName(f) != "pattFill") return host::xlColorIndexAutomatic;
        return NearestPaletteIndex(d_->book, host::CLng(PatternColor()));
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
        PutColor(c, "srgbClr", RgbToHex(rgb), d_->a);
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

class BorderImpl : public host::Border {
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
            PutFill(ln, "noFill", d_->a);
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
        if (!FillIn(ln)) PutSolid(ln, 0, d_->a);
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
        PutSolid(Ln(), rgb, d_->a);
    }
    Variant ColorIndex() override {
        auto ln = Kid(SpPr(*d_, h_, false), "ln");
        if (!ln) return host::xlColorIndexAutomatic;
        if (Kid(ln, "noFill")) return host::xlColorIndexNone;
        return NearestPaletteIndex(d_->book, host::CLng(Color()));
    }
    void SetColorIndex(const Variant& v) override {
        long i = host::CLng(v);
        if (i == host::xlColorIndexNone) return SetLineStyle(host::xlLineStyleNone);
        if (i == host::xlColorIndexAutomatic) {
            ClearLine(Ln());
            return;
        }
        if (i < 1 || i > 56) Refuse("Unable to set the ColorIndex property of the Border class");
        PutSolid(Ln(), d_->PaletteRgb(i), d_->a);
    }

private:
    pugi::xml_node Ln() { return Ensure(SpPr(*d_, h_, true), "ln", kSpPrOrder, d_->a); }
    static void ClearLine(pugi::xml_node ln) {
        RemoveFills(ln);
        RemoveL(ln, "prstDash");
        RemoveL(ln, "custDash");
    }
    DocPtr d_;
    Holder h_;
};

class ChartFillImpl : public host::ChartFillFormat {
public:
    ChartFillImpl(DocPtr d, Holder h) : d_(std::move(d)), h_(std::move(h)) {}
    Ref<host::ColorFormat> ForeColor() override { return Color(true); }
    Ref<host::ColorFormat> BackColor() override { return Color(false); }
    long Visible() override {
        auto f = FillIn(SpPr(*d_, h_, false));
        return f && LocalName(f) == "noFill" ? host::msoFalse : host::msoTrue;
    }
    void SetVisible(long v) override {
        auto sp = SpPr(*d_, h_, true);
        if (v == host::msoFalse) {
            PutFill(sp, "noFill", d_->a);
        } else if (auto f = FillIn(sp); !f || LocalName(f) == "noFill") {
            PutSolid(sp, h_.autoColor, d_->a);
        }
    }
    long Type() override {
        auto f = FillIn(SpPr(*d_, h_, false));
        if (!f || LocalName(f) == "solidFill" || LocalName(f) == "noFill") return host::msoFillSolid;
        if (LocalName(f) == "pattFill") return host::msoFillPatterned;
        if (LocalName(f) == "gradFill") return host::msoFillGradient;
        if (LocalName(f) == "blipFill") return host::msoFillPicture;
        return host::msoFillBackground;
    }
    long Pattern() override {
        auto f = FillIn(SpPr(*d_, h_, false));
        if (!f || LocalName(f) != "pattFill") return host::msoPatternMixed;
        std::string prst = f.attribute("prst").value();
        for (long k = 1; k < kPatternCount; ++k)
            if (prst == kPatterns[k]) return k;
        return host::msoPatternMixed;
    }
    void Solid() override {
        auto sp = SpPr(*d_, h_, true);
        long rgb = ColorOf(*d_, FillIn(sp), h_.autoColor);
        PutSolid(sp, rgb, d_->a);
    }
    void Patterned(long pattern) override {
        if (pattern < 1 || pattern >= kPatternCount) Refuse("The specified value is out of range.");
        auto sp = SpPr(*d_, h_, true);
        auto old = FillIn(sp);
        long fg = old && LocalName(old) == "pattFill" ? ColorOf(*d_, Kid(old, "fgClr"), 0)
                                                  : ColorOf(*d_, old && LocalName(old) == "solidFill" ? old : pugi::xml_node(), h_.autoColor);
        long bg = old && LocalName(old) == "pattFill" ? ColorOf(*d_, Kid(old, "bgClr"), 0xFFFFFF) : 0xFFFFFF;
        auto f = PutFill(sp, "pattFill", d_->a);
        f.append_attribute("prst") = kPatterns[pattern];
        PutColor(f.append_child(d_->A("fgClr").c_str()), "srgbClr", RgbToHex(fg), d_->a);
        PutColor(f.append_child(d_->A("bgClr").c_str()), "srgbClr", RgbToHex(bg), d_->a);
    }

private:
    Ref<host::ColorFormat> Color(bool fore) {
        auto d = d_;
        auto h = h_;
        return std::make_shared<ColorFormatImpl>(
            d_,
            [d, h, fore](bool edit) -> pugi::xml_node {
                auto sp = SpPr(*d, h, edit);
                auto f = FillIn(sp);
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
                if (edit && (!f || LocalName(f) != "solidFill")) f = PutSolid(sp, h.autoColor, d->a);
                return f;
            },
            fore ? h_.autoColor : 0xFFFFFF);
    }
    DocPtr d_;
    Holder h_;
};

}  // namespace

long ColorOf(ChartDoc& doc, pugi::xml_node fill, long dflt) { return ColorRgb(doc.book.theme(), ColorIn(fill), dflt); }

// The accents in turn; each later round of six darkens them, then lightens them, as the
// application's colour style varies them.
long SeriesAutoColor(ChartDoc& doc, long idx) {
    static const char* accents[] = {"accent1", "accent2", "accent3", "accent4", "accent5", "accent6"};
    long base = doc.book.theme().Color(accents[idx % 6]);
    long round = idx / 6;
    if (round == 0) return base;
    return round % 2 ? ModulateLuminance(base, 0.6, 0) : ModulateLuminance(base, 0.8, 0.2);
}

Ref<host::Interior> MakeInterior(DocPtr doc, Holder h) { return std::make_shared<InteriorImpl>(std::move(doc), std::move(h)); }
Ref<host::Border> MakeBorder(DocPtr doc, Holder h) { return std::make_shared<BorderImpl>(std::move(doc), std::move(h)); }
Ref<host::ChartFillFormat> MakeFill(DocPtr doc, Holder h) { return std::make_shared<ChartFillImpl>(std::move(doc), std::move(h)); }

}  // namespace xlsx
