// Points of a series and the markers of series and points: their formats, explosion, inversion.
#include "host/error.h"
#include "xlsx/book.h"
#include "xlsx/chart_model.h"

namespace xlsx {

namespace {

const std::vector<std::string_view> kMarkerOrder = {"symbol", "size", "spPr", "extLst"};
const std::vector<std::string_view> kDPtOrder = {"idx", "invertIfNegative", "marker", "bubble3D",
                                                 "explosion", "spPr", "pictureOptions", "extLst"};

bool TakesMarkers(pugi::xml_node group) {
    auto l = LocalName(group);
    return l == "lineChart" || l == "scatterChart" || l == "radarChart";
}

bool IsPie(pugi::xml_node group) {
    auto l = LocalName(group);
    return l == "pieChart" || l == "pie3DChart" || l == "doughnutChart" || l == "ofPieChart";
}

const std::pair<long, const char*> kSymbols[] = {
    {host::xlMarkerStyleNone, "none"},       {host::xlMarkerStyleCircle, "circle"}, {host::xlMarkerStyleDash, "dash"},
    {host::xlMarkerStyleDiamond, "diamond"}, {host::xlMarkerStyleDot, "dot"},       {host::xlMarkerStylePicture, "picture"},
    {host::xlMarkerStylePlus, "plus"},       {host::xlMarkerStyleSquare, "square"}, {host::xlMarkerStyleStar, "star"},
    {host::xlMarkerStyleTriangle, "triangle"}, {host::xlMarkerStyleX, "x"},       {host::xlMarkerStyleAutomatic, "auto"}};

// The colour the application gives a series that has none of its own.
long SeriesColor(ChartDoc& doc, pugi::xml_node ser) {
    long automatic = SeriesAutoColor(doc, SeriesIdx(ser));
    auto sp = Kid(ser, "spPr");
    if (auto f = Kid(sp, "solidFill")) return ColorOf(doc, f, automatic);
    if (auto f = Kid(Kid(sp, "ln"), "solidFill")) return ColorOf(doc, f, automatic);
    return automatic;
}

}  // namespace

Marker::Marker(DocPtr d, pugi::xml_node ser, std::function<pugi::xml_node(bool)> owner,
               const std::vector<std::string_view>& order, const char* cls)
    : d_(std::move(d)), ser_(ser), owner_(std::move(owner)), order_(order), cls_(cls) {}

long Marker::Style() {
    std::string sym = Val(Node(), "symbol");
    if (sym.empty()) return TakesMarkers(ser_.parent()) ? host::xlMarkerStyleAutomatic : host::xlMarkerStyleNone;
    for (auto& [xl, name] : kSymbols)
        if (sym == name) return xl;
    return host::xlMarkerStyleAutomatic;
}

void Marker::SetStyle(long v) {
    const char* sym = nullptr;
    for (auto& [xl, name] : kSymbols)
        if (xl == v && v != host::xlMarkerStylePicture) sym = name;
    if (!sym) Refuse(std::string("Unable to set the MarkerStyle property of the ") + cls_ + " class");
    SetVal(Edit("MarkerStyle"), "symbol", sym, kMarkerOrder, d_->c);
}

long Marker::Size() { return LongOf(Val(Node(), "size", "5")); }
void Marker::SetSize(long v) {
    if (v < 2 || v > 72) Refuse(std::string("Unable to set the MarkerSize property of the ") + cls_ + " class");
    SetVal(Edit("MarkerSize"), "size", std::to_string(v), kMarkerOrder, d_->c);
}

long Marker::Color(bool fore) {
    auto f = Paint(fore);
    if (f && LocalName(f) == "noFill") return 0xFFFFFF;
    return ColorOf(*d_, f, SeriesColor(*d_, ser_));
}

void Marker::SetColor(bool fore, long rgb, const char* member) {
    if (rgb < 0 || rgb > 0xFFFFFF) Refuse(std::string("Unable to set the ") + member + " property of the " + cls_ + " class");
    auto sp = Ensure(Edit(member), "spPr", kMarkerOrder, d_->c);
    auto target = fore ? Ensure(sp, "ln", kSpPrOrder, d_->a) : sp;
    PutSolid(target, rgb, d_->a);
}

long Marker::ColorIndex(bool fore) {
    auto f = Paint(fore);
    if (!f) return host::xlColorIndexAutomatic;
    if (LocalName(f) == "noFill") return host::xlColorIndexNone;
    return NearestPaletteIndex(d_->book, Color(fore));
}

void Marker::SetColorIndex(bool fore, long v, const char* member) {
    if (v >= 1 && v <= 56) return SetColor(fore, d_->PaletteRgb(v), member);
    if (v != host::xlColorIndexNone && v != host::xlColorIndexAutomatic)
        Refuse(std::string("Unable to set the ") + member + " property of the " + cls_ + " class");
    auto sp = Ensure(Edit(member), "spPr", kMarkerOrder, d_->c);
    auto target = fore ? Ensure(sp, "ln", kSpPrOrder, d_->a) : sp;
    if (v == host::xlColorIndexNone) PutFill(target, "noFill", d_->a);
    else RemoveFills(target);
}

pugi::xml_node Marker::Node() {
    if (auto own = Kid(owner_(false), "marker")) return own;
    return Kid(ser_, "marker");
}

pugi::xml_node Marker::Edit(const char* member) {
    if (!TakesMarkers(ser_.parent()))
        Refuse(std::string("Unable to set the ") + member + " property of the " + cls_ + " class");
    d_->Touch();
    auto owner = owner_(true);
    if (auto own = Kid(owner, "marker")) return own;
    auto m = InsertAt(owner, "marker", order_, d_->c);
    // a point's marker starts as the series' marker
    if (owner != ser_)
        if (auto from = Kid(ser_, "marker"))
            for (auto ch : from.children()) m.append_copy(ch);
    return m;
}

pugi::xml_node Marker::Paint(bool fore) {
    auto sp = Kid(Node(), "spPr");
    return FillIn(fore ? Kid(sp, "ln") : sp);
}

namespace {

// The c:dPt of one point, made in idx order on writing.
pugi::xml_node PointNode(ChartDoc& doc, pugi::xml_node ser, long index, bool edit) {
    for (auto p : ChildrenL(ser, "dPt"))
        if (LongOf(Val(p, "idx", "-1")) == index - 1) return p;
    if (!edit) return {};
    doc.Touch();
    pugi::xml_node before;
    for (auto p : ChildrenL(ser, "dPt"))
        if (!before && LongOf(Val(p, "idx", "-1")) > index - 1) before = p;
    auto p = before ? ser.insert_child_before(doc.C("dPt").c_str(), before) : InsertAt(ser, "dPt", kSerOrder, doc.c);
    SetVal(p, "idx", std::to_string(index - 1), kDPtOrder, doc.c);
    // bubbles of a 3-D set stay 3-D point by point
    if (LocalName(ser.parent()) == "bubbleChart") SetVal(p, "bubble3D", BoolVal(ser, "bubble3D", false) ? "1" : "0", kDPtOrder, doc.c);
    return p;
}

class PointImpl : public MarkerMembers<host::Point> {
public:
    PointImpl(DocPtr d, pugi::xml_node ser, long index) : d_(std::move(d)), ser_(ser), index_(index) {}

