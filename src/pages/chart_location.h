#pragma once
// The Chart Location page: the chart's name and the sheet it stands on.
#include "pages/page.h"

namespace ps {

// The last page: Finish is its way on, Next stays off, and closing it doesn't end the run by itself.
class frmPSChartLocation : public PSWizardPage {
public:
    explicit frmPSChartLocation(Component& c);
    long HelpTopic() const override { return 8; }

protected:
    void DesignPage() override;
    void Form_Unload() override {}
    void cmdCancel_Click() override;
};

}  // namespace ps
