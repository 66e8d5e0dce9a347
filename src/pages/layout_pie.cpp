#include "pages/layout_pie.h"

namespace ps {

frmPSLayoutPie::frmPSLayoutPie(Component& c) : PSWizardPage(c, "frmPSLayoutPie", PageCaption("Chart Layout"), pcLayout) {}

}  // namespace ps
