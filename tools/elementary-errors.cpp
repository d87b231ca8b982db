// The program of tools/measure-elementary.
#include "tests/support/ElementaryCases.h"

#include <cstdio>
#include <cstdlib>

int main(int, char** arguments) {
    long const count = std::atol(arguments[1]);
    elementary::Error error;
    bool good = true;
    std::puts("| function | arguments | worst error | at |\n|---|---|---|---|");
    for (auto const& function : elementary::functions) {
        elementary::Random random;
        for (auto const& range : elementary::ranges) {
            double worst = 0;
            elementary::Arguments where{};
            for (long i = 0; i < count; ++i) {
                auto const a = range.next(random);
                double const off = error.of(function, a, function.here(a));
                if (off > worst) worst = off, where = a;
            }
            good = good && worst <= 0.55;
            std::printf("| %s | %s | %.4f | %a", function.name, range.name, worst, where.x);
            if (function.two) std::printf(", %a", where.y);
            std::puts(" |");
        }
    }
    return good ? 0 : 1;
}
