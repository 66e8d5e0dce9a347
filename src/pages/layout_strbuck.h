#pragma once
// The layout page of strategic bucket charts.
#include "pages/page.h"

namespace ps {

class frmPSLayoutStrBuck : public PSWizardPage {
public:
    explicit frmPSLayoutStrBuck(Component& c);
    long HelpTopic() const override { return 18; }
};

}  // namespace ps
