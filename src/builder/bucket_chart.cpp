// Strategic bucket charts: each item row a stacked column series with a value in its bucket only,
// the columns touching, and one last line-with-markers series that draws no line but a red dash
// at each bucket's value, labelled with it.
#include <string>

#include "builder/ps_chart_builder.h"
#include "common/common_functions.h"
#include "common/constants.h"
#include "host/chart.h"
#include "host/chart_constants.h"
#include "host/constants.h"
#include "host/format.h"
#include "host/workbook.h"

namespace ps {

namespace {
using host::Variant;
constexpr const char* sBucketSeries = "Strategic Buckets";
constexpr long lFirstBucketColumn = 5;
constexpr long lPureRed = 255;
}  // namespace

void PSChartBuilder::PopulateStrBuckChart(const dom::Element& oChartElement) {
    try {
        auto& cf = *c.common;
        auto& oChart = Obj(mChart);
        (void)cf.GetAttributeText(oChartElement, "id");
        long S = StartRow(oChartElement);
        long E = S + mCategoryCount;
        const long C = lFirstBucketColumn;
        long L = mSeriesCount + 2;
        std::string sPrefix = DataSheetPrefix();
        // One letter only: right up to column Z, and that limit is left as it is.
        std::string sBucketNames =
            OlderHost() ? sPrefix + std::to_string(S) + "C" + std::to_string(C) + ":R" + std::to_string(S) + "C" +
                              std::to_string(L)
                        : std::string("=") + sDataSheet + "!$" + static_cast<char>(C + 64) + "$" + std::to_string(S) +
                              ":$" + static_cast<char>(L + 64) + "$" + std::to_string(S);
        bool bManualLabels = false;
        if (auto oLabels = oChartElement.selectSingleNode("data-labels"))
            bManualLabels = cf.GetAttributeText(oLabels, "manual-labels") == "yes";
        auto oSheet = DataSheet();
        SeriesColors k;
        mSeriesColors = std::make_shared<host::Collection<std::shared_ptr<CPSColor>>>();

        auto RowValues = [&](long r) {
            return sPrefix + std::to_string(r) + "C" + std::to_string(C) + ":R" + std::to_string(r) + "C" +
                   std::to_string(L);
        };
        for (long r = S + 2; r <= E; ++r) {
            std::string sText = host::CStr(cf.GetCellValue(oSheet, r, 2, 0));
            std::string sName = host::CStr(cf.GetCellValue(oSheet, r, 3, 0));
            auto oSeries = oChart.SeriesCollection()->NewSeries();
            oSeries->SetChartType(host::xlColumnStacked);
            oSeries->SetName(sName);
            oSeries->SetXValues(Variant(sBucketNames));
            oSeries->SetValues(Variant(RowValues(r)));
            TakeSeriesColor(*oSeries, sName, k);
            if (bManualLabels) {
                oSeries->SetHasDataLabels(true);
                if (auto oLabels = oSeries->DataLabels()) {
                    auto oFont = oLabels->Font();
                    oFont->SetName(mLabelFontName);
                    oFont->SetFontStyle(mLabelFontStyle);
                    oFont->SetSize(host::Val(host::CStr(mLabelFontSize)));
                    oFont->SetColor(mLabelFontColor);
                    oLabels->SetAutoScaleFont(CommonFunctions::SafeBool(mLabelFontAutoScale));
                    oLabels->SetHorizontalAlignment(host::xlHAlignCenter);
                    oLabels->SetVerticalAlignment(host::xlVAlignCenter);
                    oLabels->SetPosition(host::xlLabelPositionCenter);
                    oLabels->SetOrientation(host::xlHorizontal);
                    // Version 12 and later label the empty buckets of an item too.
                    bool bOlder = host::Val(Obj(oChart.Application()).Version()) < 12.0;
                    auto vValues = oSeries->Values();
                    for (long i = 1; i <= oLabels->Count(); ++i) {
                        if (bOlder && !(host::CDbl(vValues.at(static_cast<size_t>(i - 1))) > 0)) continue;
                        oSeries->DataLabels(i)->SetText(sText);
                    }
                }
            }
            cf.YieldToHost();
        }

        IgnoreErrors([&] { oChart.ChartGroups(1)->SetGapWidth(0); });
        std::vector<host::Ref<host::Series>> aSeries;
        IgnoreErrors([&] { aSeries = host::Each(*oChart.SeriesCollection()); });
        for (auto& oSeries : aSeries) {
            std::shared_ptr<CPSColor> oColor;
            IgnoreErrors([&] { oColor = k.colNamedColors.Item(oSeries->Name()); });
            if (oColor) IgnoreErrors([&] { PaintSeries(*oSeries, *oColor); });
            IgnoreErrors([&] { oSeries->Border()->SetColor(0L); });
            cf.YieldToHost();
        }

        auto oBuckets = oChart.SeriesCollection()->NewSeries();
        oBuckets->SetChartType(host::xlLineMarkers);
        oBuckets->SetName(sBucketSeries);
        oBuckets->SetXValues(Variant(sBucketNames));
        oBuckets->SetValues(Variant(RowValues(S + 1)));
        oBuckets->SetMarkerForegroundColor(lPureRed);
        oBuckets->SetMarkerBackgroundColor(lPureRed);
        oBuckets->SetMarkerStyle(host::xlMarkerStyleDash);
        oBuckets->SetMarkerSize(55);
        oBuckets->Border()->SetLineStyle(host::xlNone);
        oBuckets->ApplyDataLabels(host::xlDataLabelsShowValue);
        if (oBuckets->HasDataLabels()) {
            if (auto oLabels = oBuckets->DataLabels()) {
                oLabels->SetPosition(host::xlLabelPositionCenter);
                auto oFont = oLabels->Font();
                oFont->SetName(mBucketLabelFontName);
                oFont->SetFontStyle(mBucketLabelFontStyle);
                oFont->SetSize(host::Val(host::CStr(mBucketLabelFontSize)));
                oFont->SetColor(mBucketLabelFontColor);
                oFont->SetBackground(host::xlBackgroundTransparent);
                oLabels->SetAutoScaleFont(CommonFunctions::SafeBool(mBucketLabelFontAutoScale));
            }
        }
        // The bucket value series leaves the legend; older hosts shrink the legend font meanwhile.
        if (oChart.HasLegend()) {
            auto oLegend = oChart.Legend();
            bool bOlder = host::Val(Obj(oChart.Application()).Version()) < 12.0;
            Variant vSize;
            if (bOlder) {
                vSize = oLegend->Font()->Size();
                oLegend->Font()->SetSize(1L);
            }
            IgnoreErrors([&] { oLegend->LegendEntries(oLegend->LegendEntries()->Count())->Delete(); });
            if (bOlder) oLegend->Font()->SetSize(vSize);
        }
    } catch (const std::exception&) {
        c.common->ReportError("PSChartBuilder.PopulateStrBuckChart");
    }
}

void PSChartBuilder::SetStrBuckChartAttributes(const dom::Element& oChartElement) {
    try {
        auto& cf = *c.common;
        auto& oChart = Obj(mChart);
        ApplyTitleAndAxes(oChartElement, true);
        auto oLabels = oChartElement.selectSingleNode("data-labels");
        if (oLabels && cf.GetAttributeText(oLabels, "manual-labels") == "yes") {
            for (auto& oSeries : host::Each(*oChart.SeriesCollection())) {
                if (oSeries->ChartType() == host::xlColumnStacked && oSeries->HasDataLabels()) {
                    auto oDataLabels = oSeries->DataLabels();
                    oDataLabels->SetPosition(host::xlLabelPositionCenter);
                    // The bucket labels' autoscale with the plain label font: so it has always been.
                    oDataLabels->SetAutoScaleFont(CommonFunctions::SafeBool(mBucketLabelFontAutoScale));
                    auto oFont = oDataLabels->Font();
                    oFont->SetName(mLabelFontName);
                    oFont->SetFontStyle(mLabelFontStyle);
                    oFont->SetSize(host::Val(host::CStr(mLabelFontSize)));
                    oFont->SetColor(mLabelFontColor);
                }
                cf.YieldToHost();
            }
        }
    } catch (const std::exception&) {
        c.common->ReportError("PSChartBuilder.SetStrBuckChartAttributes");
        return;
    }
    ApplyFamilyLegend("PSChartBuilder.SetStrBuckChartAttributes");
}

}  // namespace ps
