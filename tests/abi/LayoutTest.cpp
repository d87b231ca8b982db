// What the binary interface fixes: the order, offsets and sizes of fields, and the order of virtual functions.
#include "orn/orn.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstring>
#include <map>

namespace {

/// The value's bytes are these numbers, one after the other, and nothing else.
template <typename Number, typename Value, typename... Numbers>
void expectStored(Value const& value, Numbers... numbers) {
    static_assert(sizeof value == sizeof...(numbers) * sizeof(Number) && std::is_trivially_copyable_v<Value>);
    std::array<Number, sizeof...(numbers)> const expected{static_cast<Number>(numbers)...};
    auto found = expected;
    std::memcpy(found.data(), static_cast<void const*>(&value), sizeof value);
    EXPECT_EQ(found, expected);
}

TEST(Layout, ValuesAreTheirNumbers) {
    double const rows[2][2] = {{1, 2}, {3, 4}};
    expectStored<double>(Angle::cosSin(3, 4), 0.6, 0.8);
    expectStored<double>(Point<1>{1}, 1);
    expectStored<double>(Point<2>{1, 2}, 1, 2);
    expectStored<double>(Point<3>{1, 2, 3}, 1, 2, 3);
    expectStored<double>(Vector<1>{1}, 1);
    expectStored<double>(Vector<2>{1, 2}, 1, 2);
    expectStored<double>(Vector<3>{1, 2, 3}, 1, 2, 3);
    expectStored<double>(Vector<4>{1, 2, 3, 4}, 1, 2, 3, 4);
    expectStored<double>(Extent<1>{Point<1>{2}, Point<1>{1}}, 1, 2);
    expectStored<double>(Extent<2>{Point<2>{3, 1}, Point<2>{1, 2}}, 1, 1, 3, 2);
    expectStored<double>(Extent<3>{Point<3>{1, 2, 3}, Point<3>{4, 5, 6}}, 1, 2, 3, 4, 5, 6);
    expectStored<double>(Matrix<2>{rows}, 1, 2, 3, 4);
    expectStored<double>(ORN::Line<2>{Vector<2>{0, 1}, Point<2>{2, 3}}, 0, 1, 2, 3);
    expectStored<double>(ORN::Line<3>{Vector<3>{0, 1, 0}, Point<3>{2, 3, 4}}, 0, 1, 0, 2, 3, 4);
    expectStored<double>(Plane{Vector<3>{0, 0, 1}, Point<3>{2, 3, 4}}, 2, 3, 4, 0, 0, 1);
    expectStored<double>(ORN::Arc<2>{Point<2>{1, 2}, 0.5, Point<2>{3, 4}}, 1, 2, 0.5, 3, 4);
    expectStored<double>(ORN::Arc<3>{Point<3>{1, 2, 3}, 0.5, Vector<3>{0, 0, 1}, Point<3>{4, 5, 6}}, 1, 2, 3, 0.5, 0, 0,
                         1, 4, 5, 6);
    expectStored<int>(IPoint<2>{1, 2}, 1, 2);
    expectStored<int>(IPoint<3>{1, 2, 3}, 1, 2, 3);
    expectStored<int>(IVector<2>{1, 2}, 1, 2);
    expectStored<int>(IVector<3>{1, 2, 3}, 1, 2, 3);
    expectStored<int>(IExtent<2>{IPoint<2>{3, 1}, IPoint<2>{1, 2}}, 1, 1, 3, 2);
    expectStored<int>(IExtent<3>{IPoint<3>{1, 2, 3}, IPoint<3>{4, 5, 6}}, 1, 2, 3, 4, 5, 6);
    expectStored<unsigned int>(CodePoint::codePoint(0x1F600), 0x1F600);
    expectStored<unsigned int>(ORN::UUID{L"01234567-89AB-CDEF-0123-456789ABCDEF"}, 0x01234567, 0xCDEF89AB, 0x67452301,
                               0xEFCDAB89);
}

TEST(Layout, TheMemoryStatusIsTheSystemsRecord) {
    using Words = std::array<std::uint64_t, 8>;
    Words const words{0x0000003200000040, 8, 7, 6, 5, 4, 3, 2};
    ORN::WindowsMemoryStatus const status{std::bit_cast<ORN::WindowsMemoryStatus::PODTYPE>(words)};
    EXPECT_EQ(std::bit_cast<Words>(status), words);
    ORN::WindowsMemoryStatus::PODTYPE const& record = status.toPod();
    EXPECT_EQ((std::array{record.length, record.memoryLoad}), (std::array{DWORD{64}, DWORD{50}}));
    EXPECT_EQ((Words{0, record.totalPhysical, record.availablePhysical, record.totalPageFile, record.availablePageFile,
                     record.totalVirtual, record.availableVirtual, record.availableExtendedVirtual}),
              (Words{0, 8, 7, 6, 5, 4, 3, 2}));
}

TEST(Layout, RegistryKeysAreValidStatusKeyAndPath) {
    struct {
        void* functions;
        bool valid;
        DWORD lastStatus;
        HKEY key;
    } image;
    RegReadKey const key{nullptr, L"none", 0};
    EXPECT_EQ(sizeof key, sizeof image + sizeof(std::wstring));
    EXPECT_EQ(sizeof(RegWriteKey), sizeof key);
    std::memcpy(&image, static_cast<void const*>(&key), sizeof image);
    EXPECT_FALSE(image.valid);
    EXPECT_EQ(image.lastStatus, 6u);  // of the handle
    EXPECT_EQ(image.key, nullptr);
}

TEST(Layout, TheLoadedLibraryIsOfTheHeadersVersion) {
    static_assert(ORN_VERSION_MINOR < 100 && ORN_VERSION_PATCH < 100);
    EXPECT_EQ(ORN::version(), ORN_VERSION_MAJOR * 10000 + ORN_VERSION_MINOR * 100 + ORN_VERSION_PATCH);
}

static_assert(std::is_same_v<ORN::Point<2>, Point<2>> && std::is_same_v<ORN::Colour, Colour>);
constexpr std::size_t pointer = sizeof(void*);
static_assert(sizeof(Matrix<1>) == 8 && sizeof(Matrix<3>) == 72 && sizeof(Matrix<4>) == 128);
static_assert(sizeof(MatrixRow<4>) == pointer);
static_assert(sizeof(UniformTransform<3>) == pointer + 12 * 8 && sizeof(PerspectiveTransform<1>) == pointer);
static_assert(sizeof(PerspectiveTransform<2>) == pointer + 9 * 8 &&
              sizeof(PerspectiveTransform<3>) == pointer + 16 * 8);
static_assert(sizeof(CodePointEnumerator) == 2 * sizeof(std::wstring::const_iterator));
static_assert(sizeof(AutoLocale) == 2 * sizeof(int) + sizeof(std::string));
static_assert(sizeof(TextLineIterator<wchar_t const*>) == 5 * pointer && sizeof(DIBitmap) == 2 * pointer);
static_assert(sizeof(ORN::OrnError) == sizeof(std::runtime_error) + sizeof(std::string) + sizeof(std::wstring));
static_assert(sizeof(WinError) == sizeof(ORN::OrnError) && sizeof(ORN::NotImplemented) == sizeof(ORN::OrnError));
static_assert(sizeof(ORN::Handle<ORN::Handlable>) == pointer && sizeof(ORN::Handlable) == 2 * pointer);
static_assert(sizeof(Quark) == pointer && sizeof(Identifier) == 4 && sizeof(Identifier::PODTYPE) == 4);
static_assert(sizeof(ExclusiveLock) == 2 * pointer && sizeof(ORN::CollectionBase) == 7 * pointer);
static_assert(sizeof(ORN::WerRegisteredMemoryBlock) == pointer);
static_assert(sizeof(ORN::ColourProfile) == sizeof(ORN::Handlable));
static_assert(sizeof(ORN::ColourTransform) == sizeof(ORN::Handlable));
static_assert(CodePoint::eolNone == 0 && CodePoint::eolNewline == 1 && CodePoint::eolReturn == 2);
static_assert(ORN::encMultibyte == 0 && ORN::encUTF8 == 1 && ORN::encUTF16 == 2 && ORN::encUTF16le == 3);
static_assert(ORN::encUTF16be == 4 && ORN::textCreate == 0 && ORN::textAppend == 1);

using namespace ORN::Threading;

TEST(Layout, ADrawThreadIsItsSchedulerAndThenItsTaskQueueAndHint) {
    struct Thread : DrawThread {
        void onThreadStart() override {}
        void onThreadExit() override {}
    };
    using Queue = std::map<HWND, DrawTask*>;
    static_assert(sizeof(SchedulerBase) == 48 && sizeof(Scheduler<HWND>) == 48);
    static_assert(sizeof(DrawThread) == 48 + pointer + sizeof(Queue) + sizeof(Queue::iterator));
    Thread const thread;
    std::array<LONG, 12> words;
    std::memcpy(words.data(), static_cast<void const*>(&thread), sizeof words);
    words[0] = words[1] = words[3] = 0;  // the functions, and what lies between
    words[10] &= 0xFF;
    EXPECT_EQ(words, (std::array<LONG, 12>{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, -2}));
}

TEST(Layout, AnAffineTransformIsItsMatrixAndThenItsTranslation) {
    double const rows[3][2] = {{1, 2}, {3, 4}, {5, 6}};
    NonUniformTransform<2> const transform = NonUniformTransform<2>::createFromPod(rows);
    static_assert(sizeof transform == pointer + sizeof rows);
    EXPECT_EQ(std::memcmp(reinterpret_cast<char const*>(&transform) + pointer, rows, sizeof rows), 0);
}

TEST(Layout, AColourIsThreeCachedModelsAndAlpha) {
    struct Image {
        void const* virtualTable;
        bool rgbValid;
        double red, green, blue;
        bool hlsValid;
        double hlsCosine, hlsSine, lightness, hlsSaturation;
        bool hsvValid;
        double hsvCosine, hsvSine, hsvSaturation, value;
        double alpha;
    };
    static_assert(sizeof(Image) == sizeof(Colour));
    auto const look = [](Colour const& colour) {
        Image image;
        std::memcpy(&image, static_cast<void const*>(&colour), sizeof image);
        return image;
    };
    using Four = std::array<double, 4>;
    Image const rgb = look(Colour::rgba(0.1, 0.2, 0.3, 0.4));
    EXPECT_TRUE(rgb.rgbValid && !rgb.hlsValid && !rgb.hsvValid);
    EXPECT_EQ((Four{rgb.red, rgb.green, rgb.blue, rgb.alpha}), (Four{0.1, 0.2, 0.3, 0.4}));
    EXPECT_EQ((Four{rgb.hlsCosine, rgb.hlsSine, rgb.hsvCosine, rgb.hsvSine}), (Four{1, 0, 1, 0}));
    Image const hls = look(Colour::hlsa(Angle::cosSin(3, 4), 0.1, 0.2, 1));
    EXPECT_TRUE(!hls.rgbValid && hls.hlsValid && !hls.hsvValid);
    EXPECT_EQ((Four{hls.hlsCosine, hls.hlsSine, hls.lightness, hls.hlsSaturation}), (Four{0.6, 0.8, 0.1, 0.2}));
    Image const hsv = look(Colour::hsva(Angle::cosSin(3, 4), 0.1, 0.2, 1));
    EXPECT_TRUE(!hsv.rgbValid && !hsv.hlsValid && hsv.hsvValid);
    EXPECT_EQ((Four{hsv.hsvCosine, hsv.hsvSine, hsv.hsvSaturation, hsv.value}), (Four{0.6, 0.8, 0.1, 0.2}));
}

/// The position of a virtual function in its table, by the common C++ ABI: a pointer to a virtual member holds one more
/// than its offset. A virtual destructor takes two places.
template <typename Function>
std::ptrdiff_t slotOf(Function function) {
    struct {
        std::ptrdiff_t position, adjustment;
    } image;
    static_assert(sizeof image == sizeof function);
    std::memcpy(&image, &function, sizeof image);
    return image.position % 8 == 1 ? (image.position - 1) / 8 : -1;
}

/// A test that the members have the slots from `first` on. An explicit instantiation may name protected and private ones.
#define ORN_SLOTS(name, first, ...)                                                       \
    struct name {                                                                         \
        friend std::vector<std::ptrdiff_t> slotsOf(name);                                 \
    };                                                                                    \
    template <auto... members>                                                            \
    struct SlotsOf##name {                                                                \
        friend std::vector<std::ptrdiff_t> slotsOf(name) { return {slotOf(members)...}; } \
    };                                                                                    \
    template struct SlotsOf##name<__VA_ARGS__>;                                           \
    TEST(Slots, name) {                                                                   \
        std::ptrdiff_t expected = first;                                                  \
        for (std::ptrdiff_t const slot : slotsOf(name{})) EXPECT_EQ(slot, expected++);    \
    }

