#pragma once
// The application's object model for charts: the chart, its series, axes, titles, legend, data
// labels, chart groups and areas. Getters carry the member's name, setters "Set" and the name.
// Distances are points from the top left corner of the chart area. Members raise host::Error as
// the application raises its automation errors; a member that has no meaning for the chart's type
// (the axes of a pie, the bubble scale of a column chart) raises.
//
// A member the implementation leaves out raises error 1004 naming it (see Unavailable).
//
// Interior, Border and Font are those of host/format.h. On chart elements an Interior with no fill
// reads ColorIndex xlNone, an automatic one xlAutomatic. Font members and AutoScaleFont are
// Variants: over a text with mixed formats they read Null.
#include <string>
#include <vector>

#include "host/chart_constants.h"
#include "host/drawing.h"
#include "host/error.h"
#include "host/format.h"
#include "host/fwd.h"
#include "host/variant.h"

// The default bodies name no parameter they leave unused.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wunused-parameter"

namespace host {

// ---------------------------------------------------------------- fills

// The chart's own fill object, as ChartArea.Fill, PlotArea.Fill and Series.Fill answer it. Its
// ForeColor and BackColor are ColorFormats with RGB, SchemeColor and Type. A patterned fill
// draws the pattern (msoPattern...) in the fore colour over the back colour.
class ChartFillFormat {
public:
    virtual ~ChartFillFormat() = default;
    virtual Ref<host::ColorFormat> ForeColor() { Unavailable(this, __func__); }
    virtual Ref<host::ColorFormat> BackColor() { Unavailable(this, __func__); }
    virtual long Visible() { Unavailable(this, __func__); }  // tri-state
    virtual void SetVisible(long v) { Unavailable(this, __func__); }
    virtual long Type() { Unavailable(this, __func__); }     // msoFillSolid, msoFillPatterned ...
    virtual long Pattern() { Unavailable(this, __func__); }  // of a patterned fill
    virtual long GradientStyle() { Unavailable(this, __func__); }
    virtual long GradientVariant() { Unavailable(this, __func__); }
    virtual double GradientDegree() { Unavailable(this, __func__); }
    virtual long GradientColorType() { Unavailable(this, __func__); }
    virtual void Solid() { Unavailable(this, __func__); }
    virtual void Patterned(long pattern) { Unavailable(this, __func__); }
    virtual void OneColorGradient(long style, long variant, double degree) { Unavailable(this, __func__); }
    virtual void TwoColorGradient(long style, long variant) { Unavailable(this, __func__); }
    virtual void PresetGradient(long style, long variant, long presetGradientType) { Unavailable(this, __func__); }
    virtual void PresetTextured(long presetTexture) { Unavailable(this, __func__); }
};

// The drawing-layer formats of a chart element (its Format member).
class ChartFormat {
public:
    virtual ~ChartFormat() = default;
    virtual Ref<host::FillFormat> Fill() { Unavailable(this, __func__); }
    virtual Ref<host::LineFormat> Line() { Unavailable(this, __func__); }
    virtual Ref<host::TextFrame2> TextFrame2() { Unavailable(this, __func__); }  // of elements that hold text
};

// ---------------------------------------------------------------- areas

class ChartArea {
public:
    virtual ~ChartArea() = default;
    virtual Ref<host::Interior> Interior() { Unavailable(this, __func__); }
    virtual Ref<host::Border> Border() { Unavailable(this, __func__); }
    virtual Ref<host::ChartFillFormat> Fill() { Unavailable(this, __func__); }
    virtual Ref<host::ChartFormat> Format() { Unavailable(this, __func__); }
    virtual Ref<host::Font> Font() { Unavailable(this, __func__); }  // the default font of all the chart's texts
    // True: texts scale with the chart when it is resized. True, False or Null.
    virtual Variant AutoScaleFont() { Unavailable(this, __func__); }
    virtual void SetAutoScaleFont(const Variant& v) { Unavailable(this, __func__); }
    virtual double Left() { Unavailable(this, __func__); }
    virtual void SetLeft(double v) { Unavailable(this, __func__); }
    virtual double Top() { Unavailable(this, __func__); }
    virtual void SetTop(double v) { Unavailable(this, __func__); }
    virtual double Width() { Unavailable(this, __func__); }
    virtual void SetWidth(double v) { Unavailable(this, __func__); }
    virtual double Height() { Unavailable(this, __func__); }
    virtual void SetHeight(double v) { Unavailable(this, __func__); }
    virtual bool RoundedCorners() { Unavailable(this, __func__); }
    virtual void SetRoundedCorners(bool v) { Unavailable(this, __func__); }
    virtual bool Shadow() { Unavailable(this, __func__); }
    virtual void SetShadow(bool v) { Unavailable(this, __func__); }
    virtual void Clear() { Unavailable(this, __func__); }
    virtual void ClearFormats() { Unavailable(this, __func__); }
};

// Left, Top, Width and Height are the box of the plot with its tick labels; the Inside members
// the box the axes enclose. Writing any of them gives the plot area a manual layout, Position
// then reads xlChartElementPositionCustom; writing Position xlChartElementPositionAutomatic gives
// the layout back to the application.
class PlotArea {
public:
    virtual ~PlotArea() = default;
    virtual Ref<host::Interior> Interior() { Unavailable(this, __func__); }
    virtual Ref<host::Border> Border() { Unavailable(this, __func__); }
    virtual Ref<host::ChartFillFormat> Fill() { Unavailable(this, __func__); }
    virtual Ref<host::ChartFormat> Format() { Unavailable(this, __func__); }
    virtual double Left() { Unavailable(this, __func__); }
    virtual void SetLeft(double v) { Unavailable(this, __func__); }
    virtual double Top() { Unavailable(this, __func__); }
    virtual void SetTop(double v) { Unavailable(this, __func__); }
    virtual double Width() { Unavailable(this, __func__); }
    virtual void SetWidth(double v) { Unavailable(this, __func__); }
    virtual double Height() { Unavailable(this, __func__); }
    virtual void SetHeight(double v) { Unavailable(this, __func__); }
    virtual double InsideLeft() { Unavailable(this, __func__); }
    virtual void SetInsideLeft(double v) { Unavailable(this, __func__); }
    virtual double InsideTop() { Unavailable(this, __func__); }
    virtual void SetInsideTop(double v) { Unavailable(this, __func__); }
    virtual double InsideWidth() { Unavailable(this, __func__); }
    virtual void SetInsideWidth(double v) { Unavailable(this, __func__); }
    virtual double InsideHeight() { Unavailable(this, __func__); }
    virtual void SetInsideHeight(double v) { Unavailable(this, __func__); }
    virtual long Position() { Unavailable(this, __func__); }
    virtual void SetPosition(long v) { Unavailable(this, __func__); }
    virtual void ClearFormats() { Unavailable(this, __func__); }
};

// ---------------------------------------------------------------- titles

// Text and Caption are the same text. Orientation is xlHorizontal, xlUpward, xlDownward,
// xlVertical or an angle in degrees from -90 to 90. Writing Left or Top moves the title to a
// manual place; Position xlChartElementPositionAutomatic puts it back.
class ChartTitle {
public:
    virtual ~ChartTitle() = default;
    virtual std::string Text() { Unavailable(this, __func__); }
    virtual void SetText(const std::string& v) { Unavailable(this, __func__); }
    virtual std::string Caption() { Unavailable(this, __func__); }
    virtual void SetCaption(const std::string& v) { Unavailable(this, __func__); }
    virtual Ref<host::Characters> Characters(const Variant& start = {}, const Variant& length = {}) { Unavailable(this, __func__); }
    virtual Ref<host::Font> Font() { Unavailable(this, __func__); }
    virtual Variant AutoScaleFont() { Unavailable(this, __func__); }
    virtual void SetAutoScaleFont(const Variant& v) { Unavailable(this, __func__); }
    virtual Variant Orientation() { Unavailable(this, __func__); }
    virtual void SetOrientation(const Variant& v) { Unavailable(this, __func__); }
    virtual Variant HorizontalAlignment() { Unavailable(this, __func__); }
    virtual void SetHorizontalAlignment(const Variant& v) { Unavailable(this, __func__); }
    virtual Variant VerticalAlignment() { Unavailable(this, __func__); }
    virtual void SetVerticalAlignment(const Variant& v) { Unavailable(this, __func__); }
    virtual double Left() { Unavailable(this, __func__); }
    virtual void SetLeft(double v) { Unavailable(this, __func__); }
    virtual double Top() { Unavailable(this, __func__); }
    virtual void SetTop(double v) { Unavailable(this, __func__); }
    virtual double Width() { Unavailable(this, __func__); }
    virtual double Height() { Unavailable(this, __func__); }
    virtual long Position() { Unavailable(this, __func__); }  // xlChartElementPositionAutomatic or ...Custom
    virtual void SetPosition(long v) { Unavailable(this, __func__); }
    virtual bool IncludeInLayout() { Unavailable(this, __func__); }  // the plot area leaves room for the title
    virtual void SetIncludeInLayout(bool v) { Unavailable(this, __func__); }
    virtual bool Shadow() { Unavailable(this, __func__); }
    virtual void SetShadow(bool v) { Unavailable(this, __func__); }
    virtual Ref<host::Interior> Interior() { Unavailable(this, __func__); }
    virtual Ref<host::Border> Border() { Unavailable(this, __func__); }
    virtual Ref<host::ChartFillFormat> Fill() { Unavailable(this, __func__); }
    virtual Ref<host::ChartFormat> Format() { Unavailable(this, __func__); }
    virtual void Delete() { Unavailable(this, __func__); }  // the chart's HasTitle becomes False
};

// As ChartTitle, for the title of an axis.
class AxisTitle {
public:
    virtual ~AxisTitle() = default;
    virtual std::string Text() { Unavailable(this, __func__); }
    virtual void SetText(const std::string& v) { Unavailable(this, __func__); }
    virtual std::string Caption() { Unavailable(this, __func__); }
    virtual void SetCaption(const std::string& v) { Unavailable(this, __func__); }
    virtual Ref<host::Characters> Characters(const Variant& start = {}, const Variant& length = {}) { Unavailable(this, __func__); }
    virtual Ref<host::Font> Font() { Unavailable(this, __func__); }
    virtual Variant AutoScaleFont() { Unavailable(this, __func__); }
    virtual void SetAutoScaleFont(const Variant& v) { Unavailable(this, __func__); }
    virtual Variant Orientation() { Unavailable(this, __func__); }
    virtual void SetOrientation(const Variant& v) { Unavailable(this, __func__); }
    virtual Variant HorizontalAlignment() { Unavailable(this, __func__); }
    virtual void SetHorizontalAlignment(const Variant& v) { Unavailable(this, __func__); }
    virtual Variant VerticalAlignment() { Unavailable(this, __func__); }
    virtual void SetVerticalAlignment(const Variant& v) { Unavailable(this, __func__); }
    virtual double Left() { Unavailable(this, __func__); }
    virtual void SetLeft(double v) { Unavailable(this, __func__); }
    virtual double Top() { Unavailable(this, __func__); }
    virtual void SetTop(double v) { Unavailable(this, __func__); }
    virtual double Width() { Unavailable(this, __func__); }
    virtual double Height() { Unavailable(this, __func__); }
    virtual long Position() { Unavailable(this, __func__); }
    virtual void SetPosition(long v) { Unavailable(this, __func__); }
    virtual bool IncludeInLayout() { Unavailable(this, __func__); }
    virtual void SetIncludeInLayout(bool v) { Unavailable(this, __func__); }
    virtual bool Shadow() { Unavailable(this, __func__); }
    virtual void SetShadow(bool v) { Unavailable(this, __func__); }
    virtual Ref<host::Interior> Interior() { Unavailable(this, __func__); }
    virtual Ref<host::Border> Border() { Unavailable(this, __func__); }
    virtual Ref<host::ChartFillFormat> Fill() { Unavailable(this, __func__); }
    virtual Ref<host::ChartFormat> Format() { Unavailable(this, __func__); }
    virtual void Delete() { Unavailable(this, __func__); }  // the axis's HasTitle becomes False
};

// ---------------------------------------------------------------- axes

class TickLabels {
public:
    virtual ~TickLabels() = default;
    virtual Ref<host::Font> Font() { Unavailable(this, __func__); }
    virtual Variant AutoScaleFont() { Unavailable(this, __func__); }
    virtual void SetAutoScaleFont(const Variant& v) { Unavailable(this, __func__); }
    virtual std::string NumberFormat() { Unavailable(this, __func__); }
    virtual void SetNumberFormat(const std::string& v) { Unavailable(this, __func__); }  // turns NumberFormatLinked off
    // True: the labels take the number format of the source cells.
    virtual bool NumberFormatLinked() { Unavailable(this, __func__); }
    virtual void SetNumberFormatLinked(bool v) { Unavailable(this, __func__); }
    virtual long Orientation() { Unavailable(this, __func__); }  // xlTickLabelOrientation... or degrees from -90 to 90
    virtual void SetOrientation(long v) { Unavailable(this, __func__); }
    virtual long Offset() { Unavailable(this, __func__); }  // distance from the axis, in percent of the font size
    virtual void SetOffset(long v) { Unavailable(this, __func__); }
    virtual long Alignment() { Unavailable(this, __func__); }
    virtual void SetAlignment(long v) { Unavailable(this, __func__); }
    virtual long ReadingOrder() { Unavailable(this, __func__); }
    virtual void SetReadingOrder(long v) { Unavailable(this, __func__); }
    virtual void Delete() { Unavailable(this, __func__); }
};

class Gridlines {
public:
    virtual ~Gridlines() = default;
    virtual Ref<host::Border> Border() { Unavailable(this, __func__); }
    virtual Ref<host::ChartFormat> Format() { Unavailable(this, __func__); }
    virtual void Delete() { Unavailable(this, __func__); }  // the axis's HasMajorGridlines or HasMinorGridlines becomes False
};

// An axis of a chart. Scale values (MinimumScale, MaximumScale, MajorUnit, MinorUnit, BaseUnit)
// pair with an IsAuto flag: writing the value turns the flag off; writing the flag True hands the
// value back to the application, and reading the value then answers what the application computed
// from the data. Members of the value scale raise on a category axis that isn't a date axis.
class Axis {
public:
    virtual ~Axis() = default;
    virtual long Type() { Unavailable(this, __func__); }       // xlCategory, xlValue, xlSeriesAxis
    virtual long AxisGroup() { Unavailable(this, __func__); }  // xlPrimary, xlSecondary

