// The legend of a chart: its entries, position, manual layout and formats.
#include <algorithm>

#include "xlsx/book.h"
#include "xlsx/chart_model.h"

namespace xlsx {

namespace {

struct ChartSize {
    double w, h;
};

ChartSize SizeOf(ChartDoc& doc) {
    if (auto f = doc.frame.lock()) return {f->Width(), f->Height()};
    return {480, 288};
}

class LegendEntryImpl;

// The entries a legend shows: one per series (by c:idx), or one per point of a single series
// whose points vary in colour; deleted ones left out.
std::vector<long> EntryIds(ChartDoc& doc, bool all) {
    std::vector<long> ids;
    auto groups = Groups(doc);
    bool byPoint = false;
    if (groups.size() == 1 && BoolVal(groups[0], "varyColors", false)) {
        auto sers = ChildrenL(groups[0], "ser");
        if (sers.size() == 1) {
            byPoint = true;
            auto val = Kid(sers[0], "val");
            auto cache = Kid(Kid(val, "numRef"), "numCache");
            if (!cache) cache = Kid(val, "numLit");
            long n = LongOf(Val(cache, "ptCount", "0"));
            for (long i = 0; i < n; ++i) ids.push_back(i);
        }
    }
    if (!byPoint)
        for (auto s : AllSeries(doc)) ids.push_back(LongOf(Val(s, "idx", "0")));
    if (all) return ids;
    auto legend = Kid(doc.Chart(false), "legend");
    std::vector<long> shown;
    for (long id : ids) {
        bool deleted = false;
        for (auto e : ChildrenL(legend, "legendEntry"))
            if (LongOf(Val(e, "idx", "-1")) == id && BoolVal(e, "delete", false)) deleted = true;
        if (!deleted) shown.push_back(id);
    }
    return shown;
}

pugi::xml_node LegendNode(ChartDoc& doc, bool edit) { return Kid(doc.Chart(edit), "legend"); }

pugi::xml_node EntryNode(ChartDoc& doc, long id, bool edit) {
    auto legend = LegendNode(doc, edit);
    for (auto e : ChildrenL(legend, "legendEntry"))
        if (LongOf(Val(e, "idx", "-1")) == id) return e;
    if (!edit) return {};
    // entries stand in idx order after legendPos
    pugi::xml_node before;
    for (auto e : ChildrenL(legend, "legendEntry"))
        if (!before && LongOf(Val(e, "idx", "-1")) > id) before = e;
    pugi::xml_node e = before ? legend.insert_child_before(doc.C("legendEntry").c_str(), before)
                              : InsertAt(legend, "legendEntry", kLegendOrder, doc.c);
    e.append_child(doc.C("idx").c_str()).append_attribute("val") = std::to_string(id).c_str();
    return e;
}

class LegendEntryImpl : public host::LegendEntry {
public:
    LegendEntryImpl(DocPtr d, long index, long id) : d_(std::move(d)), index_(index), id_(id) {}
    long Index() override { return index_; }
    Ref<host::Font> Font() override { return MakeFont(d_, H()); }
    Variant AutoScaleFont() override { return AutoScaleFontOf(H()); }
    void SetAutoScaleFont(const Variant& v) override { SetAutoScaleFontOf(*d_, H(), v); }
    void Delete() override {
        d_->Touch();
        auto e = EntryNode(*d_, id_, true);
        RemoveL(e, "txPr");
        SetVal(e, "delete", "1", {"idx", "delete", "txPr", "extLst"}, d_->c);
    }

private:
    Holder H() {
        auto d = d_;
        long id = id_;
        static const std::vector<std::string_view> order = {"idx", "delete", "txPr", "extLst"};
        return Holder{[d, id](bool e) { return EntryNode(*d, id, e); }, &order, 0xFFFFFF, 9};
    }
    DocPtr d_;
    long index_, id_;
};

class LegendEntriesImpl : public host::LegendEntries {
public:
    explicit LegendEntriesImpl(DocPtr d) : d_(std::move(d)) {}
    long Count() override { return long(EntryIds(*d_, false).size()); }
    Ref<host::LegendEntry> Item(long index) override {
        auto ids = EntryIds(*d_, false);
        if (index < 1 || index > long(ids.size())) Refuse("Method 'Item' of object 'LegendEntries' failed");
        return std::make_shared<LegendEntryImpl>(d_, index, ids[index - 1]);
    }

private:
    DocPtr d_;
};

class LegendImpl : public host::Legend {
public:
    explicit LegendImpl(DocPtr d) : d_(std::move(d)) {}
    using host::Legend::LegendEntries;

