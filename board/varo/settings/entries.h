#pragma once

#include "board/varo/varoCodes.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <string>

namespace varo {

// Records that keep a list in the fixed places of an array.

/// The first entry of that kind; null: there is none.
template <class Entry, std::size_t size, class IsKind>
Entry* findEntry(Entry (&entries)[size], IsKind isKind) {
    Entry* const found = std::find_if(std::begin(entries), std::end(entries), isKind);
    return found == std::end(entries) ? nullptr : found;
}

/// The same. Throws Failure of this code and text when there is none.
template <class Entry, std::size_t size, class IsKind>
Entry& requiredEntry(Entry (&entries)[size], IsKind isKind, Code code, const std::string& text) {
    Entry* const found = findEntry(entries, isKind);
    if (found == nullptr) {
        throw Failure(code, text);
    }
    return *found;
}

}  // namespace varo
