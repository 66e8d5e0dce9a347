#pragma once
// The application's object model for charts: the chart, its series, axes, titles, legend, data
// labels, chart groups and areas. Getters carry the member's name, setters "Set" and the name.
// Distances are points from the top left corner of the chart area. Members raise host::Error as
// the application raises its automation errors; a member that has no meaning for the chart's type
// (the axes of a pie, the bubble scale of a column chart) raises.
//
// Interior, Border and Font are those of host/format.h. On chart elements an Interior with no fill
// reads ColorIndex xlNone, an automatic one xlAutomatic. Font members and AutoScaleFont are
// Variants: over a text with mixed formats they read Null.
#include <string>
#include <vector>

#include "host/chart_constants.h"
#include "host/drawing.h"
#include "host/format.h"
#include "host/fwd.h"
#include "host/variant.h"

namespace host {

// ---------------------------------------------------------------- fills

// The chart's own fill object, as ChartArea.Fill, PlotArea.Fill and Series.Fill answer it. Its
// ForeColor and BackColor are ColorFormats with RGB, SchemeColor and Type. A patterned fill
// draws the pattern (msoPattern...) in the fore colour over the back colour.
class ChartFillFormat {
public:
    virtual ~ChartFillFormat() = default;
    virtual Ref<host::ColorFormat> ForeColor() = 0;
    virtual Ref<host::ColorFormat> BackColor() = 0;
    virtual long Visible() = 0;  // tri-state
    virtual void SetVisible(long v) = 0;
    virtual long Type() = 0;     // msoFillSolid, msoFillPatterned ...
    virtual long Pattern() = 0;  // of a patterned fill
    virtual long GradientStyle() = 0;
    virtual long GradientVariant() = 0;
    virtual double GradientDegree() = 0;
    virtual long GradientColorType() = 0;
    virtual void Solid() = 0;
    virtual void Patterned(long pattern) = 0;
    virtual void OneColorGradient(long style, long variant, double degree) = 0;
    virtual void TwoColorGradient(long style, long variant) = 0;
    virtual void PresetGradient(long style, long variant, long presetGradientType) = 0;
    virtual void PresetTextured(long presetTexture) = 0;
};

// The drawing-layer formats of a chart element (its Format member).
class ChartFormat {
public:
    virtual ~ChartFormat() = default;
    virtual Ref<host::FillFormat> Fill() = 0;
    virtual Ref<host::LineFormat> Line() = 0;
    virtual Ref<host::TextFrame2> TextFrame2() = 0;  // of elements that hold text
};

// ---------------------------------------------------------------- areas

class ChartArea {
public:
    virtual ~ChartArea() = default;
    virtual Ref<host::Interior> Interior() = 0;
    virtual Ref<host::Border> Border() = 0;
    virtual Ref<host::ChartFillFormat> Fill() = 0;
    virtual Ref<host::ChartFormat> Format() = 0;
    virtual Ref<host::Font> Font() = 0;  // the default font of all the chart's texts
    // True: texts scale with the chart when it is resized. True, False or Null.
    virtual Variant AutoScaleFont() = 0;
    virtual void SetAutoScaleFont(const Variant& v) = 0;
    virtual double Left() = 0;
    virtual void SetLeft(double v) = 0;
    virtual double Top() = 0;
    virtual void SetTop(double v) = 0;
    virtual double Width() = 0;
    virtual void SetWidth(double v) = 0;
    virtual double Height() = 0;
    virtual void SetHeight(double v) = 0;
    virtual bool RoundedCorners() = 0;
    virtual void SetRoundedCorners(bool v) = 0;
    virtual bool Shadow() = 0;
    virtual void SetShadow(bool v) = 0;
    virtual void Clear() = 0;
    virtual void ClearFormats() = 0;
};

// Left, Top, Width and Height are the box of the plot with its tick labels; the Inside members
// the box the axes enclose. Writing any of them gives the plot area a manual layout, Position
// then reads xlChartElementPositionCustom; writing Position xlChartElementPositionAutomatic gives
// the layout back to the application.
class PlotArea {
public:
    virtual ~PlotArea() = default;
    virtual Ref<host::Interior> Interior() = 0;
    virtual Ref<host::Border> Border() = 0;
    virtual Ref<host::ChartFillFormat> Fill() = 0;
    virtual Ref<host::ChartFormat> Format() = 0;
    virtual double Left() = 0;
    virtual void SetLeft(double v) = 0;
    virtual double Top() = 0;
    virtual void SetTop(double v) = 0;
    virtual double Width() = 0;
    virtual void SetWidth(double v) = 0;
    virtual double Height() = 0;
    virtual void SetHeight(double v) = 0;
    virtual double InsideLeft() = 0;
    virtual void SetInsideLeft(double v) = 0;
    virtual double InsideTop() = 0;
    virtual void SetInsideTop(double v) = 0;
    virtual double InsideWidth() = 0;
    virtual void SetInsideWidth(double v) = 0;
    virtual double InsideHeight() = 0;
    virtual void SetInsideHeight(double v) = 0;
    virtual long Position() = 0;
    virtual void SetPosition(long v) = 0;
    virtual void ClearFormats() = 0;
};

// ---------------------------------------------------------------- titles

// Text and Caption are the same text. Orientation is xlHorizontal, xlUpward, xlDownward,
// xlVertical or an angle in degrees from -90 to 90. Writing Left or Top moves the title to a
// manual place; Position xlChartElementPositionAutomatic puts it back.
class ChartTitle {
public:
    virtual ~ChartTitle() = default;
    virtual std::string Text() = 0;
    virtual void SetText(const std::string& v) = 0;
    virtual std::string Caption() = 0;
    virtual void SetCaption(const std::string& v) = 0;
    virtual Ref<host::Characters> Characters(const Variant& start = {}, const Variant& length = {}) = 0;
    virtual Ref<host::Font> Font() = 0;
    virtual Variant AutoScaleFont() = 0;
    virtual void SetAutoScaleFont(const Variant& v) = 0;
    virtual Variant Orientation() = 0;
    virtual void SetOrientation(const Variant& v) = 0;
    virtual Variant HorizontalAlignment() = 0;
    virtual void SetHorizontalAlignment(const Variant& v) = 0;
    virtual Variant VerticalAlignment() = 0;
    virtual void SetVerticalAlignment(const Variant& v) = 0;
    virtual double Left() = 0;
    virtual void SetLeft(double v) = 0;
    virtual double Top() = 0;
    virtual void SetTop(double v) = 0;
    virtual double Width() = 0;
    virtual double Height() = 0;
    virtual long Position() = 0;  // xlChartElementPositionAutomatic or ...Custom
    virtual void SetPosition(long v) = 0;
    virtual bool IncludeInLayout() = 0;  // the plot area leaves room for the title
    virtual void SetIncludeInLayout(bool v) = 0;
    virtual bool Shadow() = 0;
    virtual void SetShadow(bool v) = 0;
    virtual Ref<host::Interior> Interior() = 0;
    virtual Ref<host::Border> Border() = 0;
    virtual Ref<host::ChartFillFormat> Fill() = 0;
    virtual Ref<host::ChartFormat> Format() = 0;
    virtual void Delete() = 0;  // the chart's HasTitle becomes False
};

// As ChartTitle, for the title of an axis.
class AxisTitle {
public:
    virtual ~AxisTitle() = default;
    virtual std::string Text() = 0;
    virtual void SetText(const std::string& v) = 0;
    virtual std::string Caption() = 0;
    virtual void SetCaption(const std::string& v) = 0;
    virtual Ref<host::Characters> Characters(const Variant& start = {}, const Variant& length = {}) = 0;
    virtual Ref<host::Font> Font() = 0;
    virtual Variant AutoScaleFont() = 0;
    virtual void SetAutoScaleFont(const Variant& v) = 0;
    virtual Variant Orientation() = 0;
    virtual void SetOrientation(const Variant& v) = 0;
    virtual Variant HorizontalAlignment() = 0;
    virtual void SetHorizontalAlignment(const Variant& v) = 0;
    virtual Variant VerticalAlignment() = 0;
    virtual void SetVerticalAlignment(const Variant& v) = 0;
    virtual double Left() = 0;
    virtual void SetLeft(double v) = 0;
    virtual double Top() = 0;
    virtual void SetTop(double v) = 0;
    virtual double Width() = 0;
    virtual double Height() = 0;
    virtual long Position() = 0;
    virtual void SetPosition(long v) = 0;
    virtual bool IncludeInLayout() = 0;
    virtual void SetIncludeInLayout(bool v) = 0;
    virtual bool Shadow() = 0;
    virtual void SetShadow(bool v) = 0;
    virtual Ref<host::Interior> Interior() = 0;
    virtual Ref<host::Border> Border() = 0;
    virtual Ref<host::ChartFillFormat> Fill() = 0;
    virtual Ref<host::ChartFormat> Format() = 0;
    virtual void Delete() = 0;  // the axis's HasTitle becomes False
};

// ---------------------------------------------------------------- axes

class TickLabels {
public:
    virtual ~TickLabels() = default;
    virtual Ref<host::Font> Font() = 0;
    virtual Variant AutoScaleFont() = 0;
    virtual void SetAutoScaleFont(const Variant& v) = 0;
    virtual std::string NumberFormat() = 0;
    virtual void SetNumberFormat(const std::string& v) = 0;  // turns NumberFormatLinked off
    // True: the labels take the number format of the source cells.
    virtual bool NumberFormatLinked() = 0;
    virtual void SetNumberFormatLinked(bool v) = 0;
    virtual long Orientation() = 0;  // xlTickLabelOrientation... or degrees from -90 to 90
    virtual void SetOrientation(long v) = 0;
    virtual long Offset() = 0;  // distance from the axis, in percent of the font size
    virtual void SetOffset(long v) = 0;
    virtual long Alignment() = 0;
    virtual void SetAlignment(long v) = 0;
    virtual long ReadingOrder() = 0;
    virtual void SetReadingOrder(long v) = 0;
    virtual void Delete() = 0;
};

class Gridlines {
public:
    virtual ~Gridlines() = default;
    virtual Ref<host::Border> Border() = 0;
    virtual Ref<host::ChartFormat> Format() = 0;
    virtual void Delete() = 0;  // the axis's HasMajorGridlines or HasMinorGridlines becomes False
};

// An axis of a chart. Scale values (MinimumScale, MaximumScale, MajorUnit, MinorUnit, BaseUnit)
// pair with an IsAuto flag: writing the value turns the flag off; writing the flag True hands the
// value back to the application, and reading the value then answers what the application computed
// from the data. Members of the value scale raise on a category axis that isn't a date axis.
class Axis {
public:
    virtual ~Axis() = default;
    virtual long Type() = 0;       // xlCategory, xlValue, xlSeriesAxis
    virtual long AxisGroup() = 0;  // xlPrimary, xlSecondary

