// SPDX-License-Identifier: BSD-3-Clause
#include "zed/mib/TMibCompiler.h"

#include "zed/TException.h"
#include "zed/ZedText.h"
#include "zed/mib/TMibDictionaryParts.h"
#include "zed/mib/TMibSyntax.h"

#include <nlohmann/json.hpp>

#include <map>
#include <set>

namespace {

using json = nlohmann::ordered_json;
using Names = std::set<std::string, ZedLessIgnoringCase>;

// Attribute identifiers: a column's own sub-identifier; the columns of the
// k-th table that augments the class above (k << 16); the index objects of
// other tables from here.
constexpr std::uint32_t kAugmentShift = 16;
constexpr std::uint32_t kForeignIndexBase = 0x7fff0000;

ZedOid ParentOf(const ZedOid& oid) { return ZedOid(oid.begin(), oid.end() - (oid.empty() ? 0 : 1)); }

// The OIDs a dictionary binds already (tables, scalar groups, notifications).
void CollectBound(const json& cls, std::set<std::string>& bound)
{
    if (const auto snmp = cls.find("snmp"); snmp != cls.end())
        for (const char* key : {"table", "scalars"})
            if (snmp->contains(key))
                bound.insert(snmp->at(key).get<std::string>());
    for (const json& event : cls.value("events", json::array()))
        if (event.contains("snmp") && event["snmp"].contains("trap"))
            bound.insert(event["snmp"]["trap"].get<std::string>());
    for (const json& child : cls.value("children", json::array()))
        CollectBound(child, bound);
}

class Compiler {
public:
    Compiler(const TMibModules& mib, json& doc, TMibCompileOptions options, TMibCompilation& out)
        : m_mib(mib), m_doc(Prepared(doc)), m_options(options), m_out(out), m_agent(FindAgent(m_doc))
    {
        m_named.insert(mib.loaded.begin(), mib.loaded.end());
        for (const json& child : m_agent.value("children", json::array())) {
            m_classNames.insert(child["name"].get<std::string>());
            m_nextCode = std::max(m_nextCode, child["code"].get<unsigned int>() + 1);
        }
        for (const json& type : m_doc.value("types", json::array())) {
            m_typeItems[type["name"].get<std::string>()] = type.value("items", json());
            m_nextTypeId = std::max(m_nextTypeId, type["id"].get<unsigned int>() + 1);
        }
        CollectBound(m_agent, m_bound);
        CountDescriptors();
        m_partitionType = ZedMibEnsurePartitions(m_doc, m_nextTypeId);
    }

    void Run()
    {
        ScalarGroups();
        Tables();
        Augmentations();
        Notifications();
        json& children = m_agent["children"];
        if (children.is_null())
            children = json::array();
        for (json& cls : m_classes)
            children.push_back(std::move(cls));
        m_out.classes = m_classes.size();
    }

private:
    // Keys added later would move the document's members: they are there first.
    static json& Prepared(json& doc)
    {
        if (!doc.is_object())
            throw TException("the base dictionary is no JSON object");
        for (const char* list : {"partitions", "types"})
            if (!doc.contains(list) || !doc[list].is_array())
                doc[list] = json::array();
        return doc;
    }

    static json& FindAgent(json& doc)
    {
        if (doc.is_object() && doc.contains("classes") && doc["classes"].is_array())
            for (json& cls : doc["classes"])
                if (cls.contains("snmp") && cls["snmp"].value("agent", false))
                    return cls;
        throw TException("the dictionary has no agent class (a top class with \"snmp\": {\"agent\": true})");
    }

    // A descriptor two modules define for two OIDs is written MODULE::descriptor.
    void CountDescriptors()
    {
        for (const TMibNode& node : m_mib.nodes) {
            const auto [at, added] = m_byName.emplace(node.name, &node);
            if (!added && at->second->oid != node.oid)
                m_ambiguous.insert(node.name);
        }
    }

    // The first node of a descriptor, as an INDEX or OBJECTS clause names it.
    const TMibNode* Named(const std::string& name) const
    {
        const auto found = m_byName.find(name);
        return found == m_byName.end() ? nullptr : found->second;
    }

