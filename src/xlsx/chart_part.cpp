// The chart part: the chart itself, the DOM helpers every chart class uses, new parts, and the
// mapping between automation chart types and chart groups.
#include "xlsx/chart_part.h"

#include <algorithm>
#include <cstring>

#include "host/error.h"
#include "xlsx/book.h"
#include "xlsx/chart_model.h"
#include "xlsx/drawing.h"

namespace xlsx {

namespace {
constexpr const char* kChartNs = "http://schemas.openxmlformats.org/drawingml/2006/chart";
constexpr const char* kDrawingNs = "http://schemas.openxmlformats.org/drawingml/2006/main";
constexpr const char* kChartContentType = "application/vnd.openxmlformats-officedocument.drawingml.chart+xml";

std::string PrefixOf(pugi::xml_node root, const char* uri) {
    for (auto at : root.attributes()) {
        std::string_view n = at.name();
        if (std::strcmp(at.value(), uri) != 0) continue;
        if (n == "xmlns") return "";
        if (n.substr(0, 6) == "xmlns:") return std::string(n.substr(6)) + ":";
    }
    return "?";
}
}  // namespace

// ---------------------------------------------------------------- DOM helpers

ChartDoc::ChartDoc(Book& b, std::string p) : book(b), part(std::move(p)) {
    auto root = book.pkg().Read(part).document_element();
    std::string cp = PrefixOf(root, kChartNs);
    if (cp != "?") c = cp;
    std::string ap = PrefixOf(root, kDrawingNs);
    if (ap != "?") a = ap;
}

pugi::xml_node ChartDoc::Root(bool edit) {
    return edit ? book.pkg().Edit(part).document_element() : book.pkg().Read(part).document_element();
}

void ChartDoc::Touch() {
    book.pkg().Edit(part);
    // the DrawingML prefix must be declared before text or shape properties are written
    auto root = Root(false);
    if (PrefixOf(root, kDrawingNs) == "?") {
        a = "a:";
        root.append_attribute("xmlns:a") = kDrawingNs;
    }
}

pugi::xml_node ChartDoc::Chart(bool edit) {
    if (edit) Touch();
    return Kid(Root(false), "chart");
}

pugi::xml_node ChartDoc::PlotArea(bool edit) { return Kid(Chart(edit), "plotArea"); }

long ChartDoc::PaletteRgb(long index) { return book.Colors(index); }

std::vector<pugi::xml_node> ChildrenL(pugi::xml_node parent, std::string_view local) {
    std::vector<pugi::xml_node> out;
    for (auto ch : parent.children())
        if (ch.type() == pugi::node_element && LocalName(ch) == local) out.push_back(ch);
    return out;
}

namespace {
// Rank of a local name in a content model; names in a group (the chart groups, the axes) share
// the rank of their representative.
size_t Rank(std::string_view local, const std::vector<std::string_view>& order) {
    if (IsGroup(local)) local = "barChart";
    else if (IsAxis(local)) local = "valAx";
    else if (local == "AlternateContent") local = "style";
    for (size_t i = 0; i < order.size(); ++i)
        if (order[i] == local) return i;
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

std::string Val(pugi::xml_node parent, std::string_view local, const std::string& dflt) {
    auto n = Kid(parent, local);
    if (!n || !n.attribute("val")) return dflt;
    return n.attribute("val").value();
}

bool BoolVal(pugi::xml_node parent, std::string_view local, bool absent, bool emptyVal) {
    auto n = Kid(parent, local);
    if (!n) return absent;
    auto v = n.attribute("val");
    if (!v) return emptyVal;
    std::string_view s = v.value();
    return s == "1" || s == "true";
}

void SetVal(pugi::xml_node parent, std::string_view local, const std::string& value,
            const std::vector<std::string_view>& order, const std::string& prefix) {
    auto n = Ensure(parent, local, order, prefix);
    if (auto at = n.attribute("val")) at = value.c_str();
    else n.append_attribute("val") = value.c_str();
}

const std::vector<std::string_view> kChartSpaceOrder = {
    "date1904", "lang", "roundedCorners", "style", "clrMapOvr", "pivotSource", "protection", "chart",
    "spPr", "txPr", "externalData", "printSettings", "userShapes", "extLst"};
const std::vector<std::string_view> kChartOrder = {
    "title", "autoTitleDeleted", "pivotFmts", "view3D", "floor", "sideWall", "backWall", "plotArea",
    "legend", "plotVisOnly", "dispBlanksAs", "showDLblsOverMax", "extLst"};
const std::vector<std::string_view> kPlotAreaOrder = {"layout", "barChart", "valAx", "dTable", "spPr", "extLst"};
const std::vector<std::string_view> kTitleOrder = {"tx", "layout", "overlay", "spPr", "txPr", "extLst"};
const std::vector<std::string_view> kLegendOrder = {"legendPos", "legendEntry", "layout", "overlay",
                                                    "spPr", "txPr", "extLst"};
const std::vector<std::string_view> kSerOrder = {
    "idx", "order", "tx", "spPr", "invertIfNegative", "pictureOptions", "marker", "explosion", "dPt", "dLbls",
    "trendline", "errBars", "cat", "xVal", "val", "yVal", "smooth", "shape", "bubbleSize", "bubble3D", "extLst"};
const std::vector<std::string_view> kGroupOrder = {
    "barDir", "grouping", "scatterStyle", "radarStyle", "varyColors", "ser", "dLbls", "dropLines", "hiLowLines",
    "upDownBars", "marker", "smooth", "gapWidth", "gapDepth", "overlap", "serLines", "shape", "firstSliceAng",
    "holeSize", "bubble3D", "bubbleScale", "showNegBubbles", "sizeRepresents", "axId", "extLst"};
const std::vector<std::string_view> kAxOrder = {
    "axId", "scaling", "delete", "axPos", "majorGridlines", "minorGridlines", "title", "numFmt",
    "majorTickMark", "minorTickMark", "tickLblPos", "spPr", "txPr", "crossAx", "crosses", "crossesAt",
    "crossBetween", "auto", "lblAlgn", "lblOffset", "baseTimeUnit", "majorUnit", "majorTimeUnit", "minorUnit",
    "minorTimeUnit", "tickLblSkip", "tickMarkSkip", "noMultiLvlLbl", "dispUnits", "extLst"};
const std::vector<std::string_view> kScalingOrder = {"logBase", "orientation", "max", "min", "extLst"};
const std::vector<std::string_view> kSpPrOrder = {
    "xfrm", "custGeom", "prstGeom", "noFill", "solidFill", "gradFill", "blipFill", "pattFill", "grpFill",
    "ln", "effectLst", "effectDag", "scene3d", "sp3d", "extLst"};
const std::vector<std::string_view> kLnOrder = {"noFill", "solidFill", "gradFill", "pattFill", "prstDash",
                                                "custDash", "round", "bevel", "miter", "headEnd", "tailEnd",
                                                "extLst"};
const std::vector<std::string_view> kDLblsOrder = {
    "dLbl", "delete", "numFmt", "spPr", "txPr", "dLblPos", "showLegendKey", "showVal", "showCatName",
    "showSerName", "showPercent", "showBubbleSize", "separator", "showLeaderLines", "leaderLines", "extLst"};
const std::vector<std::string_view> kTxPrOrder = {"bodyPr", "lstStyle", "p"};

bool IsGroup(std::string_view l) {
    static const char* names[] = {"areaChart", "area3DChart", "lineChart", "line3DChart", "stockChart",
                                  "radarChart", "scatterChart", "pieChart", "pie3DChart", "doughnutChart",
                                  "barChart", "bar3DChart", "ofPieChart", "surfaceChart", "surface3DChart",
                                  "bubbleChart"};
    for (auto n : names)
        if (l == n) return true;
    return false;
}

bool IsAxis(std::string_view l) { return l == "catAx" || l == "valAx" || l == "dateAx" || l == "serAx"; }

std::vector<pugi::xml_node> Groups(ChartDoc& doc) {
    std::vector<pugi::xml_node> out;
    for (auto ch : doc.PlotArea(false).children())
        if (IsGroup(LocalName(ch))) out.push_back(ch);
    return out;
}

namespace {
constexpr const char* kHeldSizesUri = "{C3A7E5D2-9B14-4F6A-8E21-7D4B0A96F1C8}";
}

pugi::xml_node HeldBubbleSizes(ChartDoc& doc, pugi::xml_node ser, bool make) {
    pugi::xml_node ext;
    for (auto e : ChildrenL(Kid(ser, "extLst"), "ext"))
        if (std::string_view(e.attribute("uri").value()) == kHeldSizesUri) ext = e;
    if (auto held = Kid(ext, "bubbleSize"); held || !make) return held;
    if (!ext) {
        ext = Ensure(ser, "extLst", kSerOrder, doc.c).append_child(doc.C("ext").c_str());
        ext.append_attribute("uri") = kHeldSizesUri;
    }
    return ext.append_child(doc.C("bubbleSize").c_str());
}

// ---------------------------------------------------------------- new parts

std::string NewChartPart(Book& book) {
    std::string part;
    for (int n = 1;; ++n) {
        part = "xl/charts/chart" + std::to_string(n) + ".xml";
        if (!book.pkg().Has(part)) break;
    }
    auto& doc = book.pkg().PutXml(part, kChartContentType);
    static const char* xml =
        R"(<c:chartSpace xmlns:c="http://schemas.openxmlformats.org/drawingml/2006/chart" )"
        R"(xmlns:a="http://schemas.openxmlformats.org/drawingml/2006/main" )"
        R"(xmlns:r="http://schemas.openxmlformats.org/officeDocument/2006/relationships">)"
        R"(<c:date1904 val="0"/><c:lang val="en-US"/><c:roundedCorners val="0"/>)"
        R"(<c:chart><c:autoTitleDeleted val="1"/><c:plotArea><c:layout/>)"
        R"(<c:barChart><c:barDir val="col"/><c:grouping val="clustered"/><c:varyColors val="0"/>)"
        R"(<c:gapWidth val="219"/><c:overlap val="-27"/><c:axId val="500000001"/><c:axId val="500000002"/></c:barChart>)"
        R"(<c:catAx><c:axId val="500000001"/><c:scaling><c:orientation val="minMax"/></c:scaling><c:delete val="0"/>)"
        R"(<c:axPos val="b"/><c:numFmt formatCode="General" sourceLinked="1"/><c:majorTickMark val="none"/>)"
        R"(<c:minorTickMark val="none"/><c:tickLblPos val="nextTo"/><c:crossAx val="500000002"/>)"
        R"(<c:crosses val="autoZero"/><c:auto val="1"/><c:lblAlgn val="ctr"/><c:lblOffset val="100"/>)"
        R"(<c:noMultiLvlLbl val="0"/></c:catAx>)"
        R"(<c:valAx><c:axId val="500000002"/><c:scaling><c:orientation val="minMax"/></c:scaling><c:delete val="0"/>)"
        R"(<c:axPos val="l"/><c:majorGridlines/><c:numFmt formatCode="General" sourceLinked="1"/>)"
        R"(<c:majorTickMark val="none"/><c:minorTickMark val="none"/><c:tickLblPos val="nextTo"/>)"
        R"(<c:crossAx val="500000001"/><c:crosses val="autoZero"/><c:crossBetween val="between"/></c:valAx>)"
        R"(</c:plotArea><c:legend><c:legendPos val="r"/><c:overlay val="0"/></c:legend>)"
        R"(<c:plotVisOnly val="1"/><c:dispBlanksAs val="gap"/></c:chart>)"
        R"(<c:printSettings><c:headerFooter/><c:pageMargins b="0.75" l="0.7" r="0.7" t="0.75" header="0.3" footer="0.3"/>)"
        R"(<c:pageSetup/></c:printSettings></c:chartSpace>)";
    doc.load_string(xml);
    return part;
}

// ---------------------------------------------------------------- the chart

namespace {

const std::vector<std::string_view> kView3DOrder = {"rotX", "hPercent", "rotY", "depthPercent", "rAngAx",
                                                     "perspective", "extLst"};

class ChartImpl : public ChartBase {
public:
    explicit ChartImpl(DocPtr doc) : d_(std::move(doc)) {}
    using ChartBase::SeriesCollection;
    using ChartBase::ChartGroups;
    using ChartBase::SetHasAxis;

    Ref<host::Application> Application() override { return d_->book.app().self(); }
    Ref<host::ChartObject> Parent() override { return d_->frame.lock(); }
    long ChartType() override { return PlotChartType(*d_); }
    void SetChartType(long v) override { SetPlotChartType(*d_, v); }

    Ref<host::SeriesCollection> SeriesCollection() override { return MakeSeriesCollection(d_, 0); }
    Ref<host::Series> SeriesCollection(const Variant& indexOrName) override {
        auto sc = MakeSeriesCollection(d_, 0);
        if (indexOrName.IsString()) return sc->Item(indexOrName.RawString());
        return sc->Item(host::CLng(indexOrName));
    }
    // Shapes drawn inside the chart keep their places as fractions of the chart's size.
    Ref<host::Shapes> Shapes() override {
        if (!d_->shapes) {
            std::weak_ptr<host::ChartObject> frame = d_->frame;
            d_->shapes = std::make_shared<Drawing>(d_->book, d_->part, [frame] {
                if (auto f = frame.lock()) return PointRect{0, 0, f->Width(), f->Height()};
                return PointRect{0, 0, 480, 288};
            });
        }
        return MakeShapes(d_->shapes);
    }
    Ref<host::ChartGroups> ChartGroups() override { return MakeChartGroups(d_); }
    Ref<host::ChartGroup> ChartGroups(long index) override { return MakeChartGroups(d_)->Item(index); }
    void ApplyDataLabels(long type, const Variant& legendKey, const Variant& autoText, const Variant& leader,
                         const Variant& serName, const Variant& catName, const Variant& value,
                         const Variant& percent, const Variant& bubble, const Variant& sep) override {
        auto sc = MakeSeriesCollection(d_, 0);
        for (long i = 1; i <= sc->Count(); ++i)
            sc->Item(i)->ApplyDataLabels(type, legendKey, autoText, leader, serName, catName, value, percent, bubble,
                                         sep);
    }

    // A chart of one series without a title element shows that series' name as an automatic
    // title unless the title was deleted.
    bool HasTitle() override {
        auto chart = d_->Chart(false);
        if (Kid(chart, "title")) return true;
        return !BoolVal(chart, "autoTitleDeleted", false) && AllSeries(*d_).size() == 1;
    }
    void SetHasTitle(bool v) override {
        if (v == HasTitle()) return;
        auto chart = d_->Chart(true);
        if (v) {
            auto t = Ensure(chart, "title", kChartOrder, d_->c);
            SetVal(t, "overlay", "0", kTitleOrder, d_->c);
            SetVal(chart, "autoTitleDeleted", "0", kChartOrder, d_->c);
        } else {
            RemoveL(chart, "title");
            SetVal(chart, "autoTitleDeleted", "1", kChartOrder, d_->c);
        }
    }
    Ref<host::ChartTitle> ChartTitle() override {
        if (!HasTitle()) Refuse("Method 'ChartTitle' of object '_Chart' failed");
        return MakeChartTitle(d_);
    }
    bool HasLegend() override { return bool(Kid(d_->Chart(false), "legend")); }
    void SetHasLegend(bool v) override {
        if (v == HasLegend()) return;
        auto chart = d_->Chart(true);
        if (v) {
            auto l = InsertAt(chart, "legend", kChartOrder, d_->c);
            SetVal(l, "legendPos", "r", kLegendOrder, d_->c);
            SetVal(l, "overlay", "0", kLegendOrder, d_->c);
        } else {
            RemoveL(chart, "legend");
        }
    }
    Ref<host::Legend> Legend() override {
        if (!HasLegend()) Refuse("Method 'Legend' of object '_Chart' failed");
        return MakeLegend(d_);
    }

    Ref<host::Axis> Axes(long type, long group) override { return MakeAxis(d_, type, group); }
    Variant HasAxis(long type, long group) override {
        auto n = FindAxis(*d_, type, group);
        return n && !BoolVal(n, "delete", false);
    }
    void SetHasAxis(long type, const Variant& v) override { SetHasAxis(type, host::xlPrimary, v); }
    void SetHasAxis(long type, long group, const Variant& v) override {
        bool on = host::CBool(v);
        auto n = FindAxis(*d_, type, group);
        if (!n) {
            if (on) NotAvailable("Chart.HasAxis");  // a missing axis would need its crossing axis made
            return;
        }
        d_->Touch();
        SetVal(n, "delete", on ? "0" : "1", kAxOrder, d_->c);
    }

    Ref<host::ChartArea> ChartArea() override { return MakeChartArea(d_); }
    Ref<host::PlotArea> PlotArea() override { return MakePlotArea(d_); }

    long DisplayBlanksAs() override {
        std::string v = Val(d_->Chart(false), "dispBlanksAs", "zero");
        if (v == "gap") return host::xlNotPlotted;
        if (v == "span") return host::xlInterpolated;
        return host::xlZero;
    }
    void SetDisplayBlanksAs(long v) override {
        const char* s = v == host::xlNotPlotted ? "gap" : v == host::xlInterpolated ? "span" : v == host::xlZero ? "zero" : nullptr;
        if (!s) Refuse("Unable to set the DisplayBlanksAs property of the Chart class");
        SetVal(d_->Chart(true), "dispBlanksAs", s, kChartOrder, d_->c);
    }
    bool PlotVisibleOnly() override { return BoolVal(d_->Chart(false), "plotVisOnly", false); }
    void SetPlotVisibleOnly(bool v) override { SetVal(d_->Chart(true), "plotVisOnly", v ? "1" : "0", kChartOrder, d_->c); }
    bool HasDataTable() override { return bool(Kid(d_->PlotArea(false), "dTable")); }

    long Elevation() override { return LongOf(Val(View3D(false), "rotX", "0")); }
    void SetElevation(long v) override {
        if (v < -90 || v > 90) Refuse("Unable to set the Elevation property of the Chart class");
        SetVal(View3D(true), "rotX", std::to_string(v), kView3DOrder, d_->c);
    }
    Variant Rotation() override { return LongOf(Val(View3D(false), "rotY", "0")); }
    void SetRotation(const Variant& v) override {
        long r = host::CLng(v);
        if (r < 0 || r > 360) Refuse("Unable to set the Rotation property of the Chart class");
        SetVal(View3D(true), "rotY", std::to_string(r), kView3DOrder, d_->c);
    }
    Variant RightAngleAxes() override { return BoolVal(View3D(false), "rAngAx", true); }
    void SetRightAngleAxes(const Variant& v) override {
        SetVal(View3D(true), "rAngAx", host::CBool(v) ? "1" : "0", kView3DOrder, d_->c);
    }

    // Without a window there is nothing to activate or select.
    void Activate() override {}
    void Select(const Variant&) override {}
    // Fills the caches of every series reference again from the cells.
    void Refresh() override {
        d_->Touch();
        for (auto s : AllSeries(*d_))
            for (auto data : s.children())
                for (auto ref : data.children()) {
                    auto l = LocalName(ref);
                    if (l == "numRef" || l == "strRef") FillCache(*d_, ref, l == "numRef");
                }
    }

private:
    pugi::xml_node View3D(bool edit) {
        long t = PlotChartType(*d_);
        if (!Is3DType(t)) Refuse("Unable to get the 3-D properties of a 2-D chart");
        auto chart = d_->Chart(edit);
        auto v = Kid(chart, "view3D");
        if (!v && edit) v = InsertAt(chart, "view3D", kChartOrder, d_->c);
        return v;
    }
    DocPtr d_;
};

}  // namespace

std::shared_ptr<host::Chart> MakeChart(Book& book, const std::string& part, std::weak_ptr<host::ChartObject> frame) {
    auto doc = std::make_shared<ChartDoc>(book, part);
    doc->frame = std::move(frame);
    return std::make_shared<ChartImpl>(doc);
}

// ---------------------------------------------------------------- chart types

bool Is3DType(long t) {
    using namespace host;
    switch (t) {
    case xl3DArea: case xl3DAreaStacked: case xl3DAreaStacked100: case xl3DBarClustered: case xl3DBarStacked:
    case xl3DBarStacked100: case xl3DColumnClustered: case xl3DColumnStacked: case xl3DColumnStacked100:
    case xl3DColumn: case xl3DLine: case xl3DPie: case xl3DPieExploded: case xlSurface: case xlSurfaceWireframe:
        return true;
    default:
        return false;
    }
}

namespace {

bool SeriesExploded(pugi::xml_node group) {
    for (auto s : ChildrenL(group, "ser"))
        if (LongOf(Val(s, "explosion", "0")) > 0) return true;
    return false;
}

// True when a series of the group draws markers (a series marker of symbol "none" hides them).
bool GroupMarkers(pugi::xml_node group, bool groupDefault) {
    auto sers = ChildrenL(group, "ser");
    if (sers.empty()) return groupDefault;
    for (auto s : sers) {
        auto m = Kid(s, "marker");
        if (!m || Val(m, "symbol", "auto") != "none") return groupDefault || m;
    }
    return false;
}

bool GroupLines(pugi::xml_node group) {
    for (auto s : ChildrenL(group, "ser")) {
        auto ln = Kid(Kid(s, "spPr"), "ln");
        if (!Kid(ln, "noFill")) return true;
    }
    return ChildrenL(group, "ser").empty();
}

long Grouped(const std::string& grouping, long standard, long stacked, long percent) {
    if (grouping == "stacked") return stacked;
    if (grouping == "percentStacked") return percent;
    return standard;
}

}  // namespace

long GroupChartType(pugi::xml_node g, ChartDoc&) {
    using namespace host;
    std::string_view l = LocalName(g);
    std::string grouping = Val(g, "grouping", l == "barChart" || l == "bar3DChart" ? "clustered" : "standard");
    bool bar = Val(g, "barDir", "col") == "bar";
    if (l == "barChart") {
        if (bar) return Grouped(grouping, xlBarClustered, xlBarStacked, xlBarStacked100);
        return Grouped(grouping, xlColumnClustered, xlColumnStacked, xlColumnStacked100);
    }
    if (l == "bar3DChart") {
        if (bar) return Grouped(grouping, xl3DBarClustered, xl3DBarStacked, xl3DBarStacked100);
        if (grouping == "standard") return xl3DColumn;
        return Grouped(grouping, xl3DColumnClustered, xl3DColumnStacked, xl3DColumnStacked100);
    }
    if (l == "areaChart") return Grouped(grouping, xlArea, xlAreaStacked, xlAreaStacked100);
    if (l == "area3DChart") return Grouped(grouping, xl3DArea, xl3DAreaStacked, xl3DAreaStacked100);
    if (l == "lineChart") {
        if (GroupMarkers(g, BoolVal(g, "marker", false)))
            return Grouped(grouping, xlLineMarkers, xlLineMarkersStacked, xlLineMarkersStacked100);
        return Grouped(grouping, xlLine, xlLineStacked, xlLineStacked100);
    }
    if (l == "line3DChart") return xl3DLine;
    if (l == "pieChart") return SeriesExploded(g) ? xlPieExploded : xlPie;
    if (l == "pie3DChart") return SeriesExploded(g) ? xl3DPieExploded : xl3DPie;
    if (l == "doughnutChart") return SeriesExploded(g) ? xlDoughnutExploded : xlDoughnut;
    if (l == "ofPieChart") return Val(g, "ofPieType", "pie") == "bar" ? xlBarOfPie : xlPieOfPie;
    if (l == "scatterChart") {
        std::string style = Val(g, "scatterStyle", "marker");
        bool smooth = style.find("smooth") != std::string::npos;
        for (auto s : ChildrenL(g, "ser"))
            if (BoolVal(s, "smooth", false)) smooth = true;
        bool markers = GroupMarkers(g, true);
        if (!GroupLines(g) || style == "marker") return xlXYScatter;
        if (smooth) return markers ? xlXYScatterSmooth : xlXYScatterSmoothNoMarkers;
        return markers ? xlXYScatterLines : xlXYScatterLinesNoMarkers;
    }
    if (l == "radarChart") {
        std::string style = Val(g, "radarStyle", "standard");
        if (style == "filled") return xlRadarFilled;
        return GroupMarkers(g, style == "marker") ? xlRadarMarkers : xlRadar;
    }
    if (l == "bubbleChart") {
        // the application writes the 3-D effect on each series, the group's own is optional
        bool threeD = BoolVal(g, "bubble3D", false);
        if (auto first = Kid(g, "ser"); first && Kid(first, "bubble3D")) threeD = BoolVal(first, "bubble3D", false);
        return threeD ? xlBubble3DEffect : xlBubble;
    }
    if (l == "surfaceChart") return BoolVal(g, "wireframe", false) ? xlSurfaceTopViewWireframe : xlSurfaceTopView;
    if (l == "surface3DChart") return BoolVal(g, "wireframe", false) ? xlSurfaceWireframe : xlSurface;
    if (l == "stockChart") return ChildrenL(g, "ser").size() >= 4 ? xlStockOHLC : xlStockHLC;
    return xlColumnClustered;
}

long PlotChartType(ChartDoc& doc) {
    auto groups = Groups(doc);
    if (groups.empty()) return host::xlColumnClustered;
    long first = GroupChartType(groups[0], doc);
    for (size_t i = 1; i < groups.size(); ++i)
        if (GroupChartType(groups[i], doc) != first) return host::xlCombination;
    return first;
}

// ---------------------------------------------------------------- writing a type

namespace {

enum class Family { Bar, Bar3D, Area, Area3D, Line, Pie, Pie3D, Doughnut, Scatter, Radar, Bubble, None };

struct TypeSpec {
    Family family = Family::None;
    const char* group = "";
    const char* barDir = nullptr;
    const char* grouping = nullptr;
    bool exploded = false;
    bool markers = false;
    bool smooth = false;
    bool lines = true;
    const char* style = nullptr;  // scatterStyle, radarStyle
    bool bubble3D = false;
};

TypeSpec SpecOf(long t) {
    using namespace host;
    TypeSpec s;
    auto bar = [&](Family f, const char* g, const char* dir, const char* grp) {
        s.family = f; s.group = g; s.barDir = dir; s.grouping = grp;
    };
    switch (t) {
    case xlColumnClustered: bar(Family::Bar, "barChart", "col", "clustered"); break;
    case xlColumnStacked: bar(Family::Bar, "barChart", "col", "stacked"); break;
    case xlColumnStacked100: bar(Family::Bar, "barChart", "col", "percentStacked"); break;
    case xlBarClustered: bar(Family::Bar, "barChart", "bar", "clustered"); break;
    case xlBarStacked: bar(Family::Bar, "barChart", "bar", "stacked"); break;
    case xlBarStacked100: bar(Family::Bar, "barChart", "bar", "percentStacked"); break;
    case xl3DColumnClustered: bar(Family::Bar3D, "bar3DChart", "col", "clustered"); break;
    case xl3DColumnStacked: bar(Family::Bar3D, "bar3DChart", "col", "stacked"); break;
    case xl3DColumnStacked100: bar(Family::Bar3D, "bar3DChart", "col", "percentStacked"); break;
    case xl3DBarClustered: bar(Family::Bar3D, "bar3DChart", "bar", "clustered"); break;
    case xl3DBarStacked: bar(Family::Bar3D, "bar3DChart", "bar", "stacked"); break;
    case xl3DBarStacked100: bar(Family::Bar3D, "bar3DChart", "bar", "percentStacked"); break;
    case xlArea: bar(Family::Area, "areaChart", nullptr, "standard"); break;
    case xlAreaStacked: bar(Family::Area, "areaChart", nullptr, "stacked"); break;
    case xlAreaStacked100: bar(Family::Area, "areaChart", nullptr, "percentStacked"); break;
    case xl3DArea: bar(Family::Area3D, "area3DChart", nullptr, "standard"); break;
    case xl3DAreaStacked: bar(Family::Area3D, "area3DChart", nullptr, "stacked"); break;
    case xl3DAreaStacked100: bar(Family::Area3D, "area3DChart", nullptr, "percentStacked"); break;
    case xlLine: bar(Family::Line, "lineChart", nullptr, "standard"); break;
    case xlLineStacked: bar(Family::Line, "lineChart", nullptr, "stacked"); break;
    case xlLineStacked100: bar(Family::Line, "lineChart", nullptr, "percentStacked"); break;
    case xlLineMarkers: bar(Family::Line, "lineChart", nullptr, "standard"); s.markers = true; break;
    case xlLineMarkersStacked: bar(Family::Line, "lineChart", nullptr, "stacked"); s.markers = true; break;
    case xlLineMarkersStacked100: bar(Family::Line, "lineChart", nullptr, "percentStacked"); s.markers = true; break;
    case xlPie: s.family = Family::Pie; s.group = "pieChart"; break;
    case xlPieExploded: s.family = Family::Pie; s.group = "pieChart"; s.exploded = true; break;
    case xl3DPie: s.family = Family::Pie3D; s.group = "pie3DChart"; break;
    case xl3DPieExploded: s.family = Family::Pie3D; s.group = "pie3DChart"; s.exploded = true; break;
    case xlDoughnut: s.family = Family::Doughnut; s.group = "doughnutChart"; break;
    case xlDoughnutExploded: s.family = Family::Doughnut; s.group = "doughnutChart"; s.exploded = true; break;
    case xlXYScatter: s.family = Family::Scatter; s.group = "scatterChart"; s.markers = true; s.lines = false; s.style = "lineMarker"; break;
    case xlXYScatterLines: s.family = Family::Scatter; s.group = "scatterChart"; s.markers = true; s.style = "lineMarker"; break;
    case xlXYScatterLinesNoMarkers: s.family = Family::Scatter; s.group = "scatterChart"; s.style = "lineMarker"; break;
    case xlXYScatterSmooth: s.family = Family::Scatter; s.group = "scatterChart"; s.markers = true; s.smooth = true; s.style = "smoothMarker"; break;
    case xlXYScatterSmoothNoMarkers: s.family = Family::Scatter; s.group = "scatterChart"; s.smooth = true; s.style = "smoothMarker"; break;
    case xlRadar: s.family = Family::Radar; s.group = "radarChart"; s.style = "marker"; break;
    case xlRadarMarkers: s.family = Family::Radar; s.group = "radarChart"; s.style = "marker"; s.markers = true; break;
    case xlRadarFilled: s.family = Family::Radar; s.group = "radarChart"; s.style = "filled"; break;
    case xlBubble: s.family = Family::Bubble; s.group = "bubbleChart"; break;
    case xlBubble3DEffect: s.family = Family::Bubble; s.group = "bubbleChart"; s.bubble3D = true; break;
    default: break;
    }
    return s;
}

bool XY(Family f) { return f == Family::Scatter || f == Family::Bubble; }
bool NoAxes(Family f) { return f == Family::Pie || f == Family::Pie3D || f == Family::Doughnut; }

// The series children each family allows, in schema order.
const std::vector<std::string_view>& SerAllowed(Family f) {
    static const std::vector<std::string_view> bar = {"idx", "order", "tx", "spPr", "invertIfNegative",
        "pictureOptions", "dPt", "dLbls", "trendline", "errBars", "cat", "val", "shape", "extLst"};
    static const std::vector<std::string_view> line = {"idx", "order", "tx", "spPr", "marker", "dPt", "dLbls",
        "trendline", "errBars", "cat", "val", "smooth", "extLst"};
    static const std::vector<std::string_view> area = {"idx", "order", "tx", "spPr", "pictureOptions", "dPt",
        "dLbls", "trendline", "errBars", "cat", "val", "extLst"};
    static const std::vector<std::string_view> pie = {"idx", "order", "tx", "spPr", "explosion", "dPt", "dLbls",
        "cat", "val", "extLst"};
    static const std::vector<std::string_view> radar = {"idx", "order", "tx", "spPr", "marker", "dPt", "dLbls",
        "cat", "val", "extLst"};
    static const std::vector<std::string_view> scatter = {"idx", "order", "tx", "spPr", "marker", "dPt", "dLbls",
        "trendline", "errBars", "xVal", "yVal", "smooth", "extLst"};
    static const std::vector<std::string_view> bubble = {"idx", "order", "tx", "spPr", "invertIfNegative", "dPt",
        "dLbls", "trendline", "errBars", "xVal", "yVal", "bubbleSize", "bubble3D", "extLst"};
    switch (f) {
    case Family::Bar: case Family::Bar3D: return bar;
    case Family::Line: return line;
    case Family::Area: case Family::Area3D: return area;
    case Family::Pie: case Family::Pie3D: case Family::Doughnut: return pie;
    case Family::Radar: return radar;
    case Family::Scatter: return scatter;
    default: return bubble;
    }
}

void Rename(pugi::xml_node n, std::string_view local, ChartDoc& doc) {
    std::string name = doc.C(local);
    n.set_name(name.c_str());
}

// A series keeps its bubble sizes through a type that draws none and shows them again when the
// chart turns back into a bubble chart: the older application's road to a bubble chart runs
// through the scatter type.
void HoldBubbleSizes(pugi::xml_node ser, ChartDoc& doc) {
    auto sizes = Kid(ser, "bubbleSize");
    if (!sizes) return;
    auto held = HeldBubbleSizes(doc, ser, true);
    held.parent().insert_move_after(sizes, held);
    held.parent().remove_child(held);
}

void RestoreBubbleSizes(pugi::xml_node ser, ChartDoc& doc) {
    auto held = HeldBubbleSizes(doc, ser, false);
    if (!held) return;
    auto ext = held.parent();
    if (!Kid(ser, "bubbleSize")) MoveInto(ser, held, kSerOrder, doc.c);
    auto list = ext.parent();
    list.remove_child(ext);
    if (!list.first_child()) ser.remove_child(list);
}

// Makes a series fit the family: category/value children renamed, children the family lacks
// dropped, the family's marks (explosion, markers, smoothing) set.
void ConformSeries(pugi::xml_node ser, const TypeSpec& typeSpec, ChartDoc& doc) {
    bool xy = XY(typeSpec.family);
    if (typeSpec.family == Family::Bubble) RestoreBubbleSizes(ser, doc);
    else HoldBubbleSizes(ser, doc);
    for (auto ch : ser.children()) {
        if (ch.type() != pugi::node_element) continue;
        auto l = LocalName(ch);
        if (xy && l == "cat") Rename(ch, "xVal", doc);
        if (xy && l == "val") Rename(ch, "yVal", doc);
        if (!xy && l == "xVal") Rename(ch, "cat", doc);
        if (!xy && l == "yVal") Rename(ch, "val", doc);
    }
    const auto& allowed = SerAllowed(typeSpec.family);
    std::vector<pugi::xml_node> drop;
    for (auto ch : ser.children()) {
        if (ch.type() != pugi::node_element) continue;
        if (std::find(allowed.begin(), allowed.end(), LocalName(ch)) == allowed.end()) drop.push_back(ch);
    }
    for (auto n : drop) ser.remove_child(n);
    // the points of a pie keep no markers
    for (auto dpt : ChildrenL(ser, "dPt")) {
        if (typeSpec.family != Family::Line && typeSpec.family != Family::Scatter && typeSpec.family != Family::Radar)
            RemoveL(dpt, "marker");
        if (typeSpec.family != Family::Pie && typeSpec.family != Family::Pie3D && typeSpec.family != Family::Doughnut)
            RemoveL(dpt, "explosion");
    }
    if (typeSpec.family == Family::Pie || typeSpec.family == Family::Pie3D || typeSpec.family == Family::Doughnut) {
        if (typeSpec.exploded) SetVal(ser, "explosion", "25", kSerOrder, doc.c);
        else RemoveL(ser, "explosion");
    }
    if (typeSpec.family == Family::Line || typeSpec.family == Family::Scatter || typeSpec.family == Family::Radar) {
        auto m = Kid(ser, "marker");
        if (!typeSpec.markers) {
            if (!m) m = InsertAt(ser, "marker", kSerOrder, doc.c);
            SetVal(m, "symbol", "none", {"symbol", "size", "spPr", "extLst"}, doc.c);
        } else if (m && Val(m, "symbol") == "none") {
            ser.remove_child(m);
        }
    }
    if (typeSpec.family == Family::Scatter) {
        auto sp = Ensure(ser, "spPr", kSerOrder, doc.c);
        if (!typeSpec.lines) {
            auto ln = Ensure(sp, "ln", kSpPrOrder, doc.a);
            for (auto ch : std::vector<pugi::xml_node>(ln.children().begin(), ln.children().end())) ln.remove_child(ch);
            InsertAt(ln, "noFill", kLnOrder, doc.a);
        } else if (auto ln = Kid(sp, "ln"); ln && Kid(ln, "noFill")) {
            sp.remove_child(ln);
        }
        if (!sp.first_child()) ser.remove_child(sp);
    }
    if (typeSpec.family == Family::Line || typeSpec.family == Family::Scatter)
        SetVal(ser, "smooth", typeSpec.smooth ? "1" : "0", kSerOrder, doc.c);
    if (typeSpec.family == Family::Bar || typeSpec.family == Family::Bubble) {
        if (!Kid(ser, "invertIfNegative")) SetVal(ser, "invertIfNegative", "0", kSerOrder, doc.c);
    }
    if (typeSpec.family == Family::Bubble) {
        const char* on = typeSpec.bubble3D ? "1" : "0";
        SetVal(ser, "bubble3D", on, kSerOrder, doc.c);
        for (auto dpt : ChildrenL(ser, "dPt"))
            SetVal(dpt, "bubble3D", on, {"idx", "invertIfNegative", "marker", "bubble3D", "explosion", "spPr"}, doc.c);
    }
}

// The missing line of a markers-only scatter series joins no points; for a type whose series
// line is an outline it is no choice of the user's, so the outline comes back.
void DropScatterLine(pugi::xml_node ser, const TypeSpec& typeSpec) {
    if (typeSpec.family == Family::Scatter || typeSpec.family == Family::Line || typeSpec.family == Family::Radar) return;
    auto sp = Kid(ser, "spPr");
    auto ln = Kid(sp, "ln");
    if (!ln || !Kid(ln, "noFill") || ln.first_child() != ln.last_child()) return;
    sp.remove_child(ln);
    if (!sp.first_child()) ser.remove_child(sp);
}

pugi::xml_node FillIn(pugi::xml_node parent) {
    for (auto f : {"noFill", "solidFill", "gradFill", "blipFill", "pattFill", "grpFill"})
        if (auto n = Kid(parent, f)) return n;
    return {};
}

void Solid(ChartDoc& doc, pugi::xml_node parent, const std::vector<std::string_view>& order, long rgb) {
    auto fill = InsertAt(parent, "solidFill", order, doc.a);
    fill.append_child(doc.A("srgbClr").c_str()).append_attribute("val") = RgbToHex(rgb).c_str();
}

// Colours every automatic series the way the application paints it, written out so that
// readers without the workbook's theme draw the same: fills for areas, lines for lines, one
// colour per slice for pies.
void PaintSeries(pugi::xml_node ser, const TypeSpec& typeSpec, ChartDoc& doc, pugi::xml_node group) {
    long idx = LongOf(Val(ser, "idx", "0"));
    bool pie = typeSpec.family == Family::Pie || typeSpec.family == Family::Pie3D || typeSpec.family == Family::Doughnut;
    bool line = typeSpec.family == Family::Line || typeSpec.family == Family::Scatter ||
                (typeSpec.family == Family::Radar && std::string(typeSpec.style) != "filled");
    if (pie) {
        if (!BoolVal(group, "varyColors", true)) return;
        auto val = Kid(ser, "val");
        auto cache = Kid(Kid(val, "numRef"), "numCache");
        if (!cache) cache = Kid(val, "numLit");
        long n = LongOf(Val(cache, "ptCount", "0"));
        for (long i = 0; i < n; ++i) {
            pugi::xml_node dpt;
            for (auto d : ChildrenL(ser, "dPt"))
                if (LongOf(Val(d, "idx", "-1")) == i) dpt = d;
            if (!dpt) {
                pugi::xml_node before;
                for (auto d : ChildrenL(ser, "dPt"))
                    if (!before && LongOf(Val(d, "idx", "-1")) > i) before = d;
                dpt = before ? ser.insert_child_before(doc.C("dPt").c_str(), before) : InsertAt(ser, "dPt", kSerOrder, doc.c);
                SetVal(dpt, "idx", std::to_string(i), {"idx"}, doc.c);
                SetVal(dpt, "bubble3D", "0", {"idx", "invertIfNegative", "marker", "bubble3D"}, doc.c);
            }
            auto sp = Ensure(dpt, "spPr", {"idx", "invertIfNegative", "marker", "bubble3D", "explosion", "spPr"}, doc.c);
            if (!FillIn(sp)) Solid(doc, sp, kSpPrOrder, SeriesAutoColor(doc, i));
        }
        return;
    }
    auto sp = Ensure(ser, "spPr", kSerOrder, doc.c);
    auto fill = FillIn(sp);
    auto ln = Kid(sp, "ln");
    if (line) {
        if (ln && FillIn(ln)) return;
        long rgb = fill && LocalName(fill) == "solidFill" ? ColorOf(doc, fill, SeriesAutoColor(doc, idx)) : SeriesAutoColor(doc, idx);
        if (!ln) {
            ln = InsertAt(sp, "ln", kSpPrOrder, doc.a);
            ln.append_attribute("w") = "28575";
            ln.append_attribute("cap") = "rnd";
        }
        Solid(doc, ln, kLnOrder, rgb);
        return;
    }
    // The width and caps a line series was given as its line are no outline for a column or an
    // area: a series that leaves the line family gets the thin default outline again.
    if (ln && std::string_view(ln.attribute("w").value()) == "28575" && std::string_view(ln.attribute("cap").value()) == "rnd") {
        ln.remove_attribute("w");
        ln.remove_attribute("cap");
    }
    if (fill) return;
    long rgb = ln && Kid(ln, "solidFill") ? ColorOf(doc, Kid(ln, "solidFill"), SeriesAutoColor(doc, idx))
                                             : SeriesAutoColor(doc, idx);
    Solid(doc, sp, kSpPrOrder, rgb);
}

void FillGroup(pugi::xml_node g, const TypeSpec& typeSpec, ChartDoc& doc) {
    const auto& c = doc.c;
    if (typeSpec.barDir) SetVal(g, "barDir", typeSpec.barDir, kGroupOrder, c);
    if (typeSpec.grouping) SetVal(g, "grouping", typeSpec.grouping, kGroupOrder, c);
    if (typeSpec.family == Family::Scatter) SetVal(g, "scatterStyle", typeSpec.style, kGroupOrder, c);
    if (typeSpec.family == Family::Radar) SetVal(g, "radarStyle", typeSpec.style, kGroupOrder, c);
    bool pie = typeSpec.family == Family::Pie || typeSpec.family == Family::Pie3D || typeSpec.family == Family::Doughnut;
    SetVal(g, "varyColors", pie ? "1" : "0", kGroupOrder, c);
    switch (typeSpec.family) {
    case Family::Bar:
        SetVal(g, "gapWidth", std::string(typeSpec.grouping) == "clustered" ? "219" : "150", kGroupOrder, c);
        SetVal(g, "overlap", std::string(typeSpec.grouping) == "clustered" ? "-27" : "100", kGroupOrder, c);
        break;
    case Family::Bar3D:
        SetVal(g, "gapWidth", "150", kGroupOrder, c);
        SetVal(g, "shape", "box", kGroupOrder, c);
        break;
    case Family::Line: SetVal(g, "marker", "1", kGroupOrder, c); break;
    case Family::Pie: case Family::Doughnut:
        SetVal(g, "firstSliceAng", "0", kGroupOrder, c);
        if (typeSpec.family == Family::Doughnut) SetVal(g, "holeSize", "75", kGroupOrder, c);
        break;
    case Family::Bubble:
        SetVal(g, "bubble3D", typeSpec.bubble3D ? "1" : "0", kGroupOrder, c);
        SetVal(g, "bubbleScale", "100", kGroupOrder, c);
        SetVal(g, "showNegBubbles", "0", kGroupOrder, c);
        break;
    default: break;
    }
}

// Axis ids are unsigned 32-bit numbers; a new one follows the highest in use.
long NewAxisId(ChartDoc& doc) {
    long long id = 500000000;
    for (auto n : doc.PlotArea(false).children())
        for (auto a : ChildrenL(n, "axId")) id = std::max(id, a.attribute("val").as_llong());
    return id < 4294967290LL ? long(id + 1) : 500000001;
}

pugi::xml_node MakeAxisNode(ChartDoc& doc, const char* kind, long id, long cross, const char* pos, bool grid) {
    auto pa = doc.PlotArea(true);
    auto ax = InsertAt(pa, kind, kPlotAreaOrder, doc.c);
    std::string k = kind;
    SetVal(ax, "axId", std::to_string(id), kAxOrder, doc.c);
    auto sc = Ensure(ax, "scaling", kAxOrder, doc.c);
    SetVal(sc, "orientation", "minMax", kScalingOrder, doc.c);
    SetVal(ax, "delete", "0", kAxOrder, doc.c);
    SetVal(ax, "axPos", pos, kAxOrder, doc.c);
    if (grid) Ensure(ax, "majorGridlines", kAxOrder, doc.c);
    auto nf = Ensure(ax, "numFmt", kAxOrder, doc.c);
    nf.append_attribute("formatCode") = "General";
    nf.append_attribute("sourceLinked") = "1";
    SetVal(ax, "majorTickMark", "none", kAxOrder, doc.c);
    SetVal(ax, "minorTickMark", "none", kAxOrder, doc.c);
    SetVal(ax, "tickLblPos", "nextTo", kAxOrder, doc.c);
    SetVal(ax, "crossAx", std::to_string(cross), kAxOrder, doc.c);
    SetVal(ax, "crosses", "autoZero", kAxOrder, doc.c);
    if (k == "catAx") {
        SetVal(ax, "auto", "1", kAxOrder, doc.c);
        SetVal(ax, "lblAlgn", "ctr", kAxOrder, doc.c);
        SetVal(ax, "lblOffset", "100", kAxOrder, doc.c);
        SetVal(ax, "noMultiLvlLbl", "0", kAxOrder, doc.c);
    } else if (k == "valAx") {
        SetVal(ax, "crossBetween", "between", kAxOrder, doc.c);
    }
    return ax;
}

std::vector<long> AxisIds(pugi::xml_node g) {
    std::vector<long> ids;
    for (auto a : ChildrenL(g, "axId")) ids.push_back(a.attribute("val").as_llong());
    return ids;
}

pugi::xml_node AxisById(ChartDoc& doc, long id) {
    for (auto n : doc.PlotArea(false).children())
        if (IsAxis(LocalName(n)) && LongOf(Val(n, "axId", "0")) == id) return n;
    return {};
}

// The primary axes (category first, value second) fit for the family, made or rebuilt as needed.
std::vector<long> PrepareAxes(ChartDoc& doc, const TypeSpec& typeSpec, const std::vector<long>& old) {
    auto pa = doc.PlotArea(true);
    if (NoAxes(typeSpec.family)) {
        std::vector<pugi::xml_node> axes;
        for (auto n : pa.children())
            if (IsAxis(LocalName(n))) axes.push_back(n);
        for (auto n : axes) pa.remove_child(n);
        return {};
    }
    pugi::xml_node cat, val, ser;
    if (old.size() >= 2) {
        cat = AxisById(doc, old[0]);
        val = AxisById(doc, old[1]);
        if (old.size() >= 3 && old[2]) ser = AxisById(doc, old[2]);
    }
    bool xy = XY(typeSpec.family);
    bool fit = cat && val && LocalName(val) == "valAx" && (xy ? LocalName(cat) == "valAx" : LocalName(cat) != "valAx");
    if (!fit) {
        // rebuild the pair with the ids of the old one, or new ids
        if (cat) pa.remove_child(cat);
        if (val) pa.remove_child(val);
        long idc = old.size() >= 2 ? old[0] : NewAxisId(doc);
        long idv = old.size() >= 2 ? old[1] : idc + 1;
        if (idv == idc) idv = idc + 1;
        cat = MakeAxisNode(doc, xy ? "valAx" : "catAx", idc, idv, "b", false);
        val = MakeAxisNode(doc, "valAx", idv, idc, "l", true);
    }
    bool horizontal = typeSpec.barDir && std::string(typeSpec.barDir) == "bar";
    SetVal(cat, "axPos", horizontal ? "l" : "b", kAxOrder, doc.c);
    SetVal(val, "axPos", horizontal ? "b" : "l", kAxOrder, doc.c);
    if (LocalName(val) == "valAx" && !xy)
        SetVal(val, "crossBetween", typeSpec.family == Family::Area || typeSpec.family == Family::Area3D ? "midCat" : "between", kAxOrder, doc.c);
    if (ser) pa.remove_child(ser);
    std::vector<long> ids = {LongOf(Val(cat, "axId")), LongOf(Val(val, "axId"))};
    // other axes (a secondary pair) go with the groups that used them
    std::vector<pugi::xml_node> extra;
    for (auto n : pa.children()) {
        if (!IsAxis(LocalName(n))) continue;
        long id = LongOf(Val(n, "axId", "0"));
        if (id != ids[0] && id != ids[1]) extra.push_back(n);
    }
    for (auto n : extra) pa.remove_child(n);
    return ids;
}

void Set3DView(ChartDoc& doc, const TypeSpec& typeSpec) {
    auto chart = doc.Chart(true);
    bool is3d = typeSpec.family == Family::Bar3D || typeSpec.family == Family::Area3D || typeSpec.family == Family::Pie3D;
    if (!is3d) {
        RemoveL(chart, "view3D");
        return;
    }
    auto v = Kid(chart, "view3D");
    if (!v) {
        v = InsertAt(chart, "view3D", kChartOrder, doc.c);
        SetVal(v, "rotX", typeSpec.family == Family::Pie3D ? "30" : "15", kView3DOrder, doc.c);
        SetVal(v, "rotY", typeSpec.family == Family::Pie3D ? "0" : "20", kView3DOrder, doc.c);
        SetVal(v, "rAngAx", typeSpec.family == Family::Pie3D ? "0" : "1", kView3DOrder, doc.c);
    }
    for (const char* wall : {"floor", "sideWall", "backWall"})
        if (!Kid(chart, wall)) SetVal(InsertAt(chart, wall, kChartOrder, doc.c), "thickness", "0", {"thickness", "spPr", "pictureOptions", "extLst"}, doc.c);
}

pugi::xml_node BuildGroup(ChartDoc& doc, const TypeSpec& typeSpec, pugi::xml_node after, const std::vector<long>& axes) {
    auto pa = doc.PlotArea(true);
    std::string name = doc.C(typeSpec.group);
    auto g = after ? pa.insert_child_after(name.c_str(), after) : InsertAt(pa, typeSpec.group, kPlotAreaOrder, doc.c);
    FillGroup(g, typeSpec, doc);
    if (!NoAxes(typeSpec.family)) {
        for (long id : axes) {
            auto a = InsertAt(g, "axId", kGroupOrder, doc.c);
            a.append_attribute("val") = std::to_string(id).c_str();
        }
        if (typeSpec.family == Family::Bar3D || typeSpec.family == Family::Area3D) {
            auto a = InsertAt(g, "axId", kGroupOrder, doc.c);
            a.append_attribute("val") = "0";
        }
    }
    return g;
}

}  // namespace

void SetPlotChartType(ChartDoc& doc, long type) {
    TypeSpec typeSpec = SpecOf(type);
    if (typeSpec.family == Family::None) {
        if (type == host::xl3DColumn || type == host::xl3DLine ||
            (type >= host::xlSurface && type <= host::xlSurfaceTopViewWireframe) || type == host::xlPieOfPie ||
            type == host::xlBarOfPie || (type >= host::xlStockHLC && type <= host::xlStockVOHLC) || type > 91)
            NotAvailable("Chart.ChartType");
        Refuse("Unable to set the ChartType property of the Chart class");
    }
    auto groups = Groups(doc);
    auto pa = doc.PlotArea(true);
    std::vector<pugi::xml_node> series;
    std::vector<long> oldAxes;
    for (auto g : groups) {
        if (oldAxes.empty()) oldAxes = AxisIds(g);
        for (auto s : ChildrenL(g, "ser")) series.push_back(s);
    }
    std::stable_sort(series.begin(), series.end(), [](pugi::xml_node x, pugi::xml_node y) {
        return LongOf(Val(x, "order", "0")) < LongOf(Val(y, "order", "0"));
    });
    pugi::xml_node dLbls;
    if (!groups.empty()) dLbls = Kid(groups[0], "dLbls");
    auto axes = PrepareAxes(doc, typeSpec, oldAxes);
    auto g = BuildGroup(doc, typeSpec, groups.empty() ? pugi::xml_node() : groups[0], axes);
    for (auto s : series) {
        bool fromScatter = LocalName(s.parent()) == "scatterChart";
        MoveInto(g, s, kGroupOrder, doc.c);
        ConformSeries(s, typeSpec, doc);
        if (fromScatter) DropScatterLine(s, typeSpec);
        PaintSeries(s, typeSpec, doc, g);
    }
    if (dLbls) MoveInto(g, dLbls, kGroupOrder, doc.c);
    for (auto old : groups) pa.remove_child(old);
    FixLabelPositions(g);
    Set3DView(doc, typeSpec);
    RelinkAxisFormats(doc);
}

void ConformSeriesTo(ChartDoc& doc, pugi::xml_node ser, long type) {
    TypeSpec typeSpec = SpecOf(type);
    if (typeSpec.family == Family::None) return;
    ConformSeries(ser, typeSpec, doc);
    PaintSeries(ser, typeSpec, doc, ser.parent());
}

void SetSeriesChartType(ChartDoc& doc, pugi::xml_node ser, long type) {
    auto groups = Groups(doc);
    if (groups.size() == 1 && ChildrenL(groups[0], "ser").size() == 1) return SetPlotChartType(doc, type);
    TypeSpec typeSpec = SpecOf(type);
    if (typeSpec.family == Family::None || NoAxes(typeSpec.family) || XY(typeSpec.family) || typeSpec.family == Family::Bar3D ||
        typeSpec.family == Family::Area3D)
        NotAvailable("Series.ChartType");
    auto from = ser.parent();
    if (GroupChartType(from, doc) == type) return;
    std::vector<long> axes = AxisIds(from);
    if (axes.empty() || XY(SpecOf(GroupChartType(from, doc)).family)) NotAvailable("Series.ChartType");
    axes.resize(2);
    pugi::xml_node target;
    for (auto g : groups)
        if (g != from && GroupChartType(g, doc) == type && AxisIds(g) == axes) target = g;
    if (!target) target = BuildGroup(doc, typeSpec, groups.back(), axes);
    doc.Touch();
    MoveInto(target, ser, kGroupOrder, doc.c);
    ConformSeries(ser, typeSpec, doc);
    PaintSeries(ser, typeSpec, doc, target);
    FixLabelPositions(target);
    if (ChildrenL(from, "ser").empty()) from.parent().remove_child(from);
}

}  // namespace xlsx