    virtual bool HasTitle() = 0;
    virtual void SetHasTitle(bool v) = 0;
    virtual Ref<host::AxisTitle> AxisTitle() = 0;  // raises while HasTitle is False
    virtual Ref<host::TickLabels> TickLabels() = 0;
    virtual bool HasMajorGridlines() = 0;
    virtual void SetHasMajorGridlines(bool v) = 0;
    virtual bool HasMinorGridlines() = 0;
    virtual void SetHasMinorGridlines(bool v) = 0;
    virtual Ref<host::Gridlines> MajorGridlines() = 0;
    virtual Ref<host::Gridlines> MinorGridlines() = 0;
    virtual Ref<host::Border> Border() = 0;  // the axis line
    virtual Ref<host::ChartFormat> Format() = 0;

    virtual double MinimumScale() = 0;
    virtual void SetMinimumScale(double v) = 0;
    virtual bool MinimumScaleIsAuto() = 0;
    virtual void SetMinimumScaleIsAuto(bool v) = 0;
    virtual double MaximumScale() = 0;
    virtual void SetMaximumScale(double v) = 0;
    virtual bool MaximumScaleIsAuto() = 0;
    virtual void SetMaximumScaleIsAuto(bool v) = 0;
    virtual double MajorUnit() = 0;
    virtual void SetMajorUnit(double v) = 0;
    virtual bool MajorUnitIsAuto() = 0;
    virtual void SetMajorUnitIsAuto(bool v) = 0;
    virtual double MinorUnit() = 0;
    virtual void SetMinorUnit(double v) = 0;
    virtual bool MinorUnitIsAuto() = 0;
    virtual void SetMinorUnitIsAuto(bool v) = 0;
    virtual long ScaleType() = 0;  // xlScaleLinear, xlScaleLogarithmic
    virtual void SetScaleType(long v) = 0;
    virtual double LogBase() = 0;
    virtual void SetLogBase(double v) = 0;
    virtual long DisplayUnit() = 0;  // xlNone, xlThousands ..., xlCustom
    virtual void SetDisplayUnit(long v) = 0;
    virtual double DisplayUnitCustom() = 0;
    virtual void SetDisplayUnitCustom(double v) = 0;
    virtual bool HasDisplayUnitLabel() = 0;
    virtual void SetHasDisplayUnitLabel(bool v) = 0;

