// The legend that bubble and bucket charts draw themselves on later hosts: per distinct series
// name a text box and a colour key, grouped into one shape beside a plot area narrowed for it.
#include <string>
#include <vector>

#include "builder/ps_chart_builder.h"
#include "common/common_functions.h"
#include "host/chart.h"
#include "host/chart_constants.h"
#include "host/constants.h"
#include "host/drawing.h"
#include "host/format.h"
#include "host/workbook.h"

namespace ps {

namespace {
// The component's own shapes carry this in their name or alternative text.
constexpr const char* sOwnShapeMark = "VEX_L";
constexpr const char* sEntryMark = "VEX_LS_";

void DeleteLegendShapes(host::Chart& oChart) {
    std::vector<host::Ref<host::Shape>> aShapes;
    IgnoreErrors([&] { aShapes = host::Each(*oChart.Shapes()); });
    for (auto& oShape : aShapes) {
        IgnoreErrors([&] {
            if (host::InStr(oShape->AlternativeText(), sOwnShapeMark) > 0 || host::InStr(oShape->Name(), sOwnShapeMark) > 0)
                oShape->Delete();
        });
    }
}
}  // namespace

void PSChartBuilder::BuildChartLegend(bool bDraw) {
    auto& oChart = Obj(mChart);
    if (!bDraw) {
        DeleteLegendShapes(oChart);
        oChart.PlotArea()->SetWidth(oChart.ChartArea()->Width());
        return;
    }

    oChart.SetHasLegend(false);
    long lMaxRight = 0, lItemRight = 0, lItemTop = 0;
    // Distinct names by a plain substring test: a name inside an earlier one gets no entry.
    std::string sNames;
    auto oSeriesCollection = oChart.SeriesCollection();
    for (long i = 1; i <= oSeriesCollection->Count(); ++i) {
        std::string sName = oSeriesCollection->Item(i)->Name();
        if (host::InStr(sNames, sName) == 0) sNames += sName + "|";
    }
    std::vector<std::string> aNames;
    for (size_t from = 0, bar; (bar = sNames.find('|', from)) != std::string::npos; from = bar + 1)
        aNames.push_back(sNames.substr(from, bar - from));

    DeleteLegendShapes(oChart);
    auto oShapes = oChart.Shapes();
    double dFontSize = host::Val(host::CStr(mLegendFontSize));
    for (const auto& sName : aNames) {
        if (sName == "Strategic Buckets") continue;
        lItemRight = 0;
        auto oColor = Obj(mSeriesColors).Item(sName);

        auto oText = oShapes->AddTextbox(host::msoTextOrientationHorizontal, 0, 0, 0, 0);
        oText->SetName(sName + " Text");
        oText->SetAlternativeText(sEntryMark + oText->Name());
        auto oCharacters = oText->TextFrame()->Characters();
        oCharacters->Font()->SetName(mLegendFontName);
        oCharacters->Font()->SetSize(dFontSize);
        oCharacters->Font()->SetColor(mLegendFontColor);
        oCharacters->Font()->SetBold(false);
        oCharacters->SetText(sName);
        auto oFrame2 = oText->TextFrame2();
        oFrame2->SetWordWrap(host::msoFalse);
        oFrame2->SetAutoSize(host::msoAutoSizeShapeToFitText);
        oFrame2->SetMarginTop(0);
        auto oFrame = oText->TextFrame();
        oFrame->SetVerticalAlignment(host::xlVAlignTop);
        oFrame->SetHorizontalAlignment(host::xlHAlignLeft);
        oFrame->SetMarginTop(0);
        oText->SetWidth(host::Len(sName) * dFontSize / 2);
        oText->SetHeight(dFontSize * 2);
        // The text stands right of its key; entries step down by the text height less 5.
        double dHeight = oText->Height();
        oText->SetLeft(dHeight > 10 ? dHeight - 10 : dHeight / 2);
        if (dHeight + lItemTop > 6) oText->SetTop(dHeight + lItemTop - 5);
        lItemRight = host::CLng(oText->Left() + oText->Width() + lItemRight);
        lItemTop = host::CLng(oText->Top());

        auto oKey = oShapes->AddShape(host::msoShapeRectangle, 0, 0, 0, 0);
        oKey->SetName(sName + " Key");
        oKey->SetAlternativeText(sEntryMark + oKey->Name());
        oKey->SetHeight(dFontSize > 1 ? dFontSize - 1 : dFontSize);
        oKey->SetWidth(oKey->Height());
        oKey->Fill()->BackColor()->SetRGB(host::CLng(oColor->Color()));
        oKey->Fill()->ForeColor()->SetRGB(host::CLng(oColor->Color()));
        oKey->SetTop(oShapes->Item(sName + " Text")->Top());
        oKey->SetLockAspectRatio(host::msoTrue);
        long lType = oChart.ChartType();
        // Bubbles get a round key, buckets a square one.
        if (lType == host::xlBubble || lType == host::xlBubble3DEffect) oKey->SetAutoShapeType(host::msoShapeOval);
        if (!OlderHost()) {
            oKey->Line()->SetVisible(host::msoFalse);
        } else {
            oKey->Line()->SetWeight(1);
            oKey->Line()->ForeColor()->SetRGB(0xFFFFFF);
            oKey->Line()->BackColor()->SetRGB(0);
            oKey->Line()->SetVisible(host::msoTrue);
        }
        lItemRight = host::CLng(oKey->Width() + lItemRight);
        if (lMaxRight < lItemRight) lMaxRight = lItemRight;
    }

    std::vector<std::string> aEntries;
    for (long i = 1; i <= oShapes->Count(); ++i) {
        auto oShape = oShapes->Item(i);
        if (host::InStr(oShape->AlternativeText(), sEntryMark) > 0) aEntries.push_back(oShape->Name());
    }
    host::Ref<host::Shape> oGroup;
    IgnoreErrors([&] { oGroup = oShapes->Range(aEntries)->Group(); });
    IgnoreErrors([&] { oGroup->SetName(sDrawnLegend); });
    IgnoreErrors([&] { oGroup->SetWidth(lMaxRight); });

    auto oPlotArea = oChart.PlotArea();
    auto oLegend = oShapes->Range(std::string(sDrawnLegend));
    oPlotArea->SetWidth(oChart.ChartArea()->Width());
    oPlotArea->SetWidth(oPlotArea->Width() - oPlotArea->Left() - oLegend->Width() + 10);
    if (mLegendLeft > 0) {
        oLegend->SetLeft(mLegendLeft);
        oLegend->SetTop(mLegendTop);
    } else {
        oLegend->SetLeft(oPlotArea->Left() + oPlotArea->Width() + 10);
        oLegend->SetTop(oPlotArea->Top() + oPlotArea->Height() / 2 - oLegend->Height() / 2);
    }
}

}  // namespace ps
