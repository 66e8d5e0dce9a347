// Series of a chart: their data references with the caches filled from the workbook's cells,
// names, series formulas, plot order, data labels; the series collections and chart groups; the
// moving of series references when rows are inserted or deleted.
#include <algorithm>
#include <cmath>

#include "host/error.h"
#include "xlsx/book.h"
#include "xlsx/chart_model.h"
#include "xlsx/chart_part.h"

namespace xlsx {

namespace {

constexpr const char* kChartContentType = "application/vnd.openxmlformats-officedocument.drawingml.chart+xml";
const std::vector<std::string_view> kTxOrder = {"strRef", "v"};
const std::vector<std::string_view> kRefOrder = {"f", "numCache", "strCache", "extLst"};
const std::vector<std::string_view> kCacheOrder = {"formatCode", "ptCount", "pt", "extLst"};

long Order(pugi::xml_node ser) { return LongOf(Val(ser, "order", "0")); }
long Idx(pugi::xml_node ser) { return LongOf(Val(ser, "idx", "0")); }

// The value and category children of a series, whatever its family calls them.
pugi::xml_node ValuesNode(pugi::xml_node ser) {
    if (auto v = Kid(ser, "val")) return v;
    return Kid(ser, "yVal");
}
pugi::xml_node CategoriesNode(pugi::xml_node ser) {
    if (auto v = Kid(ser, "cat")) return v;
    return Kid(ser, "xVal");
}
bool XYSeries(pugi::xml_node ser) {
    auto l = LocalName(ser.parent());
    return l == "scatterChart" || l == "bubbleChart";
}

std::string RefText(pugi::xml_node data) {
    for (auto ch : data.children()) {
        auto f = Kid(ch, "f");
        if (f) return f.text().get();
    }
    return "";
}

std::vector<Variant> CachedValues(pugi::xml_node data) {
    std::vector<Variant> out;
    for (auto ch : data.children()) {
        auto l = LocalName(ch);
        pugi::xml_node cache;
        bool numeric = true;
        if (l == "numRef") cache = Kid(ch, "numCache");
        else if (l == "strRef") { cache = Kid(ch, "strCache"); numeric = false; }
        else if (l == "numLit") cache = ch;
        else if (l == "strLit") { cache = ch; numeric = false; }
        else if (l == "multiLvlStrRef") {
            cache = Kid(Kid(ch, "multiLvlStrCache"), "lvl");
            numeric = false;
        } else continue;
        long n = LongOf(Val(l == "multiLvlStrRef" ? Kid(Kid(ch, "multiLvlStrCache"), "ptCount").parent() : cache, "ptCount", "0"));
        // A cache holds the cells of one range at most: a count or index beyond a sheet's rows is damage.
        out.assign(std::clamp<long>(n, 0, kMaxRows), Variant());
        for (auto pt : ChildrenL(cache, "pt")) {
            long i = pt.attribute("idx").as_int();
            std::string v = Kid(pt, "v").text().get();
            if (i < 0 || i >= kMaxRows) continue;
            if (i >= long(out.size())) out.resize(i + 1);
            out[i] = numeric ? Variant(std::atof(v.c_str())) : Variant(v);
        }
        return out;
    }
    return out;
}

void ClearData(pugi::xml_node data) {
    while (data.first_child()) data.remove_child(data.first_child());
}

class SeriesImpl;

}  // namespace

// ---------------------------------------------------------------- references

namespace {
std::string ToA1(ChartDoc& doc, const std::string& text, const char* member) {
    std::string t = host::Trim(text);
    if (!t.empty() && t[0] == '=') t.erase(0, 1);
    if (auto a1 = R1C1ToA1("=" + t)) {
        t = *a1;
        if (!t.empty() && t[0] == '=') t.erase(0, 1);
    }
    std::string sheet;
    long r1, c1, r2, c2;
    if (!ParseAreaRef(t, sheet, r1, c1, r2, c2) || sheet.empty() || !doc.book.SheetNamed(sheet))
        Refuse(std::string("Unable to set the ") + member + " property of the Series class");
    std::string out = QuoteSheetName(sheet) + "!" + CellAddress(r1, c1, true);
    if (r1 != r2 || c1 != c2) out += ":" + CellAddress(r2, c2, true);
    return out;
}

struct Area {
    std::shared_ptr<SheetImpl> sheet;
    long r1 = 0, c1 = 0, r2 = -1, c2 = -1;
};

Area AreaOf(ChartDoc& doc, const std::string& ref) {
    Area a;
    std::string sheet;
    if (!ParseAreaRef(ref, sheet, a.r1, a.c1, a.r2, a.c2)) return {};
    a.sheet = doc.book.SheetNamed(sheet);
    if (!a.sheet || a.sheet->IsChartsheet()) return {};
    return a;
}

bool IsNumber(const Variant& v) {
    auto t = v.type();
    return t == Variant::Type::Long || t == Variant::Type::Double || t == Variant::Type::Date;
}

double NumberOf(const Variant& v) {
    return v.type() == Variant::Type::Long ? double(v.RawLong()) : v.RawDouble();
}

// True when every filled cell of the area holds a number.
bool AllNumbers(ChartDoc& doc, const std::string& ref) {
    Area a = AreaOf(doc, ref);
    if (!a.sheet) return true;
    for (long r = a.r1; r <= a.r2; ++r)
        for (long c = a.c1; c <= a.c2; ++c) {
            Variant v = a.sheet->CellValue(r, c);
            if (!v.IsEmpty() && !IsNumber(v)) return false;
        }
    return true;
}
}  // namespace

void FillCache(ChartDoc& doc, pugi::xml_node ref, bool numeric) {
    std::string f = Kid(ref, "f").text().get();
    RemoveL(ref, "numCache");
    RemoveL(ref, "strCache");
    auto cache = InsertAt(ref, numeric ? "numCache" : "strCache", kRefOrder, doc.c);
    Area a = AreaOf(doc, f);
    long n = a.sheet ? (a.r2 - a.r1 + 1) * (a.c2 - a.c1 + 1) : 0;
    if (numeric) {
        std::string code = a.sheet ? a.sheet->CellFormat(a.r1, a.c1) : "General";
        cache.append_child(doc.C("formatCode").c_str()).text() = code.empty() ? "General" : code.c_str();
    }
    cache.append_child(doc.C("ptCount").c_str()).append_attribute("val") = n;
    long i = 0;
    for (long r = a.r1; a.sheet && r <= a.r2; ++r)
        for (long c = a.c1; c <= a.c2; ++c, ++i) {
            std::string text;
            if (numeric) {
                Variant v = a.sheet->CellValue(r, c);
                if (!IsNumber(v)) continue;
                text = host::NumberToText(NumberOf(v));
            } else {
                text = a.sheet->CellText(r, c);
                if (text.empty()) continue;
            }
            auto pt = cache.append_child(doc.C("pt").c_str());
            pt.append_attribute("idx") = i;
            pt.append_child(doc.C("v").c_str()).text() = text.c_str();
        }
}

namespace {

// Writes data (c:val, c:cat, c:tx ...) as a reference with its cache.
void SetRef(ChartDoc& doc, pugi::xml_node data, const std::string& a1, bool numeric) {
    ClearData(data);
    auto ref = data.append_child(doc.C(numeric ? "numRef" : "strRef").c_str());
    ref.append_child(doc.C("f").c_str()).text() = a1.c_str();
    FillCache(doc, ref, numeric);
}

void SetLiteral(ChartDoc& doc, pugi::xml_node data, const std::vector<Variant>& values, bool numericKind) {
    bool numeric = numericKind;
    if (!numericKind) {
        numeric = true;
        for (auto& v : values)
            if (!v.IsEmpty() && !IsNumber(v)) numeric = false;
    }
    ClearData(data);
    auto lit = data.append_child(doc.C(numeric ? "numLit" : "strLit").c_str());
    if (numeric) lit.append_child(doc.C("formatCode").c_str()).text() = "General";
    lit.append_child(doc.C("ptCount").c_str()).append_attribute("val") = long(values.size());
    for (size_t i = 0; i < values.size(); ++i) {
        if (values[i].IsEmpty()) continue;
        auto pt = lit.append_child(doc.C("pt").c_str());
        pt.append_attribute("idx") = long(i);
        std::string text = numeric ? host::NumberToText(host::CDbl(values[i])) : host::CStr(values[i]);
        pt.append_child(doc.C("v").c_str()).text() = text.c_str();
    }
}

std::string RangeRef(Ref<host::Range> r) {
    if (!r) host::Raise(host::err::ObjectRequired);
    return QuoteSheetName(r->Worksheet()->Name()) + "!" + r->Address(true, true);
}

// Splits the arguments of "=SERIES(a,b,c,d)" at the commas outside quotes, brackets and braces.
std::vector<std::string> SeriesArgs(const std::string& formula, const char* member) {
    std::string t = host::Trim(formula);
    if (!t.empty() && t[0] == '=') t.erase(0, 1);
    if (host::UCase(t.substr(0, 7)) != "SERIES(" || t.back() != ')')
        Refuse(std::string("Unable to set the ") + member + " property of the Series class");
    t = t.substr(7, t.size() - 8);
    std::vector<std::string> out(1);
    int depth = 0;
    bool dq = false, sq = false;
    for (char ch : t) {
        if (ch == '"' && !sq) dq = !dq;
        else if (ch == '\'' && !dq) sq = !sq;
        else if (!dq && !sq && (ch == '(' || ch == '{')) ++depth;
        else if (!dq && !sq && (ch == ')' || ch == '}')) --depth;
        else if (!dq && !sq && depth == 0 && ch == ',') {
            out.emplace_back();
            continue;
        }
        out.back() += ch;
    }
    return out;
}

// Where a data label may stand for each family: the application refuses the others.
bool LabelPositionFits(pugi::xml_node group, const std::string& pos) {
    auto l = LocalName(group);
    std::string grouping = Val(group, "grouping", "clustered");
    if (l == "barChart") {
        if (grouping == "clustered" || grouping == "standard") return pos == "ctr" || pos == "inEnd" || pos == "inBase" || pos == "outEnd";
        return pos == "ctr" || pos == "inEnd" || pos == "inBase";
    }
    if (l == "lineChart" || l == "scatterChart" || l == "bubbleChart")
        return pos == "ctr" || pos == "l" || pos == "r" || pos == "t" || pos == "b";
    if (l == "pieChart" || l == "pie3DChart" || l == "ofPieChart")
        return pos == "ctr" || pos == "inEnd" || pos == "outEnd" || pos == "bestFit";
    return false;
}

const char* PositionName(long v) {
    using namespace host;
    switch (v) {
    case xlLabelPositionCenter: return "ctr";
    case xlLabelPositionInsideEnd: return "inEnd";
    case xlLabelPositionInsideBase: return "inBase";
    case xlLabelPositionOutsideEnd: return "outEnd";
    case xlLabelPositionBestFit: return "bestFit";
    case xlLabelPositionAbove: return "t";
    case xlLabelPositionBelow: return "b";
    case xlLabelPositionLeft: return "l";
    case xlLabelPositionRight: return "r";
    default: return nullptr;
    }
}

long PositionOf(const std::string& s, pugi::xml_node group) {
    using namespace host;
    if (s.empty()) {
        // the application's placement when the file names none
        auto l = LocalName(group);
        if (l == "barChart" || l == "bar3DChart") return Val(group, "grouping", "clustered") == "clustered" ? xlLabelPositionOutsideEnd : xlLabelPositionCenter;
        if (l == "pieChart" || l == "pie3DChart") return xlLabelPositionBestFit;
        if (l == "lineChart" || l == "scatterChart" || l == "bubbleChart") return xlLabelPositionRight;
        return xlLabelPositionCenter;
    }
    if (s == "ctr") return xlLabelPositionCenter;
    if (s == "inEnd") return xlLabelPositionInsideEnd;
    if (s == "inBase") return xlLabelPositionInsideBase;
    if (s == "outEnd") return xlLabelPositionOutsideEnd;
    if (s == "bestFit") return xlLabelPositionBestFit;
    if (s == "t") return xlLabelPositionAbove;
    if (s == "b") return xlLabelPositionBelow;
    if (s == "l") return xlLabelPositionLeft;
    return xlLabelPositionRight;
}

const char* kShows[] = {"showLegendKey", "showVal", "showCatName", "showSerName", "showPercent", "showBubbleSize"};

bool Shows(pugi::xml_node dLbls) {
    if (!dLbls || BoolVal(dLbls, "delete", false)) return false;
    for (auto s : kShows)
        if (s != std::string_view("showLegendKey") && BoolVal(dLbls, s, false)) return true;
    return false;
}

// The labels of a series: its own, else those its group shows for all series. Writing gives the
// series a copy of its own.
pugi::xml_node Labels(ChartDoc& doc, pugi::xml_node ser, bool edit) {
    auto own = Kid(ser, "dLbls");
    if (!edit) {
        if (own) return own;
        if (auto g = Kid(ser.parent(), "dLbls")) return g;
        Refuse("Unable to get the DataLabels property of the Series class");
    }
    doc.Touch();
    if (own) return own;
    auto g = Kid(ser.parent(), "dLbls");
    if (!g) Refuse("Unable to get the DataLabels property of the Series class");
    auto copy = ser.append_copy(g);
    return MoveInto(ser, copy, kSerOrder, doc.c);
}

const std::vector<std::string_view> kDLblOrder = {
    "idx", "delete", "layout", "tx", "numFmt", "spPr", "txPr", "dLblPos", "showLegendKey", "showVal",
    "showCatName", "showSerName", "showPercent", "showBubbleSize", "separator", "extLst"};

// The label of one point: a c:dLbl of the series' labels once it differs from them.
class DataLabelImpl : public DataLabelBase {
public:
    DataLabelImpl(DocPtr d, pugi::xml_node ser, long index) : d_(std::move(d)), ser_(ser), index_(index) {}
    std::string Text() override {
        auto own = Own(false);
        if (auto tx = Kid(own, "tx")) return RichText(*d_, tx);
        // the automatic text: what the labels show of this point
        auto from = own ? own : Labels(*d_, ser_, false);
        auto shows = [&](const char* what) { return BoolVal(from, what, false) || BoolVal(Labels(*d_, ser_, false), what, false); };
        std::vector<std::string> parts;
        if (shows("showSerName")) parts.push_back(SeriesName());
        if (shows("showCatName")) parts.push_back(PointText(CategoriesNode(ser_)));
        if (shows("showVal")) parts.push_back(PointText(ValuesNode(ser_)));
        if (shows("showBubbleSize")) parts.push_back(PointText(Kid(ser_, "bubbleSize")));
        std::string sep = Kid(from, "separator") ? Kid(from, "separator").text().get() : ", ";
        std::string out;
        for (size_t i = 0; i < parts.size(); ++i) out += (i ? sep : "") + parts[i];
        return out;
    }
    void SetText(const std::string& v) override { SetRichText(*d_, Own(true), v, kDLblOrder); }
    std::string Caption() override { return Text(); }
    void SetCaption(const std::string& v) override { SetText(v); }
    bool AutoText() override { return !Kid(Own(false), "tx"); }
    // Turning the automatic text off fixes the text shown now.
    void SetAutoText(bool v) override {
        if (!v) return SetText(Text());
        RemoveL(Own(true), "tx");
    }
    Variant HorizontalAlignment() override { return TextAlignment(Own(false) ? Own(false) : Labels(*d_, ser_, false), false); }
    void SetHorizontalAlignment(const Variant& v) override {
        SetTextAlignment(*d_, Own(true), kDLblOrder, false, v, "Unable to set the HorizontalAlignment property of the DataLabel class");
    }
    Variant VerticalAlignment() override { return TextAlignment(Own(false) ? Own(false) : Labels(*d_, ser_, false), true); }
    void SetVerticalAlignment(const Variant& v) override {
        SetTextAlignment(*d_, Own(true), kDLblOrder, true, v, "Unable to set the VerticalAlignment property of the DataLabel class");
    }
    Variant Orientation() override {
        return TextOrientation(Own(false) ? Own(false) : Labels(*d_, ser_, false), host::xlHorizontal);
    }
    void SetOrientation(const Variant& v) override { SetTextOrientation(*d_, Own(true), kDLblOrder, v); }
    Ref<host::Font> Font() override { return MakeFont(d_, H()); }
    Variant AutoScaleFont() override {
        auto series = SeriesLabels();
        return AutoScaleFontOf(H(), &series);
    }
    void SetAutoScaleFont(const Variant& v) override { SetAutoScaleFontOf(*d_, H(), v); }
    long Position() override {
        auto own = Own(false);
        std::string pos = Val(own, "dLblPos");
        if (pos.empty()) pos = Val(Labels(*d_, ser_, false), "dLblPos");
        return PositionOf(pos, ser_.parent());
    }
    void SetPosition(long v) override {
        const char* p = PositionName(v);
        if (!p || !LabelPositionFits(ser_.parent(), p)) Refuse("Unable to set the Position property of the DataLabel class");
        SetVal(Own(true), "dLblPos", p, kDLblOrder, d_->c);
    }
    bool ShowValue() override { return Flag("showVal"); }
    void SetShowValue(bool v) override { SetVal(Own(true), "showVal", v ? "1" : "0", kDLblOrder, d_->c); }
    bool ShowCategoryName() override { return Flag("showCatName"); }
    void SetShowCategoryName(bool v) override { SetVal(Own(true), "showCatName", v ? "1" : "0", kDLblOrder, d_->c); }
    bool ShowSeriesName() override { return Flag("showSerName"); }
    void SetShowSeriesName(bool v) override { SetVal(Own(true), "showSerName", v ? "1" : "0", kDLblOrder, d_->c); }
    void SetFlag(const char* what, bool v) { SetVal(Own(true), what, v ? "1" : "0", kDLblOrder, d_->c); }
    void SetFlag(const char* what, const std::string& text) { Ensure(Own(true), what, kDLblOrder, d_->c).text() = text.c_str(); }
    Ref<host::Interior> Interior() override { return MakeInterior(d_, H()); }
    Ref<host::Border> Border() override { return MakeBorder(d_, H()); }
    Ref<host::ChartFillFormat> Fill() override { return MakeFill(d_, H()); }
    void Delete() override {
        auto own = Own(true);
        while (auto ch = own.first_child()) own.remove_child(ch);
        SetVal(own, "idx", std::to_string(index_ - 1), kDLblOrder, d_->c);
        SetVal(own, "delete", "1", kDLblOrder, d_->c);
    }

private:
    // The point's own label element; made on writing, with the flags of the series' labels.
    pugi::xml_node Own(bool edit) {
        auto labels = Labels(*d_, ser_, edit);
        for (auto l : ChildrenL(labels, "dLbl"))
            if (LongOf(Val(l, "idx", "-1")) == index_ - 1) return l;
        if (!edit) return {};
        pugi::xml_node before;
        for (auto l : ChildrenL(labels, "dLbl"))
            if (!before && LongOf(Val(l, "idx", "-1")) > index_ - 1) before = l;
        auto l = before ? labels.insert_child_before(d_->C("dLbl").c_str(), before) : InsertAt(labels, "dLbl", kDLblsOrder, d_->c);
        SetVal(l, "idx", std::to_string(index_ - 1), kDLblOrder, d_->c);
        for (const char* f : {"dLblPos", "showLegendKey", "showVal", "showCatName", "showSerName", "showPercent", "showBubbleSize"}) {
            if (auto n = Kid(labels, f)) SetVal(l, f, n.attribute("val").value(), kDLblOrder, d_->c);
            else if (std::string_view(f) != "dLblPos") SetVal(l, f, "0", kDLblOrder, d_->c);
        }
        return l;
    }
    bool Flag(const char* what) {
        auto own = Own(false);
        if (Kid(own, what)) return BoolVal(own, what, false);
        return BoolVal(Labels(*d_, ser_, false), what, false);
    }
    Holder SeriesLabels() {
        auto d = d_;
        auto ser = ser_;
        return Holder{[d, ser](bool e) { return Labels(*d, ser, e); }, &kDLblsOrder, 0xFFFFFF, 9};
    }
    Holder H() {
        auto d = d_;
        auto ser = ser_;
        long index = index_;
        return Holder{[d, ser, index](bool e) { return DataLabelImpl(d, ser, index).Own(e); }, &kDLblOrder, 0xFFFFFF, 9};
    }
    std::string SeriesName() {
        if (auto tx = Kid(ser_, "tx")) return RichText(*d_, tx);
        return "Series" + std::to_string(Idx(ser_) + 1);
    }
    std::string PointText(pugi::xml_node data) {
        auto values = CachedValues(data);
        if (index_ > long(values.size())) return "";
        const auto& v = values[index_ - 1];
        if (v.IsString()) return v.RawString();
        return v.IsEmpty() ? "" : host::NumberToText(host::CDbl(v));
    }
    DocPtr d_;
    pugi::xml_node ser_;
    long index_;
};

class DataLabelsImpl : public DataLabelsBase {
public:
    DataLabelsImpl(DocPtr d, pugi::xml_node ser) : d_(std::move(d)), ser_(ser) {}
    long Count() override {
        auto v = CachedValues(ValuesNode(ser_));
        return long(v.size());
    }
    Variant Orientation() override { return TextOrientation(N(false), host::xlHorizontal); }
    void SetOrientation(const Variant& v) override { SetTextOrientation(*d_, N(true), kDLblsOrder, v); }
    Ref<host::DataLabel> Item(long index) override {
        if (index < 1 || index > Count()) Refuse("Unable to get the Item property of the DataLabels class");
        return std::make_shared<DataLabelImpl>(d_, ser_, index);
    }
    bool AutoText() override { return true; }
    Variant HorizontalAlignment() override { return TextAlignment(N(false), false); }
    void SetHorizontalAlignment(const Variant& v) override {
        SetTextAlignment(*d_, N(true), kDLblsOrder, false, v, "Unable to set the HorizontalAlignment property of the DataLabels class");
    }
    Variant VerticalAlignment() override { return TextAlignment(N(false), true); }
    void SetVerticalAlignment(const Variant& v) override {
        SetTextAlignment(*d_, N(true), kDLblsOrder, true, v, "Unable to set the VerticalAlignment property of the DataLabels class");
    }
    Ref<host::Font> Font() override { return MakeFont(d_, H()); }
    Variant AutoScaleFont() override { return AutoScaleFontOf(H()); }
    void SetAutoScaleFont(const Variant& v) override { SetAutoScaleFontOf(*d_, H(), v); }
    long Position() override { return PositionOf(Val(N(false), "dLblPos"), ser_.parent()); }
    void SetPosition(long v) override {
        const char* p = PositionName(v);
        if (!p || !LabelPositionFits(ser_.parent(), p)) Refuse("Unable to set the Position property of the DataLabels class");
        SetVal(N(true), "dLblPos", p, kDLblsOrder, d_->c);
    }
    std::string NumberFormat() override {
        auto nf = Kid(N(false), "numFmt");
        return nf ? nf.attribute("formatCode").value() : "General";
    }
    void SetNumberFormat(const std::string& v) override {
        auto d = N(true);
        auto nf = Ensure(d, "numFmt", kDLblsOrder, d_->c);
        nf.remove_attribute("formatCode");
        nf.remove_attribute("sourceLinked");
        nf.append_attribute("formatCode") = v.c_str();
        nf.append_attribute("sourceLinked") = "0";
    }
    bool NumberFormatLinked() override {
        auto nf = Kid(N(false), "numFmt");
        return nf ? nf.attribute("sourceLinked").as_bool() : true;
    }
    void SetNumberFormatLinked(bool v) override {
        auto nf = Ensure(N(true), "numFmt", kDLblsOrder, d_->c);
        if (!nf.attribute("formatCode")) nf.append_attribute("formatCode") = "General";
        if (!nf.attribute("sourceLinked")) nf.append_attribute("sourceLinked");
        nf.attribute("sourceLinked") = v ? "1" : "0";
    }
    Variant Type() override {
        auto d = N(false);
        bool val = BoolVal(d, "showVal", false), cat = BoolVal(d, "showCatName", false);
        bool pct = BoolVal(d, "showPercent", false), bub = BoolVal(d, "showBubbleSize", false);
        if (pct && cat) return host::xlDataLabelsShowLabelAndPercent;
        if (pct) return host::xlDataLabelsShowPercent;
        if (cat) return host::xlDataLabelsShowLabel;
        if (bub) return host::xlDataLabelsShowBubbleSizes;
        if (val) return host::xlDataLabelsShowValue;
        return host::xlDataLabelsShowNone;
    }
    void SetType(const Variant& v) override {
        long t = host::CLng(v);
        using namespace host;
        if (t != xlDataLabelsShowValue && t != xlDataLabelsShowPercent && t != xlDataLabelsShowLabel &&
            t != xlDataLabelsShowLabelAndPercent && t != xlDataLabelsShowBubbleSizes)
            Refuse("Unable to set the Type property of the DataLabels class");
        Set("showVal", t == xlDataLabelsShowValue);
        Set("showPercent", t == xlDataLabelsShowPercent || t == xlDataLabelsShowLabelAndPercent);
        Set("showCatName", t == xlDataLabelsShowLabel || t == xlDataLabelsShowLabelAndPercent);
        Set("showBubbleSize", t == xlDataLabelsShowBubbleSizes);
    }
    bool ShowValue() override { return BoolVal(N(false), "showVal", false); }
    void SetShowValue(bool v) override { Set("showVal", v); }
    bool ShowCategoryName() override { return BoolVal(N(false), "showCatName", false); }
    void SetShowCategoryName(bool v) override { Set("showCatName", v); }
    bool ShowSeriesName() override { return BoolVal(N(false), "showSerName", false); }
    void SetShowSeriesName(bool v) override { Set("showSerName", v); }
    bool ShowPercentage() override { return BoolVal(N(false), "showPercent", false); }
    void SetShowPercentage(bool v) override { Set("showPercent", v); }
    bool ShowBubbleSize() override { return BoolVal(N(false), "showBubbleSize", false); }
    void SetShowBubbleSize(bool v) override { Set("showBubbleSize", v); }
    bool ShowLegendKey() override { return BoolVal(N(false), "showLegendKey", false); }
    void SetShowLegendKey(bool v) override { Set("showLegendKey", v); }
    Variant Separator() override {
        auto s = Kid(N(false), "separator");
        return s ? Variant(std::string(s.text().get())) : Variant(",");
    }
    void SetSeparator(const Variant& v) override {
        auto s = Ensure(N(true), "separator", kDLblsOrder, d_->c);
        s.text() = host::CStr(v).c_str();
    }
    Ref<host::Interior> Interior() override { return MakeInterior(d_, H()); }
    Ref<host::Border> Border() override { return MakeBorder(d_, H()); }
    Ref<host::ChartFillFormat> Fill() override { return MakeFill(d_, H()); }
    void Delete() override {
        d_->Touch();
        RemoveL(ser_, "dLbls");
        if (Shows(Kid(ser_.parent(), "dLbls")))
            SetVal(InsertAt(ser_, "dLbls", kSerOrder, d_->c), "delete", "1", kDLblsOrder, d_->c);
    }

private:
    pugi::xml_node N(bool edit) { return Labels(*d_, ser_, edit); }
    void Set(const char* what, bool v) { SetVal(N(true), what, v ? "1" : "0", kDLblsOrder, d_->c); }
    Holder H() {
        auto ser = ser_;
        auto d = d_;
        return Holder{[ser, d](bool e) { return Labels(*d, ser, e); }, &kDLblsOrder, 0xFFFFFF, 9};
    }
    DocPtr d_;
    pugi::xml_node ser_;
};

// ---------------------------------------------------------------- markers and points

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
    long automatic = SeriesAutoColor(doc, Idx(ser));
    auto sp = Kid(ser, "spPr");
    if (auto f = Kid(sp, "solidFill")) return ColorOf(doc, f, automatic);
    if (auto f = Kid(Kid(sp, "ln"), "solidFill")) return ColorOf(doc, f, automatic);
    return automatic;
}

// The marker of a series or of one point (owner(edit) answers its c:ser or c:dPt); a point
// without a marker of its own shows the series' marker. The fill is the background, the line the
// foreground.
class Marker {
public:
    Marker(DocPtr d, pugi::xml_node ser, std::function<pugi::xml_node(bool)> owner,
           const std::vector<std::string_view>& order, const char* cls)
        : d_(std::move(d)), ser_(ser), owner_(std::move(owner)), order_(order), cls_(cls) {}

