// SPDX-License-Identifier: BSD-3-Clause
#pragma once

#include <string>

class IPresentationContainer;
class TRequest;

/// What every form that takes input does with its lines, whatever made them
/// (a directive's arguments, an entity's attributes). A null container has no
/// lines.
namespace KELFormLines {

/// False when a line refused (a required argument is missing, a text its
/// field cannot read): the call must not be sent; refusal then holds what the
/// operator was told.
bool FillRequest(const IPresentationContainer* container, TRequest& request, std::string& refusal);
/// "Name = value,Name = value" of the lines with a value.
void GetRequest(const IPresentationContainer* container, std::string& out);
void FillWithDefaults(const IPresentationContainer* container);
void FillWithConfig(const IPresentationContainer* container, const std::string& section);
void SaveContents(const IPresentationContainer* container, const std::string& section);

}  // namespace KELFormLines
