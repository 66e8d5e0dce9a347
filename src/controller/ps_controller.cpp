#include "controller/ps_controller.h"

#include "builder/ps_chart_builder.h"
#include "common/common_functions.h"
#include "common/constants.h"
#include "forms/frontend.h"
#include "host/workbook.h"
#include "metadata/ps_functions.h"
#include "pages/pages.h"
#include "pages/select_action.h"
#include "pages/wizard_pages.h"

namespace ps {

// ---------------------------------------------------------------- the run

void PSController::ExecuteRun(long lMode) {
    c.bRunAborted = false;
    if (lMode == 1) IgnoreErrors([&] { Obj(c.oApplication).Run(sMacroRefreshStarted); });
    // Once a chart was selected, the rest of the run ignores errors.
    bool bIgnore = false;
    auto statement = [&](auto&& body) {
        if (bIgnore) IgnoreErrors(body);
        else body();
    };
    if (Obj(c.oApplication).ActiveChart()) {
        bIgnore = true;
        IgnoreErrors([&] {
            auto sheet = std::dynamic_pointer_cast<host::Worksheet>(Obj(c.oWorkbook).ActiveSheet());
            Obj(sheet).Cells(1, 1)->Activate();
        });
    }
    statement([&] { PSJumpToStep(lMode != 0 ? 0 : 1, pcOutside, nullptr); });
    statement([&] { EndRun(); });
    if (lMode == 1 && !c.bRunAborted) IgnoreErrors([&] { Obj(c.oApplication).Run(sMacroRefreshComplete); });
}

void PSController::PSJumpToStep(long lStep, long lFromPage, forms::Form* oPage) {
    try {
        Obj(c.oApplication).SetScreenUpdating(false);
        if (oPage) UnloadPage(*oPage);
        switch (lStep) {
            case 0:
                c.lMethodType = mtRefresh;
                c.builder->RefreshAllCharts();
                break;
            case 1: JumpStart(); break;
            case 6: JumpNext(lFromPage); break;
            case 7: JumpPrevious(lFromPage); break;
            case 8:
                JumpFinish(lFromPage);
                c.common->YieldToHost();
                break;
            case 9:
                EndRun();
                c.common->YieldToHost();
                break;
            default: Complain("PSController.PSJumpToStep", "Unsupported Navigation"); break;
        }
    } catch (const std::exception&) {
        // Not guarded: a failure here reaches the caller.
        c.common->ReportError("PSController.PSJumpToStep");
        EndRun();
        c.bRunAborted = true;
    }
}

void PSController::JumpStart() {
    if (!c.colTables) c.functions->RetrieveTableDefinitions();
    if (!c.colCharts) c.functions->RetrieveChartDefinitions();
    if (Obj(c.colTables).Count() + Obj(c.colCharts).Count() == 0) {
        PSJumpToStep(9, pcOutside, nullptr);
        c.common->ShowMessage("This workbook contains no tables. You must create one in order to run the Plotsmith.");
        return;
    }
    if (c.colCharts->Count() > 0) {
        ShowPage(pgSelectAction);
    } else {
        c.lMethodType = mtNew;
        ShowPage(pgSelectTable);
    }
}

// ---------------------------------------------------------------- moves

long PSController::LayoutPageNumber() const {
    const std::string& t = c.sChartType;
    if (t == "area") return pgLayoutArea;
    if (t == "bar") return pgLayoutBar;
    if (t == "bubble") return pgLayoutBubble;
    if (t == "column") return pgLayoutColumn;
    if (t == "strategic bucket") return pgLayoutStrBuck;
    if (t == "pie") return pgLayoutPie;
    return -1;
}

bool PSController::PageIsValid(PSWizardPage& oPage) {
    oPage.Load();
    bool bResult = false;
    oPage.ValidSelections(bResult);
    return bResult;
}

void PSController::JumpNext(long lFromPage) {
    switch (lFromPage) {
        case pcSelectAction:
            if (c.lMethodType == mtNew) {
                ShowPage(pgSelectTable);
            } else if (auto& page = SelectTablePage(c); PageIsValid(page)) {
                UnloadPage(page);
                JumpNext(pcSelectTable);
            } else {
                ShowPage(pgSelectTable);
            }
            break;
        case pcSelectTable:
            if (long lPage = LayoutPageNumber(); lPage >= 0) ShowPage(lPage);
            else Complain("PSController.JumpNext", "Unknown chart type");
            break;
        case pcLayout: ShowPage(pgChartLocation); break;
        case pcChartLocation: c.builder->RefreshChart(c.sChartID); break;
        default: Complain("PSController.JumpNext", "Don't know where you're coming from!"); break;
    }
}

void PSController::JumpPrevious(long lFromPage) {
    switch (lFromPage) {
        case pcSelectTable:
            c.sChartID.clear();
            c.sTableID.clear();
            c.sChartType = "unknown";
            c.oChartDoc = nullptr;
            ShowPage(pgSelectAction);
            break;
        case pcLayout: ShowPage(pgSelectTable); break;
        case pcChartLocation:
            if (long lPage = LayoutPageNumber(); lPage >= 0) ShowPage(lPage);
            else Complain("PSController.JumpPrevious", "Unknown chart type");
            break;
        default: Complain("PSController.JumpPrevious", "Don't know where you're coming from!"); break;
    }
}

void PSController::JumpFinish(long lFromPage) {
    switch (lFromPage) {
        case pcSelectAction:
            if (auto& page = SelectTablePage(c); PageIsValid(page)) {
                UnloadPage(page);
                JumpFinish(pcSelectTable);
            } else {
                ShowPage(pgSelectTable);
            }
            break;
        case pcSelectTable: {
            const std::string& t = c.sChartType;
            PSWizardPage* page = nullptr;
            long lPage = -1;
            if (t == "area" || t == "bar" || t == "column") page = &LayoutABCPage(c), lPage = pgLayoutArea;
            else if (t == "bubble") page = &LayoutBubblePage(c), lPage = pgLayoutBubble;
            else if (t == "pie") page = &LayoutPiePage(c), lPage = pgLayoutPie;
            else if (t == "strategic bucket") page = &LayoutStrBuckPage(c), lPage = pgLayoutStrBuck;
            if (!page) {
                Complain("PSController.JumpFinish", "Unknown chart type");
            } else if (PageIsValid(*page)) {
                UnloadPage(*page);
                JumpFinish(pcLayout);
            } else {
                ShowPage(lPage);
            }
            break;
        }
        case pcLayout:
            if (auto& page = ChartLocationPage(c); PageIsValid(page)) {
                UnloadPage(page);
                c.builder->RefreshChart(c.sChartID);
            } else {
                ShowPage(pgChartLocation);
            }
            break;
        case pcChartLocation: c.builder->RefreshChart(c.sChartID); break;
        default: Complain("PSController.JumpFinish", "Don't know where you're coming from!"); break;
    }
}

// ---------------------------------------------------------------- pages and the end

void PSController::ShowPage(long lPage) {
    Obj(c.oApplication).SetScreenUpdating(true);
    forms::Form* page = nullptr;
    switch (lPage) {
        case pgSelectAction: page = &SelectActionPage(c); break;
        case pgSelectTable: page = &SelectTablePage(c); break;
        case pgLayoutArea: case pgLayoutBar: case pgLayoutColumn: page = &LayoutABCPage(c); break;
        case pgLayoutBubble: page = &LayoutBubblePage(c); break;
        case pgLayoutStrBuck: page = &LayoutStrBuckPage(c); break;
        case pgLayoutPie: page = &LayoutPiePage(c); break;
        case pgChartLocation: page = &ChartLocationPage(c); break;
        default: return;
    }
    page->Show();
}

void PSController::UnloadPage(forms::Form& oPage) {
    // No error block: a failing unload leaves the flag set, and the run's end then does nothing.
    c.bUnloadingPage = true;
    oPage.Unload();
    c.bUnloadingPage = false;
}

void PSController::EndRun() {
    if (c.bUnloadingPage) return;
    c.colCharts = nullptr;
    c.colChartObjects = nullptr;
    c.colChartShapes = nullptr;
    c.colTables = nullptr;
    c.oChartDoc = nullptr;
    c.sChartType = "unknown";
    c.sChartID.clear();
    c.sTableID.clear();
    Obj(c.oApplication).SetScreenUpdating(true);
}

void PSController::Complain(const char* sWhere, const char* sComplaint) {
    c.dialogs.MsgBox(std::string(sWhere) + vbCrLf + sComplaint, forms::vbOKOnly, "");
}

}  // namespace ps
