#include "network/rpc/xdrFields.h"

#include <netinet/in.h>

#include <algorithm>
#include <bit>
#include <cstring>

namespace rpc {

namespace {

/// Characters converted at a time; the loops over one piece have a fixed length, so that the
/// compiler turns them into vector instructions.
constexpr std::size_t pieceSize = 16;

constexpr unsigned int bytesOf(std::size_t characters) {
    return static_cast<unsigned int>(characters * BYTES_PER_XDR_UNIT);
}

/// A character is widened as the architecture widens a char, with or without its sign.
void widen(std::int32_t* units, const char* text) {
    std::uint32_t piece[pieceSize];
    for (std::size_t i = 0; i < pieceSize; ++i) {
        const auto unit = static_cast<std::uint32_t>(static_cast<std::int32_t>(text[i]));
        // The upper three bytes are alike, so that a rotation brings the bytes into network order.
        // Unlike a byte swap, it has vector instructions everywhere.
        piece[i] = std::endian::native == std::endian::little ? std::rotr(unit, 8) : unit;
    }
    std::memcpy(units, piece, sizeof piece);
}

/// Of a unit, the low byte is the character.
void narrow(char* text, const std::int32_t* units) {
    std::uint32_t piece[pieceSize];
    std::memcpy(piece, units, sizeof piece);
    for (std::size_t i = 0; i < pieceSize; ++i) {
        const std::uint32_t lowByte =
            std::endian::native == std::endian::little ? piece[i] >> 24 : piece[i] & 0xff;
        text[i] = static_cast<char>(static_cast<unsigned char>(lowByte));
    }
}

void convert(XDR* xdrs, std::int32_t* units, char* text, std::size_t count) {
    const bool encoding = xdrs->x_op == XDR_ENCODE;
    for (; count >= pieceSize; count -= pieceSize, text += pieceSize, units += pieceSize) {
        if (encoding) {
            widen(units, text);
        } else {
            narrow(text, units);
        }
    }
    for (; count > 0; --count, ++text, ++units) {
        if (encoding) {
            putUnit(units, static_cast<std::uint32_t>(static_cast<std::int32_t>(*text)));
        } else {
            *text = static_cast<char>(static_cast<unsigned char>(getUnit(units)));
        }
    }
}

bool_t xdrOneByOne(XDR* xdrs, char* text, std::size_t count) {
    return std::all_of(text, text + count,
                       [xdrs](char& character) { return xdr_char(xdrs, &character) != FALSE; })
               ? TRUE
               : FALSE;
}

/// Converts characters if the stream gives an inline buffer for all of them.
bool convertInline(XDR* xdrs, char* text, std::size_t count) {
    std::int32_t* const units = XDR_INLINE(xdrs, bytesOf(count));
    if (units == nullptr) {
        return false;
    }
    convert(xdrs, units, text, count);
    return true;
}

}  // namespace

void putUnit(std::int32_t* place, std::uint32_t unit) {
    const std::uint32_t bytes = htonl(unit);
    std::memcpy(place, &bytes, sizeof bytes);
}

std::uint32_t getUnit(const std::int32_t* place) {
    std::uint32_t bytes;
    std::memcpy(&bytes, place, sizeof bytes);
    return ntohl(bytes);
}

bool_t xdrCharacters(XDR* xdrs, char* text, std::size_t count) {
    if (xdrs->x_op == XDR_FREE || convertInline(xdrs, text, count)) {
        return TRUE;
    }
    // The stream's buffer ends within the array. A piece that crosses the end goes unit by unit,
    // which makes the stream flush or refill its buffer.
    while (count > 0) {
        const std::size_t piece = std::min(count, pieceSize);
        if (!convertInline(xdrs, text, piece) && !xdrOneByOne(xdrs, text, piece)) {
            return FALSE;
        }
        text += piece;
        count -= piece;
    }
    return TRUE;
}

bool_t xdrText(XDR* xdrs, char*& text) {
    if (xdrs->x_op == XDR_ENCODE && text == nullptr) {
        return FALSE;
    }
    const bool isCallers = holdsText(text);
    const bool_t done = xdr_string(xdrs, &text, UINT_MAX);
    if (xdrs->x_op != XDR_DECODE) {
        return done;
    }
    if (!done && !isCallers) {
        release(text);
    }
    // The length 2^32-1 leaves no room for a terminator; a library that lets it pass allocates no
    // text.
    return done && text != nullptr ? TRUE : FALSE;
}

}  // namespace rpc
