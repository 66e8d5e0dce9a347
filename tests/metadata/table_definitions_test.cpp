#include "component_world.h"

using host::Variant;
using testworld::World;

namespace {

// A range table at B2 on `s`: title, an empty second row, headings, then data rows.
void SalesTable(World& w, const host::Ref<host::Worksheet>& s) {
    w.Row(s, 2, 2, {"Sales 2026"});
    w.Row(s, 4, 2, {"Region", "Amount", "Note"});
    w.Row(s, 5, 2, {"North", 10.0, {}});
    w.Row(s, 6, 2, {"South", 20.5, "  "});
    w.Row(s, 7, 2, {"East", 7.0, {}});
}

}  // namespace

TEST(Discovery, NamesInAnyCaseAndDataSheetsAreTablesInTheWorkbooksOrder) {
    World w;
    auto s1 = w.Sheet("Sheet1");
    SalesTable(w, s1);
    auto quoted = w.AddSheet("Bob's Q1!Plan");
    w.Row(quoted, 1, 1, {"Plan"});
    w.Row(quoted, 3, 1, {"Item", "Cost"});
    w.Row(quoted, 4, 1, {"Pens", 3.0});
    auto data2 = w.AddSheet("Data2");
    w.Row(data2, 1, 1, {"Product", "Units"});
    w.Row(data2, 2, 1, {"Tea", 4.0});
    w.Row(w.AddSheet("data4"), 1, 1, {"Product", "Units"});  // the names are case-sensitive
    w.Row(w.Sheet("data4"), 2, 1, {"Tea", 4.0});
    w.Row(w.AddSheet("Data3"), 1, 1, {"Only", "Headings"});
    auto data1 = w.AddSheet("Data1");
    w.Row(data1, 1, 1, {"Product", "Units"});
    w.Row(data1, 2, 1, {"Tea", 4.0});

    w.Name("VEX_TableRange1", "=Sheet1!$B$2:$D$7");
    w.Name("vex_sb_plan", "='Bob''s Q1!Plan'!$A$1:$B$4");
    w.Name("VEX_Sx", "=Sheet1!$B$2:$D$7");          // neither prefix
    w.Name("VEX_TableRangeK", "=42");                // a constant
    w.Name("VEX_TableRangeShort", "=Sheet1!$B$2:$D$3");  // two rows: no room for the header
    w.Name("MyRange", "=Sheet1!$B$2:$D$7");

    w.f.RetrieveTableDefinitions();
    EXPECT_TRUE(w.dialogs.messages.empty()) << w.dialogs.Texts()[0];
    // Names come in the workbook's (alphabetical) order, data sheets after them in tab order.
    EXPECT_EQ(World::Ids(w.c.colTables), (std::vector<std::string>{"vex_sb_plan", "VEX_TableRange1", "Data2", "Data1"}));
    auto plan = w.c.colTables->Item("VEX_SB_PLAN")->documentElement();
    EXPECT_EQ(host::CStr(plan.getAttribute("table-worksheet")), "Bob's Q1!Plan");
    EXPECT_EQ(host::CStr(plan.getAttribute("name")), "Plan");

    // Every discovery starts afresh, and the same workbook read from its file gives the same tables.
    std::vector<std::string> before;
    for (auto& d : *w.c.colTables) before.push_back(World::Xml(d));
    w.SaveAndReopen("discovery_names");
    w.f.RetrieveTableDefinitions();
    std::vector<std::string> after;
    for (auto& d : *w.c.colTables) after.push_back(World::Xml(d));
    EXPECT_EQ(after, before);
    EXPECT_TRUE(w.dialogs.messages.empty());
}

