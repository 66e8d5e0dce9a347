#include "pages/select_action.h"

#include <cmath>
#include <vector>

#include "common/common_functions.h"
#include "common/constants.h"
#include "controller/ps_controller.h"
#include "forms/frontend.h"
#include "host/chart_constants.h"
#include "host/drawing.h"
#include "host/workbook.h"
#include "metadata/ps_functions.h"

namespace ps {

namespace {
enum ChartColumn : long { colName = 0, colType = 1, colChartSheet = 2, colTableSheet = 3 };
}  // namespace

frmPSSelectAction::frmPSSelectAction(Component& c)
    : PSForm(c, "frmPSSelectAction", PageCaption("Select Action"), pcSelectAction) {}

forms::Grid& frmPSSelectAction::grdCharts() const { return Get<forms::Grid>("grdCharts"); }

void frmPSSelectAction::DesignPage() {
    ButtonsBeside = true;
    auto& frame = Add<forms::Frame>("Frame2");
    frame.SetCaption("Charts in this Workbook");
    frame.Width = 500;
    frame.Height = 220;
    auto& grid = Add<forms::Grid>("grdCharts", &frame);
    grid.Width = 480;
    grid.Height = 190;
    grid.SetCols(4);
    grid.FixedRows = 1;
    grid.SelectionMode = forms::Grid::flexSelectionListBox;
    grid.Click = [this] { Handle([&] { grdCharts_SelChange(); }); };
    grid.AfterSelChange = [this] { Handle([&] { grdCharts_SelChange(); }); };
    grid.DblClick = [this] { Handle([&] { grdCharts_DblClick(); }); };

    auto button = [this](const char* name, const char* caption, void (frmPSSelectAction::*handler)()) -> auto& {
        return AddButton(name, caption, static_cast<void (PSForm::*)()>(handler));
    };
    button("cmdNew", "&New...", &frmPSSelectAction::cmdNew_Click).SetDefault(true);
    button("cmdModify", "&Modify...", &frmPSSelectAction::cmdModify_Click);
    button("cmdCopy", "Co&py...", &frmPSSelectAction::cmdCopy_Click);
    button("cmdDelete", "&Delete", &frmPSSelectAction::cmdDelete_Click);
    button("cmdGoToChart", "Go To &Chart", &frmPSSelectAction::cmdGoToChart_Click);
    button("cmdGoToTable", "Go To &Table", &frmPSSelectAction::cmdGoToTable_Click);
}

void frmPSSelectAction::LoadPage() {
    auto& grid = grdCharts();
    grid.SetTextMatrix(0, colName, "Chart Name");
    grid.SetTextMatrix(0, colType, "Type");
    grid.SetTextMatrix(0, colChartSheet, "Chart Worksheet");
    grid.SetTextMatrix(0, colTableSheet, "Table Worksheet");
    FillChartGrid();
    SelectCurrentChart();
    UpdateButtons();
}

// ---------------------------------------------------------------- the list

void frmPSSelectAction::FillChartGrid() {
    auto& grid = grdCharts();
    auto& cf = *c.common;
    forms::ScopedFlag busy(bFilling_);
    grid.SetRows(1);
    for (auto& oDoc : Obj(c.colCharts)) {
        auto oChart = Obj(oDoc).selectSingleNode("chart");
        AddChartRow(cf.GetAttributeText(oChart, "id"), cf.GetAttributeText(oChart, "name"),
                    cf.GetAttributeText(oChart, "type"), cf.GetAttributeText(oChart, "chart-worksheet"),
                    cf.GetAttributeText(oChart, "table-worksheet"));
    }
    if (grid.Rows() > 1) {
        grid.Select(1, colName);
        grid.SetSort(forms::Grid::flexSortStringNoCaseAscending);
    }
    // The list opens with nothing selected.
    std::vector<long> aSelected;
    for (long i = 0, n = grid.SelectedRows(); i < n; ++i) aSelected.push_back(grid.SelectedRow(i));
    for (long lRow : aSelected) grid.SetIsSelected(lRow, false);

    double dWidth = grid.ClientWidth();
    grid.SetColWidth(colName, std::round(0.4 * dWidth));
    for (long col : {colType, colChartSheet, colTableSheet}) grid.SetColWidth(col, std::round(0.2 * dWidth));
}

void frmPSSelectAction::AddChartRow(const std::string& sChartID, const std::string& sName, const std::string& sType,
                                    const std::string& sChartSheet, const std::string& sTableSheet) {
    auto& grid = grdCharts();
    long lRow = grid.Rows();
    grid.SetRows(lRow + 1);
    grid.SetRowData(lRow, sChartID);
    grid.SetTextMatrix(lRow, colName, sName);
    grid.SetTextMatrix(lRow, colType, sType);
    grid.SetTextMatrix(lRow, colChartSheet, sChartSheet);
    grid.SetTextMatrix(lRow, colTableSheet, sTableSheet);
}

void frmPSSelectAction::SelectCurrentChart() {
    if (c.sChartID.empty()) return;
    auto& grid = grdCharts();
    bFilling_ = true;
    for (long lRow = 1; lRow < grid.Rows(); ++lRow)
        if (host::CStr(grid.RowData(lRow)) == c.sChartID) grid.SetIsSelected(lRow, true);
    bFilling_ = false;
}

void frmPSSelectAction::grdCharts_SelChange() {
    if (bFilling_) return;
    auto& grid = grdCharts();
    c.sChartID = grid.SelectedRows() == 1 ? host::CStr(grid.RowData(grid.SelectedRow(0))) : std::string{};
    UpdateButtons();
}

void frmPSSelectAction::UpdateButtons() {
    auto& grid = grdCharts();
    auto& cf = *c.common;
    long n = grid.SelectedRows();
    bool bTableThere = false, bChartReachable = false, bTableReachable = false;
    if (n == 1) {
        long lRow = grid.SelectedRow(0);
        const std::string& sChartSheet = grid.TextMatrix(lRow, colChartSheet);
        const std::string& sTableSheet = grid.TextMatrix(lRow, colTableSheet);
        bTableThere = cf.SheetExists(sTableSheet);
        // A hidden sheet can't be shown; a very hidden one passes, as it always has.
        bChartReachable = cf.SheetIsVisible(sChartSheet);
        bTableReachable = cf.SheetIsVisible(sTableSheet) && sTableSheet != sDeletedTableSheet;
    }
    Get("cmdModify").SetEnabled(bTableThere);
    Get("cmdCopy").SetEnabled(bTableThere);
    Get("cmdDelete").SetEnabled(n >= 1);
    Get("cmdGoToChart").SetEnabled(bChartReachable);
    Get("cmdGoToTable").SetEnabled(bTableReachable);
    Get("cmdNew").SetEnabled(true);
}

void frmPSSelectAction::grdCharts_DblClick() {
    auto& grid = grdCharts();
    if (grid.SelectedRows() != 1) return;
    if (!c.common->SheetExists(grid.TextMatrix(grid.SelectedRow(0), colTableSheet))) return;
    cmdModify_Click();
}

// ---------------------------------------------------------------- the actions

void frmPSSelectAction::cmdNew_Click() {
    c.lMethodType = mtNew;
    c.functions->CreateChartDoc();
    c.controller->PSJumpToStep(6, PageCode(), this);
}

void frmPSSelectAction::TakeSelectedChart() {
    auto oSource = Obj(c.colCharts).Item(c.sChartID);
    // The wizard edits a private copy; colCharts keeps the old document until the last page.
    c.oChartDoc = c.common->NewXMLDocument();
    c.oChartDoc->loadXML(Obj(oSource).xml());
    auto oChart = c.oChartDoc->selectSingleNode("chart");
    c.sTableID = c.common->GetAttributeText(oChart, "table-id");
    c.sChartType = c.common->GetAttributeText(oChart, "type");
}

void frmPSSelectAction::cmdModify_Click() {
    try {
        c.lMethodType = mtModify;
        TakeSelectedChart();
        c.controller->PSJumpToStep(6, PageCode(), this);
    } catch (const std::exception&) {
        c.common->ReportError("frmPSSelectAction.cmdModify_Click");
    }
}

void frmPSSelectAction::cmdCopy_Click() {
    try {
        auto& cf = *c.common;
        c.lMethodType = mtCopy;
        TakeSelectedChart();
        auto oChart = c.oChartDoc->selectSingleNode("chart");
        std::string sOldName = cf.GetAttributeText(oChart, "name");
        c.sChartID = c.functions->NextChartID();

        std::string sCounter, sNewName;
        for (long n = 0;;) {
            sNewName = cf.ReplaceTokens("Copy /TKN/of ", {sCounter}) + sOldName;
            bool bTaken = false;
            for (auto& oDoc : Obj(c.colCharts))
                if (host::UCase(cf.GetAttributeText(Obj(oDoc).selectSingleNode("chart"), "name")) ==
                    host::UCase(sNewName)) {
                    bTaken = true;
                    break;
                }
            if (!bTaken) break;
            ++n;
            sCounter = "(" + std::to_string(n) + ") ";
        }
        oChart.setAttribute("id", c.sChartID);
        oChart.setAttribute("name", sNewName);
        c.controller->PSJumpToStep(6, PageCode(), this);
    } catch (const std::exception&) {
        c.common->ReportError("frmPSSelectAction.cmdCopy_Click");
    }
}

void frmPSSelectAction::cmdDelete_Click() {
    try {
        auto& grid = grdCharts();
        c.lMethodType = mtDelete;
        const char* sQuestion = grid.SelectedRows() > 1
                                    ? "Are you sure you want to delete these charts?\r\n\r\nClick 'OK' to delete or "
                                      "'Cancel' to abort."
                                    : "Are you sure you want to delete this chart?\r\n\r\nClick 'OK' to delete or "
                                      "'Cancel' to abort.";
        if (c.common->AskOkCancel(sQuestion) == forms::vbCancel) return;

        std::vector<std::string> aIDs;
        for (long i = 0, n = grid.SelectedRows(); i < n; ++i) aIDs.push_back(host::CStr(grid.RowData(grid.SelectedRow(i))));
        auto oSheets = Obj(c.oWorkbook).Worksheets();
        for (const auto& sID : aIDs) {
            for (long s = 1, nSheets = oSheets->Count(); s <= nSheets; ++s) {
                // The chart and its comment box; every match on every sheet goes.
                auto oShapes = oSheets->Item(s)->Shapes();
                std::vector<host::Ref<host::Shape>> aDoomed;
                for (long i = 1, nShapes = oShapes->Count(); i <= nShapes; ++i) {
                    auto oShape = oShapes->Item(i);
                    long lType = oShape->Type();
                    if (oShape->AlternativeText() == sID && (lType == host::msoTextBox || lType == host::msoChart))
                        aDoomed.push_back(oShape);
                }
                for (auto& oShape : aDoomed) oShape->Delete();
            }
        }
        // Definitions whose shapes have gone leave the sheet when the charts are read again.
        c.colCharts = nullptr;
        c.controller->PSJumpToStep(1, PageCode(), this);
    } catch (const std::exception&) {
        c.common->ReportError("frmPSSelectAction.cmdDelete_Click");
    }
}

void frmPSSelectAction::GoToSheet(long lColumn) {
    auto& grid = grdCharts();
    if (grid.SelectedRows() != 1) return;
    const std::string& sSheet = grid.TextMatrix(grid.SelectedRow(0), lColumn);
    auto oSheets = Obj(c.oWorkbook).Worksheets();
    for (long s = 1, n = oSheets->Count(); s <= n; ++s)
        if (auto oSheet = oSheets->Item(s); oSheet->Name() == sSheet) oSheet->Activate();
}

void frmPSSelectAction::cmdGoToChart_Click() { GoToSheet(colChartSheet); }

void frmPSSelectAction::cmdGoToTable_Click() { GoToSheet(colTableSheet); }

void frmPSSelectAction::cmdCancel_Click() {
    try {
        Unload();
    } catch (const std::exception&) {
        c.common->ShowRuntimeError(CurrentError());
    }
}

}  // namespace ps
