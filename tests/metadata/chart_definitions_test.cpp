#include "component_world.h"

using host::Variant;
using testworld::World;

namespace {

dom::DocumentRef Doc(World& w, const std::string& xml) {
    auto d = w.f.ParseChartDefinition(xml);
    EXPECT_TRUE(d) << xml;
    return d;
}

void Load(World& w, const std::vector<std::string>& xmls) {
    w.c.colCharts = std::make_shared<host::Collection<dom::DocumentRef>>();
    for (auto& x : xmls) {
        auto d = Doc(w, x);
        w.c.colCharts->Add(d, host::CStr(d->documentElement().getAttribute("id")));
    }
}

std::string Attr(const dom::DocumentRef& d, const std::string& query, const std::string& name) {
    auto v = d->selectSingleNode(query).getAttribute(name);
    return v.IsNull() ? "(absent)" : host::CStr(v);
}


}  // namespace

TEST(ChartDocs, ANewChartTakesTheFirstFreeIdAndAFreeName) {
    World w;
    Load(w, {R"(<chart id="VEX_Chart1" name="chart2"/>)", R"x(<chart id="VEX_Chart3" name="Chart2 (1)"/>)x"});
    w.f.CreateChartDoc();
    EXPECT_EQ(w.c.sChartID, "VEX_Chart2") << "the number of a deleted chart is used again";
    EXPECT_EQ(World::Xml(w.c.oChartDoc),
              "<chart ps-chart-schema-version=\"2\" id=\"VEX_Chart2\" name=\"Chart2 (2)\" title=\"\" type=\"unknown\" "
              "chart-worksheet=\"\" table-id=\"\" strategic-bucket-table-id=\"\" number-format=\"\" "
              "table-corrupted=\"no\" chart-area-crosshatched=\"no\"/>");
    EXPECT_EQ(w.c.colCharts->Count(), 2) << "the new document is neither entered nor saved";
    EXPECT_FALSE(w.c.common->SheetExists(ps::sDefinitionSheet));

    // Names are compared ignoring case, and never with the chart in work.
    w.c.sChartID = "VEX_Chart1";
    EXPECT_FALSE(w.f.ChartNameInUse("CHART2"));
    EXPECT_TRUE(w.f.ChartNameInUse("chart2 (1)"));
    w.c.sChartID = "VEX_Chart9";
    EXPECT_TRUE(w.f.ChartNameInUse("Chart2"));
    EXPECT_FALSE(w.f.ChartNameInUse("Chart 2"));

    Load(w, {});
    w.f.CreateChartDoc();
    EXPECT_EQ(Attr(w.c.oChartDoc, "chart", "name"), "Chart1");
    EXPECT_TRUE(w.dialogs.messages.empty());

    // Without the run's charts: reported, and no document.
    w.c.colCharts = nullptr;
    w.c.oChartDoc = nullptr;
    w.f.CreateChartDoc();
    EXPECT_EQ(w.dialogs.Texts(),
              (std::vector<std::string>{"PSFunctions.CreateChartDoc\r\nObject variable or With block variable not set"}));
    EXPECT_FALSE(w.c.oChartDoc && w.c.oChartDoc->documentElement());
}

TEST(ChartDocs, RenamedColumnsFollowIntoTheDefinitionsOfTheirTable) {
    World w;
    auto s = w.Sheet("Sheet1");
    w.Row(s, 3, 1, {"Region", "Quarter", "Sales"});
    w.Row(s, 4, 1, {"North", "Q1", 1.0});
    w.Name("VEX_TableRange1", "=Sheet1!$A$1:$C$4");
    w.c.common->CreateSheet(ps::sDefinitionSheet, 1, host::xlSheetVeryHidden);
    const std::string other =
        R"(<chart id="VEX_Chart2" table-id="VEX_TableRange2"><values><column name="Sales"/></values>)"
        R"(<axes><axis type="value" label="Sales" sticky="no"/></axes></chart>)";
    Load(w, {R"(<chart ps-chart-schema-version="2" id="VEX_Chart1" table-id="VEX_TableRange1">)"
             R"(<categories headings-in="rows"><column name="Region" worksheet-column-number="1"/></categories>)"
             R"(<series headings-in="columns"><column name="Quarter"/><column name="Year"/></series>)"
             R"(<values><column name="Sales"/></values><sort-order sort="ascending"><column name="Region"/></sort-order>)"
             R"(<axes><axis type="label" label="Region" sticky="no"/><axis type="value" label="Sales" sticky="yes"/>)"
             R"(<axis type="value" label="Quarter"/><axis type="label" label="sales" sticky="no"/></axes></chart>)",
             other, R"(<chart id="VEX_Chart3" table-id="vex_tablerange1"><values><column name="Sales"/></values></chart>)",
             R"(<chart id="VEX_Chart4" table-id="VEX_TableRange1"><axes><axis type="label" label="Region" sticky="no"/></axes></chart>)"});

    std::vector<std::string> oldNames{"Region", "Sales", "Quarter", "Revenue"};
    std::vector<std::string> newNames{"Area", "Revenue", "Period", "Turnover"};
    w.f.UpdateChartColumnNames("VEX_TableRange1", oldNames, newNames);
    EXPECT_TRUE(w.dialogs.messages.empty()) << w.dialogs.Texts()[0];
    ASSERT_EQ(w.c.colTables->Count(), 1) << "the tables are discovered anew";

    auto d1 = w.c.colCharts->Item("VEX_Chart1");
    std::vector<std::string> columns;
    for (auto col : d1->selectNodes("//column")) columns.push_back(host::CStr(col.getAttribute("name")));
    EXPECT_EQ(columns, (std::vector<std::string>{"Area", "Period", "Year", "Turnover", "Area"}))
        << "renames apply in order, each seeing the ones before: Sales became Revenue, then Turnover";
    std::vector<std::string> labels;
    for (auto axis : d1->selectNodes("//axis")) labels.push_back(host::CStr(axis.getAttribute("label")));
    EXPECT_EQ(labels, (std::vector<std::string>{"Area", "Sales", "Quarter", "sales"}))
        << "typed labels, labels without the sticky flag and labels in another case stay";
    EXPECT_EQ(Attr(w.c.colCharts->Item("VEX_Chart3"), "//column", "name"), "Sales") << "table ids compare exactly";
    EXPECT_EQ(Attr(w.c.colCharts->Item("VEX_Chart4"), "//axis", "label"), "Region")
        << "a definition without columns keeps its axes";

    // All charts were saved, those of other tables too, in the order of the collection.
    auto rows = w.Rows();
    ASSERT_EQ(rows.size(), 4u);
    EXPECT_EQ(rows[0], d1->xml());
    EXPECT_EQ(rows[1], R"(<chart id="VEX_Chart2" table-id="VEX_TableRange2" ps-chart-schema-version="2">)"
                       R"(<values><column name="Sales"/></values><axes><axis type="value" label="Sales" sticky="no"/>)"
                       "</axes></chart>\r\n");

    // What was saved is what a reopened workbook holds.
    auto saved = w.Definitions();
    w.SaveAndReopen("rename_columns");
    EXPECT_EQ(w.Definitions(), saved);
}

