#include "module/console/SettingsArchive.h"

#include "module/console/SettingsFormat.h"

#include <array>
#include <concepts>
#include <filesystem>
#include <system_error>
#include <type_traits>

namespace {

bool SeekTo(std::FILE* file, std::uint64_t position) {
#if defined(_WIN32)
    return _fseeki64(file, static_cast<long long>(position), SEEK_SET) == 0;
#else
    return fseeko(file, static_cast<off_t>(position), SEEK_SET) == 0;
#endif
}

template <std::unsigned_integral T>
T FromLittleEndian(std::span<const std::byte, sizeof(T)> bytes) {
    T value = 0;
    for (std::size_t i = sizeof(T); i-- > 0;)
        value = static_cast<T>((static_cast<std::uint64_t>(value) << 8) | std::to_integer<std::uint64_t>(bytes[i]));
    return value;
}

void AppendUtf8(std::string& out, char32_t c) {
    const auto byte = [&out](char32_t bits) { out.push_back(static_cast<char>(bits)); };
    const auto tail = [&byte](char32_t bits) { byte(0x80 | (bits & 0x3F)); };
    if (c < 0x80) {
        byte(c);
    } else if (c < 0x800) {
        byte(0xC0 | (c >> 6));
        tail(c);
    } else if (c < 0x10000) {
        byte(0xE0 | (c >> 12));
        tail(c >> 6);
        tail(c);
    } else {
        byte(0xF0 | (c >> 18));
        tail(c >> 12);
        tail(c >> 6);
        tail(c);
    }
}

constexpr bool IsHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit < 0xDC00;
}
constexpr bool IsLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit < 0xE000;
}

// UTF-16, low byte first, into the narrow code page. A surrogate without its partner becomes "?".
std::string NarrowFromUtf16(const std::string& bytes) {
    const std::size_t units = bytes.size() / 2;
    const auto unit = [&bytes](std::size_t i) {
        return static_cast<char32_t>(static_cast<unsigned char>(bytes[2 * i])) |
               static_cast<char32_t>(static_cast<unsigned char>(bytes[2 * i + 1])) << 8;
    };
    std::string out;
    for (std::size_t i = 0; i < units; ++i) {
        const char32_t c = unit(i);
        if (IsHighSurrogate(c) && i + 1 < units && IsLowSurrogate(unit(i + 1)))
            AppendUtf8(out, 0x10000 + ((c - 0xD800) << 10) + (unit(++i) - 0xDC00));
        else if (IsHighSurrogate(c) || IsLowSurrogate(c))
            out.push_back('?');
        else
            AppendUtf8(out, c);
    }
    return out;
}

} // namespace

CSettingsArchiveError::CSettingsArchiveError(Cause cause, const std::string& what)
    : std::runtime_error(what), m_cause(cause) {}

CSettingsArchiveError::~CSettingsArchiveError() = default;

bool CSettingsFile::Open(const char* path) {
    // A folder can be opened and a pipe would wait for its writer: neither is a settings file.
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error))
        return false;
    const auto size = std::filesystem::file_size(path, error);
    if (error)
        return false;
    m_file.reset(std::fopen(path, "rb"));
    if (!m_file)
        return false;
    std::setvbuf(m_file.get(), nullptr, _IOFBF, SETTINGS_BUFFER_SIZE);
    m_size = size;
    m_position = 0;
    return true;
}

void CSettingsFile::Seek(std::uint64_t position) {
    m_position = position;
    // Behind the end nothing is read, so the file need not follow there.
    if (GetRemaining() != 0 && !SeekTo(m_file.get(), position))
        throw CSettingsArchiveError(CSettingsArchiveError::Cause::Generic, "settings file: cannot seek");
}

std::size_t CSettingsFile::Read(std::span<std::byte> out) {
    if (GetRemaining() == 0)
        return 0;
    const std::size_t count = std::fread(out.data(), 1, out.size(), m_file.get());
    if (count < out.size() && std::ferror(m_file.get()))
        throw CSettingsArchiveError(CSettingsArchiveError::Cause::Generic, "settings file: cannot read");
    m_position += count;
    return count;
}

