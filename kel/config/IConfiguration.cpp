// SPDX-License-Identifier: BSD-3-Clause
#include "kel/config/IConfiguration.h"
#include "kel/frame/KELString.h"

#include "kel/config/ISection.h"
#include "kel/config/KELConfigStatus.h"
#include "kel/config/KELFileWriter.h"
#include "kel/config/KELSectionMerge.h"
#include "kel/config/KELTextReader.h"
#include "kel/config/KELTextTrim.h"
#include "kel/frame/IApplication.h"
#include "kel/frame/KELResources.h"
#include "kel/frame/KELUtilities.h"
#include "kel/frame/KELTrace.h"

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <ctime>
#include <optional>
#include <ostream>
#include <sstream>

namespace {

constexpr const char* kSource = "KELConfiguration";
constexpr int kFound = 1;
constexpr int kNotFound = 9;

void ToConsole(KEL_T_Severity severity, const std::string& text)
{
    if (IApplication* app = GetKELapp())
        app->InsertMessageConsole(severity, text);
}

std::string LocalTime()
{
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    ::localtime_r(&now, &local);
    char text[128];
    return std::strftime(text, sizeof text, "%c", &local) ? text : "";
}

// Typed values read as the stream extraction of their type reads them.
template <typename T>
bool Extract(const std::string& text, T& value)
{
    std::istringstream in(text);
    T read{};
    if (!(in >> read))
        return false;
    value = read;
    return true;
}

template <typename T>
int GetTyped(const IConfiguration& configuration, std::string_view section, std::string_view key, T& out, int flag,
             T fallback)
{
    std::string text;
    const int status = configuration.GetString(section, key, text, flag);
    if (status != kFound || !Extract(text, out))
        out = fallback;
    return status;
}

}  // namespace

IConfiguration::IConfiguration(std::string fileName) : m_fileName(std::move(fileName)) {}

IConfiguration::IConfiguration(const IConfiguration& other) = default;

IConfiguration& IConfiguration::operator=(const IConfiguration& other) = default;

IConfiguration::~IConfiguration() = default;

std::unique_ptr<IConfiguration> IConfiguration::Clone() const { return std::make_unique<IConfiguration>(*this); }

void IConfiguration::Reset()
{
    m_global.Clear();
    m_workspace.Clear();
}

int IConfiguration::Load()
{
    KELTextReader file;
    if (!file.Open(m_fileName)) {
        // Nothing was there: whatever another process saves meanwhile is kept too.
        m_loadedText = std::make_shared<const std::string>();
        m_loadedFrom = m_fileName;
        return 0;
    }
    return Load(file);
}

int IConfiguration::Load(KELTextReader& file)
{
    Reset();
    file.Seek(0);
    m_droppedOnLoad = LoadInto(m_fileName, file, m_global);
    if (m_droppedOnLoad)
        m_lossyLoadText.assign(file.GetText());
    else
        m_lossyLoadText.clear();
    m_loadedText = file.Share() ? file.Share() : std::make_shared<const std::string>(file.GetText());
    m_loadedFrom = m_fileName;
    return 1;
}

int IConfiguration::LoadWorkspace(const std::string& fileName)
{
    KELTextReader file;
    if (!file.Open(fileName))
        return 0;
    m_workspace.Clear();
    LoadInto(fileName, file, m_workspace);
    return 1;
}

bool IConfiguration::LoadInto(const std::string& fileName, KELTextReader& file, KELSectionMap& sections)
{
    const bool dropped = KELReadSections(file, sections);
    ToConsole(KEL_SEVERITY_INFORMATION, KELResources::String(KELString::kConfigurationLoaded) + fileName);
    KEL_TRACE(KEL_TRACE_INFO, kSource, this) << "Loading configuration file : " << fileName;
    return dropped;
}

int IConfiguration::Save()
{
    // Another process may have saved the file since this one loaded it: what
    // it wrote is kept, and what this one changed is written over it, the
    // two saves taking turns under the file's lock.
    std::optional<KELFileLock> lock;
    if (m_loadedText && m_loadedFrom == m_fileName) {
        lock.emplace(m_fileName);
        KELTextReader disk;
        if (disk.Open(m_fileName) && disk.GetText() != *m_loadedText) {
            KELSectionMap loaded, onDisk;
            KELTextReader before(*m_loadedText);
            KELReadSections(before, loaded);
            KELReadSections(disk, onDisk);
            KELMergeSections(loaded, m_global, onDisk);
            m_global = std::move(onDisk);
        }
    }
    std::string written;
    if (!SaveFrom(m_fileName, m_global, &written))
        return 0;
    m_loadedText = std::make_shared<const std::string>(std::move(written));
    m_loadedFrom = m_fileName;
    return 1;
}