    // Where the other axis crosses this one: xlAxisCrossesAutomatic, ...Minimum, ...Maximum, or
    // ...Custom at CrossesAt (writing CrossesAt sets Custom).
    virtual long Crosses() = 0;
    virtual void SetCrosses(long v) = 0;
    virtual double CrossesAt() = 0;
    virtual void SetCrossesAt(double v) = 0;
    virtual bool ReversePlotOrder() = 0;
    virtual void SetReversePlotOrder(bool v) = 0;
    virtual bool AxisBetweenCategories() = 0;  // the value axis crosses between categories
    virtual void SetAxisBetweenCategories(bool v) = 0;

    virtual long TickLabelPosition() = 0;  // xlTickLabelPositionNextToAxis, ...Low, ...High, ...None
    virtual void SetTickLabelPosition(long v) = 0;
    virtual long MajorTickMark() = 0;  // xlTickMarkOutside, ...Inside, ...Cross, ...None
    virtual void SetMajorTickMark(long v) = 0;
    virtual long MinorTickMark() = 0;
    virtual void SetMinorTickMark(long v) = 0;
    virtual long TickLabelSpacing() = 0;  // category axes: every n-th label
    virtual void SetTickLabelSpacing(long v) = 0;
    virtual bool TickLabelSpacingIsAuto() = 0;
    virtual void SetTickLabelSpacingIsAuto(bool v) = 0;
    virtual long TickMarkSpacing() = 0;
    virtual void SetTickMarkSpacing(long v) = 0;

