// Axis titles, legend and label fonts changed by hand on a saved chart, read back into
// `auto-persistence`, `axes` and `data-labels` at the next load.
#include "readback_world.h"
#include "xlsx/package.h"

using readbacktest::Def;
using readbacktest::ReadbackWorld;

namespace {

const std::string kAxes =
    "<axes><axis type=\"label\" label=\"Region\" sticky=\"no\"/><axis type=\"value\" label=\"Amount\" sticky=\"no\"/></axes>";

// Both axis titles as the drawing leaves them: the definition's labels in the default font.
void DrawAxisTitles(const host::Ref<host::Chart>& oChart) {
    for (long k : {host::xlCategory, host::xlValue}) {
        auto axis = oChart->Axes(k);
        axis->SetHasTitle(true);
        axis->AxisTitle()->SetText(k == host::xlCategory ? "Region" : "Amount");
        ReadbackWorld::SetFont(axis->AxisTitle()->Font(), "Arial", 10, "Bold", 0);
        axis->AxisTitle()->SetAutoScaleFont(true);
    }
}

}  // namespace

TEST(ChartLookReadBack, AxisTitlesTouchedByHandBecomeStickyAndKeepTheirFonts) {
    ReadbackWorld w;
    auto oChart = w.Drawn(Def("VEX_Chart1", "column", kAxes), host::xlColumnClustered);
    DrawAxisTitles(oChart);
    w.Reload();
    auto chart = w.Doc("VEX_Chart1");
    // Untouched titles: labels and sticky as they were, their fonts stored all the same.
    EXPECT_EQ(w.Child(chart, "axes"), kAxes);
    EXPECT_EQ(w.Persist(chart, "LabelAxis"),
              (std::vector<std::string>{"LabelAxis-font-size=10", "LabelAxis-font-name=Arial", "LabelAxis-font-color=0",
                                        "LabelAxis-font-style=Bold", "LabelAxis-font-autoscale=True"}));
    EXPECT_EQ(w.Persist(chart, "ValueAxis").size(), 5u);

    // The value axis title's font changed by hand; the label axis title retyped.
    oChart = w.Live("VEX_Chart1");
    auto valueTitle = oChart->Axes(host::xlValue)->AxisTitle();
    ReadbackWorld::SetFont(valueTitle->Font(), "Georgia", 14, "Italic", 255);
    valueTitle->SetAutoScaleFont(false);
    oChart->Axes(host::xlCategory)->AxisTitle()->SetText("Sales region");
    w.Reload();
    chart = w.Doc("VEX_Chart1");
    EXPECT_EQ(w.Child(chart, "axes"),
              "<axes><axis type=\"label\" label=\"Sales region\" sticky=\"yes\"/>"
              "<axis type=\"value\" label=\"Amount\" sticky=\"yes\"/></axes>");
    // Axes first, label axis before value axis, then legend and labels.
    auto persist = w.Persist(chart);
    ASSERT_GE(persist.size(), 10u);
    EXPECT_EQ(std::vector<std::string>(persist.begin(), persist.begin() + 10),
              (std::vector<std::string>{"LabelAxis-font-size=10", "LabelAxis-font-name=Arial", "LabelAxis-font-color=0",
                                        "LabelAxis-font-style=Bold", "LabelAxis-font-autoscale=True",
                                        "ValueAxis-font-size=14", "ValueAxis-font-name=Georgia",
                                        "ValueAxis-font-color=255", "ValueAxis-font-style=Italic",
                                        "ValueAxis-font-autoscale=False"}));
    EXPECT_EQ(persist[10].rfind("legend-visibility=", 0), 0u) << persist[10];

    // Put back exactly as drawn: sticky never returns to "no".
    oChart = w.Live("VEX_Chart1");
    DrawAxisTitles(oChart);
    w.Reload();
    EXPECT_EQ(w.Child(w.Doc("VEX_Chart1"), "axes"),
              "<axes><axis type=\"label\" label=\"Region\" sticky=\"yes\"/>"
              "<axis type=\"value\" label=\"Amount\" sticky=\"yes\"/></axes>");

    // A title deleted by hand: an empty sticky label with empty font values.
    w.Live("VEX_Chart1")->Axes(host::xlValue)->AxisTitle()->Delete();
    w.Reload();
    chart = w.Doc("VEX_Chart1");
    EXPECT_EQ(w.Child(chart, "axes"),
              "<axes><axis type=\"label\" label=\"Region\" sticky=\"yes\"/>"
              "<axis type=\"value\" label=\"\" sticky=\"yes\"/></axes>");
    EXPECT_EQ(w.Persist(chart, "ValueAxis"),
              (std::vector<std::string>{"ValueAxis-font-size=", "ValueAxis-font-name=", "ValueAxis-font-color=",
                                        "ValueAxis-font-style=", "ValueAxis-font-autoscale="}));
    EXPECT_TRUE(w.dialogs.Texts().empty()) << w.dialogs.Texts().front();
}

