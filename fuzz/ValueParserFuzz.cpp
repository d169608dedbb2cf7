// SPDX-License-Identifier: BSD-3-Clause
// Text to value for every type of the shipped dictionary: the first byte
// picks the type, the rest is the text. A text that parses gives a value whose
// own text form parses back to an equal value (composite kinds, read as JSON,
// are only required not to fail badly).

#include "zed/TApplication.h"
#include "zed/dict/TDictionary.h"
#include "zed/value/TValueParser.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

namespace {

struct Setup {
    TDictionaryPtr dictionary;
    std::vector<TDictTypePtr> types;
    const TDictClass* router;
    const TDictClass* interface;
};

const Setup& Get()
{
    static const Setup setup = [] {
        Setup s;
        s.dictionary = TDictionary::Load(KEL_SOURCE_DIR "/data/network/dictionary.json");
        ZEDGetApplication()->SetDictionary(s.dictionary);
        s.types = s.dictionary->GetTypes();
        for (const char* name :
             {"Boolean",    "Latin1String", "SimpleName", "FullName",  "Reserved14",  "Integer16",     "Integer32",
              "Unsigned16", "Unsigned32",   "Counter16",  "Counter32", "OctetString", "AbsTime",       "RelTime",
              "EntitySpec", "EntityClass",  "Float",      "Real",      "AttributeID", "AttributeList", "Attribute"})
            s.types.push_back(s.dictionary->FindType(name));
        s.router = s.dictionary->FindClass(std::vector<unsigned int>{1, 2});
        s.interface = s.dictionary->FindClass(std::vector<unsigned int>{1, 2, 3});
        return s;
    }();
    return setup;
}

bool Composite(ZED_T_DATATYPE dt)
{
    return dt == ZED_DT_RECORD || dt == ZED_DT_SETOF || dt == ZED_DT_SEQUENCEOF || dt == ZED_DT_ATTRIBUTELIST
           || dt == ZED_DT_ATTRIBUTE || dt == ZED_DT_USERDEFINED;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    const Setup& setup = Get();
    const TDictType& type = *setup.types[data[0] % setup.types.size()];
    // Attribute names are read within a class: Interface's can hold attributes of their own.
    const TDictClass* cls = (data[0] / setup.types.size()) % 2 ? setup.interface : setup.router;
    const std::string_view text(reinterpret_cast<const char*>(data + 1), size - 1);
    const ZEDValueContext context{setup.dictionary.get(), cls};
    std::string error;
    TValuePtr value = ZEDParseValue(type, text, 1, context, &error);
    if (!value) {
        if (error.empty())
            std::abort();  // a refusal always says why
        return 0;
    }
    if (Composite(type.GetDatatype()))
        return 0;
    const std::string shown = value->ToString();
    TValuePtr again = ZEDParseValue(type, shown, 1, context, &error);
    if (!again || !(*again == *value))
        std::abort();
    return 0;
}
