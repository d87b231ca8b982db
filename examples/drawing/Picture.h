/// Picture files.
#pragma once

#include "orn/colour/DIBitmap.h"

#include <string>

namespace drawing {

/// Whether a name ends so (given in lower case), in any case, and has something before it.
bool endsIn(std::wstring const& name, std::wstring const& ending);

/// Whether a picture's name has an ending that savePicture knows: .bmp or .png, in any case.
bool isPictureName(std::wstring const& name);

/// Writes a top-down 32-bit bitmap to a file, as a bitmap file or as PNG by the name's ending. What stood there before
/// is replaced in one step once the new file is complete; when anything fails, it is untouched. Throws ORN::OrnError,
/// one line that begins with the name.
void savePicture(DIBitmap const& bitmap, std::wstring const& name);

}
