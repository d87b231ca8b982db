/// Walks a text in memory by lines, forwards and backwards, without copying it.
#pragma once

#include "orn/Export.h"

#include <cstddef>
#include <iterator>
#include <string>

/// A position at one line of a text that the caller keeps alive and unchanged. A line end is any number of carriage
/// returns followed by at most one line feed. A line end at the end of the text adds no empty line. The empty text has
/// one line, which is empty.
///
/// Exists for the iterator types char const*, wchar_t const*, std::string::const_iterator,
/// std::wstring::const_iterator.
template <typename I>
class TextLineIterator {
public:
    /// An input iterator that moves in both directions: dereferencing it returns a copy.
    /// @{
    using value_type = std::basic_string<typename std::iterator_traits<I>::value_type>;
    using difference_type = std::ptrdiff_t;
    using reference = value_type;
    using pointer = void;
    using iterator_category = std::input_iterator_tag;
    using iterator_concept = std::bidirectional_iterator_tag;
    /// @}

    TextLineIterator() noexcept;  ///< at the end of no text

    static TextLineIterator begin(I b, I e);  ///< at the first line of [b, e)
    static TextLineIterator end(I b, I e);    ///< past the last one

    value_type operator*() const;  ///< a copy of the line, without its line end

    /// The next line.
    /// @{
    TextLineIterator& operator++();
    TextLineIterator operator++(int);
    /// @}

    /// The previous line; from the first line, an empty line before it.
    /// @{
    TextLineIterator& operator--();
    TextLineIterator operator--(int);
    /// @}

    /// The same line of the same text.
    friend bool operator==(TextLineIterator const& a, TextLineIterator const& b) { return a.eq(b); }

    static I findEOL(I p, I e);      ///< the first CR or LF in [p, e), or e
    static I skipEOL(I p, I e);      ///< behind the line end at p; p if there is none
    static I backFindEOL(I p, I b);  ///< the start of the line that holds p - 1
    static I backSkipEOL(I p, I b);  ///< before the line end that ends at p

private:
    TextLineIterator(I textBegin, I lineBegin, I lineEnd, I textEnd, bool atEnd);

    bool eq(TextLineIterator const& other) const;

    I textBegin_, lineBegin_, lineEnd_, textEnd_;
    bool atEnd_;
};

extern template class ORN_API_DECLARED TextLineIterator<char const*>;
extern template class ORN_API_DECLARED TextLineIterator<wchar_t const*>;
extern template class ORN_API_DECLARED TextLineIterator<std::string::const_iterator>;
extern template class ORN_API_DECLARED TextLineIterator<std::wstring::const_iterator>;
