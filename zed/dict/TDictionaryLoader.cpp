// SPDX-License-Identifier: BSD-3-Clause
#include "zed/dict/TDictionaryLoader.h"
#include "zed/value/ZedDisplayHint.h"

#include "zed/dict/ZedJsonReader.h"

#include <algorithm>
#include <map>
#include <optional>
#include <set>

namespace {

constexpr const char* kFormat = "zed-dictionary 1";
// Deeper nesting than this is refused, so nothing above walks without bound.
constexpr int kMaxTypeDepth = ZED_MAX_TYPE_DEPTH;
constexpr int kMaxClassDepth = ZED_MAX_CLASS_DEPTH;

using TypesByName = std::map<std::string, TDictTypePtr, ZedLessIgnoringCase>;

const TypesByName& Builtins()
{
    static const TypesByName builtins = [] {
        TypesByName map;
        // A file names the simple types as they are; the others it defines.
        for (const auto& [dt, name] : kZedDatatypeNames)
            if (!ZedHasDictType(dt) && dt != ZED_DT_USERDEFINED)
                map.emplace(std::string(name),
                            std::make_shared<const TDictType>(dt, std::string(name), std::string(name), dt));
        return map;
    }();
    return builtins;
}

// Refuses a second use of a code or a name within one scope.
class UniqueCheck {
public:
    explicit UniqueCheck(const char* what) : m_what(what) {}
    void Code(const ZedJsonNode& node, unsigned int code)
    {
        if (!m_codes.insert(code).second)
            node.Fail(std::string("a second ") + m_what + " with code " + std::to_string(code));
    }
    void Name(const ZedJsonNode& node, const std::string& name)
    {
        std::string lower;
        for (char c : name)
            lower.push_back(static_cast<char>(std::tolower(static_cast<unsigned char>(c))));
        if (!m_names.insert(lower).second)
            node.Fail(std::string("a second ") + m_what + " named \"" + name + "\" (names ignore case)");
    }

private:
    const char* m_what;
    std::set<unsigned int> m_codes;
    std::set<std::string> m_names;
};

}  // namespace

class TDictionaryLoader::Reader {
public:
    Reader(TDictionary& dictionary, std::vector<std::string>* faults) : m_dictionary(dictionary), m_faults(faults) {}

    void Read(const ZedJsonNode& root)
    {
        root.ExpectObject({"$schema", "format", "partitions", "types", "commonExceptions", "classes"});
        // Editors find a document's schema there; the loader has nothing to take from it.
        if (root.Has("$schema"))
            root.Key("$schema").String();
        if (root.Key("format").String() != kFormat)
            root.Key("format").Fail(std::string("expected \"") + kFormat + "\"");
        m_faults.Guard([&] { ReadPartitions(root.Key("partitions")); });
        m_faults.Guard([&] { ReadTypes(root.Key("types")); });
        m_faults.Guard([&] { ReadCommonExceptions(root.Key("commonExceptions")); });
        UniqueCheck unique("class");
        m_faults.ForEach(root.Key("classes"), true, [&](const ZedJsonNode& node) {
            m_dictionary.m_roots.push_back(ReadClass(node, nullptr, unique, 1));
        });
    }

private:
    void ReadPartitions(const ZedJsonNode& list)
    {
        UniqueCheck unique("partition");
        m_faults.ForEach(list, true, [&](const ZedJsonNode& item) {
            const ZedJsonNode node = item.ExpectObject({"code", "name"});
            TDictionary::Partition partition{node.Key("code").Unsigned(), node.Key("name").NonEmptyString()};
            if (partition.code == 0)
                node.Key("code").Fail("partition 0 stands for all partitions and cannot be declared");
            unique.Code(node.Key("code"), partition.code);
            unique.Name(node.Key("name"), partition.name);
            m_dictionary.m_partitions.push_back(std::move(partition));
        });
    }

