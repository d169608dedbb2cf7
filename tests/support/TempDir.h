// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>

// A fresh directory for one test, removed afterwards.
class TempDir {
public:
    TempDir()
    {
        std::string pattern = ::testing::TempDir() + "keltest-XXXXXX";
        m_path = ::mkdtemp(pattern.data()) ? pattern + "/" : std::string();
    }
    ~TempDir() { std::system(("chmod -R u+w '" + m_path + "' 2>/dev/null; rm -rf '" + m_path + "'").c_str()); }
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::string& Path() const { return m_path; }
    std::string operator/(const std::string& name) const { return m_path + name; }

    static void Write(const std::string& path, const std::string& text)
    {
        std::ofstream(path, std::ios::binary) << text;
    }
    static std::string Read(const std::string& path)
    {
        std::ifstream in(path, std::ios::binary);
        std::stringstream text;
        text << in.rdbuf();
        return text.str();
    }

private:
    std::string m_path;
};
