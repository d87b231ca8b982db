#include "orn/colour/ColourTransform.h"

#include "orn/colour/IccTextImp.h"
#include "orn/foundation/Error.h"
#include "orn/os/ColourManagement.h"
#include "orn/os/ErrorText.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <stdexcept>
#include <string>

namespace ORN {

namespace {

double const deviceMaximum = 65535;

[[noreturn]] void throwFailureOf(wchar_t const* call) { throw WinError{call, os::lastError()}; }

// What comes out of a profile at the end of a chain: of a link or an abstract profile it is the connection space.
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

WORD toDevice(double component) noexcept {
    double const within = component > 0 ? std::min(component, 1.0) : 0;
    return static_cast<WORD>(std::lround(within * deviceMaximum));
}

// By value: a colour that is asked may fill its cache.
os::DeviceColour toDevice(Colour colour) {  // NOLINT(performance-unnecessary-value-param)
    return {toDevice(colour.r()), toDevice(colour.g()), toDevice(colour.b()), {}};
}

}

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
    auto const* const transform = dynamic_cast<ColourTransformImp const*>(this);
    if (transform == nullptr || !transform->convertsRGB())
        throw std::logic_error{"only a transform from RGB to RGB converts colours"};

    std::array<os::DeviceColour, 128> from, to;
    for (std::size_t done = 0; done != in.size();) {
        std::size_t const count = std::min(in.size() - done, from.size());
        for (std::size_t i = 0; i != count; ++i) from[i] = toDevice(in[done + i]);
        if (!os::translateColours(handle(), from.data(), static_cast<DWORD>(count), to.data()))
            throwFailureOf(L"TranslateColors");
        for (std::size_t i = 0; i != count; ++i, ++done) {
            auto const& [red, green, blue, unused] = to[i];
            out[done] = Colour::rgba(red / deviceMaximum, green / deviceMaximum, blue / deviceMaximum, in[done].a());
        }
    }
}

}
