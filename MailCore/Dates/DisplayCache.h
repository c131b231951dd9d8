#pragma once

#include <cstddef>
#include <list>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

namespace MailCore {

/// Remembers displayed dates: at most 1,024 of them and a total cost of 1,048,576; the least recently used go
/// first. Any thread.
class DisplayCache {
public:
    std::optional<std::string> find(const std::string& key);
    void store(const std::string& key, const std::string& text, std::size_t cost);

private:
    struct Entry {
        std::string key;
        std::string text;
        std::size_t cost;
    };
    void evict();

    std::mutex lock_;
    std::list<Entry> entries_;                                                // most recently used first
    std::unordered_map<std::string_view, std::list<Entry>::iterator> places_; // keys live in the entries
    std::size_t cost_ = 0;
};

} // namespace MailCore
