// Files that are read as a whole, and replaced so that a crash of the process or of the machine at any moment leaves
// the former text or the new one, never a part.
//
// Any thread may call these; writers of one path take turns by a lock of their own. Paths are UTF-8; a symbolic link is
// followed, so that the file it names is replaced. error, where it is not null, gets one line for people that names the
// path, when the function fails.
#pragma once

#include "base/FileDescriptor.h"

#include <cstdint>
#include <string>
#include <string_view>

enum class FileRead {
    Ok,
    Missing, // there is no such file
    Failed   // it cannot be read, is no regular file, or is longer than the limit
};

// text is left alone unless the result is Ok. Never waits for the writer of a pipe. limit in bytes.
FileRead ReadWholeFile(const std::string& path, std::uint64_t limit, std::string& text, std::string* error = nullptr);

enum class FileAccess {
    OwnerOnly, // mode 0600, whatever it was before
    AsBefore   // that of the file which is replaced; for a new one what the user's mask gives
};

// A file being replaced: PATH.tmp until it is committed. A failure sticks; what follows it does nothing.
class CFileReplacement {
public:
    CFileReplacement(const std::string& path, FileAccess access);
    ~CFileReplacement(); // removes the temporary file unless it was committed
    CFileReplacement(const CFileReplacement&) = delete;
    CFileReplacement& operator=(const CFileReplacement&) = delete;

    void Write(std::string_view bytes);
    bool HasFailed() const { return !m_error.empty(); }
    // Makes what was written durable and closes it; the path still holds the former file.
    bool Finish();
    // Finishes, and puts it in the place of the file, durably. False: the former file stands as it was, unless only
    // the folder could not be made durable.
    bool Commit(std::string* error = nullptr);

private:
    void Fail(const char* what);

    const std::string m_path; // of the file itself, links resolved
    const std::string m_temporary;
    CFileDescriptor m_file;
    bool m_mustRemove = false;
    bool m_isFinished = false;
    std::string m_error; // of the first failure
};

bool ReplaceWholeFile(const std::string& path, std::string_view text, FileAccess access, std::string* error = nullptr);

// For a file that somebody else wrote: what is in it survives a crash of the machine.
bool MakeDurable(const std::string& path, std::string* error = nullptr);

// Puts such a file in the place of another, and makes the folder durable. Where that is refused both stay as they were.
bool PutInPlace(const std::string& fresh, const std::string& path, std::string* error = nullptr);

// Keeps the file under a second name, in place of what had that name. The file itself stays where it is all the while.
bool KeepGeneration(const std::string& path, const std::string& generation, std::string* error = nullptr);