    // Types may refer to each other in any order; each is built once, after
    // the types it refers to, and a type that refers back to itself is refused.
    void ReadTypes(const ZedJsonNode& list)
    {
        UniqueCheck unique("type");
        std::size_t index = 0;
        m_faults.ForEach(list, false, [&](const ZedJsonNode& node) {
            const std::size_t i = index++;
            node.ExpectObject({"id", "name", "presentation", "kind", "items", "members", "element", "base"});
            const std::string name = node.Key("name").NonEmptyString();
            if (Builtins().count(name))
                node.Key("name").Fail("\"" + name + "\" is a built-in type");
            unique.Code(node.Key("id"), node.Key("id").Unsigned());
            unique.Name(node.Key("name"), name);
            m_pendingTypes.emplace(name, i);
            m_typeOrder.push_back(name);
        });
        // Kept: a type that failed is built again (and fails again) where it is referred to.
        m_typeList.emplace(list);
        for (const std::string& name : m_typeOrder)
            m_faults.Guard([&] {
                m_dictionary.m_types.push_back(ResolveType(name, list.At(m_pendingTypes.at(name)).Key("name"), 0));
            });
    }

    // `height` receives how many declared types nest in the type, itself
    // included: a chain declared bottom-up reuses types resolved earlier, and
    // their height still counts against the limit.
    TDictTypePtr ResolveType(const std::string& name, const ZedJsonNode& where, int depth, int* height = nullptr)
    {
        int own = 0;
        TDictTypePtr type = BuiltinType(name);
        if (!type) {
            if (auto done = m_resolved.find(name); done != m_resolved.end()) {
                type = done->second;
                own = m_heights.at(name);
            } else {
                const auto pending = m_pendingTypes.find(name);
                if (pending == m_pendingTypes.end())
                    where.Fail("unknown type \"" + name + "\"");
                if (m_resolving.count(name))
                    where.Fail("type \"" + name + "\" refers to itself");
                if (depth >= kMaxTypeDepth)
                    where.Fail("types nest deeper than " + std::to_string(kMaxTypeDepth) + " levels");
                type = BuildResolving(name, m_typeList->At(pending->second), depth, own);
                m_resolved.emplace(name, type);
                m_heights.emplace(name, own);
            }
        }
        if (depth + own > kMaxTypeDepth)
            where.Fail("types nest deeper than " + std::to_string(kMaxTypeDepth) + " levels");
        if (height)
            *height = own;
        return type;
    }

    // Builds a type while it is marked as being resolved, so that a reference
    // back to it is seen; the mark goes whether the build succeeds or not.
    TDictTypePtr BuildResolving(const std::string& name, const ZedJsonNode& node, int depth, int& height)
    {
        struct Mark {
            std::set<std::string, ZedLessIgnoringCase>& resolving;
            const std::string& name;
            ~Mark() { resolving.erase(name); }
        } mark{m_resolving, name};
        m_resolving.insert(name);
        return BuildType(node, depth, height);
    }

    std::vector<TDictTypeEnumeration::Item> ReadItems(const ZedJsonNode& list)
    {
        std::vector<TDictTypeEnumeration::Item> items;
        UniqueCheck unique("item");
        m_faults.ForEach(list, true, [&](const ZedJsonNode& member) {
            const ZedJsonNode item = member.ExpectObject({"code", "text"});
            TDictTypeEnumeration::Item read{item.Key("code").Integer(), item.Key("text").NonEmptyString()};
            unique.Code(item.Key("code"), static_cast<unsigned int>(read.code));
            unique.Name(item.Key("text"), read.text);
            items.push_back(std::move(read));
        });
        if (list.ArraySize(true) == 0)
            list.Fail("an enumeration needs at least one item");
        return items;
    }

    // refer resolves a member's type by its name.
    template <class Refer>
    std::vector<TDictTypeRecord::Member> ReadMembers(const ZedJsonNode& list, Refer& refer)
    {
        std::vector<TDictTypeRecord::Member> members;
        UniqueCheck unique("member");
        m_faults.ForEach(list, true, [&](const ZedJsonNode& item) {
            const ZedJsonNode member = item.ExpectObject({"id", "name", "presentation", "type"});
            TDictTypeRecord::Member m;
            m.id = member.Key("id").Unsigned();
            m.name = member.Key("name").NonEmptyString();
            m.presentationName = member.StringOr("presentation", m.name);
            m.type = refer(member.Key("type").NonEmptyString(), member.Key("type"));
            unique.Code(member.Key("id"), m.id);
            unique.Name(member.Key("name"), m.name);
            members.push_back(std::move(m));
        });
        return members;
    }

