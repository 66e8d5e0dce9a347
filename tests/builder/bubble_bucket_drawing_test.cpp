// Bubble and strategic bucket charts drawn from their blocks: one series per row with the colours
// the host gave, quadrants, the bucket marks, and the legend drawn of shapes.
#include "builder_world.h"
#include "host/format.h"

using buildertest::BuilderWorld;
using buildertest::Def;
using buildertest::Group;
using host::Variant;

namespace {

const std::string kPlot = Group("categories", "rows", {"Name"}) + Group("x-values", "", {"X"}) +
                          Group("values", "", {"Y"}) + Group("series", "rows", {"Colour"}) +
                          Group("bubble-sizes", "", {"Size"});

std::vector<std::string> Names(const host::Ref<host::Chart>& chart) {
    std::vector<std::string> out;
    for (auto& s : host::Each(*chart->SeriesCollection())) out.push_back(s->Name());
    return out;
}

std::vector<std::string> ShapeNames(const host::Ref<host::Chart>& chart) {
    std::vector<std::string> out;
    for (auto& s : host::Each(*chart->Shapes())) out.push_back(s->Name());
    return out;
}

}  // namespace

TEST(BubbleDrawing, OneSeriesPerRowColouredByKeyWithADrawnLegend) {
    BuilderWorld w;
    std::vector<std::vector<Variant>> rows = {{"Name", "Colour", "X", "Y", "Size"}};
    for (int i = 1; i <= 10; ++i)
        rows.push_back({"Item" + std::to_string(i), i % 2 ? "Odd" : "Even", 4.0 + i, 2.0 * i, 11.0 - i});
    w.Table("Data1", rows);
    w.Sheet("Sheet1")->Activate();
    w.Chart(Def("VEX_Chart1", "bubble",
                kPlot + "<axes><axis type=\"label\" label=\"Reach\"/><axis type=\"value\" label=\"Growth\"/></axes>" +
                    "<static-attributes><attribute setting=\"quadrants\"/></static-attributes>",
                " title=\"Portfolio\""));
    w.b.PopulateChart("VEX_Chart1");
    EXPECT_TRUE(w.dialogs.messages.empty()) << w.dialogs.Texts()[0];

    auto chart = w.ChartObject("VEX_Chart1");
    EXPECT_EQ(chart->ChartType(), host::xlBubble);
    ASSERT_EQ(chart->SeriesCollection()->Count(), 10);
    // The block is sorted largest bubble first: Item1 (size 10) leads.
    auto names = Names(chart);
    EXPECT_EQ(std::vector<std::string>(names.begin(), names.begin() + 3), (std::vector<std::string>{"Odd", "Even", "Odd"}));
    ASSERT_EQ(w.b.mSeriesColors->Count(), 2);
    long odd = host::CLng(w.b.mSeriesColors->Item("Odd")->Color());
    long even = host::CLng(w.b.mSeriesColors->Item("Even")->Color());
    EXPECT_NE(odd, even);
    for (long i = 1; i <= 10; ++i) {
        auto series = chart->SeriesCollection(i);
        EXPECT_EQ(host::CLng(series->Interior()->Color()), series->Name() == "Odd" ? odd : even) << i;
        EXPECT_EQ(series->DataLabels(1)->Text(), "Item" + std::to_string(i));
        EXPECT_EQ(series->Values().size(), 1u);
    }
    EXPECT_EQ(chart->SeriesCollection(1L)->Formula(),
              "=SERIES(\"Odd\",VEX_ChartData!$D$2,VEX_ChartData!$E$2,1,VEX_ChartData!$F$2)");

    // Titles as stored; the quadrant cross over X 5..14 and Y 2..20, from 0 to a tenth above.
    EXPECT_EQ(chart->ChartTitle()->Text(), "Portfolio");
    EXPECT_EQ(chart->Axes(host::xlCategory)->AxisTitle()->Text(), "Reach");
    auto x = chart->Axes(host::xlCategory);
    EXPECT_EQ(x->MinimumScale(), 0);
    EXPECT_EQ(x->MaximumScale(), 15);
    EXPECT_EQ(x->MajorUnit(), 7.5);
    EXPECT_EQ(x->TickLabelPosition(), host::xlTickLabelPositionLow);
    auto y = chart->Axes(host::xlValue);
    EXPECT_EQ(y->MaximumScale(), 22);
    EXPECT_TRUE(y->HasMajorGridlines());

    // The drawn legend: the built-in one off, one text and one round key per name, grouped.
    EXPECT_FALSE(chart->HasLegend());
    ASSERT_EQ(ShapeNames(chart), std::vector<std::string>{"VEX_Legend"});
    auto group = chart->Shapes()->Item("VEX_Legend");
    std::vector<std::string> items;
    for (auto& s : host::Each(*group->GroupItems())) items.push_back(s->Name() + "|" + s->AlternativeText());
    EXPECT_EQ(items, (std::vector<std::string>{"Odd Text|VEX_LS_Odd Text", "Odd Key|VEX_LS_Odd Key",
                                               "Even Text|VEX_LS_Even Text", "Even Key|VEX_LS_Even Key"}));
    auto key = group->GroupItems()->Item("Even Key");
    EXPECT_EQ(key->AutoShapeType(), host::msoShapeOval);
    EXPECT_EQ(key->Fill()->ForeColor()->RGB(), even);
    EXPECT_NEAR(key->Height(), 8, 0.01);
    EXPECT_NEAR(group->GroupItems()->Item("Even Text")->Top() - group->GroupItems()->Item("Odd Text")->Top(), 13, 0.01);

    // Saved and reopened, and refreshed again: one legend, not two.
    w.f.SaveChartDefinition(w.c.colCharts->Item("VEX_Chart1"));
    w.SaveValidateAndReopen("bubble-drawing");
    w.Forget();
    w.b.PopulateChart("VEX_Chart1");
    EXPECT_TRUE(w.dialogs.messages.empty()) << w.dialogs.Texts()[0];
    EXPECT_EQ(ShapeNames(w.f.FindChartObject("VEX_Chart1", "Sheet1")), std::vector<std::string>{"VEX_Legend"});
}

