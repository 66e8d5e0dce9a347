#include "builder_world.h"

using buildertest::BuilderWorld;
using buildertest::Def;
using buildertest::Group;
using host::Variant;
using Lines = std::vector<std::string>;

namespace {

// Data1 holds items with their bucket, amount, label and rank; VEX_SBTargets the buckets'
// values, under the same two headings in another case.
void Tables(BuilderWorld& w, std::vector<std::vector<Variant>> items) {
    items.insert(items.begin(), {"Item", "Bucket", "Amount", "Label", "Rank"});
    w.Table("Data1", items);
    auto r = w.AddSheet("Ranges");
    w.Row(r, 1, 1, {"Targets"});
    w.Row(r, 3, 1, {"BUCKET", "amount"});
    w.Row(r, 4, 1, {"Growth", 100.0});
    w.Row(r, 5, 1, {"Core", 50.0});
    w.Row(r, 6, 1, {"Exit", 10.0});
    w.Row(r, 7, 1, {"growth", 1.0});
    w.Name("VEX_SBTargets", "=Ranges!$A$1:$B$7");
}

const std::vector<std::vector<Variant>> kItems = {{"Widget", "Growth", 10.0, "Red", 2.0},
                                                  {"Gadget", "Core", 5.0, "Blue", 1.0},
                                                  {"widget", "core", 3.0, "Green", 2.0},
                                                  {"Core", "Exit", 7.0, "Blue", 3.0},
                                                  {"Gizmo", "Nowhere", 9.0, "RED", 0.0}};

std::string Bucket(const std::string& id, const std::string& children) {
    return Def(id, "strategic bucket", Group("categories", "rows", {"Item"}) + children,
               " strategic-bucket-table-id=\"VEX_SBTargets\"");
}
std::string SortOrder(const std::string& sort) {
    return "<sort-order" + (sort.empty() ? "" : " sort=\"" + sort + "\"") + "><column name=\"Rank\"/></sort-order>";
}
const std::string kLabels = Group("series", "rows", {"Label"});
const std::string kHeader = "VEX_Chart1||[-BlockColor-]|[-BlockSort-]|GROWTH|CORE|EXIT";
const std::string kBuckets = "VEX_Chart1|[-StrategicBuckets-]|||101|50|10";

}  // namespace

TEST(BucketBlock, ItemsSortByTheirSummedRankBelowTheBucketRow) {
    BuilderWorld w;
    Tables(w, kItems);
    auto chart = w.Chart(Bucket("VEX_Chart1", kLabels + SortOrder("descending")));
    w.b.PopulateChart("VEX_Chart1");
    EXPECT_TRUE(w.dialogs.messages.empty()) << w.dialogs.Texts()[0];
    EXPECT_EQ(w.b.mSeriesCount, 5);
    // An item named like a bucket takes its spelling; a row of an unknown bucket adds nothing.
    EXPECT_EQ(w.Data(), (Lines{kHeader, kBuckets, "VEX_Chart1|Widget|Green|4|10|3", "VEX_Chart1|CORE|Blue|3|||7",
                               "VEX_Chart1|Gadget|Blue|1||5", "VEX_Chart1|Gizmo|Red|0"}));

    // Ascending over the sorted block: it is rewritten in map order, then sorted again.
    chart.selectSingleNode("sort-order").setAttribute("sort", "ascending");
    w.b.PopulateChart("VEX_Chart1");
    EXPECT_EQ(w.Data(), (Lines{kHeader, kBuckets, "VEX_Chart1|Gizmo|Red|0", "VEX_Chart1|Gadget|Blue|1||5",
                               "VEX_Chart1|CORE|Blue|3|||7", "VEX_Chart1|Widget|Green|4|10|3"}));

    // A sort-order without its direction stops the build before the bucket values are written.
    chart.selectSingleNode("sort-order").removeAttribute("sort");
    w.b.PopulateChart("VEX_Chart1");
    EXPECT_EQ(w.dialogs.Texts(), Lines{"PSChartBuilder.SortDataSheet\r\nInvalid use of Null"});
    EXPECT_EQ(w.Data()[1], "VEX_Chart1|[-StrategicBuckets-]");
    EXPECT_EQ(w.Data()[2], "VEX_Chart1|Widget|Green|4|10|3") << "not sorted: map order";
}

TEST(BucketBlock, The253rdItemStopsTheWalkAndLeavesABlankRow) {
    BuilderWorld w;
    std::vector<std::vector<Variant>> rows;
    for (long i = 1; i <= 253; ++i) rows.push_back({"I" + std::to_string(i), "Core", 1.0, "Red", 1.0});
    Tables(w, rows);
    w.Chart(Bucket("VEX_Chart1", kLabels));
    w.b.PopulateChart("VEX_Chart1");
    EXPECT_EQ(w.dialogs.Texts(),
              Lines{"This chart type is limited to 254 series.\r\nSome data will be dropped from chart 'VEX_Chart1 name'."});
    EXPECT_EQ(w.b.mCategoryCount, 254);
    auto data = w.Data();
    EXPECT_EQ(data.size(), 254u) << "the header, the bucket row and 252 items";
    EXPECT_EQ(data.back(), "VEX_Chart1|I252|Red|1||1");
    EXPECT_EQ(w.Cell(255, 2) + w.Cell(255, 3), "") << "the unnumbered key's row has no id and no name";
}

TEST(BucketBlock, SortedBlocksSurviveASavedAndReopenedWorkbook) {
    BuilderWorld w;
    Tables(w, kItems);
    w.Table("Data2", {{"Name", "X", "Y", "Size"}, {"Small", 1.0, 1.0, 1.0}, {"Large", 2.0, 2.0, 1000.0}});
    w.Sheet("Sheet1")->Activate();
    // Without a label column every item's label is "[none]".
    w.Chart(Bucket("VEX_Chart1", Group("series", "none", {}) + SortOrder("descending")));
    w.Chart(Def("VEX_Chart2", "bubble",
                Group("categories", "rows", {"Name"}) + Group("x-values", "", {"X"}) + Group("values", "", {"Y"}) +
                    Group("bubble-sizes", "", {"Size"}),
                "", "Data2"));
    w.b.PopulateChart("VEX_Chart1");
    w.b.PopulateChart("VEX_Chart2");
    for (auto& doc : *w.c.colCharts) w.f.SaveChartDefinition(doc);
    auto before = w.Data();
    ASSERT_EQ(before.size(), 9u);
    EXPECT_EQ(before[2], "VEX_Chart1|Widget|[none]|4|10|3");
    EXPECT_EQ(before[7], "VEX_Chart2|Large|[none]|2|2|1000");
    EXPECT_EQ(before[8], "VEX_Chart2|Small|[none]|1|1|2");

    w.SaveAndReopen("bucket_block_round_trip");
    EXPECT_EQ(w.Data(), before);
    EXPECT_EQ(w.Sheet(ps::sDataSheet)->Cells(2, 5)->Value(), Variant(101.0)) << "bucket values stay numbers";

    // A refresh of the reopened book sorts and sizes again and comes to the same blocks.
    w.Forget();
    w.c.lMethodType = ps::mtRefresh;
    w.b.PopulateAllCharts();
    EXPECT_TRUE(w.dialogs.messages.empty()) << w.dialogs.Texts()[0];
    EXPECT_EQ(w.Data(), before);
}
