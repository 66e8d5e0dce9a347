#include "component_world.h"

using host::Variant;
using testworld::World;

namespace {

// A range table with its header (title, blank row, headings) at row `top` of column A.
void Table(World& w, const std::string& sheet, const std::string& name, long top,
           const std::vector<Variant>& headings, const std::vector<std::vector<Variant>>& rows, long extraRows = 0) {
    auto s = w.SheetOrNew(sheet);
    w.Row(s, top, 1, {name});
    w.Row(s, top + 2, 1, headings);
    for (size_t i = 0; i < rows.size(); ++i) w.Row(s, top + 3 + long(i), 1, rows[i]);
    long last = top + 2 + long(rows.size()) + extraRows;
    w.Name(name, "=" + sheet + "!$A$" + std::to_string(top) + ":$C$" + std::to_string(last));
}

}  // namespace

TEST(Buckets, CandidatesShareALabelAndANumberHeadingOfTheSource) {
    World w;
    // The source: Region and Product are label columns, Amount a number column.
    Table(w, "Src", "VEX_TableRangeSrc", 1, {"Region", "Amount", "Product"}, {{"North", 1.0, "Tea"}});
    Table(w, "B", "VEX_SB_Match", 1, {"REGION", "amount"}, {{"North", 5.0}});        // case differs: fits
    Table(w, "B", "VEX_SB_Other", 10, {"Product", "Amount"}, {{"Tea", 5.0}});       // another label column: fits
    Table(w, "B", "VEX_SB_Swapped", 20, {"Amount", "Region"}, {{"lots", 5.0}});     // Amount is a number column there
    Table(w, "B", "VEX_SB_Unknown", 30, {"Country", "Amount"}, {{"France", 5.0}});  // not a heading of the source
    Table(w, "B", "VEX_SB_NoValue", 40, {"Region", "Comment"}, {{"North", "x"}});   // no candidate at all
    auto data = w.SheetOrNew("Data1");
    w.Row(data, 1, 1, {"Region", "Amount"});
    w.Row(data, 2, 1, {"North", 2.0});

    w.f.RetrieveTableDefinitions();
    ASSERT_EQ(w.c.colTables->Count(), 7);
    auto source = w.c.colTables->Item("VEX_TableRangeSrc")->documentElement();
    EXPECT_EQ(host::CStr(source.getAttribute("is-bucket-candidate")), "yes") << "a candidate, but never its own";
    auto candidates = w.f.GetBucketCandidates(source);
    EXPECT_EQ(World::Ids(candidates), (std::vector<std::string>{"VEX_SB_Match", "VEX_SB_Other"}));

    // Seen from a bucket table, the source table qualifies in turn; data sheets never do.
    auto fromMatch = w.f.GetBucketCandidates(w.c.colTables->Item("VEX_SB_Match")->documentElement());
    EXPECT_EQ(World::Ids(fromMatch), (std::vector<std::string>{"VEX_TableRangeSrc"}));
    auto fromData = w.f.GetBucketCandidates(w.c.colTables->Item("Data1")->documentElement());
    EXPECT_EQ(World::Ids(fromData), (std::vector<std::string>{"VEX_SB_Match", "VEX_TableRangeSrc"}));
    EXPECT_TRUE(w.dialogs.messages.empty());

    // Without tables the question fails, is reported, and answers an empty collection.
    w.c.colTables = nullptr;
    auto none = w.f.GetBucketCandidates(source);
    ASSERT_TRUE(none);
    EXPECT_EQ(none->Count(), 0);
    EXPECT_EQ(w.dialogs.Texts(),
              (std::vector<std::string>{"PSFunctions.GetBucketCandidates\r\nObject variable or With block variable not set"}));
}

TEST(Buckets, TotalsAddUpByUpperCaseNameOverTheWholeHeight) {
    World w;
    Table(w, "Sheet1", "VEX_SB1", 2, {"Bucket", "Value", "Note"},
          {{"North", 10.0}, {"north", 5.0}, {"Süd", 2.5}, {"South", "n/a"}, {{}, 4.0}, {"Süd", 1.0}}, 2);
    w.f.RetrieveTableDefinitions();
    auto totals = w.f.GetStrategicBuckets(w.c.colTables->Item("VEX_SB1"));
    ASSERT_TRUE(totals);
    std::vector<std::pair<std::string, double>> got(totals->Entries().begin(), totals->Entries().end());
    EXPECT_EQ(got, (std::vector<std::pair<std::string, double>>{{"NORTH", 15.0}, {"SÜD", 3.5}, {"SOUTH", 0.0}, {"", 4.0}}))
        << "a text value counts as 0; the two empty rows inside the height add to the key \"\"";

    // The table as the sheet holds it after a save and a reopen.
    w.SaveAndReopen("bucket_totals");
    w.f.RetrieveTableDefinitions();
    auto again = w.f.GetStrategicBuckets(w.c.colTables->Item("VEX_SB1"));
    ASSERT_TRUE(again);
    EXPECT_EQ(again->Item("NORTH"), 15.0);
    EXPECT_TRUE(w.dialogs.messages.empty());

    // A table on a sheet that went away: reported, Nothing.
    auto doc = w.c.colTables->Item("VEX_SB1");
    doc->documentElement().setAttribute("table-worksheet", "Gone");
    EXPECT_FALSE(w.f.GetStrategicBuckets(doc));
    EXPECT_EQ(w.dialogs.Texts(), (std::vector<std::string>{"PSFunctions.GetStrategicBuckets\r\nSubscript out of range"}));
}