    std::string NameOf(const TMibNode& node) const
    {
        return m_ambiguous.count(node.name) ? node.module + "::" + node.name : node.name;
    }

    bool Kept(const TMibNode& node) const
    {
        return m_named.count(node.module) && (node.status == ZedMibStatus::Current || m_options.withRetired);
    }

    void Warn(const TMibNode& node, const std::string& why)
    {
        m_out.warnings.push_back({node.module, "", 0, node.name + " is left out: " + why, false});
    }

    // ---- types ---------------------------------------------------------------

    // The type of a presentation: a built-in, or an enumeration declared
    // once under the convention's name (the object's for one of its own).
    std::string TypeOf(const TMibNode& node, const TMibPresentation& shown)
    {
        if (!shown.enumeration)
            return shown.type;
        json items = json::array();
        std::set<std::int64_t> codes;
        Names texts;
        for (const TMibNamedNumber& number : node.numbers)
            if (!number.name.empty() && codes.insert(number.value).second && texts.insert(number.name).second)
                items.push_back({{"code", number.value}, {"text", number.name}});
        if (items.empty())
            return {};
        for (std::string name : {node.convention.empty() ? NameOf(node) : node.convention,
                                 node.module + "::" + (node.convention.empty() ? node.name : node.convention)}) {
            const auto known = m_typeItems.find(name);
            if (known != m_typeItems.end() && known->second == items)
                return name;
            if (known == m_typeItems.end()) {
                m_doc["types"].push_back(
                    {{"id", m_nextTypeId++}, {"name", name}, {"kind", "enumeration"}, {"items", items}});
                m_typeItems.emplace(name, std::move(items));
                return name;
            }
        }
        return {};
    }

    // ---- attributes ----------------------------------------------------------

    enum class Role { Index, Object, ForeignIndex };

    std::optional<json> Attribute(const TMibNode& node, std::uint32_t id, Role role, const ZedOid& entry = {})
    {
        if (node.oid.empty() || node.oid.back() == 0) {
            Warn(node, "an object's sub-identifier is 1 or more");
            return std::nullopt;
        }
        const TMibPresentation shown = ZedMibPresentationOf(node);
        const std::string type = shown.why.empty() ? TypeOf(node, shown) : std::string();
        if (type.empty()) {
            Warn(node, shown.why.empty() ? "its enumeration's name is taken" : shown.why);
            return std::nullopt;
        }
        const bool writable = role == Role::Object && node.Writable() && shown.syntax != "RowStatus";
        json attribute = {{"id", id}, {"name", NameOf(node)}, {"type", type}};
        attribute["partition"] = ZedMibPartitionOf(role != Role::Object, shown.syntax, writable);
        attribute["access"] = writable ? "read-write" : "read-only";
        if (!node.units.empty())
            attribute["units"] = node.units;
        if (shown.length)
            attribute["length"] = shown.length;
        if (const auto range = RangeOf(node, shown))
            attribute["range"] = *range;
        if (const std::string value = ZedMibDefaultOf(node, shown); writable && !value.empty())
            attribute["default"] = value;
        if (!node.description.empty())
            attribute["description"] = node.description;
        attribute["snmp"] = {{"column", node.oid.back()}, {"syntax", shown.syntax}};
        if (!shown.hint.empty())
            attribute["snmp"]["hint"] = shown.hint;
        if (!entry.empty())
            attribute["snmp"]["entry"] = ZedOidText(entry);
        return attribute;
    }

    // Adds an attribute to a class unless one of its identifier or name is
    // there already (two objects of one OID, a descriptor twice).
    bool AddAttribute(json& cls, json attribute, const TMibNode& node)
    {
        for (const json& known : cls["attributes"]) {
            const std::string name = known["name"].get<std::string>();
            const std::string& other = attribute["name"].get_ref<const std::string&>();
            if (known["id"] == attribute["id"]
                || (!ZedLessIgnoringCase()(name, other) && !ZedLessIgnoringCase()(other, name))) {
                Warn(node, "its OID or its name is " + name + "'s too");
                return false;
            }
        }
        cls["attributes"].push_back(std::move(attribute));
        return true;
    }