int IConfiguration::SaveWorkspace(const std::string& fileName) { return SaveFrom(fileName, m_workspace); }

int IConfiguration::SaveFrom(const std::string& fileName, const KELSectionMap& sections, std::string* written)
{
    KELFileWriter file(fileName);
    std::string error;
    if (!file.Open(&error)) {
        KEL_TRACE(KEL_TRACE_PBLM, kSource, this) << "IConfiguration::Save " << error;
        return 0;
    }
    ToConsole(KEL_SEVERITY_INFORMATION, KELResources::String(KELString::kConfigurationSaved) + fileName);
    KEL_TRACE(KEL_TRACE_INFO, kSource, this) << "Loading configuration file : " << fileName;

    // The text a lossy load read is kept first, so the dropped sections can be recovered.
    const bool keepBackup = &sections == &m_global && m_droppedOnLoad;
    if (keepBackup && !KELWriteFileAtomically(fileName + ".bak", m_lossyLoadText, &error)) {
        KEL_TRACE(KEL_TRACE_PBLM, kSource, this) << "IConfiguration::Save " << error;
        return 0;
    }
    std::string text;
    FormatFile(fileName, sections, text);
    if (!file.Commit(text, &error)) {
        KEL_TRACE(KEL_TRACE_PBLM, kSource, this) << "IConfiguration::Save " << error;
        return 0;
    }
    if (keepBackup) {
        m_droppedOnLoad = false;
        m_lossyLoadText = std::string();
    }
    if (written)
        *written = std::move(text);
    ToConsole(KEL_SEVERITY_DONE, KELResources::String(KELString::kConfigurationSaved) + fileName);
    return 1;
}

void IConfiguration::SaveToText(std::string& out) const { FormatFile(m_fileName, m_global, out); }

void IConfiguration::FormatFile(const std::string& fileName, const KELSectionMap& sections, std::string& text)
{
    const std::string rule = " ################################################################### ";
    text.reserve(text.size() + 256 + sections.Size() * 512);
    text.append(rule).append("\n");
    text.append(" ## \n");
    text.append(" ## Configuration filename : ").append(fileName).append("\n");
    text.append(" ## Date and time          : ").append(LocalTime()).append("\n");
    text.append(" ## User                   : ").append(KELUtilities::GetLoginName()).append("\n");
    text.append(" ## \n");
    text.append(rule).append("\n");
    text.append("\n");
    for (std::size_t i = 0; i < sections.Size(); ++i)
        sections.At(i).Save(text);
}

const std::string* IConfiguration::FindValue(std::string_view section, std::string_view key, int flag) const
{
    const auto in = [&](const KELSectionMap& sections) -> const std::string* {
        const ISection* found = sections.Find(section);
        return found ? found->FindValue(key) : nullptr;
    };
    if (flag == 0) {
        if (const std::string* value = in(m_workspace))
            return value;
        return in(m_global);
    }
    if (const std::string* value = in(m_global))
        return value;
    return in(m_workspace);
}

int IConfiguration::GetStringValue(std::string_view section, std::string_view key, std::string& out, int flag) const
{
    out.clear();
    if (const std::string* value = FindValue(section, key, flag)) {
        out = *value;
        return kFound;
    }
    return kNotFound;
}

int IConfiguration::GetString(std::string_view section, std::string_view key, std::string& out, int flag,
                              std::string_view fallback) const
{
    const int status = GetStringValue(section, key, out, flag);
    if (status != kFound)
        out.assign(fallback);
    return status;
}

int IConfiguration::GetInt(std::string_view section, std::string_view key, int& out, int flag, int fallback) const
{
    return GetTyped(*this, section, key, out, flag, fallback);
}

int IConfiguration::GetShort(std::string_view section, std::string_view key, short& out, int flag, short fallback) const
{
    return GetTyped(*this, section, key, out, flag, fallback);
}

int IConfiguration::GetDouble(std::string_view section, std::string_view key, double& out, int flag,
                              double fallback) const
{
    return GetTyped(*this, section, key, out, flag, fallback);
}

