// Title, type with its settings, number format and comment, changed by hand on a saved chart and
// read back at the next load.
#include "readback_world.h"

using readbacktest::Def;
using readbacktest::ReadbackWorld;

TEST(ChartIdentityReadBack, TitleTypeAndNumberFormatFollowTheChart) {
    ReadbackWorld w;
    // The definition still says 3-D with a number format; the chart is a plain clustered column
    // chart with a title the user typed and a format typed on the value axis.
    auto oChart = w.Drawn(Def("VEX_Chart1", "column", "<dynamic-attributes><attribute setting=\"3D\"/></dynamic-attributes>",
                              " title=\"Old\" number-format=\"0.0\""),
                          host::xlColumnClustered);
    oChart->SetHasTitle(true);
    oChart->ChartTitle()->SetText("Sales by region");
    oChart->Axes(host::xlValue)->TickLabels()->SetNumberFormat("#,##0 \"EUR\"");
    w.Reload();
    auto chart = w.Doc("VEX_Chart1");
    EXPECT_EQ(w.Attr(chart, "title"), "Sales by region");
    EXPECT_EQ(w.Attr(chart, "type"), "column");
    EXPECT_EQ(w.Child(chart, "dynamic-attributes"), "<dynamic-attributes/>") << "the stale 3D setting goes";
    EXPECT_EQ(w.Attr(chart, "number-format"), "#,##0 \"EUR\"");

    // Stacked by hand, title removed, the axis linked to its cells again: the typed format stays.
    oChart = w.Live("VEX_Chart1");
    oChart->SetChartType(host::xlColumnStacked);
    oChart->SetHasTitle(false);
    oChart->Axes(host::xlValue)->TickLabels()->SetNumberFormatLinked(true);
    w.Reload();
    chart = w.Doc("VEX_Chart1");
    EXPECT_EQ(w.Attr(chart, "title"), "");
    EXPECT_EQ(w.Child(chart, "dynamic-attributes"),
              "<dynamic-attributes><attribute setting=\"stacked\"/></dynamic-attributes>");
    EXPECT_EQ(w.Attr(chart, "number-format"), "#,##0 \"EUR\"");

    // 3-D 100% bars: flags in their fixed order; a 100% chart keeps the definition's format
    // whatever its axis shows.
    oChart = w.Live("VEX_Chart1");
    oChart->SetChartType(host::xl3DBarStacked100);
    oChart->Axes(host::xlValue)->TickLabels()->SetNumberFormat("0%");
    w.Reload();
    chart = w.Doc("VEX_Chart1");
    EXPECT_EQ(w.Attr(chart, "type"), "bar");
    EXPECT_EQ(w.Child(chart, "dynamic-attributes"),
              "<dynamic-attributes><attribute setting=\"3D\"/><attribute setting=\"stacked\"/>"
              "<attribute setting=\"100%\"/></dynamic-attributes>");
    EXPECT_EQ(w.Attr(chart, "number-format"), "#,##0 \"EUR\"");

    // A line chart can't be drawn: "unknown" with no settings, and its axis format isn't read.
    oChart = w.Live("VEX_Chart1");
    oChart->SetChartType(host::xlLine);
    oChart->Axes(host::xlValue)->TickLabels()->SetNumberFormat("0.000");
    w.Reload();
    chart = w.Doc("VEX_Chart1");
    EXPECT_EQ(w.Attr(chart, "type"), "unknown");
    EXPECT_EQ(w.Child(chart, "dynamic-attributes"), "<dynamic-attributes/>");
    EXPECT_EQ(w.Attr(chart, "number-format"), "#,##0 \"EUR\"");
    EXPECT_TRUE(w.dialogs.Texts().empty()) << w.dialogs.Texts().front();
}

