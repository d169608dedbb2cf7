#include "kel/config/ISection.h"

#include "kel/config/ICustomField.h"
#include "kel/config/KELConfigStatus.h"
#include "kel/config/KELTextReader.h"
#include "kel/config/KELTextTrim.h"
#include "kel/frame/KELTrace.h"

#include <cstdint>
#include <functional>
#include <ostream>
#include <vector>

namespace {

constexpr const char* kSource = "KELSection";

// Sections this small (most are) are searched by a plain scan of the names,
// which beats hashing them.
constexpr std::size_t kScanLimit = 32;
// Room for the fields of a typical section at once, instead of regrowing.
constexpr std::size_t kInitialFields = 16;
// The read buffer of a thread is kept between sections up to this many fields.
constexpr std::size_t kKeptReadBuffer = 1 << 16;

bool EqualsIgnoringCase(std::string_view a, std::string_view b)
{
    if (a.size() != b.size())
        return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        const auto lower = [](char c) { return (c >= 'A' && c <= 'Z') ? char(c - 'A' + 'a') : c; };
        if (lower(a[i]) != lower(b[i]))
            return false;
    }
    return true;
}

// The line a begin or end line must be: "[" ... "]" once trimmed.
bool IsBracketed(std::string_view trimmed)
{
    return trimmed.size() >= 2 && trimmed.front() == '[' && trimmed.back() == ']';
}

// Reads up to the next line that is not blank and not a comment; false at end of file.
bool ReadSignificantLine(KELTextReader& file, std::string_view& line)
{
    do {
        if (!file.ReadLine(line))
            return false;
        line = KELTrimLeft(line);
    } while (KELIsSkippedLine(line));
    line = KELTrimRight(line);
    return true;
}

// FNV-1a: names are short, so a simple hash is both quick and well spread.
std::uint32_t NameHash(std::string_view name)
{
    std::uint32_t hash = 2166136261u;
    for (char c : name)
        hash = (hash ^ static_cast<unsigned char>(c)) * 16777619u;
    return hash;
}

} // namespace

// Fields in the order first read or added, each name's hash beside it so that
// a search compares integers and only confirms a match with the text; past a
// few dozen fields an open-addressing index of positions takes over.
struct ISection::Impl {
    std::string name;
    std::vector<ICustomField> fields;
    std::vector<std::uint32_t> hashes; // one per field
    std::vector<std::uint32_t> slots;  // position + 1; 0 is a free slot

    static constexpr std::size_t npos = static_cast<std::size_t>(-1);

    // Looks among the first `count` fields (all that are kept by default).
    std::size_t Find(std::string_view key, std::uint32_t hash, std::size_t count) const
    {
        if (slots.empty()) {
            const std::size_t n = count < hashes.size() ? count : hashes.size();
            for (std::size_t i = 0; i < n; ++i)
                if (hashes[i] == hash && fields[i].GetFieldName() == key)
                    return i;
            return npos;
        }
        const std::size_t mask = slots.size() - 1;
        for (std::size_t s = hash & mask;; s = (s + 1) & mask) {
            const std::uint32_t slot = slots[s];
            if (slot == 0)
                return npos;
            if (hashes[slot - 1] == hash && fields[slot - 1].GetFieldName() == key)
                return slot - 1;
        }
    }
    std::size_t Find(std::string_view key) const { return Find(key, NameHash(key), npos); }

    void Place(std::size_t position)
    {
        const std::size_t mask = slots.size() - 1;
        std::size_t s = hashes[position] & mask;
        while (slots[s] != 0)
            s = (s + 1) & mask;
        slots[s] = static_cast<std::uint32_t>(position + 1);
    }

    void Rebuild()
    {
        slots.clear();
        if (hashes.size() <= kScanLimit)
            return;
        std::size_t size = 16;
        while (size < hashes.size() * 4)
            size *= 2;
        slots.assign(size, 0);
        for (std::size_t i = 0; i < hashes.size(); ++i)
            Place(i);
    }

