// Models of many colours, each asked for once, beside the same formulas inlined in the loop; and many colours through
// profiles, beside lcms2 called directly.
// needs: PkgConfig::lcms2
#include "orn/colour/Colour.h"
#include "orn/colour/ColourTransform.h"
#include "tests/support/IccProfile.h"

#include <benchmark/benchmark.h>
#include <lcms2.h>

#include <algorithm>
#include <cmath>
#include <random>
#include <span>
#include <vector>

namespace {

struct RGB {
    double r, g, b;
};

std::vector<RGB> const& sources() {
    static std::vector<RGB> const colours = [] {
        std::mt19937 random{61};
        std::uniform_real_distribution<double> component{0.0, 1.0};
        std::vector<RGB> made(100'000);
        for (RGB& c : made) c = {component(random), component(random), component(random)};
        return made;
    }();
    return colours;
}

struct Plain {
    double cos, sin, s_hsv, v, l, s_hls;
};

inline Plain plain(RGB const& c) {
    double const max = std::max({c.r, c.g, c.b}), min = std::min({c.r, c.g, c.b}), d = max - min;
    Plain out{1, 0, 0, max, (max + min) * 0.5, 0};
    if (d != 0) {
        double const degrees = c.r == max   ? (c.g - c.b) * 60 / d
                               : c.g == max ? (c.b - c.r) * 60 / d + 120
                                            : (c.r - c.g) * 60 / d + 240;
        out.cos = std::cos(degrees * 0.017453292519943295);
        out.sin = std::sin(degrees * 0.017453292519943295);
        out.s_hsv = d / max;
        out.s_hls = out.l <= 0.5 ? d / (max + min) : d / (2 - max - min);
    }
    return out;
}

void overColours(benchmark::State& state, auto convert) {
    for (auto _ : state) {
        double sum = 0;
        for (RGB const& c : sources()) sum += convert(c);
        benchmark::DoNotOptimize(sum);
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(sources().size()));
}

void hsvAndHls_Colour(benchmark::State& state) {
    overColours(state, [](RGB const& c) {
        Colour colour = Colour::rgb(c.r, c.g, c.b);
        return colour.h_hsv().cos() + colour.s_hsv() + colour.v_hsv() + colour.h_hls().sin() + colour.l_hls() +
               colour.s_hls();
    });
}

void hsvAndHls_formula(benchmark::State& state) {
    overColours(state, [](RGB const& c) {
        Plain const p = plain(c);
        return p.cos + p.s_hsv + p.v + p.sin + p.l + p.s_hls;
    });
}

void hsv_Colour(benchmark::State& state) {
    overColours(state, [](RGB const& c) {
        Colour colour = Colour::rgb(c.r, c.g, c.b);
        Angle const hue = colour.h_hsv();
        return hue.cos() + hue.sin() + colour.s_hsv() + colour.v_hsv();
    });
}

void hsv_formula(benchmark::State& state) {
    overColours(state, [](RGB const& c) {
        Plain const p = plain(c);
        return p.cos + p.sin + p.s_hsv + p.v;
    });
}

// From the standard primaries to others, with different curves: nothing that could be left out.
icc::Bytes const& profileOf(bool target) {
    static icc::Bytes const profiles[] = {
        icc::profile(icc::tags(icc::power(0x233))),
        icc::profile(icc::tags(icc::power(0x1CD),
                               {{{0.6097, 0.3111, 0.0195}, {0.2053, 0.6257, 0.0609}, {0.1492, 0.0632, 0.7446}}}))};
    return profiles[target];
}

void convert_ColourTransform(benchmark::State& state) {
    auto const opened = [](bool target) {
        icc::Bytes const& bytes = profileOf(target);
        return ORN::ColourProfile::create(ORN::ColourProfileId::fromData, icc::data(bytes), bytes.size());
    };
    auto const transform =
        ORN::ColourTransform::create(ORN::RenderingIntent::relativeColorimetric, *opened(false), *opened(true));
    std::vector<Colour> in, out(static_cast<std::size_t>(state.range(0)));
    for (RGB const& c : std::span{sources()}.first(out.size())) in.push_back(Colour::rgb(c.r, c.g, c.b));
    for (auto _ : state) {
        transform->convert(in, out);
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(in.size()));
}

// In rows of 16-bit numbers, as exactly as ColourTransform has it.
void convert_lcms2(benchmark::State& state) {
    cmsHPROFILE profiles[2];
    for (int i = 0; i < 2; ++i)
        profiles[i] =
            cmsOpenProfileFromMem(profileOf(i == 1).data(), static_cast<cmsUInt32Number>(profileOf(i == 1).size()));
    cmsHTRANSFORM const transform =
        cmsCreateTransform(profiles[0], TYPE_RGB_16, profiles[1], TYPE_RGB_16, INTENT_RELATIVE_COLORIMETRIC,
                           cmsFLAGS_NOOPTIMIZE | cmsFLAGS_NOCACHE);
    std::vector<cmsUInt16Number> in;
    for (RGB const& c : std::span{sources()}.first(static_cast<std::size_t>(state.range(0))))
        for (double const x : {c.r, c.g, c.b}) in.push_back(static_cast<cmsUInt16Number>(x * 65535 + 0.5));
    std::vector<cmsUInt16Number> out(in.size());
    for (auto _ : state) {
        cmsDoTransform(transform, in.data(), out.data(), static_cast<cmsUInt32Number>(in.size() / 3));
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(in.size() / 3));
    cmsDeleteTransform(transform);
    for (cmsHPROFILE const profile : profiles) cmsCloseProfile(profile);
}

BENCHMARK(convert_lcms2)->Arg(1000)->Arg(100000);
BENCHMARK(convert_ColourTransform)->Arg(1000)->Arg(100000);
BENCHMARK(hsv_formula);
BENCHMARK(hsv_Colour);
BENCHMARK(hsvAndHls_formula);
BENCHMARK(hsvAndHls_Colour);

}
