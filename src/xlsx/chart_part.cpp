// The chart part: the DOM helpers every chart file uses, new parts, and the chart itself with the
// members of the chart as a whole.
#include "xlsx/chart_part.h"

#include <cstring>

#include "host/error.h"
#include "xlsx/book.h"
#include "xlsx/chart_model.h"
#include "xlsx/drawing.h"

namespace xlsx {

namespace {

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
    std::string cp = PrefixOf(root, ns::kChart);
    if (cp != "?") c = cp;
    std::string ap = PrefixOf(root, ns::kDrawingMl);
    if (ap != "?") a = ap;
}

pugi::xml_node ChartDoc::Root(bool edit) {
    return edit ? book.pkg().Edit(part).document_element() : book.pkg().Read(part).document_element();
}

void ChartDoc::Touch() {
    book.pkg().Edit(part);
    // the DrawingML prefix must be declared before text or shape properties are written
    auto root = Root(false);
    if (PrefixOf(root, ns::kDrawingMl) == "?") {
        a = "a:";
        root.append_attribute("xmlns:a") = ns::kDrawingMl;
    }
}

pugi::xml_node ChartDoc::Chart(bool edit) {
    if (edit) Touch();
    return Kid(Root(false), "chart");
}

pugi::xml_node ChartDoc::PlotArea(bool edit) { return Kid(Chart(edit), "plotArea"); }

long ChartDoc::PaletteRgb(long index) { return book.Colors(index); }

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

namespace {
constexpr std::string_view kGroupNames =
    "areaChart|area3DChart|lineChart|line3DChart|stockChart|radarChart|scatterChart|pieChart|pie3DChart|"
    "doughnutChart|barChart|bar3DChart|ofPieChart|surfaceChart|surface3DChart|bubbleChart";
constexpr std::string_view kAxisNames = "catAx|valAx|dateAx|serAx";
}  // namespace

// The style the application writes stands in an mc:AlternateContent.
const std::vector<std::string_view> kChartSpaceOrder = {
    "date1904", "lang", "roundedCorners", "style|AlternateContent", "clrMapOvr", "pivotSource", "protection", "chart",
    "spPr", "txPr", "externalData", "printSettings", "userShapes", "extLst"};
const std::vector<std::string_view> kChartOrder = {
    "title", "autoTitleDeleted", "pivotFmts", "view3D", "floor", "sideWall", "backWall", "plotArea",
    "legend", "plotVisOnly", "dispBlanksAs", "showDLblsOverMax", "extLst"};
const std::vector<std::string_view> kPlotAreaOrder = {"layout", kGroupNames, kAxisNames, "dTable", "spPr", "extLst"};
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
const std::vector<std::string_view> kDLblsOrder = {
    "dLbl", "delete", "numFmt", "spPr", "txPr", "dLblPos", "showLegendKey", "showVal", "showCatName",
    "showSerName", "showPercent", "showBubbleSize", "separator", "showLeaderLines", "leaderLines", "extLst"};
const std::vector<std::string_view> kTxPrOrder = {"bodyPr", "lstStyle", "p"};
const std::vector<std::string_view> kView3DOrder = {"rotX", "hPercent", "rotY", "depthPercent", "rAngAx",
                                                     "perspective", "extLst"};
const std::vector<std::string_view> kManualLayoutOrder = {"layoutTarget", "xMode", "yMode", "wMode", "hMode",
                                                          "x", "y", "w", "h", "extLst"};

bool IsGroup(std::string_view l) { return OneOf(kGroupNames, l); }
bool IsAxis(std::string_view l) { return OneOf(kAxisNames, l); }

std::vector<pugi::xml_node> Groups(ChartDoc& doc) {
    std::vector<pugi::xml_node> out;
    for (auto ch : doc.PlotArea(false).children())
        if (IsGroup(LocalName(ch))) out.push_back(ch);
    return out;
}


// ---------------------------------------------------------------- new parts

std::string NewChartPart(Book& book) {
    std::string part;
    for (int n = 1;; ++n) {
        part = "xl/charts/chart" + std::to_string(n) + ".xml";
        if (!book.pkg().Has(part)) break;
    }
    auto& doc = book.pkg().PutXml(part, ct::kChart);
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

class ChartImpl : public host::Chart {
public:
    explicit ChartImpl(DocPtr doc) : d_(std::move(doc)) {}
    using host::Chart::SeriesCollection;
    using host::Chart::ChartGroups;
    using host::Chart::SetHasAxis;

    Ref<host::Application> Application() override { return d_->book.app().self(); }
    Ref<host::ChartObject> Parent() override { return d_->frame.lock(); }
    long ChartType() override { return PlotChartType(*d_); }
    void SetChartType(long v) override { SetPlotChartType(*d_, v); }

    Ref<host::SeriesCollection> SeriesCollection() override { return MakeSeriesCollection(d_); }
    Ref<host::Series> SeriesCollection(const Variant& indexOrName) override {
        auto sc = MakeSeriesCollection(d_);
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
        auto sc = MakeSeriesCollection(d_);
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


}  // namespace xlsx
