// What read-back saved of a chart's look, loaded before drawing over fixed defaults; and the
// definition's comment, kept in a text box at the chart's top right corner.
#include <string>

#include "builder/ps_chart_builder.h"
#include "common/common_functions.h"
#include "host/chart_constants.h"
#include "host/constants.h"
#include "host/drawing.h"
#include "host/workbook.h"

namespace ps {

namespace {
using host::Variant;

// The groups read-back may store empty (an axis without a title, a chart without bucket values)
// fall back to their default.
Variant OrDefault(const std::string& sValue, const Variant& vDefault) {
    return sValue.empty() ? vDefault : Variant(sValue);
}

// The text box takes at most this many characters in one write.
constexpr long lCommentPiece = 200;
}  // namespace

void PSChartBuilder::RetrievePersistedProperties(const dom::Element& oChartElement) {
    try {
        auto& cf = *c.common;
        mLegendVisibility = "auto";
        mLegendPosition = host::xlLegendPositionRight;
        mLegendLeft = dUnsetLegendPlace;
        mLegendTop = dUnsetLegendPlace;
        mLegendFontName = "Arial";
        mLegendFontStyle = "Regular";
        mLegendFontSize = 9L;
        mLegendFontColor = 0L;
        mLegendFontAutoScale = "True";
        mLabelFontName = "Arial";
        mLabelFontStyle = "Regular";
        mLabelFontSize = 9L;
        mLabelFontColor = 0L;
        mLabelFontBackgroundColor = Variant();
        mLabelFontAutoScale = "True";
        mBucketLabelFontName = "Arial";
        mBucketLabelFontSize = 9L;
        mBucketLabelFontStyle = "Bold";
        mBucketLabelFontColor = 16777215L;
        mBucketLabelFontAutoScale = "False";
        mLabelAxisFontName = mValueAxisFontName = "Arial";
        mLabelAxisFontSize = mValueAxisFontSize = 10L;
        mLabelAxisFontStyle = mValueAxisFontStyle = "Bold";
        mLabelAxisFontColor = mValueAxisFontColor = 0L;
        mLabelAxisFontAutoScale = mValueAxisFontAutoScale = "True";

        if (auto oPersistence = oChartElement.selectSingleNode("auto-persistence")) {
            for (auto oPersist : oPersistence.selectNodes("persist")) {
                std::string sProperty = cf.GetAttributeText(oPersist, "property");
                std::string sValue = cf.GetAttributeText(oPersist, "value");
                auto Number = [&] { return Variant(host::Val(sValue)); };
                auto Flag = [&] { return Variant(CommonFunctions::SafeBool(sValue)); };
                if (sProperty == "legend-visibility") mLegendVisibility = sValue;
                else if (sProperty == "legend-position") mLegendPosition = sValue;
                else if (sProperty == "legend-left") mLegendLeft = host::CDbl(sValue);
                else if (sProperty == "legend-top") mLegendTop = host::CDbl(sValue);
                else if (sProperty == "legend-font-name") mLegendFontName = sValue;
                else if (sProperty == "legend-font-style") mLegendFontStyle = sValue;
                else if (sProperty == "legend-font-size") mLegendFontSize = Number();
                else if (sProperty == "legend-font-color") mLegendFontColor = sValue;
                else if (sProperty == "legend-font-autoscale") mLegendFontAutoScale = Flag();
                else if (sProperty == "label-font-name") mLabelFontName = sValue;
                else if (sProperty == "label-font-style") mLabelFontStyle = sValue;
                else if (sProperty == "label-font-size") mLabelFontSize = Number();
                else if (sProperty == "label-font-color") mLabelFontColor = sValue;
                else if (sProperty == "label-font-background-color") mLabelFontBackgroundColor = sValue;
                else if (sProperty == "label-font-autoscale") mLabelFontAutoScale = Flag();
                else if (sProperty == "bucket-label-font-name") mBucketLabelFontName = OrDefault(sValue, "Arial");
                else if (sProperty == "bucket-label-font-size")
                    mBucketLabelFontSize = host::Val(host::CStr(OrDefault(sValue, 9L)));
                else if (sProperty == "bucket-label-font-style") mBucketLabelFontStyle = OrDefault(sValue, "Bold");
                else if (sProperty == "bucket-label-font-color") mBucketLabelFontColor = OrDefault(sValue, 16777215L);
                else if (sProperty == "bucket-label-font-autoscale")
                    mBucketLabelFontAutoScale = CommonFunctions::SafeBool(OrDefault(sValue, "False"));
                else if (sProperty == "LabelAxis-font-name") mLabelAxisFontName = OrDefault(sValue, "Arial");
                else if (sProperty == "LabelAxis-font-size")
                    mLabelAxisFontSize = host::Val(host::CStr(OrDefault(sValue, 10L)));
                else if (sProperty == "LabelAxis-font-style") mLabelAxisFontStyle = OrDefault(sValue, "Bold");
                else if (sProperty == "LabelAxis-font-color") mLabelAxisFontColor = OrDefault(sValue, 0L);
                else if (sProperty == "LabelAxis-font-autoscale")
                    mLabelAxisFontAutoScale = CommonFunctions::SafeBool(OrDefault(sValue, "True"));
                else if (sProperty == "ValueAxis-font-name") mValueAxisFontName = OrDefault(sValue, "Arial");
                else if (sProperty == "ValueAxis-font-size")
                    mValueAxisFontSize = host::Val(host::CStr(OrDefault(sValue, 10L)));
                else if (sProperty == "ValueAxis-font-style") mValueAxisFontStyle = OrDefault(sValue, "Bold");
                else if (sProperty == "ValueAxis-font-color") mValueAxisFontColor = OrDefault(sValue, 0L);
                else if (sProperty == "ValueAxis-font-autoscale")
                    mValueAxisFontAutoScale = CommonFunctions::SafeBool(OrDefault(sValue, "True"));
                cf.YieldToHost();
            }
        }
        // A place the user dragged the legend to beats a stored position.
        if (mLegendLeft != dUnsetLegendPlace || mLegendTop != dUnsetLegendPlace) mLegendPosition = 0L;
    } catch (const std::exception&) {
        c.common->ReportError("PSChartBuilder.RetrievePersistedProperties");
    }
}

void PSChartBuilder::SetChartComment(const dom::Element& oChartElement) {
    try {
        auto& cf = *c.common;
        const std::string& sID = c.sChartID;
        std::string sComment;
        if (auto oComment = oChartElement.selectSingleNode("comment"))
            if (auto oText = oComment.firstChild()) sComment = host::CStr(oText.nodeValue());

        host::Ref<host::Shape> oBox;
        if (CommonFunctions::CollectionHasKey(sID, c.colChartShapes)) oBox = Obj(c.colChartShapes).Item(sID);
        if (oBox && sComment.empty()) {
            Obj(c.colChartShapes).Remove(sID);
            oBox->Delete();
            return;
        }
        if (!oBox && !sComment.empty()) {
            auto oSheet = Obj(c.oWorkbook).Worksheets()->Item(cf.GetAttributeText(oChartElement, "chart-worksheet"));
            auto oShapes = oSheet->Shapes();
            for (auto& oShape : host::Each(*oShapes)) {
                if (oShape->AlternativeText() != sID || oShape->Type() != host::msoChart) continue;
                // At the chart's top right corner, overlapping it by 5 points, 5 points below its top.
                oBox = oShapes->AddTextbox(host::msoTextOrientationHorizontal, oShape->Width() + oShape->Left() - 5,
                                           oShape->Top() + 5, 180, 120);
                oBox->SetAlternativeText(sID);
                Obj(c.colChartShapes).Add(oBox, sID);
                break;
            }
        }
        if (!oBox) return;
        auto oFrame = oBox->TextFrame();
        oFrame->Characters()->SetText(host::Mid(sComment, 1, lCommentPiece));
        for (long i = 1;; ++i) {
            std::string sPiece = host::Mid(sComment, i * lCommentPiece + 1, lCommentPiece);
            if (sPiece.empty()) break;
            oFrame->Characters(i * lCommentPiece + 1)->Insert(sPiece);
        }
    } catch (const std::exception&) {
        c.common->ReportError("PSChartBuilder.SetChartComment");
    }
}

}  // namespace ps
