#include "builder/ps_chart_builder.h"

#include "common/common_functions.h"
#include "common/constants.h"
#include "forms/frontend.h"
#include "host/constants.h"
#include "host/workbook.h"
#include "metadata/ps_functions.h"
#include "pages/busy.h"

namespace ps {

namespace {
// The host's refresh macros; a host without them is the normal case.
void CallMacro(Component& c, const char* sMacro, const std::vector<host::Variant>& args = {}) {
    IgnoreErrors([&] { Obj(c.oApplication).Run(sMacro, args); });
}
}  // namespace

bool PSChartBuilder::OlderHost() { return host::Val(Obj(c.oApplication).Version()) <= 11.0; }

void PSChartBuilder::PopulateAllCharts() {
    bool bScreenUpdating = false;
    auto restore = [&] {
        Obj(c.oApplication).SetCalculation(mSavedCalculation);
        Obj(c.oApplication).SetScreenUpdating(bScreenUpdating);
        c.frontEnd.SetMousePointer(forms::vbDefault);
    };
    try {
        c.frontEnd.SetMousePointer(forms::vbHourglass);
        auto& app = Obj(c.oApplication);
        mSavedCalculation = app.Calculation();
        app.SetCalculation(host::xlCalculationManual);
        bScreenUpdating = app.ScreenUpdating();
        app.SetScreenUpdating(false);
        if (!c.colTables) c.functions->RetrieveTableDefinitions();
        if (!c.colCharts) c.functions->RetrieveChartDefinitions();
        auto colCharts = c.colCharts;  // the walk keeps the collection, as For Each does
        for (long i = 1; i <= Obj(colCharts).Count(); ++i) {
            dom::DocumentRef oDoc = colCharts->Item(i);
            auto oChart = Obj(oDoc).selectSingleNode("chart");
            std::string sID = c.common->GetAttributeText(oChart, "id");
            PopulateChart(sID);
            c.functions->SaveChartDefinition(oDoc);
            c.common->YieldToHost();
        }
        restore();
        return;
    } catch (const std::exception&) {
        c.common->ReportError("PSChartBuilder.PopulateAllCharts");
    }
    restore();
}

// Both refreshes take one road: up to version 11 directly, with the host made non-interactive;
// above it behind the busy window, which does the work from its first activation.
void PSChartBuilder::RunRefresh(long lBusyMethod, const std::string& sChartID) {
    try {
        if (OlderHost()) {
            auto& app = Obj(c.oApplication);
            app.SetInteractive(false);
            if (lBusyMethod == 0) PopulateAllCharts();
            else PopulateChart(sChartID);
            app.SetInteractive(true);
        } else {
            frmBusyPS busy(c);
            busy.bWorking = false;
            busy.sChartID = sChartID;
            busy.lMethodType = lBusyMethod;
            busy.Show();
        }
        return;
    } catch (const std::exception&) {
        c.common->ShowMessage(CurrentError().Description);
    }
    // Not guarded: a failure here reaches the caller's error block.
    if (OlderHost()) Obj(c.oApplication).SetInteractive(true);
}

void PSChartBuilder::RefreshAllCharts() { RunRefresh(0, {}); }

void PSChartBuilder::RefreshChart(const std::string& sChartID) { RunRefresh(1, sChartID); }

void PSChartBuilder::PopulateModifiedCharts(const std::string& sTableRangeName) {
    CallMacro(c, sMacroRefreshStarted);
    bool bScreenUpdating = false;
    auto restore = [&] {
        Obj(c.oApplication).SetCalculation(mSavedCalculation);
        Obj(c.oApplication).SetScreenUpdating(bScreenUpdating);
        c.frontEnd.SetMousePointer(forms::vbDefault);
        CallMacro(c, sMacroRefreshComplete);
    };
    try {
        c.frontEnd.SetMousePointer(forms::vbHourglass);
        auto& app = Obj(c.oApplication);
        mSavedCalculation = app.Calculation();
        app.SetCalculation(host::xlCalculationManual);
        bScreenUpdating = app.ScreenUpdating();
        app.SetScreenUpdating(false);
        c.functions->RetrieveTableDefinitions();
        if (!c.colCharts) c.functions->RetrieveChartDefinitions();
        auto colCharts = c.colCharts;  // the walk keeps the collection, as For Each does
        for (long i = 1; i <= Obj(colCharts).Count(); ++i) {
            dom::DocumentRef oDoc = colCharts->Item(i);
            auto oChart = Obj(oDoc).selectSingleNode("chart");
            std::string sID = c.common->GetAttributeText(oChart, "id");
            std::string sTableID = c.common->GetAttributeText(oChart, "table-id");
            std::string sBucketTableID = c.common->GetAttributeText(oChart, "strategic-bucket-table-id");
            if (sTableID == sTableRangeName || sBucketTableID == sTableRangeName) RefreshChart(sID);
            c.functions->SaveChartDefinition(oDoc);
            c.common->YieldToHost();
        }
        restore();
        return;
    } catch (const std::exception&) {
        c.common->ReportError("PSChartBuilder.PopulateModifiedCharts");
    }
    restore();
}

void PSChartBuilder::PopulateChart(const std::string&) {
    // Building a chart (validation, map, data sheet, drawing) is not built yet: nothing happens.
}

}  // namespace ps
