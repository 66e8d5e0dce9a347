// The shared string table. New texts are appended; rich-text items are read as plain text and
// never reused for a plain value, so their runs stay as they were.
#include <cstdio>
#include <string>

#include "xlsx/book.h"

namespace xlsx {

SharedStrings::SharedStrings(Package& pkg, std::string part) : pkg_(pkg), part_(std::move(part)) {}

namespace {
bool IsHex(char c) { return std::isxdigit(static_cast<unsigned char>(c)) != 0; }

// "_xHHHH_" at i, as the application escapes characters XML can't carry.
bool EscapeAt(std::string_view s, size_t i) {
    return i + 7 <= s.size() && s[i] == '_' && s[i + 1] == 'x' && IsHex(s[i + 2]) && IsHex(s[i + 3]) &&
           IsHex(s[i + 4]) && IsHex(s[i + 5]) && s[i + 6] == '_';
}

std::string ItemText(pugi::xml_node si) {
    if (auto t = si.child("t")) return DecodeCellText(t.text().get());
    std::string out;
    for (auto r : si.children("r")) out += r.child("t").text().get();
    return DecodeCellText(out);
}
}  // namespace

std::string EncodeCellText(std::string_view text) {
    std::string out;
    for (size_t i = 0; i < text.size(); ++i) {
        unsigned char c = static_cast<unsigned char>(text[i]);
        if ((c < 0x20 && c != '\t' && c != '\n') || EscapeAt(text, i)) {
            // A literal "_x" that would read as an escape has its underscore escaped.
            char buf[8];
            std::snprintf(buf, sizeof buf, "_x%04X_", c);
            out += buf;
        } else {
            out += static_cast<char>(c);
        }
    }
    return out;
}

std::string DecodeCellText(std::string_view text) {
    if (text.find("_x") == std::string_view::npos) return std::string(text);
    std::string out;
    for (size_t i = 0; i < text.size(); ++i) {
        if (EscapeAt(text, i)) {
            unsigned cp = static_cast<unsigned>(std::stoul(std::string(text.substr(i + 2, 4)), nullptr, 16));
            if (cp < 0x80) {
                out += static_cast<char>(cp);
            } else if (cp < 0x800) {
                out += static_cast<char>(0xC0 | (cp >> 6));
                out += static_cast<char>(0x80 | (cp & 0x3F));
            } else {
                out += static_cast<char>(0xE0 | (cp >> 12));
                out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
                out += static_cast<char>(0x80 | (cp & 0x3F));
            }
            i += 6;
        } else {
            out += text[i];
        }
    }
    return out;
}

void SharedStrings::Load() {
    if (loaded_) return;
    loaded_ = true;
    auto root = pkg_.Read(part_).document_element();
    for (auto si : root.children("si")) {
        texts_.push_back(ItemText(si));
        if (si.child("t") && !si.child("r") && !plain_.count(texts_.back()))
            plain_[texts_.back()] = texts_.size() - 1;
    }
}

const std::string& SharedStrings::Text(size_t index) {
    Load();
    static const std::string empty;
    return index < texts_.size() ? texts_[index] : empty;
}

size_t SharedStrings::Count() {
    if (loaded_) return texts_.size();
    // Counting needs no texts: opening a workbook asks before any cell is read.
    size_t n = 0;
    for (auto si = pkg_.Read(part_).document_element().child("si"); si; si = si.next_sibling("si")) ++n;
    return n;
}

size_t SharedStrings::Add(const std::string& text) {
    Load();
    if (auto it = plain_.find(text); it != plain_.end()) return it->second;
    auto si = pkg_.Edit(part_).document_element().append_child("si");
    auto t = si.append_child("t");
    if (!text.empty() && (text.front() == ' ' || text.back() == ' ' || text.find('\n') != std::string::npos ||
                          text.front() == '\t' || text.back() == '\t'))
        t.append_attribute("xml:space").set_value("preserve");
    t.text().set(EncodeCellText(text).c_str());
    texts_.push_back(text);
    plain_[text] = texts_.size() - 1;
    added_ = true;
    return texts_.size() - 1;
}

void SharedStrings::Flush() {
    if (!added_) return;
    auto root = pkg_.Edit(part_).document_element();
    // count is the number of references; cells are not counted here, so it is at least the items.
    auto count = root.attribute("count");
    if (count && count.as_ullong() < texts_.size()) count.set_value(static_cast<unsigned long long>(texts_.size()));
    auto unique = root.attribute("uniqueCount");
    if (!unique) unique = root.append_attribute("uniqueCount");
    unique.set_value(static_cast<unsigned long long>(texts_.size()));
    added_ = false;
}

}  // namespace xlsx