    bool HasDataLabel() override { return PointHasLabel(ser_, index_); }
    void SetHasDataLabel(bool v) override { SetPointHasLabel(d_, ser_, index_, v); }
    Ref<host::DataLabel> DataLabel() override {
        if (!HasDataLabel()) Refuse("Unable to get the DataLabel property of the Point class");
        return MakeDataLabel(d_, ser_, index_);
    }
    void ApplyDataLabels(long type, const Variant& legendKey, const Variant&, const Variant&, const Variant& serName,
                         const Variant& catName, const Variant& value, const Variant& percent, const Variant& bubble,
                         const Variant& sep) override {
        ApplyPointLabel(d_, ser_, index_, type, legendKey, serName, catName, value, percent, bubble, sep);
    }
    Ref<host::Interior> Interior() override { return MakeInterior(d_, H()); }
    Ref<host::Border> Border() override { return MakeBorder(d_, H()); }
    Ref<host::ChartFillFormat> Fill() override { return MakeFill(d_, H()); }
    long Explosion() override { return LongOf(Val(PointNode(*d_, ser_, index_, false), "explosion", Val(ser_, "explosion", "0"))); }
    void SetExplosion(long v) override {
        if (!IsPie(ser_.parent()) || v < 0 || v > 400) Refuse("Unable to set the Explosion property of the Point class");
        SetVal(PointNode(*d_, ser_, index_, true), "explosion", std::to_string(v), kDPtOrder, d_->c);
    }
    bool InvertIfNegative() override {
        auto p = PointNode(*d_, ser_, index_, false);
        return Kid(p, "invertIfNegative") ? BoolVal(p, "invertIfNegative", false) : BoolVal(ser_, "invertIfNegative", false);
    }
    void SetInvertIfNegative(bool v) override {
        auto l = LocalName(ser_.parent());
        if (l != "barChart" && l != "bar3DChart" && l != "bubbleChart") Refuse("Unable to set the InvertIfNegative property of the Point class");
        SetVal(PointNode(*d_, ser_, index_, true), "invertIfNegative", v ? "1" : "0", kDPtOrder, d_->c);
    }
    void ClearFormats() override {
        auto p = PointNode(*d_, ser_, index_, false);
        if (!p) return;
        d_->Touch();
        RemoveL(p, "spPr");
        RemoveL(p, "marker");
    }

private:
    Holder H() {
        auto d = d_;
        auto ser = ser_;
        long index = index_;
        return Holder{[d, ser, index](bool e) { return PointNode(*d, ser, index, e); }, &kDPtOrder, SeriesColor(*d_, ser_), 10};
    }
    Marker M() override {
        auto d = d_;
        auto ser = ser_;
        long index = index_;
        return Marker(d_, ser_, [d, ser, index](bool e) { return PointNode(*d, ser, index, e); }, kDPtOrder, "Point");
    }
    DocPtr d_;
    pugi::xml_node ser_;
    long index_;
};

class PointsImpl : public host::Points {
public:
    PointsImpl(DocPtr d, pugi::xml_node ser) : d_(std::move(d)), ser_(ser) {}
    long Count() override { return long(CachedValues(ValuesNode(ser_)).size()); }
    Ref<host::Point> Item(long index) override {
        if (index < 1 || index > Count()) Refuse("Unable to get the Item property of the Points class");
        return std::make_shared<PointImpl>(d_, ser_, index);
    }

private:
    DocPtr d_;
    pugi::xml_node ser_;
};

}  // namespace

Ref<host::Points> MakePoints(DocPtr doc, pugi::xml_node ser) { return std::make_shared<PointsImpl>(std::move(doc), ser); }

}  // namespace xlsx
