// What the address sanitizer does unless the environment says otherwise. It follows the thread-local data of libraries that
// are opened while the program runs, and with this C library it takes other memory for it when it looks for leaks.
extern "C" __attribute__((visibility("default"))) char const* __asan_default_options() {
    return "intercept_tls_get_addr=0";
}
