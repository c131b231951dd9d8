#include "MailCore/Rendering/HTMLEntities.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

namespace MailCore::HTMLEntities {

namespace {

struct Entity {
    std::string_view name;
    std::string_view text;
};

constexpr auto entities = std::to_array<Entity>({
#include "MailCore/Rendering/HTMLEntities.inc"
});
static_assert(entities.size() == 2'125);
static_assert(std::ranges::is_sorted(entities, {}, &Entity::name));

constexpr std::size_t largestName = std::ranges::max_element(entities, {}, [](const Entity& entity) {
                                        return entity.name.size();
                                    })->name.size();

// Open addressing, at most half full: slot → index in `entities` plus one, 0 for none. Built when compiling
// would take more steps than compilers allow by default, so it is built once on first use.
constexpr std::size_t slotCount = 8'192;
static_assert(entities.size() * 2 < slotCount);

std::size_t slotOf(std::string_view name) noexcept {
    std::uint32_t hash = 2'166'136'261U; // FNV-1a
    for (const char byte : name) hash = (hash ^ static_cast<unsigned char>(byte)) * 16'777'619U;
    return (hash ^ hash >> 15) & (slotCount - 1);
}

using Slots = std::array<std::uint16_t, slotCount>;

const Slots& slots() noexcept {
    static const Slots filled = [] {
        Slots result{};
        for (std::size_t index = 0; index < entities.size(); ++index) {
            std::size_t slot = slotOf(entities[index].name);
            while (result[slot] != 0) slot = (slot + 1) & (slotCount - 1);
            result[slot] = static_cast<std::uint16_t>(index + 1);
        }
        return result;
    }();
    return filled;
}

} // namespace

std::string_view named(std::string_view name) noexcept {
    if (name.empty() || name.size() > largestName) return {};
    const Slots& table = slots();
    for (std::size_t slot = slotOf(name); table[slot] != 0; slot = (slot + 1) & (slotCount - 1)) {
        const Entity& entity = entities[table[slot] - 1U];
        if (entity.name == name) return entity.text;
    }
    return {};
}

} // namespace MailCore::HTMLEntities
