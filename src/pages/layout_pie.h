#pragma once
// The layout page of pie charts.
#include "pages/page.h"

namespace ps {

class frmPSLayoutPie : public PSWizardPage {
public:
    explicit frmPSLayoutPie(Component& c);
    long HelpTopic() const override { return 6; }
};

}  // namespace ps