    virtual bool HasTitle() { Unavailable(this, __func__); }
    virtual void SetHasTitle(bool v) { Unavailable(this, __func__); }
    virtual Ref<host::AxisTitle> AxisTitle() { Unavailable(this, __func__); }  // raises while HasTitle is False
    virtual Ref<host::TickLabels> TickLabels() { Unavailable(this, __func__); }
    virtual bool HasMajorGridlines() { Unavailable(this, __func__); }
    virtual void SetHasMajorGridlines(bool v) { Unavailable(this, __func__); }
    virtual bool HasMinorGridlines() { Unavailable(this, __func__); }
    virtual void SetHasMinorGridlines(bool v) { Unavailable(this, __func__); }
    virtual Ref<host::Gridlines> MajorGridlines() { Unavailable(this, __func__); }
    virtual Ref<host::Gridlines> MinorGridlines() { Unavailable(this, __func__); }
    virtual Ref<host::Border> Border() { Unavailable(this, __func__); }  // the axis line
    virtual Ref<host::ChartFormat> Format() { Unavailable(this, __func__); }

    virtual double MinimumScale() { Unavailable(this, __func__); }
    virtual void SetMinimumScale(double v) { Unavailable(this, __func__); }
    virtual bool MinimumScaleIsAuto() { Unavailable(this, __func__); }
    virtual void SetMinimumScaleIsAuto(bool v) { Unavailable(this, __func__); }
    virtual double MaximumScale() { Unavailable(this, __func__); }
    virtual void SetMaximumScale(double v) { Unavailable(this, __func__); }
    virtual bool MaximumScaleIsAuto() { Unavailable(this, __func__); }
    virtual void SetMaximumScaleIsAuto(bool v) { Unavailable(this, __func__); }
    virtual double MajorUnit() { Unavailable(this, __func__); }
    virtual void SetMajorUnit(double v) { Unavailable(this, __func__); }
    virtual bool MajorUnitIsAuto() { Unavailable(this, __func__); }
    virtual void SetMajorUnitIsAuto(bool v) { Unavailable(this, __func__); }
    virtual double MinorUnit() { Unavailable(this, __func__); }
    virtual void SetMinorUnit(double v) { Unavailable(this, __func__); }
    virtual bool MinorUnitIsAuto() { Unavailable(this, __func__); }
    virtual void SetMinorUnitIsAuto(bool v) { Unavailable(this, __func__); }
    virtual long ScaleType() { Unavailable(this, __func__); }  // xlScaleLinear, xlScaleLogarithmic
    virtual void SetScaleType(long v) { Unavailable(this, __func__); }
    virtual double LogBase() { Unavailable(this, __func__); }
    virtual void SetLogBase(double v) { Unavailable(this, __func__); }
    virtual long DisplayUnit() { Unavailable(this, __func__); }  // xlNone, xlThousands ..., xlCustom
    virtual void SetDisplayUnit(long v) { Unavailable(this, __func__); }
    virtual double DisplayUnitCustom() { Unavailable(this, __func__); }
    virtual void SetDisplayUnitCustom(double v) { Unavailable(this, __func__); }
    virtual bool HasDisplayUnitLabel() { Unavailable(this, __func__); }
    virtual void SetHasDisplayUnitLabel(bool v) { Unavailable(this, __func__); }