    // The hull of a number's ranges ("(0..100 | 200..300)" is 0 to 300): the
    // field refuses what lies outside. net-snmp keeps range ends as int, so
    // an Unsigned32 end past 2^31 is no end to believe.
    static std::optional<json> RangeOf(const TMibNode& node, const TMibPresentation& shown)
    {
        if ((shown.type != "Integer32" && shown.type != "Unsigned32") || node.ranges.empty())
            return std::nullopt;
        std::int64_t low = node.ranges.front().low, high = node.ranges.front().high;
        for (const TMibRange& range : node.ranges) {
            low = std::min(low, range.low);
            high = std::max(high, range.high);
        }
        if (low > high || (shown.type == "Unsigned32" && low < 0))
            return std::nullopt;
        return json::array({low, high});
    }

    // Scalars and columns an operator can read: index objects come by the index.
    static bool Readable(const TMibNode& node)
    {
        return node.access != ZedMibAccess::NotAccessible && node.access != ZedMibAccess::ForNotify;
    }

    // ---- classes -------------------------------------------------------------

    // A class named by a node, for the scalar group or table entry of that
    // OID; none when the base binds it already or the name is taken.
    std::optional<json> NewClass(const TMibNode& named, const TMibNode* described, const ZedOid& bound)
    {
        // What is bound once is not bound again: the base's, or a node the
        // parser gave twice.
        if (!m_bound.insert(ZedOidText(bound)).second)
            return std::nullopt;
        std::string name = NameOf(named);
        if (m_classNames.count(name))
            name = named.module + "::" + named.name;
        if (!m_classNames.insert(name).second) {
            Warn(named, "a class of its name is there already");
            return std::nullopt;
        }
        json cls = {{"code", m_nextCode++}, {"name", name}};
        if (described && !described->description.empty())
            cls["description"] = described->description;
        return cls;
    }

    void Finish(json cls, bool hasRowStatus)
    {
        bool writable = false;
        for (const json& attribute : cls["attributes"])
            writable = writable || attribute["access"] == "read-write";
        cls["directives"] = Directives(writable, hasRowStatus);
        m_classes.push_back(std::move(cls));
    }

    void ScalarGroups()
    {
        std::map<ZedOid, std::vector<const TMibNode*>> groups;
        for (const TMibNode& node : m_mib.nodes)
            if (node.kind == ZedMibKind::Scalar && Kept(node) && Readable(node))
                groups[ParentOf(node.oid)].push_back(&node);
        for (const auto& [oid, scalars] : groups) {
            const TMibNode* parent = m_mib.Find(oid);
            if (!parent)
                continue;
            std::optional<json> cls = NewClass(*parent, parent, oid);
            if (!cls)
                continue;
            (*cls)["snmp"] = {{"scalars", ZedOidText(oid)}};
            (*cls)["attributes"] = json::array();
            for (const TMibNode* scalar : scalars)
                if (auto attribute = Attribute(*scalar, scalar->oid.back(), Role::Object))
                    AddAttribute(*cls, std::move(*attribute), *scalar);
            if (!(*cls)["attributes"].empty())
                Finish(std::move(*cls), false);
        }
    }

    // The attributes of an entry's index, each named in "index"; none when
    // an index object cannot be presented (no row could be named).
    std::optional<json> IndexOf(const TMibNode& entry, const TMibNode& indexed, json& cls)
    {
        json names = json::array();
        std::uint32_t foreign = kForeignIndexBase;
        for (const std::string& name : indexed.index) {
            const TMibNode* object = Named(name);
            if (!object || object->kind != ZedMibKind::Column) {
                Warn(entry, "its index object " + name + " is no column of a loaded module");
                return std::nullopt;
            }
            const bool own = ParentOf(object->oid) == entry.oid;
            std::optional<json> attribute =
                own ? Attribute(*object, object->oid.back(), Role::Index)
                    : Attribute(*object, foreign++, Role::ForeignIndex, ParentOf(object->oid));
            if (!attribute)
                return std::nullopt;
            names.push_back((*attribute)["name"]);
            if (!AddAttribute(cls, std::move(*attribute), *object))
                return std::nullopt;
        }
        return names;
    }