int IConfiguration::GetBool(std::string_view section, std::string_view key, bool& out, int flag, bool fallback) const
{
    std::string text;
    const int status = GetString(section, key, text, flag);
    if (status != kFound) {
        out = fallback;
        return status;
    }
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) { return std::toupper(c); });
    if (text == "FALSE" || text == "0")
        out = false;
    else if (text == "TRUE" || text == "1")
        out = true;
    else
        out = fallback;  // an unknown word still counts as found
    return status;
}

void IConfiguration::SetStringValue(std::string_view section, std::string_view key, std::string_view value, int flag)
{
    if (KELHoldsLineEnd(section) || KELHoldsLineEnd(key) || KELHoldsLineEnd(value)) {
        KEL_TRACE(KEL_TRACE_PBLM, kSource, this) << "IConfiguration::SetStringValue " << key << " in " << section
                                                 << " refused : a line end cannot be stored";
        return;
    }
    KELSectionMap& sections = flag == 0 ? m_workspace : m_global;
    if (ISection* found = sections.Find(section)) {
        found->SetString(key, value);
        return;
    }
    AddSection(sections, section);
    if (AddInSection(sections, section, key))
        sections.Find(section)->SetString(key, value);
}

void IConfiguration::SetString(std::string_view section, std::string_view key, std::string_view value, int flag)
{
    SetStringValue(section, key, value, flag);
}

void IConfiguration::SetInt(std::string_view section, std::string_view key, int value, int flag)
{
    char text[16];
    std::snprintf(text, sizeof text, "%u", static_cast<unsigned int>(value));
    SetStringValue(section, key, text, flag);
}

void IConfiguration::SetShort(std::string_view section, std::string_view key, short value, int flag)
{
    char text[16];
    std::snprintf(text, sizeof text, "%d", value);
    SetStringValue(section, key, text, flag);
}

void IConfiguration::SetDouble(std::string_view section, std::string_view key, double value, int flag)
{
    char text[64];
    std::snprintf(text, sizeof text, "%G", value);
    SetStringValue(section, key, text, flag);
}

void IConfiguration::SetBool(std::string_view section, std::string_view key, bool value, int flag)
{
    SetStringValue(section, key, KELResources::String(value ? KELString::kTrue : KELString::kFalse), flag);
}

int IConfiguration::AddSection(KELSectionMap& sections, std::string_view name)
{
    if (KELHoldsLineEnd(name) || sections.Find(name))
        return 0;
    sections.Put(std::make_unique<ISection>(std::string(name)));
    return 1;
}

int IConfiguration::AddSection(std::string_view name, std::string_view) { return AddSection(m_global, name); }

int IConfiguration::RemoveSection(KELSectionMap& sections, std::string_view name)
{
    if (sections.Remove(name))
        return 1;
    KEL_TRACE(KEL_TRACE_PBLM, kSource, this) << "IConfiguration::RemoveSection : " << name << " section not found";
    return 0;
}

int IConfiguration::RemoveSection(std::string_view name, std::string_view) { return RemoveSection(m_global, name); }

int IConfiguration::AddInSection(KELSectionMap& sections, std::string_view section, std::string_view key)
{
    ISection* found = sections.Find(section);
    const bool added = found && found->AddField(key, "");
    KEL_TRACE(KEL_TRACE_PBLM, kSource, this) << "IConfiguration::AddInSection " << key << " in " << section
                                             << (added   ? " successful"
                                                 : found ? " Field Already exists"
                                                         : " Section not found");
    return added ? 1 : 0;
}

int IConfiguration::RemoveFromSection(KELSectionMap& sections, std::string_view section, std::string_view key)
{
    ISection* found = sections.Find(section);
    const bool removed = found && found->RemoveField(key);
    KEL_TRACE(KEL_TRACE_PBLM, kSource, this) << "IConfiguration::RemoveFromSection " << key << " in " << section
                                             << (removed ? " successful"
                                                 : found ? " Field Already exists"
                                                         : " Section not found");
    return removed ? 1 : 0;
}

void IConfiguration::DumpDebug(std::ostream& out) const
{
    out << " ------- Configuration ------------ " << std::endl;
    out << " Filename : " << m_fileName << std::endl;
    for (std::size_t i = 0; i < m_global.Size(); ++i)
        m_global.At(i).DumpDebug(out);
    for (std::size_t i = 0; i < m_workspace.Size(); ++i)
        m_workspace.At(i).DumpDebug(out);
    out << " ------- End Configuration -------- " << std::endl;
}
