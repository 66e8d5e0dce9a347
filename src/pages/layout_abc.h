#pragma once
// The layout page of area, bar and column charts.
#include "pages/page.h"

namespace ps {

// One form serves the area, bar and column layouts; its help topic follows the chart type.
class frmPSLayoutABC : public PSWizardPage {
public:
    explicit frmPSLayoutABC(Component& c);
    long HelpTopic() const override;
};

}  // namespace ps
