// Area, bar, column and pie charts drawn from their blocks, with the look persisted by read-back
// and the comment box, checked through the chart model after a save and reopen.
#include "builder_world.h"
#include "host/format.h"

using buildertest::BuilderWorld;
using buildertest::Def;
using buildertest::Group;

namespace {

// Sales by region (rows) and product (series).
void SalesTable(BuilderWorld& w) {
    w.Table("Data1", {{"Region", "Product", "Amount"},
                      {"East", "Widget", 1.0},
                      {"East", "Gadget", 2.0},
                      {"West", "Widget", 3.0},
                      {"West", "Gadget", 4.0},
                      {"North", "Widget", 5.0}});
    w.Sheet("Sheet1")->Activate();
}

const std::string kByRegionAndProduct = Group("categories", "rows", {"Region"}) +
                                        Group("series", "rows", {"Product"}) + Group("values", "", {"Amount"});

std::string Settings(const std::vector<std::string>& settings) {
    std::string s = "<dynamic-attributes>";
    for (auto& setting : settings) s += "<attribute setting=\"" + setting + "\"/>";
    return s + "</dynamic-attributes>";
}

std::string Persisted(const std::vector<std::pair<std::string, std::string>>& values) {
    std::string s = "<auto-persistence>";
    for (auto& [property, value] : values) s += "<persist property=\"" + property + "\" value=\"" + value + "\"/>";
    return s + "</auto-persistence>";
}

// Saves, reopens, and answers each chart's object from its sheet.
std::vector<host::Ref<host::Chart>> Reopened(BuilderWorld& w, const std::string& test,
                                             const std::vector<std::string>& ids) {
    w.SaveValidateAndReopen(test);
    std::vector<host::Ref<host::Chart>> out;
    for (auto& id : ids) out.push_back(w.f.FindChartObject(id, "Sheet1"));
    return out;
}

std::string FontText(const host::Ref<host::Font>& f) {
    return host::CStr(f->Name()) + " " + host::CStr(f->FontStyle()) + " " + host::CStr(f->Size()) + " " +
           host::CStr(f->Color());
}

}  // namespace

TEST(Drawing, EveryAreaBarAndColumnTypeFromItsSettings) {
    struct Case { std::string type; std::vector<std::string> settings; long expected; };
    const std::vector<Case> cases = {
        {"area", {}, host::xlArea},
        {"area", {"3D"}, host::xl3DArea},
        {"area", {"stacked"}, host::xlAreaStacked},
        {"area", {"3D", "stacked"}, host::xl3DAreaStacked},
        {"area", {"stacked", "100%"}, host::xlAreaStacked100},
        {"area", {"3D", "stacked", "100%"}, host::xl3DAreaStacked100},
        {"bar", {}, host::xlBarClustered},
        {"bar", {"3D"}, host::xl3DBarClustered},
        {"bar", {"stacked"}, host::xlBarStacked},
        {"bar", {"3D", "stacked"}, host::xl3DBarStacked},
        {"bar", {"stacked", "100%"}, host::xlBarStacked100},
        {"bar", {"3D", "stacked", "100%"}, host::xl3DBarStacked100},
        {"column", {}, host::xlColumnClustered},
        {"column", {"3D"}, host::xl3DColumnClustered},
        {"column", {"stacked"}, host::xlColumnStacked},
        {"column", {"3D", "stacked"}, host::xl3DColumnStacked},
        {"column", {"stacked", "100%"}, host::xlColumnStacked100},
        {"column", {"3D", "stacked", "100%"}, host::xl3DColumnStacked100},
        // "100%" without "stacked", or a setting twice, turns any family into clustered columns.
        {"bar", {"3D", "100%"}, host::xlColumnClustered},
        {"area", {"stacked", "stacked"}, host::xlColumnClustered},
    };
    BuilderWorld w;
    SalesTable(w);
    std::vector<std::string> ids;
    for (size_t i = 0; i < cases.size(); ++i) {
        std::string id = "VEX_Chart" + std::to_string(i + 1);
        ids.push_back(id);
        w.Chart(Def(id, cases[i].type, kByRegionAndProduct + Settings(cases[i].settings), " title=\"Sales\""));
        w.b.PopulateChart(id);
    }
    EXPECT_TRUE(w.dialogs.messages.empty()) << w.dialogs.Texts()[0];
    auto charts = Reopened(w, "drawing-abc-types", ids);
    for (size_t i = 0; i < cases.size(); ++i) {
        SCOPED_TRACE(ids[i]);
        auto& chart = charts[i];
        ASSERT_TRUE(chart);
        EXPECT_EQ(chart->ChartType(), cases[i].expected);
        EXPECT_EQ(chart->ChartTitle()->Text(), "Sales");
        EXPECT_TRUE(chart->HasLegend()) << "series headings in rows give a legend";
        ASSERT_EQ(chart->SeriesCollection()->Count(), 2);
        EXPECT_EQ(chart->SeriesCollection(1L)->Name(), "Widget");
        EXPECT_EQ(chart->SeriesCollection(2L)->Name(), "Gadget");
        EXPECT_EQ(chart->SeriesCollection(2L)->Values(), (std::vector<host::Variant>{2.0, 4.0, 0.0}));
        EXPECT_EQ(chart->SeriesCollection(1L)->XValues(), (std::vector<host::Variant>{"East", "West", "North"}));
    }
    // The first chart's block: name, categories and values references into the data sheet, in A1.
    EXPECT_EQ(charts[0]->SeriesCollection(1L)->Formula(),
              "=SERIES(VEX_ChartData!$C$1,VEX_ChartData!$B$2:$B$4,VEX_ChartData!$C$2:$C$4,1)");
}

