/// The encodings of text files.
#pragma once

namespace ORN {

enum TextEncoding : int {
    encMultibyte,  ///< the system's multibyte code page, without a byte order mark
    encUTF8,       ///< mark EF BB BF
    encUTF16,      ///< the same as encUTF16le
    encUTF16le,    ///< mark FF FE
    encUTF16be     ///< mark FE FF
};

}
