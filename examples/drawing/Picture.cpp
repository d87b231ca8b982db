#include "drawing/Picture.h"

#include "drawing/Canvas.h"
#include "drawing/Output.h"
#include "drawing/Render.h"
#include "drawing/Svg.h"

#include "orn/foundation/Error.h"
#include "orn/text/Strings.h"

#include <functional>

namespace drawing {

namespace {

void writeBitmap(DIBitmap const& bitmap, Format format, ORN::RawWriter& file) {
    if (format == Format::png) {
        std::vector<unsigned char> const png = pngFile(bitmap);
        file.write(png.data(), png.size());
    } else {
        file.write(bitmap.fileData(), bitmap.fileSize());
    }
}

/// When `write` or finish() throws, the destructor of the output removes the unfinished file.
void save(std::wstring const& name, std::function<void(ORN::RawWriter&)> const& write) {
    try {
        Output file{name};
        write(file);
        file.finish();
    } catch (ORN::OrnError const& error) {
        // Messages about standard output name it themselves.
        throw ORN::OrnError{(name == L"-" ? L"" : name + L": ") + error.wWhat()};
    }
}

}

bool endsIn(std::wstring const& name, std::wstring const& ending) {
    // Only A to Z change, unit by unit: both texts keep their lengths.
    return name.size() > ending.size() && simpleLowercase(name.substr(name.size() - ending.size())) == ending;
}

std::optional<Format> formatOf(std::wstring const& name) {
    if (endsIn(name, L".png")) return Format::png;
    if (endsIn(name, L".bmp")) return Format::bmp;
    if (endsIn(name, L".svg")) return Format::svg;
    if (endsIn(name, L".pdf")) return Format::pdf;
    return {};
}

bool isBitmapName(std::wstring const& name) {
    std::optional<Format> const format = formatOf(name);
    return format == Format::png || format == Format::bmp;
}

void savePicture(DIBitmap const& bitmap, std::wstring const& name) {
    // The caller gives names that isBitmapName accepts, and these have a format.
    save(name, [&](ORN::RawWriter& file) { writeBitmap(bitmap, *formatOf(name), file); });
}

void saveText(std::string const& text, std::wstring const& name) {
    save(name, [&](ORN::RawWriter& file) { file.write(text.data(), text.size()); });
}

void savePicture(Drawing const& drawing, Page const& page, Format format, std::wstring const& name,
                 std::function<void(int perCent)> const& progress) {
    save(name, [&](ORN::RawWriter& file) {
        switch (format) {
            case Format::svg: return writeSvg(drawing, page, file);
            case Format::pdf: return writePdf(drawing, page, file);
            default: writeBitmap(renderPage(drawing, page, progress), format, file);
        }
    });
}

}