    virtual long CategoryType() = 0;  // xlCategoryScale, xlTimeScale, xlAutomaticScale
    virtual void SetCategoryType(long v) = 0;
    virtual long BaseUnit() = 0;  // date axes: xlDays, xlMonths, xlYears
    virtual void SetBaseUnit(long v) = 0;
    virtual bool BaseUnitIsAuto() = 0;
    virtual void SetBaseUnitIsAuto(bool v) = 0;

    virtual double Left() = 0;
    virtual double Top() = 0;
    virtual double Width() = 0;
    virtual double Height() = 0;
    virtual void Delete() = 0;  // the chart's HasAxis of this axis becomes False
};

// ---------------------------------------------------------------- legend

// An entry of the legend still shown; a deleted entry leaves the collection, and the entries
// after it move up.
class LegendEntry {
public:
    virtual ~LegendEntry() = default;
    virtual long Index() = 0;
    virtual Ref<host::Font> Font() = 0;
    virtual Variant AutoScaleFont() = 0;
    virtual void SetAutoScaleFont(const Variant& v) = 0;
    virtual Ref<host::ChartFormat> Format() = 0;
    virtual double Left() = 0;
    virtual double Top() = 0;
    virtual double Width() = 0;
    virtual double Height() = 0;
    virtual void Delete() = 0;
};

class LegendEntries {
public:
    virtual ~LegendEntries() = default;
    virtual long Count() = 0;
    virtual Ref<host::LegendEntry> Item(long index) = 0;
};

// Position is an xlLegendPosition.... A legend dragged to a place of its own, or given Left or
// Top, has a manual layout; what Position reads for it differs between versions
// (xlLegendPositionCustom, or an error). Writing Position gives the layout back to the
// application.
class Legend {
public:
    virtual ~Legend() = default;
    virtual long Position() = 0;
    virtual void SetPosition(long v) = 0;
    virtual double Left() = 0;
    virtual void SetLeft(double v) = 0;
    virtual double Top() = 0;
    virtual void SetTop(double v) = 0;
    virtual double Width() = 0;
    virtual void SetWidth(double v) = 0;
    virtual double Height() = 0;
    virtual void SetHeight(double v) = 0;
    virtual Ref<host::Font> Font() = 0;
    virtual Variant AutoScaleFont() = 0;
    virtual void SetAutoScaleFont(const Variant& v) = 0;
    virtual Ref<host::LegendEntries> LegendEntries() = 0;
    virtual Ref<host::LegendEntry> LegendEntries(long index) = 0;
    virtual bool IncludeInLayout() = 0;  // the plot area leaves room for the legend
    virtual void SetIncludeInLayout(bool v) = 0;
    virtual bool Shadow() = 0;
    virtual void SetShadow(bool v) = 0;
    virtual Ref<host::Interior> Interior() = 0;
    virtual Ref<host::Border> Border() = 0;
    virtual Ref<host::ChartFillFormat> Fill() = 0;
    virtual Ref<host::ChartFormat> Format() = 0;
    virtual void Delete() = 0;  // the chart's HasLegend becomes False
};

// ---------------------------------------------------------------- data labels

// The label of one point. Writing Text (or Caption, the same text) fixes the text: AutoText turns
// off and the label no longer follows the value. The Show... members say what an automatic text
// is made of.
class DataLabel {
public:
    virtual ~DataLabel() = default;
    virtual std::string Text() = 0;
    virtual void SetText(const std::string& v) = 0;
    virtual std::string Caption() = 0;
    virtual void SetCaption(const std::string& v) = 0;
    virtual Ref<host::Characters> Characters(const Variant& start = {}, const Variant& length = {}) = 0;
    virtual bool AutoText() = 0;
    virtual void SetAutoText(bool v) = 0;
    virtual Ref<host::Font> Font() = 0;
    virtual Variant AutoScaleFont() = 0;
    virtual void SetAutoScaleFont(const Variant& v) = 0;
    virtual long Position() = 0;  // xlLabelPosition...
    virtual void SetPosition(long v) = 0;
    virtual double Left() = 0;  // writing Left or Top makes the position xlLabelPositionCustom
    virtual void SetLeft(double v) = 0;
    virtual double Top() = 0;
    virtual void SetTop(double v) = 0;
    virtual double Width() = 0;
    virtual double Height() = 0;
    virtual Variant Orientation() = 0;
    virtual void SetOrientation(const Variant& v) = 0;
    virtual Variant HorizontalAlignment() = 0;
    virtual void SetHorizontalAlignment(const Variant& v) = 0;
    virtual Variant VerticalAlignment() = 0;
    virtual void SetVerticalAlignment(const Variant& v) = 0;
    virtual std::string NumberFormat() = 0;
    virtual void SetNumberFormat(const std::string& v) = 0;
    virtual bool NumberFormatLinked() = 0;
    virtual void SetNumberFormatLinked(bool v) = 0;
    virtual Variant Type() = 0;  // xlDataLabelsShowValue, ...Percent ...
    virtual void SetType(const Variant& v) = 0;
    virtual bool ShowValue() = 0;
    virtual void SetShowValue(bool v) = 0;
    virtual bool ShowCategoryName() = 0;
    virtual void SetShowCategoryName(bool v) = 0;
    virtual bool ShowSeriesName() = 0;
    virtual void SetShowSeriesName(bool v) = 0;
    virtual bool ShowPercentage() = 0;
    virtual void SetShowPercentage(bool v) = 0;
    virtual bool ShowBubbleSize() = 0;
    virtual void SetShowBubbleSize(bool v) = 0;
    virtual bool ShowLegendKey() = 0;
    virtual void SetShowLegendKey(bool v) = 0;
    virtual Variant Separator() = 0;
    virtual void SetSeparator(const Variant& v) = 0;
    virtual Ref<host::Interior> Interior() = 0;
    virtual Ref<host::Border> Border() = 0;
    virtual Ref<host::ChartFillFormat> Fill() = 0;
    virtual Ref<host::ChartFormat> Format() = 0;
    virtual void Delete() = 0;  // the point's HasDataLabel becomes False
};

// The labels of all points of a series. Writing a member goes to every label; reading a Variant
// member answers Null where the labels differ.
class DataLabels {
public:
    virtual ~DataLabels() = default;
    virtual long Count() = 0;  // one per point of the series
    virtual Ref<host::DataLabel> Item(long index) = 0;
    virtual bool AutoText() = 0;
    virtual void SetAutoText(bool v) = 0;
    virtual Ref<host::Font> Font() = 0;
    virtual Variant AutoScaleFont() = 0;
    virtual void SetAutoScaleFont(const Variant& v) = 0;
    virtual long Position() = 0;
    virtual void SetPosition(long v) = 0;
    virtual Variant Orientation() = 0;
    virtual void SetOrientation(const Variant& v) = 0;
    virtual Variant HorizontalAlignment() = 0;
    virtual void SetHorizontalAlignment(const Variant& v) = 0;
    virtual Variant VerticalAlignment() = 0;
    virtual void SetVerticalAlignment(const Variant& v) = 0;
    virtual std::string NumberFormat() = 0;
    virtual void SetNumberFormat(const std::string& v) = 0;
    virtual bool NumberFormatLinked() = 0;
    virtual void SetNumberFormatLinked(bool v) = 0;
    virtual Variant Type() = 0;
    virtual void SetType(const Variant& v) = 0;
    virtual bool ShowValue() = 0;
    virtual void SetShowValue(bool v) = 0;
    virtual bool ShowCategoryName() = 0;
    virtual void SetShowCategoryName(bool v) = 0;
    virtual bool ShowSeriesName() = 0;
    virtual void SetShowSeriesName(bool v) = 0;
    virtual bool ShowPercentage() = 0;
    virtual void SetShowPercentage(bool v) = 0;
    virtual bool ShowBubbleSize() = 0;
    virtual void SetShowBubbleSize(bool v) = 0;
    virtual bool ShowLegendKey() = 0;
    virtual void SetShowLegendKey(bool v) = 0;
    virtual Variant Separator() = 0;
    virtual void SetSeparator(const Variant& v) = 0;
    virtual bool Shadow() = 0;
    virtual void SetShadow(bool v) = 0;
    virtual Ref<host::Interior> Interior() = 0;
    virtual Ref<host::Border> Border() = 0;
    virtual Ref<host::ChartFillFormat> Fill() = 0;
    virtual Ref<host::ChartFormat> Format() = 0;
    virtual void Delete() = 0;  // the series' HasDataLabels becomes False
};

// ---------------------------------------------------------------- series and points

// One data point of a series. A point's formats override the series' own.
class Point {
public:
    virtual ~Point() = default;
    virtual bool HasDataLabel() = 0;
    virtual void SetHasDataLabel(bool v) = 0;
    virtual Ref<host::DataLabel> DataLabel() = 0;  // raises while HasDataLabel is False
    virtual void ApplyDataLabels(long type = xlDataLabelsShowValue, const Variant& legendKey = {},
                                 const Variant& autoText = {}, const Variant& hasLeaderLines = {},
                                 const Variant& showSeriesName = {}, const Variant& showCategoryName = {},
                                 const Variant& showValue = {}, const Variant& showPercentage = {},
                                 const Variant& showBubbleSize = {}, const Variant& separator = {}) = 0;
    virtual Ref<host::Interior> Interior() = 0;
    virtual Ref<host::Border> Border() = 0;
    virtual Ref<host::ChartFillFormat> Fill() = 0;
    virtual Ref<host::ChartFormat> Format() = 0;
    virtual long MarkerStyle() = 0;
    virtual void SetMarkerStyle(long v) = 0;
    virtual long MarkerSize() = 0;
    virtual void SetMarkerSize(long v) = 0;
    virtual long MarkerBackgroundColor() = 0;
    virtual void SetMarkerBackgroundColor(long rgb) = 0;
    virtual long MarkerBackgroundColorIndex() = 0;
    virtual void SetMarkerBackgroundColorIndex(long v) = 0;
    virtual long MarkerForegroundColor() = 0;
    virtual void SetMarkerForegroundColor(long rgb) = 0;
    virtual long MarkerForegroundColorIndex() = 0;
    virtual void SetMarkerForegroundColorIndex(long v) = 0;
    virtual long Explosion() = 0;  // pie slices: distance from the centre, percent of the radius
    virtual void SetExplosion(long v) = 0;
    virtual bool InvertIfNegative() = 0;
    virtual void SetInvertIfNegative(bool v) = 0;
    virtual double Left() = 0;
    virtual double Top() = 0;
    virtual double Width() = 0;
    virtual double Height() = 0;
    virtual void ClearFormats() = 0;
    virtual void Delete() = 0;
};

class Points {
public:
    virtual ~Points() = default;
    virtual long Count() = 0;
    virtual Ref<host::Point> Item(long index) = 0;
};

// A series of a chart. Its data are set by reference text: "=Sheet!$B$2:$B$9" (A1) or
// "=Sheet!R2C2:R9C2" (R1C1), a sheet name with spaces or signs in single quotes; as a range; or as
// literal values. Name takes a plain text or a reference to one cell ("=Sheet!$C$1"). A reference
// that doesn't parse raises 1004. Values and XValues read back the values as the series holds
// them, one per point; BubbleSizes reads back its reference as A1 text; Formula reads the whole
// "=SERIES(name,categories,values,order[,sizes])" with references in A1 style.
class Series {
public:
    virtual ~Series() = default;
    virtual std::string Name() = 0;
    virtual void SetName(const std::string& v) = 0;
    virtual std::vector<Variant> Values() = 0;
    virtual void SetValues(const Variant& reference) = 0;
    virtual void SetValues(Ref<host::Range> source) = 0;
    virtual void SetValues(const std::vector<Variant>& values) = 0;
    virtual std::vector<Variant> XValues() = 0;
    virtual void SetXValues(const Variant& reference) = 0;
    virtual void SetXValues(Ref<host::Range> source) = 0;
    virtual void SetXValues(const std::vector<Variant>& values) = 0;
    virtual Variant BubbleSizes() = 0;  // bubble charts only
    virtual void SetBubbleSizes(const Variant& reference) = 0;
    virtual void SetBubbleSizes(Ref<host::Range> source) = 0;
    virtual void SetBubbleSizes(const std::vector<Variant>& values) = 0;
    virtual std::string Formula() = 0;
    virtual void SetFormula(const std::string& v) = 0;
    virtual std::string FormulaR1C1() = 0;
    virtual void SetFormulaR1C1(const std::string& v) = 0;
    virtual long PlotOrder() = 0;  // position among the series of its chart group, 1-based
    virtual void SetPlotOrder(long v) = 0;

