// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"
#include "kel/output/IPresentationBase.h"

#include <string>

class TRequest;

/// What every input presentation has: the directive, the lines of its
/// arguments, and the turning of those lines into the directive's request,
/// into a one-line text of it, and into and from a configuration section.
class KEL_EXPORT IInputBase : public IPresentationBase {
public:
    ~IInputBase() override;

    /// Builds the lines of the directive's displayed arguments (no settings, no positions).
    virtual void CreatePresentation(const std::string& name, const TEntitySpec& entity, unsigned int directive);

    unsigned int GetDirectiveID() const { return m_directive; }
    /// False when a line refused (a required argument is missing): the call must not be sent.
    bool FillRequest(TRequest& request);
    /// Why FillRequest last refused, as the operator was told; empty when it did not.
    const std::string& GetRefusal() const { return m_refusal; }
    /// "Name = value,Name = value" of the lines with a value.
    void GetRequest(std::string& out);
    void FillWithDefaults();
    void FillWithCurrentConfig();
    /// To the section, or to the fill configuration section when it is empty.
    void SaveContents(const std::string& section);
    void SetFillConfigSection(const std::string& section) { m_fillSection = section; }
    const std::string& GetFillConfigSection() const { return m_fillSection; }

protected:
    IInputBase();
    void SetDirectiveID(unsigned int directive) { m_directive = directive; }
    /// Adds the lines of the directive's arguments: hidden ones left out,
    /// positions from the list (else in order); traces what it cannot do.
    void CreateLines(const std::string& hidden, const std::string& positions);

private:
    unsigned int m_directive = 0;
    std::string m_fillSection;
    std::string m_refusal;
};
