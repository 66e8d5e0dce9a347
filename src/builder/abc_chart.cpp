// Area, bar and column charts: one series per value column of the block, drawn on a clustered bar
// chart whatever the final type, which is set last from the definition's settings; then titles,
// labels and the legend. The shared legend dressing lives here too.
#include <string>

#include "builder/ps_chart_builder.h"
#include "common/common_functions.h"
#include "common/constants.h"
#include "host/chart.h"
#include "host/constants.h"
#include "host/format.h"
#include "host/workbook.h"

namespace ps {

namespace {

using host::Variant;

// The column letters of a series name reference. Plain arithmetic covers columns 3 to 78 only;
// beyond, the caller keeps the reference of the column before.
std::string ColumnLetters(long c) {
    if (c <= 26) return std::string(1, static_cast<char>(64 + c));
    if (c <= 52) return std::string("A") + static_cast<char>(38 + c);
    return std::string("B") + static_cast<char>(12 + c);
}

// The automation chart type of a family and its settings: 3D adds 1, stacked 2, 100% 4.
long ABCChartType(long lSum) {
    switch (lSum) {
        case 0: return host::xlArea;
        case 1: return host::xl3DArea;
        case 2: return host::xlAreaStacked;
        case 3: return host::xl3DAreaStacked;
        case 6: return host::xlAreaStacked100;
        case 7: return host::xl3DAreaStacked100;
        case 8: return host::xlBarClustered;
        case 9: return host::xl3DBarClustered;
        case 10: return host::xlBarStacked;
        case 11: return host::xl3DBarStacked;
        case 14: return host::xlBarStacked100;
        case 15: return host::xl3DBarStacked100;
        case 16: return host::xlColumnClustered;
        case 17: return host::xl3DColumnClustered;
        case 18: return host::xlColumnStacked;
        case 19: return host::xl3DColumnStacked;
        case 22: return host::xlColumnStacked100;
        case 23: return host::xl3DColumnStacked100;
        // "100%" without "stacked", or a repeated setting, gives clustered columns in every family.
        default: return host::xlColumnClustered;
    }
}

double ValOf(const Variant& v) { return host::Val(host::CStr(v)); }

}  // namespace

void PSChartBuilder::PopulateABCChart(const dom::Element& oChartElement) {
    try {
        long S = StartRow(oChartElement);
        long E = S + mCategoryCount;
        long L = mSeriesCount + 2;
        std::string sPrefix = DataSheetPrefix();
        auto& oChart = Obj(mChart);
        oChart.SetChartType(host::xlBarClustered);
        std::string sCategories = sPrefix + std::to_string(S + 1) + "C2:R" + std::to_string(E) + "C2";
        std::string sName;
        for (long col = 3; col <= L; ++col) {
            if (host::Val(Obj(oChart.Application()).Version()) > 11.0) {
                if (col <= 78) sName = std::string("=") + sDataSheet + "!$" + ColumnLetters(col) + "$" + std::to_string(S);
            } else {
                sName = sPrefix + std::to_string(S) + "C" + std::to_string(col);
            }
            std::string sValues = sPrefix + std::to_string(S + 1) + "C" + std::to_string(col) + ":R" +
                                  std::to_string(E) + "C" + std::to_string(col);
            auto oSeries = oChart.SeriesCollection()->NewSeries();
            oSeries->SetName(sName);
            oSeries->SetXValues(Variant(sCategories));
            oSeries->SetValues(Variant(sValues));
        }
    } catch (const std::exception&) {
        c.common->ReportError("PSChartBuilder.PopulateABCChart");
    }
}

// An axis title in the persisted font of its axis: the label axis (category) or the value axis.
void PSChartBuilder::ApplyAxisTitle(bool bLabel, const std::string& sLabel, bool bSizeThroughVal) {
    auto oAxis = Obj(mChart).Axes(bLabel ? host::xlCategory : host::xlValue, host::xlPrimary);
    oAxis->SetHasTitle(true);
    auto oTitle = oAxis->AxisTitle();
    oTitle->SetText(sLabel);
    auto oFont = oTitle->Font();
    const Variant& vSize = bLabel ? mLabelAxisFontSize : mValueAxisFontSize;
    oFont->SetSize(bSizeThroughVal ? Variant(ValOf(vSize)) : vSize);
    oFont->SetName(bLabel ? mLabelAxisFontName : mValueAxisFontName);
    oFont->SetColor(bLabel ? mLabelAxisFontColor : mValueAxisFontColor);
    oFont->SetFontStyle(bLabel ? mLabelAxisFontStyle : mValueAxisFontStyle);
    oTitle->SetAutoScaleFont(CommonFunctions::SafeBool(bLabel ? mLabelAxisFontAutoScale : mValueAxisFontAutoScale));
}

// Title, legend from the series headings, axis titles and their fonts, the linked number format and
// the titles' orientation: the first steps of area, bar, column and bucket charts alike.
void PSChartBuilder::ApplyTitleAndAxes(const dom::Element& oChartElement, bool bYieldPerAxis) {
    auto& cf = *c.common;
    auto& oChart = Obj(mChart);
    ApplyTitle(oChartElement);
    if (auto oSeriesNode = oChartElement.selectSingleNode("series"))
        oChart.SetHasLegend(cf.GetAttributeText(oSeriesNode, "headings-in") != "none");

    oChart.Axes(host::xlValue, host::xlPrimary)->SetHasTitle(false);
    oChart.Axes(host::xlCategory, host::xlPrimary)->SetHasTitle(false);
    if (auto oAxes = oChartElement.selectSingleNode("axes")) {
        for (auto oAxis : oAxes.selectNodes("axis")) {
            std::string sType = cf.GetAttributeText(oAxis, "type");
            std::string sLabel = cf.GetAttributeText(oAxis, "label");
            if ((sType == "label" || sType == "value") && !sLabel.empty()) {
                bool bLabel = sType == "label";
                oChart.SetHasAxis(bLabel ? host::xlCategory : host::xlValue, true);
                ApplyAxisTitle(bLabel, sLabel, true);
            }
            if (bYieldPerAxis) cf.YieldToHost();
        }
    }

    if (host::CBool(oChart.HasAxis(host::xlValue)))
        oChart.Axes(host::xlValue, host::xlPrimary)->TickLabels()->SetNumberFormatLinked(true);

    bool bBar = mChartType == "bar";
    auto oValueAxis = oChart.Axes(host::xlValue, host::xlPrimary);
    if (oValueAxis->HasTitle()) oValueAxis->AxisTitle()->SetOrientation(bBar ? host::xlHorizontal : host::xlUpward);
    auto oCategoryAxis = oChart.Axes(host::xlCategory, host::xlPrimary);
    if (oCategoryAxis->HasTitle())
        oCategoryAxis->AxisTitle()->SetOrientation(bBar ? host::xlUpward : host::xlHorizontal);
}

void PSChartBuilder::SetABCChartAttributes(const dom::Element& oChartElement) {
    try {
        auto& cf = *c.common;
        auto& oChart = Obj(mChart);
        ApplyTitleAndAxes(oChartElement, false);

        bool bShowValues = false;
        if (auto oLabels = oChartElement.selectSingleNode("data-labels"))
            for (auto oLabel : oLabels.selectNodes("data-label"))
                if (cf.GetAttributeText(oLabel, "show") == "values") bShowValues = true;
        if (bShowValues) LabelAllSeries(host::xlDataLabelsShowValue, host::xlLabelPositionCenter);

        long lSum = 0;
        if (auto oDynamic = oChartElement.selectSingleNode("dynamic-attributes")) {
            for (auto oAttribute : oDynamic.selectNodes("attribute")) {
                std::string sSetting = cf.GetAttributeText(oAttribute, "setting");
                if (sSetting == "3D") lSum += 1;
                else if (sSetting == "stacked") lSum += 2;
                else if (sSetting == "100%") lSum += 4;
            }
        }
        if (mChartType == "bar") lSum += 8;
        else if (mChartType == "column") lSum += 16;
        oChart.SetChartType(ABCChartType(lSum));

        ApplyLegendVisibility();
    } catch (const std::exception&) {
        c.common->ReportError("PSChartBuilder.SetABCChartAttributes");
    }
}

void PSChartBuilder::ApplyTitle(const dom::Element& oChartElement) {
    auto& oChart = Obj(mChart);
    std::string sTitle = c.common->GetAttributeText(oChartElement, "title");
    if (sTitle.empty()) {
        oChart.SetHasTitle(false);
    } else {
        oChart.SetHasTitle(true);
        oChart.ChartTitle()->SetText(sTitle);
    }
}

void PSChartBuilder::LabelAllSeries(long lType, long lPosition) {
    for (auto& oSeries : host::Each(*Obj(mChart).SeriesCollection())) {
        oSeries->ApplyDataLabels(lType);
        if (auto oDataLabels = oSeries->DataLabels()) {
            oDataLabels->SetPosition(lPosition);
            oDataLabels->SetAutoScaleFont(CommonFunctions::SafeBool(mLabelFontAutoScale));
            auto oFont = oDataLabels->Font();
            oFont->SetName(mLabelFontName);
            oFont->SetFontStyle(mLabelFontStyle);
            oFont->SetSize(ValOf(mLabelFontSize));
            oFont->SetColor(mLabelFontColor);
        }
    }
}

// The built-in legend as the persisted visibility says: "show" dresses it, "hide" takes it away;
// anything else ("auto") leaves it, and the answer is false.
bool PSChartBuilder::ApplyLegendVisibility() {
    if (mLegendVisibility == "show") {
        Obj(mChart).SetHasLegend(true);
        ApplyLegendAttributes();
        return true;
    }
    if (mLegendVisibility == "hide") {
        Obj(mChart).SetHasLegend(false);
        return true;
    }
    return false;
}

// Every statement on its own: a legend refusing one setting still takes the others.
void PSChartBuilder::ApplyLegendAttributes() {
    host::Ref<host::Legend> oLegend;
    IgnoreErrors([&] { oLegend = Obj(mChart).Legend(); });
    host::Ref<host::Font> oFont;
    IgnoreErrors([&] { oFont = Obj(oLegend).Font(); });
    IgnoreErrors([&] { Obj(oFont).SetName(mLegendFontName); });
    IgnoreErrors([&] { Obj(oFont).SetSize(ValOf(mLegendFontSize)); });
    IgnoreErrors([&] { Obj(oFont).SetFontStyle(mLegendFontStyle); });
    IgnoreErrors([&] { Obj(oFont).SetColor(mLegendFontColor); });
    IgnoreErrors([&] { Obj(oLegend).SetAutoScaleFont(mLegendFontAutoScale); });
    bool bPlaced = false;
    IgnoreErrors([&] { bPlaced = ValOf(mLegendPosition) == 0; });
    if (!bPlaced) {
        IgnoreErrors([&] { Obj(oLegend).SetPosition(host::CLng(ValOf(mLegendPosition))); });
    } else {
        IgnoreErrors([&] { Obj(oLegend).SetTop(host::Val(host::CStr(mLegendTop))); });
        IgnoreErrors([&] { Obj(oLegend).SetLeft(host::Val(host::CStr(mLegendLeft))); });
    }
}

}  // namespace ps
