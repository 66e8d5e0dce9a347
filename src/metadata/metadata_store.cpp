// The definition store: the very hidden sheet VEX_ChartDefinitions, with a mark in A1 and one
// chart document per row from A2, without gaps. A row's only address is the id inside its text.
// The link from a definition to its drawing is the AlternativeText of the chart's shape and of its
// comment box, which survives the user moving the chart or renaming its shape.
#include "common/common_functions.h"
#include "common/constants.h"
#include "host/chart.h"
#include "host/constants.h"
#include "host/workbook.h"
#include "metadata/ps_functions.h"
#include "readback/ps_rev_engineer_chart.h"

namespace ps {

namespace {

// The colour function's clamping: 256 stands for 255.
long RGB(long r, long g, long b) {
    auto clamp = [](long v) { return v < 0 ? 0 : v > 255 ? 255 : v; };
    return clamp(r) + clamp(g) * 256 + clamp(b) * 65536;
}

host::Ref<host::Worksheet> DefinitionSheet(Component& c) {
    return Obj(c.oWorkbook).Worksheets()->Item(std::string(sDefinitionSheet));
}

}  // namespace

// ---------------------------------------------------------------- loading

void PSFunctions::RetrieveChartDefinitions() {
    try {
        auto& cf = *c.common;
        c.colCharts = std::make_shared<host::Collection<dom::DocumentRef>>();
        c.colChartObjects = std::make_shared<host::Collection<host::Ref<host::Chart>>>();
        c.colChartShapes = std::make_shared<host::Collection<host::Ref<host::Shape>>>();
        KeepMetadataSheetsVeryHidden();

        bool bNewSheet = false;
        if (!cf.SheetExists(sDefinitionSheet)) {
            if (!cf.CreateSheet(sDefinitionSheet, 1, host::xlSheetVeryHidden)) {
                cf.ShowMessage("Unable to create the metadata worksheet");
                return;
            }
            DefinitionSheet(c)->Cells(1, 1)->SetValue(sDefinitionSheetMark);
            bNewSheet = true;
        } else {
            auto oSheet = DefinitionSheet(c);
            // From the first row on, a failure is the row's fault: the row leaves the sheet
            // without a word and the walk goes on with the row that takes its place.
            for (long lRow = 2;;) {
                std::string sText = host::CStr(cf.GetCellValue(oSheet, lRow, 1, 2));
                if (sText.empty()) break;
                bool bKeep = false;
                try {
                    bKeep = LoadChartDefinitionRow(sText);
                } catch (const std::exception&) {
                    bKeep = false;
                }
                if (!bKeep && cf.DeleteSheetRow(oSheet, lRow)) continue;
                ++lRow;
            }
        }
        ValidateChartsAgainstTables();
        if (bNewSheet) EnsureWorkbookPalette();
    } catch (const std::exception&) {
        c.common->ReportError("PSFunctions.RetrieveChartDefinitions");
    }
}

bool PSFunctions::LoadChartDefinitionRow(const std::string& sText) {
    auto& cf = *c.common;
    auto oDoc = ParseChartDefinition(sText);
    if (!oDoc) return false;
    auto oChart = oDoc->selectSingleNode("chart");
    std::string sID = cf.GetAttributeText(oChart, "id");
    std::string sTableID = cf.GetAttributeText(oChart, "table-id");
    std::string sSheet = FindChartSheet(sID);
    // Another program may have re-saved the chart without its link; only a chart that is really
    // gone, as one the user deleted, takes its definition along.
    bool bRelinked = false;
    if (sSheet.empty()) {
        sSheet = FindLostChart(sID, oChart);
        bRelinked = !sSheet.empty();
    }
    std::string sTableSheet = GetTableSheetName(sTableID);
    if (sSheet.empty()) return false;

    oChart.setAttribute("chart-worksheet", sSheet);
    oChart.setAttribute("table-worksheet", sTableSheet);
    auto oShape = FindChartShape(sID, sSheet);
    oChart.setAttribute("chart-shape-name", oShape->Name());
    auto oChartObject =
        Obj(c.oWorkbook).Worksheets()->Item(sSheet)->ChartObjects(host::Variant(oShape->Name()))->Chart();
    auto oComment = FindChartComment(sID, sSheet);
    if (!oComment) oComment = FindLostComment(sID, sSheet, oChart);
    // A box that went with the link was not deleted by the user: the refresh draws it again.
    ReadBackChart(oDoc, oChartObject, oComment, oComment || !bRelinked);
    if (bRelinked) KeepDrawnLegend(oDoc, oChartObject);

    // A second row with the same id fails here and goes.
    Obj(c.colChartObjects).Add(oChartObject, sID);
    Obj(c.colCharts).Add(oDoc, sID);
    if (oComment) Obj(c.colChartShapes).Add(oComment, sID);
    return true;
}

void PSFunctions::ReadBackChart(const dom::DocumentRef& oDoc, const host::Ref<host::Chart>& oChart,
                                const host::Ref<host::Shape>& oComment, bool bReadComment) {
    // RevEngineerChart has no error block: its failure is the row's.
    c.readback->RevEngineerChart(oChart, oDoc);
    if (bReadComment) c.readback->RevEngineerComment(oComment, oDoc);
}

// ---------------------------------------------------------------- charts on sheets

std::string PSFunctions::FindChartSheet(const std::string& sChartID) {
    auto oSheets = Obj(c.oWorkbook).Worksheets();
    for (auto& oSheet : host::Each(*oSheets)) {
        auto oShapes = oSheet->Shapes();
        for (auto& oShape : host::Each(*oShapes))
            if (oShape->Type() == host::msoChart && oShape->AlternativeText() == sChartID) return oSheet->Name();
        c.common->YieldToHost();
    }
    return {};
}

host::Ref<host::Shape> PSFunctions::FindChartShape(const std::string& sChartID, const std::string& sSheetName) {
    auto oShapes = Obj(c.oWorkbook).Worksheets()->Item(sSheetName)->Shapes();
    for (auto& oShape : host::Each(*oShapes))
        if (oShape->Type() == host::msoChart && oShape->AlternativeText() == sChartID) return oShape;
    return nullptr;
}

host::Ref<host::Chart> PSFunctions::FindChartObject(const std::string& sChartID, const std::string& sSheetName) {
    auto oShape = FindChartShape(sChartID, sSheetName);
    if (!oShape) return nullptr;
    return Obj(c.oWorkbook).Worksheets()->Item(sSheetName)->ChartObjects(host::Variant(oShape->Name()))->Chart();
}

host::Ref<host::Shape> PSFunctions::FindChartComment(const std::string& sChartID, const std::string& sSheetName) {
    auto oSheet = Obj(c.oWorkbook).Worksheets()->Item(sSheetName);
    auto oShapes = oSheet->Shapes();
    for (auto& oShape : host::Each(*oShapes))
        if (oShape->Type() == host::msoTextBox && oShape->AlternativeText() == sChartID) return oShape;
    return nullptr;
}

// ---------------------------------------------------------------- tables

std::string PSFunctions::GetTableSheetName(const std::string& sTableID) {
    if (CommonFunctions::CollectionHasKey(sTableID, c.colTables))
        return c.common->GetAttributeText(Obj(c.colTables).Item(sTableID)->selectSingleNode("table"), "table-worksheet");
    return sDeletedTableSheet;
}

void PSFunctions::ValidateChartsAgainstTables() {
    try {
        auto& cf = *c.common;
        for (auto& oDoc : Obj(c.colCharts)) {
            auto oChart = Obj(oDoc).selectSingleNode("chart");
            std::string sType = cf.GetAttributeText(oChart, "type");
            std::string sTableID = cf.GetAttributeText(oChart, "table-id");
            std::string sBucketTableID = cf.GetAttributeText(oChart, "strategic-bucket-table-id");
            bool bValid = true;
            dom::Element oTable;
            if (!CommonFunctions::CollectionHasKey(sTableID, c.colTables)) {
                bValid = false;
            } else {
                oTable = Obj(c.colTables->Item(sTableID)).selectSingleNode("table");
                long lHeight = host::CLng(cf.GetAttributeText(oTable, "table-height"));
                long lHeaderRows = host::CLng(cf.GetAttributeText(oTable, "header-row-count"));
                long lLabelColumns = host::CLng(cf.GetAttributeText(oTable, "label-column-count"));
                long lNumberColumns = host::CLng(cf.GetAttributeText(oTable, "number-column-count"));
                // At least one row of data, one label column and one number column.
                bValid = lHeaderRows < lHeight && lLabelColumns >= 1 && lNumberColumns >= 1;
            }
            if (sType == "strategic bucket" && bValid) {
                auto colCandidates = GetBucketCandidates(oTable);
                if (!CommonFunctions::CollectionHasKey(sBucketTableID, colCandidates)) bValid = false;
            }
            oChart.setAttribute("table-corrupted", bValid ? "no" : "yes");
            cf.YieldToHost();
        }
    } catch (const std::exception&) {
        c.common->ReportError("PSFunctions.ValidateChartsAgainstTables");
    }
}

// ---------------------------------------------------------------- saving

bool PSFunctions::SaveChartDefinition(const dom::DocumentRef& oChartDoc) {
    try {
        auto& cf = *c.common;
        auto oChart = Obj(oChartDoc).selectSingleNode("chart");
        std::string sID = cf.GetAttributeText(oChart, "id");
        // The whole upgrade of an older definition: it carries the version from its first save on.
        if (cf.GetAttributeText(oChart, "ps-chart-schema-version") != sChartSchemaVersion)
            oChart.setAttribute("ps-chart-schema-version", sChartSchemaVersion);

        // Its own row, or the first empty one; rows that don't parse are stepped over and left.
        auto oSheet = DefinitionSheet(c);
        long lRow = 2;
        for (;; ++lRow) {
            std::string sText = host::CStr(cf.GetCellValue(oSheet, lRow, 1, 2));
            if (sText.empty()) break;
            if (auto oDoc = ParseChartDefinition(sText))
                if (cf.GetAttributeText(oDoc->selectSingleNode("chart"), "id") == sID) break;
        }
        oSheet->Cells(lRow, 1)->SetValue(oChartDoc->xml());
        return true;
    } catch (const std::exception&) {
        c.common->ReportError("PSFunctions.SaveChartDefinition");
    }
    return false;
}

// ---------------------------------------------------------------- palette

void PSFunctions::EnsureWorkbookPalette() {
    try {
        auto& wb = Obj(c.oWorkbook);
        // A workbook with charts keeps its colours.
        auto oSheets = wb.Worksheets();
        for (auto& oSheet : host::Each(*oSheets)) {
            auto oShapes = oSheet->Shapes();
            for (auto& oShape : host::Each(*oShapes))
                if (oShape->Type() == host::msoChart) return;
        }
        const long aDefaults[6] = {RGB(153, 153, 256), RGB(153, 51, 102), RGB(255, 255, 204),
                                   RGB(204, 255, 255), RGB(102, 0, 102),   RGB(255, 128, 128)};
        for (long i = 0; i < 6; ++i)
            if (wb.Colors(17 + i) != aDefaults[i]) return;  // the user's own palette
        const long aChartColors[6] = {RGB(102, 102, 153), RGB(255, 255, 153), RGB(51, 153, 102),
                                      RGB(255, 128, 128), RGB(51, 204, 204),  RGB(128, 0, 128)};
        for (long i = 0; i < 6; ++i) wb.SetColors(17 + i, aChartColors[i]);
    } catch (const std::exception&) {
    }
}

}  // namespace ps
