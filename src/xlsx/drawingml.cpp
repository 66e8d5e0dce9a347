// DrawingML formatting shared by chart and drawing parts: the theme, colours, fills and the
// character properties of text runs.
#include "xlsx/drawingml.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>

#include "host/chart_constants.h"
#include "host/constants.h"
#include "xlsx/book.h"

namespace xlsx {

const std::vector<std::string_view> kSpPrOrder = {
    "xfrm", "custGeom", "prstGeom", "noFill", "solidFill", "gradFill", "blipFill", "pattFill", "grpFill",
    "ln", "effectLst", "effectDag", "scene3d", "sp3d", "extLst"};
const std::vector<std::string_view> kLnOrder = {"noFill", "solidFill", "gradFill", "pattFill", "prstDash",
                                                "custDash", "round", "bevel", "miter", "headEnd", "tailEnd",
                                                "extLst"};
const std::vector<std::string_view> kRPrOrder = {
    "ln", "noFill", "solidFill", "gradFill", "blipFill", "pattFill", "grpFill", "effectLst", "effectDag",
    "highlight", "uLnTx", "uLn", "uFillTx", "uFill", "latin", "ea", "cs", "sym", "hlinkClick",
    "hlinkMouseOver", "rtl", "extLst"};

namespace {

long Rgb(long r, long g, long b) { return r | (g << 8) | (b << 16); }

// ---------------------------------------------------------------- colour spaces

struct Color {
    double r = 0, g = 0, b = 0;  // sRGB, 0..1
};

Color FromRgb(long rgb) { return {(rgb & 0xFF) / 255.0, ((rgb >> 8) & 0xFF) / 255.0, ((rgb >> 16) & 0xFF) / 255.0}; }

long ToRgb(const Color& c) {
    auto byte = [](double x) { return std::lround(std::clamp(x, 0.0, 1.0) * 255); };
    return Rgb(byte(c.r), byte(c.g), byte(c.b));
}

double ToLinear(double v) { return v <= 0.04045 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4); }
double FromLinear(double v) {
    v = std::clamp(v, 0.0, 1.0);
    return v <= 0.0031308 ? v * 12.92 : 1.055 * std::pow(v, 1 / 2.4) - 0.055;
}

struct Hsl {
    double h = 0, s = 0, l = 0;  // h in turns
};

Hsl ToHsl(const Color& c) {
    double mx = std::max({c.r, c.g, c.b}), mn = std::min({c.r, c.g, c.b});
    Hsl out;
    out.l = (mx + mn) / 2;
    if (mx == mn) return out;
    double d = mx - mn;
    out.s = out.l > 0.5 ? d / (2 - mx - mn) : d / (mx + mn);
    if (mx == c.r) out.h = (c.g - c.b) / d + (c.g < c.b ? 6 : 0);
    else if (mx == c.g) out.h = (c.b - c.r) / d + 2;
    else out.h = (c.r - c.g) / d + 4;
    out.h /= 6;
    return out;
}

Color FromHsl(const Hsl& x) {
    if (x.s == 0) return {x.l, x.l, x.l};
    auto hue = [](double p, double q, double t) {
        if (t < 0) t += 1;
        if (t > 1) t -= 1;
        if (t < 1.0 / 6) return p + (q - p) * 6 * t;
        if (t < 0.5) return q;
        if (t < 2.0 / 3) return p + (q - p) * (2.0 / 3 - t) * 6;
        return p;
    };
    double q = x.l < 0.5 ? x.l * (1 + x.s) : x.l + x.s - x.l * x.s, p = 2 * x.l - q;
    return {hue(p, q, x.h + 1.0 / 3), hue(p, q, x.h), hue(p, q, x.h - 1.0 / 3)};
}

// ---------------------------------------------------------------- named colours

constexpr std::array<std::string_view, 12> kSchemeNames = {"dk1",     "lt1",     "dk2",     "lt2",
                                                           "accent1", "accent2", "accent3", "accent4",
                                                           "accent5", "accent6", "hlink",   "folHlink"};
// The application's default theme, for workbooks without one.
constexpr std::array<const char*, 12> kDefaultScheme = {"000000", "FFFFFF", "44546A", "E7E6E6", "4472C4", "ED7D31",
                                                        "A5A5A5", "FFC000", "5B9BD5", "70AD47", "0563C1", "954F72"};

// The preset colours by name, as "RRGGBB".
const std::pair<std::string_view, const char*> kPresets[] = {
    {"aliceBlue", "F0F8FF"}, {"antiqueWhite", "FAEBD7"}, {"aqua", "00FFFF"}, {"aquamarine", "7FFFD4"},
    {"azure", "F0FFFF"}, {"beige", "F5F5DC"}, {"bisque", "FFE4C4"}, {"black", "000000"},
    {"blanchedAlmond", "FFEBCD"}, {"blue", "0000FF"}, {"blueViolet", "8A2BE2"}, {"brown", "A52A2A"},
    {"burlyWood", "DEB887"}, {"cadetBlue", "5F9EA0"}, {"chartreuse", "7FFF00"}, {"chocolate", "D2691E"},
    {"coral", "FF7F50"}, {"cornflowerBlue", "6495ED"}, {"cornsilk", "FFF8DC"}, {"crimson", "DC143C"},
    {"cyan", "00FFFF"}, {"darkBlue", "00008B"}, {"darkCyan", "008B8B"}, {"darkGoldenrod", "B8860B"},
    {"darkGray", "A9A9A9"}, {"darkGrey", "A9A9A9"}, {"darkGreen", "006400"}, {"darkKhaki", "BDB76B"},
    {"darkMagenta", "8B008B"}, {"darkOliveGreen", "556B2F"}, {"darkOrange", "FF8C00"}, {"darkOrchid", "9932CC"},
    {"darkRed", "8B0000"}, {"darkSalmon", "E9967A"}, {"darkSeaGreen", "8FBC8F"}, {"darkSlateBlue", "483D8B"},
    {"darkSlateGray", "2F4F4F"}, {"darkSlateGrey", "2F4F4F"}, {"darkTurquoise", "00CED1"},
    {"darkViolet", "9400D3"}, {"deepPink", "FF1493"}, {"deepSkyBlue", "00BFFF"}, {"dimGray", "696969"},
    {"dimGrey", "696969"}, {"dodgerBlue", "1E90FF"}, {"firebrick", "B22222"}, {"floralWhite", "FFFAF0"},
    {"forestGreen", "228B22"}, {"fuchsia", "FF00FF"}, {"gainsboro", "DCDCDC"}, {"ghostWhite", "F8F8FF"},
    {"gold", "FFD700"}, {"goldenrod", "DAA520"}, {"gray", "808080"}, {"grey", "808080"}, {"green", "008000"},
    {"greenYellow", "ADFF2F"}, {"honeydew", "F0FFF0"}, {"hotPink", "FF69B4"}, {"indianRed", "CD5C5C"},
    {"indigo", "4B0082"}, {"ivory", "FFFFF0"}, {"khaki", "F0E68C"}, {"lavender", "E6E6FA"},
    {"lavenderBlush", "FFF0F5"}, {"lawnGreen", "7CFC00"}, {"lemonChiffon", "FFFACD"}, {"lightBlue", "ADD8E6"},
    {"lightCoral", "F08080"}, {"lightCyan", "E0FFFF"}, {"lightGoldenrodYellow", "FAFAD2"},
    {"lightGray", "D3D3D3"}, {"lightGrey", "D3D3D3"}, {"lightGreen", "90EE90"}, {"lightPink", "FFB6C1"},
    {"lightSalmon", "FFA07A"}, {"lightSeaGreen", "20B2AA"}, {"lightSkyBlue", "87CEFA"},
    {"lightSlateGray", "778899"}, {"lightSlateGrey", "778899"}, {"lightSteelBlue", "B0C4DE"},
    {"lightYellow", "FFFFE0"}, {"lime", "00FF00"}, {"limeGreen", "32CD32"}, {"linen", "FAF0E6"},
    {"magenta", "FF00FF"}, {"maroon", "800000"}, {"medAquamarine", "66CDAA"}, {"medBlue", "0000CD"},
    {"medOrchid", "BA55D3"}, {"medPurple", "9370DB"}, {"medSeaGreen", "3CB371"}, {"medSlateBlue", "7B68EE"},
    {"medSpringGreen", "00FA9A"}, {"medTurquoise", "48D1CC"}, {"medVioletRed", "C71585"},
    {"midnightBlue", "191970"}, {"mintCream", "F5FFFA"}, {"mistyRose", "FFE4E1"}, {"moccasin", "FFE4B5"},
    {"navajoWhite", "FFDEAD"}, {"navy", "000080"}, {"oldLace", "FDF5E6"}, {"olive", "808000"},
    {"oliveDrab", "6B8E23"}, {"orange", "FFA500"}, {"orangeRed", "FF4500"}, {"orchid", "DA70D6"},
    {"paleGoldenrod", "EEE8AA"}, {"paleGreen", "98FB98"}, {"paleTurquoise", "AFEEEE"},
    {"paleVioletRed", "DB7093"}, {"papayaWhip", "FFEFD5"}, {"peachPuff", "FFDAB9"}, {"peru", "CD853F"},
    {"pink", "FFC0CB"}, {"plum", "DDA0DD"}, {"powderBlue", "B0E0E6"}, {"purple", "800080"}, {"red", "FF0000"},
    {"rosyBrown", "BC8F8F"}, {"royalBlue", "4169E1"}, {"saddleBrown", "8B4513"}, {"salmon", "FA8072"},
    {"sandyBrown", "F4A460"}, {"seaGreen", "2E8B57"}, {"seaShell", "FFF5EE"}, {"sienna", "A0522D"},
    {"silver", "C0C0C0"}, {"skyBlue", "87CEEB"}, {"slateBlue", "6A5ACD"}, {"slateGray", "708090"},
    {"slateGrey", "708090"}, {"snow", "FFFAFA"}, {"springGreen", "00FF7F"}, {"steelBlue", "4682B4"},
    {"tan", "D2B48C"}, {"teal", "008080"}, {"thistle", "D8BFD8"}, {"tomato", "FF6347"},
    {"turquoise", "40E0D0"}, {"violet", "EE82EE"}, {"wheat", "F5DEB3"}, {"white", "FFFFFF"},
    {"whiteSmoke", "F5F5F5"}, {"yellow", "FFFF00"}, {"yellowGreen", "9ACD32"}};

bool IsColorModel(std::string_view l) {
    return l == "srgbClr" || l == "schemeClr" || l == "sysClr" || l == "prstClr" || l == "scrgbClr" || l == "hslClr";
}

double Fraction(pugi::xml_node n, const char* attribute = "val") { return n.attribute(attribute).as_double() / 100000; }

// The colour an element names, before its transforms; false for no colour.
bool BaseColor(Theme* theme, pugi::xml_node color, Color& out) {
    auto l = LocalName(color);
    if (l == "srgbClr") {
        out = FromRgb(HexToRgb(color.attribute("val").value()));
    } else if (l == "schemeClr") {
        out = FromRgb(theme ? theme->Color(color.attribute("val").value()) : 0);
    } else if (l == "sysClr") {
        std::string last = color.attribute("lastClr").value();
        out = FromRgb(!last.empty() ? HexToRgb(last)
                                    : std::string_view(color.attribute("val").value()) == "window" ? 0xFFFFFF : 0);
    } else if (l == "prstClr") {
        std::string_view name = color.attribute("val").value();
        out = {};
        for (auto& [n, hex] : kPresets)
            if (n == name) out = FromRgb(HexToRgb(hex));
    } else if (l == "scrgbClr") {
        out = {FromLinear(Fraction(color, "r")), FromLinear(Fraction(color, "g")), FromLinear(Fraction(color, "b"))};
    } else if (l == "hslClr") {
        out = FromHsl({color.attribute("hue").as_double() / 21600000, Fraction(color, "sat"), Fraction(color, "lum")});
    } else {
        return false;
    }
    return true;
}

// The transforms of a colour element in their order; consecutive ones of the HSL family act on
// one conversion.
Color Transform(pugi::xml_node color, Color c) {
    Hsl hsl;
    bool inHsl = false;
    auto toHsl = [&] {
        if (!inHsl) hsl = ToHsl(c), inHsl = true;
    };
    auto toRgb = [&] {
        if (inHsl) c = FromHsl(hsl), inHsl = false;
    };
    for (auto m : color.children()) {
        auto l = LocalName(m);
        double v = Fraction(m);
        auto unit = [](double x) { return std::clamp(x, 0.0, 1.0); };
        auto turn = [](double x) { return x - std::floor(x); };
        if (l == "lumMod") toHsl(), hsl.l = unit(hsl.l * v);
        else if (l == "lumOff") toHsl(), hsl.l = unit(hsl.l + v);
        else if (l == "lum") toHsl(), hsl.l = unit(v);
        else if (l == "satMod") toHsl(), hsl.s = unit(hsl.s * v);
        else if (l == "satOff") toHsl(), hsl.s = unit(hsl.s + v);
        else if (l == "sat") toHsl(), hsl.s = unit(v);
        else if (l == "hueMod") toHsl(), hsl.h = turn(hsl.h * v);
        else if (l == "hueOff") toHsl(), hsl.h = turn(hsl.h + m.attribute("val").as_double() / 21600000);
        else if (l == "hue") toHsl(), hsl.h = turn(m.attribute("val").as_double() / 21600000);
        else if (l == "shade" || l == "tint") {
            toRgb();
            for (double* ch : {&c.r, &c.g, &c.b}) {
                double lin = ToLinear(*ch);
                *ch = FromLinear(l == "shade" ? lin * v : 1 - (1 - lin) * v);
            }
        }
    }
    toRgb();
    return c;
}

long Resolve(Theme* theme, pugi::xml_node color, long fallback) {
    Color c;
    if (!BaseColor(theme, color, c)) return fallback;
    return ToRgb(Transform(color, c));
}

}  // namespace