TEST(ChartLookReadBack, MixedFontsInATitleStandForTheStandardFont) {
    ReadbackWorld w;
    auto oChart = w.Drawn(Def("VEX_Chart1", "bar", kAxes), host::xlBarClustered);
    DrawAxisTitles(oChart);
    for (auto& doc : *w.c.colCharts) w.f.SaveChartDefinition(doc);
    auto path = testsupport::ScratchDir("mixed_fonts") / "book.xlsx";
    w.c.oWorkbook->SaveAs(path.string());
    w.app->Close(w.c.oWorkbook);

    // The end of the label axis title in a font of its own, as the application writes a title
    // formatted in parts: name and size then read Null.
    auto pkg = xlsx::Package::Open(path.string());
    const std::string run = "<a:t>Region</a:t></a:r>";
    int hits = 0;
    for (auto& part : pkg->Parts()) {
        std::string text = part.starts_with("xl/charts/chart") ? pkg->Bytes(part) : "";
        auto at = text.find(run);
        if (at == std::string::npos) continue;
        text.replace(at, run.size(), "<a:t>Reg</a:t></a:r><a:r><a:rPr lang=\"en-US\" sz=\"2000\">"
                                     "<a:latin typeface=\"Georgia\"/></a:rPr><a:t>ion</a:t></a:r>");
        pkg->Put(part, text, pkg->ContentType(part));
        ++hits;
    }
    ASSERT_EQ(hits, 1);
    pkg->Save(path.string());
    w.c.oWorkbook = w.app->Open(path.string());
    w.c.colTables = nullptr;
    w.c.colCharts = nullptr;
    w.f.RetrieveTableDefinitions();
    w.f.RetrieveChartDefinitions();

    auto title = w.Live("VEX_Chart1")->Axes(host::xlCategory)->AxisTitle();
    ASSERT_EQ(title->Text(), "Region");
    ASSERT_TRUE(title->Font()->Size().IsNull());
    ASSERT_TRUE(title->Font()->Name().IsNull());
    auto chart = w.Doc("VEX_Chart1");
    auto app = w.c.oApplication;
    auto persist = w.Persist(chart, "LabelAxis");
    ASSERT_EQ(persist.size(), 5u);
    EXPECT_EQ(persist[0], "LabelAxis-font-size=" + host::NumberToText(app->StandardFontSize()));
    EXPECT_EQ(persist[1], "LabelAxis-font-name=" + app->StandardFont());
    EXPECT_EQ(w.Child(chart, "axes"),
              "<axes><axis type=\"label\" label=\"Region\" sticky=\"yes\"/>"
              "<axis type=\"value\" label=\"Amount\" sticky=\"no\"/></axes>");
    EXPECT_TRUE(w.dialogs.Texts().empty()) << w.dialogs.Texts().front();
}

TEST(ChartLookReadBack, LegendVisibilityPlaceAndFont) {
    ReadbackWorld w;
    auto oChart = w.Drawn(Def("VEX_Chart1", "column", kAxes), host::xlColumnClustered);
    oChart->SetHasLegend(true);
    oChart->Legend()->SetPosition(host::xlLegendPositionTop);
    ReadbackWorld::SetFont(oChart->Legend()->Font(), "Verdana", 8, "Bold", 128);
    oChart->Legend()->SetAutoScaleFont(false);
    w.Reload();
    EXPECT_EQ(w.Persist(w.Doc("VEX_Chart1"), "legend"),
              (std::vector<std::string>{"legend-visibility=show", "legend-position=-4160", "legend-font-name=Verdana",
                                        "legend-font-style=Bold", "legend-font-size=8", "legend-font-color=128",
                                        "legend-font-autoscale=False"}));

    // Dragged by hand: this host reports a custom position, which is what is stored.
    oChart = w.Live("VEX_Chart1");
    oChart->Legend()->SetLeft(12);
    oChart->Legend()->SetTop(34);
    w.Reload();
    EXPECT_EQ(w.Persist(w.Doc("VEX_Chart1"), "legend-p"),
              std::vector<std::string>{"legend-position=" + std::to_string(host::xlLegendPositionCustom)});

    // Removed by hand: "hide" and nothing else of the legend.
    w.Live("VEX_Chart1")->SetHasLegend(false);
    w.Reload();
    EXPECT_EQ(w.Persist(w.Doc("VEX_Chart1"), "legend"), std::vector<std::string>{"legend-visibility=hide"});
    EXPECT_TRUE(w.dialogs.Texts().empty()) << w.dialogs.Texts().front();
}