    // A series can have a type of its own (a line over columns); writing moves it to the chart
    // group of that type.
    virtual long ChartType() = 0;
    virtual void SetChartType(long v) = 0;
    virtual long AxisGroup() = 0;  // xlPrimary, xlSecondary
    virtual void SetAxisGroup(long v) = 0;

    // The fill as the application painted it, automatic colours included: a new series reads
    // the colour it was given at once.
    virtual Ref<host::Interior> Interior() = 0;
    virtual Ref<host::Border> Border() = 0;  // the line of line series, the outline of others
    virtual Ref<host::ChartFillFormat> Fill() = 0;
    virtual Ref<host::ChartFormat> Format() = 0;
    virtual long MarkerStyle() = 0;  // xlMarkerStyle...
    virtual void SetMarkerStyle(long v) = 0;
    virtual long MarkerSize() = 0;  // 2 to 72 points
    virtual void SetMarkerSize(long v) = 0;
    virtual long MarkerBackgroundColor() = 0;  // RGB
    virtual void SetMarkerBackgroundColor(long rgb) = 0;
    virtual long MarkerBackgroundColorIndex() = 0;  // palette index, xlColorIndexAutomatic, ...None
    virtual void SetMarkerBackgroundColorIndex(long v) = 0;
    virtual long MarkerForegroundColor() = 0;
    virtual void SetMarkerForegroundColor(long rgb) = 0;
    virtual long MarkerForegroundColorIndex() = 0;
    virtual void SetMarkerForegroundColorIndex(long v) = 0;
    virtual bool Smooth() = 0;
    virtual void SetSmooth(bool v) = 0;
    virtual long Explosion() = 0;
    virtual void SetExplosion(long v) = 0;
    virtual bool InvertIfNegative() = 0;
    virtual void SetInvertIfNegative(bool v) = 0;
    virtual long BarShape() = 0;
    virtual void SetBarShape(long v) = 0;
    virtual bool Shadow() = 0;
    virtual void SetShadow(bool v) = 0;

