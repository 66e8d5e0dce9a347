#pragma once
// PSRevEngineerChart: reads a chart as it stands on its sheet back into its definition document,
// so that what the user changed by hand survives the next rebuild. The live chart wins: title,
// type with its settings, number format and comment (identity), and the axis titles, legend and
// label fonts (look, kept in `auto-persistence`, `axes` and `data-labels`).
#include "common/component.h"
#include "dom/document.h"
#include "host/fwd.h"

namespace ps {

class PSRevEngineerChart {
public:
    explicit PSRevEngineerChart(Component& c) : c(c) {}

    // ---- identity
    // Reads nothing from a chart without series. Has no error block of its own: a failure goes to
    // the caller, where it is the fault of the definition's row.
    void RevEngineerChart(const host::Ref<host::Chart>& oChart, const dom::DocumentRef& oChartDoc);
    void RevEngineerChartTitle(const host::Ref<host::Chart>& oChart, const dom::DocumentRef& oChartDoc);
    void RevEngineerChartType(const host::Ref<host::Chart>& oChart, const dom::DocumentRef& oChartDoc);
    void RevEngineerNumberFormat(const host::Ref<host::Chart>& oChart, const dom::DocumentRef& oChartDoc);
    // The series mix a strategic bucket chart is drawn with: stacked-column blocks and exactly
    // one bucket value series.
    bool IsStrBuckChart(const host::Ref<host::Chart>& oChart);
    // oShape is the comment box or Nothing; a deleted box deletes the comment.
    void RevEngineerComment(const host::Ref<host::Shape>& oShape, const dom::DocumentRef& oChartDoc);

    // ---- look
    // Rebuilds `auto-persistence`: axes, legend, data labels, in this order.
    void RevEngineerAutoPersistence(const host::Ref<host::Chart>& oChart, const dom::DocumentRef& oChartDoc);
    void RevEngineerAxisLabels(const host::Ref<host::Chart>& oChart, const dom::DocumentRef& oChartDoc);
    void RevEngineerChartLegend(const host::Ref<host::Chart>& oChart, const dom::DocumentRef& oChartDoc);
    void RevEngineerChartDataLabels(const host::Ref<host::Chart>& oChart, const dom::DocumentRef& oChartDoc);

private:
    Component& c;
};

}  // namespace ps
