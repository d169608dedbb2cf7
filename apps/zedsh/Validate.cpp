// SPDX-License-Identifier: BSD-3-Clause
#include "Validate.h"

#include "zed/TException.h"
#include "zed/ZedFile.h"
#include "zed/dict/TDictionary.h"
#include "zed/sim/TSimInstanceStore.h"

#include <nlohmann/json.hpp>

#include <iostream>
#include <memory>

namespace {

// An instance file says so in its format or shows it by its list; a misspelt
// format should still be reported against the instance file's rules.
bool IsInstanceFile(const std::string& text)
{
    const nlohmann::json json = nlohmann::json::parse(text, nullptr, false);
    if (!json.is_object())
        return false;
    const auto format = json.find("format");
    if (format != json.end() && format->is_string() && format->get<std::string>().starts_with("zed-instance"))
        return true;
    return json.contains("instances") && !json.contains("classes");
}

// Prints the file's verdict; true when it is valid.
bool Report(const std::string& file, const std::vector<std::string>& faults)
{
    if (faults.empty())
        std::cout << file << ": valid\n";
    for (const std::string& fault : faults)
        std::cout << fault << "\n";
    return faults.empty();
}

}  // namespace

int ZedshValidate(const std::vector<std::string>& files, const std::string& defaultDictionary)
{
    std::vector<std::pair<std::string, std::string>> instanceFiles;  // name, text
    std::shared_ptr<const TDictionary> dictionary;
    bool valid = true;
    for (const std::string& file : files) {
        std::vector<std::string> faults;
        try {
            std::string text = ZedReadFile(file, "file");
            if (IsInstanceFile(text)) {
                instanceFiles.emplace_back(file, std::move(text));
                continue;
            }
            if (auto checked = TDictionary::Check(text, file, faults))
                dictionary = std::move(checked);
        } catch (const TException& e) {
            faults.push_back(e.what());
        }
        valid = Report(file, faults) && valid;
    }
    if (instanceFiles.empty())
        return valid ? 0 : 1;
    if (!dictionary) {
        try {
            dictionary = TDictionary::Load(defaultDictionary);
        } catch (const TException& e) {
            std::cerr << "zedsh: the instance files need a dictionary: " << e.what() << "\n";
            return 3;
        }
    }
    const TSimInstanceStore store(dictionary);
    for (const auto& [file, text] : instanceFiles) {
        std::vector<std::string> faults;
        store.Check(text, file, faults);
        valid = Report(file, faults) && valid;
    }
    return valid ? 0 : 1;
}
