// Models of many colours, each asked for once, beside the same formulas inlined in the loop.
#include "orn/colour/Colour.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <random>
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

BENCHMARK(hsv_formula);
BENCHMARK(hsv_Colour);
BENCHMARK(hsvAndHls_formula);
BENCHMARK(hsvAndHls_Colour);

}
