// Texts of a chart: fonts of text and run properties, rich text, orientation and alignment, the
// chart title and axis titles.
#include <cmath>

#include "xlsx/book.h"
#include "xlsx/chart_model.h"

namespace xlsx {

namespace {

const std::vector<std::string_view> kPPrOrder = {"lnSpc", "spcBef", "spcAft", "buClrTx", "buClr", "buSzTx",
                                                 "buSzPct", "buSzPts", "buFontTx", "buFont", "buNone",
                                                 "buAutoNum", "buChar", "buBlip", "tabLst", "defRPr", "extLst"};
const std::vector<std::string_view> kParaOrder = {"pPr", "r", "endParaRPr"};

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

// The runs of the owner's text, for reading.
std::vector<RunFormat> ReadProps(pugi::xml_node owner) {
    std::vector<RunFormat> out;
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

// The font of a chart text: its runs, or the text properties of an element without text of its
// own; a size left out is the element's default.
class FontImpl : public RunFont {
public:
    FontImpl(DocPtr d, Holder h)
        : RunFont(d->book.theme(), h.defaultSize, false), d_(std::move(d)), h_(std::move(h)) {}

    Variant ColorIndex() override {
        Variant c = Color();
        if (c.IsNull()) return c;
        return NearestPaletteIndex(d_->book, c.RawLong());
    }
    void SetColorIndex(const Variant& v) override {
        long i = host::CLng(v);
        if (i == host::xlColorIndexAutomatic || i == host::xlColorIndexNone) return RemoveColor();
        if (i < 1 || i > 56) Refuse("Unable to set the ColorIndex property of the Font class");
        SetColor(d_->PaletteRgb(i));
    }
    // The text's background is the fill of the element that holds it.
    Variant Background() override {
        auto fill = LocalName(FillIn(Kid(h_.node(false), "spPr")));
        if (fill == "noFill") return host::xlBackgroundTransparent;
        if (fill == "solidFill" || fill == "pattFill" || fill == "gradFill") return host::xlBackgroundOpaque;
        return host::xlBackgroundAutomatic;
    }
    void SetBackground(const Variant& v) override {
        long b = host::CLng(v);
        if (b != host::xlBackgroundTransparent && b != host::xlBackgroundOpaque && b != host::xlBackgroundAutomatic)
            Refuse("Unable to set the Background property of the Font class");
        if (b == host::xlBackgroundOpaque && Background().RawLong() == host::xlBackgroundOpaque) return;
        d_->Touch();
        auto sp = Ensure(h_.node(true), "spPr", *h_.order, d_->c);
        if (b == host::xlBackgroundTransparent) PutFill(sp, "noFill", d_->a);
        else if (b == host::xlBackgroundOpaque) PutSolid(sp, 0xFFFFFF, d_->a);
        else {
            RemoveFills(sp);
            if (!sp.first_child()) sp.parent().remove_child(sp);
        }
    }

protected:
    Variant Common(const std::function<Variant(const RunFormat&)>& get) override {
        return Shared(ReadProps(h_.node(false)), get);
    }
    void Format(const std::function<void(pugi::xml_node)>& set) override {
        d_->Touch();
        for (auto rp : WriteProps(*d_, h_.node(true), *h_.order)) set(rp);
    }
    // Texts without a face of their own show the chart's, else the workbook's default font.
    std::string DefaultFace() override {
        auto face = RunFormat{{}, Kid(Kid(Kid(Kid(d_->Root(false), "txPr"), "p"), "pPr"), "defRPr")}.Typeface();
        return face.empty() ? d_->book.styles().DefaultFontName() : theme_.Face(face);
    }

private:
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

class ChartTitleImpl : public TitleImpl<host::ChartTitle> {
public:
    using TitleImpl::TitleImpl;
    void Delete() override {
        auto chart = d_->Chart(true);
        RemoveL(chart, "title");
        SetVal(chart, "autoTitleDeleted", "1", kChartOrder, d_->c);
    }
};

class AxisTitleImpl : public TitleImpl<host::AxisTitle> {
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

// Horizontal alignment is the paragraph's (a:pPr algn), vertical the body's anchor.
Variant TextAlignment(pugi::xml_node owner, bool vertical) {
    auto body = Rich(owner);
    if (!body) body = Kid(owner, "txPr");
    std::string_view v = vertical ? Kid(body, "bodyPr").attribute("anchor").value()
                                  : Kid(Kid(body, "p"), "pPr").attribute("algn").value();
    return AlignmentOf(v, vertical, host::xlHAlignCenter);
}

void SetTextAlignment(ChartDoc& doc, pugi::xml_node owner, const std::vector<std::string_view>& order, bool vertical,
                      const Variant& v, const char* refusal) {
    long a = host::CLng(v);
    const char* name = AlignmentName(a, vertical);
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
    std::string norm = LineFeeds(text);
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
    if (series.size() == 1) autoText = MakeSeriesCollection(doc)->Item(1)->Name();
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

}  // namespace xlsx