#define ORN_MEMBER(R, C, A, member) static_cast<R (C::*)(A)>(&C::member)
#define ORN_CONST_MEMBER(R, C, A, member) static_cast<R (C::*)(A) const>(&C::member)

// clang-format off
#define ORN_TRANSFORM_SLOTS(N, T, A, P)                                                                            \
    ORN_SLOTS(Transform##N, 2, &T::clone, &T::pInverse, &T::pSlice, ORN_CONST_MEMBER(T*, T, T const&, composeWith),  \
              &T::putOn, ORN_CONST_MEMBER(Point<N>, T, Point<N> const&, preMultiply),                              \
              ORN_CONST_MEMBER(Extent<N>, T, Extent<N> const&, preMultiply),                                       \
              ORN_CONST_MEMBER(Point<N>, T, Point<N> const&, preDivide),                                           \
              ORN_CONST_MEMBER(Extent<N>, T, Extent<N> const&, preDivide))                                         \
    ORN_SLOTS(Affine##N, 11, &A::packToPod, ORN_CONST_MEMBER(A*, A, A const&, composeWith),                        \
              ORN_CONST_MEMBER(Vector<N>, A, , translation), &A::homogeneous, &A::mirroring,                       \
              ORN_CONST_MEMBER(Vector<N>, A, Vector<N> const&, preMultiply),                                       \
              ORN_CONST_MEMBER(Vector<N>, A, Vector<N> const&, preDivide),                                         \
              ORN_MEMBER(A&, A, A const&, multiply), ORN_MEMBER(A&, A, A const&, divide))                          \
    ORN_SLOTS(Perspective##N, 11, &P::homogeneous, ORN_MEMBER(P&, P, A const&, preMultiply),                       \
              ORN_MEMBER(P&, P, A const&, multiply), ORN_MEMBER(P&, P, A const&, divide))
