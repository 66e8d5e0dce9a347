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

        // How a stored value is taken: as text, through Val, through SafeBool; the groups with a
        // default fall back to it on an empty value first.
        enum Taking { Text, Number, Flag };
        struct Property {
            const char* sKey;
            Variant* pTarget;
            Taking taking;
            Variant vDefault;  // Empty: an empty value is taken as it stands
        };
        const Property aProperties[] = {
            {"legend-position", &mLegendPosition, Text, {}},
            {"legend-font-name", &mLegendFontName, Text, {}},
            {"legend-font-style", &mLegendFontStyle, Text, {}},
            {"legend-font-size", &mLegendFontSize, Number, {}},
            {"legend-font-color", &mLegendFontColor, Text, {}},
            {"legend-font-autoscale", &mLegendFontAutoScale, Flag, {}},
            {"label-font-name", &mLabelFontName, Text, {}},
            {"label-font-style", &mLabelFontStyle, Text, {}},
            {"label-font-size", &mLabelFontSize, Number, {}},
            {"label-font-color", &mLabelFontColor, Text, {}},
            {"label-font-background-color", &mLabelFontBackgroundColor, Text, {}},
            {"label-font-autoscale", &mLabelFontAutoScale, Flag, {}},
            {"bucket-label-font-name", &mBucketLabelFontName, Text, "Arial"},
            {"bucket-label-font-size", &mBucketLabelFontSize, Number, 9L},
            {"bucket-label-font-style", &mBucketLabelFontStyle, Text, "Bold"},
            {"bucket-label-font-color", &mBucketLabelFontColor, Text, 16777215L},
            {"bucket-label-font-autoscale", &mBucketLabelFontAutoScale, Flag, "False"},
            {"LabelAxis-font-name", &mLabelAxisFontName, Text, "Arial"},
            {"LabelAxis-font-size", &mLabelAxisFontSize, Number, 10L},
            {"LabelAxis-font-style", &mLabelAxisFontStyle, Text, "Bold"},
            {"LabelAxis-font-color", &mLabelAxisFontColor, Text, 0L},
            {"LabelAxis-font-autoscale", &mLabelAxisFontAutoScale, Flag, "True"},
            {"ValueAxis-font-name", &mValueAxisFontName, Text, "Arial"},
            {"ValueAxis-font-size", &mValueAxisFontSize, Number, 10L},
            {"ValueAxis-font-style", &mValueAxisFontStyle, Text, "Bold"},
            {"ValueAxis-font-color", &mValueAxisFontColor, Text, 0L},
            {"ValueAxis-font-autoscale", &mValueAxisFontAutoScale, Flag, "True"},
        };
        if (auto oPersistence = oChartElement.selectSingleNode("auto-persistence")) {
            for (auto oPersist : oPersistence.selectNodes("persist")) {
                std::string sProperty = cf.GetAttributeText(oPersist, "property");
                std::string sValue = cf.GetAttributeText(oPersist, "value");
                if (sProperty == "legend-visibility") mLegendVisibility = sValue;
                else if (sProperty == "legend-left") mLegendLeft = host::CDbl(sValue);
                else if (sProperty == "legend-top") mLegendTop = host::CDbl(sValue);
                for (const auto& p : aProperties) {
                    if (sProperty != p.sKey) continue;
                    Variant vValue = sValue.empty() && !p.vDefault.IsEmpty() ? p.vDefault : Variant(sValue);
                    *p.pTarget = p.taking == Number ? Variant(host::Val(host::CStr(vValue)))
                                 : p.taking == Flag ? Variant(CommonFunctions::SafeBool(vValue))
                                                    : vValue;
                }
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