    TDictTypePtr BuildType(const ZedJsonNode& node, int depth, int& height)
    {
        height = 1;
        const auto refer = [&](const std::string& name, const ZedJsonNode& where) {
            int below = 0;
            TDictTypePtr type = ResolveType(name, where, depth + 1, &below);
            height = std::max(height, below + 1);
            return type;
        };
        const unsigned int id = node.Key("id").Unsigned();
        const std::string name = node.Key("name").String();
        const std::string presentation = node.StringOr("presentation", name);
        const std::string kind = node.Key("kind").String();
        const auto refuse = [&](std::initializer_list<const char*> keys) {
            for (const char* key : keys)
                if (node.Has(key))
                    node.Key(key).Fail(std::string("not a key of a ") + kind + " type");
        };
        if (kind == "enumeration") {
            refuse({"members", "element", "base"});
            return std::make_shared<const TDictTypeEnumeration>(id, name, presentation, ReadItems(node.Key("items")));
        }
        if (kind == "record") {
            refuse({"items", "element", "base"});
            return std::make_shared<const TDictTypeRecord>(id, name, presentation,
                                                           ReadMembers(node.Key("members"), refer));
        }
        if (kind == "set" || kind == "sequence") {
            refuse({"items", "members", "base"});
            TDictTypePtr element = refer(node.Key("element").NonEmptyString(), node.Key("element"));
            return std::make_shared<const TDictTypeConstructorOf>(id, name, presentation, kind == "sequence",
                                                                  std::move(element));
        }
        if (kind == "user") {
            refuse({"items", "members", "element"});
            TDictTypePtr base = refer(node.Key("base").NonEmptyString(), node.Key("base"));
            if (base->GetDatatype() == ZED_DT_USERDEFINED)
                node.Key("base").Fail("a user type cannot stand on another user type");
            // The wrapped values' definition: the base's kind under the user type's name.
            std::unique_ptr<TDictType> named = base->Clone();
            static_cast<TDictType&>(*named) = TDictType(id, name, presentation, base->GetDatatype());
            return std::make_shared<const TDictTypeUserDefined>(id, name, presentation, TDictTypePtr(std::move(named)));
        }
        node.Key("kind").Fail("expected \"enumeration\", \"record\", \"set\", \"sequence\" or \"user\"");
    }

    void ReadCommonExceptions(const ZedJsonNode& list)
    {
        UniqueCheck unique("exception");
        m_faults.ForEach(list, false, [&](const ZedJsonNode& node) {
            m_commonExceptions.push_back(ReadReply(node, ZED_DICT_EXCEPTION, unique));
        });
    }

    std::unique_ptr<TDictClass> ReadClass(const ZedJsonNode& node, const TDictClass* parent, UniqueCheck& siblings,
                                          int depth)
    {
        node.ExpectObject(
            {"code", "name", "presentation", "description", "attributes", "directives", "events", "children", "snmp"});
        if (depth > kMaxClassDepth)
            node.Fail("classes nest deeper than " + std::to_string(kMaxClassDepth) + " levels");
        auto cls = std::make_unique<TDictClass>();
        cls->m_code = node.Key("code").Unsigned();
        cls->m_name = node.Key("name").NonEmptyString();
        cls->m_presentationName = node.StringOr("presentation", cls->m_name);
        cls->m_description = node.StringOr("description", "");
        cls->m_pParent = parent;
        siblings.Code(node.Key("code"), cls->m_code);
        siblings.Name(node.Key("name"), cls->m_name);
        for (char c : cls->m_name)
            if (std::isspace(static_cast<unsigned char>(c)) || c == '"' || c == '`' || c == '#' || c == '*')
                node.Key("name").Fail("a class name holds no blanks, quotes, \"#\" or \"*\"");

        UniqueCheck uniqueAttribute("attribute");
        m_faults.ForEach(node.Key("attributes"), false, [&](const ZedJsonNode& item) {
            cls->m_attributes.push_back(ReadAttribute(item, uniqueAttribute));
        });

        if (node.Has("snmp"))
            m_faults.Guard([&] { cls->m_snmp = ReadSnmpClass(node.Key("snmp"), *cls); });

        UniqueCheck uniqueDirective("directive");
        m_faults.ForEach(node.Key("directives"), false, [&](const ZedJsonNode& item) {
            cls->m_directives.push_back(ReadDirective(item, uniqueDirective));
        });
        cls->m_directives.push_back(CommonExceptions());

        UniqueCheck uniqueEvent("event");
        m_faults.ForEach(node.Key("events"), false,
                         [&](const ZedJsonNode& item) { cls->m_events.push_back(ReadEvent(item, uniqueEvent)); });

        UniqueCheck uniqueChild("class");
        m_faults.ForEach(node.Key("children"), false, [&](const ZedJsonNode& item) {
            cls->m_children.push_back(ReadClass(item, cls.get(), uniqueChild, depth + 1));
        });
        return cls;
    }