    long Style() {
        std::string sym = Val(Node(), "symbol");
        if (sym.empty()) return TakesMarkers(ser_.parent()) ? host::xlMarkerStyleAutomatic : host::xlMarkerStyleNone;
        for (auto& [xl, name] : kSymbols)
            if (sym == name) return xl;
        return host::xlMarkerStyleAutomatic;
    }
    void SetStyle(long v) {
        const char* sym = nullptr;
        for (auto& [xl, name] : kSymbols)
            if (xl == v && v != host::xlMarkerStylePicture) sym = name;
        if (!sym) Refuse(std::string("Unable to set the MarkerStyle property of the ") + cls_ + " class");
        SetVal(Edit("MarkerStyle"), "symbol", sym, kMarkerOrder, d_->c);
    }
    long Size() { return LongOf(Val(Node(), "size", "5")); }
    void SetSize(long v) {
        if (v < 2 || v > 72) Refuse(std::string("Unable to set the MarkerSize property of the ") + cls_ + " class");
        SetVal(Edit("MarkerSize"), "size", std::to_string(v), kMarkerOrder, d_->c);
    }
    long Color(bool fore) {
        auto f = Paint(Kid(Node(), "spPr"), fore);
        if (f && LocalName(f) == "noFill") return 0xFFFFFF;
        return ColorOf(*d_, f, SeriesColor(*d_, ser_));
    }
    void SetColor(bool fore, long rgb, const char* member) {
        if (rgb < 0 || rgb > 0xFFFFFF) Refuse(std::string("Unable to set the ") + member + " property of the " + cls_ + " class");
        auto sp = Ensure(Edit(member), "spPr", kMarkerOrder, d_->c);
        auto target = fore ? Ensure(sp, "ln", kSpPrOrder, d_->a) : sp;
        const auto& order = fore ? kLnOrder : kSpPrOrder;
        ClearPaint(target);
        InsertAt(target, "solidFill", order, d_->a).append_child(d_->A("srgbClr").c_str()).append_attribute("val") =
            RgbToHex(rgb).c_str();
    }
    long ColorIndex(bool fore) {
        auto f = Paint(Kid(Node(), "spPr"), fore);
        if (!f) return host::xlColorIndexAutomatic;
        if (LocalName(f) == "noFill") return host::xlColorIndexNone;
        return NearestPaletteIndex(*d_, Color(fore));
    }
    void SetColorIndex(bool fore, long v, const char* member) {
        if (v >= 1 && v <= 56) return SetColor(fore, d_->PaletteRgb(v), member);
        if (v != host::xlColorIndexNone && v != host::xlColorIndexAutomatic)
            Refuse(std::string("Unable to set the ") + member + " property of the " + cls_ + " class");
        auto sp = Ensure(Edit(member), "spPr", kMarkerOrder, d_->c);
        auto target = fore ? Ensure(sp, "ln", kSpPrOrder, d_->a) : sp;
        ClearPaint(target);
        if (v == host::xlColorIndexNone) InsertAt(target, "noFill", fore ? kLnOrder : kSpPrOrder, d_->a);
    }

private:
    pugi::xml_node Node() {
        if (auto own = Kid(owner_(false), "marker")) return own;
        return Kid(ser_, "marker");
    }
    pugi::xml_node Edit(const char* member) {
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
    static pugi::xml_node Paint(pugi::xml_node sp, bool fore) {
        auto in = fore ? Kid(sp, "ln") : sp;
        for (const char* f : {"noFill", "solidFill", "gradFill", "pattFill"})
            if (auto n = Kid(in, f)) return n;
        return {};
    }
    static void ClearPaint(pugi::xml_node n) {
        for (const char* f : {"noFill", "solidFill", "gradFill", "blipFill", "pattFill", "grpFill"}) RemoveL(n, f);
    }
    DocPtr d_;
    pugi::xml_node ser_;
    std::function<pugi::xml_node(bool)> owner_;
    const std::vector<std::string_view>& order_;
    const char* cls_;
};

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

class PointImpl : public PointBase {
public:
    PointImpl(DocPtr d, pugi::xml_node ser, long index) : d_(std::move(d)), ser_(ser), index_(index) {}

