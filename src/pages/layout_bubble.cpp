#include "pages/layout_bubble.h"

#include "common/common_functions.h"

namespace ps {

namespace {
const char* kYValues = "Please select a 'Vertical (Y-axis)' entry";
const char* kXValues = "Please select a 'Horizontal (X-axis)' entry";
const char* kBubbleRepresents = "Please select a 'Bubble Represents' entry";
const std::vector<std::string> kPictures = {"imgBubbleBasic", "imgBubble3DBasic", "imgBubbleQuad", "imgBubble3DQuad"};
constexpr long kChecked = forms::CheckBox::vbChecked;
}  // namespace

frmPSLayoutBubble::frmPSLayoutBubble(Component& c)
    : PSLayoutPage(c, "frmPSLayoutBubble", PageCaption("Chart Layout"), pcLayout) {}

void frmPSLayoutBubble::DesignPage() {
    auto* f1 = &AddFrame("Frame1", "1. Chart Title");
    txtTitle = &AddTitleBox(f1);
    auto* f2 = &AddFrame("Frame2", "2. Vertical (Y-axis)");
    lstYValues = &AddListBox("lstYValues", f2, forms::ListBox::vbMultiSelectNone);
    auto* f4 = &AddFrame("Frame4", "3. Horizontal (X-axis)");
    cboXValues = &AddComboBox("cboXValues", f4, forms::ComboBox::vbComboDropdownList);
    auto* f3 = &AddFrame("Frame3", "4. A Bubble Represents");
    cboCategories = &AddComboBox("cboCategories", f3, forms::ComboBox::vbComboDropdownList);
    auto* f9 = &AddFrame("Frame9", "5. Bubble Size");
    cboSizes = &AddComboBox("cboSizes", f9, forms::ComboBox::vbComboDropdownList);
    chkShowZeroBubbles = &AddCheckBox("chkShowZeroBubbles", f9, "Show zero and negative sizes");
    NextColumn();
    auto* f8 = &AddFrame("Frame8", "6. Bubble Color");
    cboSeries = &AddComboBox("cboSeries", f8, forms::ComboBox::vbComboDropdownList);
    AddImage("imgLegend", f8);
    AddImage("imgLegendDim", f8).SetVisible(true);
    auto* f5 = &AddFrame("Frame5", "7. Chart Labels");
    AddAxisBoxes(f5);
    auto* f6 = &AddFrame("Frame6", "8. Chart Style");
    chk3D = &AddCheckBox("chk3D", f6, "3-D");
    chkQuadrants = &AddCheckBox("chkQuadrants", f6, "Arrange chart into quadrants");
    chkScaleXAxis = &AddCheckBox("chkScaleXAxis", f6, "Recalculate X-axis ");
    chkScaleYAxis = &AddCheckBox("chkScaleYAxis", f6, "Recalculate Y-axis");
    auto* f7 = &AddFrame("Frame7", "9. Chart Comments");
    txtComment = &AddCommentBox(f7);
    for (auto& sName : kPictures) AddImage(sName);
    HighlightOffOnButtons(false);

    chkShowZeroBubbles->SetEnabled(false);
    chkScaleXAxis->SetEnabled(false);
    chkScaleYAxis->SetEnabled(false);

    OnClick(*lstYValues, [this] {
        if (!bVAxisSticky) txtVAxis->SetText(lstYValues->Text());
    });
    OnClick(*cboXValues, [this] {
        if (cboXValues->ListIndex() >= 0 && !bHAxisSticky) txtHAxis->SetText(cboXValues->Text());
    });
    OnClick(*cboSeries, [this] {
        bool bColoured = cboSeries->ListIndex() >= 1;
        Get("imgLegend").SetVisible(bColoured);
        Get("imgLegendDim").SetVisible(!bColoured);
    });
    // With equal sizes there is nothing zero or negative to show.
    OnClick(*cboSizes, [this] {
        if (cboSizes->ListIndex() > 0) {
            chkShowZeroBubbles->SetEnabled(true);
        } else {
            chkShowZeroBubbles->SetValue(forms::CheckBox::vbUnchecked);
            chkShowZeroBubbles->SetEnabled(false);
        }
    });
    OnClick(*chk3D, [this] { ShowChartPicture(); });
    // Recalculating an axis is a matter of quadrants only.
    OnClick(*chkQuadrants, [this] {
        bool bOn = chkQuadrants->Value() == kChecked;
        for (auto* chk : {chkScaleXAxis, chkScaleYAxis}) {
            if (!bOn) chk->SetValue(forms::CheckBox::vbUnchecked);
            chk->SetEnabled(bOn);
        }
        ShowChartPicture();
    });
}

void frmPSLayoutBubble::LoadPage() {
    bHAxisSticky = false;
    bVAxisSticky = false;
    LoadColumnNames();
    FillList(*cboCategories, colLabelColumns, true);
    auto aColors = colLabelColumns;
    aColors.insert(aColors.begin(), "[all the same color]");
    FillList(*cboSeries, aColors, true);
    FillList(*lstYValues, colNumberColumns, true);
    auto aSizes = colNumberColumns;
    aSizes.insert(aSizes.begin(), "[all the same size]");
    FillList(*cboSizes, aSizes, true);
    FillList(*cboXValues, colNumberColumns, true);
    RestoreChartSelections();
    ShowChartPicture();
}

void frmPSLayoutBubble::ShowChartPicture() {
    long lCode = (chk3D->Value() == kChecked ? 1 : 0) + (chkQuadrants->Value() == kChecked ? 2 : 0);
    ShowOnly(kPictures, kPictures[static_cast<size_t>(lCode)]);
}

void frmPSLayoutBubble::ValidSelections(bool& bResult) {
    bResult = false;
    // x and y may be the same column.
    if (lstYValues->ListIndex() < 0) {
        DisplayMessage(kYValues);
        return;
    }
    if (cboXValues->ListIndex() == -1) {
        DisplayMessage(kXValues);
        return;
    }
    if (cboCategories->ListIndex() == -1) {
        DisplayMessage(kBubbleRepresents);
        return;
    }
    UpdateChartMetadata();
    bResult = true;
}

void frmPSLayoutBubble::FocusForMessage(const std::string& sMessage) {
    if (sMessage == kYValues) lstYValues->SetFocus();
    else if (sMessage == kXValues) cboXValues->SetFocus();
    else if (sMessage == kBubbleRepresents) cboCategories->SetFocus();
}

void frmPSLayoutBubble::RestoreChartSelections() {
    Named("frmPSLayoutBubble.RestoreChartSelections", [&] {
        auto oChart = ChartElement();
        txtTitle->SetText(Attr(oChart, "title"));
        for (auto& sName : ColumnNames(oChart, "categories")) SelectMatching(*cboCategories, sName);
        for (auto& sName : ColumnNames(oChart, "series")) SelectMatching(*cboSeries, sName);
        for (auto& sName : ColumnNames(oChart, "values")) SelectMatching(*lstYValues, sName);
        for (auto& sName : ColumnNames(oChart, "x-values")) SelectMatching(*cboXValues, sName);
        for (auto& sName : ColumnNames(oChart, "bubble-sizes")) SelectMatching(*cboSizes, sName);
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
        for (auto oAttribute : oChart.selectNodes("dynamic-attributes/attribute"))
            if (Attr(oAttribute, "setting") == "3D") chk3D->SetValue(kChecked);
        // Boxes that are off take their value too: the saved order need not follow the enabling.
        for (auto oAttribute : oChart.selectNodes("static-attributes/attribute")) {
            std::string sSetting = Attr(oAttribute, "setting");
            if (sSetting == "quadrants") chkQuadrants->SetValue(kChecked);
            else if (sSetting == "autoscale-x") chkScaleXAxis->SetValue(kChecked);
            else if (sSetting == "autoscale-y") chkScaleYAxis->SetValue(kChecked);
            else if (sSetting == "show-zero-bubbles") chkShowZeroBubbles->SetValue(kChecked);
        }
        txtComment->SetText(RestoredComment(oChart));
    });
}

void frmPSLayoutBubble::UpdateChartMetadata() {
    Named("frmPSLayoutBubble.UpdateChartMetadata", [&] {
        std::string sHAxis = host::Trim(txtHAxis->Text());
        std::string sVAxis = host::Trim(txtVAxis->Text());

        auto oChart = ChartElement();
        RemoveChildren(oChart, {"categories", "series", "values", "x-values", "bubble-sizes", "axes", "data-labels",
                                "dynamic-attributes", "static-attributes", "comment"});
        oChart.setAttribute("title", host::Trim(txtTitle->Text()));

        auto oCategories = AppendElement(oChart, "categories");
        oCategories.setAttribute("headings-in", "rows");
        if (cboCategories->ListIndex() >= 0) AppendColumn(oCategories, cboCategories->Text());
        // Entry 0 is "[all the same color]": no colour column, whatever its text.
        auto oSeries = AppendElement(oChart, "series");
        if (cboSeries->ListIndex() >= 1) {
            oSeries.setAttribute("headings-in", "rows");
            AppendColumn(oSeries, cboSeries->Text());
        } else {
            oSeries.setAttribute("headings-in", "none");
        }
        if (!lstYValues->Text().empty()) AppendColumn(AppendElement(oChart, "values"), lstYValues->Text());
        if (!cboXValues->Text().empty()) AppendColumn(AppendElement(oChart, "x-values"), cboXValues->Text());
        if (cboSizes->ListIndex() >= 1) AppendColumn(AppendElement(oChart, "bubble-sizes"), cboSizes->Text());

        auto oAxes = AppendElement(oChart, "axes");
        if (!sHAxis.empty()) AppendAxis(oAxes, "label", sHAxis, bHAxisSticky);
        if (!sVAxis.empty()) AppendAxis(oAxes, "value", sVAxis, bVAxisSticky);

        auto oDynamic = AppendElement(oChart, "dynamic-attributes");
        if (chk3D->Value() == kChecked) AppendElement(oDynamic, "attribute").setAttribute("setting", "3D");
        auto oStatic = AppendElement(oChart, "static-attributes");
        for (auto [chk, sSetting] : {std::pair{chkShowZeroBubbles, "show-zero-bubbles"}, std::pair{chkQuadrants, "quadrants"},
                                     std::pair{chkScaleXAxis, "autoscale-x"}, std::pair{chkScaleYAxis, "autoscale-y"}})
            if (chk->Value() == kChecked) AppendElement(oStatic, "attribute").setAttribute("setting", sSetting);

        AppendComment(oChart, host::Trim(txtComment->Text()));
    });
}

}  // namespace ps
