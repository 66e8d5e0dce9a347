#include "pages/wizard_pages.h"

#include "common/common_functions.h"
#include "common/constants.h"

namespace ps {

namespace {
std::string PageCaption(const char* sPage) { return std::string(sProductTitle) + " - " + sPage; }
}  // namespace

frmPSSelectTable::frmPSSelectTable(Component& c)
    : PSWizardPage(c, "frmPSSelectTable", PageCaption("Source Table and Chart Type"), pcSelectTable) {}

frmPSLayoutABC::frmPSLayoutABC(Component& c) : PSWizardPage(c, "frmPSLayoutABC", PageCaption("Chart Layout"), pcLayout) {}

long frmPSLayoutABC::HelpTopic() const {
    if (c.sChartType == "bar") return 3;
    if (c.sChartType == "column") return 4;
    return 5;
}

frmPSLayoutPie::frmPSLayoutPie(Component& c) : PSWizardPage(c, "frmPSLayoutPie", PageCaption("Chart Layout"), pcLayout) {}

frmPSLayoutBubble::frmPSLayoutBubble(Component& c)
    : PSWizardPage(c, "frmPSLayoutBubble", PageCaption("Chart Layout"), pcLayout) {}

frmPSLayoutStrBuck::frmPSLayoutStrBuck(Component& c)
    : PSWizardPage(c, "frmPSLayoutStrBuck", PageCaption("Chart Layout"), pcLayout) {}

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
