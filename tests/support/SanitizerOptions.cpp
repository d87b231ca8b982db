// What the address sanitizer does unless the environment says otherwise. It follows the thread-local data of libraries that
// are opened while the program runs, and with this C library it takes other memory for it when it looks for leaks.
extern "C" __attribute__((visibility("default"))) char const* __asan_default_options() {
    return "intercept_tls_get_addr=0";
}

// What the thread sanitizer takes for races although there is none. The C library counts the users of a locale's data under
// a lock of its own, which the sanitizer does not see, and the last user frees what another thread had read from disk.
extern "C" __attribute__((visibility("default"))) char const* __tsan_default_suppressions() {
    return "race:_nl_unload_locale\nrace:freelocale\n";
}
