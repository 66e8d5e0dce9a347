// Texts of a chart: fonts of text and run properties, rich text of titles, the chart title, axis
// titles and the legend with its entries.
#include <algorithm>
#include <cmath>

#include "xlsx/book.h"
#include "xlsx/chart_model.h"

namespace xlsx {

namespace {

const std::vector<std::string_view> kRPrOrder = {
    "ln", "noFill", "solidFill", "gradFill", "blipFill", "pattFill", "grpFill", "effectLst", "effectDag",
    "highlight", "uLnTx", "uLn", "uFillTx", "uFill", "latin", "ea", "cs", "sym", "hlinkClick",
    "hlinkMouseOver", "rtl", "extLst"};
const std::vector<std::string_view> kPPrOrder = {"lnSpc", "spcBef", "spcAft", "buClrTx", "buClr", "buSzTx",
                                                 "buSzPct", "buSzPts", "buFontTx", "buFont", "buNone",
                                                 "buAutoNum", "buChar", "buBlip", "tabLst", "defRPr", "extLst"};
const std::vector<std::string_view> kParaOrder = {"pPr", "r", "endParaRPr"};
const std::vector<std::string_view> kLayoutOrder = {"layoutTarget", "xMode", "yMode", "wMode", "hMode",
                                                    "x", "y", "w", "h", "extLst"};

// Text properties: c:txPr made with a body, a list style and one paragraph.
pugi::xml_node EnsureTxPr(ChartDoc& doc, pugi::xml_node owner, const std::vector<std::string_view>& order) {
    auto tx = Kid(owner, "txPr");
    if (tx) return tx;
    tx = InsertAt(owner, "txPr", order, doc.c);
    tx.append_child(doc.A("bodyPr").c_str());
    tx.append_child(doc.A("lstStyle").c_str());
    auto p = tx.append_child(doc.A("p").c_str());
    p.append_child(doc.A("pPr").c_str()).append_child(doc.A("defRPr").c_str());
    p.append_child(doc.A("endParaRPr").c_str()).append_attribute("lang") = "en-US";
    return tx;
}

pugi::xml_node Rich(pugi::xml_node owner) { return Kid(Kid(owner, "tx"), "rich"); }

// The run properties that decide the look of one run: its own, then its paragraph's defaults.
struct Props {
    pugi::xml_node run, para;
    pugi::xml_attribute attribute(const char* name) const {
        if (auto a = run.attribute(name)) return a;
        return para.attribute(name);
    }
    pugi::xml_node child(std::string_view local) const {
        if (auto c = Kid(run, local)) return c;
        return Kid(para, local);
    }
    // the fill of the text: the first fill element of the run, else of the paragraph
    pugi::xml_node fill() const {
        for (auto n : {run, para})
            for (auto f : {"noFill", "solidFill", "gradFill", "pattFill"})
                if (auto c = Kid(n, f)) return c;
        return {};
    }
};

// The runs of the owner's text, for reading.
std::vector<Props> ReadProps(pugi::xml_node owner) {
    std::vector<Props> out;
    auto body = Rich(owner);
    if (!body) body = Kid(owner, "txPr");
    for (auto p : ChildrenL(body, "p")) {
        auto def = Kid(Kid(p, "pPr"), "defRPr");
        bool runs = false;
        for (auto r : p.children()) {
            auto l = LocalName(r);
            if (l != "r" && l != "fld") continue;
            runs = true;
            out.push_back({Kid(r, "rPr"), def});
        }
        if (!runs) out.push_back({pugi::xml_node(), def});
    }
    if (out.empty()) out.push_back({});
    return out;
}

// The run property elements to write a font member into, made where missing.
std::vector<pugi::xml_node> WriteProps(ChartDoc& doc, pugi::xml_node owner, const std::vector<std::string_view>& order) {
    std::vector<pugi::xml_node> out;
    auto body = Rich(owner);
    if (!body) body = EnsureTxPr(doc, owner, order);
    auto paras = ChildrenL(body, "p");
    if (paras.empty()) paras.push_back(body.append_child(doc.A("p").c_str()));
    for (auto p : paras) {
        auto ppr = Ensure(p, "pPr", kParaOrder, doc.a);
        out.push_back(Ensure(ppr, "defRPr", kPPrOrder, doc.a));
        for (auto r : p.children()) {
            auto l = LocalName(r);
            if (l != "r" && l != "fld") continue;
            auto rp = Kid(r, "rPr");
            if (!rp) {
                rp = r.prepend_child(doc.A("rPr").c_str());
                rp.append_attribute("lang") = "en-US";
            }
            out.push_back(rp);
        }
    }
    return out;
}

void SetAttr(pugi::xml_node n, const char* name, const std::string& v) {
    auto a = n.attribute(name);
    if (!a) a = n.append_attribute(name);
    a = v.c_str();
}

class FontImpl : public FontBase {
public:
    FontImpl(DocPtr d, Holder h) : d_(std::move(d)), h_(std::move(h)) {}