    // Every class has the common exceptions as a directive of its own.
    TDictDirective CommonExceptions() const
    {
        TDictDirective common;
        common.m_id = ZED_COMMON_EXCEPTION_DIRECTIVE;
        common.m_name = common.m_presentationName = "Common Exceptions";
        common.m_exceptions = m_commonExceptions;
        return common;
    }

    TDictEvent ReadEvent(const ZedJsonNode& item, UniqueCheck& unique)
    {
        const ZedJsonNode e = item.ExpectObject({"id", "name", "presentation", "description", "arguments", "snmp"});
        TDictEvent event;
        event.m_id = e.Key("id").Unsigned();
        event.m_name = e.Key("name").NonEmptyString();
        event.m_presentationName = e.StringOr("presentation", event.m_name);
        event.m_description = e.StringOr("description", "");
        unique.Code(e.Key("id"), event.m_id);
        unique.Name(e.Key("name"), event.m_name);
        event.m_arguments = ReadArguments(e.Key("arguments"));
        if (!e.Has("snmp"))
            return event;
        const ZedJsonNode snmp = e.Key("snmp").ExpectObject({"trap", "unbound"});
        if (snmp.Has("unbound") == snmp.Has("trap"))
            snmp.Fail("expected either \"trap\" (a notification's OID) or \"unbound\": true");
        if (snmp.Has("unbound") && !snmp.Key("unbound").Bool())
            snmp.Key("unbound").Fail("expected true: leave \"unbound\" out otherwise");
        event.m_snmpUnbound = snmp.Has("unbound");
        if (snmp.Has("trap"))
            event.m_snmpTrap = ReadOid(snmp.Key("trap"));
        return event;
    }

    TDictDirective ReadDirective(const ZedJsonNode& node, UniqueCheck& unique)
    {
        node.ExpectObject({"id", "name", "presentation", "request", "takesAttributes", "responses", "exceptions"});
        TDictDirective directive;
        directive.m_id = node.Key("id").Unsigned();
        if (directive.m_id == ZED_COMMON_EXCEPTION_DIRECTIVE)
            node.Key("id").Fail("directive 55 is kept for the common exceptions (\"commonExceptions\")");
        directive.m_name = node.Key("name").NonEmptyString();
        directive.m_presentationName = node.StringOr("presentation", directive.m_name);
        unique.Code(node.Key("id"), directive.m_id);
        unique.Name(node.Key("name"), directive.m_name);
        directive.m_request = ReadArguments(node.Key("request"));
        directive.m_takesAttributes = node.BoolOr("takesAttributes", false);
        // Attribute codes and argument identifiers would share one request: one or the other.
        if (directive.m_takesAttributes && node.Has("request"))
            node.Key("request").Fail("a directive that takes attributes has no request arguments");
        UniqueCheck uniqueResponse("response"), uniqueException("exception");
        m_faults.ForEach(node.Key("responses"), false, [&](const ZedJsonNode& item) {
            directive.m_responses.push_back(ReadReply(item, ZED_DICT_RESPONSE, uniqueResponse));
        });
        m_faults.ForEach(node.Key("exceptions"), false, [&](const ZedJsonNode& item) {
            directive.m_exceptions.push_back(ReadReply(item, ZED_DICT_EXCEPTION, uniqueException));
        });
        return directive;
    }

    TDictReply ReadReply(const ZedJsonNode& node, ZED_T_DICT_OBJECT_TYPE kind, UniqueCheck& unique)
    {
        node.ExpectObject({"code", "name", "text", "arguments"});
        TDictReply reply;
        reply.m_kind = kind;
        reply.m_code = node.Key("code").Unsigned();
        reply.m_name = node.Key("name").NonEmptyString();
        reply.m_text = node.Key("text").NonEmptyString();
        unique.Code(node.Key("code"), reply.m_code);
        unique.Name(node.Key("name"), reply.m_name);
        reply.m_arguments = ReadArguments(node.Key("arguments"));
        return reply;
    }

