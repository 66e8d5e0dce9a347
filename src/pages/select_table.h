#pragma once
// The Source Table and Chart Type page: the table the chart is drawn from and its type.
#include "pages/page.h"

namespace ps {

class frmPSSelectTable : public PSWizardPage {
public:
    explicit frmPSSelectTable(Component& c);
    long HelpTopic() const override { return 2; }
};

}  // namespace ps