    Variant Name() override {
        return Same([&](const Props& rp) -> Variant {
            std::string face = rp.child("latin").attribute("typeface").value();
            if (face.empty() || face[0] == '+') return d_->book.styles().DefaultFontName();
            return face;
        });
    }
    void SetName(const Variant& v) override {
        std::string name = host::CStr(v);
        Write([&](pugi::xml_node rp) {
            auto latin = Ensure(rp, "latin", kRPrOrder, d_->a);
            SetAttr(latin, "typeface", name);
        });
    }
    Variant Size() override {
        return Same([&](const Props& rp) -> Variant {
            auto sz = rp.attribute("sz");
            return sz ? sz.as_double() / 100.0 : h_.defaultSize;
        });
    }
    void SetSize(const Variant& v) override {
        double size = host::CDbl(v);
        if (size < 1 || size > 409) Refuse("Unable to set the Size property of the Font class");
        Write([&](pugi::xml_node rp) { SetAttr(rp, "sz", std::to_string(std::lround(size * 100))); });
    }
    Variant Bold() override { return Flag("b"); }
    void SetBold(const Variant& v) override { SetFlag("b", host::CBool(v)); }
    Variant Italic() override { return Flag("i"); }
    void SetItalic(const Variant& v) override { SetFlag("i", host::CBool(v)); }
    Variant Underline() override {
        return Same([&](const Props& rp) -> Variant {
            std::string u = rp.attribute("u").value();
            if (u.empty() || u == "none") return host::xlUnderlineStyleNone;
            return u == "dbl" ? host::xlUnderlineStyleDouble : host::xlUnderlineStyleSingle;
        });
    }
    void SetUnderline(const Variant& v) override {
        long u = v.type() == Variant::Type::Boolean ? (v.RawBool() ? host::xlUnderlineStyleSingle : host::xlUnderlineStyleNone)
                                                    : host::CLng(v);
        const char* s = u == host::xlUnderlineStyleSingle ? "sng" : u == host::xlUnderlineStyleDouble ? "dbl" : "none";
        Write([&](pugi::xml_node rp) { SetAttr(rp, "u", s); });
    }
    Variant Strikethrough() override {
        return Same([&](const Props& rp) -> Variant {
            std::string s = rp.attribute("strike").value();
            return !s.empty() && s != "noStrike";
        });
    }
    void SetStrikethrough(const Variant& v) override {
        bool on = host::CBool(v);
        Write([&](pugi::xml_node rp) { SetAttr(rp, "strike", on ? "sngStrike" : "noStrike"); });
    }
    Variant Color() override {
        return Same([&](const Props& rp) -> Variant {
            auto f = rp.fill();
            return LocalName(f) == "solidFill" ? ColorOf(*d_, f, 0) : 0;
        });
    }
    void SetColor(const Variant& v) override {
        long rgb = host::CLng(v);
        if (rgb < 0 || rgb > 0xFFFFFF) Refuse("Unable to set the Color property of the Font class");
        Write([&](pugi::xml_node rp) {
            for (auto f : {"noFill", "solidFill", "gradFill", "blipFill", "pattFill", "grpFill"}) RemoveL(rp, f);
            auto fill = InsertAt(rp, "solidFill", kRPrOrder, d_->a);
            fill.append_child(d_->A("srgbClr").c_str()).append_attribute("val") = RgbToHex(rgb).c_str();
        });
    }
    Variant ColorIndex() override {
        Variant c = Color();
        if (c.IsNull()) return c;
        return NearestPaletteIndex(*d_, c.RawLong());
    }
    void SetColorIndex(const Variant& v) override {
        long i = host::CLng(v);
        if (i == host::xlColorIndexAutomatic || i == host::xlColorIndexNone) {
            Write([&](pugi::xml_node rp) {
                for (auto f : {"noFill", "solidFill", "gradFill", "blipFill", "pattFill", "grpFill"}) RemoveL(rp, f);
            });
            return;
        }
        if (i < 1 || i > 56) Refuse("Unable to set the ColorIndex property of the Font class");
        SetColor(d_->PaletteRgb(i));
    }
    Variant FontStyle() override {
        Variant b = Bold(), i = Italic();
        if (b.IsNull() || i.IsNull()) return Variant::Null();
        if (b.RawBool() && i.RawBool()) return "Bold Italic";
        if (b.RawBool()) return "Bold";
        if (i.RawBool()) return "Italic";
        return "Regular";
    }
    void SetFontStyle(const Variant& v) override {
        std::string s = host::LCase(host::CStr(v));
        SetBold(s.find("bold") != std::string::npos);
        SetItalic(s.find("italic") != std::string::npos || s.find("oblique") != std::string::npos);
    }
    // The text's background is the fill of the element that holds it.
    Variant Background() override {
        auto sp = Kid(h_.node(false), "spPr");
        if (Kid(sp, "noFill")) return host::xlBackgroundTransparent;
        if (Kid(sp, "solidFill") || Kid(sp, "pattFill") || Kid(sp, "gradFill")) return host::xlBackgroundOpaque;
        return host::xlBackgroundAutomatic;
    }
    void SetBackground(const Variant& v) override {
        long b = host::CLng(v);
        if (b != host::xlBackgroundTransparent && b != host::xlBackgroundOpaque && b != host::xlBackgroundAutomatic)
            Refuse("Unable to set the Background property of the Font class");
        if (b == host::xlBackgroundOpaque && Background().RawLong() == host::xlBackgroundOpaque) return;
        d_->Touch();
        auto sp = Ensure(h_.node(true), "spPr", *h_.order, d_->c);
        for (const char* f : {"noFill", "solidFill", "gradFill", "blipFill", "pattFill", "grpFill"}) RemoveL(sp, f);
        if (b == host::xlBackgroundTransparent) InsertAt(sp, "noFill", kSpPrOrder, d_->a);
        else if (b == host::xlBackgroundOpaque)
            InsertAt(sp, "solidFill", kSpPrOrder, d_->a).append_child(d_->A("srgbClr").c_str()).append_attribute("val") = "FFFFFF";
        else if (!sp.first_child()) sp.parent().remove_child(sp);
    }

private:
    Variant Same(const std::function<Variant(const Props&)>& get) {
        auto props = ReadProps(h_.node(false));
        Variant first = get(props[0]);
        for (size_t k = 1; k < props.size(); ++k)
            if (!(get(props[k]) == first)) return Variant::Null();
        return first;
    }
    void Write(const std::function<void(pugi::xml_node)>& set) {
        d_->Touch();
        for (auto rp : WriteProps(*d_, h_.node(true), *h_.order)) set(rp);
    }
    Variant Flag(const char* name) {
        return Same([&](const Props& rp) -> Variant {
            auto a = rp.attribute(name);
            return a ? a.as_bool() : false;
        });
    }
    void SetFlag(const char* name, bool on) {
        Write([&](pugi::xml_node rp) { SetAttr(rp, name, on ? "1" : "0"); });
    }
    DocPtr d_;
    Holder h_;
};

// Orientation of a text body: rot in 60000ths of a degree, counter-clockwise negative.
Variant OrientationOf(pugi::xml_node body, long dflt) {
    if (!body) return dflt;
    std::string vert = body.attribute("vert").value();
    if (vert == "wordArtVert" || vert == "eaVert") return host::xlVertical;
    auto rot = body.attribute("rot");
    if (!rot) return dflt;
    long deg = std::lround(-rot.as_double() / 60000.0);
    if (deg == 90) return host::xlUpward;
    if (deg == -90) return host::xlDownward;
    if (deg == 0) return host::xlHorizontal;
    return deg;
}

void SetOrientationOf(ChartDoc& doc, pugi::xml_node owner, const std::vector<std::string_view>& order, const Variant& v,
                      const char* cls) {
    long o = host::CLng(v);
    long rot = 0;
    const char* vert = "horz";
    if (o == host::xlUpward) rot = -5400000;
    else if (o == host::xlDownward) rot = 5400000;
    else if (o == host::xlVertical) vert = "wordArtVert";
    else if (o == host::xlHorizontal) rot = 0;
    else if (o >= -90 && o <= 90) rot = -o * 60000;
    else Refuse(std::string("Unable to set the Orientation property of the ") + cls + " class");
    auto body = Rich(owner);
    if (!body) body = EnsureTxPr(doc, owner, order);
    auto bp = Kid(body, "bodyPr");
    if (!bp) bp = body.prepend_child(doc.A("bodyPr").c_str());
    SetAttr(bp, "rot", std::to_string(rot));
    SetAttr(bp, "vert", vert);
}

// What the chart and axis titles share; owner(edit) is the c:title element.
template <class Base>
class TitleImpl : public Base {
public:
    TitleImpl(const char* cls, DocPtr d, std::function<pugi::xml_node(bool)> owner, std::string autoText,
              long defaultOrientation, double defaultSize)
        : cls_(cls), d_(std::move(d)), owner_(std::move(owner)), autoText_(std::move(autoText)),
          defaultOrientation_(defaultOrientation), defaultSize_(defaultSize) {}