    bool HasDataLabel() override {
        auto labels = Kid(ser_, "dLbls");
        if (!labels && Kid(ser_.parent(), "dLbls")) labels = Kid(ser_.parent(), "dLbls");
        for (auto l : ChildrenL(labels, "dLbl"))
            if (LongOf(Val(l, "idx", "-1")) == index_ - 1) return Shows(l);
        return Shows(labels);
    }
    void SetHasDataLabel(bool v) override {
        if (v == HasDataLabel()) return;
        d_->Touch();
        if (!v) return DataLabelImpl(d_, ser_, index_).Delete();
        if (!Kid(ser_, "dLbls") && !Kid(ser_.parent(), "dLbls")) {
            auto labels = InsertAt(ser_, "dLbls", kSerOrder, d_->c);
            for (const char* f : {"showLegendKey", "showVal", "showCatName", "showSerName", "showPercent", "showBubbleSize"})
                SetVal(labels, f, "0", kDLblsOrder, d_->c);
        }
        // a deleted label starts again from nothing
        auto labels = Labels(*d_, ser_, true);
        for (auto l : ChildrenL(labels, "dLbl"))
            if (LongOf(Val(l, "idx", "-1")) == index_ - 1 && Kid(l, "delete")) labels.remove_child(l);
        DataLabelImpl(d_, ser_, index_).SetShowValue(true);
    }
    Ref<host::DataLabel> DataLabel() override {
        if (!HasDataLabel()) Refuse("Unable to get the DataLabel property of the Point class");
        return std::make_shared<DataLabelImpl>(d_, ser_, index_);
    }
    void ApplyDataLabels(long type, const Variant& legendKey, const Variant&, const Variant&, const Variant& serName,
                         const Variant& catName, const Variant& value, const Variant& percent, const Variant& bubble,
                         const Variant& sep) override {
        using namespace host;
        if (type == xlDataLabelsShowNone) return SetHasDataLabel(false);
        bool val = type == xlDataLabelsShowValue, pct = type == xlDataLabelsShowPercent || type == xlDataLabelsShowLabelAndPercent;
        bool cat = type == xlDataLabelsShowLabel || type == xlDataLabelsShowLabelAndPercent;
        bool bub = type == xlDataLabelsShowBubbleSizes;
        if (!val && !pct && !cat && !bub) Refuse("Method 'ApplyDataLabels' of object 'Point' failed");
        SetHasDataLabel(true);
        auto pick = [](const Variant& v, bool dflt) { return v.IsEmpty() ? dflt : CBool(v); };
        DataLabelImpl l(d_, ser_, index_);
        l.SetShowValue(pick(value, val));
        l.SetShowCategoryName(pick(catName, cat));
        l.SetShowSeriesName(pick(serName, false));
        l.SetFlag("showPercent", pick(percent, pct));
        l.SetFlag("showBubbleSize", pick(bubble, bub));
        l.SetFlag("showLegendKey", pick(legendKey, false));
        if (!sep.IsEmpty()) l.SetFlag("separator", CStr(sep));
    }
    Ref<host::Interior> Interior() override { return MakeInterior(d_, H()); }
    Ref<host::Border> Border() override { return MakeBorder(d_, H()); }
    Ref<host::ChartFillFormat> Fill() override { return MakeFill(d_, H()); }
    long MarkerStyle() override { return M().Style(); }
    void SetMarkerStyle(long v) override { M().SetStyle(v); }
    long MarkerSize() override { return M().Size(); }
    void SetMarkerSize(long v) override { M().SetSize(v); }
    long MarkerBackgroundColor() override { return M().Color(false); }
    void SetMarkerBackgroundColor(long rgb) override { M().SetColor(false, rgb, "MarkerBackgroundColor"); }
    long MarkerBackgroundColorIndex() override { return M().ColorIndex(false); }
    void SetMarkerBackgroundColorIndex(long v) override { M().SetColorIndex(false, v, "MarkerBackgroundColorIndex"); }
    long MarkerForegroundColor() override { return M().Color(true); }
    void SetMarkerForegroundColor(long rgb) override { M().SetColor(true, rgb, "MarkerForegroundColor"); }
    long MarkerForegroundColorIndex() override { return M().ColorIndex(true); }
    void SetMarkerForegroundColorIndex(long v) override { M().SetColorIndex(true, v, "MarkerForegroundColorIndex"); }
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
    Marker M() {
        auto d = d_;
        auto ser = ser_;
        long index = index_;
        return Marker(d_, ser_, [d, ser, index](bool e) { return PointNode(*d, ser, index, e); }, kDPtOrder, "Point");
    }
    DocPtr d_;
    pugi::xml_node ser_;
    long index_;
};

class PointsImpl : public PointsBase {
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

class SeriesImpl : public SeriesBase {
public:
    SeriesImpl(DocPtr d, pugi::xml_node ser) : d_(std::move(d)), ser_(ser) {}
    using SeriesBase::SetValues;
    using SeriesBase::SetXValues;
    using SeriesBase::SetBubbleSizes;
    using SeriesBase::DataLabels;

