/// Universally unique identifiers.
#pragma once

#include "orn/Export.h"

#include <compare>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <string>
#include <type_traits>

namespace ORN {

/// A 128-bit identifier: a plain value of sixteen bytes, ordered field by field. Where the system refuses a call, these
/// functions throw ORN::OrnError with the name of the call and its status.
class ORN_API UUID {
public:
    /// The sixteen bytes as a Windows GUID lays them out.
    struct PODTYPE {
        std::uint32_t Data1;    ///< printed first
        std::uint16_t Data2;    ///< second
        std::uint16_t Data3;    ///< third
        std::uint8_t Data4[8];  ///< printed last, two bytes and six
    };

    UUID();                                                          ///< the nil identifier, all zeros
    explicit UUID(PODTYPE const& value) noexcept : value_{value} {}  ///< any sixteen bytes

    /// Reads the 36 characters of XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX, with digits in either case. Throws ORN::OrnError
    /// with the catalogue's message 218 for any other text.
    explicit UUID(std::wstring const& text);

    /// Makes a new identifier that is unique everywhere. Also throws when the system can make it unique on this computer only.
    [[nodiscard]] static UUID create();

    /// Whether the constructor can read the text.
    [[nodiscard]] static bool valid(std::wstring const& text) noexcept;

    PODTYPE toPod() const noexcept { return value_; }  ///< the sixteen bytes
    std::wstring toString() const;                     ///< the 36 characters, digits in upper case
    [[nodiscard]] bool isNull() const;                 ///< whether it is the nil identifier

    friend ORN_API bool operator==(UUID const& a, UUID const& b);  ///< all sixteen bytes
    friend ORN_API bool operator!=(UUID const& a, UUID const& b);  ///< all sixteen bytes

    /// Compares the first field, the second, the third, then byte by byte, all as unsigned numbers.
    friend std::strong_ordering operator<=>(UUID const& a, UUID const& b) { return compare(a, b) <=> 0; }

private:
    friend struct std::less<UUID>;

    static int compare(UUID const& a, UUID const& b);

    PODTYPE value_;
};

ORN_API bool operator==(UUID const& a, UUID const& b);  ///< all sixteen bytes
ORN_API bool operator!=(UUID const& a, UUID const& b);  ///< all sixteen bytes

ORN_API std::wostream& operator<<(std::wostream& stream, UUID const& uuid);  ///< the text of toString

}

/// The order of <=>.
template <>
struct std::less<ORN::UUID> {
    /// True when a comes first.
    bool operator()(ORN::UUID const& a, ORN::UUID const& b) const { return ORN::UUID::compare(a, b) < 0; }
};

/// Spreads well in tables of any size, even for identifiers that count up.
template <>
struct std::hash<ORN::UUID> {
    /// Equal for equal identifiers.
    std::size_t operator()(ORN::UUID const& uuid) const noexcept {
        // The bytes may be random or count up in any field, so each half is spread over all bits.
        ORN::UUID::PODTYPE const pod = uuid.toPod();
        std::uint64_t const head = std::uint64_t{pod.Data1} << 32 | std::uint64_t{pod.Data2} << 16 | pod.Data3;
        std::uint64_t tail = 0;
        for (std::uint8_t const byte : pod.Data4) tail = tail << 8 | byte;
        return static_cast<std::size_t>(spread(spread(head) ^ tail));
    }

private:
    // The finishing step of MurmurHash3.
    static constexpr std::uint64_t spread(std::uint64_t bits) noexcept {
        bits = (bits ^ bits >> 33) * 0xFF51AFD7ED558CCD;
        bits = (bits ^ bits >> 33) * 0xC4CEB9FE1A85EC53;
        return bits ^ bits >> 33;
    }
};
