// A chart's identity and its definition document. The document's root `chart` holds the
// attributes CreateChartDoc sets, plus table-worksheet, data-start-row, the table geometry and the
// bucket column positions that the load and the refresh write, and chart-shape-name, the name of
// the chart's shape, by which a chart without series is found again when another program dropped
// its link. Its children (categories, series,
// values, x-values, bubble-sizes, sort-order, axes, data-labels, dynamic-attributes,
// static-attributes, comment, auto-persistence) are found by name, so their order means nothing.
// Columns are named, never numbered: that is why renamed columns have to be carried over.
#include "common/common_functions.h"
#include "host/chart.h"
#include "host/constants.h"
#include "host/workbook.h"
#include "metadata/ps_functions.h"

namespace ps {

dom::DocumentRef PSFunctions::ParseChartDefinition(const std::string& sText) {
    auto oDoc = c.common->NewXMLDocument();
    if (!oDoc->loadXML(sText)) return nullptr;
    return oDoc;
}

std::string PSFunctions::NextChartID() {
    // A missing collection would answer "held" for every candidate.
    auto& colCharts = Obj(c.colCharts);
    for (long n = 1;; ++n) {
        std::string sCandidate = sChartIDPrefix + std::to_string(n);
        if (!CommonFunctions::CollectionHasKey(sCandidate, &colCharts)) return sCandidate;
    }
}

bool PSFunctions::ChartNameInUse(const std::string& sName) {
    bool bInUse = false;
    try {
        auto& cf = *c.common;
        std::string sWanted = host::UCase(sName);
        for (auto& oDoc : Obj(c.colCharts)) {
            auto oChart = Obj(oDoc).selectSingleNode("chart");
            // The chart in work never collides with itself.
            if (cf.GetAttributeText(oChart, "id") != c.sChartID &&
                host::UCase(cf.GetAttributeText(oChart, "name")) == sWanted) {
                bInUse = true;
                break;
            }
            cf.YieldToHost();
        }
    } catch (const std::exception&) {
        c.common->ReportError("PSFunctions.ChartNameInUse");
    }
    return bInUse;
}

std::string PSFunctions::FreeChartName(const std::string& sBaseName) {
    std::string sName = sBaseName;
    for (long i = 1; ChartNameInUse(sName); ++i) sName = sBaseName + " (" + std::to_string(i) + ")";
    return sName;
}

void PSFunctions::CreateChartDoc() {
    try {
        c.oChartDoc = c.common->NewXMLDocument();
        auto oChart = c.oChartDoc->createElement("chart");
        c.sChartID = NextChartID();

        std::string sName = FreeChartName("Chart" + host::Mid(c.sChartID, host::Len(sChartIDPrefix) + 1));

        oChart.setAttribute("ps-chart-schema-version", sChartSchemaVersion);
        oChart.setAttribute("id", c.sChartID);
        oChart.setAttribute("name", sName);
        oChart.setAttribute("title", "");
        oChart.setAttribute("type", "unknown");
        oChart.setAttribute("chart-worksheet", "");
        oChart.setAttribute("table-id", "");
        oChart.setAttribute("strategic-bucket-table-id", "");
        oChart.setAttribute("number-format", "");
        oChart.setAttribute("table-corrupted", "no");
        oChart.setAttribute("chart-area-crosshatched", "no");
        c.oChartDoc->appendChild(oChart);
    } catch (const std::exception&) {
        c.common->ReportError("PSFunctions.CreateChartDoc");
    }
}

void PSFunctions::CreateEmptyChart(const std::string& sSheetName, const std::string& sChartID) {
    try {
        auto oSheet = Obj(c.oWorkbook).Worksheets()->Item(sSheetName);
        // Each new chart lies 20 points lower and further right than the last.
        long lOffset = 20 * oSheet->ChartObjects()->Count();
        auto oChartObject = oSheet->ChartObjects()->Add(lOffset, lOffset, 420, 345);
        // The link the load follows from a definition to its chart.
        oSheet->Shapes()->Item(oChartObject->Name())->SetAlternativeText(sChartID);
        if (c.oChartDoc) Obj(c.oChartDoc).selectSingleNode("chart").setAttribute("chart-shape-name", oChartObject->Name());
        auto oChart = oChartObject->Chart();
        auto oArea = oChart->ChartArea();
        oArea->Border()->SetLineStyle(0L);
        oArea->Interior()->SetColorIndex(host::xlNone);
        Obj(c.colChartObjects).Add(oChart, sChartID);
    } catch (const std::exception&) {
        c.common->ReportError("PSFunctions.CreateEmptyChart");
    }
}

namespace {

// The chart still shows the old column name on an axis whose label followed the rename. Left so,
// the read-back at the next load would take that title for one the user typed and make it sticky,
// and the rebuild would bring the old name back. A title the user typed was made sticky at the
// load and kept its label, so it is not touched.
void CarryAxisTitles(Component& c, const std::string& sChartID, const dom::DocumentRef& oDoc,
                     const std::vector<std::string>& aLabelsBefore) {
    auto& cf = *c.common;
    if (!c.colChartObjects || !CommonFunctions::CollectionHasKey(sChartID, c.colChartObjects)) return;
    auto oChart = c.colChartObjects->Item(sChartID);
    size_t i = 0;
    for (auto oAxis : oDoc->selectNodes("//axis")) {
        const std::string& sBefore = aLabelsBefore.at(i++);
        std::string sLabel = cf.GetAttributeText(oAxis, "label");
        if (sLabel == sBefore) continue;
        long lAxisType = cf.GetAttributeText(oAxis, "type") == "label" ? host::xlCategory : host::xlValue;
        if (!host::CBool(Obj(oChart).HasAxis(lAxisType, host::xlPrimary))) continue;
        auto oTitleAxis = oChart->Axes(lAxisType, host::xlPrimary);
        if (oTitleAxis->HasTitle() && oTitleAxis->AxisTitle()->Text() == sBefore)
            oTitleAxis->AxisTitle()->SetText(sLabel);
    }
}

}  // namespace

void PSFunctions::UpdateChartColumnNames(const std::string& sTableRangeName, std::vector<std::string>& aOldColumnNames,
                                         std::vector<std::string>& aNewColumnNames) {
    try {
        auto& cf = *c.common;
        RetrieveTableDefinitions();
        if (!c.colCharts) RetrieveChartDefinitions();

        auto NewName = [&](size_t i) -> const std::string& {
            if (i >= aNewColumnNames.size()) host::Raise(host::err::SubscriptOutOfRange);
            return aNewColumnNames[i];
        };
        for (auto& oDoc : Obj(c.colCharts)) {
            auto oChart = Obj(oDoc).selectSingleNode("chart");
            if (cf.GetAttributeText(oChart, "table-id") == sTableRangeName) {
                auto oColumns = oDoc->selectNodes("//column");
                std::vector<std::string> aLabelsBefore;
                for (auto oAxis : oDoc->selectNodes("//axis"))
                    aLabelsBefore.push_back(cf.GetAttributeText(oAxis, "label"));
                // Renames apply in order and each sees the ones before: A to B then B to C makes A
                // into C. Axes are looked at per column, so a document without columns keeps them.
                for (size_t i = 0; i < aOldColumnNames.size(); ++i) {
                    const std::string& sOld = aOldColumnNames[i];
                    for (auto oColumn : oColumns) {
                        if (cf.GetAttributeText(oColumn, "name") == sOld) oColumn.setAttribute("name", NewName(i));
                        for (auto oAxis : oDoc->selectNodes("//axis")) {
                            std::string sType = cf.GetAttributeText(oAxis, "type");
                            // A label the user typed (sticky) stays as it is.
                            if ((sType == "value" || sType == "label") && cf.GetAttributeText(oAxis, "label") == sOld &&
                                cf.GetAttributeText(oAxis, "sticky") == "no")
                                oAxis.setAttribute("label", NewName(i));
                        }
                    }
                }
                CarryAxisTitles(c, cf.GetAttributeText(oChart, "id"), oDoc, aLabelsBefore);
            }
            // Every chart is saved, also those of other tables: the load may have corrected them.
            SaveChartDefinition(oDoc);
            cf.YieldToHost();
        }
    } catch (const std::exception&) {
        c.common->ReportError("PSFunctions.UpdateChartColumnNames");
    }
}

}  // namespace ps