long HexToRgb(std::string_view hex) {
    if (hex.size() < 6) return 0;
    unsigned v = HexOf(hex.substr(0, 6));
    return Rgb((v >> 16) & 0xFF, (v >> 8) & 0xFF, v & 0xFF);
}

std::string RgbToHex(long rgb) {
    char buf[8];
    std::snprintf(buf, sizeof buf, "%02X%02X%02X", int(rgb & 0xFF), int((rgb >> 8) & 0xFF), int((rgb >> 16) & 0xFF));
    return buf;
}

// ---------------------------------------------------------------- theme

Theme& Book::theme() {
    if (!theme_) theme_ = std::make_shared<Theme>(*this);
    return *theme_;
}

Theme::Theme(Book& book) : book_(book) {
    for (auto hex : kDefaultScheme) colors_.push_back(HexToRgb(hex));
    auto& pkg = book.pkg();
    pugi::xml_node root;
    for (auto& r : pkg.Rels(book.WorkbookPart()))
        if (r.type == rel::kTheme)
            if (auto part = pkg.Target(book.WorkbookPart(), r.id); !part.empty() && pkg.Has(part))
                root = pkg.Read(part).document_element();
    auto elements = Kid(root, "themeElements");
    auto scheme = Kid(elements, "clrScheme");
    for (size_t i = 0; i < kSchemeNames.size(); ++i) {
        auto c = ColorIn(Kid(scheme, kSchemeNames[i]));
        if (c && LocalName(c) != "schemeClr") colors_[i] = Resolve(nullptr, c, colors_[i]);
    }
    auto fonts = Kid(elements, "fontScheme");
    minor_ = Kid(Kid(fonts, "minorFont"), "latin").attribute("typeface").value();
    major_ = Kid(Kid(fonts, "majorFont"), "latin").attribute("typeface").value();
    for (auto ln : Kid(Kid(elements, "fmtScheme"), "lnStyleLst").children())
        lineWidths_.push_back(ln.attribute("w").as_llong() / 12700.0);
}

