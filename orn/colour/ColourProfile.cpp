#include "orn/colour/ColourProfile.h"

#include "orn/colour/IccTextImp.h"
#include "orn/foundation/Error.h"
#include "orn/os/ColourManagement.h"
#include "orn/os/ErrorText.h"
#include "orn/text/Printf.h"
#include "ornmsg/ornmsg.h"

#include <limits>
#include <memory>
#include <stdexcept>

namespace ORN {

namespace {

// The numbers of the catalogue's messages.
unsigned int const nameMessage = 271, descriptionMessage = 282;

[[noreturn]] void throwFailureOf(wchar_t const* call) { throw WinError{call, os::lastError()}; }

void require(ColourProfileId id, ColourProfileId legal) {
    if (id != legal) throw std::logic_error{"Illegal value of ORN::ColourProfileId"};
}

// The system's calls take sizes of 32 bits.
DWORD size32(std::uint64_t size) {
    if (size > std::numeric_limits<DWORD>::max()) throwIntCast();
    return static_cast<DWORD>(size);
}

class ColourProfileImp final : public ColourProfile {
public:
    ColourProfileImp(ColourProfileId id, os::ProfileSource const& source) : id_{id} {
        profile_.reset(os::openProfile(source));
        if (profile_ == nullptr) throwFailureOf(L"OpenColorProfile");

        // Without a buffer the call only tells the size.
        os::profileBytes(handle(), nullptr, dataSize_);
        data_ = std::make_unique_for_overwrite<unsigned char[]>(dataSize_);
        if (!os::profileBytes(handle(), data_.get(), dataSize_)) throwFailureOf(L"GetColorProfileFromHandle");

        os::ProfileHeader header;
        if (!os::profileHeader(handle(), header)) throwFailureOf(L"GetColorProfileHeader");
        colourSpace_ = iccSignatureText(header.colourSpace);
        profileClass_ = iccSignatureText(header.profileClass);

        // Read now, so that a damaged text makes no profile, and what is asked later cannot fail.
        manufacturer_ = text(L"dmnd");
        model_ = text(L"dmdd");
        description_ = text(L"desc");
    }

    ColourProfileId id() const override { return id_; }
    std::wstring colourSpace() const override { return colourSpace_; }
    std::wstring profileClass() const override { return profileClass_; }
    std::wstring displayName() const override {
        return stringPrintf(ornMsg(nameMessage).c_str(), description_.c_str());
    }
    std::wstring fullDescription() const override {
        return stringPrintf(ornMsg(descriptionMessage).c_str(), manufacturer_.c_str(), model_.c_str(),
                            description_.c_str());
    }
    unsigned char const* data(DWORD& size) const override {
        size = dataSize_;
        return data_.get();
    }
    HPROFILE handle() const override { return profile_.get(); }

private:
    struct Close {
        void operator()(HPROFILE profile) const noexcept { os::closeProfile(profile); }
    };

    std::wstring text(wchar_t const* tag) const {
        DWORD const signature = iccSignature(tag);
        DWORD size = 0;
        // A profile without this tag leaves the size as it is: such a text is empty, and no error.
        os::profileElement(handle(), signature, nullptr, size);
        if (size == 0) return {};
        auto const element = std::make_unique_for_overwrite<unsigned char[]>(size);
        DWORD const room = size;
        if (!os::profileElement(handle(), signature, element.get(), size)) throwFailureOf(L"GetColorProfileElement");
        return IccElement{{element.get(), room}}.text();
    }

    ColourProfileId id_;
    std::unique_ptr<unsigned char[]> data_;
    DWORD dataSize_ = 0;
    std::wstring colourSpace_, profileClass_, manufacturer_, model_, description_;
    std::unique_ptr<void, Close> profile_;
};

Handle<ColourProfile> open(ColourProfileId id, os::ProfileKind kind, void const* data, std::uint64_t size) {
    return Handle<ColourProfile>{new ColourProfileImp{id, {kind, data, size32(size)}}};
}

}

ColourProfile::ColourProfile() noexcept = default;
ColourProfile::ColourProfile(ColourProfile const&) noexcept = default;
ColourProfile& ColourProfile::operator=(ColourProfile const&) noexcept = default;
ColourProfile::~ColourProfile() = default;

Handle<ColourProfile> ColourProfile::create(ColourProfileId id) {
    require(id, ColourProfileId::sRGB);
    DWORD size = 0;
    os::standardProfile(nullptr, size);
    std::wstring path(size, L'\0');  // the size counts bytes: more room than it takes
    if (!os::standardProfile(path.data(), size)) throwFailureOf(L"GetStandardColorSpaceProfile");
    // More than the name's own bytes: what stands behind its terminating zero is not read.
    return open(id, os::ProfileKind::fileName, path.data(), std::uint64_t{size} * 2);
}

Handle<ColourProfile> ColourProfile::create(ColourProfileId id, unsigned char const* data, std::uint64_t size) {
    require(id, ColourProfileId::fromData);
    return open(id, os::ProfileKind::memory, data, size);
}

Handle<ColourProfile> ColourProfile::createFromFile(std::wstring const& fileName) {
    // With the terminating zero, two bytes to a code unit, also where wchar_t is wider.
    std::uint64_t const size = (std::uint64_t{fileName.size()} + 1) * 2;
    return open(ColourProfileId::fromData, os::ProfileKind::fileName, fileName.c_str(), size);
}

}
