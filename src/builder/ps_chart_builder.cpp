#include "builder/ps_chart_builder.h"

#include "common/common_functions.h"
#include "common/constants.h"
#include "forms/frontend.h"
#include "host/chart.h"
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

std::string PSChartBuilder::DataSheetPrefix() { return std::string("=") + sDataSheet + "!R"; }

long PSChartBuilder::StartRow(const dom::Element& oChartElement) {
    return host::CLng(c.common->GetAttributeText(oChartElement, "data-start-row"));
}

host::Ref<host::Worksheet> PSChartBuilder::DataSheet() {
    return Obj(c.oWorkbook).Worksheets()->Item(std::string(sDataSheet));
}

bool PSChartBuilder::OlderHost() { return host::Val(Obj(c.oApplication).Version()) <= 11.0; }

// A refresh run works under the hourglass with manual calculation and the screen off; what it
// found is put back at its end, also after an error in the run's own steps.
void PSChartBuilder::EnterRefreshState(bool& bScreenUpdating) {
    c.frontEnd.SetMousePointer(forms::vbHourglass);
    auto& app = Obj(c.oApplication);
    mSavedCalculation = app.Calculation();
    app.SetCalculation(host::xlCalculationManual);
    bScreenUpdating = app.ScreenUpdating();
    app.SetScreenUpdating(false);
}

void PSChartBuilder::LeaveRefreshState(bool bScreenUpdating) {
    Obj(c.oApplication).SetCalculation(mSavedCalculation);
    Obj(c.oApplication).SetScreenUpdating(bScreenUpdating);
    c.frontEnd.SetMousePointer(forms::vbDefault);
}

void PSChartBuilder::PopulateAllCharts() {
    bool bScreenUpdating = false;
    auto restore = [&] { LeaveRefreshState(bScreenUpdating); };
    try {
        EnterRefreshState(bScreenUpdating);
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
        LeaveRefreshState(bScreenUpdating);
        CallMacro(c, sMacroRefreshComplete);
    };
    try {
        EnterRefreshState(bScreenUpdating);
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

void PSChartBuilder::PopulateChart(const std::string& sChartID) {
    try {
        auto& cf = *c.common;
        if (!c.colTables) c.functions->RetrieveTableDefinitions();
        if (!c.colCharts) c.functions->RetrieveChartDefinitions();
        auto oChartElement = Obj(Obj(c.colCharts).Item(sChartID)).selectSingleNode("chart");
        mChartType = cf.GetAttributeText(oChartElement, "type");
        std::string sName = cf.GetAttributeText(oChartElement, "name");
        std::string sCrosshatched = cf.GetAttributeText(oChartElement, "chart-area-crosshatched");
        CallMacro(c, sMacroRefreshStarted, {sChartID});

        bool bValid = false;
        if (mChartType != "unknown") {
            bValid = ValidateSourceData(oChartElement);
        } else {
            cf.ShowMessage(cf.ReplaceTokens(
                "Chart '/TKN/' has become unavailable because it was changed to an unsupported chart type.", {sName}));
        }

        mChart = Obj(c.colChartObjects).Item(sChartID);
        mNewOrCopiedChart = c.lMethodType == mtNew || c.lMethodType == mtCopy;
        // Valid or not: a chart that can't be built is left without series.
        DeleteAllSeries();

        auto oChartArea = Obj(mChart).ChartArea();
        bool bAreaWithoutColour = oChartArea->Interior()->ColorIndex() == host::Variant(host::xlNone);
        if (bAreaWithoutColour && !bValid) {
            CrosshatchChartArea();
            oChartElement.setAttribute("chart-area-crosshatched", "yes");
            return;
        }
        // A chart area with a colour of its own, an earlier crosshatch among them, stays as it is.
        if (!bValid) return;

        if (!BuildPivotMap(oChartElement)) return;
        if (!PopulateDataSheetOffi2007(oChartElement)) return;
        if (!SortDataSheet(oChartElement)) return;
        RetrievePersistedProperties(oChartElement);
        if (!mNewOrCopiedChart) oChartArea->SetAutoScaleFont(false);

        if (mChartType == "area" || mChartType == "bar" || mChartType == "column") {
            PopulateABCChart(oChartElement);
            SetABCChartAttributes(oChartElement);
        } else if (mChartType == "pie") {
            PopulatePieChart(oChartElement);
            SetPieChartAttributes(oChartElement);
        } else if (mChartType == "bubble") {
            AdjustBubbleSizes(oChartElement);
            PopulateBubbleChart(oChartElement);
            SetBubbleChartAttributes(oChartElement);
            SetBubbleChartQuadrants(oChartElement);
        } else if (mChartType == "strategic bucket") {
            InsertBucketData(oChartElement);
            PopulateStrBuckChart(oChartElement);
            SetStrBuckChartAttributes(oChartElement);
        } else {
            cf.ShowMessage(std::string("PSChartBuilder.PopulateChart") + vbCrLf + "Unknown chart type");
            return;
        }

        {
            // The comment box is found by the run's chart id; a refresh of all charts has none of its own.
            std::string sRunChartID = c.sChartID;
            c.sChartID = sChartID;
            SetChartComment(oChartElement);
            c.sChartID = sRunChartID;
        }
        if (mNewOrCopiedChart) {
            auto oPlotArea = Obj(mChart).PlotArea();
            oPlotArea->Interior()->SetColorIndex(host::xlNone);
            oPlotArea->Border()->SetLineStyle(0L);  // not a named line style; it stands as it always has
        }
        // How a chart recovers: the crosshatch goes even if the user coloured the area meanwhile.
        if (sCrosshatched == "yes") {
            oChartElement.setAttribute("chart-area-crosshatched", "no");
            oChartArea->Interior()->SetColorIndex(host::xlNone);
        }
    } catch (const std::exception&) {
        c.common->ReportError("PSChartBuilder.PopulateChart");
    }
}

void PSChartBuilder::DeleteAllSeries() {
    host::Ref<host::SeriesCollection> oSeriesCollection;
    IgnoreErrors([&] { oSeriesCollection = Obj(mChart).SeriesCollection(); });
    if (!oSeriesCollection) return;
    std::vector<host::Ref<host::Series>> aSeries;
    IgnoreErrors([&] { aSeries = host::Each(*oSeriesCollection); });
    for (auto& oSeries : aSeries) IgnoreErrors([&] { oSeries->Delete(); });
}

// An upward diagonal hatch in the palette's grey over white marks a chart that can't be built.
void PSChartBuilder::CrosshatchChartArea() {
    auto oFill = Obj(mChart).ChartArea()->Fill();
    oFill->Patterned(host::msoPatternLightUpwardDiagonal);
    oFill->ForeColor()->SetSchemeColor(15);
    oFill->BackColor()->SetSchemeColor(2);
    oFill->SetVisible(host::msoTrue);
}

}  // namespace ps