TEST(Discovery, DocumentsOfARangeTableAndADataSheet) {
    World w;
    auto s1 = w.Sheet("Sheet1");
    SalesTable(w, s1);
    w.Row(s1, 4, 6, {"Outside"});  // past the defined range, within the used area: scanned
    w.Name("VEX_TableRange1", "=Sheet1!$B$2:$D$7");
    auto data = w.AddSheet("Data5");
    w.Row(data, 1, 1, {"Units", "Product", {}, "Price"});
    w.Row(data, 2, 1, {1.0, "Tea", "x", 2.5});
    w.Row(data, 3, 1, {2.0, "Milk", "y", {}});

    w.f.RetrieveTableDefinitions();
    ASSERT_EQ(w.c.colTables->Count(), 2);
    EXPECT_EQ(World::Xml(w.c.colTables->Item("VEX_TableRange1")),
              "<table id=\"VEX_TableRange1\" name=\"Sales 2026\" table-worksheet=\"Sheet1\" table-top-row=\"2\" "
              "table-left-column=\"2\" table-height=\"6\" header-row-count=\"3\" label-column-count=\"1\" "
              "number-column-count=\"3\" is-bucket-candidate=\"yes\" bucket-name-column=\"Region\" "
              "bucket-value-column=\"Amount\">"
              "<label-column name=\"Region\" worksheet-column-number=\"2\"/>"
              "<number-column name=\"Amount\" worksheet-column-number=\"3\"/>"
              "<number-column name=\"Note\" worksheet-column-number=\"4\"/>"
              "<number-column name=\"Outside\" worksheet-column-number=\"6\"/>"
              "</table>");
    auto d = w.c.colTables->Item("Data5")->documentElement();
    const std::string head =
        "<table id=\"Data5\" name=\"Data5\" table-worksheet=\"Data5\" table-top-row=\"1\" table-left-column=\"1\" "
        "table-height=\"3\" header-row-count=\"1\" label-column-count=\"1\" number-column-count=\"2\" "
        "is-bucket-candidate=\"no\">";
    EXPECT_EQ(World::Xml(w.c.colTables->Item("Data5")).substr(0, head.size()), head);
    EXPECT_TRUE(d.getAttribute("bucket-name-column").IsNull()) << "data sheets carry no bucket columns";
    EXPECT_EQ(d.selectNodes("*").length(), 3) << "the column without a heading is no part of the table";
    EXPECT_EQ(host::CStr(d.selectSingleNode("number-column[@name='Price']").getAttribute("worksheet-column-number")), "4");
}

TEST(Discovery, ColumnClassification) {
    World w;
    auto s = w.AddSheet("Data1");
    w.Row(s, 1, 1, {"Blank", "Spaces", "NumText", "OneText", "Error", "Flags", "Empty"});
    for (long r = 2; r <= 40; ++r) w.Row(s, r, 1, {{}, {}, {}, double(r)});
    w.Row(s, 2, 1, {1.0, "   ", "12.5", {}, 3.0, true});
    w.Row(s, 39, 1, {{}, 2.0, "1e3", "late text", Variant::CellError(2042), false});
    w.f.RetrieveTableDefinitions();
    ASSERT_EQ(w.c.colTables->Count(), 1);
    auto t = w.c.colTables->Item("Data1")->documentElement();
    std::vector<std::string> kinds;
    for (auto col : t.selectNodes("*")) kinds.push_back(col.nodeName() + ":" + host::CStr(col.getAttribute("name")));
    EXPECT_EQ(kinds, (std::vector<std::string>{"number-column:Blank", "number-column:Spaces", "number-column:NumText",
                                               "label-column:OneText", "label-column:Error", "number-column:Flags",
                                               "number-column:Empty"}));
}

