// SPDX-License-Identifier: BSD-3-Clause
#include "zed/value/TEntitySpec.h"

#include "zed/dict/ZedDictCodes.h"

#include "zed/TApplication.h"
#include "zed/TException.h"

#include <cctype>

namespace {

const TDictionary* CurrentDictionary() { return ZEDGetApplication()->GetDictionary().get(); }

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f'; }

struct Token {
    std::string text;
    bool quoted = false;
};

bool Fail(std::string* error, const std::string& message)
{
    if (error)
        *error = message;
    return false;
}

bool Tokenize(std::string_view text, std::vector<Token>& tokens, std::string* error)
{
    std::size_t i = 0;
    while (true) {
        while (i < text.size() && IsBlank(text[i]))
            ++i;
        if (i == text.size())
            return true;
        Token token;
        const char quote = text[i];
        if (quote == '"' || quote == '`') {
            token.quoted = true;
            ++i;
            bool closed = false;
            while (i < text.size()) {
                char c = text[i++];
                if (c == quote) {
                    closed = true;
                    break;
                }
                if (c == '\\' && quote == '"' && i < text.size())
                    c = text[i++];
                token.text.push_back(c);
            }
            if (!closed)
                return Fail(error, "unterminated quoted instance name");
            if (i < text.size() && !IsBlank(text[i]))
                return Fail(error, "text right after a quoted instance name");
        } else {
            while (i < text.size() && !IsBlank(text[i])) {
                if (text[i] == '"' || text[i] == '`')
                    return Fail(error, "quote inside a bare word");
                token.text.push_back(text[i++]);
            }
        }
        tokens.push_back(std::move(token));
    }
}

// "#12" names a class by its code.
bool ClassCode(const std::string& word, unsigned int& code)
{
    if (word.size() < 2 || word.size() > 11 || word[0] != '#')
        return false;
    unsigned long long value = 0;
    for (std::size_t i = 1; i < word.size(); ++i) {
        if (word[i] < '0' || word[i] > '9')
            return false;
        value = value * 10 + static_cast<unsigned>(word[i] - '0');
    }
    if (value > 0xFFFFFFFFull)
        return false;
    code = static_cast<unsigned int>(value);
    return true;
}

// The class of a name or code under a parent (at the top: among the roots).
template <typename Key>
const TDictClass* ChildOf(const TDictionary* dictionary, const TDictClass* parent, bool atTop, const Key& key)
{
    if (!dictionary)
        return nullptr;
    if (atTop)
        return dictionary->FindRootClass(key);
    return parent ? parent->FindChild(key) : nullptr;
}

// Walks a path of class codes, giving each depth's class token.
template <typename Visit>
bool WalkClasses(const std::vector<unsigned int>& codes, const TDictionary* dictionary, Visit visit)
{
    bool allKnown = true;
    const TDictClass* cls = nullptr;
    for (std::size_t depth = 0; depth < codes.size(); ++depth) {
        cls = ChildOf(dictionary, cls, depth == 0, codes[depth]);
        allKnown = allKnown && cls;
        visit(depth, cls ? cls->GetName() : "#" + std::to_string(codes[depth]), cls);
    }
    return allKnown;
}

// Parses class tokens (and, for specifications, instances) into components.
bool ParseComponents(std::string_view text, const TDictionary* dictionary, bool withInstances,
                     std::vector<TEntitySpec::Component>& components, std::string* error)
{
    std::vector<Token> tokens;
    if (!Tokenize(text, tokens, error))
        return false;
    const TDictClass* cls = nullptr;
    for (std::size_t i = 0; i < tokens.size();) {
        const Token& token = tokens[i++];
        if (token.quoted)
            return Fail(error, "instance name \"" + token.text + "\" where a class was expected");
        TEntitySpec::Component component;
        const TDictClass* next = nullptr;
        if (ClassCode(token.text, component.code)) {
            next = ChildOf(dictionary, cls, components.empty(), component.code);
        } else {
            next = ChildOf(dictionary, cls, components.empty(), token.text);
            if (!next) {
                std::string where = components.empty() ? std::string("at the top") : "here";
                return Fail(error, "unknown class \"" + token.text + "\" " + where);
            }
            component.code = next->GetCode();
        }
        if (withInstances && i < tokens.size()) {
            const Token& after = tokens[i];
            unsigned int code;
            if (after.quoted) {
                component.kind = TEntitySpec::Instance::Named;
                component.name = after.text;
                ++i;
            } else if (after.text == "*") {
                component.kind = TEntitySpec::Instance::Wildcard;
                ++i;
            } else if (!ClassCode(after.text, code) && !(next && next->FindChild(after.text))) {
                component.kind = TEntitySpec::Instance::Named;
                component.name = after.text;
                ++i;
            }
        }
        components.push_back(std::move(component));
        if (components.size() > static_cast<std::size_t>(ZED_MAX_CLASS_DEPTH))
            return Fail(error, "more than " + std::to_string(ZED_MAX_CLASS_DEPTH) + " class levels");
        cls = next;
    }
    return true;
}

// True when a bare instance name would read back as itself.
bool CanBeBare(const std::string& name, const TDictClass* cls)
{
    if (name.empty() || name == "*" || name[0] == '#')
        return false;
    for (char c : name)
        if (IsBlank(c) || c == '"' || c == '`' || c == '\\')
            return false;
    return !(cls && cls->FindChild(name));
}

std::string Quoted(const std::string& name)
{
    std::string text = "\"";
    for (char c : name) {
        if (c == '"' || c == '\\')
            text.push_back('\\');
        text.push_back(c);
    }
    return text + "\"";
}

}  // namespace

