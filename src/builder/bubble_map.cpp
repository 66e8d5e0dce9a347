// The map of bubble charts. Each distinct text of the category column is one bubble; its colour
// label, X, Y and size are four fixed pseudo-columns of the rectangle, so the data sheet writes a
// bubble block like any other. Rows that share a bubble name sum X, Y and size; the last row's
// colour label stands.
#include "builder/ps_chart_builder.h"
#include "common/common_functions.h"
#include "common/constants.h"
#include "forms/frontend.h"
#include "host/workbook.h"

namespace ps {

namespace {

// Both key and name; never upper-cased, so no bubble name can meet them.
const char* const aBubbleColumns[] = {"[-BubbleColor-]", "[-XAxisValue-]", "[-YAxisValue-]", "[-BubbleSize-]"};

// Each bubble row is named by the category column and fills one of the four fixed pseudo-columns.
MapInstructionRef BubbleInstruction(long lNameColumn, long lSeries, long lValueType, const host::Variant& vValue,
                                    long lCellType) {
    return MakeInstruction(mrByCell, lNameColumn, mrFixed, lSeries, lValueType, vValue, lCellType);
}

}  // namespace

bool PSChartBuilder::BuildBubbleMap(const dom::Element& oChartElement) {
    try {
        auto& cf = *c.common;
        NewMap();

        long lSeries = 0;
        for (const char* sColumn : aBubbleColumns) {
            mSeriesPositions->Add(sColumn, ++lSeries);
            mSeriesNames->Add(sColumn, sColumn);
        }

        std::string sChartName = cf.GetAttributeText(oChartElement, "name");
        long lTopRow = host::CLng(cf.GetAttributeText(oChartElement, "table-top-row"));
        long lHeight = host::CLng(cf.GetAttributeText(oChartElement, "table-height"));
        long lHeaderRows = host::CLng(cf.GetAttributeText(oChartElement, "header-row-count"));
        long lFirstRow = lTopRow + lHeaderRows;
        long lLastRow = lFirstRow + lHeight - lHeaderRows - 1;
        auto oSheet = Obj(c.oWorkbook).Worksheets()->Item(cf.GetAttributeText(oChartElement, "table-worksheet"));

        auto FirstColumn = [&](const dom::Element& oGroup) {
            return host::CLng(cf.GetAttributeText(oGroup.selectSingleNode("column"), "worksheet-column-number"));
        };

        // The categories' headings-in isn't read: bubble names always come down a column.
        long lNameColumn = 0, lBubbleCounter = 0;
        if (auto oCategories = oChartElement.selectSingleNode("categories")) {
            lNameColumn = FirstColumn(oCategories);
            for (long lRow = lFirstRow; lRow <= lLastRow; ++lRow) {
                std::string sText = host::CStr(cf.GetCellValue(oSheet, lRow, lNameColumn, 0));
                std::string sKey = host::UCase(sText);
                if (Position(mCategoryPositions->Item(sKey)) < 1) {
                    ++lBubbleCounter;
                    mCategoryPositions->Item(sKey) = lBubbleCounter;
                    mCategoryNames->Item(sKey) = sText;
                }
                // Behind the numbering: the 254th name stops the walk at once, even in the last row.
                if (lBubbleCounter >= lMaxSeries) {
                    cf.ShowMessage(cf.ReplaceTokens(sSeriesLimit, {sChartName}));
                    break;
                }
            }
        }

        long lColorColumn = -1;
        if (auto oSeries = oChartElement.selectSingleNode("series"))
            if (cf.GetAttributeText(oSeries, "headings-in") != "none") lColorColumn = FirstColumn(oSeries);
        long lXColumn = 0, lYColumn = 0, lSizeColumn = -1;
        if (auto oX = oChartElement.selectSingleNode("x-values")) lXColumn = FirstColumn(oX);
        if (auto oY = oChartElement.selectSingleNode("values")) lYColumn = FirstColumn(oY);
        if (auto oSizes = oChartElement.selectSingleNode("bubble-sizes")) lSizeColumn = FirstColumn(oSizes);

        mMapInstructions->Add(lColorColumn < 0 ? BubbleInstruction(lNameColumn, 1, mvConstant, "[none]", mcText)
                                               : BubbleInstruction(lNameColumn, 1, mvFromCell, lColorColumn, mcText));
        mMapInstructions->Add(BubbleInstruction(lNameColumn, 2, mvFromCell, lXColumn, mcNumber));
        mMapInstructions->Add(BubbleInstruction(lNameColumn, 3, mvFromCell, lYColumn, mcNumber));
        // Without sizes every bubble is 1, however many rows it gathers.
        mMapInstructions->Add(lSizeColumn < 0 ? BubbleInstruction(lNameColumn, 4, mvConstant, 1L, mcNumber)
                                              : BubbleInstruction(lNameColumn, 4, mvFromCell, lSizeColumn, mcNumber));

        if (!CountMap("PSChartBuilder.BuildBubbleMap", true)) return false;
        return true;
    } catch (const std::exception&) {
        c.common->ReportError("PSChartBuilder.BuildBubbleMap");
        return false;
    }
}

}  // namespace ps
