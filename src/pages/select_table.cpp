#include "pages/select_table.h"

#include <vector>

#include "common/common_functions.h"
#include "controller/ps_controller.h"
#include "metadata/ps_functions.h"

namespace ps {

namespace {

// By option index; the pictures of the types in the same order.
const char* const aChartTypes[] = {"bar", "column", "area", "pie", "bubble", "strategic bucket"};
const char* const aTypeCaptions[] = {"Bar", "Column", "Area", "Pie", "Bubble", "Strategic Bucket"};
const char* const aTypePictures[] = {"imgBar", "imgColumn", "imgArea", "imgPie", "imgBubble", "imgStrBuck"};
constexpr int iTypeCount = 6;
constexpr int iStrategicBucket = 5;

const char* const sNoTable = "Please select the table on which the chart is based";
const char* const sNoType = "Please select a chart type";
const char* const sTableGone =
    "The table used by this chart no longer exists in this workbook. You must select a different table to continue.";
const char* const sTableInvalid =
    "Table '/TKN/' is not currently valid for this chart. You must select a different table to continue.";

int TypeIndex(const std::string& sChartType) {
    for (int i = 0; i < iTypeCount; ++i)
        if (sChartType == aChartTypes[i]) return i;
    return -1;
}

}  // namespace

frmPSSelectTable::frmPSSelectTable(Component& c)
    : PSWizardPage(c, "frmPSSelectTable", PageCaption("Source Table and Chart Type"), pcSelectTable) {}

forms::Grid& frmPSSelectTable::grdTables() const { return Get<forms::Grid>("grdTables"); }

void frmPSSelectTable::DesignPage() {
    auto& fraTableList = Add<forms::Frame>("fraTableList");
    fraTableList.SetCaption("Tables in this Workbook");
    fraTableList.Width = 200;
    fraTableList.Height = 220;
    auto& grid = Add<forms::Grid>("grdTables", &fraTableList);
    grid.Width = 180;
    grid.Height = 190;
    grid.SetCols(1);
    grid.FixedRows = 0;
    grid.SetRows(0);
    // Next acts on one table: one row at a time.
    grid.SelectionMode = forms::Grid::flexSelectionByRow;
    grid.Click = [this] { Handle([&] { UpdateChartTypes(); }); };
    grid.AfterSelChange = [this] {
        if (!bFilling_) Handle([&] { UpdateChartTypes(); });
    };
    grid.DblClick = [this] { Handle([&] { Get<forms::CommandButton>("cmdNext").SetValue(true); }); };

    auto& fraChartType = Add<forms::Frame>("fraChartType");
    fraChartType.SetCaption("Chart Type");
    fraChartType.Left = 210;
    fraChartType.Column = 1;
    fraChartType.Width = 290;
    fraChartType.Height = 220;
    for (int i = 0; i < iTypeCount; ++i) {
        auto& opt = Add<forms::OptionButton>("optType", &fraChartType, i);
        opt.SetCaption(aTypeCaptions[i]);
        opt.Click = [this, i] { Handle([&] { SetChartType(i); }); };
    }
    for (const char* sPicture : aTypePictures) {
        auto& img = Add<forms::Image>(sPicture, &fraChartType);
        img.Picture = sPicture;
        img.Width = 96;
        img.Height = 96;
        img.SetVisible(false);
    }
}

void frmPSSelectTable::LoadPage() {
    // The instance outlives its loads; what it holds belongs to one.
    bTableUsable_ = false;
    sTableName_.clear();
    // With no charts in the workbook this is the first page, and there is nothing to go back to.
    Get("cmdBack").SetEnabled(c.colCharts && c.colCharts->Count() > 0);
    PlacePictures();
    FillTableGrid();
    UpdateChartTypes();
    CheckTableStillValid();
}

void frmPSSelectTable::PlacePictures() {
    auto& frame = Get("fraChartType");
    auto& model = Get("imgArea");
    double dTop = (frame.Height - model.Height) / 2;
    // The sample stands to the right of the options.
    double dLeft = (frame.Width - model.Width) / 2 + 0.1 * frame.Width;
    for (const char* sPicture : aTypePictures) {
        auto& img = Get(sPicture);
        img.Top = dTop;
        img.Left = dLeft;
    }
}

// ---------------------------------------------------------------- the tables

void frmPSSelectTable::FillTableGrid() {
    auto& grid = grdTables();
    auto& cf = *c.common;
    forms::ScopedFlag busy(bFilling_);
    grid.SetRows(0);
    for (auto& oDoc : Obj(c.colTables)) {
        auto oTable = Obj(oDoc).selectSingleNode("table");
        AddTableRow(cf.GetAttributeText(oTable, "name"), cf.GetAttributeText(oTable, "id"));
    }
    if (grid.Rows() > 0) {
        grid.Select(0, 0);
        grid.SetSort(forms::Grid::flexSortGenericAscending);
    }
    std::vector<long> aSelected;
    for (long i = 0, n = grid.SelectedRows(); i < n; ++i) aSelected.push_back(grid.SelectedRow(i));
    for (long lRow : aSelected) grid.SetIsSelected(lRow, false);
    if (!c.sTableID.empty()) {
        for (long lRow = 0; lRow < grid.Rows(); ++lRow) {
            if (host::CStr(grid.RowData(lRow)) != c.sTableID) continue;
            grid.SetIsSelected(lRow, true);
            sTableName_ = grid.TextMatrix(lRow, 0);
        }
    }
}

void frmPSSelectTable::AddTableRow(const std::string& sName, const std::string& sTableID) {
    auto& grid = grdTables();
    long lRow = grid.Rows();
    grid.SetRows(lRow + 1);
    grid.SetRowData(lRow, sTableID);
    grid.SetTextMatrix(lRow, 0, sName);
}

// ---------------------------------------------------------------- the types

void frmPSSelectTable::UpdateChartTypes() {
    Handle([&] {
        auto& grid = grdTables();
        auto options = Group("optType");
        // A checked option outranks the variable.
        int iIndex = TypeIndex(c.sChartType);
        for (auto* ctl : options) {
            auto& opt = static_cast<forms::OptionButton&>(*ctl);
            if (opt.Value()) iIndex = opt.Index();
            opt.SetEnabled(false);
            opt.SetValue(false);
        }
        SetChartType(-1);
        if (grid.SelectedRows() == 1) c.sTableID = host::CStr(grid.RowData(grid.SelectedRow(0)));
        bTableUsable_ = false;
        // A table that has gone from the workbook offers nothing; the page says so where it checks.
        if (!c.sTableID.empty() && CommonFunctions::CollectionHasKey(c.sTableID, c.colTables)) {
            auto oTable = Obj(c.colTables->Item(c.sTableID)).selectSingleNode("table");
            auto& cf = *c.common;
            long lLabels = host::CLng(cf.GetAttributeText(oTable, "label-column-count"));
            long lNumbers = host::CLng(cf.GetAttributeText(oTable, "number-column-count"));
            if (lLabels >= 1 && lNumbers >= 1) {
                for (int i = 0; i < iStrategicBucket; ++i) options[static_cast<size_t>(i)]->SetEnabled(true);
                bTableUsable_ = true;
            }
            if (lLabels >= 2 && lNumbers >= 1) {
                auto colCandidates = c.functions->GetBucketCandidates(oTable);
                if (colCandidates && colCandidates->Count() >= 1)
                    options[static_cast<size_t>(iStrategicBucket)]->SetEnabled(true);
            }
        }
        // The chosen type stays as long as the table allows it; otherwise the user picks again.
        if (iIndex > -1 && options[static_cast<size_t>(iIndex)]->Enabled()) {
            static_cast<forms::OptionButton&>(*options[static_cast<size_t>(iIndex)]).SetValue(true);
            SetChartType(iIndex);
        }
    });
}

void frmPSSelectTable::SetChartType(int iIndex) {
    c.sChartType = iIndex >= 0 && iIndex < iTypeCount ? aChartTypes[iIndex] : "unknown";
    for (int i = 0; i < iTypeCount; ++i) Get(aTypePictures[i]).SetVisible(i == iIndex);
}

void frmPSSelectTable::CheckTableStillValid() {
    if (c.lMethodType != mtModify && c.lMethodType != mtCopy) return;
    auto& cf = *c.common;
    auto oChart = Obj(c.oChartDoc).selectSingleNode("chart");
    std::string sTableSheet = cf.GetAttributeText(oChart, "table-worksheet");
    std::string sCorrupted = cf.GetAttributeText(oChart, "table-corrupted");
    // The page isn't shown yet: the message waits for its activation.
    if (sTableSheet == sDeletedTableSheet) {
        DisplayMessage(sTableGone);
    } else if (sCorrupted == "yes" || !bTableUsable_) {
        DisplayMessage(cf.ReplaceTokens(sTableInvalid, {sTableName_}));
    }
}

// ---------------------------------------------------------------- validation and the definition

void frmPSSelectTable::ValidSelections(bool& bResult) {
    bResult = false;
    // A message about the table is on its way; it speaks first.
    if (!c.sPendingMessage.empty()) return;
    std::string sMessage;
    if (c.sTableID.empty()) sMessage = sNoTable;
    else if (c.sChartType == "unknown") sMessage = sNoType;
    if (!sMessage.empty()) {
        DisplayMessage(sMessage);
        return;
    }
    UpdateChartMetadata();
    bResult = true;
}

void frmPSSelectTable::UpdateChartMetadata() {
    try {
        // A run that came here with no charts at all has no document yet.
        if (!c.oChartDoc) c.functions->CreateChartDoc();
        auto oChart = Obj(c.oChartDoc).selectSingleNode("chart");
        oChart.setAttribute("type", c.sChartType);
        oChart.setAttribute("table-id", c.sTableID);
        oChart.setAttribute("table-corrupted", "no");
    } catch (const std::exception&) {
        c.common->ReportError("frmPSSelectTable.UpdateChartMetadata");
    }
}

void frmPSSelectTable::FocusForMessage(const std::string& sMessage) {
    // The message about an invalid table is compared with its token in place, so the message that
    // names a table moves no focus.
    if (sMessage == sNoTable || sMessage == sTableGone || sMessage == sTableInvalid) grdTables().SetFocus();
}

}  // namespace ps