    virtual bool HasDataLabels() = 0;
    virtual void SetHasDataLabels(bool v) = 0;
    virtual Ref<host::DataLabels> DataLabels() = 0;          // raises while HasDataLabels is False
    virtual Ref<host::DataLabel> DataLabels(long index) = 0;  // the label of point index
    // Turns the labels on, showing what type says; the Show... arguments left out follow it.
    virtual void ApplyDataLabels(long type = xlDataLabelsShowValue, const Variant& legendKey = {},
                                 const Variant& autoText = {}, const Variant& hasLeaderLines = {},
                                 const Variant& showSeriesName = {}, const Variant& showCategoryName = {},
                                 const Variant& showValue = {}, const Variant& showPercentage = {},
                                 const Variant& showBubbleSize = {}, const Variant& separator = {}) = 0;
    virtual bool HasLeaderLines() = 0;
    virtual void SetHasLeaderLines(bool v) = 0;
    virtual Ref<host::Points> Points() = 0;
    virtual Ref<host::Point> Points(long index) = 0;
    virtual void ClearFormats() = 0;
    virtual void Delete() = 0;
};

// The series of a chart, or of one chart group, in plot order. Item by name takes the first
// series of that name.
class SeriesCollection {
public:
    virtual ~SeriesCollection() = default;
    virtual long Count() = 0;
    virtual Ref<host::Series> Item(long index) = 0;
    virtual Ref<host::Series> Item(const std::string& name) = 0;
    // An empty series at the end, of the chart's type, with an automatic colour.
    virtual Ref<host::Series> NewSeries() = 0;
    // Series made from a range: one per column (xlColumns) or row (xlRows); seriesLabels and
    // categoryLabels say whether the first row or column holds names; left out, the application
    // guesses. replace: with categoryLabels True, the new categories replace the old ones.
    virtual Ref<host::Series> Add(Ref<host::Range> source, long rowcol = xlColumns,
                                  const Variant& seriesLabels = {}, const Variant& categoryLabels = {},
                                  const Variant& replace = {}) = 0;
    // Adds points to the existing series from a range.
    virtual void Extend(Ref<host::Range> source, const Variant& rowcol = {},
                        const Variant& categoryLabels = {}) = 0;
};

// ---------------------------------------------------------------- chart groups

// The series of one chart type on one axis group, with the settings they share.
class ChartGroup {
public:
    virtual ~ChartGroup() = default;
    virtual long Index() = 0;
    virtual long AxisGroup() = 0;
    virtual void SetAxisGroup(long v) = 0;
    virtual Ref<host::SeriesCollection> SeriesCollection() = 0;
    virtual Ref<host::Series> SeriesCollection(const Variant& indexOrName) = 0;
    virtual long GapWidth() = 0;  // bars and columns: the gap between clusters, 0 to 500 percent
    virtual void SetGapWidth(long v) = 0;
    virtual long Overlap() = 0;  // bars and columns: -100 to 100 percent
    virtual void SetOverlap(long v) = 0;
    virtual bool VaryByCategories() = 0;  // one colour per point, of a chart with one series
    virtual void SetVaryByCategories(bool v) = 0;
    virtual long FirstSliceAngle() = 0;  // pies and doughnuts: 0 to 360 degrees
    virtual void SetFirstSliceAngle(long v) = 0;
    virtual long DoughnutHoleSize() = 0;  // 10 to 90 percent
    virtual void SetDoughnutHoleSize(long v) = 0;
    virtual long BubbleScale() = 0;  // 0 to 300 percent of the default size
    virtual void SetBubbleScale(long v) = 0;
    virtual long SizeRepresents() = 0;  // xlSizeIsArea, xlSizeIsWidth
    virtual void SetSizeRepresents(long v) = 0;
    virtual bool ShowNegativeBubbles() = 0;
    virtual void SetShowNegativeBubbles(bool v) = 0;
    virtual bool HasDropLines() = 0;
    virtual void SetHasDropLines(bool v) = 0;
    virtual bool HasHiLoLines() = 0;
    virtual void SetHasHiLoLines(bool v) = 0;
    virtual bool HasUpDownBars() = 0;
    virtual void SetHasUpDownBars(bool v) = 0;
    virtual bool HasSeriesLines() = 0;
    virtual void SetHasSeriesLines(bool v) = 0;
    virtual bool HasRadarAxisLabels() = 0;
    virtual void SetHasRadarAxisLabels(bool v) = 0;
    virtual long SplitType() = 0;  // pie of pie, bar of pie
    virtual void SetSplitType(long v) = 0;
    virtual Variant SplitValue() = 0;
    virtual void SetSplitValue(const Variant& v) = 0;
    virtual long SecondPlotSize() = 0;
    virtual void SetSecondPlotSize(long v) = 0;
};

class ChartGroups {
public:
    virtual ~ChartGroups() = default;
    virtual long Count() = 0;
    virtual Ref<host::ChartGroup> Item(long index) = 0;
};

// ---------------------------------------------------------------- the chart

// A chart, embedded in a chart object or on a chart sheet. ChartType is the type of the chart as
// a whole: reading a chart whose series have different types answers the type of one group or
// a mixed value (xlCombination); writing sets every series and rebuilds the chart groups. The
// elements the type doesn't have (axes of a pie) are gone after the change.
class Chart {
public:
    virtual ~Chart() = default;
    virtual Ref<host::Application> Application() = 0;
    virtual Ref<host::ChartObject> Parent() = 0;  // Nothing for a chart sheet
    virtual std::string Name() = 0;
    virtual void SetName(const std::string& v) = 0;
    virtual long ChartType() = 0;
    virtual void SetChartType(long v) = 0;
    virtual Variant ChartStyle() = 0;
    virtual void SetChartStyle(const Variant& v) = 0;