    std::string Name() override {
        Live();
        if (auto tx = Kid(ser_, "tx")) return RichText(*d_, tx);
        return "Series" + std::to_string(Idx(ser_) + 1);
    }
    void SetName(const std::string& v) override {
        Live();
        d_->Touch();
        auto tx = Ensure(ser_, "tx", kSerOrder, d_->c);
        if (!v.empty() && v[0] == '=') {
            std::string a1 = ToA1(*d_, v, "Name");
            SetRef(*d_, tx, a1, false);
        } else {
            ClearData(tx);
            tx.append_child(d_->C("v").c_str()).text() = v.c_str();
        }
    }
    std::vector<Variant> Values() override { Live(); return CachedValues(ValuesNode(ser_)); }
    void SetValues(const Variant& reference) override {
        if (!reference.IsString()) return SetValues(std::vector<Variant>{reference});
        SetValuesRef(ToA1(*d_, reference.RawString(), "Values"));
    }
    void SetValues(Ref<host::Range> source) override { SetValuesRef(ToA1(*d_, RangeRef(source), "Values")); }
    void SetValues(const std::vector<Variant>& values) override {
        SetLiteral(*d_, Data(false), values, true);
    }
    std::vector<Variant> XValues() override { Live(); return CachedValues(CategoriesNode(ser_)); }
    void SetXValues(const Variant& reference) override {
        if (!reference.IsString()) return SetXValues(std::vector<Variant>{reference});
        SetXValuesRef(ToA1(*d_, reference.RawString(), "XValues"));
    }
    void SetXValues(Ref<host::Range> source) override { SetXValuesRef(ToA1(*d_, RangeRef(source), "XValues")); }
    void SetXValues(const std::vector<Variant>& values) override { SetLiteral(*d_, Data(true), values, false); }
    Variant BubbleSizes() override {
        Bubbles("Unable to get the BubbleSizes property of the Series class");
        auto b = Kid(ser_, "bubbleSize");
        std::string f = RefText(b);
        if (!f.empty()) return "=" + f;
        return DataText(b);
    }
    void SetBubbleSizes(const Variant& reference) override {
        if (!reference.IsString()) return SetBubbleSizes(std::vector<Variant>{reference});
        SetRef(*d_, SizesData(), ToA1(*d_, reference.RawString(), "BubbleSizes"), true);
    }
    void SetBubbleSizes(Ref<host::Range> source) override {
        SetRef(*d_, SizesData(), ToA1(*d_, RangeRef(source), "BubbleSizes"), true);
    }
    void SetBubbleSizes(const std::vector<Variant>& values) override { SetLiteral(*d_, SizesData(), values, true); }
    std::string Formula() override {
        Live();
        std::string name;
        if (auto tx = Kid(ser_, "tx")) {
            if (auto f = Kid(Kid(tx, "strRef"), "f")) name = f.text().get();
            else name = "\"" + RichText(*d_, tx) + "\"";
        }
        std::string out = "=SERIES(" + name + "," + DataText(CategoriesNode(ser_)) + "," + DataText(ValuesNode(ser_)) +
                          "," + std::to_string(PlotOrder());
        if (auto b = Kid(ser_, "bubbleSize")) out += "," + DataText(b);
        return out + ")";
    }
    void SetFormula(const std::string& v) override {
        auto args = SeriesArgs(v, "Formula");
        if (args.size() < 3 || args.size() > 5) Refuse("Unable to set the Formula property of the Series class");
        std::string name = host::Trim(args[0]);
        if (name.empty()) {
            d_->Touch();
            RemoveL(ser_, "tx");
        } else if (name.front() == '"') {
            SetName(name.size() >= 2 ? name.substr(1, name.size() - 2) : "");
        } else {
            SetName("=" + name);
        }
        std::string cat = host::Trim(args[1]);
        if (cat.empty()) {
            d_->Touch();
            RemoveL(ser_, "cat");
            RemoveL(ser_, "xVal");
        } else {
            SetXValues(Variant("=" + cat));
        }
        SetValues(Variant("=" + host::Trim(args[2])));
        if (args.size() >= 4 && !host::Trim(args[3]).empty()) SetPlotOrder(host::CLng(Variant(host::Trim(args[3]))));
    }
    long PlotOrder() override {
        Live();
        auto sers = GroupSeries();
        return long(std::find(sers.begin(), sers.end(), ser_) - sers.begin()) + 1;
    }
    void SetPlotOrder(long v) override {
        auto sers = GroupSeries();
        if (v < 1 || v > long(sers.size())) Refuse("Unable to set the PlotOrder property of the Series class");
        std::vector<long> orders;
        for (auto s : sers) orders.push_back(Order(s));
        sers.erase(std::find(sers.begin(), sers.end(), ser_));
        sers.insert(sers.begin() + (v - 1), ser_);
        d_->Touch();
        auto g = ser_.parent();
        for (size_t i = 0; i < sers.size(); ++i) {
            SetVal(sers[i], "order", std::to_string(orders[i]), kSerOrder, d_->c);
            MoveInto(g, sers[i], kGroupOrder, d_->c);
        }
    }
    long ChartType() override { Live(); return GroupChartType(ser_.parent(), *d_); }
    void SetChartType(long v) override {
        Live();
        d_->Touch();
        SetSeriesChartType(*d_, ser_, v);
    }
    long AxisGroup() override {
        Live();
        auto first = Kid(ser_.parent(), "axId");
        for (auto g : Groups(*d_)) {
            auto a = Kid(g, "axId");
            if (a) return std::string_view(a.attribute("val").value()) == first.attribute("val").value() ? host::xlPrimary : host::xlSecondary;
        }
        return host::xlPrimary;
    }
    Ref<host::Interior> Interior() override { return MakeInterior(d_, H()); }
    Ref<host::Border> Border() override { return MakeBorder(d_, H()); }
    Ref<host::ChartFillFormat> Fill() override { return MakeFill(d_, H()); }
    long Explosion() override { Live(); return LongOf(Val(ser_, "explosion", "0")); }
    void SetExplosion(long v) override {
        auto l = LocalName(ser_.parent());
        if (l != "pieChart" && l != "pie3DChart" && l != "doughnutChart" && l != "ofPieChart")
            Refuse("Unable to set the Explosion property of the Series class");
        if (v < 0 || v > 400) Refuse("Unable to set the Explosion property of the Series class");
        d_->Touch();
        SetVal(ser_, "explosion", std::to_string(v), kSerOrder, d_->c);
    }
    bool InvertIfNegative() override { Live(); return BoolVal(ser_, "invertIfNegative", false); }
    void SetInvertIfNegative(bool v) override {
        Live();
        auto l = LocalName(ser_.parent());
        if (l != "barChart" && l != "bar3DChart" && l != "bubbleChart")
            Refuse("Unable to set the InvertIfNegative property of the Series class");
        d_->Touch();
        SetVal(ser_, "invertIfNegative", v ? "1" : "0", kSerOrder, d_->c);
    }
    bool Smooth() override { Live(); return BoolVal(ser_, "smooth", false); }
    void SetSmooth(bool v) override {
        Live();
        auto l = LocalName(ser_.parent());
        if (l != "lineChart" && l != "scatterChart") Refuse("Unable to set the Smooth property of the Series class");
        d_->Touch();
        SetVal(ser_, "smooth", v ? "1" : "0", kSerOrder, d_->c);
    }
    bool HasLeaderLines() override {
        auto d = Kid(ser_, "dLbls");
        return d && BoolVal(d, "showLeaderLines", false);
    }
    void SetHasLeaderLines(bool v) override {
        if (!HasDataLabels()) Refuse("Unable to set the HasLeaderLines property of the Series class");
        SetVal(Labels(*d_, ser_, true), "showLeaderLines", v ? "1" : "0", kDLblsOrder, d_->c);
    }

