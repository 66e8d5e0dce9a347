#include <cstdlib>
#include <optional>

#include "wizard_book.h"

#include "forms/form.h"

using namespace wizardtest;

namespace {

// Sets the locale variables for one test and puts them back.
class LocaleEnvironment {
public:
    explicit LocaleEnvironment(const char* sLocale) {
        for (const char* var : {"LC_ALL", "LC_CTYPE", "LANG"}) {
            const char* v = std::getenv(var);
            saved_.push_back({var, v ? std::optional<std::string>(v) : std::nullopt});
            unsetenv(var);
        }
        if (sLocale) setenv("LANG", sLocale, 1);
    }
    ~LocaleEnvironment() {
        for (auto& [var, value] : saved_) {
            if (value) setenv(var, value->c_str(), 1);
            else unsetenv(var);
        }
    }

private:
    std::vector<std::pair<const char*, std::optional<std::string>>> saved_;
};

struct FontCase {
    long lLCID;
    double dSizeBefore;
    long lCharset;
    std::string sName;  // "Tahoma" is the designed typeface, left alone
    double dSizeAfter;
};

}  // namespace

TEST(Locale, FontsFollowTheLocaleByCharsetTypefaceAndLeastSize) {
    const FontCase cases[] = {
        {1033, 6, 1, "Tahoma", 6},             // not in the table: the character set only
        {1041, 8, 128, "ＭＳ Ｐゴシック", 9},  // East Asian typefaces want at least 9 points
        {1041, 10, 128, "ＭＳ Ｐゴシック", 10},
        {1028, 8, 136, "新細明體", 9},
        {1042, 8, 129, "굴림", 9},
        {2052, 12, 134, "宋体", 12},
        {1049, 6, 204, "", 8},  // the system's typeface, at least 8 points
        {1049, 9, 204, "", 9},  {1025, 8, 178, "", 8}, {1045, 8, 238, "", 8}, {1060, 8, 238, "", 8},
        {1032, 8, 161, "", 8},  {1037, 8, 177, "", 8}, {1054, 8, 222, "", 8}, {1055, 8, 162, "", 8},
        {1066, 8, 163, "", 8},
    };
    for (const auto& k : cases) {
        forms::FontAttributes font;
        font.Size = k.dSizeBefore;
        ps::ApplyLocaleFont(font, k.lLCID);
        EXPECT_EQ(font.Charset, k.lCharset) << k.lLCID;
        EXPECT_EQ(font.Name, k.sName) << k.lLCID;
        EXPECT_EQ(font.Size, k.dSizeAfter) << k.lLCID;
    }
}

TEST(Locale, TheUsersLocaleComesFromTheEnvironment) {
    const std::pair<const char*, long> cases[] = {
        {"ja_JP.UTF-8", 1041}, {"zh_TW.UTF-8", 1028}, {"zh_CN.UTF-8", 2052}, {"zh_SG", 2052}, {"ru_RU.KOI8-R", 1049},
        {"sr_RS@latin", 1033}, {"pl_PL", 1045},       {"en_GB.UTF-8", 1033}, {"C", 1033},     {nullptr, 1033},
    };
    for (auto& [sLocale, lLCID] : cases) {
        LocaleEnvironment env(sLocale);
        EXPECT_EQ(ps::GetUserDefaultLCID(), lLCID) << (sLocale ? sLocale : "(none)");
    }
    LocaleEnvironment env("en_US.UTF-8");
    setenv("LC_ALL", "ko_KR.UTF-8", 1);  // the first that is set wins
    EXPECT_EQ(ps::GetUserDefaultLCID(), 1042);
}

TEST(Locale, APageTakesTheLocaleFontsWhenItLoadsButItsGridKeepsItsOwn) {
    LocaleEnvironment env("ja_JP.UTF-8");
    WizardBook w;
    w.RegionTable();
    auto& page = ps::SelectTablePage(w.c);
    w.driver.Visit(kTable, {w.Expect([&] {
                                EXPECT_EQ(page.Font().Name, "ＭＳ Ｐゴシック");
                                EXPECT_EQ(page.Font().Charset, 128);
                                for (const char* name : {"cmdNext", "fraChartType", "cmdCancel"}) {
                                    auto& font = page.Get(name).Font();
                                    EXPECT_EQ(font.Name, "ＭＳ Ｐゴシック") << name;
                                    EXPECT_EQ(font.Size, 9) << name;
                                }
                                EXPECT_EQ(page.Get("optType", 3).Font().Charset, 128);
                                auto& grid = page.Get("grdTables").Font();
                                EXPECT_EQ(grid.Name, "Tahoma");
                                EXPECT_EQ(grid.Charset, 0);
                            }),
                            ScriptedDriver::Click("cmdCancel")});
    w.Run();
    EXPECT_TRUE(w.dialogs.messages.empty());
}
