// Axes of a chart: scales, crossings, tick marks and labels, gridlines and axis titles; the axes a
// chart type needs, made; the room their labels and titles take.
#include <algorithm>
#include <cmath>

#include "xlsx/book.h"
#include "xlsx/chart_model.h"
#include "xlsx/numfmt.h"

namespace xlsx {

namespace {

// The axis ids of each axis group: those of the first chart group with axes are the primary
// group's, the first other set the secondary group's.
std::vector<long> GroupAxisIds(ChartDoc& doc, long group) {
    std::vector<std::vector<long>> sets;
    for (auto g : Groups(doc)) {
        std::vector<long> ids;
        for (auto a : ChildrenL(g, "axId")) ids.push_back(a.attribute("val").as_llong());
        if (ids.empty()) continue;
        bool known = false;
        for (auto& s : sets)
            if (!s.empty() && s[0] == ids[0]) known = true;
        if (!known) sets.push_back(ids);
    }
    if (group < 1 || group > long(sets.size())) return {};
    return sets[group - 1];
}

pugi::xml_node Node(ChartDoc& doc, long type, long group) {
    auto ids = GroupAxisIds(doc, group);
    if (type < 1 || type > long(ids.size()) || ids[type - 1] == 0) return {};
    for (auto n : doc.PlotArea(false).children())
        if (IsAxis(LocalName(n)) && LongOf(Val(n, "axId", "0")) == ids[type - 1]) return n;
    return {};
}

double Num(pugi::xml_node parent, std::string_view local) { return std::atof(Val(parent, local, "0").c_str()); }

// The number format of the cells an axis shows, as the first series on it caches it: what a
// linked axis displays. Empty when no series holds numbers there. A 100 % stacked group's value
// axis shows shares, whatever the cells hold, and the application writes "0%" there.
std::string SourceFormat(ChartDoc& doc, pugi::xml_node axis) {
    long id = LongOf(Val(axis, "axId", "0"));
    bool horizontal = Val(axis, "axPos") == "b" || Val(axis, "axPos") == "t";
    for (auto g : Groups(doc)) {
        bool onAxis = false;
        for (auto a : ChildrenL(g, "axId")) onAxis = onAxis || a.attribute("val").as_llong() == id;
        if (!onAxis) continue;
        if (LocalName(axis) == "valAx" && Val(g, "grouping") == "percentStacked") return "0%";
        for (auto ser : ChildrenL(g, "ser")) {
            const char* data = LocalName(axis) == "catAx" || LocalName(axis) == "dateAx" ? "cat"
                               : Kid(ser, "val")                                      ? "val"
                               : horizontal                                            ? "xVal"
                                                                                       : "yVal";
            auto code = Kid(Kid(Kid(Kid(ser, data), "numRef"), "numCache"), "formatCode");
            if (code) return code.text().get();
        }
    }
    return {};
}

class GridlinesImpl : public host::Gridlines {
public:
    GridlinesImpl(DocPtr d, std::function<pugi::xml_node(bool)> axis, const char* which)
        : d_(std::move(d)), axis_(std::move(axis)), which_(which) {}
    Ref<host::Border> Border() override {
        static const std::vector<std::string_view> order = {"spPr", "extLst"};
        auto axis = axis_;
        std::string which = which_;
        return MakeBorder(d_, Holder{[axis, which](bool e) { return Kid(axis(e), which); }, &order});
    }
    void Delete() override {
        d_->Touch();
        RemoveL(axis_(true), which_);
    }

private:
    DocPtr d_;
    std::function<pugi::xml_node(bool)> axis_;
    const char* which_;
};

class TickLabelsImpl : public host::TickLabels {
public:
    TickLabelsImpl(DocPtr d, std::function<pugi::xml_node(bool)> axis) : d_(std::move(d)), axis_(std::move(axis)) {}
    Ref<host::Font> Font() override { return MakeFont(d_, Holder{axis_, &kAxOrder, 0xFFFFFF, 9}); }
    Variant AutoScaleFont() override { return AutoScaleFontOf(Holder{axis_, &kAxOrder, 0xFFFFFF, 9}); }
    void SetAutoScaleFont(const Variant& v) override { SetAutoScaleFontOf(*d_, Holder{axis_, &kAxOrder, 0xFFFFFF, 9}, v); }
    std::string NumberFormat() override {
        auto nf = Kid(axis_(false), "numFmt");
        return nf ? nf.attribute("formatCode").value() : "General";
    }
    void SetNumberFormat(const std::string& v) override {
        auto nf = NumFmt();
        nf.attribute("formatCode") = v.c_str();
        nf.attribute("sourceLinked") = "0";
    }
    bool NumberFormatLinked() override {
        auto nf = Kid(axis_(false), "numFmt");
        return nf ? nf.attribute("sourceLinked").as_bool() : true;
    }
    void SetNumberFormatLinked(bool v) override {
        auto nf = NumFmt();
        nf.attribute("sourceLinked") = v ? "1" : "0";
        // Readers that don't look at the cells show the code, so it carries the cells' format.
        if (v) {
            std::string code = SourceFormat(*d_, axis_(true));
            if (!code.empty()) nf.attribute("formatCode") = code.c_str();
        }
    }
    void Delete() override {
        d_->Touch();
        SetVal(axis_(true), "tickLblPos", "none", kAxOrder, d_->c);
    }

private:
    pugi::xml_node NumFmt() {
        d_->Touch();
        auto ax = axis_(true);
        auto nf = Kid(ax, "numFmt");
        if (!nf) {
            nf = InsertAt(ax, "numFmt", kAxOrder, d_->c);
            nf.append_attribute("formatCode") = "General";
            nf.append_attribute("sourceLinked") = "1";
        }
        if (!nf.attribute("sourceLinked")) nf.append_attribute("sourceLinked") = "1";
        return nf;
    }
    DocPtr d_;
    std::function<pugi::xml_node(bool)> axis_;
};

const std::vector<std::string_view> kDispUnitsOrder = {"custUnit", "builtInUnit", "dispUnitsLbl", "extLst"};
struct Unit {
    long xl;
    const char* name;
    double factor;
};
const Unit kUnits[] = {{host::xlHundreds, "hundreds", 1e2},          {host::xlThousands, "thousands", 1e3},
                       {host::xlTenThousands, "tenThousands", 1e4},  {-5, "hundredThousands", 1e5},
                       {host::xlMillions, "millions", 1e6},          {-7, "tenMillions", 1e7},
                       {-8, "hundredMillions", 1e8},                 {host::xlThousandMillions, "billions", 1e9},
                       {host::xlMillionMillions, "trillions", 1e12}};

class AxisImpl : public host::Axis {
public:
    AxisImpl(DocPtr d, long type, long group) : d_(std::move(d)), type_(type), group_(group) {}

