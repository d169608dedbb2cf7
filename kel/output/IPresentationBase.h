// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include "kel/KELExport.h"
#include "zed/value/TEntitySpec.h"

#include <functional>
#include <memory>
#include <string>

class IElementInfo;
class IPresentationContainer;
class IPresentationElement;
class TDictArgument;
class TDictAttribute;

/// The non-visual side of a presentation: its entity and name, the container
/// of its elements, and the filling of element infos from the dictionary's
/// attributes and arguments.
///
/// A container that is a window (a form's control container) belongs to its
/// Qt parent; one that is not belongs to the presentation (TakeContainer).
class KEL_EXPORT IPresentationBase {
public:
    IPresentationBase(const IPresentationBase&) = delete;
    IPresentationBase& operator=(const IPresentationBase&) = delete;
    virtual ~IPresentationBase();
    /// Dumps every element of the container; nothing before there is one.
    virtual void Dump();
    virtual IPresentationContainer* CreateContainer() = 0;
    virtual std::unique_ptr<IPresentationElement> CreateElement(IElementInfo& info) = 0;
    virtual void PreCreate();
    virtual void PostCreate();

    void SetEntity(const TEntitySpec& entity) { m_entity = entity; }
    const TEntitySpec& GetEntity() const { return m_entity; }
    void SetName(const std::string& name) { m_name = name; }
    const std::string& GetName() const { return m_name; }
    /// Null before creation.
    IPresentationContainer* GetContainer() const { return m_pContainer; }

protected:
    IPresentationBase();
    /// The container the presentation's elements go to, not owned (a window's parent owns it).
    void SetContainer(IPresentationContainer* container);
    /// A container the presentation owns.
    void TakeContainer(std::unique_ptr<IPresentationContainer> container);
    /// The set-up every kind of presentation runs: its name and entity,
    /// PreCreate, a new container, its lines, PostCreate. Lines that could not
    /// be made (false) end it before PostCreate.
    void Present(const std::string& name, const TEntitySpec& entity, const std::function<bool()>& createLines);

    void InitAttrElementInfo(const TDictAttribute& attribute, IElementInfo& info) const;
    /// The caller sets the info's prefix first: the complete id is built on it.
    void InitArgElementInfo(const TDictArgument& argument, IElementInfo& info) const;

private:
    TEntitySpec m_entity;
    std::string m_name;
    IPresentationContainer* m_pContainer = nullptr;
    std::unique_ptr<IPresentationContainer> m_ownedContainer;
};
