// The bucket table of a strategic bucket chart: which tables can serve a source table, and the
// totals per bucket that one of them holds.
#include "common/common_functions.h"
#include "host/workbook.h"
#include "metadata/ps_functions.h"

namespace ps {

CollectionRef<dom::DocumentRef> PSFunctions::GetBucketCandidates(const dom::Element& oTableElement) {
    auto colCandidates = std::make_shared<host::Collection<dom::DocumentRef>>();
    try {
        auto& cf = *c.common;
        std::string sSourceID = cf.GetAttributeText(oTableElement, "id");
        // A bucket table is tied to its source by headings: its first column has to be a label
        // column of the source, its second a number column there.
        host::Dictionary<long> dLabelColumns, dNumberColumns;
        for (auto oColumn : oTableElement.selectNodes("label-column"))
            dLabelColumns.Item(host::UCase(cf.GetAttributeText(oColumn, "name"))) = 1;
        for (auto oColumn : oTableElement.selectNodes("number-column"))
            dNumberColumns.Item(host::UCase(cf.GetAttributeText(oColumn, "name"))) = 1;

        for (auto& oDoc : Obj(c.colTables)) {
            auto oTable = Obj(oDoc).selectSingleNode("table");
            std::string sID = cf.GetAttributeText(oTable, "id");
            std::string sCandidate = cf.GetAttributeText(oTable, "is-bucket-candidate");
            std::string sNameColumn = cf.GetAttributeText(oTable, "bucket-name-column");
            std::string sValueColumn = cf.GetAttributeText(oTable, "bucket-value-column");
            if (host::UCase(sID) != host::UCase(sSourceID) && sCandidate == "yes" &&
                dLabelColumns.Exists(host::UCase(sNameColumn)) && dNumberColumns.Exists(host::UCase(sValueColumn)))
                colCandidates->Add(oDoc, sID);
            cf.YieldToHost();
        }
    } catch (const std::exception&) {
        c.common->ReportError("PSFunctions.GetBucketCandidates");
    }
    return colCandidates;
}

BucketTotals PSFunctions::GetStrategicBuckets(const dom::DocumentRef& oTableDoc) {
    try {
        auto& cf = *c.common;
        auto oTable = Obj(oTableDoc).selectSingleNode("table");
        std::string sSheet = cf.GetAttributeText(oTable, "table-worksheet");
        long lTop = host::CLng(cf.GetAttributeText(oTable, "table-top-row"));
        long lHeaderRows = host::CLng(cf.GetAttributeText(oTable, "header-row-count"));
        long lHeight = host::CLng(cf.GetAttributeText(oTable, "table-height"));
        long lLeft = host::CLng(cf.GetAttributeText(oTable, "table-left-column"));
        auto oSheet = Obj(c.oWorkbook).Worksheets()->Item(sSheet);

        // The table's height decides, not its content: empty rows add to the bucket "".
        auto dBuckets = std::make_shared<host::Dictionary<double>>();
        for (long lRow = lTop + lHeaderRows; lRow <= lTop + lHeight - 1; ++lRow) {
            std::string sKey = host::UCase(host::CStr(cf.GetCellValue(oSheet, lRow, lLeft, 0)));
            double dAmount = host::CDbl(cf.GetCellValue(oSheet, lRow, lLeft + 1, 1));
            dBuckets->Item(sKey) += dAmount;
            cf.YieldToHost();
        }
        return dBuckets;
    } catch (const std::exception&) {
        c.common->ReportError("PSFunctions.GetStrategicBuckets");
        return nullptr;
    }
}

}  // namespace ps