    std::string Text() override {
        auto t = owner_(false);
        if (Kid(t, "tx")) return RichText(*d_, Kid(t, "tx"));
        return autoText_;
    }
    void SetText(const std::string& v) override {
        d_->Touch();
        SetRichText(*d_, owner_(true), v, kTitleOrder);
    }
    std::string Caption() override { return Text(); }
    void SetCaption(const std::string& v) override { SetText(v); }
    Ref<host::Font> Font() override { return MakeFont(d_, TextHolder()); }
    Variant AutoScaleFont() override { return AutoScaleFontOf(TextHolder()); }
    void SetAutoScaleFont(const Variant& v) override { SetAutoScaleFontOf(*d_, TextHolder(), v); }
    Variant Orientation() override {
        auto t = owner_(false);
        auto body = Rich(t);
        if (!body) body = Kid(t, "txPr");
        return OrientationOf(Kid(body, "bodyPr"), defaultOrientation_);
    }
    void SetOrientation(const Variant& v) override {
        d_->Touch();
        SetOrientationOf(*d_, owner_(true), kTitleOrder, v, cls_);
    }
    bool IncludeInLayout() override { return !BoolVal(owner_(false), "overlay", false); }
    void SetIncludeInLayout(bool v) override {
        d_->Touch();
        SetVal(owner_(true), "overlay", v ? "0" : "1", kTitleOrder, d_->c);
    }
    long Position() override {
        return Kid(Kid(owner_(false), "layout"), "manualLayout") ? host::xlChartElementPositionCustom
                                                                         : host::xlChartElementPositionAutomatic;
    }
    void SetPosition(long v) override {
        if (v != host::xlChartElementPositionAutomatic) NotAvailable("Title.Position");
        d_->Touch();
        RemoveL(owner_(true), "layout");
    }
    Ref<host::Interior> Interior() override { return MakeInterior(d_, ShapeHolder()); }
    Ref<host::Border> Border() override { return MakeBorder(d_, ShapeHolder()); }
    Ref<host::ChartFillFormat> Fill() override { return MakeFill(d_, ShapeHolder()); }

protected:
    Holder TextHolder() { return Holder{owner_, &kTitleOrder, 0xFFFFFF, defaultSize_}; }
    Holder ShapeHolder() { return Holder{owner_, &kTitleOrder, 0xFFFFFF, defaultSize_}; }
    const char* cls_;
    DocPtr d_;
    std::function<pugi::xml_node(bool)> owner_;
    std::string autoText_;
    long defaultOrientation_;
    double defaultSize_;
};

class ChartTitleImpl : public TitleImpl<ChartTitleBase> {
public:
    using TitleImpl::TitleImpl;
    void Delete() override {
        auto chart = d_->Chart(true);
        RemoveL(chart, "title");
        SetVal(chart, "autoTitleDeleted", "1", kChartOrder, d_->c);
    }
};

class AxisTitleImpl : public TitleImpl<AxisTitleBase> {
public:
    AxisTitleImpl(DocPtr d, std::function<pugi::xml_node(bool)> axis, long orientation)
        : TitleImpl("AxisTitle", d, [axis](bool e) { return Kid(axis(e), "title"); }, "Axis Title", orientation, 10),
          axis_(std::move(axis)) {}
    void Delete() override {
        d_->Touch();
        RemoveL(axis_(true), "title");
    }

private:
    std::function<pugi::xml_node(bool)> axis_;
};

}  // namespace

Variant TextOrientation(pugi::xml_node owner, long dflt) {
    auto body = Rich(owner);
    if (!body) body = Kid(owner, "txPr");
    return OrientationOf(Kid(body, "bodyPr"), dflt);
}

void SetTextOrientation(ChartDoc& doc, pugi::xml_node owner, const std::vector<std::string_view>& order, const Variant& v) {
    SetOrientationOf(doc, owner, order, v, "DataLabels");
}

namespace {
const std::pair<long, const char*> kHorizontal[] = {
    {host::xlHAlignCenter, "ctr"}, {host::xlHAlignLeft, "l"}, {host::xlHAlignRight, "r"},
    {host::xlHAlignJustify, "just"}, {host::xlHAlignDistributed, "dist"}};
const std::pair<long, const char*> kVertical[] = {
    {host::xlVAlignCenter, "ctr"}, {host::xlVAlignTop, "t"}, {host::xlVAlignBottom, "b"},
    {host::xlVAlignJustify, "just"}, {host::xlVAlignDistributed, "dist"}};
}  // namespace

// Horizontal alignment is the paragraph's (a:pPr algn), vertical the body's anchor.
Variant TextAlignment(pugi::xml_node owner, bool vertical) {
    auto body = Rich(owner);
    if (!body) body = Kid(owner, "txPr");
    std::string_view v = vertical ? Kid(body, "bodyPr").attribute("anchor").value()
                                  : Kid(Kid(body, "p"), "pPr").attribute("algn").value();
    for (auto& [xl, name] : vertical ? kVertical : kHorizontal)
        if (v == name) return xl;
    return host::xlHAlignCenter;
}

void SetTextAlignment(ChartDoc& doc, pugi::xml_node owner, const std::vector<std::string_view>& order, bool vertical,
                      const Variant& v, const char* refusal) {
    long a = host::CLng(v);
    const char* name = nullptr;
    for (auto& [xl, n] : vertical ? kVertical : kHorizontal)
        if (xl == a) name = n;
    if (!name) Refuse(refusal);
    doc.Touch();
    auto body = Rich(owner);
    if (!body) body = EnsureTxPr(doc, owner, order);
    if (vertical) {
        auto bp = Kid(body, "bodyPr");
        if (!bp) bp = body.prepend_child(doc.A("bodyPr").c_str());
        SetAttr(bp, "anchor", name);
        return;
    }
    for (auto para : ChildrenL(body, "p")) {
        auto ppr = Kid(para, "pPr");
        if (!ppr) ppr = para.prepend_child(doc.A("pPr").c_str());
        SetAttr(ppr, "algn", name);
    }
}

Ref<host::Font> MakeFont(DocPtr doc, Holder h) { return std::make_shared<FontImpl>(std::move(doc), std::move(h)); }

// ---------------------------------------------------------------- AutoScaleFont

namespace {
constexpr const char* kAutoScaleUri = "{8F3B6C21-4D7A-4E95-A0C2-5B1E9D7F3A64}";
constexpr const char* kPlotsmithNs = "urn:plotsmith:chart:2026";

pugi::xml_node AutoScaleExt(pugi::xml_node owner) {
    for (auto e : ChildrenL(Kid(owner, "extLst"), "ext"))
        if (std::string_view(e.attribute("uri").value()) == kAutoScaleUri) return e;
    return {};
}

bool ScalesOff(pugi::xml_node owner) {
    auto flag = AutoScaleExt(owner).first_child();
    return flag && std::string_view(flag.attribute("val").value()) == "0";
}
}  // namespace

Variant AutoScaleFontOf(const Holder& h, const Holder* fallback) {
    auto owner = h.node(false);
    if (AutoScaleExt(owner) || !fallback) return !ScalesOff(owner);
    return !ScalesOff(fallback->node(false));
}

void SetAutoScaleFontOf(ChartDoc& doc, const Holder& h, const Variant& v) {
    bool on = host::CBool(v);
    if (on && !AutoScaleExt(h.node(false))) return;
    doc.Touch();
    auto owner = h.node(true);
    auto list = Kid(owner, "extLst");
    if (auto old = AutoScaleExt(owner)) list.remove_child(old);
    if (on) {
        if (list && !list.first_child()) owner.remove_child(list);
        return;
    }
    if (!list) list = InsertAt(owner, "extLst", *h.order, doc.c);
    auto ext = list.append_child(doc.C("ext").c_str());
    ext.append_attribute("uri") = kAutoScaleUri;
    ext.append_attribute("xmlns:ps") = kPlotsmithNs;
    ext.append_child("ps:autoScaleFont").append_attribute("val") = "0";
}

std::string RichText(ChartDoc&, pugi::xml_node tx) {
    if (auto ref = Kid(tx, "strRef")) {
        auto pt = Kid(Kid(ref, "strCache"), "pt");
        return Kid(pt, "v").text().get();
    }
    if (auto v = Kid(tx, "v")) return v.text().get();
    std::string out;
    bool first = true;
    for (auto p : ChildrenL(Kid(tx, "rich"), "p")) {
        if (!first) out += '\n';
        first = false;
        for (auto r : p.children()) {
            auto l = LocalName(r);
            if (l == "r" || l == "fld") out += Kid(r, "t").text().get();
            else if (l == "br") out += '\n';
        }
    }
    return out;
}

void SetRichText(ChartDoc& doc, pugi::xml_node owner, const std::string& text, const std::vector<std::string_view>& order) {
    auto tx = Ensure(owner, "tx", order, doc.c);
    // the look of the first run and paragraph carries over to the new text
    pugi::xml_document keep;
    pugi::xml_node keepBody, keepPPr, keepRPr;
    if (auto rich = Kid(tx, "rich")) {
        if (auto bp = Kid(rich, "bodyPr")) keepBody = keep.append_copy(bp);
        auto p = Kid(rich, "p");
        if (auto ppr = Kid(p, "pPr")) keepPPr = keep.append_copy(ppr);
        if (auto rp = Kid(Kid(p, "r"), "rPr")) keepRPr = keep.append_copy(rp);
    } else if (auto txPr = Kid(owner, "txPr")) {
        // text properties go into the rich text, which then carries them alone
        if (auto bp = Kid(txPr, "bodyPr")) keepBody = keep.append_copy(bp);
        if (auto ppr = Kid(Kid(txPr, "p"), "pPr")) keepPPr = keep.append_copy(ppr);
        owner.remove_child(txPr);
    }
    while (tx.first_child()) tx.remove_child(tx.first_child());
    auto rich = tx.append_child(doc.C("rich").c_str());
    if (keepBody) rich.append_copy(keepBody);
    else {
        auto bp = rich.append_child(doc.A("bodyPr").c_str());
        if (LocalName(owner.parent()) == "chart") {
            bp.append_attribute("rot") = "0";
            bp.append_attribute("vert") = "horz";
        }
    }
    rich.append_child(doc.A("lstStyle").c_str());
    size_t start = 0;
    std::string norm;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\r') {
            norm += '\n';
            if (i + 1 < text.size() && text[i + 1] == '\n') ++i;
        } else {
            norm += text[i];
        }
    }
    while (true) {
        size_t nl = norm.find('\n', start);
        std::string line = norm.substr(start, nl == std::string::npos ? std::string::npos : nl - start);
        auto p = rich.append_child(doc.A("p").c_str());
        if (keepPPr) p.append_copy(keepPPr);
        else p.append_child(doc.A("pPr").c_str()).append_child(doc.A("defRPr").c_str());
        if (!line.empty()) {
            auto r = p.append_child(doc.A("r").c_str());
            if (keepRPr) r.append_copy(keepRPr);
            else r.append_child(doc.A("rPr").c_str()).append_attribute("lang") = "en-US";
            r.append_child(doc.A("t").c_str()).text() = line.c_str();
        }
        if (nl == std::string::npos) break;
        start = nl + 1;
    }
}

