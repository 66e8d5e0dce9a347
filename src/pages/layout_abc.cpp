#include "pages/layout_abc.h"

namespace ps {

frmPSLayoutABC::frmPSLayoutABC(Component& c) : PSWizardPage(c, "frmPSLayoutABC", PageCaption("Chart Layout"), pcLayout) {}

long frmPSLayoutABC::HelpTopic() const {
    if (c.sChartType == "bar") return 3;
    if (c.sChartType == "column") return 4;
    return 5;
}

}  // namespace ps
