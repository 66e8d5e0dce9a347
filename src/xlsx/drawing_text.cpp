// The text of drawing shapes (xdr:txBody): character ranges with their fonts, the text frame's
// body properties, and the Office drawing layer's TextFrame2 over the same text.
#include <algorithm>
#include <cmath>
#include <functional>
#include <map>

#include "host/chart_constants.h"
#include "host/constants.h"
#include "host/error.h"
#include "xlsx/book.h"
#include "xlsx/drawing.h"
#include "xlsx/drawingml.h"

namespace xlsx {

namespace {

using host::Ref;
using host::Variant;

// Values of the application's text overflow and reading order enumerations.
constexpr long kOverflowOverflow = 0, kOverflowClip = 1, kOverflowEllipsis = 2;
constexpr long kContext = -5002, kLTR = -5003, kRTL = -5004;

std::vector<std::string> CodePoints(std::string_view s) {
    std::vector<std::string> out;
    for (size_t i = 0; i < s.size();) {
        unsigned char c = s[i];
        size_t n = c < 0x80 ? 1 : (c >> 5) == 6 ? 2 : (c >> 4) == 14 ? 3 : (c >> 3) == 30 ? 4 : 1;
        out.emplace_back(s.substr(i, n));
        i += n;
    }
    return out;
}

// ---------------------------------------------------------------- the text model

// The text of a body as characters (code points), each with its run format; paragraphs are
// separated by "\n" and a line break inside one is "\v", as the application shows them. Formats
// and paragraph properties are copies kept in a scratch document; writing rebuilds the paragraphs.
class TextModel {
public:
    struct Ch {
        std::string cp;
        int fmt;  // index into fmts, -1 for none (and for paragraph ends)
    };
    struct Para {
        pugi::xml_node pPr, end;  // copies; end is endParaRPr
    };

    void Load(pugi::xml_node body) {
        for (auto p : body.children()) {
            if (LocalName(p.name()) != "p") continue;
            if (!paras.empty()) chars.push_back({"\n", -1});
            Para para;
            for (auto c : p.children()) {
                auto l = LocalName(c.name());
                if (l == "pPr") para.pPr = scratch.append_copy(c);
                else if (l == "endParaRPr") para.end = scratch.append_copy(c);
                else if (l == "r" || l == "fld" || l == "br") {
                    int fmt = -1;
                    if (auto rPr = Kid(c, "rPr")) {
                        fmts.push_back(scratch.append_copy(rPr));
                        fmt = static_cast<int>(fmts.size()) - 1;
                    }
                    if (l == "br") chars.push_back({"\v", fmt});
                    else
                        for (auto& cp : CodePoints(Kid(c, "t").text().get())) chars.push_back({cp, fmt});
                }
            }
            paras.push_back(para);
        }
        if (paras.empty()) paras.push_back({});
    }

    void Store(pugi::xml_node body, const std::string& a) {
        for (auto c = body.first_child(); c;) {
            auto next = c.next_sibling();
            if (LocalName(c.name()) == "p") body.remove_child(c);
            c = next;
        }
        size_t i = 0;
        for (auto& para : paras) {
            auto p = body.append_child((a + "p").c_str());
            if (para.pPr) p.append_copy(para.pPr);
            while (i < chars.size() && chars[i].cp != "\n") {
                int fmt = chars[i].fmt;
                if (chars[i].cp == "\v") {
                    auto br = p.append_child((a + "br").c_str());
                    if (fmt >= 0) br.append_copy(fmts[fmt]).set_name((a + "rPr").c_str());
                    ++i;
                    continue;
                }
                std::string text;
                while (i < chars.size() && chars[i].fmt == fmt && chars[i].cp != "\n" && chars[i].cp != "\v") text += chars[i++].cp;
                auto r = p.append_child((a + "r").c_str());
                if (fmt >= 0) r.append_copy(fmts[fmt]).set_name((a + "rPr").c_str());
                r.append_child((a + "t").c_str()).text().set(text.c_str());
            }
            if (i < chars.size()) ++i;  // the paragraph's end
            if (para.end) p.append_copy(para.end);
        }
    }

    long Size() const { return static_cast<long>(chars.size()); }
    size_t ParaAt(long pos) const {
        return static_cast<size_t>(std::count_if(chars.begin(), chars.begin() + pos, [](const Ch& c) { return c.cp == "\n"; }));
    }

