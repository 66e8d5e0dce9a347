#include "pages/layout_abc.h"

#include <map>

#include "common/common_functions.h"

namespace ps {

namespace {
constexpr const char* kTypes[] = {"Area", "Bar", "Column"};
// The sample of each picture code (1 3-D, 2 stacked, 4 to 100 %, 8 coloured); other codes have none.
const std::map<long, std::string> kSamples = {{0, "Basic"},    {1, "3DBasic"},  {8, "Cluster"},   {9, "3DCluster"},
                                              {10, "Stack"},   {11, "3DStack"}, {14, "Stack100"}, {15, "3DStack100"}};
const char* kFormatRefused = "The requested number format is not supported by Excel";

std::vector<std::string> AllPictures() {
    std::vector<std::string> out;
    for (const char* sType : kTypes)
        for (auto& [code, sSample] : kSamples) out.push_back(std::string("img") + sType + sSample);
    return out;
}
}  // namespace

frmPSLayoutABC::frmPSLayoutABC(Component& c) : PSLayoutPage(c, "frmPSLayoutABC", PageCaption("Chart Layout"), pcLayout) {}

long frmPSLayoutABC::HelpTopic() const {
    if (c.sChartType == "bar") return 3;
    if (c.sChartType == "column") return 4;
    return 5;
}

// ---------------------------------------------------------------- design and load

void frmPSLayoutABC::DesignPage() {
    auto* f1 = &AddFrame("Frame1", "1. Chart Title");
    txtTitle = &AddTitleBox(f1);

    auto* f2 = &AddFrame("Frame2", "2. Vertical (Y-axis) Shows");
    optCategories1 = &AddOption("optCategories", 1, f2, "");
    cboCategories = &AddComboBox("cboCategories", f2, forms::ComboBox::vbComboDropdownList);
    optCategories2 = &AddOption("optCategories", 2, f2, "");
    lstCategories = &AddListBox("lstCategories", f2, forms::ListBox::vbMultiSelectExtended);

    auto* f3 = &AddFrame("Frame3", "3. A Color Represents");
    optSeries0 = &AddOption("optSeries", 0, f3, "  Not Applicable");
    optSeries1 = &AddOption("optSeries", 1, f3, "");
    cboSeries = &AddComboBox("cboSeries", f3, forms::ComboBox::vbComboDropdownList);
    optSeries2 = &AddOption("optSeries", 2, f3, "");
    lstSeries = &AddListBox("lstSeries", f3, forms::ListBox::vbMultiSelectExtended);
    AddImage("imgLegend", f3);
    AddImage("imgLegendDim", f3);

    auto* f4 = &AddFrame("Frame4", "4. [ABC magnitude]");
    cboValues = &AddComboBox("cboValues", f4, forms::ComboBox::vbComboDropdownList);

    NextColumn();
    auto* f5 = &AddFrame("Frame5", "5. [ABC] and Axis Labels");
    chkShowValues = &AddCheckBox("chkShowValues", f5, "Show Values on [ABC]");
    cboDataLabelMask = &AddNumberFormatRow(f5, "lblNumberMask", "cboDataLabelMask", "lblNumberExample");
    AddAxisBoxes(f5);

    auto* f6 = &AddFrame("Frame6", "6. Chart Style");
    chk3D = &AddCheckBox("chk3D", f6, "3-D");
    chkStacked = &AddCheckBox("chkStacked", f6, "Stacked [ABC]");
    chk100Pct = &AddCheckBox("chk100Pct", f6, "Stack to 100%");

    auto* f7 = &AddFrame("Frame7", "7. Chart Comments");
    txtComment = &AddCommentBox(f7);

    for (auto& sName : AllPictures()) AddImage(sName);
    HighlightOffOnButtons(true);

    // The designed state, set before the handlers exist.
    optCategories1->SetValue(true);
    optSeries0->SetValue(true);
    chk100Pct->SetEnabled(false);

    OnClick(*cboCategories, [this] {
        if (!CategoryAxisSticky()) CategoryAxisBox().SetText(cboCategories->Text());
    });
    OnClick(*cboValues, [this] {
        if (cboValues->ListIndex() >= 0 && !ValueAxisSticky()) ValueAxisBox().SetText(cboValues->Text());
        SetControlStates(4);
    });
    for (auto* opt : {optCategories1, optCategories2}) OnClick(*opt, [this] { SetControlStates(0); });
    for (auto* opt : {optSeries0, optSeries1, optSeries2}) OnClick(*opt, [this] { SetControlStates(2); });
    OnClick(*chk3D, [this] { ShowChartPicture(); });
    OnClick(*chk100Pct, [this] { ShowChartPicture(); });
    OnClick(*chkStacked, [this] {
        if (chkStacked->Value() == forms::CheckBox::vbChecked) {
            chk100Pct->SetEnabled(true);
        } else {
            chk100Pct->SetEnabled(false);
            chk100Pct->SetValue(forms::CheckBox::vbUnchecked);
        }
        ShowChartPicture();
    });
}

void frmPSLayoutABC::LoadPage() {
    bHAxisSticky = false;
    bVAxisSticky = false;
    SetFrameCaptions();
    LoadColumnNames();
    FillCategoryControls();
    FillSeriesControls();
    FillValueControl();
    FillNumberFormats();
    ShowNumberExample();
    bool bFound = false;
    RestoreChartSelections(bFound);
    SetControlStates(bFound ? 5 : 6);
}

void frmPSLayoutABC::SetFrameCaptions() {
    struct Words { const char *sType, *sFrame2, *sFrame4, *sFrame5, *sShow, *sStacked; };
    static const Words kWords[] = {
        {"area", "2. Horizontal (X-axis) Shows", "4. Area Size", "5. Area and Axis Labels", "Show Values on Areas",
         "Stacked Areas"},
        {"bar", "2. Vertical (Y-axis) Shows", "4. Bar Length", "5. Bar and Axis Labels", "Show Values on Bars",
         "Stacked Bars"},
        {"column", "2. Horizontal (X-axis) Shows", "4. Column Height", "5. Column and Axis Labels",
         "Show Values on Columns", "Stacked Columns"},
    };
    for (auto& w : kWords) {
        if (c.sChartType != w.sType) continue;
        Get("Frame2").SetCaption(w.sFrame2);
        Get("Frame4").SetCaption(w.sFrame4);
        Get("Frame5").SetCaption(w.sFrame5);
        chkShowValues->SetCaption(w.sShow);
        chkStacked->SetCaption(w.sStacked);
    }
}

void frmPSLayoutABC::FillCategoryControls() {
    FillList(*cboCategories, colLabelColumns, true);
    FillList(*lstCategories, colNumberColumns, false);
    if (!CategoryAxisSticky()) CategoryAxisBox().SetText(cboCategories->Text());
}

void frmPSLayoutABC::FillSeriesControls() {
    FillList(*cboSeries, colLabelColumns, true);
    FillList(*lstSeries, colNumberColumns, false);
}

void frmPSLayoutABC::FillValueControl() { FillList(*cboValues, colNumberColumns, true); }

// ---------------------------------------------------------------- states and pictures

void frmPSLayoutABC::SetControlStates(long lTrigger) {
    size_t nLabels = colLabelColumns.size(), nNumbers = colNumberColumns.size();
    // One label and one number column leave nothing to colour by; the option never comes back here.
    if (lTrigger == 6 && nLabels < 2 && nNumbers < 2) optSeries1->SetEnabled(false);
    if (lTrigger == 2 && optSeries2->Value() && !optCategories1->Value()) optCategories1->SetValue(true);
    // With a single number column, choosing the size resets the colour, a chosen label column too.
    if ((lTrigger == 4 && nNumbers < 2) || (lTrigger == 0 && optCategories2->Value()))
        if (!optSeries0->Value()) optSeries0->SetValue(true);

    // Number columns as categories or colours give the size themselves.
    if (optCategories2->Value() || optSeries2->Value()) {
        if (!ValueAxisSticky()) ValueAxisBox().SetText("");
        cboValues->SetListIndex(-1);
        SetInputEnabled(*cboValues, false);
    } else {
        SetInputEnabled(*cboValues, true);
    }

    // At most one dimension by columns.
    if (optCategories2->Value()) {
        optSeries2->SetEnabled(false);
    } else if (optSeries2->Value()) {
        optCategories2->SetEnabled(false);
    } else {
        optSeries2->SetEnabled(true);
        optCategories2->SetEnabled(true);
    }

    if (optCategories1->Value()) {
        SetInputEnabled(*cboCategories, true);
        SetInputEnabled(*lstCategories, false);
        ClearSelections(*lstCategories);
    } else {
        SetInputEnabled(*cboCategories, false);
        cboCategories->SetListIndex(-1);
        SetInputEnabled(*lstCategories, true);
    }

    bool bColoured = optSeries1->Value() || optSeries2->Value();
    if (optSeries1->Value()) {
        SetInputEnabled(*cboSeries, true);
        SetInputEnabled(*lstSeries, false);
        ClearSelections(*lstSeries);
    } else if (optSeries2->Value()) {
        SetInputEnabled(*cboSeries, false);
        cboSeries->SetListIndex(-1);
        SetInputEnabled(*lstSeries, true);
    } else {
        SetInputEnabled(*cboSeries, false);
        cboSeries->SetListIndex(-1);
        SetInputEnabled(*lstSeries, false);
        ClearSelections(*lstSeries);
    }
    Get("imgLegend").SetVisible(bColoured);
    Get("imgLegendDim").SetVisible(!bColoured);

    // Stacking needs colours.
    if (optSeries0->Value()) {
        chkStacked->SetValue(forms::CheckBox::vbUnchecked);
        chkStacked->SetEnabled(false);
    } else {
        chkStacked->SetEnabled(true);
    }
    ShowChartPicture();
}

void frmPSLayoutABC::ShowChartPicture() {
    long lCode = 0;
    if (chk3D->Value() == forms::CheckBox::vbChecked) lCode += 1;
    if (chkStacked->Value() == forms::CheckBox::vbChecked) lCode += 2;
    if (chk100Pct->Value() == forms::CheckBox::vbChecked) lCode += 4;
    if (optSeries1->Value() || optSeries2->Value()) lCode += 8;
    std::string sVisible;
    auto it = kSamples.find(lCode);
    for (const char* sType : kTypes)
        if (it != kSamples.end() && host::LCase(sType) == c.sChartType) sVisible = std::string("img") + sType + it->second;
    ShowOnly(AllPictures(), sVisible);
}

// ---------------------------------------------------------------- rules and messages

std::string frmPSLayoutABC::ShowsMessage() const {
    return IsBar() ? "Please select a 'Vertical (Y-axis) Shows' entry" : "Please select a 'Horizontal (X-axis) Shows' entry";
}

void frmPSLayoutABC::ValidSelections(bool& bResult) {
    bResult = false;
    ShowNumberExample();
    // A colour left unchosen means "Not Applicable".
    if ((optSeries1->Value() && cboSeries->ListIndex() < 0) || (optSeries2->Value() && lstSeries->SelCount() == 0))
        optSeries0->SetValue(true);

    if ((optCategories1->Value() && cboCategories->ListIndex() < 0) ||
        (optCategories2->Value() && lstCategories->SelCount() == 0)) {
        DisplayMessage(ShowsMessage());
        return;
    }
    if (!optCategories2->Value() && !optSeries2->Value() && cboValues->ListIndex() == -1) {
        if (c.sChartType == "area") DisplayMessage("Please select an 'Area Size' entry");
        else if (IsBar()) DisplayMessage("Please select a 'Bar Length' entry");
        else DisplayMessage("Please select a 'Column Height' entry");
        return;
    }
    if (optCategories1->Value() && optSeries1->Value() && cboCategories->ListIndex() == cboSeries->ListIndex()) {
        DisplayMessage(IsBar() ? "You cannot use the same entry for the 'Vertical (Y-axis) Shows'\r\n"
                                 "and 'A Color Represents' selections"
                               : "You cannot use the same entry for the 'Horizontal (X-axis) Shows'\r\n"
                                 "and 'A Color Represents' selections");
        return;
    }
    if (NumberFormatRefused()) {
        DisplayMessage(kFormatRefused);
        return;
    }
    UpdateChartMetadata();
    bResult = true;
}

void frmPSLayoutABC::FocusForMessage(const std::string& sMessage) {
    if (sMessage == "Please select a 'Vertical (Y-axis) Shows' entry" ||
        sMessage == "Please select a 'Horizontal (X-axis) Shows' entry") {
        if (optCategories1->Value()) cboCategories->SetFocus();
        else if (optCategories2->Value()) lstCategories->SetFocus();
    } else if (sMessage == "Please select a 'Bar Length' entry" || sMessage == "Please select an 'Area Size' entry" ||
               sMessage == "Please select a 'Column Height' entry") {
        cboValues->SetFocus();
    } else if (sMessage.rfind("You cannot use the same entry for the '", 0) == 0) {
        cboCategories->SetFocus();
    } else if (sMessage == kFormatRefused) {
        cboDataLabelMask->SetFocus();
    }
}

// ---------------------------------------------------------------- the definition

void frmPSLayoutABC::RestoreChartSelections(bool& bFound) {
    bFound = false;
    Named("frmPSLayoutABC.RestoreChartSelections", [&] {
        auto oChart = ChartElement();
        txtTitle->SetText(Attr(oChart, "title"));
        cboDataLabelMask->SetText(Attr(oChart, "number-format"));
        ShowNumberExample();

        if (auto oCategories = oChart.selectSingleNode("categories")) {
            bFound = true;
            (Attr(oCategories, "headings-in") == "rows" ? optCategories1 : optCategories2)->SetValue(true);
            for (auto& sName : ColumnNames(oChart, "categories")) {
                SelectMatching(*cboCategories, sName);
                SelectMatching(*lstCategories, sName);
            }
        }
        if (auto oSeries = oChart.selectSingleNode("series")) {
            bFound = true;
            std::string sIn = Attr(oSeries, "headings-in");
            (sIn == "rows" ? optSeries1 : sIn == "columns" ? optSeries2 : optSeries0)->SetValue(true);
            for (auto& sName : ColumnNames(oChart, "series")) {
                SelectMatching(*cboSeries, sName);
                SelectMatching(*lstSeries, sName);
            }
        }
        if (oChart.selectSingleNode("values")) {
            bFound = true;
            for (auto& sName : ColumnNames(oChart, "values")) SelectMatching(*cboValues, sName);
        }
        // After the columns, so that the boxes end with the saved texts.
        if (auto oAxes = oChart.selectSingleNode("axes")) {
            bFound = true;
            for (auto oAxis : oAxes.selectNodes("axis")) {
                std::string sType = Attr(oAxis, "type");
                bool bSticky = Attr(oAxis, "sticky") == "yes";
                if (sType == "label") {
                    CategoryAxisBox().SetText(Attr(oAxis, "label"));
                    (IsBar() ? bVAxisSticky : bHAxisSticky) = bSticky;
                } else if (sType == "value") {
                    ValueAxisBox().SetText(Attr(oAxis, "label"));
                    (IsBar() ? bHAxisSticky : bVAxisSticky) = bSticky;
                }
            }
        }
        if (auto oLabels = oChart.selectSingleNode("data-labels")) {
            bFound = true;
            for (auto oLabel : oLabels.selectNodes("data-label"))
                if (Attr(oLabel, "show") == "values") chkShowValues->SetValue(forms::CheckBox::vbChecked);
        }
        if (auto oDynamic = oChart.selectSingleNode("dynamic-attributes")) {
            bFound = true;
            for (auto oAttribute : oDynamic.selectNodes("attribute")) {
                std::string sSetting = Attr(oAttribute, "setting");
                if (sSetting == "3D") chk3D->SetValue(forms::CheckBox::vbChecked);
                else if (sSetting == "stacked") chkStacked->SetValue(forms::CheckBox::vbChecked);
                else if (sSetting == "100%") chk100Pct->SetValue(forms::CheckBox::vbChecked);
            }
        }
        if (oChart.selectSingleNode("comment")) {
            bFound = true;
            txtComment->SetText(RestoredComment(oChart));
        }
    });
}

void frmPSLayoutABC::UpdateChartMetadata() {
    Named("frmPSLayoutABC.UpdateChartMetadata", [&] {
        std::string sTitle = host::Trim(txtTitle->Text());
        std::string sMask = host::Trim(cboDataLabelMask->Text());
        std::string sHAxis = host::Trim(txtHAxis->Text());
        std::string sVAxis = host::Trim(txtVAxis->Text());
        std::string sComment = host::Trim(txtComment->Text());

        std::string sCategoriesIn = optCategories1->Value() ? "rows" : "columns";
        std::vector<std::string> aCategories;
        if (optCategories1->Value()) {
            if (cboCategories->ListIndex() >= 0) aCategories.push_back(cboCategories->Text());
        } else {
            aCategories = SelectedItems(*lstCategories);
        }
        std::string sSeriesIn = "none";
        std::vector<std::string> aSeries;
        if (optSeries1->Value()) {
            sSeriesIn = "rows";
            if (cboSeries->ListIndex() >= 0) aSeries.push_back(cboSeries->Text());
        } else if (optSeries2->Value()) {
            sSeriesIn = "columns";
            aSeries = SelectedItems(*lstSeries);
        }
        std::string sValueColumn = cboValues->ListIndex() >= 0 ? cboValues->Text() : "";

        auto oChart = ChartElement();
        RemoveChildren(oChart, {"categories", "series", "values", "axes", "data-labels", "dynamic-attributes", "comment"});
        oChart.setAttribute("title", sTitle);
        oChart.setAttribute("number-format", sMask);

        auto oCategories = AppendElement(oChart, "categories");
        oCategories.setAttribute("headings-in", sCategoriesIn);
        for (auto& sName : aCategories) AppendColumn(oCategories, sName);
        auto oSeries = AppendElement(oChart, "series");
        oSeries.setAttribute("headings-in", sSeriesIn);
        for (auto& sName : aSeries) AppendColumn(oSeries, sName);
        if (!sValueColumn.empty()) AppendColumn(AppendElement(oChart, "values"), sValueColumn);

        auto oAxes = AppendElement(oChart, "axes");
        if (!sHAxis.empty()) AppendAxis(oAxes, IsBar() ? "value" : "label", sHAxis, bHAxisSticky);
        if (!sVAxis.empty()) AppendAxis(oAxes, IsBar() ? "label" : "value", sVAxis, bVAxisSticky);

        auto oLabels = AppendElement(oChart, "data-labels");
        if (chkShowValues->Value() == forms::CheckBox::vbChecked)
            AppendElement(oLabels, "data-label").setAttribute("show", "values");

        auto oDynamic = AppendElement(oChart, "dynamic-attributes");
        for (auto [chk, sSetting] : {std::pair{chk3D, "3D"}, std::pair{chkStacked, "stacked"}, std::pair{chk100Pct, "100%"}})
            if (chk->Value() == forms::CheckBox::vbChecked) AppendElement(oDynamic, "attribute").setAttribute("setting", sSetting);

        AppendComment(oChart, sComment);
    });
}

}  // namespace ps
