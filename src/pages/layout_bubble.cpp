#include "pages/layout_bubble.h"

namespace ps {

frmPSLayoutBubble::frmPSLayoutBubble(Component& c)
    : PSWizardPage(c, "frmPSLayoutBubble", PageCaption("Chart Layout"), pcLayout) {}

}  // namespace ps