    std::vector<TDictArgument> ReadArguments(const ZedJsonNode& list)
    {
        std::vector<TDictArgument> arguments;
        UniqueCheck unique("argument");
        m_faults.ForEach(list, false, [&](const ZedJsonNode& node) {
            node.ExpectObject({"id", "name", "presentation", "description", "type", "required", "units", "displayed",
                               "default", "serverDefault", "length", "range", "snmp"});
            TDictArgument argument;
            ReadValueCommon(node, argument, unique);
            argument.m_required = node.BoolOr("required", false);
            if (node.Has("snmp")) {
                const ZedJsonNode snmp = node.Key("snmp").ExpectObject({"oid", "syntax", "hint"});
                const std::string hint = ReadHint(snmp);
                argument.m_snmp = TDictSnmpVariable{ReadOid(snmp.Key("oid")),
                                                    ReadSyntax(snmp.Key("syntax"), argument.GetType(), hint), hint};
            }
            arguments.push_back(std::move(argument));
        });
        return arguments;
    }

    TDictAttribute ReadAttribute(const ZedJsonNode& node, UniqueCheck& unique)
    {
        node.ExpectObject({"id", "name", "presentation", "description", "type", "partition", "access", "units",
                           "displayed", "default", "serverDefault", "length", "range", "sqlColumnSize", "snmp"});
        TDictAttribute attribute;
        ReadValueCommon(node, attribute, unique);
        const std::string partition = node.Key("partition").String();
        bool found = false;
        for (const auto& p : m_dictionary.m_partitions)
            if (p.name == partition) {
                attribute.m_partition = p.code;
                found = true;
            }
        if (!found)
            node.Key("partition").Fail("unknown partition \"" + partition + "\"");
        const std::string access = node.StringOr("access", "read-only");
        if (access == "read-only")
            attribute.m_access = ZED_ACCESS_READ_ONLY;
        else if (access == "read-write")
            attribute.m_access = ZED_ACCESS_READ_WRITE;
        else if (access == "write-only")
            attribute.m_access = ZED_ACCESS_WRITE_ONLY;
        else
            node.Key("access").Fail("expected \"read-only\", \"read-write\" or \"write-only\"");
        attribute.m_sqlColumnSize = node.UnsignedOr("sqlColumnSize", 0);
        if (node.Has("snmp")) {
            const ZedJsonNode snmp = node.Key("snmp").ExpectObject({"column", "syntax", "entry", "hint"});
            TDictSnmpColumn column;
            column.column = snmp.Key("column").Unsigned();
            if (column.column == 0)
                snmp.Key("column").Fail("a column's sub-identifier is 1 or more");
            column.hint = ReadHint(snmp);
            column.syntax = ReadSyntax(snmp.Key("syntax"), attribute.GetType(), column.hint);
            if (snmp.Has("entry"))
                column.entry = ReadOid(snmp.Key("entry"));
            attribute.m_snmp = column;
        }
        return attribute;
    }

    static ZedOid ReadOid(const ZedJsonNode& text)
    {
        const std::optional<ZedOid> parsed = ZedParseOid(text.NonEmptyString());
        if (!parsed)
            text.Fail("expected an OID such as 1.3.6.1.2.1.1");
        return *parsed;
    }

    static ZedSnmpSyntax ReadSyntax(const ZedJsonNode& node, const TDictType& type, const std::string& hint)
    {
        const std::string syntax = node.NonEmptyString();
        const std::optional<ZedSnmpSyntax> known = ZedSnmpSyntaxNamed(syntax);
        if (!known)
            node.Fail("unknown SMI syntax \"" + syntax + "\"");
        const bool integer = *known == ZedSnmpSyntax::Integer || *known == ZedSnmpSyntax::Unsigned;
        if (!hint.empty()
            && (integer ? !ZedIsIntegerHint(hint) : !ZedIsOctetHint(hint) || *known != ZedSnmpSyntax::OctetString))
            node.Fail("the display hint \"" + hint + "\" is not one of " + syntax);
        // A hinted number is written as text ("12.34").
        if (!SyntaxFits(*known, type) && !(integer && !hint.empty() && IsText(type)))
            node.Fail(syntax + " does not fit the type " + type.GetName());
        return *known;
    }

    // A number's narrower range: [low, high], both ends included.
    static TDictRange ReadRange(const ZedJsonNode& node, const TDictType& type)
    {
        if (!ZedIsNumber(type.GetDatatype()) || type.GetDatatype() == ZED_DT_FLOAT || type.GetDatatype() == ZED_DT_REAL)
            node.Fail("only a whole number has a range");
        if (node.ArraySize(false) != 2)
            node.Fail("expected [low, high]");
        const TDictRange range{node.At(0).Integer64(), node.At(1).Integer64()};
        if (range.low > range.high)
            node.Fail("the range's low end is above its high end");
        return range;
    }

