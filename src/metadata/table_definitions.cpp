// Table discovery. A table document is never saved: it is recomputed from the workbook on each
// discovery. Its root `table` carries id, name, table-worksheet, table-top-row, table-left-column,
// table-height, header-row-count, the two column counts, is-bucket-candidate and, for range tables,
// bucket-name-column and bucket-value-column; its children are one `label-column` or
// `number-column` per column with a heading, in sheet order.
#include "common/common_functions.h"
#include "host/workbook.h"
#include "metadata/ps_functions.h"

namespace ps {

namespace {

constexpr const char* sRangePrefix = "VEX_TableRange";
constexpr const char* sBucketPrefix = "VEX_SB";

bool HasPrefix(const std::string& sName, const char* sPrefix) {
    return host::UCase(host::Left(sName, host::Len(sPrefix))) == host::UCase(sPrefix);
}

}  // namespace

void PSFunctions::RetrieveTableDefinitions() {
    try {
        c.colTables = std::make_shared<host::Collection<dom::DocumentRef>>();
        auto& wb = Obj(c.oWorkbook);
        auto oNames = wb.Names();
        for (auto& oName : host::Each(*oNames)) {
            std::string sName = oName->Name_();
            if (HasPrefix(sName, sRangePrefix) || HasPrefix(sName, sBucketPrefix)) {
                if (auto oDoc = GetTableDefinitionAsXML(sName)) c.colTables->Add(oDoc, sName);
            }
            c.common->YieldToHost();
        }
        const std::vector<host::Variant> aDataSheets{"Data1", "Data2", "Data3", "Data4", "Data5"};
        auto oSheets = wb.Worksheets();
        for (auto& oSheet : host::Each(*oSheets)) {
            std::string sName = oSheet->Name();
            if (CommonFunctions::ArrayContains(sName, aDataSheets)) {
                if (auto oDoc = GetDataNTableAsXML(sName)) c.colTables->Add(oDoc, sName);
            }
            c.common->YieldToHost();
        }
    } catch (const std::exception&) {
        c.common->ReportError("PSFunctions.RetrieveTableDefinitions");
    }
}

dom::DocumentRef PSFunctions::GetTableDefinitionAsXML(const std::string& sTableRangeName) {
    try {
        auto& cf = *c.common;
        auto oName = Obj(c.oWorkbook).Names()->Item(sTableRangeName);
        std::string sSheet = SheetNameFromRefersTo(oName);
        if (sSheet.empty()) return nullptr;

        auto oRange = Obj(oName).RefersToRange();
        long lTop = oRange->Row();
        long lLeft = oRange->Column();
        long lHeight = oRange->Rows()->Count();
        auto oTitleCell = oRange->Cells(1, 1);
        // An error value doesn't become a title, as it doesn't become text by assignment.
        if (oTitleCell->Value().IsError()) host::Raise(host::err::TypeMismatch);
        // The title as the sheet shows it: a date is named as the user sees it, not by its serial.
        std::string sTitle = oTitleCell->Text();
        if (sTitle.empty()) sTitle = "[no title]";
        // The header alone takes three rows.
        if (lHeight < 3) return nullptr;

        auto oDoc = cf.NewXMLDocument();
        auto oTable = oDoc->createElement("table");
        oTable.setAttribute("id", sTableRangeName);
        oTable.setAttribute("name", sTitle);
        oTable.setAttribute("table-worksheet", sSheet);
        oTable.setAttribute("table-top-row", lTop);
        oTable.setAttribute("table-left-column", lLeft);
        oTable.setAttribute("table-height", lHeight);
        oTable.setAttribute("header-row-count", 3L);

        // Only the rows come from the name; the columns run as wide as the sheet's used area.
        auto oSheet = Obj(c.oWorkbook).Worksheets()->Item(sSheet);
        long lWidth = oSheet->UsedRange()->Columns()->Count();
        long lLabelColumns = 0, lNumberColumns = 0;
        std::string sBucketName, sBucketValue;
        bool bHaveBucketName = false, bHaveBucketValue = false;
        for (long lCol = lLeft; lCol <= lLeft + lWidth - 1; ++lCol) {
            auto oColumn = GetColumnDefinitionAsXML(oSheet, lTop + 2, lCol, lTop + lHeight - 1);
            if (oColumn) {
                oColumn = oTable.appendChild(oColumn);
                if (oColumn.nodeName() == "label-column") {
                    ++lLabelColumns;
                    if (lCol == lLeft) {
                        sBucketName = cf.GetAttributeText(oColumn, "name");
                        bHaveBucketName = true;
                    }
                } else {
                    ++lNumberColumns;
                    if (lCol == lLeft + 1) {
                        sBucketValue = cf.GetAttributeText(oColumn, "name");
                        bHaveBucketValue = true;
                    }
                }
            }
            cf.YieldToHost();
        }
        bool bCandidate = bHaveBucketName && bHaveBucketValue;
        if (!bCandidate) {
            sBucketName.clear();
            sBucketValue.clear();
        }

        oTable.setAttribute("label-column-count", lLabelColumns);
        oTable.setAttribute("number-column-count", lNumberColumns);
        oTable.setAttribute("is-bucket-candidate", bCandidate ? "yes" : "no");
        oTable.setAttribute("bucket-name-column", sBucketName);
        oTable.setAttribute("bucket-value-column", sBucketValue);
        oDoc->appendChild(oTable);
        return oDoc;
    } catch (const std::exception&) {
        c.common->ReportError("PSFunctions.GetTableDefinitionAsXML");
        return nullptr;
    }
}

dom::DocumentRef PSFunctions::GetDataNTableAsXML(const std::string& sSheetName) {
    try {
        auto& cf = *c.common;
        auto oSheet = Obj(c.oWorkbook).Worksheets()->Item(sSheetName);
        auto oUsed = oSheet->UsedRange();
        // Both counts are taken as if the used area began in A1.
        long lHeight = oUsed->Rows()->Count();
        if (lHeight < 2) return nullptr;

        auto oDoc = cf.NewXMLDocument();
        auto oTable = oDoc->createElement("table");
        oTable.setAttribute("id", sSheetName);
        oTable.setAttribute("name", sSheetName);
        oTable.setAttribute("table-worksheet", sSheetName);
        oTable.setAttribute("table-top-row", 1L);
        oTable.setAttribute("table-left-column", 1L);
        oTable.setAttribute("table-height", lHeight);
        oTable.setAttribute("header-row-count", 1L);

        long lWidth = oUsed->Columns()->Count();
        long lLabelColumns = 0, lNumberColumns = 0;
        for (long lCol = 1; lCol <= lWidth; ++lCol) {
            auto oColumn = GetColumnDefinitionAsXML(oSheet, 1, lCol, lHeight);
            if (oColumn) {
                oColumn = oTable.appendChild(oColumn);
                if (oColumn.nodeName() == "label-column") ++lLabelColumns;
                else ++lNumberColumns;
            }
            cf.YieldToHost();
        }
        oTable.setAttribute("label-column-count", lLabelColumns);
        oTable.setAttribute("number-column-count", lNumberColumns);
        oTable.setAttribute("is-bucket-candidate", "no");
        oDoc->appendChild(oTable);
        return oDoc;
    } catch (const std::exception&) {
        c.common->ReportError("PSFunctions.GetDataNTableAsXML");
        return nullptr;
    }
}

dom::Element PSFunctions::GetColumnDefinitionAsXML(const host::Ref<host::Worksheet>& oSheet, long lHeaderRow,
                                                   long lColumn, long lLastRow) {
    try {
        auto& cf = *c.common;
        std::string sHeading = host::CStr(cf.GetCellValue(oSheet, lHeaderRow, lColumn, 0));
        if (sHeading.empty()) return {};

        // A number column until one cell proves otherwise; blanks and spaces prove nothing.
        bool bNumeric = true;
        for (long lRow = lHeaderRow + 1; lRow <= lLastRow; ++lRow) {
            std::string sText = Obj(oSheet).Cells(lRow, lColumn)->Text();
            host::Variant vValue = oSheet->Cells(lRow, lColumn)->Value();
            if (!host::Trim(sText).empty() && !vValue.IsNumeric()) {
                bNumeric = false;
                break;
            }
        }

        auto oDoc = cf.NewXMLDocument();
        auto oColumn = oDoc->createElement(bNumeric ? "number-column" : "label-column");
        oColumn.setAttribute("name", sHeading);
        oColumn.setAttribute("worksheet-column-number", lColumn);
        return oColumn;
    } catch (const std::exception&) {
        c.common->ReportError("PSFunctions.GetColumnDefinitionAsXML");
        return {};
    }
}

std::string PSFunctions::SheetNameFromRefersTo(const host::Ref<host::Name>& oName) {
    try {
        std::string sRefersTo = Obj(oName).RefersTo();
        // A name that is no range (a constant, a formula) fails here.
        oName->RefersToRange()->Cells(1, 1);

        // Apostrophes, colons and exclamation marks are single bytes that never occur inside the
        // encoding of another character, so the walk may go byte by byte.
        std::string sResult;
        bool bQuoted = false;
        size_t i = 1;  // after the "="
        while (i < sRefersTo.size()) {
            char ch = sRefersTo[i];
            if (ch == '\'' && !bQuoted) {
                bQuoted = true;
                ++i;
            } else if (ch == '\'' && i + 1 < sRefersTo.size() && sRefersTo[i + 1] == '\'') {
                sResult += '\'';
                i += 2;
            } else if (ch == '\'' || ch == ':' || (ch == '!' && !bQuoted)) {
                break;
            } else {
                sResult += ch;
                ++i;
            }
        }
        return sResult;
    } catch (const std::exception&) {
        return {};
    }
}

}  // namespace ps