    // Where the other axis crosses this one: xlAxisCrossesAutomatic, ...Minimum, ...Maximum, or
    // ...Custom at CrossesAt (writing CrossesAt sets Custom).
    virtual long Crosses() { Unavailable(this, __func__); }
    virtual void SetCrosses(long v) { Unavailable(this, __func__); }
    virtual double CrossesAt() { Unavailable(this, __func__); }
    virtual void SetCrossesAt(double v) { Unavailable(this, __func__); }
    virtual bool ReversePlotOrder() { Unavailable(this, __func__); }
    virtual void SetReversePlotOrder(bool v) { Unavailable(this, __func__); }
    virtual bool AxisBetweenCategories() { Unavailable(this, __func__); }  // the value axis crosses between categories
    virtual void SetAxisBetweenCategories(bool v) { Unavailable(this, __func__); }

    virtual long TickLabelPosition() { Unavailable(this, __func__); }  // xlTickLabelPositionNextToAxis, ...Low, ...High, ...None
    virtual void SetTickLabelPosition(long v) { Unavailable(this, __func__); }
    virtual long MajorTickMark() { Unavailable(this, __func__); }  // xlTickMarkOutside, ...Inside, ...Cross, ...None
    virtual void SetMajorTickMark(long v) { Unavailable(this, __func__); }
    virtual long MinorTickMark() { Unavailable(this, __func__); }
    virtual void SetMinorTickMark(long v) { Unavailable(this, __func__); }
    virtual long TickLabelSpacing() { Unavailable(this, __func__); }  // category axes: every n-th label
    virtual void SetTickLabelSpacing(long v) { Unavailable(this, __func__); }
    virtual bool TickLabelSpacingIsAuto() { Unavailable(this, __func__); }
    virtual void SetTickLabelSpacingIsAuto(bool v) { Unavailable(this, __func__); }
    virtual long TickMarkSpacing() { Unavailable(this, __func__); }
    virtual void SetTickMarkSpacing(long v) { Unavailable(this, __func__); }

