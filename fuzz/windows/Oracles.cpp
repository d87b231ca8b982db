#include "fuzz/Oracles.h"

char const* fuzz::codePage() { return nullptr; }
std::optional<std::string> fuzz::converted(char const*, char const*, std::string_view) { return std::nullopt; }
std::optional<std::wstring> fuzz::describedByLcms(std::string const&) { return std::nullopt; }
