// Data labels of series and points: what they show, where, with which text and number format;
// the labels a type's family allows.
#include "host/error.h"
#include "xlsx/book.h"
#include "xlsx/chart_model.h"

namespace xlsx {

namespace {

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

}  // namespace

bool ShowsLabels(pugi::xml_node dLbls) {
    if (!dLbls || BoolVal(dLbls, "delete", false)) return false;
    for (auto s : kShows)
        if (s != std::string_view("showLegendKey") && BoolVal(dLbls, s, false)) return true;
    return false;
}

pugi::xml_node SeriesLabels(ChartDoc& doc, pugi::xml_node ser, bool edit) {
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

namespace {

const std::vector<std::string_view> kDLblOrder = {
    "idx", "delete", "layout", "tx", "numFmt", "spPr", "txPr", "dLblPos", "showLegendKey", "showVal",
    "showCatName", "showSerName", "showPercent", "showBubbleSize", "separator", "extLst"};

// The label of one point: a c:dLbl of the series' labels once it differs from them.
class DataLabelImpl : public host::DataLabel {
public:
    DataLabelImpl(DocPtr d, pugi::xml_node ser, long index) : d_(std::move(d)), ser_(ser), index_(index) {}
    std::string Text() override {
        auto own = Own(false);
        if (auto tx = Kid(own, "tx")) return RichText(*d_, tx);
        // the automatic text: what the labels show of this point
        auto from = own ? own : SeriesLabels(*d_, ser_, false);
        auto shows = [&](const char* what) { return BoolVal(from, what, false) || BoolVal(SeriesLabels(*d_, ser_, false), what, false); };
        std::vector<std::string> parts;
        if (shows("showSerName")) parts.push_back(SeriesName(*d_, ser_));
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
    Variant HorizontalAlignment() override { return TextAlignment(Own(false) ? Own(false) : SeriesLabels(*d_, ser_, false), false); }
    void SetHorizontalAlignment(const Variant& v) override {
        SetTextAlignment(*d_, Own(true), kDLblOrder, false, v, "Unable to set the HorizontalAlignment property of the DataLabel class");
    }
    Variant VerticalAlignment() override { return TextAlignment(Own(false) ? Own(false) : SeriesLabels(*d_, ser_, false), true); }
    void SetVerticalAlignment(const Variant& v) override {
        SetTextAlignment(*d_, Own(true), kDLblOrder, true, v, "Unable to set the VerticalAlignment property of the DataLabel class");
    }
    Variant Orientation() override {
        return TextOrientation(Own(false) ? Own(false) : SeriesLabels(*d_, ser_, false), host::xlHorizontal);
    }
    void SetOrientation(const Variant& v) override { SetTextOrientation(*d_, Own(true), kDLblOrder, v); }
    Ref<host::Font> Font() override { return MakeFont(d_, H()); }
    Variant AutoScaleFont() override {
        auto series = SeriesHolder();
        return AutoScaleFontOf(H(), &series);
    }
    void SetAutoScaleFont(const Variant& v) override { SetAutoScaleFontOf(*d_, H(), v); }
    long Position() override {
        auto own = Own(false);
        std::string pos = Val(own, "dLblPos");
        if (pos.empty()) pos = Val(SeriesLabels(*d_, ser_, false), "dLblPos");
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
        auto labels = SeriesLabels(*d_, ser_, edit);
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
        return BoolVal(SeriesLabels(*d_, ser_, false), what, false);
    }
    Holder SeriesHolder() {
        auto d = d_;
        auto ser = ser_;
        return Holder{[d, ser](bool e) { return SeriesLabels(*d, ser, e); }, &kDLblsOrder, 0xFFFFFF, 9};
    }
    Holder H() {
        auto d = d_;
        auto ser = ser_;
        long index = index_;
        return Holder{[d, ser, index](bool e) { return DataLabelImpl(d, ser, index).Own(e); }, &kDLblOrder, 0xFFFFFF, 9};
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

class DataLabelsImpl : public host::DataLabels {
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
        if (ShowsLabels(Kid(ser_.parent(), "dLbls")))
            SetVal(InsertAt(ser_, "dLbls", kSerOrder, d_->c), "delete", "1", kDLblsOrder, d_->c);
    }

private:
    pugi::xml_node N(bool edit) { return SeriesLabels(*d_, ser_, edit); }
    void Set(const char* what, bool v) { SetVal(N(true), what, v ? "1" : "0", kDLblsOrder, d_->c); }
    Holder H() {
        auto ser = ser_;
        auto d = d_;
        return Holder{[ser, d](bool e) { return SeriesLabels(*d, ser, e); }, &kDLblsOrder, 0xFFFFFF, 9};
    }
    DocPtr d_;
    pugi::xml_node ser_;
};

}  // namespace

Ref<host::DataLabels> MakeDataLabels(DocPtr doc, pugi::xml_node ser) { return std::make_shared<DataLabelsImpl>(std::move(doc), ser); }

Ref<host::DataLabel> MakeDataLabel(DocPtr doc, pugi::xml_node ser, long index) {
    return std::make_shared<DataLabelImpl>(std::move(doc), ser, index);
}

void ApplySeriesLabels(ChartDoc& doc, pugi::xml_node ser, long type, const Variant& legendKey, const Variant& leader,
                       const Variant& serName, const Variant& catName, const Variant& value, const Variant& percent,
                       const Variant& bubble, const Variant& sep) {
    using namespace host;
    bool val = type == xlDataLabelsShowValue, pct = type == xlDataLabelsShowPercent || type == xlDataLabelsShowLabelAndPercent;
    bool cat = type == xlDataLabelsShowLabel || type == xlDataLabelsShowLabelAndPercent;
    bool bub = type == xlDataLabelsShowBubbleSizes;
    if (!val && !pct && !cat && !bub) Refuse("Method 'ApplyDataLabels' of object 'Series' failed");
    auto l = LocalName(ser.parent());
    bool pie = l == "pieChart" || l == "pie3DChart" || l == "doughnutChart" || l == "ofPieChart";
    if (pct && !pie && !(percent.type() == Variant::Type::Boolean))
        Refuse("Method 'ApplyDataLabels' of object 'Series' failed");
    auto pick = [](const Variant& v, bool dflt) { return v.IsEmpty() ? dflt : CBool(v); };
    doc.Touch();
    auto d = Kid(ser, "dLbls");
    if (!d) d = InsertAt(ser, "dLbls", kSerOrder, doc.c);
    RemoveL(d, "delete");
    SetVal(d, "showLegendKey", pick(legendKey, false) ? "1" : "0", kDLblsOrder, doc.c);
    SetVal(d, "showVal", pick(value, val) ? "1" : "0", kDLblsOrder, doc.c);
    SetVal(d, "showCatName", pick(catName, cat) ? "1" : "0", kDLblsOrder, doc.c);
    SetVal(d, "showSerName", pick(serName, false) ? "1" : "0", kDLblsOrder, doc.c);
    SetVal(d, "showPercent", pick(percent, pct) ? "1" : "0", kDLblsOrder, doc.c);
    SetVal(d, "showBubbleSize", pick(bubble, bub) ? "1" : "0", kDLblsOrder, doc.c);
    if (!sep.IsEmpty()) Ensure(d, "separator", kDLblsOrder, doc.c).text() = CStr(sep).c_str();
    if (pie || !leader.IsEmpty()) SetVal(d, "showLeaderLines", pick(leader, pie) ? "1" : "0", kDLblsOrder, doc.c);
}

bool PointHasLabel(pugi::xml_node ser, long index) {
    auto labels = Kid(ser, "dLbls");
    if (!labels && Kid(ser.parent(), "dLbls")) labels = Kid(ser.parent(), "dLbls");
    for (auto l : ChildrenL(labels, "dLbl"))
        if (LongOf(Val(l, "idx", "-1")) == index - 1) return ShowsLabels(l);
    return ShowsLabels(labels);
}

void SetPointHasLabel(DocPtr d, pugi::xml_node ser, long index, bool v) {
    if (v == PointHasLabel(ser, index)) return;
    d->Touch();
    if (!v) return DataLabelImpl(d, ser, index).Delete();
    if (!Kid(ser, "dLbls") && !Kid(ser.parent(), "dLbls")) {
        auto labels = InsertAt(ser, "dLbls", kSerOrder, d->c);
        for (const char* f : {"showLegendKey", "showVal", "showCatName", "showSerName", "showPercent", "showBubbleSize"})
            SetVal(labels, f, "0", kDLblsOrder, d->c);
    }
    // a deleted label starts again from nothing
    auto labels = SeriesLabels(*d, ser, true);
    for (auto l : ChildrenL(labels, "dLbl"))
        if (LongOf(Val(l, "idx", "-1")) == index - 1 && Kid(l, "delete")) labels.remove_child(l);
    DataLabelImpl(d, ser, index).SetShowValue(true);
}

void ApplyPointLabel(DocPtr d, pugi::xml_node ser, long index, long type, const Variant& legendKey,
                     const Variant& serName, const Variant& catName, const Variant& value, const Variant& percent,
                     const Variant& bubble, const Variant& sep) {
    using namespace host;
    if (type == xlDataLabelsShowNone) return SetPointHasLabel(d, ser, index, false);
    bool val = type == xlDataLabelsShowValue, pct = type == xlDataLabelsShowPercent || type == xlDataLabelsShowLabelAndPercent;
    bool cat = type == xlDataLabelsShowLabel || type == xlDataLabelsShowLabelAndPercent;
    bool bub = type == xlDataLabelsShowBubbleSizes;
    if (!val && !pct && !cat && !bub) Refuse("Method 'ApplyDataLabels' of object 'Point' failed");
    SetPointHasLabel(d, ser, index, true);
    auto pick = [](const Variant& v, bool dflt) { return v.IsEmpty() ? dflt : CBool(v); };
    DataLabelImpl l(d, ser, index);
    l.SetShowValue(pick(value, val));
    l.SetShowCategoryName(pick(catName, cat));
    l.SetShowSeriesName(pick(serName, false));
    l.SetFlag("showPercent", pick(percent, pct));
    l.SetFlag("showBubbleSize", pick(bubble, bub));
    l.SetFlag("showLegendKey", pick(legendKey, false));
    if (!sep.IsEmpty()) l.SetFlag("separator", CStr(sep));
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

}  // namespace xlsx
