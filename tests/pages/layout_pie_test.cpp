#include <gtest/gtest.h>

#include "layout_world.h"

using namespace layoutworld;
using forms::CheckBox;
using forms::ComboBox;
using forms::ListBox;
using forms::OptionButton;
using forms::TextBox;

namespace {
const std::string kPage = "frmPSLayoutPie";
}  // namespace

TEST(LayoutPie, OpensOnTheFirstColumnsAndLabelsStyleAndPicturesGoToTheDefinition) {
    LayoutRun r;
    r.DataTable("Data1", {"Fruit", "Tons", "Farm", "Acres"}, {{"Apple", 3.0, "Hill", 4.0}});
    r.NewChart("pie", "Data1");
    r.Drive(kPage, {
        LayoutRun::Check([](forms::Form& f) {
            EXPECT_EQ(f.Caption(), "Brindle Plotsmith - Chart Layout");
            EXPECT_EQ(f.Get("Frame4").Caption(), "2. Slice Size");
            EXPECT_EQ(f.Get("Frame2").Caption(), "3. A Slice Represents");
            EXPECT_EQ(Ctl<ListBox>(f, "lstCategories").Text(), "Fruit");
            EXPECT_EQ(Ctl<ComboBox>(f, "cboValues").Text(), "Tons");
            EXPECT_TRUE(Ctl<OptionButton>(f, "optDataLabels", 2).Value());
            EXPECT_EQ(f.Get("lblMaskExample").Caption(), "12345.6789");
            EXPECT_EQ(VisibleImages(f, "imgPie"), std::vector<std::string>{"imgPieBasic"});
        }),
        ScriptedDriver::Click("cmdHelp"),
        ScriptedDriver::Select("lstCategories", 1),
        ScriptedDriver::Select("cboValues", 1),
        LayoutRun::ClickOpt("optDataLabels", 1),
        ScriptedDriver::Click("chkExploded"),
        LayoutRun::Check([](forms::Form& f) {
            EXPECT_EQ(VisibleImages(f, "imgPie"), std::vector<std::string>{"imgPieExplode"});
        }),
        ScriptedDriver::Click("chk3D"),
        LayoutRun::Check([](forms::Form& f) {
            EXPECT_EQ(VisibleImages(f, "imgPie"), std::vector<std::string>{"imgPie3DExplode"});
            // "Neither" leaves the number format on, as every other choice does.
            EXPECT_TRUE(f.Get("cboNumberMask").Enabled());
        }),
        ScriptedDriver::Type("cboNumberMask", "#;(#);"),
        ScriptedDriver::Type("txtTitle", " Farms "),
        ScriptedDriver::Click("cmdNext"),
    });
    EXPECT_TRUE(r.dialogs.Texts().empty());
    ASSERT_EQ(r.dialogs.helps.size(), 1u);
    EXPECT_EQ(r.dialogs.helps[0].topic, 6);
    EXPECT_EQ(r.Attr("title"), "Farms");
    EXPECT_EQ(r.Attr("number-format"), "#;(#);");
    EXPECT_EQ(r.Body(),
              "<categories headings-in=\"rows\"><column name=\"Farm\"/></categories>"
              "<series headings-in=\"none\"/>"
              "<values><column name=\"Acres\"/></values>"
              "<data-labels><data-label show=\"percentages\"/></data-labels>"
              "<dynamic-attributes><attribute setting=\"3D\"/><attribute setting=\"exploded\"/></dynamic-attributes>"
              "<comment></comment>");
}

TEST(LayoutPie, RulesSpeakInOrderAndMoveTheFocus) {
    LayoutRun r;
    r.DataTable("Data1", {"Tons"}, {{3.0}});
    r.DataTable("Data2", {"Fruit", "Colour"}, {{"Apple", "Red"}});
    r.DataTable("Data3", {"Fruit", "Tons"}, {{"Apple", 3.0}});
    r.NewChart("pie", "Data1");
    r.Drive(kPage, {ScriptedDriver::Click("cmdNext"), LayoutRun::Check([](forms::Form& f) {
                               EXPECT_EQ(Active(f), "lstCategories");
                           }),
                           ScriptedDriver::Close()}, "");
    r.NewChart("pie", "Data2");
    r.Drive(kPage, {ScriptedDriver::Click("cmdNext"), LayoutRun::Check([](forms::Form& f) {
                               EXPECT_EQ(Active(f), "cboValues");
                           }),
                           ScriptedDriver::Close()}, "");
    r.NewChart("pie", "Data3");
    r.Drive(kPage, {ScriptedDriver::Type("cboNumberMask", "0.00\""), ScriptedDriver::Click("cmdFinish"),
                           LayoutRun::Check([](forms::Form& f) { EXPECT_EQ(Active(f), "cboNumberMask"); }),
                           ScriptedDriver::Close()}, "");
    EXPECT_EQ(r.dialogs.Texts(), (std::vector<std::string>{"Please select a 'Slice Represents' entry",
                                                           "Please select a 'Slice Size' entry",
                                                           "The requested number format is not supported by Excel"}));
    EXPECT_FALSE(r.doc->documentElement().selectSingleNode("categories"));
}

