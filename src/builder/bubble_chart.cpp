// Bubble charts: one series per block row, holding one bubble, named by its colour key so that
// rows with one key share a colour and a legend entry; then titles, type and legend; and the
// four-quadrant layout, where the axes cross in the middle of the data.
#include <cmath>
#include <string>

#include "builder/ps_chart_builder.h"
#include "common/common_functions.h"
#include "common/constants.h"
#include "host/chart.h"
#include "host/chart_constants.h"
#include "host/constants.h"
#include "host/drawing.h"
#include "host/format.h"
#include "host/workbook.h"

namespace ps {

namespace {
using host::Variant;

// A bubble's references: one cell of its row in a column of the block.
std::string RowCell(const std::string& sPrefix, long r, long col) {
    std::string sRow = std::to_string(r), sColumn = std::to_string(col);
    return sPrefix + sRow + "C" + sColumn + ":R" + sRow + "C" + sColumn;
}

// No data seen yet, for the quadrant ranges.
constexpr double dNoData = 1E+50;
}  // namespace

// The colour the host gave a new series; the n-th distinct name takes the n-th colour given, so
// that repeated names leave no gaps in the palette. A repeated name drops the legend entry that
// its series added.
void PSChartBuilder::TakeSeriesColor(host::Series& oSeries, const std::string& sName, SeriesColors& k) {
    ++k.lSeriesCount;
    auto oColor = std::make_shared<CPSColor>();
    IgnoreErrors([&] {
        auto oInterior = oSeries.Interior();
        oColor->SetColor(oInterior->Color());
        oColor->SetColorIndex(oInterior->ColorIndex());
        oColor->SetPattern(oInterior->Pattern());
        oColor->SetPatternColor(oInterior->PatternColor());
        oColor->SetPatternColorIndex(oInterior->PatternColorIndex());
    });
    k.colSeriesColors.Add(oColor, "KEY" + std::to_string(k.lSeriesCount));
    if (!k.colNamedColors.Has(sName)) {
        ++k.lColorCount;
        auto oNamed = k.colSeriesColors.Item("KEY" + std::to_string(k.lColorCount));
        k.colNamedColors.Add(oNamed, sName);
        Obj(mSeriesColors).Add(oNamed, sName);
    } else if (Obj(mChart).HasLegend()) {
        auto oEntries = Obj(mChart).Legend()->LegendEntries();
        oEntries->Item(oEntries->Count())->Delete();
    }
}

void PSChartBuilder::PaintSeries(host::Series& oSeries, const CPSColor& oColor) {
    auto oInterior = oSeries.Interior();
    IgnoreErrors([&] { oInterior->SetPattern(oColor.Pattern()); });
    IgnoreErrors([&] { oInterior->SetPatternColorIndex(oColor.PatternColorIndex()); });
    IgnoreErrors([&] { oInterior->SetPatternColor(oColor.PatternColor()); });
    IgnoreErrors([&] { oInterior->SetColorIndex(oColor.ColorIndex()); });
    IgnoreErrors([&] { oInterior->SetColor(oColor.Color()); });
}

void PSChartBuilder::PopulateBubbleChart(const dom::Element& oChartElement) {
    long S = 0, E = 0;
    std::string sPrefix = DataSheetPrefix();
    host::Ref<host::Worksheet> oSheet;
    SeriesColors k;
    try {
        (void)c.common->GetAttributeText(oChartElement, "id");
        S = StartRow(oChartElement);
        E = S + mCategoryCount;
        // Later hosts take the bubble type before any series exists.
        if (!OlderHost()) Obj(mChart).SetChartType(host::xlBubble);
        oSheet = DataSheet();
        mSeriesColors = std::make_shared<host::Collection<std::shared_ptr<CPSColor>>>();
    } catch (const std::exception&) {
        c.common->ReportError("PSChartBuilder.PopulateBubbleChart");
        return;
    }

    // From here a failing statement costs only itself.
    auto& cf = *c.common;
    auto& oChart = Obj(mChart);
    for (long r = S + 1; r <= E; ++r) {
        std::string sName;
        IgnoreErrors([&] { sName = host::Trim(host::CStr(cf.GetCellValue(oSheet, r, 3, 0))); });
        host::Ref<host::Series> oSeries;
        IgnoreErrors([&] { oSeries = oChart.SeriesCollection()->NewSeries(); });
        if (!oSeries) continue;
        if (sName.empty()) {
            // A row without a colour key: a placeholder series on the data sheet's first cell, which
            // keeps the host's default name.
            std::string sNowhere = sPrefix + "1C1:R1C1";
            IgnoreErrors([&] { oSeries->SetXValues(Variant(sNowhere)); });
            IgnoreErrors([&] { oSeries->SetValues(Variant(sNowhere)); });
            IgnoreErrors([&] { oSeries->SetBubbleSizes(Variant(sNowhere)); });
            continue;
        }
        IgnoreErrors([&] { oSeries->SetName(sName); });
        IgnoreErrors([&] { oSeries->SetXValues(Variant(RowCell(sPrefix, r, 4))); });
        IgnoreErrors([&] { oSeries->SetValues(Variant(RowCell(sPrefix, r, 5))); });
        IgnoreErrors([&] { oSeries->SetBubbleSizes(Variant(RowCell(sPrefix, r, 6))); });
        IgnoreErrors([&] { TakeSeriesColor(*oSeries, sName, k); });
        IgnoreErrors([&] { oSeries->SetHasDataLabels(true); });
        host::Ref<host::DataLabels> oLabels;
        IgnoreErrors([&] { oLabels = oSeries->DataLabels(); });
        if (!oLabels) continue;
        IgnoreErrors([&] { oLabels->SetAutoScaleFont(CommonFunctions::SafeBool(mLabelFontAutoScale)); });
        IgnoreErrors([&] { oLabels->Font()->SetName(mLabelFontName); });
        IgnoreErrors([&] { oLabels->Font()->SetFontStyle(mLabelFontStyle); });
        IgnoreErrors([&] { oLabels->Font()->SetSize(host::Val(host::CStr(mLabelFontSize))); });
        IgnoreErrors([&] { oLabels->Font()->SetColor(mLabelFontColor); });
        IgnoreErrors([&] { oLabels->SetHorizontalAlignment(host::xlHAlignCenter); });
        IgnoreErrors([&] { oLabels->SetVerticalAlignment(host::xlVAlignCenter); });
        IgnoreErrors([&] { oLabels->SetOrientation(host::xlHorizontal); });
    }
    // Older hosts reach the bubble type only through the scatter type.
    if (OlderHost()) {
        IgnoreErrors([&] { oChart.SetChartType(host::xlXYScatter); });
        IgnoreErrors([&] { oChart.SetChartType(host::xlBubble); });
    }

    std::vector<host::Ref<host::Series>> aSeries;
    IgnoreErrors([&] { aSeries = host::Each(*oChart.SeriesCollection()); });
    std::shared_ptr<CPSColor> oColor;
    long r = S + 1;
    for (auto& oSeries : aSeries) {
        std::string sText;
        IgnoreErrors([&] { sText = host::CStr(cf.GetCellValue(oSheet, r, 2, 0)); });
        // A placeholder series takes the colour of the series before it.
        IgnoreErrors([&] { oColor = k.colNamedColors.Item(oSeries->Name()); });
        if (oColor) IgnoreErrors([&] { PaintSeries(*oSeries, *oColor); });
        IgnoreErrors([&] { oSeries->Border()->SetWeight(host::xlHairline); });
        IgnoreErrors([&] { oSeries->DataLabels(1)->SetText(sText); });
        IgnoreErrors([&] { oSeries->DataLabels()->SetPosition(host::xlLabelPositionCenter); });
        ++r;
    }
}

void PSChartBuilder::SetBubbleChartAttributes(const dom::Element& oChartElement) {
    try {
        auto& cf = *c.common;
        auto& oChart = Obj(mChart);
        if (mNewOrCopiedChart) {
            oChart.Axes(host::xlCategory, host::xlPrimary)->SetHasMajorGridlines(false);
            oChart.Axes(host::xlValue, host::xlPrimary)->SetHasMajorGridlines(false);
        }
        ApplyTitle(oChartElement);
        if (auto oSeriesNode = oChartElement.selectSingleNode("series")) {
            bool bNone = cf.GetAttributeText(oSeriesNode, "headings-in") == "none";
            bool bHasLegend = oChart.HasLegend();
            if (bNone && bHasLegend) oChart.SetHasLegend(false);
            else if (!bNone && !bHasLegend) oChart.SetHasLegend(true);
        }
        oChart.Axes(host::xlValue, host::xlPrimary)->SetHasTitle(false);
        oChart.Axes(host::xlCategory, host::xlPrimary)->SetHasTitle(false);
        if (auto oAxes = oChartElement.selectSingleNode("axes")) {
            for (auto oAxis : oAxes.selectNodes("axis")) {
                std::string sType = cf.GetAttributeText(oAxis, "type");
                std::string sLabel = cf.GetAttributeText(oAxis, "label");
                // The size as stored, unlike the other families.
                if ((sType == "label" || sType == "value") && !sLabel.empty()) ApplyAxisTitle(sType == "label", sLabel, false);
                cf.YieldToHost();
            }
        }
        long lSum = 0;
        if (auto oDynamic = oChartElement.selectSingleNode("dynamic-attributes")) {
            for (auto oAttribute : oDynamic.selectNodes("attribute")) {
                std::string sSetting = cf.GetAttributeText(oAttribute, "setting");
                if (sSetting == "3D") lSum += 1;
                else if (sSetting == "quadrants") lSum += 2;
            }
        }
        if (lSum == 1 || lSum == 3) oChart.SetChartType(host::xlBubble3DEffect);
        else if (lSum == 2) oChart.SetChartType(host::xlBubble);
    } catch (const std::exception&) {
        c.common->ReportError("PSChartBuilder.SetBubbleChartAttributes");
        return;
    }
    ApplyFamilyLegend("PSChartBuilder.SetBubbleChartAttributes");
}

// The legend of bubble and bucket charts: the built-in one on older hosts, the drawn one on later
// hosts, where any failure quietly leaves the chart without a legend.
void PSChartBuilder::ApplyFamilyLegend(const std::string& sWhere) {
    auto& oChart = Obj(mChart);
    if (OlderHost()) {
        try {
            ApplyLegendVisibility();
        } catch (const std::exception&) {
            c.common->ReportError(sWhere);
        }
        return;
    }
    try {
        if (mLegendVisibility == "show") {
            oChart.SetHasLegend(true);
            BuildChartLegend(true);
        } else if (mLegendVisibility == "hide") {
            // "hide" is also what read-back stores for a drawn legend: the group still there tells a
            // kept legend from one the user deleted.
            if (oChart.Shapes()->Range(std::string(sDrawnLegend))->Name() == sDrawnLegend) BuildChartLegend(true);
        } else if (mLegendVisibility == "auto") {
            BuildChartLegend(true);
        }
    } catch (const std::exception&) {
        IgnoreErrors([&] { oChart.SetHasLegend(false); });
        IgnoreErrors([&] { BuildChartLegend(false); });
    }
}

void PSChartBuilder::SetBubbleChartQuadrants(const dom::Element& oChartElement) {
    try {
        auto& cf = *c.common;
        bool bQuadrants = false, bAutoX = false, bAutoY = false;
        if (auto oStatic = oChartElement.selectSingleNode("static-attributes")) {
            for (auto oAttribute : oStatic.selectNodes("attribute")) {
                std::string sSetting = cf.GetAttributeText(oAttribute, "setting");
                if (sSetting == "quadrants") bQuadrants = true;
                else if (sSetting == "autoscale-x") bAutoX = true;
                else if (sSetting == "autoscale-y") bAutoY = true;
            }
        }
        if (mNewOrCopiedChart) bAutoX = bAutoY = true;
        if (!bQuadrants) return;

        long S = StartRow(oChartElement);
        long E = S + mCategoryCount;
        auto oSheet = DataSheet();
        double dMinX = dNoData, dMaxX = -dNoData, dMinY = dNoData, dMaxY = -dNoData;
        for (long r = S + 1; r <= E; ++r) {
            double x = host::CDbl(cf.GetCellValue(oSheet, r, 4, 1));
            double y = host::CDbl(cf.GetCellValue(oSheet, r, 5, 1));
            if (x > dMaxX) dMaxX = x;
            if (x < dMinX) dMinX = x;
            if (y > dMaxY) dMaxY = y;
            if (y < dMinY) dMinY = y;
        }
        if (bAutoX && (dMaxX == -dNoData || dMinX == dNoData)) return;
        if (bAutoY && (dMaxY == -dNoData || dMinY == dNoData)) return;
        auto Widen = [](double& dMin, double& dMax) {
            if (dMin > 0) {
                dMin = 0;
                dMax = std::floor(dMax * 1.1);
            } else if (dMax < 0) {
                dMin = std::floor(dMin * 1.1);
                dMax = 0;
            } else {
                dMin = std::floor(dMin - dMax * 0.1);
                dMax = std::floor(dMax * 1.1);
            }
        };
        Widen(dMinY, dMaxY);
        Widen(dMinX, dMaxX);

        auto& oChart = Obj(mChart);
        auto SetUp = [&](long lType, bool bAuto, double dMin, double dMax) {
            Variant vHadAxis = oChart.HasAxis(lType);
            oChart.SetHasAxis(lType, true);
            auto oAxis = oChart.Axes(lType, host::xlPrimary);
            oAxis->SetHasMajorGridlines(true);
            oAxis->SetHasMinorGridlines(false);
            if (bAuto) {
                oAxis->SetMinimumScale(dMin);
                oAxis->SetMaximumScale(dMax);
                if (std::fabs(dMax - dMin) > 0) oAxis->SetMajorUnit(std::fabs(dMax - dMin) / 2);
            } else {
                oAxis->SetMajorUnitIsAuto(true);
                double dSpan = std::fabs(oAxis->MaximumScale() - oAxis->MinimumScale());
                if (dSpan > 0) oAxis->SetMajorUnit(dSpan / 2);
            }
            oAxis->SetCrosses(host::xlAutomatic);
            oAxis->SetReversePlotOrder(false);
            oAxis->SetScaleType(host::xlLinear);
            oAxis->SetDisplayUnit(host::xlNone);
            oAxis->SetTickLabelPosition(host::xlTickLabelPositionLow);
            oAxis->Border()->SetLineStyle(host::xlNone);
            oChart.SetHasAxis(lType, vHadAxis);
        };
        SetUp(host::xlCategory, bAutoX, dMinX, dMaxX);
        SetUp(host::xlValue, bAutoY, dMinY, dMaxY);
        auto oBorder = oChart.PlotArea()->Border();
        oBorder->SetWeight(host::xlThin);
        oBorder->SetLineStyle(host::xlAutomatic);
    } catch (const std::exception&) {
        c.common->ReportError("PSChartBuilder.SetBubbleChartQuadrants");
    }
}

}  // namespace ps
