#include "drawing/dxf/Colours.h"

namespace drawing::dxf {

std::uint32_t colourOfIndex(int index, std::uint32_t ink) {
    constexpr std::uint32_t first[] = {0xFF0000, 0xFFFF00, 0x00FF00, 0x00FFFF, 0x0000FF,
                                       0xFF00FF, 0,        0x808080, 0xC0C0C0};
    constexpr std::uint32_t greys[] = {0x333333, 0x505050, 0x696969, 0x828282, 0xBEBEBE, 0xFFFFFF};
    if (index == 7) return ink;
    if (index < 10) return first[index - 1];
    if (index >= 250) return greys[index - 250];

    // 24 hues of 15 degrees, each in five brightnesses (per cent), each of these pure and mixed with white to a half.
    constexpr int brightnesses[] = {100, 65, 50, 30, 15};
    int const hue = index / 10 - 1, brightness = brightnesses[index % 10 / 2], pale = index % 2;
    auto const channel = [&](int shift) {
        // In quarters: full for 60 degrees on either side of the channel's own hue, none from 120 on.
        int const away = (hue + shift) % 24, distance = away > 12 ? 24 - away : away;
        int const quarters = distance <= 4 ? 4 : distance >= 8 ? 0 : 8 - distance;
        int const eighths = pale == 0 ? 2 * quarters : 4 + quarters;
        return static_cast<std::uint32_t>(255 * brightness * eighths / 800);
    };
    return channel(0) << 16 | channel(16) << 8 | channel(8);
}

}