    long Type() override { return type_; }
    long AxisGroup() override { return group_; }
    bool HasTitle() override { return bool(Kid(N(false), "title")); }
    void SetHasTitle(bool v) override {
        if (v == HasTitle()) return;
        auto ax = N(true);
        if (!v) {
            RemoveL(ax, "title");
            return;
        }
        auto t = InsertAt(ax, "title", kAxOrder, d_->c);
        SetRichText(*d_, t, "Axis Title", kTitleOrder);
        auto body = Kid(Kid(Kid(t, "tx"), "rich"), "bodyPr");
        if (Vertical()) {
            body.append_attribute("rot") = "-5400000";
            body.append_attribute("vert") = "horz";
        }
        SetVal(t, "overlay", "0", kTitleOrder, d_->c);
    }
    Ref<host::AxisTitle> AxisTitle() override {
        if (!HasTitle()) Refuse("Method 'AxisTitle' of object 'Axis' failed");
        return MakeAxisTitle(d_, Fn(), Vertical());
    }
    Ref<host::TickLabels> TickLabels() override { return std::make_shared<TickLabelsImpl>(d_, Fn()); }
    bool HasMajorGridlines() override { return bool(Kid(N(false), "majorGridlines")); }
    void SetHasMajorGridlines(bool v) override { Toggle("majorGridlines", v); }
    bool HasMinorGridlines() override { return bool(Kid(N(false), "minorGridlines")); }
    void SetHasMinorGridlines(bool v) override { Toggle("minorGridlines", v); }
    Ref<host::Gridlines> MajorGridlines() override {
        if (!HasMajorGridlines()) Refuse("Unable to get the MajorGridlines property of the Axis class");
        return std::make_shared<GridlinesImpl>(d_, Fn(), "majorGridlines");
    }
    Ref<host::Gridlines> MinorGridlines() override {
        if (!HasMinorGridlines()) Refuse("Unable to get the MinorGridlines property of the Axis class");
        return std::make_shared<GridlinesImpl>(d_, Fn(), "minorGridlines");
    }
    Ref<host::Border> Border() override { return MakeBorder(d_, Holder{Fn(), &kAxOrder}); }

