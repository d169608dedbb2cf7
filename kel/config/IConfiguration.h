// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"
#include "kel/config/KELSectionMap.h"

#include <iosfwd>
#include <memory>
#include <string>
#include <string_view>

class KELTextReader;

/// One configuration file in memory: global sections, read from and written to
/// the file itself, and workspace sections, read from and written to a
/// workspace file the caller names. Values are kept as text.
///
/// The flag of the getters and setters chooses the collection: 0 reads the
/// workspace sections first and writes to them; non-zero reads the global
/// sections first and writes to them. Getters answer 1 when found and 9 when
/// not (the out value then holds the default).
///
/// Saving never leaves a half-written file (see KELFileWriter): the text goes
/// to a new file in the same directory, which then takes the old one's place
/// in one step, with the old one's permissions. A file without write
/// permission is not saved. When the last load had to drop malformed sections,
/// the next save first keeps the text that load read under the file's name +
/// ".bak".
///
/// Names and values with a line end are refused by every setter (traced,
/// nothing stored): written out they would break the file's lines.
class KEL_EXPORT IConfiguration {
public:
    /// Published for callers that compose workspace-qualified names.
    static constexpr const char* WS_SEPARATOR = ".";

    explicit IConfiguration(std::string fileName = "");
    IConfiguration(const IConfiguration& other);
    IConfiguration& operator=(const IConfiguration& other);
    virtual ~IConfiguration();
    std::unique_ptr<IConfiguration> Clone() const;

    const std::string& GetFilename() const { return m_fileName; }
    void SetFilename(std::string fileName) { m_fileName = std::move(fileName); }

    /// 0 when the file cannot be opened (nothing changes), else 1.
    int Load();
    /// Loads the global sections from a text already read, as Load does from the file.
    int Load(KELTextReader& file);
    /// 0 when the file cannot be written (the old file stays), else 1. When
    /// this configuration loaded (or last saved) the same file and another
    /// process has saved it since, the save keeps what that one wrote and
    /// writes over it only the entries this one changed, added or removed
    /// since; the writers of a file take turns under an advisory lock on
    /// FILE.lock. Saving under another name writes this one's sections only.
    int Save();
    int LoadWorkspace(const std::string& fileName);
    int SaveWorkspace(const std::string& fileName);
    void ResetWorkspace() { m_workspace.Clear(); }
    void Reset();
    void Reset(KELSectionMap& sections) { sections.Clear(); }
    /// 1 when there is no global section.
    int IsEmpty() const { return m_global.Empty() ? 1 : 0; }
    KELSectionMap& GetGlobalSections() { return m_global; }
    KELSectionMap& GetWorkspaceSections() { return m_workspace; }
    const KELSectionMap& GetGlobalSections() const { return m_global; }
    const KELSectionMap& GetWorkspaceSections() const { return m_workspace; }

    int GetString(std::string_view section, std::string_view key, std::string& out, int flag,
                  std::string_view fallback = {}) const;
    int GetInt(std::string_view section, std::string_view key, int& out, int flag, int fallback = 0) const;
    int GetShort(std::string_view section, std::string_view key, short& out, int flag, short fallback = 0) const;
    int GetBool(std::string_view section, std::string_view key, bool& out, int flag, bool fallback = false) const;
    int GetDouble(std::string_view section, std::string_view key, double& out, int flag, double fallback = 0) const;
    /// The stored text, or null: the lookup itself, without copying.
    const std::string* FindValue(std::string_view section, std::string_view key, int flag) const;

    void SetString(std::string_view section, std::string_view key, std::string_view value, int flag);
    /// Written "%u": a negative number is stored as its unsigned 32-bit form.
    void SetInt(std::string_view section, std::string_view key, int value, int flag);
    void SetShort(std::string_view section, std::string_view key, short value, int flag);
    void SetDouble(std::string_view section, std::string_view key, double value, int flag);
    /// Written as the resource texts 4026 (true) and 4027 (false).
    void SetBool(std::string_view section, std::string_view key, bool value, int flag);

    int AddSection(KELSectionMap& sections, std::string_view name);
    /// Always the global sections; the second text is not used.
    int AddSection(std::string_view name, std::string_view unused);
    int RemoveSection(KELSectionMap& sections, std::string_view name);
    int RemoveSection(std::string_view name, std::string_view unused);

    void DumpDebug(std::ostream& out) const;
    /// The text Save writes: the header for the file name, then the global sections.
    void SaveToText(std::string& out) const;

    /// Whether the last load dropped a malformed section (and so the next save keeps a ".bak").
    bool DroppedSectionsOnLoad() const { return m_droppedOnLoad; }

protected:
    int GetStringValue(std::string_view section, std::string_view key, std::string& out, int flag) const;
    void SetStringValue(std::string_view section, std::string_view key, std::string_view value, int flag);
    int AddInSection(KELSectionMap& sections, std::string_view section, std::string_view key);
    int RemoveFromSection(KELSectionMap& sections, std::string_view section, std::string_view key);
    int UpdateSections(int, const std::string&) { return 1; }

private:
    /// Reads every section into the collection; true when some had to be dropped.
    bool LoadInto(const std::string& fileName, KELTextReader& file, KELSectionMap& sections);
    int SaveFrom(const std::string& fileName, const KELSectionMap& sections, std::string* written = nullptr);
    static void FormatFile(const std::string& fileName, const KELSectionMap& sections, std::string& text);

    std::string m_fileName;
    KELSectionMap m_global;
    KELSectionMap m_workspace;
    bool m_droppedOnLoad = false;
    std::string m_lossyLoadText;  // what a load that dropped sections read: the next save's ".bak"
    // What the file held when this configuration last loaded or saved it: a
    // save merges the changes since into what the file holds by then.
    std::shared_ptr<const std::string> m_loadedText;
    std::string m_loadedFrom;
};
