/// ICC colour profiles.
#pragma once

#include "orn/Export.h"
#include "orn/foundation/Handle.h"
#include "orn/os/Types.h"

#include <cstdint>
#include <string>

namespace ORN {

/// Where a profile comes from.
enum class ColourProfileId : LONG {
    sRGB = 0,      ///< the system's standard sRGB profile
    fromData = -1  ///< bytes or a file
};

/// A profile, open with the system's colour management as long as the object lives; what describes it is read once, when
/// it is opened. Any number of threads may use one.
///
/// The functions that create one throw WinError when the system cannot open or read the profile, and std::logic_error
/// when a text in it is damaged: "ICC data too short", "desc/mluc element not found in ICC data". A missing text is
/// empty.
class ORN_API ColourProfile : public Handlable {
public:
    /// For the implementation, as this class has no data.
    /// @{
    ColourProfile() noexcept;
    ColourProfile(ColourProfile const&) noexcept;
    ColourProfile& operator=(ColourProfile const&) noexcept;
    /// @}

    ~ColourProfile() override;

    /// A standard profile; std::logic_error for fromData.
    [[nodiscard]] static Handle<ColourProfile> create(ColourProfileId id);

    /// A profile in memory, which is copied; std::logic_error for any id but fromData. A size above 32 bits throws
    /// OrnError "integer value right out of range".
    [[nodiscard]] static Handle<ColourProfile> create(ColourProfileId id, unsigned char const* data,
                                                      std::uint64_t size);

    /// A profile file; its id is fromData.
    [[nodiscard]] static Handle<ColourProfile> createFromFile(std::wstring const& fileName);

    virtual ColourProfileId id() const = 0;                    ///< as it was created with
    virtual std::wstring colourSpace() const = 0;              ///< the signature of its colours, as in "RGB "
    virtual std::wstring profileClass() const = 0;             ///< the signature of its class, as in "mntr"
    virtual std::wstring displayName() const = 0;              ///< to show in a list, in the user's language
    virtual std::wstring fullDescription() const = 0;          ///< the same with manufacturer and model
    virtual unsigned char const* data(DWORD& size) const = 0;  ///< the whole profile; stays the object's
    virtual HPROFILE handle() const = 0;                       ///< the colour management's; stays the object's
};

}
