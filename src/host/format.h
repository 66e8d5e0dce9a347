#pragma once
// Formatting objects shared by cells, shapes and charts: Font, Interior, Border. Values are
// Variants because a text with mixed formats reports Null.
#include "host/fwd.h"
#include "host/variant.h"

namespace host {

class Font {
public:
    virtual ~Font() = default;
    virtual Variant Name() = 0;
    virtual void SetName(const Variant& v) = 0;
    virtual Variant Size() = 0;
    virtual void SetSize(const Variant& v) = 0;
    virtual Variant Bold() = 0;
    virtual void SetBold(const Variant& v) = 0;
    virtual Variant Italic() = 0;
    virtual void SetItalic(const Variant& v) = 0;
    virtual Variant Underline() = 0;  // xlUnderlineStyle...
    virtual void SetUnderline(const Variant& v) = 0;
    virtual Variant Strikethrough() = 0;
    virtual void SetStrikethrough(const Variant& v) = 0;
    virtual Variant Color() = 0;  // RGB long
    virtual void SetColor(const Variant& v) = 0;
    virtual Variant ColorIndex() = 0;
    virtual void SetColorIndex(const Variant& v) = 0;
    virtual Variant FontStyle() = 0;  // "Regular", "Bold", "Italic", "Bold Italic"
    virtual void SetFontStyle(const Variant& v) = 0;
    virtual Variant Background() = 0;
    virtual void SetBackground(const Variant& v) = 0;
};

class Interior {
public:
    virtual ~Interior() = default;
    virtual Variant Color() = 0;
    virtual void SetColor(const Variant& v) = 0;
    virtual Variant ColorIndex() = 0;  // xlColorIndexNone, xlColorIndexAutomatic or 1..56
    virtual void SetColorIndex(const Variant& v) = 0;
    virtual Variant Pattern() = 0;
    virtual void SetPattern(const Variant& v) = 0;
    virtual Variant PatternColor() = 0;
    virtual void SetPatternColor(const Variant& v) = 0;
    virtual Variant PatternColorIndex() = 0;
    virtual void SetPatternColorIndex(const Variant& v) = 0;
};

class Border {
public:
    virtual ~Border() = default;
    virtual Variant LineStyle() = 0;
    virtual void SetLineStyle(const Variant& v) = 0;
    virtual Variant Weight() = 0;
    virtual void SetWeight(const Variant& v) = 0;
    virtual Variant Color() = 0;
    virtual void SetColor(const Variant& v) = 0;
    virtual Variant ColorIndex() = 0;
    virtual void SetColorIndex(const Variant& v) = 0;
};

}  // namespace host
