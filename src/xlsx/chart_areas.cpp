// The chart area and the plot area: their formats, and the plot area's place in the chart, laid
// out as the application lays it out around titles, axis labels and the legend.
#include <algorithm>

#include "xlsx/book.h"
#include "xlsx/chart_model.h"

namespace xlsx {

namespace {

class ChartAreaImpl : public host::ChartArea {
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

struct Box {
    double left, top, width, height;
};

class PlotAreaImpl : public host::PlotArea {
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
        if (inner) SetVal(m, "layoutTarget", "inner", kManualLayoutOrder, d_->c);
        auto frac = [](double v, double of) { return host::NumberToText(std::clamp(v / of, 0.0, 1.0)); };
        SetVal(m, "xMode", "edge", kManualLayoutOrder, d_->c);
        SetVal(m, "yMode", "edge", kManualLayoutOrder, d_->c);
        SetVal(m, "x", frac(b.left, s.width), kManualLayoutOrder, d_->c);
        SetVal(m, "y", frac(b.top, s.height), kManualLayoutOrder, d_->c);
        SetVal(m, "w", frac(b.width, s.width), kManualLayoutOrder, d_->c);
        SetVal(m, "h", frac(b.height, s.height), kManualLayoutOrder, d_->c);
    }
    Holder H() {
        auto d = d_;
        return Holder{[d](bool e) { return d->PlotArea(e); }, &kPlotAreaOrder, 0xFFFFFF, 10};
    }
    DocPtr d_;
};

}  // namespace

Ref<host::ChartArea> MakeChartArea(DocPtr doc) { return std::make_shared<ChartAreaImpl>(std::move(doc)); }
Ref<host::PlotArea> MakePlotArea(DocPtr doc) { return std::make_shared<PlotAreaImpl>(std::move(doc)); }

}  // namespace xlsx