TEST(Drawing, TitlesAxisTitlesLabelsAndTheLegendOfABarAndAColumnChart) {
    BuilderWorld w;
    SalesTable(w);
    const std::string axes =
        "<axes><axis type=\"label\" label=\"Region\"/><axis type=\"value\" label=\"Amount\"/>"
        "<axis type=\"other\" label=\"Ignored\"/></axes>";
    const std::string labels = "<data-labels><data-label show=\"values\"/></data-labels>";
    w.Chart(Def("VEX_Chart1", "bar", kByRegionAndProduct + axes + labels));
    // Persisted by read-back: fonts of the label axis and labels, and a legend at the bottom.
    w.Chart(Def("VEX_Chart2", "column",
                kByRegionAndProduct + axes + labels +
                    Persisted({{"legend-visibility", "show"},
                               {"legend-position", "-4107"},
                               {"legend-font-name", "Courier New"},
                               {"legend-font-size", "11"},
                               {"legend-font-style", "Italic"},
                               {"label-font-name", "Times New Roman"},
                               {"label-font-style", "Bold"},
                               {"label-font-size", "8"},
                               {"label-font-color", "255"},
                               {"LabelAxis-font-name", "Verdana"},
                               {"LabelAxis-font-size", "12"},
                               {"LabelAxis-font-style", ""},
                               {"unknown-key", "1"}}),
                " title=\"Sales by region\" number-format=\"#,##0.0\""));
    // A legend the user dragged: left and top beat the stored position; the axis with an empty label
    // loses the title the user gave it by hand.
    w.Chart(Def("VEX_Chart3", "area",
                Group("categories", "rows", {"Region"}) + Group("series", "none", {}) +
                    Group("values", "", {"Amount"}) + "<axes><axis type=\"value\" label=\"\"/></axes>" +
                    Persisted({{"legend-visibility", "show"},
                               {"legend-position", "-4131"},
                               {"legend-left", "20"},
                               {"legend-top", "30.5"}})));
    w.Chart(Def("VEX_Chart4", "column", kByRegionAndProduct + Persisted({{"legend-visibility", "hide"}})));
    auto c3 = w.ChartObject("VEX_Chart3");
    c3->Axes(host::xlValue)->SetHasTitle(true);
    c3->Axes(host::xlValue)->AxisTitle()->SetText("By hand");
    for (auto id : {"VEX_Chart1", "VEX_Chart2", "VEX_Chart3", "VEX_Chart4"}) w.b.PopulateChart(id);
    EXPECT_TRUE(w.dialogs.messages.empty()) << w.dialogs.Texts()[0];

    auto charts = Reopened(w, "drawing-abc-looks", {"VEX_Chart1", "VEX_Chart2", "VEX_Chart3", "VEX_Chart4"});
    // A bar chart: no title; the value axis title horizontal, the category title upward.
    auto& bar = charts[0];
    EXPECT_EQ(bar->ChartType(), host::xlBarClustered);
    EXPECT_FALSE(bar->HasTitle());
    EXPECT_TRUE(bar->HasLegend()) << "auto leaves the legend that the series headings gave";
    EXPECT_EQ(bar->Axes(host::xlCategory)->AxisTitle()->Text(), "Region");
    EXPECT_EQ(host::CLng(bar->Axes(host::xlCategory)->AxisTitle()->Orientation()), host::xlUpward);
    EXPECT_EQ(bar->Axes(host::xlValue)->AxisTitle()->Text(), "Amount");
    EXPECT_EQ(host::CLng(bar->Axes(host::xlValue)->AxisTitle()->Orientation()), host::xlHorizontal);
    EXPECT_EQ(FontText(bar->Axes(host::xlValue)->AxisTitle()->Font()), "Arial Bold 10 0");
    EXPECT_TRUE(bar->Axes(host::xlValue)->TickLabels()->NumberFormatLinked());
    for (auto& series : host::Each(*bar->SeriesCollection())) {
        ASSERT_TRUE(series->HasDataLabels());
        EXPECT_EQ(series->DataLabels()->Position(), host::xlLabelPositionCenter);
        EXPECT_TRUE(series->DataLabels()->ShowValue());
        EXPECT_EQ(FontText(series->DataLabels()->Font()), "Arial Regular 9 0");
    }

    // A column chart: titles the other way round, persisted fonts, the legend shown at the bottom.
    auto& column = charts[1];
    EXPECT_EQ(column->ChartTitle()->Text(), "Sales by region");
    // Linked to the block's cells, the value axis carries their format for readers that don't look.
    EXPECT_TRUE(column->Axes(host::xlValue)->TickLabels()->NumberFormatLinked());
    EXPECT_EQ(column->Axes(host::xlValue)->TickLabels()->NumberFormat(), "#,##0.0");
    EXPECT_EQ(host::CLng(column->Axes(host::xlCategory)->AxisTitle()->Orientation()), host::xlHorizontal);
    EXPECT_EQ(host::CLng(column->Axes(host::xlValue)->AxisTitle()->Orientation()), host::xlUpward);
    EXPECT_EQ(FontText(column->Axes(host::xlCategory)->AxisTitle()->Font()), "Verdana Bold 12 0")
        << "an empty stored axis style falls back to Bold";
    EXPECT_EQ(FontText(column->SeriesCollection(2L)->DataLabels()->Font()), "Times New Roman Bold 8 255");
    ASSERT_TRUE(column->HasLegend());
    EXPECT_EQ(column->Legend()->Position(), host::xlLegendPositionBottom);
    EXPECT_EQ(FontText(column->Legend()->Font()), "Courier New Italic 11 0");

    // An area chart without series headings: no legend from them, but "show" brings it at the
    // dragged place; the title set by hand is gone with the empty label.
    auto& area = charts[2];
    EXPECT_EQ(area->ChartType(), host::xlArea);
    ASSERT_TRUE(area->HasLegend());
    EXPECT_DOUBLE_EQ(area->Legend()->Left(), 20);
    EXPECT_DOUBLE_EQ(area->Legend()->Top(), 30.5);
    EXPECT_FALSE(area->Axes(host::xlValue)->HasTitle());
    EXPECT_EQ(area->SeriesCollection()->Count(), 1);

    EXPECT_FALSE(charts[3]->HasLegend()) << "hide beats the series headings";
}

