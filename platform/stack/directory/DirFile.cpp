#include "platform/stack/directory/DirFile.h"
#include "api/bacnet/Enums.h"
#include "api/bacnet/PropertyValue.h"
#include "base/DurableFile.h"
#include "platform/stack/directory/Crc32.h"
#include "platform/stack/directory/DirValues.h"

#include <algorithm>
#include <mutex>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace bacnet::directory {

using namespace std::string_view_literals;

namespace {

constexpr std::string_view magic = "BACDIR\r\n"sv;
constexpr std::uint32_t fileVersion = 1;
constexpr std::size_t headSize = 12;
constexpr std::size_t tailSize = 12;
constexpr std::uint64_t maxFileSize = std::uint64_t{4} << 30; // some 80 million objects
constexpr std::size_t chunkSize = std::size_t{1} << 20;
constexpr std::size_t smallestObject = 5;     // type, instance, flags, two empty texts
constexpr std::int32_t lowestType = TYPE_RAW; // data types are stored from here on
constexpr std::uint8_t flagCommandable = 1;
constexpr std::uint8_t flagValues = 2;

void PutFixed(std::string& out, std::uint64_t value, int bytes) {
    for (int i = 0; i < bytes; ++i)
        out += static_cast<char>((value >> (8 * i)) & 0xFFU);
}

std::uint64_t GetFixed(std::string_view bytes) {
    std::uint64_t value = 0;
    for (std::size_t i = bytes.size(); i-- > 0;)
        value = (value << 8) | static_cast<unsigned char>(bytes[i]);
    return value;
}

// ---- writing --------------------------------------------------------------------------------------------------------

// Collects the payload and hands it to the file in pieces.
class Payload {
public:
    explicit Payload(CFileReplacement& file) : m_file(file) { m_bytes.reserve(chunkSize + 4096); }

    void Byte(std::uint8_t value) { m_bytes += static_cast<char>(value); }
    void Number(std::uint64_t value) {
        for (; value >= 0x80; value >>= 7)
            m_bytes += static_cast<char>((value & 0x7FU) | 0x80U);
        m_bytes += static_cast<char>(value);
    }
    void Bytes(std::string_view bytes) { m_bytes += bytes; }
    void Text(std::string_view text) {
        Number(text.size());
        Bytes(text);
    }
    void FlushIfFull() {
        if (m_bytes.size() >= chunkSize)
            Flush();
    }
    void Finish() {
        Flush();
        std::string tail;
        PutFixed(tail, m_length, 8);
        PutFixed(tail, m_crc, 4);
        m_file.Write(tail);
    }

private:
    void Flush() {
        m_crc = Crc32(m_bytes, m_crc);
        m_length += m_bytes.size();
        m_file.Write(m_bytes);
        m_bytes.clear();
    }

    CFileReplacement& m_file;
    std::string m_bytes;
    std::uint64_t m_length = 0;
    std::uint32_t m_crc = 0;
};

void PutEntry(Payload& payload, const CBACnetObj& entry) {
    std::vector<std::pair<BACSTAC_PROPERTY_ID, StoredValue>> values;
    if (const auto* const all = entry.GetPropVals()) {
        for (const auto& [property, value] : *all) {
            StoredValue stored;
            if (StoreValue(property, *value, stored))
                values.emplace_back(property, std::move(stored));
        }
    }
    payload.Byte(
        static_cast<std::uint8_t>((entry.IsCommandable() ? flagCommandable : 0) | (values.empty() ? 0 : flagValues)));
    payload.Text(entry.GetName());
    payload.Text(entry.GetDesc());
    if (values.empty())
        return;
    payload.Number(values.size());
    for (const auto& [property, stored] : values) {
        payload.Number(property);
        payload.Number(stored.ObjectType);
        payload.Byte(stored.List ? 1 : 0);
        payload.Number(static_cast<std::uint64_t>(stored.DataType - lowestType));
        payload.Number(static_cast<std::uint64_t>(stored.ElementType - lowestType));
        payload.Text(stored.Encoding);
    }
}

void PutDevice(Payload& payload, const CBACnetDev& device) {
    const BACSTAC_ADDRESS& address = device.GetAddr();
    const std::size_t macLength = std::min<std::size_t>(address.MacLength, sizeof address.Mac);
    payload.Number(device.GetInst());
    payload.Byte(address.Remote);
    payload.Number(address.Network);
    payload.Byte(static_cast<std::uint8_t>(macLength));
    payload.Bytes({reinterpret_cast<const char*>(address.Mac), macLength});
    payload.Number(device.GetVendorId());
    PutEntry(payload, device);
    payload.Number(device.GetObjects().size());
    for (const CBACnetObj& object : device.GetObjects()) {
        payload.Number(object.GetId().Type);
        payload.Number(object.GetId().Instance);
        PutEntry(payload, object);
        payload.FlushIfFull();
    }
}

bool WriteAll(CFileReplacement& file, const Devices& devices) {
    std::string head(magic);
    PutFixed(head, fileVersion, 4);
    file.Write(head);
    Payload payload(file);
    payload.Number(devices.size());
    for (const auto& device : devices)
        PutDevice(payload, *device);
    payload.Finish();
    return file.Finish();
}

// ---- reading --------------------------------------------------------------------------------------------------------

// The payload, read within its bounds; a failure sticks and every later read gives nothing.
class Source {
public:
    explicit Source(std::string_view bytes) : m_left(bytes) {}

    bool Good() const { return m_good; }
    bool AtEnd() const { return m_good && m_left.empty(); }
    std::size_t Left() const { return m_left.size(); }
    void Fail() {
        m_good = false;
        m_left = {};
    }

