// What the binary interface fixes: the order, offsets and sizes of fields, and the order of virtual functions.
#include "orn/orn.h"

#include <gtest/gtest.h>

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace {

template <std::size_t N>
using Doubles = std::array<double, N>;
template <std::size_t N>
using Ints = std::array<int, N>;

template <typename Image, typename Value>
Image imageOf(Value const& value) {
    static_assert(sizeof(Image) == sizeof(Value) && std::is_trivially_copyable_v<Value>);
    return std::bit_cast<Image>(value);
}

TEST(Layout, PointsAndVectorsAreTheirComponents) {
    EXPECT_EQ(imageOf<Doubles<2>>(Angle::cosSin(3, 4)), (Doubles<2>{0.6, 0.8}));
    EXPECT_EQ(imageOf<Doubles<1>>(Point<1>{1}), (Doubles<1>{1}));
    EXPECT_EQ(imageOf<Doubles<2>>(Point<2>{1, 2}), (Doubles<2>{1, 2}));
    EXPECT_EQ(imageOf<Doubles<3>>(Point<3>{1, 2, 3}), (Doubles<3>{1, 2, 3}));
    EXPECT_EQ(imageOf<Doubles<1>>(Vector<1>{1}), (Doubles<1>{1}));
    EXPECT_EQ(imageOf<Doubles<2>>(Vector<2>{1, 2}), (Doubles<2>{1, 2}));
    EXPECT_EQ(imageOf<Doubles<3>>(Vector<3>{1, 2, 3}), (Doubles<3>{1, 2, 3}));
    EXPECT_EQ(imageOf<Doubles<4>>(Vector<4>{1, 2, 3, 4}), (Doubles<4>{1, 2, 3, 4}));
    EXPECT_EQ(imageOf<Ints<2>>(IPoint<2>{1, 2}), (Ints<2>{1, 2}));
    EXPECT_EQ(imageOf<Ints<3>>(IPoint<3>{1, 2, 3}), (Ints<3>{1, 2, 3}));
    EXPECT_EQ(imageOf<Ints<2>>(IVector<2>{1, 2}), (Ints<2>{1, 2}));
    EXPECT_EQ(imageOf<Ints<3>>(IVector<3>{1, 2, 3}), (Ints<3>{1, 2, 3}));
}

TEST(Layout, BoxesAreLoThenHi) {
    EXPECT_EQ(imageOf<Doubles<2>>(Extent<1>{Point<1>{2}, Point<1>{1}}), (Doubles<2>{1, 2}));
    EXPECT_EQ(imageOf<Doubles<4>>(Extent<2>{Point<2>{3, 1}, Point<2>{1, 2}}), (Doubles<4>{1, 1, 3, 2}));
    EXPECT_EQ(imageOf<Doubles<6>>(Extent<3>{Point<3>{1, 2, 3}, Point<3>{4, 5, 6}}), (Doubles<6>{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(imageOf<Ints<4>>(IExtent<2>{IPoint<2>{3, 1}, IPoint<2>{1, 2}}), (Ints<4>{1, 1, 3, 2}));
    EXPECT_EQ(imageOf<Ints<6>>(IExtent<3>{IPoint<3>{1, 2, 3}, IPoint<3>{4, 5, 6}}), (Ints<6>{1, 2, 3, 4, 5, 6}));
}

TEST(Layout, MatricesAreStoredByRowsAndARowIsAPointer) {
    double const rows[2][2] = {{1, 2}, {3, 4}};
    EXPECT_EQ(imageOf<Doubles<4>>(Matrix<2>{rows}), (Doubles<4>{1, 2, 3, 4}));
    EXPECT_EQ(sizeof(Matrix<1>), 8u);
    EXPECT_EQ(sizeof(Matrix<3>), 72u);
    EXPECT_EQ(sizeof(Matrix<4>), 128u);
    EXPECT_EQ(sizeof(MatrixRow<4>), sizeof(void*));
}

TEST(Layout, IdentifiersAreTheirSixteenBytes) {
    auto const words = imageOf<std::array<std::uint32_t, 4>>(ORN::UUID{L"01234567-89AB-CDEF-0123-456789ABCDEF"});
    EXPECT_EQ(words, (std::array<std::uint32_t, 4>{0x01234567, 0xCDEF89AB, 0x67452301, 0xEFCDAB89}));
}

TEST(Layout, TheMemoryStatusIsTheSystemsRecord) {
    using Words = std::array<std::uint64_t, 8>;
    Words const words{0x0000003200000040, 8, 7, 6, 5, 4, 3, 2};
    ORN::WindowsMemoryStatus const status{std::bit_cast<ORN::WindowsMemoryStatus::PODTYPE>(words)};
    EXPECT_EQ(imageOf<Words>(status), words);
    ORN::WindowsMemoryStatus::PODTYPE const& record = status.toPod();
    EXPECT_EQ((std::array{record.length, record.memoryLoad}), (std::array{DWORD{64}, DWORD{50}}));
    EXPECT_EQ((Words{0, record.totalPhysical, record.availablePhysical, record.totalPageFile, record.availablePageFile,
                     record.totalVirtual, record.availableVirtual, record.availableExtendedVirtual}),
              (Words{0, 8, 7, 6, 5, 4, 3, 2}));
}

TEST(Layout, LinesPlanesAndArcs) {
    EXPECT_EQ(imageOf<Doubles<4>>(ORN::Line<2>{Vector<2>{0, 1}, Point<2>{2, 3}}), (Doubles<4>{0, 1, 2, 3}));
    EXPECT_EQ(imageOf<Doubles<6>>(ORN::Line<3>{Vector<3>{0, 1, 0}, Point<3>{2, 3, 4}}), (Doubles<6>{0, 1, 0, 2, 3, 4}));
    EXPECT_EQ(imageOf<Doubles<6>>(Plane{Vector<3>{0, 0, 1}, Point<3>{2, 3, 4}}), (Doubles<6>{2, 3, 4, 0, 0, 1}));
    EXPECT_EQ(imageOf<Doubles<5>>(ORN::Arc<2>{Point<2>{1, 2}, 0.5, Point<2>{3, 4}}), (Doubles<5>{1, 2, 0.5, 3, 4}));
    EXPECT_EQ(imageOf<Doubles<10>>(ORN::Arc<3>{Point<3>{1, 2, 3}, 0.5, Vector<3>{0, 0, 1}, Point<3>{4, 5, 6}}),
              (Doubles<10>{1, 2, 3, 0.5, 0, 0, 1, 4, 5, 6}));
}

TEST(Layout, AnAffineTransformIsItsMatrixAndThenItsTranslation) {
    double const rows[3][2] = {{1, 2}, {3, 4}, {5, 6}};
    NonUniformTransform<2> const transform = NonUniformTransform<2>::createFromPod(rows);
    ASSERT_EQ(sizeof transform, sizeof(void*) + sizeof rows);
    EXPECT_EQ(std::memcmp(reinterpret_cast<char const*>(&transform) + sizeof(void*), rows, sizeof rows), 0);
    EXPECT_EQ(sizeof(UniformTransform<3>), sizeof(void*) + 12 * 8);
    EXPECT_EQ(sizeof(PerspectiveTransform<2>), sizeof(void*) + 9 * 8);
    EXPECT_EQ(sizeof(PerspectiveTransform<3>), sizeof(void*) + 16 * 8);
    EXPECT_EQ(sizeof(PerspectiveTransform<1>), sizeof(void*));
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
    Image const rgb = look(Colour::rgba(0.1, 0.2, 0.3, 0.4));
    EXPECT_TRUE(rgb.rgbValid && !rgb.hlsValid && !rgb.hsvValid);
    EXPECT_EQ((std::array{rgb.red, rgb.green, rgb.blue, rgb.alpha}), (std::array{0.1, 0.2, 0.3, 0.4}));
    EXPECT_EQ((std::array{rgb.hlsCosine, rgb.hlsSine, rgb.hsvCosine, rgb.hsvSine}), (std::array{1.0, 0.0, 1.0, 0.0}));
    Image const hls = look(Colour::hlsa(Angle::cosSin(3, 4), 0.1, 0.2, 0.3));
    EXPECT_TRUE(!hls.rgbValid && hls.hlsValid && !hls.hsvValid);
    EXPECT_EQ((std::array{hls.hlsCosine, hls.hlsSine, hls.lightness, hls.hlsSaturation, hls.alpha}),
              (std::array{0.6, 0.8, 0.1, 0.2, 0.3}));
    Image const hsv = look(Colour::hsva(Angle::cosSin(3, 4), 0.1, 0.2, 0.3));
    EXPECT_TRUE(!hsv.rgbValid && !hsv.hlsValid && hsv.hsvValid);
    EXPECT_EQ((std::array{hsv.hsvCosine, hsv.hsvSine, hsv.hsvSaturation, hsv.value, hsv.alpha}),
              (std::array{0.6, 0.8, 0.1, 0.2, 0.3}));
}

TEST(Layout, TextAndErrors) {
    EXPECT_EQ(imageOf<unsigned int>(CodePoint::codePoint(0x1F600)), 0x1F600u);
    EXPECT_EQ(sizeof(CodePointEnumerator), 2 * sizeof(std::wstring::const_iterator));
    EXPECT_EQ(sizeof(AutoLocale), 2 * sizeof(int) + sizeof(std::string));
    EXPECT_EQ(sizeof(TextLineIterator<wchar_t const*>), 5 * sizeof(void*));
    EXPECT_EQ(sizeof(ORN::OrnError), sizeof(std::runtime_error) + sizeof(std::string) + sizeof(std::wstring));
    EXPECT_EQ(sizeof(WinError), sizeof(ORN::OrnError));
    EXPECT_EQ(sizeof(ORN::NotImplemented), sizeof(ORN::OrnError));
    EXPECT_EQ(sizeof(DIBitmap), 2 * sizeof(void*));
    EXPECT_EQ(CodePoint::eolNone, 0);
    EXPECT_EQ(CodePoint::eolNewline, 1);
    EXPECT_EQ(CodePoint::eolReturn, 2);
    EXPECT_EQ((std::array<int, 5>{ORN::encMultibyte, ORN::encUTF8, ORN::encUTF16, ORN::encUTF16le, ORN::encUTF16be}),
              (std::array<int, 5>{0, 1, 2, 3, 4}));
    EXPECT_EQ(ORN::textCreate, 0);
    EXPECT_EQ(ORN::textAppend, 1);
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

/// Reaches protected and private members: an explicit instantiation may name them.
template <typename Tag, auto member>
struct Expose {
    friend constexpr auto exposed(Tag) { return member; }
};

#define ORN_EXPOSE(tag, type, member)       \
    struct tag {                            \
        friend constexpr auto exposed(tag); \
    };                                      \
    template struct Expose<tag, static_cast<type>(&member)>;

#define ORN_EXPOSE_TRANSFORM(N)                                                                              \
    ORN_EXPOSE(PutOn##N, std::wostream& (Transform<N>::*)(std::wostream&) const, Transform<N>::putOn)        \
    ORN_EXPOSE(MapBox##N, Extent<N> (Transform<N>::*)(Extent<N> const&) const, Transform<N>::preMultiply)    \
    ORN_EXPOSE(MapPoint##N, Point<N> (Transform<N>::*)(Point<N> const&) const, Transform<N>::preMultiply)    \
    ORN_EXPOSE(UnmapBox##N, Extent<N> (Transform<N>::*)(Extent<N> const&) const, Transform<N>::preDivide)    \
    ORN_EXPOSE(UnmapPoint##N, Point<N> (Transform<N>::*)(Point<N> const&) const, Transform<N>::preDivide)    \
    ORN_EXPOSE(MapVector##N, Vector<N> (AffineTransform<N>::*)(Vector<N> const&) const,                      \
               AffineTransform<N>::preMultiply)                                                              \
    ORN_EXPOSE(UnmapVector##N, Vector<N> (AffineTransform<N>::*)(Vector<N> const&) const,                    \
               AffineTransform<N>::preDivide)                                                                \
    ORN_EXPOSE(Multiply##N, AffineTransform<N>& (AffineTransform<N>::*)(AffineTransform<N> const&),          \
               AffineTransform<N>::multiply)                                                                 \
    ORN_EXPOSE(Divide##N, AffineTransform<N>& (AffineTransform<N>::*)(AffineTransform<N> const&),            \
               AffineTransform<N>::divide)                                                                   \
    ORN_EXPOSE(Front##N, PerspectiveTransform<N>& (PerspectiveTransform<N>::*)(AffineTransform<N> const&),   \
               PerspectiveTransform<N>::preMultiply)                                                         \
    ORN_EXPOSE(Behind##N, PerspectiveTransform<N>& (PerspectiveTransform<N>::*)(AffineTransform<N> const&),  \
               PerspectiveTransform<N>::multiply)                                                            \
    ORN_EXPOSE(Without##N, PerspectiveTransform<N>& (PerspectiveTransform<N>::*)(AffineTransform<N> const&), \
               PerspectiveTransform<N>::divide)

ORN_EXPOSE_TRANSFORM(2)
ORN_EXPOSE_TRANSFORM(3)

template <int N>
struct Tags;
#define ORN_TAGS(N)                         \
    template <>                             \
    struct Tags<N> {                        \
        using PutOn = PutOn##N;             \
        using MapBox = MapBox##N;           \
        using MapPoint = MapPoint##N;       \
        using UnmapBox = UnmapBox##N;       \
        using UnmapPoint = UnmapPoint##N;   \
        using MapVector = MapVector##N;     \
        using UnmapVector = UnmapVector##N; \
        using Multiply = Multiply##N;       \
        using Divide = Divide##N;           \
        using Front = Front##N;             \
        using Behind = Behind##N;           \
        using Without = Without##N;         \
    };
ORN_TAGS(2)
ORN_TAGS(3)

template <int N>
void expectTransformSlots() {
    using T = Transform<N>;
    using A = AffineTransform<N>;
    using P = PerspectiveTransform<N>;
    using Tag = Tags<N>;
    EXPECT_EQ(slotOf(&T::clone), 2);
    EXPECT_EQ(slotOf(&T::pInverse), 3);
    EXPECT_EQ(slotOf(&T::pSlice), 4);
    EXPECT_EQ(slotOf(static_cast<T* (T::*)(T const&) const>(&T::composeWith)), 5);
    EXPECT_EQ(slotOf(exposed(typename Tag::PutOn{})), 6);
    EXPECT_EQ(slotOf(exposed(typename Tag::MapBox{})), 7);
    EXPECT_EQ(slotOf(exposed(typename Tag::MapPoint{})), 8);
    EXPECT_EQ(slotOf(exposed(typename Tag::UnmapBox{})), 9);
    EXPECT_EQ(slotOf(exposed(typename Tag::UnmapPoint{})), 10);

    EXPECT_EQ(slotOf(&A::packToPod), 11);
    EXPECT_EQ(slotOf(static_cast<A* (A::*)(A const&) const>(&A::composeWith)), 12);
    EXPECT_EQ(slotOf(static_cast<Vector<N> (A::*)() const>(&A::translation)), 13);
    EXPECT_EQ(slotOf(&A::homogeneous), 14);
    EXPECT_EQ(slotOf(&A::mirroring), 15);
    EXPECT_EQ(slotOf(exposed(typename Tag::MapVector{})), 16);
    EXPECT_EQ(slotOf(exposed(typename Tag::UnmapVector{})), 17);
    EXPECT_EQ(slotOf(exposed(typename Tag::Multiply{})), 18);
    EXPECT_EQ(slotOf(exposed(typename Tag::Divide{})), 19);

    EXPECT_EQ(slotOf(&P::homogeneous), 11);
    EXPECT_EQ(slotOf(exposed(typename Tag::Front{})), 12);
    EXPECT_EQ(slotOf(exposed(typename Tag::Behind{})), 13);
    EXPECT_EQ(slotOf(exposed(typename Tag::Without{})), 14);
}

TEST(Slots, Transforms) {
    expectTransformSlots<2>();
    expectTransformSlots<3>();
}

ORN_EXPOSE(CalcHSV, void (Colour::*)() const, Colour::calcHSV)
ORN_EXPOSE(CalcHLS, void (Colour::*)() const, Colour::calcHLS)
ORN_EXPOSE(CalcRGB, void (Colour::*)() const, Colour::calcRGB)

TEST(Slots, ColoursAndErrors) {
    EXPECT_EQ(slotOf(exposed(CalcHSV{})), 2);
    EXPECT_EQ(slotOf(exposed(CalcHLS{})), 3);
    EXPECT_EQ(slotOf(exposed(CalcRGB{})), 4);
    EXPECT_EQ(slotOf(&ORN::OrnError::what), 2);
    EXPECT_EQ(slotOf(&ORN::OrnError::wWhat), 3);
    EXPECT_EQ(slotOf(&ORN::NotImplemented::wWhat), 3);
}

TEST(Slots, ColourProfilesAndTransforms) {
    EXPECT_EQ(slotOf(&ORN::ColourProfile::id), 4);  // behind adref, deref and the destructor
    EXPECT_EQ(slotOf(&ORN::ColourProfile::colourSpace), 5);
    EXPECT_EQ(slotOf(&ORN::ColourProfile::profileClass), 6);
    EXPECT_EQ(slotOf(&ORN::ColourProfile::displayName), 7);
    EXPECT_EQ(slotOf(&ORN::ColourProfile::fullDescription), 8);
    EXPECT_EQ(slotOf(&ORN::ColourProfile::data), 9);
    EXPECT_EQ(slotOf(&ORN::ColourProfile::handle), 10);
    EXPECT_EQ(slotOf(&ORN::ColourTransform::handle), 4);
    EXPECT_EQ(sizeof(ORN::ColourProfile), sizeof(ORN::Handlable));
    EXPECT_EQ(sizeof(ORN::ColourTransform), sizeof(ORN::Handlable));
}

TEST(Slots, TextStreamsAndParsers) {
    EXPECT_EQ(slotOf(&ORN::TextReader::readLine), 2);
    EXPECT_EQ(slotOf(&ORN::TextReader::close), 3);
    EXPECT_EQ(slotOf(&ORN::TextWriter::write), 2);
    EXPECT_EQ(slotOf(&ORN::TextWriter::writeLine), 3);
    EXPECT_EQ(slotOf(&ORN::TextWriter::flush), 4);
    EXPECT_EQ(slotOf(&ORN::TextWriter::close), 5);
    EXPECT_EQ(slotOf(&ORN::RawReader::name), 2);
    EXPECT_EQ(slotOf(&ORN::RawReader::read), 3);
    EXPECT_EQ(slotOf(&ORN::RawWriter::name), 2);
    EXPECT_EQ(slotOf(&ORN::RawWriter::write), 3);
    EXPECT_EQ(slotOf(&ORN::RawWriter::flush), 4);
    EXPECT_EQ(slotOf(&ORN::RawFileReader::name), 2);
    EXPECT_EQ(slotOf(&ORN::RawFileReader::read), 3);
    EXPECT_EQ(slotOf(&ORN::RawFileReader::seek), 4);
    EXPECT_EQ(slotOf(&ORN::RawFileReader::close), 5);
    EXPECT_EQ(slotOf(&ORN::RawFileWriter::name), 2);
    EXPECT_EQ(slotOf(&ORN::CSVParser::missingColumns), 2);
    EXPECT_EQ(slotOf(&ORN::CSVParser::parse), 3);
}

ORN_EXPOSE(OnThreadStart, void (ORN::Threading::SchedulerBase::*)(), ORN::Threading::SchedulerBase::onThreadStart)
ORN_EXPOSE(OnThreadExit, void (ORN::Threading::SchedulerBase::*)(), ORN::Threading::SchedulerBase::onThreadExit)
ORN_EXPOSE(ProcessTasks, void (ORN::Threading::SchedulerBase::*)(), ORN::Threading::SchedulerBase::processTasks)
ORN_EXPOSE(EraseWholeQueue, void (ORN::Threading::SchedulerBase::*)(), ORN::Threading::SchedulerBase::eraseWholeQueue)
ORN_EXPOSE(ThreadName, char const* (ORN::Threading::SchedulerBase::*)() const,
           ORN::Threading::SchedulerBase::threadName)
ORN_EXPOSE(TaskInProgress, ORN::Threading::TaskBase* (ORN::Threading::SchedulerBase::*)() const,
           ORN::Threading::SchedulerBase::taskInProgress)
ORN_EXPOSE(EraseFromQueue, void (ORN::Threading::Scheduler<HWND>::*)(HWND const&),
           ORN::Threading::Scheduler<HWND>::eraseFromQueue)

TEST(Slots, Schedulers) {
    EXPECT_EQ(slotOf(exposed(OnThreadStart{})), 2);
    EXPECT_EQ(slotOf(exposed(OnThreadExit{})), 3);
    EXPECT_EQ(slotOf(exposed(ProcessTasks{})), 4);
    EXPECT_EQ(slotOf(exposed(EraseWholeQueue{})), 5);
    EXPECT_EQ(slotOf(exposed(ThreadName{})), 6);
    EXPECT_EQ(slotOf(exposed(TaskInProgress{})), 7);
    EXPECT_EQ(slotOf(exposed(EraseFromQueue{})), 8);
    EXPECT_EQ(slotOf(&ORN::Threading::TaskBase::abort), 0);
    EXPECT_EQ(slotOf(&ORN::Threading::Task<HWND>::key), 3);
}

TEST(Layout, SharedObjectsAndLocks) {
    EXPECT_EQ(sizeof(ORN::Handle<ORN::Handlable>), sizeof(void*));
    EXPECT_EQ(sizeof(ORN::Handlable), 2 * sizeof(void*));
    EXPECT_EQ(sizeof(Quark), sizeof(void*));
    EXPECT_EQ(sizeof(Identifier), 4u);
    EXPECT_EQ(sizeof(Identifier::PODTYPE), 4u);
    EXPECT_EQ(sizeof(ExclusiveLock), 2 * sizeof(void*));
    EXPECT_EQ(sizeof(ORN::CollectionBase), 7 * sizeof(void*));
    EXPECT_EQ(sizeof(ORN::WerRegisteredMemoryBlock), sizeof(void*));
}

ORN_EXPOSE(ListInsert, void (EVSubscriptionList<int>::*)(EVSubscription<int>*), EVSubscriptionList<int>::insert)
ORN_EXPOSE(ListErase, void (EVSubscriptionList<int>::*)(EVSubscription<int>*), EVSubscriptionList<int>::erase)
ORN_EXPOSE(TableIntern, wchar_t const* (QuarkTable::*)(wchar_t const*), QuarkTable::intern)

TEST(Slots, SharedObjectsAndEvents) {
    EXPECT_EQ(slotOf(&ORN::IHandlable::adref), 0);
    EXPECT_EQ(slotOf(&ORN::IHandlable::deref), 1);
    EXPECT_EQ(slotOf(static_cast<void (EVSubscriptionList<int>::*)(int)>(&EVSubscriptionList<int>::notify)), 4);
    EXPECT_EQ(slotOf(exposed(ListInsert{})), 5);
    EXPECT_EQ(slotOf(exposed(ListErase{})), 6);
    EXPECT_EQ(slotOf(exposed(TableIntern{})), 0);
}

}