// ---- TEntityClass --------------------------------------------------------

TEntityClass::TEntityClass(std::vector<unsigned int> codes, unsigned int id) : TValue(id), m_codes(std::move(codes)) {}

TEntityClass::TEntityClass(std::string_view text, unsigned int id) : TValue(id)
{
    std::string error;
    auto parsed = Parse(text, CurrentDictionary(), &error);
    if (!parsed)
        throw TException("bad entity class \"" + std::string(text) + "\": " + error);
    m_codes = parsed->m_codes;
}

TEntityClass::~TEntityClass() = default;

void TEntityClass::AddClass(unsigned int code)
{
    m_codes.push_back(code);
    MarkPresent();
}

std::optional<TEntityClass> TEntityClass::Parse(std::string_view text, const TDictionary* dictionary,
                                                std::string* error)
{
    std::vector<TEntitySpec::Component> components;
    if (!ParseComponents(text, dictionary, false, components, error))
        return std::nullopt;
    std::vector<unsigned int> codes;
    for (const auto& component : components)
        codes.push_back(component.code);
    return TEntityClass(std::move(codes));
}

std::string TEntityClass::ToString(const TDictionary* dictionary) const
{
    std::string text;
    WalkClasses(m_codes, dictionary, [&](std::size_t depth, const std::string& name, const TDictClass*) {
        text += (depth ? " " : "") + name;
    });
    return text;
}

std::unique_ptr<TValue> TEntityClass::CloneValue() const { return std::make_unique<TEntityClass>(*this); }

std::string TEntityClass::ContentText() const { return ToString(CurrentDictionary()); }

bool TEntityClass::SameContent(const TValue& other) const
{
    return m_codes == static_cast<const TEntityClass&>(other).m_codes;
}

// ---- TEntitySpec ---------------------------------------------------------

TEntitySpec::TEntitySpec(std::string_view text, unsigned int id) : TValue(id)
{
    std::string error;
    auto parsed = Parse(text, CurrentDictionary(), &error);
    if (!parsed)
        throw TException("bad entity specification \"" + std::string(text) + "\": " + error);
    m_components = std::move(parsed->m_components);
}

TEntitySpec::~TEntitySpec() = default;

TEntityClass TEntitySpec::GetEntityClass() const
{
    std::vector<unsigned int> codes;
    codes.reserve(m_components.size());
    for (const Component& component : m_components)
        codes.push_back(component.code);
    return TEntityClass(std::move(codes));
}

bool TEntitySpec::HasWildcard() const
{
    for (const Component& component : m_components)
        if (component.kind == Instance::Wildcard)
            return true;
    return false;
}

TEntitySpec& TEntitySpec::AddClass(unsigned int code, std::string instanceName)
{
    m_components.push_back({code, Instance::Named, std::move(instanceName)});
    MarkPresent();
    return *this;
}

TEntitySpec& TEntitySpec::AddClassWildcard(unsigned int code)
{
    m_components.push_back({code, Instance::Wildcard, {}});
    MarkPresent();
    return *this;
}

TEntitySpec& TEntitySpec::AddClassNullInstance(unsigned int code)
{
    m_components.push_back({code, Instance::Null, {}});
    MarkPresent();
    return *this;
}

TEntitySpec TEntitySpec::WithInstance(std::size_t depth, std::string instanceName) const
{
    TEntitySpec copy(*this);
    Component& component = copy.m_components.at(depth);
    component.kind = Instance::Named;
    component.name = std::move(instanceName);
    return copy;
}

std::optional<TEntitySpec> TEntitySpec::Parse(std::string_view text, const TDictionary* dictionary, std::string* error)
{
    TEntitySpec spec;
    if (!ParseComponents(text, dictionary, true, spec.m_components, error))
        return std::nullopt;
    spec.MarkPresent();
    return spec;
}

std::string TEntitySpec::ToString(const TDictionary* dictionary) const
{
    std::string text;
    WalkClasses(GetEntityClass().GetCodes(), dictionary,
                [&](std::size_t depth, const std::string& name, const TDictClass* cls) {
                    text += (depth ? " " : "") + name;
                    const Component& component = m_components[depth];
                    if (component.kind == Instance::Wildcard)
                        text += " *";
                    else if (component.kind == Instance::Named)
                        text += " " + (CanBeBare(component.name, cls) ? component.name : Quoted(component.name));
                });
    return text;
}

std::string TEntitySpec::ToStringSynonym(bool& ok) const
{
    std::string text;
    ok = WalkClasses(GetEntityClass().GetCodes(), CurrentDictionary(),
                     [&](std::size_t depth, const std::string& name, const TDictClass*) {
                         text += (depth ? " " : "") + name;
                         const Component& component = m_components[depth];
                         if (component.kind == Instance::Wildcard)
                             text += " `*`";
                         else if (component.kind == Instance::Named)
                             text += " `" + component.name + "`";
                     });
    return text;
}

std::unique_ptr<TValue> TEntitySpec::CloneValue() const { return std::make_unique<TEntitySpec>(*this); }

std::string TEntitySpec::ContentText() const { return ToString(CurrentDictionary()); }

bool TEntitySpec::SameContent(const TValue& other) const
{
    return m_components == static_cast<const TEntitySpec&>(other).m_components;
}