    virtual Ref<host::SeriesCollection> SeriesCollection() = 0;
    virtual Ref<host::Series> SeriesCollection(const Variant& indexOrName) = 0;
    virtual void SetSourceData(Ref<host::Range> source, const Variant& plotBy = {}) = 0;
    virtual long PlotBy() = 0;  // xlColumns, xlRows: how SetSourceData reads a range
    virtual void SetPlotBy(long v) = 0;
    virtual Ref<host::ChartGroups> ChartGroups() = 0;
    virtual Ref<host::ChartGroup> ChartGroups(long index) = 0;
    virtual void ApplyDataLabels(long type = xlDataLabelsShowValue, const Variant& legendKey = {},
                                 const Variant& autoText = {}, const Variant& hasLeaderLines = {},
                                 const Variant& showSeriesName = {}, const Variant& showCategoryName = {},
                                 const Variant& showValue = {}, const Variant& showPercentage = {},
                                 const Variant& showBubbleSize = {}, const Variant& separator = {}) = 0;

    virtual bool HasTitle() = 0;
    virtual void SetHasTitle(bool v) = 0;
    virtual Ref<host::ChartTitle> ChartTitle() = 0;  // raises while HasTitle is False
    virtual bool HasLegend() = 0;
    virtual void SetHasLegend(bool v) = 0;
    virtual Ref<host::Legend> Legend() = 0;  // raises while HasLegend is False

