#include "fuzz/Input.h"

#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int*, char***);
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* bytes, std::size_t size);

// The code page is the target's, whatever the environment says.
extern "C" int LLVMFuzzerInitialize(int*, char***) { return setenv("LC_ALL", "xx_XX." ORN_FUZZ_CODE_PAGE, 1); }

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* bytes, std::size_t size) {
    fuzz::run({bytes, size});
    return 0;
}
