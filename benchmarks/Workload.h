#pragma once

#include <cstdint>
#include <random>
#include <string>

/// Mail made for measuring: deterministic for a seed, shaped as real archives are.
namespace Workload {

class Writer {
public:
    explicit Writer(std::uint32_t seed) : random_(seed) {}

    /// About 3.8 KB: headers as servers leave them, and a short text.
    std::string smallMessage();
    /// About 80 bytes: sender, subject, date and a word, so that an index is nearly all there is.
    std::string tinyMessage();
    /// About 60 KB on average: short texts, newsletters of 20 to 80 KB, Base64 attachments to 2 MB.
    std::string mixedMessage();
    /// An HTML newsletter of about `bytes` bytes with tables, styles, links and entities.
    std::string newsletter(std::size_t bytes);
    /// Words in lines of about 70 characters, `bytes` bytes of them.
    std::string prose(std::size_t bytes);

private:
    std::uint32_t below(std::uint32_t bound) { return static_cast<std::uint32_t>(random_() % bound); }
    std::string word();
    std::string headers();
    std::string attachment(std::size_t bytes);

    std::mt19937 random_;
    std::uint32_t number_ = 0;
};

} // namespace Workload
