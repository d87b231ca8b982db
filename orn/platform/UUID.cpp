#include "orn/platform/UUID.h"

#include "orn/foundation/Error.h"
#include "orn/os/Uuid.h"
#include "orn/text/Printf.h"
#include "ornmsg/ornmsg.h"

#include <bit>
#include <ostream>

namespace ORN {

static_assert(sizeof(UUID) == 16 && std::is_trivially_copyable_v<UUID> && std::is_standard_layout_v<UUID>);

namespace {

os::Uuid systemForm(UUID const& uuid) noexcept { return std::bit_cast<os::Uuid>(uuid); }

/// Throws when a call of the system has failed.
void require(LONG status, wchar_t const* format) {
    if (status != 0) throw OrnError{stringPrintf(format, status)};
}

bool parse(std::wstring const& text, os::Uuid& uuid) noexcept {
    // The system reads up to the first zero. So the length is checked here, in case the text has a zero inside.
    return text.size() == 36 && os::parseUuid(text.c_str(), uuid) == 0;
}

}

UUID::UUID() {
    os::Uuid nil;
    require(os::createNilUuid(nil), L"UuidCreateNil %ld");
    value_ = std::bit_cast<PODTYPE>(nil);
}

UUID::UUID(std::wstring const& text) {
    os::Uuid parsed;
    if (!parse(text, parsed)) throw OrnError{stringPrintf(ornMsg(218).c_str(), text.c_str())};
    value_ = std::bit_cast<PODTYPE>(parsed);
}

UUID UUID::create() {
    os::Uuid created;
    // A number that is unique on this machine only has a status of its own, and is a failure, too.
    require(os::createUuid(created), L"UuidCreate %ld");
    return UUID{std::bit_cast<PODTYPE>(created)};
}

bool UUID::valid(std::wstring const& text) noexcept {
    os::Uuid ignored;
    return parse(text, ignored);
}

std::wstring UUID::toString() const {
    auto const& last = value_.Data4;
    // In capitals: the system's own function writes small letters.
    return stringPrintf(L"%08lX-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X", value_.Data1, value_.Data2, value_.Data3,
                        last[0], last[1], last[2], last[3], last[4], last[5], last[6], last[7]);
}

bool UUID::isNull() const {
    LONG status;
    bool const nil = os::uuidIsNil(systemForm(*this), status);
    require(status, L"UuidIsNil %ld");
    return nil;
}

// The order of the fields as unsigned numbers. Their bytes in memory have another one.
int UUID::compare(UUID const& a, UUID const& b) {
    LONG status;
    int const order = os::compareUuids(systemForm(a), systemForm(b), status);
    require(status, L"UuidCompare %ld");
    return order;
}

bool operator==(UUID const& a, UUID const& b) { return UUID::compare(a, b) == 0; }
bool operator!=(UUID const& a, UUID const& b) { return UUID::compare(a, b) != 0; }

std::wostream& operator<<(std::wostream& stream, UUID const& uuid) { return stream << uuid.toString(); }

}