bool CSettingsReader::RawBlock(std::span<std::byte> block) {
    return m_file.Read(block) == block.size();
}

bool CSettingsReader::RawU32(std::uint32_t& value) {
    std::array<std::byte, sizeof(value)> bytes;
    if (!RawBlock(bytes))
        return false;
    value = FromLittleEndian<std::uint32_t>(bytes);
    return true;
}

template <class T>
T CSettingsReader::Integer() {
    std::array<std::byte, sizeof(T)> bytes;
    if (!RawBlock(bytes))
        throw CSettingsArchiveError(CSettingsArchiveError::Cause::EndOfFile, "settings file: ends inside a value");
    return static_cast<T>(FromLittleEndian<std::make_unsigned_t<T>>(bytes));
}

void CSettingsReader::U16(std::uint16_t& value) {
    value = Integer<std::uint16_t>();
}
void CSettingsReader::U32(std::uint32_t& value) {
    value = Integer<std::uint32_t>();
}
void CSettingsReader::I32(std::int32_t& value) {
    value = Integer<std::int32_t>();
}
void CSettingsReader::Time(std::int64_t& value) {
    value = Integer<std::int64_t>();
}

void CSettingsReader::Text(std::string& value) {
    const auto first = Integer<std::uint8_t>();
    const auto second = first == SETTINGS_TEXT_LONG ? Integer<std::uint16_t>() : std::uint16_t{0};
    value = second == SETTINGS_TEXT_WIDE ? WideText() : Bytes(TextLength(first, second));
}

std::string CSettingsReader::WideText() {
    const auto first = Integer<std::uint8_t>();
    const auto second = first == SETTINGS_TEXT_LONG ? Integer<std::uint16_t>() : std::uint16_t{0};
    if (second == SETTINGS_TEXT_WIDE)
        throw CSettingsArchiveError(CSettingsArchiveError::Cause::Generic, "settings file: wide text inside wide text");
    return NarrowFromUtf16(Bytes(std::uint64_t{2} * TextLength(first, second)));
}

std::uint32_t CSettingsReader::TextLength(std::uint8_t first, std::uint16_t second) {
    if (first != SETTINGS_TEXT_LONG)
        return first;
    return second != SETTINGS_TEXT_VERY_LONG ? second : Integer<std::uint32_t>();
}

std::string CSettingsReader::Bytes(std::uint64_t size) {
    std::string bytes;
    if (size <= m_file.GetRemaining())
        bytes.resize(static_cast<std::size_t>(size));
    if (bytes.size() != size || !RawBlock(std::as_writable_bytes(std::span(bytes))))
        throw CSettingsArchiveError(CSettingsArchiveError::Cause::EndOfFile, "settings file: ends inside a text");
    return bytes;
}

int CSettingsWriter::GetVersion() const {
    return SETTINGS_VERSION_CURRENT;
}

template <class T>
void CSettingsWriter::Integer(T value) {
    auto bits = static_cast<std::make_unsigned_t<T>>(value);
    for (std::size_t i = 0; i < sizeof(T); ++i)
        m_payload.push_back(static_cast<char>(static_cast<std::uint64_t>(bits) >> (8 * i)));
}

bool CSettingsWriter::RawU32(std::uint32_t& value) {
    Integer(value);
    return true;
}
void CSettingsWriter::U16(std::uint16_t& value) {
    Integer(value);
}
void CSettingsWriter::U32(std::uint32_t& value) {
    Integer(value);
}
void CSettingsWriter::I32(std::int32_t& value) {
    Integer(value);
}
void CSettingsWriter::Time(std::int64_t& value) {
    Integer(value);
}

void CSettingsWriter::Text(std::string& value) {
    if (value.size() < SETTINGS_TEXT_LONG) {
        Integer(static_cast<std::uint8_t>(value.size()));
    } else if (value.size() < SETTINGS_TEXT_WIDE) {
        Integer(SETTINGS_TEXT_LONG);
        Integer(static_cast<std::uint16_t>(value.size()));
    } else {
        Integer(SETTINGS_TEXT_LONG);
        Integer(SETTINGS_TEXT_VERY_LONG);
        Integer(static_cast<std::uint32_t>(value.size()));
    }
    m_payload += value;
}
