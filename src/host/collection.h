#pragma once
// The automation Collection and the scripting Dictionary, with the semantics the component relies on.
#include <cstddef>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "host/error.h"
#include "host/variant.h"

namespace host {

// Ordered; 1-based; optional keys compared without regard to case. A missing key or index raises
// error 5, a duplicate key on Add error 457.
template <class T>
class Collection {
public:
    void Add(T item, const std::string& key = {}) {
        std::string k = key.empty() ? std::string{} : UCase(key);
        if (!k.empty() && index_.count(k)) Raise(err::DuplicateKey);
        items_.push_back({k, std::move(item)});
        if (!k.empty()) index_[k] = items_.size() - 1;
    }
    long Count() const { return static_cast<long>(items_.size()); }
    T& Item(long index) {
        if (index < 1 || index > Count()) Raise(err::InvalidProcedureCall);
        return items_[index - 1].second;
    }
    T& Item(const std::string& key) {
        auto it = index_.find(UCase(key));
        if (it == index_.end()) Raise(err::InvalidProcedureCall);
        return items_[it->second].second;
    }
    bool Has(const std::string& key) const { return index_.count(UCase(key)) > 0; }
    void Remove(const std::string& key) {
        auto it = index_.find(UCase(key));
        if (it == index_.end()) Raise(err::InvalidProcedureCall);
        RemoveAt(it->second);
    }
    void Remove(long index) {
        if (index < 1 || index > Count()) Raise(err::InvalidProcedureCall);
        RemoveAt(static_cast<size_t>(index - 1));
    }

    auto begin() { return Values{items_.begin()}; }
    auto end() { return Values{items_.end()}; }

private:
    using Entry = std::pair<std::string, T>;
    struct Values {
        typename std::vector<Entry>::iterator it;
        T& operator*() const { return it->second; }
        Values& operator++() { ++it; return *this; }
        bool operator!=(const Values& o) const { return it != o.it; }
    };
    void RemoveAt(size_t pos) {
        if (!items_[pos].first.empty()) index_.erase(items_[pos].first);
        items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(pos));
        for (auto& [k, i] : index_)
            if (i > pos) --i;
    }
    std::vector<Entry> items_;
    std::unordered_map<std::string, size_t> index_;
};

// Ordered by insertion; keys compared exactly. Reading a missing key through Item creates it with
// an empty value; Add of an existing key raises error 457.
template <class V = Variant, class K = std::string>
class Dictionary {
public:
    void Add(const K& key, V value) {
        if (index_.count(key)) Raise(err::DuplicateKey);
        index_[key] = items_.size();
        items_.push_back({key, std::move(value)});
    }
    V& Item(const K& key) {
        auto it = index_.find(key);
        if (it != index_.end()) return items_[it->second].second;
        index_[key] = items_.size();
        items_.push_back({key, V{}});
        return items_.back().second;
    }
    bool Exists(const K& key) const { return index_.count(key) > 0; }
    long Count() const { return static_cast<long>(items_.size()); }
    void Remove(const K& key) {
        auto it = index_.find(key);
        if (it == index_.end()) Raise(err::InvalidProcedureCall);
        size_t pos = it->second;
        index_.erase(it);
        items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(pos));
        for (auto& [k, i] : index_)
            if (i > pos) --i;
    }
    void RemoveAll() { items_.clear(); index_.clear(); }
    // Keys and items in insertion order.
    std::vector<K> Keys() const {
        std::vector<K> out;
        for (auto& e : items_) out.push_back(e.first);
        return out;
    }
    const std::vector<std::pair<K, V>>& Entries() const { return items_; }

private:
    std::vector<std::pair<K, V>> items_;
    std::unordered_map<K, size_t> index_;
};

}  // namespace host
