#include "builder_world.h"

using buildertest::BuilderWorld;
using buildertest::Def;
using buildertest::Group;
using host::Variant;

namespace {

void Orders(BuilderWorld& w) {
    w.Table("Data1", {{"Region", "Product", "Amount", "Units"},
                      {"East", "Widget", 10.0, 1.0},
                      {"West", "Widget", 5.0, 2.0},
                      {"East", "Gadget", 7.0, 3.0},
                      {"east", "Widget", 1.0, 4.0}});
}

std::vector<std::string> Keys(const ps::DictionaryRef& d) {
    std::vector<std::string> out;
    for (auto& [k, v] : d->Entries()) out.push_back(k + "=" + host::CStr(v));
    return out;
}

}  // namespace

TEST(PivotMap, TheWorkedExampleSumsRegionsAgainstProducts) {
    BuilderWorld w;
    Orders(w);
    w.Chart(Def("VEX_Chart1", "column",
                Group("categories", "rows", {"Region"}) + Group("series", "rows", {"Product"}) +
                    Group("values", "", {"Amount"})));
    w.b.PopulateChart("VEX_Chart1");
    EXPECT_TRUE(w.dialogs.messages.empty()) << w.dialogs.Texts()[0];
    EXPECT_EQ(Keys(w.b.mCategoryPositions), (std::vector<std::string>{"EAST=1", "WEST=2"}));
    EXPECT_EQ(Keys(w.b.mCategoryNames), (std::vector<std::string>{"EAST=East", "WEST=West"}));
    EXPECT_EQ(Keys(w.b.mSeriesPositions), (std::vector<std::string>{"WIDGET=1", "GADGET=2"}));
    EXPECT_EQ(Keys(w.b.mSeriesNames), (std::vector<std::string>{"WIDGET=Widget", "GADGET=Gadget"}));
    ASSERT_EQ(w.b.mMapInstructions->Count(), 1);
    auto& i = *w.b.mMapInstructions->Item(1);
    EXPECT_EQ(std::vector<long>({i.RowReferenceType(), i.RowReferencePosition(), i.ColReferenceType(),
                                 i.ColReferencePosition(), i.ValueReferenceType(),
                                 host::CLng(i.ValuePositionOrConstant()), i.CellValueType()}),
              std::vector<long>({1, 1, 1, 2, 0, 3, 1}));
    EXPECT_EQ(w.Data(), (std::vector<std::string>{"VEX_Chart1||Widget|Gadget", "VEX_Chart1|East|11|7",
                                                  "VEX_Chart1|West|5"}))
        << "West has no Gadget: its cell stays blank";
}

TEST(PivotMap, EachPairOfHeadingDirectionsGivesItsRectangle) {
    struct Case {
        std::string children;
        std::vector<std::string> block;
    } cases[] = {
        {Group("categories", "rows", {"Region"}) + Group("series", "columns", {"Amount", "Units"}),
         {"||Amount|Units", "|East|18|8", "|West|5|2"}},
        {Group("categories", "columns", {"Amount", "Units"}) + Group("series", "rows", {"Product"}),
         {"||Widget|Gadget", "|Amount|16|7", "|Units|7|3"}},
        {Group("categories", "rows", {"Region"}) + Group("series", "none", {}) + Group("values", "", {"Amount"}),
         {"||Amount", "|East|18", "|West|5"}},
        {Group("categories", "columns", {"Amount", "Units"}) + Group("series", "none", {}),
         {"||Value", "|Amount|23", "|Units|10"}},
        // A value column besides makes a first series that nothing fills.
        {Group("categories", "columns", {"Amount", "Units"}) + Group("series", "none", {}) +
             Group("values", "", {"Units"}),
         {"||Units|Value", "|Amount||23", "|Units||10"}},
        // Both in columns leaves the series column unset: nothing can be placed.
        {Group("categories", "columns", {"Amount"}) + Group("series", "columns", {"Units"}), {"||Units", "|Amount"}},
    };
    for (auto& k : cases) {
        BuilderWorld w;
        Orders(w);
        w.Chart(Def("VEX_Chart1", "bar", k.children));
        w.b.PopulateChart("VEX_Chart1");
        EXPECT_TRUE(w.dialogs.messages.empty()) << k.children;
        std::vector<std::string> expected;
        for (auto& line : k.block) expected.push_back("VEX_Chart1" + line);
        EXPECT_EQ(w.Data(), expected) << k.children;
    }
}