    // A table's columns, of the entry itself or of one that augments it.
    std::string AddColumns(const TMibNode& entry, json& cls, std::uint32_t idBase, const ZedOid& boundEntry)
    {
        std::string rowStatus;
        Names present;
        for (const json& attribute : cls["attributes"])
            present.insert(attribute["name"].get<std::string>());
        for (const TMibNode* column : m_mib.ChildrenOf(entry)) {
            if (column->kind != ZedMibKind::Column || !Kept(*column) || !Readable(*column)
                || present.count(NameOf(*column)))
                continue;
            if (auto attribute = Attribute(*column, idBase + column->oid.back(), Role::Object, boundEntry)) {
                const bool status = (*attribute)["snmp"]["syntax"] == "RowStatus";
                const std::string name = (*attribute)["name"].get<std::string>();
                if (AddAttribute(cls, std::move(*attribute), *column) && status && rowStatus.empty())
                    rowStatus = name;
            }
        }
        return rowStatus;
    }

    // A table: its entry's index, then its columns.
    void Table(const TMibNode& entry, const TMibNode& indexed)
    {
        const TMibNode* table = m_mib.Find(ParentOf(entry.oid));
        const bool augmenting = &entry != &indexed;
        std::optional<json> cls =
            NewClass(table ? *table : entry, table ? table : &entry, augmenting ? indexed.oid : entry.oid);
        if (!cls)
            return;
        (*cls)["attributes"] = json::array();
        const std::optional<json> index = IndexOf(entry, indexed, *cls);
        if (!index)
            return;
        const std::string rowStatus = AddColumns(entry, *cls, 0, augmenting ? entry.oid : ZedOid());
        const ZedOid bound = augmenting ? indexed.oid : entry.oid;
        (*cls)["snmp"] = {{"table", ZedOidText(bound)}, {"index", *index}};
        if (indexed.implied)
            (*cls)["snmp"]["implied"] = true;
        if (!rowStatus.empty() && !augmenting)
            (*cls)["snmp"]["rowStatus"] = rowStatus;
        m_tables[entry.name] = m_classes.size();
        Finish(std::move(*cls), !rowStatus.empty() && !augmenting);
    }

    void Tables()
    {
        for (const TMibNode& node : m_mib.nodes)
            if (node.kind == ZedMibKind::Entry && node.augments.empty() && Kept(node))
                Table(node, node);
    }

    // A table that AUGMENTS another joins its columns to the other's class;
    // one whose base is not compiled here stands alone, named by the base's index.
    void Augmentations()
    {
        std::map<std::string, std::uint32_t> augmenters;  // per base table
        for (const TMibNode& node : m_mib.nodes) {
            if (node.kind != ZedMibKind::Entry || node.augments.empty() || !Kept(node))
                continue;
            const TMibNode* base = Named(node.augments);
            if (!base || base->kind != ZedMibKind::Entry) {
                Warn(node, "the entry it augments, " + node.augments + ", is not in a loaded module");
                continue;
            }
            const auto joined = m_tables.find(base->name);
            if (joined == m_tables.end()) {
                Table(node, *base);
                continue;
            }
            json& cls = m_classes[joined->second];
            const std::uint32_t idBase = ++augmenters[base->name] << kAugmentShift;
            AddColumns(node, cls, idBase, node.oid);
            cls["directives"] = Directives(HasWritable(cls), cls["snmp"].contains("rowStatus"));
        }
    }

    // The directives of a class: each of the four sets made once.
    const json& Directives(bool writable, bool rowStatus)
    {
        json& made = m_directives[(writable ? 1 : 0) + (rowStatus ? 2 : 0)];
        if (made.is_null())
            made = ZedMibDirectives(m_partitionType, writable, rowStatus);
        return made;
    }

    static bool HasWritable(const json& cls)
    {
        for (const json& attribute : cls["attributes"])
            if (attribute["access"] == "read-write")
                return true;
        return false;
    }

    // ---- notifications -------------------------------------------------------

