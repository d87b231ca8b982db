#include "orn/colour/ColourTransform.h"

#include "orn/colour/IccTextImp.h"
#include "orn/foundation/Error.h"
#include "orn/os/ColourManagement.h"
#include "orn/os/ErrorText.h"

#include <algorithm>
#include <array>
#include <memory>
#include <stdexcept>
#include <string>

namespace ORN {

namespace {

[[noreturn]] void throwFailureOf(wchar_t const* call) { throw WinError{call, os::lastError()}; }

// Which space the colours are in behind the last profile. A link or an abstract profile ends in its connection space, whose
// signature lies at offset 20 of the header.
std::wstring spaceAtEnd(ColourProfile const& profile) {
    std::wstring const kind = profile.profileClass();
    if (kind != L"link" && kind != L"abst") return profile.colourSpace();
    std::size_t const connectionSpace = 20;
    DWORD size = 0;
    unsigned char const* const bytes = profile.data(size);
    return iccSignatureText(IccElement{{bytes, size}}.number(connectionSpace));
}

class ColourTransformImp : public ColourTransform {
public:
    ColourTransformImp(RenderingIntent intent, std::span<ColourProfile const* const> profiles) {
        // No function that creates a transform takes more than four profiles.
        std::array<HPROFILE, 4> handles;
        std::transform(profiles.begin(), profiles.end(), handles.begin(),
                       [](ColourProfile const* profile) { return profile->handle(); });
        transform_.reset(
            os::createTransform(handles.data(), static_cast<DWORD>(profiles.size()), static_cast<DWORD>(intent)));
        if (transform_ == nullptr) throwFailureOf(L"CreateMultiProfileTransform");
        convertsRGB_ = profiles.front()->colourSpace() == L"RGB " && spaceAtEnd(*profiles.back()) == L"RGB ";
    }

    HTRANSFORM handle() const override { return transform_.get(); }
    bool convertsRGB() const noexcept { return convertsRGB_; }

private:
    struct Delete {
        void operator()(HTRANSFORM transform) const noexcept { os::deleteTransform(transform); }
    };

    std::unique_ptr<void, Delete> transform_;
    bool convertsRGB_ = false;
};

template <typename... Profiles>
Handle<ColourTransform> join(RenderingIntent intent, Profiles const&... profiles) {
    std::array const chain{static_cast<ColourProfile const*>(&profiles)...};
    return Handle<ColourTransform>{new ColourTransformImp{intent, chain}};
}

}

// Turns colours into rows of 16-bit numbers and back. It reads and writes the components where they are: copying whole
// colours of 128 bytes would take a fifth of the time of the transform itself.
struct DeviceColours {
    static constexpr double maximum = 65535;

    // Rounds as std::lround does. A whole half would carry one double too many to the next number: that before 0.5.
    static WORD toDevice(double component) noexcept {
        constexpr double beforeHalf = 0x1.fffffffffffffp-2;
        double const atLeast0 = component > 0 ? component : 0, x = (atLeast0 < 1 ? atLeast0 : 1) * maximum;
        return static_cast<WORD>(static_cast<int>(x + beforeHalf));
    }

    // Gives device / maximum, rounded, without the slow division. The reciprocal is 2^-16 + 2^-32 + 2^-48 + …: the product
    // with its first three terms is exact.
    static constexpr double fromDevice(int device) noexcept {
        return device * 0x1.00010001p-16 + device * 0x1.00010001p-64;
    }
    static constexpr bool dividesExactly() noexcept {
        for (int device = 0; device <= 65535; ++device)
            if (fromDevice(device) != device / maximum) return false;
        return true;
    }

    static os::DeviceColour read(Colour const& colour) {
        if (!colour.rgb_.valid) return read(withRGB(colour));
        return {toDevice(colour.rgb_.red), toDevice(colour.rgb_.green), toDevice(colour.rgb_.blue)};
    }

    static void write(Colour& colour, os::DeviceColour const& device, double alpha) noexcept {
        colour.rgb_ = {true, fromDevice(device.red), fromDevice(device.green), fromDevice(device.blue)};
        colour.hls_ = {};
        colour.hsv_ = {};
        colour.alpha_ = alpha;
    }

    static double alpha(Colour const& colour) noexcept { return colour.alpha_; }

private:
    // Asks a copy: a colour that is asked fills its cache, and threads may share this one.
    static Colour withRGB(Colour colour) {  // NOLINT(performance-unnecessary-value-param)
        colour.r();
        return colour;
    }
};
static_assert(DeviceColours::dividesExactly());

ColourTransform::ColourTransform() noexcept = default;
ColourTransform::ColourTransform(ColourTransform const&) noexcept = default;
ColourTransform& ColourTransform::operator=(ColourTransform const&) noexcept = default;
ColourTransform::~ColourTransform() = default;

Handle<ColourTransform> ColourTransform::create(RenderingIntent intent, ColourProfile const& p1,
                                                ColourProfile const& p2) {
    return join(intent, p1, p2);
}

Handle<ColourTransform> ColourTransform::create(RenderingIntent intent, ColourProfile const& p1,
                                                ColourProfile const& p2, ColourProfile const& p3) {
    return join(intent, p1, p2, p3);
}

Handle<ColourTransform> ColourTransform::create(RenderingIntent intent, ColourProfile const& p1,
                                                ColourProfile const& p2, ColourProfile const& p3,
                                                ColourProfile const& p4) {
    return join(intent, p1, p2, p3, p4);
}

void ColourTransform::convert(std::span<Colour const> in, std::span<Colour> out) const {
    if (in.size() != out.size()) throw std::logic_error{"there must be as many results as colours to convert"};
    // A transform of an application does not tell which colours it takes and gives.
    auto const* const transform = dynamic_cast<ColourTransformImp const*>(this);
    if (transform == nullptr || !transform->convertsRGB())
        throw std::logic_error{"only a transform from RGB to RGB converts colours"};

    // A block at a time, which stays in the cache and needs no memory from the heap.
    std::array<os::DeviceColour, 128> rows;
    for (std::size_t done = 0; done != in.size();) {
        std::size_t const count = std::min(in.size() - done, rows.size());
        for (std::size_t i = 0; i != count; ++i) rows[i] = DeviceColours::read(in[done + i]);
        if (!os::translateColours(handle(), rows.data(), static_cast<DWORD>(count))) throwFailureOf(L"TranslateColors");
        // The results may take the place of the colours, so alpha is read before its colour is written.
        for (std::size_t i = 0; i != count; ++i, ++done)
            DeviceColours::write(out[done], rows[i], DeviceColours::alpha(in[done]));
    }
}

}
