#pragma once
// Internals of the chart part model shared by the chart*.cpp files. Not for use elsewhere.
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <pugixml.hpp>

#include "xlsx/chart_base.h"
#include "xlsx/ooxml.h"

namespace xlsx {

class Book;
class Drawing;

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

std::vector<pugi::xml_node> ChildrenL(pugi::xml_node parent, std::string_view local);
// The child of that local name, made at its schema position among the siblings when absent.
// `order` lists the local names of the parent's content model in schema order.
pugi::xml_node Ensure(pugi::xml_node parent, std::string_view local, const std::vector<std::string_view>& order,
                      const std::string& prefix);
pugi::xml_node InsertAt(pugi::xml_node parent, std::string_view local, const std::vector<std::string_view>& order,
                        const std::string& prefix);
// Moves node into parent at its schema position (after its like siblings).
pugi::xml_node MoveInto(pugi::xml_node parent, pugi::xml_node node, const std::vector<std::string_view>& order,
                        const std::string& prefix);
void RemoveL(pugi::xml_node parent, std::string_view local);
// c:x val="..." helpers
std::string Val(pugi::xml_node parent, std::string_view local, const std::string& dflt = "");
bool BoolVal(pugi::xml_node parent, std::string_view local, bool absent, bool emptyVal = true);
void SetVal(pugi::xml_node parent, std::string_view local, const std::string& value,
            const std::vector<std::string_view>& order, const std::string& prefix);

// Schema orders of content models.
extern const std::vector<std::string_view> kChartSpaceOrder, kChartOrder, kPlotAreaOrder, kTitleOrder,
    kLegendOrder, kSerOrder, kGroupOrder, kAxOrder, kScalingOrder, kSpPrOrder, kLnOrder, kDLblsOrder,
    kTxPrOrder;

bool Is3DType(long type);
Ref<host::ChartArea> MakeChartArea(DocPtr doc);
Ref<host::PlotArea> MakePlotArea(DocPtr doc);
bool IsGroup(std::string_view local);  // barChart, pieChart ...
bool IsAxis(std::string_view local);   // catAx, valAx, dateAx, serAx

// Chart type <-> chart group.
long GroupChartType(pugi::xml_node group, ChartDoc& doc);
long PlotChartType(ChartDoc& doc);  // xlCombination for mixed groups
void SetPlotChartType(ChartDoc& doc, long type);
void SetSeriesChartType(ChartDoc& doc, pugi::xml_node ser, long type);
void ConformSeriesTo(ChartDoc& doc, pugi::xml_node ser, long type);  // the children the group's family allows
// The bubble sizes a series holds while its chart is of a type that draws none (made when make).
pugi::xml_node HeldBubbleSizes(ChartDoc& doc, pugi::xml_node ser, bool make);
void FixLabelPositions(pugi::xml_node group);  // drops label positions the family refuses
// Linked axes carry the format they display, which a new type can change (100 % stacking).
void RelinkAxisFormats(ChartDoc& doc);

// An element of the chart that holds shape properties (c:spPr) or text properties (c:txPr):
// node(edit) finds it (made when edit and absent), order is its content model.
struct Holder {
    std::function<pugi::xml_node(bool)> node;
    const std::vector<std::string_view>* order = nullptr;
    long autoColor = 0xFFFFFF;  // what an automatic fill paints
    double defaultSize = 10;    // font size when nothing says
};

// AutoScaleFont (texts scaling with the chart, True unless told) has no element in the file
// format: a False is kept in an extension of our own on the holder's element, present only while
// False. `fallback` is read when the holder has none (a point's label inherits its series').
Variant AutoScaleFontOf(const Holder& h, const Holder* fallback = nullptr);
void SetAutoScaleFontOf(ChartDoc& doc, const Holder& h, const Variant& v);

Ref<host::Interior> MakeInterior(DocPtr doc, Holder h);
Ref<host::Border> MakeBorder(DocPtr doc, Holder h);
Ref<host::ChartFillFormat> MakeFill(DocPtr doc, Holder h);
Ref<host::Font> MakeFont(DocPtr doc, Holder h);
// Colours: "RRGGBB" <-> RGB long; a:srgbClr / a:schemeClr / a:sysClr of a fill resolved to RGB.
long HexToRgb(std::string_view hex);
std::string RgbToHex(long rgb);
long ColorOf(ChartDoc& doc, pugi::xml_node fill, long dflt);
long ThemeColor(ChartDoc& doc, std::string_view name);
long NearestPaletteIndex(ChartDoc& doc, long rgb);
long SeriesAutoColor(ChartDoc& doc, long idx);


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
pugi::xml_node FindAxis(ChartDoc& doc, long type, long group);  // deleted ones too
Ref<host::Legend> MakeLegend(DocPtr doc);
Ref<host::Axis> MakeAxis(DocPtr doc, long type, long group);
Ref<host::SeriesCollection> MakeSeriesCollection(DocPtr doc, int group /* 0 all, else 1-based group */);
Ref<host::ChartGroups> MakeChartGroups(DocPtr doc);
Ref<host::ChartGroup> MakeChartGroup(DocPtr doc, long index);
std::vector<pugi::xml_node> AllSeries(ChartDoc& doc);  // plot order across groups
std::vector<pugi::xml_node> Groups(ChartDoc& doc);

// Room on each side of the box the axes enclose: what their tick labels take, and beyond the
// labels what their titles take. Estimated from the texts and their font sizes, as the
// application makes room for them when it lays out the plot.
struct Sides {
    double left = 0, top = 0, right = 0, bottom = 0;
};
Sides AxisLabelRoom(ChartDoc& doc);
Sides AxisTitleRoom(ChartDoc& doc);

// Caches of a reference (c:numRef / c:strRef) filled from the cells it names.
void FillCache(ChartDoc& doc, pugi::xml_node ref, bool numeric);  // c:numRef / c:strRef

}  // namespace xlsx
