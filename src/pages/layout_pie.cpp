#include "pages/layout_pie.h"

#include "common/common_functions.h"

namespace ps {

namespace {
const char* kSliceRepresents = "Please select a 'Slice Represents' entry";
const char* kSliceSize = "Please select a 'Slice Size' entry";
const char* kFormatRefused = "The requested number format is not supported by Excel";
const std::vector<std::string> kPictures = {"imgPieBasic", "imgPie3DBasic", "imgPieExplode", "imgPie3DExplode"};
}  // namespace

frmPSLayoutPie::frmPSLayoutPie(Component& c) : PSLayoutPage(c, "frmPSLayoutPie", PageCaption("Chart Layout"), pcLayout) {}

void frmPSLayoutPie::DesignPage() {
    auto* f1 = &AddFrame("Frame1", "1. Chart Title");
    txtTitle = &AddTitleBox(f1);

    auto* f4 = &AddFrame("Frame4", "2. Slice Size");
    cboValues = &AddComboBox("cboValues", f4, forms::ComboBox::vbComboDropdownList);

    auto* f2 = &AddFrame("Frame2", "3. A Slice Represents");
    lstCategories = &AddListBox("lstCategories", f2, forms::ListBox::vbMultiSelectNone);
    AddImage("imgLegend", f2).SetVisible(true);

    NextColumn();
    // The number format stays on whichever label option is chosen.
    auto* f5 = &AddFrame("Frame5", "4. Slice Labels");
    optDataLabels[0] = &AddOption("optDataLabels", 0, f5, "Values");
    optDataLabels[1] = &AddOption("optDataLabels", 1, f5, "Percentages");
    optDataLabels[2] = &AddOption("optDataLabels", 2, f5, "Neither");
    cboNumberMask = &AddNumberFormatRow(f5, "lblData", "cboNumberMask", "lblExample");

    auto* f6 = &AddFrame("Frame6", "5. Chart Style");
    chk3D = &AddCheckBox("chk3D", f6, "3-D");
    chkExploded = &AddCheckBox("chkExploded", f6, "Exploded Pie");

    auto* f7 = &AddFrame("Frame7", "6. Chart Comments");
    txtComment = &AddCommentBox(f7);

    for (auto& sName : kPictures) AddImage(sName);
    HighlightOffOnButtons(false);

    optDataLabels[2]->SetValue(true);
    OnClick(*chk3D, [this] { ShowChartPicture(); });
    OnClick(*chkExploded, [this] { ShowChartPicture(); });
}

void frmPSLayoutPie::LoadPage() {
    LoadColumnNames();
    FillList(*lstCategories, colLabelColumns, true);
    FillList(*cboValues, colNumberColumns, true);
    FillNumberFormats();
    RestoreChartSelections();
    ShowChartPicture();
}

void frmPSLayoutPie::ShowChartPicture() {
    long lCode = (chk3D->Value() == forms::CheckBox::vbChecked ? 1 : 0) +
                 (chkExploded->Value() == forms::CheckBox::vbChecked ? 2 : 0);
    ShowOnly(kPictures, kPictures[static_cast<size_t>(lCode)]);
}

void frmPSLayoutPie::ValidSelections(bool& bResult) {
    bResult = false;
    ShowNumberExample();
    if (lstCategories->ListIndex() < 0) {
        DisplayMessage(kSliceRepresents);
        return;
    }
    if (cboValues->ListIndex() == -1) {
        DisplayMessage(kSliceSize);
        return;
    }
    if (NumberFormatRefused()) {
        DisplayMessage(kFormatRefused);
        return;
    }
    UpdateChartMetadata();
    bResult = true;
}

void frmPSLayoutPie::FocusForMessage(const std::string& sMessage) {
    if (sMessage == kSliceRepresents) lstCategories->SetFocus();
    else if (sMessage == kSliceSize) cboValues->SetFocus();
    else if (sMessage == kFormatRefused) cboNumberMask->SetFocus();
}

void frmPSLayoutPie::RestoreChartSelections() {
    Named("frmPSLayoutPie.RestoreChartSelections", [&] {
        auto oChart = ChartElement();
        txtTitle->SetText(Attr(oChart, "title"));
        cboNumberMask->SetText(Attr(oChart, "number-format"));
        ShowNumberExample();
        // A column that has gone leaves the first entry, chosen at load.
        for (auto& sName : ColumnNames(oChart, "categories")) SelectMatching(*lstCategories, sName);
        for (auto& sName : ColumnNames(oChart, "values")) SelectMatching(*cboValues, sName);
        for (auto oLabel : oChart.selectNodes("data-labels/data-label")) {
            std::string sShow = Attr(oLabel, "show");
            if (sShow == "values") optDataLabels[0]->SetValue(true);
            else if (sShow == "percentages") optDataLabels[1]->SetValue(true);
        }
        for (auto oAttribute : oChart.selectNodes("dynamic-attributes/attribute")) {
            std::string sSetting = Attr(oAttribute, "setting");
            if (sSetting == "3D") chk3D->SetValue(forms::CheckBox::vbChecked);
            else if (sSetting == "exploded") chkExploded->SetValue(forms::CheckBox::vbChecked);
        }
        txtComment->SetText(RestoredComment(oChart));
    });
}

void frmPSLayoutPie::UpdateChartMetadata() {
    // This page's report has always named the procedure without the point.
    Named("frmPSLayoutPieUpdateChartMetadata", [&] {
        std::string sCategory = lstCategories->Text();
        std::string sValueColumn = cboValues->ListIndex() >= 0 ? cboValues->Text() : "";

        auto oChart = ChartElement();
        RemoveChildren(oChart, {"categories", "series", "values", "axes", "data-labels", "dynamic-attributes", "comment"});
        oChart.setAttribute("title", host::Trim(txtTitle->Text()));
        oChart.setAttribute("number-format", host::Trim(cboNumberMask->Text()));

        auto oCategories = AppendElement(oChart, "categories");
        oCategories.setAttribute("headings-in", "rows");
        if (!sCategory.empty()) AppendColumn(oCategories, sCategory);
        AppendElement(oChart, "series").setAttribute("headings-in", "none");
        if (!sValueColumn.empty()) AppendColumn(AppendElement(oChart, "values"), sValueColumn);

        auto oLabels = AppendElement(oChart, "data-labels");
        if (optDataLabels[0]->Value()) AppendElement(oLabels, "data-label").setAttribute("show", "values");
        else if (optDataLabels[1]->Value()) AppendElement(oLabels, "data-label").setAttribute("show", "percentages");

        auto oDynamic = AppendElement(oChart, "dynamic-attributes");
        if (chk3D->Value() == forms::CheckBox::vbChecked) AppendElement(oDynamic, "attribute").setAttribute("setting", "3D");
        if (chkExploded->Value() == forms::CheckBox::vbChecked)
            AppendElement(oDynamic, "attribute").setAttribute("setting", "exploded");

        AppendComment(oChart, host::Trim(txtComment->Text()));
    });
}

}  // namespace ps