TEST(PivotMap, SeriesStopAt254WithOneMessage) {
    const std::string limit =
        "This chart type is limited to 254 series.\r\nSome data will be dropped from chart 'VEX_Chart1 name'.";
    // Names in rows: the test stands before each row, so a row behind the 254th name speaks
    // even when it repeats a known name; its value still lands.
    for (long names : {254L, 255L}) {
        BuilderWorld w;
        std::vector<std::vector<Variant>> rows{{"Cat", "Name", "Amount"}};
        for (long i = 1; i <= names; ++i) rows.push_back({"A", "s" + std::to_string(i), 1.0});
        if (names == 254) rows.push_back({"A", "S1", 5.0});
        w.Table("Data1", rows);
        w.Chart(Def("VEX_Chart1", "column",
                    Group("categories", "rows", {"Cat"}) + Group("series", "rows", {"Name"}) +
                        Group("values", "", {"Amount"})));
        w.b.PopulateChart("VEX_Chart1");
        EXPECT_EQ(w.dialogs.Texts(), std::vector<std::string>{limit}) << names;
        EXPECT_EQ(w.b.mSeriesCount, 254);
        EXPECT_EQ(w.Cell(2, 3), names == 254 ? "6" : "1");
        EXPECT_EQ(w.Cell(1, 256), "s254");
        EXPECT_EQ(w.Cell(1, 257), "") << "the 255th name is dropped without a word";
    }
    // Chosen columns: the test stands before each column, so exactly 254 pass in silence.
    for (long columns : {254L, 300L}) {
        BuilderWorld w;
        std::vector<Variant> head{"Cat"}, values{"A"};
        std::vector<std::string> names;
        for (long i = 1; i <= columns; ++i) {
            names.push_back("c" + std::to_string(i));
            head.push_back(names.back());
            values.push_back(static_cast<double>(i));
        }
        w.Table("Data1", {head, values});
        w.Chart(Def("VEX_Chart1", "column", Group("categories", "rows", {"Cat"}) + Group("series", "columns", names)));
        w.b.PopulateChart("VEX_Chart1");
        EXPECT_EQ(w.dialogs.Texts(), columns == 254 ? std::vector<std::string>{} : std::vector<std::string>{limit});
        EXPECT_EQ(w.b.mSeriesCount, 254);
        EXPECT_EQ(w.Cell(2, 256), "254");
    }
}

TEST(PivotMap, AnEmptyMapOrAClashOfHeadingsStopsTheBuild) {
    BuilderWorld w;
    Orders(w);
    w.Chart(Def("VEX_Chart1", "pie", Group("categories", "rows", {"Region"}) + Group("series", "none", {})));
    w.Chart(Def("VEX_Chart2", "column",
                Group("categories", "columns", {"Amount", "AMOUNT"}) + Group("series", "none", {})));
    w.b.PopulateChart("VEX_Chart1");
    ASSERT_EQ(w.dialogs.messages.size(), 1u);
    EXPECT_EQ(w.dialogs.messages[0].text,
              "PSChartBuilder.BuildPivotMap\r\nFailed to populate a data definition collection");
    EXPECT_EQ(w.dialogs.messages[0].title, "") << "a plain box, not the component's message";
    EXPECT_EQ(w.b.mSeriesPositions->Count(), 0);
    w.b.PopulateChart("VEX_Chart2");
    EXPECT_EQ(w.dialogs.Texts().back(),
              "PSChartBuilder.BuildPivotMap\r\nThis key is already associated with an element of this collection");
    EXPECT_FALSE(w.c.common->SheetExists(ps::sDataSheet)) << "no block is written for either";
}
