#include "module/console/SettingsStore.h"

#include "module/console/FilterRecord.h"
#include "module/console/SettingsFormat.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <string_view>
#include <utility>

namespace {

// Names the fields of each record in the order of the file, once for both directions: with a CSettingsReader it fills
// the records, with a CSettingsWriter it appends them to a payload.
template <class Archive>
class CExchange {
public:
    explicit CExchange(Archive& archive) : m_archive(archive) {}

    void Record(LogSettings& log) {
        m_archive.U32(log.flags);
        m_archive.U32(log.level);
        m_archive.I32(log.onlineSizeLimit);
        m_archive.I32(log.historicalSizeLimit);
        m_archive.I32(log.historicalSessionLimit);
        m_archive.U32(log.categoryMask);
        m_archive.U32(log.filter);
    }

    void Record(TimeSyncSettings& timeSync) {
        m_archive.RawU32(timeSync.flags);
        m_archive.U32(timeSync.period);
        m_archive.Text(timeSync.masterDevice);
        List(timeSync.devices);
    }

    void Record(HistorySettings& history) {
        m_archive.Text(history.selectedDevice);
        Devices(history.devices);
        Limit(history.startRange);
        Limit(history.endRange);
        m_archive.Text(history.flushTag);
    }

    void Record(GeneralSettings& general) {
        m_archive.RawU32(general.flags);
        NetworkTags(general.networkTags);
        m_archive.Text(general.reserved1);
        m_archive.Text(general.reserved2);
        if (m_archive.GetVersion() >= SETTINGS_VERSION_HELP_FILE_FORMAT)
            m_archive.Text(general.helpFileFormat);
    }

    void Record(BackupSettings& backup) {
        m_archive.U32(backup.enabled);
        m_archive.Text(backup.backupTag);
        List(backup.devices);
        m_archive.Text(backup.folder);
    }

    // The filters are only ever read.
    void Record(std::vector<CEventFilter>& filters) {
        std::uint32_t count = 0;
        m_archive.RawU32(count);
        Items(filters, count);
    }

private:
    void Item(std::string& text) { m_archive.Text(text); }

    void Item(CDeviceSettings& device) {
        m_archive.Text(device.device);
        m_archive.I32(device.definitionMode);
        m_archive.I32(device.limitEnabled);
        m_archive.I32(device.limitKind);
        m_archive.I32(device.limitValue);
        if (m_archive.GetVersion() >= SETTINGS_VERSION_FORCE_2001)
            m_archive.I32(device.force2001);
        List(device.objects);
    }

    void Item(BackupDevice& device) {
        m_archive.U32(device.instance);
        if (m_archive.GetVersion() >= SETTINGS_VERSION_BACKUP_PASSWORD)
            m_archive.Text(device.password);
        if (m_archive.GetVersion() >= SETTINGS_VERSION_RESTORE_TAG)
            m_archive.Text(device.restoreTag);
    }

    void Item(CEventFilter& filter) {
        std::array<std::byte, FILTER_RECORD_SIZE> buffer{};
        const bool isLong = m_archive.GetVersion() >= SETTINGS_VERSION_LONG_ALARM_RECORD;
        const auto record = std::span(buffer).first(isLong ? FILTER_RECORD_SIZE : FILTER_RECORD_SHORT_SIZE);
        if (m_archive.RawBlock(record))
            filter.alarm = ParseFilterRecord(record);
        m_archive.U32(filter.priorityFrom);
        m_archive.U32(filter.priorityTo);
        m_archive.Text(filter.objectNameMask);
        if (m_archive.GetVersion() >= SETTINGS_VERSION_FILTER_SELECTIONS) {
            m_archive.I32(filter.objectType);
            m_archive.I32(filter.eventType);
            m_archive.I32(filter.eventState);
            m_archive.I32(filter.notifyType);
            m_archive.I32(filter.notificationClass);
        }
    }

    void Limit(HistoryTimeLimit& limit) {
        m_archive.U32(limit.indicator);
        m_archive.Time(limit.date);
        m_archive.Time(limit.time);
        m_archive.U32(limit.amount);
    }

    template <class T>
    void List(std::vector<T>& items) {
        auto count = static_cast<std::uint32_t>(items.size());
        m_archive.U32(count);
        Items(items, count);
    }

    // A list that was found is replaced, item by item: a count is never trusted with an allocation.
    template <class T>
    void Items(std::vector<T>& items, std::uint32_t count) {
        if constexpr (Archive::IS_LOADING) {
            items.clear();
            for (; count > 0; --count) {
                T item;
                Item(item);
                items.push_back(std::move(item));
            }
        } else {
            for (T& item : items)
                Item(item);
        }
    }

    // The devices are held by pointer, and one may be null: only real ones are counted and stored.
    void Devices(std::vector<std::unique_ptr<CDeviceSettings>>& devices) {
        std::uint32_t count = 0;
        for (const auto& device : devices)
            count += device != nullptr;
        m_archive.U32(count);
        if constexpr (Archive::IS_LOADING) {
            devices.clear();
            for (; count > 0; --count) {
                auto device = std::make_unique<CDeviceSettings>();
                Item(*device);
                devices.push_back(std::move(device));
            }
        } else {
            for (const auto& device : devices)
                if (device)
                    Item(*device);
        }
    }

