// SPDX-License-Identifier: BSD-3-Clause
#include "zed/sim/TSimInstanceStore.h"

#include "zed/TException.h"
#include "zed/ZedFile.h"
#include "zed/dict/ZedJsonReader.h"
#include "zed/value/ZedValueJson.h"

namespace {
constexpr const char* kFormat = "zed-instances 1";

std::size_t CountBelow(const TSimInstanceStore::Instance& node)
{
    std::size_t n = 0;
    for (const auto& [code, byName] : node.children)
        for (const auto& [name, child] : byName)
            n += 1 + CountBelow(*child);
    return n;
}
}  // namespace

TSimInstanceStore::TSimInstanceStore(TDictionaryPtr dictionary) : m_dictionary(std::move(dictionary))
{
    if (!m_dictionary)
        throw TException("the simulated network needs a dictionary");
}

TSimInstanceStore::~TSimInstanceStore() = default;

void TSimInstanceStore::Load(const std::string& path) { Parse(ZedReadFile(path, "instance file"), path); }

void TSimInstanceStore::Parse(std::string_view json, const std::string& source)
{
    m_root = Read(json, source, nullptr);
}

bool TSimInstanceStore::Check(std::string_view json, const std::string& source, std::vector<std::string>& faults) const
{
    const std::size_t before = faults.size();
    ZedJsonFaults(&faults).Guard([&] { Read(json, source, &faults); });
    return faults.size() == before;
}

// The instance above the entity's, walking down from the top: every level
// above must be declared already. cls becomes the entity's class.
TSimInstanceStore::Instance* TSimInstanceStore::ParentOf(const TEntitySpec& spec, Instance& top,
                                                         const ZedJsonNode& where, const TDictClass*& cls) const
{
    Instance* parent = &top;
    for (std::size_t depth = 0; depth < spec.GetDepth(); ++depth) {
        const auto& component = spec.GetComponent(depth);
        cls = depth == 0 ? m_dictionary->FindRootClass(component.code) : cls->FindChild(component.code);
        if (!cls)
            where.Fail("unknown class #" + std::to_string(component.code));
        if (component.kind != TEntitySpec::Instance::Named)
            where.Fail("every level needs an instance name");
        if (depth + 1 == spec.GetDepth())
            break;
        auto& siblings = parent->children[component.code];
        const auto found = siblings.find(component.name);
        if (found == siblings.end())
            where.Fail("the instance \"" + component.name + "\" above it is not declared (yet)");
        parent = found->second.get();
    }
    return parent;
}

// An instance's attributes: each fault is collected, the others still read.
void TSimInstanceStore::ReadAttributes(const ZedJsonNode& attributes, const TDictClass& cls, ZedJsonFaults& collect,
                                       Instance& instance) const
{
    if (!attributes.Json().is_object()) {
        if (!attributes.Absent())
            attributes.Fail("expected an object of attribute names");
        return;
    }
    for (const auto& item : attributes.Json().items())
        collect.Guard([&] {
            const TDictAttribute* attribute = cls.FindAttribute(item.key());
            if (!attribute)
                attributes.Key(item.key()).Fail("not an attribute of " + cls.GetName());
            const ZEDValueContext context{m_dictionary.get(), &cls};
            instance.attributes.Put(
                ZedValueFromJson(attribute->GetType(), attributes.Key(item.key()), attribute->GetID(), context));
        });
}