Ref<host::ChartTitle> MakeChartTitle(DocPtr doc) {
    std::string autoText = "Chart Title";
    auto series = AllSeries(*doc);
    if (series.size() == 1) autoText = MakeSeriesCollection(doc, 0)->Item(1)->Name();
    auto d = doc;
    return std::make_shared<ChartTitleImpl>(
        "ChartTitle", doc,
        [d](bool e) {
            auto chart = d->Chart(e);
            auto t = Kid(chart, "title");
            if (!t && e) {
                // an automatic title gets its element when it is first changed
                t = InsertAt(chart, "title", kChartOrder, d->c);
                SetVal(t, "overlay", "0", kTitleOrder, d->c);
            }
            return t;
        },
        autoText, host::xlHorizontal, 14);
}

Ref<host::AxisTitle> MakeAxisTitle(DocPtr doc, std::function<pugi::xml_node(bool)> axis, bool vertical) {
    return std::make_shared<AxisTitleImpl>(doc, std::move(axis), vertical ? host::xlUpward : host::xlHorizontal);
}

// ---------------------------------------------------------------- legend

namespace {

struct ChartSize {
    double w, h;
};

ChartSize SizeOf(ChartDoc& doc) {
    if (auto f = doc.frame.lock()) return {f->Width(), f->Height()};
    return {480, 288};
}

class LegendEntryImpl;

// The entries a legend shows: one per series (by c:idx), or one per point of a single series
// whose points vary in colour; deleted ones left out.
std::vector<long> EntryIds(ChartDoc& doc, bool all) {
    std::vector<long> ids;
    auto groups = Groups(doc);
    bool byPoint = false;
    if (groups.size() == 1 && BoolVal(groups[0], "varyColors", false)) {
        auto sers = ChildrenL(groups[0], "ser");
        if (sers.size() == 1) {
            byPoint = true;
            auto val = Kid(sers[0], "val");
            auto cache = Kid(Kid(val, "numRef"), "numCache");
            if (!cache) cache = Kid(val, "numLit");
            long n = LongOf(Val(cache, "ptCount", "0"));
            for (long i = 0; i < n; ++i) ids.push_back(i);
        }
    }
    if (!byPoint)
        for (auto s : AllSeries(doc)) ids.push_back(LongOf(Val(s, "idx", "0")));
    if (all) return ids;
    auto legend = Kid(doc.Chart(false), "legend");
    std::vector<long> shown;
    for (long id : ids) {
        bool deleted = false;
        for (auto e : ChildrenL(legend, "legendEntry"))
            if (LongOf(Val(e, "idx", "-1")) == id && BoolVal(e, "delete", false)) deleted = true;
        if (!deleted) shown.push_back(id);
    }
    return shown;
}

pugi::xml_node LegendNode(ChartDoc& doc, bool edit) { return Kid(doc.Chart(edit), "legend"); }

pugi::xml_node EntryNode(ChartDoc& doc, long id, bool edit) {
    auto legend = LegendNode(doc, edit);
    for (auto e : ChildrenL(legend, "legendEntry"))
        if (LongOf(Val(e, "idx", "-1")) == id) return e;
    if (!edit) return {};
    // entries stand in idx order after legendPos
    pugi::xml_node before;
    for (auto e : ChildrenL(legend, "legendEntry"))
        if (!before && LongOf(Val(e, "idx", "-1")) > id) before = e;
    pugi::xml_node e = before ? legend.insert_child_before(doc.C("legendEntry").c_str(), before)
                              : InsertAt(legend, "legendEntry", kLegendOrder, doc.c);
    e.append_child(doc.C("idx").c_str()).append_attribute("val") = std::to_string(id).c_str();
    return e;
}

class LegendEntryImpl : public LegendEntryBase {
public:
    LegendEntryImpl(DocPtr d, long index, long id) : d_(std::move(d)), index_(index), id_(id) {}
    long Index() override { return index_; }
    Ref<host::Font> Font() override { return MakeFont(d_, H()); }
    Variant AutoScaleFont() override { return AutoScaleFontOf(H()); }
    void SetAutoScaleFont(const Variant& v) override { SetAutoScaleFontOf(*d_, H(), v); }
    void Delete() override {
        d_->Touch();
        auto e = EntryNode(*d_, id_, true);
        RemoveL(e, "txPr");
        SetVal(e, "delete", "1", {"idx", "delete", "txPr", "extLst"}, d_->c);
    }

private:
    Holder H() {
        auto d = d_;
        long id = id_;
        static const std::vector<std::string_view> order = {"idx", "delete", "txPr", "extLst"};
        return Holder{[d, id](bool e) { return EntryNode(*d, id, e); }, &order, 0xFFFFFF, 9};
    }
    DocPtr d_;
    long index_, id_;
};

class LegendEntriesImpl : public LegendEntriesBase {
public:
    explicit LegendEntriesImpl(DocPtr d) : d_(std::move(d)) {}
    long Count() override { return long(EntryIds(*d_, false).size()); }
    Ref<host::LegendEntry> Item(long index) override {
        auto ids = EntryIds(*d_, false);
        if (index < 1 || index > long(ids.size())) Refuse("Method 'Item' of object 'LegendEntries' failed");
        return std::make_shared<LegendEntryImpl>(d_, index, ids[index - 1]);
    }

private:
    DocPtr d_;
};

class LegendImpl : public LegendBase {
public:
    explicit LegendImpl(DocPtr d) : d_(std::move(d)) {}
    using LegendBase::LegendEntries;

