#pragma once
// The pages behind Select Action, for those that hold them all: Source Table and Chart Type, the
// four layout pages, Chart Location.
#include "pages/chart_location.h"
#include "pages/layout_abc.h"
#include "pages/layout_bubble.h"
#include "pages/layout_pie.h"
#include "pages/layout_strbuck.h"
#include "pages/select_table.h"
