#pragma once
// DrawingML formatting as chart parts and drawing parts share it: the workbook's theme, colour
// elements resolved to RGB, fill elements, the character properties of text runs, the alignment
// and line breaks of text. RGB values are longs with red in the low byte, as automation has them.
// Not for use outside src/xlsx.
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <pugixml.hpp>

#include "host/drawing.h"
#include "host/variant.h"
#include "xlsx/ooxml.h"

namespace xlsx {

class Book;

// Content models of the DrawingML elements that hold fills, in schema order.
extern const std::vector<std::string_view> kSpPrOrder, kLnOrder, kRPrOrder;

long HexToRgb(std::string_view hex);  // "RRGGBB"; 0 for anything else
std::string RgbToHex(long rgb);

// ---------------------------------------------------------------- theme

// The colours, fonts and line widths of the workbook's theme, read once (Book::theme()); a
// workbook without a theme has the application's default one.
class Theme {
public:
    explicit Theme(Book& book);
    long Color(std::string_view name) const;  // "accent1", "dk1", "tx1" ...; 0 for other names
    // The face a typeface names: the theme's minor font for "+mn-lt" (and for none), its major font
    // for "+mj-lt", any other as it is.
    std::string Face(std::string_view typeface);
    double LineWidth(long index) const;  // points of a line style of the format scheme, 1-based

private:
    std::string Minor();
    Book& book_;
    std::vector<long> colors_;  // in the order of kSchemeNames
    std::string minor_, major_;
    std::vector<double> lineWidths_;
};

// ---------------------------------------------------------------- colours

// The colour element (srgbClr, schemeClr, sysClr ...) of a fill, a style reference or a pattern's
// fgClr / bgClr; an empty node when it holds none.
pugi::xml_node ColorIn(pugi::xml_node parent);
// A colour element as RGB with its transforms applied as the application applies them: lumMod,
// lumOff and the other hue, saturation and luminance transforms on the colour's HSL values, tint
// and shade in linear light. `fallback` for no colour element.
long ColorRgb(Theme& theme, pugi::xml_node color, long fallback);
// A colour with its luminance modulated and offset (lumMod, lumOff as fractions).
long ModulateLuminance(long rgb, double mod, double off);
// The palette index (1..56) of the palette colour nearest to an RGB value.
long NearestPaletteIndex(Book& book, long rgb);
// Replaces what a fill or colour holder holds with one colour element.
void PutColor(pugi::xml_node holder, std::string_view model, const std::string& val, const std::string& prefix);

// A colour held somewhere in a part: its element (empty when none), what it reads without one,
// and how a new colour element is written (model and value, after the caller marked the edit).
struct ColorSlot {
    std::function<pugi::xml_node()> element;
    std::function<long()> fallback;
    std::function<void(std::string_view model, const std::string& val)> write;
};

// The RGB and type of a colour slot, as chart and shape colours answer them.
class SlotColor : public host::ColorFormat {
public:
    SlotColor(Theme& theme, ColorSlot slot) : theme_(theme), slot_(std::move(slot)) {}
    long RGB() override { return ColorRgb(theme_, slot_.element(), slot_.fallback()); }
    void SetRGB(long rgb) override;
    long Type() override;

protected:
    Theme& theme_;
    ColorSlot slot_;
};

// ---------------------------------------------------------------- fills

bool IsFill(std::string_view local);            // noFill, solidFill, gradFill ...
pugi::xml_node FillIn(pugi::xml_node parent);   // the fill element of spPr, ln or a run
void RemoveFills(pugi::xml_node parent);
// A new fill element of that kind in place of the parent's fill, at its schema place in spPr, ln
// or run properties.
pugi::xml_node PutFill(pugi::xml_node parent, std::string_view kind, const std::string& prefix);
pugi::xml_node PutSolid(pugi::xml_node parent, long rgb, const std::string& prefix);

// ---------------------------------------------------------------- text

// Alignment as automation names it (xlHAlign..., xlVAlign...) and as text writes it: a paragraph's
// algn, vertically a body's anchor. The name is nullptr for a value without one.
const char* AlignmentName(long value, bool vertical);
long AlignmentOf(std::string_view name, bool vertical, long dflt);
// A text as paragraphs take it: CR and CR LF become LF.
std::string LineFeeds(std::string_view text);

// The character properties that decide the look of a run: its own (rPr), over those it inherits
// (its paragraph's defRPr). Either may be empty.
struct RunFormat {
    pugi::xml_node own, inherited;
    pugi::xml_attribute Attribute(const char* name) const;
    pugi::xml_node Fill() const;
    std::string Typeface() const;     // of the latin font
    double Size(double dflt) const;   // points
    bool Flag(const char* name) const;  // b, i
    long Underline() const;           // xlUnderlineStyle...
    bool Strikethrough() const;
    // The colour of a solid fill, else `dflt`.
    long Color(Theme& theme, long dflt) const;
};

// The Font of a text over its runs: reading answers the value the runs share (Null where they
// differ), writing goes to every run's properties. Chart texts and shape texts derive from it.
// A run's own properties (rPr) are written with their own prefix.
class RunFont : public host::Font {
public:
    host::Variant Name() override;
    void SetName(const host::Variant& v) override;
    host::Variant Size() override;
    void SetSize(const host::Variant& v) override;
    host::Variant Bold() override { return Common([](const RunFormat& f) { return host::Variant(f.Flag("b")); }); }
    void SetBold(const host::Variant& v) override { SetFlag("b", host::CBool(v)); }
    host::Variant Italic() override { return Common([](const RunFormat& f) { return host::Variant(f.Flag("i")); }); }
    void SetItalic(const host::Variant& v) override { SetFlag("i", host::CBool(v)); }
    host::Variant Underline() override;
    void SetUnderline(const host::Variant& v) override;
    host::Variant Strikethrough() override;
    void SetStrikethrough(const host::Variant& v) override;
    host::Variant Color() override;
    void SetColor(const host::Variant& v) override;
    host::Variant FontStyle() override;
    void SetFontStyle(const host::Variant& v) override;

    // What get answers for all runs, Null where they differ.
    static host::Variant Shared(std::vector<RunFormat> runs, const std::function<host::Variant(const RunFormat&)>& get);

protected:
    RunFont(Theme& theme, double defaultSize, bool complexScript)
        : theme_(theme), defaultSize_(defaultSize), complexScript_(complexScript) {}
    // Shared over the text's runs.
    virtual host::Variant Common(const std::function<host::Variant(const RunFormat&)>& get) = 0;
    // Marks the edit and applies set to the properties of every run.
    virtual void Format(const std::function<void(pugi::xml_node rPr)>& set) = 0;
    virtual long DefaultColor() { return 0; }
    // The face of runs that name none.
    virtual std::string DefaultFace() { return theme_.Face({}); }
    void SetFlag(const char* name, bool on);
    void RemoveColor();

    Theme& theme_;
    double defaultSize_;
    bool complexScript_;  // a new face goes to the complex script font too
};

}  // namespace xlsx