TEST(ChartDocs, ARenameWithTooFewNewNamesStopsAtTheFirstUse) {
    World w;
    w.c.common->CreateSheet(ps::sDefinitionSheet, 1, host::xlSheetVeryHidden);
    Load(w, {R"(<chart id="VEX_Chart1" table-id="T"><values><column name="B"/></values></chart>)",
             R"(<chart id="VEX_Chart2" table-id="T"><values><column name="A"/></values></chart>)",
             R"(<chart id="VEX_Chart3" table-id="T"><values><column name="B"/></values></chart>)"});
    std::vector<std::string> oldNames{"A", "B"}, newNames{"X"};
    w.f.UpdateChartColumnNames("T", oldNames, newNames);
    EXPECT_EQ(w.dialogs.Texts(), (std::vector<std::string>{"PSFunctions.UpdateChartColumnNames\r\nSubscript out of range"}));
    EXPECT_EQ(w.Rows(), std::vector<std::string>{}) << "the first chart failed before its save";
    EXPECT_EQ(Attr(w.c.colCharts->Item("VEX_Chart2"), "//column", "name"), "A") << "charts not reached stay";
}

TEST(ChartDocs, TheEntryOperationLoadsRenamesAndSavesWhatTheLoadCorrected) {
    World w;
    auto s = w.Sheet("Sheet1");
    w.Row(s, 3, 1, {"Region", "Sales"});
    w.Row(s, 4, 1, {"North", 1.0});
    w.Name("VEX_TableRange1", "=Sheet1!$A$1:$B$4");
    w.c.colTables = nullptr;
    w.f.RetrieveTableDefinitions();
    w.f.RetrieveChartDefinitions();
    auto o = s->ChartObjects()->Add(100, 10, 300, 200);
    s->Shapes()->Item(o->Name())->SetAlternativeText("VEX_Chart1");
    auto def = w.Sheet(ps::sDefinitionSheet);
    def->Cells(2, 1)->SetValue(Doc(w, R"(<chart id="VEX_Chart9" table-id="VEX_TableRange1"/>)")->xml());
    def->Cells(3, 1)->SetValue(R"(<chart id="VEX_Chart1" table-id="VEX_TableRange1" chart-worksheet="Old">)"
                               R"(<values><column name="Sales"/></values></chart>)");
    w.SaveAndReopen("rename_entry");

    testworld::Entry e;
    std::vector<std::string> oldNames{"Sales"}, newNames{"Revenue"};
    e.entry.UpdateChartColumnNamesForTable(w.app, "VEX_TableRange1", oldNames, newNames);
    EXPECT_TRUE(e.dialogs.messages.empty()) << e.dialogs.Texts()[0];
    ASSERT_TRUE(e.c.colTables && e.c.colCharts) << "the run's collections stay loaded";
    EXPECT_EQ(World::Ids(e.c.colCharts), std::vector<std::string>{"VEX_Chart1"});
    w.c.oWorkbook = e.c.oWorkbook;
    EXPECT_EQ(w.Definitions(), std::vector<std::string>{
                                   "<chart id=\"VEX_Chart1\" table-id=\"VEX_TableRange1\" chart-worksheet=\"Sheet1\" "
                                   "table-worksheet=\"Sheet1\" chart-shape-name=\"Chart 1\" table-corrupted=\"no\" "
                                   "ps-chart-schema-version=\"2\"><values><column name=\"Revenue\"/></values></chart>\r\n"})
        << "the orphan went at the load; the chart's row carries the rename and what the load corrected";
}
