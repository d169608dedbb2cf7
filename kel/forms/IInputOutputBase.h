// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"
#include "kel/output/IPresentationBase.h"

#include <string>

class TReply;
class TRequest;

/// The attributes of an entity as lines that are input and output at once:
/// filled from the replies of the directive that reads them, and turned into
/// the request of the directive that sets them (only changed lines).
class KEL_EXPORT IInputOutputBase : public IPresentationBase {
public:
    ~IInputOutputBase() override;

    /// A line per displayed attribute of the entity's class in the partition (0: all).
    virtual void CreatePresentation(const std::string& name, const TEntitySpec& entity, unsigned int partition);
    /// Puts the values of the reply's first attribute list into the lines;
    /// lines it does not carry are not returned. Without a list nothing changes.
    void ProcessReply(const TReply& reply);
    virtual void PostProcessReply();

    unsigned int GetPartitionID() const { return m_partition; }
    /// The lines the operator changed since creation or the last reply;
    /// false when a line refused: the call must not be sent.
    bool FillRequest(TRequest& request);
    /// Why FillRequest last refused, as the operator was told; empty when it did not.
    const std::string& GetRefusal() const { return m_refusal; }
    void GetRequest(std::string& out);
    void FillWithDefaults();
    void FillWithCurrentConfig(const std::string& section);
    void SaveContents(const std::string& section);

protected:
    IInputOutputBase();
    void SetPartitionID(unsigned int partition) { m_partition = partition; }
    /// Makes the line of each displayed attribute and hands it to place
    /// (which inserts it); the base inserts it as it is.
    void CreateLines();
    virtual void PlaceLine(std::unique_ptr<IPresentationElement> line);
    /// Every line's current text is its unchanged state.
    void RememberValues();

private:
    unsigned int m_partition = 0;
    std::string m_refusal;
};
