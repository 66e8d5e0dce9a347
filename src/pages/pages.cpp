#include "pages/pages.h"

#include "pages/select_action.h"
#include "pages/wizard_pages.h"

namespace ps {

namespace {
template <class T>
T& Instance(Component& c, std::unique_ptr<T>& slot) {
    if (!slot) slot = std::make_unique<T>(c);
    return *slot;
}
}  // namespace

frmPSSelectAction& SelectActionPage(Component& c) { return Instance(c, c.pageSelectAction); }
frmPSSelectTable& SelectTablePage(Component& c) { return Instance(c, c.pageSelectTable); }
frmPSLayoutABC& LayoutABCPage(Component& c) { return Instance(c, c.pageLayoutABC); }
frmPSLayoutBubble& LayoutBubblePage(Component& c) { return Instance(c, c.pageLayoutBubble); }
frmPSLayoutPie& LayoutPiePage(Component& c) { return Instance(c, c.pageLayoutPie); }
frmPSLayoutStrBuck& LayoutStrBuckPage(Component& c) { return Instance(c, c.pageLayoutStrBuck); }
frmPSChartLocation& ChartLocationPage(Component& c) { return Instance(c, c.pageChartLocation); }

}  // namespace ps