// Half a stored place: the unset half (-1E+50) is refused by the host, and that side of the legend
// stays where the legend's position put it.
TEST(Drawing, ALegendWithHalfAPlaceKeepsTheOtherHalf) {
    BuilderWorld w;
    SalesTable(w);
    w.Chart(Def("VEX_Chart1", "column", kByRegionAndProduct + Persisted({{"legend-visibility", "show"}})));
    w.Chart(Def("VEX_Chart2", "column",
                kByRegionAndProduct + Persisted({{"legend-visibility", "show"}, {"legend-left", "20"}})));
    w.Chart(Def("VEX_Chart3", "column",
                kByRegionAndProduct + Persisted({{"legend-visibility", "show"}, {"legend-top", "30"}})));
    for (auto id : {"VEX_Chart1", "VEX_Chart2", "VEX_Chart3"}) w.b.PopulateChart(id);
    EXPECT_TRUE(w.dialogs.messages.empty()) << w.dialogs.Texts()[0];
    auto charts = Reopened(w, "drawing-half-place", {"VEX_Chart1", "VEX_Chart2", "VEX_Chart3"});
    auto placed = charts[0]->Legend();
    EXPECT_GT(placed->Top(), 30);
    EXPECT_DOUBLE_EQ(charts[1]->Legend()->Left(), 20);
    EXPECT_NEAR(charts[1]->Legend()->Top(), placed->Top(), 0.01);
    EXPECT_DOUBLE_EQ(charts[2]->Legend()->Top(), 30);
    EXPECT_NEAR(charts[2]->Legend()->Left(), placed->Left(), 0.01);
}