TEST(LayoutPie, ABarDefinitionTurnedPieLosesAxesAndColoursAndAGoneColumnFallsToTheFirst) {
    LayoutRun r;
    r.DataTable("Data1", {"Fruit", "Tons", "Farm", "Acres"}, {{"Apple", 3.0, "Hill", 4.0}});
    r.NewChart("bar", "Data1");
    r.c.oChartDoc->loadXML(
        "<chart id=\"VEX_Chart1\" title=\"Old\" number-format=\"#;(#);\" type=\"bar\">"
        "<categories headings-in=\"rows\"><column name=\"GONE\"/></categories>"
        "<series headings-in=\"rows\"><column name=\"Farm\"/></series>"
        "<values><column name=\"ACRES\"/></values>"
        "<axes><axis type=\"label\" label=\"Fruit\" sticky=\"no\"/></axes>"
        "<data-labels><data-label show=\"values\"/></data-labels>"
        "<dynamic-attributes><attribute setting=\"3D\"/><attribute setting=\"stacked\"/></dynamic-attributes>"
        "<auto-persistence><persist property=\"legend-visibility\" value=\"show\"/></auto-persistence>"
        "<comment>a\nb</comment></chart>");
    r.Modify(r.c.oChartDoc, "pie", "Data1");
    r.Drive(kPage, {LayoutRun::Check([](forms::Form& f) {
                               EXPECT_EQ(Ctl<TextBox>(f, "txtTitle").Text(), "Old");
                               EXPECT_EQ(Ctl<ListBox>(f, "lstCategories").Text(), "Fruit");
                               EXPECT_EQ(Ctl<ComboBox>(f, "cboValues").Text(), "Acres");
                               EXPECT_TRUE(Ctl<OptionButton>(f, "optDataLabels", 0).Value());
                               EXPECT_EQ(Ctl<CheckBox>(f, "chk3D").Value(), 1);
                               EXPECT_EQ(f.Get("lblMaskExample").Caption(), "12346");
                               EXPECT_EQ(Ctl<TextBox>(f, "txtComment").Text(), "a\r\nb");
                               EXPECT_EQ(VisibleImages(f, "imgPie"), std::vector<std::string>{"imgPie3DBasic"});
                           }),
                           ScriptedDriver::Click("cmdBack")}, kTable);
    EXPECT_EQ(r.Body(),
              "<auto-persistence><persist property=\"legend-visibility\" value=\"show\"/></auto-persistence>"
              "<categories headings-in=\"rows\"><column name=\"Fruit\"/></categories>"
              "<series headings-in=\"none\"/>"
              "<values><column name=\"Acres\"/></values>"
              "<data-labels><data-label show=\"values\"/></data-labels>"
              "<dynamic-attributes><attribute setting=\"3D\"/></dynamic-attributes>"
              "<comment>a&#13;\nb</comment>");
}

TEST(LayoutPie, ProceduresReportUnderTheirOwnNamesTheUpdateWithoutItsPoint) {
    LayoutRun r;
    r.DataTable("Data1", {"Fruit", "Tons"}, {{"Apple", 3.0}});
    r.NewChart("pie", "Data1");
    r.c.oChartDoc = nullptr;  // no document to read or write
    r.Drive(kPage, {ScriptedDriver::Click("cmdBack")}, kTable);
    EXPECT_EQ(r.dialogs.Texts(),
              (std::vector<std::string>{"frmPSLayoutPie.RestoreChartSelections\r\nObject variable or With block variable not set",
                                        "frmPSLayoutPieUpdateChartMetadata\r\nObject variable or With block variable not set"}));
}