    virtual long CategoryType() { Unavailable(this, __func__); }  // xlCategoryScale, xlTimeScale, xlAutomaticScale
    virtual void SetCategoryType(long v) { Unavailable(this, __func__); }
    virtual long BaseUnit() { Unavailable(this, __func__); }  // date axes: xlDays, xlMonths, xlYears
    virtual void SetBaseUnit(long v) { Unavailable(this, __func__); }
    virtual bool BaseUnitIsAuto() { Unavailable(this, __func__); }
    virtual void SetBaseUnitIsAuto(bool v) { Unavailable(this, __func__); }

    virtual double Left() { Unavailable(this, __func__); }
    virtual double Top() { Unavailable(this, __func__); }
    virtual double Width() { Unavailable(this, __func__); }
    virtual double Height() { Unavailable(this, __func__); }
    virtual void Delete() { Unavailable(this, __func__); }  // the chart's HasAxis of this axis becomes False
};

// ---------------------------------------------------------------- legend

// An entry of the legend still shown; a deleted entry leaves the collection, and the entries
// after it move up.
class LegendEntry {
public:
    virtual ~LegendEntry() = default;
    virtual long Index() { Unavailable(this, __func__); }
    virtual Ref<host::Font> Font() { Unavailable(this, __func__); }
    virtual Variant AutoScaleFont() { Unavailable(this, __func__); }
    virtual void SetAutoScaleFont(const Variant& v) { Unavailable(this, __func__); }
    virtual Ref<host::ChartFormat> Format() { Unavailable(this, __func__); }
    virtual double Left() { Unavailable(this, __func__); }
    virtual double Top() { Unavailable(this, __func__); }
    virtual double Width() { Unavailable(this, __func__); }
    virtual double Height() { Unavailable(this, __func__); }
    virtual void Delete() { Unavailable(this, __func__); }
};

class LegendEntries {
public:
    virtual ~LegendEntries() = default;
    virtual long Count() { Unavailable(this, __func__); }
    virtual Ref<host::LegendEntry> Item(long index) { Unavailable(this, __func__); }
};

// Position is an xlLegendPosition.... A legend dragged to a place of its own, or given Left or
// Top, has a manual layout; what Position reads for it differs between versions
// (xlLegendPositionCustom, or an error). Writing Position gives the layout back to the
// application.
class Legend {
public:
    virtual ~Legend() = default;
    virtual long Position() { Unavailable(this, __func__); }
    virtual void SetPosition(long v) { Unavailable(this, __func__); }
    virtual double Left() { Unavailable(this, __func__); }
    virtual void SetLeft(double v) { Unavailable(this, __func__); }
    virtual double Top() { Unavailable(this, __func__); }
    virtual void SetTop(double v) { Unavailable(this, __func__); }
    virtual double Width() { Unavailable(this, __func__); }
    virtual void SetWidth(double v) { Unavailable(this, __func__); }
    virtual double Height() { Unavailable(this, __func__); }
    virtual void SetHeight(double v) { Unavailable(this, __func__); }
    virtual Ref<host::Font> Font() { Unavailable(this, __func__); }
    virtual Variant AutoScaleFont() { Unavailable(this, __func__); }
    virtual void SetAutoScaleFont(const Variant& v) { Unavailable(this, __func__); }
    virtual Ref<host::LegendEntries> LegendEntries() { Unavailable(this, __func__); }
    virtual Ref<host::LegendEntry> LegendEntries(long index) { Unavailable(this, __func__); }
    virtual bool IncludeInLayout() { Unavailable(this, __func__); }  // the plot area leaves room for the legend
    virtual void SetIncludeInLayout(bool v) { Unavailable(this, __func__); }
    virtual bool Shadow() { Unavailable(this, __func__); }
    virtual void SetShadow(bool v) { Unavailable(this, __func__); }
    virtual Ref<host::Interior> Interior() { Unavailable(this, __func__); }
    virtual Ref<host::Border> Border() { Unavailable(this, __func__); }
    virtual Ref<host::ChartFillFormat> Fill() { Unavailable(this, __func__); }
    virtual Ref<host::ChartFormat> Format() { Unavailable(this, __func__); }
    virtual void Delete() { Unavailable(this, __func__); }  // the chart's HasLegend becomes False
};

// ---------------------------------------------------------------- data labels

// The label of one point. Writing Text (or Caption, the same text) fixes the text: AutoText turns
// off and the label no longer follows the value. The Show... members say what an automatic text
// is made of.
class DataLabel {
public:
    virtual ~DataLabel() = default;
    virtual std::string Text() { Unavailable(this, __func__); }
    virtual void SetText(const std::string& v) { Unavailable(this, __func__); }
    virtual std::string Caption() { Unavailable(this, __func__); }
    virtual void SetCaption(const std::string& v) { Unavailable(this, __func__); }
    virtual Ref<host::Characters> Characters(const Variant& start = {}, const Variant& length = {}) { Unavailable(this, __func__); }
    virtual bool AutoText() { Unavailable(this, __func__); }
    virtual void SetAutoText(bool v) { Unavailable(this, __func__); }
    virtual Ref<host::Font> Font() { Unavailable(this, __func__); }
    virtual Variant AutoScaleFont() { Unavailable(this, __func__); }
    virtual void SetAutoScaleFont(const Variant& v) { Unavailable(this, __func__); }
    virtual long Position() { Unavailable(this, __func__); }  // xlLabelPosition...
    virtual void SetPosition(long v) { Unavailable(this, __func__); }
    virtual double Left() { Unavailable(this, __func__); }  // writing Left or Top makes the position xlLabelPositionCustom
    virtual void SetLeft(double v) { Unavailable(this, __func__); }
    virtual double Top() { Unavailable(this, __func__); }
    virtual void SetTop(double v) { Unavailable(this, __func__); }
    virtual double Width() { Unavailable(this, __func__); }
    virtual double Height() { Unavailable(this, __func__); }
    virtual Variant Orientation() { Unavailable(this, __func__); }
    virtual void SetOrientation(const Variant& v) { Unavailable(this, __func__); }
    virtual Variant HorizontalAlignment() { Unavailable(this, __func__); }
    virtual void SetHorizontalAlignment(const Variant& v) { Unavailable(this, __func__); }
    virtual Variant VerticalAlignment() { Unavailable(this, __func__); }
    virtual void SetVerticalAlignment(const Variant& v) { Unavailable(this, __func__); }
    virtual std::string NumberFormat() { Unavailable(this, __func__); }
    virtual void SetNumberFormat(const std::string& v) { Unavailable(this, __func__); }
    virtual bool NumberFormatLinked() { Unavailable(this, __func__); }
    virtual void SetNumberFormatLinked(bool v) { Unavailable(this, __func__); }
    virtual Variant Type() { Unavailable(this, __func__); }  // xlDataLabelsShowValue, ...Percent ...
    virtual void SetType(const Variant& v) { Unavailable(this, __func__); }
    virtual bool ShowValue() { Unavailable(this, __func__); }
    virtual void SetShowValue(bool v) { Unavailable(this, __func__); }
    virtual bool ShowCategoryName() { Unavailable(this, __func__); }
    virtual void SetShowCategoryName(bool v) { Unavailable(this, __func__); }
    virtual bool ShowSeriesName() { Unavailable(this, __func__); }
    virtual void SetShowSeriesName(bool v) { Unavailable(this, __func__); }
    virtual bool ShowPercentage() { Unavailable(this, __func__); }
    virtual void SetShowPercentage(bool v) { Unavailable(this, __func__); }
    virtual bool ShowBubbleSize() { Unavailable(this, __func__); }
    virtual void SetShowBubbleSize(bool v) { Unavailable(this, __func__); }
    virtual bool ShowLegendKey() { Unavailable(this, __func__); }
    virtual void SetShowLegendKey(bool v) { Unavailable(this, __func__); }
    virtual Variant Separator() { Unavailable(this, __func__); }
    virtual void SetSeparator(const Variant& v) { Unavailable(this, __func__); }
    virtual Ref<host::Interior> Interior() { Unavailable(this, __func__); }
    virtual Ref<host::Border> Border() { Unavailable(this, __func__); }
    virtual Ref<host::ChartFillFormat> Fill() { Unavailable(this, __func__); }
    virtual Ref<host::ChartFormat> Format() { Unavailable(this, __func__); }
    virtual void Delete() { Unavailable(this, __func__); }  // the point's HasDataLabel becomes False
};

// The labels of all points of a series. Writing a member goes to every label; reading a Variant
// member answers Null where the labels differ.
class DataLabels {
public:
    virtual ~DataLabels() = default;
    virtual long Count() { Unavailable(this, __func__); }  // one per point of the series
    virtual Ref<host::DataLabel> Item(long index) { Unavailable(this, __func__); }
    virtual bool AutoText() { Unavailable(this, __func__); }
    virtual void SetAutoText(bool v) { Unavailable(this, __func__); }
    virtual Ref<host::Font> Font() { Unavailable(this, __func__); }
    virtual Variant AutoScaleFont() { Unavailable(this, __func__); }
    virtual void SetAutoScaleFont(const Variant& v) { Unavailable(this, __func__); }
    virtual long Position() { Unavailable(this, __func__); }
    virtual void SetPosition(long v) { Unavailable(this, __func__); }
    virtual Variant Orientation() { Unavailable(this, __func__); }
    virtual void SetOrientation(const Variant& v) { Unavailable(this, __func__); }
    virtual Variant HorizontalAlignment() { Unavailable(this, __func__); }
    virtual void SetHorizontalAlignment(const Variant& v) { Unavailable(this, __func__); }
    virtual Variant VerticalAlignment() { Unavailable(this, __func__); }
    virtual void SetVerticalAlignment(const Variant& v) { Unavailable(this, __func__); }
    virtual std::string NumberFormat() { Unavailable(this, __func__); }
    virtual void SetNumberFormat(const std::string& v) { Unavailable(this, __func__); }
    virtual bool NumberFormatLinked() { Unavailable(this, __func__); }
    virtual void SetNumberFormatLinked(bool v) { Unavailable(this, __func__); }
    virtual Variant Type() { Unavailable(this, __func__); }
    virtual void SetType(const Variant& v) { Unavailable(this, __func__); }
    virtual bool ShowValue() { Unavailable(this, __func__); }
    virtual void SetShowValue(bool v) { Unavailable(this, __func__); }
    virtual bool ShowCategoryName() { Unavailable(this, __func__); }
    virtual void SetShowCategoryName(bool v) { Unavailable(this, __func__); }
    virtual bool ShowSeriesName() { Unavailable(this, __func__); }
    virtual void SetShowSeriesName(bool v) { Unavailable(this, __func__); }
    virtual bool ShowPercentage() { Unavailable(this, __func__); }
    virtual void SetShowPercentage(bool v) { Unavailable(this, __func__); }
    virtual bool ShowBubbleSize() { Unavailable(this, __func__); }
    virtual void SetShowBubbleSize(bool v) { Unavailable(this, __func__); }
    virtual bool ShowLegendKey() { Unavailable(this, __func__); }
    virtual void SetShowLegendKey(bool v) { Unavailable(this, __func__); }
    virtual Variant Separator() { Unavailable(this, __func__); }
    virtual void SetSeparator(const Variant& v) { Unavailable(this, __func__); }
    virtual bool Shadow() { Unavailable(this, __func__); }
    virtual void SetShadow(bool v) { Unavailable(this, __func__); }
    virtual Ref<host::Interior> Interior() { Unavailable(this, __func__); }
    virtual Ref<host::Border> Border() { Unavailable(this, __func__); }
    virtual Ref<host::ChartFillFormat> Fill() { Unavailable(this, __func__); }
    virtual Ref<host::ChartFormat> Format() { Unavailable(this, __func__); }
    virtual void Delete() { Unavailable(this, __func__); }  // the series' HasDataLabels becomes False
};

// ---------------------------------------------------------------- series and points

// One data point of a series. A point's formats override the series' own.
class Point {
public:
    virtual ~Point() = default;
    virtual bool HasDataLabel() { Unavailable(this, __func__); }
    virtual void SetHasDataLabel(bool v) { Unavailable(this, __func__); }
    virtual Ref<host::DataLabel> DataLabel() { Unavailable(this, __func__); }  // raises while HasDataLabel is False
    virtual void ApplyDataLabels(long type = xlDataLabelsShowValue, const Variant& legendKey = {},
                                 const Variant& autoText = {}, const Variant& hasLeaderLines = {},
                                 const Variant& showSeriesName = {}, const Variant& showCategoryName = {},
                                 const Variant& showValue = {}, const Variant& showPercentage = {},
                                 const Variant& showBubbleSize = {}, const Variant& separator = {}) { Unavailable(this, __func__); }
    virtual Ref<host::Interior> Interior() { Unavailable(this, __func__); }
    virtual Ref<host::Border> Border() { Unavailable(this, __func__); }
    virtual Ref<host::ChartFillFormat> Fill() { Unavailable(this, __func__); }
    virtual Ref<host::ChartFormat> Format() { Unavailable(this, __func__); }
    virtual long MarkerStyle() { Unavailable(this, __func__); }
    virtual void SetMarkerStyle(long v) { Unavailable(this, __func__); }
    virtual long MarkerSize() { Unavailable(this, __func__); }
    virtual void SetMarkerSize(long v) { Unavailable(this, __func__); }
    virtual long MarkerBackgroundColor() { Unavailable(this, __func__); }
    virtual void SetMarkerBackgroundColor(long rgb) { Unavailable(this, __func__); }
    virtual long MarkerBackgroundColorIndex() { Unavailable(this, __func__); }
    virtual void SetMarkerBackgroundColorIndex(long v) { Unavailable(this, __func__); }
    virtual long MarkerForegroundColor() { Unavailable(this, __func__); }
    virtual void SetMarkerForegroundColor(long rgb) { Unavailable(this, __func__); }
    virtual long MarkerForegroundColorIndex() { Unavailable(this, __func__); }
    virtual void SetMarkerForegroundColorIndex(long v) { Unavailable(this, __func__); }
    virtual long Explosion() { Unavailable(this, __func__); }  // pie slices: distance from the centre, percent of the radius
    virtual void SetExplosion(long v) { Unavailable(this, __func__); }
    virtual bool InvertIfNegative() { Unavailable(this, __func__); }
    virtual void SetInvertIfNegative(bool v) { Unavailable(this, __func__); }
    virtual double Left() { Unavailable(this, __func__); }
    virtual double Top() { Unavailable(this, __func__); }
    virtual double Width() { Unavailable(this, __func__); }
    virtual double Height() { Unavailable(this, __func__); }
    virtual void ClearFormats() { Unavailable(this, __func__); }
    virtual void Delete() { Unavailable(this, __func__); }
};

class Points {
public:
    virtual ~Points() = default;
    virtual long Count() { Unavailable(this, __func__); }
    virtual Ref<host::Point> Item(long index) { Unavailable(this, __func__); }
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
    virtual std::string Name() { Unavailable(this, __func__); }
    virtual void SetName(const std::string& v) { Unavailable(this, __func__); }
    virtual std::vector<Variant> Values() { Unavailable(this, __func__); }
    virtual void SetValues(const Variant& reference) { Unavailable(this, __func__); }
    virtual void SetValues(Ref<host::Range> source) { Unavailable(this, __func__); }
    virtual void SetValues(const std::vector<Variant>& values) { Unavailable(this, __func__); }
    virtual std::vector<Variant> XValues() { Unavailable(this, __func__); }
    virtual void SetXValues(const Variant& reference) { Unavailable(this, __func__); }
    virtual void SetXValues(Ref<host::Range> source) { Unavailable(this, __func__); }
    virtual void SetXValues(const std::vector<Variant>& values) { Unavailable(this, __func__); }
    virtual Variant BubbleSizes() { Unavailable(this, __func__); }  // bubble charts only
    virtual void SetBubbleSizes(const Variant& reference) { Unavailable(this, __func__); }
    virtual void SetBubbleSizes(Ref<host::Range> source) { Unavailable(this, __func__); }
    virtual void SetBubbleSizes(const std::vector<Variant>& values) { Unavailable(this, __func__); }
    virtual std::string Formula() { Unavailable(this, __func__); }
    virtual void SetFormula(const std::string& v) { Unavailable(this, __func__); }
    virtual std::string FormulaR1C1() { Unavailable(this, __func__); }
    virtual void SetFormulaR1C1(const std::string& v) { Unavailable(this, __func__); }
    virtual long PlotOrder() { Unavailable(this, __func__); }  // position among the series of its chart group, 1-based
    virtual void SetPlotOrder(long v) { Unavailable(this, __func__); }