    double MinimumScale() override { return Scale("min", 0); }
    void SetMinimumScale(double v) override { SetScale("min", v); }
    bool MinimumScaleIsAuto() override { return !Kid(Scaling(false), "min"); }
    // Turning the automatic value off keeps the value the application had computed.
    void SetMinimumScaleIsAuto(bool v) override { v ? ClearScale("min") : SetScale("min", MinimumScale()); }
    double MaximumScale() override { return Scale("max", ComputedMax()); }
    void SetMaximumScale(double v) override { SetScale("max", v); }
    bool MaximumScaleIsAuto() override { return !Kid(Scaling(false), "max"); }
    void SetMaximumScaleIsAuto(bool v) override { v ? ClearScale("max") : SetScale("max", MaximumScale()); }
    double MajorUnit() override {
        ValueOnly("MajorUnit");
        auto ax = N(false);
        return Kid(ax, "majorUnit") ? Num(ax, "majorUnit") : NiceUnit(ComputedMax());
    }
    void SetMajorUnit(double v) override { SetUnit("majorUnit", v); }
    bool MajorUnitIsAuto() override { ValueOnly("MajorUnitIsAuto"); return !Kid(N(false), "majorUnit"); }
    void SetMajorUnitIsAuto(bool v) override {
        ValueOnly("MajorUnitIsAuto");
        if (!v) return SetUnit("majorUnit", MajorUnit());
        auto ax = N(true);
        RemoveL(ax, "majorUnit");
    }
    double MinorUnit() override {
        ValueOnly("MinorUnit");
        auto ax = N(false);
        return Kid(ax, "minorUnit") ? Num(ax, "minorUnit") : NiceUnit(ComputedMax()) / 5;
    }
    void SetMinorUnit(double v) override { SetUnit("minorUnit", v); }
    bool MinorUnitIsAuto() override { ValueOnly("MinorUnitIsAuto"); return !Kid(N(false), "minorUnit"); }
    void SetMinorUnitIsAuto(bool v) override {
        ValueOnly("MinorUnitIsAuto");
        if (!v) return SetUnit("minorUnit", MinorUnit());
        auto ax = N(true);
        RemoveL(ax, "minorUnit");
    }
    long ScaleType() override {
        ValueOnly("ScaleType");
        return Kid(Scaling(false), "logBase") ? host::xlScaleLogarithmic : host::xlScaleLinear;
    }
    void SetScaleType(long v) override {
        ValueOnly("ScaleType");
        auto sc = Scaling(true);
        if (v == host::xlScaleLogarithmic) {
            if (!Kid(sc, "logBase")) SetVal(sc, "logBase", "10", kScalingOrder, d_->c);
        } else if (v == host::xlScaleLinear) {
            RemoveL(sc, "logBase");
        } else {
            Refuse("Unable to set the ScaleType property of the Axis class");
        }
    }
    long DisplayUnit() override {
        auto du = Kid(N(false), "dispUnits");
        if (!du) return host::xlNone;
        if (Kid(du, "custUnit")) return host::xlCustom;
        std::string unit = Val(du, "builtInUnit");
        for (auto& u : kUnits)
            if (unit == u.name) return u.xl;
        return host::xlNone;
    }
    void SetDisplayUnit(long v) override {
        if (v == host::xlNone) {
            if (Kid(N(false), "dispUnits")) RemoveL(N(true), "dispUnits");
            return;
        }
        if (v == host::xlCustom) return SetDisplayUnitCustom(DisplayUnitCustom());
        const char* unit = nullptr;
        for (auto& u : kUnits)
            if (u.xl == v) unit = u.name;
        if (!unit || LocalName(N(false)) != "valAx") Refuse("Unable to set the DisplayUnit property of the Axis class");
        auto du = Units();
        RemoveL(du, "custUnit");
        SetVal(du, "builtInUnit", unit, kDispUnitsOrder, d_->c);
    }
    double DisplayUnitCustom() override {
        auto du = Kid(N(false), "dispUnits");
        if (auto c = Kid(du, "custUnit")) return c.attribute("val").as_double();
        for (auto& u : kUnits)
            if (Val(du, "builtInUnit") == u.name) return u.factor;
        return 1;
    }
    void SetDisplayUnitCustom(double v) override {
        if (v <= 0 || LocalName(N(false)) != "valAx") Refuse("Unable to set the DisplayUnitCustom property of the Axis class");
        auto du = Units();
        RemoveL(du, "builtInUnit");
        SetVal(du, "custUnit", host::NumberToText(v), kDispUnitsOrder, d_->c);
    }
    bool HasDisplayUnitLabel() override { return bool(Kid(Kid(N(false), "dispUnits"), "dispUnitsLbl")); }
    void SetHasDisplayUnitLabel(bool v) override {
        if (!Kid(N(false), "dispUnits")) {
            if (!v) return;
            Refuse("Unable to set the HasDisplayUnitLabel property of the Axis class");
        }
        auto du = Units();
        if (!v) RemoveL(du, "dispUnitsLbl");
        else Ensure(du, "dispUnitsLbl", kDispUnitsOrder, d_->c);
    }
    double LogBase() override { return std::atof(Val(Scaling(false), "logBase", "10").c_str()); }
    void SetLogBase(double v) override {
        if (v < 2 || v > 1000) Refuse("Unable to set the LogBase property of the Axis class");
        SetVal(Scaling(true), "logBase", host::NumberToText(v), kScalingOrder, d_->c);
    }

