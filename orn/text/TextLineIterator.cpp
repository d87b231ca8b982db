#include "orn/text/TextLineIterator.h"

namespace {

// A line ends with any number of CR and at most one LF behind them, so that the CR CR LF of a file converted twice is one
// line end.
template <typename Unit>
bool isReturn(Unit unit) {
    return unit == Unit{13};
}
template <typename Unit>
bool isFeed(Unit unit) {
    return unit == Unit{10};
}
template <typename Unit>
bool isEOL(Unit unit) {
    return isReturn(unit) || isFeed(unit);
}

}

template <typename I>
TextLineIterator<I>::TextLineIterator() noexcept : textBegin_{}, lineBegin_{}, lineEnd_{}, textEnd_{}, atEnd_{true} {}

template <typename I>
TextLineIterator<I>::TextLineIterator(I textBegin, I lineBegin, I lineEnd, I textEnd, bool atEnd)
    : textBegin_{textBegin}, lineBegin_{lineBegin}, lineEnd_{lineEnd}, textEnd_{textEnd}, atEnd_{atEnd} {}

// Even an empty text has a line, which is empty.
template <typename I>
TextLineIterator<I> TextLineIterator<I>::begin(I b, I e) {
    return {b, b, findEOL(b, e), e, false};
}

template <typename I>
TextLineIterator<I> TextLineIterator<I>::end(I b, I e) {
    return {b, e, e, e, true};
}

template <typename I>
typename TextLineIterator<I>::value_type TextLineIterator<I>::operator*() const {
    return {lineBegin_, lineEnd_};
}

template <typename I>
TextLineIterator<I>& TextLineIterator<I>::operator++() {
    // A line end that ends the text begins no line behind it.
    lineBegin_ = skipEOL(lineEnd_, textEnd_);
    atEnd_ = lineBegin_ == textEnd_;
    lineEnd_ = findEOL(lineBegin_, textEnd_);
    return *this;
}

template <typename I>
TextLineIterator<I> TextLineIterator<I>::operator++(int) {
    TextLineIterator const before = *this;
    ++*this;
    return before;
}

template <typename I>
TextLineIterator<I>& TextLineIterator<I>::operator--() {
    lineEnd_ = backSkipEOL(lineBegin_, textBegin_);
    lineBegin_ = backFindEOL(lineEnd_, textBegin_);
    atEnd_ = false;
    return *this;
}

template <typename I>
TextLineIterator<I> TextLineIterator<I>::operator--(int) {
    TextLineIterator const before = *this;
    --*this;
    return before;
}

template <typename I>
I TextLineIterator<I>::findEOL(I p, I e) {
    while (p != e && !isEOL(*p)) ++p;
    return p;
}

template <typename I>
I TextLineIterator<I>::skipEOL(I p, I e) {
    while (p != e && isReturn(*p)) ++p;
    if (p != e && isFeed(*p)) ++p;
    return p;
}

// The two below take the same line ends as the two above, from their other side.
template <typename I>
I TextLineIterator<I>::backFindEOL(I p, I b) {
    while (p != b && !isEOL(p[-1])) --p;
    return p;
}

template <typename I>
I TextLineIterator<I>::backSkipEOL(I p, I b) {
    if (p != b && isFeed(p[-1])) --p;
    while (p != b && isReturn(p[-1])) --p;
    return p;
}

// In an empty text the first line and the end have the same place: the flag tells them apart.
template <typename I>
bool TextLineIterator<I>::eq(TextLineIterator const& other) const {
    return atEnd_ == other.atEnd_ && lineBegin_ == other.lineBegin_;
}

// The only ones: programs find the members of no other iterator in the library.
template class ORN_API_DEFINED TextLineIterator<char const*>;
template class ORN_API_DEFINED TextLineIterator<wchar_t const*>;
template class ORN_API_DEFINED TextLineIterator<std::string::const_iterator>;
template class ORN_API_DEFINED TextLineIterator<std::wstring::const_iterator>;
