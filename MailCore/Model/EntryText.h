#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace MailCore {

/// An immutable text of an index entry in 16 bytes. It owns its characters, unless an arena that outlives it
/// lends them (`borrowing`); a copy always owns. Texts of 4 GiB and more are cut.
class EntryText {
public:
    EntryText() noexcept = default;
    EntryText(std::string_view text);
    EntryText(const std::string& text) : EntryText(std::string_view(text)) {}
    EntryText(const char* text) : EntryText(std::string_view(text)) {}
    EntryText(const EntryText& other) : EntryText(other.view()) {}
    EntryText(EntryText&& other) noexcept;
    EntryText& operator=(EntryText other) noexcept;
    ~EntryText();

    /// A text whose characters stay where they are; they outlive the result.
    static EntryText borrowing(std::string_view text) noexcept;

    std::string_view view() const noexcept { return {data_, length_}; }
    operator std::string_view() const noexcept { return view(); }
    std::size_t size() const noexcept { return length_; }
    bool empty() const noexcept { return length_ == 0; }
    bool operator==(const EntryText& other) const noexcept { return view() == other.view(); }

private:
    const char* data_ = nullptr;
    std::uint32_t length_ = 0;
    bool owned_ = false;
};

} // namespace MailCore
