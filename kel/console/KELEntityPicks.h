// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"

#include <QWidget>

#include <functional>
#include <string>
#include <vector>

class IMessageConsole;
class QComboBox;
class TDictionary;

/// A host's picks of an entity and one of its class's directives, in a row:
/// "Entity" offers the network's instances and takes an entity typed (one
/// to Create); "Directive" offers the directives of the entity's class.
/// Picking a directive asks for its form (Picked). The picks follow the
/// document shown and the instance chosen in the network's tree.
class KEL_EXPORT KELEntityPicks : public QWidget {
    Q_OBJECT
public:
    /// What the entity pick offers.
    using Lister = std::function<std::vector<std::string>()>;

    /// An entity typed that is none is said on the console, when there is one.
    KELEntityPicks(const TDictionary& dictionary, Lister lister, IMessageConsole* console, QWidget* parent = nullptr);
    ~KELEntityPicks() override;

    /// Asks the lister again, keeping the entity picked.
    void Refill();
    /// The entity picked, then its class's first directive: its form is asked for.
    void ChooseEntity();
    /// Shows the entity and the directive of a document (none: no directive picked).
    void Follow(const std::string& entity, const std::string& directive);
    std::string GetEntity() const;
    QComboBox* GetEntityPick() const { return m_entities; }
    QComboBox* GetDirectivePick() const { return m_directives; }

signals:
    /// The form of the directive on the entity is asked for.
    void Picked(const std::string& entity, const std::string& directive);

private:
    void ShowEntity(const QString& entity);
    void EntityTyped();
    void FillDirectives();
    void DirectiveChosen();

    const TDictionary& m_dictionary;
    Lister m_lister;
    IMessageConsole* m_console;
    QComboBox* m_entities;    // a child
    QComboBox* m_directives;  // a child
};
