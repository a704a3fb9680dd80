#include "host/bacnet/FileTransfer.h"

#include "base/DurableFile.h"
#include "host/bacnet/HexText.h"

#include <nlohmann/json.hpp>

#include <optional>
#include <vector>

using Json = nlohmann::ordered_json;

namespace {

constexpr std::uint64_t LARGEST_FILE = 0x7FFFFFFF; // positions are 32 bits with a sign (clause 14)

ControlReply Failed(std::string error) {
    return {EXIT_FAILED, std::move(error), {}};
}

// A device's file, step by step. A step that fails leaves its reply in Failure().
class CDeviceFile {
public:
    CDeviceFile(const FileTransfer& transfer, const AskStep& ask) : m_transfer(transfer), m_ask(ask) {}

    bool Describe() {
        const auto result = Ask("describe", {});
        if (!result)
            return false;
        m_isRecords = result->value("records", false);
        m_size = result->value("size", std::uint64_t{0});
        m_chunk = result->value("chunk", std::uint64_t{1});
        return true;
    }

    // The next pieces: octets, or one record each. isEnd: there is no more behind them.
    bool Read(std::uint64_t start, std::vector<std::string>& pieces, bool& isEnd) {
        auto arguments = At(start);
        arguments["count"] = std::to_string(m_isRecords ? 1 : m_chunk);
        const auto result = Ask("read-chunk", std::move(arguments));
        if (!result)
            return false;
        isEnd = result->value("end", true);
        pieces.clear();
        for (const Json& text : result->value("data", Json::array())) {
            if (!text.is_string() || !ParseHex(text.get<std::string>(), pieces.emplace_back()))
                return Fail(Failed("the instance gave an answer that cannot be read"));
        }
        return true;
    }

    bool Write(std::uint64_t start, std::string_view piece) {
        auto arguments = At(start);
        arguments["data"] = HexText(piece.data(), piece.size());
        return Ask("write-chunk", std::move(arguments)).has_value();
    }

    // What a longer file had behind its new end goes.
    bool CutOff(std::uint64_t size) {
        if (m_size <= size)
            return true;
        Arguments arguments = OfItsForm();
        arguments["size"] = std::to_string(size);
        return Ask("set-size", std::move(arguments)).has_value();
    }

    bool IsRecords() const { return m_isRecords; }
    std::size_t Chunk() const { return static_cast<std::size_t>(m_chunk); }
    bool Fail(ControlReply reply) {
        m_failure = std::move(reply);
        return false;
    }
    const ControlReply& Failure() const { return m_failure; }

private:
    using Arguments = std::map<std::string, std::string>;

    Arguments OfItsForm() const {
        Arguments arguments;
        if (m_isRecords)
            arguments.emplace("records", "1");
        return arguments;
    }
    Arguments At(std::uint64_t start) const {
        Arguments arguments = OfItsForm();
        arguments["start"] = std::to_string(start);
        return arguments;
    }

    std::optional<Json> Ask(const std::string& step, Arguments arguments) {
        arguments["device"] = m_transfer.device;
        arguments["instance"] = m_transfer.instance;
        ControlReply reply = m_ask({"file " + step, std::move(arguments)});
        Json result = Json::parse(reply.result, nullptr, false);
        if (reply.code == EXIT_DONE && result.is_object())
            return result;
        Fail(reply.code == EXIT_DONE ? Failed("the instance gave an answer that cannot be read") : std::move(reply));
        return std::nullopt;
    }

    const FileTransfer& m_transfer;
    const AskStep& m_ask;
    bool m_isRecords = false;
    std::uint64_t m_size = 0;
    std::uint64_t m_chunk = 1;
    ControlReply m_failure;
};

ControlReply Transferred(const CDeviceFile& file, const FileTransfer& transfer, std::uint64_t octets,
                         std::uint64_t records) {
    Json result{{"path", transfer.path}, {"octets", octets}};
    if (file.IsRecords())
        result["records"] = records;
    return {EXIT_DONE, {}, result.dump(-1, ' ', false, Json::error_handler_t::replace)};
}

// A line is a record.
bool SplitRecords(const std::string& text, std::vector<std::string>& records) {
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        if (!ParseHex(std::string_view(text).substr(begin, end - begin), records.emplace_back()))
            return false;
        begin = end + 1;
    }
    return true;
}

} // namespace

ControlReply GetFile(const FileTransfer& transfer, const AskStep& ask) {
    CDeviceFile file(transfer, ask);
    if (!file.Describe())
        return file.Failure();
    CFileReplacement target(transfer.path, FileAccess::AsBefore);
    std::uint64_t octets = 0;
    std::uint64_t records = 0;
    for (bool isEnd = false; !isEnd && !target.HasFailed();) {
        std::vector<std::string> pieces;
        if (!file.Read(file.IsRecords() ? records : octets, pieces, isEnd))
            return file.Failure();
        const std::uint64_t before = octets + records;
        for (const std::string& piece : pieces) {
            target.Write(file.IsRecords() ? HexText(piece.data(), piece.size()) + "\n" : piece);
            octets += piece.size();
        }
        records += file.IsRecords() ? pieces.size() : 0;
        if (!isEnd && octets + records == before)
            return Failed("the device gives no more of the file, but no end either");
        if (octets > LARGEST_FILE || records > LARGEST_FILE)
            return Failed("the file has no end");
    }
    std::string error;
    if (!target.Commit(&error))
        return Failed(error);
    return Transferred(file, transfer, octets, records);
}

ControlReply PutFile(const FileTransfer& transfer, const AskStep& ask) {
    std::string text;
    std::string error;
    if (ReadWholeFile(transfer.path, LARGEST_FILE, text, &error) != FileRead::Ok)
        return Failed(error);
    CDeviceFile file(transfer, ask);
    if (!file.Describe())
        return file.Failure();
    std::uint64_t octets = 0;
    std::uint64_t written = 0; // records
    if (file.IsRecords()) {
        std::vector<std::string> records;
        if (!SplitRecords(text, records))
            return {EXIT_USAGE, transfer.path + ": is not one record a line, in hexadecimal pairs", {}};
        for (const std::string& record : records) {
            if (!file.Write(written, record))
                return file.Failure();
            ++written;
            octets += record.size();
        }
        if (!file.CutOff(written))
            return file.Failure();
        return Transferred(file, transfer, octets, written);
    }
    while (octets < text.size()) {
        const auto piece = std::string_view(text).substr(octets, file.Chunk());
        if (!file.Write(octets, piece))
            return file.Failure();
        octets += piece.size();
    }
    if (!file.CutOff(octets))
        return file.Failure();
    return Transferred(file, transfer, octets, written);
}
