#include "builder_world.h"

using buildertest::BuilderWorld;
using buildertest::Def;
using buildertest::Group;
using host::Variant;
using Lines = std::vector<std::string>;

namespace {

const std::string kHeader = "VEX_Chart1||[-BubbleColor-]|[-XAxisValue-]|[-YAxisValue-]|[-BubbleSize-]";
const std::string kPlot = Group("categories", "rows", {"Name"}) + Group("x-values", "", {"X"}) +
                          Group("values", "", {"Y"});
const std::string kShowZero = "<static-attributes><attribute setting=\"show-zero-bubbles\"/></static-attributes>";

}  // namespace

TEST(BubbleBlock, NamesGatherTheirRowsAndTheLargestBubbleComesFirst) {
    BuilderWorld w;
    w.Table("Data1", {{"Name", "Colour", "X", "Y", "Size"},
                      {"Alpha", "Red", 1.0, 2.0, 1.0},
                      {"Beta", "Blue", 3.0, 4.0, 1000.0},
                      {"Gamma", "RED", 5.0, 6.0, 0.0},
                      {"ALPHA", "Green", 1.0, 1.0, 0.0}});
    w.Chart(Def("VEX_Chart1", "bubble",
                kPlot + Group("series", "rows", {"Colour"}) + Group("bubble-sizes", "", {"Size"})));
    w.b.PopulateChart("VEX_Chart1");
    EXPECT_TRUE(w.dialogs.messages.empty()) << w.dialogs.Texts()[0];
    // Alpha sums its rows and shows its last label; RED keeps the spelling met first; the
    // smallest bubble is raised to a five-hundredth of the largest, the empty one stays.
    EXPECT_EQ(w.Data(), (Lines{kHeader, "VEX_Chart1|Beta|Blue|3|4|1000", "VEX_Chart1|Alpha|Green|2|3|2",
                               "VEX_Chart1|Gamma|Red|5|6|0"}));
    EXPECT_EQ(w.b.mSeriesCount, 4);

    // Without colour and size columns every bubble is "[none]" and 1, however many rows it has.
    w.Chart(Def("VEX_Chart2", "bubble", kPlot + Group("series", "none", {})));
    w.b.PopulateChart("VEX_Chart2");
    auto data = w.Data();
    EXPECT_EQ(Lines(data.begin() + 4, data.end()),
              (Lines{"VEX_Chart2||[-BubbleColor-]|[-XAxisValue-]|[-YAxisValue-]|[-BubbleSize-]",
                     "VEX_Chart2|Alpha|[none]|2|3|1", "VEX_Chart2|Beta|[none]|3|4|1",
                     "VEX_Chart2|Gamma|[none]|5|6|1"}));

    // No categories at all: a plain box, and the old block stays as it was.
    w.Chart(Def("VEX_Chart3", "bubble", Group("values", "", {"Y"})));
    w.b.PopulateChart("VEX_Chart3");
    ASSERT_EQ(w.dialogs.messages.size(), 1u);
    EXPECT_EQ(w.dialogs.messages[0].text, "PSChartBuilder.BuildBubbleMap\r\nFailed to populate a data definition collection");
    EXPECT_EQ(w.dialogs.messages[0].title, "");
    EXPECT_EQ(w.Data().size(), 8u);
}

TEST(BubbleBlock, SizesAreRaisedToAFiveHundredthOfTheLargest) {
    struct Case {
        std::vector<double> sizes;
        bool showZero;
        Lines expected;  // sizes from the top of the block
    } cases[] = {{{1, 1000, 0}, false, {"1000", "2", "0"}}, {{1, 1000, 0}, true, {"1000", "2", "2"}},
                 {{0, 0}, false, {"0", "0"}},                {{0, 0}, true, {"1", "1"}},
                 {{-5, -1}, false, {"-1", "-5"}},            {{-5, -1}, true, {"1", "1"}},
                 {{0.5, 3, -2}, true, {"3", "0.5", "0.006"}}, {{7}, false, {"7"}}};
    for (auto& k : cases) {
        BuilderWorld w;
        std::vector<std::vector<Variant>> rows{{"Name", "X", "Y", "Size"}};
        for (size_t i = 0; i < k.sizes.size(); ++i) rows.push_back({"B" + std::to_string(i), 1.0, 1.0, k.sizes[i]});
        w.Table("Data1", rows);
        w.Chart(Def("VEX_Chart1", "bubble",
                    kPlot + Group("bubble-sizes", "", {"Size"}) + (k.showZero ? kShowZero : "")));
        w.b.PopulateChart("VEX_Chart1");
        EXPECT_TRUE(w.dialogs.messages.empty());
        Lines sizes;
        for (long r = 2; r <= static_cast<long>(k.sizes.size()) + 1; ++r) sizes.push_back(w.Cell(r, 6));
        EXPECT_EQ(sizes, k.expected) << k.sizes[0] << (k.showZero ? " shown" : "");
    }
}

TEST(BubbleBlock, The254thNameStopsTheWalkAtOnce) {
    for (long names : {253L, 254L, 255L}) {
        BuilderWorld w;
        std::vector<std::vector<Variant>> rows{{"Name", "X", "Y"}};
        for (long i = 1; i <= names; ++i) rows.push_back({"N" + std::to_string(i), 1.0, 1.0});
        w.Table("Data1", rows);
        w.Chart(Def("VEX_Chart1", "bubble", kPlot));
        w.b.PopulateChart("VEX_Chart1");
        EXPECT_EQ(w.dialogs.messages.size(), names < 254 ? 0u : 1u) << names;
        EXPECT_EQ(w.Data().size(), static_cast<size_t>(std::min(names, 254L)) + 1) << "the 255th is lost";
    }
}
