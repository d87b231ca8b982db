/// The encodings of text files.
#pragma once

namespace ORN {

/// How a text is written in bytes. UTF-8 and UTF-16 files begin with their mark.
enum TextEncoding : int {
    encMultibyte,  ///< the system's multibyte code page, without a byte order mark
    encUTF8,       ///< mark EF BB BF
    encUTF16,      ///< the same as encUTF16le
    encUTF16le,    ///< mark FF FE
    encUTF16be     ///< mark FE FF
};

}