// The older host reaches the bubble type through the scatter type, after the series exist: new and
// refreshed, its bubbles are those of the later host, sizes and all; only the legend differs.
TEST(BubbleDrawing, TheOlderHostDrawsTheSameBubblesWithTheBuiltInLegend) {
    auto Draw = [](const std::string& version) {
        BuilderWorld w;
        w.app = xlsx::NewApplication(xlsx::EngineOptions{version});
        w.c.oApplication = w.app;
        w.c.oWorkbook = w.app->NewWorkbook();
        w.Table("Data1", {{"Name", "Colour", "X", "Y", "Size"},
                          {"A", "Red", 1.0, 2.0, 3.0},
                          {"B", "Red", 2.0, 3.0, 1.0},
                          {"Loose", Variant(), 20.0, 1.0, 0.5}});
        w.Sheet("Sheet1")->Activate();
        w.Chart(Def("VEX_Chart1", "bubble",
                    kPlot + "<dynamic-attributes><attribute setting=\"3D\"/></dynamic-attributes>"
                            "<auto-persistence><persist property=\"legend-visibility\" value=\"show\"/></auto-persistence>"));
        std::vector<std::string> formulas, outlines;
        for (int pass = 1; pass <= 2; ++pass) {
            w.b.PopulateChart("VEX_Chart1");
            EXPECT_TRUE(w.dialogs.messages.empty()) << w.dialogs.Texts()[0];
            w.f.SaveChartDefinition(w.c.colCharts->Item("VEX_Chart1"));
            w.SaveValidateAndReopen("bubble-host-" + version + "-" + std::to_string(pass));
            w.Forget();
            auto chart = w.f.FindChartObject("VEX_Chart1", "Sheet1");
            EXPECT_EQ(chart->ChartType(), host::xlBubble3DEffect);
            for (auto& s : host::Each(*chart->SeriesCollection())) {
                formulas.push_back(s->Formula());
                outlines.push_back(host::CStr(s->Border()->LineStyle()) + " " + host::CStr(s->Border()->Weight()));
            }
            if (version == "11.0") {
                // Rows of one key share one entry of the built-in legend.
                EXPECT_TRUE(chart->HasLegend());
                EXPECT_EQ(chart->Shapes()->Count(), 0);
                EXPECT_EQ(chart->Legend()->LegendEntries()->Count(), 2);
            }
        }
        return std::make_pair(formulas, outlines);
    };
    auto [older, olderOutlines] = Draw("11.0");
    auto [later, laterOutlines] = Draw("16.0");
    EXPECT_EQ(older, later);
    EXPECT_EQ(olderOutlines, laterOutlines) << "the scatter type's missing line is no outline";
    // A row without a key is a placeholder on the data sheet's first cell.
    std::vector<std::string> bubbles = {
        "=SERIES(\"Red\",VEX_ChartData!$D$2,VEX_ChartData!$E$2,1,VEX_ChartData!$F$2)",
        "=SERIES(\"Red\",VEX_ChartData!$D$3,VEX_ChartData!$E$3,2,VEX_ChartData!$F$3)",
        "=SERIES(,VEX_ChartData!$A$1,VEX_ChartData!$A$1,3,VEX_ChartData!$A$1)"};
    auto twice = bubbles;
    twice.insert(twice.end(), bubbles.begin(), bubbles.end());
    EXPECT_EQ(older, twice) << "new, then refreshed";
}

