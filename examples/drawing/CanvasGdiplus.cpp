#include "drawing/Canvas.h"

#include "orn/foundation/Error.h"

#include <new>

#include <windows.h>

#include <objidl.h>

#include <gdiplus.h>

namespace drawing {

namespace {

void check(Gdiplus::Status status, wchar_t const* call) {
    if (status == Gdiplus::Ok) return;
    if (status == Gdiplus::OutOfMemory) throw std::bad_alloc{};
    // Of the other states the system knows no error code.
    throw WinError{call, status == Gdiplus::Win32Error ? GetLastError() : DWORD{ERROR_GEN_FAILURE}};
}

template <typename Interface>
struct Held {
    Interface* pointer = nullptr;
    ~Held() {
        if (pointer != nullptr) pointer->Release();
    }
};

// The encoder that every GDI+ brings along: {557CF406-1A04-11D3-9A73-0000F81EF32E}.
constexpr CLSID pngEncoder{0x557CF406, 0x1A04, 0x11D3, {0x9A, 0x73, 0x00, 0x00, 0xF8, 0x1E, 0xF3, 0x2E}};

}

std::unique_ptr<Canvas> pdfCanvas(ORN::RawWriter&, int, int, Colour const&) {
    throw ORN::OrnError{L"PDF is not written on this system (SVG is)"};
}

std::vector<unsigned char> pngFile(DIBitmap const& bitmap) {
    BITMAPINFOHEADER const& header = bitmap.header()->bmiHeader;
    auto* const pixels = const_cast<unsigned char*>(bitmap.bits());  // only read
    // The image copies nothing. The height is negative in the header of a top-down bitmap.
    Gdiplus::Bitmap image{header.biWidth, -header.biHeight, header.biWidth * 4, PixelFormat32bppRGB, pixels};
    check(image.GetLastStatus(), L"Bitmap");

    Held<IStream> stream;
    // TRUE: the stream frees the memory when it is released, so the bytes are copied below.
    HRESULT const made = CreateStreamOnHGlobal(nullptr, TRUE, &stream.pointer);
    if (made < 0) throw WinError{L"CreateStreamOnHGlobal", made, nullptr};
    check(image.Save(stream.pointer, &pngEncoder, nullptr), L"Save");

    // The memory may be larger than the file in it: only the stream knows the length.
    STATSTG state{};
    HRESULT const told = stream.pointer->Stat(&state, STATFLAG_NONAME);
    if (told < 0) throw WinError{L"Stat", told, nullptr};
    HGLOBAL memory = nullptr;
    HRESULT const got = GetHGlobalFromStream(stream.pointer, &memory);
    if (got < 0) throw WinError{L"GetHGlobalFromStream", got, nullptr};
    auto const* const bytes = static_cast<unsigned char const*>(GlobalLock(memory));
    if (bytes == nullptr) throw WinError{L"GlobalLock", GetLastError()};
    std::vector<unsigned char> file(bytes, bytes + state.cbSize.QuadPart);
    GlobalUnlock(memory);
    return file;
}

}
