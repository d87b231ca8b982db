/// Picture files.
#pragma once

#include "drawing/Drawing.h"
#include "drawing/Page.h"

#include "orn/colour/DIBitmap.h"

#include <functional>
#include <optional>
#include <string>

namespace drawing {

/// Whether a name ends with `ending`, which is in lower case, and has something before it. Case does not matter.
bool endsIn(std::wstring const& name, std::wstring const& ending);

enum class Format { png, bmp, svg, pdf };

/// The format that the ending of a picture's name means. Case does not matter.
std::optional<Format> formatOf(std::wstring const& name);

/// Whether a name has an ending that savePicture knows for a bitmap: .bmp or .png.
bool isBitmapName(std::wstring const& name);

/// Writes a top-down 32-bit bitmap to a file, as a bitmap file or as PNG by the name's ending, as an Output does. When
/// anything fails, what was there is untouched. Throws ORN::OrnError, one line that begins with the name.
void savePicture(DIBitmap const& bitmap, std::wstring const& name);

/// Writes a text into a file or to standard output, in the same way.
void saveText(std::string const& text, std::wstring const& name);

/// Draws the drawing into a file or to standard output, in the same way. Windows makes no PDF files. For bitmaps,
/// `progress` is called as renderPage calls it.
void savePicture(Drawing const& drawing, Page const& page, Format format, std::wstring const& name,
                 std::function<void(int perCent)> const& progress = {});

}
