// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// Runs one of the project's programs through the shell and collects its
// streams and exit status. Each test writes its own files: ctest runs tests
// in parallel.

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/wait.h>

struct ProgramRun {
    int exitCode;
    std::string out;
    std::string err;
};

inline std::string SlurpFile(const std::string& path)
{
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

inline std::string TestTempPath(const std::string& suffix)
{
    return ::testing::TempDir() + ::testing::UnitTest::GetInstance()->current_test_info()->name() + "-" + suffix;
}

inline ProgramRun RunProgram(const std::string& program, const std::string& arguments)
{
    const std::string out = TestTempPath("out"), err = TestTempPath("err");
    const std::string command = program + " " + arguments + " >" + out + " 2>" + err + " </dev/null";
    const int status = std::system(command.c_str());
    return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, SlurpFile(out), SlurpFile(err)};
}