TEST(Drawing, EveryPieTypeWithItsLabelsAndLegend) {
    struct Case {
        std::vector<std::string> settings;
        std::vector<std::string> shows;
        std::string legend;
        long type;
        long labels;  // 0: none
        bool hasLegend;
    };
    const std::vector<Case> cases = {
        {{}, {}, "auto", host::xlPie, 0, true},
        {{"3D"}, {"values"}, "hide", host::xl3DPie, host::xlDataLabelsShowValue, false},
        {{"exploded"}, {"percentages"}, "show", host::xlPieExploded, host::xlDataLabelsShowPercent, true},
        {{"3D", "exploded"}, {"percentages", "values"}, "auto", host::xl3DPieExploded, host::xlDataLabelsShowValue, true},
        {{"3D", "3D"}, {"names"}, "auto", host::xlPieExploded, 0, true},
    };
    BuilderWorld w;
    SalesTable(w);
    std::vector<std::string> ids;
    for (size_t i = 0; i < cases.size(); ++i) {
        std::string id = "VEX_Chart" + std::to_string(i + 1);
        ids.push_back(id);
        std::string labels = "<data-labels>";
        for (auto& show : cases[i].shows) labels += "<data-label show=\"" + show + "\"/>";
        labels += "</data-labels>";
        w.Chart(Def(id, "pie",
                    Group("categories", "rows", {"Region"}) + Group("series", "none", {}) +
                        Group("values", "", {"Amount"}) + labels + Settings(cases[i].settings) +
                        Persisted({{"legend-visibility", cases[i].legend}}),
                    " title=\"Share\""));
        w.b.PopulateChart(id);
    }
    EXPECT_TRUE(w.dialogs.messages.empty()) << w.dialogs.Texts()[0];
    auto charts = Reopened(w, "drawing-pies", ids);
    for (size_t i = 0; i < cases.size(); ++i) {
        SCOPED_TRACE(ids[i]);
        auto& chart = charts[i];
        EXPECT_EQ(chart->ChartType(), cases[i].type);
        EXPECT_EQ(chart->ChartTitle()->Text(), "Share");
        EXPECT_EQ(chart->HasLegend(), cases[i].hasLegend);
        ASSERT_EQ(chart->SeriesCollection()->Count(), 1);
        auto series = chart->SeriesCollection(1L);
        EXPECT_EQ(series->Formula(), "=SERIES(,VEX_ChartData!$B$" + std::to_string(4 * i + 2) + ":$B$" +
                                         std::to_string(4 * i + 4) + ",VEX_ChartData!$C$" + std::to_string(4 * i + 2) +
                                         ":$C$" + std::to_string(4 * i + 4) + ",1)")
            << "a pie's series has no name";
        EXPECT_EQ(series->Values(), (std::vector<host::Variant>{3.0, 7.0, 5.0}));
        EXPECT_EQ(series->HasDataLabels(), cases[i].labels != 0);
        if (cases[i].labels == 0) continue;
        auto labels = series->DataLabels();
        EXPECT_EQ(labels->ShowValue(), cases[i].labels == host::xlDataLabelsShowValue);
        EXPECT_EQ(labels->ShowPercentage(), cases[i].labels == host::xlDataLabelsShowPercent);
        EXPECT_EQ(labels->Position(), host::xlLabelPositionBestFit);
        EXPECT_EQ(FontText(labels->Font()), "Arial Regular 9 0");
    }
}