TEST(ChartLookReadBack, ALegendDraggedOnAnOlderHostStoresItsPlace) {
    ReadbackWorld w;
    w.app = xlsx::NewApplication({"11.0"});
    w.c.oApplication = w.app;
    w.c.oWorkbook = w.app->NewWorkbook();
    w.Table("Data1", {{"Region", "Amount", "Cost"}, {"East", 10.0, 4.0}, {"West", 20.0, 5.0}});
    auto oChart = w.Drawn(Def("VEX_Chart1", "column"), host::xlColumnClustered, 2);
    oChart->SetHasLegend(true);
    oChart->Legend()->SetLeft(12);
    oChart->Legend()->SetTop(34.5);
    w.Reload();
    auto legend = w.Persist(w.Doc("VEX_Chart1"), "legend-");
    ASSERT_GE(legend.size(), 3u);
    EXPECT_EQ(std::vector<std::string>(legend.begin(), legend.begin() + 3),
              (std::vector<std::string>{"legend-visibility=show", "legend-left=12", "legend-top=34.5"}));
    EXPECT_TRUE(w.dialogs.Texts().empty()) << w.dialogs.Texts().front();
}

TEST(ChartLookReadBack, TheRarestLabelFontWinsAndTheLabelKindIsKept) {
    ReadbackWorld w;
    auto oChart = w.Drawn(Def("VEX_Chart1", "column",
                              "<data-labels manual-labels=\"yes\"><data-label show=\"percentages\"/></data-labels>"),
                          host::xlColumnClustered);
    for (long i = 1; i <= 3; ++i) {
        auto s = oChart->SeriesCollection(i);
        s->ApplyDataLabels(host::xlDataLabelsShowValue);
        ReadbackWorld::SetFont(s->DataLabels()->Font(), "Arial", 9, "Regular", 0);
        s->DataLabels()->SetAutoScaleFont(true);
    }
    // The user changes the labels of the second series only.
    auto changed = oChart->SeriesCollection(2L)->DataLabels();
    ReadbackWorld::SetFont(changed->Font(), "Courier New", 11, "Bold Italic", 65280);
    changed->SetAutoScaleFont(false);
    std::string background = host::CStr(changed->Font()->Background());
    w.Reload();
    auto chart = w.Doc("VEX_Chart1");
    EXPECT_EQ(w.Persist(chart, "label-font"),
              (std::vector<std::string>{"label-font-name=Courier New", "label-font-style=Bold Italic",
                                        "label-font-size=11", "label-font-color=65280",
                                        "label-font-background-color=" + background, "label-font-autoscale=False"}));
    EXPECT_EQ(w.Persist(chart, "bucket-"),
              (std::vector<std::string>{"bucket-label-font-name=", "bucket-label-font-size=",
                                        "bucket-label-font-color=", "bucket-label-font-style=",
                                        "bucket-label-font-autoscale="}))
        << "no bucket value series";
    EXPECT_EQ(w.Child(chart, "data-labels"),
              "<data-labels manual-labels=\"yes\"><data-label show=\"values\"/></data-labels>");

    // No labels left: the defaults, and no `data-label`.
    oChart = w.Live("VEX_Chart1");
    for (long i = 1; i <= 3; ++i) oChart->SeriesCollection(i)->SetHasDataLabels(false);
    w.Reload();
    chart = w.Doc("VEX_Chart1");
    EXPECT_EQ(w.Persist(chart, "label-font"),
              (std::vector<std::string>{"label-font-name=Arial", "label-font-style=Regular", "label-font-size=9",
                                        "label-font-color=0", "label-font-background-color=-4105",
                                        "label-font-autoscale=True"}));
    EXPECT_EQ(w.Child(chart, "data-labels"), "<data-labels manual-labels=\"yes\"/>");
    EXPECT_TRUE(w.dialogs.Texts().empty()) << w.dialogs.Texts().front();
}

TEST(ChartLookReadBack, APieKeepsItsAxesAndStoresPercentages) {
    ReadbackWorld w;
    auto oChart = w.Drawn(Def("VEX_Chart1", "pie", kAxes), host::xlPieExploded, 1);
    oChart->SeriesCollection(1L)->ApplyDataLabels(host::xlDataLabelsShowPercent);
    w.Reload();
    auto chart = w.Doc("VEX_Chart1");
    EXPECT_EQ(w.Attr(chart, "type"), "pie");
    EXPECT_EQ(w.Child(chart, "axes"), kAxes) << "a pie's axes element stays untouched";
    EXPECT_TRUE(w.Persist(chart, "LabelAxis").empty());
    EXPECT_TRUE(w.Persist(chart, "ValueAxis").empty());
    EXPECT_EQ(w.Child(chart, "data-labels"), "<data-labels><data-label show=\"percentages\"/></data-labels>");
    EXPECT_EQ(w.Persist(chart).front().rfind("legend-visibility=", 0), 0u);
    EXPECT_TRUE(w.dialogs.Texts().empty()) << w.dialogs.Texts().front();
}
