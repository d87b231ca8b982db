#include "orn/orn.h"

#include <iostream>

int main() {
    // A colour keeps the model it is made in and computes the others when they are asked for.
    auto orange = Colour::rgb(1, 0.5, 0);
    std::wcout << L"hue " << orange.h_hsv() << L", saturation " << orange.s_hsv() << L", value " << orange.v_hsv()
               << L"; lightness " << orange.l_hls() << L'\n';
    std::wcout << Colour::hsva(Angle{}, 1, 1, 0.5) << L' '
               << stringPrintf(L"%08x\n", static_cast<unsigned int>(orange.colorref()));

    // Nothing is clamped: what is to go to a device is brought into range before.
    unsigned char pixel[3];
    Colour::rgb(1.2, 1, 0).getDib24(pixel);
    std::wcout << L"1.2 becomes " << pixel[2] << L'\n';

    // A bitmap in memory is the whole file.
    DIBitmap bitmap{2, 2, 24, 0};
    for (unsigned int i = 0; i < bitmap.bitsSize(); ++i) bitmap.bits()[i] = 0xFF;
    orange.getDib24(bitmap.bits());
    std::wcout << bitmap.bitsSize() << L" bytes of rows in " << bitmap.fileSize() << L" bytes of file\n";
}
