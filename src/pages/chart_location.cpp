#include "pages/chart_location.h"

#include "common/common_functions.h"
#include "controller/ps_controller.h"
#include "host/constants.h"
#include "host/workbook.h"
#include "metadata/ps_functions.h"

namespace ps {

namespace {
const char* const sNoName = "Please provide a name for the chart";
const char* const sNameInUse = "Chart name is already in use. Please enter a different name for the chart.";
const char* const sNoSheetPicked = "Please select a sheet from the dropdown";
const char* const sNoSheetName = "Please provide a name for the new worksheet";
const char* const sSheetInUse = "Worksheet name is already in use. Please enter a different name for the worksheet.";
const char* const sSheetRefused = "Invalid worksheet name. Please enter a valid name for the worksheet.";

constexpr int optNewSheet = 0;
constexpr int optExistingSheet = 1;
}  // namespace

frmPSChartLocation::frmPSChartLocation(Component& c)
    : PSWizardPage(c, "frmPSChartLocation", PageCaption("Chart Location"), pcChartLocation) {}

void frmPSChartLocation::DesignPage() {
    Get<forms::CommandButton>("cmdNext").SetEnabled(false);
    Get<forms::CommandButton>("cmdFinish").SetDefault(true);

    auto& frame = Add<forms::Frame>("Frame1");
    frame.SetCaption("Place the chart on");
    auto& optNew = Add<forms::OptionButton>("optTargetSheet", &frame, optNewSheet);
    optNew.SetCaption("A new worksheet");
    auto& txtSheet = Add<forms::TextBox>("txtSheet", &frame);
    txtSheet.MaxLength = 31;  // the host's limit for a sheet name
    auto& optExisting = Add<forms::OptionButton>("optTargetSheet", &frame, optExistingSheet);
    optExisting.SetCaption("An existing worksheet");
    optExisting.SetValue(true);
    Add<forms::ComboBox>("cboSheet", &frame).Style = forms::ComboBox::vbComboDropdownList;
    Add<forms::Label>("lblName", &frame).SetCaption("Chart Name");
    Add<forms::TextBox>("txtName", &frame).MaxLength = 255;
    for (auto* opt : {&optNew, &optExisting}) opt->Click = [this] { Handle([&] { SetSheetControls(); }); };
}

void frmPSChartLocation::LoadPage() {
    PopulateControls();
    SetSheetControls();
}

bool frmPSChartLocation::NewSheetChosen() const {
    return Get<forms::OptionButton>("optTargetSheet", optNewSheet).Value();
}

std::string frmPSChartLocation::ChosenSheet() const {
    return NewSheetChosen() ? host::Trim(Get<forms::TextBox>("txtSheet").Text())
                            : Get<forms::ComboBox>("cboSheet").Text();
}

void frmPSChartLocation::PopulateControls() {
    try {
        auto& cf = *c.common;
        auto oChart = Obj(c.oChartDoc).selectSingleNode("chart");
        std::string sName = cf.GetAttributeText(oChart, "name");
        std::string sTitle = cf.GetAttributeText(oChart, "title");
        std::string sChartSheet = cf.GetAttributeText(oChart, "chart-worksheet");
        bNewChart_ = !CommonFunctions::CollectionHasKey(c.sChartID, c.colCharts);

        auto& cboSheet = Get<forms::ComboBox>("cboSheet");
        cboSheet.Clear();
        auto& wb = Obj(c.oWorkbook);
        std::string sActive = Obj(wb.ActiveSheet()).Name();
        auto oSheets = wb.Worksheets();
        for (long i = 1, n = oSheets->Count(); i <= n; ++i) {
            auto oSheet = oSheets->Item(i);
            if (oSheet->Visible() != host::xlSheetVisible) continue;
            std::string sSheet = oSheet->Name();
            cboSheet.AddItem(sSheet);
            long lLast = cboSheet.ListCount() - 1;
            // The last rule already picks the first sheet, so the active sheet only wins when it
            // comes first: a new chart goes on the first visible worksheet.
            if (!sChartSheet.empty() && sChartSheet == sSheet) cboSheet.SetListIndex(lLast);
            else if (cboSheet.ListIndex() < 0 && sSheet == sActive) cboSheet.SetListIndex(lLast);
            if (cboSheet.ListIndex() < 0) cboSheet.SetListIndex(lLast);
        }

        auto& txtSheet = Get<forms::TextBox>("txtSheet");
        if (!bNewChart_) {
            Get<forms::OptionButton>("optTargetSheet", optExistingSheet).SetValue(true);
        } else {
            std::string sBase = "Chart" + host::Mid(c.sChartID, host::Len(sChartIDPrefix) + 1);
            std::string sDefault = sBase;
            for (long n = 2; cf.SheetExists(sDefault); ++n) sDefault = sBase + " (" + std::to_string(n) + ")";
            if (!sChartSheet.empty() && cboSheet.Text() != sChartSheet) {
                // The sheet named before (a new one, typed and then left by Back) isn't there yet.
                txtSheet.SetText(sChartSheet);
                Get<forms::OptionButton>("optTargetSheet", optNewSheet).SetValue(true);
            } else {
                txtSheet.SetText(sDefault);
            }
        }
        // The chart's title is the proposal for its name.
        Get<forms::TextBox>("txtName").SetText(sTitle.empty() ? sName : sTitle);
    } catch (const std::exception&) {
        c.common->ReportError("frmPSChartLocation.PopulateControls");
    }
}

void frmPSChartLocation::SetSheetControls() {
    auto& optNew = Get("optTargetSheet", optNewSheet);
    auto& optExisting = Get("optTargetSheet", optExistingSheet);
    // A chart that stands on a sheet stays there: the wizard offers no way to move it.
    bool bNewSheet = NewSheetChosen();
    optNew.SetEnabled(bNewChart_);
    optExisting.SetEnabled(bNewChart_);
    SetInputEnabled(Get("txtSheet"), bNewChart_ && bNewSheet);
    SetInputEnabled(Get("cboSheet"), bNewChart_ && !bNewSheet);
}

void frmPSChartLocation::ValidSelections(bool& bResult) {
    bResult = false;
    try {
        auto& cf = *c.common;
        std::string sName = host::Trim(Get<forms::TextBox>("txtName").Text());
        std::string sSheet = ChosenSheet();
        bool bNewSheet = NewSheetChosen();
        std::string sMessage;
        if (sName.empty()) {
            sMessage = sNoName;
        } else if (bNewChart_ && c.functions->ChartNameInUse(sName)) {
            // A modified chart may keep a name that another chart bears.
            sMessage = sNameInUse;
        } else if (!bNewSheet && Get<forms::ComboBox>("cboSheet").ListIndex() < 0 && bNewChart_) {
            sMessage = sNoSheetPicked;
        } else if (bNewSheet && sSheet.empty() && bNewChart_) {
            sMessage = sNoSheetName;
        } else if (bNewSheet && bNewChart_ && cf.SheetExists(sSheet)) {
            sMessage = sSheetInUse;
        } else if (bNewSheet && bNewChart_) {
            // The new sheet stays, even when a later step fails.
            if (!c.functions->CreateChartWorksheet(sSheet)) sMessage = sSheetRefused;
        } else {
            Obj(c.oWorkbook).Worksheets()->Item(sSheet)->Activate();
        }
        if (!sMessage.empty()) {
            DisplayMessage(sMessage);
            return;
        }
        UpdateChartMetadata(sSheet);
        bResult = c.functions->PlaceChartDefinition(sSheet);
    } catch (const std::exception&) {
        ReportHandlerError();
        bResult = false;
    }
}

void frmPSChartLocation::UpdateChartMetadata(const std::string& sSheetName) {
    try {
        auto oChart = Obj(c.oChartDoc).selectSingleNode("chart");
        oChart.setAttribute("name", host::Trim(Get<forms::TextBox>("txtName").Text()));
        oChart.setAttribute("chart-worksheet", sSheetName);
    } catch (const std::exception&) {
        c.common->ReportError("frmPSChartLocation.UpdateChartMetadata");
    }
}

void frmPSChartLocation::FocusForMessage(const std::string& sMessage) {
    if (sMessage == sNoName || sMessage == sNameInUse) Get("txtName").SetFocus();
    else if (sMessage == sNoSheetName || sMessage == sSheetInUse || sMessage == sSheetRefused) Get("txtSheet").SetFocus();
    else if (sMessage == sNoSheetPicked) Get("cboSheet").SetFocus();
}

void frmPSChartLocation::cmdCancel_Click() {
    try {
        Unload();
    } catch (const std::exception&) {
        c.common->ShowRuntimeError(CurrentError());
    }
}

}  // namespace ps
