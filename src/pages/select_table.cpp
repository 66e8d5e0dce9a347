#include "pages/select_table.h"

namespace ps {

frmPSSelectTable::frmPSSelectTable(Component& c)
    : PSWizardPage(c, "frmPSSelectTable", PageCaption("Source Table and Chart Type"), pcSelectTable) {}

}  // namespace ps