TSimInstanceStore::Instance TSimInstanceStore::Read(std::string_view json, const std::string& source,
                                                    std::vector<std::string>* faults) const
{
    const nlohmann::json document = ZedJsonNode::ParseText(json, source);
    const ZedJsonNode root = ZedJsonNode(document, "$", source).ExpectObject({"$schema", "format", "instances"});
    // Editors find a document's schema there; the loader has nothing to take from it.
    if (root.Has("$schema"))
        root.Key("$schema").String();
    if (root.Key("format").String() != kFormat)
        root.Key("format").Fail(std::string("expected \"") + kFormat + "\"");

    Instance fresh;
    ZedJsonFaults collect(faults);
    collect.ForEach(root.Key("instances"), true, [&](const ZedJsonNode& item) {
        const ZedJsonNode node = item.ExpectObject({"entity", "attributes"});
        std::string error;
        auto spec = TEntitySpec::Parse(node.Key("entity").String(), m_dictionary.get(), &error);
        if (!spec)
            node.Key("entity").Fail(error);
        if (spec->GetDepth() == 0)
            node.Key("entity").Fail("an instance needs a class and a name");
        const TDictClass* cls = nullptr;
        Instance* parent = ParentOf(*spec, fresh, node.Key("entity"), cls);
        const auto& last = spec->GetComponent(spec->GetDepth() - 1);
        auto instance = std::make_unique<Instance>();
        instance->cls = cls;
        instance->name = last.name;
        // Top-level instances point nowhere: the root moves when the load is kept.
        instance->parent = parent == &fresh ? nullptr : parent;
        ReadAttributes(node.Key("attributes"), *cls, collect, *instance);
        if (!parent->children[last.code].emplace(last.name, std::move(instance)).second)
            node.Key("entity").Fail("declared twice");
    });
    return fresh;
}

std::vector<TSimInstanceStore::Instance*> TSimInstanceStore::Resolve(const TEntitySpec& entity)
{
    std::vector<Instance*> level{&m_root};
    for (std::size_t depth = 0; depth < entity.GetDepth() && !level.empty(); ++depth) {
        const auto& component = entity.GetComponent(depth);
        std::vector<Instance*> next;
        for (Instance* node : level) {
            const auto byClass = node->children.find(component.code);
            if (byClass == node->children.end())
                continue;
            if (component.kind == TEntitySpec::Instance::Wildcard) {
                for (auto& [name, child] : byClass->second)
                    next.push_back(child.get());
            } else if (component.kind == TEntitySpec::Instance::Named) {
                if (auto found = byClass->second.find(component.name); found != byClass->second.end())
                    next.push_back(found->second.get());
            }
        }
        level = std::move(next);
    }
    if (entity.GetDepth() == 0)
        level.clear();
    return level;
}

TSimInstanceStore::Instance* TSimInstanceStore::ParentFor(const TEntitySpec& entity)
{
    if (entity.GetDepth() == 0 || entity.HasWildcard())
        return nullptr;
    if (entity.GetDepth() == 1)
        return &m_root;
    TEntitySpec parentSpec;
    for (std::size_t depth = 0; depth + 1 < entity.GetDepth(); ++depth) {
        const auto& c = entity.GetComponent(depth);
        if (c.kind != TEntitySpec::Instance::Named)
            return nullptr;
        parentSpec.AddClass(c.code, c.name);
    }
    const auto parents = Resolve(parentSpec);
    return parents.size() == 1 ? parents.front() : nullptr;
}

std::size_t TSimInstanceStore::Count() const { return CountBelow(m_root); }

TSimInstanceStore::Instance* TSimInstanceStore::Add(Instance* parent, const TDictClass& cls, const std::string& name)
{
    auto instance = std::make_unique<Instance>();
    instance->cls = &cls;
    instance->name = name;
    instance->parent = parent == &m_root ? nullptr : parent;
    auto [at, added] = parent->children[cls.GetCode()].emplace(name, std::move(instance));
    return added ? at->second.get() : nullptr;
}

void TSimInstanceStore::Remove(Instance* instance)
{
    Instance* parent = instance->parent ? instance->parent : &m_root;
    auto& siblings = parent->children[instance->cls->GetCode()];
    siblings.erase(instance->name);
}

TEntitySpec TSimInstanceStore::SpecOf(const Instance& instance)
{
    std::vector<const Instance*> path;
    for (const Instance* node = &instance; node; node = node->parent)
        path.push_back(node);
    TEntitySpec spec;
    for (auto it = path.rbegin(); it != path.rend(); ++it)
        spec.AddClass((*it)->cls->GetCode(), (*it)->name);
    return spec;
}
