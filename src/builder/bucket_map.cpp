// The map of strategic bucket charts: items of the source table against the buckets of the bucket
// table. The rectangle's first row is a pseudo-row that later carries the buckets' own values;
// each item follows in a row of its own, with its colour label and sort key in two pseudo-columns
// and then one column per bucket. Each source row says: this item, in this bucket, this much.
#include "builder/ps_chart_builder.h"
#include "common/common_functions.h"
#include "common/constants.h"
#include "host/workbook.h"
#include "metadata/ps_functions.h"

namespace ps {

namespace {

// Never upper-cased, so no item or bucket name can meet them.
const char* const sBucketRow = "[-StrategicBuckets-]";
const char* const sBlockColor = "[-BlockColor-]";
const char* const sBlockSort = "[-BlockSort-]";

// Each item row is named by the item column.
MapInstructionRef ItemInstruction(long lItemColumn, long lColType, long lColPosition, long lValueType,
                                  const host::Variant& vValue, long lCellType) {
    return MakeInstruction(mrByCell, lItemColumn, lColType, lColPosition, lValueType, vValue, lCellType);
}

}  // namespace

bool PSChartBuilder::BuildStrBuckMap(const dom::Element& oChartElement) {
    try {
        auto& cf = *c.common;
        NewMap();
        long lCategoryCounter = 1, lSeriesCounter = 2;
        mCategoryPositions->Add(sBucketRow, 1L);
        mCategoryNames->Add(sBucketRow, sBucketRow);
        mSeriesPositions->Add(sBlockColor, 1L);
        mSeriesNames->Add(sBlockColor, sBlockColor);
        mSeriesPositions->Add(sBlockSort, 2L);
        mSeriesNames->Add(sBlockSort, sBlockSort);

        std::string sChartName = cf.GetAttributeText(oChartElement, "name");
        std::string sBucketTableID = cf.GetAttributeText(oChartElement, "strategic-bucket-table-id");
        long lBucketNameColumn = host::CLng(cf.GetAttributeText(oChartElement, "bucket-name-column-position"));
        long lBucketValueColumn = host::CLng(cf.GetAttributeText(oChartElement, "bucket-value-column-position"));
        mStrategicBuckets = c.functions->GetStrategicBuckets(Obj(c.colTables).Item(sBucketTableID));

        // Bucket names come upper-cased from their table and stay so in the block.
        for (const auto& [sBucket, dValue] : Obj(mStrategicBuckets).Entries()) {
            std::string sKey = CommonFunctions::SafeString(sBucket);
            ++lSeriesCounter;
            mSeriesPositions->Add(host::UCase(sKey), lSeriesCounter);
            mSeriesNames->Add(host::UCase(sKey), sKey);
        }

        long lTopRow = host::CLng(cf.GetAttributeText(oChartElement, "table-top-row"));
        long lHeight = host::CLng(cf.GetAttributeText(oChartElement, "table-height"));
        long lHeaderRows = host::CLng(cf.GetAttributeText(oChartElement, "header-row-count"));
        long lFirstRow = lTopRow + lHeaderRows;
        long lLastRow = lFirstRow + lHeight - lHeaderRows - 1;
        auto oSheet = Obj(c.oWorkbook).Worksheets()->Item(cf.GetAttributeText(oChartElement, "table-worksheet"));

        auto FirstColumn = [&](const dom::Element& oGroup) {
            return host::CLng(cf.GetAttributeText(oGroup.selectSingleNode("column"), "worksheet-column-number"));
        };

        long lItemColumn = 0;
        if (auto oCategories = oChartElement.selectSingleNode("categories")) {
            lItemColumn = FirstColumn(oCategories);
            for (long lRow = lFirstRow; lRow <= lLastRow; ++lRow) {
                std::string sText = host::CStr(cf.GetCellValue(oSheet, lRow, lItemColumn, 0));
                std::string sKey = host::UCase(sText);
                if (Position(mCategoryPositions->Item(sKey)) < 1) {
                    // The counter includes the pseudo-row, and the name that reaches the limit is
                    // left behind unnumbered: its key still counts as a row of the block.
                    ++lCategoryCounter;
                    if (lCategoryCounter >= lMaxSeries) {
                        cf.ShowMessage(cf.ReplaceTokens(sSeriesLimit, {sChartName}));
                        break;
                    }
                    mCategoryPositions->Item(sKey) = lCategoryCounter;
                    // An item named like a bucket is shown with the bucket's spelling.
                    mCategoryNames->Item(sKey) = mSeriesNames->Exists(sKey) ? mSeriesNames->Item(sKey) : host::Variant(sText);
                }
                cf.YieldToHost();
            }
        }

        // Unlike a bubble chart's, the label column needs headings in rows, not just other than none.
        long lLabelColumn = -1, lSortColumn = -1;
        if (auto oSeries = oChartElement.selectSingleNode("series"))
            if (cf.GetAttributeText(oSeries, "headings-in") == "rows") lLabelColumn = FirstColumn(oSeries);
        if (auto oSortOrder = oChartElement.selectSingleNode("sort-order")) lSortColumn = FirstColumn(oSortOrder);

        mMapInstructions->Add(
            lLabelColumn < 0 ? ItemInstruction(lItemColumn, mrFixed, 1, mvConstant, "[none]", mcText)
                             : ItemInstruction(lItemColumn, mrFixed, 1, mvFromCell, lLabelColumn, mcText));
        mMapInstructions->Add(lSortColumn < 0
                                  ? ItemInstruction(lItemColumn, mrFixed, 2, mvConstant, 1L, mcNumber)
                                  : ItemInstruction(lItemColumn, mrFixed, 2, mvFromCell, lSortColumn, mcNumber));
        mMapInstructions->Add(
            ItemInstruction(lItemColumn, mrByCell, lBucketNameColumn, mvFromCell, lBucketValueColumn, mcNumber));

        if (!CountMap("PSChartBuilder.BuildStrBuckMap", false)) return false;
        return true;
    } catch (const std::exception&) {
        c.common->ReportError("PSChartBuilder.BuildStrBuckMap");
        return false;
    }
}

}  // namespace ps