TEST(BucketDrawing, StackedItemsAndARedDashPerBucket) {
    BuilderWorld w;
    w.Table("Data1", {{"Item", "Bucket", "Amount", "Label"},
                      {"Widget", "Growth", 10.0, "Red"},
                      {"Gadget", "Core", 5.0, "Blue"},
                      {"Gizmo", "Core", 3.0, "Red"}});
    auto r = w.AddSheet("Ranges");
    w.Row(r, 1, 1, {"Targets"});
    w.Row(r, 3, 1, {"Bucket", "Amount"});
    w.Row(r, 4, 1, {"Growth", 100.0});
    w.Row(r, 5, 1, {"Core", 50.0});
    w.Name("VEX_SBTargets", "=Ranges!$A$1:$B$5");
    w.Sheet("Sheet1")->Activate();
    w.Chart(Def("VEX_Chart1", "strategic bucket",
                Group("categories", "rows", {"Item"}) + Group("series", "rows", {"Label"}) +
                    "<data-labels manual-labels=\"yes\"/>",
                " strategic-bucket-table-id=\"VEX_SBTargets\" title=\"Buckets\""));
    w.b.PopulateChart("VEX_Chart1");
    EXPECT_TRUE(w.dialogs.messages.empty()) << w.dialogs.Texts()[0];

    auto chart = w.ChartObject("VEX_Chart1");
    EXPECT_EQ(Names(chart), (std::vector<std::string>{"Red", "Blue", "Red", "Strategic Buckets"}));
    EXPECT_EQ(chart->ChartType(), host::xlCombination);
    for (long i = 1; i <= 3; ++i) {
        auto series = chart->SeriesCollection(i);
        EXPECT_EQ(series->ChartType(), host::xlColumnStacked);
        ASSERT_TRUE(series->HasDataLabels());
        // Version 16 labels every bucket of an item, the empty one too.
        EXPECT_EQ(series->DataLabels(1)->Text(), series->DataLabels(2)->Text());
    }
    EXPECT_EQ(chart->SeriesCollection(1L)->Formula(),
              "=SERIES(\"Red\",VEX_ChartData!$E$1:$F$1,VEX_ChartData!$E$3:$F$3,1)");
    EXPECT_EQ(chart->ChartGroups(1)->GapWidth(), 0);
    auto buckets = chart->SeriesCollection(4L);
    EXPECT_EQ(buckets->ChartType(), host::xlLineMarkers);
    EXPECT_EQ(buckets->MarkerStyle(), host::xlMarkerStyleDash);
    EXPECT_EQ(buckets->MarkerSize(), 55);
    EXPECT_EQ(buckets->MarkerForegroundColor(), 255);
    EXPECT_EQ(buckets->Values(), (std::vector<Variant>{100.0, 50.0}));
    ASSERT_TRUE(buckets->HasDataLabels());
    EXPECT_EQ(host::CStr(buckets->DataLabels()->Font()->Name()), "Arial");
    EXPECT_EQ(host::CLng(buckets->DataLabels()->Font()->Color()), 16777215);
    // Red and Blue in the drawn legend with square keys; the bucket series has none.
    auto group = chart->Shapes()->Item("VEX_Legend");
    EXPECT_EQ(group->GroupItems()->Count(), 4);
    EXPECT_EQ(group->GroupItems()->Item("Red Key")->AutoShapeType(), host::msoShapeRectangle);
    EXPECT_EQ(host::CLng(chart->SeriesCollection(3L)->Interior()->Color()),
              host::CLng(chart->SeriesCollection(1L)->Interior()->Color()));
    w.SaveValidateAndReopen("bucket-drawing");
}