    long Crosses() override {
        auto ax = N(false);
        if (Kid(ax, "crossesAt")) return host::xlAxisCrossesCustom;
        std::string c = Val(ax, "crosses", "autoZero");
        if (c == "min") return host::xlAxisCrossesMinimum;
        if (c == "max") return host::xlAxisCrossesMaximum;
        return host::xlAxisCrossesAutomatic;
    }
    void SetCrosses(long v) override {
        const char* c = v == host::xlAxisCrossesMinimum ? "min" : v == host::xlAxisCrossesMaximum ? "max"
                      : v == host::xlAxisCrossesAutomatic ? "autoZero" : nullptr;
        if (v == host::xlAxisCrossesCustom) return SetCrossesAt(CrossesAt());
        if (!c) Refuse("Unable to set the Crosses property of the Axis class");
        auto ax = N(true);
        RemoveL(ax, "crossesAt");
        SetVal(ax, "crosses", c, kAxOrder, d_->c);
    }
    // The crossing is written on the axis that crosses this one.
    double CrossesAt() override { return std::atof(Val(N(false), "crossesAt", "0").c_str()); }
    void SetCrossesAt(double v) override {
        auto ax = N(true);
        RemoveL(ax, "crosses");
        SetVal(ax, "crossesAt", host::NumberToText(v), kAxOrder, d_->c);
    }
    bool ReversePlotOrder() override { return Val(Scaling(false), "orientation", "minMax") == "maxMin"; }
    void SetReversePlotOrder(bool v) override {
        SetVal(Scaling(true), "orientation", v ? "maxMin" : "minMax", kScalingOrder, d_->c);
    }