    // A series can have a type of its own (a line over columns); writing moves it to the chart
    // group of that type.
    virtual long ChartType() { Unavailable(this, __func__); }
    virtual void SetChartType(long v) { Unavailable(this, __func__); }
    virtual long AxisGroup() { Unavailable(this, __func__); }  // xlPrimary, xlSecondary
    virtual void SetAxisGroup(long v) { Unavailable(this, __func__); }

    // The fill as the application painted it, automatic colours included: a new series reads
    // the colour it was given at once.
    virtual Ref<host::Interior> Interior() { Unavailable(this, __func__); }
    virtual Ref<host::Border> Border() { Unavailable(this, __func__); }  // the line of line series, the outline of others
    virtual Ref<host::ChartFillFormat> Fill() { Unavailable(this, __func__); }
    virtual Ref<host::ChartFormat> Format() { Unavailable(this, __func__); }
    virtual long MarkerStyle() { Unavailable(this, __func__); }  // xlMarkerStyle...
    virtual void SetMarkerStyle(long v) { Unavailable(this, __func__); }
    virtual long MarkerSize() { Unavailable(this, __func__); }  // 2 to 72 points
    virtual void SetMarkerSize(long v) { Unavailable(this, __func__); }
    virtual long MarkerBackgroundColor() { Unavailable(this, __func__); }  // RGB
    virtual void SetMarkerBackgroundColor(long rgb) { Unavailable(this, __func__); }
    virtual long MarkerBackgroundColorIndex() { Unavailable(this, __func__); }  // palette index, xlColorIndexAutomatic, ...None
    virtual void SetMarkerBackgroundColorIndex(long v) { Unavailable(this, __func__); }
    virtual long MarkerForegroundColor() { Unavailable(this, __func__); }
    virtual void SetMarkerForegroundColor(long rgb) { Unavailable(this, __func__); }
    virtual long MarkerForegroundColorIndex() { Unavailable(this, __func__); }
    virtual void SetMarkerForegroundColorIndex(long v) { Unavailable(this, __func__); }
    virtual bool Smooth() { Unavailable(this, __func__); }
    virtual void SetSmooth(bool v) { Unavailable(this, __func__); }
    virtual long Explosion() { Unavailable(this, __func__); }
    virtual void SetExplosion(long v) { Unavailable(this, __func__); }
    virtual bool InvertIfNegative() { Unavailable(this, __func__); }
    virtual void SetInvertIfNegative(bool v) { Unavailable(this, __func__); }
    virtual long BarShape() { Unavailable(this, __func__); }
    virtual void SetBarShape(long v) { Unavailable(this, __func__); }
    virtual bool Shadow() { Unavailable(this, __func__); }
    virtual void SetShadow(bool v) { Unavailable(this, __func__); }