    // The field just appended (with its hash) becomes findable.
    void IndexLast()
    {
        if (slots.empty() && hashes.size() <= kScanLimit)
            return;
        if (hashes.size() * 2 > slots.size())
            Rebuild();
        else
            Place(hashes.size() - 1);
    }

    void ReserveFirst()
    {
        if (fields.capacity() == 0) {
            fields.reserve(kInitialFields);
            hashes.reserve(kInitialFields);
        }
    }

    // Room for `total` fields, the index included, so that storing them
    // regrows nothing.
    void Reserve(std::size_t total)
    {
        fields.reserve(total);
        hashes.reserve(total);
        if (total <= kScanLimit || slots.size() >= total * 2)
            return;
        // Half full at most: short probes, and little fresh memory to fault in.
        std::size_t size = 16;
        while (size < total * 2)
            size *= 2;
        slots.assign(size, 0);
        for (std::size_t i = 0; i < hashes.size(); ++i)
            Place(i);
    }

    // Stores a field; one of the same name is replaced in its place.
    void Put(ICustomField&& field)
    {
        const std::uint32_t hash = NameHash(field.GetFieldName());
        const std::size_t at = Find(field.GetFieldName(), hash, npos);
        if (at != npos) {
            fields[at] = std::move(field);
            return;
        }
        ReserveFirst();
        fields.push_back(std::move(field));
        hashes.push_back(hash);
        IndexLast();
    }

    void Erase(std::size_t at)
    {
        fields.erase(fields.begin() + static_cast<std::ptrdiff_t>(at));
        hashes.erase(hashes.begin() + static_cast<std::ptrdiff_t>(at));
        Rebuild();
    }

    // Stores the first `count` fields read, in order; a later field of a name
    // replaces the earlier one in its place.
    void Adopt(std::vector<ICustomField>& read, std::size_t count)
    {
        Reserve(fields.size() + count);
        for (std::size_t i = 0; i < count; ++i)
            Put(std::move(read[i]));
    }
};

ISection::ISection() : m_pImpl(std::make_unique<Impl>()) {}

ISection::ISection(std::string name) : ISection() { m_pImpl->name = std::move(name); }

ISection::~ISection() = default;

const std::string& ISection::GetSectionName() const { return m_pImpl->name; }

void ISection::SetSectionName(std::string name) { m_pImpl->name = std::move(name); }

int ISection::Load(KELTextReader& file)
{
    const int begin = ValidBeginSection(file);
    if (begin != KEL_CFG_SUCCESS)
        return begin;
    // Fields are read into one buffer that the thread reuses for every section,
    // then stored at their final count: a large section's storage is allocated
    // once instead of regrown (its fresh pages faulted in) at every doubling.
    thread_local std::vector<ICustomField> read;
    std::size_t count = 0;
    for (;;) {
        if (count == read.size())
            read.emplace_back();
        const int status = read[count].Load(file);
        if (status == KEL_CFG_SUCCESS)
            ++count;
        else if (status != KEL_CFG_NO_EQUALS)
            break;
    }
    m_pImpl->Adopt(read, count);
    if (read.size() > kKeptReadBuffer)
        std::vector<ICustomField>().swap(read);
    return ValidEndSection(file);
}

int ISection::ValidBeginSection(KELTextReader& file)
{
    std::string_view line;
    if (!ReadSignificantLine(file, line)) {
        KEL_TRACE(KEL_TRACE_PBLM, kSource, this) << "ISection::ValidBeginSection , EOF reached ";
        return KEL_CFG_EOF;
    }
    if (!IsBracketed(line)) {
        KEL_TRACE(KEL_TRACE_PBLM, kSource, this) << "ISection::ValidBeginSection , invalid section " << line;
        return KEL_CFG_INVALID_BEGIN;
    }
    m_pImpl->name.assign(KELTrim(line.substr(1, line.size() - 2)));
    KEL_TRACE(KEL_TRACE_PBLM, kSource, this) << "ISection::ValidBeginSection " << m_pImpl->name;
    return KEL_CFG_SUCCESS;
}

