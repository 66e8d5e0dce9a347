// The styles part: number formats of cell styles, the colour palette and the default font.
#include <algorithm>
#include <cstdio>

#include "host/error.h"
#include "xlsx/book.h"
#include "xlsx/numfmt.h"

namespace xlsx {

namespace {
// The application's default palette, Colors(1..56), as RGB.
const unsigned kDefaultPalette[56] = {
    0x000000, 0xFFFFFF, 0xFF0000, 0x00FF00, 0x0000FF, 0xFFFF00, 0xFF00FF, 0x00FFFF, 0x800000, 0x008000,
    0x000080, 0x808000, 0x800080, 0x008080, 0xC0C0C0, 0x808080, 0x9999FF, 0x993366, 0xFFFFCC, 0xCCFFFF,
    0x660066, 0xFF8080, 0x0066CC, 0xCCCCFF, 0x000080, 0xFF00FF, 0xFFFF00, 0x00FFFF, 0x800080, 0x800000,
    0x008080, 0x0000FF, 0x00CCFF, 0xCCFFFF, 0xCCFFCC, 0xFFFF99, 0x99CCFF, 0xFF99CC, 0xCC99FF, 0xFFCC99,
    0x3366FF, 0x33CCCC, 0x99CC00, 0xFFCC00, 0xFF9900, 0xFF6600, 0x666699, 0x969696, 0x003366, 0x339966,
    0x003300, 0x333300, 0x993300, 0x993366, 0x333399, 0x333333};

// The first eight indexed colours precede the palette in indexedColors.
const unsigned kSystemColors[8] = {0x000000, 0xFFFFFF, 0xFF0000, 0x00FF00, 0x0000FF, 0xFFFF00, 0xFF00FF, 0x00FFFF};

// Automation colours are BGR longs; the file writes ARGB hex.
long RgbTextToLong(const char* argb) {
    unsigned v = 0;
    std::sscanf(argb, "%x", &v);
    unsigned r = (v >> 16) & 0xFF, g = (v >> 8) & 0xFF, b = v & 0xFF;
    return static_cast<long>(r | (g << 8) | (b << 16));
}
std::string LongToRgbText(unsigned rgb) {
    char buf[16];
    std::snprintf(buf, sizeof buf, "FF%02X%02X%02X", rgb & 0xFF, (rgb >> 8) & 0xFF, (rgb >> 16) & 0xFF);
    return buf;
}
long PaletteRgbToLong(unsigned rgb) { return static_cast<long>(((rgb >> 16) & 0xFF) | (rgb & 0xFF00) | ((rgb & 0xFF) << 16)); }
}  // namespace

Styles::Styles(Package& pkg, std::string part) : pkg_(pkg), part_(std::move(part)) {}

pugi::xml_node Styles::Root(bool edit) {
    return edit ? pkg_.Edit(part_).document_element() : pkg_.Read(part_).document_element();
}

void Styles::LoadFormats() {
    if (loaded_) return;
    loaded_ = true;
    auto root = Root(false);
    for (auto f : root.child("numFmts").children("numFmt"))
        custom_[f.attribute("numFmtId").as_int()] = f.attribute("formatCode").value();
    for (auto xf : root.child("cellXfs").children("xf")) xfFormat_.push_back(xf.attribute("numFmtId").as_int());
}

std::string Styles::FormatCode(long xf) {
    LoadFormats();
    long id = xf >= 0 && xf < static_cast<long>(xfFormat_.size()) ? xfFormat_[static_cast<size_t>(xf)] : 0;
    if (auto it = custom_.find(id); it != custom_.end()) return it->second;
    auto builtin = BuiltinNumberFormat(static_cast<int>(id));
    return builtin.empty() ? "General" : std::string(builtin);
}

const NumberFormat* Styles::Format(long xf) {
    LoadFormats();
    long id = xf >= 0 && xf < static_cast<long>(xfFormat_.size()) ? xfFormat_[static_cast<size_t>(xf)] : 0;
    auto it = parsed_.find(id);
    if (it == parsed_.end()) {
        std::unique_ptr<NumberFormat> format;
        try {
            format = std::make_unique<NumberFormat>(FormatCode(xf));
        } catch (const NumberFormatError&) {
        }
        it = parsed_.emplace(id, std::move(format)).first;
    }
    return it->second.get();
}

long Styles::WithFormat(long xf, const std::string& code) {
    LoadFormats();
    // The format's id: a built-in one with the same code, else a custom one, added when new. Only the
    // ids whose codes are the same in every locale are taken: readers show the others (dates,
    // currencies, accounting) in their own locale's form.
    long id = -1;
    for (int b : {0, 1, 2, 3, 4, 9, 10, 11, 12, 13, 45, 46, 47, 48, 49})
        if (id < 0 && BuiltinNumberFormat(b) == code) id = b;
    for (auto& [k, v] : custom_)
        if (id < 0 && v == code) id = k;
    auto root = Root(false);
    if (id < 0) {
        root = Root(true);
        id = 164;
        for (auto& [k, v] : custom_) id = std::max(id, k + 1);
        auto fmts = root.child("numFmts");
        if (!fmts) fmts = root.prepend_child("numFmts");
        auto f = fmts.append_child("numFmt");
        f.append_attribute("numFmtId").set_value(id);
        f.append_attribute("formatCode").set_value(code.c_str());
        custom_[id] = code;
        if (!fmts.attribute("count")) fmts.append_attribute("count");
        fmts.attribute("count").set_value(static_cast<unsigned>(custom_.size()));
    }
    if (xf < 0 || xf >= static_cast<long>(xfFormat_.size())) xf = 0;
    if (!xfFormat_.empty() && xfFormat_[static_cast<size_t>(xf)] == id) return xf;
    // Reuse a style that differs only in its format, before adding one.
    auto xfs = root.child("cellXfs");
    std::vector<pugi::xml_node> nodes;
    for (auto n : xfs.children("xf")) nodes.push_back(n);
    auto base = nodes.empty() ? pugi::xml_node{} : nodes[static_cast<size_t>(xf)];
    auto same = [&](pugi::xml_node n) {
        for (auto a : base.attributes()) {
            std::string name = a.name();
            if (name == "numFmtId" || name == "applyNumberFormat") continue;
            if (std::string(n.attribute(a.name()).value()) != a.value()) return false;
        }
        for (auto a : n.attributes()) {
            std::string name = a.name();
            if (name == "numFmtId" || name == "applyNumberFormat") continue;
            if (!base.attribute(a.name())) return false;
        }
        return !base.first_child() && !n.first_child();
    };
    for (size_t i = 0; i < nodes.size(); ++i)
        if (xfFormat_[i] == id && same(nodes[i])) return static_cast<long>(i);
    root = Root(true);
    xfs = root.child("cellXfs");
    nodes.clear();
    for (auto n : xfs.children("xf")) nodes.push_back(n);
    pugi::xml_node copy = nodes.empty() ? xfs.append_child("xf") : xfs.append_copy(nodes[static_cast<size_t>(xf)]);
    if (nodes.empty()) {
        for (const char* a : {"fontId", "fillId", "borderId", "xfId"}) copy.append_attribute(a).set_value(0);
    }
    if (!copy.attribute("numFmtId")) copy.prepend_attribute("numFmtId");
    copy.attribute("numFmtId").set_value(id);
    if (!copy.attribute("applyNumberFormat")) copy.append_attribute("applyNumberFormat");
    copy.attribute("applyNumberFormat").set_value("1");
    xfFormat_.push_back(id);
    if (!xfs.attribute("count")) xfs.append_attribute("count");
    xfs.attribute("count").set_value(static_cast<unsigned>(xfFormat_.size()));
    return static_cast<long>(xfFormat_.size() - 1);
}

long Styles::Palette(long index) {
    auto colors = Root(false).child("colors").child("indexedColors");
    if (colors) {
        long i = 0;
        for (auto c : colors.children("rgbColor"))
            if (i++ == index + 7) return RgbTextToLong(c.attribute("rgb").value());
    }
    return PaletteRgbToLong(kDefaultPalette[index - 1]);
}

void Styles::SetPalette(long index, long rgb) {
    if (rgb < 0 || rgb > 0xFFFFFF) host::Raise(host::err::ApplicationDefined, "Unable to set the Colors property of the Workbook class");
    if (Palette(index) == rgb) return;
    std::vector<long> current;
    for (long i = 1; i <= 56; ++i) current.push_back(Palette(i));
    current[static_cast<size_t>(index - 1)] = rgb;
    auto root = Root(true);
    auto colors = root.child("colors");
    if (!colors) {
        // colors stands after tableStyles and before extLst.
        auto before = root.child("extLst");
        colors = before ? root.insert_child_before("colors", before) : root.append_child("colors");
    }
    colors.remove_child("indexedColors");
    auto ic = colors.prepend_child("indexedColors");
    for (unsigned c : kSystemColors) ic.append_child("rgbColor").append_attribute("rgb").set_value(LongToRgbText(PaletteRgbToLong(c)).c_str());
    for (long c : current) ic.append_child("rgbColor").append_attribute("rgb").set_value(LongToRgbText(static_cast<unsigned>(c)).c_str());
}

void Styles::ResetPalette() {
    auto colors = Root(false).child("colors");
    if (!colors.child("indexedColors")) return;
    auto root = Root(true);
    colors = root.child("colors");
    colors.remove_child("indexedColors");
    if (!colors.first_child()) root.remove_child(colors);
}

size_t Styles::Count() {
    LoadFormats();
    return std::max<size_t>(xfFormat_.size(), 1);
}

std::string Styles::DefaultFontName() {
    auto f = Root(false).child("fonts").child("font");
    std::string n = f.child("name").attribute("val").value();
    return n.empty() ? "Calibri" : n;
}

double Styles::DefaultFontSize() {
    auto f = Root(false).child("fonts").child("font");
    return f.child("sz").attribute("val").as_double(11);
}

}  // namespace xlsx
