#include "host/Password.h"

#include "base/FileDescriptor.h"

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

namespace {

// Echo is off as long as this lives, and signals that would end the process with it off wait.
class CSilentTerminal {
public:
    explicit CSilentTerminal(int terminal) : m_terminal(terminal) {
        sigset_t blocked;
        sigemptyset(&blocked);
        for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGTSTP})
            sigaddset(&blocked, number);
        sigprocmask(SIG_BLOCK, &blocked, &m_mask);
        m_isGood = tcgetattr(m_terminal, &m_former) == 0;
        termios silent = m_former;
        silent.c_lflag &= ~static_cast<tcflag_t>(ECHO);
        m_isGood = m_isGood && tcsetattr(m_terminal, TCSAFLUSH, &silent) == 0;
    }
    ~CSilentTerminal() {
        if (m_isGood)
            tcsetattr(m_terminal, TCSAFLUSH, &m_former);
        sigprocmask(SIG_SETMASK, &m_mask, nullptr);
    }
    CSilentTerminal(const CSilentTerminal&) = delete;
    CSilentTerminal& operator=(const CSilentTerminal&) = delete;

    bool IsGood() const { return m_isGood; }

private:
    const int m_terminal;
    bool m_isGood = false;
    termios m_former{};
    sigset_t m_mask{};
};

bool Say(int terminal, const std::string& text) {
    return write(terminal, text.data(), text.size()) == static_cast<ssize_t>(text.size());
}

} // namespace

bool ReadPassword(int descriptor, std::string& password, std::string& error) {
    password.clear();
    for (char character = 0; password.size() <= MAX_PASSWORD;) {
        const ssize_t count = read(descriptor, &character, 1);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0) {
            error = ErrnoText("descriptor " + std::to_string(descriptor), "cannot be read");
            return false;
        }
        if (count == 0 || character == '\n')
            return true;
        password += character;
    }
    error = "the password is longer than " + std::to_string(MAX_PASSWORD) + " bytes";
    return false;
}

bool AskPassword(const std::string& prompt, std::string& password, std::string& error) {
    const CFileDescriptor terminal(open("/dev/tty", O_RDWR | O_CLOEXEC | O_NOCTTY));
    if (!terminal) {
        error = "no terminal to ask for the password: give --password-fd";
        return false;
    }
    bool isRead = false;
    {
        const CSilentTerminal silent(terminal.Get());
        if (!silent.IsGood()) {
            error = "the terminal shows what is typed: give --password-fd";
            return false;
        }
        isRead = Say(terminal.Get(), prompt) && ReadPassword(terminal.Get(), password, error);
    }
    Say(terminal.Get(), "\n");
    return isRead;
}