    long TickLabelPosition() override {
        std::string p = Val(N(false), "tickLblPos", "nextTo");
        if (p == "high") return host::xlTickLabelPositionHigh;
        if (p == "low") return host::xlTickLabelPositionLow;
        if (p == "none") return host::xlTickLabelPositionNone;
        return host::xlTickLabelPositionNextToAxis;
    }
    void SetTickLabelPosition(long v) override {
        const char* p = v == host::xlTickLabelPositionHigh ? "high" : v == host::xlTickLabelPositionLow ? "low"
                      : v == host::xlTickLabelPositionNone ? "none" : v == host::xlTickLabelPositionNextToAxis ? "nextTo" : nullptr;
        if (!p) Refuse("Unable to set the TickLabelPosition property of the Axis class");
        SetVal(N(true), "tickLblPos", p, kAxOrder, d_->c);
    }
    long MajorTickMark() override { return Mark(Val(N(false), "majorTickMark", "cross")); }
    void SetMajorTickMark(long v) override { SetVal(N(true), "majorTickMark", MarkName(v), kAxOrder, d_->c); }
    long MinorTickMark() override { return Mark(Val(N(false), "minorTickMark", "cross")); }
    void SetMinorTickMark(long v) override { SetVal(N(true), "minorTickMark", MarkName(v), kAxOrder, d_->c); }
    long TickLabelSpacing() override { return LongOf(Val(N(false), "tickLblSkip", "1")); }
    void SetTickLabelSpacing(long v) override {
        if (v < 1 || v > 31999) Refuse("Unable to set the TickLabelSpacing property of the Axis class");
        SetVal(N(true), "tickLblSkip", std::to_string(v), kAxOrder, d_->c);
    }
    bool TickLabelSpacingIsAuto() override { return !Kid(N(false), "tickLblSkip"); }
    void SetTickLabelSpacingIsAuto(bool v) override {
        if (!v) return SetTickLabelSpacing(TickLabelSpacing());
        auto ax = N(true);
        RemoveL(ax, "tickLblSkip");
    }
    void Delete() override { SetVal(N(true), "delete", "1", kAxOrder, d_->c); }

private:
    std::function<pugi::xml_node(bool)> Fn() {
        auto d = d_;
        long t = type_, g = group_;
        return [d, t, g](bool e) {
            if (e) d->Touch();
            return Node(*d, t, g);
        };
    }
    pugi::xml_node N(bool edit) {
        if (edit) d_->Touch();
        auto n = Node(*d_, type_, group_);
        if (!n) Refuse("Method 'Axes' of object '_Chart' failed");
        return n;
    }
    bool Vertical() {
        std::string pos = Val(N(false), "axPos", "b");
        return pos == "l" || pos == "r";
    }
    // New gridlines get the application's light grey line written out: readers without its
    // defaults (LibreOffice) draw no line for bare gridlines.
    void Toggle(const char* which, bool on) {
        auto ax = N(true);
        if (!on) return RemoveL(ax, which);
        if (Kid(ax, which)) return;
        auto ln = InsertAt(ax, which, kAxOrder, d_->c).append_child(d_->C("spPr").c_str()).append_child(d_->A("ln").c_str());
        ln.append_attribute("w") = "9525";
        PutSolid(ln, 0xD9D9D9, d_->a);
    }
    bool IsValueScale() { return LocalName(N(false)) == "valAx" || LocalName(N(false)) == "dateAx"; }
    pugi::xml_node Units() {
        auto ax = N(true);
        auto du = Kid(ax, "dispUnits");
        if (!du) {
            du = InsertAt(ax, "dispUnits", kAxOrder, d_->c);
            du.append_child(d_->C("builtInUnit").c_str()).append_attribute("val") = "thousands";
        }
        return du;
    }
    void ValueOnly(const char* member) {
        if (!IsValueScale()) Refuse(std::string("Unable to get the ") + member + " property of the Axis class");
    }
    pugi::xml_node Scaling(bool edit) {
        auto ax = N(edit);
        auto sc = Kid(ax, "scaling");
        if (!sc && edit) sc = InsertAt(ax, "scaling", kAxOrder, d_->c);
        return sc;
    }
    double Scale(const char* which, double computed) {
        ValueOnly(which[1] == 'i' ? "MinimumScale" : "MaximumScale");
        auto sc = Scaling(false);
        return Kid(sc, which) ? Num(sc, which) : computed;
    }
    void SetScale(const char* which, double v) {
        ValueOnly(which[1] == 'i' ? "MinimumScale" : "MaximumScale");
        SetVal(Scaling(true), which, host::NumberToText(v), kScalingOrder, d_->c);
    }
    void ClearScale(const char* which) {
        ValueOnly(which[1] == 'i' ? "MinimumScaleIsAuto" : "MaximumScaleIsAuto");
        RemoveL(Scaling(true), which);
    }
    void SetUnit(const char* which, double v) {
        ValueOnly(which);
        if (v <= 0) Refuse(std::string("Unable to set the ") + which + " property of the Axis class");
        SetVal(N(true), which, host::NumberToText(v), kAxOrder, d_->c);
    }
    // The largest cached value of the chart's series, rounded up to a whole major unit, as an
    // automatic maximum reads.
    double ComputedMax() {
        double top = 0;
        for (auto s : AllSeries(*d_)) {
            for (const char* vname : {"val", "yVal"}) {
                auto cache = Kid(Kid(Kid(s, vname), "numRef"), "numCache");
                for (auto pt : ChildrenL(cache, "pt")) top = std::max(top, std::atof(Kid(pt, "v").text().get()));
            }
        }
        if (top <= 0) return 1;
        double unit = NiceUnit(top);
        return std::ceil(top / unit) * unit + (std::fmod(top, unit) == 0 ? unit : 0);
    }
    static double NiceUnit(double max) {
        double raw = max / 5;
        double mag = std::pow(10, std::floor(std::log10(raw)));
        for (double m : {1.0, 2.0, 5.0, 10.0})
            if (raw <= m * mag) return m * mag;
        return 10 * mag;
    }
    static long Mark(const std::string& v) {
        if (v == "in") return host::xlTickMarkInside;
        if (v == "out") return host::xlTickMarkOutside;
        if (v == "none") return host::xlTickMarkNone;
        return host::xlTickMarkCross;
    }
    static const char* MarkName(long v) {
        if (v == host::xlTickMarkInside) return "in";
        if (v == host::xlTickMarkOutside) return "out";
        if (v == host::xlTickMarkNone) return "none";
        if (v == host::xlTickMarkCross) return "cross";
        Refuse("Unable to set the MajorTickMark property of the Axis class");
    }

