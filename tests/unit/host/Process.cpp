#include "tests/unit/host/Process.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>

namespace {

std::vector<char*> Pointers(const std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (const std::string& text : texts)
        pointers.push_back(const_cast<char*>(text.c_str()));
    pointers.push_back(nullptr);
    return pointers;
}

std::vector<std::string> Environment(const std::vector<std::string>& changes) {
    std::vector<std::string> result = changes;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text = *entry;
        const std::string name = text.substr(0, text.find('=') + 1);
        const bool isReplaced = std::any_of(changes.begin(), changes.end(),
                                            [&](const std::string& change) { return change.rfind(name, 0) == 0; });
        if (!isReplaced)
            result.push_back(text);
    }
    return result;
}

void ReadPipe(int& pipe, std::string& text) {
    char block[65536];
    const ssize_t count = read(pipe, block, sizeof block);
    if (count > 0) {
        text.append(block, static_cast<std::size_t>(count));
    } else if (count == 0 || errno != EINTR) {
        close(pipe);
        pipe = -1;
    }
}

} // namespace

std::string BdcPath() {
    return BDC_BINARY_DIR "/bin/bdc";
}

CProcess::CProcess(const std::vector<std::string>& arguments, const std::vector<std::string>& environment) {
    int output[2];
    int errors[2];
    if (pipe2(output, O_CLOEXEC) != 0 || pipe2(errors, O_CLOEXEC) != 0) {
        ADD_FAILURE() << "no pipe";
        return;
    }
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, output[1], STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, errors[1], STDERR_FILENO);
    const std::vector<std::string> variables = Environment(environment);
    const std::vector<char*> words = Pointers(arguments);
    const int result = posix_spawn(&m_id, words.front(), &actions, nullptr, words.data(), Pointers(variables).data());
    EXPECT_EQ(result, 0) << words.front();
    posix_spawn_file_actions_destroy(&actions);
    close(output[1]);
    close(errors[1]);
    m_outputPipe = output[0];
    m_errorPipe = errors[0];
}

CProcess::~CProcess() {
    if (m_code < 0 && m_id > 0) {
        kill(m_id, SIGKILL);
        waitpid(m_id, nullptr, 0);
    }
    for (const int pipe : {m_outputPipe, m_errorPipe}) {
        if (pipe >= 0)
            close(pipe);
    }
}

void CProcess::Signal(int number) const {
    kill(m_id, number);
}

bool CProcess::ReadSome(std::chrono::steady_clock::time_point deadline) {
    if (m_outputPipe < 0 && m_errorPipe < 0)
        return false;
    const auto left =
        std::chrono::duration_cast<std::chrono::milliseconds>(deadline - std::chrono::steady_clock::now()).count();
    pollfd entries[2] = {{m_outputPipe, POLLIN, 0}, {m_errorPipe, POLLIN, 0}};
    if (left <= 0 || poll(entries, 2, static_cast<int>(left)) <= 0)
        return false;
    if (entries[0].revents != 0)
        ReadPipe(m_outputPipe, m_output);
    if (entries[1].revents != 0)
        ReadPipe(m_errorPipe, m_errors);
    return true;
}

bool CProcess::WaitForOutput(const std::string& text, std::chrono::seconds time) {
    const auto deadline = std::chrono::steady_clock::now() + time;
    while (m_output.find(text) == std::string::npos) {
        if (!ReadSome(deadline))
            return false;
    }
    return true;
}

int CProcess::Wait(std::chrono::seconds time) {
    const auto deadline = std::chrono::steady_clock::now() + time;
    while (ReadSome(deadline))
        continue;
    if (m_outputPipe >= 0 || m_errorPipe >= 0) {
        ADD_FAILURE() << "the process does not end: " << m_output << m_errors;
        kill(m_id, SIGKILL);
    }
    int status = 0;
    waitpid(m_id, &status, 0);
    m_code = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return m_code;
}

ProcessResult RunBdc(const std::vector<std::string>& arguments, const std::vector<std::string>& environment) {
    std::vector<std::string> words{BdcPath()};
    words.insert(words.end(), arguments.begin(), arguments.end());
    CProcess process(words, environment);
    const int code = process.Wait();
    return {code, process.Output(), process.Errors()};
}
