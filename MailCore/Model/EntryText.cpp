#include "MailCore/Model/EntryText.h"

#include <cstring>
#include <limits>
#include <memory>
#include <utility>

namespace MailCore {

EntryText::EntryText(std::string_view text) {
    text = text.substr(0, std::numeric_limits<std::uint32_t>::max());
    if (text.empty()) return;
    auto copy = std::make_unique_for_overwrite<char[]>(text.size());
    std::memcpy(copy.get(), text.data(), text.size());
    data_ = copy.release();
    length_ = static_cast<std::uint32_t>(text.size());
    owned_ = true;
}

EntryText::EntryText(EntryText&& other) noexcept
    : data_(std::exchange(other.data_, nullptr)), length_(std::exchange(other.length_, 0)),
      owned_(std::exchange(other.owned_, false)) {}

EntryText& EntryText::operator=(EntryText other) noexcept {
    std::swap(data_, other.data_);
    std::swap(length_, other.length_);
    std::swap(owned_, other.owned_);
    return *this;
}

EntryText::~EntryText() {
    if (owned_) std::unique_ptr<const char[]>(data_).reset();
}

EntryText EntryText::borrowing(std::string_view text) noexcept {
    EntryText result;
    text = text.substr(0, std::numeric_limits<std::uint32_t>::max());
    result.data_ = text.data();
    result.length_ = static_cast<std::uint32_t>(text.size());
    return result;
}

} // namespace MailCore