    virtual bool HasDataLabels() { Unavailable(this, __func__); }
    virtual void SetHasDataLabels(bool v) { Unavailable(this, __func__); }
    virtual Ref<host::DataLabels> DataLabels() { Unavailable(this, __func__); }          // raises while HasDataLabels is False
    virtual Ref<host::DataLabel> DataLabels(long index) { Unavailable(this, __func__); }  // the label of point index
    // Turns the labels on, showing what type says; the Show... arguments left out follow it.
    virtual void ApplyDataLabels(long type = xlDataLabelsShowValue, const Variant& legendKey = {},
                                 const Variant& autoText = {}, const Variant& hasLeaderLines = {},
                                 const Variant& showSeriesName = {}, const Variant& showCategoryName = {},
                                 const Variant& showValue = {}, const Variant& showPercentage = {},
                                 const Variant& showBubbleSize = {}, const Variant& separator = {}) { Unavailable(this, __func__); }
    virtual bool HasLeaderLines() { Unavailable(this, __func__); }
    virtual void SetHasLeaderLines(bool v) { Unavailable(this, __func__); }
    virtual Ref<host::Points> Points() { Unavailable(this, __func__); }
    virtual Ref<host::Point> Points(long index) { Unavailable(this, __func__); }
    virtual void ClearFormats() { Unavailable(this, __func__); }
    virtual void Delete() { Unavailable(this, __func__); }
};

// The series of a chart, or of one chart group, in plot order. Item by name takes the first
// series of that name.
class SeriesCollection {
public:
    virtual ~SeriesCollection() = default;
    virtual long Count() { Unavailable(this, __func__); }
    virtual Ref<host::Series> Item(long index) { Unavailable(this, __func__); }
    virtual Ref<host::Series> Item(const std::string& name) { Unavailable(this, __func__); }
    // An empty series at the end, of the chart's type, with an automatic colour.
    virtual Ref<host::Series> NewSeries() { Unavailable(this, __func__); }
    // Series made from a range: one per column (xlColumns) or row (xlRows); seriesLabels and
    // categoryLabels say whether the first row or column holds names; left out, the application
    // guesses. replace: with categoryLabels True, the new categories replace the old ones.
    virtual Ref<host::Series> Add(Ref<host::Range> source, long rowcol = xlColumns,
                                  const Variant& seriesLabels = {}, const Variant& categoryLabels = {},
                                  const Variant& replace = {}) { Unavailable(this, __func__); }
    // Adds points to the existing series from a range.
    virtual void Extend(Ref<host::Range> source, const Variant& rowcol = {},
                        const Variant& categoryLabels = {}) { Unavailable(this, __func__); }
};

// ---------------------------------------------------------------- chart groups

// The series of one chart type on one axis group, with the settings they share.
class ChartGroup {
public:
    virtual ~ChartGroup() = default;
    virtual long Index() { Unavailable(this, __func__); }
    virtual long AxisGroup() { Unavailable(this, __func__); }
    virtual void SetAxisGroup(long v) { Unavailable(this, __func__); }
    virtual Ref<host::SeriesCollection> SeriesCollection() { Unavailable(this, __func__); }
    virtual Ref<host::Series> SeriesCollection(const Variant& indexOrName) { Unavailable(this, __func__); }
    virtual long GapWidth() { Unavailable(this, __func__); }  // bars and columns: the gap between clusters, 0 to 500 percent
    virtual void SetGapWidth(long v) { Unavailable(this, __func__); }
    virtual long Overlap() { Unavailable(this, __func__); }  // bars and columns: -100 to 100 percent
    virtual void SetOverlap(long v) { Unavailable(this, __func__); }
    virtual bool VaryByCategories() { Unavailable(this, __func__); }  // one colour per point, of a chart with one series
    virtual void SetVaryByCategories(bool v) { Unavailable(this, __func__); }
    virtual long FirstSliceAngle() { Unavailable(this, __func__); }  // pies and doughnuts: 0 to 360 degrees
    virtual void SetFirstSliceAngle(long v) { Unavailable(this, __func__); }
    virtual long DoughnutHoleSize() { Unavailable(this, __func__); }  // 10 to 90 percent
    virtual void SetDoughnutHoleSize(long v) { Unavailable(this, __func__); }
    virtual long BubbleScale() { Unavailable(this, __func__); }  // 0 to 300 percent of the default size
    virtual void SetBubbleScale(long v) { Unavailable(this, __func__); }
    virtual long SizeRepresents() { Unavailable(this, __func__); }  // xlSizeIsArea, xlSizeIsWidth
    virtual void SetSizeRepresents(long v) { Unavailable(this, __func__); }
    virtual bool ShowNegativeBubbles() { Unavailable(this, __func__); }
    virtual void SetShowNegativeBubbles(bool v) { Unavailable(this, __func__); }
    virtual bool HasDropLines() { Unavailable(this, __func__); }
    virtual void SetHasDropLines(bool v) { Unavailable(this, __func__); }
    virtual bool HasHiLoLines() { Unavailable(this, __func__); }
    virtual void SetHasHiLoLines(bool v) { Unavailable(this, __func__); }
    virtual bool HasUpDownBars() { Unavailable(this, __func__); }
    virtual void SetHasUpDownBars(bool v) { Unavailable(this, __func__); }
    virtual bool HasSeriesLines() { Unavailable(this, __func__); }
    virtual void SetHasSeriesLines(bool v) { Unavailable(this, __func__); }
    virtual bool HasRadarAxisLabels() { Unavailable(this, __func__); }
    virtual void SetHasRadarAxisLabels(bool v) { Unavailable(this, __func__); }
    virtual long SplitType() { Unavailable(this, __func__); }  // pie of pie, bar of pie
    virtual void SetSplitType(long v) { Unavailable(this, __func__); }
    virtual Variant SplitValue() { Unavailable(this, __func__); }
    virtual void SetSplitValue(const Variant& v) { Unavailable(this, __func__); }
    virtual long SecondPlotSize() { Unavailable(this, __func__); }
    virtual void SetSecondPlotSize(long v) { Unavailable(this, __func__); }
};

class ChartGroups {
public:
    virtual ~ChartGroups() = default;
    virtual long Count() { Unavailable(this, __func__); }
    virtual Ref<host::ChartGroup> Item(long index) { Unavailable(this, __func__); }
};

// ---------------------------------------------------------------- the chart

// A chart, embedded in a chart object or on a chart sheet. ChartType is the type of the chart as
// a whole: reading a chart whose series have different types answers the type of one group or
// a mixed value (xlCombination); writing sets every series and rebuilds the chart groups. The
// elements the type doesn't have (axes of a pie) are gone after the change.
class Chart {
public:
    virtual ~Chart() = default;
    virtual Ref<host::Application> Application() { Unavailable(this, __func__); }
    virtual Ref<host::ChartObject> Parent() { Unavailable(this, __func__); }  // Nothing for a chart sheet
    virtual std::string Name() { Unavailable(this, __func__); }
    virtual void SetName(const std::string& v) { Unavailable(this, __func__); }
    virtual long ChartType() { Unavailable(this, __func__); }
    virtual void SetChartType(long v) { Unavailable(this, __func__); }
    virtual Variant ChartStyle() { Unavailable(this, __func__); }
    virtual void SetChartStyle(const Variant& v) { Unavailable(this, __func__); }