long Theme::Color(std::string_view name) const {
    if (name == "tx1") name = "dk1";
    else if (name == "bg1") name = "lt1";
    else if (name == "tx2") name = "dk2";
    else if (name == "bg2") name = "lt2";
    for (size_t i = 0; i < kSchemeNames.size(); ++i)
        if (kSchemeNames[i] == name) return colors_[i];
    return 0;
}

// A theme without fonts leaves text in the workbook's default font.
std::string Theme::Minor() {
    if (minor_.empty()) minor_ = book_.styles().DefaultFontName();
    return minor_;
}

std::string Theme::Face(std::string_view typeface) {
    if (typeface.empty() || typeface.substr(0, 4) == "+mn-") return Minor();
    if (typeface.substr(0, 4) == "+mj-") return major_.empty() ? Minor() : major_;
    return std::string(typeface);
}

double Theme::LineWidth(long index) const {
    return index >= 1 && index <= long(lineWidths_.size()) ? lineWidths_[index - 1] : 0.75;
}

// ---------------------------------------------------------------- colours

pugi::xml_node ColorIn(pugi::xml_node parent) {
    for (auto c : parent.children())
        if (c.type() == pugi::node_element && IsColorModel(LocalName(c))) return c;
    return {};
}

long ColorRgb(Theme& theme, pugi::xml_node color, long fallback) { return Resolve(&theme, color, fallback); }