    static std::string ReadHint(const ZedJsonNode& snmp)
    {
        return snmp.Has("hint") ? snmp.Key("hint").NonEmptyString() : "";
    }

    static bool IsText(const TDictType& type)
    {
        const ZED_T_DATATYPE dt = type.GetDatatype();
        return dt == ZED_DT_LATIN1STRING || dt == ZED_DT_SIMPLENAME || dt == ZED_DT_FULLNAME
               || dt == ZED_DT_OCTETSTRING;
    }

    // Which value kinds carry each syntax: numbers of their range,
    // enumerations by number, and texts for strings, OIDs and addresses.
    static bool SyntaxFits(ZedSnmpSyntax syntax, const TDictType& type)
    {
        ZED_T_DATATYPE dt = type.GetDatatype();
        if (type.GetDictObjectType() == ZED_DICT_TYPE_USERDEFINED)
            dt = static_cast<const TDictTypeUserDefined&>(type).GetBase()->GetDatatype();
        const auto among = [dt](std::initializer_list<ZED_T_DATATYPE> kinds) {
            return std::find(kinds.begin(), kinds.end(), dt) != kinds.end();
        };
        switch (syntax) {
        case ZedSnmpSyntax::Integer:
            return among({ZED_DT_ENUMERATION, ZED_DT_INTEGER16, ZED_DT_INTEGER32, ZED_DT_UNSIGNED16});
        case ZedSnmpSyntax::Unsigned: return among({ZED_DT_UNSIGNED16, ZED_DT_UNSIGNED32, ZED_DT_INTEGER32});
        case ZedSnmpSyntax::Counter32: return among({ZED_DT_COUNTER32, ZED_DT_UNSIGNED32});
        case ZedSnmpSyntax::TimeTicks: return among({ZED_DT_RELTIME, ZED_DT_UNSIGNED32});
        case ZedSnmpSyntax::RowStatus: return among({ZED_DT_ENUMERATION, ZED_DT_INTEGER32});
        case ZedSnmpSyntax::TruthValue: return among({ZED_DT_BOOLEAN});
        case ZedSnmpSyntax::DateAndTime: return among({ZED_DT_ABSTIME});
        case ZedSnmpSyntax::Counter64:
        case ZedSnmpSyntax::OctetString:
        case ZedSnmpSyntax::HexOctets:
        case ZedSnmpSyntax::DisplayString:
        case ZedSnmpSyntax::ObjectId:
        case ZedSnmpSyntax::IpAddress:
        case ZedSnmpSyntax::Bits:
            return among({ZED_DT_LATIN1STRING, ZED_DT_SIMPLENAME, ZED_DT_FULLNAME, ZED_DT_OCTETSTRING});
        }
        return false;
    }