    virtual Ref<host::SeriesCollection> SeriesCollection() { Unavailable(this, __func__); }
    virtual Ref<host::Series> SeriesCollection(const Variant& indexOrName) { Unavailable(this, __func__); }
    virtual void SetSourceData(Ref<host::Range> source, const Variant& plotBy = {}) { Unavailable(this, __func__); }
    virtual long PlotBy() { Unavailable(this, __func__); }  // xlColumns, xlRows: how SetSourceData reads a range
    virtual void SetPlotBy(long v) { Unavailable(this, __func__); }
    virtual Ref<host::ChartGroups> ChartGroups() { Unavailable(this, __func__); }
    virtual Ref<host::ChartGroup> ChartGroups(long index) { Unavailable(this, __func__); }
    virtual void ApplyDataLabels(long type = xlDataLabelsShowValue, const Variant& legendKey = {},
                                 const Variant& autoText = {}, const Variant& hasLeaderLines = {},
                                 const Variant& showSeriesName = {}, const Variant& showCategoryName = {},
                                 const Variant& showValue = {}, const Variant& showPercentage = {},
                                 const Variant& showBubbleSize = {}, const Variant& separator = {}) { Unavailable(this, __func__); }

    virtual bool HasTitle() { Unavailable(this, __func__); }
    virtual void SetHasTitle(bool v) { Unavailable(this, __func__); }
    virtual Ref<host::ChartTitle> ChartTitle() { Unavailable(this, __func__); }  // raises while HasTitle is False
    virtual bool HasLegend() { Unavailable(this, __func__); }
    virtual void SetHasLegend(bool v) { Unavailable(this, __func__); }
    virtual Ref<host::Legend> Legend() { Unavailable(this, __func__); }  // raises while HasLegend is False

