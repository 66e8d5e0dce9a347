#pragma once
// Internals of the chart part model shared by the chart_*.cpp files, one file a concept. Not for
// use elsewhere.
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <pugixml.hpp>

#include "host/chart.h"
#include "xlsx/drawingml.h"
#include "xlsx/ooxml.h"

namespace xlsx {

using host::Ref;
using host::Variant;

class Book;
class Drawing;

// ---------------------------------------------------------------- the part (chart_part.cpp)

// One chart part: the DOM of the part stays the one truth; readers use Read, writers Edit.
struct ChartDoc {
    Book& book;
    std::string part;
    std::weak_ptr<host::ChartObject> frame;
    std::string c = "c:";  // prefix of the chart namespace in this part
    std::string a = "a:";  // prefix of the DrawingML main namespace
    std::shared_ptr<Drawing> shapes;  // the user shapes, made on first use

    ChartDoc(Book& b, std::string p);
    pugi::xml_node Root(bool edit);         // c:chartSpace
    pugi::xml_node Chart(bool edit);        // c:chart
    pugi::xml_node PlotArea(bool edit);     // c:plotArea
    std::string C(std::string_view local) const { return c + std::string(local); }
    std::string A(std::string_view local) const { return a + std::string(local); }
    void Touch();  // marks the part edited
    long PaletteRgb(long index);
};
using DocPtr = std::shared_ptr<ChartDoc>;

// c:x val="..." helpers
std::string Val(pugi::xml_node parent, std::string_view local, const std::string& dflt = "");
bool BoolVal(pugi::xml_node parent, std::string_view local, bool absent, bool emptyVal = true);
void SetVal(pugi::xml_node parent, std::string_view local, const std::string& value,
            const std::vector<std::string_view>& order, const std::string& prefix);

// Schema orders of content models.
extern const std::vector<std::string_view> kChartSpaceOrder, kChartOrder, kPlotAreaOrder, kTitleOrder,
    kLegendOrder, kSerOrder, kGroupOrder, kAxOrder, kScalingOrder, kDLblsOrder, kTxPrOrder, kView3DOrder,
    kManualLayoutOrder;

bool IsGroup(std::string_view local);  // barChart, pieChart ...
bool IsAxis(std::string_view local);   // catAx, valAx, dateAx, serAx
std::vector<pugi::xml_node> Groups(ChartDoc& doc);

// ---------------------------------------------------------------- types and groups (chart_types.cpp)

bool Is3DType(long type);
long GroupChartType(pugi::xml_node group, ChartDoc& doc);
long PlotChartType(ChartDoc& doc);  // xlCombination for mixed groups
void SetPlotChartType(ChartDoc& doc, long type);
void SetSeriesChartType(ChartDoc& doc, pugi::xml_node ser, long type);
void ConformSeriesTo(ChartDoc& doc, pugi::xml_node ser, long type);  // the children the group's family allows
// The bubble sizes a series holds while its chart is of a type that draws none (made when make).
pugi::xml_node HeldBubbleSizes(ChartDoc& doc, pugi::xml_node ser, bool make);
Ref<host::ChartGroups> MakeChartGroups(DocPtr doc);
Ref<host::ChartGroup> MakeChartGroup(DocPtr doc, long index);

// ---------------------------------------------------------------- axes (chart_axes.cpp)

// What the axes of a chart type are: none (pies), x and y values (scatter, bubbles), bars lying
// along the value axis, areas whose value axis crosses at the categories' middle.
struct AxesSpec {
    bool none = false, xy = false, horizontal = false, midCat = false;
};
// The primary axes (category first, value second) fit for a type, made or rebuilt as needed; the
// secondary ones go. Answers their ids.
std::vector<long> PrepareAxes(ChartDoc& doc, const AxesSpec& want, const std::vector<long>& old);
std::vector<long> AxisIds(pugi::xml_node group);
pugi::xml_node FindAxis(ChartDoc& doc, long type, long group);  // deleted ones too
Ref<host::Axis> MakeAxis(DocPtr doc, long type, long group);
// Linked axes carry the format they display, which a new type can change (100 % stacking).
void RelinkAxisFormats(ChartDoc& doc);

// Room on each side of the box the axes enclose: what their tick labels take, and beyond the
// labels what their titles take. Estimated from the texts and their font sizes, as the
// application makes room for them when it lays out the plot.
struct Sides {
    double left = 0, top = 0, right = 0, bottom = 0;
};
Sides AxisLabelRoom(ChartDoc& doc);
Sides AxisTitleRoom(ChartDoc& doc);

// ---------------------------------------------------------------- series (chart_series.cpp)

long SeriesIdx(pugi::xml_node ser);
long SeriesOrder(pugi::xml_node ser);
std::string SeriesName(ChartDoc& doc, pugi::xml_node ser);  // its text, else "Series<idx + 1>"
// The value and category children of a series, whatever its family calls them.
pugi::xml_node ValuesNode(pugi::xml_node ser);
pugi::xml_node CategoriesNode(pugi::xml_node ser);
std::vector<Variant> CachedValues(pugi::xml_node data);  // one per point
std::vector<pugi::xml_node> AllSeries(ChartDoc& doc);     // plot order across groups
// The series of one group, or of the chart for an empty node.
Ref<host::SeriesCollection> MakeSeriesCollection(DocPtr doc, pugi::xml_node group = {});
// Caches of a reference (c:numRef / c:strRef) filled from the cells it names.
void FillCache(ChartDoc& doc, pugi::xml_node ref, bool numeric);

// ---------------------------------------------------------------- points and markers (chart_points.cpp)

Ref<host::Points> MakePoints(DocPtr doc, pugi::xml_node ser);

// The marker of a series or of one point (owner(edit) answers its c:ser or c:dPt); a point
// without a marker of its own shows the series' marker. The fill is the background, the line the
// foreground. cls names the class in refusals.
class Marker {
public:
    Marker(DocPtr d, pugi::xml_node ser, std::function<pugi::xml_node(bool)> owner,
           const std::vector<std::string_view>& order, const char* cls);
    long Style();
    void SetStyle(long v);
    long Size();
    void SetSize(long v);
    long Color(bool fore);
    void SetColor(bool fore, long rgb, const char* member);
    long ColorIndex(bool fore);
    void SetColorIndex(bool fore, long v, const char* member);

private:
    pugi::xml_node Node();
    pugi::xml_node Edit(const char* member);
    pugi::xml_node Paint(bool fore);
    DocPtr d_;
    pugi::xml_node ser_;
    std::function<pugi::xml_node(bool)> owner_;
    const std::vector<std::string_view>& order_;
    const char* cls_;
};

// The marker members of series and points, over the marker M() answers.
template <class Base>
class MarkerMembers : public Base {
public:
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

protected:
    virtual Marker M() = 0;
};

// ---------------------------------------------------------------- data labels (chart_labels.cpp)

bool ShowsLabels(pugi::xml_node dLbls);  // a label element that shows something
// The labels of a series: its own, else those its group shows for all series. Writing gives the
// series a copy of its own.
pugi::xml_node SeriesLabels(ChartDoc& doc, pugi::xml_node ser, bool edit);
Ref<host::DataLabels> MakeDataLabels(DocPtr doc, pugi::xml_node ser);
Ref<host::DataLabel> MakeDataLabel(DocPtr doc, pugi::xml_node ser, long index);
void ApplySeriesLabels(ChartDoc& doc, pugi::xml_node ser, long type, const Variant& legendKey, const Variant& leader,
                       const Variant& serName, const Variant& catName, const Variant& value, const Variant& percent,
                       const Variant& bubble, const Variant& sep);
bool PointHasLabel(pugi::xml_node ser, long index);
void SetPointHasLabel(DocPtr doc, pugi::xml_node ser, long index, bool v);
void ApplyPointLabel(DocPtr doc, pugi::xml_node ser, long index, long type, const Variant& legendKey,
                     const Variant& serName, const Variant& catName, const Variant& value, const Variant& percent,
                     const Variant& bubble, const Variant& sep);
void FixLabelPositions(pugi::xml_node group);  // drops label positions the family refuses

// ---------------------------------------------------------------- legend (chart_legend.cpp)

Ref<host::Legend> MakeLegend(DocPtr doc);

// ---------------------------------------------------------------- texts (chart_text.cpp)

// An element of the chart that holds shape properties (c:spPr) or text properties (c:txPr):
// node(edit) finds it (made when edit and absent), order is its content model.
struct Holder {
    std::function<pugi::xml_node(bool)> node;
    const std::vector<std::string_view>* order = nullptr;
    long autoColor = 0xFFFFFF;  // what an automatic fill paints
    double defaultSize = 10;    // font size when nothing says
};

Ref<host::Font> MakeFont(DocPtr doc, Holder h);

// AutoScaleFont (texts scaling with the chart, True unless told) has no element in the file
// format: a False is kept in an extension of our own on the holder's element, present only while
// False. `fallback` is read when the holder has none (a point's label inherits its series').
Variant AutoScaleFontOf(const Holder& h, const Holder* fallback = nullptr);
void SetAutoScaleFontOf(ChartDoc& doc, const Holder& h, const Variant& v);

// Orientation of the text of an element (xlHorizontal, xlUpward ... or degrees), from the body
// properties of its rich text or its text properties.
Variant TextOrientation(pugi::xml_node owner, long dflt);
void SetTextOrientation(ChartDoc& doc, pugi::xml_node owner, const std::vector<std::string_view>& order, const Variant& v);

// Alignment of the text of an element (xlCenter, xlLeft ... / xlTop ...).
Variant TextAlignment(pugi::xml_node owner, bool vertical);
void SetTextAlignment(ChartDoc& doc, pugi::xml_node owner, const std::vector<std::string_view>& order, bool vertical,
                      const Variant& v, const char* refusal);

// Rich text of titles.
std::string RichText(ChartDoc& doc, pugi::xml_node tx);
void SetRichText(ChartDoc& doc, pugi::xml_node owner, const std::string& text, const std::vector<std::string_view>& order);

Ref<host::ChartTitle> MakeChartTitle(DocPtr doc);
Ref<host::AxisTitle> MakeAxisTitle(DocPtr doc, std::function<pugi::xml_node(bool)> axis, bool vertical);

// ---------------------------------------------------------------- formats (chart_format.cpp)

Ref<host::Interior> MakeInterior(DocPtr doc, Holder h);
Ref<host::Border> MakeBorder(DocPtr doc, Holder h);
Ref<host::ChartFillFormat> MakeFill(DocPtr doc, Holder h);
// The colour a fill (a:solidFill, or a pattern's fgClr / bgClr) holds, dflt when none.
long ColorOf(ChartDoc& doc, pugi::xml_node fill, long dflt);
long SeriesAutoColor(ChartDoc& doc, long idx);  // what a series of that c:idx is painted without a colour

// ---------------------------------------------------------------- areas (chart_areas.cpp)

Ref<host::ChartArea> MakeChartArea(DocPtr doc);
Ref<host::PlotArea> MakePlotArea(DocPtr doc);

}  // namespace xlsx