TEST(ChartIdentityReadBack, EveryDrawableTypeMapsToItsDefinition) {
    struct Case { long chartType; const char* type; const char* settings; };
    const Case cases[] = {
        {host::xlArea, "area", ""},
        {host::xlAreaStacked100, "area", "stacked 100%"},
        {host::xl3DArea, "area", "3D"},
        {host::xl3DAreaStacked, "area", "3D stacked"},
        {host::xlBarClustered, "bar", ""},
        {host::xlBarStacked, "bar", "stacked"},
        {host::xl3DBarClustered, "bar", "3D"},
        {host::xl3DColumnClustered, "column", "3D"},
        {host::xl3DColumnStacked, "column", "3D stacked"},
        {host::xlColumnStacked100, "column", "stacked 100%"},
        {host::xlBubble, "bubble", ""},
        {host::xlPie, "pie", ""},
        {host::xlPieExploded, "pie", "exploded"},
        {host::xl3DPie, "pie", "3D"},
        {host::xl3DPieExploded, "pie", "3D exploded"},
        {host::xlLineMarkers, "unknown", ""},
        {host::xlDoughnut, "unknown", ""},
        {host::xlRadar, "unknown", ""},
    };
    for (const Case& k : cases) {
        ReadbackWorld w;
        auto oChart = w.Drawn(Def("VEX_Chart1", "column"), k.chartType, std::string(k.type) == "pie" ? 1 : 2);
        ASSERT_EQ(oChart->ChartType(), k.chartType);
        w.r.RevEngineerChartType(oChart, w.c.colCharts->Item("VEX_Chart1"));
        auto chart = w.Doc("VEX_Chart1");
        std::string settings;
        for (auto a : chart.selectNodes("dynamic-attributes/attribute"))
            settings += (settings.empty() ? "" : " ") + w.Attr(a, "setting");
        EXPECT_EQ(w.Attr(chart, "type"), k.type) << k.chartType;
        EXPECT_EQ(settings, k.settings) << k.chartType;
    }
}

TEST(ChartIdentityReadBack, StrategicBucketChartsAreKnownByTheirSeriesMix) {
    ReadbackWorld w;
    // Two stacked blocks and one bucket value line: the drawn form of a strategic bucket chart.
    auto oChart = w.Drawn(Def("VEX_Chart1", "strategic bucket", "", " number-format=\"0\""), host::xlColumnStacked);
    oChart->SeriesCollection(3L)->SetChartType(host::xlLineMarkers);
    w.Reload();
    auto chart = w.Doc("VEX_Chart1");
    EXPECT_EQ(w.Attr(chart, "type"), "strategic bucket");
    EXPECT_EQ(w.Child(chart, "dynamic-attributes"), "<dynamic-attributes/>");
    EXPECT_EQ(w.Attr(chart, "number-format"), "0") << "the value axis is linked as drawn";

    // Without its bucket value series, or with a stranger among the series, it isn't one.
    oChart = w.Live("VEX_Chart1");
    EXPECT_TRUE(w.r.IsStrBuckChart(oChart));
    oChart->SeriesCollection(2L)->SetChartType(host::xlArea);
    EXPECT_FALSE(w.r.IsStrBuckChart(oChart));
    oChart->SetChartType(host::xlColumnStacked);
    EXPECT_FALSE(w.r.IsStrBuckChart(oChart)) << "only blocks: the bucket value series is missing";
    oChart->SeriesCollection(2L)->SetChartType(host::xlLineMarkers);
    oChart->SeriesCollection(3L)->SetChartType(host::xlLineMarkers);
    EXPECT_FALSE(w.r.IsStrBuckChart(oChart)) << "two bucket value series";
    EXPECT_TRUE(w.dialogs.Texts().empty());
}

