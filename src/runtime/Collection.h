#pragma once

#include "runtime/Errors.h"

#include <list>
#include <unordered_map>

namespace zv {

/// An ordered list whose elements may have a text key, matched without regard to case. Positions count
/// from 1. An unknown key fails with 5, a taken one with 457, a position outside with 9.
template <class T>
class Collection {
    struct Entry {
        T item;
        String key;
    };
    using Entries = std::list<Entry>;

public:
    Collection() = default;
    Collection(const Collection&) = delete; // byKey_ holds iterators into the list
    Collection& operator=(const Collection&) = delete;

    void Add(T item, StringView key = {})
    {
        if (!key.empty() && byKey_.contains(key))
            fail(failure::keyTaken, key);
        entries_.push_back({std::move(item), String(key)});
        if (!key.empty())
            byKey_.emplace(key, std::prev(entries_.end()));
    }
    T& Item(StringView key) { return lookup(key)->second->item; }
    T& Item(std::size_t position) { return entryAt(position)->item; }
    void Remove(StringView key)
    {
        // Key first: the item's destructor may be re-entrant and must not find it any more.
        const auto found = lookup(key);
        const auto entry = found->second;
        byKey_.erase(found);
        entries_.erase(entry);
    }
    void Remove(std::size_t position)
    {
        const auto entry = entryAt(position);
        byKey_.erase(entry->key);
        entries_.erase(entry);
    }
    std::size_t Count() const { return entries_.size(); }

    /// In insertion order.
    class Iterator {
    public:
        explicit Iterator(typename Entries::iterator at) : at_(at) {}
        T& operator*() const { return at_->item; }
        Iterator& operator++()
        {
            ++at_;
            return *this;
        }
        bool operator==(const Iterator&) const = default;

    private:
        typename Entries::iterator at_;
    };
    Iterator begin() { return Iterator(entries_.begin()); }
    Iterator end() { return Iterator(entries_.end()); }

private:
    auto entryAt(std::size_t position)
    {
        if (position < 1 || position > entries_.size())
            fail(failure::indexOutside);
        return std::next(entries_.begin(), static_cast<std::ptrdiff_t>(position - 1));
    }
    auto lookup(StringView key)
    {
        const auto found = byKey_.find(key);
        if (found == byKey_.end())
            fail(failure::invalidCall, key);
        return found;
    }
    Entries entries_;
    std::unordered_map<String, typename Entries::iterator, NameHash, SameName> byKey_;
};

} // namespace zv