    // The class whose rows a notification's objects are columns of, if one.
    json* ClassOfObjects(const std::vector<const TMibNode*>& objects)
    {
        json* found = nullptr;
        for (const TMibNode* object : objects) {
            const TMibNode* entry = object->kind == ZedMibKind::Column ? m_mib.Find(ParentOf(object->oid)) : nullptr;
            const std::string base = entry ? (entry->augments.empty() ? entry->name : entry->augments) : "";
            const auto table = m_tables.find(base);
            json* cls = table == m_tables.end() ? nullptr : &m_classes[table->second];
            if (!cls || (found && found != cls))
                return nullptr;
            found = cls;
        }
        return found;
    }

    void Notification(const TMibNode& node)
    {
        if (!m_bound.insert(ZedOidText(node.oid)).second)
            return;
        std::vector<const TMibNode*> objects;
        json arguments = json::array();
        Names named;
        for (const std::string& name : node.objects) {
            if (!named.insert(name).second)
                continue;  // an object named twice is one argument
            const TMibNode* object = Named(name);
            const TMibPresentation shown = object ? ZedMibPresentationOf(*object) : TMibPresentation{};
            const std::string type = object && shown.why.empty() ? TypeOf(*object, shown) : std::string();
            if (type.empty()) {
                Warn(node, "its object " + name + " cannot be presented");
                return;
            }
            objects.push_back(object);
            json snmp = {{"oid", ZedOidText(object->oid)}, {"syntax", shown.syntax}};
            if (!shown.hint.empty())
                snmp["hint"] = shown.hint;
            arguments.push_back(
                {{"id", arguments.size() + 1}, {"name", NameOf(*object)}, {"type", type}, {"snmp", std::move(snmp)}});
        }
        json* cls = objects.empty() ? nullptr : ClassOfObjects(objects);
        json& owner = cls ? *cls : m_agent;
        unsigned int id = 1;
        Names names;
        for (const json& event : owner.value("events", json::array())) {
            id = std::max(id, event["id"].get<unsigned int>() + 1);
            names.insert(event["name"].get<std::string>());
        }
        const std::string name = names.count(NameOf(node)) ? node.module + "::" + node.name : NameOf(node);
        if (names.count(name)) {
            Warn(node, "an event of its name is there already");
            return;
        }
        json event = {{"id", id}, {"name", name}};
        if (!node.description.empty())
            event["description"] = node.description;
        event["arguments"] = std::move(arguments);
        event["snmp"] = {{"trap", ZedOidText(node.oid)}};
        owner["events"].push_back(std::move(event));
        ++m_out.events;
    }

    void Notifications()
    {
        for (const TMibNode& node : m_mib.nodes)
            if (node.kind == ZedMibKind::Notification && Kept(node))
                Notification(node);
    }

    const TMibModules& m_mib;
    json& m_doc;
    TMibCompileOptions m_options;
    TMibCompilation& m_out;
    json& m_agent;
    std::set<std::string> m_named;
    std::set<std::string> m_ambiguous;
    std::map<std::string, const TMibNode*> m_byName;
    std::set<std::string> m_bound;
    Names m_classNames;
    std::map<std::string, json, ZedLessIgnoringCase> m_typeItems;
    std::string m_partitionType;
    unsigned int m_nextCode = 2;
    unsigned int m_nextTypeId = 100;
    std::vector<json> m_classes;
    json m_directives[4];
    std::map<std::string, std::size_t> m_tables;  // entry descriptor, its class in m_classes
};

}  // namespace

TMibCompilation TMibCompiler::Compile(const TMibModules& modules, std::string_view base, TMibCompileOptions options)
{
    json doc;
    try {
        doc = base.empty() ? ZedMibAgentDictionary() : json::parse(base);
    } catch (const json::exception& e) {
        throw TException(std::string("the base dictionary is no JSON: ") + e.what());
    }
    TMibCompilation out;
    Compiler(modules, doc, options, out).Run();
    // The reader gives UTF-8; what still is not is replaced, never a reason to fail.
    out.json = doc.dump(options.indent, ' ', false, json::error_handler_t::replace);
    return out;
}