long ModulateLuminance(long rgb, double mod, double off) {
    Hsl hsl = ToHsl(FromRgb(rgb));
    hsl.l = std::clamp(std::clamp(hsl.l * mod, 0.0, 1.0) + off, 0.0, 1.0);
    return ToRgb(FromHsl(hsl));
}

long NearestPaletteIndex(Book& book, long rgb) {
    long best = 1, bestDist = -1;
    for (long i = 1; i <= 56; ++i) {
        long p = book.Colors(i), dist = 0;
        for (int shift : {0, 8, 16}) {
            long d = ((p >> shift) & 0xFF) - ((rgb >> shift) & 0xFF);
            dist += d * d;
        }
        if (bestDist < 0 || dist < bestDist) {
            best = i;
            bestDist = dist;
        }
    }
    return best;
}

void PutColor(pugi::xml_node holder, std::string_view model, const std::string& val, const std::string& prefix) {
    while (holder.first_child()) holder.remove_child(holder.first_child());
    holder.append_child((prefix + std::string(model)).c_str()).append_attribute("val") = val.c_str();
}

void SlotColor::SetRGB(long rgb) {
    if (rgb < 0 || rgb > 0xFFFFFF) Refuse("The specified value is out of range.");
    slot_.write("srgbClr", RgbToHex(rgb));
}

