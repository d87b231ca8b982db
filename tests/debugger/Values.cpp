// What the debugger views are tested on: values of every kind, also ones that no program should have. What GDB prints of a
// value stands in a comment behind it, or before it with the expression to print.
#include "orn/orn.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstring>
#include <limits>

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

// Two code units that nothing ends: what follows them cannot be read.
static wchar_t const* cutShort() {
    auto const page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    void* const pages = mmap(nullptr, 2 * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    auto* const text = reinterpret_cast<wchar_t*>(static_cast<char*>(pages) + page) - 2;
    munmap(text + 2, page);
    text[0] = L'c';
    text[1] = 0xD83D;
    return text;
}

// The debugger stops here and looks at the caller.
[[gnu::noinline]] void valuesAreReady() { asm volatile("" ::: "memory"); }

int main() {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    constexpr double infinity = std::numeric_limits<double>::infinity();
    double const zeroes[16] = {};
    unsigned char dead[sizeof(Colour)];
    std::memset(dead, 0xDD, sizeof dead);

    Point<1> const point1{3};                      // shows (3)
    Point<2> const point2{1.5, -2};                // shows (1.5,-2)
    Point<2> const& reference = point2;            // shows (1.5,-2)
    Point<3> const point3{nan, infinity, -0.0};    // shows (nan(0x8000000000000),inf,-0)
    Vector<4> const vector4{1, 2, 3, 4};           // shows (1,2,3,4)
    IPoint<2> const integers{1, -2147483647 - 1};  // shows (1,-2147483648)
    IVector<3> const step{7, 8, 9};                // shows (7,8,9)
    // *(Point<2>*)0 shows error: Cannot access memory at address 0x0

    Extent<1> const interval{Point<1>{0}, Point<1>{1}};    // shows (0):(1)
    Extent<2> const box{{3, 1}, {1, 2}};                   // shows (1,1):(3,2)
    Extent<2> const empty;                                 // shows nothing
    Extent<3> const full = Extent<3>::everything();        // shows everything
    IExtent<2> const noCells;                              // shows nothing
    IExtent<3> const allCells = IExtent<3>::everything();  // shows everything
    IExtent<2> const cells{{1, 2}, {3, 4}};                // shows (1,2):(3,4)
    double const rows[2][2] = {{0, 5}, {1, 4}};
    Extent<2> const crossed{rows};  // shows degenerate (0,5):(1,4)
    // *(Extent<1>*)&rows[0][1] shows degenerate (5):(1)

    Angle const zero;                         // shows 0 degrees (cosine 1, sine 0)
    Angle const right = Angle::cosSin(0, 2);  // shows 90 degrees (cosine 0, sine 1)
    // thirty shows 30 degrees (cosine 0.86602540378443871, sine 0.49999999999999994)
    Angle const thirty = Angle::degrees(30);
    // steep shows -100.25 degrees (cosine -0.17794354547384167, sine -0.98404069764629087)
    Angle const steep = Angle::degrees(-100.25);
    // noAngle shows no direction (cosine -nan(0x8000000000000), sine -nan(0x8000000000000))
    Angle const noAngle = Angle::cosSin(0, 0);
    // *(Angle*)zeroes shows no direction (cosine 0, sine 0)

    Colour const red = Colour::rgba(1, 0.5, 0, 0.25);                 // shows rgb (1, 0.5, 0), alpha 0.25
    Colour const dull = Colour::hls(Angle::degrees(120), 0.5, 0.25);  // shows hls (120 degrees, 0.5, 0.25), alpha 1
    Colour const noHue = Colour::hsv(noAngle, 1, 1);                  // shows hsv (no direction, 1, 1), alpha 1
    // seen[0] shows rgb (1, 0, 0) = hls (0 degrees, 0.5, 1), alpha 1
    // seen[1] shows rgb (1, 1, 1) = hls (0 degrees, 1, 0) = hsv (0 degrees, 0, 1), alpha 1
    Colour const seen[] = {Colour::rgb(1, 0, 0), Colour::rgb(1, 1, 1)};
    static_cast<void>(seen[0].l_hls() + seen[1].l_hls() + seen[1].v_hsv());
    // *(Colour*)dead shows not a colour
    // *(Colour*)zeroes shows not a colour

    Quark const quark = Quark::create(L"abc");        // shows "abc"
    Quark const emptyText = Quark::create(L"");       // shows ""
    Quark const quoted = Quark::create(L"a\"b\\\n");  // shows "a\"b\\\n"
    wchar_t const wideUnits[] = {0xC4, 0x20AC, 0xD83D, 0xDE00, 0x7A, 0xDE00, 0xD83D, 0};
    Quark const wideText = Quark::create(wideUnits);
    Quark const longText = Quark::create(std::wstring(300, L'x').c_str());
    wchar_t const tooWide[] = {L'a', static_cast<wchar_t>(0x1F600), L'b', 0};
    // *(Quark*)&texts[0] shows "c\ud83d" <Cannot access memory at address ADDRESS>
    // *(Quark*)&texts[1] shows "a" <0x1f600 is no code unit>
    // *(Quark*)&texts[2] shows "" <Cannot access memory at address 0x10>
    wchar_t const* const texts[] = {cutShort(), tooWide, reinterpret_cast<wchar_t const*>(std::uintptr_t{0x10})};

    ORN::Handle<Shape> const handle{new Circle};  // shows 2 references to Circle at ADDRESS
    ORN::Handle<Shape> const single{new Shape};   // shows 1 reference to Shape at ADDRESS
    ORN::Handle<Shape> const second = handle;
    ORN::Handle<Circle> const noHandle;                               // shows null
    ORN::Handle<ORN::IHandlable> const selfCounted{new SelfCounted};  // shows SelfCounted at ADDRESS
    // *(ORN::Handle<Shape>*)&texts[2] shows Shape at 0x10 <Cannot access memory at address 0x18>
    // *(ORN::Handle<Shape>*)&dangling shows -572662307 references to Shape at ADDRESS
    void const* const dangling = dead;

    ORN::UUID const uuid{L"0f0e0d0c-000b-0a09-0807-060504030201"};  // shows 0F0E0D0C-000B-0A09-0807-060504030201
    ORN::UUID::PODTYPE const pod = uuid.toPod();                    // shows 0F0E0D0C-000B-0A09-0807-060504030201

    Document documents[12] = {};
    ExclusiveLock const exclusive{documents[1].lock};  // shows exclusive lock, held; its word: 0x10000000, exclusive
    SharedLock const shared{documents[2].lock};        // shows shared lock, held; its word: 0x00000002, shared by 2
    SharedLock const again{documents[2].lock};
    ExclusiveLock steppedOut{documents[0].lock};  // shows exclusive lock, not held; its word: 0x00000000, free
    steppedOut.unlock();
    // *(ExclusiveLock*)zeroes shows exclusive lock, not held; its word: <Cannot access memory at address 0x0>
    // documents[0].lock shows 0x00000000, free
    // documents[1].lock shows 0x10000000, exclusive
    // documents[2].lock shows 0x00000002, shared by 2
    // documents[3].lock shows 0xdddddddd, freed memory
    // documents[4].lock shows 0xfeeefeee, freed memory
    // documents[5].lock shows 0xcdcdcdcd, memory of a heap, never written
    // documents[6].lock shows 0xcccccccc, memory of a stack, never written
    // documents[7].lock shows 0xfdfdfdfd, memory outside of a block
    // documents[8].lock shows 0x10000003, corrupt
    // documents[9].lock shows 0xffffffff, corrupt
    std::uint32_t const unused[] = {0xDDDDDDDD, 0xFEEEFEEE, 0xCDCDCDCD, 0xCCCCCCCC, 0xFDFDFDFD, 0x10000003, 0xFFFFFFFF};
    for (int i = 0; i < 7; ++i) documents[3 + i].lock = static_cast<LONG>(unused[i]);
    // *(SharedLock*)guard shows shared lock, not held; its word: 0xdddddddd, freed memory
    LONG volatile* const guard[] = {&documents[3].lock, nullptr};
    // $orn_lock(0x0fffffff) shows "0x0fffffff, shared by 268435455"
    // $orn_lock(-1) shows "0xffffffff, corrupt"

    valuesAreReady();
}