    // A class bound to SNMP: the agent itself, a scalar group or a table
    // whose index columns are attributes of the class (bound themselves).
    TDictSnmpClass ReadSnmpClass(const ZedJsonNode& node, const TDictClass& cls)
    {
        node.ExpectObject({"agent", "scalars", "table", "index", "implied", "rowStatus"});
        const int kinds = (node.Has("agent") ? 1 : 0) + (node.Has("table") ? 1 : 0)
                          + (node.Has("scalars") && !node.Has("agent") ? 1 : 0);
        if (kinds != 1)
            node.Fail("a class is the agent (\"agent\", with its scalars), a scalar group (\"scalars\") or a table "
                      "(\"table\")");
        TDictSnmpClass snmp;
        const auto oid = [](const ZedJsonNode& text) { return ReadOid(text); };
        const auto bound = [&cls](const ZedJsonNode& name) -> const TDictAttribute& {
            const TDictAttribute* attribute = cls.FindAttribute(name.NonEmptyString());
            if (!attribute)
                name.Fail("no attribute \"" + name.String() + "\" in " + cls.GetName());
            if (!attribute->GetSnmp())
                name.Fail("the attribute " + attribute->GetName() + " has no SNMP column");
            return *attribute;
        };
        if (node.Has("agent")) {
            if (!node.Key("agent").Bool())
                node.Key("agent").Fail("expected true");
            snmp.kind = TDictSnmpClass::Kind::Agent;
            if (node.Has("scalars"))
                snmp.oid = oid(node.Key("scalars"));
        } else if (node.Has("scalars")) {
            snmp.kind = TDictSnmpClass::Kind::Scalars;
            snmp.oid = oid(node.Key("scalars"));
        } else {
            snmp.kind = TDictSnmpClass::Kind::Table;
            snmp.oid = oid(node.Key("table"));
            const ZedJsonNode index = node.Key("index");
            const std::size_t parts = index.ArraySize(true);
            if (parts == 0)
                index.Fail("a table's rows are named by one index column or more");
            for (std::size_t i = 0; i < parts; ++i)
                snmp.index.push_back(bound(index.At(i)).GetID());
            snmp.implied = node.BoolOr("implied", false);
            if (node.Has("rowStatus")) {
                const TDictAttribute& status = bound(node.Key("rowStatus"));
                if (status.GetSnmp()->syntax != ZedSnmpSyntax::RowStatus)
                    node.Key("rowStatus").Fail("the attribute " + status.GetName() + " has not the syntax RowStatus");
                snmp.rowStatus = status.GetID();
            }
        }
        if (snmp.kind != TDictSnmpClass::Kind::Table
            && (node.Has("index") || node.Has("implied") || node.Has("rowStatus")))
            node.Fail("only a table has an index and a RowStatus");
        return snmp;
    }

    void ReadValueCommon(const ZedJsonNode& node, TDictValue& value, UniqueCheck& unique)
    {
        value.m_id = node.Key("id").Unsigned();
        value.m_name = node.Key("name").NonEmptyString();
        value.m_presentationName = node.StringOr("presentation", value.m_name);
        unique.Code(node.Key("id"), value.m_id);
        unique.Name(node.Key("name"), value.m_name);
        value.m_type = ResolveType(node.Key("type").NonEmptyString(), node.Key("type"), 0);
        value.m_units = node.StringOr("units", "");
        value.m_description = node.StringOr("description", "");
        if (node.Has("range"))
            value.m_range = ReadRange(node.Key("range"), *value.m_type);
        value.m_displayed = node.BoolOr("displayed", true);
        value.m_valueLength = node.UnsignedOr("length", 0);
        const bool serverDefault = node.BoolOr("serverDefault", false);
        if (node.Has("default")) {
            if (serverDefault)
                node.Key("default").Fail("a default text and \"serverDefault\" exclude each other");
            value.m_defaultText = node.Key("default").String();
            if (value.m_defaultText == ZED_NO_DEFAULT_TEXT)
                node.Key("default").Fail(std::string("\"") + ZED_NO_DEFAULT_TEXT + "\" means no default");
            value.m_defaultPolicy = ZED_DEFAULT_DICTIONARY;
        } else if (serverDefault) {
            value.m_defaultPolicy = ZED_DEFAULT_SERVER;
        }
    }

    TDictionary& m_dictionary;
    ZedJsonFaults m_faults;
    std::optional<ZedJsonNode> m_typeList;
    // Types by their names, which compare as every name of the dictionary does.
    std::map<std::string, std::size_t, ZedLessIgnoringCase> m_pendingTypes;
    std::vector<std::string> m_typeOrder;
    std::map<std::string, TDictTypePtr, ZedLessIgnoringCase> m_resolved;
    std::map<std::string, int, ZedLessIgnoringCase> m_heights;  // of the resolved types
    std::set<std::string, ZedLessIgnoringCase> m_resolving;
    std::vector<TDictReply> m_commonExceptions;
};

std::shared_ptr<const TDictionary> TDictionaryLoader::Load(std::string_view json, const std::string& source,
                                                           std::vector<std::string>* faults)
{
    ZedJsonFaults collect(faults);
    std::shared_ptr<TDictionary> dictionary;
    collect.Guard([&] {
        const nlohmann::json document = ZedJsonNode::ParseText(json, source);
        dictionary = std::make_shared<TDictionary>();
        dictionary->m_sourceName = source;
        Reader(*dictionary, faults).Read(ZedJsonNode(document, "$", source));
    });
    if (faults && !faults->empty())
        return nullptr;
    return dictionary;
}

TDictTypePtr TDictionaryLoader::BuiltinType(const std::string& name)
{
    const auto found = Builtins().find(name);
    return found == Builtins().end() ? nullptr : found->second;
}