    // The format new text at [s, e) takes: the first replaced character's, else the one before,
    // else the paragraph's end format.
    int FormatFor(long s, long e) {
        if (s < e && chars[s].fmt >= 0) return chars[s].fmt;
        if (s > 0 && chars[s - 1].cp != "\n" && chars[s - 1].fmt >= 0) return chars[s - 1].fmt;
        auto& para = paras[ParaAt(s)];
        if (para.end) {
            auto copy = scratch.append_copy(para.end);
            fmts.push_back(copy);
            return static_cast<int>(fmts.size()) - 1;
        }
        return -1;
    }

    void Replace(long s, long e, const std::string& text) {
        int fmt = FormatFor(s, e);
        size_t k = ParaAt(s);
        long gone = static_cast<long>(std::count_if(chars.begin() + s, chars.begin() + e, [](const Ch& c) { return c.cp == "\n"; }));
        paras.erase(paras.begin() + k + 1, paras.begin() + k + 1 + gone);
        chars.erase(chars.begin() + s, chars.begin() + e);
        std::vector<Ch> add;
        for (auto& cp : CodePoints(LineFeeds(text))) {
            if (cp == "\n") {
                paras.insert(paras.begin() + k + 1, paras[k]);
                add.push_back({cp, -1});
            } else {
                add.push_back({cp, fmt});
            }
        }
        chars.insert(chars.begin() + s, add.begin(), add.end());
    }

    pugi::xml_document scratch;
    std::vector<pugi::xml_node> fmts;
    std::vector<Para> paras;
    std::vector<Ch> chars;
};

// ---------------------------------------------------------------- a range of the text

// One run of characters of a shape's text: start 0-based, length -1 for "to the end".
struct TextSpan {
    TextHost host;
    long start = 0, length = -1;

    Book& book() { return host.drawing().book(); }

    // Reads the model; f gets it with the span's bounds clamped.
    template <class F>
    auto Read(F f) {
        TextModel m;
        m.Load(host.Body(false));
        long s = std::min(start, m.Size());
        long e = length < 0 ? m.Size() : std::min(m.Size(), s + length);
        return f(m, s, e);
    }
    template <class F>
    void Write(F f) {
        auto body = host.Body(true);
        host.drawing().Root(true);
        TextModel m;
        m.Load(body);
        long s = std::min(start, m.Size());
        long e = length < 0 ? m.Size() : std::min(m.Size(), s + length);
        f(m, s, e);
        m.Store(body, host.drawing().a);
    }

    std::string Text() {
        return Read([](TextModel& m, long s, long e) {
            std::string out;
            for (long i = s; i < e; ++i) out += m.chars[i].cp;
            return out;
        });
    }
    long Count() {
        return Read([](TextModel&, long s, long e) { return e - s; });
    }
    void Replace(const std::string& text) {
        Write([&](TextModel& m, long s, long e) { m.Replace(s, e, text); });
    }

