#pragma once
// Every member of the chart object model raising "not available" until a model class overrides
// it: one override per member of the host classes; the model classes derive from these and
// override what they implement.
#include <string>
#include <vector>

#include "host/chart.h"
#include "xlsx/book.h"

namespace xlsx {

using host::Ref;
using host::Variant;


class ChartFillFormatBase : public host::ChartFillFormat {
public:
    Ref<host::ColorFormat> ForeColor() override { NotAvailable("ChartFillFormat.ForeColor"); }
    Ref<host::ColorFormat> BackColor() override { NotAvailable("ChartFillFormat.BackColor"); }
    long Visible() override { NotAvailable("ChartFillFormat.Visible"); }
    void SetVisible(long) override { NotAvailable("ChartFillFormat.SetVisible"); }
    long Type() override { NotAvailable("ChartFillFormat.Type"); }
    long Pattern() override { NotAvailable("ChartFillFormat.Pattern"); }
    long GradientStyle() override { NotAvailable("ChartFillFormat.GradientStyle"); }
    long GradientVariant() override { NotAvailable("ChartFillFormat.GradientVariant"); }
    double GradientDegree() override { NotAvailable("ChartFillFormat.GradientDegree"); }
    long GradientColorType() override { NotAvailable("ChartFillFormat.GradientColorType"); }
    void Solid() override { NotAvailable("ChartFillFormat.Solid"); }
    void Patterned(long) override { NotAvailable("ChartFillFormat.Patterned"); }
    void OneColorGradient(long, long, double) override { NotAvailable("ChartFillFormat.OneColorGradient"); }
    void TwoColorGradient(long, long) override { NotAvailable("ChartFillFormat.TwoColorGradient"); }
    void PresetGradient(long, long, long) override { NotAvailable("ChartFillFormat.PresetGradient"); }
    void PresetTextured(long) override { NotAvailable("ChartFillFormat.PresetTextured"); }
};

class ChartFormatBase : public host::ChartFormat {
public:
    Ref<host::FillFormat> Fill() override { NotAvailable("ChartFormat.Fill"); }
    Ref<host::LineFormat> Line() override { NotAvailable("ChartFormat.Line"); }
    Ref<host::TextFrame2> TextFrame2() override { NotAvailable("ChartFormat.TextFrame2"); }
};

class ChartAreaBase : public host::ChartArea {
public:
    Ref<host::Interior> Interior() override { NotAvailable("ChartArea.Interior"); }
    Ref<host::Border> Border() override { NotAvailable("ChartArea.Border"); }
    Ref<host::ChartFillFormat> Fill() override { NotAvailable("ChartArea.Fill"); }
    Ref<host::ChartFormat> Format() override { NotAvailable("ChartArea.Format"); }
    Ref<host::Font> Font() override { NotAvailable("ChartArea.Font"); }
    Variant AutoScaleFont() override { NotAvailable("ChartArea.AutoScaleFont"); }
    void SetAutoScaleFont(const Variant&) override { NotAvailable("ChartArea.SetAutoScaleFont"); }
    double Left() override { NotAvailable("ChartArea.Left"); }
    void SetLeft(double) override { NotAvailable("ChartArea.SetLeft"); }
    double Top() override { NotAvailable("ChartArea.Top"); }
    void SetTop(double) override { NotAvailable("ChartArea.SetTop"); }
    double Width() override { NotAvailable("ChartArea.Width"); }
    void SetWidth(double) override { NotAvailable("ChartArea.SetWidth"); }
    double Height() override { NotAvailable("ChartArea.Height"); }
    void SetHeight(double) override { NotAvailable("ChartArea.SetHeight"); }
    bool RoundedCorners() override { NotAvailable("ChartArea.RoundedCorners"); }
    void SetRoundedCorners(bool) override { NotAvailable("ChartArea.SetRoundedCorners"); }
    bool Shadow() override { NotAvailable("ChartArea.Shadow"); }
    void SetShadow(bool) override { NotAvailable("ChartArea.SetShadow"); }
    void Clear() override { NotAvailable("ChartArea.Clear"); }
    void ClearFormats() override { NotAvailable("ChartArea.ClearFormats"); }
};

class PlotAreaBase : public host::PlotArea {
public:
    Ref<host::Interior> Interior() override { NotAvailable("PlotArea.Interior"); }
    Ref<host::Border> Border() override { NotAvailable("PlotArea.Border"); }
    Ref<host::ChartFillFormat> Fill() override { NotAvailable("PlotArea.Fill"); }
    Ref<host::ChartFormat> Format() override { NotAvailable("PlotArea.Format"); }
    double Left() override { NotAvailable("PlotArea.Left"); }
    void SetLeft(double) override { NotAvailable("PlotArea.SetLeft"); }
    double Top() override { NotAvailable("PlotArea.Top"); }
    void SetTop(double) override { NotAvailable("PlotArea.SetTop"); }
    double Width() override { NotAvailable("PlotArea.Width"); }
    void SetWidth(double) override { NotAvailable("PlotArea.SetWidth"); }
    double Height() override { NotAvailable("PlotArea.Height"); }
    void SetHeight(double) override { NotAvailable("PlotArea.SetHeight"); }
    double InsideLeft() override { NotAvailable("PlotArea.InsideLeft"); }
    void SetInsideLeft(double) override { NotAvailable("PlotArea.SetInsideLeft"); }
    double InsideTop() override { NotAvailable("PlotArea.InsideTop"); }
    void SetInsideTop(double) override { NotAvailable("PlotArea.SetInsideTop"); }
    double InsideWidth() override { NotAvailable("PlotArea.InsideWidth"); }
    void SetInsideWidth(double) override { NotAvailable("PlotArea.SetInsideWidth"); }
    double InsideHeight() override { NotAvailable("PlotArea.InsideHeight"); }
    void SetInsideHeight(double) override { NotAvailable("PlotArea.SetInsideHeight"); }
    long Position() override { NotAvailable("PlotArea.Position"); }
    void SetPosition(long) override { NotAvailable("PlotArea.SetPosition"); }
    void ClearFormats() override { NotAvailable("PlotArea.ClearFormats"); }
};

class ChartTitleBase : public host::ChartTitle {
public:
    std::string Text() override { NotAvailable("ChartTitle.Text"); }
    void SetText(const std::string&) override { NotAvailable("ChartTitle.SetText"); }
    std::string Caption() override { NotAvailable("ChartTitle.Caption"); }
    void SetCaption(const std::string&) override { NotAvailable("ChartTitle.SetCaption"); }
    Ref<host::Characters> Characters(const Variant&, const Variant&) override { NotAvailable("ChartTitle.Characters"); }
    Ref<host::Font> Font() override { NotAvailable("ChartTitle.Font"); }
    Variant AutoScaleFont() override { NotAvailable("ChartTitle.AutoScaleFont"); }
    void SetAutoScaleFont(const Variant&) override { NotAvailable("ChartTitle.SetAutoScaleFont"); }
    Variant Orientation() override { NotAvailable("ChartTitle.Orientation"); }
    void SetOrientation(const Variant&) override { NotAvailable("ChartTitle.SetOrientation"); }
    Variant HorizontalAlignment() override { NotAvailable("ChartTitle.HorizontalAlignment"); }
    void SetHorizontalAlignment(const Variant&) override { NotAvailable("ChartTitle.SetHorizontalAlignment"); }
    Variant VerticalAlignment() override { NotAvailable("ChartTitle.VerticalAlignment"); }
    void SetVerticalAlignment(const Variant&) override { NotAvailable("ChartTitle.SetVerticalAlignment"); }
    double Left() override { NotAvailable("ChartTitle.Left"); }
    void SetLeft(double) override { NotAvailable("ChartTitle.SetLeft"); }
    double Top() override { NotAvailable("ChartTitle.Top"); }
    void SetTop(double) override { NotAvailable("ChartTitle.SetTop"); }
    double Width() override { NotAvailable("ChartTitle.Width"); }
    double Height() override { NotAvailable("ChartTitle.Height"); }
    long Position() override { NotAvailable("ChartTitle.Position"); }
    void SetPosition(long) override { NotAvailable("ChartTitle.SetPosition"); }
    bool IncludeInLayout() override { NotAvailable("ChartTitle.IncludeInLayout"); }
    void SetIncludeInLayout(bool) override { NotAvailable("ChartTitle.SetIncludeInLayout"); }
    bool Shadow() override { NotAvailable("ChartTitle.Shadow"); }
    void SetShadow(bool) override { NotAvailable("ChartTitle.SetShadow"); }
    Ref<host::Interior> Interior() override { NotAvailable("ChartTitle.Interior"); }
    Ref<host::Border> Border() override { NotAvailable("ChartTitle.Border"); }
    Ref<host::ChartFillFormat> Fill() override { NotAvailable("ChartTitle.Fill"); }
    Ref<host::ChartFormat> Format() override { NotAvailable("ChartTitle.Format"); }
    void Delete() override { NotAvailable("ChartTitle.Delete"); }
};

class AxisTitleBase : public host::AxisTitle {
public:
    std::string Text() override { NotAvailable("AxisTitle.Text"); }
    void SetText(const std::string&) override { NotAvailable("AxisTitle.SetText"); }
    std::string Caption() override { NotAvailable("AxisTitle.Caption"); }
    void SetCaption(const std::string&) override { NotAvailable("AxisTitle.SetCaption"); }
    Ref<host::Characters> Characters(const Variant&, const Variant&) override { NotAvailable("AxisTitle.Characters"); }
    Ref<host::Font> Font() override { NotAvailable("AxisTitle.Font"); }
    Variant AutoScaleFont() override { NotAvailable("AxisTitle.AutoScaleFont"); }
    void SetAutoScaleFont(const Variant&) override { NotAvailable("AxisTitle.SetAutoScaleFont"); }
    Variant Orientation() override { NotAvailable("AxisTitle.Orientation"); }
    void SetOrientation(const Variant&) override { NotAvailable("AxisTitle.SetOrientation"); }
    Variant HorizontalAlignment() override { NotAvailable("AxisTitle.HorizontalAlignment"); }
    void SetHorizontalAlignment(const Variant&) override { NotAvailable("AxisTitle.SetHorizontalAlignment"); }
    Variant VerticalAlignment() override { NotAvailable("AxisTitle.VerticalAlignment"); }
    void SetVerticalAlignment(const Variant&) override { NotAvailable("AxisTitle.SetVerticalAlignment"); }
    double Left() override { NotAvailable("AxisTitle.Left"); }
    void SetLeft(double) override { NotAvailable("AxisTitle.SetLeft"); }
    double Top() override { NotAvailable("AxisTitle.Top"); }
    void SetTop(double) override { NotAvailable("AxisTitle.SetTop"); }
    double Width() override { NotAvailable("AxisTitle.Width"); }
    double Height() override { NotAvailable("AxisTitle.Height"); }
    long Position() override { NotAvailable("AxisTitle.Position"); }
    void SetPosition(long) override { NotAvailable("AxisTitle.SetPosition"); }
    bool IncludeInLayout() override { NotAvailable("AxisTitle.IncludeInLayout"); }
    void SetIncludeInLayout(bool) override { NotAvailable("AxisTitle.SetIncludeInLayout"); }
    bool Shadow() override { NotAvailable("AxisTitle.Shadow"); }
    void SetShadow(bool) override { NotAvailable("AxisTitle.SetShadow"); }
    Ref<host::Interior> Interior() override { NotAvailable("AxisTitle.Interior"); }
    Ref<host::Border> Border() override { NotAvailable("AxisTitle.Border"); }
    Ref<host::ChartFillFormat> Fill() override { NotAvailable("AxisTitle.Fill"); }
    Ref<host::ChartFormat> Format() override { NotAvailable("AxisTitle.Format"); }
    void Delete() override { NotAvailable("AxisTitle.Delete"); }
};

class TickLabelsBase : public host::TickLabels {
public:
    Ref<host::Font> Font() override { NotAvailable("TickLabels.Font"); }
    Variant AutoScaleFont() override { NotAvailable("TickLabels.AutoScaleFont"); }
    void SetAutoScaleFont(const Variant&) override { NotAvailable("TickLabels.SetAutoScaleFont"); }
    std::string NumberFormat() override { NotAvailable("TickLabels.NumberFormat"); }
    void SetNumberFormat(const std::string&) override { NotAvailable("TickLabels.SetNumberFormat"); }
    bool NumberFormatLinked() override { NotAvailable("TickLabels.NumberFormatLinked"); }
    void SetNumberFormatLinked(bool) override { NotAvailable("TickLabels.SetNumberFormatLinked"); }
    long Orientation() override { NotAvailable("TickLabels.Orientation"); }
    void SetOrientation(long) override { NotAvailable("TickLabels.SetOrientation"); }
    long Offset() override { NotAvailable("TickLabels.Offset"); }
    void SetOffset(long) override { NotAvailable("TickLabels.SetOffset"); }
    long Alignment() override { NotAvailable("TickLabels.Alignment"); }
    void SetAlignment(long) override { NotAvailable("TickLabels.SetAlignment"); }
    long ReadingOrder() override { NotAvailable("TickLabels.ReadingOrder"); }
    void SetReadingOrder(long) override { NotAvailable("TickLabels.SetReadingOrder"); }
    void Delete() override { NotAvailable("TickLabels.Delete"); }
};

class GridlinesBase : public host::Gridlines {
public:
    Ref<host::Border> Border() override { NotAvailable("Gridlines.Border"); }
    Ref<host::ChartFormat> Format() override { NotAvailable("Gridlines.Format"); }
    void Delete() override { NotAvailable("Gridlines.Delete"); }
};

class AxisBase : public host::Axis {
public:
    long Type() override { NotAvailable("Axis.Type"); }
    long AxisGroup() override { NotAvailable("Axis.AxisGroup"); }
    bool HasTitle() override { NotAvailable("Axis.HasTitle"); }
    void SetHasTitle(bool) override { NotAvailable("Axis.SetHasTitle"); }
    Ref<host::AxisTitle> AxisTitle() override { NotAvailable("Axis.AxisTitle"); }
    Ref<host::TickLabels> TickLabels() override { NotAvailable("Axis.TickLabels"); }
    bool HasMajorGridlines() override { NotAvailable("Axis.HasMajorGridlines"); }
    void SetHasMajorGridlines(bool) override { NotAvailable("Axis.SetHasMajorGridlines"); }
    bool HasMinorGridlines() override { NotAvailable("Axis.HasMinorGridlines"); }
    void SetHasMinorGridlines(bool) override { NotAvailable("Axis.SetHasMinorGridlines"); }
    Ref<host::Gridlines> MajorGridlines() override { NotAvailable("Axis.MajorGridlines"); }
    Ref<host::Gridlines> MinorGridlines() override { NotAvailable("Axis.MinorGridlines"); }
    Ref<host::Border> Border() override { NotAvailable("Axis.Border"); }
    Ref<host::ChartFormat> Format() override { NotAvailable("Axis.Format"); }
    double MinimumScale() override { NotAvailable("Axis.MinimumScale"); }
    void SetMinimumScale(double) override { NotAvailable("Axis.SetMinimumScale"); }
    bool MinimumScaleIsAuto() override { NotAvailable("Axis.MinimumScaleIsAuto"); }
    void SetMinimumScaleIsAuto(bool) override { NotAvailable("Axis.SetMinimumScaleIsAuto"); }
    double MaximumScale() override { NotAvailable("Axis.MaximumScale"); }
    void SetMaximumScale(double) override { NotAvailable("Axis.SetMaximumScale"); }
    bool MaximumScaleIsAuto() override { NotAvailable("Axis.MaximumScaleIsAuto"); }
    void SetMaximumScaleIsAuto(bool) override { NotAvailable("Axis.SetMaximumScaleIsAuto"); }
    double MajorUnit() override { NotAvailable("Axis.MajorUnit"); }
    void SetMajorUnit(double) override { NotAvailable("Axis.SetMajorUnit"); }
    bool MajorUnitIsAuto() override { NotAvailable("Axis.MajorUnitIsAuto"); }
    void SetMajorUnitIsAuto(bool) override { NotAvailable("Axis.SetMajorUnitIsAuto"); }
    double MinorUnit() override { NotAvailable("Axis.MinorUnit"); }
    void SetMinorUnit(double) override { NotAvailable("Axis.SetMinorUnit"); }
    bool MinorUnitIsAuto() override { NotAvailable("Axis.MinorUnitIsAuto"); }
    void SetMinorUnitIsAuto(bool) override { NotAvailable("Axis.SetMinorUnitIsAuto"); }
    long ScaleType() override { NotAvailable("Axis.ScaleType"); }
    void SetScaleType(long) override { NotAvailable("Axis.SetScaleType"); }
    double LogBase() override { NotAvailable("Axis.LogBase"); }
    void SetLogBase(double) override { NotAvailable("Axis.SetLogBase"); }
    long DisplayUnit() override { NotAvailable("Axis.DisplayUnit"); }
    void SetDisplayUnit(long) override { NotAvailable("Axis.SetDisplayUnit"); }
    double DisplayUnitCustom() override { NotAvailable("Axis.DisplayUnitCustom"); }
    void SetDisplayUnitCustom(double) override { NotAvailable("Axis.SetDisplayUnitCustom"); }
    bool HasDisplayUnitLabel() override { NotAvailable("Axis.HasDisplayUnitLabel"); }
    void SetHasDisplayUnitLabel(bool) override { NotAvailable("Axis.SetHasDisplayUnitLabel"); }
    long Crosses() override { NotAvailable("Axis.Crosses"); }
    void SetCrosses(long) override { NotAvailable("Axis.SetCrosses"); }
    double CrossesAt() override { NotAvailable("Axis.CrossesAt"); }
    void SetCrossesAt(double) override { NotAvailable("Axis.SetCrossesAt"); }
    bool ReversePlotOrder() override { NotAvailable("Axis.ReversePlotOrder"); }
    void SetReversePlotOrder(bool) override { NotAvailable("Axis.SetReversePlotOrder"); }
    bool AxisBetweenCategories() override { NotAvailable("Axis.AxisBetweenCategories"); }
    void SetAxisBetweenCategories(bool) override { NotAvailable("Axis.SetAxisBetweenCategories"); }
    long TickLabelPosition() override { NotAvailable("Axis.TickLabelPosition"); }
    void SetTickLabelPosition(long) override { NotAvailable("Axis.SetTickLabelPosition"); }
    long MajorTickMark() override { NotAvailable("Axis.MajorTickMark"); }
    void SetMajorTickMark(long) override { NotAvailable("Axis.SetMajorTickMark"); }
    long MinorTickMark() override { NotAvailable("Axis.MinorTickMark"); }
    void SetMinorTickMark(long) override { NotAvailable("Axis.SetMinorTickMark"); }
    long TickLabelSpacing() override { NotAvailable("Axis.TickLabelSpacing"); }
    void SetTickLabelSpacing(long) override { NotAvailable("Axis.SetTickLabelSpacing"); }
    bool TickLabelSpacingIsAuto() override { NotAvailable("Axis.TickLabelSpacingIsAuto"); }
    void SetTickLabelSpacingIsAuto(bool) override { NotAvailable("Axis.SetTickLabelSpacingIsAuto"); }
    long TickMarkSpacing() override { NotAvailable("Axis.TickMarkSpacing"); }
    void SetTickMarkSpacing(long) override { NotAvailable("Axis.SetTickMarkSpacing"); }
    long CategoryType() override { NotAvailable("Axis.CategoryType"); }
    void SetCategoryType(long) override { NotAvailable("Axis.SetCategoryType"); }
    long BaseUnit() override { NotAvailable("Axis.BaseUnit"); }
    void SetBaseUnit(long) override { NotAvailable("Axis.SetBaseUnit"); }
    bool BaseUnitIsAuto() override { NotAvailable("Axis.BaseUnitIsAuto"); }
    void SetBaseUnitIsAuto(bool) override { NotAvailable("Axis.SetBaseUnitIsAuto"); }
    double Left() override { NotAvailable("Axis.Left"); }
    double Top() override { NotAvailable("Axis.Top"); }
    double Width() override { NotAvailable("Axis.Width"); }
    double Height() override { NotAvailable("Axis.Height"); }
    void Delete() override { NotAvailable("Axis.Delete"); }
};

class LegendEntryBase : public host::LegendEntry {
public:
    long Index() override { NotAvailable("LegendEntry.Index"); }
    Ref<host::Font> Font() override { NotAvailable("LegendEntry.Font"); }
    Variant AutoScaleFont() override { NotAvailable("LegendEntry.AutoScaleFont"); }
    void SetAutoScaleFont(const Variant&) override { NotAvailable("LegendEntry.SetAutoScaleFont"); }
    Ref<host::ChartFormat> Format() override { NotAvailable("LegendEntry.Format"); }
    double Left() override { NotAvailable("LegendEntry.Left"); }
    double Top() override { NotAvailable("LegendEntry.Top"); }
    double Width() override { NotAvailable("LegendEntry.Width"); }
    double Height() override { NotAvailable("LegendEntry.Height"); }
    void Delete() override { NotAvailable("LegendEntry.Delete"); }
};

class LegendEntriesBase : public host::LegendEntries {
public:
    long Count() override { NotAvailable("LegendEntries.Count"); }
    Ref<host::LegendEntry> Item(long) override { NotAvailable("LegendEntries.Item"); }
};

class LegendBase : public host::Legend {
public:
    long Position() override { NotAvailable("Legend.Position"); }
    void SetPosition(long) override { NotAvailable("Legend.SetPosition"); }
    double Left() override { NotAvailable("Legend.Left"); }
    void SetLeft(double) override { NotAvailable("Legend.SetLeft"); }
    double Top() override { NotAvailable("Legend.Top"); }
    void SetTop(double) override { NotAvailable("Legend.SetTop"); }
    double Width() override { NotAvailable("Legend.Width"); }
    void SetWidth(double) override { NotAvailable("Legend.SetWidth"); }
    double Height() override { NotAvailable("Legend.Height"); }
    void SetHeight(double) override { NotAvailable("Legend.SetHeight"); }
    Ref<host::Font> Font() override { NotAvailable("Legend.Font"); }
    Variant AutoScaleFont() override { NotAvailable("Legend.AutoScaleFont"); }
    void SetAutoScaleFont(const Variant&) override { NotAvailable("Legend.SetAutoScaleFont"); }
    Ref<host::LegendEntries> LegendEntries() override { NotAvailable("Legend.LegendEntries"); }
    Ref<host::LegendEntry> LegendEntries(long) override { NotAvailable("Legend.LegendEntries"); }
    bool IncludeInLayout() override { NotAvailable("Legend.IncludeInLayout"); }
    void SetIncludeInLayout(bool) override { NotAvailable("Legend.SetIncludeInLayout"); }
    bool Shadow() override { NotAvailable("Legend.Shadow"); }
    void SetShadow(bool) override { NotAvailable("Legend.SetShadow"); }
    Ref<host::Interior> Interior() override { NotAvailable("Legend.Interior"); }
    Ref<host::Border> Border() override { NotAvailable("Legend.Border"); }
    Ref<host::ChartFillFormat> Fill() override { NotAvailable("Legend.Fill"); }
    Ref<host::ChartFormat> Format() override { NotAvailable("Legend.Format"); }
    void Delete() override { NotAvailable("Legend.Delete"); }
};

class DataLabelBase : public host::DataLabel {
public:
    std::string Text() override { NotAvailable("DataLabel.Text"); }
    void SetText(const std::string&) override { NotAvailable("DataLabel.SetText"); }
    std::string Caption() override { NotAvailable("DataLabel.Caption"); }
    void SetCaption(const std::string&) override { NotAvailable("DataLabel.SetCaption"); }
    Ref<host::Characters> Characters(const Variant&, const Variant&) override { NotAvailable("DataLabel.Characters"); }
    bool AutoText() override { NotAvailable("DataLabel.AutoText"); }
    void SetAutoText(bool) override { NotAvailable("DataLabel.SetAutoText"); }
    Ref<host::Font> Font() override { NotAvailable("DataLabel.Font"); }
    Variant AutoScaleFont() override { NotAvailable("DataLabel.AutoScaleFont"); }
    void SetAutoScaleFont(const Variant&) override { NotAvailable("DataLabel.SetAutoScaleFont"); }
    long Position() override { NotAvailable("DataLabel.Position"); }
    void SetPosition(long) override { NotAvailable("DataLabel.SetPosition"); }
    double Left() override { NotAvailable("DataLabel.Left"); }
    void SetLeft(double) override { NotAvailable("DataLabel.SetLeft"); }
    double Top() override { NotAvailable("DataLabel.Top"); }
    void SetTop(double) override { NotAvailable("DataLabel.SetTop"); }
    double Width() override { NotAvailable("DataLabel.Width"); }
    double Height() override { NotAvailable("DataLabel.Height"); }
    Variant Orientation() override { NotAvailable("DataLabel.Orientation"); }
    void SetOrientation(const Variant&) override { NotAvailable("DataLabel.SetOrientation"); }
    Variant HorizontalAlignment() override { NotAvailable("DataLabel.HorizontalAlignment"); }
    void SetHorizontalAlignment(const Variant&) override { NotAvailable("DataLabel.SetHorizontalAlignment"); }
    Variant VerticalAlignment() override { NotAvailable("DataLabel.VerticalAlignment"); }
    void SetVerticalAlignment(const Variant&) override { NotAvailable("DataLabel.SetVerticalAlignment"); }
    std::string NumberFormat() override { NotAvailable("DataLabel.NumberFormat"); }
    void SetNumberFormat(const std::string&) override { NotAvailable("DataLabel.SetNumberFormat"); }
    bool NumberFormatLinked() override { NotAvailable("DataLabel.NumberFormatLinked"); }
    void SetNumberFormatLinked(bool) override { NotAvailable("DataLabel.SetNumberFormatLinked"); }
    Variant Type() override { NotAvailable("DataLabel.Type"); }
    void SetType(const Variant&) override { NotAvailable("DataLabel.SetType"); }
    bool ShowValue() override { NotAvailable("DataLabel.ShowValue"); }
    void SetShowValue(bool) override { NotAvailable("DataLabel.SetShowValue"); }
    bool ShowCategoryName() override { NotAvailable("DataLabel.ShowCategoryName"); }
    void SetShowCategoryName(bool) override { NotAvailable("DataLabel.SetShowCategoryName"); }
    bool ShowSeriesName() override { NotAvailable("DataLabel.ShowSeriesName"); }
    void SetShowSeriesName(bool) override { NotAvailable("DataLabel.SetShowSeriesName"); }
    bool ShowPercentage() override { NotAvailable("DataLabel.ShowPercentage"); }
    void SetShowPercentage(bool) override { NotAvailable("DataLabel.SetShowPercentage"); }
    bool ShowBubbleSize() override { NotAvailable("DataLabel.ShowBubbleSize"); }
    void SetShowBubbleSize(bool) override { NotAvailable("DataLabel.SetShowBubbleSize"); }
    bool ShowLegendKey() override { NotAvailable("DataLabel.ShowLegendKey"); }
    void SetShowLegendKey(bool) override { NotAvailable("DataLabel.SetShowLegendKey"); }
    Variant Separator() override { NotAvailable("DataLabel.Separator"); }
    void SetSeparator(const Variant&) override { NotAvailable("DataLabel.SetSeparator"); }
    Ref<host::Interior> Interior() override { NotAvailable("DataLabel.Interior"); }
    Ref<host::Border> Border() override { NotAvailable("DataLabel.Border"); }
    Ref<host::ChartFillFormat> Fill() override { NotAvailable("DataLabel.Fill"); }
    Ref<host::ChartFormat> Format() override { NotAvailable("DataLabel.Format"); }
    void Delete() override { NotAvailable("DataLabel.Delete"); }
};

class DataLabelsBase : public host::DataLabels {
public:
    long Count() override { NotAvailable("DataLabels.Count"); }
    Ref<host::DataLabel> Item(long) override { NotAvailable("DataLabels.Item"); }
    bool AutoText() override { NotAvailable("DataLabels.AutoText"); }
    void SetAutoText(bool) override { NotAvailable("DataLabels.SetAutoText"); }
    Ref<host::Font> Font() override { NotAvailable("DataLabels.Font"); }
    Variant AutoScaleFont() override { NotAvailable("DataLabels.AutoScaleFont"); }
    void SetAutoScaleFont(const Variant&) override { NotAvailable("DataLabels.SetAutoScaleFont"); }
    long Position() override { NotAvailable("DataLabels.Position"); }
    void SetPosition(long) override { NotAvailable("DataLabels.SetPosition"); }
    Variant Orientation() override { NotAvailable("DataLabels.Orientation"); }
    void SetOrientation(const Variant&) override { NotAvailable("DataLabels.SetOrientation"); }
    Variant HorizontalAlignment() override { NotAvailable("DataLabels.HorizontalAlignment"); }
    void SetHorizontalAlignment(const Variant&) override { NotAvailable("DataLabels.SetHorizontalAlignment"); }
    Variant VerticalAlignment() override { NotAvailable("DataLabels.VerticalAlignment"); }
    void SetVerticalAlignment(const Variant&) override { NotAvailable("DataLabels.SetVerticalAlignment"); }
    std::string NumberFormat() override { NotAvailable("DataLabels.NumberFormat"); }
    void SetNumberFormat(const std::string&) override { NotAvailable("DataLabels.SetNumberFormat"); }
    bool NumberFormatLinked() override { NotAvailable("DataLabels.NumberFormatLinked"); }
    void SetNumberFormatLinked(bool) override { NotAvailable("DataLabels.SetNumberFormatLinked"); }
    Variant Type() override { NotAvailable("DataLabels.Type"); }
    void SetType(const Variant&) override { NotAvailable("DataLabels.SetType"); }
    bool ShowValue() override { NotAvailable("DataLabels.ShowValue"); }
    void SetShowValue(bool) override { NotAvailable("DataLabels.SetShowValue"); }
    bool ShowCategoryName() override { NotAvailable("DataLabels.ShowCategoryName"); }
    void SetShowCategoryName(bool) override { NotAvailable("DataLabels.SetShowCategoryName"); }
    bool ShowSeriesName() override { NotAvailable("DataLabels.ShowSeriesName"); }
    void SetShowSeriesName(bool) override { NotAvailable("DataLabels.SetShowSeriesName"); }
    bool ShowPercentage() override { NotAvailable("DataLabels.ShowPercentage"); }
    void SetShowPercentage(bool) override { NotAvailable("DataLabels.SetShowPercentage"); }
    bool ShowBubbleSize() override { NotAvailable("DataLabels.ShowBubbleSize"); }
    void SetShowBubbleSize(bool) override { NotAvailable("DataLabels.SetShowBubbleSize"); }
    bool ShowLegendKey() override { NotAvailable("DataLabels.ShowLegendKey"); }
    void SetShowLegendKey(bool) override { NotAvailable("DataLabels.SetShowLegendKey"); }
    Variant Separator() override { NotAvailable("DataLabels.Separator"); }
    void SetSeparator(const Variant&) override { NotAvailable("DataLabels.SetSeparator"); }
    bool Shadow() override { NotAvailable("DataLabels.Shadow"); }
    void SetShadow(bool) override { NotAvailable("DataLabels.SetShadow"); }
    Ref<host::Interior> Interior() override { NotAvailable("DataLabels.Interior"); }
    Ref<host::Border> Border() override { NotAvailable("DataLabels.Border"); }
    Ref<host::ChartFillFormat> Fill() override { NotAvailable("DataLabels.Fill"); }
    Ref<host::ChartFormat> Format() override { NotAvailable("DataLabels.Format"); }
    void Delete() override { NotAvailable("DataLabels.Delete"); }
};

class PointBase : public host::Point {
public:
    bool HasDataLabel() override { NotAvailable("Point.HasDataLabel"); }
    void SetHasDataLabel(bool) override { NotAvailable("Point.SetHasDataLabel"); }
    Ref<host::DataLabel> DataLabel() override { NotAvailable("Point.DataLabel"); }
    void ApplyDataLabels(long, const Variant&, const Variant&, const Variant&, const Variant&, const Variant&, const Variant&, const Variant&, const Variant&, const Variant&) override { NotAvailable("Point.ApplyDataLabels"); }
    Ref<host::Interior> Interior() override { NotAvailable("Point.Interior"); }
    Ref<host::Border> Border() override { NotAvailable("Point.Border"); }
    Ref<host::ChartFillFormat> Fill() override { NotAvailable("Point.Fill"); }
    Ref<host::ChartFormat> Format() override { NotAvailable("Point.Format"); }
    long MarkerStyle() override { NotAvailable("Point.MarkerStyle"); }
    void SetMarkerStyle(long) override { NotAvailable("Point.SetMarkerStyle"); }
    long MarkerSize() override { NotAvailable("Point.MarkerSize"); }
    void SetMarkerSize(long) override { NotAvailable("Point.SetMarkerSize"); }
    long MarkerBackgroundColor() override { NotAvailable("Point.MarkerBackgroundColor"); }
    void SetMarkerBackgroundColor(long) override { NotAvailable("Point.SetMarkerBackgroundColor"); }
    long MarkerBackgroundColorIndex() override { NotAvailable("Point.MarkerBackgroundColorIndex"); }
    void SetMarkerBackgroundColorIndex(long) override { NotAvailable("Point.SetMarkerBackgroundColorIndex"); }
    long MarkerForegroundColor() override { NotAvailable("Point.MarkerForegroundColor"); }
    void SetMarkerForegroundColor(long) override { NotAvailable("Point.SetMarkerForegroundColor"); }
    long MarkerForegroundColorIndex() override { NotAvailable("Point.MarkerForegroundColorIndex"); }
    void SetMarkerForegroundColorIndex(long) override { NotAvailable("Point.SetMarkerForegroundColorIndex"); }
    long Explosion() override { NotAvailable("Point.Explosion"); }
    void SetExplosion(long) override { NotAvailable("Point.SetExplosion"); }
    bool InvertIfNegative() override { NotAvailable("Point.InvertIfNegative"); }
    void SetInvertIfNegative(bool) override { NotAvailable("Point.SetInvertIfNegative"); }
    double Left() override { NotAvailable("Point.Left"); }
    double Top() override { NotAvailable("Point.Top"); }
    double Width() override { NotAvailable("Point.Width"); }
    double Height() override { NotAvailable("Point.Height"); }
    void ClearFormats() override { NotAvailable("Point.ClearFormats"); }
    void Delete() override { NotAvailable("Point.Delete"); }
};

class PointsBase : public host::Points {
public:
    long Count() override { NotAvailable("Points.Count"); }
    Ref<host::Point> Item(long) override { NotAvailable("Points.Item"); }
};

class SeriesBase : public host::Series {
public:
    std::string Name() override { NotAvailable("Series.Name"); }
    void SetName(const std::string&) override { NotAvailable("Series.SetName"); }
    std::vector<Variant> Values() override { NotAvailable("Series.Values"); }
    void SetValues(const Variant&) override { NotAvailable("Series.SetValues"); }
    void SetValues(Ref<host::Range>) override { NotAvailable("Series.SetValues"); }
    void SetValues(const std::vector<Variant>&) override { NotAvailable("Series.SetValues"); }
    std::vector<Variant> XValues() override { NotAvailable("Series.XValues"); }
    void SetXValues(const Variant&) override { NotAvailable("Series.SetXValues"); }
    void SetXValues(Ref<host::Range>) override { NotAvailable("Series.SetXValues"); }
    void SetXValues(const std::vector<Variant>&) override { NotAvailable("Series.SetXValues"); }
    Variant BubbleSizes() override { NotAvailable("Series.BubbleSizes"); }
    void SetBubbleSizes(const Variant&) override { NotAvailable("Series.SetBubbleSizes"); }
    void SetBubbleSizes(Ref<host::Range>) override { NotAvailable("Series.SetBubbleSizes"); }
    void SetBubbleSizes(const std::vector<Variant>&) override { NotAvailable("Series.SetBubbleSizes"); }
    std::string Formula() override { NotAvailable("Series.Formula"); }
    void SetFormula(const std::string&) override { NotAvailable("Series.SetFormula"); }
    std::string FormulaR1C1() override { NotAvailable("Series.FormulaR1C1"); }
    void SetFormulaR1C1(const std::string&) override { NotAvailable("Series.SetFormulaR1C1"); }
    long PlotOrder() override { NotAvailable("Series.PlotOrder"); }
    void SetPlotOrder(long) override { NotAvailable("Series.SetPlotOrder"); }
    long ChartType() override { NotAvailable("Series.ChartType"); }
    void SetChartType(long) override { NotAvailable("Series.SetChartType"); }
    long AxisGroup() override { NotAvailable("Series.AxisGroup"); }
    void SetAxisGroup(long) override { NotAvailable("Series.SetAxisGroup"); }
    Ref<host::Interior> Interior() override { NotAvailable("Series.Interior"); }
    Ref<host::Border> Border() override { NotAvailable("Series.Border"); }
    Ref<host::ChartFillFormat> Fill() override { NotAvailable("Series.Fill"); }
    Ref<host::ChartFormat> Format() override { NotAvailable("Series.Format"); }
    long MarkerStyle() override { NotAvailable("Series.MarkerStyle"); }
    void SetMarkerStyle(long) override { NotAvailable("Series.SetMarkerStyle"); }
    long MarkerSize() override { NotAvailable("Series.MarkerSize"); }
    void SetMarkerSize(long) override { NotAvailable("Series.SetMarkerSize"); }
    long MarkerBackgroundColor() override { NotAvailable("Series.MarkerBackgroundColor"); }
    void SetMarkerBackgroundColor(long) override { NotAvailable("Series.SetMarkerBackgroundColor"); }
    long MarkerBackgroundColorIndex() override { NotAvailable("Series.MarkerBackgroundColorIndex"); }
    void SetMarkerBackgroundColorIndex(long) override { NotAvailable("Series.SetMarkerBackgroundColorIndex"); }
    long MarkerForegroundColor() override { NotAvailable("Series.MarkerForegroundColor"); }
    void SetMarkerForegroundColor(long) override { NotAvailable("Series.SetMarkerForegroundColor"); }
    long MarkerForegroundColorIndex() override { NotAvailable("Series.MarkerForegroundColorIndex"); }
    void SetMarkerForegroundColorIndex(long) override { NotAvailable("Series.SetMarkerForegroundColorIndex"); }
    bool Smooth() override { NotAvailable("Series.Smooth"); }
    void SetSmooth(bool) override { NotAvailable("Series.SetSmooth"); }
    long Explosion() override { NotAvailable("Series.Explosion"); }
    void SetExplosion(long) override { NotAvailable("Series.SetExplosion"); }
    bool InvertIfNegative() override { NotAvailable("Series.InvertIfNegative"); }
    void SetInvertIfNegative(bool) override { NotAvailable("Series.SetInvertIfNegative"); }
    long BarShape() override { NotAvailable("Series.BarShape"); }
    void SetBarShape(long) override { NotAvailable("Series.SetBarShape"); }
    bool Shadow() override { NotAvailable("Series.Shadow"); }
    void SetShadow(bool) override { NotAvailable("Series.SetShadow"); }
    bool HasDataLabels() override { NotAvailable("Series.HasDataLabels"); }
    void SetHasDataLabels(bool) override { NotAvailable("Series.SetHasDataLabels"); }
    Ref<host::DataLabels> DataLabels() override { NotAvailable("Series.DataLabels"); }
    Ref<host::DataLabel> DataLabels(long) override { NotAvailable("Series.DataLabels"); }
    void ApplyDataLabels(long, const Variant&, const Variant&, const Variant&, const Variant&, const Variant&, const Variant&, const Variant&, const Variant&, const Variant&) override { NotAvailable("Series.ApplyDataLabels"); }
    bool HasLeaderLines() override { NotAvailable("Series.HasLeaderLines"); }
    void SetHasLeaderLines(bool) override { NotAvailable("Series.SetHasLeaderLines"); }
    Ref<host::Points> Points() override { NotAvailable("Series.Points"); }
    Ref<host::Point> Points(long) override { NotAvailable("Series.Points"); }
    void ClearFormats() override { NotAvailable("Series.ClearFormats"); }
    void Delete() override { NotAvailable("Series.Delete"); }
};

class SeriesCollectionBase : public host::SeriesCollection {
public:
    long Count() override { NotAvailable("SeriesCollection.Count"); }
    Ref<host::Series> Item(long) override { NotAvailable("SeriesCollection.Item"); }
    Ref<host::Series> Item(const std::string&) override { NotAvailable("SeriesCollection.Item"); }
    Ref<host::Series> NewSeries() override { NotAvailable("SeriesCollection.NewSeries"); }
    Ref<host::Series> Add(Ref<host::Range>, long, const Variant&, const Variant&, const Variant&) override { NotAvailable("SeriesCollection.Add"); }
    void Extend(Ref<host::Range>, const Variant&, const Variant&) override { NotAvailable("SeriesCollection.Extend"); }
};

class ChartGroupBase : public host::ChartGroup {
public:
    long Index() override { NotAvailable("ChartGroup.Index"); }
    long AxisGroup() override { NotAvailable("ChartGroup.AxisGroup"); }
    void SetAxisGroup(long) override { NotAvailable("ChartGroup.SetAxisGroup"); }
    Ref<host::SeriesCollection> SeriesCollection() override { NotAvailable("ChartGroup.SeriesCollection"); }
    Ref<host::Series> SeriesCollection(const Variant&) override { NotAvailable("ChartGroup.SeriesCollection"); }
    long GapWidth() override { NotAvailable("ChartGroup.GapWidth"); }
    void SetGapWidth(long) override { NotAvailable("ChartGroup.SetGapWidth"); }
    long Overlap() override { NotAvailable("ChartGroup.Overlap"); }
    void SetOverlap(long) override { NotAvailable("ChartGroup.SetOverlap"); }
    bool VaryByCategories() override { NotAvailable("ChartGroup.VaryByCategories"); }
    void SetVaryByCategories(bool) override { NotAvailable("ChartGroup.SetVaryByCategories"); }
    long FirstSliceAngle() override { NotAvailable("ChartGroup.FirstSliceAngle"); }
    void SetFirstSliceAngle(long) override { NotAvailable("ChartGroup.SetFirstSliceAngle"); }
    long DoughnutHoleSize() override { NotAvailable("ChartGroup.DoughnutHoleSize"); }
    void SetDoughnutHoleSize(long) override { NotAvailable("ChartGroup.SetDoughnutHoleSize"); }
    long BubbleScale() override { NotAvailable("ChartGroup.BubbleScale"); }
    void SetBubbleScale(long) override { NotAvailable("ChartGroup.SetBubbleScale"); }
    long SizeRepresents() override { NotAvailable("ChartGroup.SizeRepresents"); }
    void SetSizeRepresents(long) override { NotAvailable("ChartGroup.SetSizeRepresents"); }
    bool ShowNegativeBubbles() override { NotAvailable("ChartGroup.ShowNegativeBubbles"); }
    void SetShowNegativeBubbles(bool) override { NotAvailable("ChartGroup.SetShowNegativeBubbles"); }
    bool HasDropLines() override { NotAvailable("ChartGroup.HasDropLines"); }
    void SetHasDropLines(bool) override { NotAvailable("ChartGroup.SetHasDropLines"); }
    bool HasHiLoLines() override { NotAvailable("ChartGroup.HasHiLoLines"); }
    void SetHasHiLoLines(bool) override { NotAvailable("ChartGroup.SetHasHiLoLines"); }
    bool HasUpDownBars() override { NotAvailable("ChartGroup.HasUpDownBars"); }
    void SetHasUpDownBars(bool) override { NotAvailable("ChartGroup.SetHasUpDownBars"); }
    bool HasSeriesLines() override { NotAvailable("ChartGroup.HasSeriesLines"); }
    void SetHasSeriesLines(bool) override { NotAvailable("ChartGroup.SetHasSeriesLines"); }
    bool HasRadarAxisLabels() override { NotAvailable("ChartGroup.HasRadarAxisLabels"); }
    void SetHasRadarAxisLabels(bool) override { NotAvailable("ChartGroup.SetHasRadarAxisLabels"); }
    long SplitType() override { NotAvailable("ChartGroup.SplitType"); }
    void SetSplitType(long) override { NotAvailable("ChartGroup.SetSplitType"); }
    Variant SplitValue() override { NotAvailable("ChartGroup.SplitValue"); }
    void SetSplitValue(const Variant&) override { NotAvailable("ChartGroup.SetSplitValue"); }
    long SecondPlotSize() override { NotAvailable("ChartGroup.SecondPlotSize"); }
    void SetSecondPlotSize(long) override { NotAvailable("ChartGroup.SetSecondPlotSize"); }
};

class ChartGroupsBase : public host::ChartGroups {
public:
    long Count() override { NotAvailable("ChartGroups.Count"); }
    Ref<host::ChartGroup> Item(long) override { NotAvailable("ChartGroups.Item"); }
};

class ChartBase : public host::Chart {
public:
    Ref<host::Application> Application() override { NotAvailable("Chart.Application"); }
    Ref<host::ChartObject> Parent() override { NotAvailable("Chart.Parent"); }
    std::string Name() override { NotAvailable("Chart.Name"); }
    void SetName(const std::string&) override { NotAvailable("Chart.SetName"); }
    long ChartType() override { NotAvailable("Chart.ChartType"); }
    void SetChartType(long) override { NotAvailable("Chart.SetChartType"); }
    Variant ChartStyle() override { NotAvailable("Chart.ChartStyle"); }
    void SetChartStyle(const Variant&) override { NotAvailable("Chart.SetChartStyle"); }
    Ref<host::SeriesCollection> SeriesCollection() override { NotAvailable("Chart.SeriesCollection"); }
    Ref<host::Series> SeriesCollection(const Variant&) override { NotAvailable("Chart.SeriesCollection"); }
    void SetSourceData(Ref<host::Range>, const Variant&) override { NotAvailable("Chart.SetSourceData"); }
    long PlotBy() override { NotAvailable("Chart.PlotBy"); }
    void SetPlotBy(long) override { NotAvailable("Chart.SetPlotBy"); }
    Ref<host::ChartGroups> ChartGroups() override { NotAvailable("Chart.ChartGroups"); }
    Ref<host::ChartGroup> ChartGroups(long) override { NotAvailable("Chart.ChartGroups"); }
    void ApplyDataLabels(long, const Variant&, const Variant&, const Variant&, const Variant&, const Variant&, const Variant&, const Variant&, const Variant&, const Variant&) override { NotAvailable("Chart.ApplyDataLabels"); }
    bool HasTitle() override { NotAvailable("Chart.HasTitle"); }
    void SetHasTitle(bool) override { NotAvailable("Chart.SetHasTitle"); }
    Ref<host::ChartTitle> ChartTitle() override { NotAvailable("Chart.ChartTitle"); }
    bool HasLegend() override { NotAvailable("Chart.HasLegend"); }
    void SetHasLegend(bool) override { NotAvailable("Chart.SetHasLegend"); }
    Ref<host::Legend> Legend() override { NotAvailable("Chart.Legend"); }
    Ref<host::Axis> Axes(long, long) override { NotAvailable("Chart.Axes"); }
    Variant HasAxis(long, long) override { NotAvailable("Chart.HasAxis"); }
    void SetHasAxis(long, const Variant&) override { NotAvailable("Chart.SetHasAxis"); }
    void SetHasAxis(long, long, const Variant&) override { NotAvailable("Chart.SetHasAxis"); }
    Ref<host::ChartArea> ChartArea() override { NotAvailable("Chart.ChartArea"); }
    Ref<host::PlotArea> PlotArea() override { NotAvailable("Chart.PlotArea"); }
    Ref<host::Shapes> Shapes() override { NotAvailable("Chart.Shapes"); }
    long BarShape() override { NotAvailable("Chart.BarShape"); }
    void SetBarShape(long) override { NotAvailable("Chart.SetBarShape"); }
    long DisplayBlanksAs() override { NotAvailable("Chart.DisplayBlanksAs"); }
    void SetDisplayBlanksAs(long) override { NotAvailable("Chart.SetDisplayBlanksAs"); }
    bool PlotVisibleOnly() override { NotAvailable("Chart.PlotVisibleOnly"); }
    void SetPlotVisibleOnly(bool) override { NotAvailable("Chart.SetPlotVisibleOnly"); }
    bool HasDataTable() override { NotAvailable("Chart.HasDataTable"); }
    void SetHasDataTable(bool) override { NotAvailable("Chart.SetHasDataTable"); }
    long Elevation() override { NotAvailable("Chart.Elevation"); }
    void SetElevation(long) override { NotAvailable("Chart.SetElevation"); }
    Variant Rotation() override { NotAvailable("Chart.Rotation"); }
    void SetRotation(const Variant&) override { NotAvailable("Chart.SetRotation"); }
    long Perspective() override { NotAvailable("Chart.Perspective"); }
    void SetPerspective(long) override { NotAvailable("Chart.SetPerspective"); }
    Variant RightAngleAxes() override { NotAvailable("Chart.RightAngleAxes"); }
    void SetRightAngleAxes(const Variant&) override { NotAvailable("Chart.SetRightAngleAxes"); }
    long HeightPercent() override { NotAvailable("Chart.HeightPercent"); }
    void SetHeightPercent(long) override { NotAvailable("Chart.SetHeightPercent"); }
    long DepthPercent() override { NotAvailable("Chart.DepthPercent"); }
    void SetDepthPercent(long) override { NotAvailable("Chart.SetDepthPercent"); }
    bool AutoScaling() override { NotAvailable("Chart.AutoScaling"); }
    void SetAutoScaling(bool) override { NotAvailable("Chart.SetAutoScaling"); }
    void Activate() override { NotAvailable("Chart.Activate"); }
    void Select(const Variant&) override { NotAvailable("Chart.Select"); }
    void Refresh() override { NotAvailable("Chart.Refresh"); }
};

class FontBase : public host::Font {
public:
    Variant Name() override { NotAvailable("Font.Name"); }
    void SetName(const Variant&) override { NotAvailable("Font.SetName"); }
    Variant Size() override { NotAvailable("Font.Size"); }
    void SetSize(const Variant&) override { NotAvailable("Font.SetSize"); }
    Variant Bold() override { NotAvailable("Font.Bold"); }
    void SetBold(const Variant&) override { NotAvailable("Font.SetBold"); }
    Variant Italic() override { NotAvailable("Font.Italic"); }
    void SetItalic(const Variant&) override { NotAvailable("Font.SetItalic"); }
    Variant Underline() override { NotAvailable("Font.Underline"); }
    void SetUnderline(const Variant&) override { NotAvailable("Font.SetUnderline"); }
    Variant Strikethrough() override { NotAvailable("Font.Strikethrough"); }
    void SetStrikethrough(const Variant&) override { NotAvailable("Font.SetStrikethrough"); }
    Variant Color() override { NotAvailable("Font.Color"); }
    void SetColor(const Variant&) override { NotAvailable("Font.SetColor"); }
    Variant ColorIndex() override { NotAvailable("Font.ColorIndex"); }
    void SetColorIndex(const Variant&) override { NotAvailable("Font.SetColorIndex"); }
    Variant FontStyle() override { NotAvailable("Font.FontStyle"); }
    void SetFontStyle(const Variant&) override { NotAvailable("Font.SetFontStyle"); }
    Variant Background() override { NotAvailable("Font.Background"); }
    void SetBackground(const Variant&) override { NotAvailable("Font.SetBackground"); }
};

class InteriorBase : public host::Interior {
public:
    Variant Color() override { NotAvailable("Interior.Color"); }
    void SetColor(const Variant&) override { NotAvailable("Interior.SetColor"); }
    Variant ColorIndex() override { NotAvailable("Interior.ColorIndex"); }
    void SetColorIndex(const Variant&) override { NotAvailable("Interior.SetColorIndex"); }
    Variant Pattern() override { NotAvailable("Interior.Pattern"); }
    void SetPattern(const Variant&) override { NotAvailable("Interior.SetPattern"); }
    Variant PatternColor() override { NotAvailable("Interior.PatternColor"); }
    void SetPatternColor(const Variant&) override { NotAvailable("Interior.SetPatternColor"); }
    Variant PatternColorIndex() override { NotAvailable("Interior.PatternColorIndex"); }
    void SetPatternColorIndex(const Variant&) override { NotAvailable("Interior.SetPatternColorIndex"); }
};

class BorderBase : public host::Border {
public:
    Variant LineStyle() override { NotAvailable("Border.LineStyle"); }
    void SetLineStyle(const Variant&) override { NotAvailable("Border.SetLineStyle"); }
    Variant Weight() override { NotAvailable("Border.Weight"); }
    void SetWeight(const Variant&) override { NotAvailable("Border.SetWeight"); }
    Variant Color() override { NotAvailable("Border.Color"); }
    void SetColor(const Variant&) override { NotAvailable("Border.SetColor"); }
    Variant ColorIndex() override { NotAvailable("Border.ColorIndex"); }
    void SetColorIndex(const Variant&) override { NotAvailable("Border.SetColorIndex"); }
};

class ColorFormatBase : public host::ColorFormat {
public:
    long RGB() override { NotAvailable("ColorFormat.RGB"); }
    void SetRGB(long) override { NotAvailable("ColorFormat.SetRGB"); }
    long SchemeColor() override { NotAvailable("ColorFormat.SchemeColor"); }
    void SetSchemeColor(long) override { NotAvailable("ColorFormat.SetSchemeColor"); }
    long ObjectThemeColor() override { NotAvailable("ColorFormat.ObjectThemeColor"); }
    void SetObjectThemeColor(long) override { NotAvailable("ColorFormat.SetObjectThemeColor"); }
    double TintAndShade() override { NotAvailable("ColorFormat.TintAndShade"); }
    void SetTintAndShade(double) override { NotAvailable("ColorFormat.SetTintAndShade"); }
    double Brightness() override { NotAvailable("ColorFormat.Brightness"); }
    void SetBrightness(double) override { NotAvailable("ColorFormat.SetBrightness"); }
    long Type() override { NotAvailable("ColorFormat.Type"); }
};

}  // namespace xlsx
