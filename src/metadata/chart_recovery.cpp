// Finding charts again after another program re-saved the workbook. The link from a definition to
// its drawing is the shapes' alternative text, which the application keeps; other writers drop it,
// and some drop the comment boxes too. A definition whose chart no shape names is then matched by
// what the file still holds, its link restored, and only a chart that is really gone loses its
// definition.
#include <cmath>

#include "common/common_functions.h"
#include "common/constants.h"
#include "host/chart.h"
#include "host/constants.h"
#include "host/workbook.h"
#include "metadata/ps_functions.h"

namespace ps {

namespace {

// A shape that carries the id of some chart belongs to that chart: it is never taken for another.
bool IsUnclaimed(host::Shape& oShape) {
    return host::Left(oShape.AlternativeText(), host::Len(sChartIDPrefix)) != sChartIDPrefix;
}

// The first row of the data sheet that a series formula refers to; 0 for none. Writers differ in
// quoting the sheet's name, never in the name.
long DataSheetRowOf(const std::string& sFormula, const host::Ref<host::Worksheet>& oDataSheet) {
    std::string sUpper = host::UCase(sFormula);
    std::string sSheet = host::UCase(sDataSheet);
    for (size_t lAt = sUpper.find(sSheet); lAt != std::string::npos; lAt = sUpper.find(sSheet, lAt + 1)) {
        size_t lBang = lAt + sSheet.size();
        if (lBang < sUpper.size() && sUpper[lBang] == '\'') ++lBang;
        if (lBang >= sUpper.size() || sUpper[lBang] != '!') continue;
        size_t lEnd = sUpper.find_first_of(",)", lBang + 1);
        std::string sAddress = sFormula.substr(lBang + 1, lEnd == std::string::npos ? std::string::npos : lEnd - lBang - 1);
        try {
            return oDataSheet->Range(sAddress)->Row();
        } catch (const std::exception&) {
        }
    }
    return 0;
}

// Comment texts compared without their line breaks, which writers store differently.
std::string WithoutBreaks(std::string s) {
    std::erase_if(s, [](char ch) { return ch == '\r' || ch == '\n'; });
    return s;
}

}  // namespace

std::string PSFunctions::FindLostChart(const std::string& sChartID, const dom::Element& oChart) {
    auto& cf = *c.common;
    auto& wb = Obj(c.oWorkbook);
    host::Ref<host::Worksheet> oDataSheet;
    if (cf.SheetExists(sDataSheet)) oDataSheet = wb.Worksheets()->Item(std::string(sDataSheet));

    // A chart with series is known by its block: every row of a block holds the chart id in column 1.
    if (oDataSheet) {
        for (auto& oSheet : host::Each(*wb.Worksheets())) {
            for (auto& oShape : host::Each(*oSheet->Shapes())) {
                if (oShape->Type() != host::msoChart || !IsUnclaimed(*oShape)) continue;
                auto oSeries = oSheet->ChartObjects(host::Variant(oShape->Name()))->Chart()->SeriesCollection();
                for (auto& oOne : host::Each(*oSeries)) {
                    long lRow = DataSheetRowOf(oOne->Formula(), oDataSheet);
                    if (lRow == 0) continue;
                    if (host::CStr(cf.GetCellValue(oDataSheet, lRow, 1, 2)) != sChartID) break;
                    oShape->SetAlternativeText(sChartID);
                    return oSheet->Name();
                }
            }
            cf.YieldToHost();
        }
    }

    // A chart without series (new, or crosshatched) is known by the sheet and shape name recorded
    // for it; a writer that renamed the shapes leaves it known only when it is the one such chart there.
    std::string sSheet = cf.GetAttributeText(oChart, "chart-worksheet");
    if (sSheet.empty() || !cf.SheetExists(sSheet)) return {};
    auto oSheet = wb.Worksheets()->Item(sSheet);
    std::string sShapeName = cf.GetAttributeText(oChart, "chart-shape-name");
    host::Ref<host::Shape> oNamed, oOnly;
    long lEmpty = 0;
    for (auto& oShape : host::Each(*oSheet->Shapes())) {
        if (oShape->Type() != host::msoChart || !oShape->AlternativeText().empty()) continue;
        if (oSheet->ChartObjects(host::Variant(oShape->Name()))->Chart()->SeriesCollection()->Count() > 0) continue;
        if (!sShapeName.empty() && oShape->Name() == sShapeName) oNamed = oShape;
        oOnly = oShape;
        ++lEmpty;
    }
    auto oFound = oNamed ? oNamed : lEmpty == 1 ? oOnly : nullptr;
    if (!oFound) return {};
    oFound->SetAlternativeText(sChartID);
    return oSheet->Name();
}

host::Ref<host::Shape> PSFunctions::FindLostComment(const std::string& sChartID, const std::string& sSheetName,
                                                    const dom::Element& oChart) {
    std::string sComment;
    if (auto oNode = oChart.selectSingleNode("comment"))
        if (auto oText = oNode.firstChild()) sComment = WithoutBreaks(host::CStr(oText.nodeValue()));
    if (sComment.empty()) return nullptr;

    auto oChartShape = FindChartShape(sChartID, sSheetName);
    auto oShapes = Obj(c.oWorkbook).Worksheets()->Item(sSheetName)->Shapes();
    for (auto& oShape : host::Each(*oShapes)) {
        // Some writers keep the box as a rectangle with text, no longer marked as a text box.
        long lType = oShape->Type();
        if (lType != host::msoTextBox && lType != host::msoAutoShape) continue;
        std::string sLink = oShape->AlternativeText();
        if (!sLink.empty() && sLink != sChartID) continue;
        // The box is drawn at the chart's top right corner; writers round its place to a point or so.
        bool bInPlace = oChartShape && std::abs(oShape->Left() - (oChartShape->Left() + oChartShape->Width() - 5)) < 3 &&
                        std::abs(oShape->Top() - (oChartShape->Top() + 5)) < 3;
        std::string sText;
        try {
            sText = WithoutBreaks(oShape->TextFrame()->Characters()->Text());
        } catch (const std::exception&) {
        }
        if (!bInPlace && sText != sComment) continue;
        oShape->SetAlternativeText(sChartID);
        return oShape;
    }
    return nullptr;
}

void PSFunctions::KeepDrawnLegend(const dom::DocumentRef& oDoc, const host::Ref<host::Chart>& oChart) {
    try {
        auto& cf = *c.common;
        auto oChartElement = Obj(oDoc).selectSingleNode("chart");
        std::string sType = cf.GetAttributeText(oChartElement, "type");
        if (sType != "bubble" && sType != "strategic bucket") return;
        // The drawn legend is the only shape the component puts inside a chart: with none left,
        // the writer took them all.
        if (Obj(oChart).Shapes()->Count() > 0) return;
        for (auto oPersist : oChartElement.selectNodes("auto-persistence/persist"))
            if (cf.GetAttributeText(oPersist, "property") == "legend-visibility" &&
                cf.GetAttributeText(oPersist, "value") == "hide")
                oPersist.setAttribute("value", "auto");
    } catch (const std::exception&) {
    }
}

void PSFunctions::KeepMetadataSheetsVeryHidden() {
    // Other programs save a very hidden sheet as merely hidden, which a user can show from the menus.
    try {
        for (const char* sName : {sDefinitionSheet, sDataSheet}) {
            if (!c.common->SheetExists(sName)) continue;
            auto oSheet = Obj(c.oWorkbook).Worksheets()->Item(std::string(sName));
            if (oSheet->Visible() == host::xlSheetHidden) oSheet->SetVisible(host::xlSheetVeryHidden);
        }
    } catch (const std::exception&) {
    }
}

}  // namespace ps