    // An axis by type (xlCategory, xlValue, xlSeriesAxis) and group; a missing one raises.
    // HasAxis with the group left out is the primary group's; writing it False removes the axis
    // with its title and gridlines.
    virtual Ref<host::Axis> Axes(long type, long axisGroup = xlPrimary) { Unavailable(this, __func__); }
    virtual Variant HasAxis(long type, long axisGroup = xlPrimary) { Unavailable(this, __func__); }
    virtual void SetHasAxis(long type, const Variant& v) { Unavailable(this, __func__); }
    virtual void SetHasAxis(long type, long axisGroup, const Variant& v) { Unavailable(this, __func__); }

    virtual Ref<host::ChartArea> ChartArea() { Unavailable(this, __func__); }
    virtual Ref<host::PlotArea> PlotArea() { Unavailable(this, __func__); }
    virtual Ref<host::Shapes> Shapes() { Unavailable(this, __func__); }  // drawn inside the chart, positions from its corner
    virtual long BarShape() { Unavailable(this, __func__); }  // 3-D bars and columns: xlBox ...
    virtual void SetBarShape(long v) { Unavailable(this, __func__); }
    virtual long DisplayBlanksAs() { Unavailable(this, __func__); }  // xlNotPlotted, xlZero, xlInterpolated
    virtual void SetDisplayBlanksAs(long v) { Unavailable(this, __func__); }
    virtual bool PlotVisibleOnly() { Unavailable(this, __func__); }
    virtual void SetPlotVisibleOnly(bool v) { Unavailable(this, __func__); }
    virtual bool HasDataTable() { Unavailable(this, __func__); }
    virtual void SetHasDataTable(bool v) { Unavailable(this, __func__); }

    // The 3-D view; raises on 2-D charts.
    virtual long Elevation() { Unavailable(this, __func__); }  // -90 to 90 degrees
    virtual void SetElevation(long v) { Unavailable(this, __func__); }
    virtual Variant Rotation() { Unavailable(this, __func__); }  // 0 to 360 degrees
    virtual void SetRotation(const Variant& v) { Unavailable(this, __func__); }
    virtual long Perspective() { Unavailable(this, __func__); }  // 0 to 100
    virtual void SetPerspective(long v) { Unavailable(this, __func__); }
    virtual Variant RightAngleAxes() { Unavailable(this, __func__); }
    virtual void SetRightAngleAxes(const Variant& v) { Unavailable(this, __func__); }
    virtual long HeightPercent() { Unavailable(this, __func__); }
    virtual void SetHeightPercent(long v) { Unavailable(this, __func__); }
    virtual long DepthPercent() { Unavailable(this, __func__); }
    virtual void SetDepthPercent(long v) { Unavailable(this, __func__); }
    virtual bool AutoScaling() { Unavailable(this, __func__); }
    virtual void SetAutoScaling(bool v) { Unavailable(this, __func__); }

    virtual void Activate() { Unavailable(this, __func__); }
    virtual void Select(const Variant& replace = {}) { Unavailable(this, __func__); }
    virtual void Refresh() { Unavailable(this, __func__); }
};

}  // namespace host

#pragma GCC diagnostic pop