    // An axis by type (xlCategory, xlValue, xlSeriesAxis) and group; a missing one raises.
    // HasAxis with the group left out is the primary group's; writing it False removes the axis
    // with its title and gridlines.
    virtual Ref<host::Axis> Axes(long type, long axisGroup = xlPrimary) = 0;
    virtual Variant HasAxis(long type, long axisGroup = xlPrimary) = 0;
    virtual void SetHasAxis(long type, const Variant& v) = 0;
    virtual void SetHasAxis(long type, long axisGroup, const Variant& v) = 0;

    virtual Ref<host::ChartArea> ChartArea() = 0;
    virtual Ref<host::PlotArea> PlotArea() = 0;
    virtual Ref<host::Shapes> Shapes() = 0;  // drawn inside the chart, positions from its corner
    virtual long BarShape() = 0;  // 3-D bars and columns: xlBox ...
    virtual void SetBarShape(long v) = 0;
    virtual long DisplayBlanksAs() = 0;  // xlNotPlotted, xlZero, xlInterpolated
    virtual void SetDisplayBlanksAs(long v) = 0;
    virtual bool PlotVisibleOnly() = 0;
    virtual void SetPlotVisibleOnly(bool v) = 0;
    virtual bool HasDataTable() = 0;
    virtual void SetHasDataTable(bool v) = 0;

    // The 3-D view; raises on 2-D charts.
    virtual long Elevation() = 0;  // -90 to 90 degrees
    virtual void SetElevation(long v) = 0;
    virtual Variant Rotation() = 0;  // 0 to 360 degrees
    virtual void SetRotation(const Variant& v) = 0;
    virtual long Perspective() = 0;  // 0 to 100
    virtual void SetPerspective(long v) = 0;
    virtual Variant RightAngleAxes() = 0;
    virtual void SetRightAngleAxes(const Variant& v) = 0;
    virtual long HeightPercent() = 0;
    virtual void SetHeightPercent(long v) = 0;
    virtual long DepthPercent() = 0;
    virtual void SetDepthPercent(long v) = 0;
    virtual bool AutoScaling() = 0;
    virtual void SetAutoScaling(bool v) = 0;

    virtual void Activate() = 0;
    virtual void Select(const Variant& replace = {}) = 0;
    virtual void Refresh() = 0;
};

}  // namespace host
