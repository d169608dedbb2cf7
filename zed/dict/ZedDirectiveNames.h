// SPDX-License-Identifier: BSD-3-Clause
#pragma once

// The directives and arguments that modules and hosts recognise by their
// dictionary names (compared as every name is, without regard to case): a
// dictionary that names them so gets their behaviour.

namespace ZedDirective {

/// Reads an entity's attributes (a wildcard: every instance's).
inline constexpr const char* kShow = "Show";
/// Sets the attributes its request carries.
inline constexpr const char* kSet = "Set";
/// Makes an instance with the attributes its request carries.
inline constexpr const char* kCreate = "Create";
/// Removes an instance; a host asks before it sends one.
inline constexpr const char* kDelete = "Delete";
/// Show's argument that picks the partition of attributes asked for.
inline constexpr const char* kPartition = "Partition";

}  // namespace ZedDirective
