// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"
#include "kel/console/KELWorkspaceDocument.h"
#include "kel/forms/KELCallControl.h"

#include <memory>
#include <optional>
#include <string>

/// A document of a host's document area: a form of an entity (the input form
/// of one of its directives, or its attributes) with the calls made from it.
/// Its file holds the entity, then the directive, so that the workspace opens
/// the same form again.
class KEL_EXPORT KELHostDocument : public KELWorkspaceDocument {
public:
    /// The kinds of document, as the workspace keeps them.
    static constexpr const char* kInputForm = "input-form";
    static constexpr const char* kAttributes = "attributes";
    /// The directive name an attributes document is titled with.
    static constexpr const char* kAttributesTitle = "Attributes";

    /// What a document's file holds.
    struct Contents {
        std::string entity;
        std::string directive;
    };
    /// Reads a document's file; none when it is not one (the reason in error).
    static std::optional<Contents> Read(const std::string& path, std::string* error = nullptr);

    KELHostDocument(std::string kind, Contents contents, std::unique_ptr<KELCallControl> calls);
    ~KELHostDocument() override;

    std::string GetKind() const override { return m_kind; }
    std::string GetTitle() const override;
    void SetTitle(const std::string& title) override { m_title = title; }
    std::string GetPathName() const override { return m_path; }
    void SetPathName(const std::string& path) override { m_path = path; }
    bool SaveTo(const std::string& path) override;

    const Contents& GetContents() const { return m_contents; }
    KELCallControl& Calls() const { return *m_calls; }

private:
    std::string m_kind;
    Contents m_contents;
    std::string m_title, m_path;
    std::unique_ptr<KELCallControl> m_calls;
};