long SlotColor::Type() {
    return LocalName(slot_.element()) == "schemeClr" ? host::msoColorTypeScheme : host::msoColorTypeRGB;
}

// ---------------------------------------------------------------- fills

bool IsFill(std::string_view l) {
    return l == "noFill" || l == "solidFill" || l == "gradFill" || l == "blipFill" || l == "pattFill" || l == "grpFill";
}

pugi::xml_node FillIn(pugi::xml_node parent) {
    for (auto c : parent.children())
        if (c.type() == pugi::node_element && IsFill(LocalName(c))) return c;
    return {};
}

void RemoveFills(pugi::xml_node parent) {
    while (auto f = FillIn(parent)) parent.remove_child(f);
}

pugi::xml_node PutFill(pugi::xml_node parent, std::string_view kind, const std::string& prefix) {
    RemoveFills(parent);
    auto l = LocalName(parent);
    const auto& order = l == "spPr" ? kSpPrOrder : l == "ln" ? kLnOrder : kRPrOrder;
    return InsertAt(parent, kind, order, prefix);
}

pugi::xml_node PutSolid(pugi::xml_node parent, long rgb, const std::string& prefix) {
    auto fill = PutFill(parent, "solidFill", prefix);
    PutColor(fill, "srgbClr", RgbToHex(rgb), prefix);
    return fill;
}

