#pragma once
// The layout page of bubble charts.
#include "pages/page.h"

namespace ps {

class frmPSLayoutBubble : public PSWizardPage {
public:
    explicit frmPSLayoutBubble(Component& c);
    long HelpTopic() const override { return 7; }
};

}  // namespace ps