    long MarkerStyle() override { return M().Style(); }
    void SetMarkerStyle(long v) override { M().SetStyle(v); }
    long MarkerSize() override { return M().Size(); }
    void SetMarkerSize(long v) override { M().SetSize(v); }
    long MarkerBackgroundColor() override { return M().Color(false); }
    void SetMarkerBackgroundColor(long rgb) override { M().SetColor(false, rgb, "MarkerBackgroundColor"); }
    long MarkerBackgroundColorIndex() override { return M().ColorIndex(false); }
    void SetMarkerBackgroundColorIndex(long v) override { M().SetColorIndex(false, v, "MarkerBackgroundColorIndex"); }
    long MarkerForegroundColor() override { return M().Color(true); }
    void SetMarkerForegroundColor(long rgb) override { M().SetColor(true, rgb, "MarkerForegroundColor"); }
    long MarkerForegroundColorIndex() override { return M().ColorIndex(true); }
    void SetMarkerForegroundColorIndex(long v) override { M().SetColorIndex(true, v, "MarkerForegroundColorIndex"); }
    Ref<host::Points> Points() override {
        Live();
        return std::make_shared<PointsImpl>(d_, ser_);
    }
    Ref<host::Point> Points(long index) override { return Points()->Item(index); }
    void ClearFormats() override {
        Live();
        d_->Touch();
        RemoveL(ser_, "spPr");
        RemoveL(ser_, "dPt");
        RemoveL(ser_, "marker");
        ConformSeriesTo(*d_, ser_, GroupChartType(ser_.parent(), *d_));  // painted as a new series is
    }