// ---------------------------------------------------------------- text

namespace {
const std::pair<long, const char*> kHorizontal[] = {
    {host::xlHAlignCenter, "ctr"}, {host::xlHAlignLeft, "l"}, {host::xlHAlignRight, "r"},
    {host::xlHAlignJustify, "just"}, {host::xlHAlignDistributed, "dist"}};
const std::pair<long, const char*> kVertical[] = {
    {host::xlVAlignCenter, "ctr"}, {host::xlVAlignTop, "t"}, {host::xlVAlignBottom, "b"},
    {host::xlVAlignJustify, "just"}, {host::xlVAlignDistributed, "dist"}};
}  // namespace

const char* AlignmentName(long value, bool vertical) {
    for (auto& [xl, name] : vertical ? kVertical : kHorizontal)
        if (xl == value) return name;
    return nullptr;
}

std::string LineFeeds(std::string_view text) {
    std::string out;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\r') {
            out += text[i];
            continue;
        }
        out += '\n';
        if (i + 1 < text.size() && text[i + 1] == '\n') ++i;
    }
    return out;
}

long AlignmentOf(std::string_view name, bool vertical, long dflt) {
    for (auto& [xl, n] : vertical ? kVertical : kHorizontal)
        if (name == n) return xl;
    return dflt;
}

pugi::xml_attribute RunFormat::Attribute(const char* name) const {
    if (auto a = own.attribute(name)) return a;
    return inherited.attribute(name);
}

pugi::xml_node RunFormat::Fill() const {
    if (auto f = FillIn(own)) return f;
    return FillIn(inherited);
}

std::string RunFormat::Typeface() const {
    auto latin = Kid(own, "latin");
    if (!latin) latin = Kid(inherited, "latin");
    return latin.attribute("typeface").value();
}

double RunFormat::Size(double dflt) const {
    auto sz = Attribute("sz");
    return sz ? sz.as_double() / 100 : dflt;
}

bool RunFormat::Flag(const char* name) const { return Attribute(name).as_bool(); }

long RunFormat::Underline() const {
    std::string_view u = Attribute("u").value();
    if (u.empty() || u == "none") return host::xlUnderlineStyleNone;
    return u == "dbl" ? host::xlUnderlineStyleDouble : host::xlUnderlineStyleSingle;
}

bool RunFormat::Strikethrough() const {
    std::string_view s = Attribute("strike").value();
    return !s.empty() && s != "noStrike";
}

long RunFormat::Color(Theme& theme, long dflt) const {
    auto f = Fill();
    return LocalName(f) == "solidFill" ? ColorRgb(theme, ColorIn(f), dflt) : dflt;
}

host::Variant RunFont::Shared(std::vector<RunFormat> runs, const std::function<host::Variant(const RunFormat&)>& get) {
    if (runs.empty()) runs.push_back({});
    host::Variant first = get(runs[0]);
    for (size_t k = 1; k < runs.size(); ++k)
        if (!(get(runs[k]) == first)) return host::Variant::Null();
    return first;
}

