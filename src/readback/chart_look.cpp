// The look of a chart the user may change by hand: axis titles with their fonts, the legend's
// visibility, place and font, the fonts of the data labels. All of it lands in `persist` elements
// of `auto-persistence` (axes, legend, labels, in this order), which the next build draws with.
#include <array>
#include <vector>

#include "common/common_functions.h"
#include "host/chart.h"
#include "host/workbook.h"
#include "readback/ps_rev_engineer_chart.h"

namespace ps {

namespace {

// A Variant as the run-time joins it into text: Null and Empty add nothing.
std::string Joined(const host::Variant& v) { return v.IsNull() || v.IsEmpty() ? std::string() : host::CStr(v); }

host::Variant Or(const host::Variant& v, const host::Variant& vIfNull) { return v.IsNull() ? vIfNull : v; }

void AppendPersist(const dom::Element& oParent, const std::string& sProperty, const host::Variant& vValue) {
    auto oPersist = oParent.ownerDocument()->createElement("persist");
    oPersist.setAttribute("property", sProperty);
    oPersist.setAttribute("value", vValue);
    oParent.appendChild(oPersist);
}

bool IsPieChartType(long lType) {
    return lType == host::xlPie || lType == host::xl3DPie || lType == host::xlPieExploded ||
           lType == host::xl3DPieExploded;
}

// One axis as the definition had it and as the chart shows it. Font values are text; an axis
// without a title leaves them all empty.
struct AxisState {
    AxisState(const char* sType, const char* sPrefix, long lAxisType)
        : sType(sType), sPrefix(sPrefix), lAxisType(lAxisType) {}
    const char* sType;    // "label" or "value"
    const char* sPrefix;  // "LabelAxis" or "ValueAxis"
    long lAxisType;       // xlCategory or xlValue
    std::string sOldLabel, sSticky;
    std::string sBaseSize, sBaseName, sBaseStyle, sBaseColor, sBaseAutoScale;
    std::string sLabel, sSize, sName, sColor, sStyle, sAutoScale;
};

}  // namespace

void PSRevEngineerChart::RevEngineerAutoPersistence(const host::Ref<host::Chart>& oChart,
                                                    const dom::DocumentRef& oChartDoc) {
    try {
        auto oChartElement = Obj(oChartDoc).selectSingleNode("chart");
        auto oOld = oChartElement.selectSingleNode("auto-persistence");
        if (oOld) oChartElement.removeChild(oOld);
        oChartElement.appendChild(oChartDoc->createElement("auto-persistence"));
        RevEngineerAxisLabels(oChart, oChartDoc);
        RevEngineerChartLegend(oChart, oChartDoc);
        RevEngineerChartDataLabels(oChart, oChartDoc);
    } catch (const std::exception&) {
        // The name of the neighbouring procedure is the message users have always seen here.
        c.common->ReportError("PSRevEngineerChart.RevEngineerNumberFormat");
    }
}

void PSRevEngineerChart::RevEngineerAxisLabels(const host::Ref<host::Chart>& oChart,
                                               const dom::DocumentRef& oChartDoc) {
    try {
        auto& cf = *c.common;
        if (IsPieChartType(Obj(oChart).ChartType())) return;
        auto oChartElement = Obj(oChartDoc).selectSingleNode("chart");

        AxisState aLabel{"label", "LabelAxis", host::xlCategory};
        AxisState aValue{"value", "ValueAxis", host::xlValue};
        std::array<AxisState*, 2> aAxes{&aLabel, &aValue};

        // The base values have the names of the persisted properties; no writer puts them on an
        // `axis`, so the fallbacks below are what counts.
        auto oOldAxes = oChartElement.selectSingleNode("axes");
        if (oOldAxes) {
            for (auto oAxis : oOldAxes.selectNodes("axis")) {
                for (AxisState* a : aAxes) {
                    if (cf.GetAttributeText(oAxis, "type") != a->sType) continue;
                    std::string sPrefix = a->sPrefix;
                    a->sOldLabel = cf.GetAttributeText(oAxis, "label");
                    a->sSticky = cf.GetAttributeText(oAxis, "sticky");
                    a->sBaseSize = cf.GetAttributeText(oAxis, sPrefix + "-font-size");
                    a->sBaseName = cf.GetAttributeText(oAxis, sPrefix + "-font-name");
                    a->sBaseStyle = cf.GetAttributeText(oAxis, sPrefix + "-font-style");
                    a->sBaseColor = cf.GetAttributeText(oAxis, sPrefix + "-font-color");
                    a->sBaseAutoScale = cf.GetAttributeText(oAxis, sPrefix + "-font-autoscale");
                }
            }
            oChartElement.removeChild(oOldAxes);
        }

        for (AxisState* a : {&aValue, &aLabel}) {
            // An axis the chart lacks (a doughnut's, one deleted by hand) has no title either,
            // rather than a failure reported at every load.
            if (!host::CBool(oChart->HasAxis(a->lAxisType, host::xlPrimary))) continue;
            auto oAxis = oChart->Axes(a->lAxisType, host::xlPrimary);
            if (!oAxis->HasTitle()) continue;
            auto oTitle = oAxis->AxisTitle();
            auto oFont = oTitle->Font();
            a->sLabel = oTitle->Text();
            // Over mixed formats the name and size read Null and stand for the standard font;
            // other Nulls read as no text, which differs from every base value.
            a->sSize = CommonFunctions::SafeString(Or(oFont->Size(), Obj(c.oApplication).StandardFontSize()));
            a->sName = CommonFunctions::SafeString(Or(oFont->Name(), c.oApplication->StandardFont()));
            a->sColor = CommonFunctions::SafeString(oFont->Color());
            a->sStyle = CommonFunctions::SafeString(oFont->FontStyle());
            a->sAutoScale = CommonFunctions::SafeString(oTitle->AutoScaleFont());
        }

        for (AxisState* a : aAxes) {
            if (a->sBaseName.empty()) a->sBaseName = "Arial";
            if (a->sBaseSize.empty()) a->sBaseSize = "10";
            if (a->sBaseStyle.empty()) a->sBaseStyle = "Bold";
            if (a->sBaseColor.empty()) a->sBaseColor = "0";
            if (a->sBaseAutoScale.empty()) a->sBaseAutoScale = "True";
        }

        auto oAxes = oChartElement.appendChild(oChartDoc->createElement("axes"));
        auto oPersistence = oChartElement.selectSingleNode("auto-persistence");
        // A hand on the title makes the label the user's for good: sticky never goes back to "no".
        for (AxisState* a : aAxes) {
            if (a->sLabel != a->sOldLabel || a->sName != a->sBaseName || a->sSize != a->sBaseSize ||
                a->sStyle != a->sBaseStyle || a->sColor != a->sBaseColor || a->sAutoScale != a->sBaseAutoScale)
                a->sSticky = "yes";
            if (a->sLabel.empty() && a->sSticky != "yes") continue;
            std::string sPrefix = a->sPrefix;
            AppendPersist(oPersistence, sPrefix + "-font-size", a->sSize);
            AppendPersist(oPersistence, sPrefix + "-font-name", a->sName);
            AppendPersist(oPersistence, sPrefix + "-font-color", a->sColor);
            AppendPersist(oPersistence, sPrefix + "-font-style", a->sStyle);
            AppendPersist(oPersistence, sPrefix + "-font-autoscale", a->sAutoScale);
            auto oAxis = oChartDoc->createElement("axis");
            oAxis.setAttribute("type", a->sType);
            oAxis.setAttribute("label", a->sLabel);
            oAxis.setAttribute("sticky", a->sSticky);
            oAxes.appendChild(oAxis);
        }
    } catch (const std::exception&) {
        c.common->ReportError("PSRevEngineerChart.RevEngineerAxisLabels");
    }
}

void PSRevEngineerChart::RevEngineerChartLegend(const host::Ref<host::Chart>& oChart,
                                                const dom::DocumentRef& oChartDoc) {
    try {
        auto oPersistence = Obj(oChartDoc).selectSingleNode("chart").selectSingleNode("auto-persistence");
        bool bHasLegend = Obj(oChart).HasLegend();
        AppendPersist(oPersistence, "legend-visibility", bHasLegend ? "show" : "hide");
        if (!bHasLegend) return;

        auto oLegend = oChart->Legend();
        // A legend dragged by hand makes Position fail on some hosts: then its place is stored.
        long lPosition = 0;
        IgnoreErrors([&] { lPosition = oLegend->Position(); });
        if (lPosition != 0) {
            AppendPersist(oPersistence, "legend-position", lPosition);
        } else {
            AppendPersist(oPersistence, "legend-left", oLegend->Left());
            AppendPersist(oPersistence, "legend-top", oLegend->Top());
        }

        auto oFont = oLegend->Font();
        host::Variant vName = oFont->Name();
        host::Variant vStyle = oFont->FontStyle();
        host::Variant vSize = oFont->Size();
        host::Variant vColor = oFont->Color();
        host::Variant vAutoScale = oLegend->AutoScaleFont();
        // A Null (mixed formats) can't be stored: that entry is left out and keeps its default.
        IgnoreErrors([&] { AppendPersist(oPersistence, "legend-font-name", vName); });
        IgnoreErrors([&] { AppendPersist(oPersistence, "legend-font-style", vStyle); });
        IgnoreErrors([&] { AppendPersist(oPersistence, "legend-font-size", vSize); });
        IgnoreErrors([&] { AppendPersist(oPersistence, "legend-font-color", vColor); });
        IgnoreErrors([&] { AppendPersist(oPersistence, "legend-font-autoscale", vAutoScale); });
    } catch (const std::exception&) {
        c.common->ReportError("PSRevEngineerChart.RevEngineerChartLegend");
    }
}

void PSRevEngineerChart::RevEngineerChartDataLabels(const host::Ref<host::Chart>& oChart,
                                                    const dom::DocumentRef& oChartDoc) {
    try {
        auto& cf = *c.common;
        auto oChartElement = Obj(oChartDoc).selectSingleNode("chart");
        auto oPersistence = oChartElement.selectSingleNode("auto-persistence");

        // How many series show each label font: name@style@size@color@background@autoscale.
        host::Dictionary<long> colFonts;
        bool bValues = false, bPercentages = false;
        std::string sBucketName, sBucketStyle, sBucketSize, sBucketColor, sBucketAutoScale;
        auto oSeriesCollection = Obj(oChart).SeriesCollection();
        for (auto& oSeries : host::Each(*oSeriesCollection)) {
            bool bHasLabels = false;
            IgnoreErrors([&] { bHasLabels = oSeries->HasDataLabels(); });
            if (!bHasLabels) continue;
            auto oLabels = oSeries->DataLabels();
            if (oSeries->ChartType() != host::xlCombination) {
                if (auto oFont = oLabels->Font()) {
                    std::string sKey = Joined(oFont->Name()) + "@" + Joined(oFont->FontStyle()) + "@" +
                                       Joined(oFont->Size()) + "@" + Joined(oFont->Color()) + "@" +
                                       Joined(oFont->Background()) + "@" + Joined(oLabels->AutoScaleFont());
                    colFonts.Item(sKey) += 1;
                }
                host::Variant vType = oLabels->Type();
                if (!vType.IsNull() && host::CLng(vType) == host::xlDataLabelsShowValue) bValues = true;
                if (!vType.IsNull() && host::CLng(vType) == host::xlDataLabelsShowPercent) bPercentages = true;
            } else {
                // The bucket value series of a strategic bucket chart has fonts of its own.
                auto oFont = oLabels->Font();
                sBucketName = host::CStr(Or(oFont->Name(), "Arial"));
                sBucketStyle = host::CStr(Or(oFont->FontStyle(), "Bold"));
                sBucketSize = host::CStr(Or(oFont->Size(), 9L));
                sBucketColor = host::CStr(Or(oFont->Color(), 16777215L));
                sBucketAutoScale = host::CStr(Or(oLabels->AutoScaleFont(), "False"));
            }
        }

        // The rarest font wins, the first of equals going first: a font the user changed on one
        // series becomes the font of all labels at the next build.
        std::string sName = "Arial", sSize = "9", sStyle = "Regular", sColor = "0", sBackground = "-4105",
                    sAutoScale = "True";
        long lBestCount = 9999;
        for (auto& [sKey, lCount] : colFonts.Entries()) {
            if (lCount >= lBestCount) continue;
            std::vector<std::string> aParts;
            for (size_t lStart = 0;;) {
                size_t lAt = sKey.find('@', lStart);
                aParts.push_back(sKey.substr(lStart, lAt == std::string::npos ? lAt : lAt - lStart));
                if (lAt == std::string::npos) break;
                lStart = lAt + 1;
            }
            sName = aParts[0], sStyle = aParts[1], sSize = aParts[2], sColor = aParts[3], sBackground = aParts[4],
            sAutoScale = aParts[5];
            lBestCount = lCount;
        }

        AppendPersist(oPersistence, "label-font-name", sName);
        AppendPersist(oPersistence, "label-font-style", sStyle);
        AppendPersist(oPersistence, "label-font-size", sSize);
        AppendPersist(oPersistence, "label-font-color", sColor);
        AppendPersist(oPersistence, "label-font-background-color", sBackground);
        AppendPersist(oPersistence, "label-font-autoscale", sAutoScale);
        AppendPersist(oPersistence, "bucket-label-font-name", sBucketName);
        AppendPersist(oPersistence, "bucket-label-font-size", sBucketSize);
        AppendPersist(oPersistence, "bucket-label-font-color", sBucketColor);
        AppendPersist(oPersistence, "bucket-label-font-style", sBucketStyle);
        AppendPersist(oPersistence, "bucket-label-font-autoscale", sBucketAutoScale);

        std::string sManualLabels;
        auto oOld = oChartElement.selectSingleNode("data-labels");
        if (oOld) {
            sManualLabels = cf.GetAttributeText(oOld, "manual-labels");
            oChartElement.removeChild(oOld);
        }
        auto oDataLabels = oChartDoc->createElement("data-labels");
        if (!sManualLabels.empty()) oDataLabels.setAttribute("manual-labels", sManualLabels);
        oChartElement.appendChild(oDataLabels);
        auto append = [&](const char* sShow) {
            auto oDataLabel = oChartDoc->createElement("data-label");
            oDataLabel.setAttribute("show", sShow);
            oDataLabels.appendChild(oDataLabel);
        };
        if (bValues) append("values");
        if (bPercentages) append("percentages");
    } catch (const std::exception&) {
        c.common->ReportError("PSRevEngineerChart.RevEngineerChartDataLabels");
    }
}

}  // namespace ps
