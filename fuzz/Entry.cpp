// Runs the one law of a fuzz target over the fuzzer's inputs.
#include "fuzz/Law.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int*, char***);
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* bytes, std::size_t size);

// The code page is the target's, whatever the environment says.
extern "C" int LLVMFuzzerInitialize(int*, char***) {
    setenv("ORN_TEST_CODE_PAGE", ORN_FUZZ_CODE_PAGE, 1);
    return setenv("LC_ALL", "xx_XX." ORN_FUZZ_CODE_PAGE, 1);
}

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* bytes, std::size_t size) {
    try {
        fuzz::Law::all().front().run({bytes, size});
    } catch (fuzz::Broken const& broken) {
        std::fprintf(stderr, "%s\n", broken.text.c_str());
        std::abort();
    }
    return 0;
}