TEST(Drawing, TheCommentBoxFollowsTheDefinition) {
    BuilderWorld w;
    SalesTable(w);
    std::string comment;
    for (int i = 0; i < 41; ++i) comment += "Line " + std::to_string(i % 10) + " é. ";  // 41 x 10 characters
    ASSERT_EQ(host::Len(comment), 410);
    w.Chart(Def("VEX_Chart1", "column", kByRegionAndProduct + "<comment>" + comment + "</comment>",
                " chart-worksheet=\"Sheet1\""));
    w.b.PopulateChart("VEX_Chart1");
    EXPECT_TRUE(w.dialogs.messages.empty()) << w.dialogs.Texts()[0];
    EXPECT_EQ(w.c.sChartID, "") << "the run's chart id is left as it was";
    w.f.SaveChartDefinition(w.c.colCharts->Item("VEX_Chart1"));

    w.SaveValidateAndReopen("drawing-comment");
    auto box = w.f.FindChartComment("VEX_Chart1", "Sheet1");
    ASSERT_TRUE(box);
    EXPECT_EQ(box->TextFrame()->Characters()->Text(), comment);
    host::Ref<host::Shape> frame;
    for (auto& shape : host::Each(*w.Sheet("Sheet1")->Shapes()))
        if (shape->Type() == host::msoChart) frame = shape;
    ASSERT_TRUE(frame);
    EXPECT_NEAR(box->Left(), frame->Left() + frame->Width() - 5, 0.01);
    EXPECT_NEAR(box->Top(), frame->Top() + 5, 0.01);
    EXPECT_NEAR(box->Width(), 180, 0.01);
    EXPECT_NEAR(box->Height(), 120, 0.01);

    // A changed comment is written anew in the box that stands; an emptied one takes the box away.
    w.c.colCharts = nullptr;
    w.c.colChartObjects = nullptr;
    w.c.colChartShapes = nullptr;
    w.f.RetrieveChartDefinitions();
    auto doc = w.c.colCharts->Item("VEX_Chart1");
    auto root = doc->documentElement();
    if (auto old = root.selectSingleNode("comment")) root.removeChild(old);
    auto element = doc->createElement("comment");
    element.appendChild(doc->createTextNode("Short"));
    root.appendChild(element);
    w.b.PopulateChart("VEX_Chart1");
    EXPECT_EQ(w.f.FindChartComment("VEX_Chart1", "Sheet1")->TextFrame()->Characters()->Text(), "Short");
    EXPECT_NEAR(w.f.FindChartComment("VEX_Chart1", "Sheet1")->Left(), box->Left(), 0.01);
    root.removeChild(root.selectSingleNode("comment"));
    w.b.PopulateChart("VEX_Chart1");
    EXPECT_FALSE(w.f.FindChartComment("VEX_Chart1", "Sheet1"));
    EXPECT_TRUE(w.dialogs.messages.empty()) << w.dialogs.Texts()[0];
}

TEST(Drawing, SeriesNameReferencesOnBothHostRoads) {
    // Version 11 names series in R1C1; later versions in A1 letters, which stop at column 78.
    for (const char* version : {"11.0", "16.0"}) {
        SCOPED_TRACE(version);
        BuilderWorld w;
        w.app = xlsx::NewApplication(xlsx::EngineOptions{version});
        w.c.oApplication = w.app;
        w.c.oWorkbook = w.app->NewWorkbook();
        std::vector<host::Variant> headings{"Region"}, values{"East"};
        for (int i = 1; i <= 77; ++i) {
            headings.push_back("P" + std::to_string(i));
            values.push_back(static_cast<double>(i));
        }
        w.Table("Data1", {headings, values});
        std::vector<std::string> columns;
        for (int i = 1; i <= 77; ++i) columns.push_back("P" + std::to_string(i));
        w.Chart(Def("VEX_Chart1", "column",
                    Group("categories", "rows", {"Region"}) + Group("series", "columns", columns)));
        w.b.PopulateChart("VEX_Chart1");
        EXPECT_TRUE(w.dialogs.messages.empty()) << w.dialogs.Texts()[0];
        auto collection = w.ChartObject("VEX_Chart1")->SeriesCollection();
        ASSERT_EQ(collection->Count(), 77);
        EXPECT_EQ(collection->Item(1L)->Formula(), "=SERIES(VEX_ChartData!$C$1,VEX_ChartData!$B$2,VEX_ChartData!$C$2,1)");
        EXPECT_EQ(collection->Item(25L)->Name(), "P25");  // column AA
        EXPECT_EQ(collection->Item(51L)->Name(), "P51");  // column BA
        EXPECT_EQ(collection->Item(76L)->Name(), "P76");
        // The last column, 79, keeps the name reference of 78 on the A1 road.
        EXPECT_EQ(collection->Item(77L)->Name(), std::string(version) == "11.0" ? "P77" : "P76");
    }
}