    // Format values of the span's characters; an empty span reads the format new text would take.
    std::vector<pugi::xml_node> Formats(TextModel& m, long s, long e) {
        std::vector<pugi::xml_node> out;
        for (long i = s; i < e; ++i)
            if (m.chars[i].cp != "\n") out.push_back(m.chars[i].fmt >= 0 ? m.fmts[m.chars[i].fmt] : pugi::xml_node{});
        if (out.empty()) {
            int f = m.FormatFor(s, s);
            out.push_back(f >= 0 ? m.fmts[f] : pugi::xml_node{});
        }
        return out;
    }
    // The common value of a format property over the span; Null when it differs.
    Variant Common(const std::function<Variant(const RunFormat&)>& get) {
        return Read([&](TextModel& m, long s, long e) {
            std::vector<RunFormat> runs;
            for (auto f : Formats(m, s, e)) runs.push_back({f, {}});
            return RunFont::Shared(std::move(runs), get);
        });
    }
    // Changes the format of every character of the span, and the paragraph ends it covers.
    void Format(const std::function<void(pugi::xml_node rPr)>& set) {
        Write([&](TextModel& m, long s, long e) {
            std::map<int, int> made;
            std::string a = host.drawing().a;
            for (long i = s; i < e; ++i) {
                auto& c = m.chars[i];
                if (c.cp == "\n") continue;
                auto it = made.find(c.fmt);
                if (it == made.end()) {
                    auto copy = c.fmt >= 0 ? m.scratch.append_copy(m.fmts[c.fmt]) : m.scratch.append_child((a + "rPr").c_str());
                    if (c.fmt < 0) copy.append_attribute("lang").set_value("en-US");
                    set(copy);
                    m.fmts.push_back(copy);
                    it = made.emplace(c.fmt, static_cast<int>(m.fmts.size()) - 1).first;
                }
                c.fmt = it->second;
            }
            size_t p0 = m.ParaAt(s), p1 = m.ParaAt(e);
            for (size_t p = p0; p <= p1 && p < m.paras.size(); ++p) {
                bool ends = p < p1 || e == m.Size();
                bool starts = p > p0 || s == 0 || m.chars[s - 1].cp == "\n";
                if (!(ends && starts)) continue;
                auto& end = m.paras[p].end;
                if (!end) {
                    end = m.scratch.append_child((a + "endParaRPr").c_str());
                    end.append_attribute("lang").set_value("en-US");
                }
                set(end);
            }
        });
    }
};

// ---------------------------------------------------------------- Font over a span

// The font of a span: the shape style's font colour where a run has none, 11 points where it says
// no size; a new face goes to the complex script font too.
class SpanFont : public RunFont {
public:
    explicit SpanFont(TextSpan span) : RunFont(span.book().theme(), 11, true), s_(std::move(span)) {}

    Variant ColorIndex() override { NotAvailable("Font.ColorIndex of shape text"); }
    void SetColorIndex(const Variant& v) override {
        long i = host::CLng(v);
        if (i == host::xlColorIndexAutomatic) return RemoveColor();
        if (i < 1 || i > 56) Refuse("Unable to set the ColorIndex property of the Font class");
        SetColor(s_.book().Colors(i));
    }
    Variant Background() override { NotAvailable("Font.Background of shape text"); }
    void SetBackground(const Variant&) override { NotAvailable("Font.Background of shape text"); }

protected:
    Variant Common(const std::function<Variant(const RunFormat&)>& get) override { return s_.Common(get); }
    void Format(const std::function<void(pugi::xml_node)>& set) override { s_.Format(set); }
    long DefaultColor() override {
        return ColorRgb(theme_, ColorIn(Kid(Kid(s_.host.s.el, "style"), "fontRef")), 0);
    }

private:
    TextSpan s_;
};

class CharactersImpl : public host::Characters {
public:
    explicit CharactersImpl(TextSpan span) : s_(std::move(span)) {}
    std::string Text() override { return s_.Text(); }
    void SetText(const std::string& v) override { s_.Replace(v); }
    std::string Caption() override { return s_.Text(); }
    void SetCaption(const std::string& v) override { s_.Replace(v); }
    long Count() override { return s_.Count(); }
    Ref<host::Font> Font() override { return std::make_shared<SpanFont>(s_); }
    void Insert(const std::string& text) override { s_.Replace(text); }
    void Delete() override { s_.Replace(""); }

private:
    TextSpan s_;
};

// ---------------------------------------------------------------- body properties

struct BodyProps {
    TextHost host;
    pugi::xml_node Read() { return Kid(host.Body(false), "bodyPr"); }
    pugi::xml_node Edit() {
        auto body = host.Body(true);
        host.drawing().Root(true);
        auto pr = Kid(body, "bodyPr");
        if (!pr) pr = body.prepend_child((host.drawing().a + "bodyPr").c_str());
        return pr;
    }
    void Set(const char* name, const std::string& v) { SetAttr(Edit(), name, v); }
    double Margin(const char* name, double dflt) {
        auto a = Read().attribute(name);
        return a ? a.as_llong() / kEmuPerPoint : dflt;
    }
    void SetMargin(const char* name, double v) {
        if (v < 0) Refuse("The specified value is out of range.");
        Set(name, std::to_string(std::llround(v * kEmuPerPoint)));
    }
    // spAutoFit, normAutofit or noAutofit: one of them, after prstTxWarp.
    std::string AutoFit() {
        for (auto c : Read().children()) {
            auto l = LocalName(c.name());
            if (l == "spAutoFit" || l == "normAutofit" || l == "noAutofit") return std::string(l);
        }
        return {};
    }
    void SetAutoFit(const char* kind) {
        auto pr = Edit();
        for (auto c = pr.first_child(); c;) {
            auto next = c.next_sibling();
            auto l = LocalName(c.name());
            if (l == "spAutoFit" || l == "normAutofit" || l == "noAutofit") pr.remove_child(c);
            c = next;
        }
        if (!kind) return;
        std::string name = ElementPrefix(pr) + kind;
        if (auto warp = Kid(pr, "prstTxWarp")) pr.insert_child_after(name.c_str(), warp);
        else pr.prepend_child(name.c_str());
    }
    // The first paragraph's properties, as the frame reports them; writing goes to every paragraph.
    pugi::xml_node FirstPPr() { return Kid(Kid(host.Body(false), "p"), "pPr"); }
    void SetParagraphs(const char* name, const std::string& v) {
        auto body = host.Body(true);
        host.drawing().Root(true);
        for (auto p : body.children()) {
            if (LocalName(p.name()) != "p") continue;
            auto pPr = Kid(p, "pPr");
            if (!pPr) pPr = p.prepend_child((ElementPrefix(p) + "pPr").c_str());
            SetAttr(pPr, name, v);
        }
    }
    long Orientation() {
        std::string_view v = Read().attribute("vert").value();
        if (v == "vert") return host::msoTextOrientationDownward;
        if (v == "vert270") return host::msoTextOrientationUpward;
        if (v == "eaVert" || v == "mongolianVert") return host::msoTextOrientationVerticalFarEast;
        if (v == "wordArtVert" || v == "wordArtVertRtl") return host::msoTextOrientationVertical;
        return host::msoTextOrientationHorizontal;
    }
    void SetOrientation(long o) {
        static const std::map<long, const char*> kVert = {
            {host::msoTextOrientationHorizontal, "horz"},        {host::msoTextOrientationUpward, "vert270"},
            {host::msoTextOrientationDownward, "vert"},          {host::msoTextOrientationVerticalFarEast, "eaVert"},
            {host::msoTextOrientationVertical, "wordArtVert"}};
        auto it = kVert.find(o);
        if (it == kVert.end()) Refuse("The specified value is out of range.");
        Set("vert", it->second);
    }
};

class TextFrameImpl : public host::TextFrame {
public:
    explicit TextFrameImpl(TextHost host) : host_(host), b_{host} {}