    // A legend placed by hand reads xlLegendPositionCustom from the version that brought it on;
    // older versions refuse the read.
    long Position() override {
        auto l = Node(false);
        if (Manual()) {
            if (host::Val(d_->book.app().Version()) < 12) Refuse("Unable to get the Position property of the Legend class");
            return host::xlLegendPositionCustom;
        }
        std::string p = Val(l, "legendPos", "r");
        if (p == "b") return host::xlLegendPositionBottom;
        if (p == "t") return host::xlLegendPositionTop;
        if (p == "l") return host::xlLegendPositionLeft;
        if (p == "tr") return host::xlLegendPositionCorner;
        return host::xlLegendPositionRight;
    }
    void SetPosition(long v) override {
        const char* p = v == host::xlLegendPositionBottom ? "b" : v == host::xlLegendPositionTop ? "t"
                      : v == host::xlLegendPositionLeft ? "l" : v == host::xlLegendPositionCorner ? "tr"
                      : v == host::xlLegendPositionRight ? "r" : nullptr;
        if (!p) Refuse("Unable to set the Position property of the Legend class");
        auto l = Node(true);
        SetVal(l, "legendPos", p, kLegendOrder, d_->c);
        RemoveL(l, "layout");
    }
    double Left() override {
        if (Manual()) return Frac("x") * SizeOf(*d_).w;
        auto s = SizeOf(*d_);
        switch (Position()) {
        case host::xlLegendPositionLeft: return 7;
        case host::xlLegendPositionTop: case host::xlLegendPositionBottom: return (s.w - Width()) / 2;
        default: return s.w - Width() - 7;
        }
    }
    double Top() override {
        if (Manual()) return Frac("y") * SizeOf(*d_).h;
        auto s = SizeOf(*d_);
        switch (Position()) {
        case host::xlLegendPositionTop: return 30;
        case host::xlLegendPositionCorner: return 7;
        case host::xlLegendPositionBottom: return s.h - Height() - 7;
        default: return (s.h - Height()) / 2;
        }
    }
    void SetLeft(double v) override {
        if (v + Width() < 0 || v > SizeOf(*d_).w) Refuse("Unable to set the Left property of the Legend class");
        Place(v, Top());
    }
    void SetTop(double v) override {
        if (v + Height() < 0 || v > SizeOf(*d_).h) Refuse("Unable to set the Top property of the Legend class");
        Place(Left(), v);
    }
    double Width() override {
        auto w = Frac("w");
        if (Manual() && w > 0) return w * SizeOf(*d_).w;
        return std::min(SizeOf(*d_).w * 0.3, 90.0);
    }
    double Height() override {
        auto h = Frac("h");
        if (Manual() && h > 0) return h * SizeOf(*d_).h;
        return std::min(SizeOf(*d_).h * 0.8, 16.0 * std::max<size_t>(1, EntryIds(*d_, false).size()));
    }
    Ref<host::Font> Font() override { return MakeFont(d_, H()); }
    Variant AutoScaleFont() override { return AutoScaleFontOf(H()); }
    void SetAutoScaleFont(const Variant& v) override { SetAutoScaleFontOf(*d_, H(), v); }
    Ref<host::LegendEntries> LegendEntries() override { return std::make_shared<LegendEntriesImpl>(d_); }
    Ref<host::LegendEntry> LegendEntries(long index) override { return LegendEntries()->Item(index); }
    bool IncludeInLayout() override { return !BoolVal(Node(false), "overlay", false); }
    void SetIncludeInLayout(bool v) override { SetVal(Node(true), "overlay", v ? "0" : "1", kLegendOrder, d_->c); }
    Ref<host::Interior> Interior() override { return MakeInterior(d_, H()); }
    Ref<host::Border> Border() override { return MakeBorder(d_, H()); }
    Ref<host::ChartFillFormat> Fill() override { return MakeFill(d_, H()); }
    void Delete() override { RemoveL(d_->Chart(true), "legend"); }

private:
    Holder H() {
        auto d = d_;
        return Holder{[d](bool e) { return LegendNode(*d, e); }, &kLegendOrder, 0xFFFFFF, 9};
    }
    pugi::xml_node Node(bool edit) {
        if (edit) d_->Touch();
        return LegendNode(*d_, false);
    }
    bool Manual() {
        auto m = Kid(Kid(Node(false), "layout"), "manualLayout");
        return m && Kid(m, "x") && Kid(m, "y");
    }
    double Frac(const char* what) {
        auto m = Kid(Kid(Node(false), "layout"), "manualLayout");
        return std::atof(Val(m, what, "0").c_str());
    }
    void Place(double left, double top) {
        auto s = SizeOf(*d_);
        double w = Width(), h = Height();
        auto l = Node(true);
        auto layout = Ensure(l, "layout", kLegendOrder, d_->c);
        auto m = Ensure(layout, "manualLayout", {"manualLayout", "extLst"}, d_->c);
        SetVal(m, "xMode", "edge", kLayoutOrder, d_->c);
        SetVal(m, "yMode", "edge", kLayoutOrder, d_->c);
        SetVal(m, "x", host::NumberToText(std::clamp(left / s.w, 0.0, 1.0)), kLayoutOrder, d_->c);
        SetVal(m, "y", host::NumberToText(std::clamp(top / s.h, 0.0, 1.0)), kLayoutOrder, d_->c);
        SetVal(m, "w", host::NumberToText(std::clamp(w / s.w, 0.0, 1.0)), kLayoutOrder, d_->c);
        SetVal(m, "h", host::NumberToText(std::clamp(h / s.h, 0.0, 1.0)), kLayoutOrder, d_->c);
    }
    DocPtr d_;
};

}  // namespace

Ref<host::Legend> MakeLegend(DocPtr doc) { return std::make_shared<LegendImpl>(std::move(doc)); }

}  // namespace xlsx
