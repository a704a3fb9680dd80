// Runs a program as a process of its own and takes what it prints.
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include <sys/types.h>

// The built driver program.
std::string BdcPath();

class CProcess {
public:
    // environment: "NAME=value" entries that replace or add to the test's own.
    CProcess(const std::vector<std::string>& arguments, const std::vector<std::string>& environment = {});
    ~CProcess(); // kills what still runs
    CProcess(const CProcess&) = delete;
    CProcess& operator=(const CProcess&) = delete;

    pid_t Id() const { return m_id; }
    void Signal(int number) const;
    // Reads its standard output until the text appears; false when it ends first, or the time passes.
    bool WaitForOutput(const std::string& text, std::chrono::seconds time = std::chrono::seconds(60));
    // Waits for the end. The exit code; 128 plus the signal's number for a process that was killed.
    int Wait(std::chrono::seconds time = std::chrono::seconds(60));

    const std::string& Output() const { return m_output; } // as far as it was read; whole after Wait
    const std::string& Errors() const { return m_errors; }

private:
    bool ReadSome(std::chrono::steady_clock::time_point deadline); // false at the end of both streams

    pid_t m_id = -1;
    int m_outputPipe = -1;
    int m_errorPipe = -1;
    std::string m_output;
    std::string m_errors;
    int m_code = -1;
};

// What a program that has ended left behind.
struct ProcessResult {
    int code;
    std::string output;
    std::string errors;
};
ProcessResult RunBdc(const std::vector<std::string>& arguments, const std::vector<std::string>& environment = {});
