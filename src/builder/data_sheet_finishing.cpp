// Corrections of a freshly written block before its chart is drawn: bubbles largest first and
// bucket items by their sort key, tiny bubbles raised to a visible size, and the buckets' own
// values in the bucket pseudo-row. Whole rows move in a sort, with their chart id and name, so
// the category positions of the map no longer tell sheet rows afterwards; the drawing reads the
// sheet, not the map.
#include "builder/ps_chart_builder.h"
#include "common/common_functions.h"
#include "common/constants.h"
#include "host/constants.h"
#include "host/workbook.h"

namespace ps {

namespace {

// The range between two cells, given by their addresses as the host's Range(cell1, cell2) takes them.
host::Ref<host::Range> Between(host::Worksheet& ws, long lRow1, long lColumn1, long lRow2, long lColumn2) {
    return ws.Range(ws.Cells(lRow1, lColumn1)->Address() + ":" + ws.Cells(lRow2, lColumn2)->Address());
}

}  // namespace

bool PSChartBuilder::SortDataSheet(const dom::Element& oChartElement) {
    try {
        if (mChartType == "bubble") {
            long S = StartRow(oChartElement);
            auto oSheet = DataSheet();
            auto& ws = *oSheet;
            // The header row stays on top; the largest bubble comes first, to be drawn behind.
            Between(ws, S, 1, S + mCategoryCount, 6)
                ->Sort(ws.Cells(S + 1, 6), host::xlDescending, host::xlYes, 1, false, host::xlTopToBottom);
        } else if (mChartType == "strategic bucket") {
            auto oSortOrder = oChartElement.selectSingleNode("sort-order");
            if (!oSortOrder) return true;
            // A sort-order without its direction is an error of the definition: Null is no text.
            std::string sSort = host::CStr(oSortOrder.getAttribute("sort"));
            long S = StartRow(oChartElement);
            auto oSheet = DataSheet();
            auto& ws = *oSheet;
            // The header and the bucket pseudo-row stay out of the range.
            Between(ws, S + 2, 1, S + mCategoryCount, mSeriesCount + 2)
                ->Sort(ws.Cells(S + 3, 4), sSort == "ascending" ? host::xlAscending : host::xlDescending, host::xlNo,
                       1, false, host::xlTopToBottom);
        }
        return true;
    } catch (const std::exception&) {
        c.common->ReportError("PSChartBuilder.SortDataSheet");
        return false;
    }
}

void PSChartBuilder::AdjustBubbleSizes(const dom::Element& oChartNode) {
    try {
        auto& cf = *c.common;
        bool bShowZeroBubbles = false;
        if (auto oStatic = oChartNode.selectSingleNode("static-attributes"))
            for (auto oAttribute : oStatic.selectNodes("attribute"))
                if (cf.GetAttributeText(oAttribute, "setting") == "show-zero-bubbles") bShowZeroBubbles = true;

        long S = StartRow(oChartNode);
        auto oSheet = DataSheet();
        // The sort has put the largest bubble first.
        double dLargest = host::CDbl(cf.GetCellValue(oSheet, S + 1, 6, 1));
        double dSmallest = dLargest <= 0 ? 1.0 : dLargest / 500;
        for (long lRow = S + 1; lRow <= S + mCategoryCount; ++lRow) {
            double dSize = host::CDbl(cf.GetCellValue(oSheet, lRow, 6, 1));
            // Without the option a bubble of no size stays as it is, for the drawing to leave out.
            if ((dSize > 0 && dSize < dSmallest) || (dSize <= 0 && bShowZeroBubbles))
                oSheet->Cells(lRow, 6)->SetValue(dSmallest);
        }
    } catch (const std::exception&) {
        c.common->ReportError("PSChartBuilder.AdjustBubbleSizes");
    }
}

void PSChartBuilder::InsertBucketData(const dom::Element& oChartElement) {
    try {
        auto& cf = *c.common;
        long S = StartRow(oChartElement);
        auto oSheet = DataSheet();
        for (const auto& [sBucket, dValue] : Obj(mStrategicBuckets).Entries()) {
            oSheet->Cells(S + 1, Position(Obj(mSeriesPositions).Item(sBucket)) + 2)->SetValue(dValue);
            cf.YieldToHost();
        }
    } catch (const std::exception&) {
        c.common->ReportError("PSChartBuilder.InsertBucketData");
    }
}

}  // namespace ps
