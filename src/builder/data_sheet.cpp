// The data sheet VEX_ChartData: one block per chart, stacked from row 1 without gaps, each row
// marked with the chart id in column 1. A block's header row holds the series names from column 3;
// each category row its name in column 2 and its values behind. A block is found by scanning
// column 1, never by data-start-row, and is resized in place by inserting or deleting only the
// rows that differ, so that the series of other charts, which point at fixed addresses below it,
// follow the rows that move under them.
#include "builder/ps_chart_builder.h"
#include "common/common_functions.h"
#include "common/constants.h"
#include "host/constants.h"
#include "host/workbook.h"

namespace ps {

namespace {

// The leading apostrophe makes the host keep a name as text, whatever it looks like.
host::Variant AsText(const host::Variant& vName) { return "'" + host::CStr(vName); }

}  // namespace

DataRectangle::DataRectangle(long lCategories, long lSeries)
    : lCategories_(lCategories), lSeries_(lSeries),
      aCells_(static_cast<size_t>(lCategories > 0 && lSeries > 0 ? lCategories * lSeries : 0)) {}

host::Variant& DataRectangle::operator()(long lCategory, long lSeries) {
    if (lCategory < 1 || lCategory > lCategories_ || lSeries < 1 || lSeries > lSeries_)
        host::Raise(host::err::SubscriptOutOfRange);
    return aCells_[static_cast<size_t>((lCategory - 1) * lSeries_ + (lSeries - 1))];
}

std::optional<DataRectangle> PSChartBuilder::GetSourceData(const dom::Element& oChartElement) {
    try {
        auto& cf = *c.common;
        long lTopRow = host::CLng(cf.GetAttributeText(oChartElement, "table-top-row"));
        long lHeight = host::CLng(cf.GetAttributeText(oChartElement, "table-height"));
        long lHeaderRows = host::CLng(cf.GetAttributeText(oChartElement, "header-row-count"));
        std::string sType = cf.GetAttributeText(oChartElement, "type");
        auto oSheet = Obj(c.oWorkbook).Worksheets()->Item(cf.GetAttributeText(oChartElement, "table-worksheet"));
        DataRectangle aData(mCategoryCount, mSeriesCount);
        host::Dictionary<host::Variant> dFirstSpellings;

        // A key that isn't there stays behind in the dictionary with no position: the data sheet
        // meets it again.
        auto Index = [&](long lType, long lPosition, long lRow, host::Dictionary<host::Variant>& dPositions) {
            if (lType == mrFixed) return lPosition;
            std::string sKey = host::UCase(host::CStr(cf.GetCellValue(oSheet, lRow, lPosition, 0)));
            return Position(dPositions.Item(sKey));
        };

        long lFirstRow = lTopRow + lHeaderRows;
        for (long lRow = lFirstRow; lRow < lFirstRow + lHeight - lHeaderRows; ++lRow) {
            for (auto& oInstruction : Obj(mMapInstructions)) {
                long lCategory = Index(oInstruction->RowReferenceType(), oInstruction->RowReferencePosition(), lRow,
                                       Obj(mCategoryPositions));
                long lSeries = Index(oInstruction->ColReferenceType(), oInstruction->ColReferencePosition(), lRow,
                                     Obj(mSeriesPositions));
                // Beyond the limit of 254, or a cell that names nothing known: the value is dropped.
                if (lCategory < 1 || lSeries < 1) continue;

                host::Variant& vTarget = aData(lCategory, lSeries);
                if (oInstruction->ValueReferenceType() == mvConstant) {
                    vTarget = oInstruction->ValuePositionOrConstant();
                } else if (oInstruction->CellValueType() == mcNumber) {
                    // Whatever can't be read as a number counts 0.
                    long lColumn = host::CLng(oInstruction->ValuePositionOrConstant());
                    double dSum = vTarget.IsEmpty() ? 0.0 : host::CDbl(vTarget);
                    vTarget = dSum + host::CDbl(cf.GetCellValue(oSheet, lRow, lColumn, 1));
                } else {
                    long lColumn = host::CLng(oInstruction->ValuePositionOrConstant());
                    std::string sText = host::CStr(cf.GetCellValue(oSheet, lRow, lColumn, 0));
                    // Labels keep the spelling met first; a bucket chart's labels named like a
                    // bucket take the bucket's.
                    if (sType == "bubble" || sType == "strategic bucket") {
                        std::string sKey = host::UCase(sText);
                        if (sType == "strategic bucket" && Obj(mSeriesNames).Exists(sKey)) {
                            sText = host::CStr(mSeriesNames->Item(sKey));
                        } else if (dFirstSpellings.Exists(sKey)) {
                            sText = host::CStr(dFirstSpellings.Item(sKey));
                        } else {
                            dFirstSpellings.Add(sKey, sText);
                        }
                    }
                    vTarget = sText;
                }
            }
        }
        return aData;
    } catch (const std::exception&) {
        c.common->ReportError("PSChartBuilder.GetSourceData");
        return std::nullopt;
    }
}

bool PSChartBuilder::PopulateDataSheetOffi2007(const dom::Element& oChartElement) {
    try {
        auto& cf = *c.common;
        auto aData = GetSourceData(oChartElement);
        if (!aData) return false;
        if (!CreateDataSheet()) return false;

        std::string sID = cf.GetAttributeText(oChartElement, "id");
        auto oSheet = Obj(c.oWorkbook).Worksheets()->Item(std::string(sDataSheet));
        long lRow = 1, lFirstRow = 0, lRowCount = 0;
        for (;; ++lRow) {
            std::string sText = host::CStr(cf.GetCellValue(oSheet, lRow, 1, 0));
            if (sText.empty()) break;
            if (sText == sID) {
                if (lRowCount == 0) lFirstRow = lRow;
                ++lRowCount;
            }
            cf.YieldToHost();
        }

        bool bWritten;
        if (lRowCount == 0) {
            bWritten = MoveToDataSheet(lRow, oChartElement, sID, *aData, oSheet);
        } else {
            // Only the difference moves, inside the block: other blocks' series follow it.
            long lOldCategories = lRowCount - 1;
            if (lOldCategories >= mCategoryCount) {
                for (long i = 1; i <= lOldCategories - mCategoryCount; ++i)
                    cf.DeleteSheetRow(oSheet, lFirstRow + mCategoryCount);
            } else {
                for (long i = 1; i <= mCategoryCount - lOldCategories; ++i)
                    cf.InsertSheetRow(oSheet, lFirstRow + lRowCount - 1);
            }
            bWritten = MoveToDataSheet(lFirstRow, oChartElement, sID, *aData, oSheet);
        }
        if (!bWritten) {
            // MoveToDataSheet has reported and cleared its error: the description is empty by now.
            cf.ShowMessage(std::string("PSChartBuilder.PopulateDataSheetOffi2007") + vbCrLf);
            return false;
        }
        return true;
    } catch (const std::exception&) {
        c.common->ReportError("PSChartBuilder.PopulateDataSheetOffi2007");
        return false;
    }
}

bool PSChartBuilder::MoveToDataSheet(long lStartRow, const dom::Element& oChartElement, const std::string& sChartID,
                                     DataRectangle& aData, const host::Ref<host::Worksheet>& oSheet) {
    try {
        auto& cf = *c.common;
        auto& ws = Obj(oSheet);
        oChartElement.setAttribute("data-start-row", lStartRow);
        ws.Cells(lStartRow, 1)->SetValue(sChartID);

        for (const auto& [sKey, vPosition] : Obj(mSeriesPositions).Entries()) {
            long p = Position(vPosition);
            if (p > 0) ws.Cells(lStartRow, p + 2)->SetValue(AsText(Obj(mSeriesNames).Item(sKey)));
        }
        // A key the walk left without a position writes a lone apostrophe into the header row's
        // name cell, which shows nothing.
        auto aCategories = Obj(mCategoryPositions).Entries();
        for (const auto& [sKey, vPosition] : aCategories) {
            long p = Position(vPosition);
            if (p > 0) ws.Cells(lStartRow + p, 1)->SetValue(sChartID);
            ws.Cells(lStartRow + p, 2)->SetValue(AsText(Obj(mCategoryNames).Item(sKey)));
        }

        for (long r = 1; r <= mCategoryCount; ++r) {
            for (long col = 1; col <= mSeriesCount; ++col) ws.Cells(lStartRow + r, col + 2)->SetValue(aData(r, col));
            cf.YieldToHost();
        }

        std::string sFormat = cf.GetAttributeText(oChartElement, "number-format");
        if (sFormat.empty()) sFormat = "General";
        std::string sFrom = ws.Cells(lStartRow, 2)->Address();
        std::string sTo = ws.Cells(lStartRow + mCategoryCount, mSeriesCount + 2)->Address();
        ws.Range(sFrom + ":" + sTo)->SetNumberFormat(sFormat);
        return true;
    } catch (const std::exception&) {
        c.common->ReportError("PSChartBuilder.MoveToDataSheet");
        return false;
    }
}

bool PSChartBuilder::CreateDataSheet() {
    try {
        auto& cf = *c.common;
        if (cf.SheetExists(sDataSheet)) return true;
        if (!cf.CreateSheet(sDataSheet, 1, host::xlSheetVeryHidden)) {
            cf.ShowMessage("Unable to create the chart data worksheet");
            return false;
        }
        return true;
    } catch (const std::exception&) {
        c.common->ReportError("PSChartBuilder.CreateDataSheet");
        return false;
    }
}

}  // namespace ps
