// What the user changed by hand survives the next session's load and the refresh after it.
#include "readback_world.h"

using buildertest::Group;
using readbacktest::ReadbackWorld;

TEST(ReadBackThenRefresh, TheNextRefreshKeepsWhatTheUserChanged) {
    ReadbackWorld w;
    w.Sheet("Sheet1")->Activate();
    w.Chart(buildertest::Def(
        "VEX_Chart1", "column",
        Group("categories", "rows", {"Region"}) + Group("series", "columns", {"Amount", "Cost", "Margin"}) +
            "<axes><axis type=\"label\" label=\"Region\" sticky=\"no\"/><axis type=\"value\" label=\"Amount\" "
            "sticky=\"no\"/></axes><data-labels><data-label show=\"values\"/></data-labels><dynamic-attributes/>",
        " title=\"Sales\""));
    w.b.PopulateChart("VEX_Chart1");
    ASSERT_TRUE(w.dialogs.Texts().empty()) << w.dialogs.Texts().front();
    auto oChart = w.ChartObject("VEX_Chart1");
    ASSERT_EQ(oChart->SeriesCollection()->Count(), 3);

    // By hand: stacked, a new title, the value axis title's font, the legend to the left, the
    // labels of one series in another font.
    oChart->SetChartType(host::xlColumnStacked);
    oChart->ChartTitle()->SetText("Sales 2026");
    auto valueTitle = oChart->Axes(host::xlValue)->AxisTitle();
    ReadbackWorld::SetFont(valueTitle->Font(), "Georgia", 14, "Italic", 255);
    oChart->SetHasLegend(true);
    oChart->Legend()->SetPosition(host::xlLegendPositionLeft);
    ReadbackWorld::SetFont(oChart->SeriesCollection(2L)->DataLabels()->Font(), "Courier New", 11, "Bold", 0);

    w.Reload();  // the next session: read-back corrects the definition
    auto chart = w.Doc("VEX_Chart1");
    EXPECT_EQ(w.Attr(chart, "title"), "Sales 2026");
    EXPECT_EQ(w.Child(chart, "dynamic-attributes"),
              "<dynamic-attributes><attribute setting=\"stacked\"/></dynamic-attributes>");
    w.b.PopulateChart("VEX_Chart1");
    EXPECT_TRUE(w.dialogs.Texts().empty()) << w.dialogs.Texts().front();

    oChart = w.Live("VEX_Chart1");
    EXPECT_EQ(oChart->ChartType(), host::xlColumnStacked);
    EXPECT_EQ(oChart->ChartTitle()->Text(), "Sales 2026");
    auto font = oChart->Axes(host::xlValue)->AxisTitle()->Font();
    EXPECT_EQ(host::CStr(font->Name()), "Georgia");
    EXPECT_EQ(host::CDbl(font->Size()), 14);
    EXPECT_EQ(host::CStr(font->FontStyle()), "Italic");
    EXPECT_EQ(host::CLng(font->Color()), 255);
    EXPECT_EQ(oChart->Axes(host::xlCategory)->AxisTitle()->Text(), "Region");
    ASSERT_TRUE(oChart->HasLegend());
    EXPECT_EQ(oChart->Legend()->Position(), host::xlLegendPositionLeft);
    // The one changed label font (the rarest) is now the font of every series' labels.
    for (long i = 1; i <= 3; ++i) {
        auto labels = oChart->SeriesCollection(i)->DataLabels()->Font();
        EXPECT_EQ(host::CStr(labels->Name()), "Courier New") << i;
        EXPECT_EQ(host::CDbl(labels->Size()), 11) << i;
    }

    // The read-back of the rebuilt chart finds the same: the definition holds still.
    std::string before = w.Xml(w.c.colCharts->Item("VEX_Chart1"));
    w.Reload();
    EXPECT_EQ(w.Xml(w.c.colCharts->Item("VEX_Chart1")), before);
}
