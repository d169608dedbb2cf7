// SPDX-License-Identifier: BSD-3-Clause
#include "kel/config/ISection.h"

#include "kel/config/ICustomField.h"
#include "kel/config/KELConfigStatus.h"
#include "kel/config/KELNameIndex.h"
#include "kel/config/KELTextReader.h"
#include "kel/config/KELTextTrim.h"
#include "kel/frame/KELTrace.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <ostream>
#include <vector>

namespace {

constexpr const char* kSource = "KELSection";

// A section's field count guessed from the last one read stays this modest.
constexpr std::size_t kLargestGuess = 1 << 12;

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

}  // namespace

// Fields in the order first read or added, found by name through the index.
struct ISection::Impl {
    std::string name;
    std::vector<ICustomField> fields;
    KELNameIndex index;
    // What fields' unread values view.
    std::shared_ptr<const std::string> text;
    std::vector<std::shared_ptr<const std::string>> moreTexts;

    static constexpr std::size_t npos = KELNameIndex::npos;

    std::size_t Find(std::string_view key, std::uint32_t hash) const
    {
        return index.Find(key, hash, [this](std::size_t i) -> std::string_view { return fields[i].GetFieldName(); });
    }
    std::size_t Find(std::string_view key) const { return Find(key, KELNameIndex::Hash(key)); }

    // Room for `total` fields, so that storing them regrows nothing.
    void Reserve(std::size_t total)
    {
        fields.reserve(total);
        index.Reserve(total);
    }

    // Stores a field; one of the same name is replaced in its place.
    void Put(ICustomField&& field)
    {
        const std::uint32_t hash = KELNameIndex::Hash(field.GetFieldName());
        const std::size_t at = Find(field.GetFieldName(), hash);
        if (at != npos) {
            fields[at] = std::move(field);
            return;
        }
        fields.push_back(std::move(field));
        index.Append(hash);
    }

    void Erase(std::size_t at)
    {
        fields.erase(fields.begin() + static_cast<std::ptrdiff_t>(at));
        index.Erase(at);
    }

    // Keeps the text that fields read from it view. Nearly every section
    // views one text at most: that one needs no list.
    void Keep(const std::shared_ptr<const std::string>& kept)
    {
        if (!text || text == kept)
            text = kept;
        else if (std::find(moreTexts.begin(), moreTexts.end(), kept) == moreTexts.end())
            moreTexts.push_back(kept);
    }

    // Stores a field read; one of the same name read before is replaced in
    // its place. Its value views the text when the text is kept.
    void Adopt(std::string_view name, std::string_view value, bool viewing)
    {
        const std::uint32_t hash = KELNameIndex::Hash(name);
        const std::size_t at = Find(name, hash);
        if (at != npos) {
            fields[at] = ICustomField(std::string(name), std::string(value));
            return;
        }
        if (viewing)
            fields.emplace_back(ICustomField::ViewOf{}, name, value);
        else
            fields.emplace_back(std::string(name), std::string(value));
        index.Append(hash);
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
    // Room for as many fields as the last section read had: the sections of
    // a file are mostly alike, so its storage is allocated once instead of
    // regrown at every doubling.
    thread_local std::size_t lastCount = 0;
    m_pImpl->Reserve(m_pImpl->fields.size() + lastCount);
    const std::shared_ptr<const std::string> text = file.Share();
    const std::size_t before = m_pImpl->fields.size();
    for (;;) {
        std::string_view name, value;
        const int status = ICustomField::ReadLine(file, name, value);
        if (status == KEL_CFG_SUCCESS)
            m_pImpl->Adopt(name, value, text != nullptr);
        else if (status != KEL_CFG_NO_EQUALS)
            break;
    }
    lastCount = std::min(m_pImpl->fields.size() - before, kLargestGuess);
    if (text && m_pImpl->fields.size() > before)
        m_pImpl->Keep(text);
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
        KEL_TRACE(KEL_TRACE_PBLM, kSource, this)
            << "KEL : ISection::SetString, " << name << " refused : a line end cannot be stored";
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
    copy->m_pImpl->fields.reserve(m_pImpl->fields.size());
    for (const ICustomField& field : m_pImpl->fields)
        copy->m_pImpl->fields.push_back(field.ViewingCopy());
    copy->m_pImpl->text = m_pImpl->text;
    copy->m_pImpl->moreTexts = m_pImpl->moreTexts;
    copy->m_pImpl->index = m_pImpl->index;
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
