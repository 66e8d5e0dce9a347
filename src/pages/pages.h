#pragma once
// The page instances of a component, made on first use and kept.
#include "common/component.h"

namespace ps {

frmPSSelectAction& SelectActionPage(Component& c);
frmPSSelectTable& SelectTablePage(Component& c);
frmPSLayoutABC& LayoutABCPage(Component& c);
frmPSLayoutBubble& LayoutBubblePage(Component& c);
frmPSLayoutPie& LayoutPiePage(Component& c);
frmPSLayoutStrBuck& LayoutStrBuckPage(Component& c);
frmPSChartLocation& ChartLocationPage(Component& c);

}  // namespace ps
