// What identifies a chart: its title, its type with the settings the type implies, the number
// format of its value axis, and the comment box beside it.
#include "common/common_functions.h"
#include "host/chart.h"
#include "host/drawing.h"
#include "host/workbook.h"
#include "readback/ps_rev_engineer_chart.h"

namespace ps {

namespace {

// The chart type string of a ChartType; "" where only the series can tell.
std::string TypeOfChartType(long lType) {
    switch (lType) {
    case 51: case 52: case 53: case 54: case 55: case 56: case host::xl3DColumn:
        return "column";
    case 57: case 58: case 59: case 60: case 61: case 62:
        return "bar";
    case host::xlPie: case host::xl3DPie: case host::xlPieExploded: case host::xl3DPieExploded:
        return "pie";
    case host::xlArea: case host::xl3DArea: case 76: case 77: case 78: case 79:
        return "area";
    case host::xlBubble: case host::xlBubble3DEffect:
        return "bubble";
    default:
        return {};
    }
}

struct TypeFlags {
    bool b3D = false, bStacked = false, b100 = false, bExploded = false;
};

// xl3DColumn stays without "3D" on purpose: it reads back as a plain column chart.
TypeFlags FlagsOfChartType(long lType) {
    switch (lType) {
    case host::xl3DArea: case host::xl3DPie: case 54: case 60: case host::xlBubble3DEffect:
        return {true, false, false, false};
    case 52: case 58: case 76:
        return {false, true, false, false};
    case 53: case 59: case 77:
        return {false, true, true, false};
    case 55: case 61: case 78:
        return {true, true, false, false};
    case 56: case 62: case 79:
        return {true, true, true, false};
    case host::xlPieExploded:
        return {false, false, false, true};
    case host::xl3DPieExploded:
        return {true, false, false, true};
    default:
        return {};
    }
}

}  // namespace

void PSRevEngineerChart::RevEngineerChart(const host::Ref<host::Chart>& oChart, const dom::DocumentRef& oChartDoc) {
    // An emptied chart (a failed build, series deleted) must not wipe its definition.
    if (!(Obj(oChart).SeriesCollection()->Count() > 0)) return;
    RevEngineerChartTitle(oChart, oChartDoc);
    RevEngineerChartType(oChart, oChartDoc);
    RevEngineerNumberFormat(oChart, oChartDoc);
    RevEngineerAutoPersistence(oChart, oChartDoc);
}

void PSRevEngineerChart::RevEngineerChartTitle(const host::Ref<host::Chart>& oChart,
                                               const dom::DocumentRef& oChartDoc) {
    try {
        auto oChartElement = Obj(oChartDoc).selectSingleNode("chart");
        if (Obj(oChart).HasTitle())
            oChartElement.setAttribute("title", oChart->ChartTitle()->Text());
        else
            oChartElement.setAttribute("title", "");
    } catch (const std::exception&) {
        c.common->ReportError("PSRevEngineerChart.RevEngineerChartTitle");
    }
}

void PSRevEngineerChart::RevEngineerChartType(const host::Ref<host::Chart>& oChart,
                                              const dom::DocumentRef& oChartDoc) {
    try {
        auto oChartElement = Obj(oChartDoc).selectSingleNode("chart");
        std::string sType = TypeOfChartType(Obj(oChart).ChartType());
        if (sType.empty()) sType = IsStrBuckChart(oChart) ? "strategic bucket" : "unknown";
        TypeFlags flags = FlagsOfChartType(oChart->ChartType());

        oChartElement.setAttribute("type", sType);
        auto oOld = oChartElement.selectSingleNode("dynamic-attributes");
        if (oOld) oChartElement.removeChild(oOld);
        auto oAttributes = oChartElement.appendChild(Obj(oChartDoc).createElement("dynamic-attributes"));
        auto append = [&](const char* sSetting) {
            auto oAttribute = oChartDoc->createElement("attribute");
            oAttribute.setAttribute("setting", sSetting);
            oAttributes.appendChild(oAttribute);
        };
        if (flags.b3D) append("3D");
        if (flags.bStacked) append("stacked");
        if (flags.b100) append("100%");
        if (flags.bExploded) append("exploded");
    } catch (const std::exception&) {
        c.common->ReportError("PSRevEngineerChart.RevEngineerChartType");
    }
}

bool PSRevEngineerChart::IsStrBuckChart(const host::Ref<host::Chart>& oChart) {
    try {
        long lBlocks = 0, lBucketValues = 0, lStrangers = 0;
        auto oSeriesCollection = Obj(oChart).SeriesCollection();
        for (auto& oSeries : host::Each(*oSeriesCollection)) {
            long lType = oSeries->ChartType();
            if (lType == host::xlColumnStacked) ++lBlocks;
            // A stacked line of one series draws the same line; LibreOffice saves the bucket line so.
            else if (lType == host::xlLineMarkers || lType == host::xlCombination || lType == host::xlLineMarkersStacked)
                ++lBucketValues;
            else ++lStrangers;
        }
        return lBlocks > 0 && lBucketValues == 1 && lStrangers == 0;
    } catch (const std::exception&) {
        c.common->ReportError("PSRevEngineerChart.IsStrBuckChart");
    }
    return false;
}

void PSRevEngineerChart::RevEngineerNumberFormat(const host::Ref<host::Chart>& oChart,
                                                 const dom::DocumentRef& oChartDoc) {
    try {
        auto& cf = *c.common;
        auto oChartElement = Obj(oChartDoc).selectSingleNode("chart");
        std::string sType = cf.GetAttributeText(oChartElement, "type");
        std::string sNumberFormat = cf.GetAttributeText(oChartElement, "number-format");
        if (CommonFunctions::ArrayContains(sType, {"pie", "bubble", "unknown"})) return;

        bool b100 = false;
        auto oAttributes = oChartElement.selectSingleNode("dynamic-attributes");
        if (oAttributes)
            for (auto oAttribute : oAttributes.selectNodes("attribute"))
                if (cf.GetAttributeText(oAttribute, "setting") == "100%") b100 = true;

        // The drawing links the value axis to its cells: a broken link is a format the user typed.
        // On a 100% chart the axis shows percentages, never the definition's format.
        if (host::CBool(Obj(oChart).HasAxis(host::xlValue))) {
            auto oTickLabels = oChart->Axes(host::xlValue, host::xlPrimary)->TickLabels();
            if (!oTickLabels->NumberFormatLinked() && !b100) sNumberFormat = oTickLabels->NumberFormat();
        }
        oChartElement.setAttribute("number-format", sNumberFormat);
    } catch (const std::exception&) {
        c.common->ReportError("PSRevEngineerChart.RevEngineerNumberFormat");
    }
}

void PSRevEngineerChart::RevEngineerComment(const host::Ref<host::Shape>& oShape, const dom::DocumentRef& oChartDoc) {
    try {
        auto oChartElement = Obj(oChartDoc).selectSingleNode("chart");
        auto oOld = oChartElement.selectSingleNode("comment");
        if (oOld) oChartElement.removeChild(oOld);
        if (!oShape) return;

        // The text frame hands out at most 200 characters per read.
        std::string sText;
        try {
            auto oFrame = oShape->TextFrame();
            std::string sPiece = oFrame->Characters(1L, 200L)->Text();
            for (long i = 1; !sPiece.empty(); ++i) {
                sText += sPiece;
                sPiece = oFrame->Characters(i * 200 + 1, 200L)->Text();
            }
        } catch (const std::exception&) {
        }

        auto oComment = oChartDoc->createElement("comment");
        oComment.appendChild(oChartDoc->createTextNode(sText));
        oChartElement.appendChild(oComment);
    } catch (const std::exception&) {
        c.common->ReportError("PSRevEngineerChart.RevEngineerComment");
    }
}

}  // namespace ps