    void NetworkTags(std::map<std::uint16_t, std::string>& tags) {
        auto count = static_cast<std::uint32_t>(tags.size());
        if (!m_archive.RawU32(count))
            count = 0;
        if constexpr (Archive::IS_LOADING) {
            tags.clear();
            for (; count > 0; --count) {
                std::uint16_t network = 0;
                std::string tag;
                m_archive.U16(network);
                m_archive.Text(tag);
                tags[network] = std::move(tag);
            }
        } else {
            for (auto& [key, tag] : tags) {
                std::uint16_t network = key;
                m_archive.U16(network);
                m_archive.Text(tag);
            }
        }
    }

    Archive& m_archive;
};

// The number behind "VERSION=" in the file's first bytes, 0 when there is none. What is no number counts as 0.
int ReadVersion(CSettingsFile& file) {
    std::array<char, SETTINGS_HEADER.size() + 1> header{};
    file.Seek(0);
    if (file.Read(std::as_writable_bytes(std::span(header)).first(SETTINGS_HEADER.size())) != SETTINGS_HEADER.size() ||
        std::string_view(header.data(), SETTINGS_VERSION_KEY.size()) != SETTINGS_VERSION_KEY)
        return SETTINGS_NO_HEADER;
    // At most three characters and the NUL stand there, so the number cannot overflow; "08" is eight.
    return static_cast<int>(std::strtol(header.data() + SETTINGS_VERSION_KEY.size(), nullptr, 10));
}

// Moves the file to the payload of the first section of this number. False when there is none.
bool FindSection(CSettingsFile& file, int version, SettingsSection section, std::uint32_t& length) {
    CSettingsReader head(file, version);
    file.Seek(version >= SETTINGS_VERSION_HEADER ? SETTINGS_HEADER.size() : 0);
    std::uint32_t number = 0;
    while (head.RawU32(number) && head.RawU32(length)) {
        if (number == static_cast<std::uint32_t>(section))
            return true;
        file.Seek(file.GetPosition() + length);
    }
    return false;
}

// Reads the section if the file has it. Its length is not used: the fields tell where it ends.
template <class Record>
void LoadSection(CSettingsFile& file, int version, SettingsSection section, Record& record) {
    std::uint32_t length = 0;
    if (!FindSection(file, version, section, length))
        return;
    CSettingsReader archive(file, version);
    CExchange(archive).Record(record);
}

// The log settings are one block: another length, or a file that ends inside it, leaves them as they were.
void LoadLogSection(CSettingsFile& file, int version, LogSettings& log) {
    std::uint32_t length = 0;
    if (!FindSection(file, version, SettingsSection::Log, length) || length != SETTINGS_LOG_SIZE ||
        file.GetRemaining() < SETTINGS_LOG_SIZE)
        return;
    CSettingsReader archive(file, version);
    CExchange(archive).Record(log);
}

[[noreturn]] void ThrowWriteFailure(int error) {
    const auto cause = error == ENOSPC ? CSettingsArchiveError::Cause::DiskFull : CSettingsArchiveError::Cause::Generic;
    throw CSettingsArchiveError(cause, std::string("settings file: cannot write: ") + std::strerror(error));
}

void Write(std::FILE* file, std::string_view bytes) {
    errno = 0;
    if (std::fwrite(bytes.data(), 1, bytes.size(), file) != bytes.size())
        ThrowWriteFailure(errno);
}

template <class Record>
void StoreSection(std::FILE* file, SettingsSection section, Record& record) {
    CSettingsWriter payload;
    CExchange(payload).Record(record);
    CSettingsWriter head;
    auto number = static_cast<std::uint32_t>(section);
    auto length = static_cast<std::uint32_t>(payload.GetPayload().size());
    head.RawU32(number);
    head.RawU32(length);
    Write(file, head.GetPayload());
    Write(file, payload.GetPayload());
}

} // namespace

bool storeAllProp(const char* path, AllPropPages& pages) {
    CFilePtr file(std::fopen(path, "wb"));
    if (!file)
        return false;
    std::setvbuf(file.get(), nullptr, _IOFBF, SETTINGS_BUFFER_SIZE);
    Write(file.get(), SETTINGS_HEADER);
    StoreSection(file.get(), SettingsSection::General, pages.general);
    StoreSection(file.get(), SettingsSection::Log, pages.log);
    StoreSection(file.get(), SettingsSection::TimeSync, pages.timeSync);
    StoreSection(file.get(), SettingsSection::History, pages.history);
    StoreSection(file.get(), SettingsSection::Backup, pages.backup);
    // A full medium may show only here, since small writes stay in the buffer until now.
    errno = 0;
    if (std::fflush(file.get()) != 0 || std::fclose(file.release()) != 0)
        ThrowWriteFailure(errno);
    return true;
}

bool loadAllProps(const char* path, AllPropPages& pages, std::vector<CEventFilter>& filters) {
    CSettingsFile file;
    if (!file.Open(path))
        return false;
    const int version = ReadVersion(file);
    LoadLogSection(file, version, pages.log);
    LoadSection(file, version, SettingsSection::TimeSync, pages.timeSync);
    LoadSection(file, version, SettingsSection::EventFilters, filters);
    LoadSection(file, version, SettingsSection::History, pages.history);
    LoadSection(file, version, SettingsSection::General, pages.general);
    LoadSection(file, version, SettingsSection::Backup, pages.backup);
    return true;
}
