// Locale fonts: a page's fonts take the character set, and in East Asian locales the typeface, of
// the user's locale, so that text typed in that script shows. The texts themselves stay English.
#include <cstdlib>
#include <string>
#include <string_view>

#include "common/common_functions.h"
#include "forms/form.h"

namespace ps {

namespace {

constexpr long DEFAULT_CHARSET = 1;
constexpr long lcidEnglishUS = 1033;

// POSIX language (and territory, where the script depends on it) to the locale identifier. Only
// the locales that change a font need to be told apart; the rest answer as US English, which
// changes nothing either.
struct LocaleId {
    std::string_view sPosix;
    long lLCID;
};
constexpr LocaleId aLocaleIds[] = {
    {"ar", 1025}, {"zh_TW", 1028}, {"zh_HK", 1028}, {"zh_MO", 1028}, {"cs", 1029}, {"el", 1032},
    {"en", 1033}, {"he", 1037},    {"iw", 1037},    {"hu", 1038},    {"ja", 1041}, {"ko", 1042},
    {"pl", 1045}, {"ro", 1048},    {"ru", 1049},    {"hr", 1050},    {"sk", 1051}, {"th", 1054},
    {"tr", 1055}, {"sl", 1060},    {"vi", 1066},    {"zh", 2052},
};

std::string_view EnvironmentLocale() {
    for (const char* var : {"LC_ALL", "LC_CTYPE", "LANG"})
        if (const char* v = std::getenv(var); v && *v) return v;
    return {};
}

struct FontRule {
    long lCharset;
    const char* sTypeface;  // nullptr: the default rule
};

// The rule of a locale; nullptr for a locale outside the table.
const FontRule* RuleFor(long lLCID) {
    static const FontRule arabic{178, nullptr}, chineseTraditional{136, "新細明體"}, centralEurope{238, nullptr},
        greek{161, nullptr}, hebrew{177, nullptr}, japanese{128, "ＭＳ Ｐゴシック"}, korean{129, "굴림"},
        cyrillic{204, nullptr}, thai{222, nullptr}, turkish{162, nullptr}, vietnamese{163, nullptr},
        chineseSimplified{134, "宋体"};
    switch (lLCID) {
        case 1025: return &arabic;
        case 1028: return &chineseTraditional;
        case 1029: case 1038: case 1045: case 1048: case 1050: case 1051: case 1060: return &centralEurope;
        case 1032: return &greek;
        case 1037: return &hebrew;
        case 1041: return &japanese;
        case 1042: return &korean;
        case 1049: return &cyrillic;
        case 1054: return &thai;
        case 1055: return &turkish;
        case 1066: return &vietnamese;
        case 2052: return &chineseSimplified;
    }
    return nullptr;
}

}  // namespace

long GetUserDefaultLCID() {
    std::string_view sLocale = EnvironmentLocale();
    // "ja_JP.UTF-8@euro": language and territory only.
    sLocale = sLocale.substr(0, sLocale.find_first_of(".@"));
    std::string_view sLanguage = sLocale.substr(0, sLocale.find('_'));
    for (const auto& id : aLocaleIds)
        if (id.sPosix == sLocale) return id.lLCID;
    for (const auto& id : aLocaleIds)
        if (id.sPosix == sLanguage) return id.lLCID;
    return lcidEnglishUS;
}

void SetDefaultLocaleFont(forms::FontAttributes& oFont) {
    oFont.Name = "";
    if (oFont.Size < 8) oFont.Size = 8;
}

void ApplyLocaleFont(forms::FontAttributes& oFont, long lLCID) {
    const FontRule* rule = RuleFor(lLCID);
    if (!rule) {
        oFont.Charset = DEFAULT_CHARSET;
        return;
    }
    oFont.Charset = rule->lCharset;
    if (!rule->sTypeface) {
        SetDefaultLocaleFont(oFont);
        return;
    }
    oFont.Name = rule->sTypeface;
    if (oFont.Size < 9) oFont.Size = 9;
}

void ApplyLocaleFont(forms::FontAttributes& oFont) { ApplyLocaleFont(oFont, GetUserDefaultLCID()); }

void ApplyLocaleFontsToForm(forms::Form& oForm, long lLCID) {
    ApplyLocaleFont(oForm.Font(), lLCID);
    for (const auto& ctl : oForm.Controls()) {
        // A control without a font (a timer, an image) has nothing to set; a grid keeps its own.
        if (!ctl->HasFont() || ctl->TypeName() == "VSFlexGrid") continue;
        ApplyLocaleFont(ctl->Font(), lLCID);
    }
}

void ApplyLocaleFontsToForm(forms::Form& oForm) { ApplyLocaleFontsToForm(oForm, GetUserDefaultLCID()); }

}  // namespace ps
