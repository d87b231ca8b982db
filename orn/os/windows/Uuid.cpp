#include "orn/os/Uuid.h"

#include "orn/os/Fault.h"

#include <windows.h>

#include <rpc.h>

namespace ORN::os {

static_assert(sizeof(Uuid) == sizeof(::UUID));

namespace {

::UUID* system(Uuid& uuid) noexcept { return reinterpret_cast<::UUID*>(&uuid); }
::UUID* system(Uuid const& uuid) noexcept { return system(const_cast<Uuid&>(uuid)); }  // which is only read

}

LONG createUuid(Uuid& uuid) noexcept {
    // The system gives a number also when its status says that the number is unique on this machine only. So the call
    // comes before the planted fault.
    LONG const status = ::UuidCreate(system(uuid));
    return ORN_OS_REFUSED("UuidCreate") ? RPC_S_UUID_LOCAL_ONLY : status;
}

LONG createNilUuid(Uuid& uuid) noexcept {
    if (ORN_OS_REFUSED("UuidCreateNil")) return RPC_S_OUT_OF_MEMORY;
    return ::UuidCreateNil(system(uuid));
}

LONG parseUuid(wchar_t const* text, Uuid& uuid) noexcept {
    // The system may write to its result before it refuses a text.
    ::UUID parsed;
    // RPC_WSTR is a pointer to unsigned short, and the system only reads the text.
    LONG const status = ::UuidFromStringW(reinterpret_cast<RPC_WSTR>(const_cast<wchar_t*>(text)), &parsed);
    if (status == 0) *system(uuid) = parsed;
    return status;
}

bool uuidIsNil(Uuid const& uuid, LONG& status) noexcept {
    RPC_STATUS given = 0;
    bool const nil = ::UuidIsNil(system(uuid), &given) != 0;
    status = ORN_OS_REFUSED("UuidIsNil") ? RPC_S_INVALID_ARG : given;
    return nil;
}

int compareUuids(Uuid const& a, Uuid const& b, LONG& status) noexcept {
    RPC_STATUS given = 0;
    int const order = ::UuidCompare(system(a), system(b), &given);
    status = ORN_OS_REFUSED("UuidCompare") ? RPC_S_INVALID_ARG : given;
    return order;
}

}
