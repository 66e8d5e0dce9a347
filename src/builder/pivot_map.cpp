// The pivot map of area, bar, column and pie charts. The map holds no data, only rules and the
// numbering of categories and series: the rules run once for each table row when the data sheet
// is written. Indices are given in order of first appearance and keyed by upper-cased displayed
// text, so North and NORTH are one category shown with the spelling met first.
#include "builder/ps_chart_builder.h"
#include "common/common_functions.h"
#include "common/constants.h"
#include "forms/frontend.h"
#include "host/workbook.h"

namespace ps {

namespace {

MapInstructionRef NewInstruction() { return std::make_shared<CPSMapInstruction>(); }

}  // namespace

void PSChartBuilder::NewMap() {
    mCategoryPositions = std::make_shared<host::Dictionary<host::Variant>>();
    mCategoryNames = std::make_shared<host::Dictionary<host::Variant>>();
    mSeriesPositions = std::make_shared<host::Dictionary<host::Variant>>();
    mSeriesNames = std::make_shared<host::Dictionary<host::Variant>>();
    mMapInstructions = std::make_shared<host::Collection<MapInstructionRef>>();
}

bool PSChartBuilder::CountMap(const std::string& sWhere, bool bPlainBox) {
    mCategoryCount = mCategoryPositions->Count();
    mSeriesCount = mSeriesPositions->Count();
    if (mCategoryCount * mSeriesCount * mMapInstructions->Count() > 0) return true;
    std::string sMessage = sWhere + vbCrLf + "Failed to populate a data definition collection";
    // The pivot and bubble maps say it in a plain box, which bears no product title.
    if (bPlainBox) c.dialogs.MsgBox(sMessage, forms::vbOKOnly, "");
    else c.common->ShowMessage(sMessage);
    return false;
}

bool PSChartBuilder::BuildPivotMap(const dom::Element& oChartElement) {
    try {
        auto& cf = *c.common;
        std::string sType = cf.GetAttributeText(oChartElement, "type");
        if (sType == "bubble") return BuildBubbleMap(oChartElement);
        if (sType == "strategic bucket") return BuildStrBuckMap(oChartElement);

        NewMap();

        std::string sChartName = cf.GetAttributeText(oChartElement, "name");
        long lTopRow = host::CLng(cf.GetAttributeText(oChartElement, "table-top-row"));
        long lHeight = host::CLng(cf.GetAttributeText(oChartElement, "table-height"));
        long lHeaderRows = host::CLng(cf.GetAttributeText(oChartElement, "header-row-count"));
        long lFirstRow = lTopRow + lHeaderRows;
        long lLastRow = lFirstRow + lHeight - lHeaderRows - 1;
        auto oSheet = Obj(c.oWorkbook).Worksheets()->Item(cf.GetAttributeText(oChartElement, "table-worksheet"));

        long lCategoryCounter = 0, lSeriesCounter = 0;
        long lCategoryColumn = 0, lSeriesColumn = 0, lValueColumn = 0;
        std::string sCategoriesIn, sSeriesIn;

        // Numbers the distinct displayed texts of one column down the data rows.
        auto NumberRow = [&](long lRow, long lColumn, long& lCounter, host::Dictionary<host::Variant>& dPositions,
                             host::Dictionary<host::Variant>& dNames) {
            std::string sText = host::CStr(cf.GetCellValue(oSheet, lRow, lColumn, 0));
            std::string sKey = host::UCase(sText);
            if (Position(dPositions.Item(sKey)) < 1) {
                ++lCounter;
                dPositions.Item(sKey) = lCounter;
                dNames.Item(sKey) = sText;
            }
        };

        if (auto oCategories = oChartElement.selectSingleNode("categories")) {
            sCategoriesIn = cf.GetAttributeText(oCategories, "headings-in");
            for (auto oColumn : oCategories.selectNodes("column")) {
                std::string sName = cf.GetAttributeText(oColumn, "name");
                long lColumn = host::CLng(cf.GetAttributeText(oColumn, "worksheet-column-number"));
                if (sCategoriesIn == "columns") {
                    ++lCategoryCounter;
                    // Add refuses a second heading that differs only in case.
                    mCategoryPositions->Add(host::UCase(sName), lCategoryCounter);
                    mCategoryNames->Add(host::UCase(sName), sName);
                    auto oInstruction = NewInstruction();
                    oInstruction->SetRowReferenceType(mrFixed);
                    oInstruction->SetRowReferencePosition(lCategoryCounter);
                    oInstruction->SetValueReferenceType(mvFromCell);
                    oInstruction->SetValuePositionOrConstant(lColumn);
                    mMapInstructions->Add(oInstruction);
                } else {
                    for (long lRow = lFirstRow; lRow <= lLastRow; ++lRow)
                        NumberRow(lRow, lColumn, lCategoryCounter, *mCategoryPositions, *mCategoryNames);
                    lCategoryColumn = lColumn;
                }
                cf.YieldToHost();
            }
        }

        if (auto oSeries = oChartElement.selectSingleNode("series")) {
            sSeriesIn = cf.GetAttributeText(oSeries, "headings-in");
            for (auto oColumn : oSeries.selectNodes("column")) {
                std::string sName = cf.GetAttributeText(oColumn, "name");
                long lColumn = host::CLng(cf.GetAttributeText(oColumn, "worksheet-column-number"));
                if (sSeriesIn == "columns") {
                    // Tested before each further column: exactly 254 columns pass in silence.
                    if (lSeriesCounter >= lMaxSeries) {
                        cf.ShowMessage(cf.ReplaceTokens(sSeriesLimit, {sChartName}));
                        break;
                    }
                    ++lSeriesCounter;
                    mSeriesPositions->Add(host::UCase(sName), lSeriesCounter);
                    mSeriesNames->Add(host::UCase(sName), sName);
                    auto oInstruction = NewInstruction();
                    oInstruction->SetColReferenceType(mrFixed);
                    oInstruction->SetColReferencePosition(lSeriesCounter);
                    oInstruction->SetValueReferenceType(mvFromCell);
                    oInstruction->SetValuePositionOrConstant(lColumn);
                    mMapInstructions->Add(oInstruction);
                } else if (sSeriesIn == "rows") {
                    // Tested before each further row, whether or not it brings a new name.
                    for (long lRow = lFirstRow; lRow <= lLastRow; ++lRow) {
                        if (lSeriesCounter >= lMaxSeries) {
                            cf.ShowMessage(cf.ReplaceTokens(sSeriesLimit, {sChartName}));
                            break;
                        }
                        NumberRow(lRow, lColumn, lSeriesCounter, *mSeriesPositions, *mSeriesNames);
                    }
                    lSeriesColumn = lColumn;
                }
                cf.YieldToHost();
            }
        }

        if (auto oValues = oChartElement.selectSingleNode("values")) {
            auto oColumn = oValues.selectSingleNode("column");
            std::string sValueName = cf.GetAttributeText(oColumn, "name");
            lValueColumn = host::CLng(cf.GetAttributeText(oColumn, "worksheet-column-number"));
            // Without a series choice the chart has one series, named after the value column.
            if (mSeriesPositions->Count() == 0) {
                ++lSeriesCounter;
                mSeriesPositions->Add(host::UCase(sValueName), lSeriesCounter);
                mSeriesNames->Add(host::UCase(sValueName), sValueName);
            }
        }

        if (sCategoriesIn == "columns" && sSeriesIn == "none") {
            ++lSeriesCounter;
            mSeriesPositions->Item("VALUE") = lSeriesCounter;
            mSeriesNames->Item("VALUE") = "Value";
            for (auto& oInstruction : *mMapInstructions) {
                oInstruction->SetColReferenceType(mrFixed);
                oInstruction->SetColReferencePosition(lSeriesCounter);
                oInstruction->SetCellValueType(mcNumber);
            }
        } else if (sCategoriesIn == "rows" && sSeriesIn == "none") {
            mMapInstructions->Add(
                MakeInstruction(mrByCell, lCategoryColumn, mrFixed, 1, mvFromCell, lValueColumn, mcNumber));
        } else if (sCategoriesIn == "columns") {
            // With series in columns too, the series column stays 0 and no value can be placed.
            for (auto& oInstruction : *mMapInstructions) {
                oInstruction->SetColReferenceType(mrByCell);
                oInstruction->SetColReferencePosition(lSeriesColumn);
                oInstruction->SetCellValueType(mcNumber);
            }
        } else if (sCategoriesIn == "rows" && sSeriesIn == "columns") {
            for (auto& oInstruction : *mMapInstructions) {
                oInstruction->SetRowReferenceType(mrByCell);
                oInstruction->SetRowReferencePosition(lCategoryColumn);
                oInstruction->SetCellValueType(mcNumber);
            }
        } else if (sCategoriesIn == "rows" && sSeriesIn == "rows") {
            mMapInstructions->Add(
                MakeInstruction(mrByCell, lCategoryColumn, mrByCell, lSeriesColumn, mvFromCell, lValueColumn, mcNumber));
        }

        if (!CountMap("PSChartBuilder.BuildPivotMap", true)) return false;
        return true;
    } catch (const std::exception&) {
        c.common->ReportError("PSChartBuilder.BuildPivotMap");
        return false;
    }
}

}  // namespace ps
