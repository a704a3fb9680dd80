#include "host/Output.h"

#include "base/FileDescriptor.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

void OccupyStandardStreams() {
    for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
        // The lowest free number is the stream's own. Output there fails instead of vanishing.
        if (fcntl(stream, F_GETFD) < 0 && open("/dev/null", O_RDONLY) < 0)
            return;
    }
}

void PutText(std::FILE* stream, std::string_view text) {
    if (stream == stderr) // what was printed before a failure stands before it
        std::fflush(stdout);
    static_cast<void>(std::fwrite(text.data(), 1, text.size(), stream));
}

bool FlushOutput(std::string& error) {
    errno = 0;
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0)
        return true;
    error = errno != 0 ? ErrnoText("standard output", "cannot be written") : "standard output: cannot be written";
    return false;
}