// clang-format on

ORN_TRANSFORM_SLOTS(2, Transform<2>, AffineTransform<2>, PerspectiveTransform<2>)
ORN_TRANSFORM_SLOTS(3, Transform<3>, AffineTransform<3>, PerspectiveTransform<3>)

using namespace ORN;

ORN_SLOTS(Colours, 2, &Colour::calcHSV, &Colour::calcHLS, &Colour::calcRGB)
ORN_SLOTS(Errors, 2, &OrnError::what, &OrnError::wWhat)
ORN_SLOTS(NotImplementeds, 3, &NotImplemented::wWhat)
ORN_SLOTS(Profiles, 4, &ColourProfile::id, &ColourProfile::colourSpace, &ColourProfile::profileClass,
          &ColourProfile::displayName, &ColourProfile::fullDescription, &ColourProfile::data, &ColourProfile::handle)
ORN_SLOTS(ColourTransforms, 4, &ColourTransform::handle)
ORN_SLOTS(TextReaders, 2, &TextReader::readLine, &TextReader::close)
ORN_SLOTS(TextWriters, 2, &TextWriter::write, &TextWriter::writeLine, &TextWriter::flush, &TextWriter::close)
ORN_SLOTS(RawReaders, 2, &RawReader::name, &RawReader::read)
ORN_SLOTS(RawWriters, 2, &RawWriter::name, &RawWriter::write, &RawWriter::flush)
ORN_SLOTS(RawFileReaders, 2, &RawFileReader::name, &RawFileReader::read, &RawFileReader::seek, &RawFileReader::close)
ORN_SLOTS(RawFileWriters, 2, &RawFileWriter::name)
ORN_SLOTS(Parsers, 2, &CSVParser::missingColumns, &CSVParser::parse)
ORN_SLOTS(SchedulerBases, 2, &SchedulerBase::onThreadStart, &SchedulerBase::onThreadExit, &SchedulerBase::processTasks,
          &SchedulerBase::eraseWholeQueue, &SchedulerBase::threadName, &SchedulerBase::taskInProgress)
ORN_SLOTS(Schedulers, 8, &Scheduler<HWND>::eraseFromQueue)
ORN_SLOTS(TaskBases, 0, &TaskBase::abort)
ORN_SLOTS(Waiters, 0, &Waiter::operator())
ORN_SLOTS(Tasks, 3, &Task<HWND>::key)
ORN_SLOTS(Handlables, 0, &IHandlable::adref, &IHandlable::deref)
ORN_SLOTS(EventLists, 5, &EVSubscriptionList<int>::insert, &EVSubscriptionList<int>::erase)
ORN_SLOTS(QuarkTables, 0, &QuarkTable::intern)

TEST(Slots, EventNotification) { EXPECT_EQ(slotOf(ORN_MEMBER(void, EVSubscriptionList<int>, int, notify)), 4); }

}
