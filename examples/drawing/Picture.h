/// Picture files.
#pragma once

#include "drawing/Drawing.h"
#include "drawing/Page.h"

#include "orn/colour/DIBitmap.h"

#include <functional>
#include <optional>
#include <string>

namespace drawing {

/// Whether a name ends so (given in lower case), in any case, and has something before it.
bool endsIn(std::wstring const& name, std::wstring const& ending);

enum class Format { png, bmp, svg, pdf };

/// What the ending of a picture's name means, in any case.
std::optional<Format> formatOf(std::wstring const& name);

/// Whether a name has an ending that savePicture knows for a bitmap: .bmp or .png.
bool isBitmapName(std::wstring const& name);

/// Writes a top-down 32-bit bitmap to a file, as a bitmap file or as PNG by the name's ending, as an Output does. When
/// anything fails, what was there is untouched. Throws ORN::OrnError, one line that begins with the name.
void savePicture(DIBitmap const& bitmap, std::wstring const& name);

/// Writes a text into a file, or to standard output; otherwise the same.
void saveText(std::string const& text, std::wstring const& name);

/// Draws the drawing into a file, or into standard output; otherwise the same. Not every system makes PDF. Progress is
/// told for bitmaps, as renderPage does.
void savePicture(Drawing const& drawing, Page const& page, Format format, std::wstring const& name,
                 std::function<void(int perCent)> const& progress = {});

}
