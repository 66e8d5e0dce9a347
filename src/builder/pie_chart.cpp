// Pie charts: series without names, made before any type is set; labels of values or percentages;
// and a legend even when the definition leaves it to the component.
#include <string>

#include "builder/ps_chart_builder.h"
#include "common/common_functions.h"
#include "host/chart.h"
#include "host/constants.h"
#include "host/format.h"
#include "host/workbook.h"

namespace ps {

void PSChartBuilder::PopulatePieChart(const dom::Element& oChartElement) {
    try {
        auto& cf = *c.common;
        (void)cf.GetAttributeText(oChartElement, "id");
        long S = StartRow(oChartElement);
        long E = S + mCategoryCount;
        long L = mSeriesCount + 2;
        std::string sPrefix = DataSheetPrefix();
        std::string sCategories = sPrefix + std::to_string(S + 1) + "C2:R" + std::to_string(E) + "C2";
        auto& oChart = Obj(mChart);
        for (long col = 3; col <= L; ++col) {
            std::string sValues = sPrefix + std::to_string(S + 1) + "C" + std::to_string(col) + ":R" +
                                  std::to_string(E) + "C" + std::to_string(col);
            auto oSeries = oChart.SeriesCollection()->NewSeries();
            oSeries->SetXValues(host::Variant(sCategories));
            oSeries->SetValues(host::Variant(sValues));
            if (oSeries->HasDataLabels())
                if (auto oFont = oSeries->DataLabels()->Font()) oFont->SetSize(host::Val(host::CStr(mLabelFontSize)));
        }
    } catch (const std::exception&) {
        c.common->ReportError("PSChartBuilder.PopulatePieChart");
    }
}

void PSChartBuilder::SetPieChartAttributes(const dom::Element& oChartElement) {
    try {
        auto& cf = *c.common;
        auto& oChart = Obj(mChart);
        ApplyTitle(oChartElement);

        bool bValues = false;
        bool bPercentages = false;
        if (auto oLabels = oChartElement.selectSingleNode("data-labels")) {
            for (auto oLabel : oLabels.selectNodes("data-label")) {
                std::string sShow = cf.GetAttributeText(oLabel, "show");
                if (sShow == "values") bValues = true;
                else if (sShow == "percentages") bPercentages = true;
                cf.YieldToHost();
            }
        }
        if (bValues || bPercentages) {
            oChart.SetChartType(host::xlPie);
            LabelAllSeries(bValues ? host::xlDataLabelsShowValue : host::xlDataLabelsShowPercent,
                           host::xlLabelPositionBestFit);
        }

        long lSum = 0;
        if (auto oDynamic = oChartElement.selectSingleNode("dynamic-attributes")) {
            for (auto oAttribute : oDynamic.selectNodes("attribute")) {
                std::string sSetting = cf.GetAttributeText(oAttribute, "setting");
                if (sSetting == "3D") lSum += 1;
                else if (sSetting == "exploded") lSum += 2;
                cf.YieldToHost();
            }
        }
        oChart.SetChartType(lSum == 1   ? host::xl3DPie
                            : lSum == 2 ? host::xlPieExploded
                            : lSum == 3 ? host::xl3DPieExploded
                                        : host::xlPie);

        // Unlike the other families, a pie left to the component always shows its legend.
        if (!ApplyLegendVisibility()) oChart.SetHasLegend(true);
    } catch (const std::exception&) {
        c.common->ReportError("PSChartBuilder.SetPieChartAttributes");
    }
}

}  // namespace ps