TEST(Discovery, DatesMakeLabelColumnsAndADateTitleReadsAsShown) {
    World w;
    auto s = w.Sheet("Sheet1");
    auto date = [&](long row, long col, double serial, const char* format) {
        s->Cells(row, col)->SetValue(Variant::Date(serial));
        s->Cells(row, col)->SetNumberFormat(format);
    };
    date(1, 1, 45382, "mmm yyyy");
    w.Row(s, 3, 1, {"Month", "Units", "Mixed", "Time"});
    for (long r = 4; r <= 6; ++r) {
        date(r, 1, 45322 + 30.0 * (r - 4), "mmm yyyy");
        w.Row(s, r, 2, {10.0 * r, 1.0 * r});
        date(r, 4, 0.25 * (r - 3), "h:mm");
    }
    date(5, 3, 45322, "d/m/yyyy");  // one date among numbers
    w.Name("VEX_TableRangeMonths", "=Sheet1!$A$1:$D$6");
    auto data = w.AddSheet("Data1");
    w.Row(data, 1, 1, {"Day", "Units"});
    data->Cells(2, 1)->SetValue(Variant::Date(45383));  // the engine gives it the default date format
    w.Row(data, 2, 2, {5.0});
    w.SaveAndReopen("discovery_dates");

    w.f.RetrieveTableDefinitions();
    EXPECT_TRUE(w.dialogs.messages.empty()) << w.dialogs.Texts()[0];
    ASSERT_EQ(w.c.colTables->Count(), 2);
    EXPECT_EQ(World::Xml(w.c.colTables->Item("VEX_TableRangeMonths")),
              "<table id=\"VEX_TableRangeMonths\" name=\"Mar 2024\" table-worksheet=\"Sheet1\" table-top-row=\"1\" "
              "table-left-column=\"1\" table-height=\"6\" header-row-count=\"3\" label-column-count=\"3\" "
              "number-column-count=\"1\" is-bucket-candidate=\"yes\" bucket-name-column=\"Month\" "
              "bucket-value-column=\"Units\">"
              "<label-column name=\"Month\" worksheet-column-number=\"1\"/>"
              "<number-column name=\"Units\" worksheet-column-number=\"2\"/>"
              "<label-column name=\"Mixed\" worksheet-column-number=\"3\"/>"
              "<label-column name=\"Time\" worksheet-column-number=\"4\"/>"
              "</table>");
    auto d = w.c.colTables->Item("Data1")->documentElement();
    EXPECT_EQ(d.selectSingleNode("*[1]").nodeName(), "label-column");
    EXPECT_EQ(d.selectSingleNode("*[2]").nodeName(), "number-column");
}

TEST(Discovery, BucketCandidacyNeedsALabelColumnThenANumberColumnWithHeadings) {
    struct Case {
        std::vector<Variant> headings, data;
        std::string candidate, nameColumn, valueColumn;
    } cases[] = {
        {{"Bucket", "Value"}, {"A", 1.0}, "yes", "Bucket", "Value"},
        {{"Value", "Bucket"}, {1.0, "A"}, "no", "", ""},
        {{"Bucket", {}, "Value"}, {"A", 2.0, 1.0}, "no", "", ""},
        {{"Bucket", "Other"}, {"A", "B"}, "no", "", ""},
        {{{}, "Bucket", "Value"}, {"x", "A", 1.0}, "no", "", ""},
    };
    for (auto& k : cases) {
        World w;
        auto s = w.Sheet("Sheet1");
        w.Row(s, 3, 1, k.headings);
        w.Row(s, 4, 1, k.data);
        w.Name("VEX_SB1", "=Sheet1!$A$1:$C$4");
        w.f.RetrieveTableDefinitions();
        ASSERT_EQ(w.c.colTables->Count(), 1);
        auto t = w.c.colTables->Item(1L)->documentElement();
        EXPECT_EQ(host::CStr(t.getAttribute("name")), "[no title]");
        EXPECT_EQ(host::CStr(t.getAttribute("is-bucket-candidate")), k.candidate) << host::CStr(k.headings[0]);
        EXPECT_EQ(host::CStr(t.getAttribute("bucket-name-column")), k.nameColumn);
        EXPECT_EQ(host::CStr(t.getAttribute("bucket-value-column")), k.valueColumn);
    }
}

TEST(Discovery, ATableThatFailsIsReportedAndTheOthersAreStillFound) {
    World w;
    auto s = w.Sheet("Sheet1");
    s->Cells(1, 1)->SetValue(Variant::CellError(2042));  // a title that isn't text
    w.Row(s, 3, 1, {"Bucket", "Value"});
    w.Row(s, 4, 1, {"A", 1.0});
    w.Name("VEX_TableRangeA", "=Sheet1!$A$1:$B$4");
    w.Name("VEX_TableRangeB", "=Sheet1!$A$2:$B$4");
    w.f.RetrieveTableDefinitions();
    EXPECT_EQ(World::Ids(w.c.colTables), (std::vector<std::string>{"VEX_TableRangeB"}));
    EXPECT_EQ(w.dialogs.Texts(), (std::vector<std::string>{"PSFunctions.GetTableDefinitionAsXML\r\nType mismatch"}));

    // Without a workbook the discovery reports under its own name and leaves an empty collection.
    w.c.oWorkbook = nullptr;
    w.f.RetrieveTableDefinitions();
    EXPECT_EQ(w.dialogs.Texts().back(),
              "PSFunctions.RetrieveTableDefinitions\r\nObject variable or With block variable not set");
    ASSERT_TRUE(w.c.colTables);
    EXPECT_EQ(w.c.colTables->Count(), 0);
}
