// The Component is made and destroyed here, where every module and page is known.
#include "common/component.h"

#include "builder/ps_chart_builder.h"
#include "common/common_functions.h"
#include "controller/ps_controller.h"
#include "metadata/ps_functions.h"
#include "pages/select_action.h"
#include "pages/wizard_pages.h"
#include "readback/ps_rev_engineer_chart.h"

namespace ps {

Component::Component(forms::FrontEnd& frontEnd, forms::Dialogs& dialogs, Clock& clock)
    : frontEnd(frontEnd), dialogs(dialogs), clock(clock),
      common(std::make_unique<CommonFunctions>(*this)),
      functions(std::make_unique<PSFunctions>(*this)),
      builder(std::make_unique<PSChartBuilder>(*this)),
      readback(std::make_unique<PSRevEngineerChart>(*this)),
      controller(std::make_unique<PSController>(*this)) {}

Component::~Component() = default;

}  // namespace ps
