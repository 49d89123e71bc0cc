#pragma once

#include "error.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

namespace jet {

using ByteView = std::span<const std::uint8_t>;
using ByteSpan = std::span<std::uint8_t>;

/// Bytes that belong to a page, read as little-endian fields. Every access is checked; one outside the bytes
/// throws Corrupt with the page and the offset.
class View {
  public:
    View(std::uint32_t page, ByteView bytes, std::size_t base = 0)
        : m_page(page), m_base(base), m_bytes(bytes) {}

    [[nodiscard]] std::uint32_t page() const { return m_page; }
    [[nodiscard]] std::size_t size() const { return m_bytes.size(); }
    [[nodiscard]] ByteView bytes() const { return m_bytes; }

    [[nodiscard]] std::uint8_t u8(std::size_t at) const {
        need(at, 1);
        return m_bytes[at];
    }
    [[nodiscard]] std::uint16_t u16(std::size_t at) const {
        need(at, 2);
        return static_cast<std::uint16_t>(m_bytes[at] | m_bytes[at + 1] << 8);
    }
    [[nodiscard]] std::uint32_t u24(std::size_t at) const {
        need(at, 3);
        return m_bytes[at] | std::uint32_t{m_bytes[at + 1]} << 8 | std::uint32_t{m_bytes[at + 2]} << 16;
    }
    [[nodiscard]] std::uint32_t u32(std::size_t at) const {
        need(at, 4);
        return m_bytes[at] | std::uint32_t{m_bytes[at + 1]} << 8 | std::uint32_t{m_bytes[at + 2]} << 16 |
               std::uint32_t{m_bytes[at + 3]} << 24;
    }
    [[nodiscard]] ByteView bytes(std::size_t at, std::size_t length) const {
        need(at, length);
        return m_bytes.subspan(at, length);
    }
    [[nodiscard]] View part(std::size_t at, std::size_t length) const {
        return {m_page, bytes(at, length), m_base + at};
    }
    [[noreturn]] void fail(std::size_t at, const char* what) const {
        throw Error::corrupt(m_page, static_cast<std::uint32_t>(m_base + at), what);
    }

  private:
    void need(std::size_t at, std::size_t length) const {
        if (at > m_bytes.size() || length > m_bytes.size() - at) [[unlikely]]
            fail(at, "a field lies outside");
    }

    std::uint32_t m_page;
    std::size_t m_base; ///< where the bytes start in the page, for messages
    ByteView m_bytes;
};

/// The same bytes, to be changed. Writing outside them throws Corrupt too: the place came from the file.
class Edit : public View {
  public:
    Edit(std::uint32_t page, ByteSpan bytes) : View(page, bytes), m_bytes(bytes) {}

    void set8(std::size_t at, std::uint8_t value) { put(at, value, 1); }
    void set16(std::size_t at, std::size_t value) { put(at, value, 2); }
    void set24(std::size_t at, std::uint32_t value) { put(at, value, 3); }
    void set32(std::size_t at, std::uint32_t value) { put(at, value, 4); }
    void setBytes(std::size_t at, ByteView from) {
        if (!from.empty()) std::memcpy(room(at, from.size()).data(), from.data(), from.size());
    }
    void fill(std::size_t at, std::size_t length, std::uint8_t value) {
        if (length != 0) std::memset(room(at, length).data(), value, length);
    }
    /// Moves bytes within; the ranges may overlap.
    void move(std::size_t from, std::size_t to, std::size_t length) {
        if (length != 0) std::memmove(room(to, length).data(), bytes(from, length).data(), length);
    }
    [[nodiscard]] ByteSpan room(std::size_t at, std::size_t length) {
        (void)bytes(at, length);
        return m_bytes.subspan(at, length);
    }

  private:
    void put(std::size_t at, std::size_t value, std::size_t length) {
        ByteSpan to = room(at, length);
        for (std::size_t i = 0; i < length; ++i)
            to[i] = static_cast<std::uint8_t>(value >> (8 * i));
    }

    ByteSpan m_bytes;
};

/// Fills `to` with a little-endian number.
inline void storeLittle(ByteSpan to, std::uint64_t value) {
    for (std::size_t i = 0; i < to.size(); ++i)
        to[i] = static_cast<std::uint8_t>(value >> (8 * i));
}

/// Appends little-endian fields to a growing string of bytes.
inline void put8(std::vector<std::uint8_t>& out, std::size_t value) {
    out.push_back(static_cast<std::uint8_t>(value));
}
inline void put16(std::vector<std::uint8_t>& out, std::size_t value) {
    put8(out, value & 0xFF);
    put8(out, value >> 8 & 0xFF);
}
inline void put32(std::vector<std::uint8_t>& out, std::uint32_t value) {
    put16(out, value & 0xFFFF);
    put16(out, value >> 16);
}
inline void putBytes(std::vector<std::uint8_t>& out, ByteView bytes) {
    out.insert(out.end(), bytes.begin(), bytes.end());
}

} // namespace jet
