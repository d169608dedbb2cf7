// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// The one way the dictionary finds its objects: the first that matches, held
// by value or by pointer; by name, without regard to letter case.

#include "zed/ZedText.h"

#include <memory>
#include <string>
#include <type_traits>

namespace zed_find_detail {
template <class T>
const T& Object(const T& item)
{
    return item;
}
template <class T>
const T& Object(const std::unique_ptr<T>& item)
{
    return *item;
}
template <class T>
const T& Object(const std::shared_ptr<T>& item)
{
    return *item;
}
template <class Container>
using Found = std::remove_cvref_t<decltype(Object(*std::declval<const Container&>().begin()))>;
}  // namespace zed_find_detail

/// The first of the objects that match, or null.
template <class Container, class Match>
const zed_find_detail::Found<Container>* ZedFindIf(const Container& objects, Match match)
{
    for (const auto& item : objects)
        if (const auto& object = zed_find_detail::Object(item); match(object))
            return &object;
    return nullptr;
}

/// The first of the dictionary objects with that name, or null. Names
/// compare without regard to letter case, as every lookup by name does.
template <class Container>
const zed_find_detail::Found<Container>* ZedFindNamed(const Container& objects, const std::string& name)
{
    return ZedFindIf(objects, [&](const auto& object) { return ZedSameIgnoringCase(object.GetName(), name); });
}
