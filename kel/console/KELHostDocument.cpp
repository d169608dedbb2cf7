// SPDX-License-Identifier: BSD-3-Clause
#include "kel/console/KELHostDocument.h"

#include "zed/TException.h"
#include "zed/ZedFile.h"

#include <fstream>
#include <sstream>

std::optional<KELHostDocument::Contents> KELHostDocument::Read(const std::string& path, std::string* error)
{
    std::string text;
    try {
        text = ZedReadFile(path, "document");
    } catch (const TException& e) {
        if (error)
            *error = e.what();
        return std::nullopt;
    }
    std::istringstream in(text);
    Contents contents;
    if (!std::getline(in, contents.entity) || !std::getline(in, contents.directive)) {
        if (error)
            *error = "The document " + path + " names no entity and directive.";
        return std::nullopt;
    }
    return contents;
}

KELHostDocument::KELHostDocument(std::string kind, Contents contents, std::unique_ptr<KELCallControl> calls)
    : m_kind(std::move(kind)), m_contents(std::move(contents)), m_calls(std::move(calls))
{
}

KELHostDocument::~KELHostDocument() = default;

std::string KELHostDocument::GetTitle() const
{
    return m_title.empty() ? m_contents.entity + " " + m_contents.directive : m_title;
}

bool KELHostDocument::SaveTo(const std::string& path)
{
    std::ofstream out(path);
    out << m_contents.entity << "\n" << m_contents.directive << "\n";
    out.close();
    return static_cast<bool>(out);
}
