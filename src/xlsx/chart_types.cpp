// Chart types both ways: the type of a chart group as automation names it, and a new type written
// as the chart groups, series and axes the application makes for it; the chart groups.
#include <algorithm>

#include "host/error.h"
#include "xlsx/book.h"
#include "xlsx/chart_model.h"

namespace xlsx {

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

constexpr const char* kHeldSizesUri = "{C3A7E5D2-9B14-4F6A-8E21-7D4B0A96F1C8}";

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

AxesSpec AxesOf(const TypeSpec& t) {
    return {NoAxes(t.family), XY(t.family), t.barDir && std::string_view(t.barDir) == "bar",
            t.family == Family::Area || t.family == Family::Area3D};
}

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

}  // namespace

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

namespace {

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
            if (!FillIn(sp)) PutSolid(sp, SeriesAutoColor(doc, i), doc.a);
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
        PutSolid(ln, rgb, doc.a);
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
    PutSolid(sp, rgb, doc.a);
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
    auto axes = PrepareAxes(doc, AxesOf(typeSpec), oldAxes);
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

// ---------------------------------------------------------------- chart groups

namespace {

class ChartGroupImpl : public host::ChartGroup {
public:
    ChartGroupImpl(DocPtr d, pugi::xml_node g, long index) : d_(std::move(d)), g_(g), index_(index) {}
    using host::ChartGroup::SeriesCollection;
    long Index() override { return index_; }
    long AxisGroup() override {
        auto groups = Groups(*d_);
        for (auto g : groups)
            if (auto a = Kid(g, "axId"))
                return Val(g, "axId") == Val(g_, "axId") ? host::xlPrimary : host::xlSecondary;
        return host::xlPrimary;
    }
    Ref<host::SeriesCollection> SeriesCollection() override { return MakeSeriesCollection(d_, g_); }
    Ref<host::Series> SeriesCollection(const Variant& indexOrName) override {
        auto sc = SeriesCollection();
        if (indexOrName.IsString()) return sc->Item(indexOrName.RawString());
        return sc->Item(host::CLng(indexOrName));
    }
    long GapWidth() override { Bars("GapWidth"); return LongOf(Val(g_, "gapWidth", "150")); }
    void SetGapWidth(long v) override {
        Bars("GapWidth");
        if (v < 0 || v > 500) Refuse("Unable to set the GapWidth property of the ChartGroup class");
        d_->Touch();
        SetVal(g_, "gapWidth", std::to_string(v), kGroupOrder, d_->c);
    }
    long Overlap() override { Bars("Overlap"); return LongOf(Val(g_, "overlap", "0")); }
    void SetOverlap(long v) override {
        if (LocalName(g_) != "barChart") Refuse("Unable to set the Overlap property of the ChartGroup class");
        if (v < -100 || v > 100) Refuse("Unable to set the Overlap property of the ChartGroup class");
        d_->Touch();
        SetVal(g_, "overlap", std::to_string(v), kGroupOrder, d_->c);
    }
    bool VaryByCategories() override { return BoolVal(g_, "varyColors", true); }
    void SetVaryByCategories(bool v) override {
        d_->Touch();
        SetVal(g_, "varyColors", v ? "1" : "0", kGroupOrder, d_->c);
    }
    long FirstSliceAngle() override { Pies("FirstSliceAngle"); return LongOf(Val(g_, "firstSliceAng", "0")); }
    void SetFirstSliceAngle(long v) override {
        Pies("FirstSliceAngle");
        if (v < 0 || v > 360) Refuse("Unable to set the FirstSliceAngle property of the ChartGroup class");
        d_->Touch();
        SetVal(g_, "firstSliceAng", std::to_string(v), kGroupOrder, d_->c);
    }
    long DoughnutHoleSize() override {
        if (LocalName(g_) != "doughnutChart") Refuse("Unable to get the DoughnutHoleSize property of the ChartGroup class");
        return LongOf(Val(g_, "holeSize", "50"));
    }
    void SetDoughnutHoleSize(long v) override {
        if (LocalName(g_) != "doughnutChart" || v < 10 || v > 90)
            Refuse("Unable to set the DoughnutHoleSize property of the ChartGroup class");
        d_->Touch();
        SetVal(g_, "holeSize", std::to_string(v), kGroupOrder, d_->c);
    }

    long BubbleScale() override { Bubbles("BubbleScale"); return LongOf(Val(g_, "bubbleScale", "100")); }
    void SetBubbleScale(long v) override {
        Bubbles("BubbleScale");
        if (v < 0 || v > 300) Refuse("Unable to set the BubbleScale property of the ChartGroup class");
        d_->Touch();
        SetVal(g_, "bubbleScale", std::to_string(v), kGroupOrder, d_->c);
    }
    bool ShowNegativeBubbles() override { Bubbles("ShowNegativeBubbles"); return BoolVal(g_, "showNegBubbles", false); }
    void SetShowNegativeBubbles(bool v) override {
        Bubbles("ShowNegativeBubbles");
        d_->Touch();
        SetVal(g_, "showNegBubbles", v ? "1" : "0", kGroupOrder, d_->c);
    }
    long SizeRepresents() override {
        Bubbles("SizeRepresents");
        return Val(g_, "sizeRepresents", "area") == "w" ? host::xlSizeIsWidth : host::xlSizeIsArea;
    }
    void SetSizeRepresents(long v) override {
        Bubbles("SizeRepresents");
        if (v != host::xlSizeIsArea && v != host::xlSizeIsWidth) Refuse("Unable to set the SizeRepresents property of the ChartGroup class");
        d_->Touch();
        SetVal(g_, "sizeRepresents", v == host::xlSizeIsWidth ? "w" : "area", kGroupOrder, d_->c);
    }

private:
    void Bubbles(const char* m) {
        if (LocalName(g_) != "bubbleChart") Refuse(std::string("Unable to get the ") + m + " property of the ChartGroup class");
    }
    void Bars(const char* m) {
        auto l = LocalName(g_);
        if (l != "barChart" && l != "bar3DChart") Refuse(std::string("Unable to get the ") + m + " property of the ChartGroup class");
    }
    void Pies(const char* m) {
        auto l = LocalName(g_);
        if (l != "pieChart" && l != "doughnutChart") Refuse(std::string("Unable to get the ") + m + " property of the ChartGroup class");
    }
    DocPtr d_;
    pugi::xml_node g_;
    long index_;
};

class ChartGroupsImpl : public host::ChartGroups {
public:
    explicit ChartGroupsImpl(DocPtr d) : d_(std::move(d)) {}
    long Count() override { return long(Groups(*d_).size()); }
    Ref<host::ChartGroup> Item(long index) override { return MakeChartGroup(d_, index); }

private:
    DocPtr d_;
};

}  // namespace

Ref<host::ChartGroups> MakeChartGroups(DocPtr doc) { return std::make_shared<ChartGroupsImpl>(std::move(doc)); }

Ref<host::ChartGroup> MakeChartGroup(DocPtr doc, long index) {
    auto groups = Groups(*doc);
    if (index < 1 || index > long(groups.size())) Refuse("Unable to get the ChartGroups property of the Chart class");
    return std::make_shared<ChartGroupImpl>(std::move(doc), groups[index - 1], index);
}

}  // namespace xlsx