    Ref<host::Characters> Characters(const Variant& start, const Variant& length) override {
        long s = start.IsEmpty() ? 1 : host::CLng(start);
        long n = length.IsEmpty() ? -1 : host::CLng(length);
        if (s < 1 || (!length.IsEmpty() && n < 0)) Refuse("Unable to get the Characters property of the TextFrame class");
        return std::make_shared<CharactersImpl>(TextSpan{host_, s - 1, n});
    }
    bool AutoSize() override { return b_.AutoFit() == "spAutoFit"; }
    void SetAutoSize(bool v) override { b_.SetAutoFit(v ? "spAutoFit" : nullptr); }
    long HorizontalAlignment() override {
        return AlignmentOf(b_.FirstPPr().attribute("algn").value(), false, host::xlHAlignLeft);
    }
    void SetHorizontalAlignment(long v) override {
        const char* a = AlignmentName(v, false);
        if (!a) Refuse("Unable to set the HorizontalAlignment property of the TextFrame class");
        b_.SetParagraphs("algn", a);
    }
    long VerticalAlignment() override { return AlignmentOf(b_.Read().attribute("anchor").value(), true, host::xlVAlignTop); }
    void SetVerticalAlignment(long v) override {
        const char* a = AlignmentName(v, true);
        if (!a) Refuse("Unable to set the VerticalAlignment property of the TextFrame class");
        b_.Set("anchor", a);
    }
    long Orientation() override { return b_.Orientation(); }
    void SetOrientation(long v) override { b_.SetOrientation(v); }
    long ReadingOrder() override {
        auto a = b_.FirstPPr().attribute("rtl");
        return !a ? kContext : a.as_bool() ? kRTL : kLTR;
    }
    void SetReadingOrder(long v) override {
        if (v == kContext) NotAvailable("TextFrame.ReadingOrder = xlContext");
        if (v != kLTR && v != kRTL) Refuse("Unable to set the ReadingOrder property of the TextFrame class");
        b_.SetParagraphs("rtl", v == kRTL ? "1" : "0");
    }
    long HorizontalOverflow() override {
        return std::string_view(b_.Read().attribute("horzOverflow").value()) == "clip" ? kOverflowClip : kOverflowOverflow;
    }
    void SetHorizontalOverflow(long v) override {
        if (v != kOverflowClip && v != kOverflowOverflow) Refuse("The specified value is out of range.");
        b_.Set("horzOverflow", v == kOverflowClip ? "clip" : "overflow");
    }
    long VerticalOverflow() override {
        std::string_view v = b_.Read().attribute("vertOverflow").value();
        return v == "clip" ? kOverflowClip : v == "ellipsis" ? kOverflowEllipsis : kOverflowOverflow;
    }
    void SetVerticalOverflow(long v) override {
        const char* a = v == kOverflowClip ? "clip" : v == kOverflowEllipsis ? "ellipsis" : v == kOverflowOverflow ? "overflow" : nullptr;
        if (!a) Refuse("The specified value is out of range.");
        b_.Set("vertOverflow", a);
    }
    double MarginLeft() override { return b_.Margin("lIns", 7.2); }
    void SetMarginLeft(double v) override { b_.SetMargin("lIns", v); }
    double MarginRight() override { return b_.Margin("rIns", 7.2); }
    void SetMarginRight(double v) override { b_.SetMargin("rIns", v); }
    double MarginTop() override { return b_.Margin("tIns", 3.6); }
    void SetMarginTop(double v) override { b_.SetMargin("tIns", v); }
    double MarginBottom() override { return b_.Margin("bIns", 3.6); }
    void SetMarginBottom(double v) override { b_.SetMargin("bIns", v); }
    // Automatic margins leave the insets unwritten.
    bool AutoMargins() override {
        auto pr = b_.Read();
        return !pr.attribute("lIns") && !pr.attribute("rIns") && !pr.attribute("tIns") && !pr.attribute("bIns");
    }
    void SetAutoMargins(bool v) override {
        if (v) {
            auto pr = b_.Edit();
            for (const char* n : {"lIns", "rIns", "tIns", "bIns"}) pr.remove_attribute(n);
            return;
        }
        double l = MarginLeft(), r = MarginRight(), t = MarginTop(), bo = MarginBottom();
        SetMarginLeft(l);
        SetMarginRight(r);
        SetMarginTop(t);
        SetMarginBottom(bo);
    }

private:
    TextHost host_;
    BodyProps b_;
};

// ---------------------------------------------------------------- TextFrame2

class TextColor : public host::ColorFormat {
public:
    explicit TextColor(TextSpan s) : s_(std::move(s)) {}
    long RGB() override {
        auto v = SpanFont(s_).Color();
        return v.IsNull() ? 0 : host::CLng(v);
    }
    void SetRGB(long rgb) override {
        if (rgb < 0 || rgb > 0xFFFFFF) Refuse("The specified value is out of range.");
        s_.Format([&](pugi::xml_node rPr) { PutSolid(rPr, rgb, ElementPrefix(rPr)); });
    }
    long SchemeColor() override { NotAvailable("ColorFormat.SchemeColor of text"); }
    void SetSchemeColor(long) override { NotAvailable("ColorFormat.SchemeColor of text"); }
    long ObjectThemeColor() override { NotAvailable("ColorFormat.ObjectThemeColor of text"); }
    void SetObjectThemeColor(long) override { NotAvailable("ColorFormat.ObjectThemeColor of text"); }
    double TintAndShade() override { NotAvailable("ColorFormat.TintAndShade of text"); }
    void SetTintAndShade(double) override { NotAvailable("ColorFormat.TintAndShade of text"); }
    double Brightness() override { NotAvailable("ColorFormat.Brightness of text"); }
    void SetBrightness(double) override { NotAvailable("ColorFormat.Brightness of text"); }
    long Type() override { return host::msoColorTypeRGB; }

private:
    TextSpan s_;
};

class TextFill : public PlainFill {
public:
    explicit TextFill(TextSpan s) : PlainFill("of text"), s_(std::move(s)) {}
    Ref<host::ColorFormat> ForeColor() override { return std::make_shared<TextColor>(s_); }
    Ref<host::ColorFormat> BackColor() override { NotAvailable("FillFormat.BackColor of text"); }
    long Visible() override {
        auto v = s_.Common([](const RunFormat& f) { return Variant(!Kid(f.own, "noFill")); });
        return v.IsNull() ? host::msoTriStateMixed : v.RawBool() ? host::msoTrue : host::msoFalse;
    }
    void SetVisible(long v) override {
        if (v != host::msoFalse) {
            s_.Format([](pugi::xml_node rPr) {
                if (auto n = Kid(rPr, "noFill")) rPr.remove_child(n);
            });
            return;
        }
        s_.Format([](pugi::xml_node rPr) { PutFill(rPr, "noFill", ElementPrefix(rPr)); });
    }
    double Transparency() override { NotAvailable("FillFormat.Transparency of text"); }
    void SetTransparency(double) override { NotAvailable("FillFormat.Transparency of text"); }
    long Type() override { return host::msoFillSolid; }
    void Solid() override { SetVisible(host::msoTrue); }

private:
    TextSpan s_;
};

long TriOf(const Variant& v) {
    if (v.IsNull()) return host::msoTriStateMixed;
    return host::CBool(v) ? host::msoTrue : host::msoFalse;
}

class SpanFont2 : public host::Font2 {
public:
    explicit SpanFont2(TextSpan s) : s_(std::move(s)), f_(s_) {}
    std::string Name() override {
        auto v = f_.Name();
        return v.IsNull() ? "" : host::CStr(v);
    }
    void SetName(const std::string& v) override { f_.SetName(v); }
    double Size() override {
        auto v = f_.Size();
        return v.IsNull() ? host::msoTriStateMixed : host::CDbl(v);
    }
    void SetSize(double v) override { f_.SetSize(v); }
    long Bold() override { return TriOf(f_.Bold()); }
    void SetBold(long v) override { f_.SetBold(v != host::msoFalse); }
    long Italic() override { return TriOf(f_.Italic()); }
    void SetItalic(long v) override { f_.SetItalic(v != host::msoFalse); }
    // MsoTextUnderlineType: none 0, single 1 (msoUnderlineSingleLine), double 3.
    long UnderlineStyle() override {
        auto v = f_.Underline();
        if (v.IsNull()) return host::msoTriStateMixed;
        long u = host::CLng(v);
        return u == host::xlUnderlineStyleNone ? 0 : u == host::xlUnderlineStyleDouble ? 3 : 1;
    }
    void SetUnderlineStyle(long v) override {
        if (v != 0 && v != 1 && v != 3) NotAvailable("Font2.UnderlineStyle of this kind");
        f_.SetUnderline(v == 0 ? host::xlUnderlineStyleNone : v == 3 ? host::xlUnderlineStyleDouble : host::xlUnderlineStyleSingle);
    }
    Ref<host::FillFormat> Fill() override { return std::make_shared<TextFill>(s_); }

private:
    TextSpan s_;
    SpanFont f_;
};

class TextRange2Impl : public host::TextRange2, public std::enable_shared_from_this<TextRange2Impl> {
public:
    explicit TextRange2Impl(TextSpan s) : s_(std::move(s)) {}
    std::string Text() override { return s_.Text(); }
    void SetText(const std::string& v) override { s_.Replace(v); }
    long Start() override {
        return s_.Read([](TextModel&, long s, long) { return s + 1; });
    }
    long Length() override { return s_.Count(); }
    long Count() override { return s_.Count(); }
    Ref<host::Font2> Font() override { return std::make_shared<SpanFont2>(s_); }
    Ref<host::TextRange2> Characters(const Variant& start, const Variant& length) override {
        long s = start.IsEmpty() ? 1 : host::CLng(start);
        long n = length.IsEmpty() ? -1 : host::CLng(length);
        if (s < 1) Refuse("The specified value is out of range.");
        long base = Start() - 1, count = Count();
        long from = std::min(base + s - 1, base + count);
        long len = n < 0 ? base + count - from : std::min(n, base + count - from);
        return std::make_shared<TextRange2Impl>(TextSpan{s_.host, from, len});
    }
    Ref<host::TextRange2> Paragraphs(const Variant&, const Variant&) override { NotAvailable("TextRange2.Paragraphs"); }
    Ref<host::TextRange2> InsertAfter(const std::string& text) override {
        long end = Start() - 1 + Count();
        TextSpan at{s_.host, end, 0};
        at.Replace(text);
        return std::make_shared<TextRange2Impl>(TextSpan{s_.host, end, host::Len(text)});
    }
    Ref<host::TextRange2> InsertBefore(const std::string& text) override {
        long begin = Start() - 1;
        TextSpan at{s_.host, begin, 0};
        at.Replace(text);
        return std::make_shared<TextRange2Impl>(TextSpan{s_.host, begin, host::Len(text)});
    }
    void Delete() override { s_.Replace(""); }

private:
    TextSpan s_;
};

class TextFrame2Impl : public host::TextFrame2 {
public:
    explicit TextFrame2Impl(TextHost host) : host_(host), b_{host}, f_(host) {}
    Ref<host::TextRange2> TextRange() override { return std::make_shared<TextRange2Impl>(TextSpan{host_, 0, -1}); }
    long HasText() override { return TextSpan{host_, 0, -1}.Count() > 0 ? host::msoTrue : host::msoFalse; }
    long WordWrap() override {
        return std::string_view(b_.Read().attribute("wrap").value()) == "none" ? host::msoFalse : host::msoTrue;
    }
    void SetWordWrap(long v) override { b_.Set("wrap", v != host::msoFalse ? "square" : "none"); }
    long AutoSize() override {
        auto k = b_.AutoFit();
        if (k == "spAutoFit") return host::msoAutoSizeShapeToFitText;
        if (k == "normAutofit") return host::msoAutoSizeTextToFitShape;
        return host::msoAutoSizeNone;
    }
    void SetAutoSize(long v) override {
        if (v == host::msoAutoSizeShapeToFitText) b_.SetAutoFit("spAutoFit");
        else if (v == host::msoAutoSizeTextToFitShape) b_.SetAutoFit("normAutofit");
        else if (v == host::msoAutoSizeNone) b_.SetAutoFit(nullptr);
        else Refuse("The specified value is out of range.");
    }
    long Orientation() override { return b_.Orientation(); }
    void SetOrientation(long v) override { b_.SetOrientation(v); }
    long VerticalAnchor() override {
        std::string_view v = b_.Read().attribute("anchor").value();
        if (v == "ctr") return host::msoAnchorMiddle;
        if (v == "b") return host::msoAnchorBottom;
        return host::msoAnchorTop;
    }
    void SetVerticalAnchor(long v) override {
        const char* a = v == host::msoAnchorTop ? "t" : v == host::msoAnchorMiddle ? "ctr" : v == host::msoAnchorBottom ? "b" : nullptr;
        if (!a) NotAvailable("TextFrame2.VerticalAnchor of this kind");
        b_.Set("anchor", a);
    }
    long HorizontalAnchor() override {
        return b_.Read().attribute("anchorCtr").as_bool() ? host::msoAnchorCenter : host::msoAnchorNone;
    }
    void SetHorizontalAnchor(long v) override {
        if (v != host::msoAnchorCenter && v != host::msoAnchorNone) Refuse("The specified value is out of range.");
        b_.Set("anchorCtr", v == host::msoAnchorCenter ? "1" : "0");
    }
    double MarginLeft() override { return f_.MarginLeft(); }
    void SetMarginLeft(double v) override { f_.SetMarginLeft(v); }
    double MarginRight() override { return f_.MarginRight(); }
    void SetMarginRight(double v) override { f_.SetMarginRight(v); }
    double MarginTop() override { return f_.MarginTop(); }
    void SetMarginTop(double v) override { f_.SetMarginTop(v); }
    double MarginBottom() override { return f_.MarginBottom(); }
    void SetMarginBottom(double v) override { f_.SetMarginBottom(v); }
    void DeleteText() override { TextSpan{host_, 0, -1}.Replace(""); }

private:
    TextHost host_;
    BodyProps b_;
    TextFrameImpl f_;
};

}  // namespace

std::shared_ptr<host::TextFrame> MakeTextFrame(TextHost host) { return std::make_shared<TextFrameImpl>(host); }
std::shared_ptr<host::TextFrame2> MakeTextFrame2(TextHost host) { return std::make_shared<TextFrame2Impl>(host); }

}  // namespace xlsx