    std::uint8_t Byte() {
        const std::string_view byte = Bytes(1);
        return byte.empty() ? std::uint8_t{0} : static_cast<std::uint8_t>(byte[0]);
    }
    std::uint64_t Number(std::uint64_t limit) {
        std::uint64_t value = 0;
        for (unsigned shift = 0; shift < 64; shift += 7) {
            const std::uint8_t byte = Byte();
            value |= static_cast<std::uint64_t>(byte & 0x7FU) << shift;
            if ((byte & 0x80U) == 0) {
                if (value > limit)
                    Fail();
                return m_good ? value : 0;
            }
        }
        Fail();
        return 0;
    }
    std::uint32_t Number32() { return static_cast<std::uint32_t>(Number(UINT32_MAX)); }
    std::string_view Bytes(std::size_t count) {
        if (count > m_left.size()) {
            Fail();
            return {};
        }
        const std::string_view bytes = m_left.substr(0, count);
        m_left.remove_prefix(count);
        return bytes;
    }
    std::string_view Text() { return Bytes(static_cast<std::size_t>(Number(m_left.size()))); }

private:
    std::string_view m_left;
    bool m_good = true;
};

void GetValues(Source& source, CBACnetObj& entry) {
    for (std::uint64_t count = source.Number(source.Left()); count > 0 && source.Good(); --count) {
        const std::uint32_t property = source.Number32();
        StoredValue stored;
        stored.ObjectType = source.Number32();
        stored.List = source.Byte() != 0;
        stored.DataType = static_cast<std::int32_t>(source.Number(INT32_MAX)) + lowestType;
        stored.ElementType = static_cast<std::int32_t>(source.Number(INT32_MAX)) + lowestType;
        stored.Encoding = source.Text();
        if (!source.Good())
            return;
        if (auto value = RestoreValue(property, stored)) // one that is not known here spoils nothing else
            entry.SetPropVal(property, value.release());
    }
}

void GetEntry(Source& source, CBACnetObj& entry) {
    const std::uint8_t flags = source.Byte();
    if ((flags & ~(flagCommandable | flagValues)) != 0)
        source.Fail();
    entry.SetCommandable((flags & flagCommandable) != 0);
    entry.SetName(std::string(source.Text()));
    entry.SetDesc(std::string(source.Text()));
    if ((flags & flagValues) != 0)
        GetValues(source, entry);
}

std::shared_ptr<CBACnetDev> GetDevice(Source& source) {
    auto device = std::make_shared<CBACnetDev>();
    BACSTAC_ADDRESS address{};
    device->SetInst(source.Number32());
    address.Remote = source.Byte();
    address.Network = static_cast<std::uint16_t>(source.Number(UINT16_MAX));
    address.MacLength = source.Byte();
    if (address.MacLength > sizeof address.Mac)
        source.Fail();
    const std::string_view mac = source.Bytes(source.Good() ? address.MacLength : 0);
    std::copy(mac.begin(), mac.end(), address.Mac);
    device->SetAddr(address);
    device->SetVendorId(source.Number32());
    GetEntry(source, *device);
    const std::string name = device->GetName();
    const std::string description = device->GetDesc();

    const auto count = static_cast<std::size_t>(source.Number(source.Left() / smallestObject));
    device->Reserve(count);
    BACSTAC_OBJECT_ID last{};
    for (std::size_t i = 0; i < count && source.Good(); ++i) {
        CBACnetObj object;
        const BACSTAC_OBJECT_ID id{source.Number32(), source.Number32()};
        if (i != 0 && id <= last)
            source.Fail();
        last = id;
        object.SetId(id);
        GetEntry(source, object);
        device->AddObj(std::move(object));
    }
    device->SetName(name); // an entry of the device object may differ from the device's own
    device->SetDesc(description);
    return device;
}

// The payload of an intact file of our version, or nothing.
std::string_view CheckedPayload(std::string_view bytes) {
    if (bytes.size() < headSize + tailSize || !bytes.starts_with(magic) ||
        GetFixed(bytes.substr(magic.size(), 4)) != fileVersion)
        return {};
    const std::string_view payload = bytes.substr(headSize, bytes.size() - headSize - tailSize);
    const std::string_view tail = bytes.substr(bytes.size() - tailSize);
    if (GetFixed(tail.substr(0, 8)) != payload.size() || GetFixed(tail.substr(8)) != Crc32(payload))
        return {};
    return payload;
}

bool IsWorthKeeping(const std::string& path) {
    std::string bytes;
    return ReadWholeFile(path, maxFileSize, bytes) == FileRead::Ok && !CheckedPayload(bytes).empty();
}

} // namespace

std::string BackupPath(const std::string& path) {
    return path + ".bak";
}

bool ReadFile(const std::string& path, Devices& devices) {
    std::string bytes;
    if (ReadWholeFile(path, maxFileSize, bytes) != FileRead::Ok)
        return false;
    const std::string_view payload = CheckedPayload(bytes);
    if (payload.empty())
        return false;
    Source source(payload);
    Devices read;
    for (std::uint64_t count = source.Number(source.Left()); count > 0 && source.Good(); --count) {
        auto device = GetDevice(source);
        if (!read.empty() && device->GetInst() <= read.back()->GetInst())
            source.Fail();
        read.push_back(std::move(device));
    }
    if (!source.AtEnd())
        return false;
    devices = std::move(read);
    return true;
}

bool WriteFile(const std::string& path, const Devices& devices) {
    static std::mutex saving; // one temporary file at a time
    const std::lock_guard lock(saving);
    CFileReplacement file(path, FileAccess::AsBefore);
    if (!WriteAll(file, devices))
        return false;
    if (IsWorthKeeping(path))
        KeepGeneration(path, BackupPath(path));
    return file.Commit();
}

} // namespace bacnet::directory
