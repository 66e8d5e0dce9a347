#include "controller/plotsmith_controller.h"

#include "builder/ps_chart_builder.h"
#include "common/common_functions.h"
#include "controller/ps_controller.h"
#include "host/workbook.h"
#include "metadata/ps_functions.h"

namespace ps {

CPlotsmithController::CPlotsmithController(forms::FrontEnd& frontEnd, forms::Dialogs& dialogs, Clock& clock)
    : c_(std::make_unique<Component>(frontEnd, dialogs, clock)) {}

CPlotsmithController::~CPlotsmithController() = default;

void CPlotsmithController::SetHostContext(const host::Ref<host::Application>& oApplication,
                                          const std::string& sCustomAppName) {
    if (c_->oApplication) return;
    c_->oApplication = oApplication;
    if (c_->sCustomAppName.empty()) c_->sCustomAppName = sCustomAppName;
}

bool CPlotsmithController::HostIsEditing(const host::Ref<host::Application>& oApplication) {
    try {
        auto& app = Obj(oApplication);
        if (!app.Interactive()) return false;
        bool bInteractive = app.Interactive();
        app.SetInteractive(!bInteractive);
        app.SetInteractive(bInteractive);
        return false;
    } catch (const std::exception&) {
        return true;  // the host refuses the change while a cell or object is edited
    }
}

std::string CPlotsmithController::WorkbookRefusal(const host::Ref<host::Application>& oApplication) {
    auto oWorkbook = Obj(oApplication).ActiveWorkbook();
    if (!oWorkbook) return "You must have a workbook open to use the Plotsmith.";
    if (oWorkbook->ProtectStructure())
        return "This workbook has been protected. To use the Plotsmith you need to turn off Structure Protection.";
    if (oWorkbook->MultiUserEditing())
        return "This is a shared workbook. To use the Plotsmith you need to turn off workbook sharing.";
    if (HostIsEditing(oApplication))
        return "You are currently editing a cell or object. Please finish editing before using the Plotsmith.";
    return {};
}

void CPlotsmithController::RunGuarded(const host::Ref<host::Application>& oApplication,
                                      const std::string& sCustomAppName, const std::string& sHelpFile, long lMode,
                                      const char* sWhere) {
    Component& c = *c_;
    try {
        SetHostContext(oApplication, sCustomAppName);
        c.sHelpFile = sHelpFile;
        c.oWorkbook = Obj(oApplication).ActiveWorkbook();
        std::string sRefusal = WorkbookRefusal(oApplication);
        if (!sRefusal.empty()) c.common->ShowMessage(sRefusal);
        else c.controller->ExecuteRun(lMode);
        c.oWorkbook = nullptr;
    } catch (const std::exception&) {
        c.common->ReportError(sWhere);
    }
}

void CPlotsmithController::RunPlotsmith(host::Ref<host::Application> oApplication, std::string sCustomAppName,
                                        std::string sHelpFile) {
    RunGuarded(oApplication, sCustomAppName, sHelpFile, 0, "CPlotsmithController.RunPlotsmith");
}

void CPlotsmithController::RefreshPlotsmithData(host::Ref<host::Application> oApplication,
                                                std::string sCustomAppName, std::string sHelpFile) {
    RunGuarded(oApplication, sCustomAppName, sHelpFile, 1, "CPlotsmithController.RefreshPlotsmithData");
}

void CPlotsmithController::RefreshChartsForTable(host::Ref<host::Application> oApplication,
                                                 std::string& sTableRangeName) {
    Component& c = *c_;
    try {
        SetHostContext(oApplication, "");
        if (!c.oWorkbook) c.oWorkbook = Obj(oApplication).ActiveWorkbook();
        // A refresh, as the refresh of all charts is: what the user gave the plot area stays.
        c.lMethodType = mtRefresh;
        c.builder->PopulateModifiedCharts(sTableRangeName);
    } catch (const std::exception&) {
        c.common->ReportError("CPlotsmithController.RefreshChartsForTable");
    }
}

void CPlotsmithController::UpdateChartColumnNamesForTable(host::Ref<host::Application> oApplication,
                                                          std::string sTableRangeName,
                                                          std::vector<std::string>& aOldColumnNames,
                                                          std::vector<std::string>& aNewColumnNames) {
    Component& c = *c_;
    try {
        SetHostContext(oApplication, "");
        if (!c.oWorkbook) c.oWorkbook = Obj(oApplication).ActiveWorkbook();
        c.functions->UpdateChartColumnNames(sTableRangeName, aOldColumnNames, aNewColumnNames);
    } catch (const std::exception&) {
        c.common->ReportError("CPlotsmithController.UpdateChartColumnNames");
    }
}

}  // namespace ps
