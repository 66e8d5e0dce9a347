// Source validation. Tables change between refreshes; before a chart is built its definition is
// checked against colTables, and the table's geometry and column numbers are copied into it,
// since everything later in the build reads them from the chart element, never from the table.
#include "builder/ps_chart_builder.h"
#include "common/common_functions.h"

namespace ps {

namespace {

const char* const sNoTable =
    "Chart '/TKN/' has become unavailable because its source table no longer exists in this workbook.";
// The missing blank after "data." is the message as users know it.
const char* const sNoData =
    "Chart '/TKN/' has become unavailable because table '/TKN/' \r\ncurrently contains no data.The chart will "
    "reappear the next time the table is refreshed with one or more rows of data.";
const char* const sBadColumn =
    "Chart '/TKN/' has become unavailable because column '/TKN/'\r\nin table '/TKN/' is missing or contains "
    "invalid data.";
const char* const sNoBucketTable =
    "Chart '/TKN/' has become unavailable because its strategic bucket table no longer exists in this workbook.";
const char* const sBucketMismatch =
    "Chart '/TKN/' has become unavailable because its strategic bucket table doesn't match the source table.";

// The groups of columns checked, in the order their messages take precedence.
const char* const aColumnGroups[] = {"categories", "series", "values", "x-values", "bubble-sizes", "sort-order"};

// A number attribute as the run-time reads it into a Long: text that isn't a number raises 13.
long NumberAttribute(CommonFunctions& cf, const dom::Element& oElement, const char* sName) {
    return host::CLng(cf.GetAttributeText(oElement, sName));
}

}  // namespace

bool PSChartBuilder::ValidateSourceData(const dom::Element& oChartElement) {
    try {
        auto& cf = *c.common;
        std::string sTableID = cf.GetAttributeText(oChartElement, "table-id");
        std::string sChartName = cf.GetAttributeText(oChartElement, "name");
        if (!CommonFunctions::CollectionHasKey(sTableID, c.colTables)) {
            cf.ShowMessage(cf.ReplaceTokens(sNoTable, {sChartName}));
            return false;
        }

        auto oTable = Obj(Obj(c.colTables).Item(sTableID)).selectSingleNode("table");
        std::string sTableSheet = cf.GetAttributeText(oTable, "table-worksheet");
        std::string sTableName = cf.GetAttributeText(oTable, "name");
        long lTopRow = NumberAttribute(cf, oTable, "table-top-row");
        long lLeftColumn = NumberAttribute(cf, oTable, "table-left-column");
        long lHeight = NumberAttribute(cf, oTable, "table-height");
        long lHeaderRows = NumberAttribute(cf, oTable, "header-row-count");
        // Written before any further check: a chart that fails below keeps the geometry it got.
        oChartElement.setAttribute("table-worksheet", sTableSheet);
        oChartElement.setAttribute("table-top-row", lTopRow);
        oChartElement.setAttribute("table-left-column", lLeftColumn);
        oChartElement.setAttribute("table-height", lHeight);
        oChartElement.setAttribute("header-row-count", lHeaderRows);

        if (lHeight <= lHeaderRows) {
            cf.ShowMessage(cf.ReplaceTokens(sNoData, {sChartName, sTableName}));
            return false;
        }

        for (const char* sGroup : aColumnGroups) {
            auto oGroup = oChartElement.selectSingleNode(sGroup);
            if (!oGroup) continue;
            std::string sGroupName = sGroup;
            // Only the two dimensions say where their headings lie; the argument changes nothing.
            std::string sHeadingsIn = sGroupName == "categories" || sGroupName == "series"
                                          ? cf.GetAttributeText(oGroup, "headings-in")
                                          : "columns";
            for (auto oColumn : oGroup.selectNodes("column")) {
                if (!ValidateSourceColumn(oColumn, oTable, sHeadingsIn)) {
                    cf.ShowMessage(
                        cf.ReplaceTokens(sBadColumn, {sChartName, cf.GetAttributeText(oColumn, "name"), sTableName}));
                    return false;
                }
                cf.YieldToHost();
            }
        }

        std::string sBucketTableID = cf.GetAttributeText(oChartElement, "strategic-bucket-table-id");
        if (!sBucketTableID.empty()) {
            if (!CommonFunctions::CollectionHasKey(sBucketTableID, c.colTables)) {
                cf.ShowMessage(cf.ReplaceTokens(sNoBucketTable, {sChartName}));
                return false;
            }
            auto oBucketTable = Obj(Obj(c.colTables).Item(sBucketTableID)).selectSingleNode("table");
            std::string sBucketNameColumn = cf.GetAttributeText(oBucketTable, "bucket-name-column");
            std::string sBucketValueColumn = cf.GetAttributeText(oBucketTable, "bucket-value-column");

            oTable = Obj(Obj(c.colTables).Item(sTableID)).selectSingleNode("table");
            long lPosition = BucketColumnPosition(sBucketNameColumn, "bucket-name-column", oTable);
            if (lPosition == 0) {
                cf.ShowMessage(cf.ReplaceTokens(sBucketMismatch, {sChartName}));
                return false;
            }
            oChartElement.setAttribute("bucket-name-column-position", lPosition);
            lPosition = BucketColumnPosition(sBucketValueColumn, "bucket-value-column", oTable);
            if (lPosition == 0) {
                cf.ShowMessage(cf.ReplaceTokens(sBucketMismatch, {sChartName}));
                return false;
            }
            oChartElement.setAttribute("bucket-value-column-position", lPosition);
        }
        return true;
    } catch (const std::exception&) {
        c.common->ReportError("PSChartBuilder.ValidateSourceData");
        return false;
    }
}

bool PSChartBuilder::ValidateSourceColumn(const dom::Element& oColumnElement, const dom::Element& oTableElement,
                                          const std::string&) {
    try {
        auto& cf = *c.common;
        std::string sWanted = host::UCase(cf.GetAttributeText(oColumnElement, "name"));
        // Only the name decides, and label columns are asked first: a column may match one of
        // the other family than the one it was chosen from.
        for (const char* sFamily : {"label-column", "number-column"}) {
            for (auto oCandidate : oTableElement.selectNodes(sFamily)) {
                if (host::UCase(cf.GetAttributeText(oCandidate, "name")) == sWanted) {
                    oColumnElement.setAttribute("worksheet-column-number",
                                                NumberAttribute(cf, oCandidate, "worksheet-column-number"));
                    return true;
                }
                cf.YieldToHost();
            }
        }
        return false;
    } catch (const std::exception&) {
        c.common->ReportError("PSChartBuilder.ValidateSourceColumn");
        return false;
    }
}

long PSChartBuilder::BucketColumnPosition(const std::string& sColumnName, const std::string& sColumnKind,
                                          const dom::Element& oTableElement) {
    try {
        auto& cf = *c.common;
        const char* sFamily = sColumnKind == "bucket-name-column"    ? "label-column"
                              : sColumnKind == "bucket-value-column" ? "number-column"
                                                                     : nullptr;
        if (!sFamily) return 0;
        std::string sWanted = host::UCase(sColumnName);
        for (auto oCandidate : oTableElement.selectNodes(sFamily))
            if (host::UCase(cf.GetAttributeText(oCandidate, "name")) == sWanted)
                return NumberAttribute(cf, oCandidate, "worksheet-column-number");
        return 0;
    } catch (const std::exception&) {
        c.common->ReportError("PSChartBuilder.BucketColumnPosition");
        return 0;
    }
}

}  // namespace ps
