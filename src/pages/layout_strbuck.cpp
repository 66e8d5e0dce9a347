#include "pages/layout_strbuck.h"

namespace ps {

frmPSLayoutStrBuck::frmPSLayoutStrBuck(Component& c)
    : PSWizardPage(c, "frmPSLayoutStrBuck", PageCaption("Chart Layout"), pcLayout) {}

}  // namespace ps
