// SPDX-License-Identifier: BSD-3-Clause
#include "kel/forms/KELFormLines.h"

#include "kel/fields/IField.h"
#include "kel/forms/IFormLine.h"
#include "kel/model/IPresentationContainer.h"

namespace {

template <class Visit>
void ForEachLine(const IPresentationContainer* container, Visit visit)
{
    if (!container)
        return;
    container->ForEachElement([&](IPresentationElement& element) {
        if (auto* line = dynamic_cast<IFormLine*>(&element))
            visit(*line);
    });
}

}  // namespace

namespace KELFormLines {

bool FillRequest(const IPresentationContainer* container, TRequest& request, std::string& refusal)
{
    refusal.clear();
    if (!container)
        return true;
    bool filled = true;
    container->ForEachElement([&](IPresentationElement& element) {
        if (!filled)
            return;
        filled = element.FillRequest(request);
        if (const auto* line = dynamic_cast<const IFormLine*>(&element); !filled && line)
            refusal = line->GetRefusal();
    });
    return filled;
}

void GetRequest(const IPresentationContainer* container, std::string& out)
{
    ForEachLine(container, [&](IFormLine& line) {
        std::string part;
        line.GetPartialRequest(part);
        if (!part.empty())
            out += part + ",";
    });
    if (!out.empty() && out.back() == ',')
        out.pop_back();
}

// What a form is filled with is what its fields revert to.
void FillWithDefaults(const IPresentationContainer* container)
{
    ForEachLine(container, [](IFormLine& line) {
        if (IField* field = line.GetField()) {
            field->SetToDefault();
            field->KeepValueAsInitial();
        }
    });
}

void FillWithConfig(const IPresentationContainer* container, const std::string& section)
{
    ForEachLine(container, [&](IFormLine& line) {
        line.FillWithConfig(section);
        if (IField* field = line.GetField())
            field->KeepValueAsInitial();
    });
}

void SaveContents(const IPresentationContainer* container, const std::string& section)
{
    ForEachLine(container, [&](IFormLine& line) { line.SaveContents(section); });
}

}  // namespace KELFormLines