    bool HasDataLabels() override {
        Live();
        if (auto own = Kid(ser_, "dLbls")) return Shows(own);
        return Shows(Kid(ser_.parent(), "dLbls"));
    }
    void SetHasDataLabels(bool v) override {
        if (v) {
            if (!HasDataLabels()) ApplyDataLabels(host::xlDataLabelsShowValue, {}, {}, {}, {}, {}, {}, {}, {}, {});
            return;
        }
        d_->Touch();
        RemoveL(ser_, "dLbls");
        if (Shows(Kid(ser_.parent(), "dLbls"))) {
            auto d = InsertAt(ser_, "dLbls", kSerOrder, d_->c);
            SetVal(d, "delete", "1", kDLblsOrder, d_->c);
        }
    }
    Ref<host::DataLabels> DataLabels() override {
        if (!HasDataLabels()) Refuse("Unable to get the DataLabels property of the Series class");
        return std::make_shared<DataLabelsImpl>(d_, ser_);
    }
    Ref<host::DataLabel> DataLabels(long index) override {
        if (!HasDataLabels()) Refuse("Unable to get the DataLabels property of the Series class");
        long n = long(CachedValues(ValuesNode(ser_)).size());
        if (index < 1 || (n > 0 && index > n)) Refuse("Unable to get the DataLabels property of the Series class");
        return std::make_shared<DataLabelImpl>(d_, ser_, index);
    }
    void ApplyDataLabels(long type, const Variant& legendKey, const Variant&, const Variant& leader,
                         const Variant& serName, const Variant& catName, const Variant& value, const Variant& percent,
                         const Variant& bubble, const Variant& sep) override {
        Live();
        using namespace host;
        if (type == xlDataLabelsShowNone) return SetHasDataLabels(false);
        bool val = type == xlDataLabelsShowValue, pct = type == xlDataLabelsShowPercent || type == xlDataLabelsShowLabelAndPercent;
        bool cat = type == xlDataLabelsShowLabel || type == xlDataLabelsShowLabelAndPercent;
        bool bub = type == xlDataLabelsShowBubbleSizes;
        if (!val && !pct && !cat && !bub) Refuse("Method 'ApplyDataLabels' of object 'Series' failed");
        auto l = LocalName(ser_.parent());
        bool pie = l == "pieChart" || l == "pie3DChart" || l == "doughnutChart" || l == "ofPieChart";
        if (pct && !pie && !(percent.type() == Variant::Type::Boolean))
            Refuse("Method 'ApplyDataLabels' of object 'Series' failed");
        auto pick = [](const Variant& v, bool dflt) { return v.IsEmpty() ? dflt : CBool(v); };
        d_->Touch();
        auto d = Kid(ser_, "dLbls");
        if (!d) d = InsertAt(ser_, "dLbls", kSerOrder, d_->c);
        RemoveL(d, "delete");
        SetVal(d, "showLegendKey", pick(legendKey, false) ? "1" : "0", kDLblsOrder, d_->c);
        SetVal(d, "showVal", pick(value, val) ? "1" : "0", kDLblsOrder, d_->c);
        SetVal(d, "showCatName", pick(catName, cat) ? "1" : "0", kDLblsOrder, d_->c);
        SetVal(d, "showSerName", pick(serName, false) ? "1" : "0", kDLblsOrder, d_->c);
        SetVal(d, "showPercent", pick(percent, pct) ? "1" : "0", kDLblsOrder, d_->c);
        SetVal(d, "showBubbleSize", pick(bubble, bub) ? "1" : "0", kDLblsOrder, d_->c);
        if (!sep.IsEmpty()) Ensure(d, "separator", kDLblsOrder, d_->c).text() = CStr(sep).c_str();
        if (pie || !leader.IsEmpty()) SetVal(d, "showLeaderLines", pick(leader, pie) ? "1" : "0", kDLblsOrder, d_->c);
    }
    void Delete() override {
        Live();
        d_->Touch();
        auto g = ser_.parent();
        std::string idx = Val(ser_, "idx", "0");
        g.remove_child(ser_);
        ser_ = pugi::xml_node();
        // its legend entry goes with it, so that a later series of its number shows again
        bool none = AllSeries(*d_).empty();
        auto legend = Kid(d_->Chart(false), "legend");
        for (auto e : ChildrenL(legend, "legendEntry"))
            if (none || Val(e, "idx", "-1") == idx) legend.remove_child(e);
        // a group left empty goes when others remain
        if (ChildrenL(g, "ser").empty() && Groups(*d_).size() > 1) g.parent().remove_child(g);
    }

private:
    void Live() {
        if (!ser_ || !ser_.parent()) host::Raise(host::err::ObjectVariableNotSet);
    }
    Holder H() {
        Live();
        auto ser = ser_;
        return Holder{[ser](bool) { return ser; }, &kSerOrder, SeriesAutoColor(*d_, Idx(ser_)), 10};
    }
    Marker M() {
        Live();
        auto ser = ser_;
        return Marker(d_, ser_, [ser](bool) { return ser; }, kSerOrder, "Series");
    }
    std::vector<pugi::xml_node> GroupSeries() {
        auto sers = ChildrenL(ser_.parent(), "ser");
        std::stable_sort(sers.begin(), sers.end(), [](auto a, auto b) { return Order(a) < Order(b); });
        return sers;
    }
    pugi::xml_node Data(bool categories) {
        Live();
        d_->Touch();
        bool xy = XYSeries(ser_);
        const char* name = categories ? (xy ? "xVal" : "cat") : (xy ? "yVal" : "val");
        return Ensure(ser_, name, kSerOrder, d_->c);
    }
    void Bubbles(const char* refusal) {
        Live();
        if (LocalName(ser_.parent()) != "bubbleChart") Refuse(refusal);
    }
    pugi::xml_node SizesData() {
        Live();
        // The older application takes sizes on a series of any type and draws them once the chart
        // is a bubble chart.
        bool bubbles = LocalName(ser_.parent()) == "bubbleChart";
        if (!bubbles && host::Val(d_->book.app().Version()) >= 12) Refuse("Unable to set the BubbleSizes property of the Series class");
        d_->Touch();
        return bubbles ? Ensure(ser_, "bubbleSize", kSerOrder, d_->c) : HeldBubbleSizes(*d_, ser_, true);
    }
    void SetValuesRef(const std::string& a1) { SetRef(*d_, Data(false), a1, true); }
    void SetXValuesRef(const std::string& a1) { SetRef(*d_, Data(true), a1, AllNumbers(*d_, a1)); }
    std::string DataText(pugi::xml_node data) {
        if (!data) return "";
        std::string f = RefText(data);
        if (!f.empty()) return f;
        auto values = CachedValues(data);
        if (values.empty()) return "";
        std::string out = "{";
        for (size_t i = 0; i < values.size(); ++i) {
            if (i) out += ",";
            if (values[i].IsString()) out += "\"" + values[i].RawString() + "\"";
            else if (!values[i].IsEmpty()) out += host::NumberToText(host::CDbl(values[i]));
        }
        return out + "}";
    }
    DocPtr d_;
    pugi::xml_node ser_;
};

class SeriesCollectionImpl : public SeriesCollectionBase {
public:
    SeriesCollectionImpl(DocPtr d, pugi::xml_node group) : d_(std::move(d)), group_(group) {}
    using SeriesCollectionBase::Item;
    long Count() override { return long(List().size()); }
    Ref<host::Series> Item(long index) override {
        auto l = List();
        if (index < 1 || index > long(l.size())) Refuse("Invalid Parameter");
        return std::make_shared<SeriesImpl>(d_, l[index - 1]);
    }
    Ref<host::Series> Item(const std::string& name) override {
        for (auto s : List()) {
            auto series = std::make_shared<SeriesImpl>(d_, s);
            if (series->Name() == name) return series;
        }
        Refuse("Invalid Parameter");
    }
    Ref<host::Series> NewSeries() override {
        auto groups = Groups(*d_);
        auto g = group_ ? group_ : (groups.empty() ? pugi::xml_node() : groups.back());
        if (!g) NotAvailable("SeriesCollection.NewSeries");
        long idx = -1, order = -1;
        for (auto s : AllSeries(*d_)) {
            idx = std::max(idx, Idx(s));
            order = std::max(order, Order(s));
        }
        d_->Touch();
        pugi::xml_node last;
        for (auto s : ChildrenL(g, "ser")) last = s;
        auto ser = last ? g.insert_child_after(d_->C("ser").c_str(), last) : InsertAt(g, "ser", kGroupOrder, d_->c);
        SetVal(ser, "idx", std::to_string(idx + 1), kSerOrder, d_->c);
        SetVal(ser, "order", std::to_string(order + 1), kSerOrder, d_->c);
        ConformSeriesTo(*d_, ser, GroupChartType(g, *d_));
        return std::make_shared<SeriesImpl>(d_, ser);
    }

private:
    std::vector<pugi::xml_node> List() {
        if (!group_) return AllSeries(*d_);
        auto sers = ChildrenL(group_, "ser");
        std::stable_sort(sers.begin(), sers.end(), [](auto a, auto b) { return Order(a) < Order(b); });
        return sers;
    }
    DocPtr d_;
    pugi::xml_node group_;
};

class ChartGroupImpl : public ChartGroupBase {
public:
    ChartGroupImpl(DocPtr d, pugi::xml_node g, long index) : d_(std::move(d)), g_(g), index_(index) {}
    using ChartGroupBase::SeriesCollection;
    long Index() override { return index_; }
    long AxisGroup() override {
        auto groups = Groups(*d_);
        for (auto g : groups)
            if (auto a = Kid(g, "axId"))
                return Val(g, "axId") == Val(g_, "axId") ? host::xlPrimary : host::xlSecondary;
        return host::xlPrimary;
    }
    Ref<host::SeriesCollection> SeriesCollection() override { return std::make_shared<SeriesCollectionImpl>(d_, g_); }
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

class ChartGroupsImpl : public ChartGroupsBase {
public:
    explicit ChartGroupsImpl(DocPtr d) : d_(std::move(d)) {}
    long Count() override { return long(Groups(*d_).size()); }
    Ref<host::ChartGroup> Item(long index) override { return MakeChartGroup(d_, index); }

private:
    DocPtr d_;
};

}  // namespace

std::vector<pugi::xml_node> AllSeries(ChartDoc& doc) {
    std::vector<pugi::xml_node> out;
    for (auto g : Groups(doc))
        for (auto s : ChildrenL(g, "ser")) out.push_back(s);
    std::stable_sort(out.begin(), out.end(), [](auto a, auto b) { return Order(a) < Order(b); });
    return out;
}

Ref<host::SeriesCollection> MakeSeriesCollection(DocPtr doc, int group) {
    pugi::xml_node g;
    if (group > 0) {
        auto groups = Groups(*doc);
        if (group > int(groups.size())) Refuse("Invalid Parameter");
        g = groups[group - 1];
    }
    return std::make_shared<SeriesCollectionImpl>(std::move(doc), g);
}

Ref<host::ChartGroups> MakeChartGroups(DocPtr doc) { return std::make_shared<ChartGroupsImpl>(std::move(doc)); }

Ref<host::ChartGroup> MakeChartGroup(DocPtr doc, long index) {
    auto groups = Groups(*doc);
    if (index < 1 || index > long(groups.size())) Refuse("Unable to get the ChartGroups property of the Chart class");
    return std::make_shared<ChartGroupImpl>(std::move(doc), groups[index - 1], index);
}

void FixLabelPositions(pugi::xml_node group) {
    std::vector<pugi::xml_node> labels;
    if (auto d = Kid(group, "dLbls")) labels.push_back(d);
    for (auto s : ChildrenL(group, "ser")) {
        if (auto d = Kid(s, "dLbls")) {
            labels.push_back(d);
            for (auto one : ChildrenL(d, "dLbl")) labels.push_back(one);
        }
    }
    for (auto d : labels) {
        auto pos = Kid(d, "dLblPos");
        if (pos && !LabelPositionFits(group, pos.attribute("val").value())) d.remove_child(pos);
    }
}

// ---------------------------------------------------------------- moving rows

void RewriteChartFormulas(Book& book, const std::function<std::string(const std::string&)>& fn) {
    auto& pkg = book.pkg();
    for (const auto& part : pkg.Parts()) {
        if (pkg.ContentType(part) != kChartContentType) continue;
        std::vector<std::pair<pugi::xml_node, std::string>> edits;
        std::function<void(pugi::xml_node)> walk = [&](pugi::xml_node n) {
            for (auto ch : n.children()) {
                if (ch.type() != pugi::node_element) continue;
                if (LocalName(ch) == "f") {
                    std::string text = ch.text().get();
                    std::string moved = fn(text);
                    if (moved != text) edits.emplace_back(ch, moved);
                } else {
                    walk(ch);
                }
            }
        };
        walk(pkg.Read(part).document_element());
        if (edits.empty()) continue;
        pkg.Edit(part);
        for (auto& [node, text] : edits) node.text() = text.c_str();
    }
}

}  // namespace xlsx