// With the drawn legend the plot area takes a fixed place: its inner box leaves room on the left for
// the value labels and the upright value title, below for the labels and the title of the other
// axis, and the legend stands right of the plot, inside the chart.
TEST(BubbleDrawing, AxisTitlesAndTheLegendStandBesideThePlot) {
    BuilderWorld w;
    w.Table("Data1", {{"Name", "Colour", "X", "Y", "Size", "Bucket"},
                      {"A", "Red", 1500.0, 64000.0, 3.0, "Core"},
                      {"B", "Blue", 2500.0, 38000.0, 1.0, "Growth"}});
    auto r = w.AddSheet("Ranges");
    w.Row(r, 1, 1, {"Targets"});
    w.Row(r, 3, 1, {"Bucket", "Y"});
    w.Row(r, 4, 1, {"Growth", 50000.0});
    w.Row(r, 5, 1, {"Core", 70000.0});
    w.Name("VEX_SBTargets", "=Ranges!$A$1:$B$5");
    w.Sheet("Sheet1")->Activate();
    const std::string axes = "<axes><axis type=\"label\" label=\"Units sold\"/><axis type=\"value\" label=\"Revenue\"/></axes>";
    w.Chart(Def("VEX_Chart1", "bubble", kPlot + axes, " title=\"Bubbles\""));
    w.Chart(Def("VEX_Chart2", "strategic bucket",
                Group("categories", "rows", {"Name"}) + Group("series", "rows", {"Colour"}) + axes,
                " strategic-bucket-table-id=\"VEX_SBTargets\" title=\"Buckets\""));
    for (auto id : {"VEX_Chart1", "VEX_Chart2"}) {
        w.b.PopulateChart(id);
        w.f.SaveChartDefinition(w.c.colCharts->Item(id));
    }
    EXPECT_TRUE(w.dialogs.messages.empty()) << w.dialogs.Texts()[0];
    w.SaveValidateAndReopen("drawing-layout");
    w.Forget();
    for (auto id : {"VEX_Chart1", "VEX_Chart2"}) {
        SCOPED_TRACE(id);
        auto chart = w.f.FindChartObject(id, "Sheet1");
        ASSERT_TRUE(chart);
        auto plot = chart->PlotArea();
        ASSERT_EQ(plot->Position(), host::xlChartElementPositionCustom);
        // At 10 points: a line of each title, "70000" of at least half an em per digit, the
        // labels of the other axis a line high.
        EXPECT_GE(plot->InsideLeft(), 7 + 10 + 5 * 5);
        EXPECT_GE(plot->Left(), 7 + 10);
        double below = chart->ChartArea()->Height() - plot->InsideTop() - plot->InsideHeight();
        EXPECT_GE(below, 7 + 10 + 10);
        auto legend = chart->Shapes()->Item("VEX_Legend");
        EXPECT_GE(legend->Left(), plot->Left() + plot->Width());
        EXPECT_LE(legend->Left() + legend->Width(), chart->ChartArea()->Width());
    }
}
