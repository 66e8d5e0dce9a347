#include "pages/layout_strbuck.h"

#include <cmath>

#include "common/common_functions.h"
#include "metadata/ps_functions.h"

namespace ps {

namespace {
const char* kBucketTables = "Please select a 'Strategic Buckets' entry";
const char* kBlockRepresents = "Please select a 'Block Represents' entry";
const char* kFormatRefused = "The requested number format is not supported by Excel";

// A number in the format "#,###": whole, with thousands separated, and nothing for zero.
std::string ThousandsText(double dValue) {
    long long n = std::llround(dValue);
    if (n == 0) return {};
    std::string sDigits = std::to_string(n < 0 ? -n : n), sText;
    for (size_t i = 0; i < sDigits.size(); ++i) {
        if (i > 0 && (sDigits.size() - i) % 3 == 0) sText += ',';
        sText += sDigits[i];
    }
    return n < 0 ? "-" + sText : sText;
}
}  // namespace

frmPSLayoutStrBuck::frmPSLayoutStrBuck(Component& c)
    : PSLayoutPage(c, "frmPSLayoutStrBuck", PageCaption("Chart Layout"), pcLayout) {}

void frmPSLayoutStrBuck::DesignPage() {
    auto* f1 = &AddFrame("Frame1", "1. Chart Title");
    txtTitle = &AddTitleBox(f1);

    auto* f2 = &AddFrame("Frame2", "2. Strategic Buckets");
    cboBucketTables = &AddComboBox("cboBucketTables", f2, forms::ComboBox::vbComboDropdownList);
    grdBuckets = &Add<forms::Grid>("grdBuckets", f2);
    grdBuckets->Left = 8;
    grdBuckets->Top = cboBucketTables->Top + cboBucketTables->Height + 4;
    grdBuckets->Width = cboBucketTables->Width;
    grdBuckets->Height = 80;
    f2->Height = grdBuckets->Top + grdBuckets->Height + 8;
    grdBuckets->SelectionMode = forms::Grid::flexSelectionFree;
    grdBuckets->GotFocus = [this] { Handle([&] { StyleFormControls(*this, *grdBuckets); }); };

    auto* f3 = &AddFrame("Frame3", "3. A Block Represents");
    cboCategories = &AddComboBox("cboCategories", f3, forms::ComboBox::vbComboDropdownList);

    auto* f4 = &AddFrame("Frame4", "4. Block Color");
    cboSeries = &AddComboBox("cboSeries", f4, forms::ComboBox::vbComboDropdownList);
    AddImage("imgLegend", f4);
    AddImage("imgLegendDim", f4).SetVisible(true);

    NextColumn();
    auto* f6 = &AddFrame("Frame6", "5. Arrange Blocks by");
    cboBlockSequence = &AddComboBox("cboBlockSequence", f6, forms::ComboBox::vbComboDropdownList);
    optBlockSequence0 = &AddOption("optBlockSequence", 0, f6, "Ascending");
    optBlockSequence1 = &AddOption("optBlockSequence", 1, f6, "Descending");

    auto* f5 = &AddFrame("Frame5", "6. Block and Axis Labels");
    chkShowNames = &AddCheckBox("chkShowNames", f5, "Show Names on Blocks");
    cboDataLabelMask = &AddNumberFormatRow(f5, "lblNumberMask", "cboDataLabelMask", "lblNumberExample");
    AddAxisBoxes(f5);

    auto* f7 = &AddFrame("Frame7", "7. Chart Comments");
    txtComment = &AddCommentBox(f7);

    AddImage("imgStrBuckBasic").SetVisible(true);
    HighlightOffOnButtons(true);

    optBlockSequence0->SetValue(true);

    // The axes are named after the bucket table.
    OnClick(*cboBucketTables, [this] {
        ShowBuckets();
        if (!bHAxisSticky) txtHAxis->SetText(sBucketNameColumn);
        if (!bVAxisSticky) txtVAxis->SetText(sBucketValueColumn);
    });
    OnClick(*cboSeries, [this] {
        bool bColoured = cboSeries->ListIndex() >= 1;
        Get("imgLegend").SetVisible(bColoured);
        Get("imgLegendDim").SetVisible(!bColoured);
    });
}

void frmPSLayoutStrBuck::LoadPage() {
    SizeBucketColumns();
    bHAxisSticky = false;
    bVAxisSticky = false;
    LoadColumnNames();
    colBucketTables = c.functions->GetBucketCandidates(
        Obj(Obj(c.colTables).Item(c.sTableID)).selectSingleNode("table"));
    FillBucketTables();
    FillList(*cboCategories, colLabelColumns, true);
    auto aColors = colLabelColumns;
    aColors.insert(aColors.begin(), "[all the same color]");
    FillList(*cboSeries, aColors, true);
    auto aSequence = colNumberColumns;
    aSequence.insert(aSequence.begin(), "[none]");
    FillList(*cboBlockSequence, aSequence, true);
    FillNumberFormats();
    RestoreChartSelections();
}

void frmPSLayoutStrBuck::SizeBucketColumns() {
    grdBuckets->SetColWidth(0, 0.6 * grdBuckets->ClientWidth());
    grdBuckets->SetColWidth(1, 0.4 * grdBuckets->ClientWidth());
    grdBuckets->SetColAlignment(1, forms::Grid::flexAlignRightCenter);
}

void frmPSLayoutStrBuck::FillBucketTables() {
    cboBucketTables->Clear();
    dicBucketIndex.RemoveAll();
    for (auto& oDoc : Obj(colBucketTables)) {
        auto oTable = Obj(oDoc).selectSingleNode("table");
        cboBucketTables->AddItem(Attr(oTable, "name"));
        dicBucketIndex.Add(Attr(oTable, "id"), cboBucketTables->ListCount() - 1);
    }
    // Without a candidate this fails, and the load reports it.
    cboBucketTables->SetListIndex(0);
}

void frmPSLayoutStrBuck::ShowBuckets() {
    auto oDoc = Obj(colBucketTables).Item(cboBucketTables->ListIndex() + 1);
    auto oTable = Obj(oDoc).selectSingleNode("table");
    sBucketTableID = Attr(oTable, "id");
    sBucketNameColumn = Attr(oTable, "bucket-name-column");
    sBucketValueColumn = Attr(oTable, "bucket-value-column");
    auto dicBuckets = c.functions->GetStrategicBuckets(oDoc);

    grdBuckets->SetRows(Obj(dicBuckets).Count() + 1);
    grdBuckets->SetCols(2);
    grdBuckets->SetTextMatrix(0, 0, sBucketNameColumn);
    grdBuckets->SetTextMatrix(0, 1, sBucketValueColumn);
    long lRow = 1;
    for (auto& [sKey, dValue] : dicBuckets->Entries()) {
        grdBuckets->SetTextMatrix(lRow, 0, sKey);
        grdBuckets->SetTextMatrix(lRow, 1, ThousandsText(dValue));
        ++lRow;
    }
    SizeBucketColumns();
}

void frmPSLayoutStrBuck::ValidSelections(bool& bResult) {
    bResult = false;
    ShowNumberExample();
    if (cboBucketTables->ListIndex() == -1) {
        DisplayMessage(kBucketTables);
        return;
    }
    if (cboCategories->ListIndex() == -1) {
        DisplayMessage(kBlockRepresents);
        return;
    }
    if (NumberFormatRefused()) {
        DisplayMessage(kFormatRefused);
        return;
    }
    UpdateChartMetadata();
    bResult = true;
}

void frmPSLayoutStrBuck::FocusForMessage(const std::string& sMessage) {
    if (sMessage == kBucketTables) cboBucketTables->SetFocus();
    else if (sMessage == kBlockRepresents) cboCategories->SetFocus();
    else if (sMessage == kFormatRefused) cboDataLabelMask->SetFocus();
}

void frmPSLayoutStrBuck::RestoreChartSelections() {
    Named("frmPSLayoutStrBuck.RestoreChartSelections", [&] {
        auto oChart = ChartElement();
        std::string sTableID = Attr(oChart, "strategic-bucket-table-id");
        txtTitle->SetText(Attr(oChart, "title"));
        cboDataLabelMask->SetText(Attr(oChart, "number-format"));
        ShowNumberExample();
        // A bucket table that no longer qualifies leaves the first one chosen.
        if (dicBucketIndex.Exists(sTableID)) cboBucketTables->SetListIndex(dicBucketIndex.Item(sTableID));
        for (auto& sName : ColumnNames(oChart, "categories")) SelectMatching(*cboCategories, sName);
        for (auto& sName : ColumnNames(oChart, "series")) SelectMatching(*cboSeries, sName);
        if (auto oSort = oChart.selectSingleNode("sort-order")) {
            (Attr(oSort, "sort") == "descending" ? optBlockSequence1 : optBlockSequence0)->SetValue(true);
            for (auto& sName : ColumnNames(oChart, "sort-order")) SelectMatching(*cboBlockSequence, sName);
        }
        for (auto oAxis : oChart.selectNodes("axes/axis")) {
            std::string sType = Attr(oAxis, "type");
            bool bSticky = Attr(oAxis, "sticky") == "yes";
            if (sType == "label") {
                txtHAxis->SetText(Attr(oAxis, "label"));
                bHAxisSticky = bSticky;
            } else if (sType == "value") {
                txtVAxis->SetText(Attr(oAxis, "label"));
                bVAxisSticky = bSticky;
            }
        }
        if (auto oLabels = oChart.selectSingleNode("data-labels"); oLabels && Attr(oLabels, "manual-labels") == "yes")
            chkShowNames->SetValue(forms::CheckBox::vbChecked);
        txtComment->SetText(RestoredComment(oChart));
    });
}

void frmPSLayoutStrBuck::UpdateChartMetadata() {
    Named("frmPSLayoutStrBuck.UpdateChartMetadata", [&] {
        std::string sHAxis = host::Trim(txtHAxis->Text());
        std::string sVAxis = host::Trim(txtVAxis->Text());

        auto oChart = ChartElement();
        RemoveChildren(oChart, {"categories", "series", "values", "sort-order", "axes", "data-labels",
                                "dynamic-attributes", "comment"});
        oChart.setAttribute("title", host::Trim(txtTitle->Text()));
        oChart.setAttribute("number-format", host::Trim(cboDataLabelMask->Text()));
        oChart.setAttribute("strategic-bucket-table-id", sBucketTableID);

        auto oCategories = AppendElement(oChart, "categories");
        oCategories.setAttribute("headings-in", "rows");
        if (cboCategories->ListIndex() >= 0) AppendColumn(oCategories, cboCategories->Text());
        auto oSeries = AppendElement(oChart, "series");
        if (cboSeries->ListIndex() > 0) {
            oSeries.setAttribute("headings-in", "rows");
            AppendColumn(oSeries, cboSeries->Text());
        } else {
            oSeries.setAttribute("headings-in", "none");
        }
        // The values are the bucket table's, not a column of the source table.
        AppendColumn(AppendElement(oChart, "values"), sBucketValueColumn);
        if (cboBlockSequence->ListIndex() > 0) {
            auto oSort = AppendElement(oChart, "sort-order");
            oSort.setAttribute("sort", optBlockSequence0->Value() ? "ascending" : "descending");
            AppendColumn(oSort, cboBlockSequence->Text());
        }
        auto oAxes = AppendElement(oChart, "axes");
        if (!sHAxis.empty()) AppendAxis(oAxes, "label", sHAxis, bHAxisSticky);
        if (!sVAxis.empty()) AppendAxis(oAxes, "value", sVAxis, bVAxisSticky);
        AppendElement(oChart, "data-labels")
            .setAttribute("manual-labels", chkShowNames->Value() == forms::CheckBox::vbChecked ? "yes" : "no");
        AppendElement(oChart, "dynamic-attributes");
        AppendComment(oChart, host::Trim(txtComment->Text()));
    });
}

}  // namespace ps
