// Reads and writes the values that a section of the settings file is made of.
//
// CSettingsReader and CSettingsWriter have the same operations, so that one function per record (see SettingsStore.cpp)
// names its fields in their order for both directions. Integers are little-endian. There are two encodings, which
// differ only in what a reader does when the file ends inside a value: a raw value keeps what it held, an archive value
// raises CSettingsArchiveError.
#pragma once

#include "module/console/Export.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <span>
#include <stdexcept>
#include <string>

// The one failure of the console that is an exception: the settings file ended inside a value, or could not be written.
class BDC_API CSettingsArchiveError : public std::runtime_error {
public:
    enum class Cause { EndOfFile, DiskFull, Generic };

    CSettingsArchiveError(Cause cause, const std::string& what);
    ~CSettingsArchiveError() override;

    Cause GetCause() const noexcept { return m_cause; }

private:
    Cause m_cause;
};

struct CFileCloser {
    void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};
using CFilePtr = std::unique_ptr<std::FILE, CFileCloser>;

// A regular file opened for reading. Positions are 64-bit and may lie behind the end.
class CSettingsFile {
public:
    // False when the path cannot be read or names something other than a regular file.
    bool Open(const char* path);

    std::uint64_t GetPosition() const { return m_position; }
    std::uint64_t GetRemaining() const { return m_position < m_size ? m_size - m_position : 0; }
    void Seek(std::uint64_t position);
    // Reads as many of `out`'s bytes as the file has left. Raises CSettingsArchiveError when the medium fails.
    std::size_t Read(std::span<std::byte> out);

private:
    CFilePtr m_file;
    std::uint64_t m_position = 0;
    std::uint64_t m_size = 0;
};

// Reads values at the file's position. Nothing is allocated before the file is known to hold it.
class CSettingsReader {
public:
    static constexpr bool IS_LOADING = true;

    CSettingsReader(CSettingsFile& file, int version) : m_file(file), m_version(version) {}

    int GetVersion() const { return m_version; }

    // Raw values: false, and the value as it was, when the file ends first.
    bool RawU32(std::uint32_t& value);
    bool RawBlock(std::span<std::byte> block);

    // Archive values.
    void U16(std::uint16_t& value);
    void U32(std::uint32_t& value);
    void I32(std::int32_t& value);
    void Time(std::int64_t& value); // seconds since 1970
    void Text(std::string& value);

private:
    template <class T>
    T Integer();
    std::uint32_t TextLength(std::uint8_t first, std::uint16_t second);
    std::string Bytes(std::uint64_t size);
    std::string WideText();

    CSettingsFile& m_file;
    int m_version;
};

// Appends values to a section's payload.
class CSettingsWriter {
public:
    static constexpr bool IS_LOADING = false;

    int GetVersion() const;
    const std::string& GetPayload() const { return m_payload; }

    bool RawU32(std::uint32_t& value);

    void U16(std::uint16_t& value);
    void U32(std::uint32_t& value);
    void I32(std::int32_t& value);
    void Time(std::int64_t& value);
    void Text(std::string& value);

private:
    template <class T>
    void Integer(T value);

    std::string m_payload;
};