host::Variant RunFont::Name() {
    std::string dflt;
    return Common([&](const RunFormat& f) {
        auto face = f.Typeface();
        if (!face.empty()) return host::Variant(theme_.Face(face));
        if (dflt.empty()) dflt = DefaultFace();
        return host::Variant(dflt);
    });
}

void RunFont::SetName(const host::Variant& v) {
    std::string name = host::CStr(v);
    // East Asian faces stay as they are, as the application keeps them apart.
    Format([&](pugi::xml_node rPr) {
        SetAttr(Ensure(rPr, "latin", kRPrOrder, ElementPrefix(rPr)), "typeface", name);
        if (complexScript_) SetAttr(Ensure(rPr, "cs", kRPrOrder, ElementPrefix(rPr)), "typeface", name);
    });
}

host::Variant RunFont::Size() {
    return Common([&](const RunFormat& f) { return host::Variant(f.Size(defaultSize_)); });
}

void RunFont::SetSize(const host::Variant& v) {
    double size = host::CDbl(v);
    if (size < 1 || size > 409) Refuse("Unable to set the Size property of the Font class");
    Format([&](pugi::xml_node rPr) { SetAttr(rPr, "sz", std::to_string(std::lround(size * 100))); });
}

void RunFont::SetFlag(const char* name, bool on) {
    Format([&](pugi::xml_node rPr) { SetAttr(rPr, name, on ? "1" : "0"); });
}

host::Variant RunFont::Underline() {
    return Common([](const RunFormat& f) { return host::Variant(f.Underline()); });
}

void RunFont::SetUnderline(const host::Variant& v) {
    long u = v.type() == host::Variant::Type::Boolean
                 ? (v.RawBool() ? host::xlUnderlineStyleSingle : host::xlUnderlineStyleNone)
                 : host::CLng(v);
    const char* val = u == host::xlUnderlineStyleNone ? "none" : u == host::xlUnderlineStyleDouble ? "dbl" : "sng";
    Format([&](pugi::xml_node rPr) { SetAttr(rPr, "u", val); });
}

host::Variant RunFont::Strikethrough() {
    return Common([](const RunFormat& f) { return host::Variant(f.Strikethrough()); });
}

void RunFont::SetStrikethrough(const host::Variant& v) {
    bool on = host::CBool(v);
    Format([&](pugi::xml_node rPr) { SetAttr(rPr, "strike", on ? "sngStrike" : "noStrike"); });
}

host::Variant RunFont::Color() {
    long dflt = DefaultColor();
    return Common([&](const RunFormat& f) { return host::Variant(f.Color(theme_, dflt)); });
}

void RunFont::SetColor(const host::Variant& v) {
    long rgb = host::CLng(v);
    if (rgb < 0 || rgb > 0xFFFFFF) Refuse("Unable to set the Color property of the Font class");
    Format([&](pugi::xml_node rPr) { PutSolid(rPr, rgb, ElementPrefix(rPr)); });
}

void RunFont::RemoveColor() {
    Format([](pugi::xml_node rPr) { RemoveFills(rPr); });
}

host::Variant RunFont::FontStyle() {
    return Common([](const RunFormat& f) {
        bool b = f.Flag("b"), i = f.Flag("i");
        return host::Variant(b && i ? "Bold Italic" : b ? "Bold" : i ? "Italic" : "Regular");
    });
}

void RunFont::SetFontStyle(const host::Variant& v) {
    std::string style = host::LCase(host::CStr(v));
    bool b = style.find("bold") != std::string::npos;
    bool i = style.find("italic") != std::string::npos || style.find("oblique") != std::string::npos;
    Format([&](pugi::xml_node rPr) {
        SetAttr(rPr, "b", b ? "1" : "0");
        SetAttr(rPr, "i", i ? "1" : "0");
    });
}

}  // namespace xlsx
