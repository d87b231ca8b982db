/// What the library's own text writers can do beyond their public interface.
#pragma once

#include "orn/text/TextWriter.h"

#include <string>

namespace ORN {

/// Every writer that TextWriter::create makes.
class WholeTextWriter : public TextWriter {
public:
    /// As write, but takes nothing of a text with a character that cannot be written.
    virtual void writeWhole(std::wstring const& text) = 0;
};

}
