// Series of a chart: their data references with the caches filled from the workbook's cells,
// names, series formulas, plot order, types and formats; the series collections; the moving of
// series references when rows are inserted or deleted.
#include <algorithm>

#include "host/error.h"
#include "xlsx/book.h"
#include "xlsx/chart_model.h"
#include "xlsx/chart_part.h"

namespace xlsx {

long SeriesOrder(pugi::xml_node ser) { return LongOf(Val(ser, "order", "0")); }
long SeriesIdx(pugi::xml_node ser) { return LongOf(Val(ser, "idx", "0")); }

std::string SeriesName(ChartDoc& doc, pugi::xml_node ser) {
    if (auto tx = Kid(ser, "tx")) return RichText(doc, tx);
    return "Series" + std::to_string(SeriesIdx(ser) + 1);
}

pugi::xml_node ValuesNode(pugi::xml_node ser) {
    if (auto v = Kid(ser, "val")) return v;
    return Kid(ser, "yVal");
}
pugi::xml_node CategoriesNode(pugi::xml_node ser) {
    if (auto v = Kid(ser, "cat")) return v;
    return Kid(ser, "xVal");
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

namespace {

const std::vector<std::string_view> kRefOrder = {"f", "numCache", "strCache", "extLst"};

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

void ClearData(pugi::xml_node data) {
    while (data.first_child()) data.remove_child(data.first_child());
}

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

class SeriesImpl : public MarkerMembers<host::Series> {
public:
    SeriesImpl(DocPtr d, pugi::xml_node ser) : d_(std::move(d)), ser_(ser) {}
    using host::Series::SetValues;
    using host::Series::SetXValues;
    using host::Series::SetBubbleSizes;
    using host::Series::DataLabels;

    std::string Name() override {
        Live();
        return SeriesName(*d_, ser_);
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
        for (auto s : sers) orders.push_back(SeriesOrder(s));
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
        SetVal(SeriesLabels(*d_, ser_, true), "showLeaderLines", v ? "1" : "0", kDLblsOrder, d_->c);
    }

    Ref<host::Points> Points() override {
        Live();
        return MakePoints(d_, ser_);
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
        if (auto own = Kid(ser_, "dLbls")) return ShowsLabels(own);
        return ShowsLabels(Kid(ser_.parent(), "dLbls"));
    }
    void SetHasDataLabels(bool v) override {
        if (v) {
            if (!HasDataLabels()) ApplyDataLabels(host::xlDataLabelsShowValue, {}, {}, {}, {}, {}, {}, {}, {}, {});
            return;
        }
        d_->Touch();
        RemoveL(ser_, "dLbls");
        if (ShowsLabels(Kid(ser_.parent(), "dLbls"))) {
            auto d = InsertAt(ser_, "dLbls", kSerOrder, d_->c);
            SetVal(d, "delete", "1", kDLblsOrder, d_->c);
        }
    }
    Ref<host::DataLabels> DataLabels() override {
        if (!HasDataLabels()) Refuse("Unable to get the DataLabels property of the Series class");
        return MakeDataLabels(d_, ser_);
    }
    Ref<host::DataLabel> DataLabels(long index) override {
        if (!HasDataLabels()) Refuse("Unable to get the DataLabels property of the Series class");
        long n = long(CachedValues(ValuesNode(ser_)).size());
        if (index < 1 || (n > 0 && index > n)) Refuse("Unable to get the DataLabels property of the Series class");
        return MakeDataLabel(d_, ser_, index);
    }
    void ApplyDataLabels(long type, const Variant& legendKey, const Variant&, const Variant& leader,
                         const Variant& serName, const Variant& catName, const Variant& value, const Variant& percent,
                         const Variant& bubble, const Variant& sep) override {
        Live();
        if (type == host::xlDataLabelsShowNone) return SetHasDataLabels(false);
        ApplySeriesLabels(*d_, ser_, type, legendKey, leader, serName, catName, value, percent, bubble, sep);
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
        return Holder{[ser](bool) { return ser; }, &kSerOrder, SeriesAutoColor(*d_, SeriesIdx(ser_)), 10};
    }
    Marker M() override {
        Live();
        auto ser = ser_;
        return Marker(d_, ser_, [ser](bool) { return ser; }, kSerOrder, "Series");
    }
    std::vector<pugi::xml_node> GroupSeries() {
        auto sers = ChildrenL(ser_.parent(), "ser");
        std::stable_sort(sers.begin(), sers.end(), [](auto a, auto b) { return SeriesOrder(a) < SeriesOrder(b); });
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

class SeriesCollectionImpl : public host::SeriesCollection {
public:
    SeriesCollectionImpl(DocPtr d, pugi::xml_node group) : d_(std::move(d)), group_(group) {}
    using host::SeriesCollection::Item;
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
            idx = std::max(idx, SeriesIdx(s));
            order = std::max(order, SeriesOrder(s));
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
        std::stable_sort(sers.begin(), sers.end(), [](auto a, auto b) { return SeriesOrder(a) < SeriesOrder(b); });
        return sers;
    }
    DocPtr d_;
    pugi::xml_node group_;
};

}  // namespace

std::vector<pugi::xml_node> AllSeries(ChartDoc& doc) {
    std::vector<pugi::xml_node> out;
    for (auto g : Groups(doc))
        for (auto s : ChildrenL(g, "ser")) out.push_back(s);
    std::stable_sort(out.begin(), out.end(), [](auto a, auto b) { return SeriesOrder(a) < SeriesOrder(b); });
    return out;
}

Ref<host::SeriesCollection> MakeSeriesCollection(DocPtr doc, pugi::xml_node group) {
    return std::make_shared<SeriesCollectionImpl>(std::move(doc), group);
}

// ---------------------------------------------------------------- moving rows

void RewriteChartFormulas(Book& book, const std::function<std::string(const std::string&)>& fn) {
    auto& pkg = book.pkg();
    for (const auto& part : pkg.Parts()) {
        if (pkg.ContentType(part) != ct::kChart) continue;
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