TEST(ChartIdentityReadBack, AnEmptiedChartKeepsItsDefinition) {
    ReadbackWorld w;
    const std::string xml = Def("VEX_Chart1", "bar",
                                "<dynamic-attributes><attribute setting=\"stacked\"/></dynamic-attributes>"
                                "<auto-persistence><persist property=\"legend-visibility\" value=\"hide\"/></auto-persistence>",
                                " title=\"Kept\" number-format=\"0.0\"");
    w.Chart(xml);  // a chart without series, as a build that failed leaves it
    w.Reload();
    auto chart = w.Doc("VEX_Chart1");
    EXPECT_EQ(w.Attr(chart, "title"), "Kept");
    EXPECT_EQ(w.Attr(chart, "type"), "bar");
    EXPECT_EQ(w.Attr(chart, "number-format"), "0.0");
    EXPECT_EQ(w.Child(chart, "dynamic-attributes"),
              "<dynamic-attributes><attribute setting=\"stacked\"/></dynamic-attributes>");
    EXPECT_EQ(w.Persist(chart), std::vector<std::string>{"legend-visibility=hide"});
    EXPECT_EQ(w.Child(chart, "comment"), "") << "no comment box: the comment read back is none";
}

TEST(ChartIdentityReadBack, TheCommentBoxIsReadInPiecesAndItsDeletionDeletesTheComment) {
    ReadbackWorld w;
    w.Drawn(Def("VEX_Chart1", "column", "<comment>old text</comment>"), host::xlColumnClustered);
    // 450 characters, some of them two bytes long: three full reads and a fourth, empty one.
    std::string text;
    for (int i = 0; i < 45; ++i) text += i % 2 ? "0123456789" : "é123456789";
    auto box = w.Sheet("Sheet1")->Shapes()->AddTextbox(1, 430, 5, 180, 120);
    box->SetAlternativeText("VEX_Chart1");
    box->TextFrame()->Characters()->SetText(text.substr(0, 300));
    box->TextFrame()->Characters(host::Len(text.substr(0, 300)) + 1)->Insert(text.substr(300));
    ASSERT_EQ(host::Len(text), 450);
    w.Reload();
    auto chart = w.Doc("VEX_Chart1");
    EXPECT_EQ(chart.selectSingleNode("comment").text(), text);
    EXPECT_EQ(chart.selectNodes("comment").length(), 1);
    ASSERT_TRUE(w.cf.CollectionHasKey("VEX_Chart1", w.c.colChartShapes));

    // Emptied by hand: an empty comment; deleted by hand: no comment at all.
    w.c.colChartShapes->Item("VEX_Chart1")->TextFrame()->Characters()->SetText("");
    w.Reload();
    EXPECT_EQ(w.Child(w.Doc("VEX_Chart1"), "comment"), "<comment></comment>");
    w.c.colChartShapes->Item("VEX_Chart1")->Delete();
    w.Reload();
    EXPECT_EQ(w.Child(w.Doc("VEX_Chart1"), "comment"), "");
    EXPECT_TRUE(w.dialogs.Texts().empty());
}

TEST(ChartIdentityReadBack, AFailureOfTheFirstLookIsTheRowsAndOtherFailuresAreReported) {
    ReadbackWorld w;
    auto oChart = w.Drawn(Def("VEX_Chart1", "column"), host::xlColumnClustered);
    auto doc = w.c.colCharts->Item("VEX_Chart1");
    EXPECT_EQ(testsupport::ErrorNumberOf([&] { w.r.RevEngineerChart(nullptr, doc); }), 91)
        << "no error block: the caller sees the failure";

    // A document without its root: each procedure reports in the common form and goes on.
    auto empty = w.f.ParseChartDefinition("<other/>");
    w.r.RevEngineerChart(oChart, empty);
    EXPECT_EQ(w.dialogs.Texts(),
              (std::vector<std::string>{
                  "PSRevEngineerChart.RevEngineerChartTitle\r\nObject variable or With block variable not set",
                  "PSRevEngineerChart.RevEngineerChartType\r\nObject variable or With block variable not set",
                  "PSRevEngineerChart.RevEngineerNumberFormat\r\nObject variable or With block variable not set",
                  "PSRevEngineerChart.RevEngineerNumberFormat\r\nObject variable or With block variable not set"}));
}
