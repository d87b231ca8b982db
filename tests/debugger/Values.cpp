// What the debugger's views are tested on: a value of every kind, also ones that no program should have.
#include "orn/orn.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <new>

namespace {

struct Shape : ORN::Handlable {};
struct Circle final : Shape {
    double radius = 2;
};

struct SelfCounted final : ORN::IHandlable {
    void adref() const override {}
    void deref() const override {}
};

struct Document {
    LONG volatile lock;
};

/// An object of type T whose every byte is the same, never constructed nor destroyed.
template <typename T>
struct Filled {
    explicit Filled(unsigned char byte) { std::memset(bytes, byte, sizeof bytes); }
    T& value() { return *reinterpret_cast<T*>(bytes); }

    alignas(T) unsigned char bytes[sizeof(T)];
};

/// Two code units that nothing ends: what follows them cannot be read.
wchar_t const* cutShort() {
    auto const page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    auto* const pages =
        static_cast<char*>(mmap(nullptr, 2 * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0));
    munmap(pages + page, page);
    auto* const text = reinterpret_cast<wchar_t*>(pages + page) - 2;
    text[0] = L'c';
    text[1] = 0xD83D;
    return text;
}

Quark quarkOf(wchar_t const* text) {
    Quark quark;
    std::memcpy(static_cast<void*>(&quark), &text, sizeof text);
    return quark;
}

template <typename T>
ORN::Handle<T>& handleOf(Filled<ORN::Handle<T>>& storage, std::uintptr_t address) {
    std::memcpy(storage.bytes, &address, sizeof address);
    return storage.value();
}

}

// The debugger stops here and looks at the caller.
[[gnu::noinline]] void valuesAreReady() { asm volatile("" ::: "memory"); }

int main() {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinity = std::numeric_limits<double>::infinity();

    Point<1> const point1{3};
    Point<2> const point2{1.5, -2};
    Point<3> const point3{nan, infinity, -0.0};
    Vector<1> const vector1{0.25};
    Vector<2> const vector2{1, 2};
    Vector<3> const vector3{1, 2, 3};
    Vector<4> const vector4{1, 2, 3, 4};
    IPoint<2> const ipoint2{1, -2147483647 - 1};
    IPoint<3> const ipoint3{1, 2, 3};
    IVector<2> const ivector2{-1, 5};
    IVector<3> const ivector3{7, 8, 9};
    Point<2> const& reference = point2;

    Extent<1> const extent1{Point<1>{0}, Point<1>{1}};
    Extent<2> const extent2{{3, 1}, {1, 2}};
    Extent<3> const extent3{{0, 0, 0}, {1, 1, 1}};
    Extent<2> const empty;
    Extent<3> const full = Extent<3>::everything();
    double const rows[2][2] = {{0, 5}, {1, 4}};
    Extent<2> const crossed{rows};
    double const rowsOfSpace[2][3] = {{2, 0, 0}, {1, 1, 1}};
    IExtent<2> const iempty;
    IExtent<3> const ifull = IExtent<3>::everything();
    IExtent<2> const iextent2{{1, 2}, {3, 4}};

    Angle const zero;
    Angle const right = Angle::cosSin(0, 2);
    Angle const thirty = Angle::degrees(30);
    Angle const steep = Angle::degrees(-100.25);
    Angle const wide = Angle::cosSin(-1, 1);
    Angle const noAngle = Angle::cosSin(0, 0);
    Filled<Angle> zeroes{0};

    Colour const red = Colour::rgba(1, 0.5, 0, 0.25);
    Colour const dull = Colour::hls(Angle::degrees(120), 0.5, 0.25);
    Colour const bright = Colour::hsv(Angle::degrees(-90), 1, 0.5);
    Colour const noHue = Colour::hsv(noAngle, 1, 1);
    Colour const seen[] = {Colour::rgb(1, 0, 0), Colour::rgb(1, 0, 0), Colour::hls(Angle{}, 0.5, 1),
                           Colour::rgb(1, 1, 1)};
    static_cast<void>(seen[0].l_hls() + seen[1].v_hsv() + seen[2].v_hsv() + seen[3].l_hls() + seen[3].v_hsv());
    Filled<Colour> noColour{0xDD};
    Filled<Colour> clearColour{0};

    Quark const quark = Quark::create(L"abc");
    Quark const emptyText = Quark::create(L"");
    Quark const quoted = Quark::create(L"a\"b\\\n");
    wchar_t const wideUnits[] = {0xC4, 0x20AC, 0xD83D, 0xDE00, 0x7A, 0xDE00, 0xD83D, 0};
    Quark const wideText = Quark::create(wideUnits);
    Quark const cutQuark = quarkOf(cutShort());
    wchar_t const tooWide[] = {L'a', static_cast<wchar_t>(0x1F600), L'b', 0};
    Quark const noUnits = quarkOf(tooWide);
    Quark const wildQuark = quarkOf(reinterpret_cast<wchar_t const*>(std::uintptr_t{0x10}));
    wchar_t longUnits[301] = {};
    for (int i = 0; i < 300; ++i) longUnits[i] = L'x';
    Quark const longText = Quark::create(longUnits);

    ORN::Handle<Shape> const handle{new Circle};
    ORN::Handle<Shape> const single{new Shape};
    ORN::Handle<Shape> const second = handle;
    ORN::Handle<Circle> const noHandle;
    ORN::Handle<ORN::IHandlable> const selfCounted{new SelfCounted};
    Filled<ORN::Handle<Shape>> wildStorage{0};
    ORN::Handle<Shape>& wildHandle = handleOf(wildStorage, 0x10);
    Filled<Circle> noCircle{0xDD};
    Filled<ORN::Handle<Shape>> danglingStorage{0};
    ORN::Handle<Shape>& danglingHandle = handleOf(danglingStorage, reinterpret_cast<std::uintptr_t>(&noCircle.value()));

    ORN::UUID const uuid{L"0f0e0d0c-000b-0a09-0807-060504030201"};
    ORN::UUID::PODTYPE const pod = uuid.toPod();
    ORN::UUID const nil;

    Document documents[12] = {};
    ExclusiveLock const exclusive{documents[1].lock};
    SharedLock const shared{documents[2].lock};
    SharedLock const again{documents[2].lock};
    ExclusiveLock steppedOut{documents[0].lock};
    steppedOut.unlock();
    SharedLock sharedOut{documents[0].lock};
    sharedOut.unlock();
    std::uint32_t const unused[] = {0xDDDDDDDD, 0xFEEEFEEE, 0xCDCDCDCD, 0xCCCCCCCC, 0xFDFDFDFD, 0x10000003, 0xFFFFFFFF};
    for (int i = 0; i < 7; ++i) documents[3 + i].lock = static_cast<LONG>(unused[i]);
    alignas(SharedLock) unsigned char guardStorage[7][sizeof(SharedLock)] = {};
    for (int i = 0; i < 7; ++i) {
        LONG volatile* const word = &documents[3 + i].lock;
        std::memcpy(guardStorage[i], &word, sizeof word);
    }
    auto* const guards = reinterpret_cast<SharedLock*>(guardStorage);

    valuesAreReady();
    static_cast<void>(guards);
    static_cast<void>(reference);
    static_cast<void>(wildHandle);
    static_cast<void>(danglingHandle);
    return 0;
}
