#include "orn/diagnosis/TypedPointer.h"

#include <gtest/gtest.h>

namespace Shapes {

struct Shape {
    virtual ~Shape() = default;
    int sides = 0;
};
struct Named {
    virtual ~Named() = default;
};
class Square : public Shape, public Named {};
struct Plain {
    int value;
};
template <typename T>
struct Box {};
struct Construct {};
struct Nonconst {};
struct Größe {};

}

namespace {

std::wstring address(void const* object) {
    std::wostringstream text;
    text << std::hex << reinterpret_cast<std::uintptr_t>(object);
    return text.str();
}

TEST(TypedPointer, NamesTheWholeObjectThroughEveryBase) {
    Shapes::Square const square;
    Shapes::Named const* const second = &square;
    std::wstring const at = L"@" + address(&square), name = L"Shapes::Square";
    ASSERT_NE(static_cast<void const*>(second), static_cast<void const*>(&square));
    EXPECT_EQ(DebugStream::typedPtrA(static_cast<Shapes::Shape const*>(&square)), name + at);
    EXPECT_EQ(DebugStream::typedPtrA(second), name + at);
    EXPECT_EQ(DebugStream::typedPtrRefA(*second), name + at);
    EXPECT_EQ(DebugStream::typedPtrA(typeid(square), &square), name + at);

    std::wostringstream stream;
    DebugStream::debugPtrA(stream, &square);
    DebugStream::debugIdPtrA(stream, &square, 7);
    DebugStream::debugPtrRefA(stream, square);
    DebugStream::debugIdPtrRefA(stream, square, -7);
    EXPECT_EQ(stream.str(), name + at + name + L"#7" + at + name + at + name + L"#-7" + at);
}

TEST(TypedPointer, ShowsNumbersNullsAndTypesWithoutVirtualFunctions) {
    Shapes::Plain const plain{1};
    EXPECT_EQ(DebugStream::typedIdPtrA(&plain, 42), L"Shapes::Plain#42@" + address(&plain));
    EXPECT_EQ(DebugStream::typedIdPtrRefA(plain, std::numeric_limits<std::int64_t>::min()),
              L"Shapes::Plain#-9223372036854775808@" + address(&plain));
    EXPECT_EQ(DebugStream::typedPtrA(static_cast<Shapes::Shape*>(nullptr)), L"Shapes::Shape@0");
    EXPECT_EQ(DebugStream::typedIdPtrA(static_cast<int const volatile*>(nullptr), 0), L"int#0@0");
}

TEST(TypedPointer, CleansTheNameOfWholeWordsOnly) {
    void const* const nothing = nullptr;
    // The compiler's own text has "const " inside: a pointer to a function that takes a const member of a template.
    std::wstring const name = DebugStream::typedPtrA(typeid(Shapes::Box<void (Shapes::Plain::*)() const>), nothing);
    for (wchar_t const* word : {L"class ", L"struct ", L"const ", L"volatile "})
        EXPECT_EQ(name.find(word), std::wstring::npos) << word;
    EXPECT_EQ(name.find(L"Shapes::Box<"), 0u);
    std::wstring const inner = DebugStream::typedPtrA(typeid(Shapes::Box<Shapes::Nonconst volatile*>), nothing);
    EXPECT_NE(inner.find(L"Shapes::Nonconst "), std::wstring::npos) << inner.c_str();
    EXPECT_EQ(DebugStream::typedPtrA(typeid(Shapes::Construct const volatile), nothing), L"Shapes::Construct@0");
    EXPECT_EQ(DebugStream::typedPtrA(typeid(Shapes::Größe), nothing), L"Shapes::Gr\u00f6\u00dfe@0");
}

}
