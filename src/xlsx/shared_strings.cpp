// The shared string table. New texts are appended; rich-text items are read as plain text and
// never reused for a plain value, so their runs stay as they were.
#include "xlsx/book.h"

namespace xlsx {

SharedStrings::SharedStrings(Package& pkg, std::string part) : pkg_(pkg), part_(std::move(part)) {}

namespace {
std::string ItemText(pugi::xml_node si) {
    if (auto t = si.child("t")) return t.text().get();
    std::string out;
    for (auto r : si.children("r")) out += r.child("t").text().get();
    return out;
}
}  // namespace

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

size_t SharedStrings::Add(const std::string& text) {
    Load();
    if (auto it = plain_.find(text); it != plain_.end()) return it->second;
    auto si = pkg_.Edit(part_).document_element().append_child("si");
    auto t = si.append_child("t");
    if (!text.empty() && (text.front() == ' ' || text.back() == ' ' || text.find('\n') != std::string::npos ||
                          text.front() == '\t' || text.back() == '\t'))
        t.append_attribute("xml:space").set_value("preserve");
    t.text().set(text.c_str());
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