    DocPtr d_;
    long type_, group_;
};

// ---------------------------------------------------------------- room for labels and titles

// Text extents in ems of the font size: an average glyph of the default chart fonts, a line
// with its leading; and the gap between an axis, its labels and its title.
constexpr double kCharWidth = 0.55, kLineHeight = 1.2, kGap = 4;

double FontSizeIn(pugi::xml_node owner, double dflt) {
    double size = 0;
    for (auto n : owner.select_nodes(".//*[local-name()='defRPr' or local-name()='rPr'][@sz]"))
        size = std::max(size, n.node().attribute("sz").as_double() / 100);
    return size > 0 ? size : dflt;
}

double TextWidth(const std::string& text, double size) { return double(host::Len(text)) * size * kCharWidth; }

void AddRoom(Sides& room, const std::string& side, double extent) {
    double& s = side == "l" ? room.left : side == "r" ? room.right : side == "t" ? room.top : room.bottom;
    s = std::max(s, extent);
}

bool Vertical(const std::string& side) { return side == "l" || side == "r"; }

// The side an axis stands on, and where its labels go: the far side for labels set high.
std::string SideOf(pugi::xml_node axis, bool labels) {
    std::string side = Val(axis, "axPos", LocalName(axis) == "valAx" ? "l" : "b");
    if (!labels || Val(axis, "tickLblPos", "nextTo") != "high") return side;
    return side == "l" ? "r" : side == "r" ? "l" : side == "t" ? "b" : "t";
}

// The groups that plot on an axis.
std::vector<pugi::xml_node> GroupsOn(ChartDoc& doc, pugi::xml_node axis) {
    std::vector<pugi::xml_node> out;
    long id = LongOf(Val(axis, "axId", "0"));
    for (auto g : Groups(doc))
        for (auto a : ChildrenL(g, "axId"))
            if (a.attribute("val").as_llong() == id) out.push_back(g);
    return out;
}

std::vector<std::string> CachedTexts(pugi::xml_node data) {
    std::vector<std::string> out;
    for (auto ref : data.children())
        for (auto cache : ref.children())
            for (auto pt : ChildrenL(cache, "pt")) out.push_back(Kid(pt, "v").text().get());
    return out;
}

// The labels of a value axis: its scale from the data (stacked groups add up) or as fixed, in
// whole units, each in the format the axis shows.
std::vector<std::string> ValueLabels(ChartDoc& doc, pugi::xml_node axis) {
    bool horizontal = !Vertical(Val(axis, "axPos", "l"));
    double low = 0, high = 0;
    bool percent = false;
    for (auto g : GroupsOn(doc, axis)) {
        std::string grouping = Val(g, "grouping");
        percent = percent || grouping == "percentStacked";
        bool stacked = grouping == "stacked";
        std::vector<double> sums;
        for (auto ser : ChildrenL(g, "ser")) {
            const char* data = Kid(ser, "val") ? "val" : horizontal ? "xVal" : "yVal";
            auto cache = Kid(Kid(Kid(ser, data), "numRef"), "numCache");
            if (!cache) cache = Kid(Kid(ser, data), "numLit");
            for (auto pt : ChildrenL(cache, "pt")) {
                double v = std::atof(Kid(pt, "v").text().get());
                size_t i = pt.attribute("idx").as_uint();
                if (stacked) {
                    if (sums.size() <= i) sums.resize(i + 1);
                    v = sums[i] += v;
                }
                low = std::min(low, v);
                high = std::max(high, v);
            }
        }
    }
    std::string code = "General";
    if (auto nf = Kid(axis, "numFmt")) code = nf.attribute("formatCode").value();
    if (percent) {
        low = std::max(low, -1.0);
        high = 1;
        code = "0%";
    } else if (!Kid(axis, "numFmt") || Kid(axis, "numFmt").attribute("sourceLinked").as_bool()) {
        if (std::string linked = SourceFormat(doc, axis); !linked.empty()) code = linked;
    }
    auto scaling = Kid(axis, "scaling");
    if (Kid(scaling, "max")) high = Num(scaling, "max");
    if (Kid(scaling, "min")) low = Num(scaling, "min");
    double span = std::max(std::fabs(low), std::fabs(high));
    if (span <= 0) span = 1;
    double unit = Kid(axis, "majorUnit") ? Num(axis, "majorUnit") : 0;
    if (unit <= 0) {
        double mag = std::pow(10, std::floor(std::log10(span / 5)));
        unit = 10 * mag;
        for (double m : {1.0, 2.0, 5.0})
            if (span / 5 <= m * mag) {
                unit = m * mag;
                break;
            }
    }
    if (!Kid(scaling, "max")) high = std::ceil(high / unit) * unit;
    if (!Kid(scaling, "min")) low = std::floor(low / unit) * unit;
    std::vector<std::string> out;
    for (double v = low; v <= high + unit / 2 && out.size() < 100; v += unit) {
        try {
            out.push_back(FormatNumber(code, std::fabs(v) < unit / 1e6 ? 0 : v));
        } catch (const std::exception&) {
            out.push_back(host::NumberToText(v));
        }
    }
    return out;
}

std::vector<std::string> CategoryLabels(ChartDoc& doc, pugi::xml_node axis) {
    for (auto g : GroupsOn(doc, axis))
        for (auto ser : ChildrenL(g, "ser")) {
            auto texts = CachedTexts(Kid(ser, Kid(ser, "cat") ? "cat" : "xVal"));
            if (!texts.empty()) return texts;
        }
    return {};
}

bool Shown(pugi::xml_node axis) { return !BoolVal(axis, "delete", false); }

}  // namespace

Sides AxisLabelRoom(ChartDoc& doc) {
    Sides room;
    for (auto ax : doc.PlotArea(false).children()) {
        if (!IsAxis(LocalName(ax)) || !Shown(ax) || Val(ax, "tickLblPos", "nextTo") == "none") continue;
        std::string side = SideOf(ax, true);
        double size = FontSizeIn(Kid(ax, "txPr"), 10);
        if (!Vertical(side)) {
            AddRoom(room, side, size * kLineHeight + kGap);
            continue;
        }
        auto labels = LocalName(ax) == "valAx" ? ValueLabels(doc, ax) : CategoryLabels(doc, ax);
        double widest = 0;
        for (auto& text : labels) widest = std::max(widest, TextWidth(text, size));
        AddRoom(room, side, widest + kGap);
        // the labels at the ends stand half out over the ends
        AddRoom(room, "t", size * kLineHeight / 2);
        AddRoom(room, "b", size * kLineHeight / 2);
    }
    return room;
}

Sides AxisTitleRoom(ChartDoc& doc) {
    Sides room;
    for (auto ax : doc.PlotArea(false).children()) {
        auto title = Kid(ax, "title");
        if (!IsAxis(LocalName(ax)) || !Shown(ax) || !title) continue;
        std::string side = SideOf(ax, false);
        double size = FontSizeIn(Kid(title, "tx"), FontSizeIn(Kid(title, "txPr"), 10));
        double lines = 0, widest = 0;
        std::string text = RichText(doc, Kid(title, "tx"));
        for (size_t from = 0, end; from <= text.size(); from = end + 1) {
            end = std::min(text.find('\n', from), text.size());
            widest = std::max(widest, TextWidth(text.substr(from, end - from), size));
            ++lines;
        }
        Variant turn = TextOrientation(title, Vertical(side) ? host::xlUpward : host::xlHorizontal);
        long t = host::CLng(turn);
        bool upright = t == host::xlUpward || t == host::xlDownward || t == host::xlVertical || t == 90 || t == -90;
        bool across = Vertical(side) == upright;
        AddRoom(room, side, (across ? lines * size * kLineHeight : widest) + kGap);
    }
    return room;
}

void RelinkAxisFormats(ChartDoc& doc) {
    for (auto ax : doc.PlotArea(false).children()) {
        if (!IsAxis(LocalName(ax))) continue;
        auto nf = Kid(ax, "numFmt");
        if (!nf || !nf.attribute("sourceLinked").as_bool()) continue;
        std::string code = SourceFormat(doc, ax);
        if (!code.empty()) nf.attribute("formatCode") = code.c_str();
    }
}

// ---------------------------------------------------------------- new axes

namespace {

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

}  // namespace

std::vector<long> AxisIds(pugi::xml_node g) {
    std::vector<long> ids;
    for (auto a : ChildrenL(g, "axId")) ids.push_back(a.attribute("val").as_llong());
    return ids;
}

namespace {

pugi::xml_node AxisById(ChartDoc& doc, long id) {
    for (auto n : doc.PlotArea(false).children())
        if (IsAxis(LocalName(n)) && LongOf(Val(n, "axId", "0")) == id) return n;
    return {};
}

}  // namespace

std::vector<long> PrepareAxes(ChartDoc& doc, const AxesSpec& want, const std::vector<long>& old) {
    auto pa = doc.PlotArea(true);
    if (want.none) {
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
    bool xy = want.xy;
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
    bool horizontal = want.horizontal;
    SetVal(cat, "axPos", horizontal ? "l" : "b", kAxOrder, doc.c);
    SetVal(val, "axPos", horizontal ? "b" : "l", kAxOrder, doc.c);
    if (LocalName(val) == "valAx" && !xy)
        SetVal(val, "crossBetween", want.midCat ? "midCat" : "between", kAxOrder, doc.c);
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

pugi::xml_node FindAxis(ChartDoc& doc, long type, long group) { return Node(doc, type, group); }

Ref<host::Axis> MakeAxis(DocPtr doc, long type, long group) {
    auto n = Node(*doc, type, group);
    if (!n || BoolVal(n, "delete", false)) Refuse("Method 'Axes' of object '_Chart' failed");
    return std::make_shared<AxisImpl>(std::move(doc), type, group);
}

}  // namespace xlsx
