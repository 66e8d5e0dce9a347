#pragma once
// The pages behind Select Action: Source Table and Chart Type, the four layout pages, Chart
// Location.
#include "pages/page.h"

namespace ps {

class frmPSSelectTable : public PSWizardPage {
public:
    explicit frmPSSelectTable(Component& c);
    long HelpTopic() const override { return 2; }
};

// One form serves the area, bar and column layouts; its help topic follows the chart type.
class frmPSLayoutABC : public PSWizardPage {
public:
    explicit frmPSLayoutABC(Component& c);
    long HelpTopic() const override;
};

class frmPSLayoutPie : public PSWizardPage {
public:
    explicit frmPSLayoutPie(Component& c);
    long HelpTopic() const override { return 6; }
};

class frmPSLayoutBubble : public PSWizardPage {
public:
    explicit frmPSLayoutBubble(Component& c);
    long HelpTopic() const override { return 7; }
};

class frmPSLayoutStrBuck : public PSWizardPage {
public:
    explicit frmPSLayoutStrBuck(Component& c);
    long HelpTopic() const override { return 18; }
};

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
