#include "pages/chart_location.h"

#include "common/common_functions.h"

namespace ps {

frmPSChartLocation::frmPSChartLocation(Component& c)
    : PSWizardPage(c, "frmPSChartLocation", PageCaption("Chart Location"), pcChartLocation) {}

void frmPSChartLocation::DesignPage() {
    Get<forms::CommandButton>("cmdNext").SetEnabled(false);
    Get<forms::CommandButton>("cmdFinish").SetDefault(true);
}

void frmPSChartLocation::cmdCancel_Click() {
    try {
        Unload();
    } catch (const std::exception&) {
        c.common->ShowRuntimeError(CurrentError());
    }
}

}  // namespace ps
