// Where a chart starts to exist: the last steps of the Chart Location page, which the command line's
// add takes as well. Until the definition is saved nothing of the chart is in the workbook but a
// new sheet, and a new sheet stays even when a later step fails.
#include "common/common_functions.h"
#include "host/chart.h"
#include "host/constants.h"
#include "host/workbook.h"
#include "metadata/ps_functions.h"

namespace ps {

bool PSFunctions::CreateChartWorksheet(const std::string& sSheetName) {
    auto& wb = Obj(c.oWorkbook);
    std::string sActive = Obj(wb.ActiveSheet()).Name();
    if (!c.common->CreateSheet(sSheetName, 1, host::xlSheetVisible)) {
        wb.Sheets()->Item(sActive)->Activate();
        return false;
    }
    wb.Worksheets()->Item(sSheetName)->Activate();
    // A sheet made for charts shows neither grid lines nor headings.
    auto oWindow = Obj(c.oApplication).ActiveWindow();
    Obj(oWindow).SetDisplayGridlines(false);
    oWindow->SetDisplayHeadings(false);
    return true;
}

bool PSFunctions::PlaceChartDefinition(const std::string& sSheetName) {
    // Errors go to the page, which reports them in its own box and stays open.
    auto oChart = Obj(c.oChartDoc).selectSingleNode("chart");
    bool bNewChart = !CommonFunctions::CollectionHasKey(c.sChartID, c.colCharts);
    Obj(c.oWorkbook).Worksheets()->Item(sSheetName)->Activate();
    oChart.setAttribute("chart-worksheet", sSheetName);
    // A definition that can't be stored gets no chart: it would be lost at the next load.
    if (!SaveChartDefinition(c.oChartDoc)) return false;
    if (bNewChart) CreateEmptyChart(sSheetName, c.sChartID);
    if (CommonFunctions::CollectionHasKey(c.sChartID, c.colCharts)) c.colCharts->Remove(c.sChartID);
    Obj(c.colCharts).Add(c.oChartDoc, c.sChartID);
    return true;
}

}  // namespace ps