int ISection::ValidEndSection(KELTextReader& file)
{
    std::string_view line;
    if (!ReadSignificantLine(file, line)) {
        KEL_TRACE(KEL_TRACE_PBLM, kSource, this) << "ISection::ValidEndSection ,  EOF reached ";
        return KEL_CFG_EOF;
    }
    if (IsBracketed(line)) {
        const std::string_view inner = KELTrim(line.substr(1, line.size() - 2));
        if (inner.size() >= 3 && EqualsIgnoringCase(inner.substr(0, 3), "end")
            && KELTrim(inner.substr(3)) == m_pImpl->name) {
            KEL_TRACE(KEL_TRACE_PBLM, kSource, this) << "ISection::ValidEndSection  " << m_pImpl->name;
            return KEL_CFG_SUCCESS;
        }
    }
    KEL_TRACE(KEL_TRACE_PBLM, kSource, this) << "ISection::ValidEndSection , INVALID End " << line;
    return KEL_CFG_INVALID_END;
}

void ISection::Save(std::string& out) const
{
    KEL_TRACE(KEL_TRACE_PBLM, kSource, this) << "ISection::Save " << m_pImpl->name;
    out.append("[ ").append(m_pImpl->name).append(" ]\n");
    for (const ICustomField& field : m_pImpl->fields)
        field.Save(out);
    out.append("[ End ").append(m_pImpl->name).append(" ]\n\n");
}

int ISection::GetString(std::string_view name, std::string& value) const
{
    if (const std::string* found = FindValue(name)) {
        value = *found;
        return 1;
    }
    KEL_TRACE(KEL_TRACE_PBLM, kSource, this) << "KEL : Get" << name << " not found ";
    return 0;
}

const std::string* ISection::FindValue(std::string_view name) const
{
    const std::size_t at = m_pImpl->Find(name);
    return at == Impl::npos ? nullptr : &m_pImpl->fields[at].GetValue();
}

void ISection::SetString(std::string_view name, std::string_view value)
{
    KEL_TRACE(KEL_TRACE_INFO, kSource, this) << "KEL : Set" << name << " with value : " << value;
    if (KELHoldsLineEnd(name) || KELHoldsLineEnd(value)) {
        KEL_TRACE(KEL_TRACE_PBLM, kSource, this) << "KEL : ISection::SetString, " << name
                                                 << " refused : a line end cannot be stored";
        return;
    }
    const std::size_t at = m_pImpl->Find(name);
    if (at != Impl::npos)
        m_pImpl->fields[at].SetValue(std::string(value));
    else
        AddField(name, value);
}

int ISection::AddField(std::string_view name, std::string_view value)
{
    if (KELHoldsLineEnd(name) || KELHoldsLineEnd(value) || m_pImpl->Find(name) != Impl::npos)
        return 0;
    m_pImpl->Put(ICustomField(std::string(name), std::string(value)));
    return 1;
}

int ISection::RemoveField(std::string_view name)
{
    const std::size_t at = m_pImpl->Find(name);
    if (at == Impl::npos)
        return 0;
    m_pImpl->Erase(at);
    return 1;
}

std::size_t ISection::GetFieldCount() const { return m_pImpl->fields.size(); }

const ICustomField& ISection::GetField(std::size_t index) const { return m_pImpl->fields.at(index); }

std::unique_ptr<ISection> ISection::Clone() const
{
    auto copy = std::make_unique<ISection>(m_pImpl->name);
    copy->m_pImpl->fields = m_pImpl->fields;
    copy->m_pImpl->hashes = m_pImpl->hashes;
    copy->m_pImpl->slots = m_pImpl->slots;
    return copy;
}

std::unique_ptr<ISection> ISection::CloneWithName(std::string_view name) const
{
    if (name.empty())
        return nullptr;
    auto copy = Clone();
    copy->SetSectionName(std::string(name));
    return copy;
}

void ISection::DumpDebug(std::ostream& out) const
{
    out << "[ " << m_pImpl->name << " ]" << std::endl;
    for (const ICustomField& field : m_pImpl->fields)
        field.DumpDebug(out);
    out << "[ End " << m_pImpl->name << " ]" << std::endl;
}