    // A legend placed by hand reads xlLegendPositionCustom from the version that brought it on;
    // older versions refuse the read.
    long Position() override {
        auto l = Node(false);
        if (Manual()) {
            if (host::Val(d_->book.app().Version()) < 12) Refuse("Unable to get the Position property of the Legend class");
            return host::xlLegendPositionCustom;
        }
        std::string p = Val(l, "legendPos", "r");
        if (p == "b") return host::xlLegendPositionBottom;
        if (p == "t") return host::xlLegendPositionTop;
        if (p == "l") return host::xlLegendPositionLeft;
        if (p == "tr") return host::xlLegendPositionCorner;
        return host::xlLegendPositionRight;
    }
    void SetPosition(long v) override {
        const char* p = v == host::xlLegendPositionBottom ? "b" : v == host::xlLegendPositionTop ? "t"
                      : v == host::xlLegendPositionLeft ? "l" : v == host::xlLegendPositionCorner ? "tr"
                      : v == host::xlLegendPositionRight ? "r" : nullptr;
        if (!p) Refuse("Unable to set the Position property of the Legend class");
        auto l = Node(true);
        SetVal(l, "legendPos", p, kLegendOrder, d_->c);
        RemoveL(l, "layout");
    }
    double Left() override {
        if (Manual()) return Frac("x") * SizeOf(*d_).w;
        auto s = SizeOf(*d_);
        switch (Position()) {
        case host::xlLegendPositionLeft: return 7;
        case host::xlLegendPositionTop: case host::xlLegendPositionBottom: return (s.w - Width()) / 2;
        default: return s.w - Width() - 7;
        }
    }
    double Top() override {
        if (Manual()) return Frac("y") * SizeOf(*d_).h;
        auto s = SizeOf(*d_);
        switch (Position()) {
        case host::xlLegendPositionTop: return 30;
        case host::xlLegendPositionCorner: return 7;
        case host::xlLegendPositionBottom: return s.h - Height() - 7;
        default: return (s.h - Height()) / 2;
        }
    }
    void SetLeft(double v) override {
        if (v + Width() < 0 || v > SizeOf(*d_).w) Refuse("Unable to set the Left property of the Legend class");
        Place(v, Top());
    }
    void SetTop(double v) override {
        if (v + Height() < 0 || v > SizeOf(*d_).h) Refuse("Unable to set the Top property of the Legend class");
        Place(Left(), v);
    }
    double Width() override {
        auto w = Frac("w");
        if (Manual() && w > 0) return w * SizeOf(*d_).w;
        return std::min(SizeOf(*d_).w * 0.3, 90.0);
    }
    double Height() override {
        auto h = Frac("h");
        if (Manual() && h > 0) return h * SizeOf(*d_).h;
        return std::min(SizeOf(*d_).h * 0.8, 16.0 * std::max<size_t>(1, EntryIds(*d_, false).size()));
    }
    Ref<host::Font> Font() override { return MakeFont(d_, H()); }
    Variant AutoScaleFont() override { return AutoScaleFontOf(H()); }
    void SetAutoScaleFont(const Variant& v) override { SetAutoScaleFontOf(*d_, H(), v); }
    Ref<host::LegendEntries> LegendEntries() override { return std::make_shared<LegendEntriesImpl>(d_); }
    Ref<host::LegendEntry> LegendEntries(long index) override { return LegendEntries()->Item(index); }
    bool IncludeInLayout() override { return !BoolVal(Node(false), "overlay", false); }
    void SetIncludeInLayout(bool v) override { SetVal(Node(true), "overlay", v ? "0" : "1", kLegendOrder, d_->c); }
    Ref<host::Interior> Interior() override { return MakeInterior(d_, H()); }
    Ref<host::Border> Border() override { return MakeBorder(d_, H()); }
    Ref<host::ChartFillFormat> Fill() override { return MakeFill(d_, H()); }
    void Delete() override { RemoveL(d_->Chart(true), "legend"); }

private:
    Holder H() {
        auto d = d_;
        return Holder{[d](bool e) { return LegendNode(*d, e); }, &kLegendOrder, 0xFFFFFF, 9};
    }
    pugi::xml_node Node(bool edit) {
        if (edit) d_->Touch();
        return LegendNode(*d_, false);
    }
    bool Manual() {
        auto m = Kid(Kid(Node(false), "layout"), "manualLayout");
        return m && Kid(m, "x") && Kid(m, "y");
    }
    double Frac(const char* what) {
        auto m = Kid(Kid(Node(false), "layout"), "manualLayout");
        return std::atof(Val(m, what, "0").c_str());
    }
    void Place(double left, double top) {
        auto s = SizeOf(*d_);
        double w = Width(), h = Height();
        auto l = Node(true);
        auto layout = Ensure(l, "layout", kLegendOrder, d_->c);
        auto m = Ensure(layout, "manualLayout", {"manualLayout", "extLst"}, d_->c);
        SetVal(m, "xMode", "edge", kManualLayoutOrder, d_->c);
        SetVal(m, "yMode", "edge", kManualLayoutOrder, d_->c);
        SetVal(m, "x", host::NumberToText(std::clamp(left / s.w, 0.0, 1.0)), kManualLayoutOrder, d_->c);
        SetVal(m, "y", host::NumberToText(std::clamp(top / s.h, 0.0, 1.0)), kManualLayoutOrder, d_->c);
        SetVal(m, "w", host::NumberToText(std::clamp(w / s.w, 0.0, 1.0)), kManualLayoutOrder, d_->c);
        SetVal(m, "h", host::NumberToText(std::clamp(h / s.h, 0.0, 1.0)), kManualLayoutOrder, d_->c);
    }
    DocPtr d_;
};

}  // namespace

Ref<host::Legend> MakeLegend(DocPtr doc) { return std::make_shared<LegendImpl>(std::move(doc)); }

}  // namespace xlsx
